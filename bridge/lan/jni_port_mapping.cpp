#include "lan/jni_port_mapping.h"

#include "common/bulk_text.h"
#include "common/fields.h"
#include "common/jni_common.h"
#include "common/list_answer.h"
#include "common/owners.h"
#include "common/report.h"
#include "common/requests.h"
#include "records/port_mapping.h"
#include "records/wan_record.h"

using namespace wap;

namespace {

constexpr GeneralRoute kAskWan = {"gulm", 48, kRpcGetWanRecord};
constexpr GeneralRoute kAskTable = {"gulm", 48, kRpcGetPortMappingTable};
constexpr GeneralRoute kAskNum = {"gulm", 87, kRpcGetPortMappingNum};
/// By the WAN connection's kind.
constexpr GeneralRoute kAskEntry[] = {
    {"gulm", 87, kRpcGetPortMappingOfKind0},
    {"gulm", 87, kRpcGetPortMappingOfKind1},
};
constexpr uint32_t kConnKinds = sizeof(kAskEntry) / sizeof(kAskEntry[0]);
constexpr GeneralRoute kAdd = {"osgi_proxy", 0, kRpcAddPortMapping};
constexpr GeneralRoute kDelete = {"osgi_proxy", 0, kRpcDelPortMapping};
constexpr GeneralRoute kSwitch = {"osgi_proxy", 0, kRpcSwitchPortMapping};

/// What each row, and the object around them, may take up in the list's text.
constexpr uint32_t kTextPerRow = 512;
constexpr uint32_t kRowSize = sizeof(PortMappingRow);
/// No table is longer than the longest bulk block.
constexpr uint32_t kRowsMax = kBlockMax / kRowSize;
constexpr uint32_t kErrNoList = 1;
constexpr uint32_t kErrUnknownKind = 1;

uint32_t RefuseNull(SourceSpot stSpot, uint32_t uiWanIndex) {
    return Recorded(stSpot, kErrNullArgument, uiWanIndex);
}

bool MayHaveMappings(const WanRecord &stWan) {
    return stWan.uiMappingGate == 1 && (stWan.uiMappingMode == 0 || stWan.uiMappingMode == 2);
}

/// Asks for the record of a WAN connection that may have mappings.
uint32_t FindMappableWan(SourceSpot stSpot, uint32_t uiWanIndex, uint32_t uiInstId,
                         WanRecord &stWan) {
    uint32_t uiResult = VT_API_getOsgiWanInfoByWanIndex(uiWanIndex, &stWan);
    if (uiResult == 0 && !MayHaveMappings(stWan)) {
        uiResult = kErrNotMappable;
    }
    return Recorded(stSpot, uiResult, uiWanIndex, uiInstId);
}

/// Names a WAN connection as the services do, and traces the numbers.
PortMappingWan NumbersOf(const WanRecord &stWan) {
    WAP_TRACE(kTraceEntries,
              "VT_API_CoverWanInfo uiWANDevIns:%u,  uiWANConnDevIns:%u  uiWANConnIns:%u \n\r",
              stWan.uiWanDevIns, stWan.uiWanConnDevIns, stWan.uiWanConnIns);
    return {stWan.uiConnKind, stWan.uiWanDevIns, stWan.uiWanConnDevIns, stWan.uiWanConnIns};
}

/// Sends a change; the platform's code, recorded.
template <class Request>
uint32_t SendChange(SourceSpot stSpot, const GeneralRoute &stRoute, const Request &stRequest,
                    uint32_t uiWanIndex, uint32_t uiInstId) {
    PortMappingChangeReply stReply = {};
    return Recorded(stSpot, Ask(stRoute, stRequest, stReply), uiWanIndex, uiInstId);
}

uint32_t FailList(SourceSpot stSpot, uint32_t uiWanIndex, uint32_t uiInstId = 0) {
    return Recorded(stSpot, kErrNoList, uiWanIndex, uiInstId);
}

uint32_t AddMapping(const JsonValue &stMaps, const PortMappingRow &stRow) {
    const PortMappingEntry &stEntry = stRow.stEntry;
    const FieldText stProtocol(stEntry.acProtocol);
    const FieldText stClient(stEntry.acInternalClient);
    const char *pcEnabled = stEntry.uiEnable == kMappingOn ? "TRUE" : "FALSE";
    const JsonItem astItems[] = {
        {"PortMappingIndex", stRow.uiInstId, kItemInt, kEmptyAsText},
        {"PortMappingEnabled", reinterpret_cast<uintptr_t>(pcEnabled), kItemText, kEmptyAsText},
        {"ExternalPort", stEntry.uiExternalPort, kItemInt, kEmptyAsText},
        {"InternalPort", stEntry.uiInternalPort, kItemInt, kEmptyAsText},
        {"PortMappingProtocol", stProtocol.Word(), kItemText, kEmptyAsText},
        {"InternalClient", stClient.Word(), kItemText, kEmptyAsText},
    };
    return AppendObject(WAP_SPOT, stMaps, astItems)
               ? 0
               : FailList(WAP_SPOT, stRow.uiWanIndex, stRow.uiInstId);
}

/// Adds the group of a run of rows of one WAN connection.
uint32_t AddGroup(const JsonValue &stGroups, const PortMappingRow *pstRows, uint32_t uiCount) {
    const uint32_t uiWanIndex = pstRows[0].uiWanIndex;
    JsonValue stMaps(JNI_JSON_ObjNewArray());
    if (!stMaps) {
        return FailList(WAP_SPOT, uiWanIndex);
    }
    uint32_t uiResult = 0;
    for (uint32_t i = 0; i < uiCount && uiResult == 0; ++i) {
        uiResult = AddMapping(stMaps, pstRows[i]);
    }
    WanRecord stWan = {};
    if (uiResult == 0) {
        uiResult = VT_API_getOsgiWanInfoByWanIndex(uiWanIndex, &stWan);
    }
    if (uiResult != 0) {
        return uiResult;
    }
    const FieldText stName(stWan.acName);
    const JsonItem astItems[] = {
        {"WANName", stName.Word(), kItemText, kEmptyAsText},
        {"MapList", reinterpret_cast<uintptr_t>(stMaps.Release()), kItemObject, kEmptyAsText},
    };
    return AppendObjectOrFail(WAP_SPOT, stGroups, astItems) ? 0 : FailList(WAP_SPOT, uiWanIndex);
}

/// The rows before the one that ends the table.
uint32_t CountRows(const PortMappingRow *pstRows, uint32_t uiCount) {
    uint32_t uiRows = 0;
    while (uiRows < uiCount && pstRows[uiRows].uiWanIndex != 0) {
        ++uiRows;
    }
    return uiRows;
}

/// The rows from the first on that belong to its WAN connection. Rows further on may as well: they
/// make another group, deliberately.
uint32_t CountRun(const PortMappingRow *pstRows, uint32_t uiCount) {
    uint32_t uiRun = 1;
    while (uiRun < uiCount && pstRows[uiRun].uiWanIndex == pstRows[0].uiWanIndex) {
        ++uiRun;
    }
    return uiRun;
}

}  // namespace

