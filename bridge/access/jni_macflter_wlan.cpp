// The wireless table of the MAC filter.
#include "access/jni_macflter_tables.h"

using namespace wap;

namespace {

constexpr GeneralRoute kListEntries = {"gulm", 56, kRpcListWlanMacFlt};
constexpr GeneralRoute kGetEntry = {"gulm", 56, kRpcGetWlanMacFlt};
constexpr GeneralRoute kIsExcluded = {"gulm", 56, kRpcIsSsidExcluded};
constexpr GeneralRoute kGetSsids = {"app_m", 249, kRpcGetWlanInst};
constexpr GeneralRoute kAddEntry = {"osgi_proxy", 0, kRpcAddWlanMacFlt};
constexpr GeneralRoute kDelEntry = {"osgi_proxy", 0, kRpcDelWlanMacFlt};
// Straight to the owner of the table, deliberately: an entry that is put back goes to its own
// network, without the checks of a new one.
constexpr GeneralRoute kRestoreEntry = {"gulm", 56, kRpcRestoreWlanMacFlt};

/// The most networks that one reply names.
constexpr uint32_t kSsidMax = std::size(WlanInstBlock{}.auiSsids);

/// Adds entries one by one, and takes back those that it added when one fails.
class Adder {
  public:
    explicit Adder(uint32_t uiRollback) : m_bUndoing(uiRollback != kMacFltDo) {}

    /// Makes room for the ids of uiMax entries, needed only where they may have to be taken back.
    [[nodiscard]] bool Make(uint32_t uiMax, SourceSpot stSpot) {
        return m_bUndoing || uiMax == 0 ||
               m_stIds.Make(uiMax * static_cast<uint32_t>(sizeof(uint32_t)), stSpot);
    }

    /// Adds an entry. 0 also for a failure when undoing, which goes on.
    template <class Request>
    uint32_t Add(SourceSpot stSpot, const GeneralRoute &stRoute, const Request &stRequest) {
        uint32_t uiInstId = 0;
        const uint32_t uiResult = Ask(stRoute, stRequest, uiInstId);
        if (uiResult == 0) {
            Note(uiInstId);
            return 0;
        }
        RecordFault(stSpot, uiResult, m_uiCount);
        if (m_bUndoing) {
            return 0;
        }
        (void)VT_API_delWLanMacFltList(m_stIds.Lend(), m_uiCount, 0, kMacFltUndo);
        return uiResult;
    }

  private:
    void Note(uint32_t uiInstId) {
        if (!m_bUndoing) {
            static_cast<uint32_t *>(m_stIds.Lend())[m_uiCount++] = uiInstId;
        }
    }

    PlatformBlock m_stIds;
    uint32_t m_uiCount = 0;
    bool m_bUndoing;
};

/// Marks the networks that the gateway keeps out of the filter. Whoever can't be asked stays in.
void MarkExcluded(WlanInstBlock &stSsids, uint32_t uiCount) {
    for (uint32_t i = 0; i < uiCount; ++i) {
        const uint32_t uiSsid = stSsids.auiSsids[i];
        if (uiSsid == kNoSsid) {
            continue;
        }
        uint32_t uiAnswer = 0;
        const uint32_t uiResult = Ask(kIsExcluded, uiSsid, uiAnswer);
        if (uiResult != 0) {
            RecordFault(WAP_SPOT, uiResult, i, uiSsid);
        } else if (uiAnswer == kSsidExcluded) {
            stSsids.auiSsids[i] = kNoSsid;
        }
    }
}

/// What every request that adds says of its entry.
template <class Request>
Request NewEntry(const char *pcSsidName, const char *pcMac) {
    Request stRequest = {};
    stRequest.stBody.uiEnable = 1;
    PutField(stRequest.stBody.acSsidName, pcSsidName);
    PutField(stRequest.stBody.acMac, pcMac);
    (void)VT_OS_MemSet_S(stRequest.aucOnes, sizeof(stRequest.aucOnes), 0xFF,
                         sizeof(stRequest.aucOnes));
    return stRequest;
}

/// Adds a MAC address for every network that is not marked.
uint32_t AddForSsids(Adder &stAdder, const char *pcMac, const WlanInstBlock &stSsids,
                     uint32_t uiCount) {
    for (uint32_t i = 0; i < uiCount; ++i) {
        if (stSsids.auiSsids[i] == kNoSsid) {
            continue;
        }
        char acSsidName[32] = {};
        (void)VT_OS_Snprintf_S(acSsidName, sizeof(acSsidName), sizeof(acSsidName) - 1, "SSID-%d",
                               static_cast<int32_t>(stSsids.auiSsids[i]));
        const uint32_t uiResult =
            stAdder.Add(WAP_SPOT, kAddEntry, NewEntry<WlanMacFltAddRequest>(acSsidName, pcMac));
        if (uiResult != 0) {
            return uiResult;
        }
    }
    return 0;
}

using WlanTable = TableCopy<WlanMacFltEntry>;

/// Deletes the entries that match a list of uiCount items; when one can't be deleted, puts back
/// those that were.
template <class Matches>
uint32_t DeleteFromTable(SourceSpot stSpot, const WlanTable &stTable, uint32_t uiCount,
                         uint32_t uiRollback, Matches fnMatches) {
    Removed<WlanMacFltEntry, kWlanTableMax> stRemoved;
    const uint32_t uiResult =
        DeleteMatches(stSpot, stTable, uiCount, uiRollback, VT_API_delWLanMacFlt, fnMatches,
                      [&](const WlanMacFltEntry &stEntry, uint32_t) { stRemoved.Add(stEntry); });
    if (uiRollback != kMacFltDo) {
        // What can't be undone is in the fault log and nowhere else.
        return 0;
    }
    if (uiResult != 0) {
        (void)VT_API_addWLanMacFltList(stRemoved.apstEntries, stRemoved.uiCount, 0, kMacFltUndo);
    }
    return uiResult;
}

}  // namespace

