// Requests and replies of the static routes, as they travel. A field whose width the services keep
// to themselves reaches to the next field that is known, or to the record's end.
#ifndef WAP_RECORDS_STATIC_ROUTE_H
#define WAP_RECORDS_STATIC_ROUTE_H

#include <stddef.h>
#include <stdint.h>

namespace wap {

// RPC ids served by "osgi_proxy".
inline constexpr uint32_t kRpcAddIpv4Route = 0x47209071;
inline constexpr uint32_t kRpcDelIpv4Route = 0x47209072;
inline constexpr uint32_t kRpcAddIpv6Route = 0x47209073;
inline constexpr uint32_t kRpcDelIpv6Route = 0x47209074;
// RPC ids served by "gulm". Those of the ids have no request of their own.
inline constexpr uint32_t kRpcGetIpv4RouteIds = 0x47304006;
inline constexpr uint32_t kRpcGetIpv4Route = 0x47304002;
inline constexpr uint32_t kRpcGetIpv6RouteIds = 0x47100009;
inline constexpr uint32_t kRpcGetIpv6Route = 0x47100004;
/// @block Ipv4CurrentRoute[] or Ipv6CurrentRoute[]
inline constexpr uint32_t kRpcGetCurrentRoutes = 0x46345865;

/// What the first word of an IPv4 addition says.
inline constexpr uint32_t kAddIpv4RouteWord = 1;
/// Families of kRpcGetCurrentRoutes.
inline constexpr uint32_t kRouteFamilyIpv4 = 0;
inline constexpr uint32_t kRouteFamilyIpv6 = 1;
/// The most routes of one family that can be listed.
inline constexpr uint32_t kRouteIdsMax = 192;

#pragma pack(push, 1)

/// Request of kRpcAddIpv4Route.
struct AddIpv4RouteRequest {
    uint32_t uiOne;  ///< kAddIpv4RouteWord
    char acDest[16];
    char acMask[16];
    char acGateway[16];     ///< empty for none
    char acConnection[32];  ///< connection name
};
static_assert(offsetof(AddIpv4RouteRequest, uiOne) == 0);
static_assert(offsetof(AddIpv4RouteRequest, acDest) == 4);
static_assert(offsetof(AddIpv4RouteRequest, acMask) == 20);
static_assert(offsetof(AddIpv4RouteRequest, acGateway) == 36);
static_assert(offsetof(AddIpv4RouteRequest, acConnection) == 52);
static_assert(sizeof(AddIpv4RouteRequest) == 84);

/// Request of kRpcAddIpv6Route.
struct AddIpv6RouteRequest {
    char acDestPrefix[64];  ///< address/length
    char acNextHop[64];     ///< empty for none
    char acConnection[32];  ///< connection name
    uint8_t aucUnused[224];
};
static_assert(offsetof(AddIpv6RouteRequest, acDestPrefix) == 0);
static_assert(offsetof(AddIpv6RouteRequest, acNextHop) == 64);
static_assert(offsetof(AddIpv6RouteRequest, acConnection) == 128);
static_assert(offsetof(AddIpv6RouteRequest, aucUnused) == 160);
static_assert(sizeof(AddIpv6RouteRequest) == 384);

/// Reply of the two additions; request of the two deletions, which have no reply of their own, and
/// of kRpcGetIpv4Route and kRpcGetIpv6Route.
struct RouteId {
    uint32_t uiInstId;
};
static_assert(offsetof(RouteId, uiInstId) == 0);
static_assert(sizeof(RouteId) == 4);

/// Reply of kRpcGetIpv4RouteIds and kRpcGetIpv6RouteIds.
struct RouteIds {
    uint32_t uiCount;
    uint32_t auiInstIds[kRouteIdsMax];
};
static_assert(offsetof(RouteIds, uiCount) == 0);
static_assert(offsetof(RouteIds, auiInstIds) == 4);
static_assert(sizeof(RouteIds) == 772);

/// Reply of kRpcGetIpv4Route. Texts should end with a zero; read them as if they might not.
struct Ipv4StaticRoute {
    uint8_t aucUnused1[21];
    uint32_t uiStatic;  ///< 0 for a route that nobody set; not on a word boundary
    uint8_t aucUnused2[9];
    char acDest[16];
    char acMask[16];
    uint8_t aucUnused3[96];
    char acGateway[16];
    char acLanInterface[265];
    char acConnection[288];  ///< connection name
};
static_assert(offsetof(Ipv4StaticRoute, aucUnused1) == 0);
static_assert(offsetof(Ipv4StaticRoute, uiStatic) == 21);
static_assert(offsetof(Ipv4StaticRoute, aucUnused2) == 25);
static_assert(offsetof(Ipv4StaticRoute, acDest) == 34);
static_assert(offsetof(Ipv4StaticRoute, acMask) == 50);
static_assert(offsetof(Ipv4StaticRoute, aucUnused3) == 66);
static_assert(offsetof(Ipv4StaticRoute, acGateway) == 162);
static_assert(offsetof(Ipv4StaticRoute, acLanInterface) == 178);
static_assert(offsetof(Ipv4StaticRoute, acConnection) == 443);
static_assert(sizeof(Ipv4StaticRoute) == 731);

/// Reply of kRpcGetIpv6Route. Texts as in Ipv4StaticRoute.
struct Ipv6StaticRoute {
    uint8_t aucUnused[69];
    char acDestPrefix[64];  ///< address/length
    char acNextHop[64];
    char acInterface[424];  ///< connection name, or a LAN interface
};
static_assert(offsetof(Ipv6StaticRoute, aucUnused) == 0);
static_assert(offsetof(Ipv6StaticRoute, acDestPrefix) == 69);
static_assert(offsetof(Ipv6StaticRoute, acNextHop) == 133);
static_assert(offsetof(Ipv6StaticRoute, acInterface) == 197);
static_assert(sizeof(Ipv6StaticRoute) == 621);

/// Request of kRpcGetCurrentRoutes.
struct CurrentRoutesRequest {
    uint32_t uiFamily;
};
static_assert(offsetof(CurrentRoutesRequest, uiFamily) == 0);
static_assert(sizeof(CurrentRoutesRequest) == 4);

/// Reply of kRpcGetCurrentRoutes: how many routes there are, and the descriptor of the bulk block
/// that holds them.
struct CurrentRoutesReply {
    uint32_t uiNum;
    uint32_t uiDataID;
    uint32_t uiOriginalLen;
    uint32_t uiCompressedLen;
};
static_assert(offsetof(CurrentRoutesReply, uiNum) == 0);
static_assert(offsetof(CurrentRoutesReply, uiDataID) == 4);
static_assert(offsetof(CurrentRoutesReply, uiOriginalLen) == 8);
static_assert(offsetof(CurrentRoutesReply, uiCompressedLen) == 12);
static_assert(sizeof(CurrentRoutesReply) == 16);

/// An IPv4 route that is in force, in the bulk block. Texts as in Ipv4StaticRoute.
struct Ipv4CurrentRoute {
    char acDest[16];
    char acMask[16];
    char acGateway[16];
    char acInterface[64];  ///< connection name, or another interface
};
static_assert(offsetof(Ipv4CurrentRoute, acDest) == 0);
static_assert(offsetof(Ipv4CurrentRoute, acMask) == 16);
static_assert(offsetof(Ipv4CurrentRoute, acGateway) == 32);
static_assert(offsetof(Ipv4CurrentRoute, acInterface) == 48);
static_assert(sizeof(Ipv4CurrentRoute) == 112);

/// An IPv6 route that is in force, in the bulk block. Texts as in Ipv4StaticRoute.
struct Ipv6CurrentRoute {
    char acDestPrefix[48];
    char acInterface[32];  ///< connection name, or another interface
    char acNextHop[140];
};
static_assert(offsetof(Ipv6CurrentRoute, acDestPrefix) == 0);
static_assert(offsetof(Ipv6CurrentRoute, acInterface) == 48);
static_assert(offsetof(Ipv6CurrentRoute, acNextHop) == 80);
static_assert(sizeof(Ipv6CurrentRoute) == 220);

#pragma pack(pop)

}  // namespace wap

#endif
