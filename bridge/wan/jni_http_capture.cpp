#include "wan/jni_http_capture.h"

#include <iterator>

#include "common/jni_common.h"
#include "common/report.h"

namespace wap {

namespace {

using enum RuleColumnType;
using enum RuleTextNeed;
using Record = HttpProcessRuleRec;

constexpr RuleColumn kColumns[] = {
    {"RemoteAddress", WAP_RULE_FIELD(Record, acRemoteAddress), kText, kMayBeMissing},
    {"RemotePort", WAP_RULE_FIELD(Record, acRemotePort), kText, kRequired},
    {"Direction", WAP_RULE_FIELD(Record, acDirection), kText, kRequired},
    {"HostMAC", WAP_RULE_FIELD(Record, acHostMac), kText, kMayBeMissing},
    // One element each, deliberately: bundles take the text apart themselves.
    {"MethodList", WAP_RULE_FIELD(Record, acMethods), kTextInList, kMayBeMissing},
    {"StatuscodeList", WAP_RULE_FIELD(Record, acStatusCodes), kTextInList, kMayBeMissing},
    {"HeaderList", WAP_RULE_FIELD(Record, acHeaders), kTextInList, kMayBeMissing},
};
static_assert(sizeof(HttpRuleTexts::acMethods) == sizeof(Record::acMethods));
static_assert(sizeof(HttpRuleTexts::acStatusCodes) == sizeof(Record::acStatusCodes));
static_assert(sizeof(HttpRuleTexts::acHeaders) == sizeof(Record::acHeaders));

void TraceRow(uint32_t uiNumber, const char *const *ppcTexts, uint32_t) {
    WAP_TRACE(kTraceEntries, "<%u> %s, %s, %s, %s, %s, %s, %s\r\n", uiNumber, ppcTexts[0],
              ppcTexts[1], ppcTexts[2], ppcTexts[3], ppcTexts[4], ppcTexts[5], ppcTexts[6]);
}

constexpr RuleKind kHttpRules = {
    .stAdd = {"gulm", 352, kRpcAddHttpRule},
    .stDelete = {"gulm", 352, kRpcDelHttpRule},
    .stList = {"gulm", 352, kRpcGetHttpRules},
    .pstColumns = kColumns,
    .uiColumns = std::size(kColumns),
    .uiRecordSize = sizeof(Record),
    .eNumber = RuleNumber::kBeforeIt,
    .uiTextPerRow = 1280,
    .pfnTrace = TraceRow,
};
static_assert(IsSound(kHttpRules));

/// Hands the texts of a rule, in the order of the columns, to one of the functions for all kinds.
uint32_t WithTexts(const HttpRuleTexts &stTexts,
                   uint32_t (*pfnUse)(const RuleKind &, const char *const *)) {
    // Any number fits.
    char acPort[sizeof(Record::acRemotePort)] = {};
    (void)VT_OS_Int32ToStr_S(stTexts.iRemotePort, acPort, sizeof(acPort));
    const char *const apcTexts[] = {stTexts.pcRemoteAddress, acPort,
                                    stTexts.pcDirection,     stTexts.pcHostMac,
                                    stTexts.acMethods,       stTexts.acStatusCodes,
                                    stTexts.acHeaders};
    return pfnUse(kHttpRules, apcTexts);
}

}  // namespace

uint32_t CheckHttpRule(const HttpRuleTexts &stTexts) {
    return WithTexts(stTexts, CheckRuleTexts);
}

uint32_t AddHttpRule(const HttpRuleTexts &stTexts) {
    return WithTexts(stTexts, AddRule);
}

uint32_t DeleteHttpRule(uint32_t uiRuleInst) {
    // No reply, unlike with the other kinds.
    return ZeroOrFailed(WAP_SPOT, Tell(kHttpRules.stDelete, DelRuleRequest{uiRuleInst}),
                        uiRuleInst);
}

uint32_t ListHttpRules(char **ppcText) {
    return ListRules(kHttpRules, ppcText);
}

}  // namespace wap
