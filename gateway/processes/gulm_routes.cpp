// gulm's routes: those that were set, and those in force.
#include <arpa/inet.h>
#include <strings.h>

#include <algorithm>
#include <charconv>

#include "framework/bulk.h"
#include "processes/gulm_wan.h"
#include "records/static_route.h"

namespace wap::gateway {

namespace {

constexpr char kIpv4Routes[] = "routes.ipv4";
constexpr char kIpv6Routes[] = "routes.ipv6";
constexpr uint32_t kIpv6Bits = 128;

std::optional<uint32_t> ReadIpv4(const std::string &acText) {
    in_addr stAddress;
    if (inet_pton(AF_INET, acText.c_str(), &stAddress) != 1) {
        return std::nullopt;
    }
    return ntohl(stAddress.s_addr);
}

bool IsMask(uint32_t uiMask) {
    const uint32_t uiHosts = ~uiMask;
    return (uiHosts & (uiHosts + 1)) == 0;
}

bool IsIpv6(const std::string &acText) {
    in6_addr stAddress;
    return inet_pton(AF_INET6, acText.c_str(), &stAddress) == 1;
}

/// Whether a text is an address, a slash and a length.
bool IsIpv6Prefix(const std::string &acText) {
    const size_t uiSlash = acText.find('/');
    if (uiSlash == std::string::npos || !IsIpv6(acText.substr(0, uiSlash))) {
        return false;
    }
    const char *pcEnd = acText.data() + acText.size();
    uint32_t uiBits = 0;
    const auto stRead = std::from_chars(acText.data() + uiSlash + 1, pcEnd, uiBits);
    return stRead.ec == std::errc() && stRead.ptr == pcEnd && uiBits <= kIpv6Bits;
}

uint32_t TellIds(const HandlerContext &stContext, const char *pcPath, RouteIds &stReply) {
    const HomeReader stHome(stContext.stHome);
    for (json_object *pstRoute : Elements(stHome.At(pcPath))) {
        if (stReply.uiCount < std::size(stReply.auiInstIds)) {
            stReply.auiInstIds[stReply.uiCount++] = NumberOf(pstRoute, "id");
        }
    }
    return 0;
}

uint32_t GetIpv4Ids(HandlerContext &stContext, const Word &, RouteIds &stReply) {
    return TellIds(stContext, kIpv4Routes, stReply);
}

uint32_t GetIpv6Ids(HandlerContext &stContext, const Word &, RouteIds &stReply) {
    return TellIds(stContext, kIpv6Routes, stReply);
}

uint32_t GetIpv4(HandlerContext &stContext, const RouteId &stRequest, Ipv4StaticRoute &stReply) {
    const HomeReader stHome(stContext.stHome);
    json_object *pstRoute = FindNumber(stHome.At(kIpv4Routes), "id", stRequest.uiInstId);
    if (pstRoute == nullptr) {
        return kRefused;
    }
    stReply.uiStatic = IsTrue(pstRoute, "static") ? 1 : 0;
    PutField(stReply.acDest, TextOf(pstRoute, "destination"));
    PutField(stReply.acMask, TextOf(pstRoute, "mask"));
    PutField(stReply.acGateway, TextOf(pstRoute, "gateway"));
    PutField(stReply.acLanInterface, TextOf(pstRoute, "lanInterface"));
    PutField(stReply.acConnection, TextOf(pstRoute, "connection"));
    return 0;
}

uint32_t GetIpv6(HandlerContext &stContext, const RouteId &stRequest, Ipv6StaticRoute &stReply) {
    const HomeReader stHome(stContext.stHome);
    json_object *pstRoute = FindNumber(stHome.At(kIpv6Routes), "id", stRequest.uiInstId);
    if (pstRoute == nullptr) {
        return kRefused;
    }
    PutField(stReply.acDestPrefix, TextOf(pstRoute, "prefix"));
    PutField(stReply.acNextHop, TextOf(pstRoute, "nextHop"));
    PutField(stReply.acInterface, TextOf(pstRoute, "interface"));
    return 0;
}

/// Appends a route, with an id of its own, unless there is one to the same place by the same way.
uint32_t AddRoute(json_object *pstRoutes, JsonValue stRoute,
                  std::initializer_list<const char *> apcSame, uint32_t &uiId) {
    const auto astRoutes = Elements(pstRoutes);
    if (astRoutes.size() >= kRouteIdsMax) {
        return kTableFull;
    }
    const bool bThere = std::any_of(astRoutes.begin(), astRoutes.end(), [&](json_object *pstOther) {
        return std::all_of(apcSame.begin(), apcSame.end(), [&](const char *pcKey) {
            return TextOf(pstOther, pcKey) == TextOf(stRoute.get(), pcKey);
        });
    });
    if (bThere) {
        return kRefused;
    }
    uiId = FreeNumber(pstRoutes, "id");
    PutNumber(stRoute.get(), "id", uiId);
    Append(pstRoutes, std::move(stRoute));
    return 0;
}

uint32_t AddIpv4(HandlerContext &stContext, const AddIpv4RouteRequest &stRequest,
                 RouteId &stReply) {
    const std::string acDest = TextIn(stRequest.acDest);
    const std::string acMask = TextIn(stRequest.acMask);
    const std::string acGateway = TextIn(stRequest.acGateway);
    const std::string acConnection = TextIn(stRequest.acConnection);
    const auto uiDest = ReadIpv4(acDest);
    const auto uiMask = ReadIpv4(acMask);
    HomeChange stChange(stContext.stHome);
    if (stRequest.uiOne != kAddIpv4RouteWord || !uiDest || !uiMask || !IsMask(*uiMask) ||
        (*uiDest & ~*uiMask) != 0 || (!acGateway.empty() && !ReadIpv4(acGateway)) ||
        FindWanByIfName(stChange.At("wan"), acConnection) == nullptr) {
        return kRefused;
    }
    JsonValue stRoute = MakeObject();
    PutNumber(stRoute.get(), "id", 0);
    PutBool(stRoute.get(), "static", true);
    PutText(stRoute.get(), "destination", acDest);
    PutText(stRoute.get(), "mask", acMask);
    PutText(stRoute.get(), "gateway", acGateway);
    PutText(stRoute.get(), "lanInterface", "");
    PutText(stRoute.get(), "connection", acConnection);
    const uint32_t uiStatus =
        AddRoute(stChange.At(kIpv4Routes), std::move(stRoute),
                 {"destination", "mask", "gateway", "connection"}, stReply.uiInstId);
    if (uiStatus == 0) {
        stChange.Commit();
    }
    return uiStatus;
}

uint32_t AddIpv6(HandlerContext &stContext, const AddIpv6RouteRequest &stRequest,
                 RouteId &stReply) {
    const std::string acPrefix = TextIn(stRequest.acDestPrefix);
    const std::string acNextHop = TextIn(stRequest.acNextHop);
    const std::string acConnection = TextIn(stRequest.acConnection);
    HomeChange stChange(stContext.stHome);
    if (!IsIpv6Prefix(acPrefix) || (!acNextHop.empty() && !IsIpv6(acNextHop)) ||
        FindWanByIfName(stChange.At("wan"), acConnection) == nullptr) {
        return kRefused;
    }
    JsonValue stRoute = MakeObject();
    PutNumber(stRoute.get(), "id", 0);
    PutText(stRoute.get(), "prefix", acPrefix);
    PutText(stRoute.get(), "nextHop", acNextHop);
    PutText(stRoute.get(), "interface", acConnection);
    const uint32_t uiStatus = AddRoute(stChange.At(kIpv6Routes), std::move(stRoute),
                                       {"prefix", "nextHop", "interface"}, stReply.uiInstId);
    if (uiStatus == 0) {
        stChange.Commit();
    }
    return uiStatus;
}

/// Removes a route; the LAN's own stay.
uint32_t DelRoute(HandlerContext &stContext, const char *pcPath, const char *pcLanKey,
                  uint32_t uiId) {
    HomeChange stChange(stContext.stHome);
    json_object *pstRoutes = stChange.At(pcPath);
    json_object *pstRoute = FindNumber(pstRoutes, "id", uiId);
    if (pstRoute == nullptr || TextOf(pstRoute, pcLanKey) == "br0") {
        return kRefused;
    }
    TakeOut(pstRoutes, pstRoute);
    stChange.Commit();
    return 0;
}

uint32_t DelIpv4(HandlerContext &stContext, const RouteId &stRequest, Word &) {
    return DelRoute(stContext, kIpv4Routes, "lanInterface", stRequest.uiInstId);
}

uint32_t DelIpv6(HandlerContext &stContext, const RouteId &stRequest, Word &) {
    return DelRoute(stContext, kIpv6Routes, "interface", stRequest.uiInstId);
}

/// Whether a route's interface can send: the LAN always, a WAN connection while it is up.
bool IsUp(json_object *pstWans, const std::string &acInterface) {
    return acInterface == "br0" || IsTrue(FindWanByIfName(pstWans, acInterface), "connected");
}

/// The setting of the first connection that has it and is up, with the connection's interface name.
std::pair<std::string, std::string> FirstSetting(json_object *pstWans, const char *pcKey) {
    for (json_object *pstWan : Elements(pstWans)) {
        const std::string acText = TextOf(FindMember(pstWan, "settings"), pcKey);
        if (IsTrue(pstWan, "connected") && !acText.empty()) {
            return {acText, IfNameOf(pstWan)};
        }
    }
    return {};
}

Ipv4CurrentRoute MakeIpv4(const std::string &acDest, const std::string &acMask,
                          const std::string &acGateway, const std::string &acInterface) {
    Ipv4CurrentRoute stRow = {};
    PutField(stRow.acDest, acDest);
    PutField(stRow.acMask, acMask);
    PutField(stRow.acGateway, acGateway);
    PutField(stRow.acInterface, acInterface);
    return stRow;
}

Ipv6CurrentRoute MakeIpv6(const std::string &acPrefix, const std::string &acNextHop,
                          const std::string &acInterface) {
    Ipv6CurrentRoute stRow = {};
    PutField(stRow.acDestPrefix, acPrefix);
    PutField(stRow.acInterface, acInterface);
    PutField(stRow.acNextHop, acNextHop);
    return stRow;
}

std::vector<Ipv4CurrentRoute> CurrentIpv4(const HomeReader &stHome) {
    std::vector<Ipv4CurrentRoute> astRows;
    json_object *pstWans = stHome.At("wan");
    for (json_object *pstRoute : Elements(stHome.At(kIpv4Routes))) {
        const std::string acLan = TextOf(pstRoute, "lanInterface");
        const std::string acInterface = acLan.empty() ? TextOf(pstRoute, "connection") : acLan;
        if (IsUp(pstWans, acInterface)) {
            astRows.push_back(MakeIpv4(TextOf(pstRoute, "destination"), TextOf(pstRoute, "mask"),
                                       TextOf(pstRoute, "gateway"), acInterface));
        }
    }
    const auto [acGateway, acInterface] = FirstSetting(pstWans, "DefaultGateway");
    if (!acGateway.empty()) {
        astRows.push_back(MakeIpv4("0.0.0.0", "0.0.0.0", acGateway, acInterface));
    }
    return astRows;
}

std::vector<Ipv6CurrentRoute> CurrentIpv6(const HomeReader &stHome) {
    std::vector<Ipv6CurrentRoute> astRows;
    json_object *pstWans = stHome.At("wan");
    for (json_object *pstRoute : Elements(stHome.At(kIpv6Routes))) {
        const std::string acInterface = TextOf(pstRoute, "interface");
        if (IsUp(pstWans, acInterface)) {
            astRows.push_back(
                MakeIpv6(TextOf(pstRoute, "prefix"), TextOf(pstRoute, "nextHop"), acInterface));
        }
    }
    const auto [acGateway, acInterface] = FirstSetting(pstWans, "IPv6DefaultGateway");
    if (!acGateway.empty()) {
        astRows.push_back(MakeIpv6("::/0", acGateway, acInterface));
    }
    return astRows;
}

template <class Row>
void Publish(const std::vector<Row> &astRows, CurrentRoutesReply &stReply) {
    if (astRows.empty()) {
        return;
    }
    const VDataDesc stDesc = PublishBlock(
        {reinterpret_cast<const char *>(astRows.data()), astRows.size() * sizeof(Row)});
    stReply = {static_cast<uint32_t>(astRows.size()), stDesc.uiDataID, stDesc.uiOriginalLen,
               stDesc.uiCompressedLen};
}

uint32_t GetCurrent(HandlerContext &stContext, const CurrentRoutesRequest &stRequest,
                    CurrentRoutesReply &stReply) {
    if (stRequest.uiFamily == kRouteFamilyIpv4) {
        Publish(CurrentIpv4(HomeReader(stContext.stHome)), stReply);
    } else if (stRequest.uiFamily == kRouteFamilyIpv6) {
        Publish(CurrentIpv6(HomeReader(stContext.stHome)), stReply);
    } else {
        return kRefused;
    }
    return 0;
}

}  // namespace

void AddRouteRpcs(RpcTable &stTable) {
    stTable.Add(kRpcGetIpv4RouteIds, GetIpv4Ids);
    stTable.Add(kRpcGetIpv6RouteIds, GetIpv6Ids);
    stTable.Add(kRpcGetIpv4Route, GetIpv4);
    stTable.Add(kRpcGetIpv6Route, GetIpv6);
    stTable.Add(kRpcAddIpv4Route, AddIpv4);
    stTable.Add(kRpcAddIpv6Route, AddIpv6);
    stTable.Add(kRpcDelIpv4Route, DelIpv4);
    stTable.Add(kRpcDelIpv6Route, DelIpv6);
    stTable.Add(kRpcGetCurrentRoutes, GetCurrent);
}

}  // namespace wap::gateway
