// Every LAN entry with each of its operations failing in turn.
#include <memory>
#include <set>

#include "faults/fault_sweep.h"
#include "unit/lan/lan_test.h"

namespace wap::test {
namespace {

using AllowedTexts = std::set<std::string>;

const std::string kNull = TextOf(NullAnswer());
const std::string kFaultText = TextOf(TextAnswerOf(kFault));

class LanFaultTest : public ::testing::TestWithParam<Entry> {
  protected:
    Subject MakeSubject() const {
        auto pstAnswer = std::make_shared<Answer>();
        Subject stSubject;
        stSubject.sName = stEntry.sMethod;
        stSubject.fnFurnish = FurnishLan;
        stSubject.fnCall = [this, pstAnswer](FakeJni &stEnv) {
            *pstAnswer = stEntry.fnCall(stEnv);
        };
        stSubject.fnOutcome = [pstAnswer](FakeJni &) { return TextOf(*pstAnswer); };
        return stSubject;
    }

    bool IsNumber() const { return stEntry.stGood.iNumber.has_value(); }
    bool LeavesBadMacsOut() const { return stEntry.sMethod == "getLANHostInfoByMAC"; }

    /// Allocations: the arguments, the request, what the reply brings. Without any of them there is
    /// the failure's answer, with one exception.
    AllowedTexts AllowedWithoutMemory(const FaultPlan &stPlan) const {
        if (LeavesBadMacsOut()) {
            // The hosts of the other address, then an answer without hosts, then not even that.
            if (stPlan.bForever) {
                return {kFaultText};
            }
            return {stPlan.uiAt <= 2 ? sGood : sFailure};
        }
        return {sFailure};
    }

    /// Calls of the virtual machine: the arguments first, the answer last.
    AllowedTexts AllowedWithoutJava(const FaultPlan &stPlan) const {
        if (IsNumber()) {
            return {sFailure};
        }
        if (stPlan.bForever) {
            return {kNull};
        }
        if (LeavesBadMacsOut()) {
            // Without room for its references the array is refused.
            return stPlan.uiAt == 1 ? AllowedTexts{kFaultText} : AllowedTexts{sGood, kNull};
        }
        return {kFaultText, kNull};
    }

    const Entry &stEntry = GetParam();
    const std::string sGood = TextOf(stEntry.stGood);
    const std::string sFailure = TextOf(stEntry.stFailure);
};

TEST_P(LanFaultTest, AnswersRightWhateverFails) {
    Subject stSubject = MakeSubject();
    stSubject.sGood = sGood;
    stSubject.fnAllowed = [this](const FaultPlan &stPlan) -> AllowedTexts {
        switch (stPlan.eOp) {
            case Op::kAlloc:
                return AllowedWithoutMemory(stPlan);
            case Op::kJni:
                return AllowedWithoutJava(stPlan);
            case Op::kRpc:
            case Op::kBulk:
                return {sFailure};
            case Op::kPlatform:
                break;
        }
        return {sGood};  // the process's own name is no reason to refuse
    };
    const OpCounts auiCounts = SweepFaults(stSubject);
    EXPECT_EQ(CountOf(auiCounts, Op::kRpc), 1u);
    // The answer's text, at least; or the conversion of one argument.
    EXPECT_GE(CountOf(auiCounts, Op::kJni), 5u);
}

TEST_P(LanFaultTest, FailsRightWhateverElseFails) {
    Subject stSubject = MakeSubject();
    stSubject.fnFurnish = [](World &stWorld) {
        FurnishLan(stWorld);
        for (auto &[uiRpcId, stReply] : stWorld.stPlatform.mapReplies) {
            stReply.uiStatus = 0x12345678;
        }
    };
    stSubject.sGood = sFailure;
    stSubject.fnAllowed = [this](const FaultPlan &stPlan) -> AllowedTexts {
        if (IsNumber()) {
            return {sFailure};
        }
        if (stPlan.eOp == Op::kJni) {
            return {sFailure, kFaultText, kNull};
        }
        if (stPlan.eOp == Op::kAlloc && LeavesBadMacsOut()) {
            return {sFailure, kFaultText};
        }
        return {sFailure};
    };
    const OpCounts auiCounts = SweepFaults(stSubject);
    EXPECT_EQ(CountOf(auiCounts, Op::kRpc), 1u);
    EXPECT_EQ(CountOf(auiCounts, Op::kBulk), 0u);
}

INSTANTIATE_TEST_SUITE_P(Every, LanFaultTest, ::testing::ValuesIn(LanEntries()),
                         [](const auto &stInfo) { return stInfo.param.sMethod; });

TEST(LanEntryTable, HoldsTheTwelveMethods) {
    std::set<std::string> asMethods;
    for (const Entry &stEntry : LanEntries()) {
        asMethods.insert(stEntry.sMethod);
        EXPECT_EQ(stEntry.sSymbol.substr(stEntry.sSymbol.size() - stEntry.sMethod.size()),
                  stEntry.sMethod);
    }
    EXPECT_EQ(asMethods.size(), 12u);
}

}  // namespace
}  // namespace wap::test
