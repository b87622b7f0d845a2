// The one layer over json-c: every function checks its arguments and the JSON type, records what it
// finds wrong in the fault log, and answers with one of the codes below.
//
// Ownership. Constructors make a value, owned by the caller until an adder attaches it to a parent.
// Getters lend: a value or text got from a parent lives as long as that parent. JNI_JSON_ObjPut
// releases a root with all it owns.
//
// Trees have no lock: keep each to one thread.
#ifndef WAP_COMMON_JNI_JSON_WRAP_H
#define WAP_COMMON_JNI_JSON_WRAP_H

#include <json-c/json_object.h>
#include <stdint.h>

#include "common/wap_export.h"

namespace wap {

/// An object could not be made, a text did not parse, or a container refused an element.
inline constexpr uint32_t kJsonErrObject = 0xF7100000;
/// No memory for a string or number.
inline constexpr uint32_t kJsonErrValue = 0xF7100001;
/// The value has the wrong JSON type.
inline constexpr uint32_t kJsonErrType = 0xF7100007;
/// A required argument is null, or a capacity is 0.
inline constexpr uint32_t kJsonErrNull = 0xF7100008;
/// The key is present, but its value is JSON null.
inline constexpr uint32_t kJsonErrNullValue = 0xF7100009;
/// The key is absent.
inline constexpr uint32_t kJsonErrNoKey = 0xF710000C;
/// The text does not fit the caller's buffer.
inline constexpr uint32_t kJsonErrTooLong = 0xF710E009;
/// Memory allocation failed.
inline constexpr uint32_t kErrNoMemory = 0xF7108001;

}  // namespace wap

/**
 * Parses one JSON text.
 * @param pcText   zero-terminated; null is recorded and gives null
 * @param uiStrict 1: json-c's strict mode, which refuses such things as text behind the value;
 *                 else lenient
 * @return the root, owned by the caller; null when the text does not parse or is JSON null
 */
WAP_EXPORT json_object *JSON_Parse(const char *pcText, uint32_t uiStrict);

// ---- typed getters: 0, kJsonErrNull, kJsonErrType; the output is written on success only ----

WAP_EXPORT uint32_t JNI_JSON_ObjGetInt(json_object *pstValue, int32_t *piOut);
/// Gives 0 or 1.
WAP_EXPORT uint32_t JNI_JSON_ObjGetBool(json_object *pstValue, uint32_t *puiOut);
WAP_EXPORT uint32_t JNI_JSON_ObjGetDouble(json_object *pstValue, double *pdOut);
/// Gives the length in bytes, without the zero.
WAP_EXPORT uint32_t JNI_JSON_ObjGetStringLen(json_object *pstValue, uint32_t *puiOut);
/**
 * Copies a string value.
 * @param pcBuf receives the text and its zero
 * @param uiCap size of pcBuf in bytes
 * @return also kJsonErrTooLong when uiCap does not exceed the text's length
 */
WAP_EXPORT uint32_t JNI_JSON_ObjGetString(json_object *pstValue, char *pcBuf, uint32_t uiCap);
WAP_EXPORT uint32_t JNI_JSON_ObjGetArrayLen(json_object *pstArray, uint32_t *puiOut);

// ---- keyed getters: also kJsonErrNoKey ----

/// Lends the value under a key. A JSON null is found, as a null pointer.
WAP_EXPORT uint32_t JNI_JSON_ObjGetValueObj(json_object *pstObj, const char *pcKey,
                                            json_object **ppstOut);
WAP_EXPORT uint32_t JNI_JSON_ObjGetValueInt(json_object *pstObj, const char *pcKey, int32_t *piOut);
WAP_EXPORT uint32_t JNI_JSON_ObjGetValueBool(json_object *pstObj, const char *pcKey,
                                             uint32_t *puiOut);
WAP_EXPORT uint32_t JNI_JSON_ObjGetValueDouble(json_object *pstObj, const char *pcKey,
                                               double *pdOut);
WAP_EXPORT uint32_t JNI_JSON_ObjGetValueStringLen(json_object *pstObj, const char *pcKey,
                                                  uint32_t *puiOut);
