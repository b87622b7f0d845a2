// The DNS servers of WAN connections.
#include <string.h>

#include "common/fields.h"
#include "common/jni_common.h"
#include "common/owners.h"
#include "common/report.h"
#include "common/requests.h"
#include "wan/jni_wan_info.h"

using namespace wap;

namespace {

constexpr GeneralRoute kAskIpDns = {"gulm", 50, kRpcGetWanIpDns};
constexpr GeneralRoute kAskPppDns = {"gulm", 50, kRpcGetWanPppDns};
constexpr GeneralRoute kAskIpv6Dns = {"gulm", 50, kRpcGetWanIpv6Dns};
constexpr GeneralRoute kSetIpv6Dns = {"gulm", 89, kRpcSetWanIpv6Dns};

constexpr uint32_t kErrNoList = 1;
constexpr uint32_t kErrNoMemory = 1;

/// What an IPv4 list may be long, with the zero.
constexpr uint32_t kIpv4ListSize = 33;

/// A server within a list.
struct Server {
    const char *pcText;
    int32_t iLength;  ///< as printf wants it
};

/// The first two servers of a list.
struct Servers {
    Server astServers[2];
};

Servers FirstTwoOf(const char *pcList) {
    Servers stServers = {};
    const char *pcAt = pcList;
    for (Server &stServer : stServers.astServers) {
        pcAt += strspn(pcAt, ",");
        const size_t ulLength = strcspn(pcAt, ",");
        stServer = {pcAt, static_cast<int32_t>(ulLength)};
        pcAt += ulLength;
    }
    return stServers;
}

/// The servers of a new list, and where it has none those of the old one. Borrows from both.
Servers Merge(const char *pcOld, const char *pcNew) {
    const Servers stOld = FirstTwoOf(pcOld);
    Servers stMerged = FirstTwoOf(pcNew);
    for (uint32_t i = 0; i < 2; ++i) {
        if (stMerged.astServers[i].iLength == 0) {
            stMerged.astServers[i] = stOld.astServers[i];
        }
    }
    return stMerged;
}

/// Whether there is a text that ends within its buffer.
bool IsText(const char *pcText, uint32_t uiSize) {
    return pcText != nullptr && strnlen(pcText, uiSize) < uiSize;
}

/// Asks for what holds a list and completes the new one with it. The reply is too long for a stack.
template <class Reply>
uint32_t MergeWithPresent(const GeneralRoute &stRoute, uint32_t uiWanIndex, char *pcDns,
                          uint32_t uiSize) {
    PlatformBlock stBlock;
    // As long as the longest of the replies, whichever is asked for.
    if (!stBlock.Make(sizeof(WanIpDnsReply), WAP_SPOT)) {
        return Recorded(WAP_SPOT, kErrNoMemory, uiWanIndex);
    }
    const WanPlace stPlace = SplitWanIndex(uiWanIndex);
    const WanIdReq stRequest = {stPlace.uiWanDev, stPlace.uiConnDev, stPlace.uiConnIns};
    auto &stReply = *static_cast<Reply *>(stBlock.Lend());
    uint32_t uiResult = Ask(stRoute, stRequest, stReply);
    if (Recorded(WAP_SPOT, uiResult, uiWanIndex) != 0) {
        return uiResult;
    }
    uiResult = VT_API_MergeIpv4Dns(FieldText(stReply.acDnsServers).Lend(), pcDns, uiSize);
    return Recorded(WAP_SPOT, uiResult, uiWanIndex);
}

/// The list of a connection's present IPv6 servers.
uint32_t FetchIpv6Dns(uint32_t uiWanIndex, const WanIpv6DnsReq &stRequest, PlatformBlock &stBlock) {
    if (!stBlock.Make(sizeof(WanIpv6DnsReply), WAP_SPOT)) {
        return Recorded(WAP_SPOT, kErrNoMemory, uiWanIndex);
    }
    const uint32_t uiResult =
        Ask(kAskIpv6Dns, stRequest, *static_cast<WanIpv6DnsReply *>(stBlock.Lend()));
    return Recorded(WAP_SPOT, uiResult, uiWanIndex);
}

}  // namespace

