#include "com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_IPPingDiagnosticsServiceJNI.h"

#include "access/jni_ping_diagnostics.h"
#include "common/answers.h"

using namespace wap;

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_IPPingDiagnosticsServiceJNI_startIPPingDiagnostics(
    JNIEnv *pstEnv, jobject, jint iWanIndex, jstring jHost, jstring jPara) {
    WAP_TRACE_ENTRY();
    const auto uiWanIndex = static_cast<uint32_t>(iWanIndex);
    const JavaText stHost = JavaText::Make(pstEnv, jHost);
    const OptionalText stPara(pstEnv, jPara);
    if (!stHost || stPara.Failed()) {
        return NumberAnswer(WAP_SPOT, kErrFailed);
    }
    WAP_TRACE(kTraceEntries, "startIPPingDiagnostics wanindex:%u, pcHost: %s\r\n", uiWanIndex,
              stHost.Lend());
    return NumberAnswer(WAP_SPOT,
                        VT_JNI_SetIPPingDiagnostics(uiWanIndex, stHost.Lend(), stPara.Lend()));
}

JNIEXPORT jstring JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_IPPingDiagnosticsServiceJNI_getIPPingDiagnosticsResult(
    JNIEnv *pstEnv, jobject) {
    WAP_TRACE_ENTRY();
    AnswerBuffer<512> stBuffer = {};
    uint32_t uiResult = VT_JNI_GetIPPingDiagnosticsResult(stBuffer.acText, 512);
    if (uiResult == 0 && stBuffer.acText[0] == '\0') {
        uiResult = kErrFailed;
    }
    return TextOrFallback(pstEnv, WAP_SPOT, uiResult, stBuffer.acText);
}
