// Tells those who watch what a process serves. Nobody who watches can slow the process down: what
// they don't take in time is dropped, and counted.
#ifndef WAP_GATEWAY_FRAMEWORK_TAP_H
#define WAP_GATEWAY_FRAMEWORK_TAP_H

#include <stddef.h>
#include <stdint.h>

#include <atomic>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "framework/runtime_dir.h"
#include "framework/tap_event.h"

namespace wap::gateway {

/// How many can watch a process: each has a thread in it, and up to 8 MiB that wait.
inline constexpr size_t kTapWatchersMost = 16;

/// The connection to one who watches.
class TapLine;

/// All who watch this process. Any number of threads may use it.
class Tap {
  public:
    Tap(const RuntimeDir &stDir, const char *pcProcess);
    Tap(const Tap &) = delete;
    Tap &operator=(const Tap &) = delete;
    ~Tap();

    /// Whether anybody watches: one look at an atomic.
    bool IsOn() const { return m_uiLines.load(std::memory_order_relaxed) != 0; }

    /// Connects to those who watch and are not connected yet, and forgets those who have gone.
    /// Those that can't be reached are left out. When there are too many, the others are told so.
    void Look();

    /// Tells an event to all who watch. What fails for want of memory is lost, and counted.
    void Post(TapEvent stEvent) noexcept;
    /// Counts one that could not even be made.
    void Lose() noexcept;

    /// Tells what is still to be told, for half a second at most, and disconnects.
    void End() noexcept;

  private:
    void Connect();
    /// What the process says of itself, as a frame.
    std::shared_ptr<const std::string> Introduction(TapKind eKind) const;

    const RuntimeDir m_stDir;
    const std::string m_acProcess;
    const uint32_t m_uiPid;
    std::atomic<uint32_t> m_uiLines{0};  ///< of those that live
    std::mutex m_stLookMutex;            ///< one look at a time
    std::mutex m_stMutex;                ///< the lines
    std::vector<std::unique_ptr<TapLine>> m_astLines;
};

/// A call or a message while it is served, for those who watch. Costs nothing but Tap::IsOn when
/// nobody does, and with gatewayctl's own RPCs.
class TappedCall {
  public:
    TappedCall(Tap &stTap, const VtHostCall &stCall) noexcept;
    /// @param pstMessage its content stands behind it
    TappedCall(Tap &stTap, const VtHostMsg *pstMessage) noexcept;

    /// Says that a scripted fault hits it.
    void NoteFault(const Fault &stFault) noexcept;

    /// Says how it ended, and tells it.
    /// @param uiReply length of the reply, or VT_HOST_NO_REPLY
    void End(uint32_t uiCode, const void *pvReply, uint32_t uiReply) noexcept;

  private:
    void Begin(TapKind eKind, const RpcMsgHead &stHead, uint32_t uiId, const void *pvRequest,
               uint32_t uiRequest);
    void LookAtBlock(WireSide eSide, std::string_view sOwner);

    Tap &m_stTap;
    std::unique_ptr<TapEvent> m_pstEvent;  ///< null when nobody watches
    uint64_t m_ulBegin = 0;                ///< on the clock that nobody sets, in microseconds
};

}  // namespace wap::gateway

#endif
