// Workers of the traceroute test.
#ifndef WAP_ACCESS_JNI_TRACEROUTE_DIAGNOSTICS_H
#define WAP_ACCESS_JNI_TRACEROUTE_DIAGNOSTICS_H

#include <stdint.h>

#include "common/wap_export.h"

/**
 * Starts a traceroute.
 * @param uiWanIndex through which WAN connection
 * @param pcHost     name or address, from 1 to 254 bytes
 * @param pcPara     parameters in the words of "app_m", at most 254 bytes; null for none
 * @return the start status of "app_m"; -1 (as unsigned), recorded, for a text that is missing or
 * too long, and nobody was asked then, or for a failed request
 */
WAP_EXPORT uint32_t VT_JNI_startTraceRouteDiagnostics(uint32_t uiWanIndex, const char *pcHost,
                                                      const char *pcPara);

/// Asks for the result; as VT_JNI_getDnsDiagnosticsResult.
WAP_EXPORT uint32_t VT_JNI_getTraceRouteDiagnosticsResult(char **ppcText);

#endif
