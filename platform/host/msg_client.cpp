// The calling side of the message service. Each thread keeps one connection per receiver: a
// connection of its own needs no lock, and connecting anew for each call costs four times as much.
#include <poll.h>
#include <pthread.h>
#include <sys/socket.h>
#include <sys/time.h>

#include <algorithm>
#include <atomic>
#include <cstring>
#include <new>

#include "msg_wire.h"

namespace wap::host {
namespace {

/** Counts the processes from the first one to this one: asking for its id would cost a call. */
std::atomic<uint32_t> g_uiForks{0};

/** One thread's connections. Few receivers exist, so a short array is all it takes. */
class Connections {
  public:
    struct Line {
        char acName[VT_MSG_NAME_SIZE] = {};
        Fd stSocket;
        uint32_t uiSerial = 0;
        int64_t iPatience = 0; /**< how long the socket waits for a packet, in milliseconds */
    };

    /** @return this thread's place for the receiver, connected or not; null without memory. */
    static Line *Find(const char *pcName);

  private:
    static constexpr size_t kLines = 16;

    Line astLines[kLines];
    size_t uiNext = 0; /**< the line to give up when all are taken */
    uint32_t uiMadeIn = g_uiForks.load(std::memory_order_relaxed);
};

pthread_key_t g_stKey;
pthread_once_t g_stKeyOnce = PTHREAD_ONCE_INIT;
bool g_bKeyMade = false;

void MakeKey() {
    g_bKeyMade =
        pthread_key_create(&g_stKey,
                           [](void *pvMine) { delete static_cast<Connections *>(pvMine); }) == 0 &&
        pthread_atfork(nullptr, nullptr, [] { g_uiForks.fetch_add(1); }) == 0;
}

Connections::Line *Connections::Find(const char *pcName) {
    pthread_once(&g_stKeyOnce, MakeKey);
    if (!g_bKeyMade) {
        return nullptr;
    }
    Connections *pstMine = static_cast<Connections *>(pthread_getspecific(g_stKey));
    if (pstMine != nullptr && pstMine->uiMadeIn != g_uiForks.load(std::memory_order_relaxed)) {
        // After a fork both processes would read the same replies; the child lets go.
        delete pstMine;
        pstMine = nullptr;
        pthread_setspecific(g_stKey, nullptr);
    }
    if (pstMine == nullptr) {
        pstMine = new (std::nothrow) Connections;
        if (pstMine == nullptr || pthread_setspecific(g_stKey, pstMine) != 0) {
            delete pstMine;
            return nullptr;
        }
    }
    Line *pstFree = nullptr;
    for (Line &stLine : pstMine->astLines) {
        if (strcmp(stLine.acName, pcName) == 0) {
            return &stLine;
        }
        if (pstFree == nullptr && stLine.acName[0] == '\0') {
            pstFree = &stLine;
        }
    }
    if (pstFree == nullptr) {
        pstFree = &pstMine->astLines[pstMine->uiNext++ % kLines];
        pstFree->stSocket.Reset();
    }
    memcpy(pstFree->acName, pcName, strlen(pcName) + 1);
    return pstFree;
}

uint32_t Connect(Connections::Line &stLine, const Deadline &stDeadline) {
    sockaddr_un stAddress{};
    uint32_t uiStatus = SocketAddress(stLine.acName, stAddress);
    if (uiStatus != 0) {
        return uiStatus;
    }
    Fd stSocket = NewSocket();
    if (!stSocket.Ok()) {
        return VT_HOST_ERR_SYSTEM;
    }
    for (;;) {
        // A receiver that does not accept makes connect wait; this bounds it. 0 would be for ever.
        int64_t iMicros = std::max<int64_t>(stDeadline.Left() / 1000, 1);
        timeval stWait{};
        stWait.tv_sec = static_cast<time_t>(iMicros / 1000000);
        stWait.tv_usec = static_cast<decltype(stWait.tv_usec)>(iMicros % 1000000);
        setsockopt(stSocket.Get(), SOL_SOCKET, SO_SNDTIMEO, &stWait, sizeof stWait);
        if (connect(stSocket.Get(), reinterpret_cast<const sockaddr *>(&stAddress),
                    sizeof stAddress) == 0) {
            break;
        }
        switch (errno) {
            case EINTR:
                continue;
            case ENOENT:
            case ENOTDIR:
            case ECONNREFUSED:
                return VT_HOST_ERR_NO_RECEIVER;
            case EAGAIN:
                return VT_HOST_ERR_TIMEOUT;
            default:
                return VT_HOST_ERR_SYSTEM;
        }
    }
    if (!PeerIsUs(stSocket.Get())) {
        return VT_HOST_ERR_NO_RECEIVER;
    }
    stLine.stSocket = std::move(stSocket);
    stLine.iPatience = 0;
    return 0;
}

/** Sends the request. A packet goes out whole or not at all: failing means not executed. */
uint32_t Send(Connections::Line &stLine, const RequestFrame &stFrame, const void *pvReq,
              const Deadline &stDeadline) {
    for (;;) {
        ssize_t iSent = SendParts(stLine.stSocket.Get(), &stFrame, sizeof stFrame, pvReq,
                                  stFrame.uiLen, MSG_DONTWAIT);
        if (iSent >= 0) {
            return 0;
        }
        if (errno == EPIPE || errno == ECONNRESET || errno == ENOTCONN || errno == ECONNREFUSED) {
            return VT_HOST_ERR_BROKEN;
        }
        if (errno != EAGAIN && errno != ENOBUFS) {
            return errno == EMSGSIZE ? VT_HOST_ERR_TOO_LONG : VT_HOST_ERR_SYSTEM;
        }
        if (!stDeadline.WaitFor(stLine.stSocket.Get(), POLLOUT)) {
            return VT_HOST_ERR_TIMEOUT;
        }
    }
}

/**
 * Has the socket wait in receiving for the most of a time-out, which saves a call before it. Not
 * for all of it: the kernel may wait for an eighth longer than it was told.
 * @return the flag of a receiving that does not wait, when that makes no sense any more
 */
int LetWait(Connections::Line &stLine, uint32_t uiTimeoutMs, const Deadline &stDeadline) {
    const int64_t iPatience = int64_t{uiTimeoutMs} * 3 / 4;
    if (iPatience == 0 || stDeadline.Left() / 1000000 < int64_t{uiTimeoutMs} * 7 / 8) {
        return MSG_DONTWAIT;
    }
    if (iPatience != stLine.iPatience) {
        timeval stWait{};
        stWait.tv_sec = static_cast<time_t>(iPatience / 1000);
        stWait.tv_usec = static_cast<decltype(stWait.tv_usec)>(iPatience % 1000 * 1000);
        setsockopt(stLine.stSocket.Get(), SOL_SOCKET, SO_RCVTIMEO, &stWait, sizeof stWait);
        stLine.iPatience = iPatience;
    }
    return 0;
}

uint32_t Receive(Connections::Line &stLine, const RequestFrame &stFrame, void *pvRsp,
                 uint32_t uiTimeoutMs, const Deadline &stDeadline, ReplyFrame &stReply) {
    int iFlags = LetWait(stLine, uiTimeoutMs, stDeadline);
    for (;;) {
        ssize_t iGot = ReceivePartsOnce(stLine.stSocket.Get(), &stReply, sizeof stReply, pvRsp,
                                        stFrame.uiRspCap, iFlags);
        if (iGot < 0 && (errno == EINTR || errno == EAGAIN)) {
            iFlags = MSG_DONTWAIT;
            if (!stDeadline.WaitFor(stLine.stSocket.Get(), POLLIN)) {
                return VT_HOST_ERR_TIMEOUT;
            }
            continue;
        }
        bool bWhole = iGot >= static_cast<ssize_t>(sizeof stReply) &&
                      stReply.uiMagic == kReplyMagic && stReply.uiSerial == stFrame.uiSerial &&
                      stReply.uiLen == static_cast<size_t>(iGot) - sizeof stReply;
        return bWhole ? 0u : VT_HOST_ERR_BROKEN;
    }
}

/** Sends a request and waits for its reply. */
uint32_t Exchange(const char *pcReceiver, RequestFrame &stFrame, const void *pvReq, void *pvRsp,
                  uint32_t uiTimeoutMs) {
    Deadline stDeadline(uiTimeoutMs);
    Connections::Line *pstLine = Connections::Find(pcReceiver);
    if (pstLine == nullptr) {
        return VT_HOST_ERR_MEMORY;
    }
    stFrame.uiMagic = kRequestMagic;
    stFrame.uiSerial = ++pstLine->uiSerial;
    // The receiver may have been started anew since the last call. That shows in the sending, so
    // connecting once more cannot execute the request twice. A fresh connection is not retried.
    bool bWasOpen = pstLine->stSocket.Ok();
    uint32_t uiStatus = bWasOpen ? Send(*pstLine, stFrame, pvReq, stDeadline) : VT_HOST_ERR_BROKEN;
    if (uiStatus == VT_HOST_ERR_BROKEN) {
        pstLine->stSocket.Reset();
        uiStatus = Connect(*pstLine, stDeadline);
        if (uiStatus == 0) {
            uiStatus = Send(*pstLine, stFrame, pvReq, stDeadline);
        }
    }
    ReplyFrame stReply{};
    if (uiStatus == 0) {
        uiStatus = Receive(*pstLine, stFrame, pvRsp, uiTimeoutMs, stDeadline, stReply);
    }
    if (uiStatus != 0) {
        // A reply that comes late after all must not be taken for the next call's.
        pstLine->stSocket.Reset();
        return uiStatus;
    }
    return stReply.uiStatus;
}

}  // namespace
}  // namespace wap::host

