// The serving side of the message service: the process's name and socket, a thread that accepts,
// and a thread per connection that blocks in recv (the fastest of the shapes that were tried).
#include <fcntl.h>
#include <pthread.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/time.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstring>
#include <list>
#include <new>
#include <set>
#include <thread>

#include "msg_queue.h"
#include "msg_wire.h"

namespace wap::host {
namespace {

constexpr size_t kMaxConnections = 1024;
constexpr int kBacklog = 128;
/// For who would try at once again, and in vain.
constexpr std::chrono::milliseconds kBreak(10);

constexpr size_t kMaxRequest = sizeof(RequestFrame) + VT_HOST_MAX_PAYLOAD;
constexpr size_t kMaxReply = sizeof(ReplyFrame) + VT_HOST_MAX_PAYLOAD;
// Handlers find their records as well aligned as behind malloc.
static_assert(sizeof(RequestFrame) % alignof(max_align_t) == 0);
static_assert(sizeof(ReplyFrame) % alignof(max_align_t) == 0);

/** Whether the running thread belongs to the service. */
thread_local bool t_bServiceThread = false;

class Service {
  public:
    uint32_t Init(const char *pcWanted, uint32_t uiCapacity);
    uint32_t Serve(VtHostHandler pfnWanted, void *pvWanted);
    uint32_t OnLostReply(VtHostLostReply pfnWanted);
    uint32_t Stop();

    const char *Name() const { return pcName.load(std::memory_order_acquire); }
    MsgQueue &Queue() { return stQueue; }

    /** Fork's three places. In the child, nothing of the parent's service may stay open. */
    void BeforeFork();
    void AfterForkInParent();
    Service *AfterForkInChild();

  private:
    struct Connection {
        Service *pstService;
        Fd stSocket;
        pid_t iCaller;
        pthread_t stThread;
        bool bDone;
    };

    uint32_t TakeName(const char *pcWanted);
    uint32_t Listen(const char *pcWanted);
    void LeaveName();
    void Accept();
    void AddConnection(Fd stSocket, pid_t iCaller);
    void ReapDone();
    void RunConnection(Connection &stConnection);
    bool AnswerOne(int iFd, pid_t iCaller, uint8_t *pucRequest, uint8_t *pucReply);
    uint32_t Handle(const RequestFrame &stFrame, pid_t iCaller, const uint8_t *pucReq,
                    uint8_t *pucRsp, uint32_t &uiRspLen);

    std::mutex stLifeMutex; /**< Init, Serve and Stop, one at a time */
    bool bRunning = false;
    Fd stLock;
    std::string strSocketPath;
    std::set<std::string> setNames; /**< every name ever held: pointers to them are handed out */
    std::atomic<const char *> pcName{""};
    pthread_t stAcceptThread{};

    std::mutex stMutex; /**< the descriptors below; held for moments only, also around fork */
    Fd stListener;
    std::list<Connection> stConnections;

