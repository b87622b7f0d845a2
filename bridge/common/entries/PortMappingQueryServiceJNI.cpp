#include "com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_PortMappingQueryServiceJNI.h"

#include "common/answers.h"
#include "lan/jni_port_mapping.h"

using namespace wap;

JNIEXPORT jstring JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_PortMappingQueryServiceJNI_getPortMappingInfo(
    JNIEnv *pstEnv, jobject) {
    WAP_TRACE_ENTRY();
    return HeapTextAnswer(pstEnv, WAP_SPOT, VT_JNI_getPortMappingInfo);
}
