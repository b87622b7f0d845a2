// Attach control under every single fault: the answer is right, and what the gateway holds
// afterwards agrees with it.
#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <string>

#include "access/jni_attach_control.h"
#include "faults/fault_sweep.h"
#include "support/entry_table_attach.h"
#include "unit/attach/attach_home.h"

namespace wap::test {
namespace {

/// The storage rights and limits of a home in short.
std::string StateOf(const AttachHome &stHome) {
    std::string sState;
    for (const Record &stRecord : stHome.astRecords) {
        sState += " " + stRecord.sMac.substr(stRecord.sMac.size() - 1) + ":" +
                  std::to_string(stRecord.uiStorage) + "/" + std::to_string(stRecord.uiUp) + "/" +
                  std::to_string(stRecord.uiDown);
    }
    return sState;
}

/// A method on a home with these records, and what it says and leaves behind.
Subject SubjectOf(const std::string &sMethod, const std::vector<Record> &astRecords) {
    struct State {
        AttachHome stHome;
        Answer stAnswer;
    };
    auto pstState = std::make_shared<State>();
    Subject stSubject;
    stSubject.sName = sMethod;
    stSubject.fnFurnish = [=](World &stWorld) {
        pstState->stHome = AttachHome();
        pstState->stHome.astRecords = astRecords;
        pstState->stHome.asFilterMacs = {kMacB};
        pstState->stHome.AnswerFor(stWorld.stPlatform);
    };
    stSubject.fnCall = [pstState, stEntry = EntryOf(AttachEntries(), sMethod)](FakeJni &stEnv) {
        pstState->stAnswer = stEntry.fnCall(stEnv);
    };
    stSubject.fnOutcome = [=](FakeJni &) {
        return TextOf(pstState->stAnswer) + StateOf(pstState->stHome);
    };
    return stSubject;
}

// The table's calls name A and B.

TEST(AttachFaults, Limit) {
    Subject stSubject = SubjectOf("setLANHostSpeedLimit", {{5, kMacA, 1, 1, 1, 2}});
    stSubject.sGood = "0 A:1/512/1024";
    stSubject.fnAllowed = [&](const FaultPlan &stPlan) -> std::set<std::string> {
        // A process without a name asks all the same.
        return {stPlan.eOp == Op::kPlatform ? stSubject.sGood : "-1 A:1/1/2"};
    };
    const OpCounts auiCounts = SweepFaults(stSubject);
    // Mode, wired index, its entry, wireless index; list index, one record; the change.
    EXPECT_EQ(CountOf(auiCounts, Op::kRpc), 7u);
    EXPECT_GE(CountOf(auiCounts, Op::kAlloc), 3u);
}

TEST(AttachFaults, LimitOfAnUnknownHost) {
    Subject stSubject = SubjectOf("setLANHostSpeedLimit", {});
    stSubject.sGood = "0 a:1/512/1024";
    stSubject.fnAllowed = [&](const FaultPlan &stPlan) -> std::set<std::string> {
        return {stPlan.eOp == Op::kPlatform ? stSubject.sGood : "-1"};
    };
    EXPECT_EQ(CountOf(SweepFaults(stSubject), Op::kRpc), 6u);
}

TEST(AttachFaults, Bar) {
    Subject stSubject = SubjectOf("addLANHostToStorageBlackList", {{5, kMacA}});
    stSubject.sGood = "0 A:0/0/0 b:0/0/0";
    stSubject.fnAllowed = [&](const FaultPlan &stPlan) -> std::set<std::string> {
        switch (stPlan.eOp) {
            case Op::kPlatform:
                return {stSubject.sGood};
            case Op::kRpc:
                // The change of A is undone unless nothing answers any more.
                return stPlan.bForever ? std::set<std::string>{"-1 A:1/0/0", "-1 A:0/0/0"}
                                       : std::set<std::string>{"-1 A:1/0/0"};
            default:
                // A MAC that does not convert leaves its slot empty, and its host as it is.
                return {"-1 A:1/0/0", "0 A:0/0/0", "0 A:1/0/0 b:0/0/0", "0 A:1/0/0"};
        }
    };
    EXPECT_EQ(CountOf(SweepFaults(stSubject), Op::kRpc), 8u);
}

TEST(AttachFaults, Allow) {
    Subject stSubject = SubjectOf("deleteLANHostFromStorageBlackList",
                                  {{5, kMacA, 1, 0}, {6, kMacB, 1, 0}, {7, kMacC, 1, 0}});
    stSubject.sGood = "0 A:1/0/0 B:1/0/0 C:0/0/0";
    const std::string sBefore = "-1 A:0/0/0 B:0/0/0 C:0/0/0";
    stSubject.fnAllowed = [&](const FaultPlan &stPlan) -> std::set<std::string> {
        switch (stPlan.eOp) {
            case Op::kPlatform:
                return {stSubject.sGood};
            case Op::kRpc:
                return stPlan.bForever
                           ? std::set<std::string>{sBefore, "-1 A:1/0/0 B:0/0/0 C:0/0/0"}
                           : std::set<std::string>{sBefore};
            default:
                // Nobody means everybody, so that one of them must convert. The second call of Java
                // gives the first element, and without an exception none is a null one.
                return {sBefore, "0 A:1/0/0 B:0/0/0 C:0/0/0", "0 A:0/0/0 B:1/0/0 C:0/0/0",
                        stPlan.eOp == Op::kJni && stPlan.uiAt == 2 && stPlan.bForever
                            ? "0 A:1/0/0 B:1/0/0 C:1/0/0"
                            : sBefore};
        }
    };
    EXPECT_EQ(CountOf(SweepFaults(stSubject), Op::kRpc), 10u);
}

TEST(AttachFaults, Report) {
    Subject stSubject =
        SubjectOf("getLANHostSpeedLimitInfo", {{5, kMacB, 1, 1, 3, 4}, {6, kMacA, 1, 1, 1, 2}});
    const std::string sState = " B:1/3/4 A:1/1/2";
    stSubject.sGood =
        "\"{ \"Result\": 0, \"List\": [ { \"UpSpeed\": 1, \"DownSpeed\": 2 }, "
        "{ \"UpSpeed\": 3, \"DownSpeed\": 4 } ] }\"" +
        sState;
    stSubject.fnAllowed = [&](const FaultPlan &stPlan) -> std::set<std::string> {
        const std::string sFailed = "\"{\"Result\":-1}\"" + sState;
        switch (stPlan.eOp) {
            case Op::kPlatform:
                return {stSubject.sGood};
            case Op::kJni:
                return {sFailed, "null" + sState};
            default:
                return {sFailed};
        }
    };
    const OpCounts auiCounts = SweepFaults(stSubject);
    EXPECT_EQ(CountOf(auiCounts, Op::kRpc), 3u);
    EXPECT_GT(CountOf(auiCounts, Op::kAlloc), 15u);
}

/// The report of hosts whose limits are their numbers from 1 on, but for one of them.
std::string ReportWithout(uint32_t uiHosts, uint32_t uiMissing) {
    std::string sText;
    for (uint32_t i = 1; i <= uiHosts; ++i) {
        if (i != uiMissing) {
            const std::string sNumber = std::to_string(i);
            sText += sText.empty() ? " { \"UpSpeed\": " : ", { \"UpSpeed\": ";
            sText += sNumber;
            sText += ", \"DownSpeed\": ";
            sText += sNumber;
            sText += " }";
        }
    }
    return "{ \"Result\": 0, \"List\": [" + sText + " ] }";
}

/// Whether this is a report of all hosts but one.
bool LacksOne(const std::string &sText, uint32_t uiHosts) {
    for (uint32_t uiMissing = 1; uiMissing <= uiHosts; ++uiMissing) {
        if (sText == ReportWithout(uiHosts, uiMissing)) {
            return true;
        }
    }
    return false;
}

// Somewhere on the way to forty elements the array has to grow; what it has no room for is left
// out.
TEST(AttachFaults, ReportGoesOnBehindAHostThatTheListRefuses) {
    World stWorld;
    std::vector<AttachControl> astHosts(40);
    for (uint32_t i = 0; i < 40; ++i) {
        astHosts[i].uiUsBandwidth = i + 1;
        astHosts[i].uiDsBandwidth = i + 1;
    }
    uint32_t uiRefused = 0;
    std::string sText;
    for (uint32_t uiAt = 1; sText != ReportWithout(40, 0); ++uiAt) {
        ASSERT_LT(uiAt, 2000u);
        stWorld.ClearRecords();
        stWorld.Plan({Op::kAlloc, uiAt, false});
        char *pcText = nullptr;
        const uint32_t uiResult = VT_JNI_getSpeedLimitJsonStr(astHosts.data(), 40, &pcText);
        stWorld.Plan({});
        EXPECT_EQ(uiResult, pcText == nullptr ? 1u : 0u);
        sText = pcText == nullptr ? "" : pcText;
        VT_OS_MemFreeD(pcText, __FILE_NAME__, __LINE__);
        if (LacksOne(sText, 40)) {
            ++uiRefused;
            EXPECT_EQ(stWorld.stPlatform.astFaults.back().uiCode, 0xF7100000u);
            EXPECT_EQ(stWorld.stPlatform.astFaults.back().sFile, kWorkerFile);
        }
        stWorld.ExpectClean(std::to_string(uiAt));
    }
    EXPECT_EQ(uiRefused, 1u);
}

}  // namespace
}  // namespace wap::test
