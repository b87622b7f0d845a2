// The MAC filter's mode, what is allowed in which, and the steps that go to both of its tables.
#include "access/jni_macflter.h"

#include "access/jni_macflter_tables.h"

using namespace wap;

namespace {

constexpr GeneralRoute kGetMode = {"gulm", 56, kRpcGetMacFltMode};
constexpr GeneralRoute kSetMode = {"osgi_proxy", 0, kRpcSetMacFltMode};

/// Reads the mode alone. The lists may be changed while the filter is off.
uint32_t ReadMode(SourceSpot stSpot, uint32_t *puiMode) {
    uint32_t uiStatus = 0;
    return ZeroOrFailed(stSpot, VT_API_getMacFltMode(puiMode, &uiStatus));
}

/// Adds to the list of a mode. Without bNeedsText the table is not looked at before.
uint32_t AddToList(SourceSpot stSpot, uint32_t uiListsMode, bool bNeedsText,
                   const char *const *ppcMacs, uint32_t uiCount) {
    uint32_t uiMode = 0;
    if (ReadMode(stSpot, &uiMode) != 0) {
        return kErrFailed;
    }
    if (uiMode != uiListsMode) {
        return Recorded(stSpot, kErrFailed, uiMode, uiListsMode);
    }
    if (bNeedsText && VT_JNI_MacfltNullCheck(ppcMacs, uiCount) == 1) {
        return 0;
    }
    return ZeroOrFailed(stSpot, VT_API_addLanHostMacList(ppcMacs, uiCount));
}

/// Deletes from the list of a mode. With bNothingClears a table without any text clears all.
uint32_t DelFromList(SourceSpot stSpot, uint32_t uiListsMode, bool bNothingClears,
                     const char *const *ppcMacs, uint32_t uiCount) {
    uint32_t uiMode = 0;
    if (ReadMode(stSpot, &uiMode) != 0) {
        return kErrFailed;
    }
    if (uiMode != uiListsMode) {
        return 0;
    }
    uint32_t uiResult = 0;
    if (bNothingClears && VT_JNI_MacfltNullCheck(ppcMacs, uiCount) == 1) {
        uiResult = VT_API_clearMacFltList();
    }
    if (uiResult == 0) {
        uiResult = VT_API_delLanHostMacList(ppcMacs, uiCount);
    }
    return ZeroOrFailed(stSpot, uiResult);
}

using LanListStep = uint32_t (*)(const char *const *, uint32_t, MacFltRecord *, uint32_t);

/// A change of both tables: its two steps, and what takes the first back when the second fails.
struct Change {
    LanListStep pfnLan;
    uint32_t (*pfnWlan)(const void *, uint32_t, uint32_t, uint32_t);
    LanListStep pfnUndoLan;
};
constexpr Change kAdding = {VT_API_addLanMacFltList, VT_API_addWLanMacFltList,
                            VT_API_delLanMacFltList};
constexpr Change kDeleting = {VT_API_delLanMacFltList, VT_API_delWLanMacFltList,
                              VT_API_addLanMacFltList};

/// Makes a change of both tables, or of none.
uint32_t ChangeBoth(SourceSpot stSpot, const Change &stChange, const char *const *ppcMacs,
                    uint32_t uiCount) {
    MacFltRecord stRecord = {};
    uint32_t uiResult = stChange.pfnLan(ppcMacs, uiCount, &stRecord, kMacFltDo);
    if (Recorded(stSpot, uiResult, uiCount) != 0) {
        return uiResult;
    }
    uiResult = stChange.pfnWlan(ppcMacs, uiCount, 1, kMacFltDo);
    if (uiResult != 0) {
        RecordFault(stSpot, uiResult, uiCount);
        (void)stChange.pfnUndoLan(ppcMacs, uiCount, &stRecord, kMacFltUndo);
    }
    return uiResult;
}

/// Every entry matches, for a list of one item.
template <class Entry>
bool Any(const Entry &, uint32_t) {
    return true;
}

/// Puts wired entries back that were deleted.
void RestoreLan(const Removed<LanMacFltEntry, kLanTableMax> &stRemoved) {
    const char *apcMacs[kLanTableMax] = {};
    MacFltRecord stRecord = {};
    for (uint32_t i = 0; i < stRemoved.uiCount; ++i) {
        apcMacs[i] = stRemoved.apstEntries[i]->stBody.acMac;
        // The old id is of no use any more; the slot says that the address was deleted.
        stRecord.auiInstIds[i] = 1;
    }
    (void)VT_API_addLanMacFltList(apcMacs, stRemoved.uiCount, &stRecord, kMacFltUndo);
}

/// Room in the text for each address, with the comma before it or the zero behind it.
constexpr uint32_t kMacRoom = sizeof(LanMacFltBody{}.acMac);

/// Writes both tables into a text of uiSize bytes.
uint32_t WriteList(char *pcText, uint32_t uiSize, const TableCopy<LanMacFltEntry> &stLan,
                   const TableCopy<WlanMacFltEntry> &stWlan) {
    for (const LanMacFltEntry &stEntry : stLan) {
        const uint32_t uiResult = VT_API_appendMacFltStr(pcText, uiSize, stEntry.stBody.acMac);
        if (uiResult != 0) {
            return uiResult;
        }
    }
    for (const WlanMacFltEntry &stEntry : stWlan) {
        // Once for all the networks of an address.
        if (VT_OS_StrStr(pcText, stEntry.stBody.acMac) != nullptr) {
            continue;
        }
        const uint32_t uiResult = VT_API_appendMacFltStr(pcText, uiSize, stEntry.stBody.acMac);
        if (uiResult != 0) {
            return uiResult;
        }
    }
    return 0;
}

}  // namespace

