#include "common/children.h"

#include <fcntl.h>
#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <exception>
#include <filesystem>
#include <stdexcept>

namespace wap::bench {

Children::~Children() {
    End();
}

pid_t Children::Start(const char *pcName, const std::function<void(int iReady)> &fnServe) {
    int aiReady[2];
    if (pipe2(aiReady, O_CLOEXEC) != 0) {
        throw std::runtime_error("cannot make a pipe: too many files are open");
    }
    fflush(nullptr);
    const pid_t iProcess = fork();
    if (iProcess == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        signal(SIGPIPE, SIG_IGN);
        close(aiReady[0]);
        try {
            fnServe(aiReady[1]);
        } catch (const std::exception &stFailure) {
            fprintf(stderr, "%s: %s\n", pcName, stFailure.what());
        }
        _exit(1);
    }
    close(aiReady[1]);
    char cByte = 0;
    const bool bReady = iProcess > 0 && read(aiReady[0], &cByte, 1) == 1;
    close(aiReady[0]);
    if (iProcess > 0) {
        m_aiProcesses.push_back(iProcess);
    }
    if (!bReady) {
        throw std::runtime_error(std::string(pcName) + " did not start");
    }
    return iProcess;
}

void Children::End() {
    for (const pid_t iProcess : m_aiProcesses) {
        kill(iProcess, SIGKILL);
        waitpid(iProcess, nullptr, 0);
    }
    m_aiProcesses.clear();
}

void TellReady(int iReady) {
    if (write(iReady, "\n", 1) != 1) {
        throw std::runtime_error("nobody waits for this process any more");
    }
}

void WaitForTheEnd() {
    for (;;) {
        pause();
    }
}

RuntimeFolder::RuntimeFolder()
    : m_acPath((std::filesystem::temp_directory_path() / "wap-bench.XXXXXX").string()) {
    if (mkdtemp(m_acPath.data()) == nullptr) {
        throw std::runtime_error("cannot make the folder " + m_acPath +
                                 "; set TMPDIR to one that can be written to");
    }
    setenv("VT_RUNTIME_DIR", m_acPath.c_str(), 1);
}

RuntimeFolder::~RuntimeFolder() {
    std::error_code stIgnored;
    std::filesystem::remove_all(m_acPath, stIgnored);
}

}  // namespace wap::bench
