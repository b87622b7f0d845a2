// Requests and replies of the attach-control list, as they travel: what a host of the LAN may do,
// and how fast.
#ifndef WAP_RECORDS_ATTACH_CONTROL_H
#define WAP_RECORDS_ATTACH_CONTROL_H

#include <stddef.h>
#include <stdint.h>

namespace wap {

// RPC ids served by "gulm".
inline constexpr uint32_t kRpcGetAttachControl = 0x47307030;
inline constexpr uint32_t kRpcListAttachControls = 0x47307034;
// RPC ids served by "osgi_proxy".
inline constexpr uint32_t kRpcAddAttachControl = 0x47209096;
inline constexpr uint32_t kRpcSetAttachControl = 0x47209097;

/// Records that a list can hold.
inline constexpr uint32_t kAttachControlsMax = 128;

/// Which fields of a change count, by operation.
inline constexpr uint8_t kAttachMaskStorage = 0x0F;
inline constexpr uint8_t kAttachMaskNewLimits = 0xFF;
inline constexpr uint8_t kAttachMaskLimits = 0x3D;

#pragma pack(push, 1)

/// One word: the request of kRpcGetAttachControl and the reply of both changes, which name a record
/// by it, and the request of kRpcListAttachControls, where it is 0.
struct AttachInst {
    uint32_t uiInstId;
};
static_assert(sizeof(AttachInst) == 4);

/// Reply of kRpcListAttachControls.
struct AttachInstList {
    uint32_t uiCount;
    uint32_t auiInstIds[kAttachControlsMax];
};
static_assert(offsetof(AttachInstList, uiCount) == 0);
static_assert(offsetof(AttachInstList, auiInstIds) == 4);
static_assert(sizeof(AttachInstList) == 516);

/// The record of one host. Reply of kRpcGetAttachControl, where the last word says nothing.
struct AttachControl {
    char acMac[32];
    uint32_t uiInternetRight;  ///< 1 allowed
    uint32_t uiStorageRight;   ///< 1 allowed, 0 barred
    uint32_t uiUsBandwidth;    ///< upstream limit, in the service's unit as all four
    uint32_t uiDsBandwidth;    ///< downstream limit
    uint32_t uiUsGaranteeBw;
    uint32_t uiDsGaranteeBw;
    uint32_t uiUnused;
    uint32_t uiInstId;
};
static_assert(offsetof(AttachControl, acMac) == 0);
static_assert(offsetof(AttachControl, uiInternetRight) == 32);
static_assert(offsetof(AttachControl, uiStorageRight) == 36);
static_assert(offsetof(AttachControl, uiUsBandwidth) == 40);
static_assert(offsetof(AttachControl, uiDsBandwidth) == 44);
static_assert(offsetof(AttachControl, uiUsGaranteeBw) == 48);
static_assert(offsetof(AttachControl, uiDsGaranteeBw) == 52);
static_assert(offsetof(AttachControl, uiUnused) == 56);
static_assert(offsetof(AttachControl, uiInstId) == 60);
static_assert(sizeof(AttachControl) == 64);

/// Request of kRpcAddAttachControl. The record has no instance id yet: 0.
struct AttachControlAdd {
    AttachControl stRecord;
    uint8_t ucMask;
    uint8_t aucUnused[15];
};
static_assert(offsetof(AttachControlAdd, stRecord) == 0);
static_assert(offsetof(AttachControlAdd, ucMask) == 64);
static_assert(offsetof(AttachControlAdd, aucUnused) == 65);
static_assert(sizeof(AttachControlAdd) == 80);

/// Request of kRpcSetAttachControl.
struct AttachControlSet {
    uint32_t uiInstId;
    AttachControl stRecord;
    uint8_t ucMask;
    uint8_t aucUnused[15];
};
static_assert(offsetof(AttachControlSet, uiInstId) == 0);
static_assert(offsetof(AttachControlSet, stRecord) == 4);
static_assert(offsetof(AttachControlSet, ucMask) == 68);
static_assert(offsetof(AttachControlSet, aucUnused) == 69);
static_assert(sizeof(AttachControlSet) == 84);

#pragma pack(pop)

}  // namespace wap

#endif
