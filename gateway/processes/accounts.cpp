// The accounts of the FTP and Samba services and who may reach them and the web service. What an
// account's password is, nobody here remembers: there is no service to log in to.
#include "processes/accounts.h"

#include "processes/processes.h"

namespace wap::gateway {

namespace {

/// As many as a service keeps.
constexpr size_t kAccountsMax = 32;

std::string AccountsPath(const AccountService &stService) {
    return std::string(stService.pcSection) + ".accounts";
}

template <const AccountService &kService>
uint32_t Count(HandlerContext &stContext, const AccountsRequest &, AccountCount &stReply) {
    const HomeReader stHome(stContext.stHome);
    stReply.uiCount = static_cast<uint32_t>(Elements(stHome.At(AccountsPath(kService))).size());
    return 0;
}

void SetFlags(json_object *pstRight, uint32_t uiFirst, uint32_t uiSecond) {
    PutBool(pstRight, "lanAccess", uiFirst != 0);
    PutBool(pstRight, "wanAccess", uiSecond != 0);
}

template <const AccountService &kService>
uint32_t SetRight(HandlerContext &stContext, const RightSet &stRequest, RightReply &) {
    if (stRequest.ucMask != kRightMaskOff && stRequest.ucMask != kRightMaskAll) {
        return kRefused;
    }
    HomeChange stChange(stContext.stHome);
    json_object *pstService = stChange.At(kService.pcSection);
    PutBool(pstService, "enabled", stRequest.uiEnable != 0);
    PutNumber(pstService, "value", stRequest.uiValue);
    if (stRequest.ucMask == kRightMaskAll) {
        SetFlags(pstService, stRequest.uiFirst, stRequest.uiSecond);
    }
    stChange.Commit();
    return 0;
}

template <const AccountService &kService, class Request>
uint32_t AddAccount(HandlerContext &stContext, const Request &stRequest, RightReply &) {
    const std::string acUser = TextIn(stRequest.acUser);
    HomeChange stChange(stContext.stHome);
    json_object *pstAccounts = stChange.At(AccountsPath(kService));
    // The entry and its comma must fit the account's part of the segment: some characters of a name
    // are long there.
    if (acUser.empty() || TextIn(stRequest.acPassword).empty() ||
        PrintJson(AccountEntry(acUser).get(), false).size() + 1 > kService.uiBytesPerAccount ||
        FindExactly(pstAccounts, "user", acUser) != nullptr) {
        return kRefused;
    }
    if (json_object_array_length(pstAccounts) >= kAccountsMax) {
        return kTableFull;
    }
    JsonValue stAccount = MakeObject();
    PutText(stAccount.get(), "user", acUser);
    Append(pstAccounts, std::move(stAccount));
    stChange.Commit();
    return 0;
}

template <const AccountService &kService>
uint32_t DeleteAccount(HandlerContext &stContext, const AccountDelete &stRequest, RightReply &) {
    HomeChange stChange(stContext.stHome);
    json_object *pstAccounts = stChange.At(AccountsPath(kService));
    json_object *pstAccount = FindExactly(pstAccounts, "user", TextIn(stRequest.acUser));
    if (pstAccount == nullptr) {
        return kRefused;
    }
    TakeOut(pstAccounts, pstAccount);
    stChange.Commit();
    return 0;
}

template <const AccountService &kService>
uint32_t DeleteAccounts(HandlerContext &stContext, const AccountsRequest &, RightReply &) {
    HomeChange stChange(stContext.stHome);
    PutMember(stChange.At(kService.pcSection), "accounts", MakeArray());
    stChange.Commit();
    return 0;
}

template <const AccountService &kService, class AddRequest>
void AddAccountRpcs(RpcTable &stTable) {
    stTable.Add(kService.uiCountRpc, Count<kService>);
    stTable.Add(kService.uiSetRightRpc, SetRight<kService>);
    stTable.Add(kService.uiAddRpc, AddAccount<kService, AddRequest>);
    stTable.Add(kService.uiDeleteRpc, DeleteAccount<kService>);
    stTable.Add(kService.uiDeleteAllRpc, DeleteAccounts<kService>);
}

uint32_t SetWebRight(HandlerContext &stContext, const HttpRightSet &stRequest, RightReply &) {
    if (stRequest.ucMask != kRightMaskHttp) {
        return kRefused;
    }
    HomeChange stChange(stContext.stHome);
    SetFlags(stChange.At("web"), stRequest.uiFirst, stRequest.uiSecond);
    stChange.Commit();
    return 0;
}

uint32_t SetWebPassword(HandlerContext &stContext, const HttpPasswordSet &stRequest, RightReply &) {
    if (TextIn(stRequest.acPassword).empty()) {
        return kRefused;
    }
    HomeChange stChange(stContext.stHome);
    json_object *pstWeb = stChange.At("web");
    PutNumber(pstWeb, "passwordChanges", int64_t{NumberOf(pstWeb, "passwordChanges")} + 1);
    stChange.Commit();
    return 0;
}

}  // namespace

JsonValue AccountEntry(const std::string &acUser) {
    JsonValue stEntry = MakeObject();
    PutText(stEntry.get(), "User", acUser);
    return stEntry;
}

void AddFtpAccountRpcs(RpcTable &stTable) {
    AddAccountRpcs<kFtpService, FtpAccountAdd>(stTable);
}

void AddSambaAccountRpcs(RpcTable &stTable) {
    AddAccountRpcs<kSambaService, SambaAccountAdd>(stTable);
}

void AddWebRightRpcs(RpcTable &stTable) {
    stTable.Add(kRpcSetHttpRight, SetWebRight);
    stTable.Add(kRpcSetHttpPassword, SetWebPassword);
}

}  // namespace wap::gateway
