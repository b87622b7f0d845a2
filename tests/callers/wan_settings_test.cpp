// The settings of a WAN connection, which come as JSON: each text goes into its field of the
// record, whole or not at all, and changes nothing besides.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "callers/caller.h"
#include "callers/figures.h"
#include "callers/tricky_texts.h"
#include "support/wire_bytes.h"

namespace wap::test {

namespace {

constexpr uint32_t kSetWan = 0x47209078;
constexpr size_t kFlags = 1049;

struct Setting {
    const char *pcKey;
    size_t uiOffset;
    size_t uiSize;
    /// What a text must begin with to pass; for kWord, what passes.
    const char *pcGood = "";
    enum Kind { kText, kWord } eKind = kText;
};

constexpr Setting kSettings[] = {
    {"LanInterface", 16, 64, "LAN1,"},
    {"VLANMode", 80, 8},
    {"VLANIDMark", 88, 8},
    {"802-1pMark", 96, 8},
    {"MulticastVlan", 104, 8},
    {"LanInterface-DHCPEnable", 112, 8, "TRUE", Setting::kWord},
    {"IPMode", 120, 16, "3", Setting::kWord},
    {"NATEnabled", 136, 8, "TRUE", Setting::kWord},
    {"Username", 144, 68},
    {"Password", 212, 68},
    {"AddressingType", 280, 16},
    {"ExternalIPAddress", 296, 16},
    {"SubnetMask", 312, 16},
    {"DefaultGateway", 328, 16},
    {"DNSEnabled", 344, 8, "TRUE", Setting::kWord},
    {"DNSServers", 352, 64, "192.0.2.9,"},
    {"MACAddress", 416, 32},
    {"ConnectionTrigger", 448, 16},
    {"IPv6IPAddressOrigin", 464, 32},
    {"IPv6IPAddress", 496, 64},
    {"IPv6DNSServers", 560, 128},
    {"IPv6PrefixDelegationEnabled", 688, 8, "TRUE", Setting::kWord},
    {"IPv6PrefixOrigin", 696, 32},
    {"IPv6Prefix", 728, 64},
    {"IPv6PrefixPltime", 792, 40},
    {"IPv6PrefixVltime", 832, 40},
    {"IPv6DefaultGateway", 872, 65},
    {"IPv6DsliteEnable", 937, 8, "TRUE", Setting::kWord},
    {"IPv6AftrMode", 945, 8},
    {"IPv6AftrAddress", 953, 64},
    {"ServiceList", 1017, 32},
};

/// A text as JSON writes it.
std::string Quoted(std::string_view sText) {
    std::string sQuoted = "\"";
    for (const char cChar : sText) {
        if (cChar == '"' || cChar == '\\') {
            sQuoted += '\\';
            sQuoted += cChar;
        } else if (static_cast<uint8_t>(cChar) < 0x20) {
            constexpr const char *kDigits = "0123456789abcdef";
            sQuoted += std::string("\\u00") + kDigits[cChar >> 4] + kDigits[cChar & 15];
        } else {
            sQuoted += cChar;
        }
    }
    return sQuoted + '"';
}

/// A text that passes, with sText where it may say anything.
std::string Passing(const Setting &stSetting, std::string_view sText) {
    return std::string(stSetting.pcGood).append(sText);
}

/// What is sent of it. The servers of IPv4 are the first two, and the list has room for 32 bytes.
std::string SentOf(const Setting &stSetting, std::string_view sText) {
    if (std::string(stSetting.pcKey) != "DNSServers") {
        return Passing(stSetting, sText);
    }
    return ("192.0.2.9," + std::string(sText.substr(0, sText.find(',')))).substr(0, 32);
}

/// The part of a text that there is room for beside what must stand before it.
std::string_view Fitting(const Setting &stSetting, std::string_view sText) {
    return sText.substr(0, stSetting.uiSize - 1 - std::string_view(stSetting.pcGood).size());
}

class WanSettingTest : public ::testing::TestWithParam<size_t> {
  protected:
    const Setting &stSetting = kSettings[GetParam()];

    /// Sets this setting alone; the record that was sent, empty when none was.
    std::string Sent(std::string_view sText) {
        const Native &stNative = NativeOf("setWANIf");
        Caller stCaller(stNative);
        Arguments astArguments = stNative.astGood;
        astArguments[1] =
            JavaString(FromUtf8("{" + Quoted(stSetting.pcKey) + ":" + Quoted(sText) + "}"));
        const Answer stAnswer = stCaller.Call(astArguments);
        const std::vector<RpcRecord> astRequests = stCaller.Requests(kSetWan);
        EXPECT_EQ(stAnswer, NumberAnswerOf(astRequests.empty() ? -1 : 0));
        for (const TraceRecord &stTrace : stCaller.Gateway().astTraces) {
            asTraces.push_back(stTrace.sText);
        }
        EXPECT_LE(astRequests.size(), 1u);
        return astRequests.empty() ? "" : astRequests[0].sRequest;
    }

