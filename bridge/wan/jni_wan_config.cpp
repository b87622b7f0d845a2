#include "wan/jni_wan_config.h"

#include "common/fields.h"
#include "common/jni_common.h"
#include "common/json_parse.h"
#include "common/owners.h"
#include "common/report.h"
#include "common/requests.h"
#include "records/wan_config.h"
#include "records/wan_info.h"
#include "wan/jni_wan_info.h"

using namespace wap;

namespace {

constexpr GeneralRoute kAdd = {"osgi_proxy", 0, kRpcAddWan};
constexpr GeneralRoute kDelete = {"osgi_proxy", 0, kRpcDelWan};
constexpr GeneralRoute kSet = {"osgi_proxy", 0, kRpcSetWan};
constexpr GeneralRoute kCountPpp = {"gulm", 48, kRpcCountPppConns};
constexpr GeneralRoute kCountIp = {"gulm", 48, kRpcCountIpConns};

constexpr uint32_t kVlanModeMax = 2;
constexpr uint32_t kVlanMax = 4094;
/// A connection has the VLAN already.
constexpr uint32_t kErrVlanInUse = 0xFFFFFFFE;
constexpr uint32_t kErrRefused = 1;

constexpr const char *kConTypes[] = {"IP_Routed", "IP_Bridged", "PPPoE_Bridged", "PPPoE_Routed"};

/// Records a failure of a worker of Java methods, which knows one code only.
template <class... Numbers>
uint32_t Fail(SourceSpot stSpot, uint32_t uiCode, Numbers... uiNumbers) {
    RecordFault(stSpot, uiCode, uiNumbers...);
    return kErrFailed;
}

bool IsConType(const char *pcConType) {
    for (const char *pcKnown : kConTypes) {
        if (VT_OS_StrCaseCmp(pcConType, pcKnown) == 0) {
            return true;
        }
    }
    return false;
}

/// How many connections of a kind a connection device has; the platform's code.
uint32_t Count(SourceSpot stSpot, const GeneralRoute &stRoute, uint32_t uiWanIndex,
               uint32_t &uiCount) {
    const WanPlace stPlace = SplitWanIndex(uiWanIndex);
    WanConnCountReply stReply = {};
    const uint32_t uiResult =
        Ask(stRoute, WanConnCountReq{stPlace.uiWanDev, stPlace.uiConnDev}, stReply);
    uiCount = stReply.uiCount;
    return Recorded(stSpot, uiResult, stRoute.uiRpcId, uiWanIndex);
}

}  // namespace

uint32_t VT_JNI_AddWANIf(const char *pcVlanMode, const char *pcVlan, const char *pcConType,
                         uint32_t *puiWanIndex) {
    if (pcConType == nullptr || puiWanIndex == nullptr) {
        return Fail(WAP_SPOT, kErrNullArgument);
    }
    uint32_t uiVlanMode = 0;
    uint32_t uiVlan = 0;
    uint32_t uiResult = VT_OS_StrToUInt32(pcVlanMode, &uiVlanMode);
    if (uiResult != 0) {
        return Fail(WAP_SPOT, uiResult);
    }
    uiResult = VT_OS_StrToUInt32(pcVlan, &uiVlan);
    if (uiResult != 0) {
        return Fail(WAP_SPOT, uiResult);
    }
    if (uiVlanMode > kVlanModeMax || uiVlan > kVlanMax) {
        return Fail(WAP_SPOT, kErrRefused, uiVlan, uiVlanMode);
    }
    WAP_TRACE(kTraceEntries,
              "\r\n addWANIf pcVlanMode:%s, pcVlan:%s, pcConType:%s, uiVlanMode:%d, uiVlan:%d\r\n",
              pcVlanMode, pcVlan, pcConType, static_cast<int32_t>(uiVlanMode),
              static_cast<int32_t>(uiVlan));
    if (!IsConType(pcConType)) {
        return Fail(WAP_SPOT, kErrRefused, uiVlan, uiVlanMode);
    }
    if (uiVlanMode == 0) {
        uiVlan = 0;
    }
    uint32_t uiInUse = 0;
    uiResult = VT_API_IsVlanExsit(uiVlan, &uiInUse);
    if (uiResult != 0) {
        return Fail(WAP_SPOT, uiResult, uiVlan, uiVlanMode);
    }
    if (uiInUse != 0) {
        return kErrVlanInUse;
    }
    WanAddReq stRequest = {uiVlanMode, uiVlan, {}};
    PutField(stRequest.acConnType, pcConType);
    WanAddReply stReply = {};
    uiResult = Ask(kAdd, stRequest, stReply);
    if (uiResult != 0) {
        return Fail(WAP_SPOT, uiResult, uiVlan, uiVlanMode);
    }
    *puiWanIndex = stReply.uiWanIndex;
    return 0;
}

