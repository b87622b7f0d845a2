// Parsing with nothing but what json-c documents, for a json-c of another version than the headers
// that this library was built with: where a tokener keeps what is not known then.
#ifndef WAP_COMMON_JSON_PLAIN_H
#define WAP_COMMON_JSON_PLAIN_H

#include <json-c/json_tokener.h>

#include "common/jni_base.h"

namespace wap {

/**
 * Parses one JSON text as json-c does it by itself: what json-c loses for lack of memory may be
 * missing, or crash.
 * @param pstTokener fresh, with its flags; strict ones for secrets
 * @param eSecrecy   with kSecret no string value stays behind in the tokener or in what is released
 *                   here, unless memory runs out or another member of the same name replaces it
 * @return the root, owned by the caller; null when the text does not parse or is JSON null
 */
json_object *ParsePlainly(json_tokener *pstTokener, const char *pcText, Secrecy eSecrecy);

}  // namespace wap

#endif
