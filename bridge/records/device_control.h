// Requests and replies of what is done to the box itself, as they travel.
#ifndef WAP_RECORDS_DEVICE_CONTROL_H
#define WAP_RECORDS_DEVICE_CONTROL_H

#include <stdint.h>

#include "records/word_request.h"

namespace wap {

// Served by "osgi_proxy".
/// When the box restarts is the receiver's affair.
inline constexpr uint32_t kRpcResetDevice = 0x47209051;
// Served by "app_m".
inline constexpr uint32_t kRpcSetLedSwitch = 0x471030D3;

/// There are only the switches below this one.
inline constexpr uint32_t kLedSwitchEnd = 2;

#pragma pack(push, 1)

/// Request of kRpcSetLedSwitch.
struct LedSwitch {
    uint32_t uiOn;  ///< 1 lights on, 0 off
};
static_assert(sizeof(LedSwitch) == 4);

/// Reply of both; the word says nothing.
struct DeviceControlReply {
    uint32_t uiUnused;
};
static_assert(sizeof(DeviceControlReply) == 4);

#pragma pack(pop)

}  // namespace wap

#endif
