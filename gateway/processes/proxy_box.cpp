// osgi_proxy's part of the box itself: its reset, and who is told of voice events.

#include "framework/error.h"
#include "framework/spawn.h"
#include "processes/processes.h"
#include "records/device_control.h"
#include "records/voip.h"

namespace wap::gateway {

namespace {

/// As many bundles as can have subscribed.
constexpr size_t kSubscribersMax = 64;

/// Has the whole gateway restarted by the program that started it, after this reply. The home stays
/// as it is; the up-time begins anew, also that of a home which started with some.
uint32_t Reset(HandlerContext &stContext, const WordRequest &, DeviceControlReply &) {
    const std::string acController = FromEnvironment(kControllerVariable);
    if (acController.empty()) {
        throw GatewayError("only a gateway that gatewayctl has started can be reset");
    }
    const RuntimeDir stDir = RuntimeDir::FromEnvironment();
    const std::string acBase =
        std::to_string(HomeReader(stContext.stHome).Number("device.upTimeBase"));
    // Before the restart begins, which ends this process at any time.
    stContext.stHome.Set("device.upTimeBase", "0");
    try {
        (void)SpawnDetached(acController, {"restart", "--timeout", "60"}, stDir.LogFile("reset"));
    } catch (const GatewayError &) {
        stContext.stHome.Set("device.upTimeBase", acBase);
        throw;
    }
    return 0;
}

uint32_t Subscribe(HandlerContext &stContext, const VoiceSubscription &stRequest,
                   VoiceSubscriptionReply &) {
    const std::string acBundle = TextIn(stRequest.acBundleName);
    HomeChange stChange(stContext.stHome);
    json_object *pstBundles = stChange.At("voiceEvents");
    if (acBundle.empty()) {
        return kRefused;
    }
    if (FindExactly(pstBundles, "bundle", acBundle) != nullptr) {
        return 0;
    }
    if (json_object_array_length(pstBundles) >= kSubscribersMax) {
        return kTableFull;
    }
    JsonValue stEntry = MakeObject();
    PutText(stEntry.get(), "bundle", acBundle);
    Append(pstBundles, std::move(stEntry));
    stChange.Commit();
    return 0;
}

uint32_t Unsubscribe(HandlerContext &stContext, const VoiceSubscription &stRequest,
                     VoiceSubscriptionReply &) {
    HomeChange stChange(stContext.stHome);
    json_object *pstBundles = stChange.At("voiceEvents");
    json_object *pstEntry = FindExactly(pstBundles, "bundle", TextIn(stRequest.acBundleName));
    if (pstEntry == nullptr) {
        return kRefused;
    }
    TakeOut(pstBundles, pstEntry);
    stChange.Commit();
    return 0;
}

}  // namespace

void AddProxyBoxRpcs(RpcTable &stTable) {
    stTable.Add(kRpcResetDevice, Reset);
    stTable.Add(kRpcSubscribeVoice, Subscribe);
    stTable.Add(kRpcUnsubscribeVoice, Unsubscribe);
}

}  // namespace wap::gateway
