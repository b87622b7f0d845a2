#include "wan/jni_traffic_forward.h"

#include <iterator>

#include "common/jni_common.h"
#include "common/report.h"

namespace wap {

namespace {

using enum RuleColumnType;
using enum RuleTextNeed;

constexpr RuleColumn kColumns[] = {
    {"RemoteAddress", WAP_RULE_FIELD(ForwardRuleRec, acRemoteAddress), kText, kMayBeMissing},
    {"RemotePort", WAP_RULE_FIELD(ForwardRuleRec, acRemotePort), kText, kRequired},
    {"Protocol", WAP_RULE_FIELD(ForwardRuleRec, acProtocol), kText, kRequired},
    {"HostMAC", WAP_RULE_FIELD(ForwardRuleRec, acHostMac), kText, kMayBeMissing},
    {"ForwardToIP", WAP_RULE_FIELD(ForwardRuleRec, acForwardToIp), kText, kMayBeMissing},
    {"ForwardToPort", WAP_RULE_FIELD(ForwardRuleRec, acForwardToPort), kNumber, kRequired},
};

void TraceRow(uint32_t uiNumber, const char *const *ppcTexts, uint32_t uiInteger) {
    // No blank before the line's end, unlike with the mirror rules.
    WAP_TRACE(kTraceEntries, "[%u] %s, %s, %s, %s, %s, %s{%u}\r\n", uiNumber, ppcTexts[0],
              ppcTexts[1], ppcTexts[2], ppcTexts[3], ppcTexts[4], ppcTexts[5], uiInteger);
}

constexpr RuleKind kForwardRules = {
    .stAdd = {"gulm", 351, kRpcAddForwardRule},
    .stDelete = {"gulm", 351, kRpcDelForwardRule},
    .stList = {"gulm", 351, kRpcGetForwardRules},
    .pstColumns = kColumns,
    .uiColumns = std::size(kColumns),
    .uiRecordSize = sizeof(ForwardRuleRec),
    .eNumber = RuleNumber::kNowhere,
    .uiTextPerRow = 512,
    .pfnTrace = TraceRow,
};
static_assert(IsSound(kForwardRules));

}  // namespace

uint32_t AddForwardRule(const ForwardRuleTexts &stTexts) {
    const CollectorPort stPort(stTexts.iForwardToPort);
    const char *const apcTexts[] = {stTexts.pcRemoteAddress, stTexts.pcRemotePort,
                                    stTexts.pcProtocol,      stTexts.pcHostMac,
                                    stTexts.pcForwardToIp,   stPort.Lend()};
    return AddRule(kForwardRules, apcTexts);
}

uint32_t DeleteForwardRule(uint32_t uiRuleInst) {
    return DeleteRule(kForwardRules, uiRuleInst);
}

uint32_t ListForwardRules(char **ppcText) {
    return ListRules(kForwardRules, ppcText);
}

}  // namespace wap
