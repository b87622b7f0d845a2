// What a change of a VLAN binding asks for, for the processes that carry it out.
#ifndef WAP_GATEWAY_PROCESSES_VLAN_BIND_H
#define WAP_GATEWAY_PROCESSES_VLAN_BIND_H

#include <optional>
#include <string>
#include <string_view>

#include "processes/processes.h"
#include "records/vlan_bind.h"

namespace wap::gateway {

/// The number of an interface such as LAN1, when its name is acKind and a number from 1, in any
/// case; nothing for every other name.
std::optional<uint32_t> InterfaceNumber(const std::string &acName, std::string_view pcKind);

/// Writes a change into an interface's "mode" and "bind". False when the request makes no sense.
bool ApplyBinding(const VlanBindReq &stRequest, json_object *pstInterface);

}  // namespace wap::gateway

#endif
