#ifndef WAP_COMMON_JSON_PRINT_H
#define WAP_COMMON_JSON_PRINT_H

#include <json-c/json_object.h>
#include <stddef.h>

namespace wap {

/**
 * The length in bytes that a value has when json-c prints it whole in its default form. json-c goes
 * on when memory runs out while it prints, and leaves pieces out; the length tells.
 * @param pstValue a value; null is JSON null
 */
size_t SpacedLength(json_object *pstValue);

}  // namespace wap

#endif
