#include "common/json_print.h"

#include <json-c/json_object_iterator.h>
#include <stdint.h>
#include <string.h>

#include "common/json_text.h"

namespace wap {
namespace {

size_t CharLength(char cChar) {
    switch (JsonEscape(cChar)) {
        case '\0':
            return 1;
        case 'u':
            return strlen("\\u0000");
        default:
            return 2;
    }
}

size_t QuotedLength(const char *pcText, size_t ulLength) {
    size_t ulPrinted = 2;
    for (size_t i = 0; i < ulLength; ++i) {
        ulPrinted += CharLength(pcText[i]);
    }
    return ulPrinted;
}

size_t IntegerLength(json_object *pstValue) {
    const int64_t llValue = json_object_get_int64(pstValue);
    uint64_t ullRest = json_object_get_uint64(pstValue);
    size_t ulPrinted = 1;
    if (llValue < 0) {
        ++ulPrinted;
        ullRest = 0 - static_cast<uint64_t>(llValue);
    }
    for (; ullRest >= 10; ullRest /= 10) {
        ++ulPrinted;
    }
    return ulPrinted;
}

/// A double that was parsed prints as it was written, which json-c keeps as user data. Any other
/// fits the buffer that json-c starts with, so that making the buffer is all that can fail.
size_t DoubleLength(json_object *pstValue) {
    if (const void *pvWritten = json_object_get_userdata(pstValue)) {
        return strlen(static_cast<const char *>(pvWritten));
    }
    const char *pcText = json_object_to_json_string(pstValue);
    return pcText == nullptr ? 0 : strlen(pcText);
}

/// "{ " "key": value ", " … " }", and "{ }" for an empty one.
size_t ObjectLength(json_object *pstObj) {
    size_t ulPrinted = strlen("{ }");
    json_object_iterator stAt = json_object_iter_begin(pstObj);
    const json_object_iterator stEnd = json_object_iter_end(pstObj);
    for (; json_object_iter_equal(&stAt, &stEnd) == 0; json_object_iter_next(&stAt)) {
        const char *pcKey = json_object_iter_peek_name(&stAt);
        // The blank, and the comma or the last blank.
        ulPrinted += QuotedLength(pcKey, strlen(pcKey)) + strlen(": ") +
                     SpacedLength(json_object_iter_peek_value(&stAt)) + 2;
    }
    return json_object_object_length(pstObj) == 0 ? ulPrinted : ulPrinted - 1;
}

size_t ArrayLength(json_object *pstArray) {
    const size_t ulCount = json_object_array_length(pstArray);
    size_t ulPrinted = strlen("[ ]");
    for (size_t i = 0; i < ulCount; ++i) {
        ulPrinted += SpacedLength(json_object_array_get_idx(pstArray, i)) + 2;
    }
    return ulCount == 0 ? ulPrinted : ulPrinted - 1;
}

}  // namespace

size_t SpacedLength(json_object *pstValue) {
    switch (json_object_get_type(pstValue)) {
        case json_type_null:
            return strlen("null");
        case json_type_boolean:
            return json_object_get_boolean(pstValue) != 0 ? strlen("true") : strlen("false");
        case json_type_object:
            return ObjectLength(pstValue);
        case json_type_array:
            return ArrayLength(pstValue);
        case json_type_string:
            return QuotedLength(json_object_get_string(pstValue),
                                static_cast<size_t>(json_object_get_string_len(pstValue)));
        case json_type_int:
            return IntegerLength(pstValue);
        case json_type_double:
            return DoubleLength(pstValue);
    }
    return 0;
}

}  // namespace wap
