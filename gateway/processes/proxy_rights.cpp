// osgi_proxy's part in the rights: the texts about them, and the way of a change to its owner.
#include <sys/ipc.h>
#include <sys/shm.h>

#include "framework/peers.h"
#include "processes/accounts.h"
#include "processes/processes.h"

namespace wap::gateway {

namespace {

JsonValue AnswerOf(json_object *pstRight) {
    JsonValue stAnswer = MakeObject();
    PutNumber(stAnswer.get(), "Result", 0);
    PutNumber(stAnswer.get(), "LanAccess", IsTrue(pstRight, "lanAccess") ? 1 : 0);
    PutNumber(stAnswer.get(), "WanAccess", IsTrue(pstRight, "wanAccess") ? 1 : 0);
    return stAnswer;
}

std::string TextOfService(const AccountService &stService) {
    const JsonValue stHome = PeerValue(stService.pcSection);
    const JsonValue stAnswer = AnswerOf(stHome.get());
    PutNumber(stAnswer.get(), "Enable", IsTrue(stHome.get(), "enabled") ? 1 : 0);
    PutNumber(stAnswer.get(), "Value", NumberOf(stHome.get(), "value"));
    JsonValue stList = MakeArray();
    for (json_object *pstAccount : Elements(FindMember(stHome.get(), "accounts"))) {
        Append(stList.get(), AccountEntry(TextOf(pstAccount, "user")));
    }
    PutMember(stAnswer.get(), "List", std::move(stList));
    return PrintJson(stAnswer.get(), false);
}

/// Writes a text with its zero into the segment that the asking side has made under a key. The
/// text must fit what that side says, and that must fit the segment.
uint32_t FillSegment(int32_t iKey, uint32_t uiSize, const std::string &acText) {
    const int32_t iId = VT_OS_ShmGet(iKey, 0, 0);
    shmid_ds stInfo = {};
    if (iId < 0 || VT_OS_ShmCtl(iId, IPC_STAT, &stInfo) != 0) {
        return VT_HOST_ERR_NO_BLOCK;
    }
    if (acText.size() >= uiSize || stInfo.shm_segsz < uiSize) {
        return VT_HOST_ERR_TOO_LONG;
    }
    void *pvSegment = VT_OS_ShmAt(iId, nullptr, 0);
    if (reinterpret_cast<intptr_t>(pvSegment) == -1) {
        return VT_HOST_ERR_SYSTEM;
    }
    memcpy(pvSegment, acText.c_str(), acText.size() + 1);
    return VT_OS_ShmDt(pvSegment) == 0 ? 0u : static_cast<uint32_t>(VT_HOST_ERR_SYSTEM);
}

template <const AccountService &kService>
uint32_t FillRight(HandlerContext &, const RightFill &stRequest, RightReply &) {
    return FillSegment(kService.iSegmentKey, stRequest.uiSize, TextOfService(kService));
}

uint32_t TellWebRight(HandlerContext &, const AccountsRequest &, HttpRightReply &stReply) {
    const JsonValue stWeb = PeerValue("web");
    const JsonValue stAnswer = AnswerOf(stWeb.get());
    PutNumber(stAnswer.get(), "PasswordChanges", NumberOf(stWeb.get(), "passwordChanges"));
    PutField(stReply.acText, PrintJson(stAnswer.get(), false));
    return 0;
}

template <const AccountService &kService>
void AddServiceRpcs(RpcTable &stTable) {
    stTable.Add(kService.uiFillRpc, FillRight<kService>);
    const char *pcOwner = FindOwner(kService.pcSection)->pcName;
    for (const uint32_t uiRpcId : {kService.uiSetRightRpc, kService.uiAddRpc, kService.uiDeleteRpc,
                                   kService.uiDeleteAllRpc}) {
        stTable.Forward(uiRpcId, pcOwner);
    }
}

}  // namespace

void AddRightRpcs(RpcTable &stTable) {
    AddServiceRpcs<kFtpService>(stTable);
    AddServiceRpcs<kSambaService>(stTable);
    stTable.Add(kRpcGetHttpRight, TellWebRight);
    for (const uint32_t uiRpcId : {kRpcSetHttpRight, kRpcSetHttpPassword}) {
        stTable.Forward(uiRpcId, FindOwner("web")->pcName);
    }
}

}  // namespace wap::gateway
