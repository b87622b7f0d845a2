// gulm's IPTV service: a WAN connection of its own, with the VLANs of multicast.
#include "processes/processes.h"
#include "records/iptv.h"

namespace wap::gateway {

namespace {

/// A connection that is up; the only other status here is that of one that is down.
constexpr uint32_t kIptvWanConnected = 1;
/// The service type that stands for no IPTV connection.
constexpr uint32_t kNoService = 0;

uint32_t StatusOf(json_object *pstWan) {
    return IsTrue(pstWan, "connected") ? kIptvWanConnected : kIptvWanDisconnected;
}

uint32_t GetConnection(HandlerContext &stContext, const Word &, IptvWanInfo &stReply) {
    const HomeReader stHome(stContext.stHome);
    json_object *pstIptv = stHome.At("iptv");
    json_object *pstWan = FindNumber(stHome.At("wan"), "index", NumberOf(pstIptv, "wanIndex"));
    stReply.uiWanIndex = NumberOf(pstIptv, "wanIndex");
    stReply.uiStatus = StatusOf(pstWan);
    stReply.uiServiceType = pstWan == nullptr ? kNoService : NumberOf(pstIptv, "serviceType");
    stReply.uiIpv4Enable = IsTrue(pstIptv, "ipv4Enabled") ? 1 : 0;
    stReply.usIpv4Mvlan = static_cast<uint16_t>(NumberOf(pstIptv, "ipv4Vlan"));
    stReply.usIpv6Mvlan = static_cast<uint16_t>(NumberOf(pstIptv, "ipv6Vlan"));
    return 0;
}

uint32_t GetStatus(HandlerContext &stContext, const IptvWanStatusReq &stRequest,
                   IptvWanStatus &stReply) {
    const HomeReader stHome(stContext.stHome);
    json_object *pstWan = FindNumber(stHome.At("wan"), "index", stRequest.uiWanIndex);
    if (pstWan == nullptr) {
        return kRefused;
    }
    stReply.uiStatus = StatusOf(pstWan);
    return 0;
}

}  // namespace

void AddIptvRpcs(RpcTable &stTable) {
    stTable.Add(kRpcGetIptvWan, GetConnection);
    stTable.Add(kRpcGetIptvWanStatus, GetStatus);
}

}  // namespace wap::gateway
