#include "ctl/client.h"

#include <stdio.h>
#include <string.h>

#include <vector>

#include "framework/control.h"
#include "framework/error.h"
#include "framework/home.h"
#include "vt_ssp_host.h"

namespace wap::gateway {

namespace {

constexpr uint32_t kAnswerTimeoutMs = 5000;

uint32_t Call(const char *pcProcess, uint32_t uiRpcId, json_object *pstRequest,
              uint32_t uiTimeoutMs, std::string &acReply) {
    RpcMsgHead stHead = {};
    PutField(stHead.acSndApp, "gatewayctl");
    PutField(stHead.acRcvApp, pcProcess);
    const std::string acRequest = pstRequest == nullptr ? "{}" : PrintJson(pstRequest, false);
    if (acRequest.size() > VT_HOST_MAX_PAYLOAD) {
        throw GatewayError("that is too long: a request has at most 131072 bytes");
    }
    std::vector<char> stReply(VT_HOST_MAX_PAYLOAD);
    const uint32_t uiStatus = VT_MSG_RpcCall(
        &stHead, uiRpcId, 0, acRequest.data(), static_cast<uint32_t>(acRequest.size()),
        stReply.data(), static_cast<uint32_t>(stReply.size()), uiTimeoutMs);
    acReply.assign(stReply.data(), strnlen(stReply.data(), stReply.size()));
    return uiStatus;
}

std::string Reason(uint32_t uiStatus, const std::string &acProcess) {
    switch (uiStatus) {
        case VT_HOST_ERR_NO_RECEIVER:
            return acProcess + " is not running; start it with: gatewayctl start " + acProcess;
        case VT_HOST_ERR_TIMEOUT:
            return acProcess + " does not answer; gatewayctl kill " + acProcess +
                   " and start it again";
        case VT_HOST_ERR_BROKEN:
            return acProcess + " ended before it answered";
        default:
            char acCode[16];
            snprintf(acCode, sizeof(acCode), "0x%08X", uiStatus);
            return acProcess + " could not be asked: the message service answers " + acCode;
    }
}

}  // namespace

JsonValue Ask(const char *pcProcess, uint32_t uiRpcId, json_object *pstRequest) {
    std::string acReply;
    const uint32_t uiStatus = Call(pcProcess, uiRpcId, pstRequest, kAnswerTimeoutMs, acReply);
    if (uiStatus != 0) {
        throw GatewayError(Reason(uiStatus, pcProcess));
    }
    JsonValue stReply = ParseJson(acReply, "the answer of " + std::string(pcProcess));
    if (const auto acError = GetText(stReply.get(), "error")) {
        throw GatewayError(*acError);
    }
    return stReply;
}

JsonValue TryAsk(const char *pcProcess, uint32_t uiRpcId, uint32_t uiTimeoutMs) {
    std::string acReply;
    return Call(pcProcess, uiRpcId, nullptr, uiTimeoutMs, acReply) == 0
               ? ParseJson(acReply, "the answer of " + std::string(pcProcess))
               : nullptr;
}

}  // namespace wap::gateway