using wap::host::Exchange;
using wap::host::IsProcessName;
using wap::host::RequestFrame;

uint32_t VT_MSG_RpcCall(const RpcMsgHead *pstHead, uint32_t uiRpcId, uint32_t uiDstMid,
                        const void *pvReq, uint32_t uiReqLen, void *pvRsp, uint32_t uiRspCap,
                        uint32_t uiTimeoutMs) {
    if (pstHead == nullptr || (pvReq == nullptr && uiReqLen > 0) ||
        (pvRsp == nullptr && uiRspCap > 0)) {
        return VT_HOST_ERR_ARGUMENT;
    }
    if (!IsProcessName(pstHead->acRcvApp)) {
        return VT_HOST_ERR_ARGUMENT;
    }
    if (uiReqLen > VT_HOST_MAX_PAYLOAD) {
        return VT_HOST_ERR_TOO_LONG;
    }
    RequestFrame stFrame{};
    stFrame.uiKind = wap::host::kKindRpc;
    stFrame.uiCode = uiRpcId;
    stFrame.uiDstMid = uiDstMid;
    stFrame.uiLen = uiReqLen;
    stFrame.uiRspCap = std::min(uiRspCap, VT_HOST_MAX_PAYLOAD);
    stFrame.stHead = *pstHead;
    return Exchange(stFrame.stHead.acRcvApp, stFrame, pvReq, pvRsp, uiTimeoutMs);
}

uint32_t VT_MSG_AsyncSendData(const char *pcRcvApp, uint32_t uiMsgType, const void *pvData,
                              uint32_t uiLen) {
    if (!IsProcessName(pcRcvApp) || (pvData == nullptr && uiLen > 0)) {
        return VT_HOST_ERR_ARGUMENT;
    }
    if (uiLen > VT_HOST_MAX_PAYLOAD) {
        return VT_HOST_ERR_TOO_LONG;
    }
    RequestFrame stFrame{};
    stFrame.uiKind = wap::host::kKindAsync;
    stFrame.uiCode = uiMsgType;
    stFrame.uiLen = uiLen;
    const char *pcSelf = VT_MSG_GetCurProcName();
    memcpy(stFrame.stHead.acSndApp, pcSelf, strlen(pcSelf));
    memcpy(stFrame.stHead.acRcvApp, pcRcvApp, strlen(pcRcvApp));
    return Exchange(pcRcvApp, stFrame, pvData, nullptr, VT_HOST_ASYNC_TIMEOUT_MS);
}
