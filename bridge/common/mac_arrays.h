// Java arrays of MAC addresses. The methods that take one differ in small, deliberate ways, which
// bundles depend on: each has a row of rules, and the code is one.
#ifndef WAP_COMMON_MAC_ARRAYS_H
#define WAP_COMMON_MAC_ARRAYS_H

#include <jni.h>
#include <stdint.h>

#include "common/owners.h"
#include "common/report.h"

namespace wap {

/// The longest array that any of the methods takes.
inline constexpr uint32_t kMacArrayMax = 128;

using MacTable = TextTable<kMacArrayMax>;

/// A worker over a table of texts; null entries are possible. 0, or a code.
using MacWorker = uint32_t (*)(const char *const *ppcMacs, uint32_t uiCount);

/// What becomes of an element that is null or does not convert.
enum class BadMac {
    kLeftOut,     ///< the others move up
    kStaysEmpty,  ///< its slot stays null
    kRefuses,     ///< the call fails
};

/// What a call without any element does.
enum class NoMacs {
    kIsWork,      ///< the worker gets the empty table
    kIsDone,      ///< nothing: 0 at once
    kIsEveryone,  ///< the worker gets the table, and takes one without any text for all hosts; so
                  ///< no table may be without one because elements of it could not be converted
};

/// What a method does with its array.
struct MacArrayRules {
    uint32_t uiMax;  ///< more elements are refused
    EmptyText eEmpty;
    BadMac eBad;
    NoMacs eNone;
    const char *pcTooLong;  ///< traced when there are too many
    bool bTraceEach;        ///< each text that is kept is traced
};

/**
 * Converts an array. A null array is one of length 0.
 * @param stTable empty before; receives the texts
 * @return true; false, recorded, when the array is too long, an element is refused, what was lost
 *         would make it mean everyone, or the virtual machine grants too few references
 */
[[nodiscard]] bool ConvertMacs(JNIEnv *pstEnv, SourceSpot stSpot, jobjectArray jMacs,
                               const MacArrayRules &stRules, MacTable &stTable);

/// Converts an array and hands it to the worker. 0, or -1 whatever failed.
jint CallMacWorker(JNIEnv *pstEnv, SourceSpot stSpot, jobjectArray jMacs,
                   const MacArrayRules &stRules, MacWorker pfnWorker);

}  // namespace wap

#endif
