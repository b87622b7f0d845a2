#include "com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_TraceRouteDiagnosticsServiceJNI.h"

#include "access/jni_traceroute_diagnostics.h"
#include "common/answers.h"

using namespace wap;

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_TraceRouteDiagnosticsServiceJNI_startTraceRouteDiagnostics(
    JNIEnv *pstEnv, jobject, jint iWanIndex, jstring jHost, jstring jPara) {
    WAP_TRACE_ENTRY();
    const auto uiWanIndex = static_cast<uint32_t>(iWanIndex);
    const JavaText stHost = JavaText::Make(pstEnv, jHost);
    const OptionalText stPara(pstEnv, jPara);
    if (!stHost || stPara.Failed()) {
        return NumberAnswer(WAP_SPOT, kErrFailed);
    }
    WAP_TRACE(kTraceEntries, "startTraceRouteDiagnostics wanindex:%u, pcHost: %s", uiWanIndex,
              stHost.Lend());
    if (stPara.Lend() != nullptr) {
        WAP_TRACE(kTraceEntries, "startTraceRouteDiagnostics wanindex:%u, pcHost: %s, pcPara:%s",
                  uiWanIndex, stHost.Lend(), stPara.Lend());
    }
    return NumberAnswer(
        WAP_SPOT, VT_JNI_startTraceRouteDiagnostics(uiWanIndex, stHost.Lend(), stPara.Lend()));
}

JNIEXPORT jstring JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_TraceRouteDiagnosticsServiceJNI_getTraceRouteDiagnosticsResult(
    JNIEnv *pstEnv, jobject) {
    WAP_TRACE_ENTRY();
    return HeapTextAnswer(pstEnv, WAP_SPOT, VT_JNI_getTraceRouteDiagnosticsResult);
}
