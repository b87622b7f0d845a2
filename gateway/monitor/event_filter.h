// Which events someone wants to see.
#ifndef WAP_GATEWAY_MONITOR_EVENT_FILTER_H
#define WAP_GATEWAY_MONITOR_EVENT_FILTER_H

#include <stdint.h>

#include <set>
#include <string>

#include "framework/tap_event.h"

namespace wap::gateway {

/// What is asked of an event. Where several of a kind are named, one of them must be right; a kind
/// of which none is named is not asked about.
class EventFilter {
  public:
    /// Those that this process sends or receives.
    void AddProcess(const std::string &acName) { m_setProcesses.insert(acName); }

    /// Those of an id, in decimal or as 0x..., or of a name, in which * and ? stand for anything
    /// and large and small letters are the same. Throws GatewayError for a name that no RPC has and
    /// no message.
    void AddRpc(const std::string &acIdOrName);

    /// Those with a code, or those that failed, which also are those without an answer. Throws
    /// GatewayError for what is neither a number nor "failed".
    void AddCode(const std::string &acCode);

    bool Wants(const TapEvent &stEvent) const;

  private:
    std::set<std::string> m_setProcesses;
    std::set<uint32_t> m_setRpcs;      ///< ids
    std::set<uint32_t> m_setMessages;  ///< types
    std::set<uint32_t> m_setCodes;
    bool m_bFailed = false;
};

}  // namespace wap::gateway

#endif
