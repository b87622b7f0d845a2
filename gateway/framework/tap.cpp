#include "framework/tap.h"

#include <errno.h>
#include <poll.h>
#include <stdio.h>
#include <sys/socket.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <thread>
#include <utility>

#include "framework/bulk.h"
#include "framework/control.h"
#include "framework/error.h"
#include "framework/tap_socket.h"

namespace wap::gateway {

namespace {

/// What waits for one who watches, at most.
constexpr size_t kQueueBytes = 8u << 20;
/// What an entry takes beside its event, about.
constexpr size_t kEntryBytes = 128;
/// How long a process that ends goes on telling.
constexpr std::chrono::milliseconds kEndPatience(500);
constexpr int kLookAgainMs = 50;

uint64_t Microseconds(clockid_t eClock) {
    struct timespec stNow = {};
    clock_gettime(eClock, &stNow);
    return static_cast<uint64_t>(stNow.tv_sec) * 1000000 +
           static_cast<uint64_t>(stNow.tv_nsec) / 1000;
}

std::string_view BytesAt(const void *pvBytes, uint32_t uiLength) {
    return {static_cast<const char *>(pvBytes), uiLength};
}

}  // namespace

/// A thread of its own sends what a queue holds, so that whoever serves never waits.
class TapLine {
  public:
    /// An event with its frame before it.
    using Event = std::shared_ptr<const std::string>;

    TapLine(FileDescriptor stSocket, ino_t uiNode, std::atomic<uint32_t> &uiAlive)
        : m_stSocket(std::move(stSocket)), m_uiNode(uiNode), m_uiAlive(uiAlive) {
        m_stThread = std::thread([this] { Run(); });
        ++m_uiAlive;  // what the thread takes away when it ends
    }
    TapLine(const TapLine &) = delete;
    TapLine &operator=(const TapLine &) = delete;
    ~TapLine() {
        End();
        m_stThread.join();
    }

    ino_t Node() const { return m_uiNode; }

    /// Puts an event into the queue, or loses it.
    void Push(const Event &pstEvent) {
        const std::scoped_lock stLock(m_stMutex);
        if (m_bDead) {
            return;
        }
        const size_t uiBytes = pstEvent->size() + kEntryBytes;
        if (m_uiQueued + uiBytes > kQueueBytes) {
            ++m_uiLost;
            return;
        }
        m_astQueue.push_back({pstEvent, m_uiLost});
        m_uiLost = 0;
        m_uiQueued += uiBytes;
        m_stChanged.notify_one();
    }

    void Lose() {
        const std::scoped_lock stLock(m_stMutex);
        ++m_uiLost;
        m_stChanged.notify_one();
    }

    void End() {
        const std::scoped_lock stLock(m_stMutex);
        if (!m_bEnding) {
            m_stEnd = std::chrono::steady_clock::now() + kEndPatience;
            m_bEnding = true;
            m_stChanged.notify_one();
        }
    }

    /// Whether nobody is at the other end any more.
    bool HasGone() const {
        struct pollfd stPoll = {m_stSocket.Get(), POLLIN, 0};
        // Nobody sends anything to here.
        return m_bDead || poll(&stPoll, 1, 0) != 0;
    }

  private:
    struct Entry {
        Event pstEvent;
        uint32_t uiLost;  ///< before it
    };

    void Run() {
        std::unique_lock stLock(m_stMutex);
        for (bool bSent = true; bSent;) {
            m_stChanged.wait(stLock,
                             [this] { return m_bEnding || !m_astQueue.empty() || m_uiLost > 0; });
            if (m_astQueue.empty() && m_uiLost == 0) {
                break;
            }
            const Entry stNext = Next();
            stLock.unlock();
            bSent = Send(stNext);
            stLock.lock();
        }
        m_bDead = true;
        --m_uiAlive;
        m_astQueue.clear();
        m_uiQueued = 0;
        (void)shutdown(m_stSocket.Get(), SHUT_RDWR);
    }

    Entry Next() {
        if (m_astQueue.empty()) {
            return {nullptr, std::exchange(m_uiLost, 0)};
        }
        Entry stNext = std::move(m_astQueue.front());
        m_astQueue.pop_front();
        m_uiQueued -= stNext.pstEvent->size() + kEntryBytes;
        return stNext;
    }

    bool Send(const Entry &stEntry) {
        if (stEntry.uiLost > 0) {
            const TapFrame stFrame = {0, stEntry.uiLost};
            if (!SendAll(BytesAt(&stFrame, sizeof(stFrame)))) {
                return false;
            }
        }
        return !stEntry.pstEvent || SendAll(*stEntry.pstEvent);
    }

