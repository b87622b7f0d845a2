#include "access/jni_iptv_info.h"

#include <vt_ssp_basic.h>

#include "common/report.h"
#include "common/requests.h"
#include "records/iptv.h"

using namespace wap;

namespace {

constexpr GeneralRoute kAskConnection = {"gulm", 321, kRpcGetIptvWan};
constexpr GeneralRoute kAskStatus = {"gulm", 321, kRpcGetIptvWanStatus};
constexpr GeneralRoute kAskUsers = {"igmp", 54, kRpcGetMulticastUserNum};

/// The service types of connections that carry IPTV. 12 is deliberately not among them, though it
/// lies between them.
constexpr uint32_t kIptvServiceTypes[] = {7, 8, 9, 10, 11, 13, 14, 15, 16};

bool CarriesIptv(uint32_t uiServiceType) {
    for (const uint32_t uiIptvType : kIptvServiceTypes) {
        if (uiServiceType == uiIptvType) {
            return true;
        }
    }
    return false;
}

/// The word for a connection that is up and has a multicast VLAN.
uint32_t ChooseByUsers(const char *&pcWord) {
    MulticastUserNum stUsers = {};
    const uint32_t uiResult = AskBytes(kAskUsers, nullptr, 0, stUsers);
    if (Recorded(WAP_SPOT, uiResult) != 0) {
        return uiResult;
    }
    (void)VT_OS_Printf("=========== VT_JNI_GetIPTVStatus !! uiUserCount: %u\r\n", stUsers.uiCount);
    // Java's side compares the words with this spelling.
    pcWord = stUsers.uiCount != 0 ? "IPTV_BUSSINESS_OK" : "IPTV_BUSSINESS_NOK";
    return 0;
}

/// The word for a connection of the gateway.
uint32_t ChooseWord(const IptvWanInfo &stWan, const char *&pcWord) {
    if (!CarriesIptv(stWan.uiServiceType)) {
        pcWord = "NO_IPTV_CONNECTION";
        return 0;
    }
    IptvWanStatus stStatus = {stWan.uiStatus};
    if (stWan.uiIpv4Enable == 0) {
        // The status that came along is that of IPv4.
        stStatus.uiStatus = 0;
        const uint32_t uiResult = Ask(kAskStatus, IptvWanStatusReq{stWan.uiWanIndex}, stStatus);
        if (Recorded(WAP_SPOT, uiResult, stWan.uiWanIndex) != 0) {
            return uiResult;
        }
    }
    if (stStatus.uiStatus == kIptvWanDisconnected) {
        pcWord = "IPTV_DISCONNECT";
        return 0;
    }
    if (stWan.usIpv4Mvlan < kMulticastVlanEnd || stWan.usIpv6Mvlan < kMulticastVlanEnd) {
        return ChooseByUsers(pcWord);
    }
    pcWord = "INVALID_MULTIVLAN";
    return 0;
}

}  // namespace

uint32_t VT_JNI_GetIPTVStatus(char *pcBuf, uint32_t uiSize) {
    if (pcBuf == nullptr || uiSize == 0) {
        return Recorded(WAP_SPOT, 1, uiSize);
    }
    IptvWanInfo stWan = {};
    uint32_t uiResult = AskBytes(kAskConnection, nullptr, 0, stWan);
    if (Recorded(WAP_SPOT, uiResult) != 0) {
        return uiResult;
    }
    (void)VT_OS_Printf(
        "=========== VT_JNI_GetIPTVStatus !! WanIndex: 0x%x, ServiceType: %u, Status: %u, "
        "IPv4Enable: %u, IPv4MVlan: %u, IPv6MVlan: %u\r\n",
        stWan.uiWanIndex, stWan.uiServiceType, stWan.uiStatus, stWan.uiIpv4Enable,
        static_cast<uint32_t>(stWan.usIpv4Mvlan), static_cast<uint32_t>(stWan.usIpv6Mvlan));
    const char *pcWord = "";
    uiResult = ChooseWord(stWan, pcWord);
    if (uiResult != 0) {
        return uiResult;
    }
    return Recorded(WAP_SPOT, VT_OS_StrNCpy_S(pcBuf, uiSize, pcWord, uiSize - 1));
}
