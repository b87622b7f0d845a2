// The wireless table: an entry for each address and network, and what undoes what.
#include <algorithm>
#include <cstring>

#include "unit/macfilter/filter_gateway.h"

namespace wap::test {
namespace {

class WlanTableTest : public MacFltTest {
  protected:
    uint32_t Add(const Macs &apcMacs, uint32_t uiRollback = 0) {
        return VT_API_addWLanMacFltList(apcMacs.data(), static_cast<uint32_t>(apcMacs.size()), 1,
                                        uiRollback);
    }
    uint32_t Del(const Macs &apcMacs, uint32_t uiRollback = 0) {
        return VT_API_delWLanMacFltList(apcMacs.data(), static_cast<uint32_t>(apcMacs.size()), 1,
                                        uiRollback);
    }
    uint32_t DelIds(const std::vector<uint32_t> &auiIds, uint32_t uiRollback = 0) {
        return VT_API_delWLanMacFltList(auiIds.data(), static_cast<uint32_t>(auiIds.size()), 0,
                                        uiRollback);
    }
    /// Adds entries by record. Unlike the texts of a table these need not end.
    uint32_t Restore(const std::vector<std::string> &asEntries, uint32_t uiRollback = 0) {
        std::vector<WlanMacFltEntry> astEntries(asEntries.size());
        std::vector<const WlanMacFltEntry *> apstEntries;
        for (size_t i = 0; i < asEntries.size(); ++i) {
            EXPECT_EQ(asEntries[i].size(), 72u);
            std::memcpy(&astEntries[i], asEntries[i].data(), 72);
            apstEntries.push_back(&astEntries[i]);
        }
        return VT_API_addWLanMacFltList(apstEntries.data(),
                                        static_cast<uint32_t>(apstEntries.size()), 0, uiRollback);
    }
    static std::string Entry(uint32_t uiId, const std::string &sSsidName, const std::string &sMac) {
        return Word(uiId) + WlanEntryBytes(sSsidName, sMac);
    }
    void UseSsids(const std::vector<uint32_t> &auiSsids) {
        stPlatform.setFeatures = {314};
        stGateway.auiSsids = auiSsids;
    }
};

class WlanListTest : public WlanTableTest {
  protected:
    uint32_t Read() { return VT_API_getWLanMacFltList(&pstList, &uiCount); }
    void ExpectUntouched() {
        EXPECT_EQ(pstList, nullptr);
        EXPECT_EQ(uiCount, 99u);
    }
    void TearDown() override {
        VT_OS_MemFreeD(pstList, __FILE_NAME__, __LINE__);
        WlanTableTest::TearDown();
    }

