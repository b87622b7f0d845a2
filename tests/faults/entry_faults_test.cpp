// The entries of the start and of the device services under every single fault.

#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <string>

#include "faults/fault_sweep.h"
#include "support/entries.h"
#include "system/wap_msg_jni.h"

namespace wap::test {

namespace {

bool IsStart(const Entry &stEntry) {
    return stEntry.sMethod == "startThread";
}

bool IsRate(const Entry &stEntry) {
    return stEntry.sMethod == "getCPUOccupancyRate" || stEntry.sMethod == "getRAMOccupancyRate";
}

/// The answer, and for startThread whether the process counts as started.
Subject SubjectOf(const Entry &stEntry) {
    auto pstAnswer = std::make_shared<Answer>();
    Subject stSubject;
    stSubject.sName = stEntry.sMethod;
    stSubject.fnFurnish = FurnishHome;
    stSubject.fnCall = [&stEntry, pstAnswer](FakeJni &stEnv) {
        *pstAnswer = stEntry.fnCall(stEnv);
    };
    stSubject.fnOutcome = [&stEntry, pstAnswer](FakeJni &) {
        return TextOf(*pstAnswer) +
               (IsStart(stEntry) ? " flag " + std::to_string(uiInitFlag) : std::string());
    };
    stSubject.sGood = TextOf(stEntry.stGood) + (IsStart(stEntry) ? " flag 1" : "");
    return stSubject;
}

/// What an entry answers when it gets what it asks for until the fault.
std::set<std::string> AllowedOf(const Entry &stEntry, const FaultPlan &stPlan) {
    switch (stPlan.eOp) {
        case Op::kRpc:
            return {TextOf(stEntry.stFailure)};
        case Op::kJni:
            return {TextOf(NullAnswer())};
        case Op::kPlatform:
            if (IsStart(stEntry)) {
                // Without the platform library there is nothing to start, which is no failure.
                return {stPlan.uiAt == 1 ? "0 flag 0" : "1 flag 0"};
            }
            // Names and locks are no reason to refuse: only the rates come from the platform.
            return {TextOf(IsRate(stEntry) ? stEntry.stFailure : stEntry.stGood)};
        case Op::kAlloc:
        case Op::kBulk:
            break;
    }
    return {};
}

class EntryFaultTest : public ::testing::TestWithParam<Entry> {};

TEST_P(EntryFaultTest, AnswersRightWhateverFails) {
    const Entry &stEntry = GetParam();
    Subject stSubject = SubjectOf(stEntry);
    stSubject.fnAllowed = [&](const FaultPlan &stPlan) { return AllowedOf(stEntry, stPlan); };
    const OpCounts auiCounts = SweepFaults(stSubject);
    const bool bText = stEntry.stGood.sText.has_value();
    // Class, charset, method, array, bytes, text.
    EXPECT_EQ(CountOf(auiCounts, Op::kJni), bText ? 6u : 0u);
    EXPECT_EQ(CountOf(auiCounts, Op::kRpc), stEntry.uiRpcId != 0 ? 1u : 0u);
    // The library, three names, and three calls of what they name.
    EXPECT_EQ(CountOf(auiCounts, Op::kPlatform) >= 7, IsStart(stEntry));
}

TEST_P(EntryFaultTest, FailsRightWhateverElseFails) {
    const Entry &stEntry = GetParam();
    if (stEntry.sMethod == "getAPIVersion" || IsStart(stEntry)) {
        // They ask nobody, or nothing but what the sweep above fails already.
        EXPECT_EQ(stEntry.uiRpcId, 0u);
        return;
    }
    Subject stSubject = SubjectOf(stEntry);
    stSubject.fnFurnish = [](World &stWorld) {
        FurnishHome(stWorld);
        for (auto &[uiRpcId, stReply] : stWorld.stPlatform.mapReplies) {
            stReply.uiStatus = 0x12345678;
        }
        stWorld.stPlatform.mapStatus["VT_OS_GetCPUBusyRateByTime"] = 5;
        stWorld.stPlatform.mapStatus["VT_OS_GetMemUseRate"] = 5;
    };
    stSubject.sGood = TextOf(stEntry.stFailure);
    stSubject.fnAllowed = [&](const FaultPlan &stPlan) -> std::set<std::string> {
        // The fault object needs memory and the virtual machine; no answer is left without them.
        const bool bNoAnswer = stPlan.eOp == Op::kJni || stPlan.eOp == Op::kAlloc;
        return {TextOf(bNoAnswer ? NullAnswer() : stEntry.stFailure)};
    };
    const OpCounts auiCounts = SweepFaults(stSubject);
    const bool bFaultObject = TextOf(stEntry.stFailure) == "\"{ \"Result\": -1 }\"";
    EXPECT_EQ(CountOf(auiCounts, Op::kAlloc) > 0, bFaultObject);
}

TEST_P(EntryFaultTest, AnswersAfterAFailedMutexTwice) {
    const Entry &stEntry = GetParam();
    ResetBridge();
    World stWorld;
    FakeJni stEnv;
    FurnishHome(stWorld);
    for (const char *pcCall : {"VT_OS_MutexInit", "VT_OS_MutexLock", "VT_OS_MutexUnLock"}) {
        for (int i = 0; i < 2; ++i) {
            stWorld.stPlatform.mapStatus = {{pcCall, 9}};
            EXPECT_EQ(stEntry.fnCall(stEnv), stEntry.stGood) << pcCall;
            stEnv.EndCall();
            stWorld.ExpectClean(pcCall);
        }
    }
    ResetBridge();
}

INSTANTIATE_TEST_SUITE_P(Every, EntryFaultTest, ::testing::ValuesIn(BasicEntries()),
                         [](const auto &stInfo) { return stInfo.param.sMethod; });

}  // namespace

}  // namespace wap::test
