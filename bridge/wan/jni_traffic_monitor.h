// Workers of the traffic monitoring services. A bundle registers the destination addresses whose
// traffic it wants monitored; the process "gulm" keeps the registry of all bundles. An address list
// is a text of addresses with commas between them. All workers record every failure.
#ifndef WAP_WAN_JNI_TRAFFIC_MONITOR_H
#define WAP_WAN_JNI_TRAFFIC_MONITOR_H

#include <stdint.h>

#include "common/wap_export.h"

namespace wap {

/// What a change does.
inline constexpr uint32_t kMonitorAdd = 1;
inline constexpr uint32_t kMonitorDelete = 2;

}  // namespace wap

/// VT_API_TrafficMonitoringDestAddrOper with kMonitorAdd.
WAP_EXPORT uint32_t VT_JNI_addTrafficMonitoringDestAddress(const char *pcList, uint32_t uiListLen,
                                                           const char *pcBundle,
                                                           uint32_t uiBundleLen);

/// VT_API_TrafficMonitoringDestAddrOper with kMonitorDelete.
WAP_EXPORT uint32_t VT_JNI_deleteTrafficMonitoringDestAddress(const char *pcList,
                                                              uint32_t uiListLen,
                                                              const char *pcBundle,
                                                              uint32_t uiBundleLen);

/**
 * Changes the registry, having announced the change; that this may fail is not looked at.
 * @param pcList      the address list; nobody looks at the addresses before "gulm" does
 * @param uiListLen   its length in bytes
 * @param pcBundle    the bundle's name, cut to 255 bytes
 * @param uiBundleLen its length in bytes, uncut
 * @param uiOperation kMonitorAdd; anything else deletes
 * @return 0; 1 for null and for a length that is not the text's, with nothing announced; else the
 *         code of the bulk block or of the request. No block is left on failure
 */
WAP_EXPORT uint32_t VT_API_TrafficMonitoringDestAddrOper(const char *pcList, uint32_t uiListLen,
                                                         const char *pcBundle, uint32_t uiBundleLen,
                                                         uint32_t uiOperation);

/**
 * Announces a change to "app_m", which does not answer. A notice that can't be sent is dropped.
 * @param uiListLen   the bytes of the list that count
 * @param pcBundle    cut to 127 bytes
 * @param uiBundleLen not looked at
 * @param uiOperation kMonitorAdd; anything else deletes
 * @return 0, also when the notice can't be sent; 1 for null; 0xF7108001 when memory runs out; else
 *         the code of the bulk block
 */
WAP_EXPORT uint32_t VT_API_TrafficMonitoringNotifyAppM(const char *pcList, uint32_t uiListLen,
                                                       const char *pcBundle, uint32_t uiBundleLen,
                                                       uint32_t uiOperation);

/**
 * Lists the registry of all bundles as a JSON text.
 * @param ppcText receives the text, released with VT_OS_MemFreeD by the caller; null when the
 *                registry is empty. Written on success only
 * @return 0; 1 for null and when there is no memory for the text; the code of the request or of
 *         the read; -1 (as unsigned) for a block in which no text ends,
 *         or whose names and lists would be no JSON in the answer, or reach beyond their places
 */
WAP_EXPORT uint32_t VT_JNI_getTrafficMonitoringDestAddressInfo(char **ppcText);

/**
 * Makes the JSON text of a registry text: records with semicolons between them, each a bundle's
 * name and, from its first "[" on, a JSON array, which is taken as it stands. What has no "[", or
 * begins with it, is left out.
 * @param pcText not trusted but for its end and for the arrays being JSON; names are cut to 255
 *               bytes
 * @param pcOut  receives the JSON text and its zero; it must not overlap with pcText. With too
 *               little room the records before the first one that does not fit are all there is
 * @param uiCap  size of pcOut in bytes
 * @return 0; 1, with nothing written, for null and where not even an empty list fits
 */
WAP_EXPORT uint32_t VT_API_ConvertAddrListToJson(const char *pcText, char *pcOut, uint32_t uiCap);

#endif
