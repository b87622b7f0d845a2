#include "com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LANIPInfoQueryServiceJNI.h"

#include "common/answers.h"
#include "lan/jni_lan_address.h"

using namespace wap;

JNIEXPORT jstring JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LANIPInfoQueryServiceJNI_getLANHostIP(
    JNIEnv *pstEnv, jobject) {
    WAP_TRACE_ENTRY();
    return TextAnswer<128>(pstEnv, WAP_SPOT, VT_JNI_getLANHostIP);
}

JNIEXPORT jstring JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LANIPInfoQueryServiceJNI_getLANDHCPInfo(
    JNIEnv *pstEnv, jobject) {
    WAP_TRACE_ENTRY();
    return TextAnswer<256>(pstEnv, WAP_SPOT, VT_JNI_getLANDHCPInfo);
}
