// gulm's flows: what traffic is in them, what they may and do carry, and how it is marked.
#include <charconv>

#include "framework/bulk.h"
#include "framework/runtime_dir.h"
#include "processes/processes.h"
#include "records/traffic_flow.h"

namespace wap::gateway {

namespace {

constexpr uint32_t kFlowsMax = 64;
constexpr size_t kMembersMax = 512;
constexpr uint32_t kDscpMax = 63;
/// What each member of a flow sends and receives, in bytes per second, unless a limit is lower.
constexpr int64_t kUpPerMember = 2000;
constexpr int64_t kDownPerMember = 16000;

bool IsFlow(uint32_t uiFlow) {
    return uiFlow >= 1 && uiFlow <= kFlowsMax;
}

/// The flow of that number; null when nothing is known of it.
json_object *FindFlow(json_object *pstFlows, uint32_t uiFlow) {
    return FindNumber(pstFlows, "flow", uiFlow);
}

/// The same, made when nothing is known of it yet.
json_object *FlowOf(json_object *pstFlows, uint32_t uiFlow) {
    if (json_object *pstFlow = FindFlow(pstFlows, uiFlow)) {
        return pstFlow;
    }
    JsonValue stFlow = MakeObject();
    json_object *pstFlow = stFlow.get();
    PutNumber(pstFlow, "flow", uiFlow);
    for (const char *pcKey : {"upLimit", "downLimit", "dscp", "upBytes", "downBytes", "since"}) {
        PutNumber(pstFlow, pcKey, 0);
    }
    PutMember(pstFlow, "members", MakeArray());
    Append(pstFlows, std::move(stFlow));
    return pstFlow;
}

/// What a flow carries now in one direction.
int64_t SpeedOf(json_object *pstFlow, const char *pcLimit, int64_t iPerMember) {
    json_object *pstMembers = FindMember(pstFlow, "members");
    const int64_t iMembers =
        pstMembers == nullptr ? 0 : static_cast<int64_t>(json_object_array_length(pstMembers));
    const int64_t iLimit = GetNumber(pstFlow, pcLimit).value_or(0);
    return iLimit > 0 ? std::min(iMembers * iPerMember, iLimit) : iMembers * iPerMember;
}

FlowSpeed SpeedsOf(json_object *pstFlow) {
    return {static_cast<int32_t>(SpeedOf(pstFlow, "upLimit", kUpPerMember)),
            static_cast<int32_t>(SpeedOf(pstFlow, "downLimit", kDownPerMember))};
}

/// What a flow has carried until now.
FlowStats StatsOf(json_object *pstFlow) {
    const auto uiNow = static_cast<int64_t>(NowSeconds());
    const int64_t iSince = GetNumber(pstFlow, "since").value_or(0);
    // The machine's clock starts over when the machine does.
    const int64_t iSeconds = iSince > 0 && iSince <= uiNow ? uiNow - iSince : 0;
    const FlowSpeed stSpeed = SpeedsOf(pstFlow);
    return {
        static_cast<uint64_t>(GetNumber(pstFlow, "upBytes").value_or(0) + iSeconds * stSpeed.iUp),
        static_cast<uint64_t>(GetNumber(pstFlow, "downBytes").value_or(0) +
                              iSeconds * stSpeed.iDown)};
}

/// To be called before a flow's speed changes: what it carried at the old one is put by.
void Settle(json_object *pstFlow) {
    const FlowStats stStats = StatsOf(pstFlow);
    PutNumber(pstFlow, "upBytes", static_cast<int64_t>(stStats.ulUpBytes));
    PutNumber(pstFlow, "downBytes", static_cast<int64_t>(stStats.ulDownBytes));
    PutNumber(pstFlow, "since", static_cast<int64_t>(NowSeconds()));
}

json_object *FindMemberOf(json_object *pstMembers, const FlowTrafficRec &stRecord) {
    for (json_object *pstMember : Elements(pstMembers)) {
        if (TextOf(pstMember, "address") == TextIn(stRecord.acAddress) &&
            TextOf(pstMember, "port") == TextIn(stRecord.acPort)) {
            return pstMember;
        }
    }
    return nullptr;
}

/// The flow's number in a record; 0, which is none, for anything else.
uint32_t FlowIn(const FlowTrafficRec &stRecord) {
    const std::string acFlow = TextIn(stRecord.acFlow);
    uint32_t uiFlow = 0;
    const auto stRead = std::from_chars(acFlow.data(), acFlow.data() + acFlow.size(), uiFlow);
    return stRead.ptr == acFlow.data() + acFlow.size() && IsFlow(uiFlow) ? uiFlow : 0;
}

uint32_t AddTraffic(HandlerContext &stContext, const FlowTrafficRec &stRequest, Word &) {
    const uint32_t uiFlow = FlowIn(stRequest);
    if (uiFlow == 0 || stRequest.acPort[0] == '\0') {
        return kRefused;
    }
    HomeChange stChange(stContext.stHome);
    json_object *pstFlow = FlowOf(stChange.At("flows"), uiFlow);
    json_object *pstMembers = FindMember(pstFlow, "members");
    if (FindMemberOf(pstMembers, stRequest) != nullptr) {
        return 0;
    }
    if (json_object_array_length(pstMembers) >= kMembersMax) {
        return kTableFull;
    }
    Settle(pstFlow);
    JsonValue stMember = MakeObject();
    PutText(stMember.get(), "address", TextIn(stRequest.acAddress));
    PutText(stMember.get(), "port", TextIn(stRequest.acPort));
    Append(pstMembers, std::move(stMember));
    stChange.Commit();
    return 0;
}

uint32_t DelTraffic(HandlerContext &stContext, const FlowTrafficRec &stRequest, Word &) {
    HomeChange stChange(stContext.stHome);
    json_object *pstFlow = FindFlow(stChange.At("flows"), FlowIn(stRequest));
    json_object *pstMembers = FindMember(pstFlow, "members");
    json_object *pstMember = FindMemberOf(pstMembers, stRequest);
    if (pstMember == nullptr) {
        return kRefused;
    }
    Settle(pstFlow);
    TakeOut(pstMembers, pstMember);
    stChange.Commit();
    return 0;
}

uint32_t DelAllTraffic(HandlerContext &stContext, const FlowReq &stRequest, Word &) {
    if (!IsFlow(stRequest.uiFlow)) {
        return kRefused;
    }
    HomeChange stChange(stContext.stHome);
    json_object *pstFlow = FlowOf(stChange.At("flows"), stRequest.uiFlow);
    Settle(pstFlow);
    PutMember(pstFlow, "members", MakeArray());
    stChange.Commit();
    return 0;
}

uint32_t GetMembers(HandlerContext &stContext, const FlowReq &stRequest,
                    FlowMembersReply &stReply) {
    std::string acTable;
    {
        const HomeReader stHome(stContext.stHome);
        json_object *pstFlow = FindFlow(stHome.At("flows"), stRequest.uiFlow);
        for (json_object *pstMember : Elements(FindMember(pstFlow, "members"))) {
            FlowTrafficRec stRecord = {};
            PutField(stRecord.acAddress, TextOf(pstMember, "address"));
            PutField(stRecord.acPort, TextOf(pstMember, "port"));
            PutField(stRecord.acFlow, std::to_string(stRequest.uiFlow));
            acTable.append(reinterpret_cast<const char *>(&stRecord), sizeof(stRecord));
            ++stReply.uiCount;
        }
    }
    if (!acTable.empty()) {
        stReply.stTable = PublishBlock(acTable);
    }
    return 0;
}

/// What is told of a flow; zeros for one that nothing is known of.
template <class Reply, Reply (*kTell)(json_object *pstFlow)>
uint32_t Tell(HandlerContext &stContext, const FlowReq &stRequest, Reply &stReply) {
    if (!IsFlow(stRequest.uiFlow)) {
        return kRefused;
    }
    const HomeReader stHome(stContext.stHome);
    stReply = kTell(FindFlow(stHome.At("flows"), stRequest.uiFlow));
    return 0;
}

FlowSpeed LimitsOf(json_object *pstFlow) {
    return {static_cast<int32_t>(GetNumber(pstFlow, "upLimit").value_or(0)),
            static_cast<int32_t>(GetNumber(pstFlow, "downLimit").value_or(0))};
}

FlowDscp DscpOf(json_object *pstFlow) {
    return {NumberOf(pstFlow, "dscp")};
}

/// A limit of 0 is none.
uint32_t SetLimit(HandlerContext &stContext, const FlowSpeedLimitReq &stRequest, Word &) {
    if (!IsFlow(stRequest.uiFlow) || stRequest.stLimit.iUp < 0 || stRequest.stLimit.iDown < 0) {
        return kRefused;
    }
    HomeChange stChange(stContext.stHome);
    json_object *pstFlow = FlowOf(stChange.At("flows"), stRequest.uiFlow);
    Settle(pstFlow);
    PutNumber(pstFlow, "upLimit", stRequest.stLimit.iUp);
    PutNumber(pstFlow, "downLimit", stRequest.stLimit.iDown);
    stChange.Commit();
    return 0;
}

uint32_t SetDscp(HandlerContext &stContext, const FlowDscpReq &stRequest, Word &) {
    if (!IsFlow(stRequest.uiFlow) || stRequest.uiDscp > kDscpMax) {
        return kRefused;
    }
    HomeChange stChange(stContext.stHome);
    PutNumber(FlowOf(stChange.At("flows"), stRequest.uiFlow), "dscp", stRequest.uiDscp);
    stChange.Commit();
    return 0;
}

}  // namespace

void AddFlowRpcs(RpcTable &stTable) {
    stTable.Add(kRpcAddFlowTraffic, AddTraffic);
    stTable.Add(kRpcDelFlowTraffic, DelTraffic);
    stTable.Add(kRpcDelAllFlowTraffic, DelAllTraffic);
    stTable.Add(kRpcGetFlowMembers, GetMembers);
    stTable.Add(kRpcGetFlowStats, Tell<FlowStats, StatsOf>);
    stTable.Add(kRpcGetFlowSpeed, Tell<FlowSpeed, SpeedsOf>);
    stTable.Add(kRpcGetFlowSpeedLimit, Tell<FlowSpeed, LimitsOf>);
    stTable.Add(kRpcSetFlowSpeedLimit, SetLimit);
    stTable.Add(kRpcGetFlowDscp, Tell<FlowDscp, DscpOf>);
    stTable.Add(kRpcSetFlowDscp, SetDscp);
}

}  // namespace wap::gateway
