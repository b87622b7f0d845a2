// Requests and replies about the numbered flows that traffic is put into, as they travel.
#ifndef WAP_RECORDS_TRAFFIC_FLOW_H
#define WAP_RECORDS_TRAFFIC_FLOW_H

#include <stddef.h>
#include <stdint.h>
#include <vt_ssp_basic.h>

namespace wap {

// RPC ids served by "gulm".
inline constexpr uint32_t kRpcAddFlowTraffic = 0x4830419B;
inline constexpr uint32_t kRpcDelFlowTraffic = 0x4830419C;
inline constexpr uint32_t kRpcDelAllFlowTraffic = 0x4830419D;
/// @block FlowTrafficRec[]
inline constexpr uint32_t kRpcGetFlowMembers = 0x4830419E;
inline constexpr uint32_t kRpcGetFlowStats = 0x4830419F;
inline constexpr uint32_t kRpcGetFlowSpeed = 0x483041A0;
inline constexpr uint32_t kRpcGetFlowSpeedLimit = 0x483041A1;
inline constexpr uint32_t kRpcSetFlowSpeedLimit = 0x483041A2;
inline constexpr uint32_t kRpcGetFlowDscp = 0x483041A3;
inline constexpr uint32_t kRpcSetFlowDscp = 0x483041A4;

#pragma pack(push, 1)

/// A member of a flow: the request of kRpcAddFlowTraffic and kRpcDelFlowTraffic, and a row of the
/// table of members. Texts should end with a zero; read them as if they might not.
struct FlowTrafficRec {
    char acAddress[256];  ///< empty when the member has none
    char acPort[12];
    char acFlow[4];  ///< the flow's number, decimal
};
static_assert(offsetof(FlowTrafficRec, acAddress) == 0);
static_assert(offsetof(FlowTrafficRec, acPort) == 256);
static_assert(offsetof(FlowTrafficRec, acFlow) == 268);
static_assert(sizeof(FlowTrafficRec) == 272);

/// Request of kRpcDelAllFlowTraffic and of everything that is asked about a flow.
struct FlowReq {
    uint32_t uiFlow;
};
static_assert(sizeof(FlowReq) == 4);

/// Reply of kRpcGetFlowMembers.
struct FlowMembersReply {
    uint32_t uiCount;
    VDataDesc stTable;  ///< of uiCount FlowTrafficRec, when that is not 0
};
static_assert(offsetof(FlowMembersReply, uiCount) == 0);
static_assert(offsetof(FlowMembersReply, stTable) == 4);
static_assert(sizeof(FlowMembersReply) == 16);

/// Reply of kRpcGetFlowStats.
struct FlowStats {
    uint64_t ulUpBytes;
    uint64_t ulDownBytes;
};
static_assert(offsetof(FlowStats, ulUpBytes) == 0);
static_assert(offsetof(FlowStats, ulDownBytes) == 8);
static_assert(sizeof(FlowStats) == 16);

/// Reply of kRpcGetFlowSpeed and kRpcGetFlowSpeedLimit.
struct FlowSpeed {
    int32_t iUp;
    int32_t iDown;
};
static_assert(offsetof(FlowSpeed, iUp) == 0);
static_assert(offsetof(FlowSpeed, iDown) == 4);
static_assert(sizeof(FlowSpeed) == 8);

/// Request of kRpcSetFlowSpeedLimit.
struct FlowSpeedLimitReq {
    uint32_t uiFlow;
    FlowSpeed stLimit;
};
static_assert(offsetof(FlowSpeedLimitReq, uiFlow) == 0);
static_assert(offsetof(FlowSpeedLimitReq, stLimit) == 4);
static_assert(sizeof(FlowSpeedLimitReq) == 12);

/// Reply of kRpcGetFlowDscp.
struct FlowDscp {
    uint32_t uiDscp;
};
static_assert(sizeof(FlowDscp) == 4);

/// Request of kRpcSetFlowDscp.
struct FlowDscpReq {
    uint32_t uiFlow;
    uint32_t uiDscp;
};
static_assert(offsetof(FlowDscpReq, uiFlow) == 0);
static_assert(offsetof(FlowDscpReq, uiDscp) == 4);
static_assert(sizeof(FlowDscpReq) == 8);

#pragma pack(pop)

}  // namespace wap

#endif
