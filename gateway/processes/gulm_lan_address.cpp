// gulm's address on the LAN, and its DHCP server.
#include <arpa/inet.h>

#include "processes/processes.h"
#include "records/lan_address.h"

namespace wap::gateway {

namespace {

bool IsAddress(const std::string &acText) {
    in_addr stAddress;
    return inet_pton(AF_INET, acText.c_str(), &stAddress) == 1;
}

uint32_t GetDhcp(HandlerContext &stContext, const LanIndex &stRequest, DhcpSettings &stReply) {
    if (stRequest.uiOne != 1) {
        return kRefused;
    }
    const HomeReader stHome(stContext.stHome);
    json_object *pstLan = stHome.At("lan");
    stReply.uiEnable = IsTrue(pstLan, "dhcpEnabled") ? 1 : 0;
    stReply.uiLease = NumberOf(pstLan, "dhcpLease");
    PutField(stReply.acPoolStart, TextOf(pstLan, "dhcpStart"));
    PutField(stReply.acPoolEnd, TextOf(pstLan, "dhcpEnd"));
    return 0;
}

uint32_t SetAddress(HandlerContext &stContext, const LanAddressSet &stRequest, Word &) {
    const std::string acAddress = TextIn(stRequest.acAddress);
    const std::string acMask = TextIn(stRequest.acMask);
    if (stRequest.uiLan != 1 || stRequest.uiDevice != 1 ||
        stRequest.ucChanged != kLanAddressChanged || !IsAddress(acAddress) || !IsAddress(acMask)) {
        return kRefused;
    }
    HomeChange stChange(stContext.stHome);
    PutText(stChange.At("lan"), "address", acAddress);
    PutText(stChange.At("lan"), "mask", acMask);
    stChange.Commit();
    return 0;
}

uint32_t SetDhcp(HandlerContext &stContext, const DhcpSet &stRequest, Word &) {
    const std::string acStart = TextIn(stRequest.acPoolStart);
    const std::string acEnd = TextIn(stRequest.acPoolEnd);
    if (stRequest.uiLan != 1 || stRequest.ucChanged != kDhcpChanged || !IsAddress(acStart) ||
        !IsAddress(acEnd)) {
        return kRefused;
    }
    HomeChange stChange(stContext.stHome);
    json_object *pstLan = stChange.At("lan");
    PutBool(pstLan, "dhcpEnabled", stRequest.uiEnable == 1);
    PutText(pstLan, "dhcpStart", acStart);
    PutText(pstLan, "dhcpEnd", acEnd);
    PutNumber(pstLan, "dhcpLease", stRequest.uiLease);
    stChange.Commit();
    return 0;
}

}  // namespace

void AddLanAddressRpcs(RpcTable &stTable) {
    stTable.Add(kRpcGetLanDhcp, GetDhcp);
    stTable.Add(kRpcSetLanHostIp, SetAddress);
    stTable.Add(kRpcSetLanDhcp, SetDhcp);
}

}  // namespace wap::gateway
