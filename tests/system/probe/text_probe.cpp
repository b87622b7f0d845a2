// The library's exported conversions of texts, as natives of the test class TextProbe: what other
// native code in the process may call, with a real virtual machine on the other side.
#include <jni.h>
#include <stdint.h>
#include <stdlib.h>
#include <string.h>

#include <memory>
#include <string>

#include "common/jni_base.h"

namespace {

struct Freeing {
    void operator()(char *pcText) const { free(pcText); }
};
using NativeText = std::unique_ptr<char, Freeing>;

constexpr char kUntouched = '\x5A';
constexpr size_t kGuardSize = 16;
constexpr jint kWroteBehindTheBuffer = 2;

/// A native text up to its zero; null for none.
jbyteArray BytesOf(JNIEnv *pstEnv, const NativeText &pcText) {
    if (!pcText) {
        return nullptr;
    }
    const auto iLength = static_cast<jsize>(strlen(pcText.get()));
    jbyteArray jBytes = pstEnv->NewByteArray(iLength);
    if (jBytes != nullptr) {
        pstEnv->SetByteArrayRegion(jBytes, 0, iLength,
                                   reinterpret_cast<const jbyte *>(pcText.get()));
    }
    return jBytes;
}

std::string CopyOf(JNIEnv *pstEnv, jbyteArray jBytes) {
    const jsize iLength = pstEnv->GetArrayLength(jBytes);
    std::string acBytes(static_cast<size_t>(iLength), '\0');
    pstEnv->GetByteArrayRegion(jBytes, 0, iLength, reinterpret_cast<jbyte *>(acBytes.data()));
    return acBytes;
}

}  // namespace

extern "C" {

JNIEXPORT jbyteArray JNICALL
Java_com_veltra_domoline_systemtest_TextProbe_jstring2char(JNIEnv *pstEnv, jclass, jstring jText) {
    return BytesOf(pstEnv, NativeText(jstring2char(pstEnv, jText)));
}

JNIEXPORT jbyteArray JNICALL
Java_com_veltra_domoline_systemtest_TextProbe_jstringtochar(JNIEnv *pstEnv, jclass, jstring jText) {
    return BytesOf(pstEnv, NativeText(jstringtochar(pstEnv, jText)));
}

JNIEXPORT jstring JNICALL Java_com_veltra_domoline_systemtest_TextProbe_char2jstring(
    JNIEnv *pstEnv, jclass, jbyteArray jBytes) {
    if (jBytes == nullptr) {
        return char2jstring(pstEnv, nullptr);
    }
    return char2jstring(pstEnv, CopyOf(pstEnv, jBytes).c_str());
}

JNIEXPORT jint JNICALL Java_com_veltra_domoline_systemtest_TextProbe_join(JNIEnv *pstEnv, jclass,
                                                                          jobjectArray jTexts,
                                                                          jbyteArray jSeparator,
                                                                          jbyteArray jBuffer) {
    const std::string acSeparator = CopyOf(pstEnv, jSeparator);
    const std::string acGuard(kGuardSize, kUntouched);
    std::string acBuffer = CopyOf(pstEnv, jBuffer);
    const size_t uiSize = acBuffer.size();
    acBuffer += acGuard;
    const uint32_t uiResult = JNI_COMMON_GetStrFromObjArray(
        pstEnv, jTexts, acSeparator.c_str(), acBuffer.data(), static_cast<uint32_t>(uiSize));
    pstEnv->SetByteArrayRegion(jBuffer, 0, static_cast<jsize>(uiSize),
                               reinterpret_cast<const jbyte *>(acBuffer.data()));
    return acBuffer.compare(uiSize, kGuardSize, acGuard) == 0 ? static_cast<jint>(uiResult)
                                                              : kWroteBehindTheBuffer;
}

}  // extern "C"
