// Requests and replies of the LAN address and DHCP server services, as they travel.
#ifndef WAP_RECORDS_LAN_ADDRESS_H
#define WAP_RECORDS_LAN_ADDRESS_H

#include <stddef.h>
#include <stdint.h>

namespace wap {

/// The reply is the answer's text.
/// @reply text 128
inline constexpr uint32_t kRpcGetLanHostIp = 0x471030A0;
// Served by "gulm".
inline constexpr uint32_t kRpcGetLanDhcp = 0x47302001;
// Served by "osgi_proxy". The replies are a word.
inline constexpr uint32_t kRpcSetLanHostIp = 0x47209098;
inline constexpr uint32_t kRpcSetLanDhcp = 0x47209099;

#pragma pack(push, 1)

/// Which LAN is meant: the first, and there is no other.
struct LanIndex {
    uint32_t uiOne;  ///< always 1
};
static_assert(sizeof(LanIndex) == 4);

/// Request of kRpcSetLanHostIp.
struct LanAddressSet {
    uint32_t uiLan;     ///< always 1
    uint32_t uiDevice;  ///< always 1
    uint8_t aucUnused8[4];
    char acAddress[16];
    char acMask[16];
    uint8_t aucUnused44[152];
    uint8_t ucChanged;  ///< kLanAddressChanged
    uint8_t aucUnused197[3];
};
static_assert(offsetof(LanAddressSet, uiLan) == 0);
static_assert(offsetof(LanAddressSet, uiDevice) == 4);
static_assert(offsetof(LanAddressSet, aucUnused8) == 8);
static_assert(offsetof(LanAddressSet, acAddress) == 12);
static_assert(offsetof(LanAddressSet, acMask) == 28);
static_assert(offsetof(LanAddressSet, aucUnused44) == 44);
static_assert(offsetof(LanAddressSet, ucChanged) == 196);
static_assert(offsetof(LanAddressSet, aucUnused197) == 197);
static_assert(sizeof(LanAddressSet) == 200);

/// Request of kRpcSetLanDhcp.
struct DhcpSet {
    uint32_t uiLan;  ///< always 1
    uint8_t aucUnused4[4];
    uint32_t uiEnable;  ///< 1 on, 0 off
    uint8_t aucUnused12[4];
    uint32_t uiLease;
    uint8_t aucUnused20[4];
    char acPoolStart[16];
    char acPoolEnd[16];
    uint8_t aucUnused56[1825];
    uint8_t ucChanged;  ///< kDhcpChanged
    uint8_t aucUnused1882[7];
};
static_assert(offsetof(DhcpSet, uiLan) == 0);
static_assert(offsetof(DhcpSet, aucUnused4) == 4);
static_assert(offsetof(DhcpSet, uiEnable) == 8);
static_assert(offsetof(DhcpSet, aucUnused12) == 12);
static_assert(offsetof(DhcpSet, uiLease) == 16);
static_assert(offsetof(DhcpSet, aucUnused20) == 20);
static_assert(offsetof(DhcpSet, acPoolStart) == 24);
static_assert(offsetof(DhcpSet, acPoolEnd) == 40);
static_assert(offsetof(DhcpSet, aucUnused56) == 56);
static_assert(offsetof(DhcpSet, ucChanged) == 1881);
static_assert(offsetof(DhcpSet, aucUnused1882) == 1882);
static_assert(sizeof(DhcpSet) == 1889);

/// Reply of kRpcGetLanDhcp. Texts should end with a zero; read them as if they might not.
struct DhcpSettings {
    uint8_t aucUnused0[4];
    uint32_t uiEnable;  ///< 1 on; anything else off
    uint8_t aucUnused8[4];
    uint32_t uiLease;
    uint8_t aucUnused16[4];
    char acPoolStart[16];
    char acPoolEnd[16];
    uint8_t aucUnused52[1938];
};
static_assert(offsetof(DhcpSettings, aucUnused0) == 0);
static_assert(offsetof(DhcpSettings, uiEnable) == 4);
static_assert(offsetof(DhcpSettings, aucUnused8) == 8);
static_assert(offsetof(DhcpSettings, uiLease) == 12);
static_assert(offsetof(DhcpSettings, aucUnused16) == 16);
static_assert(offsetof(DhcpSettings, acPoolStart) == 20);
static_assert(offsetof(DhcpSettings, acPoolEnd) == 36);
static_assert(offsetof(DhcpSettings, aucUnused52) == 52);
static_assert(sizeof(DhcpSettings) == 1990);

#pragma pack(pop)

/// Which settings a LanAddressSet brings: the address (bit 3) and the mask (bit 4).
inline constexpr uint8_t kLanAddressChanged = 1u << 3 | 1u << 4;
/// Which settings a DhcpSet brings, in the order of its fields.
inline constexpr uint8_t kDhcpChanged = 1u << 0 | 1u << 2 | 1u << 4 | 1u << 6 | 1u << 7;
static_assert(kLanAddressChanged == 0x18);
static_assert(kDhcpChanged == 0xD5);

}  // namespace wap

#endif
