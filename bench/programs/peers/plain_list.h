/* Plain code over json-c that lists forward rules as the bridge does. */
#ifndef WAP_BENCH_PEERS_PLAIN_LIST_H
#define WAP_BENCH_PEERS_PLAIN_LIST_H

#include <json-c/json_object.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/** Makes the answer of a table of rule records, released with json_object_put by the caller. */
json_object *BENCH_MakeRuleList(const char *pcTable, uint32_t uiRules);

#ifdef __cplusplus
}
#endif
#endif
