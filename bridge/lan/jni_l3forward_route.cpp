#include "lan/jni_l3forward_route.h"

#include "common/fields.h"
#include "common/jni_common.h"
#include "common/list_answer.h"
#include "common/owners.h"
#include "common/report.h"
#include "common/requests.h"
#include "lan/route_names.h"
#include "records/static_route.h"

using namespace wap;

namespace {

constexpr GeneralRoute kAddIpv4 = {"osgi_proxy", 0, kRpcAddIpv4Route};
constexpr GeneralRoute kDelIpv4 = {"osgi_proxy", 0, kRpcDelIpv4Route};
constexpr GeneralRoute kAddIpv6 = {"osgi_proxy", 0, kRpcAddIpv6Route};
constexpr GeneralRoute kDelIpv6 = {"osgi_proxy", 0, kRpcDelIpv6Route};
constexpr GeneralRoute kAskIpv4Ids = {"gulm", 53, kRpcGetIpv4RouteIds};
constexpr GeneralRoute kAskIpv4Route = {"gulm", 53, kRpcGetIpv4Route};
constexpr GeneralRoute kAskIpv6Ids = {"gulm", 53, kRpcGetIpv6RouteIds};
constexpr GeneralRoute kAskIpv6Route = {"gulm", 53, kRpcGetIpv6Route};
constexpr GeneralRoute kAskCurrent = {"gulm", 53, kRpcGetCurrentRoutes};

/// What each route, and the object around them, may take up in a list's text.
constexpr uint32_t kTextPerRoute = 256;
constexpr uint32_t kErrRefused = 1;
constexpr uint32_t kErrNoList = 1;

// ---- changes ----

/// Whether there is a text, and a field has room for it and its zero.
bool Fits(const char *pcText, uint32_t uiSize) {
    return pcText != nullptr && pcText[0] != '\0' && VT_OS_StrLen(pcText) < uiSize;
}

bool MayRouteThrough(const char *pcInterface) {
    return pcInterface != nullptr && pcInterface[0] != '\0' && !IsLanBridge(pcInterface);
}

/// Completes an addition with its connection's name, and sends it.
template <class Request>
uint32_t SendAddition(SourceSpot stSpot, const GeneralRoute &stRoute, Request &stRequest,
                      const char *pcInterface, uint32_t *puiInstId) {
    uint32_t uiResult = FindConnectionName(pcInterface, stRequest.acConnection);
    RouteId stReply = {};
    if (uiResult == 0) {
        uiResult = Ask(stRoute, stRequest, stReply);
    }
    if (Recorded(stSpot, uiResult) != 0) {
        return uiResult;
    }
    *puiInstId = stReply.uiInstId;
    return 0;
}

uint32_t Delete(SourceSpot stSpot, const GeneralRoute &stRoute, uint32_t uiInstId) {
    return Recorded(stSpot, Tell(stRoute, RouteId{uiInstId}), uiInstId) == 0 ? 0 : kErrFailed;
}

// ---- lists ----

/// Appends a route to a list. The texts between its number and its interface differ by family.
uint32_t AddRow(const JsonValue &stList, uint32_t uiIndex, const char *pcInterface,
                const JsonItem *pstTexts, uint32_t uiTexts) {
    constexpr uint32_t kTextsMax = 3;
    char acShown[kShownNameSize] = {};
    const uint32_t uiResult = ShowInterface(pcInterface, acShown);
    if (uiResult != 0) {
        return Recorded(WAP_SPOT, uiResult, uiIndex);
    }
    const auto iIndex = static_cast<int32_t>(uiIndex);
    JsonItem astItems[kTextsMax + 2] = {
        {"Index", reinterpret_cast<uintptr_t>(&iIndex), kItemIntText, kEmptyAsText}};
    uint32_t uiItems = 1;
    while (uiItems <= kTextsMax && uiItems <= uiTexts) {
        astItems[uiItems] = pstTexts[uiItems - 1];
        ++uiItems;
    }
    astItems[uiItems++] = {"Interface", reinterpret_cast<uintptr_t>(acShown), kItemText,
                           kEmptyAsText};
    return AppendObject(WAP_SPOT, stList, astItems, uiItems)
               ? 0
               : Recorded(WAP_SPOT, kErrNoList, uiIndex);
}

/// Appends a route of either record that has these fields.
template <class Route>
uint32_t AddIpv4Row(const JsonValue &stList, uint32_t uiIndex, const Route &stRoute,
                    const char *pcInterface) {
    const FieldText stDest(stRoute.acDest);
    const FieldText stMask(stRoute.acMask);
    const FieldText stGateway(stRoute.acGateway);
    const JsonItem astTexts[] = {
        {"DestIPAddress", stDest.Word(), kItemText, kEmptyAsText},
        {"DestSubnetMask", stMask.Word(), kItemText, kEmptyAsText},
        {"GatewayIPAddress", stGateway.Word(), kItemText, kEmptyAsText},
    };
    return AddRow(stList, uiIndex, pcInterface, astTexts, 3);
}

/// As AddIpv4Row.
template <class Route>
uint32_t AddIpv6Row(const JsonValue &stList, uint32_t uiIndex, const Route &stRoute,
                    const char *pcInterface) {
    const FieldText stPrefix(stRoute.acDestPrefix);
    const FieldText stNextHop(stRoute.acNextHop);
    const JsonItem astTexts[] = {
        {"DestIPPrefix", stPrefix.Word(), kItemText, kEmptyAsText},
        {"NextHop", stNextHop.Word(), kItemText, kEmptyAsText},
    };
    return AddRow(stList, uiIndex, pcInterface, astTexts, 2);
}

/// Appends a static route, or leaves it out.
uint32_t AddStatic(const JsonValue &stList, uint32_t uiInstId, const Ipv4StaticRoute &stRoute) {
    const FieldText stLanInterface(stRoute.acLanInterface);
    if (stRoute.uiStatic == 0 || IsLanBridge(stLanInterface.Lend())) {
        return 0;
    }
    const FieldText stConnection(stRoute.acConnection);
    return AddIpv4Row(stList, uiInstId, stRoute, stConnection.Lend());
}

uint32_t AddStatic(const JsonValue &stList, uint32_t uiInstId, const Ipv6StaticRoute &stRoute) {
    const FieldText stInterface(stRoute.acInterface);
    if (IsLanBridge(stInterface.Lend())) {
        return 0;
    }
    const FieldText stText(stRoute.acDestPrefix);
    Ipv6Prefix stPrefix = {};
    const uint32_t uiResult = VT_Route6_GetIpStuctFromString(stText.Lend(), &stPrefix);
    if (Recorded(WAP_SPOT, uiResult, uiInstId) != 0) {
        return uiResult;
    }
    return IsDefaultRoute(stPrefix) ? 0 : AddIpv6Row(stList, uiInstId, stRoute, stInterface.Lend());
}

uint32_t AddCurrent(const JsonValue &stList, uint32_t uiIndex, const Ipv4CurrentRoute &stRoute,
                    const char *pcInterface) {
    return AddIpv4Row(stList, uiIndex, stRoute, pcInterface);
}

uint32_t AddCurrent(const JsonValue &stList, uint32_t uiIndex, const Ipv6CurrentRoute &stRoute,
                    const char *pcInterface) {
    return AddIpv6Row(stList, uiIndex, stRoute, pcInterface);
}

/// Asks for the ids of the static routes of a family.
uint32_t AskIds(SourceSpot stSpot, const GeneralRoute &stRoute, RouteIds &stIds) {
    uint32_t uiResult = AskBytes(stRoute, nullptr, 0, stIds);
    if (uiResult == 0 && stIds.uiCount > kRouteIdsMax) {
        uiResult = kErrNoList;
    }
    return Recorded(stSpot, uiResult, stIds.uiCount);
}

/// Lists the static routes of a family: asks for all ids, and for each route.
template <class Route>
uint32_t ListStatic(SourceSpot stSpot, const GeneralRoute &stAskIds, const GeneralRoute &stAskRoute,
                    char **ppcText) {
    if (ppcText == nullptr) {
        return Recorded(stSpot, kErrNullArgument);
    }
    RouteIds stIds = {};
    uint32_t uiResult = AskIds(stSpot, stAskIds, stIds);
    if (uiResult != 0) {
        return uiResult;
    }
    JsonValue stList(JNI_JSON_ObjNewArray());
    if (!stList) {
        return Recorded(stSpot, kErrNoList, stIds.uiCount);
    }
    for (uint32_t i = 0; i < stIds.uiCount; ++i) {
        const RouteId stRequest = {stIds.auiInstIds[i]};
        Route stRoute = {};
        uiResult = Recorded(stSpot, Ask(stAskRoute, stRequest, stRoute), stRequest.uiInstId);
        if (uiResult == 0) {
            uiResult = AddStatic(stList, stRequest.uiInstId, stRoute);
        }
        if (uiResult != 0) {
            return uiResult;
        }
    }
    return ComposeList(stSpot, nullptr, stList, (stIds.uiCount + 1) * kTextPerRoute, ppcText);
}

/// Asks for the routes of a family that are in force, uiNum of uiRouteSize bytes each.
uint32_t FetchCurrent(SourceSpot stSpot, const char *pcQuery, uint32_t uiFamily,
                      uint32_t uiRouteSize, BulkBlock &stBlock, uint32_t &uiNum) {
    CurrentRoutesReply stReply = {};
    uint32_t uiResult = Ask(kAskCurrent, CurrentRoutesRequest{uiFamily}, stReply);
    if (Recorded(stSpot, uiResult, uiFamily) != 0) {
        return uiResult;
    }
    VT_PROC_DBG_TraceS(kTraceEntries, stSpot.pcFile, stSpot.uiLine, 0,
                       "%s uiNum :%u, uivDataID:%u, uiCompressedLen:%u, uiOriginalLen:%u\r\n",
                       pcQuery, stReply.uiNum, stReply.uiDataID, stReply.uiCompressedLen,
                       stReply.uiOriginalLen);
    if (stReply.uiNum != 0) {
        uiResult = stBlock.Make({stReply.uiDataID, stReply.uiOriginalLen, stReply.uiCompressedLen});
        if (uiResult == 0 && stReply.uiNum > stBlock.Length() / uiRouteSize) {
            uiResult = kErrNoList;
        }
    } else {
        FreeUnread(stReply.uiDataID);
    }
    uiNum = stReply.uiNum;
    return Recorded(stSpot, uiResult, stReply.uiDataID, stReply.uiNum);
}

/// Lists the routes of a family that are in force and lead through WAN connections.
template <class Route>
uint32_t ListCurrent(SourceSpot stSpot, const char *pcQuery, uint32_t uiFamily, char **ppcText) {
    if (ppcText == nullptr) {
        return Recorded(stSpot, kErrNullArgument);
    }
    BulkBlock stBlock;
    uint32_t uiNum = 0;
    uint32_t uiResult = FetchCurrent(stSpot, pcQuery, uiFamily, sizeof(Route), stBlock, uiNum);
    if (uiResult != 0) {
        return uiResult;
    }
    JsonValue stList(JNI_JSON_ObjNewArray());
    if (!stList) {
        return Recorded(stSpot, kErrNoList, uiNum);
    }
    const auto *pstRoutes = static_cast<const Route *>(stBlock.Lend());
    uint32_t uiListed = 0;
    for (uint32_t i = 0; i < uiNum; ++i) {
        const FieldText stInterface(pstRoutes[i].acInterface);
        if (!IsWanName(stInterface.Lend())) {
            continue;
        }
        uiResult = AddCurrent(stList, ++uiListed, pstRoutes[i], stInterface.Lend());
        if (uiResult != 0) {
            return uiResult;
        }
    }
    return ComposeList(stSpot, nullptr, stList, (uiListed + 1) * kTextPerRoute, ppcText);
}

}  // namespace

