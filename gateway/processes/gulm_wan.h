// gulm's WAN connections, for the themes that hang on them.
#ifndef WAP_GATEWAY_PROCESSES_GULM_WAN_H
#define WAP_GATEWAY_PROCESSES_GULM_WAN_H

#include <string>

#include "processes/processes.h"
#include "records/wan_info.h"

namespace wap::gateway {

/// A WAN connection's interface name, such as wan1.1.ip1.
std::string IfNameOf(json_object *pstWan);

/// The WAN connection of that interface name, or null.
json_object *FindWanByIfName(json_object *pstWans, const std::string &acIfName);

}  // namespace wap::gateway

#endif
