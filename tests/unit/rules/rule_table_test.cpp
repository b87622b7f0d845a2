// Tables that are not what they should be, and answers that reach the end of their room.
#include <string>

#include "unit/rules/rules_fixture.h"

namespace wap::test {
namespace {

/// A row of any kind, with the furnished texts and the number 9000.
std::string RowOf(const Listing &stListing) {
    switch (stListing.uiRpcId) {
        case kGetMirrorRules:
            return MirrorBytes({});
        case kGetForwardRules:
            return ForwardBytes({});
        default:
            return HttpRow(9000, {});
    }
}
std::string JsonOf(const Listing &stListing) {
    switch (stListing.uiRpcId) {
        case kGetMirrorRules:
            return JsonRow(MirrorFacts{}, "9000");
        case kGetForwardRules:
            return JsonRow(ForwardFacts{}, "9000");
        default:
            return JsonRow(HttpFacts{}, "9000");
    }
}

class RuleTableTest : public RulesTest, public ::testing::WithParamInterface<Listing> {
  protected:
    std::string ListBlock(uint32_t uiCount, const std::string &sBlock) {
        AnswerBlock(GetParam().uiRpcId, uiCount, sBlock);
        return List(GetParam().sMethod);
    }
    std::string ListBytes(const std::string &sReply) {
        AnswerBytes(GetParam().uiRpcId, sReply);
        return List(GetParam().sMethod);
    }
    const std::string sRow = RowOf(GetParam());
    const std::string sJson = JsonOf(GetParam());
};

TEST_P(RuleTableTest, IsWalkedAsFarAsItReaches) {
    const std::string sThree = JsonList(sJson + ", " + sJson + ", " + sJson);
    const std::string sTable = sRow + sRow + sRow;
    // The last ones times the row's size, or the room for a row, are small numbers in 32 bits.
    for (const uint32_t uiCount :
         {3u, 4u, 0x00FFFFFFu, 0x01000000u, 0x40000000u, 0x80000000u, 0xFFFFFFFEu, 0xFFFFFFFFu}) {
        EXPECT_EQ(ListBlock(uiCount, sTable), sThree) << uiCount;
        EXPECT_TRUE(stPlatform.astFaults.empty());
    }
    EXPECT_EQ(ListBlock(4, sTable + sRow.substr(1)), sThree);
    // A byte less is a row less.
    EXPECT_EQ(ListBlock(3, sTable.substr(0, sTable.size() - 1)), JsonList(sJson + ", " + sJson));
    EXPECT_EQ(ListBlock(1, sRow.substr(1)), "{ \"Result\": 0, \"List\": [ ] }");
}

TEST_P(RuleTableTest, CountLeavesRowsOut) {
    EXPECT_EQ(ListBlock(1, sRow + sRow), JsonList(sJson));
    EXPECT_EQ(ListBlock(2, sRow + sRow + sRow), JsonList(sJson + ", " + sJson));
}

TEST_P(RuleTableTest, RefusedRequest) {
    // Not told, though it would have room.
    stPlatform.mapReplies[GetParam().uiRpcId] = {5, ""};
    EXPECT_EQ(List(GetParam().sMethod), kFailedList);
    EXPECT_TRUE(HasRecorded(5));
    // What a refusal brings along is no table.
    stPlatform.mapReplies[GetParam().uiRpcId] = {kRefused, Word(1) + std::string(12, 'x')};
    EXPECT_EQ(List(GetParam().sMethod), kFailedList);
    EXPECT_TRUE(HasRecorded(kRefused));
    EXPECT_TRUE(stPlatform.asCalls.empty());
}

TEST_P(RuleTableTest, CodeOfAReadThatFails) {
    const std::pair<uint32_t, std::string> asCodes[] = {
        {1, "{ \"Result\": 1 }"},
        {99, "{ \"Result\": 99 }"},
        {100, kFailedList},
        {static_cast<uint32_t>(-9), "{ \"Result\": -9 }"},
        {static_cast<uint32_t>(-10), kFailedList},
        {kMinusOne, kFailedList},
        {kRefused, kFailedList},
        {0x7FFFFFFF, kFailedList},
        {0x80000000, kFailedList},
    };
    for (const char *pcCall : {"VT_VDATA_ReadData", "VT_VDATA_FreeShm"}) {
        for (const auto &[uiCode, sAnswer] : asCodes) {
            stPlatform.mapStatus = {{pcCall, uiCode}};
            EXPECT_EQ(ListBlock(1, sRow), sAnswer) << pcCall << uiCode;
            const uint32_t uiBlock = stPlatform.uiNextBlock - 1;
            EXPECT_TRUE(HasRecorded(uiCode, {uiBlock, 1}));
            stPlatform.mapBlocks.clear();
        }
    }
}

TEST_P(RuleTableTest, DescriptorThatNamesNoBlock) {
    EXPECT_EQ(ListBytes(Word(1) + Word(99) + Word(0) + Word(0)), kFailedList);
    EXPECT_TRUE(HasRecorded(kNoMemory, {99, 1}));
    EXPECT_EQ(ListBytes(Word(1) + Word(99) + Word(0xFFFFFFFF) + Word(0xFFFFFFFF)), kFailedList);
    EXPECT_EQ(ListBytes(std::string(16, '\xFF')), kFailedList);
    EXPECT_EQ(ListBytes(Word(1)), kFailedList);
    EXPECT_EQ(ListBytes("\x01"), kFailedList);
}

// Nothing of a row is a zero, so that every text ends with its field.
TEST_P(RuleTableTest, TextsEndAtTheirFields) {
    const std::string sFull(sRow.size(), 'x');
    const std::string sAnswer = ListBlock(2, sFull + sFull);
    const std::string s256(256, 'x');
    const std::string s12(12, 'x');
    const std::string s18(18, 'x');
    const std::string s40(40, 'x');
    std::string sWanted;
    if (GetParam().uiRpcId == kGetMirrorRules) {
        sWanted = JsonRow(MirrorFacts{s256, s12, "xxxxx", "xxxx", s18, s40, ""}, "0");
    } else if (GetParam().uiRpcId == kGetForwardRules) {
        sWanted = JsonRow(ForwardFacts{s256, s12, "xxxx", s18, s40, ""}, "0");
    } else {
        sWanted = JsonRow(HttpFacts{s256, s12, "xxxxx", s18, std::string(64, 'x'), s256, s256},
                          std::to_string(0x78787878));
    }
    EXPECT_EQ(sAnswer, JsonList(sWanted + ", " + sWanted));
}

// Each row, and the object around them, has its room; a quotation mark takes up two bytes.
TEST_P(RuleTableTest, AnswerMustFitItsRoom) {
    const auto uiRoom = 2 * GetParam().uiTextPerRow;
    // Texts of these bytes at the row's start and, with an HTTP rule, at its end.
    const bool bHttp = GetParam().uiRpcId == kGetHttpRules;
    std::string sRule = sRow;
    const size_t uiFirst = bHttp ? 4 : 0;
    // With control characters, of which each takes up six bytes.
    const auto Fill = [&](size_t uiSixes, size_t uiTwos) {
        std::string sText = std::string(uiSixes, '\x01') + std::string(uiTwos, '"');
        sText.resize(255, 'n');
        sRule.replace(uiFirst, 256, Field(sText, 256));
        if (bHttp) {
            sRule.replace(4 + 611, 256, Field(std::string(200, '\x01'), 256));
        }
        return ListBlock(1, sRule);
    };
    const size_t uiBase = Fill(0, 0).size();
    ASSERT_GT(uiBase, 255u);
    ASSERT_LT(uiBase, uiRoom);
    const size_t uiMore = uiRoom - 1 - uiBase;
    const size_t uiSixes = uiMore / 5;
    ASSERT_LE(uiSixes + uiMore % 5, 254u);
    EXPECT_EQ(Fill(uiSixes, uiMore % 5).size(), uiRoom - 1);
    EXPECT_TRUE(stPlatform.astFaults.empty());
    EXPECT_EQ(Fill(uiSixes, uiMore % 5 + 1), "{ \"Result\": 1 }");
    // Its room, and what it would have taken.
    EXPECT_EQ(TimesRecorded(stPlatform, kSharedFile, 1, {uiRoom, uiRoom}), 1u);
}

/// The room of the last answer that was longer, as it was recorded; 0 for none.
uint32_t RoomOfTooLong(const Platform &stPlatform) {
    uint32_t uiRoom = 0;
    for (const FaultRecord &stFault : stPlatform.astFaults) {
        if (stFault.sFile == kSharedFile && stFault.uiCode == 1 &&
            stFault.auiArgs[1] >= stFault.auiArgs[0]) {
            uiRoom = stFault.auiArgs[0];
        }
    }
    return uiRoom;
}

// The room of three rules and one more.
TEST_P(RuleTableTest, RoomGrowsWithTheRows) {
    std::string sBad = sRow;
    sBad.replace(GetParam().uiRpcId == kGetHttpRules ? 4 : 0, 256, std::string(256, '\x01'));
    if (GetParam().uiRpcId == kGetHttpRules) {
        sBad.replace(4 + 355, 512, std::string(512, '\x01'));
    }
    EXPECT_EQ(ListBlock(3, sBad + sBad + sBad), "{ \"Result\": 1 }");
    EXPECT_EQ(RoomOfTooLong(stPlatform), 4 * GetParam().uiTextPerRow);
    stPlatform.ClearRecords();
    // Rows that are not there make no room.
    EXPECT_EQ(ListBlock(1000, sBad + sBad + sBad), "{ \"Result\": 1 }");
    EXPECT_EQ(RoomOfTooLong(stPlatform), 4 * GetParam().uiTextPerRow);
}

// No answer has more room than the longest block; 32767 forward rules and one more fill it.
TEST_P(RuleTableTest, AnswerThatWouldBeTooLong) {
    const uint32_t uiMost = 16 * 1024 * 1024 / GetParam().uiTextPerRow - 1;
    stEnv.bRecord = false;
    std::string sTable;
    std::string sRows;
    for (uint32_t i = 0; i < uiMost; ++i) {
        sTable += sRow;
        sRows += (i == 0 ? "" : ", ") + sJson;
    }
    EXPECT_TRUE(ListBlock(uiMost, sTable) == JsonList(sRows));
    EXPECT_TRUE(stPlatform.astFaults.empty());
    EXPECT_EQ(ListBlock(uiMost + 1, sTable + sRow), kFailedList);
    EXPECT_TRUE(HasRecorded(kMinusOne, {(uiMost + 2) * GetParam().uiTextPerRow}));
}

INSTANTIATE_TEST_SUITE_P(Kinds, RuleTableTest, ::testing::ValuesIn(Listings()),
                         [](const auto &stInfo) { return stInfo.param.sMethod; });

}  // namespace
}  // namespace wap::test
