// What "gulm" tells about one WAN connection, as it travels.
#ifndef WAP_RECORDS_WAN_RECORD_H
#define WAP_RECORDS_WAN_RECORD_H

#include <stddef.h>
#include <stdint.h>

namespace wap {

// RPC id served by "gulm".
inline constexpr uint32_t kRpcGetWanRecord = 0x47301049;

#pragma pack(push, 1)

/// Request of kRpcGetWanRecord.
struct WanRecordRequest {
    uint32_t uiZero;
    uint32_t uiWanIndex;
};
static_assert(offsetof(WanRecordRequest, uiZero) == 0);
static_assert(offsetof(WanRecordRequest, uiWanIndex) == 4);
static_assert(sizeof(WanRecordRequest) == 8);

/// Reply of kRpcGetWanRecord. The name should end with a zero; read it as if it might not.
struct WanRecord {
    char acName[256];
    uint32_t uiWanDevIns;
    uint32_t uiWanConnDevIns;
    uint32_t uiWanConnIns;
    uint32_t uiUnused;
    uint32_t uiConnKind;     ///< 0 or 1
    uint32_t uiMappingGate;  ///< 1: may have port mappings, if the mode agrees
    uint32_t uiMappingMode;  ///< 0 or 2: may have port mappings, if the gate agrees
};
static_assert(offsetof(WanRecord, acName) == 0);
static_assert(offsetof(WanRecord, uiWanDevIns) == 256);
static_assert(offsetof(WanRecord, uiWanConnDevIns) == 260);
static_assert(offsetof(WanRecord, uiWanConnIns) == 264);
static_assert(offsetof(WanRecord, uiUnused) == 268);
static_assert(offsetof(WanRecord, uiConnKind) == 272);
static_assert(offsetof(WanRecord, uiMappingGate) == 276);
static_assert(offsetof(WanRecord, uiMappingMode) == 280);
static_assert(sizeof(WanRecord) == 284);

#pragma pack(pop)

}  // namespace wap

#endif
