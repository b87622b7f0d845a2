// Starting programs that outlive whoever starts them.
#ifndef WAP_GATEWAY_FRAMEWORK_SPAWN_H
#define WAP_GATEWAY_FRAMEWORK_SPAWN_H

#include <sys/types.h>

#include <string>
#include <vector>

namespace wap::gateway {

/// Where a process of the gateway finds the program that controls it, in the environment.
inline constexpr char kControllerVariable[] = "WAP_GATEWAYCTL";

/// The value of a variable of the environment; "" when it is not set.
std::string FromEnvironment(const char *pcName);

/**
 * Starts a program of the gateway in a session of its own, with default signals, without input, and
 * with its output appended to a log file. For a program of another machine the words of
 * WAP_EMULATOR are put before it; they are separated by blanks or, so that they may hold blanks,
 * all by semicolons.
 * @return its process id. Throws GatewayError when it can't be started
 */
pid_t SpawnDetached(const std::string &acProgram, const std::vector<std::string> &astArguments,
                    const std::string &acLog);

}  // namespace wap::gateway

#endif