uint32_t VT_API_MergeIpv4Dns(const char *pcOld, char *pcNew, uint32_t uiNewSize) {
    if (pcOld == nullptr || !IsText(pcNew, uiNewSize)) {
        return Recorded(WAP_SPOT, kErrNoList, uiNewSize);
    }
    WAP_TRACE(kTraceEntries, "ipv4 pcOldDns:%s,  pcNewDns:%s \r\n", pcOld, pcNew);
    const Servers stMerged = Merge(pcOld, pcNew);
    const Server &stFirst = stMerged.astServers[0];
    const Server &stSecond = stMerged.astServers[1];
    // Where there is a second, there is a first.
    if (stFirst.iLength == 0) {
        return Recorded(WAP_SPOT, kErrNoList, uiNewSize);
    }
    char acDnsStr[kIpv4ListSize] = {};
    const char *pcBetween = stSecond.iLength != 0 ? "," : "";
    // What is too long is cut.
    (void)VT_OS_Snprintf_S(acDnsStr, sizeof(acDnsStr), sizeof(acDnsStr) - 1, "%.*s%s%.*s",
                           stFirst.iLength, stFirst.pcText, pcBetween, stSecond.iLength,
                           stSecond.pcText);
    (void)VT_OS_MemSet_S(pcNew, uiNewSize, 0, uiNewSize);
    (void)VT_OS_StrNCpy_S(pcNew, uiNewSize, acDnsStr, uiNewSize - 1);
    WAP_TRACE(kTraceEntries, "ipv4 acDnsStr:%s,  pcNewDns:%s \r\n", acDnsStr, pcNew);
    return 0;
}

uint32_t VT_API_MergeIpv6Dns(const char *pcOld, const char *pcNew, char *pcOut) {
    if (pcOld == nullptr || pcNew == nullptr || pcOut == nullptr) {
        return Recorded(WAP_SPOT, kErrNoList);
    }
    const Servers stMerged = Merge(pcOld, pcNew);
    WanIpv6DnsPair stPair = {};
    char *const apcFields[] = {stPair.acFirst, stPair.acSecond};
    static_assert(sizeof(stPair.acFirst) == sizeof(stPair.acSecond));
    for (uint32_t i = 0; i < 2; ++i) {
        const Server &stServer = stMerged.astServers[i];
        (void)VT_OS_Snprintf_S(apcFields[i], sizeof(stPair.acFirst), sizeof(stPair.acFirst) - 1,
                               "%.*s", stServer.iLength, stServer.pcText);
    }
    WAP_TRACE(kTraceEntries, "server1:%s, server2:%s \r\n", stPair.acFirst, stPair.acSecond);
    memcpy(pcOut, &stPair, sizeof(stPair));
    return 0;
}

uint32_t VT_API_MergeWanIpv4Dns(uint32_t uiWanIndex, char *pcDns, uint32_t uiSize) {
    if (!IsText(pcDns, uiSize)) {
        return Recorded(WAP_SPOT, kErrNoList, uiWanIndex, uiSize);
    }
    WAP_TRACE(kTraceEntries, "uiWanIndex:0x%x, pcDns:%s", uiWanIndex, pcDns);
    const bool bPpp = SplitWanIndex(uiWanIndex).uiKind == kWanKindPpp;
    return bPpp ? MergeWithPresent<WanPppDnsReply>(kAskPppDns, uiWanIndex, pcDns, uiSize)
                : MergeWithPresent<WanIpDnsReply>(kAskIpDns, uiWanIndex, pcDns, uiSize);
}

uint32_t VT_API_SetWanIpv6Dns(uint32_t uiWanIndex, const char *pcDns) {
    if (pcDns == nullptr) {
        return Recorded(WAP_SPOT, kErrNoList, uiWanIndex);
    }
    WanIpv6DnsReq stName = {};
    uint32_t uiResult = VT_API_GetWanIfName(uiWanIndex, stName.acIfName);
    if (Recorded(WAP_SPOT, uiResult, uiWanIndex) != 0) {
        return uiResult;
    }
    WAP_TRACE(kTraceEntries, "GetIpv6Dns wan index:0x%x ,wan name:%s, pcDns:%s\r\n", uiWanIndex,
              stName.acIfName, pcDns);
    PlatformBlock stPresent;
    uiResult = FetchIpv6Dns(uiWanIndex, stName, stPresent);
    if (uiResult != 0) {
        return uiResult;
    }
    const auto &stReply = *static_cast<const WanIpv6DnsReply *>(stPresent.Lend());
    WanIpv6DnsSetReq stRequest = {};
    stRequest.uiWanIndex = uiWanIndex;
    (void)VT_API_MergeIpv6Dns(FieldText(stReply.acDnsServers).Lend(), pcDns,
                              reinterpret_cast<char *>(&stRequest.stServers));
    return Recorded(WAP_SPOT, Tell(kSetIpv6Dns, stRequest), uiWanIndex);
}
