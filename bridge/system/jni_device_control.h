// Workers of what is done to the box itself.
#ifndef WAP_SYSTEM_JNI_DEVICE_CONTROL_H
#define WAP_SYSTEM_JNI_DEVICE_CONTROL_H

#include <stdint.h>

#include "common/wap_export.h"
#include "records/device_control.h"

/// Asks for a reset. When the box restarts, before or after the answer, is the receiver's affair.
/// 0; -1 (as unsigned), recorded, when the request fails.
WAP_EXPORT uint32_t VT_KAVO_JNI_ResetONT(void);

/**
 * Switches the gateway's lights.
 * @param uiSwitch 1 on, 0 off; sent as it is
 * @return 0, or the platform's code, recorded
 */
WAP_EXPORT uint32_t VT_JNI_setLedSwitch(uint32_t uiSwitch);

#endif
