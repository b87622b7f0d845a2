#include "framework/peers.h"

#include <stdio.h>
#include <string.h>

#include "framework/bulk.h"
#include "framework/control.h"
#include "framework/error.h"
#include "framework/home.h"
#include "vt_ssp_host.h"

namespace wap::gateway {

namespace {

/// A little less than the 5 seconds that most callers wait.
constexpr uint32_t kPeerTimeoutMs = 4500;

uint32_t Call(const char *pcProcess, uint32_t uiRpcId, std::string_view pcRequest,
              uint32_t uiTimeoutMs, std::string &acReply) {
    RpcMsgHead stHead = {};
    PutField(stHead.acSndApp, VT_MSG_GetCurProcName());
    PutField(stHead.acRcvApp, pcProcess);
    return VT_MSG_RpcCall(&stHead, uiRpcId, 0, pcRequest.data(),
                          static_cast<uint32_t>(pcRequest.size()), acReply.data(),
                          static_cast<uint32_t>(acReply.size()), uiTimeoutMs);
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
        case VT_HOST_ERR_TOO_LONG:
            return acProcess +
                   " could not be asked: the request or the answer is longer than the " +
                   std::to_string(VT_HOST_MAX_PAYLOAD) + " bytes of a message";
        default:
            char acCode[16];
            snprintf(acCode, sizeof(acCode), "0x%08X", uiStatus);
            return acProcess + " could not be asked: the message service answers " + acCode;
    }
}

uint32_t Word(json_object *pstObject, const char *pcKey) {
    const std::optional<int64_t> iNumber = GetNumber(pstObject, pcKey);
    if (!iNumber || *iNumber < 1 || *iNumber > UINT32_MAX) {
        throw GatewayError("the number \"" + std::string(pcKey) + "\" is missing or impossible");
    }
    return static_cast<uint32_t>(*iNumber);
}

/// The text of the answer that a descriptor stands for.
std::string FetchAnswer(json_object *pstBlock) {
    const VDataDesc stDesc = {Word(pstBlock, "id"), Word(pstBlock, "original"),
                              Word(pstBlock, "stored")};
    return FetchText(stDesc, kControlReplyMax);
}

}  // namespace

uint32_t AskPeer(const char *pcProcess, uint32_t uiRpcId, std::string_view pcRequest,
                 uint32_t uiRoom, std::string &acReply) {
    std::string acRoom(uiRoom, '\0');
    const uint32_t uiStatus = Call(pcProcess, uiRpcId, pcRequest, kPeerTimeoutMs, acRoom);
    if (uiStatus == 0) {
        acReply = std::move(acRoom);
    }
    return uiStatus;
}

JsonValue AskControl(const char *pcProcess, uint32_t uiRpcId, json_object *pstRequest,
                     uint32_t uiTimeoutMs) {
    const std::string acRequest = pstRequest == nullptr ? "{}" : PrintJson(pstRequest, false);
    if (acRequest.size() > VT_HOST_MAX_PAYLOAD) {
        throw GatewayError("that is too long: a request has at most 131072 bytes");
    }
    std::string acReply(VT_HOST_MAX_PAYLOAD, '\0');
    const uint32_t uiStatus = Call(pcProcess, uiRpcId, acRequest, uiTimeoutMs, acReply);
    if (uiStatus != 0) {
        throw GatewayError(Reason(uiStatus, pcProcess));
    }
    const std::string acWhat = "the answer of " + std::string(pcProcess);
    JsonValue stReply = ParseJson(
        std::string_view(acReply.data(), strnlen(acReply.data(), acReply.size())), acWhat);
    if (json_object *pstBlock = FindMember(stReply.get(), "block")) {
        try {
            acReply = FetchAnswer(pstBlock);
        } catch (const GatewayError &stError) {
            throw GatewayError(acWhat + " is lost: " + stError.what());
        }
        stReply = ParseJson(acReply, acWhat);
    }
    if (const auto acError = GetText(stReply.get(), "error")) {
        throw GatewayError(*acError);
    }
    return stReply;
}

JsonValue PeerValue(const std::string &acPath) {
    const ProcessInfo *pstOwner = FindOwner(acPath.substr(0, acPath.find('.')));
    if (pstOwner == nullptr) {
        throw GatewayError("nobody owns a value \"" + acPath + "\"");
    }
    const JsonValue stRequest = MakeObject();
    PutText(stRequest.get(), "path", acPath);
    const JsonValue stAnswer =
        AskControl(pstOwner->pcName, kControlGet, stRequest.get(), kPeerTimeoutMs);
    return Copy(FindMember(stAnswer.get(), "value"));
}

}  // namespace wap::gateway
