// Parsing of JSON texts with json-c, where memory may run out and where texts may be secrets.
#ifndef WAP_COMMON_JSON_PARSE_H
#define WAP_COMMON_JSON_PARSE_H

#include <json-c/json_object.h>

#include "common/jni_base.h"
#include "common/owners.h"
#include "common/report.h"

namespace wap {

/// Which texts are JSON.
enum class Grammar { kLenient, kStrict };

/**
 * Parses one JSON text, whole or not at all. Leniently, what stands behind a value is ignored. With
 * a json-c of another version than its headers', a text need not be whole when memory runs out: see
 * ParsePlainly.
 * @param pcText   zero-terminated; null is recorded and gives null
 * @param eSecrecy with kSecret, which is for strict texts, no string value stays behind in what is
 *                 released here. The root is the caller's to wipe, see SecretJson
 * @return the root, owned by the caller; null, recorded, when the text does not parse or is JSON
 *         null, or when memory runs out
 */
json_object *ParseJson(SourceSpot stSpot, const char *pcText, Grammar eGrammar, Secrecy eSecrecy);

/// Overwrites all string values of a tree with zeros; null has none. Member names and numbers stay:
/// json-c has copies of names that it gives to nobody.
void WipeTexts(json_object *pstRoot);

/// A JSON root with secrets among its string values: they are overwritten before it is released.
class SecretJson : public JsonValue {
  public:
    /// Adopts; null is allowed.
    explicit SecretJson(json_object *pstValue) : JsonValue(pstValue) {}
    ~SecretJson() { WipeTexts(Lend()); }
};

}  // namespace wap

#endif