uint32_t wap::ReadTable(SourceSpot stSpot, TableCopy<WlanMacFltEntry> &stTable) {
    WlanMacFltEntry *pstList = nullptr;
    uint32_t uiCount = 0;
    const uint32_t uiResult = VT_API_getWLanMacFltList(&pstList, &uiCount);
    stTable.Adopt(pstList, uiCount);
    return Recorded(stSpot, uiResult);
}

uint32_t VT_API_getWLanMacFltList(WlanMacFltEntry **ppstList, uint32_t *puiCount) {
    if (ppstList == nullptr || puiCount == nullptr) {
        return Recorded(WAP_SPOT, kErrNullArgument);
    }
    PlatformBlock stIndex;
    if (!stIndex.Make(sizeof(WlanMacFltInstBlock), WAP_SPOT)) {
        return Recorded(WAP_SPOT, kErrMacFlt);
    }
    auto &stIds = *static_cast<WlanMacFltInstBlock *>(stIndex.Lend());
    PlatformBlock stList;
    const uint32_t uiResult =
        FetchTable<WlanMacFltEntry>(WAP_SPOT, kListEntries, kGetEntry, stIds, stList);
    if (uiResult == 0 && stIds.uiCount != 0) {
        *puiCount = stIds.uiCount;
        *ppstList = static_cast<WlanMacFltEntry *>(stList.Release());
    }
    return uiResult;
}

uint32_t VT_API_getWlanInst(WlanInstBlock *pstBlock) {
    if (pstBlock == nullptr) {
        return Recorded(WAP_SPOT, kErrNullArgument);
    }
    if (VT_Feature_IsSupport(kFeatureWlanMacFlt) == 1) {
        WlanInstBlock stReply = {};
        const uint32_t uiResult = Ask(kGetSsids, kNoArgument, stReply);
        if (Recorded(WAP_SPOT, uiResult) != 0) {
            return uiResult;
        }
        *pstBlock = stReply;
    }
    WAP_TRACE(kTraceEntries, "VT_API_getWlanInst Called  instNum:%d \r\n",
              static_cast<int32_t>(pstBlock->uiCount));
    return 0;
}

uint32_t VT_API_delWLanMacFlt(uint32_t uiInstId) {
    uint32_t uiReply = 0;
    return Recorded(WAP_SPOT, Ask(kDelEntry, uiInstId, uiReply), uiInstId);
}

uint32_t VT_API_addWLanMacFltList(const void *pvArray, uint32_t uiCount, uint32_t uiByMac,
                                  uint32_t uiRollback) {
    return uiByMac != 0
               ? VT_API_addWLanMacFltListByMac(static_cast<const char *const *>(pvArray), uiCount,
                                               uiRollback)
               : VT_API_addWLanMacFltListByStructInfo(
                     static_cast<const WlanMacFltEntry *const *>(pvArray), uiCount, uiRollback);
}

uint32_t VT_API_delWLanMacFltList(const void *pvArray, uint32_t uiCount, uint32_t uiByMac,
                                  uint32_t uiRollback) {
    // Only 1 means addresses here, while adding takes anything but 0: deliberate.
    return uiByMac == 1 ? VT_API_delWLanMacFltListByMac(static_cast<const char *const *>(pvArray),
                                                        uiCount, uiRollback)
                        : VT_API_delWLanMacFltListByInstId(static_cast<const uint32_t *>(pvArray),
                                                           uiCount, uiRollback);
}

