// What is allowed in which mode, and both tables through every failure: request by request for the
// steps that matter, and then every single request refused.
#include "unit/macfilter/filter_gateway.h"

namespace wap::test {
namespace {

using ListFunction = uint32_t (*)(const char *const *, uint32_t);

class UndoTest : public MacFltTest {
  protected:
    static uint32_t Call(ListFunction pfnList, const Macs &apcMacs) {
        return pfnList(apcMacs.data(), static_cast<uint32_t>(apcMacs.size()));
    }
};

TEST_F(UndoTest, ListsAreChangedInTheirOwnModeOnly) {
    const struct {
        ListFunction pfnList;
        uint32_t uiMode;
        uint32_t uiElsewhere;
    } astCases[] = {{VT_JNI_addLANHostToBlackList, 0, kMinusOne},
                    {VT_JNI_delLANHostFromBlackList, 0, 0},
                    {VT_JNI_addLANHostToTrustList, 1, kMinusOne},
                    {VT_JNI_delLANHostFromTrustList, 1, 0}};
    for (const auto &stCase : astCases) {
        for (const uint32_t uiMode : {0u, 1u, 2u}) {
            // Off or on is all the same.
            for (const uint32_t uiStatus : {0u, 1u}) {
                SCOPED_TRACE(uiMode);
                stGateway.uiMode = uiMode;
                stGateway.uiStatus = uiStatus;
                stGateway.astLan.clear();
                stPlatform.ClearRecords();
                const bool bAllowed = uiMode == stCase.uiMode;
                const uint32_t uiWanted = bAllowed ? 0 : stCase.uiElsewhere;
                EXPECT_EQ(Call(stCase.pfnList, {"AA"}), uiWanted);
                EXPECT_EQ(Recorded("jni_macflter.cpp", kMinusOne), uiWanted == kMinusOne);
                const Asked asAsked = TakeAsked();
                EXPECT_EQ(asAsked.size() > 1, bAllowed);
                EXPECT_EQ(asAsked.at(0), "mode");
            }
        }
        stPlatform.ClearRecords();
        stGateway.mapRefused["mode"] = kSomeCode;
        EXPECT_EQ(Call(stCase.pfnList, {"AA"}), kMinusOne);
        stGateway.mapRefused.clear();
        EXPECT_EQ(TakeAsked(), (Asked{"mode"}));
        EXPECT_TRUE(Recorded("jni_macflter.cpp", kSomeCode));
    }
}

TEST_F(UndoTest, AddingNothingToTheBlackListAsksForTheModeOnly) {
    for (const Macs &apcMacs : {Macs{}, Macs{nullptr}, Macs{"", nullptr, ""}}) {
        EXPECT_EQ(Call(VT_JNI_addLANHostToBlackList, apcMacs), 0u);
        EXPECT_EQ(TakeAsked(), (Asked{"mode"}));
    }
    stGateway.uiMode = 1;
    EXPECT_EQ(Call(VT_JNI_addLANHostToBlackList, {}), kMinusOne);
}

// Unlike the black list, the trust list takes what it is given.
TEST_F(UndoTest, AddingAnEmptyTextToTheTrustListAddsIt) {
    stGateway.uiMode = 1;
    EXPECT_EQ(Call(VT_JNI_addLANHostToTrustList, {"", nullptr}), 0u);
    EXPECT_EQ(TakeAsked(), (Asked{"mode", "add lan "}));
}

TEST_F(UndoTest, AddGoesToTheWiredTableAndThenToEveryNetwork) {
    ListTwo();
    stGateway.setExcluded = {1};
    EXPECT_EQ(Call(VT_JNI_addLANHostToBlackList, {"CC", "DD"}), 0u);
    EXPECT_EQ(TakeAsked(), (Asked{"mode", "add lan CC", "add lan DD", "ssids", "excluded 1",
                                  "excluded 5", "add wlan SSID-5 CC", "add wlan SSID-5 DD"}));
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(UndoTest, WithoutTheFeatureTheWiredTableDecides) {
    EXPECT_EQ(VT_API_addLanHostMacList(Macs{"AA"}.data(), 1), 0u);
    EXPECT_EQ(TakeAsked(), (Asked{"add lan AA"}));
    stGateway.mapRefused["add lan BB"] = kSomeCode;
    EXPECT_EQ(Call(VT_API_addLanHostMacList, {"BB"}), kSomeCode);
}

TEST_F(UndoTest, FailedWiredAddLeavesTheWirelessTableAlone) {
    ListTwo();
    stGateway.mapRefused["add lan DD"] = kSomeCode;
    EXPECT_EQ(Call(VT_API_addLanHostMacList, {"CC", "DD"}), kSomeCode);
    EXPECT_EQ(TakeAsked(), (Asked{"add lan CC", "add lan DD", "list lan", "get lan 1", "get lan 2",
                                  "get lan 100", "del lan 100"}));
    EXPECT_TRUE(Recorded("jni_macflter.cpp", kSomeCode));
}

TEST_F(UndoTest, FailedWirelessAddIsUndoneInBothTables) {
    ListTwo();
    stGateway.mapRefused["add wlan SSID-5 CC"] = kSomeCode;
    EXPECT_EQ(Call(VT_API_addLanHostMacList, {nullptr, "CC"}), kSomeCode);
    EXPECT_EQ(TakeAsked(),
              (Asked{"add lan CC", "ssids", "excluded 1", "excluded 5", "add wlan SSID-1 CC",
                     "add wlan SSID-5 CC", "list wlan", "get wlan 11", "get wlan 12", "get wlan 13",
                     "get wlan 14", "get wlan 101", "del wlan 101", "list lan", "get lan 1",
                     "get lan 2", "get lan 100", "del lan 100"}));
    EXPECT_TRUE(Recorded("jni_macflter.cpp", kSomeCode));
}

TEST_F(UndoTest, FailedListOfNetworksIsUndoneInTheWiredTable) {
    ListTwo();
    stGateway.mapRefused["ssids"] = kSomeCode;
    EXPECT_EQ(Call(VT_API_addLanHostMacList, {"CC"}), kSomeCode);
    EXPECT_EQ(TakeAsked(), (Asked{"add lan CC", "ssids", "list lan", "get lan 1", "get lan 2",
                                  "get lan 100", "del lan 100"}));
}

TEST_F(UndoTest, DeleteGoesThroughBothTables) {
    ListTwo();
    EXPECT_EQ(Call(VT_JNI_delLANHostFromBlackList, {"aa", "none"}), 0u);
    EXPECT_EQ(TakeAsked(), (Asked{"mode", "list lan", "get lan 1", "get lan 2", "del lan 1",
                                  "list wlan", "get wlan 11", "get wlan 12", "get wlan 13",
                                  "get wlan 14", "del wlan 11", "del wlan 12"}));
    EXPECT_EQ(stGateway.State(), "mode 0 status 1; SSID-1 BB; SSID-5 BB; lan BB");
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(UndoTest, FailedWiredDeleteLeavesTheWirelessTableAlone) {
    ListTwo();
    stGateway.mapRefused["del lan 2"] = kSomeCode;
    EXPECT_EQ(Call(VT_API_delLanHostMacList, {"BB", "AA"}), kSomeCode);
    EXPECT_EQ(TakeAsked(), (Asked{"list lan", "get lan 1", "get lan 2", "del lan 1", "del lan 2",
                                  "add lan AA"}));
}

TEST_F(UndoTest, FailedWirelessDeleteIsUndoneInBothTables) {
    ListTwo();
    stGateway.mapRefused["del wlan 12"] = kSomeCode;
    EXPECT_EQ(Call(VT_API_delLanHostMacList, {"BB", "none", "aa"}), kSomeCode);
    // Into the wired table as it was given: the filter does not mind the case.
    EXPECT_EQ(TakeAsked(),
              (Asked{"list lan", "get lan 1", "get lan 2", "del lan 1", "del lan 2", "list wlan",
                     "get wlan 11", "get wlan 12", "get wlan 13", "get wlan 14", "del wlan 11",
                     "del wlan 12", "restore wlan SSID-1 AA", "add lan BB", "add lan aa"}));
}

TEST_F(UndoTest, ClearEmptiesBothTables) {
    ListTwo();
    EXPECT_EQ(VT_API_clearMacFltList(), 0u);
    EXPECT_EQ(TakeAsked(),
              (Asked{"list lan", "get lan 1", "get lan 2", "del lan 1", "del lan 2", "list wlan",
                     "get wlan 11", "get wlan 12", "get wlan 13", "get wlan 14", "del wlan 11",
                     "del wlan 12", "del wlan 13", "del wlan 14"}));
    EXPECT_EQ(Traced("Clear Macflt mac:AA  instid:1\r\n"), 1u);
    EXPECT_EQ(Traced("Clear Macflt mac:BB  instid:2\r\n"), 1u);
    EXPECT_TRUE(stPlatform.astFaults.empty());
    EXPECT_EQ(VT_API_clearMacFltList(), 0u);
    EXPECT_EQ(TakeAsked(), (Asked{"list lan", "list wlan"}));
}

TEST_F(UndoTest, FailedWiredClearPutsTheWiredEntriesBack) {
    ListTwo();
    stGateway.mapRefused["del lan 2"] = kSomeCode;
    EXPECT_EQ(VT_API_clearMacFltList(), kSomeCode);
    EXPECT_EQ(TakeAsked(), (Asked{"list lan", "get lan 1", "get lan 2", "del lan 1", "del lan 2",
                                  "add lan AA"}));
    EXPECT_TRUE(Recorded("jni_macflter.cpp", kSomeCode));
}

TEST_F(UndoTest, ClearThatCannotReadTheWirelessTablePutsTheWiredEntriesBack) {
    ListTwo();
    stGateway.mapRefused["list wlan"] = kSomeCode;
    EXPECT_EQ(VT_API_clearMacFltList(), kSomeCode);
    EXPECT_EQ(TakeAsked(), (Asked{"list lan", "get lan 1", "get lan 2", "del lan 1", "del lan 2",
                                  "list wlan", "add lan AA", "add lan BB"}));
}

TEST_F(UndoTest, FailedWirelessClearPutsAllEntriesBack) {
    ListTwo();
    stGateway.mapRefused["del wlan 13"] = kSomeCode;
    EXPECT_EQ(VT_API_clearMacFltList(), kSomeCode);
    EXPECT_EQ(TakeAsked(),
              (Asked{"list lan", "get lan 1", "get lan 2", "del lan 1", "del lan 2", "list wlan",
                     "get wlan 11", "get wlan 12", "get wlan 13", "get wlan 14", "del wlan 11",
                     "del wlan 12", "del wlan 13", "add lan AA", "add lan BB",
                     "restore wlan SSID-1 AA", "restore wlan SSID-5 AA"}));
}

TEST_F(UndoTest, FailedClearOfFullTablesPutsAllEntriesBack) {
    for (uint32_t i = 1; i <= 32; ++i) {
        stGateway.astLan.push_back({i, "L" + std::to_string(i)});
    }
    for (uint32_t i = 1; i <= 256; ++i) {
        stGateway.astWlan.push_back({i, "SSID-" + std::to_string(i % 8), std::to_string(i / 8)});
    }
    const std::string sBefore = stGateway.State();
    stGateway.mapRefused["del wlan 256"] = kSomeCode;
    EXPECT_EQ(VT_API_clearMacFltList(), kSomeCode);
    EXPECT_EQ(stGateway.State(), sBefore);
    EXPECT_EQ(stGateway.uiNextId, 100u + 32 + 255);
}

TEST_F(UndoTest, DeletingNothingFromTheBlackListClearsItFirst) {
    for (const Macs &apcMacs : {Macs{}, Macs{nullptr}, Macs{"", nullptr}}) {
        ListTwo();
        EXPECT_EQ(Call(VT_JNI_delLANHostFromBlackList, apcMacs), 0u);
        EXPECT_EQ(stGateway.State(), "mode 0 status 1");
        const Asked asAsked = TakeAsked();
        ASSERT_GE(asAsked.size(), 2u);
        EXPECT_EQ((Asked{asAsked.end() - 2, asAsked.end()}), (Asked{"list lan", "list wlan"}));
        EXPECT_EQ(asAsked.size(), 1u + 14 + 2);
    }
    EXPECT_EQ(VT_JNI_delLANHostFromBlackList(nullptr, 0), 0u);
    EXPECT_EQ(TakeAsked(), (Asked{"mode", "list lan", "list wlan", "list lan", "list wlan"}));
}

TEST_F(UndoTest, FailedClearingEndsTheDelete) {
    ListTwo();
    stGateway.mapRefused["del lan 1"] = kSomeCode;
    EXPECT_EQ(Call(VT_JNI_delLANHostFromBlackList, {}), kMinusOne);
    EXPECT_EQ(TakeAsked(), (Asked{"mode", "list lan", "get lan 1", "get lan 2", "del lan 1"}));
    EXPECT_TRUE(Recorded("jni_macflter.cpp", kSomeCode));
}

TEST_F(UndoTest, DeletingNothingFromTheTrustListDeletesNothing) {
    ListTwo();
    stGateway.uiMode = 1;
    const std::string sBefore = stGateway.State();
    EXPECT_EQ(Call(VT_JNI_delLANHostFromTrustList, {}), 0u);
    EXPECT_EQ(stGateway.State(), sBefore);
    // And the black list's way to clear does not work on it.
    EXPECT_EQ(Call(VT_JNI_delLANHostFromBlackList, {}), 0u);
    EXPECT_EQ(stGateway.State(), sBefore);
}

TEST_F(UndoTest, FailedChangesAreMinusOneForJava) {
    ListTwo();
    stGateway.mapRefused = {{"add lan CC", kSomeCode}, {"del lan 1", kSomeCode}};
    EXPECT_EQ(Call(VT_JNI_addLANHostToBlackList, {"CC"}), kMinusOne);
    EXPECT_EQ(Call(VT_JNI_delLANHostFromBlackList, {"AA"}), kMinusOne);
    stGateway.uiMode = 1;
    EXPECT_EQ(Call(VT_JNI_addLANHostToTrustList, {"CC"}), kMinusOne);
    EXPECT_EQ(Call(VT_JNI_delLANHostFromTrustList, {"AA"}), kMinusOne);
}

TEST_F(UndoTest, UndoThatFailsToo) {
    ListTwo();
    stGateway.mapRefused = {
        {"del wlan 12", kSomeCode}, {"restore wlan SSID-1 AA", 0x77}, {"add lan AA", 0x78}};
    EXPECT_EQ(Call(VT_API_delLanHostMacList, {"AA", "BB"}), kSomeCode);
    const Asked asAsked = TakeAsked();
    // It goes on to the end and undoes nothing of itself.
    ASSERT_GE(asAsked.size(), 3u);
    EXPECT_EQ((Asked{asAsked.end() - 3, asAsked.end()}),
              (Asked{"restore wlan SSID-1 AA", "add lan AA", "add lan BB"}));
    EXPECT_TRUE(Recorded("jni_macflter_wlan.cpp", 0x77));
    EXPECT_TRUE(Recorded("jni_macflter_lan.cpp", 0x78));
}

/// A change of the tables, with the requests whose failure does not matter, and what is listed
/// then.
struct Operation {
    std::string sName;
    ListFunction pfnList;
    Macs apcMacs;
    std::string sAfter;
    std::map<std::string, std::string> mapHarmless;
};

void PrintTo(const Operation &stOperation, std::ostream *pstOut) {
    *pstOut << stOperation.sName;
}

class EveryRequestTest : public UndoTest, public ::testing::WithParamInterface<Operation> {
  protected:
    /// Three wireless networks, the middle one excluded.
    void ListTwoBesideAnExcludedNetwork() {
        ListTwo();
        stGateway.auiSsids = {1, 2, 5};
        stGateway.setExcluded = {2};
    }
};

TEST_P(EveryRequestTest, RefusedLeavesBothTablesAsTheyWere) {
    const Operation &stOperation = GetParam();
    ListTwoBesideAnExcludedNetwork();
    const std::string sBefore = stGateway.State();
    EXPECT_EQ(Call(stOperation.pfnList, stOperation.apcMacs), 0u);
    EXPECT_EQ(stGateway.State(), stOperation.sAfter);
    const uint32_t uiRequests = stGateway.uiCount;
    ASSERT_GT(uiRequests, 5u);
    size_t uiHarmless = 0;
    for (uint32_t uiAt = 1; uiAt <= uiRequests; ++uiAt) {
        ListTwoBesideAnExcludedNetwork();
        stGateway.uiCount = 0;
        stGateway.uiRefusedAt = uiAt;
        (void)TakeAsked();
        stPlatform.ClearRecords();
        const uint32_t uiResult = Call(stOperation.pfnList, stOperation.apcMacs);
        const Asked asAsked = TakeAsked();
        ASSERT_GE(asAsked.size(), uiAt);
        const std::string &sRefused = asAsked[uiAt - 1];
        SCOPED_TRACE(std::to_string(uiAt) + ": " + sRefused);
        if (const auto it = stOperation.mapHarmless.find(sRefused);
            it != stOperation.mapHarmless.end()) {
            EXPECT_EQ(uiResult, 0u);
            EXPECT_EQ(stGateway.State(), it->second);
            ++uiHarmless;
        } else {
            EXPECT_EQ(uiResult, sRefused.rfind("get ", 0) == 0 ? 1u : kRefused);
            EXPECT_EQ(stGateway.State(), sBefore);
        }
        EXPECT_FALSE(stPlatform.astFaults.empty());
        EXPECT_EQ(stWorld.stAllocs.Live(), 0u);
    }
    EXPECT_EQ(uiHarmless, stOperation.mapHarmless.size());
}

uint32_t Clear(const char *const *, uint32_t) {
    return VT_API_clearMacFltList();
}

constexpr const char *kTwoAdded =
    "mode 0 status 1; SSID-1 AA; SSID-1 BB; SSID-1 CC; SSID-1 DD; SSID-5 AA; SSID-5 BB; SSID-5 CC; "
    "SSID-5 DD; lan AA; lan BB; lan CC; lan DD";
// A network that can't be asked about is not left out.
constexpr const char *kTwoAddedEverywhere =
    "mode 0 status 1; SSID-1 AA; SSID-1 BB; SSID-1 CC; SSID-1 DD; SSID-2 CC; SSID-2 DD; SSID-5 AA; "
    "SSID-5 BB; SSID-5 CC; SSID-5 DD; lan AA; lan BB; lan CC; lan DD";

INSTANTIATE_TEST_SUITE_P(
    Of, EveryRequestTest,
    ::testing::Values(Operation{"Add",
                                VT_API_addLanHostMacList,
                                {"CC", "DD"},
                                kTwoAdded,
                                {{"excluded 1", kTwoAdded},
                                 {"excluded 2", kTwoAddedEverywhere},
                                 {"excluded 5", kTwoAdded}}},
                      Operation{
                          "Delete", VT_API_delLanHostMacList, {"AA", "BB"}, "mode 0 status 1", {}},
                      Operation{"Clear", Clear, {}, "mode 0 status 1", {}}),
    [](const auto &stInfo) { return stInfo.param.sName; });

}  // namespace
}  // namespace wap::test
