#include "lan/jni_lan_address.h"

#include "common/fields.h"
#include "common/jni_common.h"
#include "common/owners.h"
#include "common/report.h"
#include "common/requests.h"

using namespace wap;

namespace {

constexpr GeneralRoute kAskAddress = {"app_m", 249, kRpcGetLanHostIp};
constexpr GeneralRoute kAskDhcp = {"gulm", 48, kRpcGetLanDhcp};
constexpr GeneralRoute kSetAddress = {"osgi_proxy", 0, kRpcSetLanHostIp};
constexpr GeneralRoute kSetDhcp = {"osgi_proxy", 0, kRpcSetLanDhcp};

/// Makes a zeroed record on the heap; null, recorded, when memory runs out.
template <class Record>
Record *MakeRecord(PlatformBlock &stBlock, SourceSpot stSpot) {
    if (!stBlock.Make(sizeof(Record), stSpot)) {
        RecordFault(stSpot, kErrNoMemory, sizeof(Record));
        return nullptr;
    }
    return static_cast<Record *>(stBlock.Lend());
}

/// A query's own answer takes the place of its text when it failed: deliberately a success, because
/// these queries never fail for their callers.
uint32_t AnswerAnyway(uint32_t uiResult, char *pcBuf, uint32_t uiCap) {
    if (uiResult != 0) {
        PutFailureAnswer(pcBuf, uiCap);
    }
    return 0;
}

/// False, recorded, when there is no room for any text.
bool HasRoom(SourceSpot stSpot, const char *pcBuf, uint32_t uiCap) {
    if (pcBuf == nullptr || uiCap == 0) {
        RecordFault(stSpot, kErrNullArgument, uiCap);
        return false;
    }
    return true;
}

uint32_t FetchDhcpText(char *pcBuf, uint32_t uiCap) {
    PlatformBlock stBlock;
    auto *pstReply = MakeRecord<DhcpSettings>(stBlock, WAP_SPOT);
    if (pstReply == nullptr) {
        return kErrNoMemory;
    }
    uint32_t uiResult = Ask(kAskDhcp, LanIndex{1}, *pstReply);
    if (uiResult == 0) {
        uiResult = VT_API_getDhcpInfoJsonStr(pstReply, pcBuf, uiCap);
    }
    return Recorded(WAP_SPOT, uiResult);
}

}  // namespace

uint32_t VT_JNI_getLANHostIP(char *pcBuf, uint32_t uiCap) {
    if (!HasRoom(WAP_SPOT, pcBuf, uiCap)) {
        return kErrNullArgument;
    }
    const LanIndex stRequest = {1};
    return AnswerAnyway(AskText(WAP_SPOT, kAskAddress, &stRequest, sizeof(stRequest), pcBuf, uiCap),
                        pcBuf, uiCap);
}

uint32_t VT_JNI_getLANDHCPInfo(char *pcBuf, uint32_t uiCap) {
    if (!HasRoom(WAP_SPOT, pcBuf, uiCap)) {
        return kErrNullArgument;
    }
    return AnswerAnyway(FetchDhcpText(pcBuf, uiCap), pcBuf, uiCap);
}

uint32_t VT_API_getDhcpInfoJsonStr(const DhcpSettings *pstSettings, char *pcBuf, uint32_t uiCap) {
    if (pstSettings == nullptr || pcBuf == nullptr) {
        return Recorded(WAP_SPOT, kErrNullArgument);
    }
    const FieldText stStart(pstSettings->acPoolStart);
    const FieldText stEnd(pstSettings->acPoolEnd);
    const char *pcEnabled = pstSettings->uiEnable == 1 ? "TRUE" : "FALSE";
    const JsonItem astRows[] = {
        {"EnableDHCPServer", reinterpret_cast<uintptr_t>(pcEnabled), kItemText, kEmptyAsText},
        {"DHCPStartIP", stStart.Word(), kItemText, kEmptyAsText},
        {"DHCPEndIP", stEnd.Word(), kItemText, kEmptyAsText},
        {"DHCPDuration", pstSettings->uiLease, kItemInt, kEmptyAsText},
    };
    return Compose(astRows, pcBuf, uiCap, 0, Completeness::kWhole);
}

uint32_t VT_JNI_setLANHostIP(const char *pcAddress, const char *pcMask) {
    if (pcAddress == nullptr || pcMask == nullptr) {
        RecordFault(WAP_SPOT, kErrNullArgument);
        return kErrFailed;
    }
    PlatformBlock stBlock;
    auto *pstRequest = MakeRecord<LanAddressSet>(stBlock, WAP_SPOT);
    if (pstRequest == nullptr) {
        return kErrFailed;
    }
    pstRequest->uiLan = 1;
    pstRequest->uiDevice = 1;
    PutWholeField(pstRequest->acAddress, pcAddress);
    PutWholeField(pstRequest->acMask, pcMask);
    pstRequest->ucChanged = kLanAddressChanged;
    return AskChange(WAP_SPOT, kSetAddress, pstRequest, sizeof(*pstRequest));
}

uint32_t VT_JNI_setLANDHCPInfo(const char *pcStatus, const char *pcStart, const char *pcEnd,
                               uint32_t uiDuration) {
    if (pcStatus == nullptr || pcStart == nullptr || pcEnd == nullptr) {
        RecordFault(WAP_SPOT, kErrNullArgument);
        return kErrFailed;
    }
    // Whatever is not "TRUE" switches off, also what is not "FALSE": bundles depend on it.
    const uint32_t uiEnable = VT_OS_StrCaseCmp(pcStatus, "TRUE") == 0 ? 1 : 0;
    WAP_TRACE(kTraceEntries,
              "VT_JNI_setLANDHCPInfo  Status:%u , startIp:%s  endIp:%s duration:%u \n\r", uiEnable,
              pcStart, pcEnd, uiDuration);
    PlatformBlock stBlock;
    auto *pstRequest = MakeRecord<DhcpSet>(stBlock, WAP_SPOT);
    if (pstRequest == nullptr) {
        return kErrFailed;
    }
    pstRequest->uiLan = 1;
    pstRequest->uiEnable = uiEnable;
    pstRequest->uiLease = uiDuration;
    PutWholeField(pstRequest->acPoolStart, pcStart);
    PutWholeField(pstRequest->acPoolEnd, pcEnd);
    pstRequest->ucChanged = kDhcpChanged;
    return AskChange(WAP_SPOT, kSetDhcp, pstRequest, sizeof(*pstRequest));
}
