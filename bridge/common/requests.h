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

}  // namespace wap

#endif
