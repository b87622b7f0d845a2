// The wired table: reading, adding, deleting, and what each undoes when a request fails.
#include <cstring>

#include "unit/macfilter/filter_gateway.h"

namespace wap::test {
namespace {

class LanTableTest : public MacFltTest {
  protected:
    uint32_t Add(const Macs &apcMacs, uint32_t uiRollback = 0) {
        return VT_API_addLanMacFltList(apcMacs.data(), static_cast<uint32_t>(apcMacs.size()),
                                       &stRecord, uiRollback);
    }
    uint32_t Del(const Macs &apcMacs, uint32_t uiRollback = 0) {
        return VT_API_delLanMacFltList(apcMacs.data(), static_cast<uint32_t>(apcMacs.size()),
                                       &stRecord, uiRollback);
    }
    /// The first slots of the record.
    std::vector<uint32_t> Slots(size_t uiCount) const {
        return {stRecord.auiInstIds, stRecord.auiInstIds + uiCount};
    }

    MacFltRecord stRecord = {};
};

class LanListTest : public LanTableTest {
  protected:
    uint32_t Read() { return VT_API_getLanMacFltList(&pstList, &stIndex); }
    void ExpectUntouched() {
        EXPECT_EQ(pstList, nullptr);
        EXPECT_EQ(stIndex.uiCount, 99u);
    }
    void TearDown() override {
        VT_OS_MemFreeD(pstList, __FILE_NAME__, __LINE__);
        LanTableTest::TearDown();
    }

