// gulm: owns the LAN's settings, the WAN connections and everything that hangs on either.
#include "processes/processes.h"

namespace wap::gateway {

void AddGulmRpcs(RpcTable &stTable) {
    AddLanAddressRpcs(stTable);
    AddLanPortRpcs(stTable);
    AddWanRpcs(stTable);
    AddRouteRpcs(stTable);
    AddIptvRpcs(stTable);
    AddPortMappingRpcs(stTable);
    AddMacFilterRpcs(stTable);
    AddAttachControlRpcs(stTable);
    AddMonitorRpcs(stTable);
    AddTrafficRuleRpcs(stTable);
    AddFlowRpcs(stTable);
}

}  // namespace wap::gateway