uint32_t VT_API_addWLanMacFltListByMac(const char *const *ppcMacs, uint32_t uiCount,
                                       uint32_t uiRollback) {
    uint32_t uiResult = CheckList(WAP_SPOT, ppcMacs, uiCount, kMacFltListMax);
    if (uiResult != 0) {
        return uiResult;
    }
    WlanInstBlock stSsids = {};
    uiResult = VT_API_getWlanInst(&stSsids);
    if (Recorded(WAP_SPOT, uiResult) != 0) {
        return uiResult;
    }
    const uint32_t uiMaxIfNum = stSsids.uiCount < kSsidMax ? stSsids.uiCount : kSsidMax;
    WAP_TRACE(kTraceEntries, "uiMaxIfNum[%d]\r\n", static_cast<int32_t>(uiMaxIfNum));
    MarkExcluded(stSsids, uiMaxIfNum);
    Adder stAdder(uiRollback);
    if (!stAdder.Make(uiCount * uiMaxIfNum, WAP_SPOT)) {
        return Recorded(WAP_SPOT, kErrMacFlt, uiCount, uiMaxIfNum);
    }
    for (uint32_t i = 0; i < uiCount; ++i) {
        if (ppcMacs[i] == nullptr) {
            WAP_TRACE(kTraceEntries, "VT_API_addWLanMacFltListByMac Mac[%d] is Null\r\n",
                      static_cast<int32_t>(i));
            continue;
        }
        uiResult = AddForSsids(stAdder, ppcMacs[i], stSsids, uiMaxIfNum);
        if (Recorded(WAP_SPOT, uiResult, i) != 0) {
            return uiResult;
        }
    }
    return 0;
}

uint32_t VT_API_addWLanMacFltListByStructInfo(const WlanMacFltEntry *const *ppstEntries,
                                              uint32_t uiCount, uint32_t uiRollback) {
    uint32_t uiResult = CheckList(WAP_SPOT, ppstEntries, uiCount, kWlanTableMax);
    if (uiResult != 0) {
        return uiResult;
    }
    Adder stAdder(uiRollback);
    if (!stAdder.Make(uiCount, WAP_SPOT)) {
        return Recorded(WAP_SPOT, kErrMacFlt, uiCount);
    }
    for (uint32_t i = 0; i < uiCount; ++i) {
        if (ppstEntries[i] == nullptr) {
            continue;
        }
        const WlanMacFltBody &stBody = ppstEntries[i]->stBody;
        const auto stRequest = NewEntry<WlanMacFltRestoreRequest>(stBody.acSsidName, stBody.acMac);
        WAP_TRACE(kTraceEntries,
                  "VT_API_addWLanMacFltListByStructInfo Called Mac:%s  SSIDName:%s\r\n",
                  stRequest.stBody.acMac, stRequest.stBody.acSsidName);
        uiResult = stAdder.Add(WAP_SPOT, kRestoreEntry, stRequest);
        if (uiResult != 0) {
            return uiResult;
        }
    }
    return 0;
}

uint32_t VT_API_delWLanMacFltListByMac(const char *const *ppcMacs, uint32_t uiCount,
                                       uint32_t uiRollback) {
    WlanTable stTable;
    uint32_t uiResult = CheckList(WAP_SPOT, ppcMacs, uiCount, kMacFltListMax);
    if (uiResult == 0) {
        uiResult = ReadTable(WAP_SPOT, stTable);
    }
    if (uiResult != 0) {
        return uiResult;
    }
    return DeleteFromTable(WAP_SPOT, stTable, uiCount, uiRollback,
                           [&](const WlanMacFltEntry &stEntry, uint32_t i) {
                               return SameMac(stEntry.stBody.acMac, ppcMacs[i]);
                           });
}

uint32_t VT_API_delWLanMacFltListByInstId(const uint32_t *puiInstIds, uint32_t uiCount,
                                          uint32_t uiRollback) {
    WlanTable stTable;
    // Adding can ask to take back more entries than an index names, so any number goes.
    uint32_t uiResult = CheckList(WAP_SPOT, puiInstIds, uiCount, UINT32_MAX);
    if (uiResult == 0) {
        uiResult = ReadTable(WAP_SPOT, stTable);
    }
    if (uiResult != 0) {
        return uiResult;
    }
    uiResult = DeleteFromTable(WAP_SPOT, stTable, uiCount, uiRollback,
                               [&](const WlanMacFltEntry &stEntry, uint32_t i) {
                                   return stEntry.uiInstId == puiInstIds[i];
                               });
    if (uiRollback != kMacFltDo) {
        (void)DeleteUnnamed(stTable, kWlanTableMax, puiInstIds, uiCount, VT_API_delWLanMacFlt, 0);
    }
    return uiResult;
}
