#include "framework/tap_event.h"

#include <string.h>

#include <algorithm>

namespace wap::gateway {

namespace {

constexpr uint8_t kFaultKinds = static_cast<uint8_t>(FaultKind::kFill) + 1;

/// Whether the lengths are possible, and the held bytes are as many as there are.
bool LengthsAreRight(const TapHead &stHead, size_t uiBytes) {
    constexpr uint32_t kMost[kTapParts] = {VT_HOST_MAX_PAYLOAD, VT_HOST_MAX_PAYLOAD, kTapBlockMax};
    uint64_t ulHeld = 0;
    for (size_t i = 0; i < kTapParts; ++i) {
        // A block may say of itself that it is longer than any.
        const uint32_t uiLength = stHead.auiLength[i];
        const uint32_t uiHeld = stHead.auiHeld[i];
        if (uiHeld > std::min(uiLength, kMost[i]) || (i != kTapBlock && uiLength > kMost[i])) {
            return false;
        }
        ulHeld += uiHeld;
    }
    return ulHeld == uiBytes && stHead.uiRoom <= VT_HOST_MAX_PAYLOAD;
}

bool KindsAreRight(const TapHead &stHead) {
    const auto eKind = static_cast<TapKind>(stHead.ucKind);
    const auto eSide = static_cast<WireSide>(stHead.ucBlockSide);
    return (IsOfCall(eKind) || eKind == TapKind::kHello || eKind == TapKind::kFull) &&
           stHead.ucFault <= kFaultKinds &&
           (eSide == WireSide::kRequest || eSide == WireSide::kReply ||
            (eSide == WireSide::kNone && stHead.auiLength[kTapBlock] == 0));
}

/// What an event and its head have alike, from one of them to the other.
template <class From, class To>
void CopySame(const From &stFrom, To &stTo) {
    stTo.ulTimeUs = stFrom.ulTimeUs;
    stTo.ulDurationUs = stFrom.ulDurationUs;
    stTo.uiId = stFrom.uiId;
    stTo.uiDstMid = stFrom.uiDstMid;
    stTo.uiCode = stFrom.uiCode;
    stTo.uiRoom = stFrom.uiRoom;
    stTo.uiSenderPid = stFrom.uiSenderPid;
    stTo.uiReceiverPid = stFrom.uiReceiverPid;
    stTo.stHead = stFrom.stHead;
}

template <size_t kSize>
void EndText(char (&acField)[kSize]) {
    acField[kSize - 1] = '\0';
}

}  // namespace

std::string EncodeEvent(const TapEvent &stEvent) {
    TapHead stHead = {};
    stHead.uiMagic = kTapMagic;
    stHead.ucKind = static_cast<uint8_t>(stEvent.eKind);
    stHead.ucFlags = static_cast<uint8_t>((stEvent.bAnswered ? kTapAnswered : 0) |
                                          (stEvent.bMasked ? kTapMasked : 0));
    if (stEvent.stFault) {
        stHead.ucFault = static_cast<uint8_t>(static_cast<uint8_t>(stEvent.stFault->eKind) + 1);
        stHead.uiFaultValue = stEvent.stFault->uiValue;
        stHead.uiFaultDelayMs = stEvent.stFault->uiDelayMs;
    }
    stHead.ucBlockSide = static_cast<uint8_t>(stEvent.eBlockSide);
    CopySame(stEvent, stHead);
    (void)stEvent.acReceiver.copy(stHead.acReceiver, sizeof(stHead.acReceiver) - 1);
    size_t uiHeld = 0;
    for (size_t i = 0; i < kTapParts; ++i) {
        stHead.auiLength[i] = stEvent.astParts[i].uiLength;
        stHead.auiHeld[i] = static_cast<uint32_t>(stEvent.astParts[i].acHeld.size());
        uiHeld += stHead.auiHeld[i];
    }
    std::string acBytes;
    acBytes.reserve(sizeof(stHead) + uiHeld);
    acBytes.append(reinterpret_cast<const char *>(&stHead), sizeof(stHead));
    for (const TapBytes &stPart : stEvent.astParts) {
        acBytes += stPart.acHeld;
    }
    return acBytes;
}

std::optional<TapEvent> DecodeEvent(std::string_view sBytes) {
    TapHead stHead;
    if (sBytes.size() < sizeof(stHead)) {
        return std::nullopt;
    }
    memcpy(&stHead, sBytes.data(), sizeof(stHead));
    sBytes.remove_prefix(sizeof(stHead));
    if (stHead.uiMagic != kTapMagic || !KindsAreRight(stHead) ||
        !LengthsAreRight(stHead, sBytes.size())) {
        return std::nullopt;
    }
    EndText(stHead.acReceiver);
    EndText(stHead.stHead.acSndApp);
    EndText(stHead.stHead.acRcvApp);
    TapEvent stEvent;
    stEvent.eKind = static_cast<TapKind>(stHead.ucKind);
    stEvent.bAnswered = (stHead.ucFlags & kTapAnswered) != 0;
    stEvent.bMasked = (stHead.ucFlags & kTapMasked) != 0;
    if (stHead.ucFault != 0) {
        stEvent.stFault = Fault{static_cast<FaultKind>(stHead.ucFault - 1), stHead.uiFaultValue,
                                stHead.uiFaultDelayMs, std::nullopt};
    }
    stEvent.eBlockSide = static_cast<WireSide>(stHead.ucBlockSide);
    CopySame(stHead, stEvent);
    stEvent.acReceiver = stHead.acReceiver;
    for (size_t i = 0; i < kTapParts; ++i) {
        stEvent.astParts[i] = {stHead.auiLength[i],
                               std::string(sBytes.substr(0, stHead.auiHeld[i]))};
        sBytes.remove_prefix(stHead.auiHeld[i]);
    }
    return stEvent;
}

const WireRpc *RpcOf(const TapEvent &stEvent) {
    return stEvent.eKind == TapKind::kMessage ? FindWireMessage(stEvent.uiId)
                                              : FindWireRpc(stEvent.uiId);
}

std::optional<VDataDesc> DescriptorIn(const WireRpc &stRpc, WireSide eSide,
                                      std::string_view sBytes) {
    if (stRpc.eBlockSide != eSide || eSide == WireSide::kNone) {
        return std::nullopt;
    }
    const auto uiOffset =
        DescriptorOffset(eSide == WireSide::kRequest ? stRpc.stRequest : stRpc.stReply);
    VDataDesc stDesc = {};
    if (!uiOffset || sBytes.size() < sizeof(stDesc) || *uiOffset > sBytes.size() - sizeof(stDesc)) {
        return std::nullopt;
    }
    memcpy(&stDesc, sBytes.data() + *uiOffset, sizeof(stDesc));
    return stDesc.uiDataID == 0 ? std::nullopt : std::optional(stDesc);
}

}  // namespace wap::gateway
