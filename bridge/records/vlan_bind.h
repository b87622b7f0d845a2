// Requests and replies about the VLANs that LAN ports and SSIDs are bound to, as they travel.
#ifndef WAP_RECORDS_VLAN_BIND_H
#define WAP_RECORDS_VLAN_BIND_H

#include <stddef.h>
#include <stdint.h>

namespace wap {

// RPC id served by "osgi_proxy".
inline constexpr uint32_t kRpcChangeVlanBind = 0x47209075;
// RPC ids served by "gulm".
inline constexpr uint32_t kRpcGetLanPortNum = 0x47301017;
inline constexpr uint32_t kRpcGetLanVlanBind = 0x47603122;
// RPC id served by "app_m", asked with the word 0.
inline constexpr uint32_t kRpcGetWlanVlanBind = 0x47103093;

/// Operations of a change.
inline constexpr uint32_t kVlanBindClear = 0;
inline constexpr uint32_t kVlanBindSet = 1;
/// The binding mode of an interface that is bound to VLANs.
inline constexpr uint32_t kBoundToVlan = 1;
/// The VLANs that can be bound.
inline constexpr int32_t kVlanFirst = 1;
inline constexpr int32_t kVlanLast = 4094;
/// More LAN ports than the reply that counts them has room for do not exist.
inline constexpr uint32_t kLanPortsMax = 8;
inline constexpr uint32_t kWlanBindsMax = 8;

#pragma pack(push, 1)

/// Request of kRpcChangeVlanBind.
struct VlanBindReq {
    char acInterface[64];  ///< such as LAN1 or SSID2
    uint32_t uiOperation;
    char acBind[129];  ///< pairs "<user side>/<WAN side>" with commas between them; set only
    uint8_t aucZero[3];
};
static_assert(offsetof(VlanBindReq, acInterface) == 0);
static_assert(offsetof(VlanBindReq, uiOperation) == 64);
static_assert(offsetof(VlanBindReq, acBind) == 68);
static_assert(offsetof(VlanBindReq, aucZero) == 197);
static_assert(sizeof(VlanBindReq) == 200);

/// Reply of kRpcChangeVlanBind.
struct VlanBindReply {
    uint32_t uiUnused;
};
static_assert(sizeof(VlanBindReply) == 4);

/// Request of kRpcGetLanPortNum.
struct LanPortNumReq {
    uint32_t uiOne;  ///< always 1
};
static_assert(sizeof(LanPortNumReq) == 4);

/// Reply of kRpcGetLanPortNum.
struct LanPortNum {
    uint32_t uiCount;
    uint8_t aucUnused[4 * kLanPortsMax];
};
static_assert(offsetof(LanPortNum, uiCount) == 0);
static_assert(offsetof(LanPortNum, aucUnused) == 4);
static_assert(sizeof(LanPortNum) == 36);

/// Request of kRpcGetLanVlanBind.
struct LanVlanBindReq {
    uint32_t uiPort;  ///< from 1
};
static_assert(sizeof(LanVlanBindReq) == 4);

/// Reply of kRpcGetLanVlanBind. Texts should end with a zero; read them as if they might not.
struct LanVlanBindInfo {
    uint32_t uiMac;
    char acEthType[192];
    uint32_t uiMode;
    char acBind[129];
};
static_assert(offsetof(LanVlanBindInfo, uiMac) == 0);
static_assert(offsetof(LanVlanBindInfo, acEthType) == 4);
static_assert(offsetof(LanVlanBindInfo, uiMode) == 196);
static_assert(offsetof(LanVlanBindInfo, acBind) == 200);
static_assert(sizeof(LanVlanBindInfo) == 329);

/// The binding of one SSID. The text should end with a zero; read it as if it might not.
struct WlanVlanBind {
    uint32_t uiSsid;
    uint32_t uiMode;
    char acBind[132];
};
static_assert(offsetof(WlanVlanBind, uiSsid) == 0);
static_assert(offsetof(WlanVlanBind, uiMode) == 4);
static_assert(offsetof(WlanVlanBind, acBind) == 8);
static_assert(sizeof(WlanVlanBind) == 140);

/// Reply of kRpcGetWlanVlanBind.
struct WlanVlanBindList {
    uint32_t uiCount;
    WlanVlanBind astBinds[kWlanBindsMax];
};
static_assert(offsetof(WlanVlanBindList, uiCount) == 0);
static_assert(offsetof(WlanVlanBindList, astBinds) == 4);
static_assert(sizeof(WlanVlanBindList) == 1124);

#pragma pack(pop)

}  // namespace wap

#endif
