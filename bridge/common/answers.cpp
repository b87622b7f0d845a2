#include "common/answers.h"

namespace wap {

jstring FaultAnswer(JNIEnv *pstEnv, SourceSpot stSpot, OnFailure eOnFailure, uint32_t uiResult) {
    RecordFault(stSpot, uiResult);
    return OSGI_JNI_FaultStrBuild(
        pstEnv, eOnFailure == OnFailure::kMinusOne ? -1 : static_cast<int32_t>(uiResult));
}

jstring TextOrEmpty(JNIEnv *pstEnv, const char *pcText) {
    if (pcText[0] != '\0') {
        return char2jstring(pstEnv, pcText);
    }
    jstring jEmpty = pstEnv->NewStringUTF("");
    return ClearException(pstEnv) ? nullptr : jEmpty;
}

jstring HeapTextAnswer(JNIEnv *pstEnv, SourceSpot stSpot, uint32_t uiResult, char *pcText) {
    PlatformBlock stText;
    stText.Adopt(pcText);
    if (uiResult != 0 || pcText == nullptr) {
        RecordFault(stSpot, uiResult);
        return char2jstring(pstEnv, kFailureAnswer);
    }
    return char2jstring(pstEnv, pcText);
}

jstring HeapTextAnswer(JNIEnv *pstEnv, SourceSpot stSpot, HeapTextWorker pfnWorker) {
    char *pcText = nullptr;
    const uint32_t uiResult = pfnWorker(&pcText);
    return HeapTextAnswer(pstEnv, stSpot, uiResult, pcText);
}

jstring ShortFaultAnswer(JNIEnv *pstEnv, SourceSpot stSpot, uint32_t uiResult) {
    RecordFault(stSpot, uiResult);
    char acText[] = "{ \"Result\": -1 }";
    // What does not fit is not written.
    (void)Compose(nullptr, 0, acText, sizeof(acText), static_cast<int32_t>(uiResult),
                  Completeness::kWhole);
    return char2jstring(pstEnv, acText);
}

jstring HeapTextOrFault(JNIEnv *pstEnv, SourceSpot stSpot, uint32_t uiResult, char *pcText) {
    if (uiResult == 0 && pcText != nullptr) {
        return HeapTextAnswer(pstEnv, stSpot, uiResult, pcText);
    }
    PlatformBlock stText;
    stText.Adopt(pcText);
    return ShortFaultAnswer(pstEnv, stSpot, uiResult != 0 ? uiResult : kErrFailed);
}

jstring HeapTextOrFault(JNIEnv *pstEnv, SourceSpot stSpot, HeapTextWorker pfnWorker) {
    char *pcText = nullptr;
    const uint32_t uiResult = pfnWorker(&pcText);
    return HeapTextOrFault(pstEnv, stSpot, uiResult, pcText);
}

jint NumberAnswer(SourceSpot stSpot, uint32_t uiNumber) {
    if (uiNumber == kErrFailed) {
        RecordFault(stSpot, uiNumber);
    }
    return static_cast<jint>(uiNumber);
}

}  // namespace wap