uint32_t VT_JNI_addPortMapping(uint32_t uiWanIndex, uint32_t uiExternalPort,
                               uint32_t uiInternalPort, const char *pcProtocol,
                               const char *pcInternalClient) {
    WanRecord stWan = {};
    if (FindMappableWan(WAP_SPOT, uiWanIndex, 0, stWan) != 0) {
        return kErrFailed;
    }
    AddPortMappingRequest stRequest = {};
    stRequest.stWan = NumbersOf(stWan);
    PortMappingEntry &stEntry = stRequest.stEntry;
    stEntry.uiEnable = kMappingOn;
    stEntry.uiExternalPort = uiExternalPort;
    stEntry.uiExternalPortEnd = uiExternalPort;
    stEntry.uiInternalPort = uiInternalPort;
    stEntry.uiInternalPortCopy = uiInternalPort;
    PutField(stEntry.acProtocol, pcProtocol);
    PutField(stEntry.acInternalClient, pcInternalClient);
    const uint32_t uiResult = SendChange(WAP_SPOT, kAdd, stRequest, uiWanIndex, 0);
    if (uiResult == 0) {
        return 0;
    }
    return uiResult == kErrMappingRefused ? kErrNotPossible : kErrFailed;
}

uint32_t VT_JNI_deletePortMapping(uint32_t uiWanIndex, uint32_t uiInstId) {
    WanRecord stWan = {};
    if (FindMappableWan(WAP_SPOT, uiWanIndex, uiInstId, stWan) != 0) {
        return kErrFailed;
    }
    const DelPortMappingRequest stRequest = {NumbersOf(stWan), uiInstId};
    return SendChange(WAP_SPOT, kDelete, stRequest, uiWanIndex, uiInstId) == 0 ? 0 : kErrFailed;
}

uint32_t VT_JNI_setPortMappingSwitch(uint32_t uiWanIndex, uint32_t uiInstId, uint32_t uiEnable) {
    SwitchPortMappingRequest stRequest = {};
    const uint32_t uiFetched = VT_API_getPortMapping(uiWanIndex, uiInstId, &stRequest.stEntry);
    if (uiFetched != 0) {
        RecordFault(WAP_SPOT, uiFetched, uiWanIndex, uiInstId);
        return kErrNotPossible;
    }
    const uint32_t uiWanted = uiEnable != 0 ? kMappingOn : 0;
    if (stRequest.stEntry.uiEnable == uiWanted) {
        return 0;
    }
    stRequest.stEntry.uiEnable = uiWanted;
    stRequest.uiChanges |= kChangeEnable;
    stRequest.uiInstId = uiInstId;
    // Asked again, and not checked again: the entry that came is proof enough.
    WanRecord stWan = {};
    const uint32_t uiFound = VT_API_getOsgiWanInfoByWanIndex(uiWanIndex, &stWan);
    if (uiFound != 0) {
        RecordFault(WAP_SPOT, uiFound, uiWanIndex, uiInstId);
        return kErrFailed;
    }
    stRequest.stWan = NumbersOf(stWan);
    // Unlike the other changes, a switch never tells the kind; the service expects none.
    stRequest.stWan.uiConnKind = 0;
    return SendChange(WAP_SPOT, kSwitch, stRequest, uiWanIndex, uiInstId) == 0 ? 0 : kErrFailed;
}

