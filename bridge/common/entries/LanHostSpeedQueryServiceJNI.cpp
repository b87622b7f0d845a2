#include "com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LanHostSpeedQueryServiceJNI.h"

#include "common/answers.h"
#include "lan/jni_lanhost_info.h"

using namespace wap;

JNIEXPORT jstring JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LanHostSpeedQueryServiceJNI_getLANHostSpeed(
    JNIEnv *pstEnv, jobject, jstring jMac) {
    WAP_TRACE_ENTRY();
    const JavaText stMac = JavaText::Make(pstEnv, jMac);
    AnswerBuffer<128> stBuffer = {};
    const uint32_t uiResult =
        stMac ? VT_JNI_getLANHostSpeed(stMac.Lend(), stBuffer.acText, 128) : 1;
    return TextOrFallback(pstEnv, WAP_SPOT, uiResult, stBuffer.acText);
}
