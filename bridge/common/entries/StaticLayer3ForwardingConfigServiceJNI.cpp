#include "com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_StaticLayer3ForwardingConfigServiceJNI.h"

#include "common/answers.h"
#include "lan/jni_l3forward_route.h"

using namespace wap;

namespace {

/// -1 for a text that is missing.
jint RefuseMissing(SourceSpot stSpot) {
    RecordFault(stSpot, kErrFailed);
    return -1;
}

/// The id of a route that was added, or -1.
jint AddedId(SourceSpot stSpot, uint32_t uiResult, uint32_t uiInstId) {
    return Recorded(stSpot, uiResult) == 0 ? static_cast<jint>(uiInstId) : -1;
}

}  // namespace

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_StaticLayer3ForwardingConfigServiceJNI_addLayer3ForwardingStatic(
    JNIEnv *pstEnv, jobject, jstring jDest, jstring jMask, jstring jGateway, jstring jInterface) {
    WAP_TRACE_ENTRY();
    const JavaText stDest = JavaText::Make(pstEnv, jDest);
    const JavaText stMask = JavaText::Make(pstEnv, jMask);
    const OptionalText stGateway(pstEnv, jGateway);
    const JavaText stInterface = JavaText::Make(pstEnv, jInterface);
    if (!stDest || !stMask || stGateway.Failed() || !stInterface) {
        return RefuseMissing(WAP_SPOT);
    }
    uint32_t uiInstId = 0;
    const uint32_t uiResult = VT_JNI_AddL3Ipv4StaticRoute(
        stDest.Lend(), stMask.Lend(), stGateway.Lend(), stInterface.Lend(), &uiInstId);
    if (uiResult == 0) {
        WAP_TRACE(kTraceEntries, "\r\n addLayer3ForwardingStatic iInstId:%u\r\n", uiInstId);
    }
    return AddedId(WAP_SPOT, uiResult, uiInstId);
}

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_StaticLayer3ForwardingConfigServiceJNI_deleteLayer3ForwardingStatic(
    JNIEnv *, jobject, jint iInstId) {
    WAP_TRACE_ENTRY();
    return NumberAnswer(WAP_SPOT, VT_JNI_DelL3Ipv4StaticRoute(static_cast<uint32_t>(iInstId)));
}

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_StaticLayer3ForwardingConfigServiceJNI_addIPv6Layer3ForwardingStatic(
    JNIEnv *pstEnv, jobject, jstring jDestPrefix, jstring jNextHop, jstring jInterface) {
    WAP_TRACE_ENTRY();
    const JavaText stDestPrefix = JavaText::Make(pstEnv, jDestPrefix);
    const OptionalText stNextHop(pstEnv, jNextHop);
    const JavaText stInterface = JavaText::Make(pstEnv, jInterface);
    if (!stDestPrefix || stNextHop.Failed() || !stInterface) {
        return RefuseMissing(WAP_SPOT);
    }
    uint32_t uiInstId = 0;
    const uint32_t uiResult = VT_JNI_AddL3Ipv6StaticRoute(stDestPrefix.Lend(), stNextHop.Lend(),
                                                          stInterface.Lend(), &uiInstId);
    return AddedId(WAP_SPOT, uiResult, uiInstId);
}

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_StaticLayer3ForwardingConfigServiceJNI_deleteIPv6Layer3ForwardingStatic(
    JNIEnv *, jobject, jint iInstId) {
    WAP_TRACE_ENTRY();
    return NumberAnswer(WAP_SPOT, VT_JNI_DelL3Ipv6StaticRoute(static_cast<uint32_t>(iInstId)));
}
