// Limiting how fast a host may be.
#include <string>
#include <vector>

#include "access/jni_attach_control.h"
#include "unit/attach/attach_home.h"

namespace wap::test {
namespace {

class SpeedLimitTest : public AttachTest {};

TEST_F(SpeedLimitTest, AKnownHostGetsNewLimitsInItsRecord) {
    stHome.astRecords = {{5, kMacB}, {6, kMacA, 7, 0, 100, 200, 30, 40, 0x11223344}};
    EXPECT_EQ(VT_JNI_setLANHostSpeedLimit(kMacA, 0x01020304, 0xFFFFFFFF), 0u);
    ExpectSent(FilterRequests() + ListRequests({5, 6}) +
                   SetRequest({6, kMacA, 1, 0, 0x01020304, 0xFFFFFFFF, 30, 40, 0x11223344}, 0x3D),
               std::string("\x06\0\0\0"
                           "02:00:00:00:00:0A\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0"
                           "\x01\0\0\0\0\0\0\0\x04\x03\x02\x01\xFF\xFF\xFF\xFF\x1E\0\0\0\x28\0\0\0"
                           "\x44\x33\x22\x11\x06\0\0\0\x3D\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0",
                           84));
}

TEST_F(SpeedLimitTest, AnUnknownHostGetsARecord) {
    stHome.astRecords = {{5, kMacB}};
    EXPECT_EQ(VT_JNI_setLANHostSpeedLimit(kMacA, 1000, 2000), 0u);
    ExpectSent(
        FilterRequests() + ListRequests({5}) + AddRequest({0, kMacA, 1, 1, 1000, 2000}, 0xFF),
        std::string("02:00:00:00:00:0A\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0"
                    "\x01\0\0\0\x01\0\0\0\xE8\x03\0\0\xD0\x07\0\0\0\0\0\0\0\0\0\0\0\0\0\0"
                    "\0\0\0\0\xFF\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0",
                    80));
}

TEST_F(SpeedLimitTest, LimitsThatAHostHasAreNotSent) {
    stHome.astRecords = {{5, kMacA, 1, 1, 10, 20}, {6, kMacB}};
    EXPECT_EQ(VT_JNI_setLANHostSpeedLimit(kMacA, 10, 20), 0u);
    EXPECT_EQ(Sent(), FilterRequests() + ListRequests({5, 6}));
    EXPECT_EQ(VT_JNI_setLANHostSpeedLimit(kMacB, 0, 0), 0u);
    EXPECT_EQ(Sent(), FilterRequests() + ListRequests({5, 6}));
}

TEST_F(SpeedLimitTest, OneLimitThatDiffersIsEnough) {
    for (const auto &[uiUp, uiDown] : std::vector<std::pair<uint32_t, uint32_t>>{
             {11, 20}, {10, 21}, {0, 20}, {20, 10}, {0, 0}}) {
        stHome.astRecords = {{5, kMacA, 1, 1, 10, 20}};
        EXPECT_EQ(VT_JNI_setLANHostSpeedLimit(kMacA, uiUp, uiDown), 0u);
        EXPECT_EQ(Sent(), FilterRequests() + ListRequests({5}) +
                              SetRequest({5, kMacA, 1, 1, uiUp, uiDown}, 0x3D));
    }
}

TEST_F(SpeedLimitTest, NoLimitsForAnUnknownHostSendNothing) {
    stHome.astRecords = {{5, kMacB}};
    EXPECT_EQ(VT_JNI_setLANHostSpeedLimit(kMacA, 0, 0), 0u);
    EXPECT_EQ(Sent(), FilterRequests() + ListRequests({5}));
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(SpeedLimitTest, OneLimitForAnUnknownHostMakesARecord) {
    EXPECT_EQ(VT_JNI_setLANHostSpeedLimit(kMacA, 0, 1), 0u);
    EXPECT_EQ(Sent(),
              FilterRequests() + ListRequests({}) + AddRequest({0, kMacA, 1, 1, 0, 1}, 0xFF));
    EXPECT_EQ(VT_JNI_setLANHostSpeedLimit(kMacB, 1, 0), 0u);
    EXPECT_EQ(Sent(),
              FilterRequests() + ListRequests({900}) + AddRequest({0, kMacB, 1, 1, 1, 0}, 0xFF));
}

TEST_F(SpeedLimitTest, HostsAreFoundWithoutRegardToCase) {
    stHome.astRecords = {{5, kMacA}, {6, kMacA}};
    EXPECT_EQ(VT_JNI_setLANHostSpeedLimit("02:00:00:00:00:0a", 1, 2), 0u);
    EXPECT_EQ(Sent(),
              FilterRequests() + ListRequests({5, 6}) + SetRequest({5, kMacA, 1, 1, 1, 2}, 0x3D));
}

TEST_F(SpeedLimitTest, LongMacsAreCutAtTheirField) {
    EXPECT_EQ(VT_JNI_setLANHostSpeedLimit("0123456789012345678901234567890123456789", 1, 2), 0u);
    EXPECT_EQ(Sent(), FilterRequests() + ListRequests({}) +
                          AddRequest({0, "0123456789012345678901234567890", 1, 1, 1, 2}, 0xFF));
}

TEST_F(SpeedLimitTest, EveryRefusalBecomesMinusOne) {
    stHome.astRecords = {{5, kMacA}};
    for (const uint32_t uiRpcId : {kFilterModeId, kListId, kRecordId, kSetId}) {
        stHome.RefuseAt(uiRpcId, 1);
        stPlatform.ClearRecords();
        EXPECT_EQ(VT_JNI_setLANHostSpeedLimit(kMacA, 1, 2), kMinusOne);
        EXPECT_EQ(Sent().back().uiRpcId, uiRpcId);
        // Each layer left its line, the last of them this feature's.
        EXPECT_EQ(stPlatform.astFaults.front().uiCode, kRefused);
        EXPECT_EQ(stPlatform.astFaults.back().sFile, kWorkerFile);
    }
    stHome.RefuseAt(kAddId, 1);
    EXPECT_EQ(VT_JNI_setLANHostSpeedLimit(kMacB, 1, 2), kMinusOne);
    EXPECT_EQ(stHome.astRecords, (std::vector<Record>{{5, kMacA}}));
}

TEST_F(SpeedLimitTest, TheFeaturesFunctionGivesTheServicesCode) {
    stHome.astRecords = {{5, kMacA}};
    stHome.RefuseAt(kSetId, 1);
    EXPECT_EQ(VT_API_setSpeedLimitInfo(kMacA, 1, 2), kRefused);
    EXPECT_EQ(stPlatform.astFaults.back().uiCode, kRefused);
    EXPECT_EQ(stPlatform.astFaults.back().auiArgs, (Args{1, 2, 0, 0}));
    stHome.RefuseAt(kAddId, 1);
    EXPECT_EQ(VT_API_setSpeedLimitInfo(kMacB, 1, 2), kRefused);
}

TEST_F(SpeedLimitTest, MissingArgumentsAreRefusedWithoutARequest) {
    EXPECT_EQ(VT_JNI_setLANHostSpeedLimit(nullptr, 1, 2), kMinusOne);
    EXPECT_EQ(VT_API_setSpeedLimitInfo(nullptr, 1, 2), 0xF7702001u);
    EXPECT_EQ(VT_API_setSpeedLimit(nullptr, 1, 1, 2), 0xF7702001u);
    EXPECT_EQ(VT_API_addSpeedLimit(nullptr, 1, 1, 2), 0xF7702001u);
    EXPECT_TRUE(Sent().empty());
    // Java's call leaves two: the worker's, and the entry's that passes it on.
    EXPECT_EQ(FaultCodes(stPlatform), (Codes(5, 0xF7702001)));
}

TEST_F(SpeedLimitTest, RepliesWithoutAnEndAreHarmless) {
    stPlatform.fnReply = [this](const RpcRecord &stRpc) -> std::optional<Reply> {
        return stRpc.uiRpcId == kFilterModeId ? stHome.AnswerTo(stRpc)
                                              : Reply{0, std::string(2000, '\xFF')};
    };
    const uint32_t uiResult = VT_JNI_setLANHostSpeedLimit(kMacA, 1, 2);
    EXPECT_EQ(uiResult, 0u);
    EXPECT_EQ(Sent().back().uiRpcId, kAddId);
}

}  // namespace
}  // namespace wap::test
