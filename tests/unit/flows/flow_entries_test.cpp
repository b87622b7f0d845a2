// The Java methods of the flows, as Java sees them.
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_TrafficQoSServiceJNI.h>

#include <string>

#include "support/entry_calls.h"
#include "support/entry_table_flows.h"
#include "unit/flows/flows_fixture.h"

namespace wap::test {
namespace {

constexpr const char *kEntryFile = "TrafficQoSServiceJNI.cpp";
constexpr const char *kFault = "{ \"Result\": -1 }";

class FlowEntryTest : public FlowTest, public ::testing::WithParamInterface<Entry> {
  protected:
    const Entry &stEntry = GetParam();
};

TEST_P(FlowEntryTest, TracesTheCallFirst) {
    (void)stEntry.fnCall(stEnv);
    ASSERT_FALSE(stPlatform.astTraces.empty());
    const TraceRecord &stTrace = stPlatform.astTraces[0];
    EXPECT_EQ(stTrace.sFile, kEntryFile);
    EXPECT_EQ(stTrace.sText, "\r\n " + stEntry.sSymbol + " called \r\n");
    EXPECT_EQ(stTrace.uiMid, 249u);
}

TEST_P(FlowEntryTest, AnswersFromAWorkingGateway) {
    EXPECT_EQ(stEntry.fnCall(stEnv), stEntry.stGood);
    EXPECT_EQ(RpcIds(stPlatform), Codes{stEntry.uiRpcId});
    ExpectNoFaults();
}

TEST_P(FlowEntryTest, AnswersItsFailureWhenRefusedAndWorksAgain) {
    Refuse(stEntry.uiRpcId);
    EXPECT_EQ(stEntry.fnCall(stEnv), stEntry.stFailure);
    EXPECT_TRUE(HasFault(stPlatform, kRefused));
    EXPECT_EQ(TimesRecorded(stPlatform, kEntryFile, kMinusOne), 1u);
    stEnv.EndCall();
    FurnishFlows(stWorld);
    EXPECT_EQ(stEntry.fnCall(stEnv), stEntry.stGood);
}

TEST_P(FlowEntryTest, SurvivesEveryFailureOfJava) {
    const std::string &sMethod = stEntry.sMethod;
    const bool bHasText =
        stEntry.stGood.sText || sMethod == "addTrafficToFlow" || sMethod == "deleteTrafficFromFlow";
    EXPECT_EQ(ExpectNothingWithoutJava(stEntry, FurnishFlows) > 0, bHasText);
}

INSTANTIATE_TEST_SUITE_P(Methods, FlowEntryTest, ::testing::ValuesIn(FlowEntries()),
                         [](const auto &stInfo) { return stInfo.param.sMethod; });

class FlowArgumentsTest : public FlowTest {
  protected:
    jint Add(jstring jAddress, jstring jPort, jint iFlow = 1) {
        stPlatform.ClearRecords();
        const jint iResult = WAP_METHOD(TrafficQoS, addTrafficToFlow)(&stEnv, stEnv.JavaObject(),
                                                                      jAddress, jPort, iFlow);
        stEnv.EndCall();
        return iResult;
    }
    jint Delete(jstring jAddress, jstring jPort, jint iFlow = 1) {
        stPlatform.ClearRecords();
        const jint iResult = WAP_METHOD(TrafficQoS, deleteTrafficFromFlow)(
            &stEnv, stEnv.JavaObject(), jAddress, jPort, iFlow);
        stEnv.EndCall();
        return iResult;
    }
    jstring LongText(size_t uiLength) { return stEnv.JavaText(std::u16string(uiLength, u'a')); }
    std::string Sent() { return stPlatform.astRpcs.at(0).sRequest; }
};

TEST_F(FlowArgumentsTest, ArgumentsReachTheirPlaces) {
    EXPECT_EQ(Add(stEnv.JavaText(u"there"), stEnv.JavaText(u"1"), 999), 0);
    EXPECT_EQ(Sent(), FlowMemberBytes("there", "1", "999"));
    EXPECT_EQ(Delete(stEnv.JavaText(u"caf\u00e9"), stEnv.JavaText(u"2"), -9), 0);
    EXPECT_EQ(Sent(), FlowMemberBytes("caf\xC3\xA9", "2", "-9"));
    stPlatform.ClearRecords();
    EXPECT_EQ(
        WAP_METHOD(TrafficQoS, setSpeedLimitByFlow)(&stEnv, stEnv.JavaObject(), 1000, -1, 2000), 0);
    EXPECT_EQ(Sent(), Word(1000) + Word(0xFFFFFFFF) + Word(2000));
    stPlatform.ClearRecords();
    EXPECT_EQ(WAP_METHOD(TrafficQoS, setDSCPRemarkByFlow)(&stEnv, stEnv.JavaObject(), -1, 63), 0);
    EXPECT_EQ(Sent(), Word(0xFFFFFFFF) + Word(63));
}

TEST_F(FlowArgumentsTest, AddressMayBeMissing) {
    for (const bool bNull : {false, true}) {
        const auto fnMissing = [&] { return bNull ? nullptr : stEnv.JavaText(u""); };
        EXPECT_EQ(Add(fnMissing(), stEnv.JavaText(u"53")), 0);
        EXPECT_EQ(Sent(), FlowMemberBytes("", "53", "1"));
        EXPECT_EQ(Delete(fnMissing(), stEnv.JavaText(u"53")), 0);
        EXPECT_EQ(Sent(), FlowMemberBytes("", "53", "1"));
    }
}

TEST_F(FlowArgumentsTest, PortMayNot) {
    for (const bool bNull : {false, true}) {
        const auto fnMissing = [&] { return bNull ? nullptr : stEnv.JavaText(u""); };
        EXPECT_EQ(Add(stEnv.JavaText(u"a"), fnMissing(), 6), -1);
        EXPECT_EQ(FaultCodes(stPlatform), Codes{kMinusOne});
        EXPECT_EQ(TimesRecorded(stPlatform, kEntryFile, kMinusOne, {6, 0, 0, 0}), 1u);
        EXPECT_EQ(Delete(stEnv.JavaText(u"a"), fnMissing(), 6), -1);
        EXPECT_EQ(TimesRecorded(stPlatform, kEntryFile, kMinusOne, {6, 0, 0, 0}), 1u);
        EXPECT_TRUE(stPlatform.astRpcs.empty());
    }
}

TEST_F(FlowArgumentsTest, WhatIsTooLongIsNotSent) {
    EXPECT_EQ(Add(LongText(255), stEnv.JavaText(u"1")), 0);
    EXPECT_EQ(stPlatform.astRpcs.size(), 1u);
    EXPECT_EQ(Add(LongText(256), stEnv.JavaText(u"1")), -1);
    EXPECT_TRUE(stPlatform.astRpcs.empty());
    EXPECT_EQ(Delete(LongText(256), stEnv.JavaText(u"1")), -1);
    EXPECT_TRUE(stPlatform.astRpcs.empty());
    EXPECT_EQ(Add(stEnv.JavaText(u"a"), LongText(12)), -1);
    EXPECT_TRUE(stPlatform.astRpcs.empty());
    EXPECT_EQ(Add(stEnv.JavaText(u"a"), stEnv.JavaText(u"1"), 1000), -1);
    EXPECT_TRUE(stPlatform.astRpcs.empty());
}

class FlowFaultTest : public FlowTest {
  protected:
    std::string Members() {
        const jstring jText =
            WAP_METHOD(TrafficQoS, getTrafficInfoByFlow)(&stEnv, stEnv.JavaObject(), 1);
        std::string sText = stEnv.Utf8Of(jText).value_or("null");
        stEnv.EndCall();
        return sText;
    }
};

TEST_F(FlowFaultTest, FlowWithoutMembersIsTold) {
    stPlatform.mapReplies[kAskMembers] = {0, Word(0)};
    EXPECT_EQ(Members(), kFault);
}

// Other queries about traffic tell such codes; the flows tell none.
TEST_F(FlowFaultTest, CodeIsAlwaysMinusOne) {
    stPlatform.mapReplies[kAskMembers] = {7, ""};
    EXPECT_EQ(Members(), kFault);
    stPlatform.mapReplies[kAskSpeed] = {7, ""};
    const jstring jText = WAP_METHOD(TrafficQoS, getSpeedByFlow)(&stEnv, stEnv.JavaObject(), 1);
    EXPECT_EQ(stEnv.Utf8Of(jText), kFault);
}

// Java gets the object also when there is no memory to compose it: of the allocations, only those
// that carry it to Java can cost it.
TEST_F(FlowFaultTest, FaultIsToldWithoutMemory) {
    Refuse(kAskMembers);
    EXPECT_EQ(Members(), kFault);
    for (uint32_t uiAt = 1; uiAt < 20; ++uiAt) {
        stWorld.Plan({Op::kAlloc, uiAt, true});
        EXPECT_EQ(Members(), kFault) << uiAt;
        stWorld.Plan({});
    }
}

}  // namespace
}  // namespace wap::test
