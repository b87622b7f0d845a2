// The lists of the static routes.
#include <map>
#include <optional>
#include <string>

#include "lan/jni_l3forward_route.h"
#include "unit/route/route_fixture.h"

namespace wap::test {
namespace {

constexpr uint32_t kAskIds4 = 0x47304006;
constexpr uint32_t kAskRoute4 = 0x47304002;
constexpr uint32_t kAskIds6 = 0x47100009;
constexpr uint32_t kAskRoute6 = 0x47100004;

std::string StaticRow4(const std::string &sIndex, const std::string &sInterface = kRouteAlias) {
    return JsonRow4(sIndex, "10.20.0.0", "255.255.0.0", "100.64.0.1", sInterface);
}

std::string StaticRow6(const std::string &sIndex, const std::string &sInterface = kRouteAlias) {
    return JsonRow6(sIndex, "2001:db8:20::\\/48", "fe80::1", sInterface);
}

/// The routes of a family by their ids, in the order of these.
template <class Route>
using Routes = std::vector<std::pair<uint32_t, Route>>;

class StaticListTest : public RouteTest {
  protected:
    std::string ListOf4(const Routes<StaticRoute4> &astRoutes, uint32_t uiWanted = 0) {
        Answer(kAskIds4, kAskRoute4, astRoutes);
        return List(VT_JNI_GetAllL3Ipv4StaticRoute, uiWanted);
    }
    std::string ListOf6(const Routes<StaticRoute6> &astRoutes, uint32_t uiWanted = 0) {
        Answer(kAskIds6, kAskRoute6, astRoutes);
        return List(VT_JNI_GetAllL3Ipv6StaticRoute, uiWanted);
    }

