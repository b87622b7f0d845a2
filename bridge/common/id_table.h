// Tables that a process gives out in two steps: an index of instance ids, then entry by entry.
#ifndef WAP_COMMON_ID_TABLE_H
#define WAP_COMMON_ID_TABLE_H

#include <stdint.h>

#include <iterator>

#include "common/owners.h"
#include "common/report.h"
#include "common/requests.h"

namespace wap {

/// There is no memory for a table.
inline constexpr uint32_t kErrNoTable = 1;

/**
 * Reads an index and the entries that it names.
 * @param stIndex zeroed; receives the index, with a number of entries that it has room for
 * @param stList  receives the entries, nothing when there are none
 * @param fnFetch (i, instance id, entry): fills the i-th entry, zeroed before. 0, or a code, which
 *                ends the reading and is returned; recording it is up to the function
 * @return 0; the code of the request for the index, recorded; 1, recorded, when memory runs out
 */
template <class Entry, class Index, class Fetch>
uint32_t FetchIdTable(SourceSpot stSpot, const GeneralRoute &stRoute, Index &stIndex,
                      PlatformBlock &stList, Fetch fnFetch) {
    uint32_t uiResult = Ask(stRoute, uint32_t{0}, stIndex);
    if (Recorded(stSpot, uiResult) != 0) {
        return uiResult;
    }
    // The number is the process's word; the ids end with the block.
    constexpr uint32_t kMax = std::size(Index{}.auiInstIds);
    const uint32_t uiCount = stIndex.uiCount < kMax ? stIndex.uiCount : kMax;
    stIndex.uiCount = uiCount;
    if (uiCount != 0 && !stList.Make(uiCount * static_cast<uint32_t>(sizeof(Entry)), stSpot)) {
        return Recorded(stSpot, kErrNoTable, uiCount);
    }
    auto *pstEntries = static_cast<Entry *>(stList.Lend());
    for (uint32_t i = 0; i < uiCount && uiResult == 0; ++i) {
        uiResult = fnFetch(i, stIndex.auiInstIds[i], pstEntries[i]);
    }
    return uiResult;
}

}  // namespace wap

#endif
