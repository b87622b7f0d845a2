// Requests and replies for the creation and deletion of WAN connections, as they travel.
#ifndef WAP_RECORDS_WAN_CONFIG_H
#define WAP_RECORDS_WAN_CONFIG_H

#include <stddef.h>
#include <stdint.h>

namespace wap {

// RPC ids served by "osgi_proxy".
inline constexpr uint32_t kRpcAddWan = 0x47209076;
inline constexpr uint32_t kRpcDelWan = 0x47209077;
// RPC ids served by "gulm".
inline constexpr uint32_t kRpcCountIpConns = 0x4730100D;
inline constexpr uint32_t kRpcCountPppConns = 0x47301012;

/// The operation of a deletion that is for an empty connection device; any other operation is the
/// type of the connection to delete.
inline constexpr uint32_t kDelConnDevice = 6;

#pragma pack(push, 1)

/// Request of kRpcAddWan.
struct WanAddReq {
    uint32_t uiVlanMode;
    uint32_t uiVlan;  ///< 0 in VLAN mode 0
    char acConnType[16];
};
static_assert(offsetof(WanAddReq, uiVlanMode) == 0);
static_assert(offsetof(WanAddReq, uiVlan) == 4);
static_assert(offsetof(WanAddReq, acConnType) == 8);
static_assert(sizeof(WanAddReq) == 24);

/// Reply of kRpcAddWan.
struct WanAddReply {
    uint32_t uiWanIndex;
};
static_assert(sizeof(WanAddReply) == 4);

/// Request of kRpcDelWan, which has no reply.
struct WanDelReq {
    uint32_t uiOperation;
    uint32_t uiWanDev;
    uint32_t uiConnDev;
    uint32_t uiConn;
};
static_assert(offsetof(WanDelReq, uiOperation) == 0);
static_assert(offsetof(WanDelReq, uiWanDev) == 4);
static_assert(offsetof(WanDelReq, uiConnDev) == 8);
static_assert(offsetof(WanDelReq, uiConn) == 12);
static_assert(sizeof(WanDelReq) == 16);

/// Request of kRpcCountIpConns and kRpcCountPppConns.
struct WanConnCountReq {
    uint32_t uiWanDev;
    uint32_t uiConnDev;
};
static_assert(offsetof(WanConnCountReq, uiWanDev) == 0);
static_assert(offsetof(WanConnCountReq, uiConnDev) == 4);
static_assert(sizeof(WanConnCountReq) == 8);

/// Reply of both.
struct WanConnCountReply {
    uint32_t uiCount;  ///< connections of the kind that the connection device has
    uint8_t aucUnused[512];
};
static_assert(offsetof(WanConnCountReply, uiCount) == 0);
static_assert(offsetof(WanConnCountReply, aucUnused) == 4);
static_assert(sizeof(WanConnCountReply) == 516);

#pragma pack(pop)

}  // namespace wap

#endif
