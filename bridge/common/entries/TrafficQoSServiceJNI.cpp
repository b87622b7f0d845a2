#include "com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_TrafficQoSServiceJNI.h"

#include "common/answers.h"
#include "wan/jni_traffic_qos_srv.h"

using namespace wap;

namespace {

/// A worker that changes which traffic is in a flow.
using TrafficWorker = uint32_t (*)(const char *pcAddress, const char *pcPort, uint32_t uiFlow);

/// Converts the texts and changes the flow.
jint ChangeAnswer(JNIEnv *pstEnv, SourceSpot stSpot, TrafficWorker pfnWorker, jstring jAddress,
                  jstring jPort, jint iFlow) {
    const OptionalText stAddress(pstEnv, jAddress);
    const JavaText stPort = JavaText::Make(pstEnv, jPort);
    if (stAddress.Failed() || !stPort) {
        RecordFault(stSpot, kErrFailed, static_cast<uint32_t>(iFlow));
        return -1;
    }
    return NumberAnswer(stSpot,
                        pfnWorker(stAddress.Lend(), stPort.Lend(), static_cast<uint32_t>(iFlow)));
}

/// A worker that tells numbers of a flow.
using FlowWorker = uint32_t (*)(uint32_t uiFlow, FlowAnswer &stAnswer);

/// Asks, and hands Java the text, or a fault object.
jstring FlowTextAnswer(JNIEnv *pstEnv, SourceSpot stSpot, FlowWorker pfnWorker, jint iFlow) {
    FlowAnswer stAnswer = {};
    const uint32_t uiResult = pfnWorker(static_cast<uint32_t>(iFlow), stAnswer);
    // Whatever failed, these tell no other code than -1.
    return uiResult == 0 ? char2jstring(pstEnv, stAnswer.acText)
                         : ShortFaultAnswer(pstEnv, stSpot, kErrFailed);
}

}  // namespace

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_TrafficQoSServiceJNI_addTrafficToFlow(
    JNIEnv *pstEnv, jobject, jstring jAddress, jstring jPort, jint iFlow) {
    WAP_TRACE_ENTRY();
    return ChangeAnswer(pstEnv, WAP_SPOT, AddFlowTraffic, jAddress, jPort, iFlow);
}

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_TrafficQoSServiceJNI_deleteTrafficFromFlow(
    JNIEnv *pstEnv, jobject, jstring jAddress, jstring jPort, jint iFlow) {
    WAP_TRACE_ENTRY();
    return ChangeAnswer(pstEnv, WAP_SPOT, DeleteFlowTraffic, jAddress, jPort, iFlow);
}

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_TrafficQoSServiceJNI_deleteAllTrafficFromFlow(
    JNIEnv *, jobject, jint iFlow) {
    WAP_TRACE_ENTRY();
    return NumberAnswer(WAP_SPOT, DeleteAllFlowTraffic(static_cast<uint32_t>(iFlow)));
}

JNIEXPORT jstring JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_TrafficQoSServiceJNI_getTrafficInfoByFlow(
    JNIEnv *pstEnv, jobject, jint iFlow) {
    WAP_TRACE_ENTRY();
    char *pcText = nullptr;
    const uint32_t uiResult = ListFlowTraffic(static_cast<uint32_t>(iFlow), &pcText);
    return HeapTextOrFault(pstEnv, WAP_SPOT, uiResult == 0 ? 0 : kErrFailed, pcText);
}

JNIEXPORT jstring JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_TrafficQoSServiceJNI_getStatsByFlow(
    JNIEnv *pstEnv, jobject, jint iFlow) {
    WAP_TRACE_ENTRY();
    return FlowTextAnswer(pstEnv, WAP_SPOT, GetFlowStats, iFlow);
}

JNIEXPORT jstring JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_TrafficQoSServiceJNI_getSpeedByFlow(
    JNIEnv *pstEnv, jobject, jint iFlow) {
    WAP_TRACE_ENTRY();
    return FlowTextAnswer(pstEnv, WAP_SPOT, GetFlowSpeed, iFlow);
}

JNIEXPORT jstring JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_TrafficQoSServiceJNI_getSpeedLimitByFlow(
    JNIEnv *pstEnv, jobject, jint iFlow) {
    WAP_TRACE_ENTRY();
    return FlowTextAnswer(pstEnv, WAP_SPOT, GetFlowSpeedLimit, iFlow);
}

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_TrafficQoSServiceJNI_setSpeedLimitByFlow(
    JNIEnv *, jobject, jint iFlow, jint iUp, jint iDown) {
    WAP_TRACE_ENTRY();
    return NumberAnswer(WAP_SPOT, SetFlowSpeedLimit(static_cast<uint32_t>(iFlow), iUp, iDown));
}

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_TrafficQoSServiceJNI_getDSCPRemarkByFlow(
    JNIEnv *, jobject, jint iFlow) {
    WAP_TRACE_ENTRY();
    return NumberAnswer(WAP_SPOT, GetFlowDscp(static_cast<uint32_t>(iFlow)));
}

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_TrafficQoSServiceJNI_setDSCPRemarkByFlow(
    JNIEnv *, jobject, jint iFlow, jint iDscp) {
    WAP_TRACE_ENTRY();
    return NumberAnswer(WAP_SPOT,
                        SetFlowDscp(static_cast<uint32_t>(iFlow), static_cast<uint32_t>(iDscp)));
}
