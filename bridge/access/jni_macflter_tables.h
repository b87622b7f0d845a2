// What the two tables of the MAC filter have in common: how they are read, searched and emptied.
#ifndef WAP_ACCESS_JNI_MACFLTER_TABLES_H
#define WAP_ACCESS_JNI_MACFLTER_TABLES_H

#include <stdint.h>

#include <iterator>

#include "access/jni_macflter.h"
#include "access/mac_text.h"
#include "common/fields.h"
#include "common/id_table.h"
#include "common/jni_common.h"
#include "common/owners.h"
#include "common/report.h"
#include "common/requests.h"

namespace wap {

/// No memory, a list that is too long, or a table that can't be read.
inline constexpr uint32_t kErrMacFlt = 1;
/// The request of the routes that read.
inline constexpr uint32_t kNoArgument = 0;
/// The most entries that the index of the wired and of the wireless table names.
inline constexpr uint32_t kLanTableMax = std::size(MacFltInstBlock{}.auiInstIds);
inline constexpr uint32_t kWlanTableMax = std::size(WlanMacFltInstBlock{}.auiInstIds);

/// A table as it was read.
template <class Entry>
class TableCopy {
  public:
    /// Takes over uiCount entries, null and 0 for an empty table.
    void Adopt(Entry *pstEntries, uint32_t uiCount) {
        m_stBlock.Adopt(pstEntries);
        m_uiCount = uiCount;
    }
    uint32_t Count() const { return m_uiCount; }
    const Entry *begin() const { return static_cast<const Entry *>(m_stBlock.Lend()); }
    const Entry *end() const { return begin() + m_uiCount; }

  private:
    PlatformBlock m_stBlock;
    uint32_t m_uiCount = 0;
};

/// Reads the wired, or the wireless table. Results as VT_API_getLanMacFltList.
uint32_t ReadTable(SourceSpot stSpot, TableCopy<LanMacFltEntry> &stTable);
uint32_t ReadTable(SourceSpot stSpot, TableCopy<WlanMacFltEntry> &stTable);

/// The deleted entries of a table, in order. They live as long as the table's copy.
template <class Entry, uint32_t kMax>
struct Removed {
    const Entry *apstEntries[kMax] = {};
    uint32_t uiCount = 0;

    void Add(const Entry &stEntry) {
        if (uiCount < kMax) {
            apstEntries[uiCount++] = &stEntry;
        }
    }
};

/// Refuses a null list and one that is too long. 0, or the code, recorded.
inline uint32_t CheckList(SourceSpot stSpot, const void *pvList, uint32_t uiCount, uint32_t uiMax) {
    if (pvList == nullptr && uiCount != 0) {
        return Recorded(stSpot, kErrNullArgument, uiCount);
    }
    if (uiCount > uiMax) {
        return Recorded(stSpot, kErrMacFlt, uiCount, uiMax);
    }
    return 0;
}

/// Ends the texts of an entry that came in a reply.
inline void EndTexts(LanMacFltBody &stBody) {
    EndField(stBody.acMac);
}
inline void EndTexts(WlanMacFltBody &stBody) {
    EndField(stBody.acSsidName);
    EndField(stBody.acMac);
}

/// Reads an index and the entries that it names, as FetchIdTable does. 1 also when an entry can't
/// be read.
template <class Entry, class Index>
uint32_t FetchTable(SourceSpot stSpot, const GeneralRoute &stListRoute,
                    const GeneralRoute &stEntryRoute, Index &stIndex, PlatformBlock &stList) {
    return FetchIdTable<Entry>(
        stSpot, stListRoute, stIndex, stList,
        [&](uint32_t uiIndex, uint32_t uiInstId, Entry &stEntry) -> uint32_t {
            const uint32_t uiFailure = Ask(stEntryRoute, uiInstId, stEntry.stBody);
            if (Recorded(stSpot, uiFailure, uiIndex, uiInstId) != 0) {
                return kErrMacFlt;
            }
            stEntry.uiInstId = uiInstId;
            EndTexts(stEntry.stBody);
            return 0;
        });
}

/**
 * Deletes the entries of a table that match one of the uiCount items of a list, in the table's
 * order.
 * @param fnMatches  (entry, i): whether the list's i-th item is this entry
 * @param fnDeleted  (entry, i): takes note of a deleted entry
 * @param uiRollback when doing, the first failure ends it; when undoing, none does
 * @return the code of the last request, 0 when there was none
 */
template <class Entry, class Matches, class Deleted>
uint32_t DeleteMatches(SourceSpot stSpot, const TableCopy<Entry> &stTable, uint32_t uiCount,
                       uint32_t uiRollback, uint32_t (*pfnDelete)(uint32_t), Matches fnMatches,
                       Deleted fnDeleted) {
    uint32_t uiResult = 0;
    for (const Entry &stEntry : stTable) {
        for (uint32_t i = 0; i < uiCount; ++i) {
            if (!fnMatches(stEntry, i)) {
                continue;
            }
            uiResult = pfnDelete(stEntry.uiInstId);
            if (uiResult == 0) {
                fnDeleted(stEntry, i);
                break;
            }
            RecordFault(stSpot, uiResult, i, stEntry.uiInstId);
            if (uiRollback == kMacFltDo) {
                return uiResult;
            }
        }
    }
    return uiResult;
}

/**
 * Deletes the entries of a list of ids that a full index has no room to name: the table may go on
 * behind it. An index with room names them all, and what it doesn't name is gone.
 * @param uiMax    the most entries that the table's index names
 * @param uiResult what to return when there was no request
 * @return the code of the last request
 */
template <class Entry>
uint32_t DeleteUnnamed(const TableCopy<Entry> &stTable, uint32_t uiMax, const uint32_t *puiInstIds,
                       uint32_t uiCount, uint32_t (*pfnDelete)(uint32_t), uint32_t uiResult) {
    if (stTable.Count() < uiMax) {
        return uiResult;
    }
    for (uint32_t i = 0; i < uiCount; ++i) {
        bool bNamed = puiInstIds[i] == 0;
        for (const Entry &stEntry : stTable) {
            bNamed = bNamed || stEntry.uiInstId == puiInstIds[i];
        }
        if (!bNamed) {
            uiResult = pfnDelete(puiInstIds[i]);
        }
    }
    return uiResult;
}

}  // namespace wap

#endif