uint32_t VT_JNI_AddL3Ipv4StaticRoute(const char *pcDest, const char *pcMask, const char *pcGateway,
                                     const char *pcInterface, uint32_t *puiInstId) {
    if (puiInstId == nullptr) {
        return Recorded(WAP_SPOT, kErrNullArgument);
    }
    AddIpv4RouteRequest stRequest = {};
    stRequest.uiOne = kAddIpv4RouteWord;
    if (!Fits(pcDest, sizeof(stRequest.acDest)) || !Fits(pcMask, sizeof(stRequest.acMask)) ||
        !MayRouteThrough(pcInterface)) {
        return Recorded(WAP_SPOT, kErrRefused);
    }
    PutField(stRequest.acDest, pcDest);
    PutField(stRequest.acMask, pcMask);
    PutField(stRequest.acGateway, pcGateway);
    return SendAddition(WAP_SPOT, kAddIpv4, stRequest, pcInterface, puiInstId);
}

uint32_t VT_JNI_DelL3Ipv4StaticRoute(uint32_t uiInstId) {
    return Delete(WAP_SPOT, kDelIpv4, uiInstId);
}

uint32_t VT_JNI_AddL3Ipv6StaticRoute(const char *pcDestPrefix, const char *pcNextHop,
                                     const char *pcInterface, uint32_t *puiInstId) {
    if (puiInstId == nullptr) {
        return Recorded(WAP_SPOT, kErrNullArgument);
    }
    AddIpv6RouteRequest stRequest = {};
    Ipv6Prefix stPrefix = {};
    if (!Fits(pcDestPrefix, sizeof(stRequest.acDestPrefix)) || !MayRouteThrough(pcInterface) ||
        VT_Route6_GetIpStuctFromString(pcDestPrefix, &stPrefix) != 0 || IsDefaultRoute(stPrefix)) {
        return Recorded(WAP_SPOT, kErrRefused);
    }
    PutField(stRequest.acDestPrefix, pcDestPrefix);
    PutField(stRequest.acNextHop, pcNextHop);
    return SendAddition(WAP_SPOT, kAddIpv6, stRequest, pcInterface, puiInstId);
}

uint32_t VT_JNI_DelL3Ipv6StaticRoute(uint32_t uiInstId) {
    return Delete(WAP_SPOT, kDelIpv6, uiInstId);
}

uint32_t VT_JNI_GetAllL3Ipv4StaticRoute(char **ppcText) {
    return ListStatic<Ipv4StaticRoute>(WAP_SPOT, kAskIpv4Ids, kAskIpv4Route, ppcText);
}

uint32_t VT_JNI_GetAllL3Ipv6StaticRoute(char **ppcText) {
    return ListStatic<Ipv6StaticRoute>(WAP_SPOT, kAskIpv6Ids, kAskIpv6Route, ppcText);
}

uint32_t VT_JNI_GetL3Ipv4CurrentRouter(char **ppcText) {
    return ListCurrent<Ipv4CurrentRoute>(WAP_SPOT, "GetL3Ipv4CurrentRouter", kRouteFamilyIpv4,
                                         ppcText);
}

uint32_t VT_JNI_GetL3Ipv6CurrentRouter(char **ppcText) {
    return ListCurrent<Ipv6CurrentRoute>(WAP_SPOT, "GetL3Ipv6CurrentRouter", kRouteFamilyIpv6,
                                         ppcText);
}
