// Putting traffic into flows and taking it out, and setting limits and marks.
#include <functional>
#include <string>

#include "unit/flows/flows_fixture.h"
#include "wan/jni_traffic_qos_srv.h"

namespace wap::test {
namespace {

/// The two changes of a member differ in the RPC alone.
struct MemberChange {
    const char *pcName;
    uint32_t (*pfnWorker)(const char *, const char *, uint32_t);
    uint32_t uiRpcId;
};

class MemberChangeTest : public FlowTest, public ::testing::WithParamInterface<MemberChange> {
  protected:
    uint32_t Change(const char *pcAddress, const char *pcPort, uint32_t uiFlow) {
        stPlatform.ClearRecords();
        return GetParam().pfnWorker(pcAddress, pcPort, uiFlow);
    }
    void ExpectSent(const std::string &sAddress, const std::string &sPort,
                    const std::string &sFlow) {
        ExpectOnlyRpc(stPlatform,
                      Request(GetParam().uiRpcId, FlowMemberBytes(sAddress, sPort, sFlow)));
        ExpectNoFaults();
    }
    void ExpectRefused(uint32_t uiCode, const Args &auiArgs) {
        EXPECT_TRUE(stPlatform.astRpcs.empty());
        EXPECT_EQ(FaultCodes(stPlatform), Codes{uiCode});
        ExpectRecorded(uiCode, auiArgs);
    }
};

TEST_P(MemberChangeTest, SendsAddressPortAndFlow) {
    EXPECT_EQ(Change("198.51.100.7", "443", 12), 0u);
    ExpectSent("198.51.100.7", "443", "12");
    EXPECT_EQ(stPlatform.astRpcs.at(0).uiReqLen, 272u);
    EXPECT_EQ(EntryTraces(stPlatform), Calls{});
}

TEST_P(MemberChangeTest, WithoutAddressTheFieldIsEmpty) {
    EXPECT_EQ(Change(nullptr, "53", 1), 0u);
    ExpectSent("", "53", "1");
    EXPECT_EQ(Change("", "53", 1), 0u);
    ExpectSent("", "53", "1");
}

TEST_P(MemberChangeTest, WithoutPortNobodyIsAsked) {
    EXPECT_EQ(Change("198.51.100.7", nullptr, 7), kMinusOne);
    ExpectRefused(kNullArgument, {7, 0, 0, 0});
}

TEST_P(MemberChangeTest, AddressHas255BytesAtMost) {
    const std::string sLongest(255, 'a');
    EXPECT_EQ(Change(sLongest.c_str(), "1", 3), 0u);
    ExpectSent(sLongest, "1", "3");
    EXPECT_EQ(Change((sLongest + "b").c_str(), "1", 3), kMinusOne);
    ExpectRefused(kTooLong, {3, 256, 1, 0});
}

TEST_P(MemberChangeTest, PortHas11BytesAtMost) {
    EXPECT_EQ(Change("a", "12345678901", 3), 0u);
    ExpectSent("a", "12345678901", "3");
    EXPECT_EQ(Change("a", "123456789012", 3), kMinusOne);
    ExpectRefused(kTooLong, {3, 1, 12, 0});
    EXPECT_EQ(Change(nullptr, "123456789012", 3), kMinusOne);
    ExpectRefused(kTooLong, {3, 0, 12, 0});
}

TEST_P(MemberChangeTest, FlowHasThreeCharactersAtMost) {
    for (const int32_t iFlow : {0, 9, 999, -1, -99}) {
        EXPECT_EQ(Change("a", "1", static_cast<uint32_t>(iFlow)), 0u);
        ExpectSent("a", "1", std::to_string(iFlow));
    }
    for (const int32_t iFlow : {1000, -100, INT32_MAX, INT32_MIN}) {
        const auto uiFlow = static_cast<uint32_t>(iFlow);
        EXPECT_EQ(Change("a", "1", uiFlow), kMinusOne);
        ExpectRefused(kTooLong, {uiFlow, 1, 1, 0});
    }
}

TEST_P(MemberChangeTest, RefusalIsRecordedWithTheFlow) {
    Refuse(GetParam().uiRpcId);
    EXPECT_EQ(Change("a", "1", 5), kMinusOne);
    EXPECT_EQ(stPlatform.astRpcs.size(), 1u);
    ExpectRecorded(kRefused, {5, 0, 0, 0});
}

TEST_P(MemberChangeTest, ReplyIsNotInterpreted) {
    stPlatform.mapReplies[GetParam().uiRpcId] = {0, Word(0xFFFFFFFF)};
    EXPECT_EQ(Change("a", "1", 5), 0u);
}

INSTANTIATE_TEST_SUITE_P(Workers, MemberChangeTest,
                         ::testing::Values(MemberChange{"Add", AddFlowTraffic, kAdd},
                                           MemberChange{"Delete", DeleteFlowTraffic, kDelete}),
                         [](const auto &stInfo) { return stInfo.param.pcName; });

/// The changes that are words.
struct WordChange {
    const char *pcName;
    std::function<uint32_t()> fnChange;
    uint32_t uiRpcId;
    std::string sRequest;
    Args auiRecorded;
};

class WordChangeTest : public FlowTest, public ::testing::WithParamInterface<WordChange> {};

TEST_P(WordChangeTest, SendsItsWords) {
    EXPECT_EQ(GetParam().fnChange(), 0u);
    ExpectOnlyRpc(stPlatform, Request(GetParam().uiRpcId, GetParam().sRequest));
    ExpectNoFaults();
    EXPECT_EQ(EntryTraces(stPlatform), Calls{});
}

TEST_P(WordChangeTest, RefusalIsRecordedWithTheWords) {
    Refuse(GetParam().uiRpcId);
    EXPECT_EQ(GetParam().fnChange(), kMinusOne);
    ExpectRecorded(kRefused, GetParam().auiRecorded);
}

INSTANTIATE_TEST_SUITE_P(
    Workers, WordChangeTest,
    ::testing::Values(WordChange{"DeleteAll", [] { return DeleteAllFlowTraffic(1000); }, kDeleteAll,
                                 Word(1000), Args{1000, 0, 0, 0}},
                      WordChange{"Limit", [] { return SetFlowSpeedLimit(0xFFFFFFFE, 1024, -2); },
                                 kSetLimit, Word(0xFFFFFFFE) + Word(1024) + Word(0xFFFFFFFE),
                                 Args{0xFFFFFFFE, 1024, 0xFFFFFFFE, 0}},
                      WordChange{"Dscp", [] { return SetFlowDscp(7, 0xFFFFFFFF); }, kSetDscp,
                                 Word(7) + Word(0xFFFFFFFF), Args{7, 0xFFFFFFFF, 0, 0}}),
    [](const auto &stInfo) { return stInfo.param.pcName; });

}  // namespace
}  // namespace wap::test
