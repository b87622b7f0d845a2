// What a process of the gateway tells those who watch: an event for each call or message that it
// has served. The same bytes go into captures; docs/monitor.md shows them.
#ifndef WAP_GATEWAY_FRAMEWORK_TAP_EVENT_H
#define WAP_GATEWAY_FRAMEWORK_TAP_EVENT_H

#include <stddef.h>
#include <stdint.h>

#include <optional>
#include <string>
#include <string_view>

#include "framework/fault_table.h"
#include "framework/wire_table.h"
#include "vt_ssp_host.h"

namespace wap::gateway {

inline constexpr uint32_t kTapMagic = 0x314D5456;  // "VTM1"

enum class TapKind : uint8_t {
    kRpc = 1,
    kMessage = 2,  ///< nobody answers it; the code is what became of it
    kHello = 3,    ///< what a process says first of all: the receiver's name and id, and no more
    kFull = 4,     ///< what it says instead when so many watch it that it tells no more
};

/// Whether it is of a call or a message, and no word of a process about itself.
constexpr bool IsOfCall(TapKind eKind) {
    return eKind == TapKind::kRpc || eKind == TapKind::kMessage;
}

/// The bits of TapHead::ucFlags.
inline constexpr uint8_t kTapAnswered = 1;  ///< a reply goes back; else the caller waits in vain
inline constexpr uint8_t kTapMasked = 2;    ///< secrets are written over

/// The parts of an event, in their order.
enum TapPart : size_t { kTapRequest, kTapReply, kTapBlock, kTapParts };

#pragma pack(push, 1)

/// The start of an event. The bytes that are held of its parts follow, one behind the other.
struct alignas(4) TapHead {
    uint32_t uiMagic;
    uint8_t ucKind;  ///< TapKind
    uint8_t ucFlags;
    uint8_t ucFault;      ///< 0 for none, else FaultKind + 1
    uint8_t ucBlockSide;  ///< WireSide of what names the block
    uint64_t ulTimeUs;    ///< when the request came, in microseconds since 1970
    uint64_t ulDurationUs;
    uint32_t uiId;  ///< of the RPC, or the message's type
    uint32_t uiDstMid;
    uint32_t uiCode;
    uint32_t uiRoom;       ///< of the caller for a reply, in bytes
    uint32_t uiSenderPid;  ///< 0 when it is not known, as with messages
    uint32_t uiReceiverPid;
    char acReceiver[VT_MSG_NAME_SIZE];
    uint32_t uiFaultValue;
    uint32_t uiFaultDelayMs;
    uint32_t auiLength[kTapParts];  ///< in bytes; of the block, of what is packed in it
    uint32_t auiHeld[kTapParts];    ///< how many of them follow
    RpcMsgHead stHead;              ///< the caller's
};
static_assert(offsetof(TapHead, ucKind) == 4);
static_assert(offsetof(TapHead, ucBlockSide) == 7);
static_assert(offsetof(TapHead, ulTimeUs) == 8);
static_assert(offsetof(TapHead, ulDurationUs) == 16);
static_assert(offsetof(TapHead, uiId) == 24);
static_assert(offsetof(TapHead, uiCode) == 32);
static_assert(offsetof(TapHead, uiSenderPid) == 40);
static_assert(offsetof(TapHead, acReceiver) == 48);
static_assert(offsetof(TapHead, uiFaultValue) == 80);
static_assert(offsetof(TapHead, auiLength) == 88);
static_assert(offsetof(TapHead, auiHeld) == 100);
static_assert(offsetof(TapHead, stHead) == 112);
static_assert(sizeof(TapHead) == 196);

#pragma pack(pop)

static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__);

/// The longest block that is looked into, unpacked.
inline constexpr uint32_t kTapBlockMax = 1u << 20;
/// The longest event.
inline constexpr uint32_t kTapEventMax =
    uint32_t{sizeof(TapHead)} + 2 * VT_HOST_MAX_PAYLOAD + kTapBlockMax;

/// A part of an event: how long it was, and what there is of it.
struct TapBytes {
    uint32_t uiLength = 0;
    std::string acHeld = {};

    bool IsWhole() const { return acHeld.size() == uiLength; }
};

/// An event.
struct TapEvent {
    TapKind eKind = TapKind::kRpc;
    bool bAnswered = false;
    bool bMasked = false;
    std::optional<Fault> stFault = {};  ///< what someone scripted for it
    WireSide eBlockSide = WireSide::kNone;
    uint64_t ulTimeUs = 0;
    uint64_t ulDurationUs = 0;
    uint32_t uiId = 0;
    uint32_t uiDstMid = 0;
    uint32_t uiCode = 0;
    uint32_t uiRoom = 0;
    uint32_t uiSenderPid = 0;
    uint32_t uiReceiverPid = 0;
    std::string acReceiver = {};
    RpcMsgHead stHead = {};
    TapBytes astParts[kTapParts] = {};  ///< of a block that can't be read nothing is held
};

/// The event as bytes. Throws std::bad_alloc.
std::string EncodeEvent(const TapEvent &stEvent);

/// Reads an event, of which nothing is trusted; nothing when the bytes are none. The texts of the
/// header end in a zero.
std::optional<TapEvent> DecodeEvent(std::string_view sBytes);

/// What the table knows of an event's RPC or message; null for nothing.
const WireRpc *RpcOf(const TapEvent &stEvent);

/// The descriptor of the block that an RPC's request or reply names. Nothing when it names none, or
/// when the bytes end before it.
std::optional<VDataDesc> DescriptorIn(const WireRpc &stRpc, WireSide eSide,
                                      std::string_view sBytes);

}  // namespace wap::gateway

#endif
