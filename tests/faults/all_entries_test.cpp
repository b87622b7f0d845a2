// Every Java entry in every way of calling it, under every single fault. The entries are those that
// the service classes declare, so that none is left out: the build runs the first test here.

#include <gtest/gtest.h>
#include <wap_natives.h>

#include <algorithm>
#include <iostream>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "faults/failing_answers.h"
#include "faults/fault_sweep.h"
#include "faults/leniency.h"
#include "faults/sweep_cases.h"

namespace wap::test {

namespace {

#define WAP_NAME(symbol) #symbol,
const std::set<std::string> kNatives = {WAP_EVERY_NATIVE(WAP_NAME)};
#undef WAP_NAME

TEST(EntryTable, HasARowForEveryNativeMethod) {
    std::set<std::string> asSwept;
    std::set<std::string> asNames;
    for (const SweepCase &stCase : AllCases()) {
        asSwept.insert(stCase.sSymbol);
        EXPECT_TRUE(asNames.insert(stCase.Name()).second) << "twice: " << stCase.Name();
    }
    std::set<std::string> asMissing;
    std::set_difference(kNatives.begin(), kNatives.end(), asSwept.begin(), asSwept.end(),
                        std::inserter(asMissing, asMissing.end()));
    for (const std::string &sSymbol : asMissing) {
        ADD_FAILURE() << "no entry table has a row for " << sSymbol;
    }
    EXPECT_EQ(asSwept.size(), kNatives.size() - asMissing.size()) << "rows of no native method";
    EXPECT_EQ(kNatives.size(), size_t{WAP_NATIVES});
}

TEST(EntryTable, KnowsEveryNameThatHasARule) {
    std::set<std::string> asKnown;
    for (const SweepCase &stCase : AllCases()) {
        asKnown.insert({stCase.Name(), stCase.sMethod});
    }
    const std::vector<std::string> asRuled = RuledNames();
    EXPECT_FALSE(asRuled.empty());
    for (const std::string &sName : asRuled) {
        EXPECT_TRUE(asKnown.contains(sName)) << "neither a case nor a method: " << sName;
    }
}

/// The names of what failed.
std::set<std::string_view> FailedIn(const OpTallies &mapTallies) {
    std::set<std::string_view> asFailed;
    for (const auto &[sName, stTally] : mapTallies) {
        if (stTally.uiFailed != 0) {
            asFailed.insert(sName);
        }
    }
    return asFailed;
}

/// Looks for the requests that the case is about.
void ExpectAsked(const SweepCase &stCase, const Requests &stRequests) {
    for (const uint32_t uiRpcId : stCase.auiAsks) {
        const bool bAsked =
            std::any_of(stRequests.begin(), stRequests.end(),
                        [=](const auto &stRequest) { return stRequest.first == uiRpcId; });
        EXPECT_TRUE(bAsked) << "not asked for: " << std::hex << uiRpcId;
    }
}

class AllEntriesTest : public ::testing::TestWithParam<SweepCase> {};

TEST_P(AllEntriesTest, AnswerAsTheyMayWhateverFails) {
    const SweepCase &stCase = GetParam();
    struct Run {
        CallRecord stCall;
        std::optional<Requests> stGoodRequests;
        JniFailure eFailure = JniFailure::kNullAndException;
    };
    auto pstRun = std::make_shared<Run>();
    Subject stSubject;
    stSubject.sName = stCase.Name();
    stSubject.bByName = true;
    stSubject.fnFurnish = [&](World &stWorld) {
        stWorld.ClearRecords();
        stCase.Furnish(stWorld);
        stWorld.stPlatform.stDescriptors.bWatchOpened = true;
    };
    stSubject.fnCall = [=, &stCase](FakeJni &stEnv) {
        pstRun->eFailure = stEnv.eFailure;
        pstRun->stCall.stAnswer = stCase.fnCall(stEnv);
    };
    stSubject.fnTold = [=](const OpTallies &) {
        pstRun->stCall.asFailed = FailedOperationsOf(World::Get(), pstRun->eFailure);
    };
    stSubject.fnOutcome = [=, &stCase](FakeJni &) {
        Platform &stPlatform = World::Get().stPlatform;
        CallRecord &stCall = pstRun->stCall;
        stPlatform.stDescriptors.HandOver(stCall.stAnswer.iNumber.value_or(-1));
        stCall.stRequests = RequestsOf(stPlatform);
        if (!pstRun->stGoodRequests) {
            pstRun->stGoodRequests = stCall.stRequests;
            ExpectAsked(stCase, stCall.stRequests);
        }
        ExpectListed(stCase, stCall.stAnswer);
        return TextOf(stCall.stAnswer) + Judge(stCase, *pstRun->stGoodRequests, stCall);
    };
    stSubject.sGood = TextOf(stCase.stGood);
    // What is wrong with an outcome stands behind the answer in it.
    stSubject.fnAllowed = [=](const FaultPlan &) -> std::set<std::string> {
        return {TextOf(pstRun->stCall.stAnswer)};
    };
    (void)SweepFaults(stSubject);
    NoteSwept(stCase);
}

INSTANTIATE_TEST_SUITE_P(Every, AllEntriesTest, ::testing::ValuesIn(AllCases()),
                         [](const auto &stInfo) { return stInfo.param.Name(); });

/// What the good calls of all cases do, and the first case that does it.
std::map<std::string_view, std::pair<Op, const SweepCase *>> OperationsOfAllCases() {
    std::map<std::string_view, std::pair<Op, const SweepCase *>> mapFound;
    for (const SweepCase &stCase : AllCases()) {
        ResetBridge();
        World stWorld;
        FakeJni stEnv;
        stCase.Furnish(stWorld);
        stWorld.Plan({});
        (void)stCase.fnCall(stEnv);
        for (const auto &[sName, stTally] : stWorld.Tallies()) {
            mapFound.try_emplace(sName, stTally.eOp, &stCase);
        }
        stEnv.EndCall();
        (void)stWorld.TakeComplaints();
    }
    ResetBridge();
    return mapFound;
}

// Everything that the scripted platform and the Java environment can refuse, so that none of it is
// left out because nobody calls it.
TEST(FaultSweep, ReachesEveryOperationThatCanFail) {
    const std::set<std::string_view> asAll = {
        kPlatformAllocation,
        kMalloc,
        "FindClass",
        "NewStringUTF",
        "GetMethodID",
        "CallObjectMethod",
        "NewObject",
        "GetByteArrayElements",
        "NewByteArray",
        "SetByteArrayRegion",
        "GetObjectArrayElement",
        "EnsureLocalCapacity",
        kRpcCall,
        "VT_MSG_AsyncSendData",
        "VT_VDATA_CreShm",
        "VT_VDATA_UpdateData",
        "VT_VDATA_ReadData",
        "VT_VDATA_FreeShm",
        "VT_OS_Compress",
        "VT_OS_Decompress",
        "VT_OS_ShmGet",
        "VT_OS_ShmAt",
        "VT_OS_ShmDt",
        "VT_OS_ShmCtl",
        "dlopen",
        "dlsym",
        "VT_MSG_Init",
        "VT_MSG_RegisterMID",
        "VT_OS_PthreadCreate",
        "VT_MSG_GetCurProcName",
        "VT_OS_MutexInit",
        "VT_OS_MutexLock",
        "VT_OS_MutexUnLock",
        "VT_OS_GetCPUBusyRateByTime",
        "VT_OS_GetMemUseRate",
        "VT_OS_Open",
        "VT_OS_Read",
        "VT_OS_Write",
        "VT_OS_Close",
        "VT_OS_Select",
        "VT_OS_ExecShellCmdEx",
        "VT_OS_Fopen",
        "VT_OS_Fgets",
        "VT_OS_Fclose",
        "tcgetattr",
        "tcsetattr",
        "tcflush",
        "statfs",
    };
    std::set<std::string_view> asReached;
    for (const auto &[sName, stFound] : OperationsOfAllCases()) {
        asReached.insert(sName);
        SCOPED_TRACE(sName);
        ResetBridge();
        World stWorld;
        FakeJni stEnv;
        stFound.second->Furnish(stWorld);
        stWorld.Plan({stFound.first, 1, false, sName});
        (void)stFound.second->fnCall(stEnv);
        EXPECT_EQ(FailedIn(stWorld.Tallies()), std::set<std::string_view>{sName});
        stEnv.EndCall();
        (void)stWorld.TakeComplaints();
    }
    ResetBridge();
    EXPECT_EQ(asReached, asAll);
}

/// Says at the end what was swept, and looks for what was not seen.
class Figures : public ::testing::Environment {
  public:
    void TearDown() override {
        ExpectAllSeen();
        uint64_t ulAll = 0;
        for (const auto &[sGroup, ulFailed] : FailedOperations()) {
            std::cout << "figure faults.failed." << sGroup << " " << ulFailed << "\n";
            ulAll += ulFailed;
        }
        std::cout << "figure faults.operations_failed " << ulAll << "\n"
                  << "figure faults.entries " << kNatives.size() << "\n"
                  << "figure faults.cases " << AllCases().size() << "\n";
    }
};
[[maybe_unused]] const auto *const kFigures =
    ::testing::AddGlobalTestEnvironment(std::make_unique<Figures>().release());

}  // namespace

}  // namespace wap::test
