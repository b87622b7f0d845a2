#include "wan/jni_traffic_qos_srv.h"

#include <vt_ssp_basic.h>

#include "common/bulk_text.h"
#include "common/fields.h"
#include "common/jni_common.h"
#include "common/list_answer.h"
#include "common/owners.h"
#include "common/report.h"
#include "common/requests.h"
#include "records/traffic_flow.h"

namespace wap {

namespace {

constexpr GeneralRoute kAddTraffic = {"gulm", 353, kRpcAddFlowTraffic};
constexpr GeneralRoute kDeleteTraffic = {"gulm", 353, kRpcDelFlowTraffic};
constexpr GeneralRoute kDeleteAll = {"gulm", 353, kRpcDelAllFlowTraffic};
constexpr GeneralRoute kAskMembers = {"gulm", 353, kRpcGetFlowMembers};
constexpr GeneralRoute kAskStats = {"gulm", 353, kRpcGetFlowStats};
constexpr GeneralRoute kAskSpeed = {"gulm", 353, kRpcGetFlowSpeed};
constexpr GeneralRoute kAskSpeedLimit = {"gulm", 353, kRpcGetFlowSpeedLimit};
constexpr GeneralRoute kSetSpeedLimit = {"gulm", 353, kRpcSetFlowSpeedLimit};
constexpr GeneralRoute kAskDscp = {"gulm", 353, kRpcGetFlowDscp};
constexpr GeneralRoute kSetDscp = {"gulm", 353, kRpcSetFlowDscp};

/// What each member, and the object around them, may take up in the list's text.
constexpr uint32_t kTextPerMember = 297;
constexpr uint32_t kRowSize = sizeof(FlowTrafficRec);
// No table is longer than the longest bulk block, and a member's room is hardly more than its row.
// So the list's room needs no limit of its own, unlike those of the rules about traffic.
static_assert(uint64_t{kTextPerMember} * (kBlockMax / kRowSize + 1) <= UINT32_MAX);
constexpr uint32_t kErrNoList = 1;

/// Sends a member that a change is about.
uint32_t ChangeTraffic(SourceSpot stSpot, const GeneralRoute &stRoute, const char *pcAddress,
                       const char *pcPort, uint32_t uiFlow) {
    if (pcPort == nullptr) {
        return ZeroOrFailed(stSpot, kErrNullArgument, uiFlow);
    }
    FlowTrafficRec stMember = {};
    // A part of an address, a port or a number would name other traffic.
    if (!PutWholeField(stMember.acAddress, pcAddress) || !PutWholeField(stMember.acPort, pcPort) ||
        VT_OS_Int32ToStr_S(static_cast<int32_t>(uiFlow), stMember.acFlow,
                           sizeof(stMember.acFlow)) != 0) {
        return ZeroOrFailed(stSpot, kErrTooLong, uiFlow,
                            pcAddress == nullptr ? 0 : VT_OS_StrLen(pcAddress),
                            VT_OS_StrLen(pcPort));
    }
    return ZeroOrFailed(stSpot, Tell(stRoute, stMember), uiFlow);
}

/// Asks about a flow.
template <class Reply>
uint32_t AskAbout(SourceSpot stSpot, const GeneralRoute &stRoute, uint32_t uiFlow, Reply &stReply) {
    return Recorded(stSpot, Ask(stRoute, FlowReq{uiFlow}, stReply), uiFlow);
}

/// Asks for two speeds and tells them under two keys.
uint32_t TellSpeeds(SourceSpot stSpot, const GeneralRoute &stRoute, const char *pcUpKey,
                    const char *pcDownKey, uint32_t uiFlow, FlowAnswer &stAnswer) {
    FlowSpeed stSpeed = {};
    const uint32_t uiResult = AskAbout(stSpot, stRoute, uiFlow, stSpeed);
    if (uiResult == 0) {
        (void)VT_OS_Snprintf_S(stAnswer.acText, sizeof(stAnswer.acText),
                               sizeof(stAnswer.acText) - 1, "{\"Result\":%d,\"%s\":%d,\"%s\":%d}",
                               0, pcUpKey, stSpeed.iUp, pcDownKey, stSpeed.iDown);
    }
    return uiResult;
}

/// Fetches the table of a flow's members, at least one; uiCount becomes how many the table holds.
uint32_t FetchMembers(uint32_t uiFlow, BulkBlock &stTable, uint32_t &uiCount) {
    FlowMembersReply stReply = {};
    uint32_t uiResult = AskAbout(WAP_SPOT, kAskMembers, uiFlow, stReply);
    if (uiResult != 0) {
        return uiResult;
    }
    if (stReply.uiCount == 0) {
        FreeUnread(stReply.stTable.uiDataID);
        // A flow without members is, deliberately: Java's side knows no empty list.
        return Recorded(WAP_SPOT, kErrFailed, uiFlow);
    }
    TraceDesc(WAP_SPOT, stReply.stTable);
    uiResult = stTable.Make(stReply.stTable);
    // The count is the process's word; the rows end with the block. One that says more is cut to
    // them, deliberately without a fault.
    const uint32_t uiRows = stTable.Length() / kRowSize;
    uiCount = stReply.uiCount < uiRows ? stReply.uiCount : uiRows;
    return Recorded(WAP_SPOT, uiResult, uiFlow, stReply.uiCount);
}

}  // namespace

uint32_t AddFlowTraffic(const char *pcAddress, const char *pcPort, uint32_t uiFlow) {
    return ChangeTraffic(WAP_SPOT, kAddTraffic, pcAddress, pcPort, uiFlow);
}

uint32_t DeleteFlowTraffic(const char *pcAddress, const char *pcPort, uint32_t uiFlow) {
    return ChangeTraffic(WAP_SPOT, kDeleteTraffic, pcAddress, pcPort, uiFlow);
}

uint32_t DeleteAllFlowTraffic(uint32_t uiFlow) {
    return ZeroOrFailed(WAP_SPOT, Tell(kDeleteAll, FlowReq{uiFlow}), uiFlow);
}

uint32_t SetFlowSpeedLimit(uint32_t uiFlow, int32_t iUp, int32_t iDown) {
    const FlowSpeedLimitReq stRequest = {uiFlow, {iUp, iDown}};
    return ZeroOrFailed(WAP_SPOT, Tell(kSetSpeedLimit, stRequest), uiFlow,
                        static_cast<uint32_t>(iUp), static_cast<uint32_t>(iDown));
}

uint32_t SetFlowDscp(uint32_t uiFlow, uint32_t uiDscp) {
    const FlowDscpReq stRequest = {uiFlow, uiDscp};
    return ZeroOrFailed(WAP_SPOT, Tell(kSetDscp, stRequest), uiFlow, uiDscp);
}

uint32_t GetFlowDscp(uint32_t uiFlow) {
    FlowDscp stReply = {};
    return AskAbout(WAP_SPOT, kAskDscp, uiFlow, stReply) == 0 ? stReply.uiDscp : kErrFailed;
}

uint32_t GetFlowStats(uint32_t uiFlow, FlowAnswer &stAnswer) {
    FlowStats stStats = {};
    const uint32_t uiResult = AskAbout(WAP_SPOT, kAskStats, uiFlow, stStats);
    if (uiResult == 0) {
        (void)VT_OS_Snprintf_S(stAnswer.acText, sizeof(stAnswer.acText),
                               sizeof(stAnswer.acText) - 1,
                               "{\"Result\":%d,\"UsStats\":%llu,\"DsStats\":%llu}", 0,
                               static_cast<unsigned long long>(stStats.ulUpBytes),
                               static_cast<unsigned long long>(stStats.ulDownBytes));
    }
    return uiResult;
}

// The keys of the two differ in the case of their first letter, deliberately: Java's side reads
// either as it is.

uint32_t GetFlowSpeed(uint32_t uiFlow, FlowAnswer &stAnswer) {
    return TellSpeeds(WAP_SPOT, kAskSpeed, "upSpeed", "downSpeed", uiFlow, stAnswer);
}

uint32_t GetFlowSpeedLimit(uint32_t uiFlow, FlowAnswer &stAnswer) {
    return TellSpeeds(WAP_SPOT, kAskSpeedLimit, "UpSpeed", "DownSpeed", uiFlow, stAnswer);
}

uint32_t ListFlowTraffic(uint32_t uiFlow, char **ppcText) {
    BulkBlock stTable;
    uint32_t uiCount = 0;
    const uint32_t uiFetched = FetchMembers(uiFlow, stTable, uiCount);
    if (uiFetched != 0) {
        return uiFetched;
    }
    JsonValue stList(JNI_JSON_ObjNewArray());
    if (!stList) {
        return Recorded(WAP_SPOT, kErrNoList, uiFlow);
    }
    const auto *pstMembers = static_cast<const FlowTrafficRec *>(stTable.Lend());
    for (uint32_t i = 0; i < uiCount; ++i) {
        const FieldText stAddress(pstMembers[i].acAddress);
        const FieldText stPort(pstMembers[i].acPort);
        const JsonItem astItems[] = {
            {"RemoteAddress", stAddress.Word(), kItemText, kEmptyAsText},
            {"RemotePort", stPort.Word(), kItemText, kEmptyAsText},
        };
        if (!AppendObject(WAP_SPOT, stList, astItems)) {
            return Recorded(WAP_SPOT, kErrNoList, uiFlow, i, uiCount);
        }
    }
    const uint32_t uiCap = kTextPerMember * (uiCount + 1);
    return Recorded(WAP_SPOT, ComposeList(WAP_SPOT, nullptr, stList, uiCap, ppcText), uiCap,
                    uiFlow);
}

}  // namespace wap
