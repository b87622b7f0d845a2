#include "framework/tap_socket.h"

#include <dirent.h>
#include <errno.h>
#include <stdio.h>
#include <string.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <memory>
#include <string_view>

#include "framework/error.h"

namespace wap::gateway {

namespace {

// With the longest process id no longer than the longest name of a process's socket.
constexpr std::string_view kPrefix = "monitor.";
/// What a socket is called before somebody listens on it: nobody must take it for a dead one then.
constexpr std::string_view kNewPrefix = "new.";
/// More than there are processes.
constexpr int kBacklog = 64;

sockaddr_un AddressOf(const std::string &acPath) {
    sockaddr_un stAddress = {};
    stAddress.sun_family = AF_UNIX;
    if (acPath.size() >= sizeof(stAddress.sun_path)) {
        throw GatewayError("the path " + acPath + " is too long for a socket");
    }
    memcpy(stAddress.sun_path, acPath.c_str(), acPath.size() + 1);
    return stAddress;
}

FileDescriptor NewSocket() {
    FileDescriptor stSocket(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    if (stSocket.Get() < 0) {
        throw GatewayError("cannot make a socket: " + ErrnoText(errno));
    }
    return stSocket;
}

/// Whether the other end is of the same user. Nobody else's should be in the directory.
bool IsOurs(int iFd) {
    ucred stPeer = {};
    socklen_t uiLength = sizeof(stPeer);
    return getsockopt(iFd, SOL_SOCKET, SO_PEERCRED, &stPeer, &uiLength) == 0 &&
           stPeer.uid == geteuid();
}

}  // namespace

std::vector<TapSocket> TapSockets(const RuntimeDir &stDir) {
    std::vector<TapSocket> astSockets;
    const std::unique_ptr<DIR, int (*)(DIR *)> pstFolder(opendir(stDir.Path().c_str()), closedir);
    while (const dirent *pstEntry = pstFolder ? readdir(pstFolder.get()) : nullptr) {
        const std::string_view sName = pstEntry->d_name;
        if (!sName.starts_with(kPrefix) ||
            sName.find_first_not_of("0123456789", kPrefix.size()) != std::string_view::npos) {
            continue;
        }
        std::string acPath = stDir.Path() + "/" + pstEntry->d_name;
        struct stat stInfo;
        if (lstat(acPath.c_str(), &stInfo) == 0 && S_ISSOCK(stInfo.st_mode)) {
            astSockets.push_back({std::move(acPath), stInfo.st_ino});
        }
    }
    return astSockets;
}

FileDescriptor ConnectTap(const TapSocket &stSocket) {
    const sockaddr_un stAddress = AddressOf(stSocket.acPath);
    FileDescriptor stNew = NewSocket();
    if (connect(stNew.Get(), reinterpret_cast<const sockaddr *>(&stAddress), sizeof(stAddress)) !=
        0) {
        if (errno == ECONNREFUSED) {
            (void)unlink(stSocket.acPath.c_str());
        }
        return FileDescriptor();
    }
    return IsOurs(stNew.Get()) ? std::move(stNew) : FileDescriptor();
}

void RemoveDeadTaps(const RuntimeDir &stDir) {
    for (const TapSocket &stSocket : TapSockets(stDir)) {
        (void)ConnectTap(stSocket);
    }
}

TapListener::TapListener(const RuntimeDir &stDir) : m_stSocket(NewSocket()) {
    const std::string acPid = std::to_string(getpid());
    const std::string acNew = stDir.Path() + "/" + std::string(kNewPrefix) + acPid;
    const std::string acPath = stDir.Path() + "/" + std::string(kPrefix) + acPid;
    (void)unlink(acNew.c_str());
    const sockaddr_un stAddress = AddressOf(acNew);
    if (bind(m_stSocket.Get(), reinterpret_cast<const sockaddr *>(&stAddress), sizeof(stAddress)) !=
            0 ||
        listen(m_stSocket.Get(), kBacklog) != 0 || rename(acNew.c_str(), acPath.c_str()) != 0) {
        const std::string acWhy = ErrnoText(errno);
        (void)unlink(acNew.c_str());
        throw GatewayError("cannot listen on " + acPath + ": " + acWhy);
    }
    m_acPath = acPath;
}

TapListener::~TapListener() {
    (void)unlink(m_acPath.c_str());
}

FileDescriptor TapListener::Accept() const {
    // cppcheck-suppress nullPointer ; the two may be null together
    FileDescriptor stNew(accept4(m_stSocket.Get(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
    return stNew.Get() >= 0 && IsOurs(stNew.Get()) ? std::move(stNew) : FileDescriptor();
}

}  // namespace wap::gateway
