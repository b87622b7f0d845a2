// What comes from a process that is watched.
#ifndef WAP_GATEWAY_MONITOR_FRAME_READER_H
#define WAP_GATEWAY_MONITOR_FRAME_READER_H

#include <stdint.h>

#include <optional>
#include <string>
#include <string_view>

#include "framework/tap_event.h"

namespace wap::gateway {

/// A frame: an event, or only how many are missing.
struct Arrival {
    std::optional<TapEvent> stEvent = {};
    uint32_t uiLost = 0;
};

/// Takes the bytes of a connection apart, as they come.
class FrameReader {
  public:
    void Add(std::string_view sBytes) { m_acBytes += sBytes; }

    /// The next frame that is all there; nothing when there is none. Throws GatewayError for what
    /// no process says.
    std::optional<Arrival> Next();

    /// Whether there is the start of a frame, of which no more came.
    bool HasRest() const { return m_uiAt < m_acBytes.size(); }

  private:
    std::string m_acBytes;
    size_t m_uiAt = 0;  ///< what is before it was taken
};

}  // namespace wap::gateway

#endif
