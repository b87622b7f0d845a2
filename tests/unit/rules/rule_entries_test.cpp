// What the entries make of what Java hands over.
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_TrafficDetailProcessServiceJNI.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_TrafficForwardServiceJNI.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_TrafficMirrorServiceJNI.h>

#include <string>

#include "support/entry_calls.h"
#include "unit/rules/rules_fixture.h"

namespace wap::test {
namespace {

class RuleEntriesTest : public RulesTest {
  protected:
    using Elements = std::vector<std::optional<std::u16string>>;
    struct Http {
        std::optional<std::u16string> sAddress = u"203.0.113.80";
        jint iPort = 80;
        std::optional<std::u16string> sDirection = u"UP";
        std::optional<std::u16string> sMac = u"00:11:22:33:44:55";
        std::optional<Elements> asMethods = Elements{u"GET", u"POST"};
        std::optional<Elements> asStatusCodes = Elements{u"200"};
        std::optional<Elements> asHeaders = Elements{u"Host", u"User-Agent"};
    };

    jstring Text(const std::optional<std::u16string> &sText) {
        return sText ? stEnv.JavaText(*sText) : nullptr;
    }
    jobjectArray Texts(const std::optional<Elements> &asTexts) {
        return asTexts ? stEnv.JavaTexts(*asTexts) : nullptr;
    }
    jint AddHttp(const Http &stRule) {
        stPlatform.ClearRecords();
        const jint iResult = WAP_METHOD(TrafficDetailProcess, addHTTPTrafficProcessRule)(
            &stEnv, stEnv.JavaObject(), Text(stRule.sAddress), stRule.iPort,
            Text(stRule.sDirection), Text(stRule.sMac), Texts(stRule.asMethods),
            Texts(stRule.asStatusCodes), Texts(stRule.asHeaders));
        stEnv.EndCall();
        return iResult;
    }
    /// Adds a rule of six texts, of which one may be null.
    jint AddMirror(const std::vector<std::optional<std::u16string>> &asTexts, jint iPort = 9000) {
        stPlatform.ClearRecords();
        const jint iResult = WAP_METHOD(TrafficMirror, addMirrorRule)(
            &stEnv, stEnv.JavaObject(), Text(asTexts[0]), Text(asTexts[1]), Text(asTexts[2]),
            Text(asTexts[3]), Text(asTexts[4]), Text(asTexts[5]), iPort);
        stEnv.EndCall();
        return iResult;
    }
    jint AddForward(const std::vector<std::optional<std::u16string>> &asTexts, jint iPort = 9000) {
        stPlatform.ClearRecords();
        const jint iResult = WAP_METHOD(TrafficForward, addForwardRule)(
            &stEnv, stEnv.JavaObject(), Text(asTexts[0]), Text(asTexts[1]), Text(asTexts[2]),
            Text(asTexts[3]), Text(asTexts[4]), iPort);
        stEnv.EndCall();
        return iResult;
    }
    std::string OnlyRequest() const {
        EXPECT_EQ(stPlatform.astRpcs.size(), 1u);
        return stPlatform.astRpcs.empty() ? "" : stPlatform.astRpcs[0].sRequest;
    }
    void ExpectNothingSent(const std::string &sMethod) {
        EXPECT_TRUE(stPlatform.astRpcs.empty());
        EXPECT_EQ(TimesRecorded(stPlatform, sMethod + "ServiceJNI.cpp", kMinusOne), 1u);
    }
};

TEST_F(RuleEntriesTest, GoodAnswersAndTraces) {
    for (const Entry &stEntry : RulesEntries()) {
        SCOPED_TRACE(stEntry.sMethod);
        stPlatform.ClearRecords();
        EXPECT_EQ(stEntry.fnCall(stEnv), stEntry.stGood);
        EXPECT_EQ(EntryTraces(stPlatform).at(0), "\r\n " + stEntry.sSymbol + " called \r\n");
        EXPECT_EQ(RpcIds(stPlatform), Codes{stEntry.uiRpcId});
        EXPECT_TRUE(stPlatform.astFaults.empty());
        stEnv.EndCall();
    }
}

TEST_F(RuleEntriesTest, FailuresWhenNobodyAnswers) {
    stPlatform.mapReplies.clear();
    for (const Entry &stEntry : RulesEntries()) {
        SCOPED_TRACE(stEntry.sMethod);
        stPlatform.ClearRecords();
        EXPECT_EQ(stEntry.fnCall(stEnv), stEntry.stFailure);
        const std::string sClass = stEntry.sSymbol.substr(57, stEntry.sSymbol.rfind('_') - 57);
        EXPECT_EQ(TimesRecorded(stPlatform, sClass + ".cpp", kMinusOne), 1u) << sClass;
        stEnv.EndCall();
    }
}

TEST_F(RuleEntriesTest, RequestsOfAdditions) {
    Call("addMirrorRule");
    EXPECT_EQ(OnlyRequest(), MirrorBytes({}));
    Call("addForwardRule");
    EXPECT_EQ(OnlyRequest(), ForwardBytes({}));
    Call("addHTTPTrafficProcessRule");
    EXPECT_EQ(OnlyRequest(), HttpBytes({}));
    EXPECT_EQ(EntryTraces(stPlatform).size(), 4u);
    EXPECT_EQ(EntryTraces(stPlatform)[1], "method:GET,POST\r\n");
    EXPECT_EQ(EntryTraces(stPlatform)[2], "status code:200\r\n");
    EXPECT_EQ(EntryTraces(stPlatform)[3], "header:Host,User-Agent\r\n");
}

TEST_F(RuleEntriesTest, RequestsOfDeletions) {
    Call("deleteMirrorRule");
    ExpectOnlyRpc(stPlatform, {"gulm", 354, 0x48304192, Word(7), 4});
    Call("deleteAllMirrorRule");
    ExpectOnlyRpc(stPlatform, {"gulm", 354, 0x48304192, "\xFF\xFF\xFF\xFF", 4});
    Call("deleteForwardRule");
    ExpectOnlyRpc(stPlatform, {"gulm", 351, 0x48304196, Word(8), 4});
    Call("deleteAllForwardRule");
    ExpectOnlyRpc(stPlatform, {"gulm", 351, 0x48304196, "\xFF\xFF\xFF\xFF", 4});
    Call("deleteHTTPTrafficProcessRule");
    ExpectOnlyRpc(stPlatform, {"gulm", 352, 0x48304199, Word(9), 4});
    Call("deleteAllHTTPTrafficProcessRule");
    ExpectOnlyRpc(stPlatform, {"gulm", 352, 0x48304199, "\xFF\xFF\xFF\xFF", 4});
}

TEST_F(RuleEntriesTest, MissingTextsOfAMirrorRule) {
    const Elements asAll = {u"a", u"80", u"UP", u"TCP", u"m", u"::1"};
    for (const bool bNull : {true, false}) {
        for (const size_t uiAt : {1u, 2u, 3u, 5u}) {
            Elements asTexts = asAll;
            asTexts[uiAt] = bNull ? std::nullopt : std::optional<std::u16string>(u"");
            EXPECT_EQ(AddMirror(asTexts), -1) << uiAt;
            ExpectNothingSent("TrafficMirror");
        }
        Elements asTexts = asAll;
        asTexts[0] = asTexts[4] = bNull ? std::nullopt : std::optional<std::u16string>(u"");
        EXPECT_EQ(AddMirror(asTexts), 7);
        EXPECT_EQ(OnlyRequest(), MirrorBytes({"", "80", "UP", "TCP", "", "::1", "9000"}));
    }
}

TEST_F(RuleEntriesTest, MissingTextsOfAForwardRule) {
    const Elements asAll = {u"a", u"80", u"TCP", u"m", u"::1"};
    for (const bool bNull : {true, false}) {
        for (const size_t uiAt : {1u, 2u}) {
            Elements asTexts = asAll;
            asTexts[uiAt] = bNull ? std::nullopt : std::optional<std::u16string>(u"");
            EXPECT_EQ(AddForward(asTexts), -1) << uiAt;
            ExpectNothingSent("TrafficForward");
        }
        Elements asTexts = asAll;
        asTexts[0] = asTexts[3] = asTexts[4] =
            bNull ? std::nullopt : std::optional<std::u16string>(u"");
        EXPECT_EQ(AddForward(asTexts), 8);
        EXPECT_EQ(OnlyRequest(), ForwardBytes({"", "80", "TCP", "", "", "9000"}));
    }
}

TEST_F(RuleEntriesTest, AddressHas255BytesAtMost) {
    const std::u16string s255(255, u'a');
    const std::u16string s256(256, u'a');
    EXPECT_EQ(AddMirror({s255, u"80", u"UP", u"TCP", u"m", u"::1"}), 7);
    EXPECT_EQ(AddMirror({s256, u"80", u"UP", u"TCP", u"m", u"::1"}), -1);
    ExpectNothingSent("TrafficMirror");
    EXPECT_TRUE(HasRecorded(kMinusOne, {256}));
    EXPECT_EQ(AddForward({s255, u"80", u"TCP", u"m", u"::1"}), 8);
    EXPECT_EQ(AddForward({s256, u"80", u"TCP", u"m", u"::1"}), -1);
    ExpectNothingSent("TrafficForward");
    EXPECT_EQ(AddHttp({.sAddress = s255}), 9);
    EXPECT_EQ(AddHttp({.sAddress = s256}), -1);
    ExpectNothingSent("TrafficDetailProcess");
    // Bytes, not characters.
    EXPECT_EQ(AddHttp({.sAddress = std::u16string(127, u'\u00FC') + u"a"}), 9);
    EXPECT_EQ(AddHttp({.sAddress = std::u16string(128, u'\u00FC')}), -1);
}

TEST_F(RuleEntriesTest, MissingTextsOfAnHttpRule) {
    EXPECT_EQ(AddHttp({.sAddress = std::nullopt, .sMac = std::nullopt}), 9);
    EXPECT_EQ(OnlyRequest(), HttpBytes({.sAddress = "", .sMac = ""}));
    EXPECT_EQ(AddHttp({.sAddress = u"", .sMac = u""}), 9);
    EXPECT_EQ(OnlyRequest(), HttpBytes({.sAddress = "", .sMac = ""}));
    for (const auto &sDirection :
         {std::optional<std::u16string>(), std::optional(u"" + std::u16string())}) {
        EXPECT_EQ(AddHttp({.sDirection = sDirection}), -1);
        ExpectNothingSent("TrafficDetailProcess");
        // Not joined any more.
        EXPECT_EQ(EntryTraces(stPlatform).size(), 1u);
    }
}

TEST_F(RuleEntriesTest, ListsAreJoined) {
    EXPECT_EQ(AddHttp({.asMethods = Elements{u"GET", std::nullopt, u"", u"PUT"},
                       .asStatusCodes = Elements{},
                       .asHeaders = std::nullopt}),
              9);
    EXPECT_EQ(OnlyRequest(),
              HttpBytes({.sMethods = "GET,PUT", .sStatusCodes = "", .sHeaders = ""}));
    EXPECT_EQ(EntryTraces(stPlatform)[1], "method:GET,PUT\r\n");
    EXPECT_EQ(EntryTraces(stPlatform)[2], "status code:\r\n");
    EXPECT_EQ(EntryTraces(stPlatform)[3], "header:\r\n");
}

// Four for each of the five elements, and for four more texts.
TEST_F(RuleEntriesTest, ReferencesOfAllListsAreAskedForAtOnce) {
    stEnv.uiCapacityMax = 36;
    EXPECT_EQ(AddHttp({}), 9);
    stEnv.uiCapacityMax = 35;
    EXPECT_EQ(AddHttp({}), -1);
    ExpectNothingSent("TrafficDetailProcess");
    EXPECT_EQ(EntryTraces(stPlatform).size(), 1u);
}

// Four for each of the six texts of a mirror rule.
TEST_F(RuleEntriesTest, ReferencesOfAllTextsAreAskedForAtOnce) {
    stEnv.uiCapacityMax = 24;
    const Elements asTexts = {u"a", u"80", u"UP", u"TCP", u"m", u"::1"};
    EXPECT_EQ(AddMirror(asTexts), 7);
    stEnv.uiCapacityMax = 23;
    EXPECT_EQ(AddMirror(asTexts), -1);
    ExpectNothingSent("TrafficMirror");
}

// Of each field, the last two bytes are for a separator and the zero.
TEST_F(RuleEntriesTest, ListsMustFitTheirFields) {
    const auto Long = [](size_t uiBytes) {
        return Elements{std::u16string(uiBytes - 2, u'x'), u"y"};
    };
    const auto Joined = [](size_t uiBytes) { return std::string(uiBytes - 2, 'x') + ",y"; };
    EXPECT_EQ(AddHttp({.asMethods = Long(61)}), 9);
    EXPECT_EQ(OnlyRequest(), HttpBytes({.sMethods = Joined(61)}));
    EXPECT_EQ(AddHttp({.asStatusCodes = Long(253), .asHeaders = Long(253)}), 9);
    EXPECT_EQ(OnlyRequest(), HttpBytes({.sStatusCodes = Joined(253), .sHeaders = Joined(253)}));
    const Http astLong[] = {{.asMethods = Long(62)},
                            {.asStatusCodes = Long(254)},
                            {.asHeaders = Long(254)},
                            {.asMethods = Elements(1000, u"GET")}};
    const size_t auiTraces[] = {1, 2, 3, 1};
    for (size_t i = 0; i < 4; ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(AddHttp(astLong[i]), -1);
        EXPECT_TRUE(stPlatform.astRpcs.empty());
        EXPECT_EQ(TimesRecorded(stPlatform, "TrafficDetailProcessServiceJNI.cpp", 1), 1u);
        EXPECT_EQ(TimesRecorded(stPlatform, "TrafficDetailProcessServiceJNI.cpp", kMinusOne), 1u);
        EXPECT_EQ(EntryTraces(stPlatform).size(), auiTraces[i]);
    }
}

}  // namespace
}  // namespace wap::test
