// Requests and replies of the WAN and PON status queries, as they travel. Most answers are texts
// that "app_m" writes itself.
#ifndef WAP_RECORDS_ACCESS_INFO_H
#define WAP_RECORDS_ACCESS_INFO_H

#include <stdint.h>

namespace wap {

// RPC ids served by "app_m", each with an AccessRequest. The first four name a WAN connection.
/// @reply text kWanStatsSize
inline constexpr uint32_t kRpcGetWanStats = 0x4710308A;
/// @reply text kWanInfoSize
inline constexpr uint32_t kRpcGetWanInfo = 0x4710308B;
/// @reply text kWanBandwidthSize
inline constexpr uint32_t kRpcGetWanBandwidth = 0x4710308C;
/// @reply text kWanStatusSize
inline constexpr uint32_t kRpcGetWanStatus = 0x4710308D;
inline constexpr uint32_t kRpcGetInternetWan = 0x4710308E;
/// @reply text kPonPhyStatusSize
inline constexpr uint32_t kRpcGetPonPhyStatus = 0x4710308F;
inline constexpr uint32_t kRpcGetPonUpTime = 0x471030D0;
/// @reply text kPonRegStatusSize
inline constexpr uint32_t kRpcGetPonRegStatus = 0x471030D1;
/// @reply text kUplinkStatsSize
inline constexpr uint32_t kRpcGetUplinkStats = 0x471030D2;

// How long the answers in text may be, in bytes; one that fills its size has no zero.
inline constexpr uint32_t kWanStatsSize = 128;
inline constexpr uint32_t kWanInfoSize = 2048;
inline constexpr uint32_t kWanBandwidthSize = 128;
inline constexpr uint32_t kWanStatusSize = 512;
inline constexpr uint32_t kPonPhyStatusSize = 512;
inline constexpr uint32_t kPonRegStatusSize = 128;
inline constexpr uint32_t kUplinkStatsSize = 128;

/// What "app_m" answers about a PON that has no answer to give; Java is told apart from other
/// failures.
inline constexpr uint32_t kErrPonUnknown = 0xFFFFFFFE;

#pragma pack(push, 1)

/// The request of every query here.
struct AccessRequest {
    uint32_t uiWanIndex;  ///< 0 where no WAN connection is asked about
};
static_assert(sizeof(AccessRequest) == 4);

/// Reply of kRpcGetInternetWan.
struct InternetWanReply {
    uint32_t uiWanIndex;
};
static_assert(sizeof(InternetWanReply) == 4);

/// Reply of kRpcGetPonUpTime, in the answering process's unit.
struct PonUpTimeReply {
    uint32_t uiUpTime;
};
static_assert(sizeof(PonUpTimeReply) == 4);

#pragma pack(pop)

}  // namespace wap

#endif
