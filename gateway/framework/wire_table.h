// What travels between the library and the gateway's processes, as a table: the facts of
// docs/wire-formats.md for programs that read requests and replies. Both are made by
// docs/wire/make-wire-formats.
#ifndef WAP_GATEWAY_FRAMEWORK_WIRE_TABLE_H
#define WAP_GATEWAY_FRAMEWORK_WIRE_TABLE_H

#include <stdint.h>

#include <array>
#include <optional>
#include <span>

namespace wap::gateway {

struct WireRecord;

/// What a field holds.
enum class WireKind : uint8_t {
    kUnsigned,    ///< a number of 1, 2, 4 or 8 bytes, the least significant first
    kSigned,      ///< the same, in two's complement
    kText,        ///< up to a zero, or all of the field
    kBytes,       ///< what no other kind says
    kRecord,      ///< another record
    kDescriptor,  ///< the record VDataDesc, which names a bulk block
};

struct WireField {
    const char *pcName;  ///< as in the header
    uint32_t uiOffset;
    uint32_t uiSize;  ///< in bytes; of one element where there are several
    uint32_t uiCount;
    WireKind eKind;
    bool bSecret;                 ///< nobody may see it
    const WireRecord *pstRecord;  ///< of the kinds that are records
};

struct WireRecord {
    const char *pcName;
    uint32_t uiSize;
    std::span<const WireField> astFields;  ///< by offset
};

enum class WireForm : uint8_t {
    kNothing,  ///< no byte
    kWord,     ///< 32 bits
    kText,     ///< up to a zero, or all there is
    kRecord,
    kRows,  ///< records, as many as the length says
};

/// A part of a request, a reply or a block.
struct WirePart {
    WireForm eForm;
    const WireRecord *pstRecord;  ///< of records and rows
    uint32_t uiSize;     ///< in bytes: of a row, of the longest text; 0 when it has no bound
    const char *pcName;  ///< of a word; null when it has none
    bool bSecret;
};

enum class WireJoin : uint8_t {
    kAlone,   ///< the first part and no other
    kEither,  ///< one of the two; the length tells which, and of a block also the rows' number
    kBoth,    ///< one behind the other
};

struct WireContent {
    WireJoin eJoin;
    std::array<WirePart, 2> astParts;
};

/// The modules by which the sender speaks, from the first to the last. None when it ends before it
/// begins.
struct WireModules {
    uint32_t uiFirst;
    uint32_t uiLast;
};

/// Where a descriptor travels.
enum class WireSide : uint8_t { kNone, kRequest, kReply };

/// An RPC, or a message that nobody answers. In the order in which it is told.
// NOLINTNEXTLINE(clang-analyzer-optin.performance.Padding)
struct WireRpc {
    uint32_t uiId;           ///< of a message: its type
    const char *pcName;      ///< GetWanList
    const char *pcReceiver;  ///< the process
    uint32_t uiTimeoutMs;    ///< 0 for a message
    std::array<WireModules, 2> astSenders;
    WireContent stRequest;
    WireContent stReply;
    WireContent stBlock;  ///< of the bulk block whose descriptor travels
    WireSide eBlockSide;  ///< kNone when none does
};

/// All RPCs and all messages, by id.
std::span<const WireRpc> WireRpcs();
std::span<const WireRpc> WireMessages();

/// The header that goes before each of them.
const WireRecord &WireMessageHead();

/// The RPC or message of an id; null when the library sends none.
const WireRpc *FindWireRpc(uint32_t uiId);
const WireRpc *FindWireMessage(uint32_t uiType);

/// Where the descriptor of a bulk block begins in a request or a reply, the 12 bytes of VDataDesc;
/// nothing when none travels in it.
std::optional<uint32_t> DescriptorOffset(const WireContent &stContent);

}  // namespace wap::gateway

#endif
