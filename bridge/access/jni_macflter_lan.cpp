// The wired table of the MAC filter.
#include "access/jni_macflter_tables.h"

using namespace wap;

namespace {

constexpr GeneralRoute kListEntries = {"gulm", 56, kRpcListLanMacFlt};
constexpr GeneralRoute kGetEntry = {"gulm", 56, kRpcGetLanMacFlt};
constexpr GeneralRoute kAddEntry = {"osgi_proxy", 0, kRpcAddLanMacFlt};
constexpr GeneralRoute kDelEntry = {"osgi_proxy", 0, kRpcDelLanMacFlt};

/// Refuses what neither list function can work on. 0, or the code, recorded.
uint32_t CheckArguments(SourceSpot stSpot, const char *const *ppcMacs, uint32_t uiCount,
                        const MacFltRecord *pstRecord) {
    if (pstRecord == nullptr) {
        return Recorded(stSpot, kErrNullArgument);
    }
    return CheckList(stSpot, ppcMacs, uiCount, kMacFltListMax);
}

/// Whether a list function leaves the i-th address alone: undoing is for what was done only.
bool IsUntouched(const MacFltRecord &stRecord, uint32_t uiIndex, uint32_t uiRollback) {
    return uiRollback != kMacFltDo && stRecord.auiInstIds[uiIndex] == 0;
}

}  // namespace

uint32_t wap::ReadTable(SourceSpot stSpot, TableCopy<LanMacFltEntry> &stTable) {
    LanMacFltEntry *pstList = nullptr;
    MacFltInstBlock stIndex = {};
    const uint32_t uiResult = VT_API_getLanMacFltList(&pstList, &stIndex);
    stTable.Adopt(pstList, stIndex.uiCount);
    return Recorded(stSpot, uiResult);
}

uint32_t VT_API_getLanMacFltList(LanMacFltEntry **ppstList, MacFltInstBlock *pstIndex) {
    if (ppstList == nullptr || pstIndex == nullptr) {
        return Recorded(WAP_SPOT, kErrNullArgument);
    }
    MacFltInstBlock stIndex = {};
    PlatformBlock stList;
    const uint32_t uiResult =
        FetchTable<LanMacFltEntry>(WAP_SPOT, kListEntries, kGetEntry, stIndex, stList);
    if (uiResult == 0 && stIndex.uiCount != 0) {
        *pstIndex = stIndex;
        *ppstList = static_cast<LanMacFltEntry *>(stList.Release());
    }
    return uiResult;
}

uint32_t VT_API_addLanMacFlt(const char *pcMac, uint32_t *puiInstId) {
    if (pcMac == nullptr || puiInstId == nullptr) {
        return Recorded(WAP_SPOT, kErrNullArgument);
    }
    LanMacFltEntry stEntry = {};
    stEntry.stBody.uiEnable = 1;
    PutField(stEntry.stBody.acMac, pcMac);
    PutField(stEntry.stBody.acDays, "YYYYYNN");
    PutField(stEntry.stBody.acStart, "00:00");
    PutField(stEntry.stBody.acEnd, "23:59");
    uint32_t uiInstId = 0;
    const uint32_t uiResult = Ask(kAddEntry, stEntry, uiInstId);
    // "Success" also when it failed: deliberate, whoever reads traces expects the line like this.
    WAP_TRACE(kTraceEntries, "VT_API_addLanMacFlt Success uiInstId:%d\r\n",
              static_cast<int32_t>(uiInstId));
    if (Recorded(WAP_SPOT, uiResult) != 0) {
        return uiResult;
    }
    *puiInstId = uiInstId;
    return 0;
}

uint32_t VT_API_delLanMacFlt(uint32_t uiInstId) {
    uint32_t uiReply = 0;
    return Recorded(WAP_SPOT, Ask(kDelEntry, uiInstId, uiReply), uiInstId);
}

uint32_t VT_API_addLanMacFltList(const char *const *ppcMacs, uint32_t uiCount,
                                 MacFltRecord *pstRecord, uint32_t uiRollback) {
    uint32_t uiResult = CheckArguments(WAP_SPOT, ppcMacs, uiCount, pstRecord);
    if (uiResult != 0) {
        return uiResult;
    }
    for (uint32_t i = 0; i < uiCount; ++i) {
        if (ppcMacs[i] == nullptr) {
            WAP_TRACE(kTraceEntries, "VT_API_addLanMacFltList Mac[%d] is Null\r\n",
                      static_cast<int32_t>(i));
            continue;
        }
        if (IsUntouched(*pstRecord, i, uiRollback)) {
            continue;
        }
        uint32_t uiInstId = 0;
        uiResult = VT_API_addLanMacFlt(ppcMacs[i], &uiInstId);
        if (uiResult == 0) {
            pstRecord->auiInstIds[i] = uiInstId;
            continue;
        }
        RecordFault(WAP_SPOT, uiResult, i);
        if (uiRollback == kMacFltDo) {
            (void)VT_API_delLanMacFltList(ppcMacs, i, pstRecord, kMacFltUndo);
            return uiResult;
        }
    }
    return uiResult;
}

uint32_t VT_API_delLanMacFltList(const char *const *ppcMacs, uint32_t uiCount,
                                 MacFltRecord *pstRecord, uint32_t uiRollback) {
    uint32_t uiResult = CheckArguments(WAP_SPOT, ppcMacs, uiCount, pstRecord);
    if (uiResult != 0) {
        return uiResult;
    }
    TableCopy<LanMacFltEntry> stTable;
    uiResult = ReadTable(WAP_SPOT, stTable);
    if (uiResult != 0) {
        return uiResult;
    }
    const uint32_t *puiInstIds = pstRecord->auiInstIds;
    const bool bUndo = uiRollback != kMacFltDo;
    uiResult = DeleteMatches(
        WAP_SPOT, stTable, uiCount, uiRollback, VT_API_delLanMacFlt,
        [=](const LanMacFltEntry &stEntry, uint32_t i) {
            // Undone is the entry that was added, not one of the same address from before.
            return bUndo ? puiInstIds[i] != 0 && puiInstIds[i] == stEntry.uiInstId
                         : SameMac(stEntry.stBody.acMac, ppcMacs[i]);
        },
        [=](const LanMacFltEntry &stEntry, uint32_t i) {
            pstRecord->auiInstIds[i] = stEntry.uiInstId;
        });
    if (bUndo) {
        return DeleteUnnamed(stTable, kLanTableMax, puiInstIds, uiCount, VT_API_delLanMacFlt,
                             uiResult);
    }
    if (uiResult != 0) {
        // Once for each address, deliberately also for one that was listed twice: there is one slot
        // for it, and the filter does the same with one entry as with two.
        (void)VT_API_addLanMacFltList(ppcMacs, uiCount, pstRecord, kMacFltUndo);
    }
    return uiResult;
}
