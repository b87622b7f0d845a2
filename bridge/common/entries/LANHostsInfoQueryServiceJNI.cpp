#include "com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LANHostsInfoQueryServiceJNI.h"

#include "access/jni_attach_control.h"
#include "access/jni_macflter.h"
#include "common/answers.h"
#include "common/mac_arrays.h"
#include "lan/jni_lanhost_info.h"

using namespace wap;

namespace {

// Deliberately uneven: the first method leaves a bad element out, the others refuse the array.
constexpr MacArrayRules kInfoMacs = {kMacArrayMax,
                                     EmptyText::kCounts,
                                     BadMac::kLeftOut,
                                     NoMacs::kIsEveryone,
                                     "\r\n uiArrayLength  is too long called \r\n",
                                     false};
constexpr MacArrayRules kStatsMacs = {kMacArrayMax,
                                      EmptyText::kCounts,
                                      BadMac::kRefuses,
                                      NoMacs::kIsEveryone,
                                      "\r\n uiMacAddrCount  is too long \r\n",
                                      false};

/// A worker that answers about the hosts of a table.
using HostsWorker = uint32_t (*)(const char *const *ppcMacs, uint32_t uiCount, char **ppcText);

/// Converts the array, asks, and hands Java the text.
jstring HostsAnswer(JNIEnv *pstEnv, SourceSpot stSpot, jobjectArray jMacs,
                    const MacArrayRules &stRules, HostsWorker pfnWorker) {
    VT_PROC_DBG_TraceS(kTraceEntries, stSpot.pcFile, stSpot.uiLine, 0,
                       "\r\n called uiArrayLength:%u \r\n",
                       jMacs == nullptr ? 0 : static_cast<uint32_t>(pstEnv->GetArrayLength(jMacs)));
    MacTable stTable;
    if (!ConvertMacs(pstEnv, stSpot, jMacs, stRules, stTable)) {
        return char2jstring(pstEnv, kFailureAnswer);
    }
    char *pcText = nullptr;
    const uint32_t uiResult = pfnWorker(stTable.Lend(), stTable.Count(), &pcText);
    return HeapTextAnswer(pstEnv, stSpot, uiResult, pcText);
}

/// A worker that answers about the hosts that a word describes.
using WordWorker = uint32_t (*)(const char *pcWord, char **ppcText);

/// Converts the word, asks, and hands Java the text.
jstring WordAnswer(JNIEnv *pstEnv, SourceSpot stSpot, jstring jWord, WordWorker pfnWorker) {
    const JavaText stWord = JavaText::Make(pstEnv, jWord);
    char *pcText = nullptr;
    const uint32_t uiResult = stWord ? pfnWorker(stWord.Lend(), &pcText) : 1;
    return HeapTextAnswer(pstEnv, stSpot, uiResult, pcText);
}

}  // namespace

JNIEXPORT jstring JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LANHostsInfoQueryServiceJNI_getGatewayName(
    JNIEnv *pstEnv, jobject) {
    WAP_TRACE_ENTRY();
    AnswerBuffer<256> stBuffer = {};
    const uint32_t uiResult = VT_JNI_getGatewayName(stBuffer.acText, 256);
    if (uiResult != 0) {
        // No fault object, unlike the other queries: Java takes this text for the name.
        RecordFault(WAP_SPOT, uiResult);
    }
    return TextOrEmpty(pstEnv, stBuffer.acText);
}

JNIEXPORT jstring JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LANHostsInfoQueryServiceJNI_getLANHostInfoByMAC(
    JNIEnv *pstEnv, jobject, jobjectArray jMacs) {
    WAP_TRACE_ENTRY();
    return HostsAnswer(pstEnv, WAP_SPOT, jMacs, kInfoMacs, VT_JNI_getLANHostInfoByMAC);
}

JNIEXPORT jstring JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LANHostsInfoQueryServiceJNI_getLANHostInfoByInterface(
    JNIEnv *pstEnv, jobject, jstring jInterface) {
    WAP_TRACE_ENTRY();
    return WordAnswer(pstEnv, WAP_SPOT, jInterface, VT_JNI_getLANHostInfoByInterface);
}

JNIEXPORT jstring JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LANHostsInfoQueryServiceJNI_getLANHostInfoByClass(
    JNIEnv *pstEnv, jobject, jstring jClass) {
    WAP_TRACE_ENTRY();
    return WordAnswer(pstEnv, WAP_SPOT, jClass, VT_JNI_getLANHostInfoByClass);
}

JNIEXPORT jstring JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LANHostsInfoQueryServiceJNI_getLANHostStats(
    JNIEnv *pstEnv, jobject, jobjectArray jMacs) {
    WAP_TRACE_ENTRY();
    return HostsAnswer(pstEnv, WAP_SPOT, jMacs, kStatsMacs, VT_JNI_getLANHostStats);
}

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LANHostsInfoQueryServiceJNI_getMacFilterMode(
    JNIEnv *, jobject) {
    WAP_TRACE_ENTRY();
    return NumberAnswer(WAP_SPOT, VT_JNI_getMacFilterMode());
}

JNIEXPORT jstring JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LANHostsInfoQueryServiceJNI_getLANHostSpeedLimitInfo(
    JNIEnv *pstEnv, jobject, jobjectArray jMacs) {
    WAP_TRACE_ENTRY();
    return HostsAnswer(pstEnv, WAP_SPOT, jMacs, kStatsMacs, VT_JNI_getLANHostSpeedLimitInfo);
}
