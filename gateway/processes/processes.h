// The RPCs of the gateway's processes, one function and one source each.
#ifndef WAP_GATEWAY_PROCESSES_PROCESSES_H
#define WAP_GATEWAY_PROCESSES_PROCESSES_H

#include "framework/rpc_table.h"

namespace wap::gateway {

void AddOsgiProxyRpcs(RpcTable &stTable);
void AddCwmpRpcs(RpcTable &stTable);

}  // namespace wap::gateway

#endif
