// Adding and deleting static routes, request by request.
#include <functional>
#include <string>

#include "lan/jni_l3forward_route.h"
#include "unit/route/route_fixture.h"

namespace wap::test {
namespace {

constexpr uint32_t kAdd4 = 0x47209071;
constexpr uint32_t kAdd6 = 0x47209073;

WantedRpc WansQuery() {
    return {"gulm", 48, kAskWans, Word(0), 2116};
}

class AddRouteTest : public RouteTest {
  protected:
    uint32_t Add4(const char *pcDest, const char *pcMask, const char *pcGateway,
                  const char *pcInterface) {
        return Adding([&] {
            return VT_JNI_AddL3Ipv4StaticRoute(pcDest, pcMask, pcGateway, pcInterface, &uiInstId);
        });
    }
    uint32_t Add4(const char *pcInterface = kRouteAlias) {
        return Add4("10.20.0.0", "255.255.0.0", "100.64.0.1", pcInterface);
    }

    uint32_t Add6(const char *pcPrefix, const char *pcNextHop, const char *pcInterface) {
        return Adding([&] {
            return VT_JNI_AddL3Ipv6StaticRoute(pcPrefix, pcNextHop, pcInterface, &uiInstId);
        });
    }
    uint32_t Add6(const char *pcInterface = kRouteAlias) {
        return Add6("2001:db8:20::/48", "fe80::1", pcInterface);
    }

    /// Both families in turn.
    void ForEach(const std::function<void(const std::function<uint32_t(const char *)> &fnAdd,
                                          uint32_t uiRpcId)> &fnTest) {
        fnTest([this](const char *pcInterface) { return Add4(pcInterface); }, kAdd4);
        fnTest([this](const char *pcInterface) { return Add6(pcInterface); }, kAdd6);
    }

    void AnswerWans(const std::vector<std::pair<uint32_t, std::string>> &astWans) {
        stPlatform.mapReplies[kAskWans] = {0, RouteWans(astWans)};
    }

    std::string SentConnection() const {
        const RpcRecord &stRpc = stPlatform.astRpcs.back();
        return stRpc.sRequest.substr(stRpc.uiRpcId == kAdd4 ? 52 : 128, 32);
    }

    uint32_t uiInstId = kUntouched;

