// The MAC filter's Java methods with every operation failing in turn, and replies that no honest
// gateway sends.
#include <algorithm>
#include <cstring>
#include <memory>

#include "faults/fault_sweep.h"
#include "support/entry_table_macfilter.h"
#include "unit/macfilter/filter_gateway.h"

namespace wap::test {
namespace {

struct Case {
    std::string sMethod;
    uint32_t uiMode;
};

void PrintTo(const Case &stCase, std::ostream *pstOut) {
    *pstOut << stCase.sMethod;
}

const Case kCases[] = {{"getMacFilterMode", 0},      {"setMacFilterMode", 0},
                       {"addLANHostToBlackList", 0}, {"deleteLANHostFromBlackList", 0},
                       {"addLANHostToTrustList", 1}, {"deleteLANHostFromTrustList", 1}};

/// The filter before each call: the address that the entries are called with is on it, and others.
void Fill(FilterGateway &stGateway, uint32_t uiMode) {
    stGateway.uiMode = uiMode;
    stGateway.uiStatus = 1;
    stGateway.auiSsids = {1, 5};
    stGateway.astLan = {{1, "AA"}, {2, kFilteredMac}};
    stGateway.astWlan = {
        {11, "SSID-1", "AA"}, {12, "SSID-1", kFilteredMac}, {13, "SSID-5", kFilteredMac}};
    stGateway.uiCount = 0;
    stGateway.asAsked.clear();
    stGateway.asStates.clear();
}

/// What is put back is written as the caller wrote it; the filter does not mind the case.
std::string Outcome(int32_t iResult, std::string sState) {
    std::transform(sState.begin(), sState.end(), sState.begin(),
                   [](char cLetter) { return cLetter == 'a' ? 'A' : cLetter; });
    return std::to_string(iResult) + " " + sState;
}

class MacFltFaultTest : public ::testing::TestWithParam<Case> {};

TEST_P(MacFltFaultTest, LeavesTheTablesInStepWhateverFails) {
    const Case &stCase = GetParam();
    const Entry stEntry = EntryOf(MacFilterEntries(), stCase.sMethod);
    const bool bReads = stCase.sMethod == "getMacFilterMode";
    const bool bSets = stCase.sMethod == "setMacFilterMode";
    const bool bDeletes = stCase.sMethod.rfind("delete", 0) == 0;
    const bool bClears = bDeletes && stCase.uiMode == 0;

    // What happens when nothing fails, and how it looks before each request.
    std::vector<std::string> asStates;
    Asked asAsked;
    std::string sBefore;
    std::string sGood;
    std::string sCleared;
    {
        World stWorld;
        FakeJni stEnv;
        stWorld.stPlatform.setFeatures = {314};
        FilterGateway stGateway(stWorld.stPlatform);
        Fill(stGateway, stCase.uiMode);
        sBefore = stGateway.State();
        const Answer stAnswer = stEntry.fnCall(stEnv);
        sGood = Outcome(stAnswer.iNumber.value_or(99), stGateway.State());
        asStates = stGateway.asStates;
        asAsked = stGateway.asAsked;
        sCleared = Outcome(0, "mode " + std::to_string(stCase.uiMode) + " status 1");
    }
    EXPECT_EQ(sGood.substr(0, 2), bReads ? "1 " : "0 ");
    EXPECT_EQ(sGood == Outcome(bReads ? 1 : 0, sBefore), bReads);

    struct Run {
        std::unique_ptr<FilterGateway> pstGateway;
        Answer stAnswer;
    };
    auto pstRun = std::make_shared<Run>();
    Subject stSubject;
    stSubject.sName = stCase.sMethod;
    stSubject.fnFurnish = [=, &stCase](World &stWorld) {
        stWorld.stPlatform.setFeatures = {314};
        pstRun->pstGateway = std::make_unique<FilterGateway>(stWorld.stPlatform);
        pstRun->pstGateway->bAnySender = true;
        Fill(*pstRun->pstGateway, stCase.uiMode);
    };
    stSubject.fnCall = [=](FakeJni &stEnv) { pstRun->stAnswer = stEntry.fnCall(stEnv); };
    stSubject.fnOutcome = [=](FakeJni &) {
        return Outcome(pstRun->stAnswer.iNumber.value_or(99), pstRun->pstGateway->State());
    };
    stSubject.sGood = sGood;
    stSubject.fnAllowed = [&](const FaultPlan &stPlan) -> std::set<std::string> {
        switch (stPlan.eOp) {
            case Op::kPlatform:
                return {sGood};
            case Op::kJni:
                // An address that does not convert is left out, and the list is one without it. But
                // deleting nothing from the black list clears it, which a lost address must not do;
                // the second call gives the element, and without an exception none is a null one.
                if (!bClears) {
                    return {sGood, Outcome(-1, sBefore), Outcome(0, sBefore)};
                }
                return {Outcome(-1, sBefore), stPlan.uiAt == 2 ? sCleared : Outcome(-1, sBefore)};
            case Op::kRpc: {
                const std::string &sAsked = asAsked.at(stPlan.uiAt - 1);
                if (stPlan.bForever) {
                    // Nothing can be undone either.
                    return {Outcome(-1, asStates.at(stPlan.uiAt - 1))};
                }
                const bool bHarmless =
                    sAsked.rfind("excluded ", 0) == 0 || (bSets && sAsked == "mode");
                return {bHarmless ? sGood : Outcome(-1, sBefore)};
            }
            case Op::kAlloc: {
                // The first is for the converted address.
                if (stPlan.uiAt == 1 && !stPlan.bForever) {
                    return {Outcome(bClears ? -1 : 0, sBefore)};
                }
                if (stPlan.uiAt == 1) {
                    return {Outcome(bDeletes ? -1 : 0, sBefore)};
                }
                if (!stPlan.bForever) {
                    return {Outcome(-1, sBefore)};
                }
                // The undoing needs memory too, to hold what it reads.
                std::set<std::string> asAllowed;
                for (const std::string &sState : asStates) {
                    asAllowed.insert(Outcome(-1, sState));
                }
                return asAllowed;
            }
            case Op::kBulk:
                break;
        }
        return {};
    };
    const OpCounts auiCounts = SweepFaults(stSubject);
    EXPECT_EQ(CountOf(auiCounts, Op::kRpc), asAsked.size());
    EXPECT_EQ(CountOf(auiCounts, Op::kAlloc) > 0, !bReads && !bSets);
}

INSTANTIATE_TEST_SUITE_P(Of, MacFltFaultTest, ::testing::ValuesIn(kCases),
                         [](const auto &stInfo) { return stInfo.param.sMethod; });

class MacFltHostileTest : public BridgeTest {
  protected:
    /// Every method and the list's text, with whatever the platform answers.
    void CallAll() {
        for (const Entry &stEntry : MacFilterEntries()) {
            SCOPED_TRACE(stEntry.sMethod);
            const Answer stAnswer = stEntry.fnCall(stEnv);
            EXPECT_TRUE(stAnswer.iNumber.has_value());
            stEnv.EndCall();
            stWorld.ExpectClean();
        }
        char *pcText = nullptr;
        uint32_t uiMode = 0;
        if (VT_API_getMacFltList(&pcText, &uiMode) == 0 && pcText != nullptr) {
            EXPECT_LT(strlen(pcText), (32u + 256) * 32);
        }
        VT_OS_MemFreeD(pcText, __FILE_NAME__, __LINE__);
        (void)VT_API_clearMacFltList();
        stWorld.ExpectClean();
        stWorld.ClearRecords();
    }
};

TEST_F(MacFltHostileTest, RepliesOfNothingButOnesOrOfNothing) {
    stPlatform.setFeatures = {314};
    for (const char cByte : {'\xFF', '\x01', '\0'}) {
        FurnishMacFilter(stWorld);
        for (auto &[uiRpcId, stReply] : stPlatform.mapReplies) {
            stReply.sBytes.assign(2000, cByte);
        }
        CallAll();
        // The same behind a mode that lets the changes through.
        stPlatform.mapReplies[0x47307000].sBytes = ModeBytes(cByte == '\0' ? 1 : 0, 1);
        CallAll();
    }
}

TEST_F(MacFltHostileTest, RepliesCutAnywhere) {
    stPlatform.setFeatures = {314};
    for (const size_t uiLen : {0u, 1u, 3u, 4u, 5u, 8u, 67u, 68u, 115u, 127u, 131u}) {
        FurnishMacFilter(stWorld);
        for (auto &[uiRpcId, stReply] : stPlatform.mapReplies) {
            if (uiRpcId != 0x47307000) {
                stReply.sBytes.resize(std::min(uiLen, stReply.sBytes.size()));
            }
        }
        CallAll();
    }
}

TEST_F(MacFltHostileTest, RandomReplies) {
    stPlatform.setFeatures = {314};
    Dice stDice(51001);
    for (uint32_t i = 0; i < 60; ++i) {
        SCOPED_TRACE(i);
        stPlatform.fnReply = [&](const RpcRecord &stRpc) -> std::optional<Reply> {
            if (stRpc.uiRpcId == 0x47307000 && stDice.Roll(4) != 0) {
                return Reply{0, ModeBytes(stDice.Roll(2), 1)};
            }
            std::string sBytes(stDice.Roll(stRpc.uiRspCap + 1), '\0');
            for (char &cByte : sBytes) {
                cByte = static_cast<char>(stDice.Roll(256));
            }
            if (sBytes.size() >= 4 && stDice.Roll(2) == 0) {
                // A number of entries that can be true.
                sBytes.replace(0, 4, Word(stDice.Roll(5)));
            }
            return Reply{stDice.Roll(8) == 0 ? kRefused : 0, sBytes};
        };
        CallAll();
    }
}

}  // namespace
}  // namespace wap::test
