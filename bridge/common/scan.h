// Reading numbers out of texts.
#ifndef WAP_COMMON_SCAN_H
#define WAP_COMMON_SCAN_H

#include <stdint.h>

namespace wap {

/// What is read instead of a number that is beyond 32 bits; negative for a negative one.
inline constexpr int64_t kScanTooLarge = int64_t{1} << 32;

/**
 * Reads an integer as scanning for "%d" or "%u" does, blanks before it and a sign among that, and
 * moves behind it. Nothing overflows: see kScanTooLarge.
 * @param pcAt    moved on success only
 * @param lNumber written on success only
 * @return whether there is a number
 */
inline bool ScanNumber(const char *&pcAt, int64_t &lNumber) {
    const auto IsDigit = [](char cChar) { return cChar >= '0' && cChar <= '9'; };
    const char *pcChar = pcAt;
    while (*pcChar == ' ' || (*pcChar >= '\t' && *pcChar <= '\r')) {
        ++pcChar;
    }
    const bool bNegative = *pcChar == '-';
    if (bNegative || *pcChar == '+') {
        ++pcChar;
    }
    if (!IsDigit(*pcChar)) {
        return false;
    }
    int64_t lValue = 0;
    for (; IsDigit(*pcChar); ++pcChar) {
        lValue = lValue * 10 + (*pcChar - '0');
        lValue = lValue < kScanTooLarge ? lValue : kScanTooLarge;
    }
    lNumber = bNegative ? -lValue : lValue;
    pcAt = pcChar;
    return true;
}

}  // namespace wap

#endif
