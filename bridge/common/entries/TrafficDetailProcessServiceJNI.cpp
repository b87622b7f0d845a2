#include "com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_TrafficDetailProcessServiceJNI.h"

#include <stdint.h>

#include <initializer_list>

#include "common/answers.h"
#include "wan/jni_http_capture.h"

using namespace wap;

namespace {

/// Makes one text of a list that Java gave; false, recorded, when it does not fit or an element
/// that is there could not be had.
template <size_t kSize>
bool Join(SourceSpot stSpot, JNIEnv *pstEnv, jobjectArray jTexts, char (&acText)[kSize]) {
    return Recorded(stSpot, JoinElements(pstEnv, jTexts, kHttpListSeparator, acText, kSize,
                                         LostElement::kFails)) == 0;
}

/// The rule's other texts, and what the call holds besides.
constexpr int64_t kOtherRefs = 4;

/// Asks for the references of all the lists at once: each of them alone might be granted as though
/// it were the only one.
bool EnsureRefs(JNIEnv *pstEnv, std::initializer_list<jobjectArray> stLists) {
    int64_t llElements = kOtherRefs;
    for (jobjectArray jList : stLists) {
        llElements += jList == nullptr ? 0 : pstEnv->GetArrayLength(jList);
    }
    return llElements <= INT32_MAX && EnsureElementRefs(pstEnv, static_cast<jsize>(llElements));
}

bool JoinLists(JNIEnv *pstEnv, jobjectArray jMethods, jobjectArray jStatusCodes,
               jobjectArray jHeaders, HttpRuleTexts &stTexts) {
    if (!Join(WAP_SPOT, pstEnv, jMethods, stTexts.acMethods)) {
        return false;
    }
    WAP_TRACE(kTraceEntries, "method:%s\r\n", stTexts.acMethods);
    if (!Join(WAP_SPOT, pstEnv, jStatusCodes, stTexts.acStatusCodes)) {
        return false;
    }
    WAP_TRACE(kTraceEntries, "status code:%s\r\n", stTexts.acStatusCodes);
    if (!Join(WAP_SPOT, pstEnv, jHeaders, stTexts.acHeaders)) {
        return false;
    }
    WAP_TRACE(kTraceEntries, "header:%s\r\n", stTexts.acHeaders);
    return true;
}

}  // namespace

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_TrafficDetailProcessServiceJNI_addHTTPTrafficProcessRule(
    JNIEnv *pstEnv, jobject, jstring jRemoteAddress, jint iRemotePort, jstring jDirection,
    jstring jHostMac, jobjectArray jMethods, jobjectArray jStatusCodes, jobjectArray jHeaders) {
    WAP_TRACE_ENTRY();
    if (!EnsureRefs(pstEnv, {jMethods, jStatusCodes, jHeaders})) {
        return NumberAnswer(WAP_SPOT, kErrFailed);
    }
    const OptionalText stAddress(pstEnv, jRemoteAddress);
    const JavaText stDirection = JavaText::Make(pstEnv, jDirection);
    const OptionalText stMac(pstEnv, jHostMac);
    HttpRuleTexts stTexts = {stAddress.Lend(), iRemotePort, stDirection.Lend(), stMac.Lend()};
    if (stAddress.Failed() || stMac.Failed() || CheckHttpRule(stTexts) != 0 ||
        !JoinLists(pstEnv, jMethods, jStatusCodes, jHeaders, stTexts)) {
        return NumberAnswer(WAP_SPOT, kErrFailed);
    }
    return NumberAnswer(WAP_SPOT, AddHttpRule(stTexts));
}

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_TrafficDetailProcessServiceJNI_deleteHTTPTrafficProcessRule(
    JNIEnv *, jobject, jint iRuleInst) {
    WAP_TRACE_ENTRY();
    return NumberAnswer(WAP_SPOT, DeleteHttpRule(static_cast<uint32_t>(iRuleInst)));
}

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_TrafficDetailProcessServiceJNI_deleteAllHTTPTrafficProcessRule(
    JNIEnv *, jobject) {
    WAP_TRACE_ENTRY();
    return NumberAnswer(WAP_SPOT, DeleteHttpRule(kAllRules));
}

JNIEXPORT jstring JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_TrafficDetailProcessServiceJNI_getHTTPTrafficProcessRuleInfo(
    JNIEnv *pstEnv, jobject) {
    WAP_TRACE_ENTRY();
    return HeapTextOrFault(pstEnv, WAP_SPOT, ListHttpRules);
}
