// gulm's LAN ports and the VLANs that they are bound to.
#include "processes/vlan_bind.h"

namespace wap::gateway {

namespace {

uint32_t GetPortNum(HandlerContext &stContext, const LanPortNumReq &stRequest,
                    LanPortNum &stReply) {
    if (stRequest.uiOne != 1) {
        return kRefused;
    }
    const HomeReader stHome(stContext.stHome);
    const size_t uiPorts = Elements(stHome.At("lanPorts")).size();
    stReply.uiCount = static_cast<uint32_t>(std::min<size_t>(uiPorts, kLanPortsMax));
    return 0;
}

uint32_t GetBinding(HandlerContext &stContext, const LanVlanBindReq &stRequest,
                    LanVlanBindInfo &stReply) {
    const HomeReader stHome(stContext.stHome);
    json_object *pstPort = FindNumber(stHome.At("lanPorts"), "port", stRequest.uiPort);
    if (pstPort == nullptr) {
        return kRefused;
    }
    stReply.uiMode = NumberOf(pstPort, "mode");
    PutField(stReply.acBind, TextOf(pstPort, "bind"));
    return 0;
}

uint32_t ChangeBinding(HandlerContext &stContext, const VlanBindReq &stRequest, VlanBindReply &) {
    const auto uiPort = InterfaceNumber(TextIn(stRequest.acInterface), "LAN");
    HomeChange stChange(stContext.stHome);
    json_object *pstPort = FindNumber(stChange.At("lanPorts"), "port", uiPort.value_or(0));
    if (pstPort == nullptr || !ApplyBinding(stRequest, pstPort)) {
        return kRefused;
    }
    stChange.Commit();
    return 0;
}

}  // namespace

void AddLanPortRpcs(RpcTable &stTable) {
    stTable.Add(kRpcGetLanPortNum, GetPortNum);
    stTable.Add(kRpcGetLanVlanBind, GetBinding);
    stTable.Add(kRpcChangeVlanBind, ChangeBinding);
}

}  // namespace wap::gateway
