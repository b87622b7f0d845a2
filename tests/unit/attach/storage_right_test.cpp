// The storage black list: who is put on it, who is taken off, and who is left alone.
#include <string>
#include <vector>

#include "access/jni_attach_control.h"
#include "unit/attach/attach_home.h"

namespace wap::test {
namespace {

class StorageRightTest : public AttachTest {
  protected:
    static uint32_t Bar(const MacTexts &stMacs) {
        return VT_JNI_addLANHostToStorageBlackList(stMacs.Table(), stMacs.Count());
    }
    static uint32_t Allow(const MacTexts &stMacs) {
        return VT_JNI_delLANHostFromStorageBlackList(stMacs.Table(), stMacs.Count());
    }
};

// ---- onto the list ----

TEST_F(StorageRightTest, BarringNobodyAsksNobody) {
    stHome.astRecords = {{5, kMacA}};
    EXPECT_EQ(VT_JNI_addLANHostToStorageBlackList(nullptr, 0), 0u);
    EXPECT_EQ(VT_JNI_addLANHostToStorageBlackList(nullptr, 3), 0u);
    EXPECT_EQ(Bar({nullptr}), 0u);
    EXPECT_EQ(Bar({"", nullptr, ""}), 0u);
    EXPECT_TRUE(Sent().empty());
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(StorageRightTest, BarringSendsTheRecordAsItWasReadWithTheRightsReplaced) {
    stHome.astRecords = {{5, kMacB}, {6, kMacA, 7, 1, 100, 200, 30, 40, 0x11223344}};
    EXPECT_EQ(Bar({kMacA}), 0u);
    ExpectSent(FilterRequests() + ListRequests({5, 6}) +
                   SetRequest({6, kMacA, 1, 0, 100, 200, 30, 40, 0x11223344}, 0x0F),
               std::string("\x06\0\0\0"
                           "02:00:00:00:00:0A\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0"
                           "\x01\0\0\0\0\0\0\0\x64\0\0\0\xC8\0\0\0\x1E\0\0\0\x28\0\0\0"
                           "\x44\x33\x22\x11\x06\0\0\0\x0F\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0",
                           84));
}

TEST_F(StorageRightTest, BarringAHostWithoutARecordMakesOne) {
    stHome.astRecords = {{5, kMacB}};
    EXPECT_EQ(Bar({kMacA}), 0u);
    ExpectSent(FilterRequests() + ListRequests({5}) + AddRequest({0, kMacA, 1, 0}, 0x0F),
               std::string("02:00:00:00:00:0A\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0"
                           "\x01\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0"
                           "\x0F\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0",
                           80));
    EXPECT_EQ(stHome.astRecords, (std::vector<Record>{{5, kMacB}, {900, kMacA, 1, 0}}));
}

TEST_F(StorageRightTest, WhoIsBarredAlreadyIsLeftAlone) {
    stHome.astRecords = {{5, kMacA, 1, 0}};
    EXPECT_EQ(Bar({kMacA}), 0u);
    EXPECT_EQ(Sent(), FilterRequests() + ListRequests({5}));
}

TEST_F(StorageRightTest, ARightThatIsNeitherIsReplaced) {
    stHome.astRecords = {{5, kMacA, 1, 7}, {6, kMacB, 1, 0x100}};
    EXPECT_EQ(Bar({kMacA}), 0u);
    EXPECT_EQ(Allow({kMacB}), 0u);
    EXPECT_EQ(stHome.astRecords, (std::vector<Record>{{5, kMacA, 1, 0}, {6, kMacB, 1, 1}}));
}

TEST_F(StorageRightTest, HostsAreFoundWithoutRegardToCase) {
    stHome.astRecords = {{5, kMacA, 1, 1}};
    EXPECT_EQ(Bar({"02:00:00:00:00:0a"}), 0u);
    // The record keeps its own spelling.
    EXPECT_EQ(Sent(), FilterRequests() + ListRequests({5}) + SetRequest({5, kMacA, 1, 0}, 0x0F));
}

TEST_F(StorageRightTest, SeveralInTheirOrderWithOneReading) {
    stHome.astRecords = {{5, kMacA}, {6, kMacB, 1, 0}, {7, kMacC}};
    EXPECT_EQ(Bar({kMacD, kMacC, kMacB, kMacA}), 0u);
    EXPECT_EQ(Sent(), FilterRequests() + ListRequests({5, 6, 7}) +
                          AddRequest({0, kMacD, 1, 0}, 0x0F) + SetRequest({7, kMacC, 1, 0}, 0x0F) +
                          SetRequest({5, kMacA, 1, 0}, 0x0F));
}

TEST_F(StorageRightTest, NullEntriesAreSkippedWithATrace) {
    EXPECT_EQ(Bar({nullptr, kMacA, nullptr, kMacB}), 0u);
    EXPECT_EQ(Sent(), FilterRequests() + ListRequests({}) + AddRequest({0, kMacA, 1, 0}, 0x0F) +
                          AddRequest({0, kMacB, 1, 0}, 0x0F));
    EXPECT_EQ(Traces("VT_API_setStorageRightList"),
              (std::vector<std::string>{"VT_API_setStorageRightList Mac[0] is Null\r\n",
                                        "VT_API_setStorageRightList Mac[2] is Null\r\n"}));
    EXPECT_TRUE(stPlatform.astFaults.empty());
    stPlatform.ClearRecords();
    EXPECT_EQ(Allow({kMacA, nullptr}), 0u);
    EXPECT_EQ(Traces("VT_API_setStorageRightList"),
              (std::vector<std::string>{"VT_API_setStorageRightList Mac[1] is Null\r\n"}));
}

// An empty text is an entry like any other, as long as another one has text.
TEST_F(StorageRightTest, EmptyEntriesCount) {
    EXPECT_EQ(Bar({"", kMacA}), 0u);
    EXPECT_EQ(Sent(), FilterRequests() + ListRequests({}) + AddRequest({0, "", 1, 0}, 0x0F) +
                          AddRequest({0, kMacA, 1, 0}, 0x0F));
    EXPECT_TRUE(Traces("VT_API_setStorageRightList").empty());
}

TEST_F(StorageRightTest, AHostNamedTwiceIsChangedOnce) {
    stHome.astRecords = {{5, kMacB}};
    EXPECT_EQ(Bar({kMacA, kMacB, "02:00:00:00:00:0a", "02:00:00:00:00:0b"}), 0u);
    EXPECT_EQ(Sent(), FilterRequests() + ListRequests({5}) + AddRequest({0, kMacA, 1, 0}, 0x0F) +
                          SetRequest({5, kMacB, 1, 0}, 0x0F));
}

TEST_F(StorageRightTest, LongMacsAreCutAtTheirField) {
    const std::string sLong = "0123456789012345678901234567890123456789";
    EXPECT_EQ(Bar(MacTexts({sLong.c_str()})), 0u);
    EXPECT_EQ(Sent(), FilterRequests() + ListRequests({}) +
                          AddRequest({0, "0123456789012345678901234567890", 1, 0}, 0x0F));
}

TEST_F(StorageRightTest, AHundredAndTwentyEightInOneCall) {
    const std::vector<std::string> asMacs = ManyMacs(128);
    Requests astWanted = FilterRequests() + ListRequests({});
    for (const std::string &sMac : asMacs) {
        astWanted = astWanted + AddRequest({0, sMac, 1, 0}, 0x0F);
    }
    EXPECT_EQ(Bar(MacTexts(asMacs)), 0u);
    EXPECT_EQ(Sent(), astWanted);
    EXPECT_EQ(stHome.astRecords.size(), 128u);
    // Off again: the list is full now.
    EXPECT_EQ(Allow(MacTexts(asMacs)), 0u);
    for (const Record &stRecord : stHome.astRecords) {
        EXPECT_EQ(stRecord.uiStorage, 1u);
    }
}

TEST_F(StorageRightTest, MoreAreRefusedWithoutARequest) {
    const std::vector<std::string> asMacs = ManyMacs(129);
    EXPECT_EQ(Bar(MacTexts(asMacs)), kMinusOne);
    EXPECT_EQ(Allow(MacTexts(asMacs)), kMinusOne);
    EXPECT_EQ(VT_API_setStorageRightList(nullptr, 1, 0), 1u);
    EXPECT_TRUE(Sent().empty());
    EXPECT_EQ(FaultCodes(stPlatform), (Codes{1, 1, 1, 1, 1}));
    EXPECT_EQ(stPlatform.astFaults[0].auiArgs, (Args{129, 0, 0, 0}));
}

// ---- off the list ----

TEST_F(StorageRightTest, AllowingChangesBarredRecordsOnly) {
    stHome.astRecords = {{5, kMacA, 1, 0, 10, 20}, {6, kMacB, 1, 1}};
    EXPECT_EQ(Allow({kMacC, kMacB, kMacA}), 0u);
    EXPECT_EQ(Sent(),
              FilterRequests() + ListRequests({5, 6}) + SetRequest({5, kMacA, 1, 1, 10, 20}, 0x0F));
}

TEST_F(StorageRightTest, AllowingAnUnknownHostSendsNoChange) {
    EXPECT_EQ(Allow({kMacA}), 0u);
    EXPECT_EQ(Sent(), FilterRequests() + ListRequests({}));
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(StorageRightTest, AllowingNobodyAllowsAll) {
    const auto fnExpectAll = [&](uint32_t uiResult) {
        EXPECT_EQ(uiResult, 0u);
        EXPECT_EQ(Sent(), FilterRequests() + ListRequests({5, 6, 7}) +
                              SetRequest({5, kMacA, 1, 1, 1, 2, 3, 4, 5}, 0x0F) +
                              SetRequest({7, kMacC, 1, 1}, 0x0F));
        stHome.astRecords = {{5, kMacA, 0, 0, 1, 2, 3, 4, 5}, {6, kMacB, 1, 1}, {7, kMacC, 1, 0}};
    };
    stHome.astRecords = {{5, kMacA, 0, 0, 1, 2, 3, 4, 5}, {6, kMacB, 1, 1}, {7, kMacC, 1, 0}};
    fnExpectAll(VT_JNI_delLANHostFromStorageBlackList(nullptr, 0));
    fnExpectAll(VT_JNI_delLANHostFromStorageBlackList(nullptr, 5));
    fnExpectAll(Allow({nullptr}));
    fnExpectAll(Allow({"", nullptr, ""}));
    EXPECT_TRUE(Traces("VT_API_setStorageRightList").empty());
}

TEST_F(StorageRightTest, AllowingAllOfAnEmptyListSendsNoChange) {
    EXPECT_EQ(VT_JNI_delLANHostFromStorageBlackList(nullptr, 0), 0u);
    EXPECT_EQ(Sent(), FilterRequests() + ListRequests({}));
}

TEST_F(StorageRightTest, AllowingAllTakesEveryRecordEvenOfTheSameHost) {
    stHome.astRecords = {{5, kMacA, 1, 0}, {6, kMacA, 1, 0}, {7, "", 1, 0}};
    EXPECT_EQ(VT_JNI_delLANHostFromStorageBlackList(nullptr, 0), 0u);
    EXPECT_EQ(Sent(), FilterRequests() + ListRequests({5, 6, 7}) +
                          SetRequest({5, kMacA, 1, 1}, 0x0F) + SetRequest({6, kMacA, 1, 1}, 0x0F) +
                          SetRequest({7, "", 1, 1}, 0x0F));
}

TEST_F(StorageRightTest, AllowingOneTakesTheFirstOfTwoRecords) {
    stHome.astRecords = {{5, kMacA, 1, 0}, {6, kMacA, 1, 0}};
    EXPECT_EQ(Allow({kMacA}), 0u);
    EXPECT_EQ(Sent(), FilterRequests() + ListRequests({5, 6}) + SetRequest({5, kMacA, 1, 1}, 0x0F));
}

TEST_F(StorageRightTest, RecordsWithoutAnEndAreHarmless) {
    stPlatform.fnReply = [this](const RpcRecord &stRpc) -> std::optional<Reply> {
        return stRpc.uiRpcId == kListId || stRpc.uiRpcId == kRecordId
                   ? Reply{0, std::string(516, '\xFF')}
                   : stHome.AnswerTo(stRpc);
    };
    EXPECT_EQ(VT_JNI_delLANHostFromStorageBlackList(nullptr, 0), 0u);
    const Requests astSent = Sent();
    ASSERT_EQ(astSent.size(), 3 + 129 + 128u);
    EXPECT_EQ(astSent.back().sRequest.substr(4, 36), std::string(31, '\xFF') + '\0' + Word(1));
    EXPECT_EQ(Bar({kMacA}), 0u);
    EXPECT_EQ(Sent().back().uiRpcId, kAddId);
}

// ---- one record ----

TEST_F(StorageRightTest, ChangesOfOneRecordGiveTheServicesCode) {
    AttachControl stRecord = {};
    stRecord.uiInstId = 5;
    stHome.fnRefuse = [](const RpcRecord &) { return kRefused; };
    EXPECT_EQ(VT_API_addStorageRight(kMacA, 1, 0), kRefused);
    EXPECT_EQ(VT_API_setStorageRight(&stRecord, 1, 0), kRefused);
    EXPECT_EQ(Sent(), AddRequest({0, kMacA, 1, 0}, 0x0F) + SetRequest({5, "", 1, 0}, 0x0F));
    EXPECT_EQ(FaultCodes(stPlatform), (Codes{kRefused, kRefused, kRefused, kRefused}));
    EXPECT_EQ(stPlatform.astFaults[3].auiArgs, (Args{5, 0, 0, 0}));
}

TEST_F(StorageRightTest, MissingArgumentsAreRefusedWithoutARequest) {
    EXPECT_EQ(VT_API_setStorageRight(nullptr, 1, 0), 0xF7702001u);
    EXPECT_EQ(VT_API_addStorageRight(nullptr, 1, 0), 0xF7702001u);
    EXPECT_TRUE(Sent().empty());
    EXPECT_EQ(FaultCodes(stPlatform), (Codes{0xF7702001, 0xF7702001}));
}

}  // namespace
}  // namespace wap::test
