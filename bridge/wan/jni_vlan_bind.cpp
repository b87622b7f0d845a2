#include "wan/jni_vlan_bind.h"

#include <string.h>

#include "common/fields.h"
#include "common/jni_common.h"
#include "common/list_answer.h"
#include "common/owners.h"
#include "common/report.h"
#include "common/requests.h"
#include "common/scan.h"
#include "records/vlan_bind.h"

using namespace wap;

namespace {

constexpr GeneralRoute kAskLanPorts = {"gulm", 50, kRpcGetLanPortNum};
constexpr GeneralRoute kAskLanBind = {"gulm", 107, kRpcGetLanVlanBind};
constexpr GeneralRoute kAskWlanBinds = {"app_m", 249, kRpcGetWlanVlanBind};

constexpr uint32_t kErrRefused = 1;
constexpr uint32_t kErrNoList = 1;
constexpr uint32_t kCheckedMax = 128;
constexpr uint32_t kListMax = 1088;

struct VlanPair {
    int64_t lUser = 0;
    int64_t lWan = 0;
};

/// Checks the pair that a text begins with. A text without a second number leaves that of the pair
/// before it in place, deliberately: bundles that bind several VLANs to one WAN-side VLAN may say
/// it once.
uint32_t CheckPair(const char *pcText, VlanPair &stPair) {
    if (!ScanNumber(pcText, stPair.lUser)) {
        return Recorded(WAP_SPOT, kErrRefused);
    }
    if (*pcText == '/') {
        ++pcText;
        (void)ScanNumber(pcText, stPair.lWan);
    }
    const int64_t alVlans[] = {stPair.lUser, stPair.lWan};
    for (const int64_t lVlan : alVlans) {
        if (lVlan < kVlanFirst || lVlan > kVlanLast) {
            const bool bTooLarge = lVlan == kScanTooLarge || lVlan == -kScanTooLarge;
            return Recorded(WAP_SPOT, kErrRefused,
                            bTooLarge ? UINT32_MAX : static_cast<uint32_t>(lVlan));
        }
    }
    return 0;
}

uint32_t SendChange(SourceSpot stSpot, const VlanBindReq &stRequest) {
    VlanBindReply stReply = {};
    return Recorded(stSpot,
                    JNI_MSG_VlanBindRpcCall("osgi_proxy", 0, kRpcChangeVlanBind, &stRequest,
                                            sizeof(stRequest), &stReply, sizeof(stReply)),
                    stRequest.uiOperation);
}

/// Appends a row. 0; 1 when there is no memory for it; uiRefusal becomes the code of a list that
/// refuses it, or 0.
uint32_t AddRow(json_object *pstList, const char *pcInterface, const char *pcBind,
                uint32_t &uiRefusal) {
    const JsonItem astRow[] = {
        {"LanInterface", reinterpret_cast<uintptr_t>(pcInterface), kItemText, kEmptyAsText},
        {"Bind", reinterpret_cast<uintptr_t>(pcBind), kItemText, kEmptyAsText},
    };
    return AppendOrTell(WAP_SPOT, pstList, astRow, 2, uiRefusal) ? 0 : kErrNoList;
}

/// Asks for a LAN port's binding and lists the port if it has one.
uint32_t AddLanPort(json_object *pstList, uint32_t uiPort, uint32_t &uiRefusal) {
    LanVlanBindInfo stInfo = {};
    const uint32_t uiResult = Ask(kAskLanBind, LanVlanBindReq{uiPort}, stInfo);
    if (Recorded(WAP_SPOT, uiResult, uiPort) != 0) {
        return uiResult;
    }
    const FieldText stBind(stInfo.acBind);
    const FieldText stEthType(stInfo.acEthType);
    WAP_TRACE(kTraceEntries,
              "\r\n uiRet:0x%x, uiInstID:%u, Mode:%u, Vlan:%s, Mac:%u, EthType:%s\r\n", uiResult,
              uiPort, stInfo.uiMode, stBind.Lend(), stInfo.uiMac, stEthType.Lend());
    if (stInfo.uiMode != kBoundToVlan) {
        return 0;
    }
    char acName[16] = {};
    (void)VT_OS_Snprintf_S(acName, sizeof(acName), sizeof(acName) - 1, "LAN%u", uiPort);
    return AddRow(pstList, acName, stBind.Lend(), uiRefusal);
}

/// Lists an SSID, whatever its mode.
uint32_t AddSsid(json_object *pstList, const WlanVlanBind &stSsid, uint32_t &uiRefusal) {
    // A name has room for three digits; more are cut.
    char acName[8] = {};
    (void)VT_OS_Snprintf_S(acName, sizeof(acName), sizeof(acName) - 1, "SSID%d",
                           static_cast<int32_t>(stSsid.uiSsid));
    const FieldText stBind(stSsid.acBind);
    WAP_TRACE(kTraceEntries, "\r\n wlan uiInstID:%u, Mode:%u, Vlan:%s\r\n", stSsid.uiSsid,
              stSsid.uiMode, stBind.Lend());
    return AddRow(pstList, acName, stBind.Lend(), uiRefusal);
}

}  // namespace

uint32_t VT_JNI_CheckVlanBind(const char *pcBind) {
    if (pcBind == nullptr) {
        return 0;
    }
    char acCopy[kCheckedMax] = {};
    PutField(acCopy, pcBind);
    VlanPair stPair;
    if (strchr(acCopy, ',') == nullptr) {
        return CheckPair(acCopy, stPair);
    }
    char *pcRest = nullptr;
    const char *pcToken = VT_OS_StrtokR(acCopy, ",", &pcRest);
    // Nothing but commas passes, deliberately: "osgi_proxy" decides what it means.
    uint32_t uiResult = 0;
    while (pcToken != nullptr && uiResult == 0) {
        uiResult = CheckPair(pcToken, stPair);
        const char *pcLast = pcRest == nullptr ? "" : pcRest;
        if (uiResult == 0 && strchr(pcLast, ',') == nullptr) {
            return CheckPair(pcLast, stPair);
        }
        if (uiResult == 0) {
            pcToken = VT_OS_StrtokR(nullptr, ",", &pcRest);
            uiResult = pcToken == nullptr ? Recorded(WAP_SPOT, kErrRefused) : 0;
        }
    }
    return uiResult;
}

