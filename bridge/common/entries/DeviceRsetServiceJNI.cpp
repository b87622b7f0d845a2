#include "com_veltra_domoline_deviceservice_kavo_wap_tarn_jni_DeviceRsetServiceJNI.h"

#include "common/report.h"
#include "system/jni_device_control.h"

using namespace wap;

// Deliberately without a trace. 1 for a failure, where others have -1: the Java side compares with
// it.
JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_tarn_jni_DeviceRsetServiceJNI_reset(JNIEnv *,
                                                                                    jobject) {
    return Recorded(WAP_SPOT, VT_KAVO_JNI_ResetONT(), 1u) == 0 ? 0 : 1;
}
