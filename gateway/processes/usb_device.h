// What can be plugged into the simulated gateway's USB port, seen from the far end of the line.
#ifndef WAP_GATEWAY_PROCESSES_USB_DEVICE_H
#define WAP_GATEWAY_PROCESSES_USB_DEVICE_H

#include <memory>
#include <string>
#include <string_view>

namespace wap::gateway {

/// A simulated serial device. Used by one thread at a time.
class UsbDevice {
  public:
    virtual ~UsbDevice() = default;

    /// Takes bytes that came over the line; returns what the device sends back for them.
    virtual std::string Take(std::string_view pcBytes) = 0;
};

/// A device of that kind, just switched on; null when there is no such kind.
std::unique_ptr<UsbDevice> MakeUsbDevice(std::string_view pcKind);

/// The kinds that there are, for messages: "echo, modem".
std::string UsbDeviceKinds();

}  // namespace wap::gateway

#endif
