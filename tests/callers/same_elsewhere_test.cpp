// Every text that a caller passes, and every text of a list: what is sent, traced, printed and
// answered differs in that text alone, whatever stands in it. So no text is a format, ends a field
// or a list, or is taken for something else.

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "callers/caller.h"
#include "callers/figures.h"
#include "callers/tricky_texts.h"
#include "support/wire_bytes.h"

namespace wap::test {

namespace {

/// The arguments that are JSON: what stands in them is meant to be understood.
const std::set<std::pair<std::string, size_t>> kJson = {{"setWANIf", 1},
                                                        {"startIPPingDiagnostics", 2}};

/// Everything that others get to see of a call.
std::vector<std::string> SeenOf(const Native &stNative, const Arguments &astArguments) {
    Caller stCaller(stNative);
    Platform &stPlatform = stCaller.Gateway();
    std::vector<std::string> asSeen;
    const auto NoteBlocks = [&] {
        for (const auto &[uiId, sBytes] : stPlatform.mapBlocks) {
            asSeen.push_back("block " + sBytes);
        }
    };
    stPlatform.fnReply = [&, fnReply = stPlatform.fnReply](const RpcRecord &stRpc) {
        asSeen.push_back("request " + stRpc.sHead + Word(stRpc.uiRpcId) + stRpc.sRequest);
        NoteBlocks();
        return fnReply ? fnReply(stRpc) : std::nullopt;
    };
    stPlatform.fnMessage = [&, fnMessage = stPlatform.fnMessage](const MessageRecord &stMessage) {
        asSeen.push_back("message " + stMessage.sReceiver + stMessage.sData);
        NoteBlocks();
        if (fnMessage) {
            fnMessage(stMessage);
        }
    };
    const Answer stAnswer = stCaller.Call(astArguments);
    asSeen.push_back("answer " + TextOf(stAnswer));
    for (const TraceRecord &stTrace : stPlatform.astTraces) {
        asSeen.push_back("trace " + stTrace.sFile + std::to_string(stTrace.uiLine) + stTrace.sText);
    }
    for (const std::string &sText : stPlatform.asConsole) {
        asSeen.push_back("console " + sText);
    }
    for (const std::string &sText : stPlatform.asCalls) {
        asSeen.push_back("call " + sText);
    }
    return asSeen;
}

Arguments With(const Native &stNative, size_t uiParameter, std::string_view sText) {
    Arguments astArguments = stNative.astGood;
    const JavaString sJava = FromUtf8(sText);
    if (auto *pasTexts = std::get_if<JavaStrings>(&astArguments[uiParameter])) {
        (*pasTexts)->front() = sJava;
    } else {
        astArguments[uiParameter] = sJava;
    }
    return astArguments;
}

void ExpectSameElsewhere(const Native &stNative, size_t uiParameter) {
    SCOPED_TRACE(stNative.Name() + " " + std::to_string(uiParameter));
    AddToFigure("callers.text_parameters");
    const auto asHarmless = SeenOf(stNative, With(stNative, uiParameter, kHarmless));
    for (const std::string_view stTricky : kTricky) {
        std::vector<std::string> asWanted;
        asWanted.reserve(asHarmless.size());
        for (const std::string &sText : asHarmless) {
            asWanted.push_back(WithTricky(sText, stTricky));
        }
        EXPECT_EQ(SeenOf(stNative, With(stNative, uiParameter, stTricky)), asWanted) << stTricky;
    }
}

TEST(SameElsewhereTest, WhateverATextSays) {
    for (const Native &stNative : NativesInAllStates()) {
        for (size_t i = 0; i < stNative.astGood.size(); ++i) {
            const Argument &stGood = stNative.astGood[i];
            const bool bText = std::holds_alternative<JavaString>(stGood) ||
                               std::holds_alternative<JavaStrings>(stGood);
            if (bText && !kJson.contains({stNative.Method(), i})) {
                ExpectSameElsewhere(stNative, i);
            }
        }
    }
}

}  // namespace

}  // namespace wap::test
