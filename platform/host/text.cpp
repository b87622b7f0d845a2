// The bounded text functions.
#include <charconv>
#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "bounds.h"
#include "vt_ssp_host.h"

using wap::host::Overlap;

namespace {

/** Lower case of an ASCII letter, whatever the process's locale is. */
int Lower(char cChar) {
    unsigned char ucChar = static_cast<unsigned char>(cChar);
    return ucChar >= 'A' && ucChar <= 'Z' ? ucChar + ('a' - 'A') : ucChar;
}

bool StartsWithAnyCase(const char *pcText, const char *pcStart) {
    while (*pcStart != '\0' && Lower(*pcText) == Lower(*pcStart)) {
        pcText++;
        pcStart++;
    }
    return *pcStart == '\0';
}

}  // namespace

uint32_t VT_OS_StrNCpy_S(char *pcDst, uint32_t uiDstSize, const char *pcSrc, uint32_t uiCount) {
    if (pcDst == nullptr || pcSrc == nullptr) {
        return VT_HOST_ERR_ARGUMENT;
    }
    size_t uiLen = strnlen(pcSrc, uiCount);
    if (uiLen >= uiDstSize) {
        return VT_HOST_ERR_TOO_LONG;
    }
    if (Overlap(pcDst, uiLen + 1, pcSrc, uiLen)) {
        return VT_HOST_ERR_ARGUMENT;
    }
    memcpy(pcDst, pcSrc, uiLen);
    pcDst[uiLen] = '\0';
    return 0;
}

uint32_t VT_OS_StrNCat_S(char *pcDst, uint32_t uiDstSize, const char *pcSrc, uint32_t uiCount) {
    if (pcDst == nullptr || pcSrc == nullptr) {
        return VT_HOST_ERR_ARGUMENT;
    }
    size_t uiHeld = strnlen(pcDst, uiDstSize);
    size_t uiLen = strnlen(pcSrc, uiCount);
    if (uiHeld >= uiDstSize || uiLen >= uiDstSize - uiHeld) {
        return VT_HOST_ERR_TOO_LONG;
    }
    if (Overlap(pcDst, uiHeld + uiLen + 1, pcSrc, uiLen)) {
        return VT_HOST_ERR_ARGUMENT;
    }
    memcpy(pcDst + uiHeld, pcSrc, uiLen);
    pcDst[uiHeld + uiLen] = '\0';
    return 0;
}

int32_t VT_OS_Snprintf_S(char *pcDst, uint32_t uiDstSize, uint32_t uiCount, const char *pcFmt,
                         ...) {
    if (pcDst == nullptr || pcFmt == nullptr || uiDstSize == 0) {
        return -1;
    }
    va_list stArgs;
    int iLen = 0;
    if (uiCount >= uiDstSize) {
        // A text that is longer than the room must leave the room as it was, so measure first.
        va_start(stArgs, pcFmt);
        iLen = vsnprintf(nullptr, 0, pcFmt, stArgs);
        va_end(stArgs);
        if (iLen < 0 || static_cast<uint32_t>(iLen) >= uiDstSize) {
            return -1;
        }
        uiCount = uiDstSize - 1;
    }
    va_start(stArgs, pcFmt);
    iLen = vsnprintf(pcDst, size_t{uiCount} + 1, pcFmt, stArgs);
    va_end(stArgs);
    return iLen < 0 || static_cast<uint32_t>(iLen) > uiCount ? -1 : iLen;
}

uint32_t VT_OS_StrLen(const char *pcStr) {
    return pcStr == nullptr ? 0 : static_cast<uint32_t>(strlen(pcStr));
}

int32_t VT_OS_StrCaseCmp(const char *pcA, const char *pcB) {
    if (pcA == nullptr || pcB == nullptr) {
        return pcA == pcB ? 0 : (pcA == nullptr ? -1 : 1);
    }
    while (*pcA != '\0' && Lower(*pcA) == Lower(*pcB)) {
        pcA++;
        pcB++;
    }
    return Lower(*pcA) - Lower(*pcB);
}

char *VT_OS_StrStr(const char *pcHay, const char *pcNeedle) {
    if (pcHay == nullptr || pcNeedle == nullptr) {
        return nullptr;
    }
    return const_cast<char *>(strstr(pcHay, pcNeedle));
}

char *VT_OS_StrCaseStr(const char *pcHay, const char *pcNeedle) {
    if (pcHay == nullptr || pcNeedle == nullptr) {
        return nullptr;
    }
    for (;; pcHay++) {
        if (StartsWithAnyCase(pcHay, pcNeedle)) {
            return const_cast<char *>(pcHay);
        }
        if (*pcHay == '\0') {
            return nullptr;
        }
    }
}

char *VT_OS_StrtokR(char *pcStr, const char *pcDelim, char **ppcSave) {
    if (pcDelim == nullptr || ppcSave == nullptr || (pcStr == nullptr && *ppcSave == nullptr)) {
        return nullptr;
    }
    return strtok_r(pcStr, pcDelim, ppcSave);
}

char *VT_OS_Strtok_S(char *pcStr, const char *pcDelim, char **ppcSave) {
    return VT_OS_StrtokR(pcStr, pcDelim, ppcSave);
}

uint32_t VT_OS_StrToUInt32(const char *pcStr, uint32_t *puiValue) {
    if (pcStr == nullptr || puiValue == nullptr) {
        return VT_HOST_ERR_ARGUMENT;
    }
    const char *pcEnd = pcStr + strlen(pcStr);
    uint32_t uiValue = 0;
    auto [pcStop, eError] = std::from_chars(pcStr, pcEnd, uiValue);
    if (eError != std::errc() || pcStop != pcEnd) {
        return VT_HOST_ERR_ARGUMENT;
    }
    *puiValue = uiValue;
    return 0;
}

uint32_t VT_OS_Int32ToStr_S(int32_t iValue, char *pcDst, uint32_t uiDstSize) {
    char acText[12];  // "-2147483648" and the zero
    int iLen = snprintf(acText, sizeof acText, "%d", iValue);
    return VT_OS_StrNCpy_S(pcDst, uiDstSize, acText, static_cast<uint32_t>(iLen));
}

int32_t VT_OS_Sscanf_S(const char *pcStr, const char *pcFmt, ...) {
    if (pcStr == nullptr || pcFmt == nullptr) {
        return -1;
    }
    va_list stArgs;
    va_start(stArgs, pcFmt);
    int iItems = vsscanf(pcStr, pcFmt, stArgs);
    va_end(stArgs);
    return iItems;
}