uint32_t VT_JNI_SetWANIf(uint32_t uiWanIndex, const char *pcJson) {
    WAP_TRACE(kTraceEntries, "VT_JNI_SetWANIf uiWanIndex:0x%x\r\n", uiWanIndex);
    const SecretJson stJson(ParseJson(WAP_SPOT, pcJson, Grammar::kStrict, Secrecy::kSecret));
    if (!stJson) {
        return Fail(WAP_SPOT, kJsonErrObject, uiWanIndex);
    }
    const uint32_t uiResult = VT_API_SetIPWANIf(stJson.Lend(), uiWanIndex);
    return uiResult == 0 ? 0 : Fail(WAP_SPOT, uiResult, uiWanIndex);
}

uint32_t VT_API_SetIPWANIf(json_object *pstJson, uint32_t uiWanIndex) {
    if (pstJson == nullptr) {
        return Recorded(WAP_SPOT, kErrRefused, uiWanIndex);
    }
    SecretBlock stSettings;
    if (!stSettings.Make(sizeof(WanIfPara), WAP_SPOT)) {
        return Recorded(WAP_SPOT, kErrRefused, uiWanIndex,
                        static_cast<uint32_t>(sizeof(WanIfPara)));
    }
    auto &stPara = *static_cast<WanIfPara *>(stSettings.Lend());
    stPara.stPlace = SplitWanIndex(uiWanIndex);
    WAP_TRACE(kTraceEntries, "etype:%d, Id1:%d, id2:%d, Id3:%d \r\n",
              static_cast<int32_t>(stPara.stPlace.uiKind),
              static_cast<int32_t>(stPara.stPlace.uiWanDev),
              static_cast<int32_t>(stPara.stPlace.uiConnDev),
              static_cast<int32_t>(stPara.stPlace.uiConnIns));
    (void)VT_API_GetWANIfFromJson(pstJson, &stPara);
    uint32_t uiResult = VT_API_CheckWanPara(uiWanIndex, &stPara);
    if (uiResult != 0) {
        return Recorded(WAP_SPOT, uiResult, uiWanIndex);
    }
    VT_API_PrintWanInfo(&stPara);
    uiResult = Tell(kSet, stPara);
    if (uiResult == 0 && stPara.aucSet[kWanIpv6DnsServers] != 0) {
        // Not part of what "osgi_proxy" sets, though it gets them too.
        uiResult = VT_API_SetWanIpv6Dns(uiWanIndex, stPara.acIpv6DnsServers);
    }
    return Recorded(WAP_SPOT, uiResult, uiWanIndex);
}

uint32_t VT_JNI_DeleteWANIf(uint32_t uiWanIndex) {
    const WanPlace stPlace = SplitWanIndex(uiWanIndex);
    WanDelReq stRequest = {stPlace.uiKind, stPlace.uiWanDev, stPlace.uiConnDev, stPlace.uiConnIns};
    uint32_t uiResult = Tell(kDelete, stRequest);
    if (uiResult != 0) {
        return Fail(WAP_SPOT, uiResult, uiWanIndex);
    }
    uint32_t uiPppNum = 0;
    uint32_t uiIpNum = 0;
    if (Count(WAP_SPOT, kCountPpp, uiWanIndex, uiPppNum) != 0 ||
        Count(WAP_SPOT, kCountIp, uiWanIndex, uiIpNum) != 0) {
        return kErrFailed;
    }
    // The setter's name in the deletion's trace is deliberate: those who read traces know it.
    WAP_TRACE(kTraceEntries, "VT_JNI_SetWANIf uiWanIndex:0x%x, uiIpNum:%d, uiPppNum:%u \r\n",
              uiWanIndex, static_cast<int32_t>(uiIpNum), uiPppNum);
    if (uiIpNum != 0 || uiPppNum != 0) {
        return 0;
    }
    stRequest.uiOperation = kDelConnDevice;
    uiResult = Tell(kDelete, stRequest);
    // Recorded with the counting's RPC id, deliberately: that is where the fault log's readers
    // look.
    return uiResult == 0 ? 0 : Fail(WAP_SPOT, uiResult, kRpcCountIpConns, uiWanIndex);
}
