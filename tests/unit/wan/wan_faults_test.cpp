// The functions of the WAN model with each of their operations failing in turn.
#include <cstring>
#include <functional>
#include <map>
#include <set>
#include <string>

#include "faults/fault_sweep.h"
#include "unit/wan/wan_fixture.h"
#include "wan/jni_wan_info.h"

namespace wap::test {
namespace {

/// A gateway that answers every request of the model.
void FurnishWans(World &stWorld) {
    std::map<uint32_t, Reply> &mapReplies = stWorld.stPlatform.mapReplies;
    mapReplies[kAskList] = {0, ListBytes({{kIpWan, "1_TR069_R_VID_46"}})};
    mapReplies[kAskIpDns] = {0, DnsBytes(12864, 524, "1.1.1.1,2.2.2.2")};
    mapReplies[kAskPppDns] = {0, DnsBytes(12004, 704, "3.3.3.3,4.4.4.4")};
    mapReplies[kAskIpv6Dns] = {0, DnsBytes(1389, 912, "fe80::1,fe80::2")};
    mapReplies[kSetIpv6Dns] = {0, ""};
}

/// A function and what it gives: its result, and what it found or made.
struct Model {
    const char *pcName;
    std::function<std::string()> fnCall;
    std::string sGood;
    std::string sNoMemory;
    std::string sNoReply;
};

std::string Outcome(uint32_t uiResult, const std::string &sMade) {
    return std::to_string(uiResult) + " " + sMade;
}

/// The planned status of a request that fails.
const std::string kNoAnswer = std::to_string(kPlannedRpcStatus);

const Model kModels[] = {
    {"VT_API_IsTR069Exsit",
     [] {
         uint32_t uiFound = 0;
         uint32_t uiWanIndex = 0;
         const uint32_t uiResult = VT_API_IsTR069Exsit(&uiFound, &uiWanIndex);
         return Outcome(uiResult, std::to_string(uiFound) + " " + std::to_string(uiWanIndex));
     },
     "0 1 269488129", "1 0 0", kNoAnswer + " 0 0"},
    {"VT_API_IsVlanExsit",
     [] {
         uint32_t uiFound = 0;
         const uint32_t uiResult = VT_API_IsVlanExsit(46, &uiFound);
         return Outcome(uiResult, std::to_string(uiFound));
     },
     "0 1", "1 0", kNoAnswer + " 0"},
    {"VT_API_MergeWanIpv4Dns",
     [] {
         char acDns[64] = "8.8.8.8";
         const uint32_t uiResult = VT_API_MergeWanIpv4Dns(kPppWan, acDns, sizeof(acDns));
         return Outcome(uiResult, acDns);
     },
     "0 8.8.8.8,4.4.4.4", "1 8.8.8.8", kNoAnswer + " 8.8.8.8"},
    {"VT_API_SetWanIpv6Dns", [] { return Outcome(VT_API_SetWanIpv6Dns(kIpWan, "::1"), ""); }, "0 ",
     "1 ", kNoAnswer + " "},
    {"VT_API_CheckWanPara",
     [] {
         WanIfPara stPara = {};
         std::memcpy(stPara.acDnsServers, "8.8.8.8", 8);
         stPara.aucSet[kWanDnsServers] = 1;
         const uint32_t uiResult = VT_API_CheckWanPara(kIpWan, &stPara);
         return Outcome(uiResult, stPara.acDnsServers);
     },
     "0 8.8.8.8,2.2.2.2", "1 8.8.8.8", kNoAnswer + " 8.8.8.8"},
};

class WanModelFaultTest : public ::testing::TestWithParam<Model> {};

TEST_P(WanModelFaultTest, FailsRightWhateverFails) {
    const Model &stModel = GetParam();
    std::string sOutcome;
    Subject stSubject;
    stSubject.sName = stModel.pcName;
    stSubject.fnFurnish = FurnishWans;
    stSubject.fnCall = [&](FakeJni &) { sOutcome = stModel.fnCall(); };
    stSubject.fnOutcome = [&](FakeJni &) { return sOutcome; };
    stSubject.sGood = stModel.sGood;
    stSubject.fnAllowed = [&](const FaultPlan &stPlan) -> std::set<std::string> {
        switch (stPlan.eOp) {
            case Op::kAlloc:
                return {stModel.sNoMemory};
            case Op::kRpc:
                return {stModel.sNoReply};
            default:
                return {stModel.sGood};
        }
    };
    const OpCounts auiCounts = SweepFaults(stSubject);
    EXPECT_EQ(CountOf(auiCounts, Op::kAlloc), 1u);
    EXPECT_GE(CountOf(auiCounts, Op::kRpc), 1u);
}

INSTANTIATE_TEST_SUITE_P(Every, WanModelFaultTest, ::testing::ValuesIn(kModels),
                         [](const auto &stInfo) { return std::string(stInfo.param.pcName); });

// The check for a second management connection lets a failure pass, whichever it is.
TEST(WanManagementFaultTest, WithoutTheListNoServiceIsRefused) {
    std::string sOutcome;
    Subject stSubject;
    stSubject.sName = "VT_API_CheckWanPara, services";
    stSubject.fnFurnish = FurnishWans;
    stSubject.fnCall = [&](FakeJni &) {
        WanIfPara stPara = {};
        std::memcpy(stPara.acServiceList, "TR069", 6);
        stPara.aucSet[kWanServiceList] = 1;
        sOutcome = std::to_string(VT_API_CheckWanPara(kPppWan, &stPara));
    };
    stSubject.fnOutcome = [&](FakeJni &) { return sOutcome; };
    stSubject.sGood = "1";
    stSubject.fnAllowed = [](const FaultPlan &stPlan) -> std::set<std::string> {
        return {stPlan.eOp == Op::kAlloc || stPlan.eOp == Op::kRpc ? "0" : "1"};
    };
    const OpCounts auiCounts = SweepFaults(stSubject);
    EXPECT_EQ(CountOf(auiCounts, Op::kRpc), 1u);
}

}  // namespace
}  // namespace wap::test
