// Numbers as people write them.
#ifndef WAP_GATEWAY_FRAMEWORK_NUMBERS_H
#define WAP_GATEWAY_FRAMEWORK_NUMBERS_H

#include <stdint.h>

#include <charconv>
#include <optional>
#include <string_view>

namespace wap::gateway {

/// A number of 32 bits in decimal or, with 0x before it, in hexadecimal digits, and nothing else.
inline std::optional<uint32_t> ReadNumber(std::string_view sText) {
    const bool bHex = sText.starts_with("0x") || sText.starts_with("0X");
    sText.remove_prefix(bHex ? 2 : 0);
    uint32_t uiRead = 0;
    const char *pcEnd = sText.data() + sText.size();
    const auto stRead = std::from_chars(sText.data(), pcEnd, uiRead, bHex ? 16 : 10);
    return stRead.ec == std::errc() && stRead.ptr == pcEnd ? std::optional(uiRead) : std::nullopt;
}

}  // namespace wap::gateway

#endif
