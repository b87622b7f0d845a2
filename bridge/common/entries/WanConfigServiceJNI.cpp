#include "com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_WanConfigServiceJNI.h"

#include "common/answers.h"
#include "wan/jni_wan_config.h"

using namespace wap;

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_WanConfigServiceJNI_addWANIf(
    JNIEnv *pstEnv, jobject, jstring jVlanMode, jstring jVlan, jstring jConType) {
    WAP_TRACE_ENTRY();
    const JavaText stVlanMode = JavaText::Make(pstEnv, jVlanMode);
    const JavaText stVlan = JavaText::Make(pstEnv, jVlan);
    const JavaText stConType = JavaText::Make(pstEnv, jConType);
    if (!stVlanMode || !stVlan || !stConType) {
        RecordFault(WAP_SPOT, kErrFailed);
        return -1;
    }
    uint32_t uiWanIndex = 0;
    const uint32_t uiResult =
        VT_JNI_AddWANIf(stVlanMode.Lend(), stVlan.Lend(), stConType.Lend(), &uiWanIndex);
    return uiResult == 0 ? static_cast<jint>(uiWanIndex) : NumberAnswer(WAP_SPOT, uiResult);
}

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_WanConfigServiceJNI_setWANIf(
    JNIEnv *pstEnv, jobject, jint iWanIndex, jstring jJson) {
    WAP_TRACE_ENTRY();
    const SecretText stJson = SecretText::Make(pstEnv, jJson);
    if (!stJson) {
        RecordFault(WAP_SPOT, kErrFailed, static_cast<uint32_t>(iWanIndex));
        return -1;
    }
    return NumberAnswer(WAP_SPOT, VT_JNI_SetWANIf(static_cast<uint32_t>(iWanIndex), stJson.Lend()));
}

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_WanConfigServiceJNI_deleteWANIf(
    JNIEnv *, jobject, jint iWanIndex) {
    WAP_TRACE_ENTRY();
    const auto uiWanIndex = static_cast<uint32_t>(iWanIndex);
    WAP_TRACE(kTraceEntries, "deleteWANIf wanindex:%u \r\n", uiWanIndex);
    return Recorded(WAP_SPOT, VT_JNI_DeleteWANIf(uiWanIndex), uiWanIndex) == 0 ? 0 : -1;
}