/// As JNI_JSON_ObjGetString; kJsonErrNullValue when the key's value is JSON null.
WAP_EXPORT uint32_t JNI_JSON_ObjGetValueString(json_object *pstObj, const char *pcKey, char *pcBuf,
                                               uint32_t uiCap);
/// Plain look-up without a type check: 1 found, 0 not found or an argument is null.
WAP_EXPORT uint32_t JNI_JSON_ObjGetValue(json_object *pstObj, const char *pcKey,
                                         json_object **ppstOut);

// ---- unchecked getters: json-c's own conversions; null is recorded and gives 0 or null ----

/// Lends the value's text; an integer gives its decimal text.
WAP_EXPORT const char *JNI_JSON_ObjGetStringEx(json_object *pstValue);
WAP_EXPORT uint32_t JNI_JSON_ObjGetStringLenEx(json_object *pstValue);
WAP_EXPORT int32_t JNI_JSON_ObjGetIntEx(json_object *pstValue);
WAP_EXPORT uint32_t JNI_JSON_ObjGetBoolEx(json_object *pstValue);

// ---- type tests: 1 or 0, nothing recorded ----

WAP_EXPORT uint32_t JNI_JSON_IsArray(json_object *pstValue);
WAP_EXPORT uint32_t JNI_JSON_IsObj(json_object *pstValue);

// ---- constructors: null on failure; the caller owns the value ----

WAP_EXPORT json_object *JNI_JSON_ObjNewObj(void);
WAP_EXPORT json_object *JNI_JSON_ObjNewArray(void);
WAP_EXPORT json_object *JNI_JSON_ObjNewInt(int32_t iValue);
WAP_EXPORT json_object *JNI_JSON_ObjNewBool(uint32_t uiValue);
WAP_EXPORT json_object *JNI_JSON_ObjNewDouble(double dValue);
/// A null text is recorded and gives null.
WAP_EXPORT json_object *JNI_JSON_ObjNewString(const char *pcText);

// ---- adders: 0, kJsonErrNull, kJsonErrValue, kJsonErrType when the parent is no object,
//      kJsonErrObject when it refuses; a key added again replaces the first ----

/// Attaches a value. On success the object owns it; on failure the caller still does.
WAP_EXPORT uint32_t JNI_JSON_ObjAddKeyValue(json_object *pstObj, const char *pcKey,
                                            json_object *pstValue);
WAP_EXPORT uint32_t JNI_JSON_ObjAddKeyValueString(json_object *pstObj, const char *pcKey,
                                                  const char *pcText);
WAP_EXPORT uint32_t JNI_JSON_ObjAddKeyValueNULL(json_object *pstObj, const char *pcKey);
WAP_EXPORT uint32_t JNI_JSON_ObjAddKeyValueInt(json_object *pstObj, const char *pcKey,
                                               int32_t iValue);
WAP_EXPORT uint32_t JNI_JSON_ObjAddKeyValueBool(json_object *pstObj, const char *pcKey,
                                                uint32_t uiValue);
WAP_EXPORT uint32_t JNI_JSON_ObjAddKeyValueDouble(json_object *pstObj, const char *pcKey,
                                                  double dValue);
/// Adds the integer as a string of its decimal digits.
WAP_EXPORT uint32_t JNI_JSON_ObjAddKeyValueIntToString(json_object *pstObj, const char *pcKey,
                                                       int32_t iValue);
/**
 * Appends an element. On success the array owns it; on failure the caller still does.
 * @return 0; kJsonErrType; kJsonErrObject. A null array or element is recorded and gives 0 all the
 *         same: callers that fill lists go on with the next element.
 */
WAP_EXPORT uint32_t JNI_JSON_ObjArrayAdd(json_object *pstArray, json_object *pstElement);

// ---- life and output ----

/// Releases a root with everything it owns; null is recorded.
WAP_EXPORT void JNI_JSON_ObjPut(json_object *pstValue);
/**
 * Prints a value in json-c's default form, with a blank inside braces and after ':' and ','.
 * @return the text, lent until the value is released; null when the value is null (recorded) or
 *         when memory ran out while printing
 */
WAP_EXPORT const char *JNI_JSON_ObjToJsonString(json_object *pstValue);

#endif
