#include "monitor/frame_reader.h"

#include <string.h>

#include "framework/error.h"
#include "framework/tap_socket.h"

namespace wap::gateway {

std::optional<Arrival> FrameReader::Next() {
    TapFrame stFrame;
    const std::string_view sRest = std::string_view(m_acBytes).substr(m_uiAt);
    if (sRest.size() >= sizeof(stFrame)) {
        memcpy(&stFrame, sRest.data(), sizeof(stFrame));
        if (stFrame.uiLength > kTapEventMax) {
            throw GatewayError("an event can't have " + std::to_string(stFrame.uiLength) +
                               " bytes");
        }
        if (sRest.size() - sizeof(stFrame) >= stFrame.uiLength) {
            Arrival stArrival = {std::nullopt, stFrame.uiLost};
            if (stFrame.uiLength > 0) {
                stArrival.stEvent = DecodeEvent(sRest.substr(sizeof(stFrame), stFrame.uiLength));
                if (!stArrival.stEvent) {
                    throw GatewayError("what came is no event");
                }
            }
            m_uiAt += sizeof(stFrame) + stFrame.uiLength;
            return stArrival;
        }
    }
    // Only now, so that bytes are not moved for each frame.
    m_acBytes.erase(0, m_uiAt);
    m_uiAt = 0;
    return std::nullopt;
}

}  // namespace wap::gateway
