/* The floor under what a library for these methods has to do: the conversions that are prescribed,
 * in their order, and one request through the host platform. No trace, no checks of the reply, no
 * faults recorded. */
#include "com_veltra_domoline_bench_FloorPeer.h"

#include "plain_jni.h"

JNIEXPORT jint JNICALL Java_com_veltra_domoline_bench_FloorPeer_upTime(JNIEnv *pstEnv,
                                                                       jclass jClass) {
    uint32_t uiUpTime = 0;
    (void)pstEnv;
    (void)jClass;
    if (PlainAsk("osgi_proxy", 281, kAskUpTime, 0, &uiUpTime, sizeof(uiUpTime)) != 0) {
        return -1;
    }
    return (jint)uiUpTime;
}

JNIEXPORT jstring JNICALL Java_com_veltra_domoline_bench_FloorPeer_mac(JNIEnv *pstEnv,
                                                                       jclass jClass) {
    char acMac[kMacSize + 1] = {0};
    (void)jClass;
    if (PlainAsk("osgi_proxy", 281, kAskMac, 0, acMac, kMacSize) != 0) {
        return NULL;
    }
    return PlainToJava(pstEnv, acMac, strlen(acMac));
}

JNIEXPORT jstring JNICALL Java_com_veltra_domoline_bench_FloorPeer_wanStatus(JNIEnv *pstEnv,
                                                                             jclass jClass,
                                                                             jint iWan) {
    char acStatus[kWanStatusSize + 1] = {0};
    (void)jClass;
    if (PlainAsk("app_m", 249, kAskWanStatus, (uint32_t)iWan, acStatus, kWanStatusSize) != 0) {
        return NULL;
    }
    return PlainToJava(pstEnv, acStatus, strlen(acStatus));
}

JNIEXPORT jstring JNICALL Java_com_veltra_domoline_bench_FloorPeer_hosts(JNIEnv *pstEnv,
                                                                         jclass jClass) {
    VDataDesc stDesc = {0, 0, 0};
    (void)jClass;
    if (PlainAsk("app_m", 249, kAskHosts, 0, &stDesc, sizeof(stDesc)) != 0) {
        return NULL;
    }
    char *pcText = PlainFetch(&stDesc);
    jstring jText = pcText == NULL ? NULL : PlainToJava(pstEnv, pcText, strlen(pcText));
    free(pcText);
    return jText;
}

JNIEXPORT jstring JNICALL Java_com_veltra_domoline_bench_FloorPeer_text(JNIEnv *pstEnv,
                                                                        jclass jClass,
                                                                        jobject jBytes) {
    const char *pcText = (const char *)(*pstEnv)->GetDirectBufferAddress(pstEnv, jBytes);
    const jlong llLength = (*pstEnv)->GetDirectBufferCapacity(pstEnv, jBytes);
    (void)jClass;
    return pcText == NULL || llLength < 0 ? NULL : PlainToJava(pstEnv, pcText, (size_t)llLength);
}