    WlanMacFltEntry *pstList = nullptr;
    uint32_t uiCount = 99;
};

TEST_F(WlanListTest, EntriesAreTheReplyBehindTheId) {
    stGateway.astWlan = {{7, "SSID-1", "AA"}, {0x01020304, "SSID-5", "BB"}};
    EXPECT_EQ(Read(), 0u);
    EXPECT_EQ(TakeAsked(), (Asked{"list wlan", "get wlan 7", "get wlan 16909060"}));
    ASSERT_EQ(uiCount, 2u);
    EXPECT_EQ(std::string(reinterpret_cast<const char *>(pstList), 144),
              Entry(7, "SSID-1", "AA") + Entry(0x01020304, "SSID-5", "BB"));
}

TEST_F(WlanListTest, EmptyTableWritesNothing) {
    EXPECT_EQ(Read(), 0u);
    ExpectUntouched();
}

TEST_F(WlanListTest, RefusalsArePassedUpOrOne) {
    stGateway.mapRefused["list wlan"] = kSomeCode;
    EXPECT_EQ(Read(), kSomeCode);
    stGateway.mapRefused = {{"get wlan 8", kSomeCode}};
    stGateway.astWlan = {{7, "SSID-1", "AA"}, {8, "SSID-1", "BB"}};
    EXPECT_EQ(Read(), 1u);
    ExpectUntouched();
    EXPECT_TRUE(Recorded("jni_macflter_wlan.cpp", kSomeCode));
}

TEST_F(WlanListTest, NumbersBeyondTheIndexEndWithIt) {
    stGateway.astWlan = {{0x5A5A5A5A, "SSID-1", "AA"}};
    for (const uint32_t uiTold : {257u, 0x7FFFFFFFu, 0xFFFFFFFFu}) {
        SCOPED_TRACE(uiTold);
        stGateway.mapBytes["list wlan"] = Word(uiTold) + std::string(1024, '\x5A');
        EXPECT_EQ(Read(), 0u);
        EXPECT_EQ(uiCount, 256u);
        EXPECT_EQ(TakeAsked().size(), 257u);
        EXPECT_EQ(stWorld.stAllocs.SizeOf(pstList), 256u * 72);
        VT_OS_MemFreeD(std::exchange(pstList, nullptr), __FILE_NAME__, __LINE__);
    }
}

TEST_F(WlanListTest, TextsEndWithinTheirFields) {
    stGateway.astWlan = {{7, "", ""}};
    stGateway.mapBytes["get wlan 7"] = std::string(68, 'x');
    EXPECT_EQ(Read(), 0u);
    ASSERT_NE(pstList, nullptr);
    EXPECT_EQ(strnlen(pstList->stBody.acSsidName, 32), 31u);
    EXPECT_EQ(strnlen(pstList->stBody.acMac, 32), 31u);
}

TEST_F(WlanListTest, WithoutMemoryItIsOne) {
    stGateway.astWlan = {{7, "SSID-1", "AA"}};
    for (const uint32_t uiAt : {1u, 2u}) {
        stWorld.Plan({Op::kAlloc, uiAt, false});
        EXPECT_EQ(Read(), 1u);
        stWorld.Plan({});
        ExpectUntouched();
        // The first is for the index, so without it there is nothing to ask for.
        EXPECT_EQ(TakeAsked(), uiAt == 1 ? Asked{} : Asked{"list wlan"});
        EXPECT_EQ(stPlatform.astFaults.back().uiCode, 1u);
    }
}

TEST_F(WlanListTest, NeedsBothPlaces) {
    EXPECT_EQ(VT_API_getWLanMacFltList(nullptr, &uiCount), kNullArgument);
    EXPECT_EQ(VT_API_getWLanMacFltList(&pstList, nullptr), kNullArgument);
    EXPECT_EQ(VT_API_getWlanInst(nullptr), kNullArgument);
    EXPECT_TRUE(TakeAsked().empty());
}

TEST_F(WlanTableTest, NetworksAreAskedForIfTheFirmwareHasThem) {
    UseSsids({3, 4});
    WlanInstBlock stBlock = {};
    EXPECT_EQ(VT_API_getWlanInst(&stBlock), 0u);
    EXPECT_EQ(TakeAsked(), (Asked{"ssids"}));
    EXPECT_EQ(std::string(reinterpret_cast<const char *>(&stBlock), 132), IndexBytes({3, 4}, 32));
    EXPECT_EQ(Traced("VT_API_getWlanInst Called  instNum:2 \r\n"), 1u);
}

TEST_F(WlanTableTest, WithoutTheFeatureTheBlockStaysAsItIs) {
    stPlatform.setFeatures = {313, 315};
    WlanInstBlock stBlock = {};
    stBlock.auiSsids[3] = 8;
    EXPECT_EQ(VT_API_getWlanInst(&stBlock), 0u);
    EXPECT_TRUE(TakeAsked().empty());
    EXPECT_EQ(stBlock.uiCount, 0u);
    EXPECT_EQ(stBlock.auiSsids[3], 8u);
    EXPECT_EQ(Traced("VT_API_getWlanInst Called  instNum:0 \r\n"), 1u);
}

TEST_F(WlanTableTest, RefusedNetworksArePassedUp) {
    UseSsids({3});
    stGateway.mapRefused["ssids"] = kSomeCode;
    WlanInstBlock stBlock = {};
    EXPECT_EQ(VT_API_getWlanInst(&stBlock), kSomeCode);
    EXPECT_EQ(stBlock.uiCount, 0u);
    EXPECT_EQ(Add({"AA"}), kSomeCode);
    EXPECT_EQ(Add({"AA"}, 1), kSomeCode);
    EXPECT_EQ(TakeAsked(), (Asked{"ssids", "ssids", "ssids"}));
    EXPECT_TRUE(Recorded("jni_macflter_wlan.cpp", kSomeCode));
}

TEST_F(WlanTableTest, AddedEntryByteForByte) {
    UseSsids({5});
    const char acExpected[] =
        "\0\0\0\0\1\0\0\0"
        "SSID-5\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0"
        "02:11:22:33:44:55\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0"
        "\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF";
    static_assert(sizeof(acExpected) - 1 == 84);
    EXPECT_EQ(Add({"02:11:22:33:44:55"}), 0u);
    ASSERT_EQ(stPlatform.astRpcs.size(), 3u);
    EXPECT_EQ(stPlatform.astRpcs[2].uiRpcId, 0x47209094u);
    EXPECT_EQ(stPlatform.astRpcs[2].sRequest, std::string(acExpected, 84));
}

TEST_F(WlanTableTest, RestoredEntryByteForByte) {
    const char acExpected[] =
        "\1\0\0\0"
        "SSID-5\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0"
        "02:11:22:33:44:55\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0"
        "\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF";
    static_assert(sizeof(acExpected) - 1 == 84);
    // An entry that was off comes back on; what stands behind its texts does not.
    std::string sEntry = Entry(9, "SSID-5", "02:11:22:33:44:55");
    sEntry[4] = '\0';
    sEntry[20] = 'j';
    sEntry[70] = 'k';
    EXPECT_EQ(Restore({sEntry}), 0u);
    ASSERT_EQ(stPlatform.astRpcs.size(), 1u);
    EXPECT_EQ(stPlatform.astRpcs[0].uiRpcId, 0x4730701Du);
    EXPECT_EQ(stPlatform.astRpcs[0].sRequest, std::string(acExpected, 84));
    EXPECT_EQ(Traced("VT_API_addWLanMacFltListByStructInfo Called Mac:02:11:22:33:44:55  "
                     "SSIDName:SSID-5\r\n"),
              1u);
}

TEST_F(WlanTableTest, AddressesAreAddedForEveryNetwork) {
    UseSsids({1, 5});
    EXPECT_EQ(Add({"AA", nullptr, "BB"}), 0u);
    EXPECT_EQ(TakeAsked(),
              (Asked{"ssids", "excluded 1", "excluded 5", "add wlan SSID-1 AA",
                     "add wlan SSID-5 AA", "add wlan SSID-1 BB", "add wlan SSID-5 BB"}));
    EXPECT_EQ(Traced("uiMaxIfNum[2]\r\n"), 1u);
    EXPECT_EQ(Traced("VT_API_addWLanMacFltListByMac Mac[1] is Null\r\n"), 1u);
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(WlanTableTest, ShorterAddressLeavesNothingOfTheOneBefore) {
    UseSsids({100, 1});
    // The gateway above compares every byte of the field.
    EXPECT_EQ(Add({"02:11:22:33:44:55", "AA"}), 0u);
    EXPECT_EQ(stGateway.astWlan.size(), 4u);
}

TEST_F(WlanTableTest, AddressOfMoreThan31BytesIsCut) {
    UseSsids({1});
    EXPECT_EQ(Add({std::string(40, 'm').c_str()}), 0u);
    EXPECT_EQ(TakeAsked().back(), "add wlan SSID-1 " + std::string(31, 'm'));
    EXPECT_EQ(Del({std::string(40, 'M').c_str()}), 0u);
    EXPECT_TRUE(stGateway.astWlan.empty());
}

TEST_F(WlanTableTest, ExcludedNetworksAreLeftOut) {
    UseSsids({1, 5, 6});
    stGateway.setExcluded = {5};
    EXPECT_EQ(Add({"AA"}), 0u);
    EXPECT_EQ(TakeAsked(), (Asked{"ssids", "excluded 1", "excluded 5", "excluded 6",
                                  "add wlan SSID-1 AA", "add wlan SSID-6 AA"}));
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(WlanTableTest, OnlyTheAnswerOneExcludes) {
    UseSsids({1, 5});
    stGateway.mapBytes["excluded 1"] = Word(2);
    stGateway.mapBytes["excluded 5"] = Word(kMinusOne);
    EXPECT_EQ(Add({"AA"}), 0u);
    EXPECT_EQ(stGateway.astWlan.size(), 2u);
}

TEST_F(WlanTableTest, NetworkThatCannotBeAskedAboutStaysIn) {
    UseSsids({1, 5});
    stGateway.mapRefused["excluded 5"] = kSomeCode;
    EXPECT_EQ(Add({"AA"}), 0u);
    EXPECT_EQ(stGateway.astWlan.size(), 2u);
    EXPECT_EQ(stPlatform.astFaults.back().uiCode, kSomeCode);
    EXPECT_EQ(stPlatform.astFaults.back().auiArgs, (Args{1, 5, 0, 0}));
}

TEST_F(WlanTableTest, SlotsOf255StandForNoNetwork) {
    UseSsids({255, 5});
    EXPECT_EQ(Add({"AA"}), 0u);
    EXPECT_EQ(TakeAsked(), (Asked{"ssids", "excluded 5", "add wlan SSID-5 AA"}));
}

TEST_F(WlanTableTest, AtMost32NetworksAreTaken) {
    stPlatform.setFeatures = {314};
    std::string sReply = Word(kMinusOne);
    for (uint32_t i = 1; i <= 32; ++i) {
        sReply += Word(i);
    }
    stGateway.mapBytes["ssids"] = sReply;
    EXPECT_EQ(Add({"AA"}), 0u);
    EXPECT_EQ(stGateway.astWlan.size(), 32u);
    EXPECT_EQ(stGateway.astWlan.back().sSsidName, "SSID-32");
    EXPECT_EQ(Traced("VT_API_getWlanInst Called  instNum:-1 \r\n"), 1u);
    EXPECT_EQ(Traced("uiMaxIfNum[32]\r\n"), 1u);
}

TEST_F(WlanTableTest, WithoutNetworksNothingIsAdded) {
    UseSsids({});
    EXPECT_EQ(Add({"AA"}), 0u);
    EXPECT_EQ(TakeAsked(), (Asked{"ssids"}));
    stPlatform.setFeatures.clear();
    EXPECT_EQ(Add({"AA"}), 0u);
    EXPECT_TRUE(TakeAsked().empty());
    EXPECT_EQ(Traced("uiMaxIfNum[0]\r\n"), 2u);
}

TEST_F(WlanTableTest, FailedAddDeletesWhatItAddedByItsId) {
    UseSsids({1, 5});
    // The same address from an earlier call stays.
    stGateway.astWlan = {{7, "SSID-1", "AA"}};
    stGateway.mapRefused["add wlan SSID-5 BB"] = kSomeCode;
    EXPECT_EQ(Add({"AA", "BB", "CC"}), kSomeCode);
    EXPECT_EQ(TakeAsked(), (Asked{"ssids", "excluded 1", "excluded 5", "add wlan SSID-1 AA",
                                  "add wlan SSID-5 AA", "add wlan SSID-1 BB", "add wlan SSID-5 BB",
                                  "list wlan", "get wlan 7", "get wlan 100", "get wlan 101",
                                  "get wlan 102", "del wlan 100", "del wlan 101", "del wlan 102"}));
    EXPECT_EQ(stGateway.State(), "mode 0 status 1; SSID-1 AA");
    EXPECT_TRUE(Recorded("jni_macflter_wlan.cpp", kSomeCode));
}

TEST_F(WlanTableTest, FailedFirstAddHasNothingToDelete) {
    UseSsids({1});
    stGateway.mapRefused["add wlan SSID-1 AA"] = kSomeCode;
    EXPECT_EQ(Add({"AA"}), kSomeCode);
    EXPECT_EQ(TakeAsked(), (Asked{"ssids", "excluded 1", "add wlan SSID-1 AA", "list wlan"}));
}

TEST_F(WlanTableTest, NoEntryIsLostFromTheUndoOfALongAdd) {
    // 8 addresses on 32 networks: as many as the table's index can name.
    std::vector<uint32_t> auiSsids;
    for (uint32_t i = 1; i <= 32; ++i) {
        auiSsids.push_back(i);
    }
    UseSsids(auiSsids);
    stGateway.mapRefused["add wlan SSID-32 M7"] = kSomeCode;
    EXPECT_EQ(Add({"M0", "M1", "M2", "M3", "M4", "M5", "M6", "M7"}), kSomeCode);
    EXPECT_EQ(stGateway.uiNextId, 100u + 255);
    EXPECT_EQ(stGateway.State(), "mode 0 status 1");
}

TEST_F(WlanTableTest, NeitherAreThoseThatTheIndexHasNoRoomFor) {
    std::vector<uint32_t> auiSsids;
    for (uint32_t i = 1; i <= 32; ++i) {
        auiSsids.push_back(i);
    }
    UseSsids(auiSsids);
    for (uint32_t i = 1; i <= 10; ++i) {
        stGateway.astWlan.push_back({i, "SSID-1", "OLD" + std::to_string(i)});
    }
    const std::string sBefore = stGateway.State();
    stGateway.mapRefused["add wlan SSID-32 M7"] = kSomeCode;
    EXPECT_EQ(Add({"M0", "M1", "M2", "M3", "M4", "M5", "M6", "M7"}), kSomeCode);
    EXPECT_EQ(stGateway.uiNextId, 100u + 255);
    EXPECT_EQ(stGateway.State(), sBefore);
    // Those that it names are deleted once, and each of the others as well.
    const Asked asAsked = TakeAsked();
    EXPECT_EQ(std::count_if(asAsked.begin(), asAsked.end(),
                            [](const std::string &sWhat) { return sWhat.rfind("del ", 0) == 0; }),
              255);
}

TEST_F(WlanTableTest, RecordOfALongAddIsAsLongAsItNeedsToBe) {
    UseSsids({1, 2, 3});
    const Macs apcMacs(128, "AA");
    EXPECT_EQ(Add(apcMacs), 0u);
    EXPECT_EQ(stGateway.astWlan.size(), 384u);
    EXPECT_EQ(stWorld.stAllocs.astLog.at(0).uiSize, 128u * 3 * 4);
}

TEST_F(WlanTableTest, WithoutMemoryForTheRecordNothingIsAdded) {
    UseSsids({1, 5});
    stWorld.Plan({Op::kAlloc, 1, false});
    EXPECT_EQ(Add({"AA"}), 1u);
    stWorld.Plan({});
    EXPECT_EQ(TakeAsked(), (Asked{"ssids", "excluded 1", "excluded 5"}));
    EXPECT_TRUE(Recorded("jni_macflter_wlan.cpp", 1));
    stWorld.Plan({Op::kAlloc, 1, false});
    EXPECT_EQ(Restore({Entry(9, "SSID-5", "AA")}), 1u);
    stWorld.Plan({});
    EXPECT_TRUE(TakeAsked().empty());
}

TEST_F(WlanTableTest, UndoingNeedsNoMemoryGoesOnAndSucceeds) {
    UseSsids({1, 5});
    stGateway.mapRefused["add wlan SSID-1 AA"] = kSomeCode;
    stGateway.mapRefused["restore wlan SSID-1 AA"] = kSomeCode;
    stWorld.Plan({Op::kAlloc, 1, true});
    EXPECT_EQ(Add({"AA", "BB"}, 1), 0u);
    EXPECT_EQ(Restore({Entry(9, "SSID-1", "AA"), Entry(9, "SSID-7", "BB")}, 1), 0u);
    stWorld.Plan({});
    EXPECT_EQ(TakeAsked(), (Asked{"ssids", "excluded 1", "excluded 5", "add wlan SSID-1 AA",
                                  "add wlan SSID-5 AA", "add wlan SSID-1 BB", "add wlan SSID-5 BB",
                                  "restore wlan SSID-1 AA", "restore wlan SSID-7 BB"}));
    EXPECT_TRUE(Recorded("jni_macflter_wlan.cpp", kSomeCode));
}

TEST_F(WlanTableTest, FailedRestoreDeletesWhatItAdded) {
    stGateway.mapRefused["restore wlan SSID-5 CC"] = kSomeCode;
    EXPECT_EQ(Restore({Entry(1, "SSID-5", "AA"), Entry(2, "SSID-6", "BB"), Entry(3, "SSID-5", "CC"),
                       Entry(4, "SSID-5", "DD")}),
              kSomeCode);
    EXPECT_EQ(TakeAsked(),
              (Asked{"restore wlan SSID-5 AA", "restore wlan SSID-6 BB", "restore wlan SSID-5 CC",
                     "list wlan", "get wlan 100", "get wlan 101", "del wlan 100", "del wlan 101"}));
}

TEST_F(WlanTableTest, RestoredTextsEndWithinTheirFields) {
    EXPECT_EQ(Restore({std::string(72, 'x')}), 0u);
    const std::string sCut(31, 'x');
    EXPECT_EQ(TakeAsked(), (Asked{"restore wlan " + sCut + " " + sCut}));
}

TEST_F(WlanTableTest, NullEntriesAreNotRestored) {
    const WlanMacFltEntry *apstEntries[] = {nullptr};
    EXPECT_EQ(VT_API_addWLanMacFltListByStructInfo(apstEntries, 1, 0), 0u);
    EXPECT_TRUE(TakeAsked().empty());
}

TEST_F(WlanTableTest, DeletesByAddressWhateverTheCase) {
    ListTwo();
    EXPECT_EQ(Del({"none", nullptr, "bb"}), 0u);
    EXPECT_EQ(TakeAsked(), (Asked{"list wlan", "get wlan 11", "get wlan 12", "get wlan 13",
                                  "get wlan 14", "del wlan 13", "del wlan 14"}));
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(WlanTableTest, DeletesByIdExactly) {
    ListTwo();
    EXPECT_EQ(DelIds({14, 99, 12}), 0u);
    EXPECT_EQ(TakeAsked(), (Asked{"list wlan", "get wlan 11", "get wlan 12", "get wlan 13",
                                  "get wlan 14", "del wlan 12", "del wlan 14"}));
}

TEST_F(WlanTableTest, FailedDeletePutsEntriesBackToTheirOwnNetworks) {
    for (const bool bByMac : {true, false}) {
        SCOPED_TRACE(bByMac);
        ListTwo();
        stGateway.mapRefused["del wlan 13"] = kSomeCode;
        EXPECT_EQ(bByMac ? Del({"AA", "BB"}) : DelIds({11, 12, 13, 14}), kSomeCode);
        EXPECT_EQ(TakeAsked(), (Asked{"list wlan", "get wlan 11", "get wlan 12", "get wlan 13",
                                      "get wlan 14", "del wlan 11", "del wlan 12", "del wlan 13",
                                      "restore wlan SSID-1 AA", "restore wlan SSID-5 AA"}));
        EXPECT_TRUE(Recorded("jni_macflter_wlan.cpp", kSomeCode));
    }
}

TEST_F(WlanTableTest, UndoingAnAddGoesOnAndSucceeds) {
    for (const bool bByMac : {true, false}) {
        SCOPED_TRACE(bByMac);
        ListTwo();
        stGateway.mapRefused["del wlan 12"] = kSomeCode;
        EXPECT_EQ(bByMac ? Del({"AA", "BB"}, 1) : DelIds({11, 12, 13, 14}, 1), 0u);
        EXPECT_EQ(TakeAsked(),
                  (Asked{"list wlan", "get wlan 11", "get wlan 12", "get wlan 13", "get wlan 14",
                         "del wlan 11", "del wlan 12", "del wlan 13", "del wlan 14"}));
        EXPECT_TRUE(Recorded("jni_macflter_wlan.cpp", kSomeCode));
    }
}

TEST_F(WlanTableTest, TableThatCannotBeReadIsPassedUp) {
    stGateway.mapRefused["list wlan"] = kSomeCode;
    EXPECT_EQ(Del({"AA"}), kSomeCode);
    EXPECT_EQ(DelIds({1}, 1), kSomeCode);
}

TEST_F(WlanTableTest, AddingTakesAnyKindButZeroForAddressesDeletingOnlyOne) {
    UseSsids({1});
    stGateway.astWlan = {{7, "SSID-1", "AA"}};
    const Macs apcMacs = {"BB"};
    const uint32_t uiId = 7;
    EXPECT_EQ(VT_API_addWLanMacFltList(apcMacs.data(), 1, 2, 0), 0u);
    EXPECT_EQ(VT_API_delWLanMacFltList(&uiId, 1, 2, 0), 0u);
    EXPECT_EQ(stGateway.State(), "mode 0 status 1; SSID-1 BB");
}

TEST_F(WlanTableTest, ListsThatAreNullOrTooLongAreRefused) {
    for (const uint32_t uiByMac : {0u, 1u}) {
        EXPECT_EQ(VT_API_addWLanMacFltList(nullptr, 1, uiByMac, 0), kNullArgument);
        EXPECT_EQ(VT_API_delWLanMacFltList(nullptr, 1, uiByMac, 0), kNullArgument);
    }
    EXPECT_EQ(Add(Macs(129, "AA")), 1u);
    EXPECT_EQ(Del(Macs(129, "AA")), 1u);
    EXPECT_EQ(Restore(std::vector<std::string>(257, Entry(1, "SSID-1", "AA"))), 1u);
    EXPECT_TRUE(TakeAsked().empty());
    EXPECT_EQ(stPlatform.astFaults.size(), 7u);
}

TEST_F(WlanTableTest, OneEntryIsDeletedByItsId) {
    stGateway.astWlan = {{0x01020304, "SSID-1", "AA"}};
    EXPECT_EQ(VT_API_delWLanMacFlt(0x01020304), 0u);
    ASSERT_EQ(stPlatform.astRpcs.size(), 1u);
    EXPECT_EQ(stPlatform.astRpcs[0].uiRpcId, 0x47209095u);
    EXPECT_EQ(stPlatform.astRpcs[0].sRequest, std::string("\x04\x03\x02\x01", 4));
    stGateway.mapRefused["del wlan 9"] = kSomeCode;
    EXPECT_EQ(VT_API_delWLanMacFlt(9), kSomeCode);
    EXPECT_EQ(stPlatform.astFaults.back().auiArgs, (Args{9, 0, 0, 0}));
}

}  // namespace
}  // namespace wap::test
