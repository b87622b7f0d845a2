// Workers of the DNS test.
#ifndef WAP_ACCESS_JNI_DNS_DIAGNOSTICS_H
#define WAP_ACCESS_JNI_DNS_DIAGNOSTICS_H

#include <stdint.h>

#include "common/wap_export.h"

/**
 * Starts the resolving of a name.
 * @param uiWanIndex through which WAN connection
 * @param pcHost     the name, from 1 to 255 bytes
 * @param pcServers  the DNS servers to ask, not empty, cut to 511 bytes
 * @param pcPara     parameters in the words of "app_m", at most 511 bytes; null for none
 * @return the start status of "app_m"; -1 (as unsigned), recorded, for a text that is missing or
 * too long, and nobody was asked then, or for a failed request
 */
WAP_EXPORT uint32_t VT_JNI_startDnsDiagnostics(uint32_t uiWanIndex, const char *pcHost,
                                               const char *pcServers, const char *pcPara);

/**
 * Asks for the result.
 * @param ppcText receives the text of "app_m", or {"Result":%d} with its status when it has none;
 *                released with VT_OS_MemFreeD by the caller; success only
 * @return 0; 0xF7702001 for a null argument; the code of a failed request or read; 1 when memory
 *         runs out; -1 (as unsigned) for a block that holds no text or does not end one. Failures
 * are recorded
 */
WAP_EXPORT uint32_t VT_JNI_getDnsDiagnosticsResult(char **ppcText);

#endif
