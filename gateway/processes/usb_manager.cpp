#include "processes/usb_manager.h"

#include <stdio.h>

#include <algorithm>

#include "framework/error.h"
#include "processes/processes.h"

namespace wap::gateway {

namespace {

constexpr size_t kPluginsMax = 64;

/// Results of an open that is no error of the call.
constexpr uint32_t kNoDevice = 1;
constexpr uint32_t kNotLocked = 2;

}  // namespace

UsbManager::UsbManager(Home &stHome, const RuntimeDir &stDir)
    : m_stHome(stHome), m_stVolumes(stHome, stDir) {
    const std::scoped_lock stLock(m_stMutex);
    PlugAsHome();
}

uint32_t UsbManager::Register(int32_t iCaller, const std::string &acPlugin, uint32_t uiType) {
    const std::scoped_lock stLock(m_stMutex);
    Refresh();
    const std::optional<Caller> stCaller = FindCaller(iCaller);
    const auto stFound = m_mapPlugins.find(acPlugin);
    if (acPlugin.empty() || !stCaller ||
        (stFound != m_mapPlugins.end() && stFound->second.stOwner != *stCaller)) {
        return kRefused;
    }
    if (stFound == m_mapPlugins.end() && m_mapPlugins.size() >= kPluginsMax) {
        return kTableFull;
    }
    m_mapPlugins.insert_or_assign(acPlugin, Plugin{uiType, *stCaller});
    return 0;
}

uint32_t UsbManager::Unregister(int32_t iCaller, const std::string &acPlugin) {
    const std::scoped_lock stLock(m_stMutex);
    Refresh();
    const std::optional<Caller> stCaller = UserOf(iCaller);
    const auto stFound = m_mapPlugins.find(acPlugin);
    if (!stCaller || stFound == m_mapPlugins.end() || stFound->second.stOwner != *stCaller) {
        return kRefused;
    }
    m_mapPlugins.erase(stFound);
    if (!UserOf(iCaller)) {
        for (auto &[uiId, stDevice] : m_mapDevices) {
            if (stDevice.stOwner == stCaller) {
                stDevice.stOwner.reset();
            }
        }
    }
    return 0;
}

uint32_t UsbManager::Lock(int32_t iCaller, uint32_t uiDevice) {
    const std::scoped_lock stLock(m_stMutex);
    Refresh();
    const std::optional<Caller> stCaller = UserOf(iCaller);
    Device *pstDevice = Find(uiDevice);
    if (!stCaller || pstDevice == nullptr) {
        return kRefused;
    }
    if (pstDevice->stOwner) {
        return kErrUsbBusy;
    }
    if (pstDevice->pstAdapter) {
        pstDevice->pstAdapter->Reset();
    }
    pstDevice->stOwner = stCaller;
    return 0;
}

uint32_t UsbManager::Unlock(int32_t iCaller, uint32_t uiDevice) {
    const std::scoped_lock stLock(m_stMutex);
    Refresh();
    const std::optional<Caller> stCaller = UserOf(iCaller);
    Device *pstDevice = Find(uiDevice);
    if (!stCaller || pstDevice == nullptr || pstDevice->stOwner != stCaller) {
        return kRefused;
    }
    pstDevice->stOwner.reset();
    return 0;
}

uint32_t UsbManager::Open(int32_t iCaller, uint32_t uiDevice, UsbOpenReply &stReply) {
    const std::scoped_lock stLock(m_stMutex);
    Refresh();
    const std::optional<Caller> stCaller = UserOf(iCaller);
    if (!stCaller) {
        return kRefused;
    }
    const Device *pstDevice = Find(uiDevice);
    if (pstDevice == nullptr || !pstDevice->pstAdapter) {
        stReply.uiResult = kNoDevice;
    } else if (!pstDevice->stOwner) {
        stReply.uiResult = kNotLocked;
    } else if (pstDevice->stOwner != stCaller) {
        return kErrUsbBusy;
    } else {
        PutField(stReply.acPath, pstDevice->pstAdapter->Node());
    }
    return 0;
}

void UsbManager::Refresh() {
    PlugAsHome();
    std::erase_if(m_mapPlugins,
                  [](const auto &stEntry) { return !IsAlive(stEntry.second.stOwner); });
    for (auto &[uiId, stDevice] : m_mapDevices) {
        if (stDevice.stOwner && !IsAlive(*stDevice.stOwner)) {
            stDevice.stOwner.reset();
        }
    }
}

void UsbManager::PlugAsHome() {
    const JsonValue stList = m_stHome.Get(kUsb);
    std::erase_if(m_mapDevices, [&](const auto &stEntry) {
        json_object *pstWanted = FindNumber(stList.get(), "id", stEntry.first);
        return TextOf(pstWanted, "name") != stEntry.second.acName ||
               TextOf(pstWanted, "kind") != stEntry.second.acKind;
    });
    for (json_object *pstWanted : Elements(stList.get())) {
        const int64_t iId = GetNumber(pstWanted, "id").value_or(0);
        if (iId < 1 || iId > UINT32_MAX) {
            continue;  // nobody could ask for it
        }
        const auto [stPlace, bNew] = m_mapDevices.try_emplace(static_cast<uint32_t>(iId));
        Device &stDevice = stPlace->second;
        if (!bNew) {
            continue;
        }
        stDevice.acName = TextOf(pstWanted, "name");
        stDevice.acKind = TextOf(pstWanted, "kind");
        try {
            stDevice.pstAdapter = std::make_unique<UsbAdapter>(stDevice.acKind);
        } catch (const std::exception &stError) {
            // It stays listed, and so this is not tried with every request.
            fprintf(stderr, "usb_mngt: %s does not work: %s\n", stDevice.acName.c_str(),
                    stError.what());
        }
    }
}

std::optional<Caller> UsbManager::UserOf(int32_t iCaller) const {
    const std::optional<Caller> stCaller = FindCaller(iCaller);
    const bool bUser =
        std::any_of(m_mapPlugins.begin(), m_mapPlugins.end(),
                    [&](const auto &stEntry) { return stEntry.second.stOwner == stCaller; });
    return bUser ? stCaller : std::nullopt;
}

UsbManager::Device *UsbManager::Find(uint32_t uiDevice) {
    const auto stFound = m_mapDevices.find(uiDevice);
    return stFound == m_mapDevices.end() ? nullptr : &stFound->second;
}

}  // namespace wap::gateway
