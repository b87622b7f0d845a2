// Which RPCs a process serves, and with which function.
#ifndef WAP_GATEWAY_FRAMEWORK_RPC_TABLE_H
#define WAP_GATEWAY_FRAMEWORK_RPC_TABLE_H

#include <stdint.h>
#include <string.h>

#include <algorithm>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>

#include "framework/home.h"
#include "vt_ssp_host.h"

namespace wap::gateway {

/// What a process has beside its home: who uses what at present, threads of its own. It is made
/// when the home is loaded, before the first request, and destroyed after the last one.
class ProcessState {
  public:
    virtual ~ProcessState() = default;

    /// Serves a control request that only this process knows; null for one that it doesn't know.
    /// Throws GatewayError with a text for the user.
    virtual JsonValue Control(uint32_t uiRpcId, json_object *pstRequest) = 0;
};

/// Makes a process's state. May throw GatewayError, and then the process does not start.
using StateMaker = std::unique_ptr<ProcessState> (*)(Home &stHome, const RuntimeDir &stDir);

/// What a handler has at hand. Handlers run on several threads at once.
struct HandlerContext {
    Home &stHome;
    uint64_t uiGatewayStart;           /// see NowSeconds
    ProcessState *pstState = nullptr;  /// what the process's StateMaker made; null without one
    int32_t iCaller = 0;               /// the calling process, see VtHostCall
};

/// Serves an RPC whose request or reply has no fixed length, from bytes to bytes. A reply longer
/// than the caller's room is cut, as records are.
using BytesHandler = uint32_t (*)(HandlerContext &stContext, std::string_view pcRequest,
                                  std::string &acReply);

/// Takes a message. What it throws is written to the process's log.
using MessageHandler = void (*)(HandlerContext &stContext, std::string_view pcBytes);

/// Serves an RPC from its request record; fills the reply record, which is zeroed before. Returns
/// the status for the caller; with another one than 0 no reply goes back.
template <class Request, class Reply>
using Handler = uint32_t (*)(HandlerContext &stContext, const Request &stRequest, Reply &stReply);

/// Hands a reply over, cut to the caller's room. The blocks that were published for one that is cut
/// are freed: the caller may not learn of them.
void GiveReply(const void *pvReply, size_t ulLength, const VtHostCall &stCall,
               uint32_t &uiReplyLength);

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
                GiveReply(&stReply, sizeof(stReply), stCall, uiReplyLength);
            }
            return uiStatus;
        };
    }

    void AddBytes(uint32_t uiRpcId, BytesHandler pfnHandler);

    /// Takes the messages of a type, which nobody answers. One at a time.
    void AddMessage(uint32_t uiMsgType, MessageHandler pfnHandler) {
        m_stMessages[uiMsgType] = pfnHandler;
    }
    bool TakesMessages() const { return !m_stMessages.empty(); }
    /// Hands a message to its handler; one of a type without a handler is dropped.
    void Receive(HandlerContext &stContext, uint32_t uiMsgType, std::string_view pcBytes) const {
        const auto stFound = m_stMessages.find(uiMsgType);
        if (stFound != m_stMessages.end()) {
            stFound->second(stContext, pcBytes);
        }
    }

    /// Has an RPC carried out by another process under the same id: its status and reply go back.
    void Forward(uint32_t uiRpcId, const char *pcProcess);

    /// Gives the process a state of its own.
    void SetState(StateMaker pfnMaker) { m_pfnMaker = pfnMaker; }
    std::unique_ptr<ProcessState> MakeState(Home &stHome, const RuntimeDir &stDir) const {
        return m_pfnMaker == nullptr ? nullptr : m_pfnMaker(stHome, stDir);
    }

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
    std::map<uint32_t, MessageHandler> m_stMessages;
    StateMaker m_pfnMaker = nullptr;
};

}  // namespace wap::gateway

#endif
