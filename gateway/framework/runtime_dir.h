// The runtime directory: where the gateway's processes meet and keep what must survive them.
#ifndef WAP_GATEWAY_FRAMEWORK_RUNTIME_DIR_H
#define WAP_GATEWAY_FRAMEWORK_RUNTIME_DIR_H

#include <stdint.h>
#include <sys/types.h>

#include <string>

#include "framework/files.h"

namespace wap::gateway {

/// Names of everything in the runtime directory.
class RuntimeDir {
  public:
    /// The directory that VT_RUNTIME_DIR names. Throws GatewayError when it names none, or one
    /// whose socket names would be too long.
    static RuntimeDir FromEnvironment();

    /// Makes the directory and its folders where they are missing. Throws GatewayError, also for a
    /// directory that belongs to someone else or that others may enter.
    void Make() const;

    const std::string &Path() const { return m_acPath; }
    std::string StateFile(const std::string &acProcess) const;
    std::string LogFile(const std::string &acProcess) const;
    std::string LockFile(const std::string &acProcess) const;
    std::string HomeFile() const;  ///< the home as it was when the gateway was first started
    /// What the firmware has, as the platform library reads it.
    std::string FeaturesFile() const;
    std::string BootFile() const;  ///< when the gateway was started

  private:
    explicit RuntimeDir(std::string acPath) : m_acPath(std::move(acPath)) {}

    std::string m_acPath;
};

/// Takes the lock that says that a process runs, and writes its id into the lock's file. It is held
/// until the process ends, however it ends. Throws GatewayError when another one holds it.
FileDescriptor LockProcess(const RuntimeDir &stDir, const std::string &acProcess);

/// The id of the running process of that name, which the kernel knows from the lock, so that it is
/// never that of a stranger; 0 when it does not run.
pid_t RunningProcess(const RuntimeDir &stDir, const std::string &acProcess);

/// Removes the sockets of processes that have ended without doing so: those that were killed, and
/// Java programs, whose virtual machine gives the platform no chance to. Those whose name is taken
/// stay, and so does everything that the message service did not make.
void RemoveDeadSockets(const RuntimeDir &stDir);

/// Seconds since the machine's start; they pass also while it sleeps.
uint64_t NowSeconds();

/// Notes that the gateway starts now, unless it is noted already for this run of the machine.
void NoteGatewayStart(const RuntimeDir &stDir);

/// Forgets the start: the gateway is down.
void ForgetGatewayStart(const RuntimeDir &stDir);

/// When the gateway was started, in NowSeconds' terms; now when nobody noted it.
uint64_t GatewayStart(const RuntimeDir &stDir);

}  // namespace wap::gateway

#endif