  private:
    template <class Route>
    void Answer(uint32_t uiIdsId, uint32_t uiRouteId, const Routes<Route> &astRoutes) {
        stPlatform.ClearRecords();
        std::vector<uint32_t> auiIds;
        std::map<std::string, std::string> mapRoutes;
        for (const auto &[uiId, stRoute] : astRoutes) {
            auiIds.push_back(uiId);
            mapRoutes[Word(uiId)] = StaticBytes(stRoute);
        }
        stPlatform.mapReplies[uiIdsId] = {0, RouteIdBytes(auiIds)};
        stPlatform.fnReply = [=](const RpcRecord &stRpc) -> std::optional<Reply> {
            const auto it = mapRoutes.find(stRpc.sRequest);
            if (stRpc.uiRpcId != uiRouteId || it == mapRoutes.end()) {
                return std::nullopt;
            }
            return Reply{0, it->second};
        };
    }
};

TEST_F(StaticListTest, Ipv4RequestsAndAnswer) {
    EXPECT_EQ(ListOf4({{3, StaticRoute4{}}, {70000, {"10.0.0.0", "255.0.0.0", "", "wan1.1.ppp4"}}}),
              JsonList(StaticRow4("3") + ", " +
                       JsonRow4("70000", "10.0.0.0", "255.0.0.0", "", kRouteAlias)));
    ExpectRpcs({{"gulm", 53, kAskIds4, Word(0), 772},
                {"gulm", 53, kAskRoute4, Word(3), 731},
                WanQuery(),
                {"gulm", 53, kAskRoute4, Word(70000), 731},
                WanQuery(0x20101004)});
    EXPECT_EQ(EntryTraces(stPlatform), Calls(2, NameTrace(kRouteAlias)));
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(StaticListTest, Ipv6RequestsAndAnswer) {
    EXPECT_EQ(ListOf6({{3, StaticRoute6{}}, {70000, {"2001:db8:30::/56", "", "wan1.1.ppp4"}}}),
              JsonList(StaticRow6("3") + ", " +
                       JsonRow6("70000", "2001:db8:30::\\/56", "", kRouteAlias)));
    ExpectRpcs({{"gulm", 53, kAskIds6, Word(0), 772},
                {"gulm", 53, kAskRoute6, Word(3), 621},
                WanQuery(),
                {"gulm", 53, kAskRoute6, Word(70000), 621},
                WanQuery(0x20101004)});
    EXPECT_EQ(EntryTraces(stPlatform), Calls(2, NameTrace(kRouteAlias)));
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(StaticListTest, NoRoutes) {
    EXPECT_EQ(ListOf4(Routes<StaticRoute4>{}), kEmptyList);
    EXPECT_EQ(Rpcs(), Codes{kAskIds4});
    EXPECT_EQ(ListOf6(Routes<StaticRoute6>{}), kEmptyList);
    EXPECT_EQ(Rpcs(), Codes{kAskIds6});
    stPlatform.mapReplies[kAskIds4] = {0, ""};
    EXPECT_EQ(List(VT_JNI_GetAllL3Ipv4StaticRoute), kEmptyList);
}

// Every byte of the flag counts, wherever it is.
TEST_F(StaticListTest, Ipv4RouteThatNobodySetIsLeftOut) {
    EXPECT_EQ(ListOf4({{1, {.uiStatic = 0}}, {2, StaticRoute4{}}}), JsonList(StaticRow4("2")));
    EXPECT_EQ(Rpcs(), (Codes{kAskIds4, kAskRoute4, kAskRoute4, kAskWan}));
    for (const uint32_t uiStatic : {1u, 2u, 0x100u, 0x10000u, 0x01000000u, 0xFFFFFFFFu}) {
        EXPECT_EQ(ListOf4({{1, {.uiStatic = uiStatic}}}), JsonList(StaticRow4("1")));
    }
}

TEST_F(StaticListTest, RouteIntoTheLanIsLeftOut) {
    for (const char *pcBridge : {"br0", "BR0", "bR0"}) {
        EXPECT_EQ(ListOf4({{1, {.sLan = pcBridge}}, {2, StaticRoute4{}}}),
                  JsonList(StaticRow4("2")));
        EXPECT_EQ(Rpcs(), (Codes{kAskIds4, kAskRoute4, kAskRoute4, kAskWan}));
        // Of IPv6 not even the prefix is looked at.
        EXPECT_EQ(ListOf6({{1, {.sPrefix = "none", .sInterface = pcBridge}}, {2, StaticRoute6{}}}),
                  JsonList(StaticRow6("2")));
        EXPECT_EQ(Rpcs(), (Codes{kAskIds6, kAskRoute6, kAskRoute6, kAskWan}));
        EXPECT_TRUE(stPlatform.astFaults.empty());
    }
    for (const char *pcOther : {"", "br", "br00", "br0 "}) {
        EXPECT_EQ(ListOf4({{1, {.sLan = pcOther}}}), JsonList(StaticRow4("1")));
    }
}

TEST_F(StaticListTest, Ipv6DefaultRouteIsLeftOut) {
    for (const char *pcPrefix : {"::/0", "0::/0", "0:0:0:0:0:0:0:0/0"}) {
        EXPECT_EQ(ListOf6({{1, {.sPrefix = pcPrefix}}, {2, StaticRoute6{}}}),
                  JsonList(StaticRow6("2")));
        EXPECT_EQ(Rpcs(), (Codes{kAskIds6, kAskRoute6, kAskRoute6, kAskWan}));
    }
    for (const char *pcPrefix : {"::/1", "8000::/0"}) {
        EXPECT_NE(ListOf6({{1, {.sPrefix = pcPrefix}}}), kEmptyList);
    }
}

TEST_F(StaticListTest, Ipv6PrefixThatIsNoneFailsTheList) {
    for (const char *pcPrefix : {"", "2001:db8::", "10.0.0.0/8"}) {
        EXPECT_EQ(ListOf6({{1, StaticRoute6{}}, {77, {.sPrefix = pcPrefix}}}, 1), "");
        EXPECT_TRUE(HasRecorded(kFile, 1, {77, 0, 0, 0}));
    }
}

TEST_F(StaticListTest, InterfaceThatIsNoConnectionKeepsItsName) {
    EXPECT_EQ(ListOf4({{1, {.sConnection = "nbif1.2.ip3"}}}),
              JsonList(StaticRow4("1", "nbif1.2.ip3")));
    EXPECT_EQ(ListOf6({{1, {.sInterface = "nbif1.2.ip3"}}}),
              JsonList(StaticRow6("1", "nbif1.2.ip3")));
    EXPECT_EQ(Rpcs(), (Codes{kAskIds6, kAskRoute6}));
}

TEST_F(StaticListTest, InterfaceThatCannotBeShownFailsTheList) {
    for (const char *pcName : {"", "ppp0", "wan1.2", "wan1.2.ip9"}) {
        EXPECT_EQ(ListOf4({{1, StaticRoute4{}}, {77, {.sConnection = pcName}}}, 1), "") << pcName;
        EXPECT_TRUE(HasRecorded(kFile, 1, {77, 0, 0, 0}));
        EXPECT_EQ(ListOf6({{1, StaticRoute6{}}, {77, {.sInterface = pcName}}}, 1), "") << pcName;
        EXPECT_TRUE(HasRecorded(kFile, 1, {77, 0, 0, 0}));
    }
}

TEST_F(StaticListTest, IndexIsASignedNumberAsText) {
    EXPECT_EQ(ListOf4({{0, StaticRoute4{}},
                       {0x7FFFFFFF, StaticRoute4{}},
                       {0x80000000, StaticRoute4{}},
                       {0xFFFFFFFF, StaticRoute4{}}}),
              JsonList(StaticRow4("0") + ", " + StaticRow4("2147483647") + ", " +
                       StaticRow4("-2147483648") + ", " + StaticRow4("-1")));
}

TEST_F(StaticListTest, OneHundredAndNinetyTwoRoutesAtMost) {
    std::vector<uint32_t> auiIds;
    std::string sRows;
    for (uint32_t i = 1; i <= 192; ++i) {
        auiIds.push_back(i);
        sRows += (i == 1 ? "" : ", ") + StaticRow6(std::to_string(i));
    }
    stPlatform.mapReplies[kAskIds6] = {0, RouteIdBytes(auiIds)};
    EXPECT_EQ(List(VT_JNI_GetAllL3Ipv6StaticRoute), JsonList(sRows));
    for (const uint32_t uiCount : {193u, 0x10000u, 0xFFFFFFFFu}) {
        stPlatform.ClearRecords();
        PutText(stPlatform.mapReplies[kAskIds6].sBytes, 0, Word(uiCount));
        EXPECT_EQ(List(VT_JNI_GetAllL3Ipv6StaticRoute, 1), "");
        EXPECT_EQ(Rpcs(), Codes{kAskIds6});
        EXPECT_TRUE(HasRecorded(kFile, 1, {uiCount, 0, 0, 0}));
    }
}

TEST_F(StaticListTest, IdsCutShortAreZeros) {
    stPlatform.mapReplies[kAskIds4] = {0, RouteIdBytes({0x0102, 9}).substr(0, 5)};
    EXPECT_EQ(List(VT_JNI_GetAllL3Ipv4StaticRoute),
              JsonList(StaticRow4("2") + ", " + StaticRow4("0")));
}

TEST_F(StaticListTest, RefusedRequestsArePassedOn) {
    const struct {
        ListWorker pfnWorker;
        uint32_t uiIdsId;
        uint32_t uiRouteId;
    } astFamilies[] = {{VT_JNI_GetAllL3Ipv4StaticRoute, kAskIds4, kAskRoute4},
                       {VT_JNI_GetAllL3Ipv6StaticRoute, kAskIds6, kAskRoute6}};
    for (const auto &stFamily : astFamilies) {
        stPlatform.ClearRecords();
        Refuse(kAskWan);
        EXPECT_EQ(List(stFamily.pfnWorker, kRefused), "");
        EXPECT_EQ(Rpcs(), (Codes{stFamily.uiIdsId, stFamily.uiRouteId, kAskWan}));
        EXPECT_TRUE(HasRecorded(kFile, kRefused, {5, 0, 0, 0}));
        stPlatform.ClearRecords();
        Refuse(stFamily.uiRouteId);
        EXPECT_EQ(List(stFamily.pfnWorker, kRefused), "");
        EXPECT_EQ(Rpcs(), (Codes{stFamily.uiIdsId, stFamily.uiRouteId}));
        EXPECT_TRUE(HasRecorded(kFile, kRefused, {5, 0, 0, 0}));
        stPlatform.ClearRecords();
        Refuse(stFamily.uiIdsId);
        EXPECT_EQ(List(stFamily.pfnWorker, kRefused), "");
        EXPECT_EQ(Rpcs(), Codes{stFamily.uiIdsId});
        EXPECT_EQ(stPlatform.astFaults.back().sFile, kFile);
        FurnishRoutes(stWorld);
    }
}

TEST_F(StaticListTest, LaterRouteThatIsRefusedFailsTheList) {
    stPlatform.fnReply = [](const RpcRecord &stRpc) -> std::optional<Reply> {
        if (stRpc.uiRpcId == kAskRoute4 && stRpc.sRequest == Word(9)) {
            return Reply{kRefused, ""};
        }
        return std::nullopt;
    };
    EXPECT_EQ(List(VT_JNI_GetAllL3Ipv4StaticRoute, kRefused), "");
    EXPECT_TRUE(HasRecorded(kFile, kRefused, {9, 0, 0, 0}));
}

TEST_F(StaticListTest, TextsEndAtTheirFields) {
    const std::string sDest = "123.123.123.1234";
    AnswerAlias("alias");
    EXPECT_EQ(ListOf4({{1,
                        {sDest, std::string(16, 'm'), std::string(16, 'g'),
                         "nbif1." + std::string(282, '\0'), std::string(265, 'l')}}}),
              JsonList(JsonRow4("1", sDest, std::string(16, 'm'), std::string(16, 'g'), "nbif1.")));
    // The mask's field is followed by bytes that are no zeros, and so is the prefix's.
    EXPECT_EQ(
        ListOf6({{1, {"::1" + std::string(58, ' ') + "/64", std::string(64, 'h'), "nbif1."}}}),
        JsonList(
            JsonRow6("1", "::1" + std::string(58, ' ') + "\\/64", std::string(64, 'h'), "nbif1.")));
    // No zero to the record's end: longer than what is shown.
    EXPECT_EQ(ListOf4({{1, {.sConnection = std::string(288, 'n')}}}, 1), "");
    EXPECT_TRUE(HasRecorded("route_names.cpp", 1, {288, 0, 0, 0}));
    EXPECT_EQ(ListOf6({{1, {.sInterface = std::string(424, 'n')}}}, 1), "");
    EXPECT_TRUE(HasRecorded("route_names.cpp", 1, {424, 0, 0, 0}));
}

TEST_F(StaticListTest, RecordsOfOnesOrOfText) {
    for (const char cByte : {'\xFF', 'x'}) {
        stPlatform.fnReply = [=](const RpcRecord &stRpc) -> std::optional<Reply> {
            const bool bRoute = stRpc.uiRpcId == kAskRoute4 || stRpc.uiRpcId == kAskRoute6;
            return bRoute ? std::optional(Reply{0, std::string(800, cByte)}) : std::nullopt;
        };
        EXPECT_EQ(List(VT_JNI_GetAllL3Ipv4StaticRoute, 1), "");
        EXPECT_EQ(List(VT_JNI_GetAllL3Ipv6StaticRoute, 1), "");
    }
}

// What is missing is zero, and a route that is not static is left out.
TEST_F(StaticListTest, RecordsCutShort) {
    stPlatform.mapReplies[kAskIds4] = {0, RouteIdBytes({5})};
    for (size_t i = 0; i < 731; ++i) {
        stPlatform.mapReplies[kAskRoute4] = {0, StaticBytes(StaticRoute4{}).substr(0, i)};
        char *pcText = nullptr;
        const uint32_t uiResult = VT_JNI_GetAllL3Ipv4StaticRoute(&pcText);
        const std::string sText = Taken(pcText);
        if (i <= 21) {
            EXPECT_EQ(sText, kEmptyList) << i;
        } else if (i < 443 + 10) {
            // The connection's name is not there, or not whole.
            EXPECT_EQ(uiResult, 1u) << i;
            EXPECT_EQ(sText, "") << i;
        } else {
            EXPECT_EQ(sText, JsonList(StaticRow4("5"))) << i;
        }
    }
}

TEST_F(StaticListTest, TextsAreEscaped) {
    AnswerAlias("a\"b\\c/d\n");
    EXPECT_EQ(ListOf4({{1, {.sDest = "\t", .sMask = "\"", .sGateway = "/"}}}),
              JsonList(JsonRow4("1", "\\t", "\\\"", "\\/", "a\\\"b\\\\c\\/d\\n")));
}

// 512 bytes for one route, and 256 more for each other id, listed or not. A control character takes
// six of them.
TEST_F(StaticListTest, AnswerMustFitItsBuffer) {
    const size_t uiRoom = 511 - JsonList(StaticRow4("1", "")).size();
    const size_t uiControls = (uiRoom - 127) / 5;
    const size_t uiQuotes = (uiRoom - 127) % 5;
    std::string sAlias = std::string(uiControls, '\x01') + std::string(uiQuotes, '"');
    sAlias.resize(127, 'n');
    std::string sPrinted;
    for (const char cByte : sAlias) {
        sPrinted += cByte == 'n' ? "n" : cByte == '"' ? "\\\"" : "\\u0001";
    }
    ASSERT_EQ(sPrinted.size(), uiRoom);
    AnswerAlias(sAlias);
    EXPECT_EQ(ListOf4({{1, StaticRoute4{}}}), JsonList(StaticRow4("1", sPrinted)));
    sAlias.back() = '"';
    sPrinted.pop_back();
    sPrinted += "\\\"";
    AnswerAlias(sAlias);
    EXPECT_EQ(ListOf4({{1, StaticRoute4{}}}, 1), "");
    EXPECT_TRUE(HasRecorded(kFile, 1, {512, 0, 0, 0}));
    EXPECT_EQ(ListOf4({{1, StaticRoute4{}}, {2, {.uiStatic = 0}}}),
              JsonList(StaticRow4("1", sPrinted)));
}

TEST_F(StaticListTest, NullIsRefusedWithoutAsking) {
    EXPECT_EQ(VT_JNI_GetAllL3Ipv4StaticRoute(nullptr), kNullArgument);
    EXPECT_EQ(VT_JNI_GetAllL3Ipv6StaticRoute(nullptr), kNullArgument);
    EXPECT_EQ(FaultCodes(stPlatform), Codes(2, kNullArgument));
    EXPECT_TRUE(stPlatform.astRpcs.empty());
}

}  // namespace
}  // namespace wap::test
