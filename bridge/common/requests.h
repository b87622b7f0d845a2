// Typed requests: the record types give the lengths, a route gives everything else.
#ifndef WAP_COMMON_REQUESTS_H
#define WAP_COMMON_REQUESTS_H

#include <stdint.h>

#include "common/jni_common.h"

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

}  // namespace wap

#endif
