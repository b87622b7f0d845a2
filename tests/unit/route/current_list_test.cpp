// The lists of the routes in force.
#include <optional>
#include <string>

#include "lan/jni_l3forward_route.h"
#include "unit/route/route_fixture.h"

namespace wap::test {
namespace {

constexpr uint32_t kNoMemory = 0xF7108001;

std::string CurrentRow4(const std::string &sIndex, const std::string &sInterface = kRouteAlias) {
    return JsonRow4(sIndex, "0.0.0.0", "0.0.0.0", "100.64.0.1", sInterface);
}

std::string CurrentRow6(const std::string &sIndex, const std::string &sInterface = kRouteAlias) {
    return JsonRow6(sIndex, "::\\/0", "fe80::1", sInterface);
}

/// How a reply is traced.
std::string ReplyTrace(const std::string &sQuery, uint32_t uiNum, uint32_t uiDataID,
                       uint32_t uiCompressed, uint32_t uiOriginal) {
    return sQuery + " uiNum :" + std::to_string(uiNum) + ", uivDataID:" + std::to_string(uiDataID) +
           ", uiCompressedLen:" + std::to_string(uiCompressed) +
           ", uiOriginalLen:" + std::to_string(uiOriginal) + "\r\n";
}

class CurrentListTest : public RouteTest {
  protected:
    /// The list of a block, whose routes are counted.
    std::string ListOf4(const std::vector<CurrentRoute4> &astRoutes, uint32_t uiWanted = 0) {
        return ListOfBytes(VT_JNI_GetL3Ipv4CurrentRouter, 0, astRoutes, uiWanted);
    }
    std::string ListOf6(const std::vector<CurrentRoute6> &astRoutes, uint32_t uiWanted = 0) {
        return ListOfBytes(VT_JNI_GetL3Ipv6CurrentRouter, 1, astRoutes, uiWanted);
    }

    /// Answers with these bytes as they are, or with a count and the descriptor of a new block.
    void AnswerBytes(const std::string &sReply) {
        stPlatform.fnReply = [=](const RpcRecord &stRpc) {
            return stRpc.uiRpcId == kAskCurrent ? std::optional(Reply{0, sReply}) : std::nullopt;
        };
    }
    void AnswerBlock(uint32_t uiNum, const std::string &sBlock) {
        AnswerBytes(Word(uiNum) + stPlatform.AddBulk(sBlock));
    }

