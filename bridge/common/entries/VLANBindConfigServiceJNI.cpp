#include "com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_VLANBindConfigServiceJNI.h"

#include "common/answers.h"
#include "wan/jni_vlan_bind.h"

using namespace wap;

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_VLANBindConfigServiceJNI_setVLANBind(
    JNIEnv *pstEnv, jobject, jstring jInterface, jstring jBind) {
    WAP_TRACE_ENTRY();
    const JavaText stInterface = JavaText::Make(pstEnv, jInterface);
    const JavaText stBind = JavaText::Make(pstEnv, jBind);
    if (!stInterface || !stBind) {
        RecordFault(WAP_SPOT, kErrFailed);
        return -1;
    }
    const uint32_t uiResult = VT_JNI_SetVlanBind(stInterface.Lend(), stBind.Lend());
    const jint iResult = static_cast<jint>(ZeroOrFailed(WAP_SPOT, uiResult));
    WAP_TRACE(kTraceEntries, "\r\n VT_JNI_SetVlanBind iResult:%d\r\n", iResult);
    return iResult;
}

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_VLANBindConfigServiceJNI_clearVLANBind(
    JNIEnv *pstEnv, jobject, jstring jInterface) {
    WAP_TRACE_ENTRY();
    const JavaText stInterface = JavaText::Make(pstEnv, jInterface);
    return static_cast<jint>(ZeroOrFailed(WAP_SPOT, VT_JNI_DelVlanBind(stInterface.Lend())));
}