    std::atomic<bool> bStopping{false};
    void *pvContext = nullptr;
    std::atomic<VtHostHandler> pfnHandler{nullptr}; /**< published after pvContext */
    std::atomic<VtHostLostReply> pfnLostReply{nullptr};
    MsgQueue stQueue;
    Service *pstParents = nullptr; /**< after a fork: what the parent's threads may have held */
};

/** The process's service. Never destroyed: threads may use it until the process ends. */
std::atomic<Service *> g_pstService{nullptr};

Service &TheService() {
    static bool bMade = [] {
        g_pstService.store(new Service);
        pthread_atfork([] { g_pstService.load()->BeforeFork(); },
                       [] { g_pstService.load()->AfterForkInParent(); },
                       [] { g_pstService.store(g_pstService.load()->AfterForkInChild()); });
        return true;
    }();
    static_cast<void>(bMade);
    return *g_pstService.load(std::memory_order_acquire);
}

/** Makes or checks the runtime directory. @return 0, or a code after saying what to do */
uint32_t PrepareRuntimeDir(const char *pcName) {
    std::string strDir = RuntimeDir();
    if (strDir.empty()) {
        Complain(
            "%s: VT_RUNTIME_DIR is not set. Set it to a directory of yours for the gateway's "
            "sockets, for example /tmp/gateway-1.",
            pcName);
        return VT_HOST_ERR_STATE;
    }
    sockaddr_un stAddress{};
    if (SocketAddress(pcName, stAddress) != 0) {
        Complain(
            "%s: VT_RUNTIME_DIR is too long for a socket's path: \"%s\" has %zu bytes. "
            "Choose one of 70 bytes or less.",
            pcName, strDir.c_str(), strDir.size());
        return VT_HOST_ERR_TOO_LONG;
    }
    struct stat stInfo {};
    if (!MakeDirectory(strDir) || stat(strDir.c_str(), &stInfo) != 0 || !S_ISDIR(stInfo.st_mode)) {
        Complain("%s: VT_RUNTIME_DIR \"%s\" is no directory and cannot be made: %s", pcName,
                 strDir.c_str(), strerror(errno));
        return VT_HOST_ERR_SYSTEM;
    }
    if (stInfo.st_uid != geteuid()) {
        Complain("%s: VT_RUNTIME_DIR \"%s\" belongs to another user. Choose one of your own.",
                 pcName, strDir.c_str());
        return VT_HOST_ERR_STATE;
    }
    if ((stInfo.st_mode & 077) != 0) {
        Complain(
            "%s: VT_RUNTIME_DIR \"%s\" is open to other users. It must be yours alone: "
            "chmod 700 it.",
            pcName, strDir.c_str());
        return VT_HOST_ERR_STATE;
    }
    return 0;
}

uint32_t Service::TakeName(const char *pcWanted) {
    std::string strLock = RuntimePath(std::string(pcWanted) + ".lock");
    Fd stFile(open(strLock.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
    if (!stFile.Ok()) {
        Complain("%s: cannot open %s: %s", pcWanted, strLock.c_str(), strerror(errno));
        return VT_HOST_ERR_SYSTEM;
    }
    // This kind of lock ends with the process, whatever ends it, and is not inherited by children.
    struct flock stWhole {};
    stWhole.l_type = F_WRLCK;
    stWhole.l_whence = SEEK_SET;
    if (fcntl(stFile.Get(), F_SETLK, &stWhole) != 0) {
        stWhole.l_type = F_WRLCK;
        fcntl(stFile.Get(), F_GETLK, &stWhole);
        Complain("%s: a process of that name runs already in %s (pid %d).", pcWanted,
                 RuntimeDir().c_str(), static_cast<int>(stWhole.l_pid));
        return VT_HOST_ERR_IN_USE;
    }
    stLock = std::move(stFile);
    return 0;
}

uint32_t Service::Listen(const char *pcWanted) {
    sockaddr_un stAddress{};
    uint32_t uiStatus = SocketAddress(pcWanted, stAddress);
    if (uiStatus != 0) {
        return uiStatus;
    }
    // Whoever holds the name's lock is the only one alive: a socket that is there is a dead one's.
    unlink(stAddress.sun_path);
    Fd stSocket = NewSocket();
    if (!stSocket.Ok() ||
        bind(stSocket.Get(), reinterpret_cast<const sockaddr *>(&stAddress), sizeof stAddress) !=
            0 ||
        listen(stSocket.Get(), kBacklog) != 0) {
        Complain("%s: cannot listen on %s: %s", pcWanted, stAddress.sun_path, strerror(errno));
        return VT_HOST_ERR_SYSTEM;
    }
    strSocketPath = stAddress.sun_path;
    std::lock_guard<std::mutex> stGuard(stMutex);
    stListener = std::move(stSocket);
    return 0;
}

void Service::LeaveName() {
    if (!strSocketPath.empty()) {
        unlink(strSocketPath.c_str());
        strSocketPath.clear();
    }
    {
        std::lock_guard<std::mutex> stGuard(stMutex);
        stListener.Reset();
    }
    stLock.Reset();
    pcName.store("", std::memory_order_release);
}

uint32_t Service::Init(const char *pcWanted, uint32_t uiCapacity) {
    std::lock_guard<std::mutex> stLife(stLifeMutex);
    if (bRunning) {
        return strcmp(Name(), pcWanted) == 0 ? 0u : VT_HOST_ERR_STATE;
    }
    uint32_t uiStatus = PrepareRuntimeDir(pcWanted);
    if (uiStatus == 0) {
        uiStatus = TakeName(pcWanted);
    }
    if (uiStatus == 0) {
        uiStatus = Listen(pcWanted);
    }
    if (uiStatus == 0) {
        bStopping.store(false);
        stQueue.Open(uiCapacity);
        pcName.store(setNames.emplace(pcWanted).first->c_str(), std::memory_order_release);
        auto pfnAccept = [](void *pvService) -> void * {
            static_cast<Service *>(pvService)->Accept();
            return nullptr;
        };
        bRunning = StartServiceThread(stAcceptThread, pfnAccept, this);
        uiStatus = bRunning ? 0u : VT_HOST_ERR_SYSTEM;
    }
    if (uiStatus != 0) {
        stQueue.Close();
        LeaveName();
    }
    return uiStatus;
}

uint32_t Service::Serve(VtHostHandler pfnWanted, void *pvWanted) {
    std::lock_guard<std::mutex> stLife(stLifeMutex);
    if (!bRunning || pfnHandler.load() != nullptr) {
        return VT_HOST_ERR_STATE;
    }
    pvContext = pvWanted;
    pfnHandler.store(pfnWanted, std::memory_order_release);
    return 0;
}

uint32_t Service::OnLostReply(VtHostLostReply pfnWanted) {
    std::lock_guard<std::mutex> stLife(stLifeMutex);
    if (!bRunning || pfnHandler.load() == nullptr) {
        return VT_HOST_ERR_STATE;
    }
    pfnLostReply.store(pfnWanted);
    return 0;
}

uint32_t Service::Stop() {
    std::lock_guard<std::mutex> stLife(stLifeMutex);
    if (!bRunning) {
        return VT_HOST_ERR_STATE;
    }
    bStopping.store(true);
    shutdown(stListener.Get(), SHUT_RDWR);
    pthread_join(stAcceptThread, nullptr);
    stQueue.Close();
    {
        // Closed for reading only: a handler that runs still sends its reply.
        std::lock_guard<std::mutex> stGuard(stMutex);
        for (Connection &stConnection : stConnections) {
            if (!stConnection.bDone) {
                shutdown(stConnection.stSocket.Get(), SHUT_RD);
            }
        }
    }
    // With the accepting thread gone nobody else adds to the list or takes from it.
    for (const Connection &stConnection : stConnections) {
        pthread_join(stConnection.stThread, nullptr);
    }
    {
        std::lock_guard<std::mutex> stGuard(stMutex);
        stConnections.clear();
    }
    pfnHandler.store(nullptr);
    pfnLostReply.store(nullptr);
    LeaveName();
    bRunning = false;
    return 0;
}

void Service::Accept() {
    t_bServiceThread = true;
    int iListener = stListener.Get();
    while (!bStopping.load()) {
        // cppcheck-suppress nullPointer ; the two may be null together
        Fd stSocket(accept4(iListener, nullptr, nullptr, SOCK_CLOEXEC));
        if (stSocket.Ok()) {
            pid_t iCaller = 0;
            if (PeerIsUs(stSocket.Get(), &iCaller)) {
                AddConnection(std::move(stSocket), iCaller);
            }
        } else if (errno != EINTR && errno != ECONNABORTED && !bStopping.load()) {
            // Out of descriptors, most likely: those who call wait until others have hung up.
            std::this_thread::sleep_for(kBreak);
            ReapDone();
        }
    }
}

void Service::AddConnection(Fd stSocket, pid_t iCaller) {
    ReapDone();
    WidenSendBuffer(stSocket.Get());
    // A caller that never reads its replies must not hold a thread for ever.
    timeval stPatience{1, 0};
    setsockopt(stSocket.Get(), SOL_SOCKET, SO_SNDTIMEO, &stPatience, sizeof stPatience);
    std::lock_guard<std::mutex> stGuard(stMutex);
    if (stConnections.size() >= kMaxConnections) {
        return;
    }
    try {
        stConnections.push_back({this, std::move(stSocket), iCaller, pthread_t{}, false});
    } catch (const std::bad_alloc &) {
        return;
    }
    Connection &stNew = stConnections.back();
    auto pfnRun = [](void *pvConnection) -> void * {
        Connection *pstConnection = static_cast<Connection *>(pvConnection);
        pstConnection->pstService->RunConnection(*pstConnection);
        return nullptr;
    };
    if (!StartServiceThread(stNew.stThread, pfnRun, &stNew)) {
        stConnections.pop_back();
    }
}

void Service::ReapDone() {
    std::list<Connection> stDone;
    {
        std::lock_guard<std::mutex> stGuard(stMutex);
        for (auto itNext = stConnections.begin(); itNext != stConnections.end();) {
            auto itThis = itNext++;
            if (itThis->bDone) {
                stDone.splice(stDone.end(), stConnections, itThis);
            }
        }
    }
    for (const Connection &stConnection : stDone) {
        pthread_join(stConnection.stThread, nullptr);
    }
}

void Service::RunConnection(Connection &stConnection) {
    t_bServiceThread = true;
    // Whole packets: the kernel is faster when it isn't told of frame and payload as parts.
    std::unique_ptr<uint8_t[]> pucRequest(new (std::nothrow) uint8_t[kMaxRequest]);
    std::unique_ptr<uint8_t[]> pucReply(new (std::nothrow) uint8_t[kMaxReply]);
    int iFd = -1;
    {
        std::lock_guard<std::mutex> stGuard(stMutex);
        iFd = stConnection.stSocket.Get();
    }
    if (pucRequest != nullptr && pucReply != nullptr) {
        while (AnswerOne(iFd, stConnection.iCaller, pucRequest.get(), pucReply.get())) {
        }
    }
    std::lock_guard<std::mutex> stGuard(stMutex);
    stConnection.stSocket.Reset();
    stConnection.bDone = true;
}

/** Receives one request and answers it. @return false when the connection is over */
bool Service::AnswerOne(int iFd, pid_t iCaller, uint8_t *pucRequest, uint8_t *pucReply) {
    RequestFrame stFrame{};
    const uint8_t *pucReq = pucRequest + sizeof stFrame;
    uint8_t *pucRsp = pucReply + sizeof(ReplyFrame);
    ssize_t iGot = ReceiveWhole(iFd, pucRequest, kMaxRequest);
    if (iGot < static_cast<ssize_t>(sizeof stFrame)) {
        return false;
    }
    memcpy(&stFrame, pucRequest, sizeof stFrame);
    if (stFrame.uiMagic != kRequestMagic ||
        stFrame.uiLen != static_cast<size_t>(iGot) - sizeof stFrame ||
        stFrame.uiRspCap > VT_HOST_MAX_PAYLOAD) {
        return false;
    }
    stFrame.stHead.acSndApp[VT_MSG_NAME_SIZE - 1] = '\0';
    stFrame.stHead.acRcvApp[VT_MSG_NAME_SIZE - 1] = '\0';
    uint32_t uiStatus = 0;
    uint32_t uiRspLen = 0;
    if (stFrame.uiKind == kKindRpc) {
        uiStatus = Handle(stFrame, iCaller, pucReq, pucRsp, uiRspLen);
        if (uiRspLen == VT_HOST_NO_REPLY) {
            return true;
        }
    } else if (stFrame.uiKind == kKindAsync) {
        uiStatus = stQueue.Push(stFrame.stHead, stFrame.uiCode, pucReq, stFrame.uiLen);
    } else {
        return false;
    }
    ReplyFrame stReply{kReplyMagic, stFrame.uiSerial, uiStatus, uiRspLen};
    memcpy(pucReply, &stReply, sizeof stReply);
    const bool bSent = SendWhole(iFd, pucReply, sizeof stReply + uiRspLen, 0) >= 0;
    const VtHostLostReply pfnLost = pfnLostReply.load();
    if (!bSent && pfnLost != nullptr && stFrame.uiKind == kKindRpc) {
        pfnLost(pvContext);
    }
    return bSent;
}

uint32_t Service::Handle(const RequestFrame &stFrame, pid_t iCaller, const uint8_t *pucReq,
                         uint8_t *pucRsp, uint32_t &uiRspLen) {
    VtHostHandler pfnNow = pfnHandler.load(std::memory_order_acquire);
    if (pfnNow == nullptr) {
        return VT_HOST_ERR_UNKNOWN_RPC;
    }
    memset(pucRsp, 0, stFrame.uiRspCap);
    VtHostCall stCall{&stFrame.stHead, stFrame.uiCode, stFrame.uiDstMid, pucReq,
                      stFrame.uiLen,   pucRsp,         stFrame.uiRspCap, iCaller};
    uint32_t uiStatus = pfnNow(pvContext, &stCall, &uiRspLen);
    if (uiRspLen != VT_HOST_NO_REPLY) {
        uiRspLen = std::min(uiRspLen, stFrame.uiRspCap);
    }
    return uiStatus;
}

void Service::BeforeFork() {
    stMutex.lock();
    stQueue.Lock();
}

void Service::AfterForkInParent() {
    stQueue.Unlock();
    stMutex.unlock();
}

Service *Service::AfterForkInChild() {
    stListener.Reset();
    stLock.Reset();
    for (Connection &stConnection : stConnections) {
        stConnection.stSocket.Reset();
    }
    AfterForkInParent();
    Service *pstFresh = new Service;
    pstFresh->stQueue.AdoptProcedures(stQueue);
    pstFresh->pstParents = this;
    return pstFresh;
}

}  // namespace
}  // namespace wap::host

using wap::host::IsProcessName;
using wap::host::t_bServiceThread;
using wap::host::TheService;

uint32_t VT_MSG_Init(const char *pcProcName, uint32_t uiArg1, uint32_t, uint32_t) {
    if (!IsProcessName(pcProcName)) {
        wap::host::Complain(
            "VT_MSG_Init: not a process name: \"%.64s\". Use 1 to 31 of the "
            "characters A-Z a-z 0-9 _ - and .",
            pcProcName == nullptr ? "" : pcProcName);
        return VT_HOST_ERR_ARGUMENT;
    }
    if (t_bServiceThread) {
        return VT_HOST_ERR_STATE;
    }
    return TheService().Init(pcProcName, uiArg1);
}

uint32_t VT_MSG_RegisterMID(uint32_t uiMid, int32_t (*pfnProc)(void *pvMsg), uint32_t) {
    if (pfnProc == nullptr) {
        return VT_HOST_ERR_ARGUMENT;
    }
    return TheService().Queue().SetProcedure(uiMid, pfnProc);
}

uint32_t VT_MSG_GetAndDispatch(uint32_t, uint32_t) {
    uint32_t uiStatus = TheService().Queue().Dispatch();
    if (uiStatus == VT_HOST_ERR_STATE) {
        // Callers loop for ever without looking at the result.
        std::this_thread::sleep_for(wap::host::kBreak);
    }
    return uiStatus;
}

const char *VT_MSG_GetCurProcName(void) {
    return TheService().Name();
}

uint32_t VT_HOST_Serve(VtHostHandler pfnHandler, void *pvContext) {
    if (pfnHandler == nullptr) {
        return VT_HOST_ERR_ARGUMENT;
    }
    return t_bServiceThread ? VT_HOST_ERR_STATE : TheService().Serve(pfnHandler, pvContext);
}

uint32_t VT_HOST_OnLostReply(VtHostLostReply pfnLost) {
    return t_bServiceThread ? VT_HOST_ERR_STATE : TheService().OnLostReply(pfnLost);
}

uint32_t VT_HOST_Stop(void) {
    return t_bServiceThread ? VT_HOST_ERR_STATE : TheService().Stop();
}
