// Requests, replies and notices of the traffic monitoring registry, as they travel. The addresses
// of one call are a text, joined by commas, in a bulk block.
#ifndef WAP_RECORDS_TRAFFIC_MONITOR_H
#define WAP_RECORDS_TRAFFIC_MONITOR_H

#include <stddef.h>
#include <stdint.h>
#include <vt_ssp_basic.h>

namespace wap {

// RPC ids served by "gulm"; the last one is asked with the word 0.
/// @block text
inline constexpr uint32_t kRpcAddMonitoredAddresses = 0x48304173;
/// @block text
inline constexpr uint32_t kRpcDelMonitoredAddresses = 0x48304174;
/// @block text
inline constexpr uint32_t kRpcGetMonitoredAddresses = 0x483041A5;

/// Type of the message without reply that tells "app_m" of a change. It is the descriptor of a bulk
/// block.
/// @block TrafficMonitorNotice then text
inline constexpr uint32_t kMsgTrafficMonitorChanged = 39;

/// The first byte of a notice.
inline constexpr uint8_t kNoticeDel = 0;
inline constexpr uint8_t kNoticeAdd = 1;

#pragma pack(push, 1)

/// Request of kRpcAddMonitoredAddresses and kRpcDelMonitoredAddresses.
struct TrafficMonitorOperReq {
    VDataDesc stAddrList;  ///< names a block with the addresses and the text's zero
    char acBundleName[256];
};
static_assert(offsetof(TrafficMonitorOperReq, stAddrList) == 0);
static_assert(offsetof(TrafficMonitorOperReq, acBundleName) == 12);
static_assert(sizeof(TrafficMonitorOperReq) == 268);

/// Reply of the same.
struct TrafficMonitorOperReply {
    uint32_t uiUnused;
};
static_assert(sizeof(TrafficMonitorOperReply) == 4);

/// What a notice's block begins with. The addresses and the text's zero follow.
struct TrafficMonitorNotice {
    uint8_t ucOperation;  ///< kNoticeAdd or kNoticeDel
    char acBundleName[128];
};
static_assert(offsetof(TrafficMonitorNotice, ucOperation) == 0);
static_assert(offsetof(TrafficMonitorNotice, acBundleName) == 1);
static_assert(sizeof(TrafficMonitorNotice) == 129);

/// Reply of kRpcGetMonitoredAddresses. The block's text holds a record for each bundle, with
/// semicolons between them: the bundle's name and then, from its "[" on, a JSON array of addresses.
/// Lengths of 0 stand for an empty registry.
struct TrafficMonitorInfoReply {
    uint32_t uiBundles;
    uint32_t uiAddresses;
    VDataDesc stRegistry;
};
static_assert(offsetof(TrafficMonitorInfoReply, uiBundles) == 0);
static_assert(offsetof(TrafficMonitorInfoReply, uiAddresses) == 4);
static_assert(offsetof(TrafficMonitorInfoReply, stRegistry) == 8);
static_assert(sizeof(TrafficMonitorInfoReply) == 20);

#pragma pack(pop)

}  // namespace wap

#endif
