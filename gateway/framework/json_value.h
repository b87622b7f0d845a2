// JSON values with an owner, and the few operations on them that the gateway's programs share.
#ifndef WAP_GATEWAY_FRAMEWORK_JSON_VALUE_H
#define WAP_GATEWAY_FRAMEWORK_JSON_VALUE_H

#include <json-c/json.h>
#include <stdint.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace wap::gateway {

struct JsonRelease {
    void operator()(json_object *pstValue) const { json_object_put(pstValue); }
};

/// Owns one reference to a JSON value.
using JsonValue = std::unique_ptr<json_object, JsonRelease>;

/// Parses a whole text, strictly. Throws GatewayError that names pcWhat and the place.
JsonValue ParseJson(std::string_view pcText, const std::string &acWhat);

/// Prints a value on one line, or indented over several.
std::string PrintJson(json_object *pstValue, bool bIndented);

/// A new empty object. Throws std::bad_alloc.
JsonValue MakeObject();

/// Puts a member into an object, in place of one of the same name.
void PutMember(json_object *pstObject, const char *pcKey, JsonValue stValue);
void PutText(json_object *pstObject, const char *pcKey, std::string_view pcText);
void PutNumber(json_object *pstObject, const char *pcKey, int64_t iNumber);

/// The member of that name, borrowed; null when there is none or pstObject is no object.
json_object *FindMember(json_object *pstObject, const char *pcKey);

/// A text or a whole number from an object; nothing when it is missing or of another type.
std::optional<std::string> GetText(json_object *pstObject, const char *pcKey);
std::optional<int64_t> GetNumber(json_object *pstObject, const char *pcKey);

}  // namespace wap::gateway

#endif
