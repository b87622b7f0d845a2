// The services that share the gateway's storage, each with accounts and an access right.
#ifndef WAP_GATEWAY_PROCESSES_ACCOUNTS_H
#define WAP_GATEWAY_PROCESSES_ACCOUNTS_H

#include "framework/rpc_table.h"
#include "records/access_right.h"

namespace wap::gateway {

/// What tells one service from the other.
struct AccountService {
    const char *pcSection;  ///< of the home; its owner makes the changes
    uint32_t uiCountRpc;    ///< served by the owner
    // Served by osgi_proxy; those that change something are the owner's.
    uint32_t uiFillRpc;
    uint32_t uiSetRightRpc;
    uint32_t uiAddRpc;
    uint32_t uiDeleteRpc;
    uint32_t uiDeleteAllRpc;
    int32_t iSegmentKey;
    uint32_t uiBytesPerAccount;  ///< in the segment
};

inline constexpr AccountService kFtpService = {
    "ftp",
    kRpcCountFtpAccounts,
    kRpcFillFtpRight,
    kRpcSetFtpRight,
    kRpcAddFtpAccount,
    kRpcDeleteFtpAccount,
    kRpcDeleteFtpAccounts,
    kFtpRightKey,
    kFtpRightBytes,
};
inline constexpr AccountService kSambaService = {
    "samba",
    kRpcCountSambaAccounts,
    kRpcFillSambaRight,
    kRpcSetSambaRight,
    kRpcAddSambaAccount,
    kRpcDeleteSambaAccount,
    kRpcDeleteSambaAccounts,
    kSambaRightKey,
    kSambaRightBytes,
};

/// What the text about a service says of an account.
JsonValue AccountEntry(const std::string &acUser);

/// What the owner of a service's section serves.
void AddFtpAccountRpcs(RpcTable &stTable);
void AddSambaAccountRpcs(RpcTable &stTable);

/// What the owner of the web service serves.
void AddWebRightRpcs(RpcTable &stTable);

/// osgi_proxy's part: it tells the rights of all three services, and has changes made.
void AddRightRpcs(RpcTable &stTable);

}  // namespace wap::gateway

#endif
