// Requests and replies about the gateway's IPTV service, as they travel.
#ifndef WAP_RECORDS_IPTV_H
#define WAP_RECORDS_IPTV_H

#include <stddef.h>
#include <stdint.h>

namespace wap {

// RPC ids served by "gulm". The first is asked with the word 0.
inline constexpr uint32_t kRpcGetIptvWan = 0x47317140;
inline constexpr uint32_t kRpcGetIptvWanStatus = 0x47317145;
// RPC id served by "igmp", asked with the word 0.
inline constexpr uint32_t kRpcGetMulticastUserNum = 0x47305019;

/// The status of a connection that is down; what the others stand for is "gulm"'s affair.
inline constexpr uint32_t kIptvWanDisconnected = 3;
/// Multicast VLANs below this one are valid, 0 among them.
inline constexpr uint32_t kMulticastVlanEnd = 4095;

#pragma pack(push, 1)

/// Reply of kRpcGetIptvWan.
struct IptvWanInfo {
    uint32_t uiWanIndex;
    uint32_t uiStatus;
    uint32_t uiServiceType;
    uint32_t uiIpv4Enable;  ///< 0 is off
    uint16_t usIpv4Mvlan;
    uint16_t usIpv6Mvlan;
};
static_assert(offsetof(IptvWanInfo, uiWanIndex) == 0);
static_assert(offsetof(IptvWanInfo, uiStatus) == 4);
static_assert(offsetof(IptvWanInfo, uiServiceType) == 8);
static_assert(offsetof(IptvWanInfo, uiIpv4Enable) == 12);
static_assert(offsetof(IptvWanInfo, usIpv4Mvlan) == 16);
static_assert(offsetof(IptvWanInfo, usIpv6Mvlan) == 18);
static_assert(sizeof(IptvWanInfo) == 20);

/// Request of kRpcGetIptvWanStatus.
struct IptvWanStatusReq {
    uint32_t uiWanIndex;
};
static_assert(sizeof(IptvWanStatusReq) == 4);

/// Reply of kRpcGetIptvWanStatus.
struct IptvWanStatus {
    uint32_t uiStatus;
};
static_assert(sizeof(IptvWanStatus) == 4);

/// Reply of kRpcGetMulticastUserNum.
struct MulticastUserNum {
    uint32_t uiCount;
};
static_assert(sizeof(MulticastUserNum) == 4);

#pragma pack(pop)

}  // namespace wap

#endif
