#include "ctl/launcher.h"

#include <errno.h>
#include <fcntl.h>
#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/ipc.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <thread>

#include "ctl/client.h"
#include "ctl/features.h"
#include "framework/control.h"
#include "framework/error.h"
#include "framework/spawn.h"
#include "framework/tap_socket.h"
#include "records/access_right.h"
#include "vt_ssp_host.h"

namespace wap::gateway {

namespace {

using Clock = std::chrono::steady_clock;
constexpr auto kPollInterval = std::chrono::milliseconds(10);
constexpr uint32_t kProbeTimeoutMs = 1000;
constexpr char kProgramVariable[] = "WAP_GATEWAY_PROGRAM";
/// How long a restart waits before it ends what hangs, as switching off and on would.
constexpr std::chrono::seconds kRestartGrace(5);
constexpr int kEndingSignals[] = {SIGHUP, SIGINT, SIGQUIT, SIGTERM};

/// A process being started.
struct Child {
    const ProcessInfo *pstInfo;
    pid_t iPid;         /// 0 once its end was seen
    size_t uiLogStart;  /// where its part of the log begins
};

/// Holds back the signals that end gatewayctl, to die of them where nothing is left half done.
class HeldSignals {
  public:
    HeldSignals() {
        sigemptyset(&m_stHeld);
        for (const int iSignal : kEndingSignals) {
            struct sigaction stAction = {};
            // An ignored one would become pending as well while it is held.
            if (sigaction(iSignal, nullptr, &stAction) == 0 && stAction.sa_handler != SIG_IGN) {
                sigaddset(&m_stHeld, iSignal);
            }
        }
        pthread_sigmask(SIG_BLOCK, &m_stHeld, &m_stBefore);
    }
    HeldSignals(const HeldSignals &) = delete;
    HeldSignals &operator=(const HeldSignals &) = delete;
    /// One that came ends the program here.
    ~HeldSignals() {
        if (!m_bForGood) {
            pthread_sigmask(SIG_SETMASK, &m_stBefore, nullptr);
        }
    }

    /// Throws when one of them has come.
    void Check() const {
        sigset_t stPending;
        sigemptyset(&stPending);
        sigpending(&stPending);
        for (const int iSignal : kEndingSignals) {
            if (sigismember(&m_stHeld, iSignal) == 1 && sigismember(&stPending, iSignal) == 1) {
                throw GatewayError("ended by signal " + std::to_string(iSignal));
            }
        }
    }

    /// What comes from here on has come too late.
    void HoldForGood() { m_bForGood = true; }

