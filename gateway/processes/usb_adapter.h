// A simulated device on a line of its own: a pseudo-terminal whose far end it is.
#ifndef WAP_GATEWAY_PROCESSES_USB_ADAPTER_H
#define WAP_GATEWAY_PROCESSES_USB_ADAPTER_H

#include <memory>
#include <mutex>
#include <string>
#include <thread>

#include "framework/files.h"
#include "processes/usb_device.h"

namespace wap::gateway {

/// Plugged in from its construction to its destruction, after which whoever still has the node open
/// reads its end. Others may open and close the node as often as they like meanwhile.
class UsbAdapter {
  public:
    /// Throws GatewayError for an unknown kind, and when there is no pseudo-terminal to be had.
    explicit UsbAdapter(const std::string &acKind);
    ~UsbAdapter();
    UsbAdapter(const UsbAdapter &) = delete;
    UsbAdapter &operator=(const UsbAdapter &) = delete;

    /// The path of the device node.
    const std::string &Node() const { return m_acNode; }

    /// Switches the device off and on: the line is raw, with 9600 baud and 8N1, and nothing is on
    /// its way on it. Throws GatewayError.
    void Reset();

  private:
    /// The thread: has the device answer what comes, until the wake-up call.
    void Run();
    /// Reads what came and sends what it can.
    void Exchange();

    const std::string m_acKind;
    std::string m_acNode;
    FileDescriptor m_stMaster;  ///< the device's end
    FileDescriptor m_stSlave;   ///< keeps the line up while nobody else has the node open
    FileDescriptor m_stWake;

    std::mutex m_stMutex;  ///< the device and what it has not sent yet
    std::unique_ptr<UsbDevice> m_pstDevice;
    std::string m_acPending;

    std::thread m_stThread;
};

}  // namespace wap::gateway

#endif
