// Peers of another user. The runtime directory keeps them out; here it is opened on purpose, so
// that what stands behind it is seen: the sockets ask for the peer's user themselves.
#include <signal.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>

#include "runtime_dir.h"

namespace wap::test {
namespace {

/** What a child process reports by its exit status. */
enum Report : int { kEnded = 0, kAnswered = 1, kNoUser = 2, kNoSocket = 3, kAccepted = 4 };

bool BecomeNobody() {
    return setresgid(kNobody, kNobody, kNobody) == 0 && setresuid(kNobody, kNobody, kNobody) == 0;
}

/** Sends a proper request to echo.sock and tells whether anything comes back. */
int AskEcho() {
    const int iFd = NewRawSocket();
    if (ConnectRaw(iFd, "echo") != 0) {
        return kNoSocket;
    }
    const std::string strRequest = RawRequest("VTQ1", 1, 3, 10, "abc");
    // Fails when the service has hung up already, which the receiving shows too.
    static_cast<void>(send(iFd, strRequest.data(), strRequest.size(), MSG_NOSIGNAL));
    char acAnswer[64];
    return recv(iFd, acAnswer, sizeof acAnswer, 0) > 0 ? kAnswered : kEnded;
}

class PeerUser : public RuntimeDirTest {
  protected:
    void SetUp() override {
        if (geteuid() != 0) {
            GTEST_SKIP() << "only root can start a process of another user";
        }
        ASSERT_EQ(0, chmod(strDir.c_str(), 0777));
    }
};

TEST_F(PeerUser, ACallerOfAnotherUserIsNotServed) {
    std::atomic<uint32_t> uiCalls{0};
    ASSERT_EQ(0, chmod(strDir.c_str(), 0700));
    ASSERT_EQ(0u, VT_MSG_Init("echo", 8, 0, 0));
    ASSERT_EQ(0u, VT_HOST_Serve(TestHandler, &uiCalls));
    ASSERT_EQ(0, chmod(strDir.c_str(), 0777));
    ASSERT_EQ(0, chmod(Path("echo.sock").c_str(), 0777));
    EXPECT_EQ(kAnswered, InChild(AskEcho)) << "the same request of our own user";
    EXPECT_EQ(1u, uiCalls.load());
    EXPECT_EQ(kEnded, InChild([] { return BecomeNobody() ? AskEcho() : kNoUser; }));
    EXPECT_EQ(1u, uiCalls.load()) << "nothing was handed to the handler";
    std::string strRsp(3, '#');
    EXPECT_EQ(0u, Call("echo", kEcho, "abc", strRsp)) << "the service goes on";
    EXPECT_EQ(2u, uiCalls.load());
}

/** Listens as the current user under the name and tells what the first caller does. */
int ServeOne(const char *pcName, int iReady) {
    const int iListener = NewRawSocket();
    const std::string strPath = InRuntimeDir(std::string(pcName) + ".sock");
    if (ListenRaw(iListener, pcName) != 0 || chmod(strPath.c_str(), 0777) != 0 ||
        write(iReady, "1", 1) != 1) {
        return kNoSocket;
    }
    const int iFd = accept(iListener, nullptr, nullptr);
    char acRequest[256];
    return recv(iFd, acRequest, sizeof acRequest, 0) > 0 ? kAccepted : kEnded;
}

/** Starts ServeOne in a child, as nobody or as we are. @return its pid once it listens, or -1 */
pid_t StartReceiver(const char *pcName, bool bAsNobody) {
    int aiReady[2];
    if (pipe(aiReady) != 0) {
        return -1;
    }
    const pid_t iPid = fork();
    if (iPid == 0) {
        close(aiReady[0]);
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        _exit(bAsNobody && !BecomeNobody() ? kNoUser : ServeOne(pcName, aiReady[1]));
    }
    close(aiReady[1]);
    char cReady = 0;
    const bool bReady = read(aiReady[0], &cReady, 1) == 1;
    close(aiReady[0]);
    return bReady ? iPid : -1;
}

int ReportOf(pid_t iPid) {
    int iStatus = 0;
    return waitpid(iPid, &iStatus, 0) == iPid && WIFEXITED(iStatus) ? WEXITSTATUS(iStatus) : -1;
}

TEST_F(PeerUser, AReceiverOfAnotherUserIsToldNothing) {
    const pid_t iPid = StartReceiver("odd", true);
    ASSERT_GT(iPid, 0);
    std::string strRsp(4, '#');
    EXPECT_EQ(VT_HOST_ERR_NO_RECEIVER, Call("odd", kEcho, "secret", strRsp, 3000));
    EXPECT_EQ("####", strRsp);
    EXPECT_EQ(kEnded, ReportOf(iPid)) << "connected to, and hung up on without a request";
}

TEST_F(PeerUser, AnAsynchronousMessageIsNotSentToAnotherUserEither) {
    const pid_t iPid = StartReceiver("odd", true);
    ASSERT_GT(iPid, 0);
    EXPECT_EQ(VT_HOST_ERR_NO_RECEIVER, VT_MSG_AsyncSendData("odd", 1, "secret", 6));
    EXPECT_EQ(kEnded, ReportOf(iPid));
}

TEST_F(PeerUser, AReceiverOfOurOwnUserIsTold) {
    const pid_t iPid = StartReceiver("odd", false);
    ASSERT_GT(iPid, 0);
    std::string strRsp(4, '#');
    EXPECT_EQ(VT_HOST_ERR_BROKEN, Call("odd", kEcho, "abcd", strRsp, 3000));
    EXPECT_EQ(kAccepted, ReportOf(iPid));
}

TEST_F(PeerUser, ADirectoryOfAnotherUserIsRefused) {
    ASSERT_EQ(0, chmod(strDir.c_str(), 0700));
    ASSERT_EQ(0, chown(strDir.c_str(), kNobody, kNobody));
    EXPECT_EQ(VT_HOST_ERR_STATE, VT_MSG_Init("echo", 8, 0, 0));
    EXPECT_STREQ("", VT_MSG_GetCurProcName());
}

}  // namespace
}  // namespace wap::test
