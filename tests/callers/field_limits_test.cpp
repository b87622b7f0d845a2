// The texts of callers in the requests: what is as long as the limit is sent whole, and what is
// longer as the method says; whatever stands in a text stays in its field.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "callers/caller.h"
#include "callers/figures.h"
#include "callers/text_fields.h"
#include "support/wire_bytes.h"

namespace wap::test {

namespace {

Answer GoodAnswer(const TextField &stField) {
    return stField.Called().stFurnished.stEntry.stGood;
}

/// What a request holds in the field.
std::string FieldOf(const TextField &stField, const RpcRecord &stRpc) {
    return stField.uiSize == 0 ? stRpc.sRequest
                               : stRpc.sRequest.substr(stField.uiOffset, stField.uiSize);
}

/// What it holds when the text is in it.
std::string FieldWith(const TextField &stField, const std::string &sText) {
    return Field(sText, stField.uiSize == 0 ? sText.size() + 1 : stField.uiSize);
}

/// Everything that was sent, without the fields that this argument fills.
std::vector<std::string> SentBesides(const TextField &stArgument, const Platform &stPlatform) {
    std::vector<std::string> asSent;
    for (const RpcRecord &stRpc : stPlatform.astRpcs) {
        std::string sRequest = stRpc.sRequest;
        for (const TextField &stField : TextFields()) {
            if (std::string(stField.pcMethod) == stArgument.pcMethod &&
                stField.uiArgument == stArgument.uiArgument && stField.uiRpcId == stRpc.uiRpcId) {
                sRequest.erase(stField.uiOffset,
                               stField.uiSize == 0 ? std::string::npos : stField.uiSize);
            }
        }
        asSent.push_back(stRpc.sHead + Word(stRpc.uiRpcId) + Word(stRpc.uiDstMid) + sRequest);
    }
    return asSent;
}

class TextFieldTest : public ::testing::TestWithParam<TextField> {
  protected:
    /// Calls with a text and expects that the request has sSent in its field.
    void ExpectSent(const std::u16string &sText, const std::string &sSent) {
        const TextField &stField = GetParam();
        SCOPED_TRACE("a text of " + std::to_string(ToUtf8(sText).size()));
        Caller stCaller(stField.Called());
        EXPECT_EQ(stCaller.Call(WithText(stField, sText)), GoodAnswer(stField));
        const std::vector<RpcRecord> astRequests = stCaller.Requests(stField.uiRpcId);
        ASSERT_FALSE(astRequests.empty());
        EXPECT_EQ(FieldOf(stField, astRequests[0]), FieldWith(stField, sSent));
    }

    void ExpectRefused(const std::u16string &sText) {
        const TextField &stField = GetParam();
        SCOPED_TRACE("a text of " + std::to_string(ToUtf8(sText).size()));
        Caller stCaller(stField.Called());
        EXPECT_EQ(stCaller.Call(WithText(stField, sText)), NumberAnswerOf(stField.iRefusal));
        EXPECT_TRUE(stCaller.Requests(stField.uiRpcId).empty());
        stCaller.ExpectWorks();
    }

    void ExpectTooLong(const std::u16string &sText) {
        const TextField &stField = GetParam();
        switch (stField.eTooLong) {
            case TooLong::kRefused:
                return ExpectRefused(sText);
            case TooLong::kCut:
                return ExpectSent(sText, ToUtf8(sText).substr(0, stField.uiLimit));
            case TooLong::kLeftOut:
                return ExpectSent(sText, "");
            case TooLong::kSent:
                return ExpectSent(sText, ToUtf8(sText));
        }
    }
};

TEST_P(TextFieldTest, TakesTheLimit) {
    const std::u16string sText = FilledText(GetParam(), GetParam().uiLimit);
    ExpectSent(sText, ToUtf8(sText));
    AddToFigure("callers.text_fields");
}

TEST_P(TextFieldTest, DoesWithMoreAsItSays) {
    for (const size_t uiMore : {size_t{1}, size_t{2}, size_t{1000}, size_t{100000}}) {
        ExpectTooLong(FilledText(GetParam(), GetParam().uiLimit + uiMore));
    }
}

// A text that is no longer than the limit in characters, but in bytes.
TEST_P(TextFieldTest, CountsBytes) {
    const TextField &stField = GetParam();
    std::u16string sText = FilledText(stField, stField.uiLimit);
    sText[std::string(stField.pcBefore).size()] = u'\u00fc';
    ExpectTooLong(sText);
}

/// Texts that would mean something to a format, a path, JSON, a shell or a list.
constexpr const char16_t *kTexts[] = {
    u"%n%s%5$x",    u"%",
    u"%n",          u"%s%s%s%s%s%s%s%s",
    u"%1000000d",   u"../../etc/passwd",
    u"..",          u"/",
    u"\",\"x\":\"", u"\"}",
    u"\\\"",        u"'; reboot; '",
    u"$(reboot)",   u"`x`",
    u"a,b",         u",",
    u"a|b",         u"];other[\"q\"",
    u"[\"q\"]",     u";",
    u"\n",          u"a\r\nb",
    u"\t",          u"x y",
};

/// Whether the method looks into this text, and may refuse it for what it says.
bool IsLookedInto(const TextField &stField) {
    return stField.pcBefore[0] != '\0';
}

TEST_P(TextFieldTest, KeepsWhatItSays) {
    const TextField &stField = GetParam();
    const Native &stNative = stField.Called();
    Caller stHarmless(stNative);
    const std::u16string sBefore = FromUtf8(stField.pcBefore);
    const std::u16string sBehind = FromUtf8(stField.pcBehind);
    ASSERT_EQ(stHarmless.Call(WithText(stField, sBefore + u"x" + sBehind)), GoodAnswer(stField));
    const auto asHarmless = SentBesides(stField, stHarmless.Gateway());
    for (const char16_t *pcTricky : kTexts) {
        std::u16string sText = sBefore;
        sText.append(pcTricky).append(sBehind);
        const std::string sBytes = ToUtf8(sText);
        SCOPED_TRACE(sBytes);
        if (sBytes.size() > stField.uiLimit) {
            continue;
        }
        AddToFigure("callers.tricky_texts");
        Caller stCaller(stNative);
        const Answer stAnswer = stCaller.Call(WithText(stField, sText));
        const std::vector<RpcRecord> astRequests = stCaller.Requests(stField.uiRpcId);
        if (IsLookedInto(stField) && stAnswer != GoodAnswer(stField)) {
            EXPECT_EQ(stAnswer, NumberAnswerOf(stField.iRefusal));
            EXPECT_TRUE(astRequests.empty());
            continue;
        }
        EXPECT_EQ(stAnswer, GoodAnswer(stField));
        EXPECT_EQ(SentBesides(stField, stCaller.Gateway()), asHarmless);
        for (const RpcRecord &stRpc : astRequests) {
            EXPECT_EQ(FieldOf(stField, stRpc), FieldWith(stField, sBytes));
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Every, TextFieldTest, ::testing::ValuesIn(TextFields()),
                         [](const auto &stInfo) { return stInfo.param.Name(); });

}  // namespace

}  // namespace wap::test
