// Codes with which the gateway's processes answer, beside those of the message service.
#ifndef WAP_GATEWAY_FRAMEWORK_CODES_H
#define WAP_GATEWAY_FRAMEWORK_CODES_H

#include <stdint.h>

#include <string>

namespace wap::gateway {

/// A process refuses what it is asked: the request makes no sense, or names nothing that is there.
inline constexpr uint32_t kRefused = 0xF7300001;
/// A table is full.
inline constexpr uint32_t kTableFull = 0xF7300002;

/// What a code means, in a few words: "ok", "refused"; null for one that nobody here gives.
const char *MeaningOfCode(uint32_t uiCode);

/// A code as people read it: "ok", "0xF7300001 refused", "0x00000005".
std::string DescribeCode(uint32_t uiCode);

}  // namespace wap::gateway

#endif