  private:
    template <class Route>
    std::string ListOfBytes(ListWorker pfnWorker, size_t uiFamily,
                            const std::vector<Route> &astRoutes, uint32_t uiWanted) {
        stPlatform.ClearRecords();
        std::string sBytes;
        for (const Route &stRoute : astRoutes) {
            sBytes += CurrentBytes(stRoute);
        }
        stPlatform.mapReplies[kCurrentOfFamily[uiFamily]] = {0, sBytes};
        return List(pfnWorker, uiWanted);
    }
};

TEST_F(CurrentListTest, Ipv4RequestsAndAnswer) {
    EXPECT_EQ(ListOf4({CurrentRoute4{}, {"wan3.4.ppp5", "10.0.0.0", "255.0.0.0", ""}}),
              JsonList(CurrentRow4("1") + ", " +
                       JsonRow4("2", "10.0.0.0", "255.0.0.0", "", kRouteAlias)));
    ExpectRpcs({{"gulm", 53, kAskCurrent, Word(0), 16}, WanQuery(), WanQuery(0x20304005)});
    EXPECT_EQ(EntryTraces(stPlatform),
              (Calls{"GetL3Ipv4CurrentRouter uiNum :2, uivDataID:4097, uiCompressedLen:224, "
                     "uiOriginalLen:224\r\n",
                     NameTrace(kRouteAlias), NameTrace(kRouteAlias)}));
    EXPECT_EQ(stPlatform.asCalls, (Calls{"VT_VDATA_ReadData 4097 224", "VT_VDATA_FreeShm 4097"}));
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(CurrentListTest, Ipv6RequestsAndAnswer) {
    EXPECT_EQ(
        ListOf6({CurrentRoute6{}, {"wan3.4.ppp5", "2001:db8::/32", ""}}),
        JsonList(CurrentRow6("1") + ", " + JsonRow6("2", "2001:db8::\\/32", "", kRouteAlias)));
    ExpectRpcs({{"gulm", 53, kAskCurrent, Word(1), 16}, WanQuery(), WanQuery(0x20304005)});
    EXPECT_EQ(EntryTraces(stPlatform),
              (Calls{"GetL3Ipv6CurrentRouter uiNum :2, uivDataID:4097, uiCompressedLen:440, "
                     "uiOriginalLen:440\r\n",
                     NameTrace(kRouteAlias), NameTrace(kRouteAlias)}));
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(CurrentListTest, OnlyConnectionsAreListedAndCounted) {
    EXPECT_EQ(ListOf4({{.sInterface = "br0"},
                       {.sInterface = "wan1.2.ip3"},
                       {.sInterface = ""},
                       {.sInterface = "lo"},
                       {.sInterface = "WAN1.2.ip4"}}),
              JsonList(CurrentRow4("1") + ", " + CurrentRow4("2")));
    ExpectRpcs({{"gulm", 53, kAskCurrent, Word(0), 16}, WanQuery(), WanQuery(0x10102004)});
    EXPECT_EQ(ListOf6({{.sInterface = "br0"}, CurrentRoute6{}, {.sInterface = "wa1.2.ip3"}}),
              JsonList(CurrentRow6("1")));
    EXPECT_EQ(ListOf4({{.sInterface = "br0"}, {.sInterface = "eth0.2"}, CurrentRoute4{"ppp123"}}),
              kEmptyList);
}

// Unlike in the static list: here it is a route in force like any other.
TEST_F(CurrentListTest, Ipv6PrefixIsNotLookedAt) {
    EXPECT_EQ(ListOf6({{.sPrefix = "none"}, {.sPrefix = ""}}),
              JsonList(JsonRow6("1", "none", "fe80::1", kRouteAlias) + ", " +
                       JsonRow6("2", "", "fe80::1", kRouteAlias)));
}

TEST_F(CurrentListTest, ConnectionThatCannotBeShownFailsTheList) {
    for (const char *pcName : {"wan", "wan0", "wan1.2", "wan1.2.ip9", "my-wan1.2.ip3"}) {
        EXPECT_EQ(ListOf4({CurrentRoute4{}, {.sInterface = pcName}}, 1), "") << pcName;
        EXPECT_TRUE(HasRecorded(kFile, 1, {2, 0, 0, 0}));
        EXPECT_EQ(ListOf6({CurrentRoute6{}, {.sInterface = pcName}}, 1), "") << pcName;
        EXPECT_TRUE(HasRecorded(kFile, 1, {2, 0, 0, 0}));
    }
    Refuse(kAskWan);
    EXPECT_EQ(ListOf4({CurrentRoute4{}}, kRefused), "");
    EXPECT_EQ(ListOf6({CurrentRoute6{}}, kRefused), "");
}

TEST_F(CurrentListTest, NoRoutesNeedNoBlock) {
    for (const ListWorker pfnWorker :
         {VT_JNI_GetL3Ipv4CurrentRouter, VT_JNI_GetL3Ipv6CurrentRouter}) {
        for (const std::string &sReply : {std::string(16, '\0'), std::string()}) {
            stPlatform.ClearRecords();
            AnswerBytes(sReply);
            EXPECT_EQ(List(pfnWorker), kEmptyList);
            EXPECT_TRUE(stPlatform.asCalls.empty());
            EXPECT_TRUE(stPlatform.astFaults.empty());
        }
    }
    EXPECT_EQ(EntryTraces(stPlatform), Calls{ReplyTrace("GetL3Ipv6CurrentRouter", 0, 0, 0, 0)});
}

// It is freed unread; that there is none is no failure.
TEST_F(CurrentListTest, BlockWithoutRoutes) {
    AnswerBlock(0, CurrentBytes(CurrentRoute4{}));
    EXPECT_EQ(List(VT_JNI_GetL3Ipv4CurrentRouter), kEmptyList);
    EXPECT_EQ(stPlatform.asCalls, Calls{"VT_VDATA_FreeShm 4097"});
    AnswerBytes(Word(0) + Word(99) + Word(0) + Word(0));
    EXPECT_EQ(List(VT_JNI_GetL3Ipv4CurrentRouter), kEmptyList);
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(CurrentListTest, BlockMustHoldThatManyRoutes) {
    const std::string s4 = CurrentBytes(CurrentRoute4{}) + CurrentBytes(CurrentRoute4{});
    // 0x10000000 rows of 112 bytes are 7 * 2^32 bytes.
    for (const uint32_t uiNum : {3u, 0x02000000u, 0x10000000u, 0xFFFFFFFFu}) {
        stPlatform.ClearRecords();
        AnswerBlock(uiNum, s4);
        EXPECT_EQ(List(VT_JNI_GetL3Ipv4CurrentRouter, 1), "");
        EXPECT_EQ(Rpcs(), Codes{kAskCurrent});
        EXPECT_EQ(stPlatform.astFaults.back().auiArgs[1], uiNum);
    }
    AnswerBlock(2, s4.substr(0, 223));
    EXPECT_EQ(List(VT_JNI_GetL3Ipv4CurrentRouter, 1), "");
    AnswerBlock(1, CurrentBytes(CurrentRoute6{}).substr(0, 219));
    EXPECT_EQ(List(VT_JNI_GetL3Ipv6CurrentRouter, 1), "");
    // 0x40000000 rows of 220 bytes are 55 * 2^32 bytes.
    AnswerBlock(0x40000000, CurrentBytes(CurrentRoute6{}));
    EXPECT_EQ(List(VT_JNI_GetL3Ipv6CurrentRouter, 1), "");
    // What the count leaves out is not there.
    AnswerBlock(1, s4);
    EXPECT_EQ(List(VT_JNI_GetL3Ipv4CurrentRouter), JsonList(CurrentRow4("1")));
    AnswerBlock(2, s4 + "x");
    EXPECT_EQ(List(VT_JNI_GetL3Ipv4CurrentRouter),
              JsonList(CurrentRow4("1") + ", " + CurrentRow4("2")));
}

TEST_F(CurrentListTest, LongTableIsCompressed) {
    std::vector<CurrentRoute6> astRoutes;
    std::string sRows;
    for (uint32_t i = 1; i <= 300; ++i) {
        astRoutes.push_back({.sNextHop = "fe80::" + std::to_string(i)});
        sRows += (i == 1 ? "" : ", ") +
                 JsonRow6(std::to_string(i), "::\\/0", "fe80::" + std::to_string(i), kRouteAlias);
    }
    EXPECT_EQ(ListOf6(astRoutes), JsonList(sRows));
}

TEST_F(CurrentListTest, TextsEndAtTheirFields) {
    AnswerAlias("alias");
    const std::string s16(16, 'd');
    const std::string sName = "wan1.2.ip3" + std::string(54, 'x');
    EXPECT_EQ(ListOf4({{sName, s16, s16, s16}}), JsonList(JsonRow4("1", s16, s16, s16, "alias")));
    EXPECT_EQ(ListOf6({{sName.substr(0, 32), std::string(48, 'p'), std::string(140, 'h')}}),
              JsonList(JsonRow6("1", std::string(48, 'p'), std::string(140, 'h'), "alias")));
    // A block of text alone names no connection.
    AnswerBlock(3, std::string(336, 'x'));
    EXPECT_EQ(List(VT_JNI_GetL3Ipv4CurrentRouter), kEmptyList);
    AnswerBlock(3, std::string(660, '\xFF'));
    EXPECT_EQ(List(VT_JNI_GetL3Ipv6CurrentRouter), kEmptyList);
}

// 256 bytes for each listed route and 256 more; those that are not listed make no room.
TEST_F(CurrentListTest, AnswerMustFitItsBuffer) {
    const std::string sAround = JsonList(JsonRow6("1", "", "", ""));
    const size_t uiRoom = 511 - sAround.size();
    // The next hop's field holds 140 bytes, the prefix's 48, and an alias has 127: a quotation mark
    // makes two.
    const size_t uiQuotes = uiRoom - 315;
    ASSERT_LT(uiQuotes, 127u);
    std::string sAlias = std::string(uiQuotes, '"') + std::string(127 - uiQuotes, 'n');
    std::string sPrinted;
    for (const char cByte : sAlias) {
        sPrinted += cByte == '"' ? "\\\"" : "n";
    }
    const CurrentRoute6 stRoute = {"wan1.2.ip3", std::string(48, 'p'), std::string(140, 'h')};
    const CurrentRoute6 stOther = {"br0", "", ""};
    AnswerAlias(sAlias);
    EXPECT_EQ(ListOf6({stRoute, stOther}),
              JsonList(JsonRow6("1", stRoute.sPrefix, stRoute.sNextHop, sPrinted)));
    sAlias.back() = '"';
    AnswerAlias(sAlias);
    EXPECT_EQ(ListOf6({stRoute, stOther}, 1), "");
    EXPECT_TRUE(HasRecorded(kFile, 1, {512, 0, 0, 0}));
}

TEST_F(CurrentListTest, RefusedRequest) {
    Refuse(kCurrentOfFamily[0]);
    Refuse(kCurrentOfFamily[1]);
    EXPECT_EQ(List(VT_JNI_GetL3Ipv4CurrentRouter, kRefused), "");
    EXPECT_TRUE(HasRecorded(kFile, kRefused, {0, 0, 0, 0}));
    EXPECT_EQ(List(VT_JNI_GetL3Ipv6CurrentRouter, kRefused), "");
    EXPECT_TRUE(HasRecorded(kFile, kRefused, {1, 0, 0, 0}));
    EXPECT_EQ(EntryTraces(stPlatform), Calls{});
}

TEST_F(CurrentListTest, BlockThatCannotBeRead) {
    stPlatform.mapStatus["VT_VDATA_ReadData"] = kRefused;
    EXPECT_EQ(ListOf4({CurrentRoute4{}}, kRefused), "");
    EXPECT_TRUE(HasRecorded(kFile, kRefused, {4097, 1, 0, 0}));
    stPlatform.mapStatus.clear();
    AnswerBytes(Word(1) + Word(99) + Word(0xFFFFFFFF) + Word(0xFFFFFFFF));
    EXPECT_EQ(List(VT_JNI_GetL3Ipv4CurrentRouter, kNoMemory), "");
    AnswerBytes(Word(1) + Word(99) + Word(0) + Word(0));
    EXPECT_EQ(List(VT_JNI_GetL3Ipv4CurrentRouter, kNoMemory), "");
    AnswerBytes(std::string(16, '\xFF'));
    EXPECT_EQ(List(VT_JNI_GetL3Ipv6CurrentRouter, kNoMemory), "");
}

TEST_F(CurrentListTest, NullIsRefusedWithoutAsking) {
    EXPECT_EQ(VT_JNI_GetL3Ipv4CurrentRouter(nullptr), kNullArgument);
    EXPECT_EQ(VT_JNI_GetL3Ipv6CurrentRouter(nullptr), kNullArgument);
    EXPECT_EQ(FaultCodes(stPlatform), Codes(2, kNullArgument));
    EXPECT_TRUE(stPlatform.astRpcs.empty());
}

}  // namespace
}  // namespace wap::test