    bool SendAll(std::string_view sBytes) {
        while (!sBytes.empty()) {
            const ssize_t iSent =
                send(m_stSocket.Get(), sBytes.data(), sBytes.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
            if (iSent >= 0) {
                sBytes.remove_prefix(static_cast<size_t>(iSent));
            } else if ((errno != EAGAIN && errno != EINTR && errno != ENOBUFS) || IsOver()) {
                return false;
            } else {
                struct pollfd stPoll = {m_stSocket.Get(), POLLOUT, 0};
                (void)poll(&stPoll, 1, kLookAgainMs);
            }
        }
        return true;
    }

    bool IsOver() {
        const std::scoped_lock stLock(m_stMutex);
        return m_bEnding && std::chrono::steady_clock::now() >= m_stEnd;
    }

    const FileDescriptor m_stSocket;
    const ino_t m_uiNode;
    std::atomic<uint32_t> &m_uiAlive;
    std::atomic<bool> m_bDead{false};
    std::thread m_stThread;

    std::mutex m_stMutex;  ///< all of these
    std::condition_variable m_stChanged;
    std::deque<Entry> m_astQueue;
    size_t m_uiQueued = 0;
    uint32_t m_uiLost = 0;  ///< since the last entry
    bool m_bEnding = false;
    std::chrono::steady_clock::time_point m_stEnd;
};

namespace {

TapLine::Event Framed(const TapEvent &stEvent) {
    const std::string acEvent = EncodeEvent(stEvent);
    const TapFrame stFrame = {static_cast<uint32_t>(acEvent.size()), 0};
    std::string acFramed;
    acFramed.reserve(sizeof(stFrame) + acEvent.size());
    acFramed += BytesAt(&stFrame, sizeof(stFrame));
    acFramed += acEvent;
    return std::make_shared<const std::string>(std::move(acFramed));
}

/// Ends all of them at a time, so that it takes no longer than one.
void EndAll(std::vector<std::unique_ptr<TapLine>> &astLines) {
    for (const auto &pstLine : astLines) {
        pstLine->End();
    }
    astLines.clear();
}

}  // namespace

Tap::Tap(const RuntimeDir &stDir, const char *pcProcess)
    : m_stDir(stDir), m_acProcess(pcProcess), m_uiPid(static_cast<uint32_t>(getpid())) {}

Tap::~Tap() {
    End();
}

void Tap::Look() {
    const std::scoped_lock stLook(m_stLookMutex);
    std::vector<std::unique_ptr<TapLine>> astGone;
    {
        const std::scoped_lock stLock(m_stMutex);
        const auto stFirst =
            std::stable_partition(m_astLines.begin(), m_astLines.end(),
                                  [](const auto &pstLine) { return !pstLine->HasGone(); });
        std::move(stFirst, m_astLines.end(), std::back_inserter(astGone));
        m_astLines.erase(stFirst, m_astLines.end());
    }
    EndAll(astGone);
    try {
        Connect();
    } catch (const std::exception &stError) {
        fprintf(stderr, "%s: cannot tell those who watch: %s\n", m_acProcess.c_str(),
                stError.what());
    }
}

void Tap::Connect() {
    for (const TapSocket &stSocket : TapSockets(m_stDir)) {
        // Only this function adds lines, and it runs once at a time.
        if (std::any_of(m_astLines.begin(), m_astLines.end(),
                        [&](const auto &pstLine) { return pstLine->Node() == stSocket.uiNode; })) {
            continue;
        }
        FileDescriptor stNew = ConnectTap(stSocket);
        if (stNew.Get() < 0) {
            continue;
        }
        if (m_astLines.size() >= kTapWatchersMost) {
            const TapLine::Event pstFull = Introduction(TapKind::kFull);
            (void)!send(stNew.Get(), pstFull->data(), pstFull->size(), MSG_NOSIGNAL | MSG_DONTWAIT);
            continue;
        }
        auto pstLine = std::make_unique<TapLine>(std::move(stNew), stSocket.uiNode, m_uiLines);
        pstLine->Push(Introduction(TapKind::kHello));
        const std::scoped_lock stLock(m_stMutex);
        m_astLines.push_back(std::move(pstLine));
    }
}

TapLine::Event Tap::Introduction(TapKind eKind) const {
    TapEvent stEvent;
    stEvent.eKind = eKind;
    stEvent.ulTimeUs = Microseconds(CLOCK_REALTIME);
    stEvent.acReceiver = m_acProcess;
    stEvent.uiReceiverPid = m_uiPid;
    return Framed(stEvent);
}

void Tap::Post(TapEvent stEvent) noexcept {
    try {
        stEvent.acReceiver = m_acProcess;
        stEvent.uiReceiverPid = m_uiPid;
        const auto pstEvent = Framed(stEvent);
        const std::scoped_lock stLock(m_stMutex);
        for (const auto &pstLine : m_astLines) {
            pstLine->Push(pstEvent);
        }
    } catch (const std::exception &) {
        Lose();
    }
}

void Tap::Lose() noexcept {
    const std::scoped_lock stLock(m_stMutex);
    for (const auto &pstLine : m_astLines) {
        pstLine->Lose();
    }
}

void Tap::End() noexcept {
    const std::scoped_lock stLook(m_stLookMutex);
    std::vector<std::unique_ptr<TapLine>> astLines;
    {
        const std::scoped_lock stLock(m_stMutex);
        astLines.swap(m_astLines);
    }
    EndAll(astLines);
}

TappedCall::TappedCall(Tap &stTap, const VtHostCall &stCall) noexcept : m_stTap(stTap) {
    if (!stTap.IsOn() || IsControl(stCall.uiRpcId)) {
        return;
    }
    try {
        Begin(TapKind::kRpc, *stCall.pstHead, stCall.uiRpcId, stCall.pvReq, stCall.uiReqLen);
        m_pstEvent->uiDstMid = stCall.uiDstMid;
        m_pstEvent->uiRoom = stCall.uiRspCap;
        m_pstEvent->uiSenderPid = static_cast<uint32_t>(stCall.iCallerPid);
    } catch (const std::exception &) {
        m_pstEvent.reset();
        stTap.Lose();
    }
}

TappedCall::TappedCall(Tap &stTap, const VtHostMsg *pstMessage) noexcept : m_stTap(stTap) {
    if (!stTap.IsOn()) {
        return;
    }
    try {
        Begin(TapKind::kMessage, pstMessage->stHead, pstMessage->uiMsgType, pstMessage + 1,
              pstMessage->uiLen);
        m_pstEvent->uiDstMid = pstMessage->stHead.uiDstMid;
    } catch (const std::exception &) {
        m_pstEvent.reset();
        stTap.Lose();
    }
}

void TappedCall::Begin(TapKind eKind, const RpcMsgHead &stHead, uint32_t uiId,
                       const void *pvRequest, uint32_t uiRequest) {
    m_pstEvent = std::make_unique<TapEvent>();
    m_pstEvent->ulTimeUs = Microseconds(CLOCK_REALTIME);
    m_pstEvent->eKind = eKind;
    m_pstEvent->stHead = stHead;
    m_pstEvent->uiId = uiId;
    m_pstEvent->astParts[kTapRequest] = {uiRequest, std::string(BytesAt(pvRequest, uiRequest))};
    // Before it is served: whoever serves it frees the block.
    LookAtBlock(WireSide::kRequest, m_pstEvent->astParts[kTapRequest].acHeld);
    // Only now: what it takes to watch is not the receiver's time.
    m_ulBegin = Microseconds(CLOCK_MONOTONIC);
}

void TappedCall::LookAtBlock(WireSide eSide, std::string_view sOwner) {
    const WireRpc *pstRpc = RpcOf(*m_pstEvent);
    const auto stDesc = pstRpc == nullptr ? std::nullopt : DescriptorIn(*pstRpc, eSide, sOwner);
    if (!stDesc) {
        return;
    }
    TapBytes &stBlock = m_pstEvent->astParts[kTapBlock];
    m_pstEvent->eBlockSide = eSide;
    stBlock.uiLength = stDesc->uiOriginalLen;
    try {
        stBlock.acHeld = ReadBlock(*stDesc, kTapBlockMax);
    } catch (const GatewayError &) {
        stBlock.acHeld.clear();  // no such block, or one that is not what it says
    }
}

void TappedCall::NoteFault(const Fault &stFault) noexcept {
    if (m_pstEvent) {
        m_pstEvent->stFault = stFault;
    }
}

void TappedCall::End(uint32_t uiCode, const void *pvReply, uint32_t uiReply) noexcept {
    if (!m_pstEvent) {
        return;
    }
    m_pstEvent->ulDurationUs = Microseconds(CLOCK_MONOTONIC) - m_ulBegin;
    try {
        m_pstEvent->uiCode = uiCode;
        m_pstEvent->bAnswered = m_pstEvent->eKind == TapKind::kRpc && uiReply != VT_HOST_NO_REPLY;
        if (m_pstEvent->bAnswered) {
            m_pstEvent->astParts[kTapReply] = {uiReply, std::string(BytesAt(pvReply, uiReply))};
            if (uiCode == 0) {
                LookAtBlock(WireSide::kReply, m_pstEvent->astParts[kTapReply].acHeld);
            }
        }
        m_stTap.Post(std::move(*m_pstEvent));
    } catch (const std::exception &) {
        m_stTap.Lose();
    }
    m_pstEvent.reset();
}

}  // namespace wap::gateway
