// Workers of the WAN and PON status queries. All but the list are answered by "app_m", which writes
// the texts itself; they are passed on as they stand. Every failure is recorded.
//
// A text fills its buffer as it came, so a hostile one may leave no zero in it: give the buffer a
// zero byte behind. The buffer is empty on failure.
#ifndef WAP_WAN_JNI_ACCESS_INFO_H
#define WAP_WAN_JNI_ACCESS_INFO_H

#include <stdint.h>

#include "common/wap_export.h"
#include "records/access_info.h"

namespace wap {

/// How long the list of WAN connections may be, in bytes with its zero.
inline constexpr uint32_t kWanListTextSize = 512;

}  // namespace wap

/**
 * The list of WAN connections, asked of "gulm". When that fails the list is empty, and the call a
 * success all the same.
 * @param pcBuf receives {"Result":0,"List":[...]} with JSON blanks, and its zero; success only
 * @param uiCap size of pcBuf in bytes
 * @return 0; 1 without a buffer, without memory, or when the text does not fit; -1 (as unsigned)
 *         when memory runs out for the text
 */
WAP_EXPORT uint32_t VT_JNI_GetWANIfList(char *pcBuf, uint32_t uiCap);

// ---- about one WAN connection, whose index is not checked ----
// 0; 1 without a buffer; the platform's code, or "app_m"'s; -1 (as unsigned) for an empty text

WAP_EXPORT uint32_t VT_JNI_GetWANIfStats(uint32_t uiWanIndex, char *pcBuf, uint32_t uiCap);
WAP_EXPORT uint32_t VT_JNI_GetWANIfInfo(uint32_t uiWanIndex, char *pcBuf, uint32_t uiCap);
WAP_EXPORT uint32_t VT_JNI_GetWanIfBandwidth(uint32_t uiWanIndex, char *pcBuf, uint32_t uiCap);
WAP_EXPORT uint32_t VT_JNI_GetWANIfStatus(uint32_t uiWanIndex, char *pcBuf, uint32_t uiCap);

// ---- about the uplink: results as above ----

WAP_EXPORT uint32_t VT_JNI_GetPONIfPhyStatus(char *pcBuf, uint32_t uiCap);
WAP_EXPORT uint32_t VT_JNI_GetPONIfRegisterStatus(char *pcBuf, uint32_t uiCap);
WAP_EXPORT uint32_t VT_JNI_getUplinkIfStats(char *pcBuf, uint32_t uiCap);

/**
 * Tells the WAN connection that carries internet service.
 * @param puiWanIndex receives its index, -1 (as unsigned) for a reply that names none; success only
 * @return 0; 1 for a null argument; the platform's code, or "app_m"'s
 */
WAP_EXPORT uint32_t VT_JNI_GetInternetWANIndex(uint32_t *puiWanIndex);

/// Tells how long the PON has been up, in "app_m"'s unit; written on success only. Results as
/// VT_JNI_GetInternetWANIndex.
WAP_EXPORT uint32_t VT_JNI_GetPONIfUpTime(uint32_t *puiUpTime);

#endif
