// Where each setting of a WAN connection stands in the record of 1080 bytes, by hand.
#ifndef WAP_TESTS_UNIT_WAN_SETTING_PLACES_H
#define WAP_TESTS_UNIT_WAN_SETTING_PLACES_H

#include <cstddef>

namespace wap::test {

struct SettingPlace {
    const char *pcKey;
    size_t uiAt;
    size_t uiSize;
    size_t uiFlagAt;
    const char *pcLabel;  ///< empty for what the trace does not show
};

inline const SettingPlace kSettingPlaces[] = {
    {"LanInterface", 16, 64, 1049, "LanInterface"},
    {"VLANMode", 80, 8, 1050, "VlanMode"},
    {"VLANIDMark", 88, 8, 1051, "Vlan"},
    {"802-1pMark", 96, 8, 1052, "8021P"},
    {"MulticastVlan", 104, 8, 1053, "MulticastVlan"},
    {"LanInterface-DHCPEnable", 112, 8, 1054, "LanDhcpEnable"},
    {"IPMode", 120, 16, 1055, "IpMode"},
    {"NATEnabled", 136, 8, 1056, "NatEnable"},
    {"Username", 144, 68, 1057, ""},
    {"Password", 212, 68, 1058, ""},
    {"AddressingType", 280, 16, 1059, "AddrType"},
    {"ExternalIPAddress", 296, 16, 1060, "ExtIpAddr"},
    {"SubnetMask", 312, 16, 1061, "SubMask"},
    {"DefaultGateway", 328, 16, 1062, "DefaultGateWay"},
    {"DNSEnabled", 344, 8, 1063, "DnsEnable"},
    {"DNSServers", 352, 64, 1064, "DnsServers"},
    {"MACAddress", 416, 32, 1065, ""},
    {"ConnectionTrigger", 448, 16, 1066, "ConTrigger"},
    {"IPv6IPAddressOrigin", 464, 32, 1067, "Ipv6Origin"},
    {"IPv6IPAddress", 496, 64, 1068, "Ipv6Addr"},
    {"IPv6DNSServers", 560, 128, 1069, "Ipv6DnsServer"},
    {"IPv6PrefixDelegationEnabled", 688, 8, 1070, "Ipv6PrefixDelegationEnable"},
    {"IPv6PrefixOrigin", 696, 32, 1071, "Ipv6PrefixOrigin"},
    {"IPv6Prefix", 728, 64, 1072, "Ipv6Prefix"},
    {"IPv6PrefixPltime", 792, 40, 1073, "Ipv6PrefixPlTime"},
    {"IPv6PrefixVltime", 832, 40, 1074, "Ipv6PrefixVlTime"},
    {"IPv6DefaultGateway", 872, 65, 1075, "Ipv6DefaultGateway"},
    {"IPv6DsliteEnable", 937, 8, 1076, "Ipv6DeliteEnable"},
    {"IPv6AftrMode", 945, 8, 1077, "Ipv6AftrMode"},
    {"IPv6AftrAddress", 953, 64, 1078, "Ipv6AftrAddr"},
    {"ServiceList", 1017, 32, 1079, "ServiceList"},
};

}  // namespace wap::test

#endif
