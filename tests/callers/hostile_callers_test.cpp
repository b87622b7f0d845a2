// Every native method with arguments that make no sense, one at a time and all at once: nothing
// breaks or stays, the answer is one of the method's, a refused call changes nothing, and the next
// one works.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <set>
#include <string>
#include <vector>

#include "callers/caller.h"
#include "callers/figures.h"
#include "callers/hostile_values.h"
#include "faults/fault_sweep.h"
#include "support/strict_json.h"

namespace wap::test {

namespace {

std::vector<Native> NativesWithParameters() {
    std::vector<Native> astNatives;
    for (const Native &stNative : NativesInAllStates()) {
        if (!stNative.auiKinds.empty()) {
            astNatives.push_back(stNative);
        }
    }
    return astNatives;
}

/// Other numbers that a method may answer, besides its good answer, its failure and -1.
bool MayAnswer(const Native &stNative, const Arguments &astArguments, int32_t iNumber) {
    static const std::set<std::string> s_asWithTwo = {"startIPPingDiagnostics", "setGatewayName",
                                                      "setLANHostName",         "addWANIf",
                                                      "setPortMappingSwitch",   "usbRead"};
    const std::string &sMethod = stNative.Method();
    if (iNumber == -1 || (iNumber == -2 && s_asWithTwo.contains(sMethod))) {
        return true;
    }
    if (sMethod == "usbRead" || sMethod == "usbWrite") {
        return iNumber >= 0 && iNumber <= std::get<jint>(astArguments[3]);
    }
    // Nothing to add is a success, and there is nothing to read from a handle that is none.
    return iNumber == 0 && (sMethod.starts_with("addLANHostTo") || sMethod == "usbDataAvailable");
}

bool MayAnswer(const Native &stNative, const Arguments &astArguments, const Answer &stAnswer) {
    const Entry &stEntry = stNative.stFurnished.stEntry;
    if (stAnswer == stEntry.stGood || stAnswer == stEntry.stFailure) {
        return true;
    }
    if (stEntry.stGood.iNumber) {
        return stAnswer.iNumber && MayAnswer(stNative, astArguments, *stAnswer.iNumber);
    }
    return stAnswer.sText && JsonFault(*stAnswer.sText).empty();
}

/// Whether the answer says that nothing was done.
bool IsRefusal(const Native &stNative, const Answer &stAnswer) {
    return stAnswer != stNative.stFurnished.stEntry.stGood && stAnswer.iNumber &&
           *stAnswer.iNumber < 0;
}

/// Whether a refusal may come after a change: the DNS servers of IPv6 are set after the rest, and
/// only then is the connection's name needed.
bool MayChangeFirst(const Native &stNative, const RpcRecord &stRpc) {
    return stNative.Method() == "setWANIf" && stRpc.uiRpcId == 0x47209078;
}

void CallWithNonsense(const Native &stNative, const Arguments &astArguments) {
    SCOPED_TRACE(Describe(astArguments));
    Caller stCaller(stNative);
    const Answer stAnswer = stCaller.Call(astArguments);
    EXPECT_TRUE(MayAnswer(stNative, astArguments, stAnswer)) << stAnswer;
    // Everything that was asked was answered well, so a failure is the method's own.
    if (IsRefusal(stNative, stAnswer)) {
        AddToFigure("callers.refused");
        for (const RpcRecord &stRpc : stCaller.Gateway().astRpcs) {
            EXPECT_TRUE(!IsChange(stRpc) || MayChangeFirst(stNative, stRpc))
                << "refused, but sent " << std::hex << stRpc.uiRpcId;
        }
        EXPECT_TRUE(stCaller.Gateway().astMessages.empty());
    }
    stCaller.ExpectWorks();
}

class HostileCallerTest : public ::testing::TestWithParam<Native> {};

TEST_P(HostileCallerTest, OneArgument) {
    const Native &stNative = GetParam();
    for (size_t i = 0; i < stNative.astGood.size(); ++i) {
        for (const Argument &stValue : HostileValues(stNative, i)) {
            Arguments astArguments = stNative.astGood;
            astArguments[i] = stValue;
            CallWithNonsense(stNative, astArguments);
        }
    }
}

// The same place in each list of values, and then any.
TEST_P(HostileCallerTest, AllArguments) {
    const Native &stNative = GetParam();
    std::vector<std::vector<Argument>> aastValues;
    size_t uiMost = 0;
    for (size_t i = 0; i < stNative.astGood.size(); ++i) {
        aastValues.push_back(HostileValues(stNative, i));
        uiMost = std::max(uiMost, aastValues.back().size());
    }
    Dice stDice(20261122);
    const size_t uiRandom = stNative.astGood.size() == 1 ? 0 : 40;
    for (size_t uiRound = 0; uiRound < uiMost + uiRandom; ++uiRound) {
        Arguments astArguments;
        for (const std::vector<Argument> &astValues : aastValues) {
            const size_t uiAt =
                uiRound < uiMost ? uiRound : stDice.Roll(static_cast<uint32_t>(astValues.size()));
            astArguments.push_back(astValues[uiAt % astValues.size()]);
        }
        if (stNative.astGood.size() > 1) {
            CallWithNonsense(stNative, astArguments);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Every, HostileCallerTest, ::testing::ValuesIn(NativesWithParameters()),
                         [](const auto &stInfo) { return stInfo.param.Name(); });

// Ranges of an array, with every end beyond it.
TEST(HostileCallers, RangesOfBytes) {
    const jint aiEnds[] = {std::numeric_limits<jint>::min(), -1, 0, 1, 9, 10, 11, 0x7FFFFFF5,
                           std::numeric_limits<jint>::max()};
    for (const char *pcMethod : {"usbRead", "usbWrite"}) {
        const Native &stNative = NativeOf(pcMethod);
        for (const jint iOffset : aiEnds) {
            for (const jint iCount : aiEnds) {
                Arguments astArguments = stNative.astGood;
                astArguments[1] = JavaByteArray("0123456789");
                astArguments[2] = iOffset;
                astArguments[3] = iCount;
                SCOPED_TRACE(pcMethod + Describe(astArguments));
                Caller stCaller(stNative);
                const Answer stAnswer = stCaller.Call(astArguments);
                const bool bWithin =
                    iOffset >= 0 && iCount >= 0 && int64_t{iOffset} + int64_t{iCount} <= 10;
                EXPECT_EQ(stAnswer.iNumber >= 0, bWithin) << stAnswer;
            }
        }
    }
}

}  // namespace

}  // namespace wap::test
