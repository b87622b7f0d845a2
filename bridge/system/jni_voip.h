// Workers of the voice lines.
#ifndef WAP_SYSTEM_JNI_VOIP_H
#define WAP_SYSTEM_JNI_VOIP_H

#include <stdint.h>

namespace wap {

/**
 * Fetches what "app_m" tells about the telephone ports.
 * @param ppcText receives the text as it came, of 512 bytes at most and with a zero behind,
 *                released with VT_OS_MemFreeD by the caller; success only
 * @return 0; 1 for no memory or a null argument; the platform's code. Failures are recorded
 */
uint32_t FetchPotsInfo(char **ppcText);

/**
 * Has a bundle told of voice events, or no longer.
 * @param pcBundleName its name, not null; the first 128 bytes are sent
 * @return 0, or the platform's code, recorded; 0xF7702001, recorded, for null
 */
uint32_t SubscribeVoice(const char *pcBundleName);
uint32_t UnsubscribeVoice(const char *pcBundleName);

}  // namespace wap

#endif
