// JSON texts written straight into a buffer, in the form in which json-c prints by default: for
// tables of many rows, where a tree of values would take most of the time and memory of a call.
#ifndef WAP_COMMON_JSON_TEXT_H
#define WAP_COMMON_JSON_TEXT_H

#include <stddef.h>
#include <stdint.h>

#include <string_view>

namespace wap {

/**
 * How a byte of a string is written.
 * @return 0 for as it is; 'u' for as six characters, "\u001f"; another letter for behind a
 * backslash
 */
char JsonEscape(char cByte);

/// Writes as far as the buffer has room for the text and its zero, and counts on behind that.
class JsonText {
  public:
    /// @param pcOut uiCap bytes, at least one
    JsonText(char *pcOut, uint32_t uiCap) : m_pcOut(pcOut), m_uiCap(uiCap) {}
    JsonText(const JsonText &) = delete;
    JsonText &operator=(const JsonText &) = delete;

    /// Adds characters as they are.
    void Put(std::string_view stChars);
    /// Adds a zero-terminated text as a string, in its quotes.
    void PutText(const char *pcText);
    /// Adds an integer.
    void PutInt(int32_t iValue);

    /// Ends the text with its zero, when all of it fits; the buffer has an empty one otherwise.
    bool Finish();
    /// Of all that was added, in bytes.
    uint64_t Length() const { return m_ulLength; }

  private:
    char *m_pcOut;
    uint32_t m_uiCap;
    uint64_t m_ulLength = 0;
};

}  // namespace wap

#endif
