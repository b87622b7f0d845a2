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
                // Without memory for printing it, a list has another failure.
                return bList ? std::set{sFailure + " ",
                                        TextOf(TextAnswerOf("{ \"Result\": 1 }")) + " "}
                             : std::set{sFailure};
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
    // The block; the list; each row's object and members, with its place; the room and the text.
    EXPECT_EQ(
        RecordsOf("getMirroRuleInfo"),
        (Runs{"f7108001(1001,2)", "ffffffff()", "f7100000() ffffffff()", "f7100000(1) ffffffff()",
              "f7100000() ffffffff(1)", "f7100000(1) ffffffff(1)", "ffffffff(900)", "1(900)"}));
    // A row's three lists come before its object; those of the first look like the whole list.
    EXPECT_EQ(RecordsOf("getHTTPTrafficProcessRuleInfo"),
              (Runs{"f7108001(1001,2)", "ffffffff()", "f7100000() ffffffff()",
                    "f7100000(1) ffffffff()", "ffffffff(1)", "f7100000() ffffffff(1)",
                    "f7100000(1) ffffffff(1)", "ffffffff(f00)", "1(f00)"}));
    // The size of the fixed answer.
    EXPECT_EQ(RecordsOf("getForwardRuleInfo", Reply{0, ""}), Runs{"ffffffff(17)"});
}

// The list has to grow for the 33rd rule. Without memory for that, it goes on without the rule.
TEST(RuleFaults, RuleThatTheListRefusesIsLeftOut) {
    for (const Listing &stListing : Listings()) {
        std::string sTable;
        std::set<std::string> asLess;
        std::vector<std::string> asJson;
        for (uint32_t i = 1; i <= 34; ++i) {
            const std::string sNumber = std::to_string(i);
            if (stListing.uiRpcId == kGetMirrorRules) {
                sTable += MirrorBytes({.sToPort = sNumber});
                asJson.push_back(JsonRow(MirrorFacts{}, sNumber));
            } else if (stListing.uiRpcId == kGetForwardRules) {
                sTable += ForwardBytes({.sToPort = sNumber});
                asJson.push_back(JsonRow(ForwardFacts{}, sNumber));
            } else {
                sTable += HttpRow(i, {});
                asJson.push_back(JsonRow(HttpFacts{}, sNumber));
            }
        }
        Subject stSubject = SubjectOf(EntryOf(RulesEntries(), stListing.sMethod));
        stSubject.fnFurnish = [=](World &stWorld) {
            FurnishRules(stWorld);
            stWorld.stPlatform.mapReplies[stListing.uiRpcId] = {0, sTable};
        };
        for (size_t uiLeftOut = 0; uiLeftOut < asJson.size(); ++uiLeftOut) {
            std::string sLess;
            for (size_t i = 0; i < asJson.size(); ++i) {
                sLess += i == uiLeftOut ? "" : (sLess.empty() ? "" : ", ") + asJson[i];
            }
            asLess.insert(TextOf(TextAnswerOf(JsonList(sLess))) + " ");
        }
        const std::string sFailed = TextOf(TextAnswerOf(kFailedList)) + " ";
        const std::string sUnprinted = TextOf(TextAnswerOf("{ \"Result\": 1 }")) + " ";
        size_t uiShorter = 0;
        const Look fnLook = [&](const Platform &stPlatform, const std::string &sOutcome) {
            if (asLess.contains(sOutcome)) {
                EXPECT_EQ(TimesRecorded(stPlatform, kSharedFile, 0xF7100000), 1u);
            }
        };
        for (const std::string &sOutcome : OutcomesWithoutMemory(stSubject, fnLook)) {
            uiShorter += asLess.count(sOutcome);
            EXPECT_TRUE(asLess.contains(sOutcome) || sOutcome == sFailed || sOutcome == sUnprinted)
                << sOutcome;
        }
        // Only where the list grows.
        EXPECT_EQ(uiShorter, 1u);
    }
}

}  // namespace
}  // namespace wap::test
