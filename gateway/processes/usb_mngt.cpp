// usb_mngt: owns the USB devices and the volumes on USB sticks.
#include "processes/processes.h"

namespace wap::gateway {

void AddUsbManagerRpcs(RpcTable &) {}

}  // namespace wap::gateway
