#include "support/furnish_route.h"

#include <optional>

#include "support/furnish_portmap.h"
#include "support/wire_bytes.h"

namespace wap::test {

namespace {

/// Answers about the routes in force: how many, and the descriptor of a new block.
std::optional<Reply> CurrentReply(Platform &stPlatform, const RpcRecord &stRpc) {
    if (stRpc.uiRpcId != 0x46345865) {
        return std::nullopt;
    }
    const bool bIpv6 = stRpc.sRequest != Word(0);
    const Reply &stRecords = stPlatform.mapReplies[kCurrentOfFamily[bIpv6 ? 1 : 0]];
    if (stRecords.uiStatus != 0) {
        return Reply{stRecords.uiStatus, ""};
    }
    const size_t uiNum = stRecords.sBytes.size() / (bIpv6 ? 220 : 112);
    return Reply{0, Word(static_cast<uint32_t>(uiNum)) + stPlatform.AddBulk(stRecords.sBytes)};
}

}  // namespace

std::string RouteWans(const std::vector<std::pair<uint32_t, std::string>> &astWans) {
    std::string sBytes = Word(static_cast<uint32_t>(astWans.size()));
    for (const auto &[uiWanIndex, sName] : astWans) {
        sBytes += Word(uiWanIndex) + Field(sName, 260);
    }
    sBytes.resize(2116, 'z');
    return sBytes;
}

std::string RouteIdBytes(const std::vector<uint32_t> &auiIds) {
    std::string sBytes = Word(static_cast<uint32_t>(auiIds.size()));
    for (const uint32_t uiId : auiIds) {
        sBytes += Word(uiId);
    }
    sBytes.resize(772, 'z');
    return sBytes;
}

std::string StaticBytes(const StaticRoute4 &stRoute) {
    return std::string(21, 'z') + Word(stRoute.uiStatic) + std::string(9, 'z') +
           Field(stRoute.sDest, 16) + Field(stRoute.sMask, 16) + std::string(96, 'z') +
           Field(stRoute.sGateway, 16) + Field(stRoute.sLan, 265) + Field(stRoute.sConnection, 288);
}

std::string StaticBytes(const StaticRoute6 &stRoute) {
    return std::string(69, 'z') + Field(stRoute.sPrefix, 64) + Field(stRoute.sNextHop, 64) +
           Field(stRoute.sInterface, 424);
}

std::string CurrentBytes(const CurrentRoute4 &stRoute) {
    return Field(stRoute.sDest, 16) + Field(stRoute.sMask, 16) + Field(stRoute.sGateway, 16) +
           Field(stRoute.sInterface, 64);
}

std::string CurrentBytes(const CurrentRoute6 &stRoute) {
    return Field(stRoute.sPrefix, 48) + Field(stRoute.sInterface, 32) +
           Field(stRoute.sNextHop, 140);
}

void FurnishRoutes(World &stWorld) {
    Platform &stPlatform = stWorld.stPlatform;
    stPlatform.mapReplies[0x47302025] = {
        0, RouteWans({{0x10101001, "1_TR069_R_VID_46"}, {0x10102003, kRouteAlias}})};
    stPlatform.mapReplies[0x47301049] = {0, WanBytes({.sName = kRouteAlias})};
    stPlatform.mapReplies[0x47209071] = {0, Word(7)};
    stPlatform.mapReplies[0x47209073] = {0, Word(8)};
    for (const uint32_t uiDeletion : {0x47209072u, 0x47209074u}) {
        stPlatform.mapReplies[uiDeletion] = {0, ""};
    }
    for (const uint32_t uiIds : {0x47304006u, 0x47100009u}) {
        stPlatform.mapReplies[uiIds] = {0, RouteIdBytes({5, 9})};
    }
    stPlatform.mapReplies[0x47304002] = {0, StaticBytes(StaticRoute4{})};
    stPlatform.mapReplies[0x47100004] = {0, StaticBytes(StaticRoute6{})};
    stPlatform.mapReplies[kCurrentOfFamily[0]] = {0, CurrentBytes(CurrentRoute4{})};
    stPlatform.mapReplies[kCurrentOfFamily[1]] = {0, CurrentBytes(CurrentRoute6{})};
    stPlatform.fnReply = [&stPlatform](const RpcRecord &stRpc) {
        return CurrentReply(stPlatform, stRpc);
    };
}

}  // namespace wap::test
