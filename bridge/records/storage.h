// Request and reply about the storage volumes that are mounted on the gateway, as they travel.
#ifndef WAP_RECORDS_STORAGE_H
#define WAP_RECORDS_STORAGE_H

#include <stddef.h>
#include <stdint.h>

namespace wap {

// RPC id served by "usb_mngt".
inline constexpr uint32_t kRpcGetDiscInfo = 0x47103067;

/// Volumes that a reply has room for.
inline constexpr uint32_t kDiscVolumesMax = 32;

#pragma pack(push, 1)

/// Request of kRpcGetDiscInfo: the word "input", without a zero behind it.
struct DiscInfoReq {
    char acInput[5];
};
static_assert(sizeof(DiscInfoReq) == 5);
inline constexpr DiscInfoReq kDiscInfoReq = {{'i', 'n', 'p', 'u', 't'}};

/// A mounted volume. The text should end with a zero; read it as if it might not.
struct DiscVolume {
    uint8_t aucUnused[96];  ///< "usb_mngt"'s own
    char acMountPath[128];
};
static_assert(offsetof(DiscVolume, aucUnused) == 0);
static_assert(offsetof(DiscVolume, acMountPath) == 96);
static_assert(sizeof(DiscVolume) == 224);

/// Reply of kRpcGetDiscInfo.
struct DiscInfoReply {
    uint32_t uiCount;
    DiscVolume astVolumes[kDiscVolumesMax];
};
static_assert(offsetof(DiscInfoReply, uiCount) == 0);
static_assert(offsetof(DiscInfoReply, astVolumes) == 4);
static_assert(sizeof(DiscInfoReply) == 7172);

#pragma pack(pop)

}  // namespace wap

#endif
