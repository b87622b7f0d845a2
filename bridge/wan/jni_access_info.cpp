#include "wan/jni_access_info.h"

#include "common/jni_common.h"
#include "common/owners.h"
#include "common/report.h"
#include "common/requests.h"
#include "wan/jni_wan_info.h"

using namespace wap;

namespace {

constexpr GeneralRoute kAskWanStats = {"app_m", 249, kRpcGetWanStats};
constexpr GeneralRoute kAskWanInfo = {"app_m", 249, kRpcGetWanInfo};
constexpr GeneralRoute kAskWanBandwidth = {"app_m", 249, kRpcGetWanBandwidth};
constexpr GeneralRoute kAskWanStatus = {"app_m", 249, kRpcGetWanStatus};
constexpr GeneralRoute kAskInternetWan = {"app_m", 249, kRpcGetInternetWan};
constexpr GeneralRoute kAskPonPhyStatus = {"app_m", 249, kRpcGetPonPhyStatus};
constexpr GeneralRoute kAskPonUpTime = {"app_m", 249, kRpcGetPonUpTime};
constexpr GeneralRoute kAskPonRegStatus = {"app_m", 249, kRpcGetPonRegStatus};
constexpr GeneralRoute kAskUplinkStats = {"app_m", 249, kRpcGetUplinkStats};

/// What these workers answer when they were given nothing to write to, or had no memory.
constexpr uint32_t kErrNoRoom = 1;

uint32_t AskStatusText(SourceSpot stSpot, const GeneralRoute &stRoute, uint32_t uiWanIndex,
                       char *pcBuf, uint32_t uiCap) {
    if (pcBuf == nullptr || uiCap == 0) {
        return Recorded(stSpot, kErrNoRoom, uiWanIndex);
    }
    const AccessRequest stRequest = {uiWanIndex};
    const uint32_t uiResult = AskText(stSpot, stRoute, &stRequest, sizeof(stRequest), pcBuf, uiCap);
    if (uiResult == 0 && pcBuf[0] == '\0') {
        // Nothing instead of a text: Java would get null.
        return Recorded(stSpot, kErrFailed, uiWanIndex);
    }
    return uiResult;
}

/// Asks for a reply that is no text; pvOut is where the caller wants it in the end.
template <class Reply>
uint32_t AskStatusWord(SourceSpot stSpot, const GeneralRoute &stRoute, const void *pvOut,
                       Reply &stReply) {
    if (pvOut == nullptr) {
        return Recorded(stSpot, kErrNoRoom);
    }
    return Recorded(stSpot, Ask(stRoute, AccessRequest{}, stReply));
}

}  // namespace

uint32_t VT_JNI_GetWANIfList(char *pcBuf, uint32_t uiCap) {
    if (pcBuf == nullptr || uiCap == 0) {
        return Recorded(WAP_SPOT, kErrNoRoom);
    }
    PlatformBlock stBlock;
    if (!stBlock.Make(sizeof(WanIfList), WAP_SPOT)) {
        return Recorded(WAP_SPOT, kErrNoRoom, static_cast<uint32_t>(sizeof(WanIfList)));
    }
    auto &stList = *static_cast<WanIfList *>(stBlock.Lend());
    // No list is an empty list, deliberately: Java shows a gateway that starts as one without WANs.
    (void)Recorded(WAP_SPOT, AskWanList(stList));
    return Recorded(
        WAP_SPOT, VT_API_ConvertWanListToJson(stList.astEntries, CountWans(stList), pcBuf, uiCap));
}

uint32_t VT_JNI_GetWANIfStats(uint32_t uiWanIndex, char *pcBuf, uint32_t uiCap) {
    return AskStatusText(WAP_SPOT, kAskWanStats, uiWanIndex, pcBuf, uiCap);
}

uint32_t VT_JNI_GetWANIfInfo(uint32_t uiWanIndex, char *pcBuf, uint32_t uiCap) {
    return AskStatusText(WAP_SPOT, kAskWanInfo, uiWanIndex, pcBuf, uiCap);
}

uint32_t VT_JNI_GetWanIfBandwidth(uint32_t uiWanIndex, char *pcBuf, uint32_t uiCap) {
    return AskStatusText(WAP_SPOT, kAskWanBandwidth, uiWanIndex, pcBuf, uiCap);
}

uint32_t VT_JNI_GetWANIfStatus(uint32_t uiWanIndex, char *pcBuf, uint32_t uiCap) {
    return AskStatusText(WAP_SPOT, kAskWanStatus, uiWanIndex, pcBuf, uiCap);
}

uint32_t VT_JNI_GetPONIfPhyStatus(char *pcBuf, uint32_t uiCap) {
    return AskStatusText(WAP_SPOT, kAskPonPhyStatus, 0, pcBuf, uiCap);
}

uint32_t VT_JNI_GetPONIfRegisterStatus(char *pcBuf, uint32_t uiCap) {
    return AskStatusText(WAP_SPOT, kAskPonRegStatus, 0, pcBuf, uiCap);
}

uint32_t VT_JNI_getUplinkIfStats(char *pcBuf, uint32_t uiCap) {
    return AskStatusText(WAP_SPOT, kAskUplinkStats, 0, pcBuf, uiCap);
}

uint32_t VT_JNI_GetInternetWANIndex(uint32_t *puiWanIndex) {
    // A reply without any bytes names no connection, and 0 would look like one.
    InternetWanReply stReply = {kErrFailed};
    const uint32_t uiResult = AskStatusWord(WAP_SPOT, kAskInternetWan, puiWanIndex, stReply);
    if (uiResult == 0) {
        *puiWanIndex = stReply.uiWanIndex;
    }
    return uiResult;
}

uint32_t VT_JNI_GetPONIfUpTime(uint32_t *puiUpTime) {
    PonUpTimeReply stReply = {};
    const uint32_t uiResult = AskStatusWord(WAP_SPOT, kAskPonUpTime, puiUpTime, stReply);
    if (uiResult == 0) {
        *puiUpTime = stReply.uiUpTime;
    }
    return uiResult;
}
