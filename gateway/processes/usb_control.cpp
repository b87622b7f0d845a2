// usb_mngt's answers to gatewayctl.
#include <strings.h>

#include <algorithm>
#include <string_view>

#include "framework/control.h"
#include "framework/error.h"
#include "processes/processes.h"
#include "processes/usb_manager.h"

namespace wap::gateway {

namespace {

constexpr size_t kDevicesMax = 16;

/// Not only digits: a device is named by its id, too.
bool IsDeviceName(const std::string &acName) {
    constexpr std::string_view kDigits = "0123456789";
    constexpr std::string_view kOthers =
        "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_-.";
    return acName.size() < 32 && acName.find_first_not_of(kDigits) != std::string::npos &&
           acName.find_first_not_of(kOthers) == std::string::npos;
}

}  // namespace

JsonValue UsbManager::Control(uint32_t uiRpcId, json_object *pstRequest) {
    switch (uiRpcId) {
        case kControlUsb:
            return ListDevices();
        case kControlUsbPlug:
            return Plug(TextOf(pstRequest, "name"), TextOf(pstRequest, "kind"));
        case kControlUsbUnplug:
            Unplug(TextOf(pstRequest, "device"));
            return MakeObject();
        case kControlStorage:
            return ListVolumes();
        case kControlStorageAdd:
            m_stVolumes.Add(TextOf(pstRequest, "name"), TextOf(pstRequest, "directory"));
            return MakeObject();
        case kControlStorageRemove:
            m_stVolumes.Remove(TextOf(pstRequest, "volume"));
            return MakeObject();
        default:
            return nullptr;
    }
}

JsonValue UsbManager::ListDevices() {
    const std::scoped_lock stLock(m_stMutex);
    Refresh();
    JsonValue stDevices = MakeArray();
    for (const auto &[uiId, stDevice] : m_mapDevices) {
        JsonValue stEntry = MakeObject();
        PutNumber(stEntry.get(), "id", uiId);
        PutText(stEntry.get(), "name", stDevice.acName);
        PutText(stEntry.get(), "kind", stDevice.acKind);
        PutText(stEntry.get(), "node",
                stDevice.pstAdapter ? stDevice.pstAdapter->Node() : std::string());
        if (stDevice.stOwner) {
            PutNumber(stEntry.get(), "owner", stDevice.stOwner->iPid);
        }
        Append(stDevices.get(), std::move(stEntry));
    }
    JsonValue stPlugins = MakeArray();
    for (const auto &[acName, stPlugin] : m_mapPlugins) {
        JsonValue stEntry = MakeObject();
        PutText(stEntry.get(), "name", acName);
        PutNumber(stEntry.get(), "type", stPlugin.uiType);
        PutNumber(stEntry.get(), "owner", stPlugin.stOwner.iPid);
        Append(stPlugins.get(), std::move(stEntry));
    }
    JsonValue stReply = MakeObject();
    PutMember(stReply.get(), "devices", std::move(stDevices));
    PutMember(stReply.get(), "plugins", std::move(stPlugins));
    return stReply;
}

JsonValue UsbManager::ListVolumes() const {
    JsonValue stList = MakeArray();
    for (const UsbVolume &stVolume : m_stVolumes.List()) {
        JsonValue stEntry = MakeObject();
        PutText(stEntry.get(), "name", stVolume.acName);
        PutText(stEntry.get(), "directory", stVolume.acDirectory);
        Append(stList.get(), std::move(stEntry));
    }
    JsonValue stReply = MakeObject();
    PutMember(stReply.get(), "volumes", std::move(stList));
    return stReply;
}

JsonValue UsbManager::Plug(const std::string &acName, const std::string &acKind) {
    if (!IsDeviceName(acName)) {
        throw GatewayError("\"" + acName +
                           "\" is no name for a device: use up to 31 letters, digits, _ - and ., "
                           "and not only digits");
    }
    if (!MakeUsbDevice(acKind)) {
        throw GatewayError("there is no kind of device \"" + acKind + "\"; there are " +
                           UsbDeviceKinds());
    }
    const std::scoped_lock stLock(m_stMutex);
    uint32_t uiId = 0;
    {
        HomeChange stChange(m_stHome);
        json_object *pstList = stChange.At(kUsb);
        if (FindElement(pstList, "name", acName) != nullptr) {
            throw GatewayError("there is a device \"" + acName + "\" already");
        }
        if (Elements(pstList).size() >= kDevicesMax) {
            throw GatewayError("all " + std::to_string(kDevicesMax) + " sockets are in use");
        }
        uiId = FreeNumber(pstList, "id");
        JsonValue stDevice = MakeObject();
        PutNumber(stDevice.get(), "id", uiId);
        PutText(stDevice.get(), "name", acName);
        PutText(stDevice.get(), "kind", acKind);
        Append(pstList, std::move(stDevice));
        stChange.Commit();
    }
    Refresh();
    const Device *pstDevice = Find(uiId);
    JsonValue stReply = MakeObject();
    PutNumber(stReply.get(), "id", uiId);
    PutText(stReply.get(), "node",
            pstDevice != nullptr && pstDevice->pstAdapter ? pstDevice->pstAdapter->Node()
                                                          : std::string());
    return stReply;
}

void UsbManager::Unplug(const std::string &acDevice) {
    const std::scoped_lock stLock(m_stMutex);
    {
        HomeChange stChange(m_stHome);
        json_object *pstList = stChange.At(kUsb);
        const auto astDevices = Elements(pstList);
        const auto stFound =
            std::find_if(astDevices.begin(), astDevices.end(), [&](json_object *pstDevice) {
                return strcasecmp(TextOf(pstDevice, "name").c_str(), acDevice.c_str()) == 0 ||
                       std::to_string(NumberOf(pstDevice, "id")) == acDevice;
            });
        if (stFound == astDevices.end()) {
            throw GatewayError("there is no device \"" + acDevice + "\"");
        }
        TakeOut(pstList, *stFound);
        stChange.Commit();
    }
    Refresh();
}

}  // namespace wap::gateway
