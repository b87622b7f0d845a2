// Requests and replies of the LAN host services, as they travel.
#ifndef WAP_RECORDS_LAN_HOSTS_H
#define WAP_RECORDS_LAN_HOSTS_H

#include <stddef.h>
#include <stdint.h>

namespace wap {

// Served by "app_m". The replies are texts (speed, gateway name) or the descriptor of a bulk block
// that holds one.
/// Request: a MAC text with its zero. Reply: a text of 128 bytes at most.
inline constexpr uint32_t kRpcGetLanHostSpeed = 0x471030B0;
/// Request: a row of MacSlot, as many as the length says, or one EveryHost.
inline constexpr uint32_t kRpcGetLanHostInfoByMac = 0x471030B1;
/// Request: a HostTextQuery.
inline constexpr uint32_t kRpcGetLanHostInfoByClass = 0x471030B2;
inline constexpr uint32_t kRpcGetLanHostInfoByInterface = 0x471030B3;
/// Request: as kRpcGetLanHostInfoByMac.
inline constexpr uint32_t kRpcGetLanHostStats = 0x471030B4;
/// Request: a word of 0. Reply: a text of 256 bytes at most.
inline constexpr uint32_t kRpcGetGatewayName = 0x4830512A;

// Served by "osgi_proxy". The replies are a word.
/// Request: a HostNameSet.
inline constexpr uint32_t kRpcSetLanHostName = 0x4720909D;
/// Request: the name's text with its zero.
inline constexpr uint32_t kRpcSetGatewayName = 0x4720909E;

#pragma pack(push, 1)

/// One MAC address of a list. The list has no count: its length tells.
struct MacSlot {
    char acMac[32];
};
static_assert(sizeof(MacSlot) == 32);

/// In the place of a list: every host there is.
struct EveryHost {
    uint32_t uiZero;
};
static_assert(sizeof(EveryHost) == 4);

/// A host class, or the name of an interface.
struct HostTextQuery {
    char acText[16];
};
static_assert(sizeof(HostTextQuery) == 16);

/// Request of kRpcSetLanHostName.
struct HostNameSet {
    uint32_t uiZero;
    char acMac[32];
    char acName[257];
    uint8_t aucPadding[3];
};
static_assert(offsetof(HostNameSet, uiZero) == 0);
static_assert(offsetof(HostNameSet, acMac) == 4);
static_assert(offsetof(HostNameSet, acName) == 36);
static_assert(offsetof(HostNameSet, aucPadding) == 293);
static_assert(sizeof(HostNameSet) == 296);

#pragma pack(pop)

}  // namespace wap

#endif
