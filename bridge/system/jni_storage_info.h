// Workers of the storage volumes. "usb_mngt" knows where they are mounted; how large they are is
// asked of the system here.
#ifndef WAP_SYSTEM_JNI_STORAGE_INFO_H
#define WAP_SYSTEM_JNI_STORAGE_INFO_H

#include <json-c/json_object.h>
#include <stdint.h>

#include "common/wap_export.h"
#include "records/storage.h"

/**
 * Lists the volumes with their sizes, as JSON.
 * @param pcBuf  receives the text and its zero; success only
 * @param uiSize size of pcBuf in bytes
 * @return 0; 0xF7100008 no buffer, or no object; 0xF7108001 no memory; the result of
 *         VT_KAVO_JNI_GetDiscInfo; -1 (as unsigned) no text; 0xF7700005 the text does not fit.
 *         Failures are recorded
 */
WAP_EXPORT uint32_t VT_KAVO_JNI_GetStorageInfo(char *pcBuf, uint32_t uiSize);

/**
 * Asks for the volumes.
 * @param pstReply receives them; zero it before the call
 * @return 0; 1 for null; the platform's code. Failures are recorded
 */
WAP_EXPORT uint32_t VT_KAVO_JNI_GetDiscInfo(wap::DiscInfoReply *pstReply);

/// Measures the file system of a path, in bytes; what the system does not know is 0. Free are also
/// the blocks that are kept for the superuser. No figure exceeds what a signed number holds.
WAP_EXPORT void VT_KAVO_JNI_GetStorage(const char *pcPath, uint64_t *pullTotal, uint64_t *pullUsed,
                                       uint64_t *pullFree);

/**
 * Makes the object of one volume.
 * @param ppstItem receives the object, released by the caller with JNI_JSON_ObjPut; success only
 * @return 0; 0xF7100000 no object; -1 (as unsigned) a value could not be made; 0xF7702001 no place
 *         for the object. Failures are recorded
 */
WAP_EXPORT uint32_t VT_KAVO_JNI_BuildJsonItem(const char *pcPath, uint64_t ullTotal,
                                              uint64_t ullFree, json_object **ppstItem);

#endif
