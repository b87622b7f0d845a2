#include "com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LanHostSpeedLimitServiceJNI.h"

#include "access/jni_attach_control.h"
#include "common/answers.h"
#include "common/owners.h"

using namespace wap;

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LanHostSpeedLimitServiceJNI_setLANHostSpeedLimit(
    JNIEnv *pstEnv, jobject, jstring jMac, jint iUp, jint iDown) {
    WAP_TRACE_ENTRY();
    const JavaText stMac = JavaText::Make(pstEnv, jMac);
    if (!stMac) {
        RecordFault(WAP_SPOT, 1);
        return -1;
    }
    const uint32_t uiResult = VT_JNI_setLANHostSpeedLimit(stMac.Lend(), static_cast<uint32_t>(iUp),
                                                          static_cast<uint32_t>(iDown));
    return NumberAnswer(WAP_SPOT, uiResult);
}
