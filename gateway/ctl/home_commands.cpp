// The verbs about what is in the home: hosts, and features of the firmware.
#include <stdio.h>

#include "ctl/client.h"
#include "ctl/commands.h"
#include "ctl/features.h"
#include "framework/control.h"
#include "framework/error.h"
#include "framework/process_list.h"

namespace wap::gateway {

namespace {

constexpr char kHosts[] = "hosts";

const char *HostsOwner() {
    return FindOwner(kHosts)->pcName;
}

/// The request about one host.
JsonValue HostRequest(const std::string &acMac) {
    (void)RuntimeDir::FromEnvironment();
    JsonValue stRequest = MakeObject();
    PutText(stRequest.get(), "path", kHosts);
    PutText(stRequest.get(), "key", "mac");
    PutText(stRequest.get(), "id", acMac);
    return stRequest;
}

/// A host that has just come, with nothing sent or received.
JsonValue NewHost(const Options &stOptions) {
    const auto Word = [&](const char *pcName, const char *pcElse) {
        const auto stFound = stOptions.mapMembers.find(pcName);
        return stFound == stOptions.mapMembers.end() ? std::string(pcElse) : stFound->second;
    };
    JsonValue stHost = MakeObject();
    PutText(stHost.get(), "mac", stOptions.acMac);
    PutText(stHost.get(), "ip", Word("ip", "0.0.0.0"));
    PutText(stHost.get(), "name", Word("name", ""));
    PutText(stHost.get(), "class", Word("class", "OTHER"));
    PutText(stHost.get(), "interface", Word("interface", "LAN1"));
    PutBool(stHost.get(), "active", true);
    for (const char *pcCount :
         {"onlineTime", "rxBytes", "txBytes", "rxPackets", "txPackets", "upSpeed", "downSpeed"}) {
        PutNumber(stHost.get(), pcCount, 0);
    }
    return stHost;
}

}  // namespace

int ListHosts(const Options &) {
    (void)RuntimeDir::FromEnvironment();
    const JsonValue stRequest = MakeObject();
    PutText(stRequest.get(), "path", kHosts);
    const JsonValue stAnswer = Ask(HostsOwner(), kControlGet, stRequest.get());
    printf("%-18s %-16s %-10s %-8s %s\n", "MAC", "IP", "INTERFACE", "CLASS", "NAME");
    for (json_object *pstHost : Elements(FindMember(stAnswer.get(), "value"))) {
        const auto Word = [&](const char *pcKey) { return GetText(pstHost, pcKey).value_or(""); };
        printf("%-18s %-16s %-10s %-8s %s\n", Word("mac").c_str(), Word("ip").c_str(),
               Word("interface").c_str(), Word("class").c_str(), Word("name").c_str());
    }
    return 0;
}

int AddHost(const Options &stOptions) {
    const JsonValue stRequest = HostRequest(stOptions.acMac);
    PutMember(stRequest.get(), "value", NewHost(stOptions));
    (void)Ask(HostsOwner(), kControlAdd, stRequest.get());
    return 0;
}

int RemoveHost(const Options &stOptions) {
    (void)Ask(HostsOwner(), kControlRemove, HostRequest(stOptions.acMac).get());
    return 0;
}

int SetHost(const Options &stOptions) {
    const JsonValue stRequest = HostRequest(stOptions.acMac);
    PutText(stRequest.get(), "member", stOptions.acPath);
    PutText(stRequest.get(), "text", stOptions.acText);
    (void)Ask(HostsOwner(), kControlChange, stRequest.get());
    return 0;
}

int Feature(const Options &stOptions) {
    const RuntimeDir stDir = RuntimeDir::FromEnvironment();
    std::set<uint32_t> setFeatures = ReadFeatures(stDir);
    if (!stOptions.uiFeature) {
        for (const uint32_t uiFeature : setFeatures) {
            printf("%u on\n", uiFeature);
        }
        return 0;
    }
    const uint32_t uiFeature = *stOptions.uiFeature;
    if (!stOptions.bOn) {
        printf("%u %s\n", uiFeature, setFeatures.contains(uiFeature) ? "on" : "off");
        return 0;
    }
    if (*stOptions.bOn) {
        setFeatures.insert(uiFeature);
    } else {
        setFeatures.erase(uiFeature);
    }
    WriteFeatures(stDir, setFeatures);
    return 0;
}

}  // namespace wap::gateway
