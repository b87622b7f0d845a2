#include "ctl/client.h"

#include "framework/error.h"
#include "framework/peers.h"

namespace wap::gateway {

namespace {

constexpr uint32_t kAnswerTimeoutMs = 5000;

}  // namespace

JsonValue Ask(const char *pcProcess, uint32_t uiRpcId, json_object *pstRequest) {
    return AskControl(pcProcess, uiRpcId, pstRequest, kAnswerTimeoutMs);
}

JsonValue TryAsk(const char *pcProcess, uint32_t uiRpcId, uint32_t uiTimeoutMs) {
    try {
        return AskControl(pcProcess, uiRpcId, nullptr, uiTimeoutMs);
    } catch (const GatewayError &) {
        return nullptr;
    }
}

}  // namespace wap::gateway