  private:
    /// The id is written on success only.
    uint32_t Adding(const std::function<uint32_t()> &fnAdd) {
        stPlatform.ClearRecords();
        uiInstId = kUntouched;
        const uint32_t uiResult = fnAdd();
        EXPECT_EQ(uiInstId == kUntouched, uiResult != 0);
        EXPECT_EQ(stPlatform.astFaults.empty(), uiResult == 0);
        return uiResult;
    }
};

TEST_F(AddRouteTest, Ipv4RequestByByte) {
    EXPECT_EQ(Add4(), 0u);
    EXPECT_EQ(uiInstId, 7u);
    const std::string sRequest = Word(1) + Field("10.20.0.0", 16) + Field("255.255.0.0", 16) +
                                 Field("100.64.0.1", 16) + Field("wan1.2.ip3", 32);
    ASSERT_EQ(sRequest.size(), 84u);
    ExpectRpcs({WansQuery(), {"osgi_proxy", 0, kAdd4, sRequest, 4}});
    EXPECT_EQ(EntryTraces(stPlatform), Calls{});
}

TEST_F(AddRouteTest, Ipv6RequestByByte) {
    EXPECT_EQ(Add6(), 0u);
    EXPECT_EQ(uiInstId, 8u);
    const std::string sRequest = Field("2001:db8:20::/48", 64) + Field("fe80::1", 64) +
                                 Field("wan1.2.ip3", 32) + std::string(224, '\0');
    ASSERT_EQ(sRequest.size(), 384u);
    ExpectRpcs({WansQuery(), {"osgi_proxy", 0, kAdd6, sRequest, 4}});
    EXPECT_EQ(EntryTraces(stPlatform), Calls{});
}

TEST_F(AddRouteTest, GatewayAndNextHopMayBeMissing) {
    for (const char *pcNone : {static_cast<const char *>(nullptr), ""}) {
        EXPECT_EQ(Add4("10.20.0.0", "255.255.0.0", pcNone, kRouteAlias), 0u);
        EXPECT_EQ(stPlatform.astRpcs.back().sRequest.substr(36, 16), std::string(16, '\0'));
        EXPECT_EQ(Add6("2001:db8:20::/48", pcNone, kRouteAlias), 0u);
        EXPECT_EQ(stPlatform.astRpcs.back().sRequest.substr(64, 64), std::string(64, '\0'));
    }
}

TEST_F(AddRouteTest, GatewayAndNextHopAreCutAtTheirFields) {
    const std::string s63(63, 'h');
    for (const char *pcMore : {"", "x", "xyz"}) {
        EXPECT_EQ(Add4("a", "b", (s63.substr(0, 15) + pcMore).c_str(), kRouteAlias), 0u);
        EXPECT_EQ(stPlatform.astRpcs.back().sRequest.substr(36, 16), Field(s63.substr(0, 15), 16));
        EXPECT_EQ(Add6("::1/128", (s63 + pcMore).c_str(), kRouteAlias), 0u);
        EXPECT_EQ(stPlatform.astRpcs.back().sRequest.substr(64, 64), Field(s63, 64));
        EXPECT_EQ(SentConnection(), Field("wan1.2.ip3", 32));
    }
}

TEST_F(AddRouteTest, Ipv4TextsHaveOneToFifteenBytes) {
    const std::string s15 = "255.255.255.255";
    EXPECT_EQ(Add4(s15.c_str(), s15.c_str(), nullptr, kRouteAlias), 0u);
    EXPECT_EQ(stPlatform.astRpcs.back().sRequest.substr(4, 32), s15 + '\0' + s15 + '\0');
    EXPECT_EQ(Add4("1", "2", nullptr, kRouteAlias), 0u);
    const std::string s16 = s15 + "0";
    for (const char *pcBad : {static_cast<const char *>(nullptr), "", s16.c_str()}) {
        for (const bool bDest : {false, true}) {
            EXPECT_EQ(Add4(bDest ? pcBad : "1", bDest ? "2" : pcBad, nullptr, kRouteAlias), 1u);
            EXPECT_TRUE(stPlatform.astRpcs.empty());
            ASSERT_EQ(FaultCodes(stPlatform), Codes{1});
            EXPECT_TRUE(stPlatform.astFaults[0].bCodeOnly);
            EXPECT_EQ(stPlatform.astFaults[0].sFile, "jni_l3forward_route.cpp");
        }
    }
}

// Nothing here says what an address is.
TEST_F(AddRouteTest, Ipv4AddressesAreNotChecked) {
    EXPECT_EQ(Add4("not.an.address", "-", "?", kRouteAlias), 0u);
    EXPECT_EQ(stPlatform.astRpcs.back().sRequest.substr(4, 48),
              Field("not.an.address", 16) + Field("-", 16) + Field("?", 16));
}

TEST_F(AddRouteTest, Ipv6PrefixHasOneToSixtyThreeBytes) {
    const std::string s63 = "::1" + std::string(57, ' ') + "/64";
    ASSERT_EQ(s63.size(), 63u);
    EXPECT_EQ(Add6(s63.c_str(), nullptr, kRouteAlias), 0u);
    EXPECT_EQ(stPlatform.astRpcs.back().sRequest.substr(0, 64), Field(s63, 64));
    const std::string s64 = "::1/064" + std::string(57, '/');
    for (const char *pcBad : {static_cast<const char *>(nullptr), "", s64.c_str()}) {
        EXPECT_EQ(Add6(pcBad, nullptr, kRouteAlias), 1u);
        EXPECT_TRUE(stPlatform.astRpcs.empty());
        ASSERT_EQ(FaultCodes(stPlatform), Codes{1});
        EXPECT_TRUE(stPlatform.astFaults[0].bCodeOnly);
        EXPECT_EQ(stPlatform.astFaults[0].sFile, "jni_l3forward_route.cpp");
    }
}

TEST_F(AddRouteTest, Ipv6PrefixMustBeOne) {
    for (const char *pcPrefix : {"2001:db8::", "2001:db8::/", "10.0.0.0/8", "/64"}) {
        EXPECT_EQ(Add6(pcPrefix, nullptr, kRouteAlias), 1u) << pcPrefix;
        EXPECT_TRUE(stPlatform.astRpcs.empty());
    }
}

TEST_F(AddRouteTest, Ipv6DefaultRouteIsRefused) {
    for (const char *pcPrefix : {"::/0", "0::0/0", "0:0:0:0:0:0:0:0/00", "::0.0.0.0/0"}) {
        EXPECT_EQ(Add6(pcPrefix, nullptr, kRouteAlias), 1u) << pcPrefix;
        EXPECT_TRUE(stPlatform.astRpcs.empty());
        EXPECT_EQ(FaultCodes(stPlatform), Codes{1});
    }
    for (const char *pcPrefix : {"::/1", "8000::/0", "::1/0"}) {
        EXPECT_EQ(Add6(pcPrefix, nullptr, kRouteAlias), 0u) << pcPrefix;
    }
}

TEST_F(AddRouteTest, LanBridgeAndNothingAreNoInterfaces) {
    ForEach([&](const auto &fnAdd, uint32_t) {
        for (const char *pcBad : {static_cast<const char *>(nullptr), "", "br0", "BR0", "Br0"}) {
            EXPECT_EQ(fnAdd(pcBad), 1u);
            EXPECT_TRUE(stPlatform.astRpcs.empty());
            ASSERT_EQ(FaultCodes(stPlatform), Codes{1});
            EXPECT_TRUE(stPlatform.astFaults[0].bCodeOnly);
        }
        // Names that are only like it are looked for.
        for (const char *pcOther : {"br00", "br", "br0 "}) {
            EXPECT_EQ(fnAdd(pcOther), 1u);
            EXPECT_EQ(Rpcs(), Codes{kAskWans});
        }
    });
}

TEST_F(AddRouteTest, AliasIsFoundInAnyCaseAndTheFirstCounts) {
    AnswerWans({{0x10101001, "one"}, {0x20102004, "Two"}, {0x10103005, "tWO"}});
    ForEach([&](const auto &fnAdd, uint32_t uiRpcId) {
        for (const char *pcAlias : {"Two", "two", "TWO"}) {
            EXPECT_EQ(fnAdd(pcAlias), 0u);
            EXPECT_EQ(Rpcs(), (Codes{kAskWans, uiRpcId}));
            EXPECT_EQ(SentConnection(), Field("wan1.2.ppp4", 32));
        }
    });
}

TEST_F(AddRouteTest, AllTwelveBitsOfTheInstanceAreNamed) {
    AnswerWans({{0x2FFFFFFF, "last"}});
    EXPECT_EQ(Add4("last"), 0u);
    EXPECT_EQ(SentConnection(), Field("wan255.255.ppp4095", 32));
}

TEST_F(AddRouteTest, UnknownAlias) {
    ForEach([&](const auto &fnAdd, uint32_t) {
        for (const char *pcAlias : {"2_INTERNET", "2_INTERNET_R_VID_1000", "wan1.2.ip3"}) {
            EXPECT_EQ(fnAdd(pcAlias), 1u);
            EXPECT_EQ(Rpcs(), Codes{kAskWans});
            EXPECT_TRUE(HasRecorded("route_names.cpp", 1, {0, 0, 0, 0}));
        }
    });
}

TEST_F(AddRouteTest, IndexThatNamesNoConnection) {
    for (const uint32_t uiWanIndex : {0u, 0x00101001u, 0x30101001u, 0xF0101001u}) {
        // The one after it is never reached.
        AnswerWans({{uiWanIndex, "name"}, {0x10101001, "name"}});
        ForEach([&](const auto &fnAdd, uint32_t) {
            EXPECT_EQ(fnAdd("name"), 1u);
            EXPECT_EQ(Rpcs(), Codes{kAskWans});
            EXPECT_TRUE(HasRecorded("route_names.cpp", 1, {uiWanIndex, 0, 0, 0}));
        });
    }
}

TEST_F(AddRouteTest, EightConnectionsAtMost) {
    std::string sList = Word(8);
    for (uint32_t i = 1; i <= 8; ++i) {
        sList += Word(0x10101000 + i) + Field("name" + std::to_string(i), 260);
    }
    ASSERT_EQ(sList.size(), 2116u);
    stPlatform.mapReplies[kAskWans] = {0, sList};
    EXPECT_EQ(Add4("name8"), 0u);
    EXPECT_EQ(SentConnection(), Field("wan1.1.ip8", 32));
    for (const uint32_t uiCount : {9u, 0x100u, 0xFFFFFFFFu}) {
        PutText(stPlatform.mapReplies[kAskWans].sBytes, 0, Word(uiCount));
        ForEach([&](const auto &fnAdd, uint32_t) {
            EXPECT_EQ(fnAdd("name1"), 1u);
            EXPECT_EQ(Rpcs(), Codes{kAskWans});
            EXPECT_TRUE(HasRecorded("route_names.cpp", 1, {uiCount, 0, 0, 0}));
        });
    }
    // What the count leaves out is not there.
    PutText(stPlatform.mapReplies[kAskWans].sBytes, 0, Word(7));
    EXPECT_EQ(Add4("name8"), 1u);
    PutText(stPlatform.mapReplies[kAskWans].sBytes, 0, Word(0));
    EXPECT_EQ(Add4("name1"), 1u);
}

TEST_F(AddRouteTest, AliasWithoutAnEndIsItsField) {
    const std::string s260(260, 'n');
    AnswerWans({{0x10101001, s260}, {0x10101002, s260 + "x"}});
    EXPECT_EQ(Add4(s260.c_str()), 0u);
    EXPECT_EQ(SentConnection(), Field("wan1.1.ip1", 32));
    EXPECT_EQ(Add4((s260 + "n").c_str()), 1u);
}

TEST_F(AddRouteTest, WanListCutShort) {
    const std::string sList = RouteWans({{0x10101001, "name"}});
    for (const size_t uiLength : {0u, 1u, 4u, 7u, 11u}) {
        stPlatform.mapReplies[kAskWans] = {0, sList.substr(0, uiLength)};
        EXPECT_EQ(Add4("name"), 1u) << uiLength;
    }
    stPlatform.mapReplies[kAskWans] = {0, sList.substr(0, 12)};
    EXPECT_EQ(Add4("name"), 0u);
}

TEST_F(AddRouteTest, RefusedRequestsArePassedOn) {
    ForEach([&](const auto &fnAdd, uint32_t uiRpcId) {
        Refuse(uiRpcId);
        EXPECT_EQ(fnAdd(kRouteAlias), kRefused);
        EXPECT_EQ(Rpcs(), (Codes{kAskWans, uiRpcId}));
        EXPECT_EQ(stPlatform.astFaults.back().sFile, "jni_l3forward_route.cpp");
        Refuse(kAskWans);
        EXPECT_EQ(fnAdd(kRouteAlias), kRefused);
        EXPECT_EQ(Rpcs(), Codes{kAskWans});
        stPlatform.mapReplies[kAskWans].uiStatus = 0;
    });
}

TEST_F(AddRouteTest, IdIsWhateverTheServiceSays) {
    ForEach([&](const auto &fnAdd, uint32_t uiRpcId) {
        for (const uint32_t uiId : {0u, 1u, 0x80000000u, 0xFFFFFFFFu}) {
            stPlatform.mapReplies[uiRpcId] = {0, Word(uiId)};
            EXPECT_EQ(fnAdd(kRouteAlias), 0u);
            EXPECT_EQ(uiInstId, uiId);
        }
        stPlatform.mapReplies[uiRpcId] = {0, "\x21"};
        EXPECT_EQ(fnAdd(kRouteAlias), 0u);
        EXPECT_EQ(uiInstId, 0x21u);
        stPlatform.mapReplies[uiRpcId] = {0, ""};
        EXPECT_EQ(fnAdd(kRouteAlias), 0u);
        EXPECT_EQ(uiInstId, 0u);
    });
}

TEST_F(AddRouteTest, NoPlaceForTheId) {
    EXPECT_EQ(VT_JNI_AddL3Ipv4StaticRoute("1", "2", nullptr, kRouteAlias, nullptr), kNullArgument);
    EXPECT_EQ(VT_JNI_AddL3Ipv6StaticRoute("::1/1", nullptr, kRouteAlias, nullptr), kNullArgument);
    EXPECT_EQ(FaultCodes(stPlatform), Codes(2, kNullArgument));
    EXPECT_TRUE(stPlatform.astRpcs.empty());
}

struct DeleteCase {
    uint32_t (*pfnDelete)(uint32_t);
    uint32_t uiRpcId;
};
constexpr DeleteCase kDeletions[] = {{VT_JNI_DelL3Ipv4StaticRoute, 0x47209072},
                                     {VT_JNI_DelL3Ipv6StaticRoute, 0x47209074}};

class DeleteRouteTest : public RouteTest, public ::testing::WithParamInterface<DeleteCase> {};

TEST_P(DeleteRouteTest, SendsTheId) {
    for (const uint32_t uiId : {0u, 77u, 0xFFFFFFFFu}) {
        stPlatform.ClearRecords();
        EXPECT_EQ(GetParam().pfnDelete(uiId), 0u);
        ExpectRpcs({{"osgi_proxy", 0, GetParam().uiRpcId, Word(uiId), 4}});
        EXPECT_TRUE(stPlatform.astFaults.empty());
        EXPECT_EQ(EntryTraces(stPlatform), Calls{});
    }
}

TEST_P(DeleteRouteTest, EveryFailureIsMinusOne) {
    for (const uint32_t uiStatus : {1u, kRefused, kMinusOne}) {
        stPlatform.ClearRecords();
        stPlatform.mapReplies[GetParam().uiRpcId].uiStatus = uiStatus;
        EXPECT_EQ(GetParam().pfnDelete(77), kMinusOne);
        EXPECT_TRUE(HasRecorded("jni_l3forward_route.cpp", uiStatus, {77, 0, 0, 0}));
    }
}

// The word of a reply that is not asked for.
TEST_P(DeleteRouteTest, ReplySaysNothing) {
    stPlatform.mapReplies[GetParam().uiRpcId].sBytes = Word(kRefused);
    EXPECT_EQ(GetParam().pfnDelete(77), 0u);
}

INSTANTIATE_TEST_SUITE_P(Families, DeleteRouteTest, ::testing::ValuesIn(kDeletions),
                         [](const auto &stInfo) {
                             return stInfo.param.uiRpcId == 0x47209072 ? "Ipv4" : "Ipv6";
                         });

}  // namespace
}  // namespace wap::test