    std::string FieldOf(const std::string &sRecord) const {
        return sRecord.substr(stSetting.uiOffset, stSetting.uiSize);
    }
    std::string Besides(std::string sRecord) const {
        return sRecord.erase(stSetting.uiOffset, stSetting.uiSize);
    }

    std::vector<std::string> asTraces;
};

TEST_P(WanSettingTest, WhateverItSaysStaysInItsField) {
    const std::string sUsual = Sent(Passing(stSetting, Fitting(stSetting, kHarmless)));
    ASSERT_EQ(sUsual.size(), 1080u);
    EXPECT_EQ(sUsual[kFlags + GetParam()], 1);
    for (const std::string_view stWhole : kTricky) {
        const std::string_view stTricky = Fitting(stSetting, stWhole);
        SCOPED_TRACE(stTricky);
        AddToFigure("callers.tricky_texts");
        const std::string sRecord = Sent(Passing(stSetting, stTricky));
        ASSERT_EQ(sRecord.size(), 1080u);
        EXPECT_EQ(Besides(sRecord), Besides(sUsual));
        EXPECT_EQ(FieldOf(sRecord), Field(SentOf(stSetting, stTricky), stSetting.uiSize));
    }
}

TEST_P(WanSettingTest, IsTakenWholeOrNotAtAll) {
    const std::string sNothing = Sent("");
    for (const size_t uiLength :
         {stSetting.uiSize - 1, stSetting.uiSize, stSetting.uiSize + 1, size_t{100000}}) {
        SCOPED_TRACE(uiLength);
        const std::string sFill(uiLength - std::string_view(stSetting.pcGood).size(), 'k');
        const std::string sRecord = Sent(Passing(stSetting, sFill));
        const bool bFits = uiLength < stSetting.uiSize;
        ASSERT_EQ(sRecord.size(), 1080u);
        EXPECT_EQ(FieldOf(sRecord), Field(bFits ? SentOf(stSetting, sFill) : "", stSetting.uiSize));
        EXPECT_EQ(sRecord[kFlags + GetParam()], bFits ? 1 : 0);
        if (!bFits) {
            EXPECT_EQ(sRecord, sNothing);
        }
    }
    AddToFigure("callers.text_fields");
}

// What is traced of the settings shows a format as it came.
TEST_P(WanSettingTest, IsNoFormat) {
    const bool bSecret = std::string(stSetting.pcKey) == "Username" ||
                         std::string(stSetting.pcKey) == "Password" ||
                         std::string(stSetting.pcKey) == "MACAddress";
    (void)Sent(Passing(stSetting, "%n%s%5d"));
    bool bShown = false;
    for (const std::string &sTrace : asTraces) {
        bShown = bShown || sTrace.find("%n%s%5d") != std::string::npos;
    }
    EXPECT_EQ(bShown, !bSecret);
}

/// The settings that are one of a few words.
using WanWordTest = WanSettingTest;

TEST_P(WanWordTest, IsRefusedWhenItSaysAnythingElse) {
    const std::string sUsual = Sent(stSetting.pcGood);
    ASSERT_EQ(sUsual.size(), 1080u);
    EXPECT_EQ(sUsual[kFlags + GetParam()], 1);
    EXPECT_EQ(FieldOf(sUsual), Field(stSetting.pcGood, stSetting.uiSize));
    for (const std::string_view stTricky : kTricky) {
        SCOPED_TRACE(stTricky);
        AddToFigure("callers.tricky_texts");
        EXPECT_EQ(Sent(stTricky.substr(0, stSetting.uiSize - 1)), "");
        EXPECT_EQ(Sent(Passing(stSetting, Fitting(stSetting, stTricky))), "");
    }
    EXPECT_EQ(Sent(std::string(stSetting.uiSize - 1, 'k')), "");
}

// What is too long is not set, and so nothing that is checked.
TEST_P(WanWordTest, IsNotTakenWhenItIsTooLong) {
    const std::string sNothing = Sent("");
    ASSERT_EQ(sNothing.size(), 1080u);
    for (const size_t uiLength : {stSetting.uiSize, stSetting.uiSize + 1, size_t{100000}}) {
        EXPECT_EQ(Sent(std::string(uiLength, 'k')), sNothing) << uiLength;
    }
    AddToFigure("callers.text_fields");
}

std::vector<size_t> IndexesOf(Setting::Kind eKind) {
    std::vector<size_t> auiIndexes;
    for (size_t i = 0; i < std::size(kSettings); ++i) {
        if (kSettings[i].eKind == eKind) {
            auiIndexes.push_back(i);
        }
    }
    return auiIndexes;
}

std::string NameOf(const ::testing::TestParamInfo<size_t> &stInfo) {
    std::string sName = kSettings[stInfo.param].pcKey;
    std::erase(sName, '-');
    return sName;
}

INSTANTIATE_TEST_SUITE_P(Every, WanSettingTest, ::testing::ValuesIn(IndexesOf(Setting::kText)),
                         NameOf);
INSTANTIATE_TEST_SUITE_P(Every, WanWordTest, ::testing::ValuesIn(IndexesOf(Setting::kWord)),
                         NameOf);

}  // namespace

}  // namespace wap::test
