// Which RPCs a process serves, and with which function.
#ifndef WAP_GATEWAY_FRAMEWORK_RPC_TABLE_H
#define WAP_GATEWAY_FRAMEWORK_RPC_TABLE_H

#include <stdint.h>
#include <string.h>

#include <algorithm>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <type_traits>

#include "framework/home.h"
#include "vt_ssp_host.h"

namespace wap::gateway {

/// What a handler has at hand. Handlers run on several threads at once.
struct HandlerContext {
    Home &stHome;
    uint64_t uiGatewayStart;  /// see NowSeconds
};

/// Serves an RPC whose request or reply has no fixed length, from bytes to bytes. A reply longer
/// than the caller's room is cut, as records are.
using BytesHandler = uint32_t (*)(HandlerContext &stContext, std::string_view pcRequest,
                                  std::string &acReply);

/// Serves an RPC from its request record; fills the reply record, which is zeroed before. Returns
/// the status for the caller; with another one than 0 no reply goes back.
template <class Request, class Reply>
using Handler = uint32_t (*)(HandlerContext &stContext, const Request &stRequest, Reply &stReply);

/// The RPCs of one process. Filled before the process serves, not changed later.
class RpcTable {
  public:
    /// A request must have the length of its record, or VT_HOST_ERR_ARGUMENT answers it. A reply
    /// longer than the caller's room is cut.
    template <class Request, class Reply>
    void Add(uint32_t uiRpcId, Handler<Request, Reply> pfnHandler) {
        static_assert(std::is_trivially_copyable_v<Request> &&
                      std::is_trivially_copyable_v<Reply> && sizeof(Reply) <= VT_HOST_MAX_PAYLOAD);
        m_stHandlers[uiRpcId] = [pfnHandler](HandlerContext &stContext, const VtHostCall &stCall,
                                             uint32_t &uiReplyLength) -> uint32_t {
            Request stRequest;
            if (stCall.uiReqLen != sizeof(stRequest)) {
                return VT_HOST_ERR_ARGUMENT;
            }
            memcpy(&stRequest, stCall.pvReq, sizeof(stRequest));
            Reply stReply{};
            const uint32_t uiStatus = pfnHandler(stContext, stRequest, stReply);
            if (uiStatus == 0) {
                uiReplyLength = std::min(static_cast<uint32_t>(sizeof(stReply)), stCall.uiRspCap);
                memcpy(stCall.pvRsp, &stReply, uiReplyLength);
            }
            return uiStatus;
        };
    }

    void AddBytes(uint32_t uiRpcId, BytesHandler pfnHandler);

    /// Has an RPC carried out by another process under the same id: its status and reply go back.
    void Forward(uint32_t uiRpcId, const char *pcProcess);

    /// Serves a call with its handler, or answers VT_HOST_ERR_UNKNOWN_RPC.
    uint32_t Serve(HandlerContext &stContext, const VtHostCall &stCall,
                   uint32_t &uiReplyLength) const {
        const auto stFound = m_stHandlers.find(stCall.uiRpcId);
        return stFound == m_stHandlers.end() ? static_cast<uint32_t>(VT_HOST_ERR_UNKNOWN_RPC)
                                             : stFound->second(stContext, stCall, uiReplyLength);
    }

  private:
    using Server = std::function<uint32_t(HandlerContext &, const VtHostCall &, uint32_t &)>;
    std::map<uint32_t, Server> m_stHandlers;
};

}  // namespace wap::gateway

#endif
