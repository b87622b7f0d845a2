// Names, sockets, starting and stopping.
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <fstream>
#include <future>
#include <thread>
#include <vector>

#include "runtime_dir.h"

namespace wap::test {
namespace {

class ServiceLife : public RuntimeDirTest {
  protected:
    /** What VT_MSG_Init says on stderr. */
    static std::string InitComplaint(const char *pcName, uint32_t &uiStatus) {
        testing::internal::CaptureStderr();
        uiStatus = VT_MSG_Init(pcName, 0, 0, 0);
        return testing::internal::GetCapturedStderr();
    }
};

TEST_F(ServiceLife, TheNameIsTheOneGiven) {
    EXPECT_STREQ("", VT_MSG_GetCurProcName());
    char acName[] = "jamvm";
    ASSERT_EQ(0u, VT_MSG_Init(acName, 1024, 1024, 0));
    acName[0] = 'x';
    EXPECT_STREQ("jamvm", VT_MSG_GetCurProcName());
    EXPECT_EQ(0, access(Path("jamvm.sock").c_str(), F_OK));
}

TEST_F(ServiceLife, StartingAgainUnderTheSameNameSucceeds) {
    ASSERT_EQ(0u, VT_MSG_Init("jamvm", 1024, 1024, 0));
    EXPECT_EQ(0u, VT_MSG_Init("jamvm", 1024, 1024, 0));
    EXPECT_EQ(VT_HOST_ERR_STATE, VT_MSG_Init("other", 1024, 1024, 0));
    EXPECT_STREQ("jamvm", VT_MSG_GetCurProcName());
}

TEST_F(ServiceLife, ANameMustFitAndBePlain) {
    uint32_t uiStatus = 0;
    for (const char *pcName : {"", "a/b", "..", "12345678901234567890123456789012"}) {
        EXPECT_NE("", InitComplaint(pcName, uiStatus)) << pcName;
        EXPECT_EQ(VT_HOST_ERR_ARGUMENT, uiStatus) << pcName;
    }
    EXPECT_NE("", InitComplaint(nullptr, uiStatus));
    EXPECT_EQ(0u, VT_MSG_Init("1234567890123456789012345678901", 0, 0, 0)) << "31 bytes";
}

TEST_F(ServiceLife, WithoutARuntimeDirectoryItSaysWhatToDo) {
    unsetenv("VT_RUNTIME_DIR");
    uint32_t uiStatus = 0;
    EXPECT_NE(std::string::npos, InitComplaint("jamvm", uiStatus).find("Set it to"));
    EXPECT_EQ(VT_HOST_ERR_STATE, uiStatus);
    std::string strRsp(4, '#');
    EXPECT_EQ(VT_HOST_ERR_STATE, Call("echo", kEcho, "", strRsp));
}

TEST_F(ServiceLife, ATooLongRuntimeDirectorySaysWhatToDo) {
    setenv("VT_RUNTIME_DIR", ("/tmp/" + std::string(100, 'x')).c_str(), 1);
    uint32_t uiStatus = 0;
    EXPECT_NE(std::string::npos, InitComplaint("jamvm", uiStatus).find("too long"));
    EXPECT_EQ(VT_HOST_ERR_TOO_LONG, uiStatus);
}

TEST_F(ServiceLife, ADirectoryOpenToOthersIsRefused) {
    ASSERT_EQ(0, chmod(strDir.c_str(), 0755));
    uint32_t uiStatus = 0;
    EXPECT_NE(std::string::npos, InitComplaint("jamvm", uiStatus).find("chmod 700"));
    EXPECT_EQ(VT_HOST_ERR_STATE, uiStatus);
    ASSERT_EQ(0, chmod(strDir.c_str(), 0700));
    EXPECT_EQ(0u, VT_MSG_Init("jamvm", 0, 0, 0)) << "a failed start can be repeated";
}

TEST_F(ServiceLife, TheDirectoryIsMadeWhenMissing) {
    std::string strNew = Path("new");
    setenv("VT_RUNTIME_DIR", strNew.c_str(), 1);
    EXPECT_EQ(0u, VT_MSG_Init("jamvm", 0, 0, 0));
    struct stat stInfo {};
    ASSERT_EQ(0, stat(strNew.c_str(), &stInfo));
    EXPECT_EQ(0700u, stInfo.st_mode & 0777u);
}

TEST_F(ServiceLife, ALiveProcessKeepsItsName) {
    ChildServer stServer("child");
    ASSERT_TRUE(stServer.Ready());
    uint32_t uiStatus = 0;
    std::string strText = InitComplaint("child", uiStatus);
    EXPECT_EQ(VT_HOST_ERR_IN_USE, uiStatus);
    EXPECT_NE(std::string::npos, strText.find("pid " + std::to_string(stServer.Pid()))) << strText;
    std::string strRsp(4, '#');
    EXPECT_EQ(0u, Call("child", kEcho, "live", strRsp)) << "and its socket";
    stServer.Kill();
    EXPECT_EQ(0u, VT_MSG_Init("child", 0, 0, 0)) << "a dead one does not";
}

TEST_F(ServiceLife, AStrayFileInPlaceOfTheSocketIsReplaced) {
    std::ofstream(Path("jamvm.sock")) << "left behind";
    EXPECT_EQ(0u, VT_MSG_Init("jamvm", 0, 0, 0));
    std::string strRsp(4, '#');
    EXPECT_EQ(VT_HOST_ERR_UNKNOWN_RPC, Call("jamvm", kEcho, "", strRsp)) << "listens, serves not";
}

TEST_F(ServiceLife, ServingNeedsTheNameAndHappensOnce) {
    EXPECT_EQ(VT_HOST_ERR_STATE, VT_HOST_Serve(TestHandler, nullptr));
    ASSERT_EQ(0u, VT_MSG_Init("echo", 0, 0, 0));
    EXPECT_EQ(VT_HOST_ERR_ARGUMENT, VT_HOST_Serve(nullptr, nullptr));
    EXPECT_EQ(0u, VT_HOST_Serve(TestHandler, nullptr));
    EXPECT_EQ(VT_HOST_ERR_STATE, VT_HOST_Serve(TestHandler, nullptr));
}

TEST_F(ServiceLife, StoppingTakesTheSocketAway) {
    EXPECT_EQ(VT_HOST_ERR_STATE, VT_HOST_Stop()) << "not started";
    ASSERT_EQ(0u, VT_MSG_Init("echo", 0, 0, 0));
    ASSERT_EQ(0u, VT_HOST_Serve(TestHandler, nullptr));
    std::string strRsp(4, '#');
    EXPECT_EQ(0u, Call("echo", kEcho, "abcd", strRsp));
    EXPECT_EQ(0u, VT_HOST_Stop());
    EXPECT_NE(0, access(Path("echo.sock").c_str(), F_OK));
    EXPECT_STREQ("", VT_MSG_GetCurProcName());
    EXPECT_EQ(VT_HOST_ERR_NO_RECEIVER, Call("echo", kEcho, "abcd", strRsp));
    EXPECT_EQ(VT_HOST_ERR_STATE, VT_HOST_Stop());
}

TEST_F(ServiceLife, ItCanBeStartedAgainUnderAnotherName) {
    std::string strRsp(4, '#');
    for (const char *pcName : {"one", "two", "one"}) {
        ASSERT_EQ(0u, VT_MSG_Init(pcName, 0, 0, 0));
        ASSERT_EQ(0u, VT_HOST_Serve(TestHandler, nullptr));
        EXPECT_STREQ(pcName, VT_MSG_GetCurProcName());
        EXPECT_EQ(0u, Call(pcName, kEcho, "abcd", strRsp));
        EXPECT_EQ(0u, VT_HOST_Stop());
    }
}

TEST_F(ServiceLife, StoppingLetsARunningHandlerAnswer) {
    std::atomic<uint32_t> uiCalls{0};
    ASSERT_EQ(0u, VT_MSG_Init("echo", 0, 0, 0));
    ASSERT_EQ(0u, VT_HOST_Serve(TestHandler, &uiCalls));
    std::string strRsp(4, '#');
    auto stCall = std::async(std::launch::async,
                             [&strRsp] { return Call("echo", kSleep, Word(300), strRsp); });
    while (uiCalls.load() == 0) {
        usleep(1000);
    }
    Stopwatch stWatch;
    EXPECT_EQ(0u, VT_HOST_Stop());
    EXPECT_GE(stWatch.Ms(), 200) << "waits for the handler";
    EXPECT_EQ(0u, stCall.get());
    EXPECT_EQ(Word(300), strRsp);
}

TEST_F(ServiceLife, StoppingUnderLoadLosesNothingButCalls) {
    std::atomic<bool> bEnd{false};
    std::atomic<uint32_t> uiGood{0};
    constexpr int kThreads = 4;
    std::vector<std::thread> astThreads;
    astThreads.reserve(kThreads);
    for (int i = 0; i < kThreads; i++) {
        astThreads.emplace_back([&] {
            while (!bEnd.load()) {
                std::string strRsp(4, '#');
                uint32_t uiStatus = Call("echo", kEcho, "abcd", strRsp, 2000);
                if (uiStatus == 0) {
                    EXPECT_EQ("abcd", strRsp);
                    uiGood++;
                } else {
                    EXPECT_TRUE(uiStatus == VT_HOST_ERR_NO_RECEIVER ||
                                uiStatus == VT_HOST_ERR_BROKEN ||
                                uiStatus == VT_HOST_ERR_UNKNOWN_RPC)
                        << std::hex << uiStatus;
                }
            }
        });
    }
    for (int iRound = 0; iRound < 10; iRound++) {
        uint32_t uiBefore = uiGood.load();
        ASSERT_EQ(0u, VT_MSG_Init("echo", 0, 0, 0));
        ASSERT_EQ(0u, VT_HOST_Serve(TestHandler, nullptr));
        for (int i = 0; i < 5000 && uiGood.load() < uiBefore + 20; i++) {
            usleep(1000);
        }
        EXPECT_GE(uiGood.load(), uiBefore + 20) << "calls succeed again after each start";
        EXPECT_EQ(0u, VT_HOST_Stop());
    }
    bEnd.store(true);
    for (std::thread &stThread : astThreads) {
        stThread.join();
    }
}

TEST_F(ServiceLife, AForkedChildLeavesTheParentsServiceAlone) {
    ASSERT_EQ(0u, VT_MSG_Init("echo", 0, 0, 0));
    ASSERT_EQ(0u, VT_HOST_Serve(TestHandler, nullptr));
    std::string strRsp(4, '#');
    ASSERT_EQ(0u, Call("echo", kEcho, "abcd", strRsp));
    EXPECT_EQ(0, InChild([] {
                  std::string strChildRsp(4, '#');
                  bool bOk = VT_MSG_GetCurProcName()[0] == '\0' &&
                             VT_HOST_Stop() == VT_HOST_ERR_STATE &&
                             VT_MSG_Init("echo", 0, 0, 0) == VT_HOST_ERR_IN_USE &&
                             Call("echo", kEcho, "wxyz", strChildRsp) == 0 && strChildRsp == "wxyz";
                  return bOk ? 0 : 1;
              }));
    EXPECT_EQ(0u, Call("echo", kEcho, "abcd", strRsp)) << "its connection is still its own";
    EXPECT_EQ("abcd", strRsp);
    EXPECT_EQ(0u, VT_HOST_Stop());
}

}  // namespace
}  // namespace wap::test
