#include "msg_wire.h"

#include <pthread.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/uio.h>

#include <algorithm>
#include <cstring>

namespace wap::host {

uint32_t SocketAddress(const char *pcName, sockaddr_un &stAddress) {
    std::string strPath = RuntimePath(std::string(pcName) + ".sock");
    if (strPath.empty()) {
        return VT_HOST_ERR_STATE;
    }
    stAddress = {};
    stAddress.sun_family = AF_UNIX;
    if (strPath.size() >= sizeof stAddress.sun_path) {
        return VT_HOST_ERR_TOO_LONG;
    }
    memcpy(stAddress.sun_path, strPath.c_str(), strPath.size() + 1);
    return 0;
}

void WidenSendBuffer(int iFd) {
    // The kernel doubles the figure for its own overhead, and refuses packets beyond it.
    int iRoom = static_cast<int>(VT_HOST_MAX_PAYLOAD + 64 * 1024);
    setsockopt(iFd, SOL_SOCKET, SO_SNDBUF, &iRoom, sizeof iRoom);
}

Fd NewSocket() {
    Fd stSocket(socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0));
    if (stSocket.Ok()) {
        WidenSendBuffer(stSocket.Get());
    }
    return stSocket;
}

bool PeerIsUs(int iFd, pid_t *piPid) {
    ucred stPeer{};
    socklen_t uiLen = sizeof stPeer;
    if (getsockopt(iFd, SOL_SOCKET, SO_PEERCRED, &stPeer, &uiLen) != 0 || stPeer.uid != geteuid()) {
        return false;
    }
    if (piPid != nullptr) {
        *piPid = stPeer.pid;
    }
    return true;
}

namespace {

/** A message of two parts, as sendmsg and recvmsg want it. */
struct TwoParts {
    TwoParts(const void *pvFrame, size_t uiFrame, const void *pvData, size_t uiData)
        : astParts{{const_cast<void *>(pvFrame), uiFrame}, {const_cast<void *>(pvData), uiData}} {
        stMessage.msg_iov = astParts;
        stMessage.msg_iovlen = 2;
    }
    TwoParts(const TwoParts &) = delete;
    TwoParts &operator=(const TwoParts &) = delete;

    iovec astParts[2];
    msghdr stMessage{};
};

/**
 * Packets up to here go through a piece of stack: the kernel takes most of a microsecond longer, in
 * a call there and back, for a packet that is told to it in parts.
 */
constexpr size_t kShortPacket = 4096;

/** That piece. Requests and replies may hold passwords, so nothing stays behind. */
class ShortPacket {
  public:
    // cppcheck-suppress uninitMemberVar ; what is used of it is written before
    explicit ShortPacket(size_t uiLen) : uiUsed(uiLen) {}
    ~ShortPacket() { explicit_bzero(aucBytes, uiUsed); }
    ShortPacket(const ShortPacket &) = delete;
    ShortPacket &operator=(const ShortPacket &) = delete;

    uint8_t aucBytes[kShortPacket];
    size_t uiUsed;
};

/** memcpy, which wants a place even for nothing. */
void Copy(void *pvTo, const void *pvFrom, size_t uiLen) {
    if (uiLen > 0) {
        memcpy(pvTo, pvFrom, uiLen);
    }
}

bool IsShort(size_t uiFrame, size_t uiData) {
    return uiFrame <= kShortPacket && uiData <= kShortPacket - uiFrame;
}

/** Receives a packet, which may be longer than the room: MSG_TRUNC has its own length told. */
ssize_t ReceiveOnce(int iFd, void *pvRoom, size_t uiRoom, int iFlags) {
    const ssize_t iGot = recv(iFd, pvRoom, uiRoom, iFlags | MSG_TRUNC);
    if (iGot > 0 && static_cast<size_t>(iGot) > uiRoom) {
        errno = EMSGSIZE;
        return -1;
    }
    return iGot;
}

template <typename Transfer>
ssize_t Uninterrupted(Transfer fnTransfer) {
    ssize_t iDone = 0;
    do {
        iDone = fnTransfer();
    } while (iDone < 0 && errno == EINTR);
    return iDone;
}

}  // namespace

ssize_t SendWhole(int iFd, const void *pvPacket, size_t uiPacket, int iFlags) {
    return Uninterrupted([&] { return send(iFd, pvPacket, uiPacket, iFlags | MSG_NOSIGNAL); });
}

ssize_t ReceiveWhole(int iFd, void *pvRoom, size_t uiRoom) {
    return Uninterrupted([&] { return ReceiveOnce(iFd, pvRoom, uiRoom, 0); });
}

ssize_t SendParts(int iFd, const void *pvFrame, size_t uiFrame, const void *pvData, size_t uiData,
                  int iFlags) {
    if (IsShort(uiFrame, uiData)) {
        ShortPacket stPacket(uiFrame + uiData);
        Copy(stPacket.aucBytes, pvFrame, uiFrame);
        Copy(stPacket.aucBytes + uiFrame, pvData, uiData);
        return SendWhole(iFd, stPacket.aucBytes, stPacket.uiUsed, iFlags);
    }
    TwoParts stParts(pvFrame, uiFrame, pvData, uiData);
    return Uninterrupted([&] { return sendmsg(iFd, &stParts.stMessage, iFlags | MSG_NOSIGNAL); });
}

ssize_t ReceivePartsOnce(int iFd, void *pvFrame, size_t uiFrame, void *pvData, size_t uiData,
                         int iFlags) {
    if (IsShort(uiFrame, uiData)) {
        ShortPacket stPacket(0);
        const ssize_t iGot = ReceiveOnce(iFd, stPacket.aucBytes, uiFrame + uiData, iFlags);
        // A packet that was too long has filled the room.
        stPacket.uiUsed = iGot >= 0 ? static_cast<size_t>(iGot) : uiFrame + uiData;
        if (iGot > 0) {
            const size_t uiOfFrame = std::min(stPacket.uiUsed, uiFrame);
            Copy(pvFrame, stPacket.aucBytes, uiOfFrame);
            Copy(pvData, stPacket.aucBytes + uiOfFrame, stPacket.uiUsed - uiOfFrame);
        }
        return iGot;
    }
    TwoParts stParts(pvFrame, uiFrame, pvData, uiData);
    const ssize_t iGot = recvmsg(iFd, &stParts.stMessage, iFlags | MSG_CMSG_CLOEXEC);
    if (iGot >= 0 && (stParts.stMessage.msg_flags & MSG_TRUNC) != 0) {
        errno = EMSGSIZE;
        return -1;
    }
    return iGot;
}

bool StartServiceThread(pthread_t &stThread, void *(*pfnEntry)(void *), void *pvArg) {
    sigset_t stBlocked;
    sigset_t stBefore;
    sigfillset(&stBlocked);
    for (int iFault : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT, SIGTRAP}) {
        sigdelset(&stBlocked, iFault);
    }
    // A thread per connection: the default stack would use up a 32-bit machine's addresses.
    constexpr size_t kStack = 1 << 20;
    pthread_attr_t stAttr;
    if (pthread_attr_init(&stAttr) != 0) {
        return false;
    }
    pthread_attr_setstacksize(&stAttr, kStack);
    pthread_sigmask(SIG_SETMASK, &stBlocked, &stBefore);
    int iError = pthread_create(&stThread, &stAttr, pfnEntry, pvArg);
    pthread_sigmask(SIG_SETMASK, &stBefore, nullptr);
    pthread_attr_destroy(&stAttr);
    return iError == 0;
}

}  // namespace wap::host
