// JSON values with an owner, and the few operations on them that the gateway's programs share.
#ifndef WAP_GATEWAY_FRAMEWORK_JSON_VALUE_H
#define WAP_GATEWAY_FRAMEWORK_JSON_VALUE_H

#include <json-c/json.h>
#include <stdint.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace wap::gateway {

struct JsonRelease {
    void operator()(json_object *pstValue) const { json_object_put(pstValue); }
};

/// Owns one reference to a JSON value.
using JsonValue = std::unique_ptr<json_object, JsonRelease>;

/// Takes over a value that json-c was asked to make. Throws std::bad_alloc for null.
JsonValue Checked(json_object *pstValue);

/// Parses a whole text, strictly. Throws GatewayError that names pcWhat and the place.
JsonValue ParseJson(std::string_view pcText, const std::string &acWhat);

/// Prints a value on one line, or indented over several.
std::string PrintJson(json_object *pstValue, bool bIndented);

/// A new empty object. Throws std::bad_alloc.
JsonValue MakeObject();

/// A new empty array. Throws std::bad_alloc.
JsonValue MakeArray();

/// Appends an element to an array.
void Append(json_object *pstArray, JsonValue stValue);

/// The elements of an array, borrowed; none for anything else.
std::vector<json_object *> Elements(json_object *pstArray);

/// A copy of its own of a value.
JsonValue Copy(json_object *pstValue);

/// Puts a member into an object, in place of one of the same name.
void PutMember(json_object *pstObject, const char *pcKey, JsonValue stValue);
void PutText(json_object *pstObject, const char *pcKey, std::string_view pcText);
void PutNumber(json_object *pstObject, const char *pcKey, int64_t iNumber);
void PutBool(json_object *pstObject, const char *pcKey, bool bValue);

/// The member of that name, borrowed; null when there is none or pstObject is no object.
json_object *FindMember(json_object *pstObject, const char *pcKey);

/// The names of an object's members, for messages: "a, b, c".
std::string NamesIn(json_object *pstObject);

/// A text or a whole number from an object; nothing when it is missing or of another type.
std::optional<std::string> GetText(json_object *pstObject, const char *pcKey);
std::optional<int64_t> GetNumber(json_object *pstObject, const char *pcKey);

}  // namespace wap::gateway

#endif
