// Numbers and texts as they stand in requests and replies, written and read by hand.
#ifndef WAP_TESTS_SUPPORT_WIRE_BYTES_H
#define WAP_TESTS_SUPPORT_WIRE_BYTES_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace wap::test {

/// The bytes of a number: the least significant first.
inline std::string Word(uint32_t uiValue) {
    std::string sBytes;
    for (uint32_t uiShift = 0; uiShift < 32; uiShift += 8) {
        sBytes += static_cast<char>(uiValue >> uiShift & 0xFF);
    }
    return sBytes;
}

/// The number at an offset, all of which must be there.
inline uint32_t WordAt(const std::string &sBytes, size_t uiAt) {
    uint32_t uiValue = 0;
    for (size_t i = 4; i-- > 0;) {
        uiValue = uiValue << 8 | static_cast<uint8_t>(sBytes.at(uiAt + i));
    }
    return uiValue;
}

/// A text in a field of uiSize bytes, filled up with zeros.
inline std::string Field(std::string_view pcText, size_t uiSize) {
    std::string sField(pcText);
    sField.resize(uiSize, '\0');
    return sField;
}

/// What stands in a field or in front of its first zero.
inline std::string UpToZero(std::string_view pcField) {
    return std::string(pcField.substr(0, pcField.find('\0')));
}

/// How often a part stands in a text.
inline size_t CountOf(std::string_view pcText, std::string_view pcPart) {
    size_t uiCount = 0;
    for (size_t uiAt = pcText.find(pcPart); uiAt != std::string_view::npos;
         uiAt = pcText.find(pcPart, uiAt + pcPart.size())) {
        ++uiCount;
    }
    return uiCount;
}

}  // namespace wap::test

#endif
