// gatewayctl's verbs that watch the gateway, and send again what was seen.
#ifndef WAP_GATEWAY_CTL_MONITOR_COMMANDS_H
#define WAP_GATEWAY_CTL_MONITOR_COMMANDS_H

#include <CLI/CLI.hpp>
#include <functional>

#include "ctl/commands.h"

namespace wap::gateway {

int Monitor(const Options &stOptions);
int Replay(const Options &stOptions);

/// Adds both to the command line.
/// @param fnChoose says which verb was named
void AddMonitorVerbs(CLI::App &stApp, Options &stOptions,
                     const std::function<void(Verb)> &fnChoose);

}  // namespace wap::gateway

#endif
