// Requests and replies about the voice lines, as they travel.
#ifndef WAP_RECORDS_VOIP_H
#define WAP_RECORDS_VOIP_H

#include <stdint.h>

#include "records/word_request.h"

namespace wap {

// Served by "app_m", which writes the text itself.
/// @reply text kPotsInfoSize
inline constexpr uint32_t kRpcGetPotsInfo = 0x47209061;
// Served by "osgi_proxy".
inline constexpr uint32_t kRpcSubscribeVoice = 0x47209062;
inline constexpr uint32_t kRpcUnsubscribeVoice = 0x47209063;

/// Size of the voice lines' text in bytes; one that fills it has no zero.
inline constexpr uint32_t kPotsInfoSize = 512;

#pragma pack(push, 1)

/// Request of both changes: who is told of the voice events, of all of them.
struct VoiceSubscription {
    char acBundleName[128];  ///< padded with zeros; a name of 128 bytes or more has none
};
static_assert(sizeof(VoiceSubscription) == 128);

/// Reply of both; the word says nothing.
struct VoiceSubscriptionReply {
    uint32_t uiUnused;
};
static_assert(sizeof(VoiceSubscriptionReply) == 4);

#pragma pack(pop)

}  // namespace wap

#endif
