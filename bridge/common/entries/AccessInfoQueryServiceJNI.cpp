#include "com_veltra_domoline_deviceservice_kavo_wap_ozi_jni_AccessInfoQueryServiceJNI.h"

#include "common/answers.h"
#include "wan/jni_access_info.h"

using namespace wap;

namespace {

/// What Java gets when the PON has no answer to give, and when anything else fails. The blanks are
/// part of the texts, and so is the spelling of "SupplyVottage": Java programs parse them.
struct PonFallbacks {
    const char *pcUnknown;
    const char *pcFailed;
};
constexpr PonFallbacks kPhyStatusFallbacks = {
    "{\"Result\":-2, \"TXPower\": 0, \"RXPower\": 0,\"TransceiverTemperature\": 0,"
    "\"SupplyVottage\": 0,\"BiasCurrent\": 0}",
    "{\"Result\":-1, \"TXPower\": 0, \"RXPower\": 0,\"TransceiverTemperature\": 0,"
    "\"SupplyVottage\": 0,\"BiasCurrent\": 0}"};
constexpr PonFallbacks kRegStatusFallbacks = {
    "{\"Result\":-2, \"RegisterStatus\": \"NO_REG_NO_AUTH\"}",
    "{\"Result\":-1, \"RegisterStatus\": \"NO_REG_NO_AUTH\"}"};
/// The same for both, deliberately: this query does not tell them apart.
constexpr char kUplinkFallback[] = "{\"Result\":-1, \"UsStats\": 0, \"DsStats\": 0}";
constexpr PonFallbacks kUplinkFallbacks = {kUplinkFallback, kUplinkFallback};

template <uint32_t kSize>
jstring PonAnswer(JNIEnv *pstEnv, SourceSpot stSpot, TextWorker pfnWorker,
                  const PonFallbacks &stFallbacks) {
    AnswerBuffer<kSize> stBuffer = {};
    const uint32_t uiResult = pfnWorker(stBuffer.acText, kSize);
    return TextOrFallback(
        pstEnv, stSpot, uiResult, stBuffer.acText,
        uiResult == kErrPonUnknown ? stFallbacks.pcUnknown : stFallbacks.pcFailed);
}

/// A worker that answers about a WAN connection.
using WanWorker = uint32_t (*)(uint32_t uiWanIndex, char *pcBuf, uint32_t uiCap);

template <uint32_t kSize>
jstring WanAnswer(JNIEnv *pstEnv, SourceSpot stSpot, jint iWanIndex, WanWorker pfnWorker) {
    AnswerBuffer<kSize> stBuffer = {};
    const uint32_t uiResult = pfnWorker(static_cast<uint32_t>(iWanIndex), stBuffer.acText, kSize);
    return TextOrFallback(pstEnv, stSpot, uiResult, stBuffer.acText);
}

}  // namespace

JNIEXPORT jstring JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_ozi_jni_AccessInfoQueryServiceJNI_getWANIfList(
    JNIEnv *pstEnv, jobject) {
    // Deliberately without a trace, unlike the others of this class.
    AnswerBuffer<kWanListTextSize> stBuffer = {};
    const uint32_t uiResult = VT_JNI_GetWANIfList(stBuffer.acText, kWanListTextSize);
    return TextOrFallback(pstEnv, WAP_SPOT, uiResult, stBuffer.acText);
}

JNIEXPORT jstring JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_ozi_jni_AccessInfoQueryServiceJNI_getWANIfStats(
    JNIEnv *pstEnv, jobject, jint iWanIndex) {
    WAP_TRACE_ENTRY();
    return WanAnswer<kWanStatsSize>(pstEnv, WAP_SPOT, iWanIndex, VT_JNI_GetWANIfStats);
}

