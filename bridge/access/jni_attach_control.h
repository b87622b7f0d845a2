// Attach control: what each host of the LAN may do, and how fast. The gateway keeps a list of
// records, one for each host that has ever been given a right or a limit; a host without a record
// may use the storage and has no limits.
//
// Names starting with VT_JNI_ are the workers of the Java methods and turn every failure into -1
// (as unsigned); the others pass codes up: 0xF7702001 for a null argument, and 1 where no other is
// said. To the functions that take a list of MACs or of records, a null argument is a list that
// they don't take: 1. All record what they see.
#ifndef WAP_ACCESS_JNI_ATTACH_CONTROL_H
#define WAP_ACCESS_JNI_ATTACH_CONTROL_H

#include <stdint.h>

#include "common/wap_export.h"
#include "records/attach_control.h"

// ---- the list ----

/**
 * Reads all records, 128 at most. Each MAC ends within its field, whatever the gateway sent.
 * @param ppstList receives them in the gateway's order, released with VT_OS_MemFreeD by the
 *                 caller; null when there are none
 * @return 0; 0xF7702001 for a null argument; 1 without memory; the code of the first request that
 *         failed
 */
WAP_EXPORT uint32_t VT_API_getAttachControlList(wap::AttachControl **ppstList, uint32_t *puiCount);

/**
 * Finds the first record of a host, without regard to case and to what of its MAC is behind the
 * end of a record's field.
 * @param pstList  uiCount records, their MACs terminated
 * @param pcMac    null is no host
 * @param puiIndex receives its place
 * @return 0; 1, not recorded, when there is none; 0xF7702001 for a null argument
 */
WAP_EXPORT uint32_t VT_API_getAttachControlIndex(const wap::AttachControl *pstList,
                                                 uint32_t uiCount, const char *pcMac,
                                                 uint32_t *puiIndex);

// ---- storage rights: 1 allowed, 0 barred ----

/// Makes a record with these rights and no limits. 0xF7702001 for a null MAC, without a request.
WAP_EXPORT uint32_t VT_API_addStorageRight(const char *pcMac, uint32_t uiInternetRight,
                                           uint32_t uiStorageRight);
/// Changes the rights of a record as it was read. 0xF7702001 for a null record.
WAP_EXPORT uint32_t VT_API_setStorageRight(const wap::AttachControl *pstRecord,
                                           uint32_t uiInternetRight, uint32_t uiStorageRight);
/**
 * Gives hosts a storage right, in order. A record that has it already is left alone, and a host
 * without a record gets one only to be barred. When a change fails, those before it are given the
 * opposite right.
 * @param ppcMacs uiCount texts, 128 at most; null ones are skipped
 */
WAP_EXPORT uint32_t VT_API_setStorageRightList(const char *const *ppcMacs, uint32_t uiCount,
                                               uint32_t uiRight);
/// Gives every record a storage right, with the same undoing.
WAP_EXPORT uint32_t VT_API_changeStorgeRightList(uint32_t uiRight);

/// Bars hosts from the storage. A table without any text does nothing.
WAP_EXPORT uint32_t VT_JNI_addLANHostToStorageBlackList(const char *const *ppcMacs,
                                                        uint32_t uiCount);
/// Allows hosts the storage again. A table without any text allows it to all.
WAP_EXPORT uint32_t VT_JNI_delLANHostFromStorageBlackList(const char *const *ppcMacs,
                                                          uint32_t uiCount);

// ---- speed limits, in the gateway's unit ----

/// Makes a record with these limits that may use the storage. 0xF7702001 for a null MAC, without a
/// request.
WAP_EXPORT uint32_t VT_API_addSpeedLimit(const char *pcMac, uint32_t uiInternetRight, uint32_t uiUp,
                                         uint32_t uiDown);
/// Changes the limits of a record as it was read. 0xF7702001 for a null record.
WAP_EXPORT uint32_t VT_API_setSpeedLimit(const wap::AttachControl *pstRecord,
                                         uint32_t uiInternetRight, uint32_t uiUp, uint32_t uiDown);
/// Limits a host. Nothing is sent for limits that it has already; without a record it has 0 and 0.
/// 0xF7702001 for a null MAC, without a request.
WAP_EXPORT uint32_t VT_API_setSpeedLimitInfo(const char *pcMac, uint32_t uiUp, uint32_t uiDown);
/// The same for Java: -1 (as unsigned) for a null MAC too.
WAP_EXPORT uint32_t VT_JNI_setLANHostSpeedLimit(const char *pcMac, uint32_t uiUp, uint32_t uiDown);

// ---- the report of the limits. Lists and texts are released with VT_OS_MemFreeD by the caller
// ----

/**
 * The records of the hosts asked for, in that order. One without a record gets an empty one that
 * may use the storage.
 * @param ppcMacs   uiCount texts, 1 to 128
 * @param ppstHosts receives uiCount records
 */
WAP_EXPORT uint32_t VT_API_getAttachControlListByMac(const char *const *ppcMacs, uint32_t uiCount,
                                                     wap::AttachControl **ppstHosts);
/// All records, 128 at most; null when there are none. Results as VT_API_getAttachControlList.
WAP_EXPORT uint32_t VT_API_getALLAttachControlList(wap::AttachControl **ppstHosts,
                                                   uint32_t *puiCount);
/// The answer for up to 128 records: an object with both limits for each. 0 or 1.
WAP_EXPORT uint32_t VT_JNI_getSpeedLimitJsonStr(const wap::AttachControl *pstHosts,
                                                uint32_t uiCount, char **ppcText);
WAP_EXPORT uint32_t VT_JNI_getAllLANHostSpeedLimitInfo(char **ppcText);
WAP_EXPORT uint32_t VT_JNI_getSingleLANHostSpeedLimitInfo(const char *const *ppcMacs,
                                                          uint32_t uiCount, char **ppcText);
/// One of the two: all hosts for a table without any text.
WAP_EXPORT uint32_t VT_JNI_getLANHostSpeedLimitInfo(const char *const *ppcMacs, uint32_t uiCount,
                                                    char **ppcText);

#endif
