// app_m: owns the table of the hosts on the LAN and the names.
#include <strings.h>

#include <functional>

#include "framework/bulk.h"
#include "framework/peers.h"
#include "processes/processes.h"
#include "records/lan_address.h"
#include "records/lan_hosts.h"
#include "records/mac_filter.h"

namespace wap::gateway {

namespace {

/// Adds what a query tells of a host to an object.
using HostWriter = void (*)(json_object *pstHost, json_object *pstOut);
using HostFilter = std::function<bool(json_object *pstHost)>;

void CopyText(json_object *pstHost, const char *pcKey, json_object *pstOut, const char *pcOutKey) {
    PutText(pstOut, pcOutKey, TextOf(pstHost, pcKey));
}

void CopyNumber(json_object *pstHost, const char *pcKey, json_object *pstOut,
                const char *pcOutKey) {
    PutNumber(pstOut, pcOutKey, GetNumber(pstHost, pcKey).value_or(0));
}

void WriteInfo(json_object *pstHost, json_object *pstOut) {
    CopyText(pstHost, "mac", pstOut, "MAC");
    CopyText(pstHost, "ip", pstOut, "IP");
    CopyText(pstHost, "name", pstOut, "DevName");
    CopyText(pstHost, "class", pstOut, "HostClass");
    CopyText(pstHost, "interface", pstOut, "Interface");
    PutNumber(pstOut, "Active", IsTrue(pstHost, "active") ? 1 : 0);
    CopyNumber(pstHost, "onlineTime", pstOut, "OnlineTime");
}

void WriteStats(json_object *pstHost, json_object *pstOut) {
    CopyText(pstHost, "mac", pstOut, "MAC");
    CopyNumber(pstHost, "rxBytes", pstOut, "RxBytes");
    CopyNumber(pstHost, "txBytes", pstOut, "TxBytes");
    CopyNumber(pstHost, "rxPackets", pstOut, "RxPackets");
    CopyNumber(pstHost, "txPackets", pstOut, "TxPackets");
}

/// The answer about some hosts, as a text in a bulk block.
VDataDesc PublishHosts(const HandlerContext &stContext, const HostFilter &fnWanted,
                       HostWriter pfnWriter) {
    JsonValue stList = MakeArray();
    {
        const HomeReader stHome(stContext.stHome);
        for (json_object *pstHost : Elements(stHome.At("hosts"))) {
            if (fnWanted(pstHost)) {
                JsonValue stEntry = MakeObject();
                pfnWriter(pstHost, stEntry.get());
                Append(stList.get(), std::move(stEntry));
            }
        }
    }
    const JsonValue stAnswer = MakeObject();
    PutNumber(stAnswer.get(), "Result", 0);
    PutMember(stAnswer.get(), "List", std::move(stList));
    return PublishText(PrintJson(stAnswer.get(), false));
}

void Give(const VDataDesc &stDesc, std::string &acReply) {
    acReply.assign(reinterpret_cast<const char *>(&stDesc), sizeof(stDesc));
}

/// The hosts of a list of MAC addresses; all of them for a word of 0. Nothing for anything else.
std::optional<HostFilter> WantedByMac(std::string_view pcRequest) {
    if (pcRequest == std::string_view("\0\0\0\0", sizeof(EveryHost))) {
        return [](json_object *) { return true; };
    }
    if (pcRequest.empty() || pcRequest.size() % sizeof(MacSlot) != 0) {
        return std::nullopt;
    }
    std::vector<std::string> asMacs;
    for (size_t uiAt = 0; uiAt < pcRequest.size(); uiAt += sizeof(MacSlot)) {
        MacSlot stSlot;
        memcpy(&stSlot, pcRequest.data() + uiAt, sizeof(stSlot));
        asMacs.push_back(TextIn(stSlot.acMac));
    }
    return [asMacs = std::move(asMacs)](json_object *pstHost) {
        const std::string acMac = TextOf(pstHost, "mac");
        return std::any_of(asMacs.begin(), asMacs.end(), [&](const std::string &acWanted) {
            return strcasecmp(acWanted.c_str(), acMac.c_str()) == 0;
        });
    };
}

template <HostWriter kWriter>
uint32_t GetByMac(HandlerContext &stContext, std::string_view pcRequest, std::string &acReply) {
    const std::optional<HostFilter> fnWanted = WantedByMac(pcRequest);
    if (!fnWanted) {
        return VT_HOST_ERR_ARGUMENT;
    }
    Give(PublishHosts(stContext, *fnWanted, kWriter), acReply);
    return 0;
}

uint32_t GetBy(const HandlerContext &stContext, const char *pcKey, const HostTextQuery &stRequest,
               VDataDesc &stReply) {
    const std::string acWanted = TextIn(stRequest.acText);
    stReply = PublishHosts(
        stContext,
        [&](json_object *pstHost) {
            return strcasecmp(TextOf(pstHost, pcKey).c_str(), acWanted.c_str()) == 0;
        },
        WriteInfo);
    return 0;
}

uint32_t GetByClass(HandlerContext &stContext, const HostTextQuery &stRequest, VDataDesc &stReply) {
    return GetBy(stContext, "class", stRequest, stReply);
}

uint32_t GetByInterface(HandlerContext &stContext, const HostTextQuery &stRequest,
                        VDataDesc &stReply) {
    return GetBy(stContext, "interface", stRequest, stReply);
}

/// A text of its own in a request: up to its zero, or to the request's end.
std::string WholeText(std::string_view pcRequest) {
    return std::string(pcRequest.substr(0, pcRequest.find('\0')));
}

uint32_t GetSpeed(HandlerContext &stContext, std::string_view pcRequest, std::string &acReply) {
    const HomeReader stHome(stContext.stHome);
    json_object *pstHost = FindElement(stHome.At("hosts"), "mac", WholeText(pcRequest));
    if (pstHost == nullptr) {
        return kRefused;
    }
    const JsonValue stAnswer = MakeObject();
    PutNumber(stAnswer.get(), "Result", 0);
    CopyNumber(pstHost, "upSpeed", stAnswer.get(), "UpSpeed");
    CopyNumber(pstHost, "downSpeed", stAnswer.get(), "DownSpeed");
    acReply = PrintJson(stAnswer.get(), false) + '\0';
    return 0;
}

uint32_t GetGatewayName(HandlerContext &stContext, std::string_view pcRequest,
                        std::string &acReply) {
    if (pcRequest != std::string_view("\0\0\0\0", 4)) {
        return VT_HOST_ERR_ARGUMENT;
    }
    const HomeReader stHome(stContext.stHome);
    acReply = std::string(stHome.Text("network.gatewayName")) + '\0';
    return 0;
}

uint32_t SetGatewayName(HandlerContext &stContext, std::string_view pcRequest,
                        std::string &acReply) {
    HomeChange stChange(stContext.stHome);
    PutText(stChange.At("network"), "gatewayName", WholeText(pcRequest));
    stChange.Commit();
    acReply.assign(sizeof(uint32_t), '\0');
    return 0;
}

uint32_t SetHostName(HandlerContext &stContext, const HostNameSet &stRequest, Word &) {
    HomeChange stChange(stContext.stHome);
    json_object *pstHost = FindElement(stChange.At("hosts"), "mac", TextIn(stRequest.acMac));
    if (pstHost == nullptr) {
        return kRefused;
    }
    PutText(pstHost, "name", TextIn(stRequest.acName));
    stChange.Commit();
    return 0;
}

/// The LAN address is gulm's; this process only tells it.
uint32_t GetAddress(HandlerContext &, std::string_view pcRequest, std::string &acReply) {
    if (pcRequest != std::string_view("\1\0\0\0", sizeof(LanIndex))) {
        return VT_HOST_ERR_ARGUMENT;
    }
    const JsonValue stLan = PeerValue("lan");
    const JsonValue stAnswer = MakeObject();
    PutNumber(stAnswer.get(), "Result", 0);
    CopyText(stLan.get(), "address", stAnswer.get(), "LANHostIP");
    CopyText(stLan.get(), "mask", stAnswer.get(), "LANHostMask");
    acReply = PrintJson(stAnswer.get(), false) + '\0';
    return 0;
}

uint32_t GetWlanInst(HandlerContext &stContext, const Word &, WlanInstBlock &stReply) {
    const HomeReader stHome(stContext.stHome);
    for (json_object *pstSsid : Elements(stHome.At("network.ssids"))) {
        if (stReply.uiCount < std::size(stReply.auiSsids)) {
            stReply.auiSsids[stReply.uiCount++] =
                static_cast<uint32_t>(json_object_get_int64(pstSsid));
        }
    }
    return 0;
}

}  // namespace

void AddAppManagerRpcs(RpcTable &stTable) {
    AddAccessRpcs(stTable);
    AddBoxRpcs(stTable);
    AddDiagnosticsRpcs(stTable);
    stTable.AddBytes(kRpcGetLanHostIp, GetAddress);
    stTable.AddBytes(kRpcGetLanHostSpeed, GetSpeed);
    stTable.AddBytes(kRpcGetLanHostInfoByMac, GetByMac<WriteInfo>);
    stTable.Add(kRpcGetLanHostInfoByClass, GetByClass);
    stTable.Add(kRpcGetLanHostInfoByInterface, GetByInterface);
    stTable.AddBytes(kRpcGetLanHostStats, GetByMac<WriteStats>);
    stTable.AddBytes(kRpcGetGatewayName, GetGatewayName);
    stTable.Add(kRpcGetWlanInst, GetWlanInst);
    stTable.Add(kRpcSetLanHostName, SetHostName);
    stTable.AddBytes(kRpcSetGatewayName, SetGatewayName);
}

}  // namespace wap::gateway
