// cwmp: owns the identity under which the gateway is managed.
#include "processes/processes.h"
#include "records/device_info.h"

namespace wap::gateway {

namespace {

uint32_t GetDeviceIdentity(HandlerContext &stContext, const WordRequest &,
                           DeviceIdentityReply &stReply) {
    const HomeReader stHome(stContext.stHome);
    stHome.Text("identity.manufacturerOui", stReply.acManufacturerOui);
    stHome.Text("identity.serialNumber", stReply.acSerialNumber);
    return 0;
}

}  // namespace

void AddCwmpRpcs(RpcTable &stTable) {
    stTable.Add(kRpcGetDeviceIdentity, GetDeviceIdentity);
}

}  // namespace wap::gateway
