// The wrappers around the platform's RPC call.
#include <pthread.h>

#include <atomic>

#include "common/fields.h"
#include "common/jni_common.h"
#include "common/report.h"
#include "common/requests.h"

using namespace wap;

OsgiMidState g_stJNIOsgiMid = {};

namespace {

constexpr uint32_t kFirstProxySender = 281;
constexpr uint32_t kProxySenders = 6;

/// Held while the platform's mutex is made, so that of several first callers one makes it.
pthread_mutex_t g_stMakingLock = PTHREAD_MUTEX_INITIALIZER;

/// Makes the mutex on the first call. False when the platform has none for us now; the next call
/// tries again.
bool MutexIsReady() {
    std::atomic_ref<uint32_t> uiReady(g_stJNIOsgiMid.uiMutexReady);
    if (uiReady.load(std::memory_order_acquire) == 1) {
        return true;
    }
    uint32_t uiResult = 0;
    (void)pthread_mutex_lock(&g_stMakingLock);
    if (uiReady.load(std::memory_order_relaxed) != 1) {
        uiResult = VT_OS_MutexInit(g_stJNIOsgiMid.aucMutex);
        if (uiResult == 0) {
            uiReady.store(1, std::memory_order_release);
        }
    }
    (void)pthread_mutex_unlock(&g_stMakingLock);
    if (uiResult != 0) {
        RecordFault(WAP_SPOT, uiResult);
    }
    return uiResult == 0;
}

/// The sender ids 281 to 286 in turn.
uint32_t NextProxySender() {
    // Atomic as well: without a mutex the ids must still not repeat.
    std::atomic_ref<uint32_t> uiCounter(g_stJNIOsgiMid.uiCounter);
    const bool bLocked = MutexIsReady() && VT_OS_MutexLock(g_stJNIOsgiMid.aucMutex) == 0;
    const uint32_t uiCall = uiCounter.fetch_add(1, std::memory_order_relaxed);
    if (bLocked) {
        (void)VT_OS_MutexUnLock(g_stJNIOsgiMid.aucMutex);
    }
    return kFirstProxySender + uiCall % kProxySenders;
}

/// The request and reply that stand in for null ones.
struct Scratch {
    uint32_t uiRequest = 0;
    uint32_t uiReply = 0;
};

uint32_t CallOrScratch(const DirectRoute &stRoute, uint32_t uiDstMid, const void *pvReq,
                       uint32_t uiReqLen, void *pvRsp, uint32_t uiRspCap) {
    Scratch stScratch;
    if (pvReq == nullptr) {
        pvReq = &stScratch.uiRequest;
        uiReqLen = sizeof(stScratch.uiRequest);
    }
    if (pvRsp == nullptr) {
        pvRsp = &stScratch.uiReply;
        uiRspCap = sizeof(stScratch.uiReply);
    }
    return CallProcess(stRoute, uiDstMid, pvReq, uiReqLen, pvRsp, uiRspCap);
}

}  // namespace

uint32_t wap::CallProcess(const DirectRoute &stRoute, uint32_t uiDstMid, const void *pvReq,
                          uint32_t uiReqLen, void *pvRsp, uint32_t uiRspCap) {
    RpcMsgHead stHead = {};
    PutField(stHead.acSndApp, VT_MSG_GetCurProcName());
    stHead.uiDstMid = uiDstMid;
    // Whole or not at all: a shortened name could be another process's.
    PutWholeField(stHead.acRcvApp, stRoute.pcRcvApp);
    stHead.uiSndMid = stRoute.uiSndMid;
    return VT_MSG_RpcCall(&stHead, stRoute.uiRpcId, uiDstMid, pvReq, uiReqLen, pvRsp, uiRspCap,
                          stRoute.uiTimeoutMs);
}

uint32_t wap::AskText(SourceSpot stSpot, const GeneralRoute &stRoute, const void *pvReq,
                      uint32_t uiReqLen, char *pcBuf, uint32_t uiCap) {
    if (pvReq == nullptr || pcBuf == nullptr || uiCap == 0) {
        return Recorded(stSpot, kErrNullArgument, uiCap);
    }
    // Before the call for a short reply, after it for what a refusal has brought along.
    (void)VT_OS_MemSet_S(pcBuf, uiCap, 0, uiCap);
    const uint32_t uiResult = JNI_MSG_RpcCall(stRoute.pcRcvApp, stRoute.uiSndMid, stRoute.uiRpcId,
                                              pvReq, uiReqLen, pcBuf, uiCap);
    if (uiResult != 0) {
        RecordFault(stSpot, uiResult);
        (void)VT_OS_MemSet_S(pcBuf, uiCap, 0, uiCap);
    }
    return uiResult;
}

uint32_t wap::AskChange(SourceSpot stSpot, const GeneralRoute &stRoute, const void *pvReq,
                        uint32_t uiReqLen) {
    uint32_t uiReply = 0;
    return ZeroOrFailed(stSpot, AskBytes(stRoute, pvReq, uiReqLen, uiReply));
}

uint32_t JNI_MSG_RpcCall(const char *pcRcvApp, uint32_t uiSndMid, uint32_t uiRpcId,
                         const void *pvReq, uint32_t uiReqLen, void *pvRsp, uint32_t uiRspCap) {
    if (pcRcvApp == nullptr) {
        return Recorded(WAP_SPOT, kErrNullArgument, uiRpcId);
    }
    const char *pcProcName = VT_MSG_GetCurProcName();
    WAP_TRACE(kTraceRpc, " === JNI_MSG_RpcCall !! ProcName:%s, RcvApp:%s, RpcId:0x%08x\r\n",
              pcProcName == nullptr ? "" : pcProcName, pcRcvApp, uiRpcId);
    const uint32_t uiResult = CallOrScratch({pcRcvApp, uiSndMid, uiRpcId, kGeneralTimeoutMs}, 0,
                                            pvReq, uiReqLen, pvRsp, uiRspCap);
    return Recorded(WAP_SPOT, uiResult);
}

uint32_t OSGI_JNI_BundleMng_RpcCall(uint32_t uiDstMid, uint32_t uiRpcId, const void *pvReq,
                                    uint32_t uiReqLen, void *pvRsp, uint32_t uiRspCap) {
    return CallOrScratch({"osgi_proxy", NextProxySender(), uiRpcId, kProxyTimeoutMs}, uiDstMid,
                         pvReq, uiReqLen, pvRsp, uiRspCap);
}

uint32_t VT_KAVO_USB_JNI_RpcCall(uint32_t uiRpcId, const void *pvReq, uint32_t uiReqLen,
                                 void *pvRsp, uint32_t uiRspCap) {
    uint32_t uiResult = kErrNullArgument;
    if (pvReq != nullptr) {
        uiResult = CallOrScratch({"usb_mngt", 0, uiRpcId, kProxyTimeoutMs}, 0, pvReq, uiReqLen,
                                 pvRsp, uiRspCap);
    }
    return Recorded(WAP_SPOT, uiResult);
}
