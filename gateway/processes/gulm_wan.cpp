// gulm's WAN connections: which there are, what they are set to, and where their DNS servers are.
#include <strings.h>

#include <algorithm>

#include "processes/gulm_wan.h"
#include "records/wan_config.h"
#include "records/wan_record.h"

namespace wap::gateway {

namespace {

constexpr uint32_t kVlanEnd = 4095;
constexpr uint32_t kVlanModeEnd = 3;
/// What a new connection may send and receive, in bits per second.
constexpr int64_t kNewBandwidth = 100000000;

/// The kinds of connections that can be made.
struct ConnectionType {
    const char *pcText;
    uint32_t uiKind;
    bool bRouted;
};
constexpr ConnectionType kConnectionTypes[] = {
    {"IP_Routed", kWanKindIp, true},
    {"IP_Bridged", kWanKindIp, false},
    {"PPPoE_Routed", kWanKindPpp, true},
    {"PPPoE_Bridged", kWanKindPpp, false},
};

const ConnectionType *FindType(const std::string &acText) {
    for (const ConnectionType &stType : kConnectionTypes) {
        if (strcasecmp(acText.c_str(), stType.pcText) == 0) {
            return &stType;
        }
    }
    return nullptr;
}

/// The connection's name as it follows from its settings: its number, what it is for, whether it is
/// routed or bridged, and its VLAN.
std::string NameOf(json_object *pstWan) {
    json_object *pstSettings = FindMember(pstWan, "settings");
    const ConnectionType *pstType = FindType(TextOf(pstWan, "connectionType"));
    const std::string acVlan = TextOf(pstSettings, "VLANIDMark");
    return std::to_string(NumberOf(pstWan, "number")) + "_" + TextOf(pstSettings, "ServiceList") +
           (pstType != nullptr && pstType->bRouted ? "_R" : "_B") + "_VID_" +
           (acVlan.empty() ? "0" : acVlan);
}

/// The element of a list that has these two instances; null when there is none.
json_object *FindDevice(json_object *pstDevices, uint32_t uiDev, uint32_t uiConnDev) {
    for (json_object *pstDevice : Elements(pstDevices)) {
        if (NumberOf(pstDevice, "deviceInstance") == uiDev &&
            NumberOf(pstDevice, "connDeviceInstance") == uiConnDev) {
            return pstDevice;
        }
    }
    return nullptr;
}

uint32_t GetList(HandlerContext &stContext, const Word &, WanIfList &stReply) {
    const HomeReader stHome(stContext.stHome);
    for (json_object *pstWan : Elements(stHome.At("wan"))) {
        if (stReply.uiCount == std::size(stReply.astEntries)) {
            break;
        }
        WanIfListEntry &stEntry = stReply.astEntries[stReply.uiCount++];
        stEntry.uiWanIndex = NumberOf(pstWan, "index");
        PutField(stEntry.acName, TextOf(pstWan, "name"));
    }
    return 0;
}

uint32_t GetRecord(HandlerContext &stContext, const WanRecordRequest &stRequest,
                   WanRecord &stReply) {
    const HomeReader stHome(stContext.stHome);
    json_object *pstWan = FindNumber(stHome.At("wan"), "index", stRequest.uiWanIndex);
    if (pstWan == nullptr) {
        return kRefused;
    }
    PutField(stReply.acName, TextOf(pstWan, "name"));
    stReply.uiWanDevIns = NumberOf(pstWan, "deviceInstance");
    stReply.uiWanConnDevIns = NumberOf(pstWan, "connDeviceInstance");
    stReply.uiWanConnIns = NumberOf(pstWan, "connInstance");
    stReply.uiConnKind = NumberOf(pstWan, "kind");
    stReply.uiMappingGate = NumberOf(pstWan, "mappingGate");
    stReply.uiMappingMode = NumberOf(pstWan, "mappingMode");
    return 0;
}

template <uint32_t kKind>
uint32_t Count(HandlerContext &stContext, const WanConnCountReq &stRequest,
               WanConnCountReply &stReply) {
    const HomeReader stHome(stContext.stHome);
    for (json_object *pstWan : Elements(stHome.At("wan"))) {
        if (NumberOf(pstWan, "index") >> 28 == kKind &&
            NumberOf(pstWan, "deviceInstance") == stRequest.uiWanDev &&
            NumberOf(pstWan, "connDeviceInstance") == stRequest.uiConnDev) {
            ++stReply.uiCount;
        }
    }
    return 0;
}

/// The setting of one connection as text; nothing when there is no such connection.
std::optional<std::string> SettingOf(const HomeReader &stHome, uint32_t uiWanIndex,
                                     const char *pcKey) {
    json_object *pstWan = FindNumber(stHome.At("wan"), "index", uiWanIndex);
    if (pstWan == nullptr) {
        return std::nullopt;
    }
    return TextOf(FindMember(pstWan, "settings"), pcKey);
}

template <uint32_t kKind, class Reply>
uint32_t GetDns(HandlerContext &stContext, const WanIdReq &stRequest, Reply &stReply) {
    const uint32_t uiIndex =
        PackWanIndex(kKind, stRequest.uiWanDev, stRequest.uiConnDev, stRequest.uiConnIns);
    const auto acServers = SettingOf(HomeReader(stContext.stHome), uiIndex, "DNSServers");
    if (!acServers) {
        return kRefused;
    }
    PutField(stReply.acDnsServers, *acServers);
    return 0;
}

uint32_t GetIpv6Dns(HandlerContext &stContext, const WanIpv6DnsReq &stRequest,
                    WanIpv6DnsReply &stReply) {
    const HomeReader stHome(stContext.stHome);
    json_object *pstWan = FindWanByIfName(stHome.At("wan"), TextIn(stRequest.acIfName));
    if (pstWan == nullptr) {
        return kRefused;
    }
    PutField(stReply.acDnsServers, TextOf(FindMember(pstWan, "settings"), "IPv6DNSServers"));
    return 0;
}

uint32_t SetIpv6Dns(HandlerContext &stContext, const WanIpv6DnsSetReq &stRequest, Word &) {
    const std::string acFirst = TextIn(stRequest.stServers.acFirst);
    const std::string acSecond = TextIn(stRequest.stServers.acSecond);
    HomeChange stChange(stContext.stHome);
    json_object *pstWan = FindNumber(stChange.At("wan"), "index", stRequest.uiWanIndex);
    if (pstWan == nullptr || stRequest.ucZero != 0) {
        return kRefused;
    }
    const bool bBoth = !acFirst.empty() && !acSecond.empty();
    PutText(FindMember(pstWan, "settings"), "IPv6DNSServers",
            acFirst + (bBoth ? "," : "") + acSecond);
    stChange.Commit();
    return 0;
}

/// The settings of a new connection.
JsonValue NewSettings(const WanAddReq &stRequest, const ConnectionType &stType) {
    JsonValue stSettings = MakeObject();
    PutText(stSettings.get(), "ServiceList", stType.bRouted ? "INTERNET" : "OTHER");
    PutText(stSettings.get(), "VLANMode", std::to_string(stRequest.uiVlanMode));
    PutText(stSettings.get(), "VLANIDMark", std::to_string(stRequest.uiVlan));
    if (stType.bRouted) {
        PutText(stSettings.get(), "IPMode", "1");
        PutText(stSettings.get(), "NATEnabled", "TRUE");
    }
    return stSettings;
}

/// Each new connection gets a connection device of its own.
uint32_t AddWan(HandlerContext &stContext, const WanAddReq &stRequest, WanAddReply &stReply) {
    const ConnectionType *pstType = FindType(TextIn(stRequest.acConnType));
    const std::string acVlan = std::to_string(stRequest.uiVlan);
    if (pstType == nullptr || stRequest.uiVlanMode >= kVlanModeEnd ||
        stRequest.uiVlan >= kVlanEnd || (stRequest.uiVlanMode == 0 && stRequest.uiVlan != 0)) {
        return kRefused;
    }
    HomeChange stChange(stContext.stHome);
    json_object *pstWans = stChange.At("wan");
    const auto astWans = Elements(pstWans);
    if (astWans.size() >= kWansMax) {
        return kTableFull;
    }
    if (std::any_of(astWans.begin(), astWans.end(), [&](json_object *pstWan) {
            return TextOf(FindMember(pstWan, "settings"), "VLANIDMark") == acVlan;
        })) {
        return kRefused;
    }
    json_object *pstDevices = stChange.At("wanDevices");
    uint32_t uiConnDev = 1;
    while (FindDevice(pstDevices, 1, uiConnDev) != nullptr) {
        ++uiConnDev;
    }
    stReply.uiWanIndex = PackWanIndex(pstType->uiKind, 1, uiConnDev, 1);
    const JsonValue stDevice = MakeObject();
    PutNumber(stDevice.get(), "deviceInstance", 1);
    PutNumber(stDevice.get(), "connDeviceInstance", uiConnDev);
    Append(pstDevices, Copy(stDevice.get()));

    const JsonValue stWan = MakeObject();
    PutNumber(stWan.get(), "index", stReply.uiWanIndex);
    PutText(stWan.get(), "name", "");
    PutNumber(stWan.get(), "number", FreeNumber(pstWans, "number"));
    PutNumber(stWan.get(), "deviceInstance", 1);
    PutNumber(stWan.get(), "connDeviceInstance", uiConnDev);
    PutNumber(stWan.get(), "connInstance", 1);
    PutNumber(stWan.get(), "kind", pstType->uiKind == kWanKindIp ? 1 : 0);
    PutNumber(stWan.get(), "mappingGate", pstType->bRouted ? 1 : 0);
    PutNumber(stWan.get(), "mappingMode", 0);
    PutText(stWan.get(), "connectionType", pstType->pcText);
    PutBool(stWan.get(), "connected", true);
    PutNumber(stWan.get(), "sentBytes", 0);
    PutNumber(stWan.get(), "receivedBytes", 0);
    PutNumber(stWan.get(), "sendBandwidth", kNewBandwidth);
    PutNumber(stWan.get(), "receiveBandwidth", kNewBandwidth);
    PutMember(stWan.get(), "settings", NewSettings(stRequest, *pstType));
    PutText(stWan.get(), "name", NameOf(stWan.get()));
    Append(pstWans, Copy(stWan.get()));
    stChange.Commit();
    return 0;
}

/// Keeps what the record sets. The password is only noted to be there: the home is readable.
uint32_t SetWan(HandlerContext &stContext, const WanIfPara &stRequest, Word &) {
    const WanPlace &stPlace = stRequest.stPlace;
    HomeChange stChange(stContext.stHome);
    json_object *pstWan = FindNumber(
        stChange.At("wan"), "index",
        PackWanIndex(stPlace.uiKind, stPlace.uiWanDev, stPlace.uiConnDev, stPlace.uiConnIns));
    if (pstWan == nullptr) {
        return kRefused;
    }
    json_object *pstSettings = FindMember(pstWan, "settings");
    const char *pcRecord = reinterpret_cast<const char *>(&stRequest);
    for (uint32_t uiSetting = 0; uiSetting < kWanSettings; ++uiSetting) {
        const WanSettingRow &stRow = kWanSettingRows[uiSetting];
        const char *pcField = pcRecord + stRow.usOffset;
        // The IPv6 servers come in a request of their own, completed with those that are there.
        if (stRequest.aucSet[uiSetting] == 0 || uiSetting == kWanIpv6DnsServers) {
            continue;
        }
        if (uiSetting == kWanPassword) {
            PutBool(pstSettings, "PasswordSet", true);
        } else {
            PutText(pstSettings, stRow.pcKey, {pcField, strnlen(pcField, stRow.usSize)});
        }
    }
    PutText(pstWan, "name", NameOf(pstWan));
    stChange.Commit();
    return 0;
}

/// Takes the elements out of a list whose member is that number or that text.
void TakeOutAll(json_object *pstList, const char *pcKey, uint32_t uiNumber) {
    while (json_object *pstElement = FindNumber(pstList, pcKey, uiNumber)) {
        TakeOut(pstList, pstElement);
    }
}
void TakeOutAll(json_object *pstList, const char *pcKey, const std::string &acText) {
    while (json_object *pstElement = FindElement(pstList, pcKey, acText)) {
        TakeOut(pstList, pstElement);
    }
}

/// Removes a connection, and with it its port mappings and its routes.
uint32_t DelConnection(HandlerContext &stContext, const WanDelReq &stRequest) {
    HomeChange stChange(stContext.stHome);
    const uint32_t uiIndex = PackWanIndex(stRequest.uiOperation, stRequest.uiWanDev,
                                          stRequest.uiConnDev, stRequest.uiConn);
    json_object *pstWans = stChange.At("wan");
    json_object *pstWan = FindNumber(pstWans, "index", uiIndex);
    if (pstWan == nullptr) {
        return kRefused;
    }
    const std::string acIfName = IfNameOf(pstWan);
    TakeOutAll(stChange.At("portMapping"), "wanIndex", uiIndex);
    TakeOutAll(stChange.At("routes.ipv4"), "connection", acIfName);
    TakeOutAll(stChange.At("routes.ipv6"), "interface", acIfName);
    TakeOut(pstWans, pstWan);
    stChange.Commit();
    return 0;
}

/// Removes a connection device, which must not have any connection left.
uint32_t DelConnDevice(HandlerContext &stContext, const WanDelReq &stRequest) {
    HomeChange stChange(stContext.stHome);
    json_object *pstDevices = stChange.At("wanDevices");
    json_object *pstDevice = FindDevice(pstDevices, stRequest.uiWanDev, stRequest.uiConnDev);
    if (pstDevice == nullptr ||
        FindDevice(stChange.At("wan"), stRequest.uiWanDev, stRequest.uiConnDev) != nullptr) {
        return kRefused;
    }
    TakeOut(pstDevices, pstDevice);
    stChange.Commit();
    return 0;
}

uint32_t DelWan(HandlerContext &stContext, const WanDelReq &stRequest, Word &) {
    return stRequest.uiOperation == kDelConnDevice ? DelConnDevice(stContext, stRequest)
                                                   : DelConnection(stContext, stRequest);
}

}  // namespace

std::string IfNameOf(json_object *pstWan) {
    const uint32_t uiKind = NumberOf(pstWan, "index") >> 28;
    return "wan" + std::to_string(NumberOf(pstWan, "deviceInstance")) + "." +
           std::to_string(NumberOf(pstWan, "connDeviceInstance")) +
           (uiKind == kWanKindPpp ? ".ppp" : ".ip") +
           std::to_string(NumberOf(pstWan, "connInstance"));
}

json_object *FindWanByIfName(json_object *pstWans, const std::string &acIfName) {
    for (json_object *pstWan : Elements(pstWans)) {
        if (IfNameOf(pstWan) == acIfName) {
            return pstWan;
        }
    }
    return nullptr;
}

void AddWanRpcs(RpcTable &stTable) {
    stTable.Add(kRpcGetWanList, GetList);
    stTable.Add(kRpcGetWanRecord, GetRecord);
    stTable.Add(kRpcCountIpConns, Count<kWanKindIp>);
    stTable.Add(kRpcCountPppConns, Count<kWanKindPpp>);
    stTable.Add(kRpcGetWanIpDns, GetDns<kWanKindIp, WanIpDnsReply>);
    stTable.Add(kRpcGetWanPppDns, GetDns<kWanKindPpp, WanPppDnsReply>);
    stTable.Add(kRpcGetWanIpv6Dns, GetIpv6Dns);
    stTable.Add(kRpcSetWanIpv6Dns, SetIpv6Dns);
    stTable.Add(kRpcAddWan, AddWan);
    stTable.Add(kRpcSetWan, SetWan);
    stTable.Add(kRpcDelWan, DelWan);
}

}  // namespace wap::gateway
