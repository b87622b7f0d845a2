#include "common/json_text.h"

#include <string.h>

namespace wap {

namespace {

constexpr char kDigits[] = "0123456789abcdef";

}  // namespace

char JsonEscape(char cByte) {
    if (static_cast<unsigned char>(cByte) >= ' ') {
        // The slash, too, which is json-c's way.
        return cByte == '"' || cByte == '\\' || cByte == '/' ? cByte : '\0';
    }
    switch (cByte) {
        case '\b':
            return 'b';
        case '\n':
            return 'n';
        case '\r':
            return 'r';
        case '\t':
            return 't';
        case '\f':
            return 'f';
        default:
            return 'u';
    }
}

void JsonText::Put(std::string_view stChars) {
    if (m_ulLength + stChars.size() < m_uiCap) {
        memcpy(m_pcOut + m_ulLength, stChars.data(), stChars.size());
    }
    m_ulLength += stChars.size();
}

void JsonText::PutText(const char *pcText) {
    Put("\"");
    const char *pcPlain = pcText;
    for (; *pcText != '\0'; ++pcText) {
        const char cEscape = JsonEscape(*pcText);
        if (cEscape == '\0') {
            continue;
        }
        Put({pcPlain, static_cast<size_t>(pcText - pcPlain)});
        pcPlain = pcText + 1;
        if (cEscape == 'u') {
            const char acCode[] = {
                '\\', 'u', '0', '0', kDigits[*pcText >> 4], kDigits[*pcText & 15]};
            Put({acCode, sizeof(acCode)});
        } else {
            const char acPair[] = {'\\', cEscape};
            Put({acPair, sizeof(acPair)});
        }
    }
    Put({pcPlain, static_cast<size_t>(pcText - pcPlain)});
    Put("\"");
}

void JsonText::PutInt(int32_t iValue) {
    char acDigits[11];  // with a sign
    size_t uiAt = sizeof(acDigits);
    auto uiRest = static_cast<uint32_t>(iValue);
    if (iValue < 0) {
        uiRest = 0 - uiRest;
    }
    do {
        acDigits[--uiAt] = static_cast<char>('0' + uiRest % 10);
        uiRest /= 10;
    } while (uiRest != 0);
    if (iValue < 0) {
        acDigits[--uiAt] = '-';
    }
    Put({acDigits + uiAt, sizeof(acDigits) - uiAt});
}

bool JsonText::Finish() {
    const bool bFits = m_ulLength < m_uiCap;
    m_pcOut[bFits ? m_ulLength : 0] = '\0';
    return bFits;
}

}  // namespace wap
