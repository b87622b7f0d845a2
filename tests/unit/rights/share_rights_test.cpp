// The right of the FTP and of the Samba service, and how a right splits into access flags.
#include "unit/rights/rights_fixture.h"

namespace wap::test {
namespace {

class SplitRightTest : public RightsTest {};

TEST_F(SplitRightTest, FourRightsAreTwoFlags) {
    const struct {
        uint8_t ucRight;
        uint32_t uiFirst;
        uint32_t uiSecond;
    } astRows[] = {{0, 0, 0}, {1, 1, 0}, {2, 0, 1}, {3, 1, 1}};
    for (const auto &stRow : astRows) {
        uint32_t uiFirst = 77;
        uint32_t uiSecond = 77;
        EXPECT_EQ(VT_OSGI_Handle_EnabletoACL(stRow.ucRight, &uiFirst, &uiSecond), 0u);
        EXPECT_EQ(uiFirst, stRow.uiFirst) << int{stRow.ucRight};
        EXPECT_EQ(uiSecond, stRow.uiSecond) << int{stRow.ucRight};
    }
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(SplitRightTest, OthersAreRefusedAndChangeNothing) {
    constexpr uint8_t kOthers[] = {4, 5, 127, 128, 255};
    for (const uint8_t ucRight : kOthers) {
        uint32_t uiFirst = 77;
        uint32_t uiSecond = 78;
        stPlatform.ClearRecords();
        EXPECT_EQ(VT_OSGI_Handle_EnabletoACL(ucRight, &uiFirst, &uiSecond), kMinusOne);
        EXPECT_EQ(uiFirst, 77u);
        EXPECT_EQ(uiSecond, 78u);
        EXPECT_EQ(Recorded(kWorkerFile, kMinusOne, {ucRight}), 1u);
    }
}

TEST_F(SplitRightTest, NullArgumentsAreRefused) {
    uint32_t uiFlag = 77;
    EXPECT_EQ(VT_OSGI_Handle_EnabletoACL(1, nullptr, &uiFlag), kNullArgument);
    EXPECT_EQ(VT_OSGI_Handle_EnabletoACL(1, &uiFlag, nullptr), kNullArgument);
    EXPECT_EQ(VT_OSGI_Handle_EnabletoACL(9, nullptr, nullptr), kNullArgument);
    EXPECT_EQ(uiFlag, 77u);
    EXPECT_EQ(Recorded(kWorkerFile, kNullArgument), 3u);
}

class ShareRightTest : public ServiceTest {
  protected:
    jint Set(jint iRight, jint iValue) {
        const jint iResult = stService.pfnSetRight(&stEnv, stEnv.JavaObject(), iRight, iValue);
        stEnv.EndCall();
        return iResult;
    }
    WantedRpc SetRpc(const std::string &sRequest) const {
        return ProxyRpc(stService.uiSet, sRequest);
    }
};

TEST_P(ShareRightTest, EachRightIsSentInItsWords) {
    EXPECT_EQ(Set(1, 7), 0);
    ExpectAsked({SetRpc(Word(1) + Word(7) + Word(1) + Word(0) + Word(0x0F))});
    EXPECT_EQ(Set(2, 0), 0);
    ExpectAsked({SetRpc(Word(1) + Word(0) + Word(0) + Word(1) + Word(0x0F))});
    EXPECT_EQ(Set(3, 0x12345678), 0);
    ExpectAsked({SetRpc(Word(1) + Word(0x12345678) + Word(1) + Word(1) + Word(0x0F))});
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_P(ShareRightTest, RightZeroTurnsOffAndLeavesTheFlagsAlone) {
    EXPECT_EQ(Set(0, -1), 0);
    ExpectAsked({SetRpc(Word(0) + Word(0xFFFFFFFF) + Word(0) + Word(0) + Word(0x03))});
}

TEST_P(ShareRightTest, OnlyTheLowByteCounts) {
    EXPECT_EQ(Set(256, 5), 0);
    ExpectAsked({SetRpc(Word(0) + Word(5) + Word(0) + Word(0) + Word(0x03))});
    EXPECT_EQ(Set(-254, 5), 0);
    ExpectAsked({SetRpc(Word(1) + Word(5) + Word(0) + Word(1) + Word(0x0F))});
    EXPECT_EQ(stService.pfnSetWorker(0xABCDEF01, 5), 0u);
    ExpectAsked({SetRpc(Word(1) + Word(5) + Word(1) + Word(0) + Word(0x0F))});
}

TEST_P(ShareRightTest, OtherRightsAreRefusedWithoutAsking) {
    for (const jint iRight : {4, 255, -1, 0x104}) {
        stPlatform.ClearRecords();
        EXPECT_EQ(Set(iRight, 9), -1);
        ExpectNobodyAsked();
        const auto uiRight = static_cast<uint32_t>(iRight);
        EXPECT_EQ(Recorded(kWorkerFile, kMinusOne, {uiRight & 0xFF}), 1u);
        EXPECT_EQ(Recorded(kWorkerFile, kMinusOne, {uiRight, 9}), 1u);
        EXPECT_EQ(Recorded(kConfigFile, kMinusOne, {uiRight, 9}), 1u);
        EXPECT_EQ(stService.pfnSetWorker(uiRight, 9), kMinusOne);
        ExpectNobodyAsked();
    }
}

TEST_P(ShareRightTest, RefusalIsMinusOneAndRecorded) {
    Refuse(stService.uiSet);
    EXPECT_EQ(Set(3, 8), -1);
    EXPECT_EQ(FaultCodes(stPlatform), (Codes{kRefused, kMinusOne}));
    EXPECT_EQ(Recorded(kWorkerFile, kRefused, {stService.uiSet}), 1u);
    EXPECT_EQ(Recorded(kConfigFile, kMinusOne, {3, 8}), 1u);
    EXPECT_EQ(stService.pfnSetWorker(0, 8), kMinusOne);
}

WAP_EACH_SERVICE(ShareRightTest);

}  // namespace
}  // namespace wap::test
