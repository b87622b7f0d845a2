// The gateway's MAC filter: one flat list for Java, two tables at the gateway, the wired one with
// an entry per MAC address and the wireless one with an entry per MAC address and network. What
// writes goes to both; a step that fails undoes those before it, so that the tables stay in step.
//
// All functions return 0 or a code, and record every failure: a request's code as the process gave
// it; 1 when memory runs out, a reply contradicts itself, an entry can't be read, or a list is
// longer than its function takes; 0xF7702001 for a null argument. Out-parameters are written on
// success only, but for a MacFltRecord, which is written to on failure too.
// Undoing goes on whatever fails; in the wireless table it succeeds as soon as it has begun, and
// what could not be undone is in the fault log alone. Nothing is kept between calls and nothing
// locks.
#ifndef WAP_ACCESS_JNI_MACFLTER_H
#define WAP_ACCESS_JNI_MACFLTER_H

#include <stddef.h>
#include <stdint.h>

#include "common/wap_export.h"
#include "records/mac_filter.h"

namespace wap {

/// The most MAC addresses that one call takes. Calls that take entries or ids have bounds of their
/// own.
inline constexpr uint32_t kMacFltListMax = 128;

/// The instance ids that one call touched in the wired table: slot i belongs to the call's i-th MAC
/// address, 0 for none. Laid out as MacFltInstBlock, with a slot for each address a call can have.
struct MacFltRecord {
    uint32_t uiUnused;
    uint32_t auiInstIds[kMacFltListMax];
};
static_assert(offsetof(MacFltRecord, auiInstIds) == offsetof(MacFltInstBlock, auiInstIds));
static_assert(sizeof(MacFltRecord) == 4 + 4 * kMacFltListMax);

#pragma pack(push, 1)

/// An entry of the wireless table as it is given out: what kRpcGetWlanMacFlt answers, behind the
/// instance id that was asked about.
struct WlanMacFltEntry {
    uint32_t uiInstId;
    WlanMacFltBody stBody;
};
static_assert(offsetof(WlanMacFltEntry, uiInstId) == 0);
static_assert(offsetof(WlanMacFltEntry, stBody) == 4);
static_assert(offsetof(WlanMacFltEntry, stBody.acSsidName) == 8);
static_assert(offsetof(WlanMacFltEntry, stBody.acMac) == 40);
static_assert(sizeof(WlanMacFltEntry) == 72);

#pragma pack(pop)

/// What a step over a list does when one of its requests fails.
enum MacFltRollback : uint32_t {
    kMacFltDo = 0,    ///< stops, undoes what it did and returns the code
    kMacFltUndo = 1,  ///< goes on: it is itself the undoing of something
};

}  // namespace wap

// ---- what the Java entries call; 0 or -1 (as unsigned) -------------------------------------

/**
 * Sets mode and status from Java's one number. Sends nothing when nothing would change.
 * @param uiPara 0 turns the filter off and keeps its mode; n turns it on with the mode n - 1, which
 *               is not checked
 */
WAP_EXPORT uint32_t VT_JNI_setMacFilterMode(uint32_t uiPara);

/// Java's one number: 0 off, 1 black list, 2 trust list; -1 (as unsigned) when it can't be read.
WAP_EXPORT uint32_t VT_JNI_getMacFilterMode(void);

/**
 * Adds MAC addresses to the black list, whether the filter is on or off. Fails in any other mode;
 * adds nothing and succeeds when there is no text in the table.
 * @param ppcMacs uiCount texts, null ones are left out; may be null when uiCount is 0
 */
WAP_EXPORT uint32_t VT_JNI_addLANHostToBlackList(const char *const *ppcMacs, uint32_t uiCount);

/**
 * Takes MAC addresses off the black list; a table without any text clears the whole filter. Does
 * nothing and succeeds in any other mode.
 */
WAP_EXPORT uint32_t VT_JNI_delLANHostFromBlackList(const char *const *ppcMacs, uint32_t uiCount);

/// Adds MAC addresses to the trust list. Fails in any other mode.
WAP_EXPORT uint32_t VT_JNI_addLANHostToTrustList(const char *const *ppcMacs, uint32_t uiCount);

/// Takes MAC addresses off the trust list. Does nothing and succeeds in any other mode.
WAP_EXPORT uint32_t VT_JNI_delLANHostFromTrustList(const char *const *ppcMacs, uint32_t uiCount);

// ---- the filter as a whole -----------------------------------------------------------------

/// Reads the mode (kMacFltBlackList, kMacFltTrustList) and the status (0 off, 1 on).
WAP_EXPORT uint32_t VT_API_getMacFltMode(uint32_t *puiMode, uint32_t *puiStatus);

/// Writes mode and status.
WAP_EXPORT uint32_t VT_API_setMacFltMode(uint32_t uiMode, uint32_t uiStatus);

/// Adds MAC addresses to both tables, or to none.
WAP_EXPORT uint32_t VT_API_addLanHostMacList(const char *const *ppcMacs, uint32_t uiCount);

/// Deletes MAC addresses from both tables, or from none. One that is not listed is no failure.
WAP_EXPORT uint32_t VT_API_delLanHostMacList(const char *const *ppcMacs, uint32_t uiCount);

/// Empties both tables, or none.
WAP_EXPORT uint32_t VT_API_clearMacFltList(void);

