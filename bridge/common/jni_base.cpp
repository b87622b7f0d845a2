#include "common/jni_base.h"

#include <limits.h>
#include <stdlib.h>
#include <string.h>
#include <vt_ssp_basic.h>

#include "common/report.h"

namespace {

constexpr char kStringClass[] = "java/lang/String";
constexpr char kCharset[] = "utf-8";

/// Local references that one conversion leaves behind, with the element it was made from.
constexpr int64_t kRefsPerElement = 4;

/// A JNI result, or null when its call threw.
template <class Result>
Result Checked(JNIEnv *pstEnv, Result xResult) {
    return wap::ClearException(pstEnv) ? nullptr : xResult;
}

/// The class library's String, the charset's name and one of String's methods.
struct StringCall {
    jclass jClass;
    jstring jCharset;
    jmethodID jMethod;

    /// Looks the three up, in this order; false when one is missing.
    bool Prepare(JNIEnv *pstEnv, const char *pcMethod, const char *pcSignature) {
        jClass = Checked(pstEnv, pstEnv->FindClass(kStringClass));
        if (jClass == nullptr) {
            return false;
        }
        jCharset = Checked(pstEnv, pstEnv->NewStringUTF(kCharset));
        if (jCharset == nullptr) {
            return false;
        }
        jMethod = Checked(pstEnv, pstEnv->GetMethodID(jClass, pcMethod, pcSignature));
        return jMethod != nullptr;
    }
};

/// A new block of the bytes and a zero; null for fewer bytes than iShortest.
char *CopyBytes(const jbyte *pbyBytes, jsize iLength, jsize iShortest) {
    if (iLength < iShortest) {
        return nullptr;
    }
    const uint32_t uiLength = static_cast<uint32_t>(iLength);
    char *pcText = static_cast<char *>(malloc(static_cast<size_t>(uiLength) + 1));
    if (pcText == nullptr) {
        return nullptr;
    }
    if (uiLength != 0 && VT_OS_MemCpy_S(pcText, uiLength + 1, pbyBytes, uiLength) != 0) {
        free(pcText);
        return nullptr;
    }
    pcText[uiLength] = '\0';
    return pcText;
}

/// Appends a text and the separator; false when either does not fit.
bool AppendElement(char *pcOut, uint32_t uiOutSize, const char *pcText, const char *pcSeparator) {
    return VT_OS_StrNCat_S(pcOut, uiOutSize, pcText, VT_OS_StrLen(pcText)) == 0 &&
           VT_OS_StrNCat_S(pcOut, uiOutSize, pcSeparator, VT_OS_StrLen(pcSeparator)) == 0;
}

/// Cuts the text at its last separator.
void RemoveLastSeparator(char *pcOut, const char *pcSeparator) {
    const uint32_t uiLength = VT_OS_StrLen(pcOut);
    const uint32_t uiSeparator = VT_OS_StrLen(pcSeparator);
    char *pcPlace = uiLength > uiSeparator ? pcOut + (uiLength - uiSeparator) : pcOut;
    char *pcLast = nullptr;
    while (pcPlace < pcOut + uiLength) {
        char *pcHit = VT_OS_StrStr(pcPlace, pcSeparator);
        if (pcHit == nullptr) {
            break;
        }
        pcLast = pcHit;
        pcPlace = pcHit + uiSeparator;
    }
    if (pcLast != nullptr) {
        *pcLast = '\0';
    }
}

}  // namespace

bool wap::ClearException(JNIEnv *pstEnv) {
    if (pstEnv->ExceptionCheck() == JNI_FALSE) {
        return false;
    }
    pstEnv->ExceptionClear();
    return true;
}

bool wap::EnsureElementRefs(JNIEnv *pstEnv, jsize iCount) {
    const int64_t llRefs = kRefsPerElement * iCount;
    if (llRefs > INT_MAX || pstEnv->EnsureLocalCapacity(static_cast<jint>(llRefs)) != JNI_OK) {
        (void)ClearException(pstEnv);
        return false;
    }
    return true;
}

char *wap::ConvertElement(JNIEnv *pstEnv, jobjectArray jTexts, jsize iIndex, EmptyText eEmpty,
                          bool *pbLost) {
    auto jText = static_cast<jstring>(pstEnv->GetObjectArrayElement(jTexts, iIndex));
    const bool bThrown = ClearException(pstEnv);
    if (bThrown) {
        jText = nullptr;
    }
    // Where losses count, an empty text is converted in any case: it is none.
    const EmptyText eConverted = pbLost == nullptr ? eEmpty : EmptyText::kCounts;
    uint32_t uiLength = 0;
    char *pcText = MakeNativeText(pstEnv, jText, eConverted, Secrecy::kPlain, &uiLength);
    if (pbLost != nullptr) {
        *pbLost = bThrown || (jText != nullptr && pcText == nullptr);
    }
    if (pcText != nullptr && uiLength == 0 && eEmpty == EmptyText::kIsMissing) {
        VT_OS_MemFreeD(pcText, WAP_SPOT.pcFile, WAP_SPOT.uiLine);
        pcText = nullptr;
    }
    return pcText;
}

