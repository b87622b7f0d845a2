// gulm's rules that pick out traffic: to copy it, to divert it, and to look into HTTP.
#include "framework/bulk.h"
#include "processes/processes.h"
#include "records/traffic_rules.h"

namespace wap::gateway {

namespace {

/// Of each kind.
constexpr size_t kRulesMax = 1024;

/// A text of a rule: where its record has it, and what the home calls it.
struct Column {
    const char *pcKey;
    size_t uiOffset;
    size_t uiSize;
    bool bRequired = false;
};

/// A kind of rules.
struct RuleKind {
    const char *pcSection;
    size_t uiRecord;  ///< size of a record
    bool bNumbered;   ///< rows of the table begin with the rule's number
    bool bTellsRest;  ///< a deletion is answered with the number of rules that are left
    uint32_t uiAddRpc;
    uint32_t uiDelRpc;
    uint32_t uiGetRpc;
    std::array<Column, 7> astColumns;  ///< those without a key are none
};

#define WAP_COLUMN(Record, acField, pcKey, ...) \
    { pcKey, offsetof(Record, acField), sizeof(Record::acField), ##__VA_ARGS__ }

constexpr RuleKind kMirror = {"mirrorRules",
                              sizeof(MirrorRuleRec),
                              false,
                              true,
                              kRpcAddMirrorRule,
                              kRpcDelMirrorRule,
                              kRpcGetMirrorRules,
                              {{WAP_COLUMN(MirrorRuleRec, acRemoteAddress, "remoteAddress"),
                                WAP_COLUMN(MirrorRuleRec, acRemotePort, "remotePort", true),
                                WAP_COLUMN(MirrorRuleRec, acDirection, "direction", true),
                                WAP_COLUMN(MirrorRuleRec, acProtocol, "protocol", true),
                                WAP_COLUMN(MirrorRuleRec, acHostMac, "hostMac"),
                                WAP_COLUMN(MirrorRuleRec, acMirrorToIp, "toIp", true),
                                WAP_COLUMN(MirrorRuleRec, acMirrorToPort, "toPort", true)}}};
constexpr RuleKind kForward = {"forwardRules",
                               sizeof(ForwardRuleRec),
                               false,
                               true,
                               kRpcAddForwardRule,
                               kRpcDelForwardRule,
                               kRpcGetForwardRules,
                               {{WAP_COLUMN(ForwardRuleRec, acRemoteAddress, "remoteAddress"),
                                 WAP_COLUMN(ForwardRuleRec, acRemotePort, "remotePort", true),
                                 WAP_COLUMN(ForwardRuleRec, acProtocol, "protocol", true),
                                 WAP_COLUMN(ForwardRuleRec, acHostMac, "hostMac"),
                                 WAP_COLUMN(ForwardRuleRec, acForwardToIp, "toIp"),
                                 WAP_COLUMN(ForwardRuleRec, acForwardToPort, "toPort", true)}}};
constexpr RuleKind kHttp = {"httpRules",
                            sizeof(HttpProcessRuleRec),
                            true,
                            false,
                            kRpcAddHttpRule,
                            kRpcDelHttpRule,
                            kRpcGetHttpRules,
                            {{WAP_COLUMN(HttpProcessRuleRec, acRemoteAddress, "remoteAddress"),
                              WAP_COLUMN(HttpProcessRuleRec, acRemotePort, "remotePort", true),
                              WAP_COLUMN(HttpProcessRuleRec, acDirection, "direction", true),
                              WAP_COLUMN(HttpProcessRuleRec, acHostMac, "hostMac"),
                              WAP_COLUMN(HttpProcessRuleRec, acMethods, "methods"),
                              WAP_COLUMN(HttpProcessRuleRec, acStatusCodes, "statusCodes"),
                              WAP_COLUMN(HttpProcessRuleRec, acHeaders, "headers")}}};
#undef WAP_COLUMN

void ReplyWord(std::string &acReply, size_t uiWord) {
    const RuleWordReply stReply = {static_cast<uint32_t>(uiWord)};
    acReply.assign(reinterpret_cast<const char *>(&stReply), sizeof(stReply));
}

template <const RuleKind &kKind>
uint32_t AddRule(HandlerContext &stContext, std::string_view pcRequest, std::string &acReply) {
    if (pcRequest.size() != kKind.uiRecord) {
        return VT_HOST_ERR_ARGUMENT;
    }
    JsonValue stRule = MakeObject();
    for (const Column &stColumn : kKind.astColumns) {
        if (stColumn.pcKey == nullptr) {
            break;
        }
        const std::string_view pcField = pcRequest.substr(stColumn.uiOffset, stColumn.uiSize);
        const std::string_view pcText = pcField.substr(0, pcField.find('\0'));
        if (stColumn.bRequired && pcText.empty()) {
            return kRefused;
        }
        PutText(stRule.get(), stColumn.pcKey, pcText);
    }
    HomeChange stChange(stContext.stHome);
    json_object *pstRules = stChange.At(kKind.pcSection);
    if (json_object_array_length(pstRules) >= kRulesMax) {
        return kTableFull;
    }
    const uint32_t uiNumber = FreeNumber(pstRules, "number");
    PutNumber(stRule.get(), "number", uiNumber);
    Append(pstRules, std::move(stRule));
    stChange.Commit();
    ReplyWord(acReply, uiNumber);
    return 0;
}

template <const RuleKind &kKind>
uint32_t DelRule(HandlerContext &stContext, std::string_view pcRequest, std::string &acReply) {
    DelRuleRequest stRequest = {};
    if (pcRequest.size() != sizeof(stRequest)) {
        return VT_HOST_ERR_ARGUMENT;
    }
    memcpy(&stRequest, pcRequest.data(), sizeof(stRequest));
    HomeChange stChange(stContext.stHome);
    json_object *pstRules = stChange.At(kKind.pcSection);
    if (stRequest.uiRuleInst == kAllRules) {
        json_object_array_del_idx(pstRules, 0, json_object_array_length(pstRules));
    } else {
        json_object *pstRule = FindNumber(pstRules, "number", stRequest.uiRuleInst);
        if (pstRule == nullptr) {
            return kRefused;
        }
        TakeOut(pstRules, pstRule);
    }
    if (kKind.bTellsRest) {
        ReplyWord(acReply, json_object_array_length(pstRules));
    }
    stChange.Commit();
    return 0;
}

std::string RowOf(const RuleKind &stKind, json_object *pstRule) {
    std::string acRow(stKind.uiRecord, '\0');
    for (const Column &stColumn : stKind.astColumns) {
        if (stColumn.pcKey != nullptr) {
            PutField(&acRow[stColumn.uiOffset], stColumn.uiSize, TextOf(pstRule, stColumn.pcKey));
        }
    }
    if (stKind.bNumbered) {
        const uint32_t uiNumber = NumberOf(pstRule, "number");
        acRow.insert(0, reinterpret_cast<const char *>(&uiNumber), sizeof(uiNumber));
    }
    return acRow;
}

template <const RuleKind &kKind>
uint32_t GetRules(HandlerContext &stContext, const Word &, RuleTableReply &stReply) {
    std::string acTable;
    {
        const HomeReader stHome(stContext.stHome);
        for (json_object *pstRule : Elements(stHome.At(kKind.pcSection))) {
            acTable += RowOf(kKind, pstRule);
            ++stReply.uiCount;
        }
    }
    if (!acTable.empty()) {
        stReply.stDesc = PublishBlock(acTable);
    }
    return 0;
}

template <const RuleKind &kKind>
void AddKind(RpcTable &stTable) {
    stTable.AddBytes(kKind.uiAddRpc, AddRule<kKind>);
    stTable.AddBytes(kKind.uiDelRpc, DelRule<kKind>);
    stTable.Add(kKind.uiGetRpc, GetRules<kKind>);
}

}  // namespace

void AddTrafficRuleRpcs(RpcTable &stTable) {
    AddKind<kMirror>(stTable);
    AddKind<kForward>(stTable);
    AddKind<kHttp>(stTable);
}

}  // namespace wap::gateway
