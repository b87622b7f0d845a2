// What the command line says about watching the gateway.
#ifndef WAP_GATEWAY_CTL_MONITOR_OPTIONS_H
#define WAP_GATEWAY_CTL_MONITOR_OPTIONS_H

#include <stdint.h>

#include <optional>
#include <string>

#include "monitor/event_filter.h"

namespace wap::gateway {

struct MonitorOptions {
    EventFilter stFilter;
    bool bJson = false;
    bool bBrief = false;
    bool bQuiet = false;
    std::string acCapture;  ///< "" for none
    bool bSecrets = false;  ///< in the capture
    std::optional<uint32_t> uiCount;
    std::optional<uint32_t> uiSeconds;
};

struct ReplayOptions {
    std::string acFile;
    EventFilter stFilter;
    double dSpeed = 1;  ///< 0 for no pauses
    bool bDryRun = false;
};

}  // namespace wap::gateway

#endif
