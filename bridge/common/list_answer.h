// Answers that are a list of objects: {"Result": 0, "List": [...]}.
#ifndef WAP_COMMON_LIST_ANSWER_H
#define WAP_COMMON_LIST_ANSWER_H

#include <stddef.h>
#include <stdint.h>

#include <string_view>

#include "common/jni_common.h"
#include "common/owners.h"
#include "common/report.h"

namespace wap {

/**
 * Makes an object of items and appends it to a list, which there is. An object that the list
 * refuses is released and recorded, and the list goes on without it. Objects among the items are
 * taken over whatever happens.
 * @return false, recorded, when there is no memory for the object or for one of its members
 */
[[nodiscard]] bool AppendObject(SourceSpot stSpot, const JsonValue &stList,
                                const JsonItem *pstItems, uint32_t uiCount);

/// The same, but false also for an object that the list refuses: for those whose loss would be the
/// loss of all that is in them.
[[nodiscard]] bool AppendObjectOrFail(SourceSpot stSpot, const JsonValue &stList,
                                      const JsonItem *pstItems, uint32_t uiCount);

/// The same as AppendObject for a borrowed list, and tells the code with which the list refused the
/// object; 0 when it did not.
[[nodiscard]] bool AppendOrTell(SourceSpot stSpot, json_object *pstList, const JsonItem *pstItems,
                                uint32_t uiCount, uint32_t &uiRefusal);

/// The first two for a table of rows.
template <size_t kItems>
[[nodiscard]] inline bool AppendObject(SourceSpot stSpot, const JsonValue &stList,
                                       const JsonItem (&astItems)[kItems]) {
    return AppendObject(stSpot, stList, astItems, static_cast<uint32_t>(kItems));
}
template <size_t kItems>
[[nodiscard]] inline bool AppendObjectOrFail(SourceSpot stSpot, const JsonValue &stList,
                                             const JsonItem (&astItems)[kItems]) {
    return AppendObjectOrFail(stSpot, stList, astItems, static_cast<uint32_t>(kItems));
}

/**
 * Composes the answer in the caller's buffer.
 * @param stList   given away unless there was no object to attach it to
 * @param pcOut    receives the answer and its zero; success only
 * @param uiOutCap size of pcOut in bytes
 * @return 0; kErrFailed, recorded, when there is no object; 1, recorded, when there is no text or
 *         it does not fit
 */
uint32_t ComposeListInto(SourceSpot stSpot, JsonValue &stList, char *pcOut, uint32_t uiOutCap);

/**
 * Gives a fixed text for an answer, in a block of its own.
 * @param uiFailure the code when memory runs out, recorded with the block's size
 * @param ppcText   receives the answer, released with VT_OS_MemFreeD by the caller; success only
 */
uint32_t GiveFixed(SourceSpot stSpot, std::string_view stAnswer, uint32_t uiFailure,
                   char **ppcText);

/**
 * Composes the answer in a block of its own.
 * @param pcWorker who traces the block's size; null for those who don't
 * @param stList   given away unless there was no object to attach it to
 * @param uiCap    size of the block in bytes, not 0: the answer and its zero must fit
 * @param ppcText  receives the answer, released with VT_OS_MemFreeD by the caller; success only
 * @return 0; 1, recorded, when memory runs out or the answer does not fit
 */
uint32_t ComposeList(SourceSpot stSpot, const char *pcWorker, JsonValue &stList, uint32_t uiCap,
                     char **ppcText);

}  // namespace wap

#endif
