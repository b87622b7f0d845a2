#include "common/json_plain.h"

#include <limits.h>
#include <string.h>

#include "common/owners.h"
#include "common/report.h"

namespace wap {

namespace {

bool IsHex(char cByte) {
    return (cByte >= '0' && cByte <= '9') || (cByte >= 'a' && cByte <= 'f') ||
           (cByte >= 'A' && cByte <= 'F');
}

/// Takes what a JSON text says out of its strings, and leaves whether it is one: quotes, escapes,
/// control characters and whether a character is a hexadecimal digit.
void Mask(char *pcText) {
    bool bInString = false;
    for (; *pcText != '\0'; ++pcText) {
        if (*pcText == '"') {
            bInString = !bInString;
        } else if (bInString && *pcText == '\\') {
            if (pcText[1] == '\0') {
                return;
            }
            ++pcText;
        } else if (bInString && static_cast<unsigned char>(*pcText) >= ' ') {
            *pcText = IsHex(*pcText) ? '1' : 'x';
        }
    }
}

/// Whether a text parses, found out without what its strings say.
bool IsJson(json_tokener *pstTokener, const char *pcText, uint32_t uiLength) {
    SecretBlock stMasked;
    if (!stMasked.Make(uiLength + 1, WAP_SPOT)) {
        return false;
    }
    auto *pcMasked = static_cast<char *>(stMasked.Lend());
    memcpy(pcMasked, pcText, uiLength);
    Mask(pcMasked);
    json_object *pstRoot = json_tokener_parse_ex(pstTokener, pcMasked, -1);
    const bool bParsed = pstRoot != nullptr;
    (void)json_object_put(pstRoot);
    return bParsed;
}

/// Has the tokener collect uiLength characters that tell nothing: its memory has room for as many
/// then, and holds none of what it collected before. False when it has no room for them.
bool Cover(json_tokener *pstTokener, uint32_t uiLength) {
    PlatformBlock stFiller;
    if (!stFiller.Make(uiLength + 3, WAP_SPOT)) {
        return false;
    }
    auto *pcFiller = static_cast<char *>(stFiller.Lend());
    memset(pcFiller, 'x', uiLength + 2);
    pcFiller[0] = '"';
    pcFiller[uiLength + 1] = '"';
    json_tokener_reset(pstTokener);
    json_object *pstFiller = json_tokener_parse_ex(pstTokener, pcFiller, -1);
    const bool bWhole = json_object_get_string_len(pstFiller) == static_cast<int>(uiLength);
    (void)json_object_put(pstFiller);
    return bWhole;
}

}  // namespace

json_object *ParsePlainly(json_tokener *pstTokener, const char *pcText, Secrecy eSecrecy) {
    if (eSecrecy == Secrecy::kPlain) {
        return json_tokener_parse_ex(pstTokener, pcText, -1);
    }
    const size_t ulLength = strlen(pcText);
    const auto uiLength = static_cast<uint32_t>(ulLength);
    // Room first, so that its memory stays where it is; and no text that ends before its end is
    // begun, since what has been read of it then can't be wiped.
    if (ulLength > INT_MAX - 3 || !Cover(pstTokener, uiLength) ||
        !IsJson(pstTokener, pcText, uiLength)) {
        return nullptr;
    }
    json_object *pstRoot = json_tokener_parse_ex(pstTokener, pcText, -1);
    (void)Cover(pstTokener, uiLength);
    return pstRoot;
}

}  // namespace wap
