#include <cmath>

#include "framework/error.h"
#include "monitor/pcapng.h"
#include "monitor/pcapng_format.h"

namespace wap::gateway {

namespace {

constexpr char kLittleEndian[] = "\x4D\x3C\x2B\x1A";
constexpr char kBigEndian[] = "\x1A\x2B\x3C\x4D";

constexpr size_t kBefore = 8;  ///< the type and the length
constexpr size_t kBehind = 4;  ///< the length again
/// Far more than a packet takes with all that is said about it.
constexpr uint32_t kBlockMax = 16u << 20;
constexpr size_t kInterfacesMax = 1024;
/// The smallest unit of time in which a number of 64 bits tells a second.
constexpr unsigned kTenMost = 19;
constexpr unsigned kMicro = 6;
constexpr uint64_t kMicroseconds = 1000000;

uint64_t PowerOfTen(unsigned uiExponent) {
    uint64_t ulPower = 1;
    while (uiExponent-- > 0) {
        ulPower *= 10;
    }
    return ulPower;
}

/// A time in units of a resolution, in microseconds. What is beyond all time comes out as anything.
uint64_t InMicroseconds(uint64_t ulTime, uint8_t ucResolution) {
    const unsigned uiExponent = ucResolution & 0x7F;
    if ((ucResolution & 0x80) != 0) {
        const uint64_t ulWhole = uiExponent < 64 ? ulTime >> uiExponent : 0;
        const double dFraction =
            std::ldexp(static_cast<double>(ulTime), -static_cast<int>(uiExponent));
        return ulWhole * kMicroseconds +
               static_cast<uint64_t>((dFraction - std::floor(dFraction)) * kMicroseconds);
    }
    return uiExponent <= kMicro ? ulTime * PowerOfTen(kMicro - uiExponent)
                                : ulTime / PowerOfTen(uiExponent - kMicro);
}

}  // namespace

void PcapngReader::Fail(const std::string &acWhy) const {
    throw GatewayError(acWhy + " (the block at byte " + std::to_string(m_ulBlock) + ")");
}

void PcapngReader::Take(char *pcTo, size_t uiSize) {
    m_stFile.read(pcTo, static_cast<std::streamsize>(uiSize));
    m_ulAt += static_cast<uint64_t>(m_stFile.gcount());
    if (static_cast<size_t>(m_stFile.gcount()) != uiSize) {
        if (m_stFile.bad()) {
            Fail("it can't be read");
        }
        m_bEndsTooEarly = true;
        Fail("it ends too early");
    }
}

uint64_t PcapngReader::Number(std::string_view sBytes, size_t uiAt, size_t uiSize) const {
    if (uiAt > sBytes.size() || uiSize > sBytes.size() - uiAt) {
        Fail("a block is too short for what it says that it is");
    }
    uint64_t ulNumber = 0;
    for (size_t i = 0; i < uiSize; ++i) {
        const size_t uiByte = m_bBigEndian ? i : uiSize - 1 - i;
        ulNumber = ulNumber << 8 | static_cast<uint8_t>(sBytes[uiAt + uiByte]);
    }
    return ulNumber;
}

std::optional<std::string_view> PcapngReader::Option(std::string_view sOptions,
                                                     uint16_t usKind) const {
    constexpr size_t kHead = 4;
    while (!sOptions.empty()) {
        const auto usThis = static_cast<uint16_t>(Number(sOptions, 0, 2));
        const auto uiLength = static_cast<size_t>(Number(sOptions, 2, 2));
        if (usThis == 0) {
            break;
        }
        const size_t uiWhole = kHead + (uiLength + 3) / 4 * 4;
        if (uiWhole > sOptions.size()) {
            Fail("an option is longer than its block");
        }
        if (usThis == usKind) {
            return sOptions.substr(kHead, uiLength);
        }
        sOptions.remove_prefix(uiWhole);
    }
    return std::nullopt;
}

bool PcapngReader::ReadBlock(uint32_t &uiType, std::string &acBody) {
    m_ulBlock = m_ulAt;
    if (m_stFile.peek() == std::istream::traits_type::eof()) {
        if (m_stFile.bad()) {
            Fail("it can't be read");
        }
        if (!m_bBegun) {
            Fail("it is empty");
        }
        return false;
    }
    std::string acHead(kBefore, '\0');
    Take(acHead.data(), acHead.size());
    acBody.clear();
    uiType = static_cast<uint32_t>(Number(acHead, 0, 4));
    if (uiType == pcapng::kSection) {
        acBody.resize(4);
        Take(acBody.data(), acBody.size());
        if (acBody != kLittleEndian && acBody != kBigEndian) {
            Fail("it is no pcapng file");
        }
        m_bBigEndian = acBody == kBigEndian;
    } else if (!m_bBegun) {
        Fail("it is no pcapng file");
    }
    const auto uiLength = static_cast<uint32_t>(Number(acHead, 4, 4));
    if (uiLength % 4 != 0 || uiLength < kBefore + acBody.size() + kBehind || uiLength > kBlockMax) {
        Fail("a block can't have " + std::to_string(uiLength) + " bytes");
    }
    const size_t uiGot = acBody.size();
    acBody.resize(uiLength - kBefore);
    Take(acBody.data() + uiGot, acBody.size() - uiGot);
    if (Number(acBody, acBody.size() - kBehind, kBehind) != uiLength) {
        Fail("a block ends with another length than it begins with");
    }
    acBody.resize(acBody.size() - kBehind);
    return true;
}

void PcapngReader::BeginSection(std::string_view sBody) {
    constexpr size_t kVersion = 4;
    constexpr size_t kFixed = 16;
    const uint64_t ulMajor = Number(sBody, kVersion, 2);
    (void)Number(sBody, kFixed - 8, 8);
    if (ulMajor != 1) {
        Fail("its version is " + std::to_string(ulMajor) + ", and only 1 is known");
    }
    m_bBegun = true;
    m_astInterfaces.clear();
}

void PcapngReader::AddInterface(std::string_view sBody) {
    constexpr size_t kFixed = 8;
    Interface stNew = {static_cast<uint16_t>(Number(sBody, 0, 2)), kMicro, 0};
    (void)Number(sBody, kFixed - 4, 4);
    const std::string_view sOptions = sBody.substr(kFixed);
    if (const auto sValue = Option(sOptions, pcapng::kOptionResolution)) {
        stNew.ucResolution = static_cast<uint8_t>(Number(*sValue, 0, 1));
    }
    if (const auto sValue = Option(sOptions, pcapng::kOptionOffset)) {
        stNew.ulOffset = Number(*sValue, 0, 8);
    }
    if (stNew.ucResolution < 0x80 && stNew.ucResolution > kTenMost) {
        Fail("its times are in a unit that is too small");
    }
    if (m_astInterfaces.size() >= kInterfacesMax) {
        Fail("it has more than " + std::to_string(kInterfacesMax) + " interfaces");
    }
    m_astInterfaces.push_back(stNew);
}

Packet PcapngReader::TakePacket(std::string_view sBody) const {
    constexpr size_t kFixed = 20;
    const uint64_t ulInterface = Number(sBody, 0, 4);
    const uint64_t ulTime = Number(sBody, 4, 4) << 32 | Number(sBody, 8, 4);
    const uint64_t ulHeld = Number(sBody, 12, 4);
    (void)Number(sBody, kFixed - 4, 4);
    if (ulInterface >= m_astInterfaces.size()) {
        Fail("a packet is of an interface that the file does not have");
    }
    if (ulHeld > sBody.size() - kFixed) {
        Fail("a packet is longer than its block");
    }
    const Interface &stFrom = m_astInterfaces[static_cast<size_t>(ulInterface)];
    return {stFrom.usLinkType,
            InMicroseconds(ulTime, stFrom.ucResolution) + stFrom.ulOffset * kMicroseconds,
            std::string(sBody.substr(kFixed, static_cast<size_t>(ulHeld)))};
}

std::optional<Packet> PcapngReader::Next() {
    uint32_t uiType = 0;
    std::string acBody;
    while (ReadBlock(uiType, acBody)) {
        switch (uiType) {
            case pcapng::kSection:
                BeginSection(acBody);
                break;
            case pcapng::kInterface:
                AddInterface(acBody);
                break;
            case pcapng::kPacket:
                return TakePacket(acBody);
            default:
                break;
        }
    }
    return std::nullopt;
}

}  // namespace wap::gateway
