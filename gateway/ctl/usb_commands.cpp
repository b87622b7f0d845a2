// The verbs about what is plugged into the USB port: serial devices, and volumes on sticks.
#include "ctl/usb_commands.h"

#include <errno.h>
#include <stdio.h>
#include <stdlib.h>

#include <memory>

#include "ctl/client.h"
#include "framework/control.h"
#include "framework/error.h"
#include "framework/files.h"
#include "framework/process_list.h"

namespace wap::gateway {

namespace {

JsonValue AskUsb(uint32_t uiRpcId, json_object *pstRequest = nullptr) {
    (void)RuntimeDir::FromEnvironment();
    return Ask(FindOwner("usb")->pcName, uiRpcId, pstRequest);
}

std::string TextOf(json_object *pstObject, const char *pcKey) {
    return GetText(pstObject, pcKey).value_or("");
}

/// A number as it is printed; a dash for none.
std::string NumberText(json_object *pstObject, const char *pcKey) {
    const std::optional<int64_t> iNumber = GetNumber(pstObject, pcKey);
    return iNumber ? std::to_string(*iNumber) : "-";
}

std::string MemberOf(const Options &stOptions, const char *pcName) {
    const auto stFound = stOptions.mapMembers.find(pcName);
    return stFound == stOptions.mapMembers.end() ? "" : stFound->second;
}

/// The folder as the processes see it; empty when there is none.
std::string RealFolder(const std::string &acPath) {
    const std::unique_ptr<char, decltype(&free)> pcReal(realpath(acPath.c_str(), nullptr), &free);
    return pcReal ? pcReal.get() : "";
}

}  // namespace

int ListUsb(const Options &) {
    const JsonValue stAnswer = AskUsb(kControlUsb);
    printf("%-3s %-12s %-6s %-14s %s\n", "ID", "NAME", "KIND", "NODE", "LOCKED BY");
    for (json_object *pstDevice : Elements(FindMember(stAnswer.get(), "devices"))) {
        const std::string acNode = TextOf(pstDevice, "node");
        printf("%-3s %-12s %-6s %-14s %s\n", NumberText(pstDevice, "id").c_str(),
               TextOf(pstDevice, "name").c_str(), TextOf(pstDevice, "kind").c_str(),
               acNode.empty() ? "does not work" : acNode.c_str(),
               NumberText(pstDevice, "owner").c_str());
    }
    const auto astPlugins = Elements(FindMember(stAnswer.get(), "plugins"));
    if (!astPlugins.empty()) {
        printf("\n%-8s %-10s %s\n", "PROCESS", "TYPE", "PLUG-IN");
    }
    for (json_object *pstPlugin : astPlugins) {
        printf("%-8s %-10s %s\n", NumberText(pstPlugin, "owner").c_str(),
               NumberText(pstPlugin, "type").c_str(), TextOf(pstPlugin, "name").c_str());
    }
    return 0;
}

int PlugUsb(const Options &stOptions) {
    const JsonValue stRequest = MakeObject();
    PutText(stRequest.get(), "name", stOptions.acPath);
    PutText(stRequest.get(), "kind", MemberOf(stOptions, "kind"));
    const JsonValue stAnswer = AskUsb(kControlUsbPlug, stRequest.get());
    const std::string acNode = TextOf(stAnswer.get(), "node");
    if (acNode.empty()) {
        throw GatewayError(stOptions.acPath + " does not work; log/usb_mngt.out says why");
    }
    printf("device %s: %s\n", NumberText(stAnswer.get(), "id").c_str(), acNode.c_str());
    return 0;
}

int UnplugUsb(const Options &stOptions) {
    const JsonValue stRequest = MakeObject();
    PutText(stRequest.get(), "device", stOptions.acPath);
    (void)AskUsb(kControlUsbUnplug, stRequest.get());
    return 0;
}

int ListStorage(const Options &) {
    const JsonValue stAnswer = AskUsb(kControlStorage);
    printf("%-12s %s\n", "NAME", "FOLDER");
    for (json_object *pstVolume : Elements(FindMember(stAnswer.get(), "volumes"))) {
        printf("%-12s %s\n", TextOf(pstVolume, "name").c_str(),
               TextOf(pstVolume, "directory").c_str());
    }
    return 0;
}

int AddStorage(const Options &stOptions) {
    const std::string acFolder = RealFolder(stOptions.acPath);
    if (acFolder.empty()) {
        throw GatewayError("cannot find " + stOptions.acPath + ": " + ErrnoText(errno));
    }
    const std::string acName = MemberOf(stOptions, "name");
    const JsonValue stRequest = MakeObject();
    PutText(stRequest.get(), "directory", acFolder);
    PutText(stRequest.get(), "name",
            acName.empty() ? acFolder.substr(acFolder.rfind('/') + 1) : acName);
    (void)AskUsb(kControlStorageAdd, stRequest.get());
    return 0;
}

int RemoveStorage(const Options &stOptions) {
    const std::string acFolder = RealFolder(stOptions.acPath);
    // A name that happens to be a folder here, too, is meant as the name.
    const JsonValue stAnswer = AskUsb(kControlStorage);
    std::string acVolume = stOptions.acPath;
    for (json_object *pstVolume : Elements(FindMember(stAnswer.get(), "volumes"))) {
        if (TextOf(pstVolume, "name") == stOptions.acPath) {
            acVolume = stOptions.acPath;
            break;
        }
        if (!acFolder.empty() && TextOf(pstVolume, "directory") == acFolder) {
            acVolume = acFolder;
        }
    }
    const JsonValue stRequest = MakeObject();
    PutText(stRequest.get(), "volume", acVolume);
    (void)AskUsb(kControlStorageRemove, stRequest.get());
    return 0;
}

}  // namespace wap::gateway