uint32_t JNI_MSG_VlanBindRpcCall(const char *, uint32_t uiSndMid, uint32_t uiRpcId,
                                 const void *pvReq, uint32_t uiReqLen, void *pvRsp,
                                 uint32_t uiRspCap) {
    if (pvReq == nullptr || pvRsp == nullptr) {
        return Recorded(WAP_SPOT, kErrRefused, uiRpcId);
    }
    return Recorded(WAP_SPOT, CallProcess({"osgi_proxy", uiSndMid, uiRpcId, kGeneralTimeoutMs}, 0,
                                          pvReq, uiReqLen, pvRsp, uiRspCap));
}

uint32_t VT_JNI_SetVlanBind(const char *pcInterface, const char *pcBind) {
    if (HasNoText(pcInterface) || HasNoText(pcBind)) {
        return Recorded(WAP_SPOT, kErrRefused);
    }
    const uint32_t uiResult = VT_JNI_CheckVlanBind(pcBind);
    if (Recorded(WAP_SPOT, uiResult) != 0) {
        return uiResult;
    }
    VlanBindReq stRequest = {};
    stRequest.uiOperation = kVlanBindSet;
    PutField(stRequest.acInterface, pcInterface);
    PutField(stRequest.acBind, pcBind);
    return SendChange(WAP_SPOT, stRequest);
}

uint32_t VT_JNI_DelVlanBind(const char *pcInterface) {
    if (pcInterface == nullptr) {
        return Recorded(WAP_SPOT, kErrRefused);
    }
    VlanBindReq stRequest = {};
    stRequest.uiOperation = kVlanBindClear;
    PutField(stRequest.acInterface, pcInterface);
    return SendChange(WAP_SPOT, stRequest);
}

uint32_t VT_API_GetLanVlanBindApi(json_object *pstList) {
    PlatformBlock stBlock;
    if (pstList == nullptr || !stBlock.Make(sizeof(LanPortNum), WAP_SPOT)) {
        return Recorded(WAP_SPOT, kErrNoList);
    }
    auto &stPorts = *static_cast<LanPortNum *>(stBlock.Lend());
    uint32_t uiResult = Ask(kAskLanPorts, LanPortNumReq{1}, stPorts);
    if (Recorded(WAP_SPOT, uiResult) != 0) {
        return uiResult;
    }
    WAP_TRACE(kTraceEntries, "\r\n lan InstNum:%u\r\n", stPorts.uiCount);
    const uint32_t uiPorts = stPorts.uiCount < kLanPortsMax ? stPorts.uiCount : kLanPortsMax;
    uint32_t uiLastRefusal = 0;
    for (uint32_t uiPort = 1; uiPort <= uiPorts; ++uiPort) {
        uint32_t uiRefusal = 0;
        uiResult = AddLanPort(pstList, uiPort, uiRefusal);
        if (uiResult != 0) {
            return uiResult;
        }
        uiLastRefusal = uiRefusal != 0 ? uiRefusal : uiLastRefusal;
    }
    return uiLastRefusal;
}

uint32_t VT_API_GetWlanVlanBindApi(json_object *pstList) {
    PlatformBlock stBlock;
    if (pstList == nullptr || !stBlock.Make(sizeof(WlanVlanBindList), WAP_SPOT)) {
        return Recorded(WAP_SPOT, kErrNoList);
    }
    auto &stBinds = *static_cast<WlanVlanBindList *>(stBlock.Lend());
    uint32_t uiResult = AskBytes(kAskWlanBinds, nullptr, 0, stBinds);
    if (Recorded(WAP_SPOT, uiResult) != 0) {
        return uiResult;
    }
    WAP_TRACE(kTraceEntries, "\r\n wlan InstID:%u num:%u\r\n", stBinds.astBinds[0].uiSsid,
              stBinds.uiCount);
    const uint32_t uiSsids = stBinds.uiCount < kWlanBindsMax ? stBinds.uiCount : kWlanBindsMax;
    uint32_t uiRefusal = 0;
    // cppcheck-suppress knownConditionTrueFalse ; misses that the reply was written to stBinds
    for (uint32_t i = 0; i < uiSsids; ++i) {
        // Unlike with the LAN ports, a success forgets the refusals before it, deliberately.
        uiResult = AddSsid(pstList, stBinds.astBinds[i], uiRefusal);
        if (uiResult != 0) {
            return uiResult;
        }
    }
    return uiRefusal;
}

uint32_t VT_JNI_GetAllVlanBind(char **ppcText) {
    if (ppcText == nullptr) {
        return Recorded(WAP_SPOT, kErrRefused);
    }
    JsonValue stList(JNI_JSON_ObjNewArray());
    if (!stList) {
        return Recorded(WAP_SPOT, kErrNoList);
    }
    uint32_t uiResult = VT_API_GetLanVlanBindApi(stList.Lend());
    if (uiResult == 0) {
        uiResult = VT_API_GetWlanVlanBindApi(stList.Lend());
    }
    if (Recorded(WAP_SPOT, uiResult) != 0) {
        return uiResult;
    }
    return ComposeList(WAP_SPOT, nullptr, stList, kListMax, ppcText);
}
