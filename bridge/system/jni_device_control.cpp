#include "system/jni_device_control.h"

#include "common/jni_common.h"
#include "common/report.h"
#include "common/requests.h"

using namespace wap;

namespace {

constexpr ProxyRoute kReset = {kRpcResetDevice};
constexpr GeneralRoute kSwitchLeds = {"app_m", 249, kRpcSetLedSwitch};

}  // namespace

uint32_t VT_KAVO_JNI_ResetONT(void) {
    DeviceControlReply stReply = {};
    return ZeroOrFailed(WAP_SPOT, Ask(kReset, WordRequest{}, stReply));
}

uint32_t VT_JNI_setLedSwitch(uint32_t uiSwitch) {
    WAP_TRACE(kTraceEntries, "\r\n setLedSwitch bLedSwitch:%u \r\n", uiSwitch);
    DeviceControlReply stReply = {};
    return Ask(kSwitchLeds, LedSwitch{uiSwitch}, stReply);
}
