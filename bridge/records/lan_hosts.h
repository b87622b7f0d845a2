// Requests and replies of the LAN host services, as they travel.
#ifndef WAP_RECORDS_LAN_HOSTS_H
#define WAP_RECORDS_LAN_HOSTS_H

#include <stddef.h>
#include <stdint.h>

namespace wap {

// Served by "app_m". The replies are texts (speed, gateway name) or the descriptor of a bulk block
// that holds one.
/// About the host with this MAC address, a text with its zero.
/// @request text
/// @reply text 128
inline constexpr uint32_t kRpcGetLanHostSpeed = 0x471030B0;
/// @request MacSlot[] or EveryHost
/// @block text
inline constexpr uint32_t kRpcGetLanHostInfoByMac = 0x471030B1;
/// @block text
inline constexpr uint32_t kRpcGetLanHostInfoByClass = 0x471030B2;
/// @block text
inline constexpr uint32_t kRpcGetLanHostInfoByInterface = 0x471030B3;
/// @request MacSlot[] or EveryHost
/// @block text
inline constexpr uint32_t kRpcGetLanHostStats = 0x471030B4;
/// @reply text 256
inline constexpr uint32_t kRpcGetGatewayName = 0x4830512A;

// Served by "osgi_proxy". The replies are a word.
inline constexpr uint32_t kRpcSetLanHostName = 0x4720909D;
/// To this name, a text with its zero.
/// @request text 257
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
