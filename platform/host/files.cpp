// Files and commands.
#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/select.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <cstdio>
#include <cstring>

#include "host_util.h"
#include "writable_tree.h"

using namespace wap::host;

namespace {

/** Repeats a read or write that a signal interrupted; their results fit an int32_t. */
template <typename Transfer, typename Buffer>
int32_t Transferred(Transfer pfnTransfer, int32_t iFd, Buffer *pvBuf, uint32_t uiCount) {
    if (pvBuf == nullptr) {
        errno = EINVAL;
        return -1;
    }
    size_t uiBounded = std::min(uiCount, static_cast<uint32_t>(INT32_MAX));
    ssize_t iDone = 0;
    do {
        iDone = pfnTransfer(iFd, pvBuf, uiBounded);
    } while (iDone < 0 && errno == EINTR);
    return static_cast<int32_t>(iDone);
}

/** Starts /bin/sh with the default signals that a program expects. @return its pid, or -1 */
pid_t StartShell(const char *pcCmd) {
    posix_spawnattr_t stAttr;
    if (posix_spawnattr_init(&stAttr) != 0) {
        return -1;
    }
    sigset_t stNone;
    sigset_t stDefaults;
    sigemptyset(&stNone);
    sigemptyset(&stDefaults);
    sigaddset(&stDefaults, SIGPIPE);
    sigaddset(&stDefaults, SIGCHLD);
    posix_spawnattr_setsigmask(&stAttr, &stNone);
    posix_spawnattr_setsigdefault(&stAttr, &stDefaults);
    posix_spawnattr_setflags(&stAttr, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    char acShell[] = "sh";
    char acOption[] = "-c";
    char *apcArgs[] = {acShell, acOption, const_cast<char *>(pcCmd), nullptr};
    pid_t iPid = -1;
    int iError = posix_spawn(&iPid, "/bin/sh", nullptr, &stAttr, apcArgs, environ);
    posix_spawnattr_destroy(&stAttr);
    return iError == 0 ? iPid : -1;
}

}  // namespace

int32_t VT_OS_Open(const char *pcPath, int32_t iFlags, uint32_t uiMode) {
    if (pcPath == nullptr) {
        errno = EINVAL;
        return -1;
    }
    const std::string strPath = LocalPath(pcPath);
    int iFd = -1;
    do {
        iFd = open(strPath.c_str(), iFlags | O_CLOEXEC, static_cast<mode_t>(uiMode));
    } while (iFd < 0 && errno == EINTR);
    return iFd;
}

int32_t VT_OS_Read(int32_t iFd, void *pvBuf, uint32_t uiCount) {
    return Transferred(read, iFd, pvBuf, uiCount);
}

int32_t VT_OS_Write(int32_t iFd, const void *pvBuf, uint32_t uiCount) {
    return Transferred(write, iFd, pvBuf, uiCount);
}

int32_t VT_OS_Close(int32_t iFd) {
    // The descriptor is gone even when a signal came in between; closing again could hit another.
    return close(iFd) == 0 || errno == EINTR ? 0 : -1;
}

int32_t VT_OS_Select(int32_t iNfds, void *pvRead, void *pvWrite, void *pvExcept, void *pvTimeval) {
    return select(iNfds, static_cast<fd_set *>(pvRead), static_cast<fd_set *>(pvWrite),
                  static_cast<fd_set *>(pvExcept), static_cast<timeval *>(pvTimeval));
}

uint32_t VT_OS_ExecShellCmdEx(const char *pcCmd) {
    if (pcCmd == nullptr) {
        return VT_HOST_ERR_ARGUMENT;
    }
    pid_t iPid = StartShell(LocalCommand(pcCmd).c_str());
    if (iPid < 0) {
        return VT_HOST_ERR_SYSTEM;
    }
    int iStatus = 0;
    while (waitpid(iPid, &iStatus, 0) < 0) {
        if (errno != EINTR) {
            return VT_HOST_ERR_SYSTEM;
        }
    }
    return WIFEXITED(iStatus) ? static_cast<uint32_t>(WEXITSTATUS(iStatus)) : VT_HOST_ERR_SYSTEM;
}

void *VT_OS_Fopen(const char *pcPath, const char *pcMode) {
    char acMode[8];
    // "e" closes the file on exec; it must come after the caller's own letters.
    if (pcPath == nullptr || pcMode == nullptr ||
        VT_OS_Snprintf_S(acMode, sizeof acMode, sizeof acMode - 1, "%se", pcMode) < 0) {
        errno = EINVAL;
        return nullptr;
    }
    return fopen(LocalPath(pcPath).c_str(), acMode);
}

char *VT_OS_Fgets(char *pcBuf, uint32_t uiSize, void *pvFile) {
    if (pcBuf == nullptr || pvFile == nullptr || uiSize == 0) {
        return nullptr;
    }
    int iSize = static_cast<int>(std::min(uiSize, static_cast<uint32_t>(INT_MAX)));
    return fgets(pcBuf, iSize, static_cast<FILE *>(pvFile));
}

int32_t VT_OS_Fclose(void *pvFile) {
    if (pvFile == nullptr) {
        errno = EINVAL;
        return -1;
    }
    return fclose(static_cast<FILE *>(pvFile)) == 0 ? 0 : -1;
}
