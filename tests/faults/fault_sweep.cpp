#include "faults/fault_sweep.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

namespace wap::test {

namespace {

constexpr Op kOps[] = {Op::kAlloc, Op::kJni, Op::kRpc, Op::kBulk, Op::kPlatform};

std::string Describe(const Subject &stSubject, const FaultPlan &stPlan, JniFailure eFailure) {
    return stSubject.sName + ": " + NameOf(stPlan.eOp) + " " + std::to_string(stPlan.uiAt) +
           (stPlan.bForever ? " and all after it" : "") +
           (eFailure == JniFailure::kNullAlone ? ", without an exception" : "");
}

/// One call under a plan, and its outcome.
std::string CallOnce(const Subject &stSubject, World &stWorld, FakeJni &stEnv,
                     const FaultPlan &stPlan, OpCounts *pauiCounts) {
    stWorld.Plan({});
    stSubject.fnFurnish(stWorld);
    stWorld.Plan(stPlan);
    stSubject.fnCall(stEnv);
    for (size_t i = 0; i < kOpCount; ++i) {
        (*pauiCounts)[i] = stWorld.Count(static_cast<Op>(i));
    }
    stWorld.Plan({});
    std::string sOutcome = stSubject.fnOutcome(stEnv);
    stEnv.EndCall();
    return sOutcome;
}

OpCounts RunWithout(const Subject &stSubject) {
    ResetBridge();
    World stWorld;
    FakeJni stEnv;
    OpCounts auiCounts{};
    EXPECT_EQ(CallOnce(stSubject, stWorld, stEnv, {}, &auiCounts), stSubject.sGood)
        << stSubject.sName;
    stWorld.ExpectClean(stSubject.sName);
    return auiCounts;
}

void RunWith(const Subject &stSubject, const FaultPlan &stPlan, JniFailure eFailure) {
    const std::string sWhere = Describe(stSubject, stPlan, eFailure);
    SCOPED_TRACE(sWhere);
    ResetBridge();
    World stWorld;
    FakeJni stEnv;
    stEnv.eFailure = eFailure;
    OpCounts auiCounts{};
    const std::string sOutcome = CallOnce(stSubject, stWorld, stEnv, stPlan, &auiCounts);
    EXPECT_GE(CountOf(auiCounts, stPlan.eOp), stPlan.uiAt) << "the fault did not happen";
    EXPECT_TRUE(stSubject.fnAllowed(stPlan).contains(sOutcome)) << "outcome: " << sOutcome;
    stWorld.ExpectClean();
    EXPECT_EQ(CallOnce(stSubject, stWorld, stEnv, {}, &auiCounts), stSubject.sGood)
        << "the call after the fault";
    stWorld.ExpectClean("the call after the fault");
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
    const OpCounts auiCounts = RunWithout(stSubject);
    for (const Op eOp : kOps) {
        const uint32_t uiCount = CountOf(auiCounts, eOp);
        const uint32_t uiLast =
            eOp == Op::kAlloc ? std::min(uiCount, stSubject.uiMostAllocs) : uiCount;
        for (uint32_t uiAt = 1; uiAt <= uiLast; ++uiAt) {
            for (const bool bForever : {false, true}) {
                RunWith(stSubject, {eOp, uiAt, bForever}, JniFailure::kNullAndException);
                if (eOp == Op::kJni) {
                    RunWith(stSubject, {eOp, uiAt, bForever}, JniFailure::kNullAlone);
                }
            }
        }
    }
    ResetBridge();
    return auiCounts;
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
