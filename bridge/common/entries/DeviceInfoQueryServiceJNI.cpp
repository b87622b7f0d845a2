#include "com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_DeviceInfoQueryServiceJNI.h"

#include "common/answers.h"
#include "system/jni_device_info.h"
#include "system/jni_runtime_info.h"

using namespace wap;

namespace {

/// The runtime's descriptions. Their trace begins with a line feed alone, deliberately.
jstring RuntimeAnswer(JNIEnv *pstEnv, SourceSpot stSpot, const char *pcMethod,
                      TextWorker pfnWorker) {
    VT_PROC_DBG_TraceS(kTraceEntries, stSpot.pcFile, stSpot.uiLine, 0, "\n %s called \r\n",
                       pcMethod);
    AnswerBuffer<128> stBuffer = {};
    const uint32_t uiResult = pfnWorker(stBuffer.acText, 128);
    return TextOrFallback(pstEnv, stSpot, uiResult, stBuffer.acText);
}

}  // namespace

JNIEXPORT jstring JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_DeviceInfoQueryServiceJNI_getDeviceInfo(
    JNIEnv *pstEnv, jobject) {
    WAP_TRACE_ENTRY();
    AnswerBuffer<512> stBuffer = {};
    const uint32_t uiResult = VT_JNI_GetDeviceInfo(stBuffer.acText, 512);
    return TextOrFallback(pstEnv, WAP_SPOT, uiResult, stBuffer.acText);
}

JNIEXPORT jstring JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_DeviceInfoQueryServiceJNI_getDeviceMAC(
    JNIEnv *pstEnv, jobject) {
    WAP_TRACE_ENTRY();
    return TextAnswer<18>(pstEnv, WAP_SPOT, VT_JNI_GetDeviceMAC);
}

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_DeviceInfoQueryServiceJNI_getDeviceUpTime(
    JNIEnv *, jobject) {
    WAP_TRACE_ENTRY();
    uint32_t uiUpTime = 0;
    const uint32_t uiResult = VT_JNI_GetDeviceUpTime(&uiUpTime);
    if (uiResult != 0) {
        RecordFault(WAP_SPOT, uiResult);
        return -1;
    }
    return static_cast<jint>(uiUpTime);
}

JNIEXPORT jstring JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_DeviceInfoQueryServiceJNI_getAPIVersion(
    JNIEnv *pstEnv, jobject) {
    WAP_TRACE_ENTRY();
    return TextAnswer<128>(pstEnv, WAP_SPOT, VT_JNI_GetAPIVersion, OnFailure::kWorkersCode);
}

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_DeviceInfoQueryServiceJNI_getCPUOccupancyRate(
    JNIEnv *, jobject, jint) {
    WAP_TRACE_ENTRY();
    return NumberAnswer(WAP_SPOT, VT_JNI_GetCPUOccupancyRate());
}

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_DeviceInfoQueryServiceJNI_getRAMOccupancyRate(
    JNIEnv *, jobject, jint) {
    WAP_TRACE_ENTRY();
    return NumberAnswer(WAP_SPOT, VT_JNI_GetRAMOccupancyRate());
}

JNIEXPORT jstring JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_DeviceInfoQueryServiceJNI_getJVMInfo(
    JNIEnv *pstEnv, jobject) {
    return RuntimeAnswer(pstEnv, WAP_SPOT, __func__, VT_JNI_GetJVMInfo);
}

JNIEXPORT jstring JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_DeviceInfoQueryServiceJNI_getOSGiInfo(
    JNIEnv *pstEnv, jobject) {
    return RuntimeAnswer(pstEnv, WAP_SPOT, __func__, VT_JNI_GetOSGiInfo);
}
