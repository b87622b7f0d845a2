// Workers of the gateway's own LAN address and of its DHCP server. Every failure is recorded.
#ifndef WAP_LAN_JNI_LAN_ADDRESS_H
#define WAP_LAN_JNI_LAN_ADDRESS_H

#include <stdint.h>

#include "common/wap_export.h"
#include "records/lan_address.h"

/**
 * The gateway's LAN address and mask, as "app_m" writes them: a JSON text, which fills pcBuf as it
 * stands.
 * @param pcBuf receives the text, or {"Result":-1} when the request fails, cut to uiCap - 1 bytes;
 *              a hostile reply may fill it without a zero, so give it a zero byte beyond uiCap
 * @param uiCap size of pcBuf in bytes
 * @return 0, also when the request fails; 0xF7702001 for no buffer
 */
WAP_EXPORT uint32_t VT_JNI_getLANHostIP(char *pcBuf, uint32_t uiCap);

/**
 * The settings of the DHCP server, asked of "gulm", as a JSON object.
 * @param pcBuf receives the text and its zero: the object, or {"Result":-1} cut to uiCap - 1 bytes
 *              when memory or the request fails or when the object does not fit
 * @param uiCap size of pcBuf in bytes
 * @return 0, also in those cases; 0xF7702001 for no buffer
 */
WAP_EXPORT uint32_t VT_JNI_getLANDHCPInfo(char *pcBuf, uint32_t uiCap);

/**
 * Writes the settings of the DHCP server as a JSON object.
 * @param pcBuf receives the text and its zero; success only
 * @param uiCap size of pcBuf in bytes
 * @return 0; 0xF7702001 for a null argument; otherwise the code of
 *         JNI_COMMON_ComposeResult2JString
 */
WAP_EXPORT uint32_t VT_API_getDhcpInfoJsonStr(const wap::DhcpSettings *pstSettings, char *pcBuf,
                                              uint32_t uiCap);

/**
 * Sets the gateway's LAN address and mask, through "osgi_proxy". A text of more than 15 bytes goes
 * out as an empty one; nobody checks here whether the texts are addresses.
 * @return 0; -1 (as unsigned) for a null text, or when memory or the request fails
 */
WAP_EXPORT uint32_t VT_JNI_setLANHostIP(const char *pcAddress, const char *pcMask);

/**
 * Sets up the DHCP server, through "osgi_proxy". Addresses as for VT_JNI_setLANHostIP.
 * @param pcStatus   "TRUE", in any case, switches the server on; any other text switches it off
 * @param pcStart    the pool's first address
 * @param pcEnd      the pool's last address
 * @param uiDuration how long a lease lasts, in the gateway's unit
 * @return 0; -1 (as unsigned) for a null text, or when memory or the request fails
 */
WAP_EXPORT uint32_t VT_JNI_setLANDHCPInfo(const char *pcStatus, const char *pcStart,
                                          const char *pcEnd, uint32_t uiDuration);

#endif
