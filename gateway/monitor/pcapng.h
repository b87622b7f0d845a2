// Files of captured packets in the format pcapng, as the Internet draft draft-ietf-opsawg-pcapng
// ("PCAP Next Generation Capture File Format") describes it: written with one section of one
// interface, and read as far as packets are concerned, in either byte order.
#ifndef WAP_GATEWAY_MONITOR_PCAPNG_H
#define WAP_GATEWAY_MONITOR_PCAPNG_H

#include <stdint.h>

#include <istream>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace wap::gateway {

/// The longest packet that Wireshark takes.
inline constexpr uint32_t kPacketMax = 262144;

/// What a file begins with: the section, by which program, and an interface of a link type, whose
/// times are in microseconds.
std::string PcapngStart(const std::string &acProgram, const std::string &acInterface,
                        uint16_t usLinkType);

/// A packet of that interface.
/// @param ulTimeUs since 1970
/// @param uiWhole how long it was before it was cut
/// @param acComment what people read beside it, at most 65535 bytes of which are written
/// @param ulLost how many packets are missing before it
std::string PcapngPacket(uint64_t ulTimeUs, std::string_view sPacket, uint32_t uiWhole,
                         const std::string &acComment, uint64_t ulLost);

/// What is known of that interface at the end.
/// @param ulTimeUs since 1970
/// @param ulLost how many packets are missing in all
std::string PcapngStatistics(uint64_t ulTimeUs, uint64_t ulLost);

/// A packet that was read.
struct Packet {
    uint16_t usLinkType;
    uint64_t ulTimeUs;
    std::string acBytes;
};

/// Reads a file, which may be anybody's.
class PcapngReader {
  public:
    /// @param stFile as long as this object is used
    explicit PcapngReader(std::istream &stFile) : m_stFile(stFile) {}

    /// The next packet; nothing at the end. What is no packet is passed over. Throws GatewayError
    /// for a file that is damaged, ends too early or is no such file; the text says where.
    std::optional<Packet> Next();

    /// Whether Next has thrown because the file ends within a block.
    bool EndsTooEarly() const { return m_bEndsTooEarly; }

  private:
    struct Interface {
        uint16_t usLinkType;
        uint8_t ucResolution;  ///< a negative power of 10, or of 2 with the highest bit
        uint64_t ulOffset;     ///< in seconds
    };

    bool ReadBlock(uint32_t &uiType, std::string &acBody);
    void BeginSection(std::string_view sBody);
    void AddInterface(std::string_view sBody);
    Packet TakePacket(std::string_view sBody) const;
    void Take(char *pcTo, size_t uiSize);
    [[noreturn]] void Fail(const std::string &acWhy) const;
    uint64_t Number(std::string_view sBytes, size_t uiAt, size_t uiSize) const;
    /// The value of an option; nothing when there is none of that kind.
    std::optional<std::string_view> Option(std::string_view sOptions, uint16_t usKind) const;

    std::istream &m_stFile;
    uint64_t m_ulAt = 0;     ///< bytes read
    uint64_t m_ulBlock = 0;  ///< where the present block begins
    bool m_bEndsTooEarly = false;
    bool m_bBigEndian = false;
    bool m_bBegun = false;
    std::vector<Interface> m_astInterfaces;  ///< of the section
};

}  // namespace wap::gateway

#endif
