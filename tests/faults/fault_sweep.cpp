#include "faults/fault_sweep.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

namespace wap::test {

namespace {

constexpr Op kOps[] = {Op::kAlloc, Op::kJni, Op::kRpc, Op::kBulk, Op::kPlatform};

std::string Describe(const Subject &stSubject, const FaultPlan &stPlan, JniFailure eFailure) {
    return stSubject.sName + ": " + NameOf(stPlan.eOp) + " " + std::string(stPlan.sName) + " " +
           std::to_string(stPlan.uiAt) + (stPlan.bForever ? " and all after it" : "") +
           (eFailure == JniFailure::kNullAlone ? ", without an exception" : "");
}

std::map<std::string, uint64_t> &Failed() {
    static std::map<std::string, uint64_t> s_mapFailed;
    return s_mapFailed;
}

/// Counts what failed; nothing did when it gives 0.
uint32_t Note(const OpTallies &mapTallies) {
    uint32_t uiFailed = 0;
    for (const auto &[sName, stTally] : mapTallies) {
        if (stTally.uiFailed != 0) {
            Failed()[GroupOf(stTally.eOp, sName)] += stTally.uiFailed;
            uiFailed += stTally.uiFailed;
        }
    }
    return uiFailed;
}

/// One call under a plan, and its outcome.
std::string CallOnce(const Subject &stSubject, World &stWorld, FakeJni &stEnv,
                     const FaultPlan &stPlan, OpTallies *pmapTallies) {
    stWorld.Plan({});
    stSubject.fnFurnish(stWorld);
    stWorld.Plan(stPlan);
    stSubject.fnCall(stEnv);
    *pmapTallies = stWorld.Tallies();
    stSubject.fnTold(*pmapTallies);
    stWorld.Plan({});
    std::string sOutcome = stSubject.fnOutcome(stEnv);
    stEnv.EndCall();
    return sOutcome;
}

OpTallies RunWithout(const Subject &stSubject) {
    ResetBridge();
    World stWorld;
    FakeJni stEnv;
    OpTallies mapTallies;
    EXPECT_EQ(CallOnce(stSubject, stWorld, stEnv, {}, &mapTallies), stSubject.sGood)
        << stSubject.sName;
    stWorld.ExpectClean(stSubject.sName);
    return mapTallies;
}

void RunWith(const Subject &stSubject, const FaultPlan &stPlan, JniFailure eFailure) {
    const std::string sWhere = Describe(stSubject, stPlan, eFailure);
    SCOPED_TRACE(sWhere);
    ResetBridge();
    World stWorld;
    FakeJni stEnv;
    stEnv.eFailure = eFailure;
    OpTallies mapTallies;
    const std::string sOutcome = CallOnce(stSubject, stWorld, stEnv, stPlan, &mapTallies);
    EXPECT_NE(Note(mapTallies), 0u) << "the fault did not happen";
    EXPECT_TRUE(stSubject.fnAllowed(stPlan).contains(sOutcome)) << "outcome: " << sOutcome;
    stWorld.ExpectClean();
    EXPECT_EQ(CallOnce(stSubject, stWorld, stEnv, {}, &mapTallies), stSubject.sGood)
        << "the call after the fault";
    stWorld.ExpectClean("the call after the fault");
}

/// Fails the operations of a plan's kind or name in turn.
void RunInTurn(const Subject &stSubject, FaultPlan stPlan, uint32_t uiLast, bool bAlone) {
    for (stPlan.uiAt = 1; stPlan.uiAt <= uiLast; ++stPlan.uiAt) {
        for (const bool bForever : {false, true}) {
            stPlan.bForever = bForever;
            if (!bForever && !bAlone) {
                continue;
            }
            RunWith(stSubject, stPlan, JniFailure::kNullAndException);
            if (stPlan.eOp == Op::kJni) {
                RunWith(stSubject, stPlan, JniFailure::kNullAlone);
            }
        }
    }
}

}  // namespace

const char *NameOf(Op eOp) {
    switch (eOp) {
        case Op::kAlloc:
            return "allocation";
        case Op::kJni:
            return "JNI call";
        case Op::kRpc:
            return "RPC";
        case Op::kBulk:
            return "bulk operation";
        case Op::kPlatform:
            return "platform call";
    }
    return "?";
}

uint32_t CountOf(const OpCounts &auiCounts, Op eOp) {
    return auiCounts[static_cast<size_t>(eOp)];
}

OpCounts SweepFaults(const Subject &stSubject) {
    const OpTallies mapTallies = RunWithout(stSubject);
    OpCounts auiCounts{};
    for (const auto &[sName, stTally] : mapTallies) {
        auiCounts[static_cast<size_t>(stTally.eOp)] += stTally.uiDone;
    }
    for (const Op eOp : kOps) {
        const uint32_t uiCount = CountOf(auiCounts, eOp);
        const uint32_t uiLast =
            eOp == Op::kAlloc ? std::min(uiCount, stSubject.uiMostAllocs) : uiCount;
        RunInTurn(stSubject, {eOp}, uiLast, true);
    }
    for (const auto &[sName, stTally] : mapTallies) {
        // Each of them alone, and a name that is all of its kind, were there already.
        if (stSubject.bByName && stTally.uiDone != CountOf(auiCounts, stTally.eOp)) {
            RunInTurn(stSubject, {stTally.eOp, 0, true, sName}, stTally.uiDone, false);
        }
    }
    ResetBridge();
    return auiCounts;
}

const std::map<std::string, uint64_t> &FailedOperations() {
    return Failed();
}

std::string GroupOf(Op eOp, std::string_view sName) {
    static const std::map<std::string_view, std::string> s_mapGroups = {
        {kPlatformAllocation, "platform_allocation"},
        {kMalloc, "malloc"},
        {kRpcCall, "rpc"},
        {"VT_MSG_AsyncSendData", "message"},
        {"VT_VDATA_CreShm", "bulk.create"},
        {"VT_VDATA_UpdateData", "bulk.update"},
        {"VT_VDATA_ReadData", "bulk.read"},
        {"VT_VDATA_FreeShm", "bulk.free"},
        {"VT_OS_Compress", "bulk.compress"},
        {"VT_OS_Decompress", "bulk.decompress"},
        {"VT_OS_ShmGet", "system_v"},
        {"VT_OS_ShmAt", "system_v"},
        {"VT_OS_ShmDt", "system_v"},
        {"VT_OS_ShmCtl", "system_v"},
        {"VT_OS_Open", "file"},
        {"VT_OS_Read", "file"},
        {"VT_OS_Write", "file"},
        {"VT_OS_Close", "file"},
        {"VT_OS_Select", "file"},
        {"VT_OS_Fopen", "file"},
        {"VT_OS_Fgets", "file"},
        {"VT_OS_Fclose", "file"},
        {"VT_OS_ExecShellCmdEx", "file"},
        {"tcgetattr", "file"},
        {"tcsetattr", "file"},
        {"tcflush", "file"},
        {"statfs", "file"},
    };
    if (const auto it = s_mapGroups.find(sName); it != s_mapGroups.end()) {
        return it->second;
    }
    return eOp == Op::kJni ? "jni" : "platform";
}

std::set<std::string> OutcomesWithoutMemory(const Subject &stSubject, const Look &fnLook) {
    std::set<std::string> asOutcomes;
    bool bHit = true;
    for (uint32_t uiAt = 1; bHit; ++uiAt) {
        ResetBridge();
        World stWorld;
        FakeJni stEnv;
        if (stSubject.fnFurnish) {
            stSubject.fnFurnish(stWorld);
        }
        stWorld.Plan({Op::kAlloc, uiAt, false});
        stSubject.fnCall(stEnv);
        bHit = stWorld.Count(Op::kAlloc) >= uiAt;
        stWorld.Plan({});
        // Taken also from the call in which nothing failed: it releases what the call gave.
        const std::string sOutcome = stSubject.fnOutcome(stEnv);
        if (bHit) {
            asOutcomes.insert(sOutcome);
            fnLook(stWorld.stPlatform, sOutcome);
        }
        stEnv.EndCall();
        stWorld.ExpectClean();
    }
    return asOutcomes;
}

namespace {

std::string TextOf(const FaultRecord &stFault) {
    std::ostringstream stText;
    stText << std::hex << stFault.uiCode << "(";
    size_t uiNumbers = stFault.auiArgs.size();
    while (uiNumbers > 0 && stFault.auiArgs[uiNumbers - 1] == 0) {
        --uiNumbers;
    }
    for (size_t i = 0; i < uiNumbers; ++i) {
        stText << (i == 0 ? "" : ",") << stFault.auiArgs[i];
    }
    stText << ")";
    return stText.str();
}

}  // namespace

std::vector<std::string> RecordsWithoutMemory(const Subject &stSubject, const std::string &sFile) {
    std::vector<std::string> asRuns;
    (void)OutcomesWithoutMemory(stSubject, [&](const Platform &stPlatform, const std::string &) {
        std::string sRun;
        for (const FaultRecord &stFault : stPlatform.astFaults) {
            if (stFault.sFile == sFile) {
                sRun += (sRun.empty() ? "" : " ") + TextOf(stFault);
            }
        }
        if (asRuns.empty() || asRuns.back() != sRun) {
            asRuns.push_back(sRun);
        }
    });
    return asRuns;
}

std::set<std::string> WithSomeLeftOut(const std::string &sHead,
                                      const std::vector<std::string> &asItems,
                                      const std::string &sSeparator, const std::string &sTail,
                                      size_t uiMissing) {
    std::set<std::string> asTexts;
    for (uint32_t uiLeft = 0; uiLeft < 1u << asItems.size(); ++uiLeft) {
        std::string sText = sHead;
        size_t uiOut = 0;
        for (size_t i = 0; i < asItems.size(); ++i) {
            if ((uiLeft >> i & 1u) != 0) {
                ++uiOut;
            } else {
                sText += sText.size() == sHead.size() ? "" : sSeparator;
                sText += asItems[i];
            }
        }
        if (uiOut <= uiMissing) {
            asTexts.insert(std::move(sText += sTail));
        }
    }
    return asTexts;
}

}  // namespace wap::test
