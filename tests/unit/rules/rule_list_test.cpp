// What the listings ask, trace and answer.
#include <string>
#include <vector>

#include "unit/rules/rules_fixture.h"
#include "wan/jni_traffic_mirror.h"
#include "wan/traffic_rules.h"

namespace wap::test {
namespace {

using enum RuleColumnType;

/// A kind of two columns.
struct TwoColumns {
    RuleColumn astColumns[2];

    constexpr bool Fit(uint32_t uiRecordSize) const {
        RuleKind stKind = {};
        stKind.pstColumns = astColumns;
        stKind.uiColumns = 2;
        stKind.uiRecordSize = uiRecordSize;
        return IsSound(stKind);
    }
};
constexpr RuleColumn ColumnOf(RuleColumnType eType, uint16_t usAt, uint16_t usSize) {
    return {"key", usAt, usSize, eType, RuleTextNeed::kRequired};
}

// A field ends with the record at the latest.
static_assert(TwoColumns{{ColumnOf(kText, 0, 8), ColumnOf(kNumber, 8, 4)}}.Fit(12));
static_assert(!TwoColumns{{ColumnOf(kText, 0, 8), ColumnOf(kNumber, 8, 4)}}.Fit(11));
static_assert(!TwoColumns{{ColumnOf(kText, 1, 12), ColumnOf(kNumber, 8, 4)}}.Fit(12));
static_assert(!TwoColumns{{ColumnOf(kText, 0, 8), ColumnOf(kText, 0xFFFF, 4)}}.Fit(12));
// A walk keeps one number.
static_assert(!TwoColumns{{ColumnOf(kNumber, 0, 8), ColumnOf(kNumber, 8, 4)}}.Fit(12));
// The record, and the texts with their zeros, are no longer than the longest record.
static_assert(TwoColumns{{ColumnOf(kText, 0, 458), ColumnOf(kText, 458, 459)}}.Fit(919));
static_assert(!TwoColumns{{ColumnOf(kText, 0, 459), ColumnOf(kText, 459, 459)}}.Fit(919));
static_assert(!TwoColumns{{ColumnOf(kText, 0, 8), ColumnOf(kNumber, 8, 4)}}.Fit(920));

class RuleListTest : public RulesTest {
  protected:
    const Listing &stMirror = Listings()[0];
    const Listing &stForward = Listings()[1];
    const Listing &stHttp = Listings()[2];
};

std::string CalledTrace(const std::string &sMethod) {
    return "\r\n " + EntryOf(RulesEntries(), sMethod).sSymbol + " called \r\n";
}

/// The trace of the first descriptor that comes, of a table of so many bytes.
std::string DescTrace(const std::string &sLength) {
    return "stVdata Info DataID:4097 CompressedLen:" + sLength + "  OriginalLen = " + sLength +
           " \n\r";
}

TEST_F(RuleListTest, MirrorRules) {
    const std::string sFirst =
        "[0] 203.0.113.80, 80, UP, TCP, 00:11:22:33:44:55, 192.168.1.100, 9000{9000} \r\n";
    EXPECT_EQ(Call("getMirroRuleInfo"), EntryOf(RulesEntries(), "getMirroRuleInfo").stGood);
    ExpectOnlyRpc(stPlatform, {"gulm", 354, kGetMirrorRules, Word(0), 16});
    EXPECT_EQ(EntryTraces(stPlatform),
              (Calls{CalledTrace("getMirroRuleInfo"), "[347]\r\n", DescTrace("694"), sFirst,
                     "[1] , 0, DOWN, UDP, , 2001:db8::1, 9001{9001} \r\n"}));
    EXPECT_EQ(stPlatform.asCalls, (Calls{"VT_VDATA_ReadData 4097 694", "VT_VDATA_FreeShm 4097"}));
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(RuleListTest, ForwardRules) {
    EXPECT_EQ(Call("getForwardRuleInfo"), EntryOf(RulesEntries(), "getForwardRuleInfo").stGood);
    ExpectOnlyRpc(stPlatform, {"gulm", 351, kGetForwardRules, Word(0), 16});
    EXPECT_EQ(EntryTraces(stPlatform),
              (Calls{CalledTrace("getForwardRuleInfo"), "[342]\r\n", DescTrace("684"),
                     "[0] 203.0.113.80, 80, TCP, 00:11:22:33:44:55, 192.168.1.100, 9000{9000}\r\n",
                     "[1] , 0, UDP, , , 9001{9001}\r\n"}));
    EXPECT_EQ(stPlatform.asCalls, (Calls{"VT_VDATA_ReadData 4097 684", "VT_VDATA_FreeShm 4097"}));
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(RuleListTest, HttpRules) {
    const std::string sFirst =
        "<9> 203.0.113.80, 80, UP, 00:11:22:33:44:55, GET,POST, 200, Host,User-Agent\r\n";
    EXPECT_EQ(Call(stHttp.sMethod), EntryOf(RulesEntries(), stHttp.sMethod).stGood);
    ExpectOnlyRpc(stPlatform, {"gulm", 352, kGetHttpRules, Word(0), 16});
    EXPECT_EQ(EntryTraces(stPlatform),
              (Calls{CalledTrace(stHttp.sMethod), "[923]\r\n", DescTrace("1846"), sFirst,
                     "<12> , 0, DOWN, , , , \r\n"}));
    EXPECT_EQ(stPlatform.asCalls, (Calls{"VT_VDATA_ReadData 4097 1846", "VT_VDATA_FreeShm 4097"}));
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

// Only the text is written, with its zero.
TEST_F(RuleListTest, RoomBehindTheTextStaysAsItWas) {
    char *pcText = nullptr;
    ASSERT_EQ(ListMirrorRules(&pcText), 0u);
    // Of two rules and one more.
    const size_t uiRoom = 2304;
    ASSERT_EQ(stWorld.stAllocs.SizeOf(pcText), uiRoom);
    const std::string sText = pcText;
    EXPECT_EQ(sText, EntryOf(RulesEntries(), "getMirroRuleInfo").stGood.sText);
    const std::string sBehind(pcText + sText.size() + 1, uiRoom - sText.size() - 1);
    // What the allocator of the tests fills blocks with.
    EXPECT_EQ(sBehind, std::string(sBehind.size(), '\xA5'));
    VT_OS_MemFreeD(pcText, __FILE_NAME__, __LINE__);
}

TEST_F(RuleListTest, NoRules) {
    for (const Listing &stListing : Listings()) {
        SCOPED_TRACE(stListing.sMethod);
        EXPECT_EQ(ListOf(stListing, ""), kNoRules);
        EXPECT_TRUE(stPlatform.asCalls.empty());
        EXPECT_TRUE(stPlatform.astFaults.empty());
        // A reply that is not there counts nothing.
        AnswerBytes(stListing.uiRpcId, "");
        EXPECT_EQ(List(stListing.sMethod), kNoRules);
        FurnishRules(stWorld);
    }
}

// It is freed unread; that there is none is no failure.
TEST_F(RuleListTest, BlockWithoutRules) {
    for (const Listing &stListing : Listings()) {
        AnswerBlock(stListing.uiRpcId, 0, std::string(stListing.uiRowSize, 'x'));
        const uint32_t uiBlock = stPlatform.mapBlocks.begin()->first;
        EXPECT_EQ(List(stListing.sMethod), kNoRules);
        EXPECT_EQ(stPlatform.asCalls, Calls{"VT_VDATA_FreeShm " + std::to_string(uiBlock)});
        AnswerBytes(stListing.uiRpcId, Word(0) + Word(99) + Word(0) + Word(0));
        EXPECT_EQ(List(stListing.sMethod), kNoRules);
        EXPECT_TRUE(stPlatform.astFaults.empty());
    }
}

TEST_F(RuleListTest, PortThatIsNoNumberIsThatOfTheRuleBefore) {
    std::string sTable;
    std::string sOther;
    std::string sRows;
    std::string sOtherRows;
    const std::vector<std::pair<std::string, std::string>> asPorts = {
        {"", "0"},      {"x", "0"},           {"80", "80"}, {"", "80"},
        {"12x", "80"},  {"4294967296", "80"}, {"-1", "80"}, {"4294967295", "-1"},
        {"none", "-1"}, {"65535", "65535"},   {"0", "0"},
    };
    for (const auto &[sText, sNumber] : asPorts) {
        const MirrorFacts stRule = {.sToPort = sText};
        sTable += MirrorBytes(stRule);
        sRows += (sRows.empty() ? "" : ", ") + JsonRow(stRule, sNumber);
        const ForwardFacts stOther = {.sToPort = sText};
        sOther += ForwardBytes(stOther);
        sOtherRows += (sOtherRows.empty() ? "" : ", ") + JsonRow(stOther, sNumber);
    }
    EXPECT_EQ(ListOf(stMirror, sTable), JsonList(sRows));
    EXPECT_TRUE(HasEntryTrace(
        stPlatform,
        "[4] 203.0.113.80, 80, UP, TCP, 00:11:22:33:44:55, 192.168.1.100, 12x{80} \r\n"));
    EXPECT_TRUE(HasEntryTrace(stPlatform,
                              "[7] 203.0.113.80, 80, UP, TCP, 00:11:22:33:44:55, 192.168.1.100, "
                              "4294967295{4294967295} \r\n"));
    EXPECT_EQ(ListOf(stForward, sOther), JsonList(sOtherRows));
    // The next listing begins anew.
    EXPECT_EQ(ListOf(stMirror, MirrorBytes({.sToPort = "x"})),
              JsonList(JsonRow(MirrorFacts{.sToPort = "x"}, "0")));
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

// The port of the other side is a text whatever it holds.
TEST_F(RuleListTest, RemotePortsAreTexts) {
    const MirrorFacts stFirst = {.sPort = "no number"};
    EXPECT_EQ(ListOf(stMirror, MirrorBytes(stFirst)), JsonList(JsonRow(stFirst, "9000")));
    const ForwardFacts stRule = {.sPort = "no number"};
    EXPECT_EQ(ListOf(stForward, ForwardBytes(stRule)), JsonList(JsonRow(stRule, "9000")));
    const HttpFacts stOther = {.sPort = "no number"};
    EXPECT_EQ(ListOf(stHttp, HttpRow(1, stOther)), JsonList(JsonRow(stOther, "1")));
}

TEST_F(RuleListTest, ListsOfAnHttpRuleHaveOneElement) {
    HttpFacts stRule = {.sMethods = "GET", .sStatusCodes = "200,301,404", .sHeaders = ",,"};
    EXPECT_EQ(ListOf(stHttp, HttpRow(3, stRule)), JsonList(JsonRow(stRule, "3")));
    stRule = {.sMethods = "", .sStatusCodes = "", .sHeaders = ""};
    EXPECT_EQ(ListOf(stHttp, HttpRow(3, stRule)), JsonList(JsonRow(stRule, "3")));
}

TEST_F(RuleListTest, NumbersOfHttpRules) {
    std::string sTable;
    std::string sRows;
    for (const uint32_t uiNumber : {0u, 0x01020304u, 0x7FFFFFFFu}) {
        sTable += HttpRow(uiNumber, {});
        sRows += (sRows.empty() ? "" : ", ") + JsonRow(HttpFacts{}, std::to_string(uiNumber));
    }
    sTable += HttpRow(kMinusOne, {});
    EXPECT_EQ(ListOf(stHttp, sTable), JsonList(sRows + ", " + JsonRow(HttpFacts{}, "-1")));
    EXPECT_TRUE(HasEntryTrace(stPlatform,
                              "<4294967295> 203.0.113.80, 80, UP, 00:11:22:33:44:55, GET,POST, "
                              "200, Host,User-Agent\r\n"));
}

TEST_F(RuleListTest, FiveHundredRulesComeCompressed) {
    std::string asTables[3];
    std::string asRows[3];
    for (uint32_t i = 1; i <= 500; ++i) {
        const std::string sPort = std::to_string(i);
        const std::string sComma = i == 1 ? "" : ", ";
        asTables[0] += MirrorBytes({.sToPort = sPort});
        asRows[0] += sComma + JsonRow(MirrorFacts{}, sPort);
        asTables[1] += ForwardBytes({.sToPort = sPort});
        asRows[1] += sComma + JsonRow(ForwardFacts{}, sPort);
        asTables[2] += HttpRow(i, {.sPort = sPort});
        asRows[2] += sComma + JsonRow(HttpFacts{.sPort = sPort}, sPort);
    }
    for (size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(ListOf(Listings()[i], asTables[i]), JsonList(asRows[i]));
        EXPECT_TRUE(stPlatform.astFaults.empty());
    }
}

TEST_F(RuleListTest, TextsPassAsTheyAre) {
    const MirrorFacts stRule = {.sAddress =
                                    "b\xC3\xBC"
                                    "cher.example",
                                .sDirection = "\xE2\x82\xAC"};
    EXPECT_EQ(ListOf(stMirror, MirrorBytes(stRule)), JsonList(JsonRow(stRule, "9000")));
    EXPECT_EQ(ListOf(stMirror, MirrorBytes({.sAddress = "a\"b\\c/d"})),
              JsonList(JsonRow(MirrorFacts{.sAddress = "a\\\"b\\\\c\\/d"}, "9000")));
}

}  // namespace
}  // namespace wap::test
