// What the workers send when rules are added and deleted, and what they refuse to send.
#include <functional>
#include <string>

#include "unit/rules/rules_fixture.h"
#include "wan/jni_http_capture.h"
#include "wan/jni_traffic_forward.h"
#include "wan/jni_traffic_mirror.h"

namespace wap::test {
namespace {

constexpr uint32_t kAddMirror = 0x48304191;
constexpr uint32_t kDelMirror = 0x48304192;
constexpr uint32_t kAddForward = 0x48304195;
constexpr uint32_t kDelForward = 0x48304196;
constexpr uint32_t kAddHttp = 0x48304198;
constexpr uint32_t kDelHttp = 0x48304199;

/// Rules whose texts all are there.
constexpr MirrorRuleTexts kMirror = {"203.0.113.80",      "80",  "UP", "TCP",
                                     "00:11:22:33:44:55", "::1", 9000};
constexpr ForwardRuleTexts kForward = {"203.0.113.80",      "80",  "TCP",
                                       "00:11:22:33:44:55", "::1", 9000};

HttpRuleTexts Http() {
    HttpRuleTexts stTexts = {"203.0.113.80", 80, "UP", "00:11:22:33:44:55"};
    Field("GET,POST", 64).copy(stTexts.acMethods, 64);
    Field("200,404", 256).copy(stTexts.acStatusCodes, 256);
    Field("Host", 256).copy(stTexts.acHeaders, 256);
    return stTexts;
}

class RuleChangeTest : public RulesTest {
  protected:
    /// Expects that a call is refused before anything is sent, with these numbers on record.
    void ExpectRefused(uint32_t uiResult, const Args &auiArgs) {
        EXPECT_EQ(uiResult, kMinusOne);
        EXPECT_TRUE(stPlatform.astRpcs.empty());
        EXPECT_TRUE(HasRecorded(kMinusOne, auiArgs));
        EXPECT_EQ(stPlatform.astFaults.size(), 1u);
        stPlatform.ClearRecords();
    }
    /// Expects that this addition went out, with room for a number that is not there yet.
    void ExpectAddition(const WantedRpc &stWanted) {
        ASSERT_EQ(stPlatform.astRpcs.size(), 1u);
        EXPECT_EQ(stPlatform.astRpcs[0].sRspBefore, "\xFF\xFF\xFF\xFF");
        stPlatform.astRpcs[0].sRspBefore = std::string(4, '\0');
        ExpectOnlyRpc(stPlatform, stWanted);
        EXPECT_TRUE(stPlatform.astFaults.empty());
    }
    std::string OnlyRequest() {
        EXPECT_EQ(stPlatform.astRpcs.size(), 1u);
        std::string sRequest = stPlatform.astRpcs.at(0).sRequest;
        stPlatform.ClearRecords();
        return sRequest;
    }
};

TEST_F(RuleChangeTest, MirrorRuleGoesOut) {
    EXPECT_EQ(AddMirrorRule(kMirror), 7u);
    ExpectAddition({"gulm", 354, kAddMirror,
                    Field("203.0.113.80", 256) + Field("80", 12) + Field("UP", 5) +
                        Field("TCP", 4) + Field("00:11:22:33:44:55", 18) + Field("::1", 40) +
                        Field("9000", 12),
                    4});
    EXPECT_EQ(EntryTraces(stPlatform), Calls{});
}

TEST_F(RuleChangeTest, ForwardRuleGoesOut) {
    EXPECT_EQ(AddForwardRule(kForward), 8u);
    ExpectAddition({"gulm", 351, kAddForward,
                    Field("203.0.113.80", 256) + Field("80", 12) + Field("TCP", 4) +
                        Field("00:11:22:33:44:55", 18) + Field("::1", 40) + Field("9000", 12),
                    4});
}

TEST_F(RuleChangeTest, HttpRuleGoesOut) {
    EXPECT_EQ(CheckHttpRule(Http()), 0u);
    EXPECT_EQ(AddHttpRule(Http()), 9u);
    ExpectAddition({"gulm", 352, kAddHttp,
                    Field("203.0.113.80", 256) + Field("80", 12) + Field("UP", 5) +
                        Field("00:11:22:33:44:55", 18) + Field("GET,POST", 64) +
                        Field("200,404", 256) + Field("Host", 256) + Field("", 52),
                    4});
}

TEST_F(RuleChangeTest, WhatMayBeMissingIsEmpty) {
    for (const char *pcMissing : {static_cast<const char *>(nullptr), ""}) {
        MirrorRuleTexts stMirror = kMirror;
        stMirror.pcRemoteAddress = stMirror.pcHostMac = pcMissing;
        EXPECT_EQ(AddMirrorRule(stMirror), 7u);
        EXPECT_EQ(OnlyRequest(), MirrorBytes({"", "80", "UP", "TCP", "", "::1", "9000"}));
        ForwardRuleTexts stForward = kForward;
        stForward.pcRemoteAddress = stForward.pcHostMac = stForward.pcForwardToIp = pcMissing;
        EXPECT_EQ(AddForwardRule(stForward), 8u);
        EXPECT_EQ(OnlyRequest(), ForwardBytes({"", "80", "TCP", "", "", "9000"}));
        const HttpRuleTexts stHttp = {pcMissing, -1, "UP", pcMissing};
        EXPECT_EQ(AddHttpRule(stHttp), 9u);
        EXPECT_EQ(OnlyRequest(), HttpBytes({"", "-1", "UP", "", "", "", ""}));
    }
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(RuleChangeTest, WhatIsRequiredMustBeThere) {
    for (const char *pcMissing : {static_cast<const char *>(nullptr), ""}) {
        MirrorRuleTexts stMirror = kMirror;
        stMirror.pcRemotePort = pcMissing;
        ExpectRefused(AddMirrorRule(stMirror), {1});
        stMirror = kMirror;
        stMirror.pcDirection = pcMissing;
        ExpectRefused(AddMirrorRule(stMirror), {2});
        stMirror = kMirror;
        stMirror.pcProtocol = pcMissing;
        ExpectRefused(AddMirrorRule(stMirror), {3});
        stMirror = kMirror;
        stMirror.pcMirrorToIp = pcMissing;
        ExpectRefused(AddMirrorRule(stMirror), {5});
        ForwardRuleTexts stForward = kForward;
        stForward.pcRemotePort = pcMissing;
        ExpectRefused(AddForwardRule(stForward), {1});
        stForward = kForward;
        stForward.pcProtocol = pcMissing;
        ExpectRefused(AddForwardRule(stForward), {2});
        HttpRuleTexts stHttp = Http();
        stHttp.pcDirection = pcMissing;
        ExpectRefused(CheckHttpRule(stHttp), {2});
        ExpectRefused(AddHttpRule(stHttp), {2});
    }
}

// What is missing is seen before what is too long.
TEST_F(RuleChangeTest, MissingTextComesFirst) {
    const std::string s256(256, 'a');
    MirrorRuleTexts stMirror = kMirror;
    stMirror.pcRemoteAddress = s256.c_str();
    stMirror.pcDirection = nullptr;
    ExpectRefused(AddMirrorRule(stMirror), {2});
}

/// Sends a rule with one text of that many bytes.
struct Sized {
    const char *pcName;
    size_t uiSize;  ///< of the field
    size_t uiAt;    ///< in the request
    std::function<uint32_t(const char *)> fnAdd;
};

template <class Texts>
std::function<uint32_t(const char *)> Adding(uint32_t (*pfnAdd)(const Texts &), Texts stTexts,
                                             const char *Texts::*pcText) {
    return [=](const char *pcValue) {
        Texts stSent = stTexts;
        stSent.*pcText = pcValue;
        return pfnAdd(stSent);
    };
}

TEST_F(RuleChangeTest, TextsMustFitTheirFields) {
    using M = MirrorRuleTexts;
    using F = ForwardRuleTexts;
    using H = HttpRuleTexts;
    const Sized astSized[] = {
        {"mirror address", 256, 0, Adding(AddMirrorRule, kMirror, &M::pcRemoteAddress)},
        {"mirror port", 12, 256, Adding(AddMirrorRule, kMirror, &M::pcRemotePort)},
        {"mirror direction", 5, 268, Adding(AddMirrorRule, kMirror, &M::pcDirection)},
        {"mirror protocol", 4, 273, Adding(AddMirrorRule, kMirror, &M::pcProtocol)},
        {"mirror MAC", 18, 277, Adding(AddMirrorRule, kMirror, &M::pcHostMac)},
        {"mirror IP", 40, 295, Adding(AddMirrorRule, kMirror, &M::pcMirrorToIp)},
        {"forward address", 256, 0, Adding(AddForwardRule, kForward, &F::pcRemoteAddress)},
        {"forward port", 12, 256, Adding(AddForwardRule, kForward, &F::pcRemotePort)},
        {"forward protocol", 4, 268, Adding(AddForwardRule, kForward, &F::pcProtocol)},
        {"forward MAC", 18, 272, Adding(AddForwardRule, kForward, &F::pcHostMac)},
        {"forward IP", 40, 290, Adding(AddForwardRule, kForward, &F::pcForwardToIp)},
        {"HTTP address", 256, 0, Adding(AddHttpRule, Http(), &H::pcRemoteAddress)},
        {"HTTP direction", 5, 268, Adding(AddHttpRule, Http(), &H::pcDirection)},
        {"HTTP MAC", 18, 273, Adding(AddHttpRule, Http(), &H::pcHostMac)},
    };
    for (const Sized &stSized : astSized) {
        SCOPED_TRACE(stSized.pcName);
        const std::string sFits(stSized.uiSize - 1, 'f');
        EXPECT_NE(stSized.fnAdd(sFits.c_str()), kMinusOne);
        EXPECT_EQ(OnlyRequest().substr(stSized.uiAt, stSized.uiSize), Field(sFits, stSized.uiSize));
        const std::string sLong(stSized.uiSize, 'l');
        ExpectRefused(stSized.fnAdd(sLong.c_str()), {static_cast<uint32_t>(stSized.uiSize)});
        const std::string sLonger(100000, 'l');
        ExpectRefused(stSized.fnAdd(sLonger.c_str()), {100000});
    }
}

TEST_F(RuleChangeTest, CollectorPortHasFiveCharacters) {
    for (const int32_t iPort : {0, -1, -9999, 65535, 99999}) {
        MirrorRuleTexts stMirror = kMirror;
        stMirror.iMirrorToPort = iPort;
        EXPECT_EQ(AddMirrorRule(stMirror), 7u);
        EXPECT_EQ(OnlyRequest().substr(335), Field(std::to_string(iPort), 12));
        ForwardRuleTexts stForward = kForward;
        stForward.iForwardToPort = iPort;
        EXPECT_EQ(AddForwardRule(stForward), 8u);
        EXPECT_EQ(OnlyRequest().substr(330), Field(std::to_string(iPort), 12));
    }
    for (const int32_t iPort : {100000, -10000, INT32_MAX, INT32_MIN}) {
        MirrorRuleTexts stMirror = kMirror;
        stMirror.iMirrorToPort = iPort;
        ExpectRefused(AddMirrorRule(stMirror), {6});
        ForwardRuleTexts stForward = kForward;
        stForward.iForwardToPort = iPort;
        ExpectRefused(AddForwardRule(stForward), {5});
    }
}

TEST_F(RuleChangeTest, RemotePortOfAnHttpRuleIsAnyNumber) {
    for (const int32_t iPort : {0, 65536, INT32_MAX, INT32_MIN}) {
        HttpRuleTexts stHttp = Http();
        stHttp.iRemotePort = iPort;
        EXPECT_EQ(AddHttpRule(stHttp), 9u);
        EXPECT_EQ(OnlyRequest().substr(256, 12), Field(std::to_string(iPort), 12));
    }
}

TEST_F(RuleChangeTest, RefusedAdditions) {
    Refuse(kAddMirror);
    Refuse(kAddForward);
    Refuse(kAddHttp);
    EXPECT_EQ(AddMirrorRule(kMirror), kMinusOne);
    EXPECT_EQ(AddForwardRule(kForward), kMinusOne);
    EXPECT_EQ(AddHttpRule(Http()), kMinusOne);
    EXPECT_EQ(TimesRecorded(stPlatform, kSharedFile, kRefused), 3u);
    // What a refusal brings along is no number.
    stPlatform.mapReplies[kAddMirror] = {kRefused, Word(5)};
    EXPECT_EQ(AddMirrorRule(kMirror), kMinusOne);
}

TEST_F(RuleChangeTest, AdditionWithoutANumberIsNone) {
    stPlatform.mapReplies[kAddMirror] = stPlatform.mapReplies[kAddForward] =
        stPlatform.mapReplies[kAddHttp] = {0, ""};
    EXPECT_EQ(AddMirrorRule(kMirror), kMinusOne);
    EXPECT_EQ(AddForwardRule(kForward), kMinusOne);
    EXPECT_EQ(AddHttpRule(Http()), kMinusOne);
    EXPECT_EQ(stPlatform.astRpcs.size(), 3u);
    stPlatform.mapReplies[kAddMirror] = {0, Word(0)};
    EXPECT_EQ(AddMirrorRule(kMirror), 0u);
}

TEST_F(RuleChangeTest, DeletionsHandOnTheReply) {
    EXPECT_EQ(DeleteMirrorRule(5), 3u);
    ExpectOnlyRpc(stPlatform, {"gulm", 354, kDelMirror, Word(5), 4});
    stPlatform.ClearRecords();
    EXPECT_EQ(DeleteForwardRule(kMinusOne), 4u);
    ExpectOnlyRpc(stPlatform, {"gulm", 351, kDelForward, Word(kMinusOne), 4});
    stPlatform.mapReplies[kDelMirror] = {0, ""};
    EXPECT_EQ(DeleteMirrorRule(5), 0u);
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(RuleChangeTest, DeletionOfAnHttpRuleHasNoReply) {
    stPlatform.mapReplies[kDelHttp] = {0, Word(77)};
    EXPECT_EQ(DeleteHttpRule(0x01020304), 0u);
    ExpectOnlyRpc(stPlatform, {"gulm", 352, kDelHttp, "\x04\x03\x02\x01", 4});
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(RuleChangeTest, RefusedDeletions) {
    Refuse(kDelMirror);
    Refuse(kDelForward);
    Refuse(kDelHttp);
    EXPECT_EQ(DeleteMirrorRule(5), kMinusOne);
    EXPECT_TRUE(HasRecorded(kRefused, {5}));
    EXPECT_EQ(DeleteForwardRule(6), kMinusOne);
    EXPECT_TRUE(HasRecorded(kRefused, {6}));
    EXPECT_EQ(DeleteHttpRule(kMinusOne), kMinusOne);
    EXPECT_EQ(TimesRecorded(stPlatform, "jni_http_capture.cpp", kRefused, {kMinusOne}), 1u);
}

}  // namespace
}  // namespace wap::test
