// Workers of the mirror service: rules by which the gateway copies traffic to a collector.
#ifndef WAP_WAN_JNI_TRAFFIC_MIRROR_H
#define WAP_WAN_JNI_TRAFFIC_MIRROR_H

#include <stdint.h>

#include "wan/traffic_rules.h"

namespace wap {

/// A rule as it is asked for. Its texts must fit their fields, and those that may not be missing
/// be neither null nor empty.
struct MirrorRuleTexts {
    const char *pcRemoteAddress;  ///< may be missing
    const char *pcRemotePort;
    const char *pcDirection;
    const char *pcProtocol;
    const char *pcHostMac;  ///< may be missing
    const char *pcMirrorToIp;
    int32_t iMirrorToPort;  ///< at most five characters as a decimal text
};

/// Adds a rule. Its number; kErrFailed, recorded, when a text does not pass or the request fails.
uint32_t AddMirrorRule(const MirrorRuleTexts &stTexts);
/// Deletes a rule, or all with kAllRules. The reply's word, or kErrFailed, recorded.
uint32_t DeleteMirrorRule(uint32_t uiRuleInst);
/// Lists the rules. Results as ListRules.
uint32_t ListMirrorRules(char **ppcText);

}  // namespace wap

#endif
