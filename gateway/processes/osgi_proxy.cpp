// osgi_proxy: owns the device's own data and answers for it. The changes that bundles want made go
// through it to the process that owns what is changed.
#include <algorithm>

#include "framework/peers.h"
#include "processes/accounts.h"
#include "processes/vlan_bind.h"
#include "records/attach_control.h"
#include "records/device_info.h"
#include "records/lan_address.h"
#include "records/lan_hosts.h"
#include "records/mac_filter.h"
#include "records/port_mapping.h"
#include "records/static_route.h"
#include "records/wan_config.h"
#include "records/wan_info.h"

namespace wap::gateway {

namespace {

uint32_t GetDeviceInfo(HandlerContext &stContext, const WordRequest &, DeviceInfoReply &stReply) {
    const HomeReader stHome(stContext.stHome);
    stReply.uiRamSize = stHome.Number("device.ramKiB");
    stReply.uiFlashSize = stHome.Number("device.flashKiB");
    stHome.Text("device.nfc", stReply.acNfc);
    stHome.Text("device.productClass", stReply.acProductClass);
    stHome.Text("device.vendor", stReply.acVendor);
    stHome.Text("device.hardwareVersion", stReply.acHardwareVer);
    stHome.Text("device.firmwareVersion", stReply.acFirmwareVer);
    stHome.Text("device.mainChipClass", stReply.acMainChipClass);
    return 0;
}

uint32_t GetDeviceMac(HandlerContext &stContext, const WordRequest &, DeviceMacReply &stReply) {
    HomeReader(stContext.stHome).Text("device.mac", stReply.acMac);
    return 0;
}

/// Seconds since the gateway's start, on top of those that the home starts with, so that a gateway
/// can be as old as a test wants it. Stays at its largest value rather than start over.
uint32_t GetDeviceUpTime(HandlerContext &stContext, const WordRequest &,
                         DeviceUpTimeReply &stReply) {
    const uint64_t uiBase = HomeReader(stContext.stHome).Number("device.upTimeBase");
    const uint64_t uiUpTime = uiBase + NowSeconds() - stContext.uiGatewayStart;
    stReply.uiUpTime = static_cast<uint32_t>(std::min<uint64_t>(uiUpTime, UINT32_MAX));
    return 0;
}

uint32_t GetDevicePassword(HandlerContext &stContext, const WordRequest &,
                           DevicePasswordReply &stReply) {
    HomeReader(stContext.stHome).Text("device.password", stReply.acPassword);
    return 0;
}

uint32_t GetDeviceDefaults(HandlerContext &stContext, const WordRequest &,
                           DeviceDefaultsReply &stReply) {
    const HomeReader stHome(stContext.stHome);
    stHome.Text("device.defaultSsid1Name", stReply.acSsid1Name);
    stHome.Text("device.defaultSsid1Password", stReply.acSsid1Password);
    stHome.Text("device.defaultWebPassword", stReply.acWebPassword);
    return 0;
}

/// The LAN ports are gulm's, the SSIDs app_m's.
uint32_t ChangeVlanBind(HandlerContext &, const VlanBindReq &stRequest, VlanBindReply &) {
    const std::string acInterface = TextIn(stRequest.acInterface);
    const char *pcOwner = InterfaceNumber(acInterface, "LAN")    ? "gulm"
                          : InterfaceNumber(acInterface, "SSID") ? "app_m"
                                                                 : nullptr;
    std::string acReply;
    return pcOwner == nullptr
               ? kRefused
               : AskPeer(pcOwner, kRpcChangeVlanBind,
                         {reinterpret_cast<const char *>(&stRequest), sizeof(stRequest)},
                         sizeof(VlanBindReply), acReply);
}

}  // namespace

void AddOsgiProxyRpcs(RpcTable &stTable) {
    AddProxyBoxRpcs(stTable);
    AddRightRpcs(stTable);
    stTable.Add(kRpcGetDeviceInfo, GetDeviceInfo);
    stTable.Add(kRpcGetDeviceMac, GetDeviceMac);
    stTable.Add(kRpcGetDeviceUpTime, GetDeviceUpTime);
    stTable.Add(kRpcGetDevicePassword, GetDevicePassword);
    stTable.Add(kRpcGetDeviceDefaults, GetDeviceDefaults);
    stTable.Add(kRpcChangeVlanBind, ChangeVlanBind);
    for (const uint32_t uiRpcId :
         {kRpcSetLanHostIp, kRpcSetLanDhcp, kRpcAddPortMapping, kRpcDelPortMapping,
          kRpcSwitchPortMapping, kRpcSetMacFltMode, kRpcAddLanMacFlt, kRpcDelLanMacFlt,
          kRpcAddWlanMacFlt, kRpcDelWlanMacFlt, kRpcAddAttachControl, kRpcSetAttachControl,
          kRpcAddWan, kRpcSetWan, kRpcDelWan, kRpcAddIpv4Route, kRpcDelIpv4Route, kRpcAddIpv6Route,
          kRpcDelIpv6Route}) {
        stTable.Forward(uiRpcId, "gulm");
    }
    for (const uint32_t uiRpcId : {kRpcSetLanHostName, kRpcSetGatewayName}) {
        stTable.Forward(uiRpcId, "app_m");
    }
}

}  // namespace wap::gateway
