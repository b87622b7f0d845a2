#include "framework/rpc_table.h"

#include "framework/bulk.h"
#include "framework/peers.h"

namespace wap::gateway {

void GiveReply(const void *pvReply, size_t ulLength, const VtHostCall &stCall,
               uint32_t &uiReplyLength) {
    uiReplyLength = static_cast<uint32_t>(std::min<size_t>(ulLength, stCall.uiRspCap));
    memcpy(stCall.pvRsp, pvReply, uiReplyLength);
    if (uiReplyLength < ulLength) {
        FreePublished();
    }
}

void RpcTable::AddBytes(uint32_t uiRpcId, BytesHandler pfnHandler) {
    m_stHandlers[uiRpcId] = [pfnHandler](HandlerContext &stContext, const VtHostCall &stCall,
                                         uint32_t &uiReplyLength) -> uint32_t {
        std::string acReply;
        const uint32_t uiStatus = pfnHandler(
            stContext, {static_cast<const char *>(stCall.pvReq), stCall.uiReqLen}, acReply);
        if (uiStatus == 0) {
            GiveReply(acReply.data(), acReply.size(), stCall, uiReplyLength);
        }
        return uiStatus;
    };
}

void RpcTable::Forward(uint32_t uiRpcId, const char *pcProcess) {
    m_stHandlers[uiRpcId] = [uiRpcId, pcProcess](HandlerContext &, const VtHostCall &stCall,
                                                 uint32_t &uiReplyLength) -> uint32_t {
        std::string acReply;
        const uint32_t uiStatus =
            AskPeer(pcProcess, uiRpcId, {static_cast<const char *>(stCall.pvReq), stCall.uiReqLen},
                    stCall.uiRspCap, acReply);
        if (uiStatus == 0) {
            GiveReply(acReply.data(), acReply.size(), stCall, uiReplyLength);
        }
        return uiStatus;
    };
}

}  // namespace wap::gateway
