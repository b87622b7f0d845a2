// The RPCs of the gateway's processes, one function and one source each.
#ifndef WAP_GATEWAY_PROCESSES_PROCESSES_H
#define WAP_GATEWAY_PROCESSES_PROCESSES_H

#include "framework/codes.h"
#include "framework/home_lists.h"
#include "framework/rpc_table.h"

namespace wap::gateway {

/// A request or reply of one word.
struct Word {
    uint32_t uiValue;
};

/// A text in a request's field, whether it is terminated or not.
template <size_t kSize>
std::string TextIn(const char (&acField)[kSize]) {
    return {acField, strnlen(acField, kSize)};
}

/// Members of an object of the home: 0, false or "" for what is not there.
inline uint32_t NumberOf(json_object *pstObject, const char *pcKey) {
    return static_cast<uint32_t>(GetNumber(pstObject, pcKey).value_or(0));
}
inline std::string TextOf(json_object *pstObject, const char *pcKey) {
    return GetText(pstObject, pcKey).value_or("");
}
inline bool IsTrue(json_object *pstObject, const char *pcKey) {
    return json_object_get_boolean(FindMember(pstObject, pcKey)) != 0;
}

void AddAppManagerRpcs(RpcTable &stTable);
void AddGulmRpcs(RpcTable &stTable);
void AddOsgiProxyRpcs(RpcTable &stTable);
void AddUsbManagerRpcs(RpcTable &stTable);
void AddTarnRpcs(RpcTable &stTable);
void AddCwmpRpcs(RpcTable &stTable);
void AddIgmpRpcs(RpcTable &stTable);

// What gulm serves, by theme.
void AddLanAddressRpcs(RpcTable &stTable);
void AddLanPortRpcs(RpcTable &stTable);
void AddWanRpcs(RpcTable &stTable);
void AddRouteRpcs(RpcTable &stTable);
void AddIptvRpcs(RpcTable &stTable);
void AddPortMappingRpcs(RpcTable &stTable);
void AddMacFilterRpcs(RpcTable &stTable);
void AddAttachControlRpcs(RpcTable &stTable);
void AddMonitorRpcs(RpcTable &stTable);
void AddTrafficRuleRpcs(RpcTable &stTable);
void AddFlowRpcs(RpcTable &stTable);

// What app_m serves, likewise.
void AddAccessRpcs(RpcTable &stTable);
void AddBoxRpcs(RpcTable &stTable);
void AddDiagnosticsRpcs(RpcTable &stTable);

// What osgi_proxy serves, likewise.
void AddProxyBoxRpcs(RpcTable &stTable);

}  // namespace wap::gateway

#endif
