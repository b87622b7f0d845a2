#include "framework/runtime_dir.h"

#include <dirent.h>
#include <errno.h>
#include <fcntl.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <memory>
#include <optional>
#include <string_view>

#include "framework/error.h"
#include "framework/process_list.h"

namespace wap::gateway {

namespace {

// What RuntimeDir::FromEnvironment refuses: a socket's path is at most this long, its zero
// included.
constexpr size_t kMaxSocketPath = sizeof(sockaddr_un::sun_path);

size_t LongestSocketName() {
    size_t uiLongest = 0;
    for (const ProcessInfo &stInfo : kProcesses) {
        uiLongest = std::max(uiLongest, strlen(stInfo.pcName));
    }
    return uiLongest + strlen("/.sock");
}

struct flock WholeFile(short sType) {
    struct flock stLock = {};
    stLock.l_type = sType;
    stLock.l_whence = SEEK_SET;
    return stLock;
}

std::optional<uint64_t> NotedStart(const RuntimeDir &stDir) {
    const std::optional<std::string> acNote = ReadTextFile(stDir.BootFile());
    uint64_t uiStart = 0;
    if (!acNote ||
        std::from_chars(acNote->data(), acNote->data() + acNote->size(), uiStart).ec !=
            std::errc() ||
        uiStart > NowSeconds()) {  // noted before the machine itself was started again
        return std::nullopt;
    }
    return uiStart;
}

}  // namespace

RuntimeDir RuntimeDir::FromEnvironment() {
    const char *pcDir = getenv("VT_RUNTIME_DIR");
    if (pcDir == nullptr || *pcDir == '\0') {
        throw GatewayError(
            "no runtime directory: set VT_RUNTIME_DIR to the directory in which the gateway's "
            "processes meet (gatewayctl takes --dir DIR as well)");
    }
    std::string acPath = pcDir;
    while (acPath.size() > 1 && acPath.back() == '/') {
        acPath.pop_back();
    }
    if (acPath.size() + LongestSocketName() >= kMaxSocketPath) {
        throw GatewayError("the runtime directory's path " + acPath + " is too long: at most " +
                           std::to_string(kMaxSocketPath - LongestSocketName() - 1) +
                           " bytes, because sockets are in it");
    }
    return RuntimeDir(std::move(acPath));
}

void RuntimeDir::Make() const {
    for (size_t uiSlash = m_acPath.find('/', 1); uiSlash != std::string::npos;
         uiSlash = m_acPath.find('/', uiSlash + 1)) {
        const std::string acParent = m_acPath.substr(0, uiSlash);
        struct stat stParent;
        if (stat(acParent.c_str(), &stParent) != 0) {
            MakeDirectory(acParent);
        }
    }
    MakeDirectory(m_acPath);
    struct stat stInfo;
    if (stat(m_acPath.c_str(), &stInfo) != 0 || !S_ISDIR(stInfo.st_mode)) {
        throw GatewayError(m_acPath + " is no directory");
    }
    if (stInfo.st_uid != geteuid()) {
        throw GatewayError("the runtime directory " + m_acPath + " belongs to another user");
    }
    if ((stInfo.st_mode & 077) != 0) {
        throw GatewayError("the runtime directory " + m_acPath +
                           " is open to other users: chmod 700 it, or name another one");
    }
    MakeDirectory(m_acPath + "/state");
    MakeDirectory(m_acPath + "/log");
}

std::string RuntimeDir::StateFile(const std::string &acProcess) const {
    return m_acPath + "/state/" + acProcess + ".json";
}

std::string RuntimeDir::LogFile(const std::string &acProcess) const {
    return m_acPath + "/log/" + acProcess + ".out";
}

std::string RuntimeDir::LockFile(const std::string &acProcess) const {
    return m_acPath + "/" + acProcess + ".pid";
}

std::string RuntimeDir::HomeFile() const {
    return m_acPath + "/state/home.json";
}

std::string RuntimeDir::FeaturesFile() const {
    return m_acPath + "/features";
}

std::string RuntimeDir::BootFile() const {
    return m_acPath + "/gateway.start";
}

FileDescriptor LockProcess(const RuntimeDir &stDir, const std::string &acProcess) {
    const std::string acPath = stDir.LockFile(acProcess);
    FileDescriptor stFile(open(acPath.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
    if (stFile.Get() < 0) {
        throw GatewayError("cannot open " + acPath + ": " + ErrnoText(errno));
    }
    struct flock stLock = WholeFile(F_WRLCK);
    if (fcntl(stFile.Get(), F_SETLK, &stLock) != 0) {
        if (errno == EAGAIN || errno == EACCES) {
            throw GatewayError(acProcess + " already runs in " + stDir.Path());
        }
        throw GatewayError("cannot lock " + acPath + ": " + ErrnoText(errno));
    }
    // For people who look; the programs ask for the lock's holder.
    const std::string acPid = std::to_string(getpid()) + "\n";
    if (ftruncate(stFile.Get(), 0) != 0 ||
        pwrite(stFile.Get(), acPid.data(), acPid.size(), 0) != static_cast<ssize_t>(acPid.size())) {
        throw GatewayError("cannot write " + acPath + ": " + ErrnoText(errno));
    }
    return stFile;
}

pid_t RunningProcess(const RuntimeDir &stDir, const std::string &acProcess) {
    const std::string acPath = stDir.LockFile(acProcess);
    FileDescriptor stFile(open(acPath.c_str(), O_RDWR | O_CLOEXEC));
    if (stFile.Get() < 0) {
        if (errno == ENOENT) {
            return 0;
        }
        throw GatewayError("cannot open " + acPath + ": " + ErrnoText(errno));
    }
    struct flock stLock = WholeFile(F_WRLCK);
    if (fcntl(stFile.Get(), F_GETLK, &stLock) != 0) {
        throw GatewayError("cannot query the lock of " + acPath + ": " + ErrnoText(errno));
    }
    return stLock.l_type == F_UNLCK ? 0 : stLock.l_pid;
}

void RemoveDeadSockets(const RuntimeDir &stDir) {
    constexpr std::string_view kSuffix = ".sock";
    const std::unique_ptr<DIR, int (*)(DIR *)> pstFolder(opendir(stDir.Path().c_str()), closedir);
    while (const dirent *pstEntry = pstFolder ? readdir(pstFolder.get()) : nullptr) {
        const std::string acPath = stDir.Path() + "/" + pstEntry->d_name;
        struct stat stInfo;
        if (!acPath.ends_with(kSuffix) || lstat(acPath.c_str(), &stInfo) != 0 ||
            !S_ISSOCK(stInfo.st_mode)) {
            continue;
        }
        // Whoever listens holds the lock of its name; held here, nobody begins to listen meanwhile.
        const std::string acLock = acPath.substr(0, acPath.size() - kSuffix.size()) + ".lock";
        const FileDescriptor stLock(open(acLock.c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW));
        struct flock stWhole = WholeFile(F_WRLCK);
        if (stLock.Get() >= 0 && fcntl(stLock.Get(), F_SETLK, &stWhole) == 0) {
            unlink(acPath.c_str());
        }
    }
}

uint64_t NowSeconds() {
    struct timespec stNow = {};
    clock_gettime(CLOCK_BOOTTIME, &stNow);
    return static_cast<uint64_t>(stNow.tv_sec);
}

void NoteGatewayStart(const RuntimeDir &stDir) {
    if (!NotedStart(stDir)) {
        WriteTextFile(stDir.BootFile(), std::to_string(NowSeconds()) + "\n");
    }
}

void ForgetGatewayStart(const RuntimeDir &stDir) {
    if (unlink(stDir.BootFile().c_str()) != 0 && errno != ENOENT) {
        throw GatewayError("cannot remove " + stDir.BootFile() + ": " + ErrnoText(errno));
    }
}

uint64_t GatewayStart(const RuntimeDir &stDir) {
    return NotedStart(stDir).value_or(NowSeconds());
}

}  // namespace wap::gateway
