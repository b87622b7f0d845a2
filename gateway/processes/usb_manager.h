// What usb_mngt keeps: the devices that are plugged in, the plug-ins that use them, and the locks.
#ifndef WAP_GATEWAY_PROCESSES_USB_MANAGER_H
#define WAP_GATEWAY_PROCESSES_USB_MANAGER_H

#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "framework/rpc_table.h"
#include "processes/caller.h"
#include "processes/usb_adapter.h"
#include "processes/usb_volumes.h"
#include "records/usb_serial.h"

namespace wap::gateway {

/// Where the home says which devices there are.
inline constexpr char kUsb[] = "usb";

/**
 * Which devices there are is said by the home's "usb", so they outlive the process. Plug-ins and
 * locks do not, and neither do they outlive the process that they came from.
 *
 * A request for a device does not say which plug-in makes it, so a lock belongs to the process that
 * asked for it. Several plug-ins may live in one process: a device that is locked is busy for all
 * that ask, its owner's process among them. A process uses devices only while it has a plug-in
 * registered; when the last one takes its leave, its locks go.
 *
 * Any number of threads may use it.
 */
class UsbManager : public ProcessState {
  public:
    /// Plugs the home's devices in. Throws GatewayError.
    UsbManager(Home &stHome, const RuntimeDir &stDir);

    /// The RPCs; each returns the status for the caller, of which iCaller is the process.

    /// A plug-in that its process has registered before gets its new type, whatever types mean. One
    /// that another process has registered is refused.
    uint32_t Register(int32_t iCaller, const std::string &acPlugin, uint32_t uiType);
    uint32_t Unregister(int32_t iCaller, const std::string &acPlugin);
    /// kErrUsbBusy when anyone has the device. Its line is reset for the new owner.
    uint32_t Lock(int32_t iCaller, uint32_t uiDevice);
    uint32_t Unlock(int32_t iCaller, uint32_t uiDevice);
    /// kErrUsbBusy when another process has the device. A device that is not there, and one that
    /// nobody has locked, is no error of the call: the reply says so.
    uint32_t Open(int32_t iCaller, uint32_t uiDevice, UsbOpenReply &stReply);

    const UsbVolumes &Volumes() const { return m_stVolumes; }

    JsonValue Control(uint32_t uiRpcId, json_object *pstRequest) override;

  private:
    struct Device {
        std::string acName;
        std::string acKind;
        std::unique_ptr<UsbAdapter> pstAdapter;  ///< null for one that could not be simulated
        std::optional<Caller> stOwner;
    };
    struct Plugin {
        uint32_t uiType;
        Caller stOwner;
    };

    /// Plugs in and out what the home has and no longer has, and forgets processes that have ended.
    void Refresh();
    void PlugAsHome();
    /// The caller as it runs; nothing when it has no plug-in.
    std::optional<Caller> UserOf(int32_t iCaller) const;
    Device *Find(uint32_t uiDevice);

    JsonValue ListDevices();
    JsonValue ListVolumes() const;
    JsonValue Plug(const std::string &acName, const std::string &acKind);
    void Unplug(const std::string &acDevice);

    Home &m_stHome;
    UsbVolumes m_stVolumes;
    std::mutex m_stMutex;  ///< what follows; taken before the home's
    std::map<uint32_t, Device> m_mapDevices;
    std::map<std::string, Plugin> m_mapPlugins;
};

}  // namespace wap::gateway

#endif
