// Requests and replies of the network diagnostics, as they travel.
#ifndef WAP_RECORDS_DIAGNOSTICS_H
#define WAP_RECORDS_DIAGNOSTICS_H

#include <stddef.h>
#include <stdint.h>
#include <vt_ssp_basic.h>

namespace wap {

// RPC ids served by "app_m". Results are asked for with the word 0.
inline constexpr uint32_t kRpcStartPing = 0x47103088;
/// @reply text kPingResultMax
inline constexpr uint32_t kRpcGetPingResult = 0x47103089;
inline constexpr uint32_t kRpcStartTraceRoute = 0x47103090;
/// @block text
inline constexpr uint32_t kRpcGetTraceRouteResult = 0x47103091;
inline constexpr uint32_t kRpcStartDns = 0x47103096;
/// @block text
inline constexpr uint32_t kRpcGetDnsResult = 0x47103097;

/// Room for the reply of kRpcGetPingResult, which is the result's text itself.
inline constexpr uint32_t kPingResultMax = 512;

#pragma pack(push, 1)

/// Request of kRpcStartPing. A parameter that was not told is 0.
struct PingDiagRequest {
    uint32_t uiWanIndex;
    uint8_t aucZero[256];
    char acHost[256];
    uint32_t uiRepetitions;
    uint32_t uiTimeout;
    uint32_t uiDataBlockSize;
    uint32_t uiDscp;
};
static_assert(offsetof(PingDiagRequest, uiWanIndex) == 0);
static_assert(offsetof(PingDiagRequest, aucZero) == 4);
static_assert(offsetof(PingDiagRequest, acHost) == 260);
static_assert(offsetof(PingDiagRequest, uiRepetitions) == 516);
static_assert(offsetof(PingDiagRequest, uiTimeout) == 520);
static_assert(offsetof(PingDiagRequest, uiDataBlockSize) == 524);
static_assert(offsetof(PingDiagRequest, uiDscp) == 528);
static_assert(sizeof(PingDiagRequest) == 532);

/// Request of kRpcStartDns.
struct DnsDiagRequest {
    uint32_t uiWanIndex;
    char acHost[256];
    char acServers[512];
    char acPara[512];  ///< the caller's parameters, unread
};
static_assert(offsetof(DnsDiagRequest, uiWanIndex) == 0);
static_assert(offsetof(DnsDiagRequest, acHost) == 4);
static_assert(offsetof(DnsDiagRequest, acServers) == 260);
static_assert(offsetof(DnsDiagRequest, acPara) == 772);
static_assert(sizeof(DnsDiagRequest) == 1284);

/// Request of kRpcStartTraceRoute. No text here is longer than 254 bytes.
struct TraceRouteDiagRequest {
    uint32_t uiWanIndex;
    char acHost[256];
    char acPara[256];  ///< the caller's parameters, unread
};
static_assert(offsetof(TraceRouteDiagRequest, uiWanIndex) == 0);
static_assert(offsetof(TraceRouteDiagRequest, acHost) == 4);
static_assert(offsetof(TraceRouteDiagRequest, acPara) == 260);
static_assert(sizeof(TraceRouteDiagRequest) == 516);

/// Reply of the three starts; Java gets the status as it is.
struct DiagStartReply {
    uint32_t uiStatus;
};
static_assert(sizeof(DiagStartReply) == 4);

/// Reply of kRpcGetDnsResult and kRpcGetTraceRouteResult.
struct DiagResultReply {
    uint32_t uiStatus;  ///< not 0: there is no text, and this is what Java is told instead
    VDataDesc stText;
};
static_assert(offsetof(DiagResultReply, uiStatus) == 0);
static_assert(offsetof(DiagResultReply, stText) == 4);
static_assert(sizeof(DiagResultReply) == 16);

#pragma pack(pop)

}  // namespace wap

#endif