  private:
    sigset_t m_stHeld;
    sigset_t m_stBefore;
    bool m_bForGood = false;
};

bool WaitUntil(Clock::time_point stEnd, const std::function<bool()> &stIsDone) {
    while (!stIsDone()) {
        if (Clock::now() >= stEnd) {
            return false;
        }
        std::this_thread::sleep_for(kPollInterval);
    }
    return true;
}

std::string FolderOf(const std::string &acPath) {
    return acPath.substr(0, acPath.rfind('/'));
}

/// The folder of gatewayctl itself; "" when it can't be told.
std::string OwnFolder(const Locations &stLocations) {
    char acSelf[4096];
    const ssize_t iLength = readlink("/proc/self/exe", acSelf, sizeof(acSelf));
    if (iLength > 0 && static_cast<size_t>(iLength) < sizeof(acSelf)) {
        const std::string acPath(acSelf, static_cast<size_t>(iLength));
        // An emulator may show itself here instead of the program that it runs.
        if (access((FolderOf(acPath) + "/wap_gateway").c_str(), X_OK) == 0) {
            return FolderOf(acPath);
        }
    }
    return stLocations.acArgv0.find('/') == std::string::npos ? "" : FolderOf(stLocations.acArgv0);
}

/// A path that holds in any directory; the same one where there is none.
std::string RealPath(const std::string &acPath) {
    const std::unique_ptr<char, decltype(&free)> pcReal(realpath(acPath.c_str(), nullptr), &free);
    return pcReal ? pcReal.get() : acPath;
}

/// gatewayctl itself.
std::string Controller(const Locations &stLocations) {
    return RealPath(OwnFolder(stLocations) + "/gatewayctl");
}

std::string FindProgram(const Locations &stLocations) {
    std::string acPath = stLocations.acProgram;
    if (acPath.empty()) {
        acPath = FromEnvironment(kProgramVariable);
    }
    if (acPath.empty()) {
        acPath = OwnFolder(stLocations) + "/wap_gateway";
    }
    if (access(acPath.c_str(), X_OK) != 0) {
        throw GatewayError("there is no program " + acPath +
                           ": name wap_gateway with --program or WAP_GATEWAY_PROGRAM");
    }
    return acPath;
}

/// Puts the shipped home where the processes look for values that their state lacks.
void TakeOverHome(const RuntimeDir &stDir, const Locations &stLocations) {
    std::string acPath = stLocations.acHome;
    if (acPath.empty()) {
        acPath = FromEnvironment("WAP_GATEWAY_HOME");
    }
    const bool bAsked = !acPath.empty();
    if (!bAsked) {
        acPath = OwnFolder(stLocations) + "/../share/wap/home.json";
    }
    const auto acText = ReadTextFile(acPath);
    if (acText) {
        const JsonValue stHome = ParseJson(*acText, acPath);
        WriteTextFile(stDir.HomeFile(), *acText);
        ShipFeatures(stDir, stHome.get());
    } else if (bAsked || !ReadTextFile(stDir.HomeFile())) {
        throw GatewayError("there is no home " + acPath +
                           ": name a home.json with --home or WAP_GATEWAY_HOME");
    }
}

void RemoveState(const RuntimeDir &stDir) {
    unlink(stDir.HomeFile().c_str());
    unlink(stDir.FeaturesFile().c_str());
    for (const ProcessInfo &stInfo : kProcesses) {
        const std::string acPath = stDir.StateFile(stInfo.pcName);
        if (unlink(acPath.c_str()) != 0 && errno != ENOENT) {
            throw GatewayError("cannot remove " + acPath + ": " + ErrnoText(errno));
        }
    }
    ForgetGatewayStart(stDir);
}

/// Keeps descriptors that gatewayctl was given, pipes of its caller above all, out of processes
/// that outlive it.
void CloseInheritedOnExec() {
    constexpr int kHighest = 255;
    for (int iFd = STDERR_FILENO + 1; iFd <= kHighest; ++iFd) {
        const int iFlags = fcntl(iFd, F_GETFD);
        if (iFlags >= 0) {
            (void)fcntl(iFd, F_SETFD, iFlags | FD_CLOEXEC);
        }
    }
}

/// Sets a long log aside, in place of the one set aside before; returns where new lines will begin.
size_t PrepareLog(const std::string &acLog) {
    constexpr off_t kLongLog = 1 << 20;
    struct stat stInfo;
    if (stat(acLog.c_str(), &stInfo) != 0) {
        return 0;
    }
    if (stInfo.st_size > kLongLog && rename(acLog.c_str(), (acLog + ".old").c_str()) == 0) {
        return 0;
    }
    return static_cast<size_t>(stInfo.st_size);
}

Child Spawn(const RuntimeDir &stDir, const std::string &acProgram, const ProcessInfo &stInfo) {
    const std::string acLog = stDir.LogFile(stInfo.pcName);
    const size_t uiLogStart = PrepareLog(acLog);
    return {&stInfo, SpawnDetached(acProgram, {stInfo.pcName}, acLog), uiLogStart};
}

/// Whether a spawned process has ended. Where nobody waits for children, as with SIGCHLD ignored,
/// one that has ended is no child any more.
bool HasEnded(Child &stChild) {
    int iStatus = 0;
    if (stChild.iPid != 0) {
        const pid_t iEnded = waitpid(stChild.iPid, &iStatus, WNOHANG);
        if (iEnded == stChild.iPid || (iEnded < 0 && errno == ECHILD)) {
            stChild.iPid = 0;
        }
    }
    return stChild.iPid == 0;
}

/// Ends spawned processes by their ids: those that have not taken their locks yet are known to
/// nobody else.
void EndChildren(std::vector<Child> &astChildren) {
    constexpr auto kGrace = std::chrono::seconds(3);
    for (Child &stChild : astChildren) {
        if (!HasEnded(stChild)) {
            kill(stChild.iPid, SIGTERM);
        }
    }
    const auto stEnd = Clock::now() + kGrace;
    for (Child &stChild : astChildren) {
        if (!WaitUntil(stEnd, [&] { return HasEnded(stChild); })) {
            kill(stChild.iPid, SIGKILL);
            WaitUntil(Clock::time_point::max(), [&] { return HasEnded(stChild); });
        }
    }
}

/// Waits until a started process answers; throws when it ends, the time is over or a signal came.
void AwaitStart(const RuntimeDir &stDir, Child &stChild, Clock::time_point stEnd,
                const HeldSignals &stSignals) {
    const std::string acName = stChild.pstInfo->pcName;
    bool bEnded = false;
    const auto stIsUp = [&] {
        stSignals.Check();
        if (TryAsk(acName.c_str(), kControlStatus, kProbeTimeoutMs)) {
            return true;
        }
        bEnded = HasEnded(stChild);
        return bEnded;
    };
    const bool bInTime = WaitUntil(stEnd, stIsUp);
    if (bInTime && !bEnded) {
        return;
    }
    const std::string acLog = stDir.LogFile(acName);
    std::string acSaid = ReadTextFile(acLog).value_or("");
    acSaid.erase(0, std::min(acSaid.size(), stChild.uiLogStart));
    constexpr size_t kMostToShow = 2000;
    if (acSaid.size() > kMostToShow) {
        acSaid = "..." + acSaid.substr(acSaid.size() - kMostToShow);
    }
    throw GatewayError(acName + (bEnded ? " ended at its start" : " does not answer in time") +
                       "; its log " + acLog + (acSaid.empty() ? " is empty" : " says:\n" + acSaid));
}

/// Removes what processes left that lives beyond them: shared memory, files half written.
void RemoveLeftovers(const RuntimeDir &stDir) {
    for (const ProcessInfo &stInfo : kProcesses) {
        RemoveHalfWritten(stDir.StateFile(stInfo.pcName));
    }
    for (const std::string &acPath : {stDir.HomeFile(), stDir.FeaturesFile(), stDir.BootFile()}) {
        RemoveHalfWritten(acPath);
    }
    (void)VT_HOST_RemoveStaleBlocks();
    for (const int32_t iKey : {kFtpRightKey, kSambaRightKey}) {
        const int32_t iSegment = VT_OS_ShmGet(iKey, 0, 0);
        if (iSegment >= 0) {
            (void)VT_OS_ShmCtl(iSegment, IPC_RMID, nullptr);
        }
    }
}

/// When no process runs: forgets the gateway's start and removes what its processes left behind.
/// The caller holds the gateway's lock, so that no process is started meanwhile.
void TidyWhenDown(const RuntimeDir &stDir) {
    if (Running(stDir).empty()) {
        // The next start is a start of the gateway. Nobody is left to free what bulk data there is.
        ForgetGatewayStart(stDir);
        RemoveLeftovers(stDir);
        RemoveDeadSockets(stDir);
        RemoveDeadTaps(stDir);
    }
}

/// Ends processes as EndProcesses does; the caller holds the gateway's lock.
ProcessNames EndLocked(const RuntimeDir &stDir, const ProcessNames &astProcesses, int iSignal,
                       std::chrono::seconds stTimeout) {
    ProcessNames astSignalled;
    for (const ProcessInfo *pstInfo : astProcesses) {
        const pid_t iPid = RunningProcess(stDir, pstInfo->pcName);
        if (iPid <= 0) {
            continue;
        }
        if (kill(iPid, iSignal) == 0) {
            astSignalled.push_back(pstInfo);
        } else if (errno != ESRCH) {
            throw GatewayError("cannot end " + std::string(pstInfo->pcName) + " (process " +
                               std::to_string(iPid) + "): " + ErrnoText(errno));
        }
    }
    const auto stEnd = Clock::now() + stTimeout;
    for (const ProcessInfo *pstInfo : astSignalled) {
        if (!WaitUntil(stEnd, [&] { return RunningProcess(stDir, pstInfo->pcName) == 0; })) {
            throw GatewayError(std::string(pstInfo->pcName) +
                               " has not ended yet; gatewayctl kill " + pstInfo->pcName +
                               " ends it the hard way");
        }
    }
    return astSignalled;
}

/// Starts processes as StartProcesses does; the caller holds the gateway's lock.
void StartLocked(const RuntimeDir &stDir, const Locations &stLocations,
                 const std::string &acProgram, const ProcessNames &astProcesses, bool bFresh,
                 std::chrono::seconds stTimeout) {
    const ProcessNames astRunning = Running(stDir);
    if (bFresh && !astRunning.empty()) {
        throw GatewayError("the gateway is running: gatewayctl stop comes before start --fresh");
    }
    if (bFresh) {
        RemoveState(stDir);
    }
    if (astRunning.empty()) {
        RemoveLeftovers(stDir);
        TakeOverHome(stDir, stLocations);
        NoteGatewayStart(stDir);
    }
    // For the one that restarts the gateway when it is reset, with the program that runs now.
    setenv(kControllerVariable, Controller(stLocations).c_str(), 1);
    setenv(kProgramVariable, RealPath(acProgram).c_str(), 1);
    CloseInheritedOnExec();
    HeldSignals stSignals;
    std::vector<Child> astChildren;
    astChildren.reserve(astProcesses.size());
    try {
        for (const ProcessInfo *pstInfo : astProcesses) {
            if (const pid_t iPid = RunningProcess(stDir, pstInfo->pcName)) {
                printf("%s runs already (process %d)\n", pstInfo->pcName, static_cast<int>(iPid));
            } else {
                astChildren.push_back(Spawn(stDir, acProgram, *pstInfo));
            }
        }
        const auto stEnd = Clock::now() + stTimeout;
        for (Child &stChild : astChildren) {
            AwaitStart(stDir, stChild, stEnd, stSignals);
        }
        stSignals.Check();
    } catch (...) {
        EndChildren(astChildren);
        TidyWhenDown(stDir);
        throw;
    }
    stSignals.HoldForGood();
}

}  // namespace

FileDescriptor LockGateway(const RuntimeDir &stDir) {
    const std::string acPath = stDir.Path() + "/gatewayctl.lock";
    FileDescriptor stFile(open(acPath.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
    struct flock stLock = {};
    stLock.l_type = F_WRLCK;
    stLock.l_whence = SEEK_SET;
    int iDone = -1;
    while (stFile.Get() >= 0 && (iDone = fcntl(stFile.Get(), F_SETLKW, &stLock)) != 0 &&
           errno == EINTR) {
    }
    if (iDone != 0) {
        throw GatewayError("cannot lock " + acPath + ": " + ErrnoText(errno));
    }
    return stFile;
}

ProcessNames Running(const RuntimeDir &stDir) {
    ProcessNames astRunning;
    for (const ProcessInfo &stInfo : kProcesses) {
        if (RunningProcess(stDir, stInfo.pcName) != 0) {
            astRunning.push_back(&stInfo);
        }
    }
    return astRunning;
}

void StartProcesses(const RuntimeDir &stDir, const Locations &stLocations,
                    const ProcessNames &astProcesses, bool bFresh, std::chrono::seconds stTimeout) {
    const std::string acProgram = FindProgram(stLocations);
    stDir.Make();
    const FileDescriptor stLock = LockGateway(stDir);
    StartLocked(stDir, stLocations, acProgram, astProcesses, bFresh, stTimeout);
}

void RestartProcesses(const RuntimeDir &stDir, const Locations &stLocations,
                      const ProcessNames &astProcesses, std::chrono::seconds stTimeout) {
    // Looked for while the gateway is still up: without it nothing is ended.
    const std::string acProgram = FindProgram(stLocations);
    stDir.Make();
    const FileDescriptor stLock = LockGateway(stDir);
    try {
        (void)EndLocked(stDir, astProcesses, SIGTERM, std::min(stTimeout, kRestartGrace));
    } catch (const GatewayError &) {
        (void)EndLocked(stDir, astProcesses, SIGKILL, stTimeout);
    }
    TidyWhenDown(stDir);
    Locations stSame = stLocations;
    if (access(stDir.HomeFile().c_str(), F_OK) == 0) {
        stSame.acHome = stDir.HomeFile();  // the one that it was started with
    }
    StartLocked(stDir, stSame, acProgram, astProcesses, false, stTimeout);
}

ProcessNames EndProcesses(const RuntimeDir &stDir, const ProcessNames &astProcesses, int iSignal,
                          std::chrono::seconds stTimeout) {
    if (access(stDir.Path().c_str(), F_OK) != 0) {
        return {};
    }
    const FileDescriptor stLock = LockGateway(stDir);
    return EndLocked(stDir, astProcesses, iSignal, stTimeout);
}

ProcessNames StopProcesses(const RuntimeDir &stDir, const ProcessNames &astProcesses,
                           std::chrono::seconds stTimeout) {
    if (access(stDir.Path().c_str(), F_OK) != 0) {
        return {};
    }
    const FileDescriptor stLock = LockGateway(stDir);
    ProcessNames astEnded = EndLocked(stDir, astProcesses, SIGTERM, stTimeout);
    TidyWhenDown(stDir);
    return astEnded;
}

ProcessNames WaitForAnswers(const ProcessNames &astProcesses, std::chrono::seconds stTimeout) {
    ProcessNames astMissing;
    const auto stEnd = Clock::now() + stTimeout;
    for (const ProcessInfo *pstInfo : astProcesses) {
        if (!WaitUntil(stEnd, [&] {
                return TryAsk(pstInfo->pcName, kControlStatus, kProbeTimeoutMs) != nullptr;
            })) {
            astMissing.push_back(pstInfo);
        }
    }
    return astMissing;
}

}  // namespace wap::gateway
