// Typed requests: the record types give the lengths, a route gives everything else.
#ifndef WAP_COMMON_REQUESTS_H
#define WAP_COMMON_REQUESTS_H

#include <stdint.h>

#include "common/jni_common.h"
#include "common/report.h"

namespace wap {

/// An RPC of "osgi_proxy", with the rotating sender ids.
struct ProxyRoute {
    uint32_t uiRpcId;
};

/// An RPC with everything of its own.
struct DirectRoute {
    const char *pcRcvApp;
    uint32_t uiSndMid;
    uint32_t uiRpcId;
    uint32_t uiTimeoutMs;
};

/// An RPC of the general call: time-out 5000 ms, and failures recorded there.
struct GeneralRoute {
    const char *pcRcvApp;
    uint32_t uiSndMid;
    uint32_t uiRpcId;
};

/// One RPC to module uiDstMid of a process: builds the header and calls. The buffers go to the
/// platform as they are. Records nothing.
uint32_t CallProcess(const DirectRoute &stRoute, uint32_t uiDstMid, const void *pvReq,
                     uint32_t uiReqLen, void *pvRsp, uint32_t uiRspCap);

template <class Request, class Reply>
inline uint32_t Ask(const ProxyRoute &stRoute, const Request &stRequest, Reply &stReply) {
    return OSGI_JNI_BundleMng_RpcCall(0, stRoute.uiRpcId, &stRequest, sizeof(stRequest), &stReply,
                                      sizeof(stReply));
}

template <class Request, class Reply>
inline uint32_t Ask(const DirectRoute &stRoute, const Request &stRequest, Reply &stReply) {
    return CallProcess(stRoute, 0, &stRequest, sizeof(stRequest), &stReply, sizeof(stReply));
}

/// For requests whose length varies.
template <class Reply>
inline uint32_t AskBytes(const GeneralRoute &stRoute, const void *pvReq, uint32_t uiReqLen,
                         Reply &stReply) {
    return JNI_MSG_RpcCall(stRoute.pcRcvApp, stRoute.uiSndMid, stRoute.uiRpcId, pvReq, uiReqLen,
                           &stReply, sizeof(stReply));
}

template <class Request, class Reply>
inline uint32_t Ask(const GeneralRoute &stRoute, const Request &stRequest, Reply &stReply) {
    return AskBytes(stRoute, &stRequest, sizeof(stRequest), stReply);
}

/// Sends a request that has no reply. 0, or the platform's code, recorded by the call.
template <class Request>
inline uint32_t Tell(const GeneralRoute &stRoute, const Request &stRequest) {
    return JNI_MSG_RpcCall(stRoute.pcRcvApp, stRoute.uiSndMid, stRoute.uiRpcId, &stRequest,
                           sizeof(stRequest), nullptr, 0);
}

/**
 * Asks for a text that the process writes itself: its reply is the text, in the caller's buffer as
 * it stands.
 * @param pcBuf receives the text; a reply of uiCap bytes leaves no zero in it, so give the buffer a
 *              zero byte behind. Empty on failure
 * @param uiCap size of pcBuf in bytes
 * @return 0; the platform's code, recorded; 0xF7702001, recorded, for no buffer or no request
 */
uint32_t AskText(SourceSpot stSpot, const GeneralRoute &stRoute, const void *pvReq,
                 uint32_t uiReqLen, char *pcBuf, uint32_t uiCap);

/// Asks for a change whose reply is a word that says nothing. 0; -1 (as unsigned) when the request
/// fails, with the platform's code recorded.
uint32_t AskChange(SourceSpot stSpot, const GeneralRoute &stRoute, const void *pvReq,
                   uint32_t uiReqLen);

}  // namespace wap

#endif
