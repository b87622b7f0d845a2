// Worker of the IPTV status.
#ifndef WAP_ACCESS_JNI_IPTV_INFO_H
#define WAP_ACCESS_JNI_IPTV_INFO_H

#include <stdint.h>

#include "common/wap_export.h"

/**
 * Tells in one word whether the gateway's IPTV service works: NO_IPTV_CONNECTION, IPTV_DISCONNECT,
 * INVALID_MULTIVLAN, IPTV_BUSSINESS_OK or IPTV_BUSSINESS_NOK.
 * @param pcBuf  receives the word and its zero, cut to the buffer; success only
 * @param uiSize size of pcBuf in bytes
 * @return 0; 1 for no buffer; the platform's code of a failed request. Failures are recorded
 */
WAP_EXPORT uint32_t VT_JNI_GetIPTVStatus(char *pcBuf, uint32_t uiSize);

#endif
