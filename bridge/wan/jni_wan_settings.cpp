// What WAN connections may be set to: reading, checking and tracing it.
#include <string.h>

#include "common/fields.h"
#include "common/jni_common.h"
#include "common/report.h"
#include "wan/jni_wan_info.h"

using namespace wap;

namespace {

bool Contains(const char *pcText, const char *pcPart) {
    return VT_OS_StrCaseStr(pcText, pcPart) != nullptr;
}

// ---- checks ----

constexpr uint32_t kErrRefused = 1;
constexpr uint32_t kIpModeMax = 3;
constexpr uint32_t kVlanModeMax = 2;

/// What a connection without IPv4 has no use for. Whether it uses DNS is not among it,
/// deliberately.
constexpr WanSetting kIpv4Only[] = {kWanAddressingType, kWanExternalIpAddress, kWanSubnetMask,
                                    kWanDefaultGateway, kWanDnsServers};

/// The field of a setting, as the table tells it.
const char *FieldOf(const WanIfPara &stPara, uint32_t uiSetting) {
    return reinterpret_cast<const char *>(&stPara) + kWanSettingRows[uiSetting].usOffset;
}

/// The number that a text says, or 0.
uint32_t NumberIn(const char *pcText) {
    uint32_t uiNumber = 0;
    (void)VT_OS_StrToUInt32(pcText, &uiNumber);
    return uiNumber;
}

uint32_t Refuse(SourceSpot stSpot, uint32_t uiWanIndex, uint32_t uiValue) {
    return Recorded(stSpot, kErrRefused, uiWanIndex, uiValue);
}

uint32_t CheckIpMode(uint32_t uiWanIndex, WanIfPara &stPara, WanSetting) {
    const FieldText stMode(stPara.acIpMode);
    const uint32_t uiMode = NumberIn(stMode.Lend());
    if (uiMode == 0 || uiMode > kIpModeMax) {
        return Refuse(WAP_SPOT, uiWanIndex, uiMode);
    }
    // It is the text that counts from here on, deliberately: a mode of "02" drops nothing.
    if (VT_OS_StrCaseCmp(stMode.Lend(), "2") == 0) {
        for (const WanSetting eSetting : kIpv4Only) {
            stPara.aucSet[eSetting] = 0;
        }
    } else if (VT_OS_StrCaseCmp(stMode.Lend(), "1") == 0) {
        for (uint32_t i = kWanIpv6AddressOrigin; i <= kWanIpv6AftrAddress; ++i) {
            stPara.aucSet[i] = 0;
        }
    }
    return 0;
}

uint32_t CheckLanInterface(uint32_t uiWanIndex, WanIfPara &stPara, WanSetting eSetting) {
    const FieldText stPorts(stPara.acLanInterface);
    return Contains(stPorts.Lend(), "LAN") || Contains(stPorts.Lend(), "SSID")
               ? 0
               : Refuse(WAP_SPOT, uiWanIndex, eSetting);
}

uint32_t CheckVlanMode(uint32_t uiWanIndex, WanIfPara &stPara, WanSetting) {
    const uint32_t uiMode = NumberIn(FieldText(stPara.acVlanMode).Lend());
    return uiMode <= kVlanModeMax ? 0 : Refuse(WAP_SPOT, uiWanIndex, uiMode);
}

/// Unlike with the other settings, the case matters.
uint32_t CheckSwitch(uint32_t uiWanIndex, WanIfPara &stPara, WanSetting eSetting) {
    const char *pcField = FieldOf(stPara, eSetting);
    const uint32_t uiSize = kWanSettingRows[eSetting].usSize;
    return strncmp(pcField, "TRUE", uiSize) == 0 || strncmp(pcField, "FALSE", uiSize) == 0
               ? 0
               : Refuse(WAP_SPOT, uiWanIndex, eSetting);
}

/// There can be only one connection for the management protocol.
uint32_t CheckServices(uint32_t uiWanIndex, WanIfPara &stPara, WanSetting) {
    if (!Contains(FieldText(stPara.acServiceList).Lend(), kManagementMark)) {
        return 0;
    }
    uint32_t uiFound = 0;
    uint32_t uiOther = 0;
    // Where nobody can tell, there is none.
    (void)VT_API_IsTR069Exsit(&uiFound, &uiOther);
    return uiFound == 1 && uiOther != uiWanIndex ? Refuse(WAP_SPOT, uiWanIndex, uiOther) : 0;
}

uint32_t CompleteDnsServers(uint32_t uiWanIndex, WanIfPara &stPara, WanSetting) {
    const uint32_t uiResult =
        VT_API_MergeWanIpv4Dns(uiWanIndex, stPara.acDnsServers, sizeof(stPara.acDnsServers));
    return Recorded(WAP_SPOT, uiResult, uiWanIndex);
}

/// A check of a setting that is set when its turn comes.
struct Check {
    WanSetting eSetting;
    uint32_t (*pfnCheck)(uint32_t uiWanIndex, WanIfPara &stPara, WanSetting eSetting);
};
/// In the order in which they are made. The IP mode comes first: what it takes out needs no check.
constexpr Check kChecks[] = {
    {kWanIpMode, CheckIpMode},           {kWanLanInterface, CheckLanInterface},
    {kWanVlanMode, CheckVlanMode},       {kWanDnsEnabled, CheckSwitch},
    {kWanLanDhcpEnable, CheckSwitch},    {kWanNatEnabled, CheckSwitch},
    {kWanIpv6DsliteEnable, CheckSwitch}, {kWanIpv6PrefixDelegation, CheckSwitch},
    {kWanServiceList, CheckServices},    {kWanDnsServers, CompleteDnsServers},
};

// ---- trace ----

constexpr char kTraceStart[] = "\r\n setWANIf ";

/// Room for the trace of all settings with their fields full.
constexpr uint32_t TraceSize() {
    uint32_t uiSize = sizeof(kTraceStart);
    for (const WanSettingRow &stRow : kWanSettingRows) {
        if (stRow.pcLabel != nullptr) {
            // Comma, blank, colon, brackets and the three digits of a flag.
            uiSize += stRow.usSize + 8;
            for (const char *pcAt = stRow.pcLabel; *pcAt != '\0'; ++pcAt) {
                ++uiSize;
            }
        }
    }
    return uiSize;
}

}  // namespace

