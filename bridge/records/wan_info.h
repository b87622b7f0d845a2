// WAN connections as they travel: how they are numbered, what they can be set to, their list, and
// where their DNS servers stand.
#ifndef WAP_RECORDS_WAN_INFO_H
#define WAP_RECORDS_WAN_INFO_H

#include <stddef.h>
#include <stdint.h>

namespace wap {

// RPC ids served by "gulm".
inline constexpr uint32_t kRpcGetWanList = 0x47302025;
inline constexpr uint32_t kRpcGetWanIpDns = 0x4730100B;
inline constexpr uint32_t kRpcGetWanPppDns = 0x4730100F;
inline constexpr uint32_t kRpcGetWanIpv6Dns = 0x4930000F;
inline constexpr uint32_t kRpcSetWanIpv6Dns = 0x4730105A;
// RPC id served by "osgi_proxy".
inline constexpr uint32_t kRpcSetWan = 0x47209078;

/// Connections that a list can hold.
inline constexpr uint32_t kWansMax = 8;

// The kinds of connections that there are.
inline constexpr uint32_t kWanKindIp = 1;
inline constexpr uint32_t kWanKindPpp = 2;

/// Puts a WAN index together: 4 bits of kind, 8 of WAN device, 8 of connection device and 12 of
/// connection instance. What is too large loses its upper bits.
constexpr uint32_t PackWanIndex(uint32_t uiKind, uint32_t uiWanDev, uint32_t uiConnDev,
                                uint32_t uiConnIns) {
    return uiKind << 28 | (uiWanDev & 0xFF) << 20 | (uiConnDev & 0xFF) << 12 | (uiConnIns & 0xFFF);
}

#pragma pack(push, 1)

/// The parts of a WAN index, each in a word of its own.
struct WanPlace {
    uint32_t uiKind;
    uint32_t uiWanDev;
    uint32_t uiConnDev;
    uint32_t uiConnIns;
};
static_assert(offsetof(WanPlace, uiKind) == 0);
static_assert(offsetof(WanPlace, uiWanDev) == 4);
static_assert(offsetof(WanPlace, uiConnDev) == 8);
static_assert(offsetof(WanPlace, uiConnIns) == 12);
static_assert(sizeof(WanPlace) == 16);

/// A connection of the list. The name should end with a zero; read it as if it might not.
struct WanIfListEntry {
    uint32_t uiWanIndex;
    char acName[260];
};
static_assert(offsetof(WanIfListEntry, uiWanIndex) == 0);
static_assert(offsetof(WanIfListEntry, acName) == 4);
static_assert(sizeof(WanIfListEntry) == 264);

/// Reply of kRpcGetWanList, which has no request. The count may be a lie.
struct WanIfList {
    uint32_t uiCount;
    WanIfListEntry astEntries[kWansMax];
};
static_assert(offsetof(WanIfList, uiCount) == 0);
static_assert(offsetof(WanIfList, astEntries) == 4);
static_assert(sizeof(WanIfList) == 2116);

/// What a WAN connection can be set to, all of it texts:
/// X(name, offset in the record, size with the zero, key in JSON, name in the trace or null for
/// what must not be seen there).
/// The odd sizes and offsets of the last rows are deliberate: the receiver reads them so.
#define WAP_WAN_SETTINGS(X)                                                                      \
    X(LanInterface, 16, 64, "LanInterface", "LanInterface")                                      \
    X(VlanMode, 80, 8, "VLANMode", "VlanMode")                                                   \
    X(VlanIdMark, 88, 8, "VLANIDMark", "Vlan")                                                   \
    X(PriorityMark, 96, 8, "802-1pMark", "8021P")                                                \
    X(MulticastVlan, 104, 8, "MulticastVlan", "MulticastVlan")                                   \
    X(LanDhcpEnable, 112, 8, "LanInterface-DHCPEnable", "LanDhcpEnable")                         \
    X(IpMode, 120, 16, "IPMode", "IpMode")                                                       \
    X(NatEnabled, 136, 8, "NATEnabled", "NatEnable")                                             \
    X(Username, 144, 68, "Username", nullptr)                                                    \
    X(Password, 212, 68, "Password", nullptr)                                                    \
    X(AddressingType, 280, 16, "AddressingType", "AddrType")                                     \
    X(ExternalIpAddress, 296, 16, "ExternalIPAddress", "ExtIpAddr")                              \
    X(SubnetMask, 312, 16, "SubnetMask", "SubMask")                                              \
    X(DefaultGateway, 328, 16, "DefaultGateway", "DefaultGateWay")                               \
    X(DnsEnabled, 344, 8, "DNSEnabled", "DnsEnable")                                             \
    X(DnsServers, 352, 64, "DNSServers", "DnsServers")                                           \
    X(MacAddress, 416, 32, "MACAddress", nullptr)                                                \
    X(ConnectionTrigger, 448, 16, "ConnectionTrigger", "ConTrigger")                             \
    X(Ipv6AddressOrigin, 464, 32, "IPv6IPAddressOrigin", "Ipv6Origin")                           \
    X(Ipv6Address, 496, 64, "IPv6IPAddress", "Ipv6Addr")                                         \
    X(Ipv6DnsServers, 560, 128, "IPv6DNSServers", "Ipv6DnsServer")                               \
    X(Ipv6PrefixDelegation, 688, 8, "IPv6PrefixDelegationEnabled", "Ipv6PrefixDelegationEnable") \
    X(Ipv6PrefixOrigin, 696, 32, "IPv6PrefixOrigin", "Ipv6PrefixOrigin")                         \
    X(Ipv6Prefix, 728, 64, "IPv6Prefix", "Ipv6Prefix")                                           \
    X(Ipv6PrefixPltime, 792, 40, "IPv6PrefixPltime", "Ipv6PrefixPlTime")                         \
    X(Ipv6PrefixVltime, 832, 40, "IPv6PrefixVltime", "Ipv6PrefixVlTime")                         \
    X(Ipv6DefaultGateway, 872, 65, "IPv6DefaultGateway", "Ipv6DefaultGateway")                   \
    X(Ipv6DsliteEnable, 937, 8, "IPv6DsliteEnable", "Ipv6DeliteEnable")                          \
    X(Ipv6AftrMode, 945, 8, "IPv6AftrMode", "Ipv6AftrMode")                                      \
    X(Ipv6AftrAddress, 953, 64, "IPv6AftrAddress", "Ipv6AftrAddr")                               \
    X(ServiceList, 1017, 32, "ServiceList", "ServiceList")

#define WAP_WAN_SETTING_NUMBER(name, offset, size, key, label) kWan##name,
/// The settings by number: kWanLanInterface to kWanServiceList.
enum WanSetting : uint32_t { WAP_WAN_SETTINGS(WAP_WAN_SETTING_NUMBER) kWanSettings };
#undef WAP_WAN_SETTING_NUMBER
static_assert(kWanSettings == 31);

#define WAP_WAN_SETTING_FIELD(name, offset, size, key, label) char ac##name[size];
/// Request of kRpcSetWan, which has no reply: the fields acLanInterface to acServiceList, and for
/// each of them whether it counts. Holds the connection's PPP user and password.
/// @secret acUsername acPassword
struct WanIfPara {
    WanPlace stPlace;
    WAP_WAN_SETTINGS(WAP_WAN_SETTING_FIELD)
    uint8_t aucSet[kWanSettings];  ///< by WanSetting: 1 set, 0 not
};
#undef WAP_WAN_SETTING_FIELD
#define WAP_WAN_SETTING_OFFSET(name, offset, size, key, label) \
    static_assert(offsetof(WanIfPara, ac##name) == (offset));  \
    static_assert(sizeof(WanIfPara::ac##name) == (size));
WAP_WAN_SETTINGS(WAP_WAN_SETTING_OFFSET)
#undef WAP_WAN_SETTING_OFFSET
static_assert(offsetof(WanIfPara, stPlace) == 0);
static_assert(offsetof(WanIfPara, aucSet) == 1049);
static_assert(sizeof(WanIfPara) == 1080);

/// Request of kRpcGetWanIpDns and kRpcGetWanPppDns.
struct WanIdReq {
    uint32_t uiWanDev;
    uint32_t uiConnDev;
    uint32_t uiConnIns;
};
static_assert(offsetof(WanIdReq, uiWanDev) == 0);
static_assert(offsetof(WanIdReq, uiConnDev) == 4);
static_assert(offsetof(WanIdReq, uiConnIns) == 8);
static_assert(sizeof(WanIdReq) == 12);

/// Reply of kRpcGetWanIpDns. The servers should end with a zero; read them as if they might not,
/// and likewise in the two below.
struct WanIpDnsReply {
    uint8_t aucUnused1[524];
    char acDnsServers[64];
    uint8_t aucUnused2[12276];
};
static_assert(offsetof(WanIpDnsReply, acDnsServers) == 524);
static_assert(sizeof(WanIpDnsReply) == 12864);

/// Reply of kRpcGetWanPppDns.
struct WanPppDnsReply {
    uint8_t aucUnused1[704];
    char acDnsServers[64];
    uint8_t aucUnused2[11236];
};
static_assert(offsetof(WanPppDnsReply, acDnsServers) == 704);
static_assert(sizeof(WanPppDnsReply) == 12004);

/// Request of kRpcGetWanIpv6Dns: the connection's interface name.
struct WanIpv6DnsReq {
    char acIfName[32];
};
static_assert(sizeof(WanIpv6DnsReq) == 32);

/// Reply of kRpcGetWanIpv6Dns.
struct WanIpv6DnsReply {
    uint8_t aucUnused1[912];
    char acDnsServers[64];
    uint8_t aucUnused2[413];
};
static_assert(offsetof(WanIpv6DnsReply, acDnsServers) == 912);
static_assert(sizeof(WanIpv6DnsReply) == 1389);

/// The two IPv6 DNS servers of a connection; one that is not there is empty.
struct WanIpv6DnsPair {
    char acFirst[64];
    char acSecond[64];
};
static_assert(offsetof(WanIpv6DnsPair, acFirst) == 0);
static_assert(offsetof(WanIpv6DnsPair, acSecond) == 64);
static_assert(sizeof(WanIpv6DnsPair) == 128);

/// Request of kRpcSetWanIpv6Dns, which has no reply.
struct WanIpv6DnsSetReq {
    uint32_t uiWanIndex;
    WanIpv6DnsPair stServers;
    uint8_t ucZero;
};
static_assert(offsetof(WanIpv6DnsSetReq, uiWanIndex) == 0);
static_assert(offsetof(WanIpv6DnsSetReq, stServers) == 4);
static_assert(offsetof(WanIpv6DnsSetReq, ucZero) == 132);
static_assert(sizeof(WanIpv6DnsSetReq) == 133);

#pragma pack(pop)

/// A row of the table of settings.
struct WanSettingRow {
    const char *pcKey;    ///< in JSON
    const char *pcLabel;  ///< in the trace; null for what must not be seen there
    uint16_t usOffset;    ///< in WanIfPara
    uint16_t usSize;      ///< with the zero
};

#define WAP_WAN_SETTING_ROW(name, offset, size, key, label) {key, label, offset, size},
/// By WanSetting.
inline constexpr WanSettingRow kWanSettingRows[] = {WAP_WAN_SETTINGS(WAP_WAN_SETTING_ROW)};
#undef WAP_WAN_SETTING_ROW

}  // namespace wap

#endif
