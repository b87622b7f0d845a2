// Console, trace and fault log: files <process>.console, .trace and .fault in
// $VT_RUNTIME_DIR/log. A line opens its file, appends with one write and closes it again. That
// keeps no state that threads or forks could disturb; and trace, the only frequent one, is off
// unless somebody looks for a fault.
#include <fcntl.h>
#include <pthread.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <time.h>

#include <algorithm>
#include <atomic>
#include <cinttypes>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "host_util.h"

using wap::host::ErrnoKeeper;
using wap::host::Fd;
using wap::host::MakeDirectory;
using wap::host::RuntimePath;
using wap::host::WriteAll;

namespace {

/** A log that has grown this long becomes <name>.1, and the former <name>.1 goes. */
constexpr off_t kMaxLog = 1 << 20;
constexpr off_t kMaxTrace = 8 << 20;
constexpr size_t kMaxLine = 4096;

bool TraceWanted() {
    const char *pcTrace = getenv("VT_TRACE");
    return pcTrace != nullptr && strcmp(pcTrace, "1") == 0;
}

// Read once, when the library is loaded, so that a trace that is off costs a load and a branch.
std::atomic<bool> g_bTrace{TraceWanted()};

/** Opens the log for appending, and makes its folder the first time. */
Fd OpenLog(const std::string &strPath) {
    constexpr int kFlags = O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NOFOLLOW;
    Fd stFile(open(strPath.c_str(), kFlags, 0600));
    if (!stFile.Ok() && errno == ENOENT && MakeDirectory(RuntimePath("log"))) {
        stFile.Reset(open(strPath.c_str(), kFlags, 0600));
    }
    return stFile;
}

/** @return the open log, locked and with room; not Ok when there is none to be had. */
Fd LockLog(const std::string &strPath, off_t iMax) {
    for (int iTry = 0; iTry < 8; iTry++) {
        Fd stFile = OpenLog(strPath);
        if (!stFile.Ok()) {
            return stFile;
        }
        while (flock(stFile.Get(), LOCK_EX) != 0) {
            if (errno != EINTR) {
                return Fd();
            }
        }
        struct stat stOpen {};
        struct stat stNamed {};
        if (fstat(stFile.Get(), &stOpen) != 0) {
            return Fd();
        }
        bool bSame = stat(strPath.c_str(), &stNamed) == 0 && stNamed.st_ino == stOpen.st_ino &&
                     stNamed.st_dev == stOpen.st_dev;
        if (bSame && stOpen.st_size < iMax) {
            return stFile;
        }
        // Who holds the lock of the file that has the name may put it aside; the others find
        // that it has gone and open the new one.
        if (bSame && rename(strPath.c_str(), (strPath + ".1").c_str()) != 0) {
            return Fd();
        }
    }
    return Fd();
}

void Append(const char *pcKind, const char *pcText, size_t uiLen, off_t iMax) {
    const char *pcProc = VT_MSG_GetCurProcName();
    if (pcProc[0] == '\0') {
        pcProc = program_invocation_short_name;
    }
    std::string strPath = RuntimePath(std::string("log/") + pcProc + pcKind);
    Fd stFile = strPath.empty() ? Fd() : LockLog(strPath, iMax);
    WriteAll(stFile.Ok() ? stFile.Get() : STDERR_FILENO, pcText, uiLen);
}

const char *BaseName(const char *pcFile) {
    if (pcFile == nullptr) {
        return "?";
    }
    const char *pcSlash = strrchr(pcFile, '/');
    return pcSlash == nullptr ? pcFile : pcSlash + 1;
}

/** Prints date, time, thread and place at the start of a line. @return the length */
size_t PrintPlace(char *pcLine, size_t uiSize, const char *pcFile, uint32_t uiLine) {
    timespec stNow{};
    tm stDay{};
    clock_gettime(CLOCK_REALTIME, &stNow);
    localtime_r(&stNow.tv_sec, &stDay);
    char acTime[32] = {};
    strftime(acTime, sizeof acTime, "%Y-%m-%d %H:%M:%S", &stDay);
    int iLen = snprintf(pcLine, uiSize, "%s.%06ld %d %.64s:%" PRIu32 " ", acTime,
                        static_cast<long>(stNow.tv_nsec / 1000), static_cast<int>(gettid()),
                        BaseName(pcFile), uiLine);
    return static_cast<size_t>(std::max(iLen, 0));
}

/** Makes one line out of a text: no line breaks or control characters, no blanks at the ends. */
size_t Flatten(char *pcText) {
    size_t uiKept = 0;
    for (const char *pcAt = pcText; *pcAt != '\0'; pcAt++) {
        unsigned char ucChar = static_cast<unsigned char>(*pcAt);
        char cKept = ucChar < 0x20 || ucChar == 0x7F ? ' ' : *pcAt;
        if (cKept != ' ' || uiKept > 0) {
            pcText[uiKept++] = cKept;
        }
    }
    while (uiKept > 0 && pcText[uiKept - 1] == ' ') {
        uiKept--;
    }
    pcText[uiKept] = '\0';
    return uiKept;
}

}  // namespace