uint32_t VT_API_GetWANIfFromJson(json_object *pstJson, WanIfPara *pstPara) {
    if (pstPara == nullptr) {
        RecordFault(WAP_SPOT, kErrNullArgument);
        return 0;
    }
    for (uint32_t i = 0; i < kWanSettings; ++i) {
        const WanSettingRow &stRow = kWanSettingRows[i];
        char *pcField = reinterpret_cast<char *>(pstPara) + stRow.usOffset;
        const uint32_t uiResult =
            JNI_JSON_ObjGetValueString(pstJson, stRow.pcKey, pcField, stRow.usSize);
        VT_API_IsParaSet(uiResult, pcField, &pstPara->aucSet[i]);
    }
    return 0;
}

void VT_API_IsParaSet(uint32_t uiResult, const char *pcField, uint8_t *pucFlag) {
    if (pucFlag != nullptr) {
        *pucFlag = uiResult == 0 && pcField != nullptr && pcField[0] != '\0' ? 1 : 0;
    }
}

uint32_t VT_API_CheckWanPara(uint32_t uiWanIndex, WanIfPara *pstPara) {
    if (pstPara == nullptr) {
        return Recorded(WAP_SPOT, kErrRefused, uiWanIndex);
    }
    uint32_t uiResult = 0;
    for (const Check &stCheck : kChecks) {
        if (uiResult == 0 && pstPara->aucSet[stCheck.eSetting] != 0) {
            uiResult = stCheck.pfnCheck(uiWanIndex, *pstPara, stCheck.eSetting);
        }
    }
    return uiResult;
}

void VT_API_PrintWanInfo(const WanIfPara *pstPara) {
    if (pstPara == nullptr) {
        RecordFault(WAP_SPOT, kErrNullArgument);
        return;
    }
    char acText[TraceSize()] = {};
    uint32_t uiAt = 0;
    const char *pcBefore = kTraceStart;
    for (uint32_t i = 0; i < kWanSettings; ++i) {
        const WanSettingRow &stRow = kWanSettingRows[i];
        if (stRow.pcLabel == nullptr) {
            continue;
        }
        const uint32_t uiLeft = sizeof(acText) - uiAt;
        const uint32_t uiFlag = pstPara->aucSet[i];
        const int32_t iLen =
            VT_OS_Snprintf_S(acText + uiAt, uiLeft, uiLeft - 1, "%s%s:%.*s[%u]", pcBefore,
                             stRow.pcLabel, stRow.usSize, FieldOf(*pstPara, i), uiFlag);
        uiAt += iLen > 0 ? static_cast<uint32_t>(iLen) : 0;
        pcBefore = ", ";
    }
    WAP_TRACE(kTraceEntries, "%s \r\n", acText);
}