uint32_t VT_JNI_setMacFilterMode(uint32_t uiPara) {
    uint32_t uiMode = kMacFltBlackList;
    uint32_t uiStatus = 1;
    const uint32_t uiRead = VT_API_getMacFltMode(&uiMode, &uiStatus);
    if (uiRead != 0) {
        // It can still be set, only not compared with what it is.
        RecordFault(WAP_SPOT, uiRead, uiPara);
    } else if (uiPara == 0 ? uiStatus == 0 : uiStatus == 1 && uiPara == uiMode + 1) {
        return 0;
    }
    if (uiPara != 0) {
        uiMode = uiPara - 1;
    }
    return ZeroOrFailed(WAP_SPOT, VT_API_setMacFltMode(uiMode, uiPara == 0 ? 0 : 1));
}

uint32_t VT_JNI_getMacFilterMode(void) {
    uint32_t uiMode = 0;
    uint32_t uiStatus = 0;
    uint32_t uiAnswer = ZeroOrFailed(WAP_SPOT, VT_API_getMacFltMode(&uiMode, &uiStatus));
    if (uiAnswer == 0 && uiStatus != 0) {
        uiAnswer = uiMode + 1;
    }
    WAP_TRACE(kTraceEntries, "VT_JNI_getMacFilterMode Called iResult :%d \r\n",
              static_cast<int32_t>(uiAnswer));
    return uiAnswer;
}

uint32_t VT_JNI_addLANHostToBlackList(const char *const *ppcMacs, uint32_t uiCount) {
    return AddToList(WAP_SPOT, kMacFltBlackList, true, ppcMacs, uiCount);
}

uint32_t VT_JNI_delLANHostFromBlackList(const char *const *ppcMacs, uint32_t uiCount) {
    return DelFromList(WAP_SPOT, kMacFltBlackList, true, ppcMacs, uiCount);
}

// The two of the trust list don't look for texts, deliberately: only the black list can be cleared.
uint32_t VT_JNI_addLANHostToTrustList(const char *const *ppcMacs, uint32_t uiCount) {
    return AddToList(WAP_SPOT, kMacFltTrustList, false, ppcMacs, uiCount);
}

uint32_t VT_JNI_delLANHostFromTrustList(const char *const *ppcMacs, uint32_t uiCount) {
    return DelFromList(WAP_SPOT, kMacFltTrustList, false, ppcMacs, uiCount);
}

uint32_t VT_API_getMacFltMode(uint32_t *puiMode, uint32_t *puiStatus) {
    if (puiMode == nullptr || puiStatus == nullptr) {
        return Recorded(WAP_SPOT, kErrNullArgument);
    }
    MacFltModeReply stReply = {};
    const uint32_t uiResult = Ask(kGetMode, kNoArgument, stReply);
    if (Recorded(WAP_SPOT, uiResult) != 0) {
        return uiResult;
    }
    if (stReply.uiMode != stReply.uiModeAgain || stReply.uiStatus != stReply.uiStatusAgain) {
        return Recorded(WAP_SPOT, kErrMacFlt, stReply.uiMode, stReply.uiModeAgain, stReply.uiStatus,
                        stReply.uiStatusAgain);
    }
    *puiMode = stReply.uiMode;
    *puiStatus = stReply.uiStatus;
    WAP_TRACE(kTraceEntries, "VT_API_getMacFltMode MacFltMode:%d  MacFltStatus:%d\r\n",
              static_cast<int32_t>(*puiMode), static_cast<int32_t>(*puiStatus));
    return 0;
}

uint32_t VT_API_setMacFltMode(uint32_t uiMode, uint32_t uiStatus) {
    uint32_t uiReply = 0;
    const uint32_t uiResult = Ask(kSetMode, MacFltModeRequest{uiMode, uiStatus}, uiReply);
    if (uiResult != 0) {
        // The status is the filter's. NOLINTNEXTLINE(readability-suspicious-call-argument)
        RecordFault(WAP_SPOT, uiResult, uiMode, uiStatus);
    }
    return uiResult;
}