    LanMacFltEntry *pstList = nullptr;
    MacFltInstBlock stIndex = {99, {}};
};

TEST_F(LanListTest, EntriesAreTheReplyBehindTheId) {
    stGateway.astLan = {{7, "AA"}, {0x01020304, "BB"}};
    EXPECT_EQ(Read(), 0u);
    EXPECT_EQ(TakeAsked(), (Asked{"list lan", "get lan 7", "get lan 16909060"}));
    ASSERT_EQ(stIndex.uiCount, 2u);
    EXPECT_EQ(stIndex.auiInstIds[1], 0x01020304u);
    EXPECT_EQ(std::string(reinterpret_cast<const char *>(pstList), 240),
              Word(7) + LanEntryBytes("AA") + Word(0x01020304) + LanEntryBytes("BB"));
    EXPECT_EQ(stWorld.stAllocs.SizeOf(pstList), 240u);
}

TEST_F(LanListTest, EmptyTableWritesNothing) {
    EXPECT_EQ(Read(), 0u);
    ExpectUntouched();
    EXPECT_EQ(TakeAsked(), (Asked{"list lan"}));
}

TEST_F(LanListTest, RefusedIndexIsPassedUp) {
    stGateway.mapRefused["list lan"] = kSomeCode;
    EXPECT_EQ(Read(), kSomeCode);
    ExpectUntouched();
    EXPECT_TRUE(Recorded("jni_macflter_lan.cpp", kSomeCode));
}

TEST_F(LanListTest, EntryThatCannotBeReadIsOne) {
    stGateway.astLan = {{7, "AA"}, {8, "BB"}, {9, "CC"}};
    stGateway.mapRefused["get lan 8"] = kSomeCode;
    EXPECT_EQ(Read(), 1u);
    ExpectUntouched();
    EXPECT_EQ(TakeAsked(), (Asked{"list lan", "get lan 7", "get lan 8"}));
    ASSERT_FALSE(stPlatform.astFaults.empty());
    EXPECT_EQ(stPlatform.astFaults.back().uiCode, kSomeCode);
    EXPECT_EQ(stPlatform.astFaults.back().auiArgs, (Args{1, 8, 0, 0}));
}

TEST_F(LanListTest, NumbersBeyondTheIndexEndWithIt) {
    for (const uint32_t uiCount : {33u, 0x7FFFFFFFu, 0xFFFFFFFFu}) {
        SCOPED_TRACE(uiCount);
        stGateway.astLan = {{0x5A5A5A5A, "AA"}};
        stGateway.mapBytes["list lan"] = Word(uiCount) + std::string(128, '\x5A');
        EXPECT_EQ(Read(), 0u);
        EXPECT_EQ(stIndex.uiCount, 32u);
        EXPECT_EQ(TakeAsked().size(), 33u);
        EXPECT_EQ(stWorld.stAllocs.SizeOf(pstList), 32u * 120);
        VT_OS_MemFreeD(std::exchange(pstList, nullptr), __FILE_NAME__, __LINE__);
    }
}

TEST_F(LanListTest, AddressEndsWithinItsField) {
    stGateway.astLan = {{7, ""}};
    stGateway.mapBytes["get lan 7"] = std::string(116, 'x');
    EXPECT_EQ(Read(), 0u);
    ASSERT_NE(pstList, nullptr);
    EXPECT_EQ(strnlen(pstList->stBody.acMac, 32), 31u);
}

TEST_F(LanListTest, ShortRepliesLeaveZeros) {
    stGateway.mapBytes["list lan"] = Word(2) + Word(7);
    stGateway.mapBytes["get lan 7"] = Word(1) + "AA";
    stGateway.mapBytes["get lan 0"] = "";
    EXPECT_EQ(Read(), 0u);
    EXPECT_EQ(TakeAsked(), (Asked{"list lan", "get lan 7", "get lan 0"}));
    ASSERT_NE(pstList, nullptr);
    EXPECT_STREQ(pstList[0].stBody.acMac, "AA");
    EXPECT_STREQ(pstList[1].stBody.acMac, "");
}

TEST_F(LanListTest, WithoutMemoryItIsOneAndNoEntryIsAskedFor) {
    stGateway.astLan = {{7, "AA"}};
    stWorld.Plan({Op::kAlloc, 1, false});
    EXPECT_EQ(Read(), 1u);
    stWorld.Plan({});
    ExpectUntouched();
    EXPECT_EQ(TakeAsked(), (Asked{"list lan"}));
    EXPECT_TRUE(Recorded("jni_macflter_lan.cpp", 1));
}

TEST_F(LanListTest, NeedsBothPlaces) {
    EXPECT_EQ(VT_API_getLanMacFltList(nullptr, &stIndex), kNullArgument);
    EXPECT_EQ(VT_API_getLanMacFltList(&pstList, nullptr), kNullArgument);
    ExpectUntouched();
    EXPECT_TRUE(TakeAsked().empty());
}

TEST_F(LanTableTest, AddedEntryByteForByte) {
    const char acExpected[] =
        "\0\0\0\0\1\0\0\0"
        "02:11:22:33:44:55\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0"
        "\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0"
        "YYYYYNN\0\0\0\0\0\0\0\0\0"
        "00:00\0\0\0\0\0\0\0\0\0\0\0"
        "23:59\0\0\0\0\0\0\0\0\0\0\0";
    static_assert(sizeof(acExpected) - 1 == 120);
    uint32_t uiInstId = 5;
    EXPECT_EQ(VT_API_addLanMacFlt("02:11:22:33:44:55", &uiInstId), 0u);
    EXPECT_EQ(uiInstId, 100u);
    ASSERT_EQ(stPlatform.astRpcs.size(), 1u);
    EXPECT_EQ(stPlatform.astRpcs[0].uiRpcId, 0x47209092u);
    EXPECT_EQ(stPlatform.astRpcs[0].sRequest, std::string(acExpected, 120));
    EXPECT_EQ(Traced("VT_API_addLanMacFlt Success uiInstId:100\r\n"), 1u);
}

TEST_F(LanTableTest, RefusedEntryIsTracedAsSuccessAndGivesNoId) {
    stGateway.mapRefused["add lan AA"] = kSomeCode;
    uint32_t uiInstId = 5;
    EXPECT_EQ(VT_API_addLanMacFlt("AA", &uiInstId), kSomeCode);
    EXPECT_EQ(uiInstId, 5u);
    size_t uiTraces = 0;
    for (const TraceRecord &stTrace : stPlatform.astTraces) {
        uiTraces += stTrace.sText.rfind("VT_API_addLanMacFlt Success uiInstId:", 0) == 0 ? 1 : 0;
    }
    EXPECT_EQ(uiTraces, 1u);
    EXPECT_TRUE(Recorded("jni_macflter_lan.cpp", kSomeCode));
}

TEST_F(LanTableTest, AddressOfMoreThan31BytesIsCut) {
    uint32_t uiInstId = 0;
    EXPECT_EQ(VT_API_addLanMacFlt(std::string(40, 'm').c_str(), &uiInstId), 0u);
    EXPECT_EQ(TakeAsked(), (Asked{"add lan " + std::string(31, 'm')}));
}

TEST_F(LanTableTest, NothingIsAddedOrDeletedWithoutArguments) {
    uint32_t uiInstId = 0;
    EXPECT_EQ(VT_API_addLanMacFlt(nullptr, &uiInstId), kNullArgument);
    EXPECT_EQ(VT_API_addLanMacFlt("AA", nullptr), kNullArgument);
    EXPECT_EQ(VT_API_addLanMacFltList(nullptr, 1, &stRecord, 0), kNullArgument);
    EXPECT_EQ(VT_API_delLanMacFltList(nullptr, 1, &stRecord, 0), kNullArgument);
    const Macs apcMacs = {"AA"};
    EXPECT_EQ(VT_API_addLanMacFltList(apcMacs.data(), 1, nullptr, 0), kNullArgument);
    EXPECT_EQ(VT_API_delLanMacFltList(apcMacs.data(), 1, nullptr, 0), kNullArgument);
    EXPECT_TRUE(TakeAsked().empty());
    EXPECT_EQ(FaultCodes(stPlatform), Codes(6, kNullArgument));
}

TEST_F(LanTableTest, ListLongerThanTheRecordIsRefused) {
    const Macs apcMacs(129, "AA");
    EXPECT_EQ(Add(apcMacs), 1u);
    EXPECT_EQ(Del(apcMacs), 1u);
    EXPECT_TRUE(TakeAsked().empty());
    EXPECT_EQ(FaultCodes(stPlatform), (Codes{1, 1}));
}

TEST_F(LanTableTest, AllSlotsOfTheRecordAreUsed) {
    std::vector<std::string> asMacs;
    for (uint32_t i = 0; i < 128; ++i) {
        asMacs.push_back("M" + std::to_string(i));
    }
    Macs apcMacs;
    for (const std::string &sMac : asMacs) {
        apcMacs.push_back(sMac.c_str());
    }
    EXPECT_EQ(Add(apcMacs), 0u);
    EXPECT_EQ(stRecord.auiInstIds[0], 100u);
    EXPECT_EQ(stRecord.auiInstIds[127], 227u);
    EXPECT_EQ(stGateway.astLan.size(), 128u);
}

TEST_F(LanTableTest, IdsGoIntoTheSlotsOfTheirAddresses) {
    EXPECT_EQ(Add({"AA", nullptr, "BB"}), 0u);
    EXPECT_EQ(TakeAsked(), (Asked{"add lan AA", "add lan BB"}));
    EXPECT_EQ(Slots(4), (Codes{100, 0, 101, 0}));
    EXPECT_EQ(stRecord.uiUnused, 0u);
    EXPECT_EQ(Traced("VT_API_addLanMacFltList Mac[1] is Null\r\n"), 1u);
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(LanTableTest, FailedAddDeletesWhatItAdded) {
    stGateway.astLan = {{1, "OLD"}};
    stGateway.mapRefused["add lan CC"] = kSomeCode;
    EXPECT_EQ(Add({"AA", "BB", "CC", "DD"}), kSomeCode);
    EXPECT_EQ(TakeAsked(), (Asked{"add lan AA", "add lan BB", "add lan CC", "list lan", "get lan 1",
                                  "get lan 100", "get lan 101", "del lan 100", "del lan 101"}));
    EXPECT_EQ(stGateway.State(), "mode 0 status 1; lan OLD");
    EXPECT_TRUE(Recorded("jni_macflter_lan.cpp", kSomeCode));
}

TEST_F(LanTableTest, FailedFirstAddHasNothingToDelete) {
    stGateway.astLan = {{1, "OLD"}};
    stGateway.mapRefused["add lan AA"] = kSomeCode;
    EXPECT_EQ(Add({"AA", "BB"}), kSomeCode);
    EXPECT_EQ(TakeAsked(), (Asked{"add lan AA", "list lan", "get lan 1"}));
}

TEST_F(LanTableTest, FailedAddDoesNotDeleteTheAddressThatFailed) {
    // Listed already, by somebody else, and in the record from an earlier call.
    stGateway.astLan = {{1, "BB"}};
    stRecord.auiInstIds[1] = 1;
    stGateway.mapRefused["add lan BB"] = kSomeCode;
    EXPECT_EQ(Add({"AA", "BB"}), kSomeCode);
    EXPECT_EQ(stGateway.State(), "mode 0 status 1; lan BB");
}

TEST_F(LanTableTest, FailedAddDoesNotDeleteWhatWasListedBefore) {
    stGateway.astLan = {{1, "AA"}, {2, "bb"}};
    stGateway.mapRefused["add lan CC"] = kSomeCode;
    EXPECT_EQ(Add({"BB", "AA", "BB", "CC"}), kSomeCode);
    EXPECT_EQ(TakeAsked(),
              (Asked{"add lan BB", "add lan AA", "add lan BB", "add lan CC", "list lan",
                     "get lan 1", "get lan 2", "get lan 100", "get lan 101", "get lan 102",
                     "del lan 100", "del lan 101", "del lan 102"}));
    EXPECT_EQ(stGateway.State(), "mode 0 status 1; lan AA; lan bb");
}

/// So many entries with the ids from 1.
std::vector<FilterGateway::LanRow> ManyRows(uint32_t uiCount) {
    std::vector<FilterGateway::LanRow> astRows;
    astRows.reserve(uiCount);
    for (uint32_t i = 1; i <= uiCount; ++i) {
        astRows.push_back({i, "OLD" + std::to_string(i)});
    }
    return astRows;
}

// Its own entries stand behind the end of the index then, where only their ids lead to them.
TEST_F(LanTableTest, FailedAddToAFullTableDeletesItsOwnEntriesOnly) {
    stGateway.astLan = ManyRows(32);
    stGateway.astLan[6].sMac = "aa";
    const std::string sBefore = stGateway.State();
    stGateway.mapRefused["add lan CC"] = kSomeCode;
    EXPECT_EQ(Add({"AA", nullptr, "BB", "CC"}), kSomeCode);
    Asked asAsked = TakeAsked();
    ASSERT_EQ(asAsked.size(), 3u + 33 + 2);
    EXPECT_EQ((Asked{asAsked.end() - 2, asAsked.end()}), (Asked{"del lan 100", "del lan 101"}));
    EXPECT_EQ(stGateway.State(), sBefore);
    EXPECT_EQ(stGateway.astLan[6].uiId, 7u);
}

TEST_F(LanTableTest, FailedAddDeletesWhatTheFullIndexNamesAndWhatNot) {
    stGateway.astLan = ManyRows(31);
    const std::string sBefore = stGateway.State();
    stGateway.mapRefused["add lan CC"] = kSomeCode;
    EXPECT_EQ(Add({"AA", "BB", "CC"}), kSomeCode);
    Asked asAsked = TakeAsked();
    EXPECT_EQ((Asked{asAsked.end() - 2, asAsked.end()}), (Asked{"del lan 100", "del lan 101"}));
    EXPECT_EQ(stGateway.State(), sBefore);
}

// With room left in the index, an id that is not there is an entry that is gone.
TEST_F(LanTableTest, WhatIsGoneAlreadyIsNotDeletedByTheUndo) {
    stGateway.astLan = ManyRows(31);
    stRecord.auiInstIds[0] = 100;
    EXPECT_EQ(Del({"OLD1"}, 1), 0u);
    EXPECT_EQ(TakeAsked().size(), 32u);
    EXPECT_EQ(stGateway.astLan.size(), 31u);
}

TEST_F(LanTableTest, UndoBehindAFullIndexGoesOnAndGivesTheLastCode) {
    stGateway.astLan = ManyRows(32);
    stGateway.astLan.push_back({100, "AA"});
    stGateway.astLan.push_back({101, "BB"});
    stRecord.auiInstIds[0] = 100;
    stRecord.auiInstIds[1] = 101;
    stRecord.auiInstIds[2] = 102;  // not of this call
    stGateway.mapRefused["del lan 100"] = kSomeCode;
    EXPECT_EQ(Del({"AA", "BB"}, 1), 0u);
    EXPECT_TRUE(Recorded("jni_macflter_lan.cpp", kSomeCode));
    Asked asAsked = TakeAsked();
    EXPECT_EQ((Asked{asAsked.end() - 2, asAsked.end()}), (Asked{"del lan 100", "del lan 101"}));
    stGateway.astLan.push_back({101, "BB"});
    stGateway.mapRefused = {{"del lan 101", kSomeCode}};
    EXPECT_EQ(Del({"AA", "BB"}, 1), kSomeCode);
    EXPECT_EQ(stGateway.astLan.size(), 33u);
}

TEST_F(LanTableTest, UndoingADeleteAddsOnlyWhatHasASlot) {
    stRecord.auiInstIds[1] = 9;
    stRecord.auiInstIds[2] = 9;
    EXPECT_EQ(Add({"AA", "BB", nullptr, "DD"}, 1), 0u);
    EXPECT_EQ(TakeAsked(), (Asked{"add lan BB"}));
    EXPECT_EQ(Slots(4), (Codes{0, 100, 9, 0}));
    EXPECT_EQ(Traced("VT_API_addLanMacFltList Mac[2] is Null\r\n"), 1u);
}

TEST_F(LanTableTest, UndoingADeleteGoesOnAndGivesTheLastCode) {
    stRecord.auiInstIds[0] = stRecord.auiInstIds[1] = stRecord.auiInstIds[2] = 9;
    stGateway.mapRefused["add lan AA"] = kSomeCode;
    EXPECT_EQ(Add({"AA", "BB", "CC"}, 1), 0u);
    EXPECT_EQ(TakeAsked(), (Asked{"add lan AA", "add lan BB", "add lan CC"}));
    EXPECT_TRUE(Recorded("jni_macflter_lan.cpp", kSomeCode));
    stGateway.mapRefused = {{"add lan CC", kSomeCode}};
    EXPECT_EQ(Add({"AA", "BB", "CC"}, 1), kSomeCode);
    EXPECT_EQ(TakeAsked(), (Asked{"add lan AA", "add lan BB", "add lan CC"}));
}

TEST_F(LanTableTest, DeletesInTheTablesOrderWhateverTheCase) {
    stGateway.astLan = {{1, "aa:bb:cc:dd:ee:ff"}, {2, "other"}, {3, "02:0A:00:00:00:01"}};
    EXPECT_EQ(Del({"02:0a:00:00:00:01", "none", "AA:BB:CC:DD:EE:FF", nullptr}), 0u);
    EXPECT_EQ(TakeAsked(),
              (Asked{"list lan", "get lan 1", "get lan 2", "get lan 3", "del lan 1", "del lan 3"}));
    EXPECT_EQ(Slots(5), (Codes{3, 0, 1, 0, 0}));
    EXPECT_EQ(stGateway.State(), "mode 0 status 1; lan other");
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(LanTableTest, AddressListedTwiceIsDeletedTwice) {
    stGateway.astLan = {{1, "AA"}, {2, "aa"}};
    EXPECT_EQ(Del({"AA"}), 0u);
    EXPECT_EQ(stGateway.State(), "mode 0 status 1");
    EXPECT_EQ(Slots(1), (Codes{2}));
}

TEST_F(LanTableTest, AddressGivenTwiceIsDeletedOnce) {
    stGateway.astLan = {{1, "AA"}};
    EXPECT_EQ(Del({"AA", "AA"}), 0u);
    EXPECT_EQ(TakeAsked(), (Asked{"list lan", "get lan 1", "del lan 1"}));
    EXPECT_EQ(Slots(2), (Codes{1, 0}));
}

TEST_F(LanTableTest, WhatWasCutWhenAddedCanBeDeleted) {
    stGateway.astLan = {{1, std::string(31, 'm')}};
    EXPECT_EQ(Del({std::string(40, 'M').c_str()}), 0u);
    EXPECT_EQ(stGateway.State(), "mode 0 status 1");
}

TEST_F(LanTableTest, EmptyListReadsTheTableAndDeletesNothing) {
    stGateway.astLan = {{1, "AA"}};
    EXPECT_EQ(VT_API_delLanMacFltList(nullptr, 0, &stRecord, 0), 0u);
    EXPECT_EQ(VT_API_addLanMacFltList(nullptr, 0, &stRecord, 0), 0u);
    EXPECT_EQ(TakeAsked(), (Asked{"list lan", "get lan 1"}));
}

TEST_F(LanTableTest, TableThatCannotBeReadIsPassedUp) {
    stGateway.mapRefused["list lan"] = kSomeCode;
    EXPECT_EQ(Del({"AA"}), kSomeCode);
    EXPECT_EQ(Del({"AA"}, 1), kSomeCode);
    stGateway.mapRefused.clear();
    stGateway.astLan = {{1, "AA"}};
    stGateway.mapRefused["get lan 1"] = kSomeCode;
    EXPECT_EQ(Del({"AA"}), 1u);
    EXPECT_EQ(stGateway.State(), "mode 0 status 1; lan AA");
}

TEST_F(LanTableTest, FailedDeleteAddsWhatItDeleted) {
    stGateway.astLan = {{1, "AA"}, {2, "BB"}, {3, "CC"}};
    stGateway.mapRefused["del lan 2"] = kSomeCode;
    EXPECT_EQ(Del({"CC", "BB", "AA"}), kSomeCode);
    EXPECT_EQ(TakeAsked(), (Asked{"list lan", "get lan 1", "get lan 2", "get lan 3", "del lan 1",
                                  "del lan 2", "add lan AA"}));
    EXPECT_EQ(stGateway.State(), "mode 0 status 1; lan AA; lan BB; lan CC");
    EXPECT_EQ(Slots(3), (Codes{0, 0, 100}));
    EXPECT_TRUE(Recorded("jni_macflter_lan.cpp", kSomeCode));
}

// There is one slot for the address; the filter's effect is that of two entries.
TEST_F(LanTableTest, FailedDeleteOfAnAddressListedTwiceAddsItOnce) {
    stGateway.astLan = {{1, "AA"}, {2, "aa"}, {3, "BB"}};
    stGateway.mapRefused["del lan 3"] = kSomeCode;
    EXPECT_EQ(Del({"AA", "BB"}), kSomeCode);
    EXPECT_EQ(TakeAsked(), (Asked{"list lan", "get lan 1", "get lan 2", "get lan 3", "del lan 1",
                                  "del lan 2", "del lan 3", "add lan AA"}));
    EXPECT_EQ(Slots(2), (Codes{100, 0}));
    EXPECT_EQ(stGateway.State(), "mode 0 status 1; lan AA; lan BB");
}

TEST_F(LanTableTest, FailedDeleteBeyondTheFirst32AddressesIsUndone) {
    stGateway.astLan = {{1, "AA"}, {2, "BB"}};
    stGateway.mapRefused["del lan 2"] = kSomeCode;
    Macs apcMacs(126, "none");
    apcMacs.push_back("AA");
    apcMacs.push_back("BB");
    EXPECT_EQ(Del(apcMacs), kSomeCode);
    EXPECT_EQ(stGateway.State(), "mode 0 status 1; lan AA; lan BB");
}

TEST_F(LanTableTest, UndoingAnAddDeletesOnlyWhatHasASlot) {
    stGateway.astLan = {{1, "AA"}, {2, "BB"}, {3, "CC"}};
    stRecord.auiInstIds[1] = 2;
    EXPECT_EQ(Del({"AA", "BB", "CC"}, 1), 0u);
    EXPECT_EQ(TakeAsked(), (Asked{"list lan", "get lan 1", "get lan 2", "get lan 3", "del lan 2"}));
}

TEST_F(LanTableTest, UndoingAnAddGoesOnAndGivesTheLastCode) {
    stGateway.astLan = {{1, "AA"}, {2, "BB"}};
    stRecord.auiInstIds[0] = stRecord.auiInstIds[2] = 1;
    stRecord.auiInstIds[1] = 2;
    stGateway.mapRefused["del lan 1"] = kSomeCode;
    // After a failure the next slot of the record is tried on the same entry.
    EXPECT_EQ(Del({"AA", "BB", "aa"}, 1), 0u);
    EXPECT_EQ(TakeAsked(),
              (Asked{"list lan", "get lan 1", "get lan 2", "del lan 1", "del lan 1", "del lan 2"}));
    stGateway.astLan = {{1, "AA"}, {2, "BB"}};
    stGateway.mapRefused = {{"del lan 2", kSomeCode}};
    EXPECT_EQ(Del({"AA", "BB"}, 1), kSomeCode);
    EXPECT_TRUE(Recorded("jni_macflter_lan.cpp", kSomeCode));
    EXPECT_EQ(stGateway.State(), "mode 0 status 1; lan BB");
}

TEST_F(LanTableTest, OneEntryIsDeletedByItsId) {
    stGateway.astLan = {{0x01020304, "AA"}};
    EXPECT_EQ(VT_API_delLanMacFlt(0x01020304), 0u);
    ASSERT_EQ(stPlatform.astRpcs.size(), 1u);
    EXPECT_EQ(stPlatform.astRpcs[0].uiRpcId, 0x47209093u);
    EXPECT_EQ(stPlatform.astRpcs[0].sRequest, std::string("\x04\x03\x02\x01", 4));
    stGateway.mapRefused["del lan 9"] = kSomeCode;
    EXPECT_EQ(VT_API_delLanMacFlt(9), kSomeCode);
    EXPECT_EQ(stPlatform.astFaults.back().auiArgs, (Args{9, 0, 0, 0}));
}

}  // namespace
}  // namespace wap::test
