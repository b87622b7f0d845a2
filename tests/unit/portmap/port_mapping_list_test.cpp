// The list of all port mappings.
#include <cstdio>
#include <memory>
#include <set>
#include <string>

#include "faults/fault_sweep.h"
#include "lan/jni_port_mapping.h"
#include "records/port_mapping.h"
#include "unit/portmap/portmap_fixture.h"

namespace wap::test {
namespace {

constexpr uint32_t kNoMemory = 0xF7108001;
constexpr const char *kEmptyList = "{ \"Result\": 0, \"List\": [ ] }";

std::string JsonRow(uint32_t uiInstId, const char *pcEnabled = "TRUE") {
    return "{ \"PortMappingIndex\": " + std::to_string(uiInstId) + ", \"PortMappingEnabled\": \"" +
           pcEnabled +
           "\", \"ExternalPort\": 8080, \"InternalPort\": 80, \"PortMappingProtocol\": \"TCP\", "
           "\"InternalClient\": \"192.168.1.20\" }";
}

std::string JsonGroup(const std::string &sName, const std::string &sRows) {
    return "{ \"WANName\": \"" + sName + "\", \"MapList\": [ " + sRows + " ] }";
}

std::string JsonList(const std::string &sGroups) {
    return "{ \"Result\": 0, \"List\": [ " + sGroups + " ] }";
}

std::string SizeTrace(uint32_t uiSize) {
    return "VT_API_getPortMappingJsonStr  malloc size:" + std::to_string(uiSize) + "\n\r";
}

class ListMappingTest : public PortMappingTest {
  protected:
    /// The text that a worker gave, which is released; empty for none.
    static std::string Taken(char *pcText) {
        std::string sText = pcText == nullptr ? "" : pcText;
        VT_OS_MemFreeD(pcText, __FILE_NAME__, __LINE__);
        return sText;
    }

    std::string List(uint32_t uiWanted = 0) {
        char *pcText = nullptr;
        EXPECT_EQ(VT_JNI_getPortMappingInfo(&pcText), uiWanted);
        EXPECT_EQ(pcText == nullptr, uiWanted != 0);
        return Taken(pcText);
    }

    std::string ListOf(const std::string &sTable) {
        FurnishMappingTable(stWorld, sTable);
        return List();
    }

