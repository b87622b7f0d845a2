// Events as tests make them.
#ifndef WAP_TESTS_GATEWAY_TAP_EVENTS_H
#define WAP_TESTS_GATEWAY_TAP_EVENTS_H

#include <stdint.h>
#include <string.h>

#include <string>

#include "framework/tap_event.h"
#include "support/wire_bytes.h"

namespace wap::test {

inline constexpr uint32_t kTapGetMac = 0x47209032;
inline constexpr uint32_t kTapGetPassword = 0x47209050;
inline constexpr uint32_t kTapSetPassword = 0x47209044;
inline constexpr uint32_t kTapAddAddresses = 0x48304173;
inline constexpr uint32_t kTapGetRoutes = 0x46345865;
inline constexpr uint32_t kTapUnknown = 0x12345678;

/// 2023-11-14 22:13:20.123456 UTC.
inline constexpr uint64_t kTapTime = 1700000000123456;

inline void SetPart(gateway::TapEvent &stEvent, gateway::TapPart ePart,
                    const std::string &acBytes) {
    stEvent.astParts[ePart] = {static_cast<uint32_t>(acBytes.size()), acBytes};
}

/// A call of the library's that was answered.
inline gateway::TapEvent TapCall(uint32_t uiId, const char *pcReceiver,
                                 const std::string &acRequest, const std::string &acReply) {
    gateway::TapEvent stEvent;
    stEvent.bAnswered = true;
    stEvent.ulTimeUs = kTapTime;
    stEvent.ulDurationUs = 312;
    stEvent.uiId = uiId;
    stEvent.uiRoom = static_cast<uint32_t>(acReply.size());
    stEvent.uiSenderPid = 100;
    stEvent.uiReceiverPid = 200;
    stEvent.acReceiver = pcReceiver;
    strcpy(stEvent.stHead.acSndApp, "jamvm");
    (void)stEvent.acReceiver.copy(stEvent.stHead.acRcvApp, VT_MSG_NAME_SIZE - 1);
    stEvent.stHead.uiSndMid = 281;
    SetPart(stEvent, gateway::kTapRequest, acRequest);
    SetPart(stEvent, gateway::kTapReply, acReply);
    return stEvent;
}

inline gateway::TapEvent TapMac() {
    return TapCall(kTapGetMac, "osgi_proxy", Word(0), Field("02:A1:B2:00:10:01", 18));
}

/// A call whose request names a block.
inline gateway::TapEvent TapAddresses() {
    const std::string acBlock("10.0.0.1,10.0.0.2\0", 18);
    gateway::TapEvent stEvent =
        TapCall(kTapAddAddresses, "gulm",
                Word(4097) + Word(18) + Word(18) + Field("org.example.a", 256), Word(0));
    stEvent.eBlockSide = gateway::WireSide::kRequest;
    SetPart(stEvent, gateway::kTapBlock, acBlock);
    return stEvent;
}

}  // namespace wap::test

#endif
