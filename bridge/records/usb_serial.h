// Requests and replies about the USB serial devices that plug-ins use, as they travel.
#ifndef WAP_RECORDS_USB_SERIAL_H
#define WAP_RECORDS_USB_SERIAL_H

#include <stddef.h>
#include <stdint.h>

namespace wap {

// RPC ids served by "usb_mngt".
inline constexpr uint32_t kRpcUsbOpen = 0x4710303F;
inline constexpr uint32_t kRpcUsbRegister = 0x47103041;
inline constexpr uint32_t kRpcUsbUnregister = 0x47103042;
inline constexpr uint32_t kRpcUsbLock = 0x47103043;
inline constexpr uint32_t kRpcUsbUnlock = 0x47103044;

/// "usb_mngt" refuses because somebody else has the device.
inline constexpr uint32_t kErrUsbBusy = 0xF710403D;

#pragma pack(push, 1)

/// Request of kRpcUsbRegister and kRpcUsbUnregister.
struct UsbPluginReq {
    uint32_t uiType;  ///< 0 when a plug-in takes its leave
    char acPluginId[128];
};
static_assert(offsetof(UsbPluginReq, uiType) == 0);
static_assert(offsetof(UsbPluginReq, acPluginId) == 4);
static_assert(sizeof(UsbPluginReq) == 132);

/// Request of kRpcUsbLock, kRpcUsbUnlock and kRpcUsbOpen.
struct UsbDeviceReq {
    uint32_t uiDeviceId;
};
static_assert(sizeof(UsbDeviceReq) == 4);

/// Reply of all but kRpcUsbOpen; the call's own result says everything.
struct UsbDoneReply {
    uint8_t aucUnused[68];
};
static_assert(sizeof(UsbDoneReply) == 68);

/// Reply of kRpcUsbOpen. The text should end with a zero; read it as if it might not.
struct UsbOpenReply {
    uint32_t uiResult;  ///< 0 when the device may be opened
    char acPath[96];    ///< the device node
};
static_assert(offsetof(UsbOpenReply, uiResult) == 0);
static_assert(offsetof(UsbOpenReply, acPath) == 4);
static_assert(sizeof(UsbOpenReply) == 100);

#pragma pack(pop)

}  // namespace wap

#endif
