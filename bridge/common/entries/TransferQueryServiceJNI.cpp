#include "com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_TransferQueryServiceJNI.h"

#include "access/jni_iptv_info.h"
#include "common/answers.h"
#include "lan/jni_l3forward_route.h"
#include "wan/jni_vlan_bind.h"

using namespace wap;

JNIEXPORT jstring JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_TransferQueryServiceJNI_getLayer3ForwardingStaticConfigInfo(
    JNIEnv *pstEnv, jobject) {
    WAP_TRACE_ENTRY();
    return HeapTextAnswer(pstEnv, WAP_SPOT, VT_JNI_GetAllL3Ipv4StaticRoute);
}

JNIEXPORT jstring JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_TransferQueryServiceJNI_getIPv6Layer3ForwardingStaticConfigInfo(
    JNIEnv *pstEnv, jobject) {
    WAP_TRACE_ENTRY();
    return HeapTextAnswer(pstEnv, WAP_SPOT, VT_JNI_GetAllL3Ipv6StaticRoute);
}

JNIEXPORT jstring JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_TransferQueryServiceJNI_getLayer3ForwardingCurrent(
    JNIEnv *pstEnv, jobject) {
    WAP_TRACE_ENTRY();
    return HeapTextAnswer(pstEnv, WAP_SPOT, VT_JNI_GetL3Ipv4CurrentRouter);
}

JNIEXPORT jstring JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_TransferQueryServiceJNI_getIPv6Layer3ForwardingCurrent(
    JNIEnv *pstEnv, jobject) {
    WAP_TRACE_ENTRY();
    return HeapTextAnswer(pstEnv, WAP_SPOT, VT_JNI_GetL3Ipv6CurrentRouter);
}

JNIEXPORT jstring JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_TransferQueryServiceJNI_getVLANBindInfo(
    JNIEnv *pstEnv, jobject) {
    WAP_TRACE_ENTRY();
    WAP_TRACE(kTraceEntries, "\r\n getVLANBindInfo\r\n");
    return HeapTextAnswer(pstEnv, WAP_SPOT, VT_JNI_GetAllVlanBind);
}

JNIEXPORT jstring JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_TransferQueryServiceJNI_getIPTVStatus(
    JNIEnv *pstEnv, jobject) {
    WAP_TRACE_ENTRY();
    char acBuff[32] = {};
    // A failure is told by the empty text alone: Java's side looks for nothing else.
    (void)VT_JNI_GetIPTVStatus(acBuff, sizeof(acBuff));
    WAP_TRACE(kTraceEntries, "\r\n getIPTVStatus acBuff:%s\r\n", acBuff);
    return TextOrEmpty(pstEnv, acBuff);
}
