#include "gateway_fixture.h"

#include <fcntl.h>
#include <spawn.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <sstream>

#include "vt_ssp_host.h"

namespace wap::test {

namespace {

/// The words of the emulator that runs the programs under test; none for programs of this machine.
std::vector<std::string> EmulatorWords() {
    std::vector<std::string> astWords;
    std::istringstream stList(WAP_TEST_EMULATOR);
    for (std::string acWord; std::getline(stList, acWord, '|');) {
        if (!acWord.empty()) {
            astWords.push_back(acWord);
        }
    }
    return astWords;
}

std::vector<std::string> Emulated(const std::string &acProgram) {
    std::vector<std::string> astWords = EmulatorWords();
    astWords.push_back(acProgram);
    return astWords;
}

}  // namespace

RpcReply Call(const char *pcProcess, uint32_t uiRpcId, std::string_view pcRequest,
              size_t uiCapacity, uint32_t uiTimeoutMs) {
    RpcMsgHead stHead = {};
    strncpy(stHead.acSndApp, "gateway_tests", sizeof(stHead.acSndApp) - 1);
    strncpy(stHead.acRcvApp, pcProcess, sizeof(stHead.acRcvApp) - 1);
    RpcReply stAnswer;
    stAnswer.acBytes.assign(uiCapacity, kUntouched);
    stAnswer.uiStatus = VT_MSG_RpcCall(
        &stHead, uiRpcId, 0, pcRequest.data(), static_cast<uint32_t>(pcRequest.size()),
        stAnswer.acBytes.data(), static_cast<uint32_t>(uiCapacity), uiTimeoutMs);
    return stAnswer;
}

RpcReply Query(const char *pcProcess, uint32_t uiRpcId, size_t uiCapacity, uint32_t uiTimeoutMs) {
    return Call(pcProcess, uiRpcId, std::string_view("\0\0\0\0", 4), uiCapacity, uiTimeoutMs);
}

std::string TextIn(const RpcReply &stReply) {
    const size_t uiEnd = stReply.acBytes.find('\0');
    EXPECT_NE(uiEnd, std::string::npos);
    return stReply.acBytes.substr(0, uiEnd);
}

std::string BlockOf(const RpcReply &stReply, size_t uiAt) {
    EXPECT_EQ(stReply.uiStatus, 0u);
    const uint32_t uiId = WordAt(stReply.acBytes, uiAt);
    const uint32_t uiOriginal = WordAt(stReply.acBytes, uiAt + 4);
    std::string acStored(std::max(WordAt(stReply.acBytes, uiAt + 8), uiOriginal), '\0');
    EXPECT_EQ(VT_VDATA_ReadData(uiId, WordAt(stReply.acBytes, uiAt + 8), acStored.data()), 0u);
    EXPECT_EQ(VT_VDATA_FreeShm(uiId), 0u);
    if (uiOriginal <= 2048) {
        EXPECT_EQ(WordAt(stReply.acBytes, uiAt + 8), uiOriginal);
        return acStored;
    }
    EXPECT_LT(WordAt(stReply.acBytes, uiAt + 8), uiOriginal);
    std::string acPlain(uiOriginal, '\0');
    EXPECT_EQ(VT_OS_Decompress(acStored.data(), acPlain.data(), uiOriginal), 0u);
    return acPlain;
}

void GatewayTest::SetUp() {
    char acDir[] = "/tmp/wap-gateway-test-XXXXXX";
    ASSERT_NE(mkdtemp(acDir), nullptr);
    m_acDir = acDir;
    setenv("VT_RUNTIME_DIR", acDir, 1);
    std::string acEmulator;
    for (const std::string &acWord : EmulatorWords()) {
        acEmulator += acWord + ";";
    }
    setenv("WAP_EMULATOR", acEmulator.c_str(), 1);
    unsetenv("WAP_GATEWAY_PROGRAM");
    unsetenv("WAP_GATEWAY_HOME");
}

void GatewayTest::TearDown() {
    const Outcome stStop = Ctl({"stop"});
    EXPECT_EQ(stStop.iExit, 0) << stStop.acErr;
    // What a sanitizer found in a process is in that one's log.
    for (const char *pcName : kProcessNames) {
        const std::string acLog = ReadFile("log/" + std::string(pcName) + ".out");
        EXPECT_EQ(acLog.find("Sanitizer"), std::string::npos) << acLog;
        EXPECT_EQ(acLog.find("runtime error"), std::string::npos) << acLog;
    }
    RemoveDirectory();
}

void GatewayTest::RemoveDirectory() const {
    // A program of this machine: one that is emulated may fail to read directories.
    std::vector<std::string> astWords = {"rm", "-rf", m_acDir};
    EXPECT_EQ(Await(Launch(astWords)), 0);
}

pid_t GatewayTest::Launch(const std::vector<std::string> &astWords) const {
    std::vector<std::string> astCopies = astWords;
    std::vector<char *> astArguments;
    astArguments.reserve(astCopies.size() + 1);
    for (std::string &acWord : astCopies) {
        astArguments.push_back(acWord.data());
    }
    astArguments.push_back(nullptr);
    posix_spawn_file_actions_t stFiles;
    posix_spawn_file_actions_init(&stFiles);
    const std::string acOut = m_acDir + "/test.out";
    const std::string acErr = m_acDir + "/test.err";
    posix_spawn_file_actions_addopen(&stFiles, STDOUT_FILENO, acOut.c_str(),
                                     O_WRONLY | O_CREAT | O_TRUNC, 0600);
    posix_spawn_file_actions_addopen(&stFiles, STDERR_FILENO, acErr.c_str(),
                                     O_WRONLY | O_CREAT | O_TRUNC, 0600);
    pid_t iPid = -1;
    const int iError =
        posix_spawnp(&iPid, astArguments[0], &stFiles, nullptr, astArguments.data(), environ);
    posix_spawn_file_actions_destroy(&stFiles);
    EXPECT_EQ(iError, 0) << "cannot start " << astWords[0];
    return iError == 0 ? iPid : -1;
}

int GatewayTest::Await(pid_t iPid) {
    int iStatus = 0;
    while (waitpid(iPid, &iStatus, 0) < 0) {
        if (errno != EINTR) {
            return -1;
        }
    }
    return WIFEXITED(iStatus) ? WEXITSTATUS(iStatus) : 128 + WTERMSIG(iStatus);
}

Outcome GatewayTest::Run(const std::vector<std::string> &astWords) const {
    Outcome stOutcome;
    stOutcome.iExit = Await(Launch(astWords));
    stOutcome.acOut = ReadFile("test.out");
    stOutcome.acErr = ReadFile("test.err");
    return stOutcome;
}

std::vector<std::string> GatewayTest::GatewayWords(const std::string &acProcess) {
    std::vector<std::string> astWords = Emulated(WAP_TEST_GATEWAY);
    astWords.push_back(acProcess);
    return astWords;
}

std::vector<std::string> GatewayTest::CtlWords(const std::vector<std::string> &astArguments) {
    std::vector<std::string> astWords = Emulated(WAP_TEST_GATEWAYCTL);
    astWords.insert(astWords.end(), astArguments.begin(), astArguments.end());
    return astWords;
}

Outcome GatewayTest::Ctl(const std::vector<std::string> &astArguments) const {
    return Run(CtlWords(astArguments));
}

std::string GatewayTest::CtlOk(const std::vector<std::string> &astArguments) const {
    const Outcome stOutcome = Ctl(astArguments);
    EXPECT_EQ(stOutcome.iExit, 0) << stOutcome.acErr;
    EXPECT_EQ(stOutcome.acErr, "");
    return stOutcome.acOut;
}

std::string GatewayTest::ProcessesOfTheDirectory() const {
    // Programs of this machine: see RemoveDirectory. The searching one must not find itself.
    constexpr char kSearch[] =
        "exec env -u VT_RUNTIME_DIR grep -lszxF \"VT_RUNTIME_DIR=$1\" /proc/[0-9]*/environ";
    const Outcome stFound = Run({"sh", "-c", kSearch, "sh", m_acDir});
    EXPECT_EQ(stFound.acErr, "");
    return stFound.acOut;
}

std::string GatewayTest::ReadFile(const std::string &acName) const {
    std::ifstream stFile(m_acDir + "/" + acName, std::ios::binary);
    std::ostringstream stText;
    stText << stFile.rdbuf();
    return stText.str();
}

void GatewayTest::WriteFile(const std::string &acName, const std::string &acText) const {
    std::ofstream stFile(m_acDir + "/" + acName, std::ios::binary);
    stFile << acText;
    ASSERT_TRUE(stFile.flush().good());
}

std::string GatewayTest::MakeFolder(const std::string &acName) const {
    std::string acPath = m_acDir + "/" + acName;
    EXPECT_EQ(mkdir(acPath.c_str(), 0700), 0) << acPath;
    return acPath;
}

void RunningGatewayTest::SetUp() {
    GatewayTest::SetUp();
    CtlOk({"start", "osgi_proxy", "cwmp", "--timeout", "60"});
}

}  // namespace wap::test
