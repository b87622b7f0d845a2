#include "host_util.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <time.h>

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace wap::host {

namespace {

constexpr int64_t kNanosPerSecond = 1000000000;

int64_t Now() {
    timespec stNow{};
    clock_gettime(CLOCK_MONOTONIC, &stNow);
    return static_cast<int64_t>(stNow.tv_sec) * kNanosPerSecond + stNow.tv_nsec;
}

}  // namespace

Deadline::Deadline(uint32_t uiMilliseconds) : iEnd(Now() + int64_t{uiMilliseconds} * 1000000) {}

int64_t Deadline::Left() const {
    int64_t iLeft = iEnd - Now();
    return iLeft > 0 ? iLeft : 0;
}

bool Deadline::WaitFor(int iFd, short sEvents) const {
    for (;;) {
        int64_t iLeft = Left();
        timespec stWait{};
        stWait.tv_sec = static_cast<time_t>(iLeft / kNanosPerSecond);
        stWait.tv_nsec = static_cast<decltype(stWait.tv_nsec)>(iLeft % kNanosPerSecond);
        pollfd stPoll{iFd, sEvents, 0};
        int iReady = ppoll(&stPoll, 1, &stWait, nullptr);
        if (iReady > 0) {
            return true;
        }
        if (iReady == 0 && Left() == 0) {
            return false;
        }
        if (iReady < 0 && errno != EINTR) {
            return true;  // the operation that follows meets the same error and reports it
        }
    }
}

std::string RuntimeDir() {
    const char *pcDir = getenv("VT_RUNTIME_DIR");
    return pcDir != nullptr ? pcDir : "";
}

std::string RuntimePath(const std::string &strName) {
    std::string strDir = RuntimeDir();
    return strDir.empty() ? strDir : strDir + "/" + strName;
}

bool MakeDirectory(const std::string &strPath) {
    return mkdir(strPath.c_str(), 0700) == 0 || errno == EEXIST;
}

bool IsProcessName(const char *pcName) {
    if (pcName == nullptr || pcName[0] == '\0' || pcName[0] == '.') {
        return false;
    }
    constexpr char kAllowed[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_-.";
    size_t uiLen = strnlen(pcName, VT_MSG_NAME_SIZE);
    for (size_t i = 0; i < uiLen; i++) {
        if (strchr(kAllowed, pcName[i]) == nullptr) {
            return false;
        }
    }
    return uiLen < VT_MSG_NAME_SIZE;
}

void Complain(const char *pcFmt, ...) {
    ErrnoKeeper stKeep;
    char acText[512];
    va_list stArgs;
    va_start(stArgs, pcFmt);
    int iLen = vsnprintf(acText, sizeof acText - 1, pcFmt, stArgs);
    va_end(stArgs);
    if (iLen < 0) {
        return;
    }
    size_t uiLen = strlen(acText);
    acText[uiLen] = '\n';
    WriteAll(STDERR_FILENO, acText, uiLen + 1);
}

bool WriteAll(int iFd, const void *pvData, size_t uiLen) {
    const char *pcAt = static_cast<const char *>(pvData);
    while (uiLen > 0) {
        ssize_t iDone = write(iFd, pcAt, uiLen);
        if (iDone < 0) {
            if (errno == EINTR) {
                continue;
            }
            return false;
        }
        pcAt += iDone;
        uiLen -= static_cast<size_t>(iDone);
    }
    return true;
}

bool ReadWhole(const char *pcPath, std::string &strText) {
    Fd stFile(open(pcPath, O_RDONLY | O_CLOEXEC));
    if (!stFile.Ok()) {
        return false;
    }
    constexpr size_t kLimit = 1 << 20;
    char acPart[4096];
    strText.clear();
    while (strText.size() < kLimit) {
        ssize_t iGot = read(stFile.Get(), acPart, sizeof acPart);
        if (iGot == 0) {
            return true;
        }
        if (iGot > 0) {
            strText.append(acPart, static_cast<size_t>(iGot));
        } else if (errno != EINTR) {
            return false;
        }
    }
    return true;
}

}  // namespace wap::host