    void ExpectFailure(const std::string &sTable, uint32_t uiWanted) {
        FurnishMappingTable(stWorld, sTable);
        EXPECT_EQ(List(uiWanted), "");
    }
};

TEST_F(ListMappingTest, AsksForTheTableAndForEachGroupsConnection) {
    FurnishMappingTable(stWorld, RowBytes(7, 1) + RowBytes(7, 2) + RowBytes(8, 3));
    (void)List();
    ExpectRpcs({{"gulm", 48, kAskTable, Word(0), 12},
                {"gulm", 48, kAskWan, Word(0) + Word(7), 284},
                {"gulm", 48, kAskWan, Word(0) + Word(8), 284}});
    const std::string sDesc =
        "stVdata Info DataID:4097 CompressedLen:1248  OriginalLen = 1248 \n\r";
    EXPECT_EQ(EntryTraces(stPlatform), (Calls{sDesc, kWanTrace, kWanTrace, SizeTrace(2048)}));
    EXPECT_EQ(stPlatform.asCalls, (Calls{"VT_VDATA_ReadData 4097 1248", "VT_VDATA_FreeShm 4097"}));
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(ListMappingTest, AnswerByteForByte) {
    EXPECT_EQ(ListOf(RowBytes(7, 5, {1, 8080, 80, "TCP", "192.168.1.20"}) +
                     RowBytes(7, 6, {0, 5060, 5061, "UDP", "192.168.1.9"})),
              "{ \"Result\": 0, \"List\": [ { \"WANName\": \"1_INTERNET_R_VID_100\", \"MapList\": "
              "[ { \"PortMappingIndex\": 5, \"PortMappingEnabled\": \"TRUE\", \"ExternalPort\": "
              "8080, \"InternalPort\": 80, \"PortMappingProtocol\": \"TCP\", \"InternalClient\": "
              "\"192.168.1.20\" }, { \"PortMappingIndex\": 6, \"PortMappingEnabled\": \"FALSE\", "
              "\"ExternalPort\": 5060, \"InternalPort\": 5061, \"PortMappingProtocol\": \"UDP\", "
              "\"InternalClient\": \"192.168.1.9\" } ] } ] }");
}

TEST_F(ListMappingTest, EveryFieldComesFromItsPlace) {
    std::string sRow(416, 'N');
    PutText(sRow, 0, Word(7));
    PutText(sRow, 4, Word(11));
    PutText(sRow, 40, Word(1));
    PutText(sRow, 64, Word(22));
    PutText(sRow, 72, Word(33));
    PutText(sRow, 76, std::string("P\0", 2));
    PutText(sRow, 92, std::string("C\0", 2));
    EXPECT_EQ(ListOf(sRow),
              JsonList(JsonGroup("1_INTERNET_R_VID_100",
                                 "{ \"PortMappingIndex\": 11, \"PortMappingEnabled\": \"TRUE\", "
                                 "\"ExternalPort\": 22, \"InternalPort\": 33, "
                                 "\"PortMappingProtocol\": \"P\", \"InternalClient\": \"C\" }")));
}

TEST_F(ListMappingTest, OnlyOneMeansEnabled) {
    for (const uint32_t uiEnable : {0u, 1u, 2u, 0x101u, 0x01000000u, 0xFFFFFFFFu}) {
        EXPECT_EQ(ListOf(RowBytes(7, 1, {.uiEnable = uiEnable})),
                  JsonList(JsonGroup("1_INTERNET_R_VID_100",
                                     JsonRow(1, uiEnable == 1 ? "TRUE" : "FALSE"))));
    }
}

TEST_F(ListMappingTest, NumbersAreShownSigned) {
    EXPECT_EQ(ListOf(RowBytes(0xFFFFFFFF, 0xFFFFFFFF, {1, 0x80000000, 0x7FFFFFFF, "", ""})),
              JsonList(JsonGroup("1_INTERNET_R_VID_100",
                                 "{ \"PortMappingIndex\": -1, \"PortMappingEnabled\": \"TRUE\", "
                                 "\"ExternalPort\": -2147483648, \"InternalPort\": 2147483647, "
                                 "\"PortMappingProtocol\": \"\", \"InternalClient\": \"\" }")));
}

TEST_F(ListMappingTest, RunsMakeTheGroups) {
    FurnishMappingTable(stWorld, RowBytes(1, 10) + RowBytes(2, 20) + RowBytes(1, 30));
    stPlatform.astNextReplies = {stPlatform.mapReplies[kAskTable],
                                 {0, WanBytes({.sName = "one"})},
                                 {0, WanBytes({.sName = "two"})},
                                 {0, WanBytes({.sName = "one"})}};
    EXPECT_EQ(List(),
              JsonList(JsonGroup("one", JsonRow(10)) + ", " + JsonGroup("two", JsonRow(20)) + ", " +
                       JsonGroup("one", JsonRow(30))));
    EXPECT_EQ(Rpcs(), (Codes{kAskTable, kAskWan, kAskWan, kAskWan}));
    EXPECT_EQ(stPlatform.astRpcs[3].sRequest, Word(0) + Word(1));
}

TEST_F(ListMappingTest, NeighboursShareAGroup) {
    EXPECT_EQ(ListOf(RowBytes(1, 10) + RowBytes(1, 11) + RowBytes(2, 20) + RowBytes(2, 21)),
              JsonList(JsonGroup("1_INTERNET_R_VID_100", JsonRow(10) + ", " + JsonRow(11)) + ", " +
                       JsonGroup("1_INTERNET_R_VID_100", JsonRow(20) + ", " + JsonRow(21))));
    EXPECT_EQ(Rpcs(), (Codes{kAskTable, kAskWan, kAskWan}));
}

TEST_F(ListMappingTest, RowOfNoConnectionEndsTheTable) {
    EXPECT_EQ(ListOf(RowBytes(7, 1) + RowBytes(0, 2) + RowBytes(7, 3)),
              JsonList(JsonGroup("1_INTERNET_R_VID_100", JsonRow(1))));
    EXPECT_EQ(EntryTraces(stPlatform).back(), SizeTrace(1024));
    stPlatform.ClearRecords();
    EXPECT_EQ(ListOf(RowBytes(0, 1) + RowBytes(7, 2)), kEmptyList);
    EXPECT_EQ(EntryTraces(stPlatform).back(), SizeTrace(512));
    EXPECT_EQ(Rpcs(), (Codes{kAskTable}));
}

TEST_F(ListMappingTest, NoTableAtAllIsAnEmptyList) {
    stPlatform.mapReplies[kAskTable] = {0, Word(0) + Word(0) + Word(0)};
    EXPECT_EQ(List(), kEmptyList);
    EXPECT_EQ(
        EntryTraces(stPlatform),
        (Calls{"stVdata Info DataID:0 CompressedLen:0  OriginalLen = 0 \n\r", SizeTrace(512)}));
    EXPECT_TRUE(stPlatform.asCalls.empty());
    stPlatform.mapReplies[kAskTable] = {0, ""};
    EXPECT_EQ(List(), kEmptyList);
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

// The bridge frees what it does not read, and does not mind when there is nothing to free.
TEST_F(ListMappingTest, TableShorterThanARowIsFreedUnread) {
    EXPECT_EQ(ListOf(RowBytes(7, 1).substr(0, 415)), kEmptyList);
    EXPECT_EQ(stPlatform.asCalls, (Calls{"VT_VDATA_FreeShm 4097"}));
    stPlatform.mapReplies[kAskTable] = {0, Word(99) + Word(0) + Word(0)};
    EXPECT_EQ(List(), kEmptyList);
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(ListMappingTest, RemainderBehindTheLastRowIsIgnored) {
    EXPECT_EQ(ListOf(RowBytes(7, 1) + RowBytes(7, 2).substr(0, 415)),
              JsonList(JsonGroup("1_INTERNET_R_VID_100", JsonRow(1))));
    EXPECT_EQ(ListOf(RowBytes(7, 1) + "x"),
              JsonList(JsonGroup("1_INTERNET_R_VID_100", JsonRow(1))));
}

TEST_F(ListMappingTest, LongTableIsCompressed) {
    std::string sTable;
    std::string sRows;
    for (uint32_t i = 1; i <= 300; ++i) {
        sTable += RowBytes(7, i);
        sRows += (i == 1 ? "" : ", ") + JsonRow(i);
    }
    EXPECT_EQ(ListOf(sTable), JsonList(JsonGroup("1_INTERNET_R_VID_100", sRows)));
    EXPECT_EQ(Rpcs(), (Codes{kAskTable, kAskWan}));
    EXPECT_EQ(EntryTraces(stPlatform).back(), SizeTrace(512 * 301));
}

TEST_F(ListMappingTest, TextsEndAtTheirFields) {
    const std::string s16(16, 'p');
    std::string sRow = RowBytes(7, 1, {1, 8080, 80, s16, std::string(16, 'c')});
    // What follows the client's field is no zero either.
    PutText(sRow, 40 + 68, std::string(257, 'u'));
    AnswerWan({.sName = std::string(256, 'n')});
    EXPECT_EQ(ListOf(sRow),
              JsonList(JsonGroup(std::string(256, 'n'),
                                 "{ \"PortMappingIndex\": 1, \"PortMappingEnabled\": \"TRUE\", "
                                 "\"ExternalPort\": 8080, \"InternalPort\": 80, "
                                 "\"PortMappingProtocol\": \"" +
                                     s16 + "\", \"InternalClient\": \"" + std::string(16, 'c') +
                                     "\" }")));
}

TEST_F(ListMappingTest, TextsAreEscaped) {
    AnswerWan({.sName = "a\"b\\c/d\n"});
    EXPECT_EQ(ListOf(RowBytes(7, 1)), JsonList(JsonGroup("a\\\"b\\\\c\\/d\\n", JsonRow(1))));
}

TEST_F(ListMappingTest, NamelessConnectionKeepsItsGroup) {
    AnswerWan({.sName = ""});
    EXPECT_EQ(ListOf(RowBytes(7, 1)), JsonList(JsonGroup("", JsonRow(1))));
}

// Whether a connection may have mappings is not asked for those that it has.
TEST_F(ListMappingTest, ConnectionIsNotChecked) {
    AnswerWan({.sName = "wan", .uiKind = 9, .uiGate = 0, .uiMode = 1});
    EXPECT_EQ(ListOf(RowBytes(7, 1)), JsonList(JsonGroup("wan", JsonRow(1))));
}

// 1024 bytes for one row. A quotation mark in the name takes two of them, a control character six.
TEST_F(ListMappingTest, AnswerMustFitItsBuffer) {
    const size_t uiRoom = 1023 - JsonList(JsonGroup("", JsonRow(1))).size();
    const size_t uiMore = uiRoom - 256;
    std::string sName = std::string(uiMore / 5, '\x01') + std::string(uiMore % 5, '"');
    sName.resize(256, 'n');
    std::string sPrinted;
    for (const char cByte : sName) {
        sPrinted += cByte == 'n' ? "n" : cByte == '"' ? "\\\"" : "\\u0001";
    }
    ASSERT_EQ(sPrinted.size(), uiRoom);
    AnswerWan({.sName = sName});
    EXPECT_EQ(ListOf(RowBytes(7, 1)), JsonList(JsonGroup(sPrinted, JsonRow(1))));
    EXPECT_TRUE(stPlatform.astFaults.empty());
    sName.back() = '"';
    AnswerWan({.sName = sName});
    ExpectFailure(RowBytes(7, 1), 1);
    EXPECT_TRUE(HasFault(stPlatform, 1));
}

TEST_F(ListMappingTest, RefusedTableRequest) {
    Refuse(kAskTable);
    EXPECT_EQ(List(kRefused), "");
    EXPECT_EQ(Rpcs(), (Codes{kAskTable}));
    EXPECT_EQ(EntryTraces(stPlatform), Calls{});
    EXPECT_TRUE(HasRecorded(kRefused, {}));
}

TEST_F(ListMappingTest, BlockThatCannotBeRead) {
    stPlatform.mapStatus["VT_VDATA_ReadData"] = kRefused;
    ExpectFailure(RowBytes(7, 1), kRefused);
    EXPECT_EQ(Rpcs(), (Codes{kAskTable}));
    EXPECT_TRUE(HasRecorded(kRefused, {4097, 0, 0, 0}));
    stPlatform.mapStatus.clear();
    stPlatform.mapReplies[kAskTable] = {0, Word(99) + Word(0xFFFFFFFF) + Word(0xFFFFFFFF)};
    EXPECT_EQ(List(kNoMemory), "");
    // The platform knows no such block.
    stPlatform.mapReplies[kAskTable] = {0, Word(99) + Word(416) + Word(416)};
    EXPECT_EQ(List(0x0B0B0002), "");
}

TEST_F(ListMappingTest, ConnectionThatIsNotKnown) {
    FurnishMappingTable(stWorld, RowBytes(7, 1) + RowBytes(8, 2) + RowBytes(9, 3));
    stPlatform.astNextReplies = {stPlatform.mapReplies[kAskTable], {0, WanBytes()}, {kRefused, ""}};
    EXPECT_EQ(List(kRefused), "");
    EXPECT_EQ(Rpcs(), (Codes{kAskTable, kAskWan, kAskWan}));
    EXPECT_TRUE(HasRecorded(kRefused, {8, 0, 0, 0}));
}

/// What is shown of two rows of one connection that hold nothing but a byte: every text runs to the
/// end of its field.
std::string ListOfTwoFilledRows(char cByte, const std::string &sNumber) {
    const std::string sText(16, cByte);
    const std::string sRow = "{ \"PortMappingIndex\": " + sNumber +
                             ", \"PortMappingEnabled\": \"FALSE\", \"ExternalPort\": " + sNumber +
                             ", \"InternalPort\": " + sNumber + ", \"PortMappingProtocol\": \"" +
                             sText + "\", \"InternalClient\": \"" + sText + "\" }";
    return JsonList(JsonGroup("wan", sRow + ", " + sRow));
}

TEST_F(ListMappingTest, TableOfOnesOrOfText) {
    constexpr size_t kTwoRows = 832;
    AnswerWan({.sName = "wan"});
    EXPECT_EQ(ListOf(std::string(kTwoRows, '\xFF')), ListOfTwoFilledRows('\xFF', "-1"));
    EXPECT_EQ(ListOf(std::string(kTwoRows, 'x')), ListOfTwoFilledRows('x', "2021161080"));
}

TEST_F(ListMappingTest, DescriptorCutShortOrNonsense) {
    const std::string sDesc = Word(0x3021) + Word(416) + Word(416);
    for (size_t i = 0; i < sDesc.size(); ++i) {
        stPlatform.mapBlocks = {{0x3021, RowBytes(7, 1)}};
        stPlatform.mapReplies[kAskTable] = {0, sDesc.substr(0, i)};
        char *pcText = nullptr;
        const uint32_t uiResult = VT_JNI_getPortMappingInfo(&pcText);
        EXPECT_EQ(pcText == nullptr, uiResult != 0) << i;
        // The bytes of 416 are A0 and 01. Without the second there is no row; without a stored
        // length nothing can be read; and 160 bytes of the row hold all that is shown of it.
        const std::string sRow = JsonList(JsonGroup("1_INTERNET_R_VID_100", JsonRow(1)));
        EXPECT_EQ(Taken(pcText), i <= 5 ? kEmptyList : i <= 8 ? "" : sRow) << i;
        stPlatform.mapBlocks.clear();
    }
    stPlatform.mapReplies[kAskTable] = {0, std::string(12, '\xFF')};
    EXPECT_EQ(List(kNoMemory), "");
}

TEST_F(ListMappingTest, NullIsRefusedWithoutAsking) {
    EXPECT_EQ(VT_JNI_getPortMappingInfo(nullptr), kNullArgument);
    char *pcText = nullptr;
    EXPECT_EQ(VT_API_getPortMappingJsonStr(nullptr, 1, &pcText), kNullArgument);
    const PortMappingRow stRow = {};
    EXPECT_EQ(VT_API_getPortMappingJsonStr(&stRow, 1, nullptr), kNullArgument);
    EXPECT_EQ(pcText, nullptr);
    EXPECT_EQ(FaultCodes(stPlatform), (Codes{kNullArgument, kNullArgument, kNullArgument}));
    EXPECT_TRUE(stPlatform.astRpcs.empty());
}

TEST_F(ListMappingTest, TableOfNoRowsNeedsNoRows) {
    char *pcText = nullptr;
    EXPECT_EQ(VT_API_getPortMappingJsonStr(nullptr, 0, &pcText), 0u);
    EXPECT_EQ(Taken(pcText), kEmptyList);
}

// 16 MiB of rows are 40329; the size of the answer stays far from where 32 bits end.
TEST_F(ListMappingTest, MoreRowsThanABlockCanHoldAreRefusedUnseen) {
    const PortMappingRow stRow = {};
    for (const uint32_t uiCount : {40330u, 8388607u, 0xFFFFFFFFu}) {
        char *pcText = nullptr;
        EXPECT_EQ(VT_API_getPortMappingJsonStr(&stRow, uiCount, &pcText), 1u);
        EXPECT_EQ(pcText, nullptr);
        EXPECT_TRUE(HasRecorded(1, {0, uiCount, 0, 0}));
    }
    char *pcText = nullptr;
    EXPECT_EQ(VT_API_getPortMappingJsonStr(&stRow, 40329, &pcText), 0u);
    EXPECT_EQ(Taken(pcText), kEmptyList);
}

// ---- faults ----

std::string Status(uint32_t uiStatus) {
    char acText[16];
    std::snprintf(acText, sizeof(acText), "%08X", static_cast<unsigned>(uiStatus));
    return acText;
}

/// Lists a table under a fault. The outcome is the code, and the text on success.
Subject ListSubject(const std::string &sTable, const std::string &sGood) {
    struct State {
        char *pcText = nullptr;
        uint32_t uiStatus = 0;
    };
    auto pstState = std::make_shared<State>();
    Subject stSubject;
    stSubject.sName = "listing port mappings";
    stSubject.fnFurnish = [=](World &stWorld) {
        stWorld.stPlatform.mapReplies[kAskWan] = {0, WanBytes({.sName = "wan"})};
        FurnishMappingTable(stWorld, sTable);
    };
    stSubject.fnCall = [=](FakeJni &) {
        pstState->pcText = nullptr;
        pstState->uiStatus = VT_JNI_getPortMappingInfo(&pstState->pcText);
    };
    stSubject.fnOutcome = [=](FakeJni &) {
        std::string sOutcome = Status(pstState->uiStatus);
        if (pstState->pcText != nullptr) {
            sOutcome += std::string(" ") + pstState->pcText;
            VT_OS_MemFreeD(pstState->pcText, __FILE_NAME__, __LINE__);
        }
        return sOutcome;
    };
    stSubject.sGood = "00000000 " + sGood;
    return stSubject;
}

TEST(ListMappingFaults, EveryOperation) {
    const std::string sGroup = JsonGroup("wan", JsonRow(1));
    Subject stSubject =
        ListSubject(RowBytes(7, 1) + RowBytes(8, 1), JsonList(sGroup + ", " + sGroup));
    stSubject.fnAllowed = [&](const FaultPlan &stPlan) -> std::set<std::string> {
        switch (stPlan.eOp) {
            case Op::kAlloc:
                // Never a list that lacks something.
                return {Status(kNoMemory), Status(1)};
            case Op::kRpc:
                return {Status(kPlannedRpcStatus)};
            case Op::kBulk:
                return {Status(kPlannedStatus)};
            default:
                return {stSubject.sGood};
        }
    };
    const OpCounts auiCounts = SweepFaults(stSubject);
    EXPECT_EQ(CountOf(auiCounts, Op::kRpc), 3u);
    EXPECT_EQ(CountOf(auiCounts, Op::kBulk), 2u);
    EXPECT_GT(CountOf(auiCounts, Op::kAlloc), 30u);
}

// The array of a group has to grow for the 32nd row.
TEST(ListMappingFaults, RowThatTheListRefusesIsLeftOut) {
    std::string sTable;
    std::string sFirst;
    for (uint32_t i = 1; i <= 32; ++i) {
        sTable += RowBytes(7, i);
        sFirst += i == 32 ? "" : (i == 1 ? "" : ", ") + JsonRow(i);
    }
    const std::string sAll = JsonList(JsonGroup("wan", sFirst + ", " + JsonRow(32)));
    const std::string sLess = "00000000 " + JsonList(JsonGroup("wan", sFirst));
    const Look fnLook = [&](const Platform &stPlatform, const std::string &sOutcome) {
        if (sOutcome == sLess) {
            EXPECT_EQ(TimesRecorded(stPlatform, "jni_port_mapping.cpp", 0xF7100000), 1u);
        }
    };
    EXPECT_EQ(OutcomesWithoutMemory(ListSubject(sTable, sAll), fnLook).count(sLess), 1u);
}

// The array of the groups has to grow for the 33rd; what that group holds must not just vanish.
TEST(ListMappingFaults, GroupThatTheListRefusesFailsIt) {
    std::string sTable;
    std::string sFirst;
    for (uint32_t i = 1; i <= 32; ++i) {
        sTable += RowBytes(7 + i % 2, i);
        sFirst += i == 32 ? "" : (i == 1 ? "" : ", ") + JsonGroup("wan", JsonRow(i));
    }
    const std::string sAll = JsonList(sFirst + ", " + JsonGroup("wan", JsonRow(32)));
    const std::set<std::string> asOutcomes = OutcomesWithoutMemory(ListSubject(sTable, sAll));
    EXPECT_EQ(asOutcomes.count("00000000 " + JsonList(sFirst)), 0u);
    EXPECT_EQ(asOutcomes.count(Status(1)), 1u);
}

}  // namespace
}  // namespace wap::test
