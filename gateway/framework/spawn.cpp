#include "framework/spawn.h"

#include <errno.h>
#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <stdlib.h>
#include <unistd.h>

#include <new>
#include <sstream>

#include "framework/error.h"
#include "framework/files.h"

namespace wap::gateway {

namespace {

std::vector<std::string> EmulatorWords() {
    std::vector<std::string> astWords;
    const std::string acEmulator = FromEnvironment("WAP_EMULATOR");
    const char cSeparator = acEmulator.find(';') == std::string::npos ? ' ' : ';';
    std::istringstream stWords(acEmulator);
    for (std::string acWord; std::getline(stWords, acWord, cSeparator);) {
        if (!acWord.empty()) {
            astWords.push_back(acWord);
        }
    }
    return astWords;
}

/// How a process is spawned: a session of its own, default signals, output to its log.
class SpawnRecipe {
  public:
    explicit SpawnRecipe(const std::string &acLog) {
        posix_spawn_file_actions_init(&m_stFiles);
        posix_spawnattr_init(&m_stAttributes);
        sigset_t stSignals;
        sigemptyset(&stSignals);
        int iError = posix_spawnattr_setsigmask(&m_stAttributes, &stSignals);
        for (const int iSignal : {SIGTERM, SIGINT, SIGQUIT, SIGHUP, SIGPIPE, SIGCHLD}) {
            sigaddset(&stSignals, iSignal);
        }
        iError |= posix_spawnattr_setsigdefault(&m_stAttributes, &stSignals);
        iError |= posix_spawnattr_setflags(
            &m_stAttributes, POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
        iError |=
            posix_spawn_file_actions_addopen(&m_stFiles, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        iError |= posix_spawn_file_actions_addopen(&m_stFiles, STDOUT_FILENO, acLog.c_str(),
                                                   O_WRONLY | O_CREAT | O_APPEND, 0600);
        iError |= posix_spawn_file_actions_adddup2(&m_stFiles, STDOUT_FILENO, STDERR_FILENO);
        if (iError != 0) {
            Release();
            throw std::bad_alloc();
        }
    }
    SpawnRecipe(const SpawnRecipe &) = delete;
    SpawnRecipe &operator=(const SpawnRecipe &) = delete;
    ~SpawnRecipe() { Release(); }

    const posix_spawn_file_actions_t *Files() const { return &m_stFiles; }
    const posix_spawnattr_t *Attributes() const { return &m_stAttributes; }

  private:
    void Release() {
        posix_spawn_file_actions_destroy(&m_stFiles);
        posix_spawnattr_destroy(&m_stAttributes);
    }

    posix_spawn_file_actions_t m_stFiles;
    posix_spawnattr_t m_stAttributes;
};

}  // namespace

std::string FromEnvironment(const char *pcName) {
    const char *pcValue = getenv(pcName);
    return pcValue == nullptr ? "" : pcValue;
}

pid_t SpawnDetached(const std::string &acProgram, const std::vector<std::string> &astArguments,
                    const std::string &acLog) {
    std::vector<std::string> astWords = EmulatorWords();
    astWords.push_back(acProgram);
    astWords.insert(astWords.end(), astArguments.begin(), astArguments.end());
    std::vector<char *> apcWords;
    apcWords.reserve(astWords.size() + 1);
    for (std::string &acWord : astWords) {
        apcWords.push_back(acWord.data());
    }
    apcWords.push_back(nullptr);
    const SpawnRecipe stRecipe(acLog);
    pid_t iPid = 0;
    const int iError = posix_spawnp(&iPid, apcWords[0], stRecipe.Files(), stRecipe.Attributes(),
                                    apcWords.data(), environ);
    if (iError != 0) {
        throw GatewayError(
            "cannot start " + astWords[0] + ": " + ErrnoText(iError) +
            (iError == ENOEXEC ? "; a program for another machine needs WAP_EMULATOR" : ""));
    }
    return iPid;
}

}  // namespace wap::gateway
