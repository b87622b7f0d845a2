// Every Java entry under every single fault and with replies that make no sense. The entries are
// compared with the list of exported names, so that none is left out. What exactly an entry answers
// to which fault is pinned where its feature is tested.

#include <gtest/gtest.h>

#include <fstream>
#include <memory>
#include <set>
#include <string>

#include "faults/fault_sweep.h"
#include "support/entries.h"
#include "support/entry_groups.h"
#include "support/furnish_usb.h"
#include "system/wap_msg_jni.h"

namespace wap::test {

namespace {

/// Whether even a failure takes memory, without which there is no answer at all.
bool ComposesItsFailure(const std::string &sMethod) {
    return sMethod == "getStorageInfo" || sMethod == "getFTPRightInfo" ||
           sMethod == "getSambaRightInfo";
}

/// All answers that an entry may give: the good one, the failing ones, and no text at all when the
/// virtual machine fails, or memory for the text.
std::set<std::string> AnswersOf(const Entry &stEntry, const FaultPlan &stPlan) {
    std::set<std::string> asAnswers = {TextOf(stEntry.stGood), TextOf(stEntry.stFailure)};
    if (stEntry.stGood.sText) {
        if (stPlan.eOp == Op::kJni ||
            (stPlan.eOp == Op::kAlloc && stPlan.bForever && ComposesItsFailure(stEntry.sMethod))) {
            asAnswers.insert(TextOf(NullAnswer()));
        }
        asAnswers.insert(TextOf(TextAnswerOf("{\"Result\":-1}")));
    } else {
        asAnswers.insert(TextOf(NumberAnswerOf(-1)));
    }
    if (stEntry.sMethod.starts_with("addLANHostTo")) {
        // Nothing is left to add when the one element could not be had.
        asAnswers.insert(TextOf(NumberAnswerOf(0)));
    }
    if (stEntry.sMethod.ends_with("RuleInfo")) {
        // The rules about traffic tell apart what can't be printed.
        asAnswers.insert(TextOf(TextAnswerOf("{ \"Result\": 1 }")));
    }
    if (stEntry.sMethod == "getStorageInfo") {
        // A volume that there was no memory for is left out, one that can't be measured has zeros.
        for (const char *pcFirst : {kMeasuredVolume, kUnmeasuredVolume}) {
            for (const std::string &sText : WithSomeLeftOut(
                     "{ \"Result\": 0, \"List\": [ ", {pcFirst, kUnknownVolume}, ", ", " ] }", 1)) {
                asAnswers.insert(TextOf(TextAnswerOf(sText)));
            }
        }
    }
    return asAnswers;
}

class AllEntriesTest : public ::testing::TestWithParam<FurnishedEntry> {};

TEST_P(AllEntriesTest, AnswerAsTheyMayWhateverFails) {
    const Entry &stEntry = GetParam().stEntry;
    auto pstAnswer = std::make_shared<Answer>();
    Subject stSubject;
    stSubject.sName = stEntry.sMethod;
    stSubject.fnFurnish = GetParam().pfnFurnish;
    stSubject.fnCall = [&](FakeJni &stEnv) { *pstAnswer = stEntry.fnCall(stEnv); };
    stSubject.fnOutcome = [&](FakeJni &) { return TextOf(*pstAnswer); };
    stSubject.sGood = TextOf(stEntry.stGood);
    stSubject.fnAllowed = [&](const FaultPlan &stPlan) { return AnswersOf(stEntry, stPlan); };
    const OpCounts auiCounts = SweepFaults(stSubject);
    EXPECT_EQ(CountOf(auiCounts, Op::kRpc) > 0, stEntry.uiRpcId != 0);
}

/// Makes the bytes of every reply, a block's among them, others of the same length.
void Spoil(World &stWorld, const std::function<char(size_t)> &fnByte) {
    for (auto &[uiRpcId, stReply] : stWorld.stPlatform.mapReplies) {
        for (size_t i = 0; i < stReply.sBytes.size(); ++i) {
            stReply.sBytes[i] = fnByte(i);
        }
    }
}

/// Calls with spoiled replies: nothing may break or stay, and the next call works.
void CallSpoiled(const FurnishedEntry &stFurnished, const std::function<char(size_t)> &fnByte,
                 const std::string &sWhat) {
    SCOPED_TRACE(sWhat);
    ResetBridge();
    World stWorld;
    FakeJni stEnv;
    stFurnished.pfnFurnish(stWorld);
    Spoil(stWorld, fnByte);
    (void)stFurnished.stEntry.fnCall(stEnv);
    stEnv.EndCall();
    stWorld.ExpectClean(sWhat);
    stWorld.stPlatform.mapReplies.clear();
    stFurnished.pfnFurnish(stWorld);
    EXPECT_EQ(stFurnished.stEntry.fnCall(stEnv), stFurnished.stEntry.stGood);
    stEnv.EndCall();
    stWorld.ExpectClean("the call after it");
    ResetBridge();
}

TEST_P(AllEntriesTest, TakeRepliesOfAnyBytes) {
    CallSpoiled(
        GetParam(), [](size_t) { return '\xFF'; }, "ones");
    CallSpoiled(
        GetParam(), [](size_t) { return '\0'; }, "zeros");
    CallSpoiled(
        GetParam(), [](size_t) { return 'x'; }, "text without an end");
    // Small words, which are believable counts and ids.
    CallSpoiled(
        GetParam(), [](size_t i) { return i % 4 == 0 ? '\x7F' : '\0'; }, "words of 127");
    Dice stDice(20261121);
    for (int i = 0; i < 40; ++i) {
        CallSpoiled(
            GetParam(), [&](size_t) { return static_cast<char>(stDice.Roll(256)); },
            "random bytes " + std::to_string(i));
    }
}

TEST_P(AllEntriesTest, TakeRepliesCutShort) {
    for (const size_t uiLength : {0u, 1u, 3u, 4u, 5u, 11u, 12u, 31u, 64u, 127u, 131u}) {
        SCOPED_TRACE(uiLength);
        ResetBridge();
        World stWorld;
        FakeJni stEnv;
        GetParam().pfnFurnish(stWorld);
        for (auto &[uiRpcId, stReply] : stWorld.stPlatform.mapReplies) {
            stReply.sBytes.resize(std::min(stReply.sBytes.size(), uiLength));
        }
        (void)GetParam().stEntry.fnCall(stEnv);
        stEnv.EndCall();
        stWorld.ExpectClean("cut short");
        ResetBridge();
    }
}

INSTANTIATE_TEST_SUITE_P(Every, AllEntriesTest, ::testing::ValuesIn(AllEntries()),
                         [](const auto &stInfo) { return stInfo.param.stEntry.sMethod; });

TEST(EntryTable, HoldsEveryExportedEntry) {
    std::ifstream stFile(WAP_EXPORTS_FILE);
    ASSERT_TRUE(stFile) << WAP_EXPORTS_FILE;
    std::set<std::string> asExported;
    for (std::string sLine; std::getline(stFile, sLine);) {
        if (sLine.rfind("Java_", 0) == 0) {
            asExported.insert(sLine.substr(0, sLine.find(' ')));
        }
    }
    std::set<std::string> asTested;
    for (const FurnishedEntry &stFurnished : AllEntries()) {
        EXPECT_TRUE(asTested.insert(stFurnished.stEntry.sSymbol).second);
    }
    EXPECT_EQ(asTested, asExported);
    EXPECT_EQ(asTested.size(), 126u);
}

}  // namespace

}  // namespace wap::test
