#include "wan/jni_traffic_mirror.h"

#include <iterator>

#include "common/jni_common.h"
#include "common/report.h"

namespace wap {

namespace {

using enum RuleColumnType;
using enum RuleTextNeed;

constexpr RuleColumn kColumns[] = {
    {"RemoteAddress", WAP_RULE_FIELD(MirrorRuleRec, acRemoteAddress), kText, kMayBeMissing},
    {"RemotePort", WAP_RULE_FIELD(MirrorRuleRec, acRemotePort), kText, kRequired},
    {"Direction", WAP_RULE_FIELD(MirrorRuleRec, acDirection), kText, kRequired},
    {"Protocol", WAP_RULE_FIELD(MirrorRuleRec, acProtocol), kText, kRequired},
    {"HostMAC", WAP_RULE_FIELD(MirrorRuleRec, acHostMac), kText, kMayBeMissing},
    {"MirrorToIP", WAP_RULE_FIELD(MirrorRuleRec, acMirrorToIp), kText, kRequired},
    {"MirrorToPort", WAP_RULE_FIELD(MirrorRuleRec, acMirrorToPort), kNumber, kRequired},
};

void TraceRow(uint32_t uiNumber, const char *const *ppcTexts, uint32_t uiInteger) {
    WAP_TRACE(kTraceEntries, "[%u] %s, %s, %s, %s, %s, %s, %s{%u} \r\n", uiNumber, ppcTexts[0],
              ppcTexts[1], ppcTexts[2], ppcTexts[3], ppcTexts[4], ppcTexts[5], ppcTexts[6],
              uiInteger);
}

constexpr RuleKind kMirrorRules = {
    .stAdd = {"gulm", 354, kRpcAddMirrorRule},
    .stDelete = {"gulm", 354, kRpcDelMirrorRule},
    .stList = {"gulm", 354, kRpcGetMirrorRules},
    .pstColumns = kColumns,
    .uiColumns = std::size(kColumns),
    .uiRecordSize = sizeof(MirrorRuleRec),
    .eNumber = RuleNumber::kNowhere,
    .uiTextPerRow = 768,
    .pfnTrace = TraceRow,
};
static_assert(IsSound(kMirrorRules));

}  // namespace

uint32_t AddMirrorRule(const MirrorRuleTexts &stTexts) {
    const CollectorPort stPort(stTexts.iMirrorToPort);
    const char *const apcTexts[] = {
        stTexts.pcRemoteAddress, stTexts.pcRemotePort, stTexts.pcDirection, stTexts.pcProtocol,
        stTexts.pcHostMac,       stTexts.pcMirrorToIp, stPort.Lend()};
    return AddRule(kMirrorRules, apcTexts);
}

uint32_t DeleteMirrorRule(uint32_t uiRuleInst) {
    return DeleteRule(kMirrorRules, uiRuleInst);
}

uint32_t ListMirrorRules(char **ppcText) {
    return ListRules(kMirrorRules, ppcText);
}

}  // namespace wap
