#include "com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_TrafficMirrorServiceJNI.h"

#include "common/answers.h"
#include "wan/jni_traffic_mirror.h"

using namespace wap;

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_TrafficMirrorServiceJNI_addMirrorRule(
    JNIEnv *pstEnv, jobject, jstring jRemoteAddress, jstring jRemotePort, jstring jDirection,
    jstring jProtocol, jstring jHostMac, jstring jMirrorToIp, jint iMirrorToPort) {
    WAP_TRACE_ENTRY();
    // More texts than there is room for without asking.
    if (!EnsureElementRefs(pstEnv, 6)) {
        return NumberAnswer(WAP_SPOT, kErrFailed);
    }
    const OptionalText stAddress(pstEnv, jRemoteAddress);
    const JavaText stPort = JavaText::Make(pstEnv, jRemotePort);
    const JavaText stDirection = JavaText::Make(pstEnv, jDirection);
    const JavaText stProtocol = JavaText::Make(pstEnv, jProtocol);
    const OptionalText stMac(pstEnv, jHostMac);
    const JavaText stIp = JavaText::Make(pstEnv, jMirrorToIp);
    if (stAddress.Failed() || stMac.Failed()) {
        return NumberAnswer(WAP_SPOT, kErrFailed);
    }
    return NumberAnswer(
        WAP_SPOT, AddMirrorRule({stAddress.Lend(), stPort.Lend(), stDirection.Lend(),
                                 stProtocol.Lend(), stMac.Lend(), stIp.Lend(), iMirrorToPort}));
}

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_TrafficMirrorServiceJNI_deleteMirrorRule(
    JNIEnv *, jobject, jint iRuleInst) {
    WAP_TRACE_ENTRY();
    return NumberAnswer(WAP_SPOT, DeleteMirrorRule(static_cast<uint32_t>(iRuleInst)));
}

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_TrafficMirrorServiceJNI_deleteAllMirrorRule(
    JNIEnv *, jobject) {
    WAP_TRACE_ENTRY();
    return NumberAnswer(WAP_SPOT, DeleteMirrorRule(kAllRules));
}

// The spelling is deliberate: bundles call it by this name.
JNIEXPORT jstring JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_TrafficMirrorServiceJNI_getMirroRuleInfo(
    JNIEnv *pstEnv, jobject) {
    WAP_TRACE_ENTRY();
    return HeapTextOrFault(pstEnv, WAP_SPOT, ListMirrorRules);
}
