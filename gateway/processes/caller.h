// Which process calls, and whether it still runs.
#ifndef WAP_GATEWAY_PROCESSES_CALLER_H
#define WAP_GATEWAY_PROCESSES_CALLER_H

#include <stdint.h>

#include <optional>

namespace wap::gateway {

/// A process of this machine. Its id alone would be another one's some day.
struct Caller {
    int32_t iPid;
    uint64_t uiStart;  ///< when it was started, in the system's ticks

    bool operator==(const Caller &) const = default;
};

/// The running process of that id; nothing when there is none. One that has ended and that nobody
/// has waited for yet does not run. Throws GatewayError when the system does not tell.
std::optional<Caller> FindCaller(int32_t iPid);

/// Whether a process still runs. Throws GatewayError.
inline bool IsAlive(const Caller &stCaller) {
    return FindCaller(stCaller.iPid) == stCaller;
}

}  // namespace wap::gateway

#endif
