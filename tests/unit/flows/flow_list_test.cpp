// The list of a flow's members.
#include <memory>
#include <set>
#include <string>

#include "faults/fault_sweep.h"
#include "unit/flows/flows_fixture.h"
#include "wan/jni_traffic_qos_srv.h"

namespace wap::test {
namespace {

constexpr uint32_t kNoMemory = 0xF7108001;

std::string JsonRow(const std::string &sAddress, const std::string &sPort) {
    return "{ \"RemoteAddress\": \"" + sAddress + "\", \"RemotePort\": \"" + sPort + "\" }";
}

std::string JsonList(const std::string &sRows) {
    return "{ \"Result\": 0, \"List\": [ " + sRows + (sRows.empty() ? "] }" : " ] }");
}

class FlowListTest : public FlowTest {
  protected:
    /// The list, or "" for a failure.
    std::string List(uint32_t uiWanted = 0) {
        stPlatform.ClearRecords();
        char *pcText = nullptr;
        EXPECT_EQ(ListFlowTraffic(7, &pcText), uiWanted);
        EXPECT_EQ(pcText == nullptr, uiWanted != 0);
        std::string sText = pcText == nullptr ? "" : pcText;
        VT_OS_MemFreeD(pcText, __FILE_NAME__, __LINE__);
        return sText;
    }
    void AnswerTable(uint32_t uiCount, const std::string &sTable) {
        stPlatform.mapReplies[kAskMembers] = FlowTableReply(uiCount, sTable);
    }
};

TEST_F(FlowListTest, AsksForTheTableAndReadsItsBlock) {
    EXPECT_EQ(List(), JsonList(JsonRow("198.51.100.7", "443") + ", " + JsonRow("", "53")));
    ExpectOnlyRpc(stPlatform, Request(kAskMembers, Word(7), 16));
    EXPECT_EQ(stPlatform.asCalls, (Calls{"VT_VDATA_ReadData 4097 544", "VT_VDATA_FreeShm 4097"}));
    EXPECT_EQ(EntryTraces(stPlatform),
              Calls{"stVdata Info DataID:4097 CompressedLen:544  OriginalLen = 544 \n\r"});
    ExpectNoFaults();
}

TEST_F(FlowListTest, EmptyFlowIsAFailure) {
    stPlatform.mapReplies[kAskMembers] = {0, std::string(16, '\0')};
    EXPECT_EQ(List(kMinusOne), "");
    EXPECT_EQ(stPlatform.asCalls, Calls{});
    EXPECT_EQ(EntryTraces(stPlatform), Calls{});
    ExpectRecorded(kMinusOne, {7, 0, 0, 0});
}

// Nobody else would free it.
TEST_F(FlowListTest, BlockOfAnEmptyFlowIsFreedUnread) {
    AnswerTable(0, FlowMemberBytes("a", "1", "7"));
    EXPECT_EQ(List(kMinusOne), "");
    EXPECT_EQ(stPlatform.asCalls, Calls{"VT_VDATA_FreeShm 4097"});
    AnswerTable(0, FlowMemberBytes("a", "1", "7"));
    stPlatform.mapStatus["VT_VDATA_FreeShm"] = 5;
    EXPECT_EQ(List(kMinusOne), "");
    EXPECT_EQ(FaultCodes(stPlatform), Codes{kMinusOne});
    stPlatform.mapStatus.clear();
    stPlatform.mapBlocks.clear();
}

TEST_F(FlowListTest, CountIsBoundedByTheBlock) {
    const std::string sRow = FlowMemberBytes("a", "1", "7");
    for (const uint32_t uiCount : {2u, 3u, 0x7FFFFFFFu, 0xFFFFFFFFu}) {
        AnswerTable(uiCount, sRow + sRow);
        EXPECT_EQ(List(), JsonList(JsonRow("a", "1") + ", " + JsonRow("a", "1"))) << uiCount;
    }
    // Part of a row is none.
    AnswerTable(3, sRow + sRow.substr(0, 271));
    EXPECT_EQ(List(), JsonList(JsonRow("a", "1")));
    AnswerTable(1, sRow.substr(0, 271));
    EXPECT_EQ(List(), JsonList(""));
    ExpectNoFaults();
}

TEST_F(FlowListTest, BlockIsBoundedByTheCount) {
    AnswerTable(1, FlowMemberBytes("a", "1", "7") + FlowMemberBytes("b", "2", "7"));
    EXPECT_EQ(List(), JsonList(JsonRow("a", "1")));
}

TEST_F(FlowListTest, LongTableComesCompressed) {
    std::string sTable;
    std::string sRows;
    for (int i = 0; i < 500; ++i) {
        const std::string sAddress = "host-" + std::to_string(i);
        sTable += FlowMemberBytes(sAddress, std::to_string(i), "7");
        sRows += (i == 0 ? "" : ", ") + JsonRow(sAddress, std::to_string(i));
    }
    AnswerTable(500, sTable);
    EXPECT_EQ(List(), JsonList(sRows));
}

TEST_F(FlowListTest, TextsEndWithTheirFields) {
    AnswerTable(1, std::string(256, 'a') + std::string(12, '1') + "7777");
    EXPECT_EQ(List(), JsonList(JsonRow(std::string(256, 'a'), std::string(12, '1'))));
}

/// As JSON shows it.
std::string Escaped(const std::string &sText) {
    std::string sEscaped;
    for (const char cChar : sText) {
        sEscaped += cChar == '"' ? std::string("\\\"") : std::string(1, cChar);
    }
    return sEscaped;
}

// There are 297 bytes for each member and 297 more, and marks take two.
TEST_F(FlowListTest, AnswerThatFillsItsBufferFails) {
    const std::string sFirst(255, '"');
    std::string sSecond = std::string(9, '"') + std::string(246, 'b');
    AnswerTable(2, FlowMemberBytes(sFirst, "1", "7") + FlowMemberBytes(sSecond, "22", "7"));
    const std::string sList = List();
    EXPECT_EQ(sList,
              JsonList(JsonRow(Escaped(sFirst), "1") + ", " + JsonRow(Escaped(sSecond), "22")));
    EXPECT_EQ(sList.size(), 890u);
    sSecond[9] = '"';
    AnswerTable(2, FlowMemberBytes(sFirst, "1", "7") + FlowMemberBytes(sSecond, "22", "7"));
    EXPECT_EQ(List(1), "");
    ExpectRecorded(1, {891, 7, 0, 0});
}

// Of the longest block; the answer is longer than that.
TEST_F(FlowListTest, LongestTableIsListed) {
    const uint32_t uiMost = 16 * 1024 * 1024 / 272;
    const std::string sAddress(250, 'a');
    const std::string sMember = FlowMemberBytes(sAddress, "443", "7");
    const std::string sRow = JsonRow(sAddress, "443");
    std::string sTable;
    std::string sRows;
    for (uint32_t i = 0; i < uiMost; ++i) {
        sTable += sMember;
        sRows += (i == 0 ? "" : ", ") + sRow;
    }
    AnswerTable(uiMost, sTable);
    const std::string sList = List();
    EXPECT_EQ(sList.size(), 18257307u);
    EXPECT_TRUE(sList == JsonList(sRows));
    ExpectNoFaults();
}

TEST_F(FlowListTest, RefusalIsRecordedWithTheFlow) {
    Refuse(kAskMembers);
    EXPECT_EQ(List(kRefused), "");
    ExpectRecorded(kRefused, {7, 0, 0, 0});
}

TEST_F(FlowListTest, BlockThatCanNotBeReadIsAFailure) {
    for (const char *pcCall : {"VT_VDATA_ReadData", "VT_VDATA_FreeShm"}) {
        stPlatform.mapStatus[pcCall] = 0x55;
        EXPECT_EQ(List(0x55), "");
        ExpectRecorded(0x55, {7, 2, 0, 0});
        stPlatform.mapStatus.clear();
        stPlatform.mapBlocks.clear();
    }
    stPlatform.mapReplies[kAskMembers] = {0, Word(1) + std::string(12, '\xFF')};
    EXPECT_EQ(List(kNoMemory), "");
    // A short reply has a count, but names no block.
    stPlatform.mapReplies[kAskMembers] = {0, Word(1)};
    EXPECT_EQ(List(kNoMemory), "");
}

/// The list of flow 7. The outcome is the code, and the text behind it.
Subject ListSubject() {
    auto pcText = std::make_shared<char *>(nullptr);
    auto uiResult = std::make_shared<uint32_t>(0);
    Subject stSubject;
    stSubject.sName = "ListFlowTraffic";
    stSubject.fnFurnish = FurnishFlows;
    stSubject.fnCall = [=](FakeJni &) { *uiResult = ListFlowTraffic(7, pcText.get()); };
    stSubject.fnOutcome = [=](FakeJni &) {
        std::string sOutcome = std::to_string(*uiResult);
        sOutcome += *pcText == nullptr ? "" : *pcText;
        VT_OS_MemFreeD(*pcText, __FILE_NAME__, __LINE__);
        *pcText = nullptr;
        return sOutcome;
    };
    stSubject.sGood = "0" + JsonList(JsonRow("198.51.100.7", "443") + ", " + JsonRow("", "53"));
    return stSubject;
}

TEST_F(FlowListTest, WhatCanNotBeBuiltIsRecorded) {
    // The block; the list; each member's object and texts, with the flow, its place and how many
    // there are; then the room and the text, which may also lack the member for the list.
    EXPECT_EQ(RecordsWithoutMemory(ListSubject(), kFile),
              (std::vector<std::string>{"f7108001(7,2)", "1(7)", "f7100000() 1(7,0,2)",
                                        "f7100000(1) 1(7,0,2)", "f7100000() 1(7,1,2)",
                                        "f7100000(1) 1(7,1,2)", "1(37b) 1(37b,7)",
                                        "ffffffff(37b) 1(37b,7)", "1(37b) 1(37b,7)"}));
}

TEST_F(FlowListTest, SurvivesEveryFault) {
    Subject stSubject = ListSubject();
    stSubject.fnAllowed = [&](const FaultPlan &stPlan) -> std::set<std::string> {
        switch (stPlan.eOp) {
            case Op::kAlloc:
                return {"1", std::to_string(kNoMemory)};
            case Op::kRpc:
                return {std::to_string(kPlannedRpcStatus)};
            case Op::kBulk:
                return {std::to_string(kPlannedStatus)};
            default:
                return {stSubject.sGood};
        }
    };
    const OpCounts auiCounts = SweepFaults(stSubject);
    EXPECT_EQ(CountOf(auiCounts, Op::kRpc), 1u);
    EXPECT_EQ(CountOf(auiCounts, Op::kBulk), 2u);
    // Two buffers, a list, two objects with two texts each, and the answer at least.
    EXPECT_GT(CountOf(auiCounts, Op::kAlloc), 10u);
}

// The list must grow for its 32nd element, and goes on without it when it can't.
TEST_F(FlowListTest, MemberThatTheListRefusesIsLeftOut) {
    std::string sTable;
    std::string sMost;
    for (int i = 1; i <= 33; ++i) {
        sTable += FlowMemberBytes("a", std::to_string(i), "7");
        sMost += i == 32 ? "" : (i == 1 ? "" : ", ") + JsonRow("a", std::to_string(i));
    }
    Subject stSubject = ListSubject();
    stSubject.fnFurnish = [&](World &stInner) {
        stInner.stPlatform.mapReplies[kAskMembers] = FlowTableReply(33, sTable);
    };
    const std::string sLess = "0" + JsonList(sMost);
    const Look fnLook = [&](const Platform &stInner, const std::string &sOutcome) {
        if (sOutcome == sLess) {
            EXPECT_EQ(TimesRecorded(stInner, kFile, 0xF7100000), 1u);
        }
    };
    const std::set<std::string> asOutcomes = OutcomesWithoutMemory(stSubject, fnLook);
    EXPECT_EQ(asOutcomes, (std::set<std::string>{"1", std::to_string(kNoMemory), sLess}));
}

}  // namespace
}  // namespace wap::test