JNIEXPORT jstring JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_ozi_jni_AccessInfoQueryServiceJNI_getWANIfInfo(
    JNIEnv *pstEnv, jobject, jint iWanIndex) {
    WAP_TRACE_ENTRY();
    // Too long for the stack of a small thread; one more byte, which no reply reaches.
    PlatformBlock stText;
    uint32_t uiResult = kErrNoMemory;
    if (stText.Make(kWanInfoSize + 1, WAP_SPOT)) {
        uiResult = VT_JNI_GetWANIfInfo(static_cast<uint32_t>(iWanIndex),
                                       static_cast<char *>(stText.Lend()), kWanInfoSize);
    }
    return HeapTextAnswer(pstEnv, WAP_SPOT, uiResult, static_cast<char *>(stText.Release()));
}

JNIEXPORT jstring JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_ozi_jni_AccessInfoQueryServiceJNI_getWanIfBandwidth(
    JNIEnv *pstEnv, jobject, jint iWanIndex) {
    WAP_TRACE_ENTRY();
    return WanAnswer<kWanBandwidthSize>(pstEnv, WAP_SPOT, iWanIndex, VT_JNI_GetWanIfBandwidth);
}

JNIEXPORT jstring JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_ozi_jni_AccessInfoQueryServiceJNI_getWANIfStatus(
    JNIEnv *pstEnv, jobject, jint iWanIndex) {
    WAP_TRACE_ENTRY();
    return WanAnswer<kWanStatusSize>(pstEnv, WAP_SPOT, iWanIndex, VT_JNI_GetWANIfStatus);
}

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_ozi_jni_AccessInfoQueryServiceJNI_getInternetWANIndex(
    JNIEnv *, jobject) {
    WAP_TRACE_ENTRY();
    uint32_t uiWanIndex = kErrFailed;
    const uint32_t uiResult = VT_JNI_GetInternetWANIndex(&uiWanIndex);
    WAP_TRACE(kTraceEntries, "getInternetWANIndex uiWanIndex: %u", uiWanIndex);
    return Recorded(WAP_SPOT, uiResult) == 0 ? static_cast<jint>(uiWanIndex) : -1;
}

// The queries about the uplink trace their own name alone.

JNIEXPORT jstring JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_ozi_jni_AccessInfoQueryServiceJNI_getPONIfPhyStatus(
    JNIEnv *pstEnv, jobject) {
    WAP_TRACE(kTraceEntries, "\r\n getPONIfPhyStatus called \r\n");
    return PonAnswer<kPonPhyStatusSize>(pstEnv, WAP_SPOT, VT_JNI_GetPONIfPhyStatus,
                                        kPhyStatusFallbacks);
}

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_ozi_jni_AccessInfoQueryServiceJNI_getPONIfUpTime(
    JNIEnv *, jobject) {
    WAP_TRACE(kTraceEntries, "\r\n getPONIfUpTime called \r\n");
    uint32_t uiUpTime = 0;
    const uint32_t uiResult = VT_JNI_GetPONIfUpTime(&uiUpTime);
    if (Recorded(WAP_SPOT, uiResult) != 0) {
        return uiResult == kErrPonUnknown ? -2 : -1;
    }
    return static_cast<jint>(uiUpTime);
}

JNIEXPORT jstring JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_ozi_jni_AccessInfoQueryServiceJNI_getPONIfRegisterStatus(
    JNIEnv *pstEnv, jobject) {
    WAP_TRACE(kTraceEntries, "\r\n getPONIfRegisterStatus called \r\n");
    return PonAnswer<kPonRegStatusSize>(pstEnv, WAP_SPOT, VT_JNI_GetPONIfRegisterStatus,
                                        kRegStatusFallbacks);
}

JNIEXPORT jstring JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_ozi_jni_AccessInfoQueryServiceJNI_getUplinkIfStats(
    JNIEnv *pstEnv, jobject) {
    WAP_TRACE(kTraceEntries, "\r\n getUplinkIfStats called \r\n");
    return PonAnswer<kUplinkStatsSize>(pstEnv, WAP_SPOT, VT_JNI_getUplinkIfStats, kUplinkFallbacks);
}
