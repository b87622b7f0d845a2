// The Java methods of the accounts and rights, as Java sees them, and under every single fault.
#include <memory>
#include <set>

#include "faults/fault_sweep.h"
#include "unit/rights/rights_fixture.h"

namespace wap::test {
namespace {

class RightsEntryTest : public RightsTest, public ::testing::WithParamInterface<Entry> {
  protected:
    const Entry &stEntry = GetParam();
};

TEST_P(RightsEntryTest, TracesTheCallAndNothingElse) {
    (void)stEntry.fnCall(stEnv);
    ASSERT_EQ(EntryTraces(stPlatform), Calls{"\r\n " + stEntry.sSymbol + " called \r\n"});
    const bool bQuery = stEntry.sMethod.starts_with("get");
    EXPECT_EQ(stPlatform.astTraces[0].sFile, bQuery ? kQueryFile : kConfigFile);
}

TEST_P(RightsEntryTest, AnswersFromAWorkingGateway) {
    EXPECT_EQ(stEntry.fnCall(stEnv), stEntry.stGood);
    EXPECT_TRUE(stPlatform.astFaults.empty());
    EXPECT_EQ(RpcIds(stPlatform).back(), stEntry.uiRpcId);
}

TEST_P(RightsEntryTest, AnswersItsFailureWhenRefusedAndWorksAgain) {
    for (auto &[uiRpcId, stReply] : stPlatform.mapReplies) {
        stReply.uiStatus = kRefused;
    }
    EXPECT_EQ(stEntry.fnCall(stEnv), stEntry.stFailure);
    EXPECT_TRUE(HasFault(stPlatform, kRefused));
    FurnishRights(stWorld);
    EXPECT_EQ(stEntry.fnCall(stEnv), stEntry.stGood);
}

// The exact answer to each fault: nothing may stay, and the next call works.
TEST_P(RightsEntryTest, AnswersRightWhateverFails) {
    auto pstAnswer = std::make_shared<Answer>();
    Subject stSubject;
    stSubject.sName = stEntry.sMethod;
    stSubject.fnFurnish = [](World &stOther) { FurnishRights(stOther); };
    stSubject.fnCall = [&](FakeJni &stJni) { *pstAnswer = stEntry.fnCall(stJni); };
    stSubject.fnOutcome = [&](FakeJni &) { return TextOf(*pstAnswer); };
    stSubject.sGood = TextOf(stEntry.stGood);
    stSubject.fnAllowed = [&](const FaultPlan &stPlan) -> std::set<std::string> {
        const bool bText = stEntry.stGood.sText.has_value();
        switch (stPlan.eOp) {
            case Op::kPlatform:
                // Names and locks are no reason to refuse.
                return {TextOf(stEntry.stGood)};
            case Op::kJni:
                return {TextOf(bText ? NullAnswer() : stEntry.stFailure)};
            case Op::kAlloc:
                // The fault text is made of memory as well.
                return bText && stPlan.bForever ? std::set<std::string>{TextOf(NullAnswer())}
                                                : std::set<std::string>{TextOf(stEntry.stFailure)};
            case Op::kRpc:
            case Op::kBulk:
                break;
        }
        return {TextOf(stEntry.stFailure)};
    };
    const OpCounts auiCounts = SweepFaults(stSubject);
    const bool bSegment =
        stEntry.sMethod == "getFTPRightInfo" || stEntry.sMethod == "getSambaRightInfo";
    const bool bCounts = bSegment || stEntry.sMethod.starts_with("delete");
    EXPECT_EQ(CountOf(auiCounts, Op::kBulk), bSegment ? 4u : 0u);
    EXPECT_EQ(CountOf(auiCounts, Op::kRpc), bCounts ? 2u : 1u);
}

INSTANTIATE_TEST_SUITE_P(Methods, RightsEntryTest, ::testing::ValuesIn(RightsEntries()),
                         [](const auto &stInfo) { return stInfo.param.sMethod; });

}  // namespace
}  // namespace wap::test