int32_t VT_OS_Printf(const char *pcFmt, ...) {
    if (pcFmt == nullptr) {
        return -1;
    }
    ErrnoKeeper stKeep;
    char acText[kMaxLine];
    va_list stArgs;
    va_start(stArgs, pcFmt);
    int iLen = vsnprintf(acText, sizeof acText, pcFmt, stArgs);
    va_end(stArgs);
    if (iLen > 0) {
        Append(".console", acText, strlen(acText), kMaxLog);
    }
    return iLen;
}

void VT_PROC_DBG_TraceS(uint32_t uiMid, const char *pcFile, uint32_t uiLine, uint32_t,
                        const char *pcFmt, ...) {
    if (!g_bTrace.load(std::memory_order_relaxed) || pcFmt == nullptr) {
        return;
    }
    ErrnoKeeper stKeep;
    char acText[kMaxLine];
    size_t uiLen = PrintPlace(acText, sizeof acText, pcFile, uiLine);
    uiLen += static_cast<size_t>(
        snprintf(acText + uiLen, sizeof acText - uiLen, "[%" PRIu32 "] ", uiMid));
    va_list stArgs;
    va_start(stArgs, pcFmt);
    int iLen = vsnprintf(acText + uiLen, sizeof acText - uiLen - 1, pcFmt, stArgs);
    va_end(stArgs);
    if (iLen < 0) {
        acText[uiLen] = '\0';
    }
    uiLen += Flatten(acText + uiLen);
    acText[uiLen++] = '\n';
    Append(".trace", acText, uiLen, kMaxTrace);
}

void VT_PROC_DBG_LastWord(const char *pcFile, uint32_t uiLine, uint32_t uiCode, uint32_t uiArg1,
                          uint32_t uiArg2, uint32_t uiArg3, uint32_t uiArg4) {
    ErrnoKeeper stKeep;
    char acText[256];
    size_t uiLen = PrintPlace(acText, sizeof acText, pcFile, uiLine);
    uiLen += static_cast<size_t>(snprintf(acText + uiLen, sizeof acText - uiLen,
                                          "0x%08" PRIX32 " %" PRIu32 " %" PRIu32 " %" PRIu32
                                          " %" PRIu32 "\n",
                                          uiCode, uiArg1, uiArg2, uiArg3, uiArg4));
    Append(".fault", acText, uiLen, kMaxLog);
}

void VT_PROC_DBG_LastWord_1(const char *pcFile, uint32_t uiLine, uint32_t uiCode) {
    ErrnoKeeper stKeep;
    char acText[256];
    size_t uiLen = PrintPlace(acText, sizeof acText, pcFile, uiLine);
    uiLen += static_cast<size_t>(
        snprintf(acText + uiLen, sizeof acText - uiLen, "0x%08" PRIX32 "\n", uiCode));
    Append(".fault", acText, uiLen, kMaxLog);
}

void VT_HOST_SetTrace(uint32_t uiOn) {
    g_bTrace.store(uiOn != 0, std::memory_order_relaxed);
}
