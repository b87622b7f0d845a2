#include "wan/jni_wan_info.h"

#include "common/fields.h"
#include "common/jni_common.h"
#include "common/list_answer.h"
#include "common/owners.h"
#include "common/report.h"
#include "common/requests.h"

using namespace wap;

namespace {

constexpr GeneralRoute kAskList = {"gulm", 48, kRpcGetWanList};

constexpr uint32_t kErrNoMemory = 1;
constexpr uint32_t kErrNoName = 1;

/// What stands before the VLAN in a connection's name.
constexpr char kVlanMark[] = "_VID_";

/// The list in a block of its own. 0; 1 without memory; the platform's code.
uint32_t MakeWanList(SourceSpot stSpot, PlatformBlock &stBlock) {
    if (!stBlock.Make(sizeof(WanIfList), stSpot)) {
        return Recorded(stSpot, kErrNoMemory, static_cast<uint32_t>(sizeof(WanIfList)));
    }
    return AskWanList(*static_cast<WanIfList *>(stBlock.Lend()));
}

const WanIfList &ListIn(const PlatformBlock &stBlock) {
    return *static_cast<const WanIfList *>(stBlock.Lend());
}

/// A text begins with the decimal digits of a number.
bool BeginsWithNumber(const char *pcText, uint32_t uiNumber) {
    const char *pcAt = pcText;
    uint64_t ulValue = 0;
    for (; *pcAt >= '0' && *pcAt <= '9' && ulValue <= UINT32_MAX; ++pcAt) {
        ulValue = ulValue * 10 + static_cast<uint32_t>(*pcAt - '0');
    }
    return pcAt != pcText && ulValue == uiNumber;
}

}  // namespace

WanPlace wap::SplitWanIndex(uint32_t uiWanIndex) {
    uint32_t uiKind = 0;
    uint8_t ucWanDev = 0;
    uint8_t ucConnDev = 0;
    uint16_t usConnIns = 0;
    VT_API_ParseWanIndex(uiWanIndex, &uiKind, &ucWanDev, &ucConnDev, &usConnIns);
    return {uiKind, ucWanDev, ucConnDev, usConnIns};
}

uint32_t wap::AskWanList(WanIfList &stList) {
    const uint32_t uiResult = AskBytes(kAskList, nullptr, 0, stList);
    if (uiResult != 0) {
        stList = {};
    }
    return Recorded(WAP_SPOT, uiResult);
}

void VT_API_ParseWanIndex(uint32_t uiWanIndex, uint32_t *puiKind, uint8_t *pucWanDev,
                          uint8_t *pucConnDev, uint16_t *pusConnIns) {
    if (puiKind != nullptr) {
        *puiKind = uiWanIndex >> 28;
    }
    if (pucWanDev != nullptr) {
        *pucWanDev = static_cast<uint8_t>(uiWanIndex >> 20);
    }
    if (pucConnDev != nullptr) {
        *pucConnDev = static_cast<uint8_t>(uiWanIndex >> 12);
    }
    if (pusConnIns != nullptr) {
        *pusConnIns = static_cast<uint16_t>(uiWanIndex & 0xFFF);
    }
}

uint32_t VT_API_GetWanIfName(uint32_t uiWanIndex, char *pcName) {
    if (pcName == nullptr) {
        return Recorded(WAP_SPOT, kErrNoName, uiWanIndex);
    }
    const WanPlace stPlace = SplitWanIndex(uiWanIndex);
    if (stPlace.uiKind != kWanKindIp && stPlace.uiKind != kWanKindPpp) {
        return kErrNoName;
    }
    (void)VT_OS_Snprintf_S(pcName, kWanIfNameSize, kWanIfNameSize - 1, "wan%u.%u.%s%u",
                           stPlace.uiWanDev, stPlace.uiConnDev,
                           stPlace.uiKind == kWanKindIp ? "ip" : "ppp", stPlace.uiConnIns);
    return 0;
}

uint32_t VT_API_IsTR069Exsit(uint32_t *puiFound, uint32_t *puiWanIndex) {
    PlatformBlock stBlock;
    const uint32_t uiResult = MakeWanList(WAP_SPOT, stBlock);
    if (uiResult != 0) {
        return uiResult;
    }
    const WanIfList &stList = ListIn(stBlock);
    for (uint32_t i = 0; i < CountWans(stList); ++i) {
        const WanIfListEntry &stEntry = stList.astEntries[i];
        if (VT_OS_StrCaseStr(FieldText(stEntry.acName).Lend(), kManagementMark) == nullptr) {
            continue;
        }
        WAP_TRACE(kTraceEntries, "tr069 wan index:0x%x \r\n", stEntry.uiWanIndex);
        if (puiFound != nullptr) {
            *puiFound = 1;
        }
        if (puiWanIndex != nullptr) {
            *puiWanIndex = stEntry.uiWanIndex;
        }
        break;
    }
    return 0;
}

uint32_t VT_API_IsVlanExsit(uint32_t uiVlan, uint32_t *puiFound) {
    PlatformBlock stBlock;
    const uint32_t uiResult = MakeWanList(WAP_SPOT, stBlock);
    if (uiResult != 0) {
        return uiResult;
    }
    const WanIfList &stList = ListIn(stBlock);
    for (uint32_t i = 0; i < CountWans(stList); ++i) {
        const FieldText stName(stList.astEntries[i].acName);
        const char *pcMark = VT_OS_StrCaseStr(stName.Lend(), kVlanMark);
        if (pcMark == nullptr) {
            // The end of the search, deliberately: creating connections on gateways in the field
            // rests on those behind an untagged one not being seen.
            break;
        }
        if (BeginsWithNumber(pcMark + sizeof(kVlanMark) - 1, uiVlan)) {
            if (puiFound != nullptr) {
                *puiFound = 1;
            }
            break;
        }
    }
    return 0;
}

uint32_t VT_API_ConvertWanListToJson(const WanIfListEntry *pstFirst, uint32_t uiCount, char *pcOut,
                                     uint32_t uiOutCap) {
    if ((pstFirst == nullptr && uiCount != 0) || pcOut == nullptr) {
        return Recorded(WAP_SPOT, kErrFailed, uiCount, uiOutCap);
    }
    JsonValue stList(JNI_JSON_ObjNewArray());
    if (!stList) {
        return Recorded(WAP_SPOT, kErrFailed, uiCount);
    }
    for (uint32_t i = 0; i < uiCount && i < kWansMax; ++i) {
        const FieldText stName(pstFirst[i].acName);
        const JsonItem astItems[] = {
            {"Index", pstFirst[i].uiWanIndex, kItemInt, kEmptyAsText},
            {"Name", stName.Word(), kItemText, kEmptyAsText},
        };
        if (!AppendObject(WAP_SPOT, stList, astItems)) {
            return Recorded(WAP_SPOT, kErrFailed, pstFirst[i].uiWanIndex);
        }
    }
    const JsonItem stItem = {"List", reinterpret_cast<uintptr_t>(stList.Lend()), kItemObject,
                             kEmptyAsText};
    const uint32_t uiResult = Compose(&stItem, 1, pcOut, uiOutCap, 0, Completeness::kWhole);
    if (uiResult != kErrFailed) {
        // Attached, or released by the attempt.
        (void)stList.Release();
    }
    return Recorded(WAP_SPOT, uiResult, uiOutCap);
}
