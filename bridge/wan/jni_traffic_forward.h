// Workers of the forward service: rules by which the gateway diverts traffic to a collector.
#ifndef WAP_WAN_JNI_TRAFFIC_FORWARD_H
#define WAP_WAN_JNI_TRAFFIC_FORWARD_H

#include <stdint.h>

#include "wan/traffic_rules.h"

namespace wap {

/// A rule as it is asked for. Its texts must fit their fields, and those that may not be missing
/// be neither null nor empty.
struct ForwardRuleTexts {
    const char *pcRemoteAddress;  ///< may be missing
    const char *pcRemotePort;
    const char *pcProtocol;
    const char *pcHostMac;      ///< may be missing
    const char *pcForwardToIp;  ///< may be missing, unlike a mirror rule's
    int32_t iForwardToPort;     ///< at most five characters as a decimal text
};

/// Adds a rule. Its number; kErrFailed, recorded, when a text does not pass or the request fails.
uint32_t AddForwardRule(const ForwardRuleTexts &stTexts);
/// Deletes a rule, or all with kAllRules. The reply's word, or kErrFailed, recorded.
uint32_t DeleteForwardRule(uint32_t uiRuleInst);
/// Lists the rules. Results as ListRules.
uint32_t ListForwardRules(char **ppcText);

}  // namespace wap

#endif
