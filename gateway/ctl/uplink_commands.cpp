// The verbs about the uplink: the PON, the WAN connections, and IPTV.
#include <stdio.h>

#include "ctl/client.h"
#include "ctl/commands.h"
#include "framework/control.h"
#include "framework/error.h"
#include "framework/process_list.h"

namespace wap::gateway {

namespace {

/// Brings a WAN connection up or down.
void SwitchWan(const std::string &acName, bool bUp) {
    const JsonValue stRequest = MakeObject();
    PutText(stRequest.get(), "path", "wan");
    PutText(stRequest.get(), "key", "name");
    PutText(stRequest.get(), "id", acName);
    PutText(stRequest.get(), "member", "connected");
    PutText(stRequest.get(), "text", bUp ? "true" : "false");
    (void)Ask(FindOwner("wan")->pcName, kControlChange, stRequest.get());
}

bool IsUp(json_object *pstObject, const char *pcKey) {
    return json_object_get_boolean(FindMember(pstObject, pcKey)) != 0;
}

const char *UpOrDown(bool bUp) {
    return bUp ? "up" : "down";
}

/// The WAN connection that IPTV uses; borrowed from the list, null when it is gone.
json_object *IptvWan(json_object *pstWans, json_object *pstIptv) {
    for (json_object *pstWan : Elements(pstWans)) {
        if (GetNumber(pstWan, "index") == GetNumber(pstIptv, "wanIndex")) {
            return pstWan;
        }
    }
    return nullptr;
}

void ShowIptv() {
    const JsonValue stIptv = ValueOf("iptv");
    const JsonValue stWans = ValueOf("wan");
    const JsonValue stMulticast = ValueOf("multicast");
    json_object *pstWan = IptvWan(stWans.get(), stIptv.get());
    const auto Number = [&](json_object *pstObject, const char *pcKey) {
        return static_cast<long long>(GetNumber(pstObject, pcKey).value_or(0));
    };
    printf("connection   %s\n", pstWan == nullptr ? "none"
                                                  : (GetText(pstWan, "name").value_or("") + " (" +
                                                     UpOrDown(IsUp(pstWan, "connected")) + ")")
                                                        .c_str());
    printf("service type %lld\n", Number(stIptv.get(), "serviceType"));
    printf("IPv4         %s\n", IsUp(stIptv.get(), "ipv4Enabled") ? "on" : "off");
    printf("IPv4 VLAN    %lld\n", Number(stIptv.get(), "ipv4Vlan"));
    printf("IPv6 VLAN    %lld\n", Number(stIptv.get(), "ipv6Vlan"));
    printf("users        %lld\n", Number(stMulticast.get(), "users"));
}

}  // namespace

int Pon(const Options &stOptions) {
    (void)RuntimeDir::FromEnvironment();
    if (!stOptions.bOn) {
        printf("%s\n", UpOrDown(IsUp(ValueOf("pon").get(), "up")));
        return 0;
    }
    if (*stOptions.bOn && !IsUp(ValueOf("pon").get(), "up")) {
        SetValue("pon", "upSince", std::to_string(NowSeconds()));
    }
    SetValue("pon", "up", *stOptions.bOn ? "true" : "false");
    return 0;
}

int ListWans(const Options &) {
    (void)RuntimeDir::FromEnvironment();
    const JsonValue stWans = ValueOf("wan");
    printf("%-10s  %-5s %-14s %s\n", "INDEX", "STATE", "TYPE", "NAME");
    for (json_object *pstWan : Elements(stWans.get())) {
        printf("0x%08x  %-5s %-14s %s\n",
               static_cast<unsigned>(GetNumber(pstWan, "index").value_or(0)),
               UpOrDown(IsUp(pstWan, "connected")),
               GetText(pstWan, "connectionType").value_or("").c_str(),
               GetText(pstWan, "name").value_or("").c_str());
    }
    return 0;
}

int SetWan(const Options &stOptions) {
    (void)RuntimeDir::FromEnvironment();
    SwitchWan(stOptions.acPath, *stOptions.bOn);
    return 0;
}

int Iptv(const Options &stOptions) {
    (void)RuntimeDir::FromEnvironment();
    if (stOptions.bOn) {
        const JsonValue stWans = ValueOf("wan");
        json_object *pstWan = IptvWan(stWans.get(), ValueOf("iptv").get());
        if (pstWan == nullptr) {
            throw GatewayError("IPTV has no WAN connection");
        }
        SwitchWan(GetText(pstWan, "name").value_or(""), *stOptions.bOn);
    }
    for (const auto &[acMember, acText] : stOptions.mapMembers) {
        SetValue(acMember == "users" ? "multicast" : "iptv", acMember.c_str(), acText);
    }
    if (!stOptions.bOn && stOptions.mapMembers.empty()) {
        ShowIptv();
    }
    return 0;
}

}  // namespace wap::gateway
