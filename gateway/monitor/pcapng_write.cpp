#include <algorithm>

#include "monitor/pcapng.h"
#include "monitor/pcapng_format.h"

namespace wap::gateway {

namespace {

/// The bytes of a number, the least significant first.
std::string Little(uint64_t ulNumber, size_t uiSize) {
    std::string acBytes;
    for (size_t i = 0; i < uiSize; ++i) {
        acBytes += static_cast<char>(ulNumber >> 8 * i & 0xFF);
    }
    return acBytes;
}

/// Bytes and as many zeros as it takes to a multiple of 4.
std::string Aligned(std::string_view sBytes) {
    std::string acBytes(sBytes);
    acBytes.resize((acBytes.size() + 3) / 4 * 4, '\0');
    return acBytes;
}

std::string OptionOf(uint16_t usKind, std::string_view sValue) {
    const std::string_view sCut = sValue.substr(0, UINT16_MAX);
    return Little(usKind, 2) + Little(sCut.size(), 2) + Aligned(sCut);
}

std::string Block(uint32_t uiType, const std::string &acBody) {
    constexpr size_t kAround = 12;
    const std::string acLength = Little(acBody.size() + kAround, 4);
    return Little(uiType, 4) + acLength + acBody + acLength;
}

/// What a block begins with that says something of the interface at a time.
std::string OfInterface(uint64_t ulTimeUs) {
    return Little(0, 4) + Little(ulTimeUs >> 32, 4) + Little(ulTimeUs, 4);
}

}  // namespace

std::string PcapngStart(const std::string &acProgram, const std::string &acInterface,
                        uint16_t usLinkType) {
    // Version 1.0; nobody says how long the section will be.
    return Block(pcapng::kSection, Little(pcapng::kByteOrder, 4) + Little(1, 2) + Little(0, 2) +
                                       Little(UINT64_MAX, 8) +
                                       OptionOf(pcapng::kOptionProgram, acProgram) +
                                       OptionOf(pcapng::kOptionEnd, "")) +
           Block(pcapng::kInterface, Little(usLinkType, 2) + Little(0, 2) + Little(kPacketMax, 4) +
                                         OptionOf(pcapng::kOptionInterfaceName, acInterface) +
                                         OptionOf(pcapng::kOptionResolution, "\6") +
                                         OptionOf(pcapng::kOptionEnd, ""));
}

std::string PcapngPacket(uint64_t ulTimeUs, std::string_view sPacket, uint32_t uiWhole,
                         const std::string &acComment, uint64_t ulLost) {
    std::string acBody = OfInterface(ulTimeUs) + Little(sPacket.size(), 4) + Little(uiWhole, 4) +
                         Aligned(sPacket) + OptionOf(pcapng::kOptionComment, acComment);
    if (ulLost > 0) {
        acBody += OptionOf(pcapng::kOptionLost, Little(ulLost, 8));
    }
    return Block(pcapng::kPacket, acBody + OptionOf(pcapng::kOptionEnd, ""));
}

std::string PcapngStatistics(uint64_t ulTimeUs, uint64_t ulLost) {
    return Block(pcapng::kStatistics, OfInterface(ulTimeUs) +
                                          OptionOf(pcapng::kOptionAllLost, Little(ulLost, 8)) +
                                          OptionOf(pcapng::kOptionEnd, ""));
}

}  // namespace wap::gateway