uint32_t VT_JNI_getPortMappingInfo(char **ppcText) {
    if (ppcText == nullptr) {
        return RefuseNull(WAP_SPOT, 0);
    }
    VDataDesc stDesc = {};
    uint32_t uiResult = Ask(kAskTable, AllPortMappingsRequest{}, stDesc);
    if (Recorded(WAP_SPOT, uiResult) != 0) {
        return uiResult;
    }
    TraceDesc(WAP_SPOT, stDesc);
    const uint32_t uiCount = stDesc.uiOriginalLen / kRowSize;
    BulkBlock stTable;
    if (uiCount != 0) {
        uiResult = stTable.Make(stDesc);
        if (Recorded(WAP_SPOT, uiResult, stDesc.uiDataID) != 0) {
            return uiResult;
        }
    } else {
        FreeUnread(stDesc.uiDataID);
    }
    return VT_API_getPortMappingJsonStr(static_cast<const PortMappingRow *>(stTable.Lend()),
                                        uiCount, ppcText);
}

uint32_t VT_API_getPortMappingJsonStr(const PortMappingRow *pstRows, uint32_t uiCount,
                                      char **ppcText) {
    if (ppcText == nullptr || (pstRows == nullptr && uiCount != 0)) {
        return RefuseNull(WAP_SPOT, 0);
    }
    JsonValue stGroups(JNI_JSON_ObjNewArray());
    if (!stGroups || uiCount > kRowsMax) {
        return FailList(WAP_SPOT, 0, uiCount);
    }
    const uint32_t uiRows = CountRows(pstRows, uiCount);
    for (uint32_t uiAt = 0; uiAt < uiRows;) {
        const uint32_t uiRun = CountRun(pstRows + uiAt, uiRows - uiAt);
        const uint32_t uiResult = AddGroup(stGroups, pstRows + uiAt, uiRun);
        if (uiResult != 0) {
            return uiResult;
        }
        uiAt += uiRun;
    }
    return ComposeList(WAP_SPOT, __func__, stGroups, kTextPerRow * (uiRows + 1), ppcText);
}

uint32_t VT_API_getPortMapping(uint32_t uiWanIndex, uint32_t uiInstId, PortMappingEntry *pstEntry) {
    if (pstEntry == nullptr) {
        return RefuseNull(WAP_SPOT, uiWanIndex);
    }
    WanRecord stWan = {};
    uint32_t uiResult = FindMappableWan(WAP_SPOT, uiWanIndex, uiInstId, stWan);
    if (uiResult != 0) {
        return uiResult;
    }
    const PortMappingWan stNumbers = NumbersOf(stWan);
    if (stNumbers.uiConnKind >= kConnKinds) {
        return Recorded(WAP_SPOT, kErrUnknownKind, uiWanIndex, uiInstId, stNumbers.uiConnKind);
    }
    const PortMappingRequest stRequest = {stNumbers.uiWanDevIns, stNumbers.uiWanConnDevIns,
                                          stNumbers.uiWanConnIns, uiInstId};
    PortMappingEntry stEntry = {};
    uiResult = Ask(kAskEntry[stNumbers.uiConnKind], stRequest, stEntry);
    if (Recorded(WAP_SPOT, uiResult, uiWanIndex, uiInstId) != 0) {
        return uiResult;
    }
    *pstEntry = stEntry;
    return 0;
}

uint32_t VT_API_getPortMappingNum(uint32_t *puiNum) {
    if (puiNum == nullptr) {
        return RefuseNull(WAP_SPOT, 0);
    }
    PortMappingNumReply stReply = {};
    const uint32_t uiResult = Ask(kAskNum, AllPortMappingsRequest{}, stReply);
    if (Recorded(WAP_SPOT, uiResult) != 0) {
        return uiResult;
    }
    *puiNum = stReply.uiNum;
    return 0;
}

uint32_t VT_API_getOsgiWanInfoByWanIndex(uint32_t uiWanIndex, WanRecord *pstRecord) {
    if (pstRecord == nullptr) {
        return RefuseNull(WAP_SPOT, uiWanIndex);
    }
    WanRecord stRecord = {};
    const uint32_t uiResult = Ask(kAskWan, WanRecordRequest{0, uiWanIndex}, stRecord);
    if (Recorded(WAP_SPOT, uiResult, uiWanIndex) != 0) {
        return uiResult;
    }
    WAP_TRACE(kTraceEntries, "VT_API_getOsgiWanInfoByWanIndex WanInfo \n\r");
    *pstRecord = stRecord;
    return 0;
}
