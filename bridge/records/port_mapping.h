// Requests and replies of the port mapping services, as they travel.
#ifndef WAP_RECORDS_PORT_MAPPING_H
#define WAP_RECORDS_PORT_MAPPING_H

#include <stddef.h>
#include <stdint.h>

namespace wap {

// RPC ids served by "gulm".
inline constexpr uint32_t kRpcGetPortMappingOfKind1 = 0x47309010;
inline constexpr uint32_t kRpcGetPortMappingOfKind0 = 0x47309014;
/// @block PortMappingRow[]
inline constexpr uint32_t kRpcGetPortMappingTable = 0x47309029;
inline constexpr uint32_t kRpcGetPortMappingNum = 0x4730902A;
// RPC ids served by "osgi_proxy".
inline constexpr uint32_t kRpcAddPortMapping = 0x4720909A;
inline constexpr uint32_t kRpcDelPortMapping = 0x4720909B;
inline constexpr uint32_t kRpcSwitchPortMapping = 0x4720909C;

/// The WAN connection has no port mappings, or may not have any.
inline constexpr uint32_t kErrNotMappable = 0xF7307006;
/// What "osgi_proxy" answers to an addition that it refuses by its own rules.
inline constexpr uint32_t kErrMappingRefused = 0xF7307005;

/// The enable word of a mapping that is on; any other is off.
inline constexpr uint32_t kMappingOn = 1;
/// Bit of a switch request's change mask: the enable word is new.
inline constexpr uint32_t kChangeEnable = 0x10;

#pragma pack(push, 1)

/// One port mapping. Texts should end with a zero; read them as if they might not.
struct PortMappingEntry {
    uint32_t uiEnable;
    uint8_t aucUnused1[20];
    uint32_t uiExternalPort;
    uint32_t uiExternalPortEnd;
    uint32_t uiInternalPort;
    char acProtocol[16];
    char acInternalClient[16];
    uint8_t aucUnused2[257];
    uint32_t uiInternalPortCopy;  ///< not on a word boundary
    uint8_t aucUnused3[47];
};
static_assert(offsetof(PortMappingEntry, uiEnable) == 0);
static_assert(offsetof(PortMappingEntry, aucUnused1) == 4);
static_assert(offsetof(PortMappingEntry, uiExternalPort) == 24);
static_assert(offsetof(PortMappingEntry, uiExternalPortEnd) == 28);
static_assert(offsetof(PortMappingEntry, uiInternalPort) == 32);
static_assert(offsetof(PortMappingEntry, acProtocol) == 36);
static_assert(offsetof(PortMappingEntry, acInternalClient) == 52);
static_assert(offsetof(PortMappingEntry, aucUnused2) == 68);
static_assert(offsetof(PortMappingEntry, uiInternalPortCopy) == 325);
static_assert(offsetof(PortMappingEntry, aucUnused3) == 329);
static_assert(sizeof(PortMappingEntry) == 376);

/// The WAN connection that a change is for.
struct PortMappingWan {
    uint32_t uiConnKind;
    uint32_t uiWanDevIns;
    uint32_t uiWanConnDevIns;
    uint32_t uiWanConnIns;
};
static_assert(offsetof(PortMappingWan, uiConnKind) == 0);
static_assert(offsetof(PortMappingWan, uiWanDevIns) == 4);
static_assert(offsetof(PortMappingWan, uiWanConnDevIns) == 8);
static_assert(offsetof(PortMappingWan, uiWanConnIns) == 12);
static_assert(sizeof(PortMappingWan) == 16);

/// Request of kRpcAddPortMapping.
struct AddPortMappingRequest {
    PortMappingWan stWan;
    PortMappingEntry stEntry;
};
static_assert(offsetof(AddPortMappingRequest, stWan) == 0);
static_assert(offsetof(AddPortMappingRequest, stEntry) == 16);
static_assert(sizeof(AddPortMappingRequest) == 392);

/// Request of kRpcDelPortMapping.
struct DelPortMappingRequest {
    PortMappingWan stWan;
    uint32_t uiInstId;
};
static_assert(offsetof(DelPortMappingRequest, stWan) == 0);
static_assert(offsetof(DelPortMappingRequest, uiInstId) == 16);
static_assert(sizeof(DelPortMappingRequest) == 20);

/// Request of kRpcSwitchPortMapping.
struct SwitchPortMappingRequest {
    PortMappingWan stWan;  ///< its uiConnKind is 0, whatever the connection's
    uint32_t uiInstId;
    PortMappingEntry stEntry;
    uint32_t uiChanges;
};
static_assert(offsetof(SwitchPortMappingRequest, stWan) == 0);
static_assert(offsetof(SwitchPortMappingRequest, uiInstId) == 16);
static_assert(offsetof(SwitchPortMappingRequest, stEntry) == 20);
static_assert(offsetof(SwitchPortMappingRequest, uiChanges) == 396);
static_assert(sizeof(SwitchPortMappingRequest) == 400);

/// Reply of the three changes.
struct PortMappingChangeReply {
    uint32_t uiUnused;
};
static_assert(sizeof(PortMappingChangeReply) == 4);

/// Request of kRpcGetPortMappingOfKind1 and kRpcGetPortMappingOfKind0; the reply is an entry.
struct PortMappingRequest {
    uint32_t uiWanDevIns;
    uint32_t uiWanConnDevIns;
    uint32_t uiWanConnIns;
    uint32_t uiInstId;
};
static_assert(offsetof(PortMappingRequest, uiWanDevIns) == 0);
static_assert(offsetof(PortMappingRequest, uiWanConnDevIns) == 4);
static_assert(offsetof(PortMappingRequest, uiWanConnIns) == 8);
static_assert(offsetof(PortMappingRequest, uiInstId) == 12);
static_assert(sizeof(PortMappingRequest) == 16);

/// Request of kRpcGetPortMappingTable and kRpcGetPortMappingNum: 0, for the mappings of all WANs.
/// The first is answered with the descriptor of a bulk block of rows.
struct AllPortMappingsRequest {
    uint32_t uiZero;
};
static_assert(sizeof(AllPortMappingsRequest) == 4);

/// Reply of kRpcGetPortMappingNum.
struct PortMappingNumReply {
    uint32_t uiNum;
};
static_assert(sizeof(PortMappingNumReply) == 4);

/// A row of the table. One with WAN index 0 ends it.
struct PortMappingRow {
    uint32_t uiWanIndex;
    uint32_t uiInstId;
    uint8_t aucUnused[32];
    PortMappingEntry stEntry;
};
static_assert(offsetof(PortMappingRow, uiWanIndex) == 0);
static_assert(offsetof(PortMappingRow, uiInstId) == 4);
static_assert(offsetof(PortMappingRow, aucUnused) == 8);
static_assert(offsetof(PortMappingRow, stEntry) == 40);
static_assert(sizeof(PortMappingRow) == 416);

#pragma pack(pop)

}  // namespace wap

#endif
