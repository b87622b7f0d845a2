// Workers of the service that looks into HTTP: rules by which the gateway picks out requests by
// their method and headers and by the status of their replies.
#ifndef WAP_WAN_JNI_HTTP_CAPTURE_H
#define WAP_WAN_JNI_HTTP_CAPTURE_H

#include <stdint.h>

#include "wan/traffic_rules.h"

namespace wap {

/// What stands between the texts of a list.
inline constexpr char kHttpListSeparator[] = ",";

/// A rule as it is asked for. Its texts must fit their fields.
struct HttpRuleTexts {
    const char *pcRemoteAddress;  ///< may be missing
    int32_t iRemotePort;
    const char *pcDirection;  ///< neither null nor empty
    const char *pcHostMac;    ///< may be missing
    // Lists as one text each, of the sizes of their fields; empty at first.
    char acMethods[64] = {};
    char acStatusCodes[256] = {};
    char acHeaders[256] = {};
};

/// Checks the texts that are given one by one, before there are lists. 0, or kErrFailed, recorded.
uint32_t CheckHttpRule(const HttpRuleTexts &stTexts);
/// Adds a rule. Its number; kErrFailed, recorded, when a text does not pass or the request fails.
uint32_t AddHttpRule(const HttpRuleTexts &stTexts);
/// Deletes a rule, or all with kAllRules. 0, or kErrFailed, recorded.
uint32_t DeleteHttpRule(uint32_t uiRuleInst);
/// Lists the rules. Results as ListRules.
uint32_t ListHttpRules(char **ppcText);

}  // namespace wap

#endif
