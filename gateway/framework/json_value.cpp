#include "framework/json_value.h"

#include <limits.h>

#include <new>

#include "framework/error.h"

namespace wap::gateway {

namespace {

struct TokenerRelease {
    void operator()(json_tokener *pstTokener) const { json_tokener_free(pstTokener); }
};

}  // namespace

JsonValue Checked(json_object *pstValue) {
    if (pstValue == nullptr) {
        throw std::bad_alloc();
    }
    return JsonValue(pstValue);
}

JsonValue ParseJson(std::string_view pcText, const std::string &acWhat) {
    if (pcText.size() > INT_MAX) {
        throw GatewayError(acWhat + " is too long to be read");
    }
    std::unique_ptr<json_tokener, TokenerRelease> stTokener(json_tokener_new());
    if (!stTokener) {
        throw std::bad_alloc();
    }
    json_tokener_set_flags(stTokener.get(), JSON_TOKENER_STRICT);
    JsonValue stValue(
        json_tokener_parse_ex(stTokener.get(), pcText.data(), static_cast<int>(pcText.size())));
    const json_tokener_error eError = json_tokener_get_error(stTokener.get());
    if (eError != json_tokener_success || !stValue) {
        throw GatewayError(acWhat + " is no valid JSON: " +
                           (eError == json_tokener_continue ? "it ends too early"
                                                            : json_tokener_error_desc(eError)) +
                           " (at byte " +
                           std::to_string(json_tokener_get_parse_end(stTokener.get())) + ")");
    }
    // Without this a second value behind the first one would be ignored.
    const std::string_view pcRest = pcText.substr(json_tokener_get_parse_end(stTokener.get()));
    if (pcRest.find_first_not_of(" \t\r\n") != std::string_view::npos) {
        throw GatewayError(acWhat + " is no valid JSON: there is more behind its end");
    }
    return stValue;
}

std::string PrintJson(json_object *pstValue, bool bIndented) {
    const int iFlags =
        JSON_C_TO_STRING_NOSLASHESCAPE |
        (bIndented ? JSON_C_TO_STRING_PRETTY | JSON_C_TO_STRING_SPACED : JSON_C_TO_STRING_PLAIN);
    size_t uiLength = 0;
    const char *pcText = json_object_to_json_string_length(pstValue, iFlags, &uiLength);
    if (pcText == nullptr) {
        throw std::bad_alloc();
    }
    return std::string(pcText, uiLength);
}

JsonValue MakeObject() {
    return Checked(json_object_new_object());
}

JsonValue MakeArray() {
    return Checked(json_object_new_array());
}

void Append(json_object *pstArray, JsonValue stValue) {
    if (json_object_array_add(pstArray, stValue.get()) != 0) {
        throw std::bad_alloc();
    }
    (void)stValue.release();
}

std::vector<json_object *> Elements(json_object *pstArray) {
    std::vector<json_object *> astElements;
    if (json_object_is_type(pstArray, json_type_array)) {
        const size_t uiCount = json_object_array_length(pstArray);
        astElements.reserve(uiCount);
        for (size_t uiAt = 0; uiAt < uiCount; ++uiAt) {
            astElements.push_back(json_object_array_get_idx(pstArray, uiAt));
        }
    }
    return astElements;
}

JsonValue Copy(json_object *pstValue) {
    json_object *pstCopy = nullptr;
    if (json_object_deep_copy(pstValue, &pstCopy, nullptr) != 0) {
        throw std::bad_alloc();
    }
    return JsonValue(pstCopy);
}

void PutMember(json_object *pstObject, const char *pcKey, JsonValue stValue) {
    if (json_object_object_add(pstObject, pcKey, stValue.get()) != 0) {
        throw std::bad_alloc();
    }
    (void)stValue.release();
}

void PutText(json_object *pstObject, const char *pcKey, std::string_view pcText) {
    if (pcText.size() > INT_MAX) {
        throw GatewayError("a text is too long");
    }
    PutMember(pstObject, pcKey,
              Checked(json_object_new_string_len(pcText.data(), static_cast<int>(pcText.size()))));
}

void PutNumber(json_object *pstObject, const char *pcKey, int64_t iNumber) {
    PutMember(pstObject, pcKey, Checked(json_object_new_int64(iNumber)));
}

void PutBool(json_object *pstObject, const char *pcKey, bool bValue) {
    PutMember(pstObject, pcKey, Checked(json_object_new_boolean(bValue)));
}

json_object *FindMember(json_object *pstObject, const char *pcKey) {
    json_object *pstMember = nullptr;
    if (!json_object_is_type(pstObject, json_type_object) ||
        !json_object_object_get_ex(pstObject, pcKey, &pstMember)) {
        return nullptr;
    }
    return pstMember;
}

std::string NamesIn(json_object *pstObject) {
    std::string acNames;
    json_object_object_foreach(pstObject, pcKey, pstMember) {
        (void)pstMember;
        acNames += ", " + std::string(pcKey);
    }
    return acNames.empty() ? acNames : acNames.substr(2);
}

std::optional<std::string> GetText(json_object *pstObject, const char *pcKey) {
    json_object *pstMember = FindMember(pstObject, pcKey);
    if (!json_object_is_type(pstMember, json_type_string)) {
        return std::nullopt;
    }
    return std::string(json_object_get_string(pstMember),
                       static_cast<size_t>(json_object_get_string_len(pstMember)));
}

std::optional<int64_t> GetNumber(json_object *pstObject, const char *pcKey) {
    json_object *pstMember = FindMember(pstObject, pcKey);
    if (!json_object_is_type(pstMember, json_type_int)) {
        return std::nullopt;
    }
    return json_object_get_int64(pstMember);
}

}  // namespace wap::gateway
