#include "com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LanNetworkNameConfigServiceJNI.h"

#include "common/answers.h"
#include "lan/jni_lanhost_info.h"

using namespace wap;

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LanNetworkNameConfigServiceJNI_setGatewayName(
    JNIEnv *pstEnv, jobject, jstring jName) {
    WAP_TRACE_ENTRY();
    const JavaText stName = JavaText::Make(pstEnv, jName);
    if (!stName) {
        RecordFault(WAP_SPOT, 1);
        return -1;
    }
    return NumberAnswer(WAP_SPOT, VT_JNI_setGatewayName(stName.Lend()));
}

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LanNetworkNameConfigServiceJNI_setLANHostName(
    JNIEnv *pstEnv, jobject, jstring jMac, jstring jName) {
    const JavaText stMac = JavaText::Make(pstEnv, jMac);
    const JavaText stName = JavaText::Make(pstEnv, jName);
    if (!stMac || !stName) {
        RecordFault(WAP_SPOT, 1);
        return -1;
    }
    // Deliberately on the console instead of in the trace.
    (void)VT_OS_Printf(
        "\r\n gulm_jni_LanNetworkNameConfigServiceJNI_setLANHostName called Mac:%s  DevName:%s "
        "\r\n",
        stMac.Lend(), stName.Lend());
    return NumberAnswer(WAP_SPOT, VT_JNI_setLANHostName(stMac.Lend(), stName.Lend()));
}