// Deliberately keeps the references to the class, the charset's name and the byte array: they go
// when the Java call returns, and callers bound their arrays.
char *wap::MakeNativeText(JNIEnv *pstEnv, jstring jText, EmptyText eEmpty, Secrecy eSecrecy,
                          uint32_t *puiLength) {
    *puiLength = 0;
    if (pstEnv == nullptr || jText == nullptr) {
        return nullptr;
    }
    StringCall stCall{};
    if (!stCall.Prepare(pstEnv, "getBytes", "(Ljava/lang/String;)[B")) {
        return nullptr;
    }
    auto jBytes = static_cast<jbyteArray>(
        Checked(pstEnv, pstEnv->CallObjectMethod(jText, stCall.jMethod, stCall.jCharset)));
    if (jBytes == nullptr) {
        return nullptr;
    }
    const jsize iLength = pstEnv->GetArrayLength(jBytes);
    if (wap::ClearException(pstEnv)) {
        return nullptr;
    }
    jbyte *pbyBytes = Checked(pstEnv, pstEnv->GetByteArrayElements(jBytes, nullptr));
    if (pbyBytes == nullptr) {
        return nullptr;
    }
    char *pcText = CopyBytes(pbyBytes, iLength, eEmpty == EmptyText::kCounts ? 0 : 1);
    if (pcText != nullptr) {
        *puiLength = static_cast<uint32_t>(iLength);
    }
    if (eSecrecy == Secrecy::kSecret && iLength > 0) {
        // Copied back by the release, so that the Java array forgets it as well.
        const uint32_t uiLength = static_cast<uint32_t>(iLength);
        (void)VT_OS_MemSet_S(pbyBytes, uiLength, 0, uiLength);
    }
    // Released when memory ran out too: a kept buffer would be lost for good.
    pstEnv->ReleaseByteArrayElements(jBytes, pbyBytes, 0);
    return pcText;
}

char *jstring2char(JNIEnv *pstEnv, jstring jText) {
    uint32_t uiLength = 0;
    return wap::MakeNativeText(pstEnv, jText, wap::EmptyText::kIsMissing, wap::Secrecy::kPlain,
                               &uiLength);
}

char *jstringtochar(JNIEnv *pstEnv, jstring jText) {
    uint32_t uiLength = 0;
    return wap::MakeNativeText(pstEnv, jText, wap::EmptyText::kCounts, wap::Secrecy::kPlain,
                               &uiLength);
}

jstring char2jstring(JNIEnv *pstEnv, const char *pcText) {
    if (pstEnv == nullptr || pcText == nullptr) {
        return nullptr;
    }
    const size_t ulLength = strlen(pcText);
    StringCall stCall{};
    if (!stCall.Prepare(pstEnv, "<init>", "([BLjava/lang/String;)V")) {
        return nullptr;
    }
    if (ulLength == 0 || ulLength > INT_MAX) {
        return nullptr;
    }
    const jsize iLength = static_cast<jsize>(ulLength);
    jbyteArray jBytes = Checked(pstEnv, pstEnv->NewByteArray(iLength));
    if (jBytes == nullptr) {
        return nullptr;
    }
    pstEnv->SetByteArrayRegion(jBytes, 0, iLength, reinterpret_cast<const jbyte *>(pcText));
    if (wap::ClearException(pstEnv)) {
        return nullptr;
    }
    return static_cast<jstring>(
        Checked(pstEnv, pstEnv->NewObject(stCall.jClass, stCall.jMethod, jBytes, stCall.jCharset)));
}

void JNI_BASE_FreeArray2MaxIndex(char **ppcTexts, uint32_t uiCount) {
    if (ppcTexts == nullptr) {
        return;
    }
    for (uint32_t i = 0; i < uiCount; ++i) {
        if (ppcTexts[i] != nullptr) {
            VT_OS_MemFreeD(ppcTexts[i], WAP_SPOT.pcFile, WAP_SPOT.uiLine);
            ppcTexts[i] = nullptr;
        }
    }
}

uint32_t wap::JoinElements(JNIEnv *pstEnv, jobjectArray jTexts, const char *pcSeparator,
                           char *pcOut, uint32_t uiOutSize, LostElement eLost) {
    if (pstEnv == nullptr || pcSeparator == nullptr || pcSeparator[0] == '\0' || pcOut == nullptr ||
        uiOutSize == 0) {
        return 1;
    }
    if (jTexts == nullptr) {
        return 0;
    }
    if (!EnsureElementRefs(pstEnv, pstEnv->GetArrayLength(jTexts))) {
        return 1;
    }
    for (jsize i = 0; i < pstEnv->GetArrayLength(jTexts); ++i) {
        bool bLost = false;
        char *pcText = ConvertElement(pstEnv, jTexts, i, EmptyText::kIsMissing,
                                      eLost == LostElement::kFails ? &bLost : nullptr);
        if (bLost) {
            return 1;
        }
        if (pcText == nullptr) {
            continue;
        }
        // One byte less than there is: this reserve is part of what callers see.
        const bool bFits = AppendElement(pcOut, uiOutSize - 1, pcText, pcSeparator);
        VT_OS_MemFreeD(pcText, WAP_SPOT.pcFile, WAP_SPOT.uiLine);
        if (!bFits) {
            return 1;
        }
    }
    RemoveLastSeparator(pcOut, pcSeparator);
    return 0;
}

uint32_t JNI_COMMON_GetStrFromObjArray(JNIEnv *pstEnv, jobjectArray jTexts, const char *pcSeparator,
                                       char *pcOut, uint32_t uiOutSize) {
    return wap::JoinElements(pstEnv, jTexts, pcSeparator, pcOut, uiOutSize,
                             wap::LostElement::kIsSkipped);
}
