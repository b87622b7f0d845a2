// Requests and replies about the rules that pick out traffic, as they travel: rules that copy it to
// a collector, rules that divert it to one, and rules that look into HTTP.
#ifndef WAP_RECORDS_TRAFFIC_RULES_H
#define WAP_RECORDS_TRAFFIC_RULES_H

#include <stddef.h>
#include <stdint.h>
#include <vt_ssp_basic.h>

namespace wap {

// RPC ids served by "gulm". The listings are asked with the word 0.
/// @request MirrorRuleRec
inline constexpr uint32_t kRpcAddMirrorRule = 0x48304191;
inline constexpr uint32_t kRpcDelMirrorRule = 0x48304192;
/// @block MirrorRuleRec[]
inline constexpr uint32_t kRpcGetMirrorRules = 0x48304193;
/// @request ForwardRuleRec
inline constexpr uint32_t kRpcAddForwardRule = 0x48304195;
inline constexpr uint32_t kRpcDelForwardRule = 0x48304196;
/// @block ForwardRuleRec[]
inline constexpr uint32_t kRpcGetForwardRules = 0x48304197;
/// @request HttpProcessRuleRec
inline constexpr uint32_t kRpcAddHttpRule = 0x48304198;
inline constexpr uint32_t kRpcDelHttpRule = 0x48304199;
/// @block HttpRuleRow[]
inline constexpr uint32_t kRpcGetHttpRules = 0x4830419A;

/// The rule number that deletes all rules of a kind.
inline constexpr uint32_t kAllRules = 0xFFFFFFFF;

#pragma pack(push, 1)

/// Request of kRpcAddMirrorRule, and a row of the table of mirror rules. Texts should end with a
/// zero; read them as if they might not.
struct MirrorRuleRec {
    char acRemoteAddress[256];  ///< empty for any
    char acRemotePort[12];
    char acDirection[5];
    char acProtocol[4];
    char acHostMac[18];  ///< empty for any
    char acMirrorToIp[40];
    char acMirrorToPort[12];  ///< decimal
};
static_assert(offsetof(MirrorRuleRec, acRemoteAddress) == 0);
static_assert(offsetof(MirrorRuleRec, acRemotePort) == 256);
static_assert(offsetof(MirrorRuleRec, acDirection) == 268);
static_assert(offsetof(MirrorRuleRec, acProtocol) == 273);
static_assert(offsetof(MirrorRuleRec, acHostMac) == 277);
static_assert(offsetof(MirrorRuleRec, acMirrorToIp) == 295);
static_assert(offsetof(MirrorRuleRec, acMirrorToPort) == 335);
static_assert(sizeof(MirrorRuleRec) == 347);

/// Request of kRpcAddForwardRule, and a row of the table of forward rules. There is no direction.
struct ForwardRuleRec {
    char acRemoteAddress[256];  ///< empty for any
    char acRemotePort[12];
    char acProtocol[4];
    char acHostMac[18];  ///< empty for any
    char acForwardToIp[40];
    char acForwardToPort[12];  ///< decimal
};
static_assert(offsetof(ForwardRuleRec, acRemoteAddress) == 0);
static_assert(offsetof(ForwardRuleRec, acRemotePort) == 256);
static_assert(offsetof(ForwardRuleRec, acProtocol) == 268);
static_assert(offsetof(ForwardRuleRec, acHostMac) == 272);
static_assert(offsetof(ForwardRuleRec, acForwardToIp) == 290);
static_assert(offsetof(ForwardRuleRec, acForwardToPort) == 330);
static_assert(sizeof(ForwardRuleRec) == 342);

/// Request of kRpcAddHttpRule.
struct HttpProcessRuleRec {
    char acRemoteAddress[256];  ///< empty for any
    char acRemotePort[12];      ///< decimal
    char acDirection[5];
    char acHostMac[18];       ///< empty for any
    char acMethods[64];       ///< with commas between them, like the next two
    char acStatusCodes[256];  ///< of the replies
    char acHeaders[256];
    uint8_t aucUnused[52];
};
static_assert(offsetof(HttpProcessRuleRec, acRemoteAddress) == 0);
static_assert(offsetof(HttpProcessRuleRec, acRemotePort) == 256);
static_assert(offsetof(HttpProcessRuleRec, acDirection) == 268);
static_assert(offsetof(HttpProcessRuleRec, acHostMac) == 273);
static_assert(offsetof(HttpProcessRuleRec, acMethods) == 291);
static_assert(offsetof(HttpProcessRuleRec, acStatusCodes) == 355);
static_assert(offsetof(HttpProcessRuleRec, acHeaders) == 611);
static_assert(offsetof(HttpProcessRuleRec, aucUnused) == 867);
static_assert(sizeof(HttpProcessRuleRec) == 919);

/// A row of the table of HTTP rules. Rows follow each other without gaps, so that most of them are
/// not on a word boundary.
struct HttpRuleRow {
    uint32_t uiRuleInst;
    HttpProcessRuleRec stRule;
};
static_assert(offsetof(HttpRuleRow, uiRuleInst) == 0);
static_assert(offsetof(HttpRuleRow, stRule) == 4);
static_assert(sizeof(HttpRuleRow) == 923);

/// Reply of the three additions: the number of the new rule. Reply of the deletions of mirror and
/// forward rules: a word of the service's own. The deletion of HTTP rules has an empty reply.
struct RuleWordReply {
    uint32_t uiWord;
};
static_assert(sizeof(RuleWordReply) == 4);

/// Request of the three deletions.
struct DelRuleRequest {
    uint32_t uiRuleInst;  ///< or kAllRules
};
static_assert(sizeof(DelRuleRequest) == 4);

/// Reply of the three listings: the number of rules, and the bulk block that holds as many rows.
struct RuleTableReply {
    uint32_t uiCount;
    VDataDesc stDesc;
};
static_assert(offsetof(RuleTableReply, uiCount) == 0);
static_assert(offsetof(RuleTableReply, stDesc) == 4);
static_assert(sizeof(RuleTableReply) == 16);

#pragma pack(pop)

}  // namespace wap

#endif
