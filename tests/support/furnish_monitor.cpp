#include "support/furnish_monitor.h"

#include <optional>
#include <utility>

#include "support/wire_bytes.h"

namespace wap::test {

void AnswerRegistry(World &stWorld, uint32_t uiBundles, uint32_t uiAddresses, std::string sBlock) {
    stWorld.stPlatform.mapReplies[kAskMonitored] = {0, std::move(sBlock), true,
                                                    Word(uiBundles) + Word(uiAddresses)};
}

void FurnishMonitor(World &stWorld) {
    Platform &stPlatform = stWorld.stPlatform;
    stPlatform.mapReplies[kAddMonitored] = {0, Word(0)};
    stPlatform.mapReplies[kDelMonitored] = {0, Word(0)};
    AnswerRegistry(stWorld, 2, 3, kRegistryText + std::string(1, '\0'));
    stPlatform.fnReply = [&stPlatform](const RpcRecord &stRpc) -> std::optional<Reply> {
        if (stRpc.uiRpcId != kAskMonitored && stPlatform.mapReplies[stRpc.uiRpcId].uiStatus == 0) {
            (void)stPlatform.TakeBulk(stRpc.sRequest);
        }
        return std::nullopt;
    };
    stPlatform.fnMessage = [&stPlatform](const MessageRecord &stMessage) {
        (void)stPlatform.TakeBulk(stMessage.sData);
    };
}

}  // namespace wap::test
