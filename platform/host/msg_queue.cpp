#include "msg_queue.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace wap::host {
namespace {

constexpr uint32_t kDefaultCapacity = 1024;
constexpr uint32_t kMaxCapacity = 65536;
constexpr size_t kMaxBytes = 16u << 20;
constexpr size_t kMaxProcedures = 1024;

}  // namespace

void MsgQueue::Open(uint32_t uiWanted) {
    std::lock_guard<std::mutex> stGuard(stMutex);
    uiCapacity = uiWanted == 0 ? kDefaultCapacity : std::min(uiWanted, kMaxCapacity);
    bOpen = true;
}

void MsgQueue::Close() {
    std::lock_guard<std::mutex> stGuard(stMutex);
    bOpen = false;
    stMessages.clear();
    uiBytes = 0;
    stChanged.notify_all();
}

uint32_t MsgQueue::Push(const RpcMsgHead &stHead, uint32_t uiMsgType, const void *pvData,
                        uint32_t uiLen) {
    // The zero byte behind the content makes a text without an end harmless.
    Message pstMsg(static_cast<VtHostMsg *>(calloc(1, sizeof(VtHostMsg) + uiLen + 1)));
    if (pstMsg == nullptr) {
        return VT_HOST_ERR_MEMORY;
    }
    pstMsg->stHead = stHead;
    pstMsg->uiMsgType = uiMsgType;
    pstMsg->uiLen = uiLen;
    if (uiLen > 0) {
        memcpy(pstMsg.get() + 1, pvData, uiLen);
    }
    std::lock_guard<std::mutex> stGuard(stMutex);
    if (!bOpen) {
        return VT_HOST_ERR_STATE;
    }
    if (stMessages.size() >= uiCapacity || uiBytes + uiLen > kMaxBytes) {
        return VT_HOST_ERR_FULL;
    }
    try {
        stMessages.push_back(std::move(pstMsg));
    } catch (const std::bad_alloc &) {
        return VT_HOST_ERR_MEMORY;
    }
    uiBytes += uiLen;
    stChanged.notify_one();
    return 0;
}

uint32_t MsgQueue::SetProcedure(uint32_t uiMid, Procedure pfnProc) {
    std::lock_guard<std::mutex> stGuard(stMutex);
    if (mapProcedures.size() >= kMaxProcedures && !mapProcedures.contains(uiMid)) {
        return VT_HOST_ERR_FULL;
    }
    try {
        mapProcedures[uiMid] = pfnProc;
    } catch (const std::bad_alloc &) {
        return VT_HOST_ERR_MEMORY;
    }
    return 0;
}

uint32_t MsgQueue::Dispatch() {
    Message pstMsg;
    Procedure pfnProc = nullptr;
    {
        std::unique_lock<std::mutex> stGuard(stMutex);
        stChanged.wait(stGuard, [this] { return !bOpen || !stMessages.empty(); });
        if (!bOpen) {
            return VT_HOST_ERR_STATE;
        }
        pstMsg = std::move(stMessages.front());
        stMessages.pop_front();
        uiBytes -= pstMsg->uiLen;
        auto itProc = mapProcedures.find(pstMsg->stHead.uiDstMid);
        if (itProc != mapProcedures.end()) {
            pfnProc = itProc->second;
        }
    }
    if (pfnProc == nullptr) {
        return VT_HOST_ERR_NO_PROCEDURE;
    }
    pfnProc(pstMsg.get());
    return 0;
}

}  // namespace wap::host
