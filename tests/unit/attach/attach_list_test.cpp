// Reading the attach-control list, and finding a host in it.
#include <string>
#include <vector>

#include "access/jni_attach_control.h"
#include "unit/attach/attach_home.h"

namespace wap::test {
namespace {

class AttachListTest : public AttachTest {
  protected:
    /// Reads the list; asRead has a text of 64 bytes for each record.
    uint32_t Read() {
        int iMark = 0;
        auto *pstMark = reinterpret_cast<AttachControl *>(&iMark);
        AttachControl *pstList = pstMark;
        uint32_t uiCount = 77;
        const uint32_t uiResult = VT_API_getAttachControlList(&pstList, &uiCount);
        asRead.clear();
        if (uiResult != 0) {
            EXPECT_EQ(pstList, pstMark);
            EXPECT_EQ(uiCount, 77u);
            return uiResult;
        }
        EXPECT_EQ(uiCount == 0, pstList == nullptr);
        for (uint32_t i = 0; i < uiCount; ++i) {
            asRead.emplace_back(reinterpret_cast<const char *>(pstList + i), 64);
        }
        VT_OS_MemFreeD(pstList, __FILE_NAME__, __LINE__);
        return 0;
    }

    std::vector<std::string> asRead;
};

TEST_F(AttachListTest, ReadsTheIndexAndThenEachRecordInOrder) {
    stHome.astRecords = {{5, kMacA, 1, 0, 100, 200, 30, 40, 0x55AA55AA},
                         {0xFFFFFFFE, kMacB, 0, 1, 0xFFFFFFFF, 1, 2, 3, 4}};
    EXPECT_EQ(Read(), 0u);
    EXPECT_EQ(Sent(), ListRequests({5, 0xFFFFFFFE}));
    EXPECT_EQ(asRead, (std::vector<std::string>{
                          Field(kMacA, 32) + Word(1) + Word(0) + Word(100) + Word(200) + Word(30) +
                              Word(40) + Word(0x55AA55AA) + Word(5),
                          Field(kMacB, 32) + Word(0) + Word(1) + Word(0xFFFFFFFF) + Word(1) +
                              Word(2) + Word(3) + Word(4) + Word(0xFFFFFFFE),
                      }));
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(AttachListTest, TakesSixtyFourBytesForEachRecord) {
    stHome.astRecords = {{5, kMacA}, {6, kMacB}, {7, kMacC}};
    stWorld.stAllocs.ClearRecords();
    EXPECT_EQ(Read(), 0u);
    ASSERT_EQ(stWorld.stAllocs.astLog.size(), 1u);
    EXPECT_EQ(stWorld.stAllocs.astLog[0].uiSize, 192u);
    EXPECT_EQ(stWorld.stAllocs.astLog[0].stPlace.sFile, kWorkerFile);
}

TEST_F(AttachListTest, EmptyListTakesOneRequestAndNoMemory) {
    EXPECT_EQ(Read(), 0u);
    EXPECT_EQ(Sent(), ListRequests({}));
    EXPECT_TRUE(asRead.empty());
    EXPECT_TRUE(stWorld.stAllocs.astLog.empty());
}

TEST_F(AttachListTest, HoldsAHundredAndTwentyEight) {
    std::vector<uint32_t> auiInsts;
    for (const std::string &sMac : ManyMacs(128)) {
        auiInsts.push_back(1000 + static_cast<uint32_t>(auiInsts.size()));
        stHome.astRecords.push_back({auiInsts.back(), sMac});
    }
    EXPECT_EQ(Read(), 0u);
    EXPECT_EQ(Sent(), ListRequests(auiInsts));
    EXPECT_EQ(asRead.size(), 128u);
}

TEST_F(AttachListTest, CountThatLiesEndsWithTheBlock) {
    std::string sIds;
    for (uint32_t i = 0; i < 140; ++i) {
        sIds += Word(2000 + i);
    }
    for (const uint32_t uiCount : {129u, 0x04000000u, 0x80000001u, 0xFFFFFFFFu}) {
        stPlatform.fnReply = nullptr;
        stPlatform.mapReplies[kListId] = {0, Word(uiCount) + sIds};
        stPlatform.mapReplies[kRecordId] = {0, std::string(64, '\xFF')};
        EXPECT_EQ(Read(), 0u);
        ASSERT_EQ(asRead.size(), 128u) << uiCount;
        // A MAC without an end gets one in its field, and the id is the one asked for.
        EXPECT_EQ(asRead[127],
                  std::string(31, '\xFF') + '\0' + std::string(28, '\xFF') + Word(2127));
        EXPECT_EQ(Sent().size(), 129u);
    }
}

TEST_F(AttachListTest, ShortRepliesLeaveZeros) {
    stPlatform.fnReply = nullptr;
    stPlatform.astNextReplies = {{0, Word(2)}, {0, "02:0"}, {0, ""}};
    EXPECT_EQ(Read(), 0u);
    EXPECT_EQ(Sent(), ListRequests({0, 0}));
    EXPECT_EQ(asRead, (std::vector<std::string>{Field("02:0", 64), std::string(64, '\0')}));
    stPlatform.astNextReplies = {{0, ""}};
    EXPECT_EQ(Read(), 0u);
    EXPECT_TRUE(asRead.empty());
}

TEST_F(AttachListTest, RefusedIndexGivesItsCode) {
    stHome.astRecords = {{5, kMacA}};
    stHome.RefuseAt(kListId, 1);
    EXPECT_EQ(Read(), kRefused);
    EXPECT_EQ(Sent(), ListRequests({}));
    EXPECT_EQ(FaultCodes(stPlatform), (Codes{kRefused, kRefused}));
    EXPECT_EQ(stPlatform.astFaults[1].sFile, kWorkerFile);
}

TEST_F(AttachListTest, OneRefusedRecordFailsTheWholeList) {
    stHome.astRecords = {{5, kMacA}, {6, kMacB}, {7, kMacC}};
    stHome.RefuseAt(kRecordId, 2);
    EXPECT_EQ(Read(), kRefused);
    EXPECT_EQ(Sent(), ListRequests({5, 6}));
    ASSERT_EQ(FaultCodes(stPlatform), (Codes{kRefused, kRefused}));
    EXPECT_EQ(stPlatform.astFaults[1].sFile, kWorkerFile);
    EXPECT_EQ(stPlatform.astFaults[1].auiArgs, (Args{1, 6, 0, 0}));
}

TEST_F(AttachListTest, WithoutMemoryNoRecordIsAskedFor) {
    stHome.astRecords = {{5, kMacA}, {6, kMacB}};
    stWorld.Plan({Op::kAlloc, 1, false});
    EXPECT_EQ(Read(), 1u);
    EXPECT_EQ(Sent(), ListRequests({}));
    EXPECT_EQ(FaultCodes(stPlatform), (Codes{1}));
    EXPECT_EQ(stPlatform.astFaults[0].auiArgs, (Args{2, 0, 0, 0}));
}

TEST_F(AttachListTest, MissingArgumentsAreRefused) {
    AttachControl *pstList = nullptr;
    uint32_t uiCount = 0;
    EXPECT_EQ(VT_API_getAttachControlList(nullptr, &uiCount), 0xF7702001u);
    EXPECT_EQ(VT_API_getAttachControlList(&pstList, nullptr), 0xF7702001u);
    EXPECT_TRUE(Sent().empty());
}

TEST_F(AttachListTest, AllHostsAreTheListAsItIs) {
    stHome.astRecords = {{5, kMacB}, {6, kMacA}};
    AttachControl *pstHosts = nullptr;
    uint32_t uiCount = 0;
    ASSERT_EQ(VT_API_getALLAttachControlList(&pstHosts, &uiCount), 0u);
    EXPECT_EQ(uiCount, 2u);
    EXPECT_STREQ(pstHosts[0].acMac, kMacB);
    EXPECT_STREQ(pstHosts[1].acMac, kMacA);
    VT_OS_MemFreeD(pstHosts, __FILE_NAME__, __LINE__);
    stHome.RefuseAt(kListId, 1);
    pstHosts = nullptr;
    EXPECT_EQ(VT_API_getALLAttachControlList(&pstHosts, &uiCount), kRefused);
    EXPECT_EQ(pstHosts, nullptr);
}

// ---- finding ----

uint32_t IndexOf(const char *pcMac) {
    AttachControl astList[4] = {};
    const char *apcMacs[] = {"", "aa:bb", "AA:BB:CC", "AA:BB"};
    for (uint32_t i = 0; i < 4; ++i) {
        std::snprintf(astList[i].acMac, sizeof(astList[i].acMac), "%s", apcMacs[i]);
    }
    uint32_t uiIndex = 77;
    const uint32_t uiResult = VT_API_getAttachControlIndex(astList, 4, pcMac, &uiIndex);
    EXPECT_TRUE(uiResult == 0 ? uiIndex < 4 : uiIndex == 77);
    return uiResult == 0 ? uiIndex : uiResult * 100;
}

TEST_F(AttachListTest, FindsTheFirstWithoutRegardToCase) {
    EXPECT_EQ(IndexOf("AA:BB"), 1u);
    EXPECT_EQ(IndexOf("Aa:bB"), 1u);
    EXPECT_EQ(IndexOf("aa:bb:cc"), 2u);
    EXPECT_EQ(IndexOf(""), 0u);
}

TEST_F(AttachListTest, FindsWholeMacsOnly) {
    EXPECT_EQ(IndexOf("AA:B"), 100u);
    EXPECT_EQ(IndexOf("AA:BB:CC:DD"), 100u);
    EXPECT_EQ(IndexOf(nullptr), 100u);
    EXPECT_TRUE(stPlatform.astFaults.empty());
    uint32_t uiIndex = 77;
    EXPECT_EQ(VT_API_getAttachControlIndex(nullptr, 0, kMacA, &uiIndex), 1u);
    EXPECT_EQ(uiIndex, 77u);
}

TEST_F(AttachListTest, FindsNothingWithoutAListOrAPlace) {
    const AttachControl stRecord = {};
    uint32_t uiIndex = 77;
    EXPECT_EQ(VT_API_getAttachControlIndex(nullptr, 1, kMacA, &uiIndex), 0xF7702001u);
    EXPECT_EQ(VT_API_getAttachControlIndex(&stRecord, 1, "", nullptr), 0xF7702001u);
    EXPECT_EQ(uiIndex, 77u);
    EXPECT_EQ(FaultCodes(stPlatform), (Codes{0xF7702001, 0xF7702001}));
}

}  // namespace
}  // namespace wap::test
