#include "other_process.h"

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

namespace wap::test {

namespace {

bool WriteAll(int iFd, const std::string &acBytes) {
    return write(iFd, acBytes.data(), acBytes.size()) == static_cast<ssize_t>(acBytes.size());
}

bool ReadAll(int iFd, std::string &acBytes) {
    size_t uiDone = 0;
    while (uiDone < acBytes.size()) {
        const ssize_t iCount = read(iFd, acBytes.data() + uiDone, acBytes.size() - uiDone);
        if (iCount <= 0) {
            return false;
        }
        uiDone += static_cast<size_t>(iCount);
    }
    return true;
}

}  // namespace

pid_t OtherProcess::Pid() {
    Start();
    return m_iPid;
}

void OtherProcess::Start() {
    if (m_iPid > 0) {
        return;
    }
    int aiQuestions[2];
    int aiAnswers[2];
    if (pipe(aiQuestions) != 0 || pipe(aiAnswers) != 0) {
        ADD_FAILURE() << "no pipes";
        return;
    }
    m_iPid = fork();
    if (m_iPid == 0) {
        close(aiQuestions[1]);
        close(aiAnswers[0]);
        Serve(aiQuestions[0], aiAnswers[1]);
    }
    close(aiQuestions[0]);
    close(aiAnswers[1]);
    m_iQuestions = aiQuestions[1];
    m_iAnswers = aiAnswers[0];
    EXPECT_GT(m_iPid, 0);
}

OtherProcess::~OtherProcess() {
    if (m_iPid > 0) {
        close(m_iQuestions);
        close(m_iAnswers);
        kill(m_iPid, SIGKILL);
        waitpid(m_iPid, nullptr, 0);
    }
}

void OtherProcess::Serve(int iQuestions, int iAnswers) {
    for (std::string acHead(16, '\0'); ReadAll(iQuestions, acHead);) {
        std::string acProcess(WordAt(acHead, 0), '\0');
        std::string acRequest(WordAt(acHead, 8), '\0');
        if (!ReadAll(iQuestions, acProcess) || !ReadAll(iQuestions, acRequest)) {
            break;
        }
        const RpcReply stReply =
            Call(acProcess.c_str(), WordAt(acHead, 4), acRequest, WordAt(acHead, 12));
        if (!WriteAll(iAnswers, Word(stReply.uiStatus) + stReply.acBytes)) {
            break;
        }
    }
    _exit(0);
}

RpcReply OtherProcess::Ask(const char *pcProcess, uint32_t uiRpcId, const std::string &acRequest,
                           size_t uiCapacity) {
    Start();
    const std::string acProcess = pcProcess;
    EXPECT_TRUE(WriteAll(m_iQuestions,
                         Word(static_cast<uint32_t>(acProcess.size())) + Word(uiRpcId) +
                             Word(static_cast<uint32_t>(acRequest.size())) +
                             Word(static_cast<uint32_t>(uiCapacity)) + acProcess + acRequest));
    std::string acAnswer(4 + uiCapacity, '\0');
    EXPECT_TRUE(ReadAll(m_iAnswers, acAnswer));
    return {WordAt(acAnswer, 0), acAnswer.substr(4)};
}

void OtherProcess::Crash() const {
    ASSERT_EQ(kill(m_iPid, SIGKILL), 0);
    siginfo_t stInfo = {};
    ASSERT_EQ(waitid(P_PID, static_cast<id_t>(m_iPid), &stInfo, WEXITED | WNOWAIT), 0);
}

}  // namespace wap::test
