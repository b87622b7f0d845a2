// app_m's uplink: what it tells of the WAN connections, which are gulm's, the PON, and the VLANs
// that the SSIDs are bound to.
#include "framework/peers.h"
#include "framework/runtime_dir.h"
#include "processes/vlan_bind.h"
#include "records/access_info.h"

namespace wap::gateway {

namespace {

/// Adds what a query tells of a WAN connection to its answer.
using WanWriter = void (*)(json_object *pstWan, json_object *pstAnswer);

void WriteSettings(json_object *pstWan, std::initializer_list<const char *> apcKeys,
                   json_object *pstAnswer) {
    json_object *pstSettings = FindMember(pstWan, "settings");
    for (const char *pcKey : apcKeys) {
        PutText(pstAnswer, pcKey, TextOf(pstSettings, pcKey));
    }
}

void WriteWanStats(json_object *pstWan, json_object *pstAnswer) {
    PutNumber(pstAnswer, "UsStats", GetNumber(pstWan, "sentBytes").value_or(0));
    PutNumber(pstAnswer, "DsStats", GetNumber(pstWan, "receivedBytes").value_or(0));
}

void WriteWanInfo(json_object *pstWan, json_object *pstAnswer) {
    PutNumber(pstAnswer, "Index", NumberOf(pstWan, "index"));
    PutText(pstAnswer, "Name", TextOf(pstWan, "name"));
    PutText(pstAnswer, "ConnectionType", TextOf(pstWan, "connectionType"));
    // Never the password, nor the name that goes with it.
    WriteSettings(pstWan,
                  {"ServiceList", "LanInterface", "VLANMode", "VLANIDMark", "802-1pMark",
                   "MulticastVlan", "IPMode", "NATEnabled", "AddressingType", "DNSEnabled"},
                  pstAnswer);
}

/// In bits per second.
void WriteBandwidth(json_object *pstWan, json_object *pstAnswer) {
    PutNumber(pstAnswer, "UsBandwidth", GetNumber(pstWan, "sendBandwidth").value_or(0));
    PutNumber(pstAnswer, "DsBandwidth", GetNumber(pstWan, "receiveBandwidth").value_or(0));
}

void WriteStatus(json_object *pstWan, json_object *pstAnswer) {
    PutText(pstAnswer, "ConnectionStatus",
            IsTrue(pstWan, "connected") ? "Connected" : "Disconnected");
    WriteSettings(pstWan,
                  {"ExternalIPAddress", "SubnetMask", "DefaultGateway", "DNSServers",
                   "IPv6IPAddress", "IPv6DNSServers"},
                  pstAnswer);
}

JsonValue MakeAnswer() {
    JsonValue stAnswer = MakeObject();
    PutNumber(stAnswer.get(), "Result", 0);
    return stAnswer;
}

template <WanWriter kWriter>
uint32_t TellWan(HandlerContext &, std::string_view pcRequest, std::string &acReply) {
    AccessRequest stRequest = {};
    if (pcRequest.size() != sizeof(stRequest)) {
        return VT_HOST_ERR_ARGUMENT;
    }
    memcpy(&stRequest, pcRequest.data(), sizeof(stRequest));
    const JsonValue stWans = PeerValue("wan");
    json_object *pstWan = FindNumber(stWans.get(), "index", stRequest.uiWanIndex);
    if (pstWan == nullptr) {
        return kRefused;
    }
    const JsonValue stAnswer = MakeAnswer();
    kWriter(pstWan, stAnswer.get());
    acReply = PrintJson(stAnswer.get(), false) + '\0';
    return 0;
}

/// The first connection that carries internet service.
uint32_t GetInternetWan(HandlerContext &, const AccessRequest &, InternetWanReply &stReply) {
    const JsonValue stWans = PeerValue("wan");
    for (json_object *pstWan : Elements(stWans.get())) {
        if (TextOf(FindMember(pstWan, "settings"), "ServiceList").find("INTERNET") !=
            std::string::npos) {
            stReply.uiWanIndex = NumberOf(pstWan, "index");
            return 0;
        }
    }
    return kRefused;
}

/// Adds what a query tells of the PON to its answer.
using PonWriter = void (*)(json_object *pstPon, json_object *pstAnswer);

void WritePhyStatus(json_object *pstPon, json_object *pstAnswer) {
    static constexpr std::pair<const char *, const char *> kMembers[] = {
        {"txPower", "TXPower"},
        {"rxPower", "RXPower"},
        {"temperature", "TransceiverTemperature"},
        {"supplyVoltage", "SupplyVottage"},  // spelled so by those who read it
        {"biasCurrent", "BiasCurrent"},
    };
    for (const auto &[pcKey, pcOutKey] : kMembers) {
        PutMember(pstAnswer, pcOutKey, Copy(FindMember(pstPon, pcKey)));
    }
}

void WriteRegStatus(json_object *pstPon, json_object *pstAnswer) {
    PutText(pstAnswer, "RegisterStatus", TextOf(pstPon, "registerStatus"));
}

/// A PON that is down has nothing to tell.
template <PonWriter kWriter>
uint32_t TellPon(HandlerContext &stContext, std::string_view pcRequest, std::string &acReply) {
    if (pcRequest != std::string_view("\0\0\0\0", sizeof(AccessRequest))) {
        return VT_HOST_ERR_ARGUMENT;
    }
    const HomeReader stHome(stContext.stHome);
    json_object *pstPon = stHome.At("pon");
    if (!IsTrue(pstPon, "up")) {
        return kErrPonUnknown;
    }
    const JsonValue stAnswer = MakeAnswer();
    kWriter(pstPon, stAnswer.get());
    acReply = PrintJson(stAnswer.get(), false) + '\0';
    return 0;
}

/// Seconds since the PON came up, which it did with the gateway unless it was down since.
uint32_t GetPonUpTime(HandlerContext &stContext, const AccessRequest &, PonUpTimeReply &stReply) {
    const HomeReader stHome(stContext.stHome);
    json_object *pstPon = stHome.At("pon");
    if (!IsTrue(pstPon, "up")) {
        return kErrPonUnknown;
    }
    const uint64_t uiNow = NowSeconds();
    const uint64_t uiSince =
        std::max<uint64_t>(stContext.uiGatewayStart, NumberOf(pstPon, "upSince"));
    stReply.uiUpTime = static_cast<uint32_t>(uiNow > uiSince ? uiNow - uiSince : 0);
    return 0;
}

uint32_t GetBindings(HandlerContext &stContext, const Word &, WlanVlanBindList &stReply) {
    const HomeReader stHome(stContext.stHome);
    for (json_object *pstSsid : Elements(stHome.At("network.ssids"))) {
        if (stReply.uiCount == std::size(stReply.astBinds)) {
            break;
        }
        WlanVlanBind &stBind = stReply.astBinds[stReply.uiCount++];
        stBind.uiSsid = static_cast<uint32_t>(json_object_get_int64(pstSsid));
        json_object *pstBinding = FindNumber(stHome.At("ssidBindings"), "ssid", stBind.uiSsid);
        stBind.uiMode = NumberOf(pstBinding, "mode");
        PutField(stBind.acBind, TextOf(pstBinding, "bind"));
    }
    return 0;
}

uint32_t ChangeBinding(HandlerContext &stContext, const VlanBindReq &stRequest, VlanBindReply &) {
    const auto uiSsid = InterfaceNumber(TextIn(stRequest.acInterface), "SSID");
    HomeChange stChange(stContext.stHome);
    const auto astSsids = Elements(stChange.At("network.ssids"));
    const bool bKnown =
        uiSsid && std::any_of(astSsids.begin(), astSsids.end(), [&](json_object *pstSsid) {
            return json_object_get_int64(pstSsid) == *uiSsid;
        });
    JsonValue stBinding = MakeObject();
    if (!bKnown || !ApplyBinding(stRequest, stBinding.get())) {
        return kRefused;
    }
    json_object *pstBindings = stChange.At("ssidBindings");
    TakeOut(pstBindings, FindNumber(pstBindings, "ssid", *uiSsid));
    PutNumber(stBinding.get(), "ssid", *uiSsid);
    Append(pstBindings, std::move(stBinding));
    stChange.Commit();
    return 0;
}

}  // namespace

void AddAccessRpcs(RpcTable &stTable) {
    stTable.AddBytes(kRpcGetWanStats, TellWan<WriteWanStats>);
    stTable.AddBytes(kRpcGetWanInfo, TellWan<WriteWanInfo>);
    stTable.AddBytes(kRpcGetWanBandwidth, TellWan<WriteBandwidth>);
    stTable.AddBytes(kRpcGetWanStatus, TellWan<WriteStatus>);
    stTable.Add(kRpcGetInternetWan, GetInternetWan);
    stTable.AddBytes(kRpcGetPonPhyStatus, TellPon<WritePhyStatus>);
    stTable.Add(kRpcGetPonUpTime, GetPonUpTime);
    stTable.AddBytes(kRpcGetPonRegStatus, TellPon<WriteRegStatus>);
    stTable.AddBytes(kRpcGetUplinkStats, TellPon<WriteWanStats>);
    stTable.Add(kRpcGetWlanVlanBind, GetBindings);
    stTable.Add(kRpcChangeVlanBind, ChangeBinding);
}

}  // namespace wap::gateway
