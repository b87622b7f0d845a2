// Events in files that Wireshark opens, and back. docs/monitor.md describes them.
#ifndef WAP_GATEWAY_MONITOR_CAPTURE_H
#define WAP_GATEWAY_MONITOR_CAPTURE_H

#include <stdint.h>
#include <sys/types.h>

#include <optional>
#include <string>
#include <string_view>

#include "framework/files.h"
#include "framework/tap_event.h"
#include "monitor/live_output.h"
#include "monitor/pcapng.h"

namespace wap::gateway {

/// Packets that say themselves what they are: Wireshark's "upper PDU export".
inline constexpr uint16_t kLinkType = 252;

/// Writes over what is secret in an event. Of an RPC that the table does not have, nobody knows
/// that, so its bytes are dropped.
void MaskEvent(TapEvent &stEvent);

/// How long the packet of an event would be that nobody cuts.
uint32_t WholePacketLength(const TapEvent &stEvent);

/// An event as a packet, with the ends of its parts dropped when it is too long for one: those of
/// the reply and its block first.
std::string PacketOf(TapEvent stEvent);

/// The event in a packet; nothing for a packet of another kind. Throws GatewayError for one that
/// says that it is ours, and is damaged.
std::optional<TapEvent> EventIn(const Packet &stPacket);

/// A file that events are written to as they come.
class CaptureFile {
  public:
    /// Makes the file, in place of one of that name, for its owner's eyes alone. What is no file,
    /// such as a pipe, is written to as it is; somebody has to open a pipe to read before the
    /// program is to end. Throws GatewayError.
    /// @param bSecrets whether secrets are written as they are
    /// @param stEnd as long as this object is used; then nobody waits for who reads a pipe
    CaptureFile(const std::string &acPath, bool bSecrets, const ProgramEnd &stEnd = kNoEnd);

    /// Adds an event, whole or not at all as far as the file can be cut; false when it is not all
    /// in, because the program is to end and nobody reads. Throws GatewayError.
    /// @param ulLost how many events are missing before it
    bool Add(const TapEvent &stEvent, uint64_t ulLost);

    /// Says at the end how many events are missing in all, unless something could not be written
    /// before. Throws GatewayError.
    void Finish(uint64_t ulTimeUs, uint64_t ulLost);

  private:
    static inline const ProgramEnd kNoEnd = {};

    bool Write(const std::string &acBytes);

    const std::string m_acPath;
    const bool m_bSecrets;
    FileDescriptor m_stFile;
    LiveWriter m_stWriter;
    bool m_bIsFile = false;
    bool m_bFailed = false;
    off_t m_iWhole = 0;  ///< bytes up to the end of the last block
};

}  // namespace wap::gateway

#endif
