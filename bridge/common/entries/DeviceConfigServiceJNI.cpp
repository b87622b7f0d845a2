#include "com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_DeviceConfigServiceJNI.h"

#include "common/jni_common.h"
#include "system/jni_device_control.h"

using namespace wap;

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_DeviceConfigServiceJNI_setLedSwitch(
    JNIEnv *, jobject, jint iSwitch) {
    WAP_TRACE_ENTRY();
    const auto uiSwitch = static_cast<uint32_t>(iSwitch);
    WAP_TRACE(kTraceEntries, "\r\n setLedSwitch bSwitch:%u \r\n", uiSwitch);
    if (uiSwitch >= kLedSwitchEnd || VT_JNI_setLedSwitch(uiSwitch) != 0) {
        RecordFault(WAP_SPOT, kErrFailed, uiSwitch);
        return -1;
    }
    return 0;
}
