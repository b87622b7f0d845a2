// Texts into record fields and out of them.
#ifndef WAP_COMMON_FIELDS_H
#define WAP_COMMON_FIELDS_H

#include <stddef.h>
#include <stdint.h>
#include <string.h>
#include <vt_ssp_basic.h>

#include "common/jni_common.h"
#include "common/report.h"

namespace wap {

/// Whether a text is missing, which an empty one counts as.
inline bool HasNoText(const char *pcText) {
    return pcText == nullptr || pcText[0] == '\0';
}

/// Length of the text in a reply's field, which nobody promised to terminate.
template <size_t kSize>
inline uint32_t FieldLength(const char (&acField)[kSize]) {
    return static_cast<uint32_t>(strnlen(acField, kSize));
}

/// Puts a text into a field of a request: at most kSize - 1 bytes, and a zero behind them. A null
/// text leaves the field as it is.
template <size_t kSize>
inline void PutField(char (&acField)[kSize], const char *pcText) {
    if (pcText != nullptr) {
        (void)VT_OS_StrNCpy_S(acField, kSize, pcText, kSize - 1);
    }
}

/// Puts a text into a field of a request whole, with its zero, or not at all: one that does not fit
/// leaves the field as it is, and so does null.
/// @param uiCap for those who use no more of the field than this
/// @return false for a text that does not fit
template <size_t kSize>
inline bool PutWholeField(char (&acField)[kSize], const char *pcText, uint32_t uiCap = kSize) {
    return pcText == nullptr || VT_OS_StrNCpy_S(acField, uiCap, pcText, VT_OS_StrLen(pcText)) == 0;
}

/// Copies the text of a reply's field, terminated or not, into the caller's buffer of uiCap bytes.
/// 0; kErrTooLong, recorded, when the text and a zero don't fit, with nothing written.
template <size_t kSize>
inline uint32_t CopyField(SourceSpot stSpot, const char (&acField)[kSize], char *pcBuf,
                          uint32_t uiCap) {
    const uint32_t uiLength = FieldLength(acField);
    if (uiLength >= uiCap) {
        return Recorded(stSpot, kErrTooLong, uiCap, uiLength);
    }
    // Not with a text function: the field may lack its zero.
    memcpy(pcBuf, acField, uiLength);
    pcBuf[uiLength] = '\0';
    return 0;
}

/// Ends the text in a reply's field within the field, whatever came.
template <size_t kSize>
inline void EndField(char (&acField)[kSize]) {
    acField[kSize - 1] = '\0';
}

/// A reply's field as a text of its own, which ends whatever the field holds.
template <size_t kSize>
class FieldText {
  public:
    explicit FieldText(const char (&acField)[kSize]) {
        memcpy(m_acText, acField, FieldLength(acField));
    }
    const char *Lend() const { return m_acText; }
    /// The text as the value word of a JSON item.
    uintptr_t Word() const { return reinterpret_cast<uintptr_t>(m_acText); }

  private:
    char m_acText[kSize + 1] = {};
};

}  // namespace wap

#endif
