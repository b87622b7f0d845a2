// igmp: counts who listens to multicast groups.
#include "processes/processes.h"
#include "records/iptv.h"

namespace wap::gateway {

namespace {

uint32_t GetUserNum(HandlerContext &stContext, const Word &, MulticastUserNum &stReply) {
    stReply.uiCount = HomeReader(stContext.stHome).Number("multicast.users");
    return 0;
}

}  // namespace

void AddIgmpRpcs(RpcTable &stTable) {
    stTable.Add(kRpcGetMulticastUserNum, GetUserNum);
}

}  // namespace wap::gateway
