// gatewayctl's verbs. Each prints its result and returns the exit code: 0 done, 1 not done.
// What can't be done at all is thrown as GatewayError, with a text for the user.
#ifndef WAP_GATEWAY_CTL_COMMANDS_H
#define WAP_GATEWAY_CTL_COMMANDS_H

#include <stdint.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "ctl/launcher.h"
#include "ctl/monitor_options.h"
#include "framework/fault_table.h"

namespace wap::gateway {

/// What the command line says, for all verbs together.
struct Options {
    std::vector<std::string> astProcesses;  ///< none: all
    Locations stLocations;
    bool bFresh = false;
    uint32_t uiTimeoutS = 10;
    std::string acPath;
    std::string acText;
    std::optional<uint32_t> uiRpcId;  ///< nothing: any
    Fault stFault;
    std::string acMac;                              ///< a host's
    std::map<std::string, std::string> mapMembers;  ///< of a host or of IPTV, by name
    std::optional<uint32_t> uiFeature;              ///< nothing: all
    std::optional<bool> bOn;                        ///< nothing: only say
    MonitorOptions stMonitor;
    ReplayOptions stReplay;
};

/// What a verb does.
using Verb = int (*)(const Options &);

/// The exit code of wrong use.
inline constexpr int kExitUsage = 2;

int Start(const Options &stOptions);
int Stop(const Options &stOptions);
int Restart(const Options &stOptions);
int Kill(const Options &stOptions);
int Status(const Options &stOptions);
int Wait(const Options &stOptions);
int Get(const Options &stOptions);
int Set(const Options &stOptions);
int SetFault(const Options &stOptions);
int ListFaults(const Options &stOptions);
int ClearFaults(const Options &stOptions);
int ListHosts(const Options &stOptions);
int AddHost(const Options &stOptions);
int RemoveHost(const Options &stOptions);
int SetHost(const Options &stOptions);
int Feature(const Options &stOptions);
int Pon(const Options &stOptions);
int ListWans(const Options &stOptions);
int SetWan(const Options &stOptions);
int Iptv(const Options &stOptions);
int Leds(const Options &stOptions);
int Voice(const Options &stOptions);

}  // namespace wap::gateway

#endif
