// The traffic monitoring entries with each of their operations failing in turn.
#include <memory>
#include <set>

#include "faults/fault_sweep.h"
#include "support/entry_table_monitor.h"
#include "unit/monitor/monitor_fixture.h"

namespace wap::test {
namespace {

using Texts = std::set<std::string>;

const std::string kNull = TextOf(NullAnswer());

class MonitorFaultTest : public ::testing::TestWithParam<Entry> {
  protected:
    bool IsNumber() const { return stEntry.stGood.iNumber.has_value(); }

    /// What may come out. That nobody can be told of a change is no reason to fail: the first
    /// message, and what makes it. Nothing is allocated after that.
    Texts Allowed(const FaultPlan &stPlan) const {
        const bool bNoticeAlone = IsNumber() && !stPlan.bForever;
        switch (stPlan.eOp) {
            case Op::kAlloc:
                if (IsNumber()) {
                    return stPlan.uiAt == NoticeAlloc() ? Texts{sGood} : Texts{sFailure};
                }
                // What is parsed is done with at once: that an array of it stays too large is none.
                return stPlan.uiAt <= kParseAlloc ? Texts{sFailure} : Texts{sGood, sFailure};
            case Op::kRpc:
                return bNoticeAlone && stPlan.uiAt == 1 ? Texts{sGood} : Texts{sFailure};
            case Op::kBulk:
                return bNoticeAlone && stPlan.uiAt <= 2 ? Texts{sGood} : Texts{sFailure};
            case Op::kJni:
                return AllowedWithoutJava(stPlan);
            case Op::kPlatform:
                break;
        }
        return {sGood};  // the process's own name is no reason to refuse
    }
    /// An element that does not come, and no exception either, is a null one.
    Texts AllowedWithoutJava(const FaultPlan &stPlan) const {
        if (!IsNumber()) {
            return {kNull};
        }
        const std::set<uint32_t> auiElements =
            IsAdding() ? std::set<uint32_t>{7, 13, 14} : std::set<uint32_t>{7};
        return auiElements.contains(stPlan.uiAt) ? Texts{sGood, sFailure} : Texts{sFailure};
    }
    /// The name, the list, each address that there is; then the notice.
    uint32_t NoticeAlloc() const { return IsAdding() ? 5 : 4; }
    /// The block twice, the answer's room; then the answer is parsed.
    static constexpr uint32_t kParseAlloc = 4;
    bool IsAdding() const { return stEntry.sMethod == "addTrafficMonitoringDestAddress"; }

    const Entry &stEntry = GetParam();
    const std::string sGood = TextOf(stEntry.stGood);
    const std::string sFailure = TextOf(stEntry.stFailure);
};

TEST_P(MonitorFaultTest, AnswersRightWhateverFails) {
    auto pstAnswer = std::make_shared<Answer>();
    Subject stSubject;
    stSubject.sName = stEntry.sMethod;
    stSubject.fnFurnish = FurnishMonitor;
    stSubject.fnCall = [this, pstAnswer](FakeJni &stEnv) { *pstAnswer = stEntry.fnCall(stEnv); };
    stSubject.fnOutcome = [pstAnswer](FakeJni &) { return TextOf(*pstAnswer); };
    stSubject.sGood = sGood;
    stSubject.fnAllowed = [this](const FaultPlan &stPlan) { return Allowed(stPlan); };
    const OpCounts auiCounts = SweepFaults(stSubject);
    EXPECT_EQ(CountOf(auiCounts, Op::kRpc), IsNumber() ? 2u : 1u);
    EXPECT_EQ(CountOf(auiCounts, Op::kBulk), IsNumber() ? 4u : 2u);
    if (IsNumber()) {
        EXPECT_EQ(CountOf(auiCounts, Op::kAlloc), NoticeAlloc());
    } else {
        EXPECT_GT(CountOf(auiCounts, Op::kAlloc), kParseAlloc);
    }
}

INSTANTIATE_TEST_SUITE_P(Every, MonitorFaultTest, ::testing::ValuesIn(MonitorEntries()),
                         [](const auto &stInfo) { return stInfo.param.sMethod; });

}  // namespace
}  // namespace wap::test
