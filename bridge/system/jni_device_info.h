// Workers of the device information queries. Each writes a zero-terminated text into
// (pcBuf, uiCap) on success, and records every failure.
#ifndef WAP_SYSTEM_JNI_DEVICE_INFO_H
#define WAP_SYSTEM_JNI_DEVICE_INFO_H

#include <stdint.h>

#include "common/wap_export.h"

/**
 * The text queries of this group. "...Info" writes a JSON object, the others the plain text.
 * @param pcBuf receives the text and its zero; untouched on failure
 * @param uiCap size of pcBuf in bytes, the zero included
 * @return 0; 0xF7702001 for a null buffer; -1 (as unsigned) when the request fails; 0xF7700005 when
 *         the text does not fit
 */
WAP_EXPORT uint32_t VT_JNI_GetDeviceInfo(char *pcBuf, uint32_t uiCap);
WAP_EXPORT uint32_t VT_JNI_GetDeviceMAC(char *pcBuf, uint32_t uiCap);
WAP_EXPORT uint32_t VT_JNI_GetDeviceManufacturerOUI(char *pcBuf, uint32_t uiCap);
WAP_EXPORT uint32_t VT_JNI_GetDeviceSerialNumber(char *pcBuf, uint32_t uiCap);
WAP_EXPORT uint32_t VT_JNI_GetDeviceDefaultWebPassword(char *pcBuf, uint32_t uiCap);
WAP_EXPORT uint32_t VT_JNI_GetDeviceDefaultSSID1Name(char *pcBuf, uint32_t uiCap);
WAP_EXPORT uint32_t VT_JNI_GetDeviceDefaultSSID1Password(char *pcBuf, uint32_t uiCap);

/// Gives the reply's word, in the answering process's unit. Results as above.
WAP_EXPORT uint32_t VT_JNI_GetDeviceUpTime(uint32_t *puiUpTime);

/// "1.0". 0; 1 for a null buffer; 0xF7700005 when it does not fit.
WAP_EXPORT uint32_t VT_JNI_GetAPIVersion(char *pcBuf, uint32_t uiCap);

/// The processor's busy rate in percent, never 0: an idle gateway shows 1. -1 on failure.
WAP_EXPORT uint32_t VT_JNI_GetCPUOccupancyRate(void);
/// The memory's use rate in percent. -1 on failure.
WAP_EXPORT uint32_t VT_JNI_GetRAMOccupancyRate(void);

/**
 * The device password, straight from the reply into the caller's buffer: up to 64 bytes, which a
 * hostile reply may fill without a zero, so give the buffer a zero byte beyond uiCap.
 * @return 0; 1 for a null buffer or capacity 0; -1 (as unsigned) when the request fails
 */
WAP_EXPORT uint32_t VT_KAVO_JNI_GetDevicePassword(char *pcBuf, uint32_t uiCap);

#endif
