// The counters, speeds, limits and marks of the flows.
#include <string>

#include "unit/flows/flows_fixture.h"
#include "wan/jni_traffic_qos_srv.h"

namespace wap::test {
namespace {

struct Query {
    const char *pcName;
    uint32_t (*pfnWorker)(uint32_t, FlowAnswer &);
    uint32_t uiRpcId;
    uint32_t uiRspCap;
};

class FlowNumbersTest : public FlowTest, public ::testing::WithParamInterface<Query> {
  protected:
    static std::string Ask(uint32_t uiFlow = 7, uint32_t uiWanted = 0) {
        FlowAnswer stAnswer = {"untouched"};
        EXPECT_EQ(GetParam().pfnWorker(uiFlow, stAnswer), uiWanted);
        return stAnswer.acText;
    }
};

TEST_P(FlowNumbersTest, AsksWithTheFlow) {
    (void)Ask(0xFFFFFFFE);
    ExpectOnlyRpc(stPlatform, Request(GetParam().uiRpcId, Word(0xFFFFFFFE), GetParam().uiRspCap));
    ExpectNoFaults();
    EXPECT_EQ(EntryTraces(stPlatform), Calls{});
}

TEST_P(FlowNumbersTest, RefusalIsRecordedWithTheFlow) {
    Refuse(GetParam().uiRpcId);
    EXPECT_EQ(Ask(7, kRefused), "untouched");
    ExpectRecorded(kRefused, {7, 0, 0, 0});
}

INSTANTIATE_TEST_SUITE_P(Workers, FlowNumbersTest,
                         ::testing::Values(Query{"Stats", GetFlowStats, kAskStats, 16},
                                           Query{"Speed", GetFlowSpeed, kAskSpeed, 8},
                                           Query{"Limit", GetFlowSpeedLimit, kAskLimit, 8}),
                         [](const auto &stInfo) { return stInfo.param.pcName; });

class FlowAnswerTest : public FlowTest {
  protected:
    std::string Answer(uint32_t (*pfnWorker)(uint32_t, FlowAnswer &), uint32_t uiRpcId,
                       const std::string &sReply) {
        stPlatform.mapReplies[uiRpcId] = {0, sReply};
        FlowAnswer stAnswer = {};
        EXPECT_EQ(pfnWorker(7, stAnswer), 0u);
        return stAnswer.acText;
    }
};

TEST_F(FlowAnswerTest, CountersHave64BitsWithoutSign) {
    EXPECT_EQ(Answer(GetFlowStats, kAskStats, Word(1) + Word(2) + Word(3) + Word(4)),
              "{\"Result\":0,\"UsStats\":8589934593,\"DsStats\":17179869187}");
    EXPECT_EQ(Answer(GetFlowStats, kAskStats, std::string(16, '\xFF')),
              "{\"Result\":0,\"UsStats\":18446744073709551615,"
              "\"DsStats\":18446744073709551615}");
}

TEST_F(FlowAnswerTest, SpeedsAreSigned) {
    const std::string sReply = Word(0x80000000) + Word(0x7FFFFFFF);
    EXPECT_EQ(Answer(GetFlowSpeed, kAskSpeed, sReply),
              "{\"Result\":0,\"upSpeed\":-2147483648,\"downSpeed\":2147483647}");
}

// The keys differ from those of the speeds in the case of their first letter.
TEST_F(FlowAnswerTest, LimitsHaveKeysOfTheirOwn) {
    EXPECT_EQ(Answer(GetFlowSpeedLimit, kAskLimit, Word(5) + Word(0xFFFFFFFF)),
              "{\"Result\":0,\"UpSpeed\":5,\"DownSpeed\":-1}");
}

TEST_F(FlowAnswerTest, ShortRepliesAreFilledWithZeros) {
    EXPECT_EQ(Answer(GetFlowStats, kAskStats, "\x01"),
              "{\"Result\":0,\"UsStats\":1,\"DsStats\":0}");
    EXPECT_EQ(Answer(GetFlowSpeed, kAskSpeed, ""), "{\"Result\":0,\"upSpeed\":0,\"downSpeed\":0}");
    stPlatform.mapReplies[kAskDscp] = {0, ""};
    EXPECT_EQ(GetFlowDscp(7), 0u);
}

TEST_F(FlowAnswerTest, MarkIsGivenAsItIs) {
    for (const uint32_t uiMark : {0u, 46u, 0x80000000u}) {
        stPlatform.ClearRecords();
        stPlatform.mapReplies[kAskDscp] = {0, Word(uiMark)};
        EXPECT_EQ(GetFlowDscp(3), uiMark);
        ExpectOnlyRpc(stPlatform, Request(kAskDscp, Word(3)));
        ExpectNoFaults();
    }
}

TEST_F(FlowAnswerTest, MarkThatIsRefusedIsMinusOne) {
    stPlatform.mapReplies[kAskDscp] = {kRefused, Word(46)};
    EXPECT_EQ(GetFlowDscp(3), kMinusOne);
    ExpectRecorded(kRefused, {3, 0, 0, 0});
}

}  // namespace
}  // namespace wap::test
