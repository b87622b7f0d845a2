#include "com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_DeviceAccessRightQueryServiceJNI.h"

#include "common/answers.h"
#include "system/jni_access_right.h"

using namespace wap;

namespace {

jstring RightAnswer(JNIEnv *pstEnv, SourceSpot stSpot, Share eShare) {
    SecretBlock stText;
    const uint32_t uiResult = FetchRightText(eShare, stText);
    return uiResult == 0 ? char2jstring(pstEnv, static_cast<const char *>(stText.Lend()))
                         : FaultAnswer(pstEnv, stSpot, OnFailure::kMinusOne, uiResult);
}

}  // namespace

JNIEXPORT jstring JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_DeviceAccessRightQueryServiceJNI_getFTPRightInfo(
    JNIEnv *pstEnv, jobject) {
    WAP_TRACE_ENTRY();
    return RightAnswer(pstEnv, WAP_SPOT, Share::kFtp);
}

JNIEXPORT jstring JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_DeviceAccessRightQueryServiceJNI_getSambaRightInfo(
    JNIEnv *pstEnv, jobject) {
    WAP_TRACE_ENTRY();
    return RightAnswer(pstEnv, WAP_SPOT, Share::kSamba);
}

JNIEXPORT jstring JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_DeviceAccessRightQueryServiceJNI_getHTTPRightInfo(
    JNIEnv *pstEnv, jobject) {
    WAP_TRACE_ENTRY();
    return TextAnswer<kHttpRightSize>(pstEnv, WAP_SPOT, VT_JNI_GetHTTPRightInfo);
}
