// What happens to the storage rights when a change in the middle fails: request by request.
#include <string>
#include <vector>

#include "access/jni_attach_control.h"
#include "unit/attach/attach_home.h"

namespace wap::test {
namespace {

class StorageUndoTest : public AttachTest {
  protected:
    static uint32_t Bar(const MacTexts &stMacs) {
        return VT_API_setStorageRightList(stMacs.Table(), stMacs.Count(), 0);
    }
    static uint32_t Allow(const MacTexts &stMacs) {
        return VT_API_setStorageRightList(stMacs.Table(), stMacs.Count(), 1);
    }
    /// Refuses the changes with these numbers, counted over both kinds from 1, each with a code of
    /// its own.
    void RefuseChanges(const std::vector<uint32_t> &auiAt) {
        stHome.fnRefuse = [auiAt, uiSeen = 0u](const RpcRecord &stRpc) mutable -> uint32_t {
            if (stRpc.uiRpcId != kAddId && stRpc.uiRpcId != kSetId) {
                return 0;
            }
            ++uiSeen;
            for (const uint32_t uiAt : auiAt) {
                if (uiAt == uiSeen) {
                    return kRefused + uiAt;
                }
            }
            return 0;
        };
    }
};

TEST_F(StorageUndoTest, FirstChangeFailingNeedsNoUndo) {
    stHome.astRecords = {{5, kMacA}, {6, kMacB}};
    RefuseChanges({1});
    EXPECT_EQ(Bar({kMacA, kMacB}), kRefused + 1);
    EXPECT_EQ(Sent(), FilterRequests() + ListRequests({5, 6}) + SetRequest({5, kMacA, 1, 0}, 0x0F));
    EXPECT_EQ(stHome.astRecords, (std::vector<Record>{{5, kMacA}, {6, kMacB}}));
}

TEST_F(StorageUndoTest, BarredHostsAreAllowedAgain) {
    stHome.astRecords = {{5, kMacA, 1, 1, 10, 20}, {6, kMacB}, {7, kMacC}};
    RefuseChanges({3});
    EXPECT_EQ(Bar({kMacA, kMacB, kMacC, kMacD}), kRefused + 3);
    EXPECT_EQ(Sent(), FilterRequests() + ListRequests({5, 6, 7}) +
                          SetRequest({5, kMacA, 1, 0, 10, 20}, 0x0F) +
                          SetRequest({6, kMacB, 1, 0}, 0x0F) + SetRequest({7, kMacC, 1, 0}, 0x0F) +
                          ListRequests({5, 6, 7}) + SetRequest({5, kMacA, 1, 1, 10, 20}, 0x0F) +
                          SetRequest({6, kMacB, 1, 1}, 0x0F));
    EXPECT_EQ(stHome.astRecords,
              (std::vector<Record>{{5, kMacA, 1, 1, 10, 20}, {6, kMacB}, {7, kMacC}}));
}

// A record that was made can't be taken back; it is given the right that no record means.
TEST_F(StorageUndoTest, RecordsThatWereMadeAreFoundAndAllowed) {
    stHome.astRecords = {{5, kMacB}};
    RefuseChanges({2});
    EXPECT_EQ(Bar({kMacA, kMacB}), kRefused + 2);
    EXPECT_EQ(Sent(), FilterRequests() + ListRequests({5}) + AddRequest({0, kMacA, 1, 0}, 0x0F) +
                          SetRequest({5, kMacB, 1, 0}, 0x0F) + ListRequests({5, 900}) +
                          SetRequest({900, kMacA, 1, 1}, 0x0F));
    EXPECT_EQ(stHome.astRecords, (std::vector<Record>{{5, kMacB}, {900, kMacA, 1, 1}}));
}

TEST_F(StorageUndoTest, AFailedAddIsUndoneTheSameWay) {
    stHome.astRecords = {{5, kMacA}};
    RefuseChanges({2});
    EXPECT_EQ(Bar({kMacA, kMacB, kMacC}), kRefused + 2);
    EXPECT_EQ(Sent(), FilterRequests() + ListRequests({5}) + SetRequest({5, kMacA, 1, 0}, 0x0F) +
                          AddRequest({0, kMacB, 1, 0}, 0x0F) + ListRequests({5}) +
                          SetRequest({5, kMacA, 1, 1}, 0x0F));
}

TEST_F(StorageUndoTest, WhoWasNotChangedIsNotUndone) {
    stHome.astRecords = {{5, kMacA, 1, 0}, {6, kMacB}, {7, kMacC}};
    RefuseChanges({2});
    EXPECT_EQ(Bar({kMacA, nullptr, kMacB, kMacC}), kRefused + 2);
    EXPECT_EQ(Sent(), FilterRequests() + ListRequests({5, 6, 7}) +
                          SetRequest({6, kMacB, 1, 0}, 0x0F) + SetRequest({7, kMacC, 1, 0}, 0x0F) +
                          ListRequests({5, 6, 7}) + SetRequest({6, kMacB, 1, 1}, 0x0F));
    EXPECT_EQ(stHome.astRecords, (std::vector<Record>{{5, kMacA, 1, 0}, {6, kMacB}, {7, kMacC}}));
}

TEST_F(StorageUndoTest, AHostNamedTwiceIsUndoneOnce) {
    stHome.astRecords = {{5, kMacA}, {6, kMacB}};
    RefuseChanges({2});
    EXPECT_EQ(Bar({kMacA, kMacA, kMacB}), kRefused + 2);
    EXPECT_EQ(Sent(), FilterRequests() + ListRequests({5, 6}) + SetRequest({5, kMacA, 1, 0}, 0x0F) +
                          SetRequest({6, kMacB, 1, 0}, 0x0F) + ListRequests({5, 6}) +
                          SetRequest({5, kMacA, 1, 1}, 0x0F));
}

TEST_F(StorageUndoTest, AllowedHostsAreBarredAgain) {
    stHome.astRecords = {{5, kMacA, 1, 0}, {6, kMacB, 1, 0}, {7, kMacC, 1, 1}};
    RefuseChanges({2});
    EXPECT_EQ(Allow({kMacC, kMacA, kMacB}), kRefused + 2);
    EXPECT_EQ(Sent(), FilterRequests() + ListRequests({5, 6, 7}) +
                          SetRequest({5, kMacA, 1, 1}, 0x0F) + SetRequest({6, kMacB, 1, 1}, 0x0F) +
                          ListRequests({5, 6, 7}) + SetRequest({5, kMacA, 1, 0}, 0x0F));
    EXPECT_EQ(stHome.astRecords,
              (std::vector<Record>{{5, kMacA, 1, 0}, {6, kMacB, 1, 0}, {7, kMacC, 1, 1}}));
}

// Somebody deleted the record meanwhile: barring makes a new one, as it always does.
TEST_F(StorageUndoTest, AVanishedRecordIsMadeAgainToBar) {
    stHome.astRecords = {{5, kMacA, 1, 0}, {6, kMacB, 1, 0}};
    uint32_t uiSets = 0;
    stHome.fnRefuse = [&](const RpcRecord &stRpc) -> uint32_t {
        if (stRpc.uiRpcId != kSetId || ++uiSets != 2) {
            return 0;
        }
        stHome.astRecords.erase(stHome.astRecords.begin());
        return kRefused;
    };
    EXPECT_EQ(Allow({kMacA, kMacB}), kRefused);
    EXPECT_EQ(Sent(), FilterRequests() + ListRequests({5, 6}) + SetRequest({5, kMacA, 1, 1}, 0x0F) +
                          SetRequest({6, kMacB, 1, 1}, 0x0F) + ListRequests({6}) +
                          AddRequest({0, kMacA, 1, 0}, 0x0F));
}

TEST_F(StorageUndoTest, AllowingAllIsUndoneTheSameWay) {
    stHome.astRecords = {{5, kMacA, 1, 0}, {6, kMacB, 1, 1}, {7, kMacC, 1, 0}, {8, kMacD, 1, 0}};
    const std::vector<Record> astBefore = stHome.astRecords;
    RefuseChanges({3});
    EXPECT_EQ(VT_API_changeStorgeRightList(1), kRefused + 3);
    EXPECT_EQ(Sent(), FilterRequests() + ListRequests({5, 6, 7, 8}) +
                          SetRequest({5, kMacA, 1, 1}, 0x0F) + SetRequest({7, kMacC, 1, 1}, 0x0F) +
                          SetRequest({8, kMacD, 1, 1}, 0x0F) + ListRequests({5, 6, 7, 8}) +
                          SetRequest({5, kMacA, 1, 0}, 0x0F) + SetRequest({7, kMacC, 1, 0}, 0x0F));
    EXPECT_EQ(stHome.astRecords, astBefore);
}

// Two records of one host are two changes, and each is set back.
TEST_F(StorageUndoTest, AllowingAllIsUndoneForEveryRecordOfAHost) {
    stHome.astRecords = {{5, kMacA, 1, 0, 10, 20}, {6, kMacA, 1, 0, 30, 40}, {7, kMacB, 1, 0}};
    const std::vector<Record> astBefore = stHome.astRecords;
    RefuseChanges({3});
    EXPECT_EQ(VT_API_changeStorgeRightList(1), kRefused + 3);
    EXPECT_EQ(Sent(), FilterRequests() + ListRequests({5, 6, 7}) +
                          SetRequest({5, kMacA, 1, 1, 10, 20}, 0x0F) +
                          SetRequest({6, kMacA, 1, 1, 30, 40}, 0x0F) +
                          SetRequest({7, kMacB, 1, 1}, 0x0F) + ListRequests({5, 6, 7}) +
                          SetRequest({5, kMacA, 1, 0, 10, 20}, 0x0F) +
                          SetRequest({6, kMacA, 1, 0, 30, 40}, 0x0F));
    EXPECT_EQ(stHome.astRecords, astBefore);
}

// Another record of the host came first meanwhile: it was not changed, so it is not set back.
TEST_F(StorageUndoTest, TheRecordThatWasChangedIsSetBackWhereverItIsNow) {
    stHome.astRecords = {{5, kMacA, 1, 0}, {6, kMacB, 1, 0}};
    uint32_t uiSets = 0;
    stHome.fnRefuse = [&](const RpcRecord &stRpc) -> uint32_t {
        if (stRpc.uiRpcId != kSetId || ++uiSets != 2) {
            return 0;
        }
        stHome.astRecords.insert(stHome.astRecords.begin(), Record{4, kMacA, 1, 1});
        return kRefused;
    };
    EXPECT_EQ(Allow({kMacA, kMacB}), kRefused);
    EXPECT_EQ(stHome.astRecords,
              (std::vector<Record>{{4, kMacA, 1, 1}, {5, kMacA, 1, 0}, {6, kMacB, 1, 0}}));
}

TEST_F(StorageUndoTest, BarringAllIsUndoneTheSameWay) {
    stHome.astRecords = {{5, kMacA}, {6, kMacB}};
    RefuseChanges({2});
    EXPECT_EQ(VT_API_changeStorgeRightList(0), kRefused + 2);
    EXPECT_EQ(Sent(), FilterRequests() + ListRequests({5, 6}) + SetRequest({5, kMacA, 1, 0}, 0x0F) +
                          SetRequest({6, kMacB, 1, 0}, 0x0F) + ListRequests({5, 6}) +
                          SetRequest({5, kMacA, 1, 1}, 0x0F));
}

// ---- the second pass itself failing ----

TEST_F(StorageUndoTest, AFailureInTheSecondPassDoesNotStopIt) {
    stHome.astRecords = {{5, kMacA}, {6, kMacB}, {7, kMacC}, {8, kMacD}};
    // Fourth: the failure. Fifth and seventh: in the second pass.
    RefuseChanges({4, 5, 7});
    EXPECT_EQ(Bar({kMacA, kMacB, kMacC, kMacD}), kRefused + 4);
    EXPECT_EQ(Sent(), FilterRequests() + ListRequests({5, 6, 7, 8}) +
                          SetRequest({5, kMacA, 1, 0}, 0x0F) + SetRequest({6, kMacB, 1, 0}, 0x0F) +
                          SetRequest({7, kMacC, 1, 0}, 0x0F) + SetRequest({8, kMacD, 1, 0}, 0x0F) +
                          ListRequests({5, 6, 7, 8}) + SetRequest({5, kMacA, 1, 1}, 0x0F) +
                          SetRequest({6, kMacB, 1, 1}, 0x0F) + SetRequest({7, kMacC, 1, 1}, 0x0F));
    EXPECT_TRUE(HasFault(stPlatform, kRefused + 5));
    EXPECT_TRUE(HasFault(stPlatform, kRefused + 7));
    EXPECT_EQ(stHome.astRecords,
              (std::vector<Record>{
                  {5, kMacA, 1, 0}, {6, kMacB, 1, 1}, {7, kMacC, 1, 0}, {8, kMacD, 1, 1}}));
}

TEST_F(StorageUndoTest, WithoutTheListThereIsNoSecondPass) {
    stHome.astRecords = {{5, kMacA}, {6, kMacB}};
    uint32_t uiLists = 0;
    uint32_t uiSets = 0;
    stHome.fnRefuse = [&](const RpcRecord &stRpc) -> uint32_t {
        if (stRpc.uiRpcId == kListId && ++uiLists == 2) {
            return kRefused + 50;
        }
        return stRpc.uiRpcId == kSetId && ++uiSets == 2 ? kRefused : 0;
    };
    EXPECT_EQ(Bar({kMacA, kMacB}), kRefused);
    EXPECT_EQ(Sent(), FilterRequests() + ListRequests({5, 6}) + SetRequest({5, kMacA, 1, 0}, 0x0F) +
                          SetRequest({6, kMacB, 1, 0}, 0x0F) + ListRequests({}));
    EXPECT_TRUE(HasFault(stPlatform, kRefused + 50));
    EXPECT_EQ(stPlatform.astFaults.back().uiCode, kRefused);
}

TEST_F(StorageUndoTest, TheInternetRightIsThatOfTheFilterAsReadOnce) {
    stHome.astRecords = {{5, kMacA, 1, 1}, {6, kMacB, 1, 1}};
    stHome.asFilterMacs = {kMacA};
    RefuseChanges({2});
    EXPECT_EQ(Bar({kMacA, kMacB}), kRefused + 2);
    EXPECT_EQ(Sent(), FilterRequests(1) + ListRequests({5, 6}) +
                          SetRequest({5, kMacA, 0, 0}, 0x0F) + SetRequest({6, kMacB, 1, 0}, 0x0F) +
                          ListRequests({5, 6}) + SetRequest({5, kMacA, 0, 1}, 0x0F));
}

// ---- every change of many ----

TEST_F(StorageUndoTest, WhicheverOfAFullTableFailsTheOthersComeBack) {
    const std::vector<std::string> asMacs = ManyMacs(128);
    for (uint32_t uiFailing = 1; uiFailing <= 128; uiFailing += uiFailing < 120 ? 17 : 1) {
        SCOPED_TRACE(uiFailing);
        stHome.astRecords.clear();
        for (const std::string &sMac : asMacs) {
            stHome.astRecords.push_back(
                {100 + static_cast<uint32_t>(stHome.astRecords.size()), sMac});
        }
        const std::vector<Record> astBefore = stHome.astRecords;
        RefuseChanges({uiFailing});
        EXPECT_EQ(Bar(MacTexts(asMacs)), kRefused + uiFailing);
        EXPECT_EQ(stHome.astRecords, astBefore);
        EXPECT_EQ(Sent().size(), 3 + 129 + uiFailing + (uiFailing > 1 ? 129 + uiFailing - 1 : 0));
    }
}

TEST_F(StorageUndoTest, JavasWorkersGiveMinusOne) {
    stHome.astRecords = {{5, kMacA}, {6, kMacB, 1, 0}};
    const MacTexts stA({kMacA});
    RefuseChanges({1});
    EXPECT_EQ(VT_JNI_addLANHostToStorageBlackList(stA.Table(), 1), kMinusOne);
    const MacTexts stB({kMacB});
    RefuseChanges({1});
    EXPECT_EQ(VT_JNI_delLANHostFromStorageBlackList(stB.Table(), 1), kMinusOne);
    RefuseChanges({1});
    EXPECT_EQ(VT_JNI_delLANHostFromStorageBlackList(nullptr, 0), kMinusOne);
    for (const uint32_t uiRpcId : {kListId, kRecordId}) {
        stHome.RefuseAt(uiRpcId, 1);
        EXPECT_EQ(VT_JNI_addLANHostToStorageBlackList(stA.Table(), 1), kMinusOne);
        stHome.RefuseAt(uiRpcId, 1);
        EXPECT_EQ(VT_JNI_delLANHostFromStorageBlackList(nullptr, 0), kMinusOne);
    }
    EXPECT_EQ(stHome.astRecords, (std::vector<Record>{{5, kMacA}, {6, kMacB, 1, 0}}));
    // Each layer left its line.
    EXPECT_EQ(stPlatform.astFaults.back().sFile, kWorkerFile);
}

}  // namespace
}  // namespace wap::test
