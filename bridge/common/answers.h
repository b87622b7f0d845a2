// What the Java entries share on their way back: a worker's text becomes a Java text.
#ifndef WAP_COMMON_ANSWERS_H
#define WAP_COMMON_ANSWERS_H

#include <jni.h>
#include <stdint.h>

#include "common/jni_base.h"
#include "common/jni_common.h"
#include "common/owners.h"
#include "common/report.h"

namespace wap {

/// A worker that writes its text into (buffer, capacity) and returns 0 or a code.
using TextWorker = uint32_t (*)(char *pcBuf, uint32_t uiCap);

/// What Java gets when the worker fails.
enum class OnFailure {
    kMinusOne,    ///< a fault object with the code -1
    kWorkersCode  ///< a fault object with the worker's code
};

/// A buffer of kCap bytes, with one more zero byte that no worker can reach.
template <uint32_t kCap>
struct AnswerBuffer {
    char acText[kCap + 1];
};

/// Records a worker's failure in the entry and makes the fault object.
jstring FaultAnswer(JNIEnv *pstEnv, SourceSpot stSpot, OnFailure eOnFailure, uint32_t uiResult);

/// Runs a worker and hands Java its text, or a fault object.
template <uint32_t kCap>
jstring TextAnswer(JNIEnv *pstEnv, SourceSpot stSpot, TextWorker pfnWorker,
                   OnFailure eOnFailure = OnFailure::kMinusOne) {
    AnswerBuffer<kCap> stBuffer = {};
    const uint32_t uiResult = pfnWorker(stBuffer.acText, kCap);
    return uiResult == 0 ? char2jstring(pstEnv, stBuffer.acText)
                         : FaultAnswer(pstEnv, stSpot, eOnFailure, uiResult);
}

/// As TextAnswer, with a buffer that is wiped as soon as Java has the text, and on failure too.
template <uint32_t kCap>
jstring SecretAnswer(JNIEnv *pstEnv, SourceSpot stSpot, TextWorker pfnWorker) {
    uint32_t uiResult = 0;
    {
        Wiped<AnswerBuffer<kCap>> stBuffer;
        uiResult = pfnWorker(stBuffer.stRecord.acText, kCap);
        if (uiResult == 0) {
            return char2jstring(pstEnv, stBuffer.stRecord.acText);
        }
    }
    return FaultAnswer(pstEnv, stSpot, OnFailure::kMinusOne, uiResult);
}

/// Hands Java a text, or the method's fixed fallback when the worker failed; that takes the place
/// of what the buffer holds.
template <size_t kSize>
jstring TextOrFallback(JNIEnv *pstEnv, SourceSpot stSpot, uint32_t uiResult, char (&acText)[kSize],
                       const char *pcFallback = kFailureAnswer) {
    if (uiResult != 0) {
        RecordFault(stSpot, uiResult);
        PutFailureAnswer(acText, kSize, pcFallback);
    }
    return char2jstring(pstEnv, acText);
}

/// As char2jstring, but an empty text becomes an empty Java text: null means that the virtual
/// machine failed.
jstring TextOrEmpty(JNIEnv *pstEnv, const char *pcText);

/// Hands Java a worker's heap text, which is released, or the failure answer when the worker
/// failed.
jstring HeapTextAnswer(JNIEnv *pstEnv, SourceSpot stSpot, uint32_t uiResult, char *pcText);

/// A worker that gives a heap text, released with VT_OS_MemFreeD by the caller, and returns 0 or a
/// code.
using HeapTextWorker = uint32_t (*)(char **ppcText);

/// The same for a worker that takes no argument, which is called.
jstring HeapTextAnswer(JNIEnv *pstEnv, SourceSpot stSpot, HeapTextWorker pfnWorker);

/**
 * The fault object of the queries about traffic: there is room for codes of two characters, and any
 * other is told as -1. It is there also when memory runs out.
 * @return null only when the virtual machine fails
 */
jstring ShortFaultAnswer(JNIEnv *pstEnv, SourceSpot stSpot, uint32_t uiResult);

/// As HeapTextAnswer, with a short fault object when the worker failed.
jstring HeapTextOrFault(JNIEnv *pstEnv, SourceSpot stSpot, uint32_t uiResult, char *pcText);

/// The same for a worker that takes no argument, which is called.
jstring HeapTextOrFault(JNIEnv *pstEnv, SourceSpot stSpot, HeapTextWorker pfnWorker);

/// A worker's number, with -1 recorded: the entries of the rates and other plain numbers.
jint NumberAnswer(SourceSpot stSpot, uint32_t uiNumber);

}  // namespace wap

#endif
