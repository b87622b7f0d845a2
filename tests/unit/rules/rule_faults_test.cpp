// The entries of the rules with each of their operations failing.
#include <memory>
#include <set>
#include <string>

#include "faults/fault_sweep.h"
#include "unit/rules/rules_fixture.h"

namespace wap::test {
namespace {

/// An entry under a fault. The outcome is its answer and what went out to add a rule, so that a
/// rule of less than what Java gave is seen.
Subject SubjectOf(const Entry &stEntry) {
    auto pstOutcome = std::make_shared<std::string>();
    Subject stSubject;
    stSubject.sName = stEntry.sMethod;
    stSubject.fnFurnish = FurnishRules;
    stSubject.fnCall = [=](FakeJni &stEnv) {
        Platform &stPlatform = World::Get().stPlatform;
        stPlatform.ClearRecords();
        *pstOutcome = TextOf(stEntry.fnCall(stEnv));
        for (const RpcRecord &stRpc : stPlatform.astRpcs) {
            *pstOutcome += " " + (stRpc.uiReqLen > 4 ? stRpc.sRequest : "");
        }
    };
    stSubject.fnOutcome = [=](FakeJni &) { return *pstOutcome; };
    return stSubject;
}

/// What goes out when all is well.
std::string RequestOf(const Entry &stEntry) {
    if (stEntry.sMethod == "addMirrorRule") {
        return " " + MirrorBytes({});
    }
    if (stEntry.sMethod == "addForwardRule") {
        return " " + ForwardBytes({});
    }
    return stEntry.sMethod == "addHTTPTrafficProcessRule" ? " " + HttpBytes({}) : " ";
}

/// An element that the virtual machine gives as null, without an exception, is none.
std::set<std::string> WithAnElementLess(const std::string &sMethod) {
    std::set<std::string> asOutcomes;
    if (sMethod == "addHTTPTrafficProcessRule") {
        for (const HttpFacts &stRule :
             {HttpFacts{.sMethods = "POST"}, HttpFacts{.sMethods = "GET"},
              HttpFacts{.sStatusCodes = ""}, HttpFacts{.sHeaders = "User-Agent"},
              HttpFacts{.sHeaders = "Host"}, HttpFacts{.sHeaders = ""}}) {
            asOutcomes.insert("9 " + HttpBytes(stRule));
        }
    }
    return asOutcomes;
}

class RuleFaultTest : public ::testing::TestWithParam<Entry> {};

TEST_P(RuleFaultTest, AnswersRightWhateverFails) {
    const Entry &stEntry = GetParam();
    const bool bList = stEntry.stGood.sText.has_value();
    const std::string sRequest = RequestOf(stEntry);
    const std::string sFailure = TextOf(stEntry.stFailure);
    Subject stSubject = SubjectOf(stEntry);
    stSubject.sGood = TextOf(stEntry.stGood) + sRequest;
    stSubject.fnAllowed = [&](const FaultPlan &stPlan) -> std::set<std::string> {
        switch (stPlan.eOp) {
            case Op::kJni: {
                std::set<std::string> asOutcomes = WithAnElementLess(stEntry.sMethod);
                asOutcomes.insert(bList ? TextOf(NullAnswer()) + " " : sFailure);
                return asOutcomes;
            }
            case Op::kRpc:
                return {sFailure + sRequest};
            case Op::kPlatform:
                return {stSubject.sGood};
            default:
                return {sFailure + (bList ? " " : "")};
        }
    };
    const OpCounts auiCounts = SweepFaults(stSubject);
    EXPECT_EQ(CountOf(auiCounts, Op::kRpc), 1u);
    EXPECT_EQ(CountOf(auiCounts, Op::kBulk), bList ? 2u : 0u);
    const bool bDeletes = stEntry.sMethod.starts_with("delete");
    EXPECT_EQ(CountOf(auiCounts, Op::kAlloc) > 0, !bDeletes);
    EXPECT_EQ(CountOf(auiCounts, Op::kJni) > 0, !bDeletes);
}

INSTANTIATE_TEST_SUITE_P(Methods, RuleFaultTest, ::testing::ValuesIn(RulesEntries()),
                         [](const auto &stInfo) { return stInfo.param.sMethod; });

// The fixed answer of no rules needs memory too.
TEST(RuleFaults, NoRulesWithoutMemory) {
    for (const Listing &stListing : Listings()) {
        Subject stSubject = SubjectOf(EntryOf(RulesEntries(), stListing.sMethod));
        stSubject.fnFurnish = [=](World &stWorld) {
            FurnishRules(stWorld);
            stWorld.stPlatform.mapReplies[stListing.uiRpcId] = {0, ""};
        };
        stSubject.sGood = TextOf(TextAnswerOf(kNoRules)) + " ";
        const std::set<std::string> asOutcomes = OutcomesWithoutMemory(stSubject);
        EXPECT_EQ(asOutcomes, std::set{TextOf(TextAnswerOf(kFailedList)) + " "});
    }
}

/// Each run's records of the shared source when a listing lacks memory.
std::vector<std::string> RecordsOf(const std::string &sMethod,
                                   const std::optional<Reply> &stReply = {}) {
    const Entry stEntry = EntryOf(RulesEntries(), sMethod);
    Subject stSubject = SubjectOf(stEntry);
    stSubject.fnFurnish = [=](World &stWorld) {
        FurnishRules(stWorld);
        if (stReply) {
            stWorld.stPlatform.mapReplies[stEntry.uiRpcId] = *stReply;
        }
    };
    return RecordsWithoutMemory(stSubject, kSharedFile);
}

TEST(RuleFaults, WhatCanNotBeBuiltIsRecorded) {
    using Runs = std::vector<std::string>;
    // The block; the room for the text.
    EXPECT_EQ(RecordsOf("getMirroRuleInfo"), (Runs{"f7108001(1001,2)", "ffffffff(900)"}));
    EXPECT_EQ(RecordsOf("getHTTPTrafficProcessRuleInfo"),
              (Runs{"f7108001(1001,2)", "ffffffff(f00)"}));
    // The size of the fixed answer.
    EXPECT_EQ(RecordsOf("getForwardRuleInfo", Reply{0, ""}), Runs{"ffffffff(17)"});
}

}  // namespace
}  // namespace wap::test
