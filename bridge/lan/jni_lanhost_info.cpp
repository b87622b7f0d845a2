#include "lan/jni_lanhost_info.h"

#include "common/bulk_text.h"
#include "common/fields.h"
#include "common/jni_common.h"
#include "common/list_answer.h"
#include "common/owners.h"
#include "common/report.h"
#include "common/requests.h"
#include "records/lan_hosts.h"

using namespace wap;

namespace {

constexpr GeneralRoute kAskSpeed = {"app_m", 249, kRpcGetLanHostSpeed};
constexpr GeneralRoute kAskByMac = {"app_m", 249, kRpcGetLanHostInfoByMac};
constexpr GeneralRoute kAskByClass = {"app_m", 249, kRpcGetLanHostInfoByClass};
constexpr GeneralRoute kAskByInterface = {"app_m", 249, kRpcGetLanHostInfoByInterface};
constexpr GeneralRoute kAskStats = {"app_m", 249, kRpcGetLanHostStats};
constexpr GeneralRoute kAskGatewayName = {"app_m", 249, kRpcGetGatewayName};
constexpr GeneralRoute kSetHostName = {"osgi_proxy", 0, kRpcSetLanHostName};
constexpr GeneralRoute kSetGatewayName = {"osgi_proxy", 0, kRpcSetGatewayName};

constexpr uint32_t kGatewayNameMax = 256;
/// Less than the field has room for.
constexpr uint32_t kHostNameMax = 64;
constexpr uint32_t kNameTooLong = 0xFFFFFFFE;

/// The blank before the last brace is deliberate: the Java side expects this very text.
constexpr std::string_view kNoHostsAnswer = "{\"Result\":-1,\"List\":[] }";

/// Makes the place for a text empty; false, recorded, when there is none.
bool HasPlace(SourceSpot stSpot, char **ppcText) {
    if (ppcText == nullptr) {
        RecordFault(stSpot, kErrNullArgument);
        return false;
    }
    *ppcText = nullptr;
    return true;
}

/// Asks about the hosts of a table, or about all when it has no text, and fetches the answer.
uint32_t FetchHosts(SourceSpot stSpot, const GeneralRoute &stRoute, const char *const *ppcMacs,
                    uint32_t uiCount, char **ppcText, DescTrace eTrace) {
    if (VT_JNI_MacfltNullCheck(ppcMacs, uiCount) != 0) {
        const EveryHost stEvery = {};
        return FetchBulkText(stSpot, stRoute, &stEvery, sizeof(stEvery), ppcText, eTrace);
    }
    PlatformBlock stList;
    if (uiCount > UINT32_MAX / sizeof(MacSlot) ||
        !stList.Make(uiCount * static_cast<uint32_t>(sizeof(MacSlot)), stSpot)) {
        return Recorded(stSpot, kErrNoMemory, uiCount);
    }
    auto *pstSlots = static_cast<MacSlot *>(stList.Lend());
    for (uint32_t i = 0; i < uiCount; ++i) {
        PutField(pstSlots[i].acMac, ppcMacs[i]);
    }
    return FetchBulkText(stSpot, stRoute, pstSlots,
                         uiCount * static_cast<uint32_t>(sizeof(MacSlot)), ppcText, eTrace);
}

/// Asks about the hosts that a word describes.
uint32_t FetchHostsOf(SourceSpot stSpot, const GeneralRoute &stRoute, const char *pcWord,
                      char **ppcText) {
    if (!HasPlace(stSpot, ppcText)) {
        return kErrNullArgument;
    }
    if (pcWord == nullptr) {
        return Recorded(stSpot, kErrNullArgument);
    }
    HostTextQuery stRequest = {};
    PutWholeField(stRequest.acText, pcWord);
    return FetchBulkText(stSpot, stRoute, &stRequest, sizeof(stRequest), ppcText);
}

/// Records why a name is not taken.
uint32_t Refuse(SourceSpot stSpot, uint32_t uiResult, uint32_t uiLength) {
    RecordFault(stSpot, 1, uiLength);
    return uiResult;
}

}  // namespace

uint32_t VT_JNI_getLANHostInfoByMAC(const char *const *ppcMacs, uint32_t uiCount, char **ppcText) {
    if (!HasPlace(WAP_SPOT, ppcText)) {
        return kErrNullArgument;
    }
    const uint32_t uiResult =
        FetchHosts(WAP_SPOT, kAskByMac, ppcMacs, uiCount, ppcText, DescTrace::kUnsigned);
    // A list without hosts instead of a failure: this query alone does so, and callers rely on it.
    return uiResult == 0 ? 0 : GiveFixed(WAP_SPOT, kNoHostsAnswer, 1, ppcText);
}

uint32_t VT_JNI_getLANHostStats(const char *const *ppcMacs, uint32_t uiCount, char **ppcText) {
    if (!HasPlace(WAP_SPOT, ppcText)) {
        return kErrNullArgument;
    }
    return FetchHosts(WAP_SPOT, kAskStats, ppcMacs, uiCount, ppcText, DescTrace::kSigned);
}

uint32_t VT_JNI_getLANHostInfoByClass(const char *pcClass, char **ppcText) {
    return FetchHostsOf(WAP_SPOT, kAskByClass, pcClass, ppcText);
}

uint32_t VT_JNI_getLANHostInfoByInterface(const char *pcInterface, char **ppcText) {
    return FetchHostsOf(WAP_SPOT, kAskByInterface, pcInterface, ppcText);
}

uint32_t VT_JNI_getLANHostSpeed(const char *pcMac, char *pcBuf, uint32_t uiCap) {
    const uint32_t uiReqLen = pcMac == nullptr ? 0 : VT_OS_StrLen(pcMac) + 1;
    return AskText(WAP_SPOT, kAskSpeed, pcMac, uiReqLen, pcBuf, uiCap);
}

uint32_t VT_JNI_getGatewayName(char *pcBuf, uint32_t uiCap) {
    const uint32_t uiZero = 0;
    return AskText(WAP_SPOT, kAskGatewayName, &uiZero, sizeof(uiZero), pcBuf, uiCap);
}

uint32_t VT_JNI_setGatewayName(const char *pcName) {
    if (HasNoText(pcName)) {
        return Refuse(WAP_SPOT, kErrFailed, 0);
    }
    const uint32_t uiLength = VT_OS_StrLen(pcName);
    if (uiLength > kGatewayNameMax) {
        return Refuse(WAP_SPOT, kNameTooLong, uiLength);
    }
    return AskChange(WAP_SPOT, kSetGatewayName, pcName, uiLength + 1);
}

uint32_t VT_JNI_setLANHostName(const char *pcMac, const char *pcName) {
    if (pcMac == nullptr || pcName == nullptr) {
        return Refuse(WAP_SPOT, kErrFailed, 0);
    }
    const uint32_t uiLength = VT_OS_StrLen(pcName);
    if (uiLength > kHostNameMax) {
        return Refuse(WAP_SPOT, kNameTooLong, uiLength);
    }
    HostNameSet stRequest = {};
    // Whole or not at all: a shortened MAC address could be another host's.
    PutWholeField(stRequest.acMac, pcMac);
    PutWholeField(stRequest.acName, pcName);
    return AskChange(WAP_SPOT, kSetHostName, &stRequest, sizeof(stRequest));
}
