// A gateway with a USB serial device and two storage volumes.
#ifndef WAP_TESTS_SUPPORT_FURNISH_USB_H
#define WAP_TESTS_SUPPORT_FURNISH_USB_H

#include <cstdint>
#include <string>
#include <vector>

#include "support/world.h"

namespace wap::test {

/// The reply about a device that may be opened, or may not: 100 bytes.
std::string OpenBytes(const std::string &sPath, uint32_t uiResult = 0);

/// The reply about volumes, 7172 bytes: what is not a path is not zero. The count is that of the
/// paths unless another is given.
std::string DiscBytes(const std::vector<std::string> &asPaths);
std::string DiscBytes(const std::vector<std::string> &asPaths, uint32_t uiCount);

/// The device opens as 77 and has sent "OK\r\n". /mnt/usb1 has 4 GiB, half of it free; /mnt/gone
/// can't be measured.
void FurnishUsb(World &stWorld);

/// The objects of the two volumes in the answer, and that of the first when it can't be measured.
inline constexpr const char *kMeasuredVolume =
    "{ \"storagePath\": \"\\/mnt\\/usb1\", \"totalStorage\": 4294967296, "
    "\"validStorage\": 2147483648 }";
inline constexpr const char *kUnmeasuredVolume =
    "{ \"storagePath\": \"\\/mnt\\/usb1\", \"totalStorage\": 0, \"validStorage\": 0 }";
inline constexpr const char *kUnknownVolume =
    "{ \"storagePath\": \"\\/mnt\\/gone\", \"totalStorage\": 0, \"validStorage\": 0 }";

}  // namespace wap::test

#endif
