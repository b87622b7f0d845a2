#include "callers/caller.h"

#include <gtest/gtest.h>

#include <set>
#include <utility>

#include "callers/figures.h"

namespace wap::test {

namespace {

/// Which arguments are secrets.
const std::set<std::pair<std::string, size_t>> kSecrets = {
    {"addFTPAccount", 1}, {"addSambaAccount", 1}, {"setHTTPUserPassword", 0}};

/// Shorter ones would lie on the stack of the tests themselves, longer ones take long to look for.
constexpr size_t kSecretMin = 16;
constexpr size_t kSecretMax = 1024;

/// The changes that go straight to the processes that keep things, without "osgi_proxy".
const std::set<uint32_t> kDirectChanges = {
    0x471030D3,                          // lights
    0x47103088, 0x47103090, 0x47103096,  // diagnostics
    0x4730105A, 0x4730701D,              // DNS servers, entries of the filter
    0x48304173, 0x48304174,              // monitored addresses
    0x48304191, 0x48304192, 0x48304195, 0x48304196, 0x48304198, 0x48304199,  // rules
    0x4830419B, 0x4830419C, 0x4830419D, 0x483041A2, 0x483041A4,              // flows
};

constexpr uint32_t kCountSambaAccounts = 0x48200114;

/// Whether any other argument has this text in it, too: it is no secret then.
bool IsElsewhere(const Arguments &astArguments, size_t uiSecret, const std::string &sSecret) {
    for (size_t i = 0; i < astArguments.size(); ++i) {
        const auto *psText = std::get_if<JavaString>(&astArguments[i]);
        if (i != uiSecret && psText != nullptr && *psText &&
            ToUtf8(**psText).find(sSecret) != std::string::npos) {
            return true;
        }
    }
    return false;
}

}  // namespace

bool IsChange(const RpcRecord &stRpc) {
    const std::string sReceiver = stRpc.sHead.substr(40, 32);
    const std::string sName = sReceiver.substr(0, sReceiver.find('\0'));
    const bool bForOthers = sName == "osgi_proxy" || sName == "usb_mngt";
    return (bForOthers && stRpc.uiRpcId != kCountSambaAccounts) ||
           kDirectChanges.contains(stRpc.uiRpcId);
}

Caller::Caller(const Native &stCalled) : stNative(stCalled) {
    ResetBridge();
    stEnv.bRecord = false;
    stNative.Furnish(stWorld);
}

void Caller::WatchSecrets(const Arguments &astArguments) {
    for (size_t i = 0; i < astArguments.size(); ++i) {
        if (!kSecrets.contains({stNative.Method(), i})) {
            continue;
        }
        const auto &sText = std::get<JavaString>(astArguments[i]);
        std::string sSecret = ToUtf8(sText.value_or(u"").substr(0, kSecretMax));
        if (sSecret.size() >= kSecretMin && !IsElsewhere(astArguments, i, sSecret)) {
            stWorld.stSecrets.Watch(std::move(sSecret));
        }
    }
}

Answer Caller::Call(const Arguments &astArguments) {
    WatchSecrets(astArguments);
    stWorld.ClearRecords();
    AddToFigure("callers.calls");
    Answer stAnswer = stNative.fnCall(stEnv, astArguments);
    stEnv.EndCall();
    stWorld.ExpectClean();
    return stAnswer;
}

void Caller::ExpectWorks() {
    Gateway().mapReplies.clear();
    stNative.Furnish(stWorld);
    stWorld.ClearRecords();
    EXPECT_EQ(stNative.fnCall(stEnv, stNative.astGood), stNative.stFurnished.stEntry.stGood)
        << "the call after it";
    stEnv.EndCall();
    stWorld.ExpectClean("the call after it");
}

std::vector<RpcRecord> Caller::Requests(uint32_t uiRpcId) const {
    std::vector<RpcRecord> astRequests;
    for (const RpcRecord &stRpc : stWorld.stPlatform.astRpcs) {
        if (stRpc.uiRpcId == uiRpcId) {
            astRequests.push_back(stRpc);
        }
    }
    return astRequests;
}

}  // namespace wap::test
