// Starting and ending the gateway's processes.
#ifndef WAP_GATEWAY_CTL_LAUNCHER_H
#define WAP_GATEWAY_CTL_LAUNCHER_H

#include <sys/types.h>

#include <chrono>
#include <string>
#include <vector>

#include "framework/process_list.h"
#include "framework/runtime_dir.h"

namespace wap::gateway {

using ProcessNames = std::vector<const ProcessInfo *>;

/// Where things are; empty texts choose the defaults.
struct Locations {
    std::string acProgram;  ///< wap_gateway; default: WAP_GATEWAY_PROGRAM, else beside gatewayctl
    std::string acHome;     ///< home.json; default: WAP_GATEWAY_HOME, else ../share/wap/home.json
    std::string acArgv0;    ///< gatewayctl's own name as it was called
};

/// Keeps two gatewayctl from starting or ending processes at the same time.
FileDescriptor LockGateway(const RuntimeDir &stDir);

/// The processes that run.
ProcessNames Running(const RuntimeDir &stDir);

/// Starts processes in the background, each in a session of its own with its output in its log
/// file, and waits until they answer; those that run already are left alone. With none running it
/// first clears away what a crashed gateway left behind and takes over the shipped home.
/// @param bFresh starts over with the shipped home; nothing may run then
/// Throws GatewayError when one does not come up, with the end of its log. Those that it started
/// are ended then, and also before SIGHUP, SIGINT, SIGQUIT or SIGTERM ends the program; after a
/// start that succeeded these signals stay blocked.
void StartProcesses(const RuntimeDir &stDir, const Locations &stLocations,
                    const ProcessNames &astProcesses, bool bFresh, std::chrono::seconds stTimeout);

/// Sends a signal to those processes that run and waits until they have ended.
/// Returns those that did run. Throws GatewayError when one has not ended in time.
ProcessNames EndProcesses(const RuntimeDir &stDir, const ProcessNames &astProcesses, int iSignal,
                          std::chrono::seconds stTimeout);

/// Ends processes with SIGTERM, as EndProcesses does, and takes the gateway for down when none is
/// left: forgets its start and removes what its processes left behind, before another gatewayctl
/// can start any.
ProcessNames StopProcesses(const RuntimeDir &stDir, const ProcessNames &astProcesses,
                           std::chrono::seconds stTimeout);

/// Ends processes and starts them again, with the home as it is. One that hangs is killed. Throws
/// GatewayError as StartProcesses does; nothing was ended then when the program was not found.
void RestartProcesses(const RuntimeDir &stDir, const Locations &stLocations,
                      const ProcessNames &astProcesses, std::chrono::seconds stTimeout);

/// Waits until all of them answer; returns those that don't.
ProcessNames WaitForAnswers(const ProcessNames &astProcesses, std::chrono::seconds stTimeout);

}  // namespace wap::gateway

#endif
