// Workers of the LAN hosts and of the names on the LAN. "app_m" keeps the table of hosts and writes
// the answers; what comes back here is its text, unread. Every failure is recorded.
#ifndef WAP_LAN_JNI_LANHOST_INFO_H
#define WAP_LAN_JNI_LANHOST_INFO_H

#include <stdint.h>

#include "common/wap_export.h"

/**
 * What is known of some hosts, or of all.
 * @param ppcMacs MAC addresses, of which 31 bytes at most are sent; null and empty ones go out as
 *                empty. A table without any text (null included) asks for all hosts
 * @param uiCount length of ppcMacs
 * @param ppcText receives the answer, released with VT_OS_MemFreeD by the caller; null on failure
 * @return 0, also when memory or a request fails: the answer then is {"Result":-1,"List":[] }; 1
 *         when there is no memory for that either; 0xF7702001 for a null ppcText
 */
WAP_EXPORT uint32_t VT_JNI_getLANHostInfoByMAC(const char *const *ppcMacs, uint32_t uiCount,
                                               char **ppcText);

/// The traffic of some hosts, or of all. Arguments as above, but whatever fails is answered with
/// its code.
WAP_EXPORT uint32_t VT_JNI_getLANHostStats(const char *const *ppcMacs, uint32_t uiCount,
                                           char **ppcText);

/**
 * The hosts of a class, or behind an interface; "app_m" knows which there are.
 * @param pcClass the class; a text of more than 15 bytes goes out as an empty one
 * @param ppcText receives the answer, released with VT_OS_MemFreeD by the caller; null on failure
 * @return 0; the code of the request or of the read; -1 (as unsigned) for an answer that is no
 * text; 0xF7702001 for a null argument
 */
WAP_EXPORT uint32_t VT_JNI_getLANHostInfoByClass(const char *pcClass, char **ppcText);
WAP_EXPORT uint32_t VT_JNI_getLANHostInfoByInterface(const char *pcInterface, char **ppcText);

/**
 * The speed of a host, and the gateway's name: the reply fills the caller's buffer as it stands. A
 * hostile reply may fill it without a zero, so give it a zero byte beyond uiCap.
 * @param pcBuf receives the text; empty on failure
 * @param uiCap size of pcBuf in bytes: 128 for the speed, 256 for the name
 * @return 0; the platform's code; 0xF7702001 for a null argument or no room
 */
WAP_EXPORT uint32_t VT_JNI_getLANHostSpeed(const char *pcMac, char *pcBuf, uint32_t uiCap);
WAP_EXPORT uint32_t VT_JNI_getGatewayName(char *pcBuf, uint32_t uiCap);

/**
 * Names the gateway.
 * @param pcName 1 to 256 bytes
 * @return 0; -1 (as unsigned) for no name or when the request fails; -2 when it is too long
 */
WAP_EXPORT uint32_t VT_JNI_setGatewayName(const char *pcName);

/**
 * Names a host.
 * @param pcMac  its MAC address; a text of more than 31 bytes goes out as an empty one
 * @param pcName up to 64 bytes
 * @return 0; -1 (as unsigned) for a null text or when the request fails; -2 when the name is too
 * long
 */
WAP_EXPORT uint32_t VT_JNI_setLANHostName(const char *pcMac, const char *pcName);

#endif
