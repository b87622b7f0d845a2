// Faults that someone scripted: what a process does instead of answering as it should.
#ifndef WAP_GATEWAY_FRAMEWORK_FAULT_TABLE_H
#define WAP_GATEWAY_FRAMEWORK_FAULT_TABLE_H

#include <stdint.h>

#include <map>
#include <mutex>
#include <optional>
#include <string>

#include "framework/json_value.h"

namespace wap::gateway {

/// What happens to a reply.
enum class FaultKind {
    kNone,      ///< nothing: with a delay, a late but right reply
    kCode,      ///< the status uiValue and no reply
    kDrop,      ///< no answer at all
    kTruncate,  ///< the right reply, but at most uiValue bytes of it
    kGarbage,   ///< success with random bytes, as many as the caller has room for
    kFill,      ///< the same with the byte uiValue in place of random ones
};

/// One scripted fault.
struct Fault {
    FaultKind eKind = FaultKind::kNone;
    uint32_t uiValue = 0;
    uint32_t uiDelayMs = 0;                ///< waits this long first
    std::optional<uint32_t> uiTimes = {};  ///< requests that it still hits; nothing: all
};

inline constexpr uint32_t kMaxFaultDelayMs = 3600000;

/// The fault as JSON and back. FaultFromJson throws GatewayError when it makes no sense.
JsonValue FaultToJson(const Fault &stFault);
Fault FaultFromJson(json_object *pstFault);

/// What a fault does, in words: "code 5 after 100 ms".
std::string DescribeFault(const Fault &stFault);

/// The faults of one process. They live as long as the process. Any number of threads may use it.
class FaultTable {
  public:
    /// The faults by RPC id; the one under no id hits all RPCs that have none of their own.
    using Faults = std::map<std::optional<uint32_t>, Fault>;

    /// Scripts a fault, in place of an earlier one for the same RPC.
    void Set(std::optional<uint32_t> uiRpcId, const Fault &stFault);
    /// The fault that hits a request just received, if any; counts it.
    std::optional<Fault> Take(uint32_t uiRpcId);
    Faults List() const;
    /// Removes all faults; returns how many there were.
    size_t Clear();

  private:
    mutable std::mutex m_stMutex;
    Faults m_stFaults;
};

}  // namespace wap::gateway

#endif
