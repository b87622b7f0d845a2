// The requests to usb_mngt that more than one source sends.
#ifndef WAP_TESTS_GATEWAY_USB_RPCS_H
#define WAP_TESTS_GATEWAY_USB_RPCS_H

#include <cstdint>

namespace wap::test {

inline constexpr uint32_t kOpen = 0x4710303F;
inline constexpr uint32_t kRegister = 0x47103041;
inline constexpr uint32_t kLock = 0x47103043;
inline constexpr uint32_t kUnlock = 0x47103044;

}  // namespace wap::test

#endif
