#include "com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_DnsDiagnosticsServiceJNI.h"

#include "access/jni_dns_diagnostics.h"
#include "common/answers.h"

using namespace wap;

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_DnsDiagnosticsServiceJNI_startDnsDiagnostics(
    JNIEnv *pstEnv, jobject, jint iWanIndex, jstring jHost, jstring jServers, jstring jPara) {
    WAP_TRACE_ENTRY();
    const auto uiWanIndex = static_cast<uint32_t>(iWanIndex);
    const JavaText stHost = JavaText::Make(pstEnv, jHost);
    const JavaText stServers = JavaText::Make(pstEnv, jServers);
    const OptionalText stPara(pstEnv, jPara);
    if (!stHost || !stServers || stPara.Failed()) {
        return NumberAnswer(WAP_SPOT, kErrFailed);
    }
    WAP_TRACE(kTraceEntries, "startDnsDiagnostics wanindex:%u, pcHost: %s pcDnsServerlist :%s",
              uiWanIndex, stHost.Lend(), stServers.Lend());
    if (stPara.Lend() != nullptr) {
        WAP_TRACE(kTraceEntries,
                  "startDnsDiagnostics wanindex:%u, pcHost: %s pcDnsServerlist :%s pcPara :%s",
                  uiWanIndex, stHost.Lend(), stServers.Lend(), stPara.Lend());
    }
    return NumberAnswer(WAP_SPOT, VT_JNI_startDnsDiagnostics(uiWanIndex, stHost.Lend(),
                                                             stServers.Lend(), stPara.Lend()));
}

JNIEXPORT jstring JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_DnsDiagnosticsServiceJNI_getDnsDiagnosticsResult(
    JNIEnv *pstEnv, jobject) {
    WAP_TRACE_ENTRY();
    return HeapTextAnswer(pstEnv, WAP_SPOT, VT_JNI_getDnsDiagnosticsResult);
}
