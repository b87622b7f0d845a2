#include "processes/caller.h"

#include <errno.h>
#include <fcntl.h>
#include <unistd.h>

#include <sstream>
#include <string>

#include "framework/error.h"
#include "framework/files.h"

namespace wap::gateway {

namespace {

/// The line that the system keeps on a process; nothing when there is no such process.
std::optional<std::string> StatOf(int32_t iPid) {
    const std::string acPath = "/proc/" + std::to_string(iPid) + "/stat";
    const FileDescriptor stFile(open(acPath.c_str(), O_RDONLY | O_CLOEXEC));
    char acLine[1024];
    const ssize_t iCount = stFile.Get() < 0 ? -1 : read(stFile.Get(), acLine, sizeof(acLine));
    if (iCount >= 0) {
        return std::string(acLine, static_cast<size_t>(iCount));
    }
    if (errno == ENOENT || errno == ESRCH) {
        return std::nullopt;
    }
    throw GatewayError("cannot read " + acPath + ": " + ErrnoText(errno));
}

}  // namespace

std::optional<Caller> FindCaller(int32_t iPid) {
    const std::optional<std::string> acStat = iPid > 0 ? StatOf(iPid) : std::nullopt;
    if (!acStat) {
        return std::nullopt;
    }
    // The program's name, in brackets, may hold anything. The state follows; the number of threads
    // is the 18th word from there, the start the 20th.
    std::istringstream stWords(acStat->substr(acStat->rfind(')') + 1));
    std::string acState;
    std::string acSkipped;
    long iThreads = 0;
    Caller stCaller = {iPid, 0};
    stWords >> acState;
    for (int iWord = 2; iWord < 18; ++iWord) {
        stWords >> acSkipped;
    }
    stWords >> iThreads >> acSkipped >> stCaller.uiStart;
    if (!stWords) {
        throw GatewayError("cannot read the state of process " + std::to_string(iPid));
    }
    // A first thread that has ended before the others is a zombie, too.
    const bool bEnded = acState == "X" || (acState == "Z" && iThreads <= 1);
    return bEnded ? std::nullopt : std::optional(stCaller);
}

}  // namespace wap::gateway
