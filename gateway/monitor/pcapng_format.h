// Numbers of the format pcapng, see pcapng.h.
#ifndef WAP_GATEWAY_MONITOR_PCAPNG_FORMAT_H
#define WAP_GATEWAY_MONITOR_PCAPNG_FORMAT_H

#include <stdint.h>

namespace wap::gateway::pcapng {

// Types of blocks.
inline constexpr uint32_t kSection = 0x0A0D0D0A;  // the same in either byte order
inline constexpr uint32_t kInterface = 1;
inline constexpr uint32_t kStatistics = 5;  // of an interface
inline constexpr uint32_t kPacket = 6;
/// What a section begins with, in its byte order.
inline constexpr uint32_t kByteOrder = 0x1A2B3C4D;

// Kinds of options.
inline constexpr uint16_t kOptionEnd = 0;
inline constexpr uint16_t kOptionComment = 1;
inline constexpr uint16_t kOptionProgram = 4;        ///< of a section
inline constexpr uint16_t kOptionInterfaceName = 2;  ///< of an interface, as the next two
inline constexpr uint16_t kOptionResolution = 9;
inline constexpr uint16_t kOptionOffset = 14;
inline constexpr uint16_t kOptionLost = 4;     ///< of a packet
inline constexpr uint16_t kOptionAllLost = 5;  ///< of statistics

}  // namespace wap::gateway::pcapng

#endif
