#include "monitor/event_filter.h"

#include <fnmatch.h>

#include <optional>

#include "framework/error.h"
#include "framework/numbers.h"

namespace wap::gateway {

namespace {

/// Adds the ids of those whose name is meant.
void AddNamed(std::span<const WireRpc> astRpcs, const std::string &acName,
              std::set<uint32_t> &setIds) {
    for (const WireRpc &stRpc : astRpcs) {
        if (fnmatch(acName.c_str(), stRpc.pcName, FNM_CASEFOLD | FNM_NOESCAPE) == 0) {
            setIds.insert(stRpc.uiId);
        }
    }
}

}  // namespace

void EventFilter::AddRpc(const std::string &acIdOrName) {
    if (const std::optional<uint32_t> uiId = ReadNumber(acIdOrName)) {
        m_setRpcs.insert(*uiId);
        m_setMessages.insert(*uiId);
        return;
    }
    std::set<uint32_t> setRpcs;
    std::set<uint32_t> setMessages;
    AddNamed(WireRpcs(), acIdOrName, setRpcs);
    AddNamed(WireMessages(), acIdOrName, setMessages);
    if (setRpcs.empty() && setMessages.empty()) {
        throw GatewayError("no RPC and no message is called \"" + acIdOrName +
                           "\"; docs/wire-formats.md lists them, and * stands for any letters");
    }
    m_setRpcs.merge(setRpcs);
    m_setMessages.merge(setMessages);
}

void EventFilter::AddCode(const std::string &acCode) {
    if (acCode == "failed") {
        m_bFailed = true;
        return;
    }
    const std::optional<uint32_t> uiCode = ReadNumber(acCode);
    if (!uiCode) {
        throw GatewayError("\"" + acCode +
                           "\" is no code: give it as 0x..., in decimal, or failed");
    }
    m_setCodes.insert(*uiCode);
}

bool EventFilter::Wants(const TapEvent &stEvent) const {
    if (!m_setProcesses.empty() && !m_setProcesses.contains(stEvent.acReceiver) &&
        !m_setProcesses.contains(stEvent.stHead.acSndApp)) {
        return false;
    }
    const bool bMessage = stEvent.eKind == TapKind::kMessage;
    if (!(m_setRpcs.empty() && m_setMessages.empty()) &&
        !(bMessage ? m_setMessages : m_setRpcs).contains(stEvent.uiId)) {
        return false;
    }
    if (m_setCodes.empty() && !m_bFailed) {
        return true;
    }
    const bool bAnswered = stEvent.bAnswered || bMessage;
    return (m_bFailed && (!bAnswered || stEvent.uiCode != 0)) ||
           (bAnswered && m_setCodes.contains(stEvent.uiCode));
}

}  // namespace wap::gateway