/**
 * Gives the whole list as one text, the addresses separated by commas: those of the wired table,
 * then those of the wireless one that the text does not contain yet, with regard to case.
 * @param ppcText receives the text, released by the caller with VT_OS_MemFreeD; null when both
 *                tables are empty
 * @param puiMode receives the filter's mode
 */
WAP_EXPORT uint32_t VT_API_getMacFltList(char **ppcText, uint32_t *puiMode);

/**
 * Appends a MAC address to a list, with a comma before it unless the list is empty.
 * @param pcText zero-terminated, in a buffer of uiSize bytes
 * @return 0; the platform's code when the buffer is full
 */
WAP_EXPORT uint32_t VT_API_appendMacFltStr(char *pcText, uint32_t uiSize, const char *pcMac);

// ---- the wired table -----------------------------------------------------------------------

/**
 * Reads the table. The MAC addresses in it end within their fields.
 * @param ppstList receives the entries, released by the caller with VT_OS_MemFreeD
 * @param pstIndex receives their ids and number, 32 at most
 * @return 0, with nothing written when the table is empty
 */
WAP_EXPORT uint32_t VT_API_getLanMacFltList(wap::LanMacFltEntry **ppstList,
                                            wap::MacFltInstBlock *pstIndex);

/// Adds one MAC address, cut to 31 bytes, and gives its instance id.
WAP_EXPORT uint32_t VT_API_addLanMacFlt(const char *pcMac, uint32_t *puiInstId);

/// Deletes one entry.
WAP_EXPORT uint32_t VT_API_delLanMacFlt(uint32_t uiInstId);

/**
 * Adds MAC addresses.
 * @param ppcMacs    uiCount texts, at most kMacFltListMax; null ones are traced and left out
 * @param pstRecord  receives the new instance ids in the slots of their addresses, on failure ids
 *                   that are gone again; when undoing, only addresses whose slot is not 0 are added
 * @param uiRollback a MacFltRollback
 * @return 0, or the code of the last address that was tried
 */
WAP_EXPORT uint32_t VT_API_addLanMacFltList(const char *const *ppcMacs, uint32_t uiCount,
                                            wap::MacFltRecord *pstRecord, uint32_t uiRollback);

/**
 * Deletes every entry whose MAC address is among the given, without regard to case; when undoing,
 * the entries whose ids are in the slots instead, also those that a full index doesn't name.
 * @param pstRecord receives the deleted instance ids in the slots of their addresses, on failure
 *                  those of the entries that were put back
 */
WAP_EXPORT uint32_t VT_API_delLanMacFltList(const char *const *ppcMacs, uint32_t uiCount,
                                            wap::MacFltRecord *pstRecord, uint32_t uiRollback);

// ---- the wireless table --------------------------------------------------------------------

/**
 * Reads the table. The texts in it end within their fields.
 * @param ppstList receives the entries, released by the caller with VT_OS_MemFreeD
 * @param puiCount receives their number, 256 at most
 * @return 0, with nothing written when the table is empty
 */
WAP_EXPORT uint32_t VT_API_getWLanMacFltList(wap::WlanMacFltEntry **ppstList, uint32_t *puiCount);

/**
 * Reads the indexes of the wireless networks. Asks nobody, leaves the block as it is and succeeds
 * when the firmware has no kFeatureWlanMacFlt.
 * @param pstBlock zeroed by the caller; the number in it is as the process gave it
 */
WAP_EXPORT uint32_t VT_API_getWlanInst(wap::WlanInstBlock *pstBlock);

/// Deletes one entry.
WAP_EXPORT uint32_t VT_API_delWLanMacFlt(uint32_t uiInstId);

/// Adds entries: uiByMac not 0 takes pvArray as for ...ByMac, else as for ...ByStructInfo.
WAP_EXPORT uint32_t VT_API_addWLanMacFltList(const void *pvArray, uint32_t uiCount,
                                             uint32_t uiByMac, uint32_t uiRollback);

/// Deletes entries: uiByMac of 1 takes pvArray as for ...ByMac, anything else as for ...ByInstId.
WAP_EXPORT uint32_t VT_API_delWLanMacFltList(const void *pvArray, uint32_t uiCount,
                                             uint32_t uiByMac, uint32_t uiRollback);

/// Adds each MAC address for each wireless network that is not excluded. At most kMacFltListMax.
WAP_EXPORT uint32_t VT_API_addWLanMacFltListByMac(const char *const *ppcMacs, uint32_t uiCount,
                                                  uint32_t uiRollback);

/// Adds up to 256 entries again, each for its own network; null ones are left out. Their ids are
/// not used.
WAP_EXPORT uint32_t VT_API_addWLanMacFltListByStructInfo(
    const wap::WlanMacFltEntry *const *ppstEntries, uint32_t uiCount, uint32_t uiRollback);

/// Deletes every entry whose MAC address is among the given, without regard to case.
WAP_EXPORT uint32_t VT_API_delWLanMacFltListByMac(const char *const *ppcMacs, uint32_t uiCount,
                                                  uint32_t uiRollback);

/// Deletes every entry whose instance id is among the given, any number of them; when undoing, also
/// those that a full index doesn't name.
WAP_EXPORT uint32_t VT_API_delWLanMacFltListByInstId(const uint32_t *puiInstIds, uint32_t uiCount,
                                                     uint32_t uiRollback);

#endif
