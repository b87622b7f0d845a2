// The entries of the routes with each of their operations failing.
#include <memory>
#include <set>
#include <string>

#include "faults/fault_sweep.h"
#include "support/entry_table_route.h"
#include "unit/route/route_fixture.h"

namespace wap::test {
namespace {

/// An entry under a fault. The outcome is its answer and the last request, so that one that went
/// out with less than what Java gave is seen.
Subject SubjectOf(const Entry &stEntry) {
    struct State {
        std::string sOutcome;
    };
    auto pstState = std::make_shared<State>();
    Subject stSubject;
    stSubject.sName = stEntry.sMethod;
    stSubject.fnFurnish = FurnishRoutes;
    stSubject.fnCall = [=](FakeJni &stEnv) {
        Platform &stPlatform = World::Get().stPlatform;
        stPlatform.ClearRecords();
        pstState->sOutcome = TextOf(stEntry.fnCall(stEnv));
        for (const RpcRecord &stRpc : stPlatform.astRpcs) {
            if (stRpc.uiRpcId == 0x47209071 || stRpc.uiRpcId == 0x47209073) {
                pstState->sOutcome += " " + stRpc.sRequest;
            }
        }
    };
    stSubject.fnOutcome = [=](FakeJni &) { return pstState->sOutcome; };
    return stSubject;
}

/// What goes out when all is well.
std::string RequestOf(const Entry &stEntry) {
    if (stEntry.uiRpcId == 0x47209071) {
        return " " + Word(1) + Field("10.20.0.0", 16) + Field("255.255.0.0", 16) +
               Field("100.64.0.1", 16) + Field("wan1.2.ip3", 32);
    }
    if (stEntry.uiRpcId == 0x47209073) {
        return " " + Field("2001:db8:20::/48", 64) + Field("fe80::1", 64) +
               Field("wan1.2.ip3", 32) + std::string(224, '\0');
    }
    return "";
}

class RouteFaultTest : public ::testing::TestWithParam<Entry> {};

TEST_P(RouteFaultTest, AnswersRightWhateverFails) {
    const Entry &stEntry = GetParam();
    const bool bList = stEntry.stGood.sText.has_value();
    Subject stSubject = SubjectOf(stEntry);
    stSubject.sGood = TextOf(stEntry.stGood) + RequestOf(stEntry);
    const std::string sFailure = TextOf(stEntry.stFailure);
    stSubject.fnAllowed = [&](const FaultPlan &stPlan) -> std::set<std::string> {
        switch (stPlan.eOp) {
            case Op::kJni:
                return {bList ? TextOf(NullAnswer()) : sFailure};
            case Op::kRpc:
                // The addition itself may be what was refused.
                return {sFailure, sFailure + RequestOf(stEntry)};
            case Op::kPlatform:
                return {stSubject.sGood};
            default:
                return {sFailure};
        }
    };
    const OpCounts auiCounts = SweepFaults(stSubject);
    EXPECT_EQ(CountOf(auiCounts, Op::kBulk), stEntry.uiRpcId == 0x46345865 ? 2u : 0u);
    EXPECT_EQ(CountOf(auiCounts, Op::kAlloc) > 5, bList);
}

INSTANTIATE_TEST_SUITE_P(Methods, RouteFaultTest, ::testing::ValuesIn(RouteEntries()),
                         [](const auto &stInfo) { return stInfo.param.sMethod; });

// The list has to grow for the 32nd route. Without memory for that, it goes on without the route.
TEST(RouteFaults, RouteThatTheListRefusesIsLeftOut) {
    for (const Entry &stEntry : RouteEntries()) {
        if (stEntry.sMethod != "getIPv6Layer3ForwardingStaticConfigInfo") {
            continue;
        }
        std::vector<uint32_t> auiIds;
        std::string sRows;
        std::string sWithout;
        for (uint32_t i = 1; i <= 34; ++i) {
            auiIds.push_back(i);
            const std::string sRow =
                (i == 1 ? "" : ", ") +
                JsonRow6(std::to_string(i), "2001:db8:20::\\/48", "fe80::1", kRouteAlias);
            sRows += sRow;
            sWithout += i == 32 ? "" : sRow;
        }
        Subject stSubject = SubjectOf(stEntry);
        stSubject.fnFurnish = [&](World &stWorld) {
            FurnishRoutes(stWorld);
            stWorld.stPlatform.mapReplies[0x47100009] = {0, RouteIdBytes(auiIds)};
        };
        const std::string sLess = TextOf(TextAnswerOf(JsonList(sWithout)));
        const Look fnLook = [&](const Platform &stPlatform, const std::string &sOutcome) {
            if (sOutcome == sLess) {
                EXPECT_EQ(TimesRecorded(stPlatform, "jni_l3forward_route.cpp", 0xF7100000), 1u);
            }
        };
        const std::set<std::string> asOutcomes = OutcomesWithoutMemory(stSubject, fnLook);
        const std::string sFailure = TextOf(stEntry.stFailure);
        // One refusal leads to the shorter list, every other one to none.
        EXPECT_TRUE(asOutcomes.contains(sLess));
        EXPECT_TRUE(asOutcomes.contains(sFailure));
        for (const std::string &sOutcome : asOutcomes) {
            EXPECT_TRUE(sOutcome == sLess || sOutcome == sFailure) << sOutcome;
        }
    }
}

}  // namespace
}  // namespace wap::test
