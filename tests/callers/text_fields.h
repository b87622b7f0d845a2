// Where the texts of callers go: which field of which request each text argument fills, how long it
// may be, and what becomes of a longer one. Taken from what the service classes promise.
#ifndef WAP_TESTS_CALLERS_TEXT_FIELDS_H
#define WAP_TESTS_CALLERS_TEXT_FIELDS_H

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "callers/natives.h"

namespace wap::test {

/// What becomes of a text that is longer than its limit.
enum class TooLong {
    kRefused,  ///< the request is not sent
    kCut,      ///< the limit's bytes are sent
    kLeftOut,  ///< the field is sent empty
    kSent,     ///< there is no limit
};

struct TextField {
    const char *pcMethod;
    size_t uiArgument;  ///< a text, or an array of texts whose only element it is then
    uint32_t uiRpcId;   ///< the request that has the field
    size_t uiOffset;
    size_t uiSize;  ///< 0: the request is the text with its zero
    size_t uiLimit;
    TooLong eTooLong;
    jint iRefusal = -1;
    /// What must stand around the text for the method to take it.
    const char *pcBefore = "";
    const char *pcBehind = "";
    const char *pcState = "";  ///< of the gateway

    std::string Name() const;
    const Native &Called() const { return NativeOf(pcMethod, pcState); }
};

void PrintTo(const TextField &stField, std::ostream *pstOut);

const std::vector<TextField> &TextFields();
/// The texts that fill no field, by method and argument, and why.
const std::map<std::pair<std::string, size_t>, std::string> &TextsWithoutField();

/// The good arguments with this text in the field's argument.
Arguments WithText(const TextField &stField, const std::u16string &sText);
/// A text of uiBytes bytes that the method takes, were it not for the length.
std::u16string FilledText(const TextField &stField, size_t uiBytes);

}  // namespace wap::test

#endif
