#include "com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_TrafficForwardServiceJNI.h"

#include "common/answers.h"
#include "wan/jni_traffic_forward.h"

using namespace wap;

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_TrafficForwardServiceJNI_addForwardRule(
    JNIEnv *pstEnv, jobject, jstring jRemoteAddress, jstring jRemotePort, jstring jProtocol,
    jstring jHostMac, jstring jForwardToIp, jint iForwardToPort) {
    WAP_TRACE_ENTRY();
    const OptionalText stAddress(pstEnv, jRemoteAddress);
    const JavaText stPort = JavaText::Make(pstEnv, jRemotePort);
    const JavaText stProtocol = JavaText::Make(pstEnv, jProtocol);
    const OptionalText stMac(pstEnv, jHostMac);
    const OptionalText stIp(pstEnv, jForwardToIp);
    if (stAddress.Failed() || stMac.Failed() || stIp.Failed()) {
        return NumberAnswer(WAP_SPOT, kErrFailed);
    }
    return NumberAnswer(
        WAP_SPOT, AddForwardRule({stAddress.Lend(), stPort.Lend(), stProtocol.Lend(), stMac.Lend(),
                                  stIp.Lend(), iForwardToPort}));
}

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_TrafficForwardServiceJNI_deleteForwardRule(
    JNIEnv *, jobject, jint iRuleInst) {
    WAP_TRACE_ENTRY();
    return NumberAnswer(WAP_SPOT, DeleteForwardRule(static_cast<uint32_t>(iRuleInst)));
}

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_TrafficForwardServiceJNI_deleteAllForwardRule(
    JNIEnv *, jobject) {
    WAP_TRACE_ENTRY();
    return NumberAnswer(WAP_SPOT, DeleteForwardRule(kAllRules));
}

JNIEXPORT jstring JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_TrafficForwardServiceJNI_getForwardRuleInfo(
    JNIEnv *pstEnv, jobject) {
    WAP_TRACE_ENTRY();
    return HeapTextOrFault(pstEnv, WAP_SPOT, ListForwardRules);
}
