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

/// Writes an output that somebody wants.
template <class Number>
void PutUnlessNull(Number *pOut, uint32_t uiValue) {
    if (pOut != nullptr) {
        *pOut = static_cast<Number>(uiValue);
    }
}

/// Asks for the list and hands out its connections, until fnGoesOn says no.
/// @return 0; 1 without memory; the platform's code
template <class Visitor>
uint32_t VisitWans(SourceSpot stSpot, Visitor fnGoesOn) {
    PlatformBlock stBlock;
    if (!stBlock.Make(sizeof(WanIfList), stSpot)) {
        return Recorded(stSpot, kErrNoMemory, static_cast<uint32_t>(sizeof(WanIfList)));
    }
    auto &stList = *static_cast<WanIfList *>(stBlock.Lend());
    const uint32_t uiResult = AskWanList(stList);
    if (uiResult != 0) {
        return uiResult;
    }
    for (uint32_t i = 0; i < CountWans(stList); ++i) {
        const FieldText stName(stList.astEntries[i].acName);
        if (!fnGoesOn(stList.astEntries[i].uiWanIndex, stName.Lend())) {
            break;
        }
    }
    return 0;
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
    PutUnlessNull(puiKind, uiWanIndex >> 28);
    PutUnlessNull(pucWanDev, uiWanIndex >> 20 & 0xFF);
    PutUnlessNull(pucConnDev, uiWanIndex >> 12 & 0xFF);
    PutUnlessNull(pusConnIns, uiWanIndex & 0xFFF);
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
    return VisitWans(WAP_SPOT, [=](uint32_t uiWanIndex, const char *pcName) {
        if (VT_OS_StrCaseStr(pcName, kManagementMark) == nullptr) {
            return true;
        }
        WAP_TRACE(kTraceEntries, "tr069 wan index:0x%x \r\n", uiWanIndex);
        PutUnlessNull(puiFound, 1u);
        PutUnlessNull(puiWanIndex, uiWanIndex);
        return false;
    });
}

uint32_t VT_API_IsVlanExsit(uint32_t uiVlan, uint32_t *puiFound) {
    return VisitWans(WAP_SPOT, [=](uint32_t, const char *pcName) {
        const char *pcMark = VT_OS_StrCaseStr(pcName, kVlanMark);
        if (pcMark == nullptr) {
            // The end of the search, deliberately: creating connections on gateways in the field
            // rests on those behind an untagged one not being seen.
            return false;
        }
        if (!BeginsWithNumber(pcMark + sizeof(kVlanMark) - 1, uiVlan)) {
            return true;
        }
        PutUnlessNull(puiFound, 1u);
        return false;
    });
}

uint32_t VT_API_ConvertWanListToJson(const WanIfListEntry *pstFirst, uint32_t uiWans, char *pcOut,
                                     uint32_t uiOutCap) {
    if ((pstFirst == nullptr && uiWans != 0) || pcOut == nullptr) {
        return Recorded(WAP_SPOT, kErrFailed, uiWans, uiOutCap);
    }
    JsonValue stList(JNI_JSON_ObjNewArray());
    if (!stList) {
        return Recorded(WAP_SPOT, kErrFailed, uiWans);
    }
    for (uint32_t i = 0; i < uiWans && i < kWansMax; ++i) {
        const FieldText stName(pstFirst[i].acName);
        const JsonItem astItems[] = {
            {"Index", pstFirst[i].uiWanIndex, kItemInt, kEmptyAsText},
            {"Name", stName.Word(), kItemText, kEmptyAsText},
        };
        if (!AppendObject(WAP_SPOT, stList, astItems)) {
            return Recorded(WAP_SPOT, kErrFailed, pstFirst[i].uiWanIndex);
        }
    }
    return ComposeListInto(WAP_SPOT, stList, pcOut, uiOutCap);
}
