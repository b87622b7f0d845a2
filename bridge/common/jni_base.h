// Java texts to bytes and back, always in UTF-8 by the Java class library's own conversion, never
// in the virtual machine's modified form.
#ifndef WAP_COMMON_JNI_BASE_H
#define WAP_COMMON_JNI_BASE_H

#include <jni.h>
#include <stdint.h>

#include "common/wap_export.h"

namespace wap {

/// How an empty Java text converts: to nothing, or to an empty native text.
enum class EmptyText { kIsMissing, kCounts };
/// Whether the virtual machine's own buffer is wiped after the conversion.
enum class Secrecy { kPlain, kSecret };

/**
 * What jstring2char and jstringtochar do, for the owners of converted texts.
 * @param puiLength receives the length in bytes of everything copied, also what stands behind a
 *                  U+0000; 0 when null is returned
 */
char *MakeNativeText(JNIEnv *pstEnv, jstring jText, EmptyText eEmpty, Secrecy eSecrecy,
                     uint32_t *puiLength);

/// Clears what the virtual machine threw in the last JNI call; true when it did.
bool ClearException(JNIEnv *pstEnv);

/// Makes room for the local references of converting iCount elements of an array. False, with no
/// exception pending, when the virtual machine refuses.
[[nodiscard]] bool EnsureElementRefs(JNIEnv *pstEnv, jsize iCount);

/**
 * An array's element as a new native text; null when there is none or it does not convert.
 * @param pbLost when given, receives whether there is an element, not null, that can't be had
 */
char *ConvertElement(JNIEnv *pstEnv, jobjectArray jTexts, jsize iIndex, EmptyText eEmpty,
                     bool *pbLost = nullptr);

/// What becomes of an array's element that is there but can't be converted.
enum class LostElement { kIsSkipped, kFails };

/// What JNI_COMMON_GetStrFromObjArray does; 1 also for a lost element, where that fails.
uint32_t JoinElements(JNIEnv *pstEnv, jobjectArray jTexts, const char *pcSeparator, char *pcOut,
                      uint32_t uiOutSize, LostElement eLost);

}  // namespace wap

/**
 * Makes a native text of a Java one.
 * @param pstEnv the calling thread's environment, with no exception pending
 * @param jText  the Java text; may be null
 * @return a new block of its UTF-8 bytes and a zero, released with VT_OS_MemFreeD or free by the
 *         caller; null when jText is null or empty, or when anything fails. No exception is left
 *         pending. A U+0000 inside the text ends the native text.
 */
WAP_EXPORT char *jstring2char(JNIEnv *pstEnv, jstring jText);

/// Like jstring2char, but an empty Java text gives a new block holding "".
WAP_EXPORT char *jstringtochar(JNIEnv *pstEnv, jstring jText);

/**
 * Makes a Java text of a native one.
 * @param pcText UTF-8, zero-terminated; may be null
 * @return a new local reference; null when pcText is null or empty, or when anything fails. No
 *         exception is left pending.
 */
WAP_EXPORT jstring char2jstring(JNIEnv *pstEnv, const char *pcText);

/**
 * Releases the first uiCount texts of a table and sets their slots to null.
 * @param ppcTexts the table; may be null; empty slots are null
 */
WAP_EXPORT void JNI_BASE_FreeArray2MaxIndex(char **ppcTexts, uint32_t uiCount);

/**
 * Appends the texts of a Java array to a native text, with a separator between them. Null and empty
 * elements are left out.
 * @param jTexts      an array of strings; may be null, which counts as empty
 * @param pcSeparator the separator, not empty
 * @param pcOut       the text to append to, zero-terminated: zero it before the call
 * @param uiOutSize   size of pcOut in bytes; the last byte is never used
 * @return 0, or 1 when the next element or separator would pass uiOutSize - 1 bytes (pcOut then
 *         holds what fitted), when an argument is null, or when the array has more elements than
 *         the virtual machine grants local references for
 */
WAP_EXPORT uint32_t JNI_COMMON_GetStrFromObjArray(JNIEnv *pstEnv, jobjectArray jTexts,
                                                  const char *pcSeparator, char *pcOut,
                                                  uint32_t uiOutSize);

#endif
