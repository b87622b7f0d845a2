// The bounded memory and text functions of the scripted platform.

#include <vt_ssp_basic.h>

#include <strings.h>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "support/world.h"

using wap::test::World;

namespace {

constexpr uint32_t kConversionRefused = 0x0C0C0001;

void Wrote(const void *pvAt, size_t uiLen) {
    World::Get().stSecrets.Written(pvAt, uiLen);
}

bool Overlap(const void *pvA, size_t uiA, const void *pvB, size_t uiB) {
    const uintptr_t ulA = reinterpret_cast<uintptr_t>(pvA);
    const uintptr_t ulB = reinterpret_cast<uintptr_t>(pvB);
    return ulA < ulB + uiB && ulB < ulA + uiA;
}

/// The gateway's own library may crash on null in these functions, as their like in C do.
bool IsText(const char *pcText, const char *pcFunction) {
    if (pcText == nullptr) {
        World::Get().Violation(std::string(pcFunction) + " was given null");
    }
    return pcText != nullptr;
}

}  // namespace

extern "C" {

uint32_t VT_OS_MemSet_S(void *pvDst, uint32_t uiDstSize, int32_t iByte, uint32_t uiCount) {
    if (pvDst == nullptr || uiCount > uiDstSize) {
        return kConversionRefused;
    }
    std::memset(pvDst, iByte, uiCount);
    if (iByte == 0) {
        World::Get().stSecrets.Wiped(pvDst, uiCount);
    }
    return 0;
}

uint32_t VT_OS_MemCpy_S(void *pvDst, uint32_t uiDstSize, const void *pvSrc, uint32_t uiCount) {
    if (pvDst == nullptr || pvSrc == nullptr || uiCount > uiDstSize ||
        Overlap(pvDst, uiCount, pvSrc, uiCount)) {
        return kConversionRefused;
    }
    std::memcpy(pvDst, pvSrc, uiCount);
    Wrote(pvDst, uiCount);
    return 0;
}

uint32_t VT_OS_StrNCpy_S(char *pcDst, uint32_t uiDstSize, const char *pcSrc, uint32_t uiCount) {
    if (pcDst == nullptr || pcSrc == nullptr) {
        return kConversionRefused;
    }
    const size_t uiLen = strnlen(pcSrc, uiCount);
    if (uiLen >= uiDstSize || Overlap(pcDst, uiLen + 1, pcSrc, uiLen)) {
        return kConversionRefused;
    }
    std::memcpy(pcDst, pcSrc, uiLen);
    pcDst[uiLen] = '\0';
    Wrote(pcDst, uiLen);
    return 0;
}

uint32_t VT_OS_StrNCat_S(char *pcDst, uint32_t uiDstSize, const char *pcSrc, uint32_t uiCount) {
    if (pcDst == nullptr || pcSrc == nullptr) {
        return kConversionRefused;
    }
    const size_t uiHas = strnlen(pcDst, uiDstSize);
    if (uiHas == uiDstSize) {
        return kConversionRefused;
    }
    return VT_OS_StrNCpy_S(pcDst + uiHas, uiDstSize - static_cast<uint32_t>(uiHas), pcSrc, uiCount);
}

int32_t VT_OS_Snprintf_S(char *pcDst, uint32_t uiDstSize, uint32_t uiCount, const char *pcFmt,
                         ...) {
    if (pcDst == nullptr || pcFmt == nullptr || uiCount >= uiDstSize) {
        return -1;
    }
    va_list stArgs;
    va_start(stArgs, pcFmt);
    const int iLen = std::vsnprintf(pcDst, static_cast<size_t>(uiCount) + 1, pcFmt, stArgs);
    va_end(stArgs);
    if (iLen >= 0) {
        Wrote(pcDst, std::strlen(pcDst));
    }
    return iLen < 0 || static_cast<uint32_t>(iLen) > uiCount ? -1 : iLen;
}

uint32_t VT_OS_StrLen(const char *pcStr) {
    return IsText(pcStr, "VT_OS_StrLen") ? static_cast<uint32_t>(std::strlen(pcStr)) : 0;
}

int32_t VT_OS_StrCaseCmp(const char *pcA, const char *pcB) {
    return IsText(pcA, "VT_OS_StrCaseCmp") && IsText(pcB, "VT_OS_StrCaseCmp") ? strcasecmp(pcA, pcB)
                                                                              : -1;
}

char *VT_OS_StrStr(const char *pcHay, const char *pcNeedle) {
    return IsText(pcHay, "VT_OS_StrStr") && IsText(pcNeedle, "VT_OS_StrStr")
               ? const_cast<char *>(std::strstr(pcHay, pcNeedle))
               : nullptr;
}

char *VT_OS_StrCaseStr(const char *pcHay, const char *pcNeedle) {
    if (!IsText(pcHay, "VT_OS_StrCaseStr") || !IsText(pcNeedle, "VT_OS_StrCaseStr")) {
        return nullptr;
    }
    const size_t uiLen = std::strlen(pcNeedle);
    for (const char *pcAt = pcHay;; ++pcAt) {
        if (strncasecmp(pcAt, pcNeedle, uiLen) == 0) {
            return const_cast<char *>(pcAt);
        }
        if (*pcAt == '\0') {
            return nullptr;
        }
    }
}

char *VT_OS_StrtokR(char *pcStr, const char *pcDelim, char **ppcSave) {
    return strtok_r(pcStr, pcDelim, ppcSave);
}

char *VT_OS_Strtok_S(char *pcStr, const char *pcDelim, char **ppcSave) {
    return strtok_r(pcStr, pcDelim, ppcSave);
}

uint32_t VT_OS_StrToUInt32(const char *pcStr, uint32_t *puiValue) {
    if (pcStr == nullptr || puiValue == nullptr || *pcStr == '\0' ||
        std::strspn(pcStr, "0123456789") != std::strlen(pcStr)) {
        return kConversionRefused;
    }
    const unsigned long long ulValue = std::strtoull(pcStr, nullptr, 10);
    if (ulValue > UINT32_MAX) {
        return kConversionRefused;
    }
    *puiValue = static_cast<uint32_t>(ulValue);
    return 0;
}

uint32_t VT_OS_Int32ToStr_S(int32_t iValue, char *pcDst, uint32_t uiDstSize) {
    char acText[12];
    const int iLen = std::snprintf(acText, sizeof(acText), "%d", static_cast<int>(iValue));
    if (pcDst == nullptr || static_cast<uint32_t>(iLen) >= uiDstSize) {
        return kConversionRefused;
    }
    std::memcpy(pcDst, acText, static_cast<size_t>(iLen) + 1);
    return 0;
}

int32_t VT_OS_Sscanf_S(const char *pcStr, const char *pcFmt, ...) {
    va_list stArgs;
    va_start(stArgs, pcFmt);
    const int iItems = std::vsscanf(pcStr, pcFmt, stArgs);
    va_end(stArgs);
    return iItems;
}
}
