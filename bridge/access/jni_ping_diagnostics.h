// Workers of the ping test.
#ifndef WAP_ACCESS_JNI_PING_DIAGNOSTICS_H
#define WAP_ACCESS_JNI_PING_DIAGNOSTICS_H

#include <stdint.h>

#include "common/wap_export.h"

/**
 * Starts a ping.
 * @param uiWanIndex through which WAN connection
 * @param pcHost     name or address, from 1 to 255 bytes
 * @param pcPara     a JSON text, which must parse whole: of an object, the integers
 *                   NumberOfRepetitions, Timeout, DataBlockSize and DSCP; what is missing or no
 *                   integer counts as 0. Null for none
 * @return the start status of "app_m"; -1 (as unsigned), recorded, for no host, parameters that do
 *         not parse or a failed request; -2 (as unsigned) for a host that is empty or too long.
 *         Nobody is asked for what is wrong here
 */
WAP_EXPORT uint32_t VT_JNI_SetIPPingDiagnostics(uint32_t uiWanIndex, const char *pcHost,
                                                const char *pcPara);

/**
 * Asks for the result of the ping.
 * @param pcBuf  receives the reply as "app_m" writes it, zeros behind it; a reply of uiSize bytes
 *               leaves no zero, so give the buffer a zero byte behind. Empty on failure
 * @param uiSize size of pcBuf in bytes
 * @return 0; 1 for no buffer; the platform's code. Failures are recorded
 */
WAP_EXPORT uint32_t VT_JNI_GetIPPingDiagnosticsResult(char *pcBuf, uint32_t uiSize);

#endif
