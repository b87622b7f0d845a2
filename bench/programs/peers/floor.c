/* The floor under what a library for these methods has to do: the conversions that are prescribed,
 * in their order, and one request through the host platform. No trace, no checks of the reply, no
 * faults recorded. */
#include "com_veltra_domoline_bench_FloorPeer.h"

#include "plain_jni.h"

enum { kAskUpTime = 0x47209036, kAskMac = 0x47209032 };
enum { kAskWanStatus = 0x4710308D, kAskHosts = 0x471030B1 };

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
    char acMac[18 + 1] = {0};
    (void)jClass;
    if (PlainAsk("osgi_proxy", 281, kAskMac, 0, acMac, 18) != 0) {
        return NULL;
    }
    return PlainToJava(pstEnv, acMac, strlen(acMac));
}

JNIEXPORT jstring JNICALL Java_com_veltra_domoline_bench_FloorPeer_wanStatus(JNIEnv *pstEnv,
                                                                             jclass jClass,
                                                                             jint iWan) {
    char acStatus[512 + 1] = {0};
    (void)jClass;
    if (PlainAsk("app_m", 249, kAskWanStatus, (uint32_t)iWan, acStatus, 512) != 0) {
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