uint32_t VT_API_addLanHostMacList(const char *const *ppcMacs, uint32_t uiCount) {
    return ChangeBoth(WAP_SPOT, kAdding, ppcMacs, uiCount);
}

uint32_t VT_API_delLanHostMacList(const char *const *ppcMacs, uint32_t uiCount) {
    return ChangeBoth(WAP_SPOT, kDeleting, ppcMacs, uiCount);
}

uint32_t VT_API_clearMacFltList(void) {
    TableCopy<LanMacFltEntry> stLan;
    uint32_t uiResult = ReadTable(WAP_SPOT, stLan);
    if (uiResult != 0) {
        return uiResult;
    }
    Removed<LanMacFltEntry, kLanTableMax> stFromLan;
    uiResult = DeleteMatches(
        WAP_SPOT, stLan, 1, kMacFltDo, VT_API_delLanMacFlt,
        [](const LanMacFltEntry &stEntry, uint32_t) {
            WAP_TRACE(kTraceEntries, "Clear Macflt mac:%s  instid:%d\r\n", stEntry.stBody.acMac,
                      static_cast<int32_t>(stEntry.uiInstId));
            return true;
        },
        [&](const LanMacFltEntry &stEntry, uint32_t) { stFromLan.Add(stEntry); });
    TableCopy<WlanMacFltEntry> stWlan;
    Removed<WlanMacFltEntry, kWlanTableMax> stFromWlan;
    if (uiResult == 0) {
        uiResult = ReadTable(WAP_SPOT, stWlan);
    }
    if (uiResult == 0) {
        uiResult = DeleteMatches(
            WAP_SPOT, stWlan, 1, kMacFltDo, VT_API_delWLanMacFlt, Any<WlanMacFltEntry>,
            [&](const WlanMacFltEntry &stEntry, uint32_t) { stFromWlan.Add(stEntry); });
    }
    if (uiResult != 0) {
        RestoreLan(stFromLan);
        (void)VT_API_addWLanMacFltList(stFromWlan.apstEntries, stFromWlan.uiCount, 0, kMacFltUndo);
    }
    return uiResult;
}

uint32_t VT_API_getMacFltList(char **ppcText, uint32_t *puiMode) {
    if (ppcText == nullptr || puiMode == nullptr) {
        return Recorded(WAP_SPOT, kErrNullArgument);
    }
    uint32_t uiMode = 0;
    uint32_t uiStatus = 0;
    uint32_t uiResult = VT_API_getMacFltMode(&uiMode, &uiStatus);
    if (Recorded(WAP_SPOT, uiResult) != 0) {
        return uiResult;
    }
    TableCopy<LanMacFltEntry> stLan;
    TableCopy<WlanMacFltEntry> stWlan;
    uiResult = ReadTable(WAP_SPOT, stLan);
    if (uiResult == 0) {
        uiResult = ReadTable(WAP_SPOT, stWlan);
    }
    if (uiResult != 0) {
        return uiResult;
    }
    const uint32_t uiSize = (stLan.Count() + stWlan.Count()) * kMacRoom;
    if (uiSize == 0) {
        *ppcText = nullptr;
        *puiMode = uiMode;
        WAP_TRACE(kTraceEntries, "VT_API_getMacFltList MacFltMode:%d SrcMacList:NULL \r\n",
                  static_cast<int32_t>(uiMode));
        return 0;
    }
    PlatformBlock stText;
    if (!stText.Make(uiSize, WAP_SPOT)) {
        return Recorded(WAP_SPOT, kErrMacFlt, uiSize);
    }
    auto *pcText = static_cast<char *>(stText.Lend());
    uiResult = WriteList(pcText, uiSize, stLan, stWlan);
    if (Recorded(WAP_SPOT, uiResult, uiSize) != 0) {
        return uiResult;
    }
    *ppcText = static_cast<char *>(stText.Release());
    *puiMode = uiMode;
    WAP_TRACE(kTraceEntries, "VT_API_getMacFltList MacFltMode:%d SrcMacList:%s \r\n",
              static_cast<int32_t>(uiMode), pcText);
    return 0;
}

uint32_t VT_API_appendMacFltStr(char *pcText, uint32_t uiSize, const char *pcMac) {
    if (pcText == nullptr || pcMac == nullptr) {
        return Recorded(WAP_SPOT, kErrNullArgument);
    }
    uint32_t uiResult = pcText[0] == '\0' ? 0 : VT_OS_StrNCat_S(pcText, uiSize, ",", 1);
    if (uiResult == 0) {
        uiResult = VT_OS_StrNCat_S(pcText, uiSize, pcMac, VT_OS_StrLen(pcMac));
    }
    return Recorded(WAP_SPOT, uiResult, uiSize);
}
