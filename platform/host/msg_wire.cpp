#include "msg_wire.h"

#include <pthread.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/uio.h>

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

ssize_t SendParts(int iFd, const void *pvFrame, size_t uiFrame, const void *pvData, size_t uiData,
                  int iFlags) {
    TwoParts stParts(pvFrame, uiFrame, pvData, uiData);
    ssize_t iSent = 0;
    do {
        iSent = sendmsg(iFd, &stParts.stMessage, iFlags | MSG_NOSIGNAL);
    } while (iSent < 0 && errno == EINTR);
    return iSent;
}

ssize_t ReceivePartsOnce(int iFd, void *pvFrame, size_t uiFrame, void *pvData, size_t uiData,
                         int iFlags) {
    TwoParts stParts(pvFrame, uiFrame, pvData, uiData);
    const ssize_t iGot = recvmsg(iFd, &stParts.stMessage, iFlags | MSG_CMSG_CLOEXEC);
    if (iGot >= 0 && (stParts.stMessage.msg_flags & MSG_TRUNC) != 0) {
        errno = EMSGSIZE;
        return -1;
    }
    return iGot;
}

ssize_t ReceiveParts(int iFd, void *pvFrame, size_t uiFrame, void *pvData, size_t uiData,
                     int iFlags) {
    ssize_t iGot = 0;
    do {
        iGot = ReceivePartsOnce(iFd, pvFrame, uiFrame, pvData, uiData, iFlags);
    } while (iGot < 0 && errno == EINTR);
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
