// Calls between processes, and within one.
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cstring>
#include <thread>
#include <vector>

#include "runtime_dir.h"

namespace wap::test {
namespace {

/** The test's own process serves, under the name "echo". */
class Calls : public RuntimeDirTest {
  protected:
    void SetUp() override {
        ASSERT_EQ(0u, VT_MSG_Init("echo", 8, 0, 0));
        ASSERT_EQ(0u, VT_HOST_Serve(TestHandler, &uiCalls));
    }
    ~Calls() override { VT_HOST_Stop(); }

    std::atomic<uint32_t> uiCalls{0};
};

TEST_F(Calls, BringTheReply) {
    std::string strRsp(5, '#');
    EXPECT_EQ(0u, Call("echo", kEcho, "hello", strRsp));
    EXPECT_EQ("hello", strRsp);
    EXPECT_EQ(1u, uiCalls.load());
}

TEST_F(Calls, AShorterReplyLeavesTheRestUntouched) {
    std::string strRsp(8, '#');
    EXPECT_EQ(0u, Call("echo", kEcho, "abc", strRsp));
    EXPECT_EQ("abc#####", strRsp);
}

TEST_F(Calls, TheHandlerCannotReplyMoreThanTheRoom) {
    std::string strRsp(16, '#');
    RpcMsgHead stHead = HeadFor("echo");
    EXPECT_EQ(0u, VT_MSG_RpcCall(&stHead, kOverlong, 0, nullptr, 0, strRsp.data(), 8, 5000));
    EXPECT_EQ(std::string(8, '\xAB') + "########", strRsp);
}

TEST_F(Calls, TheHandlersRoomIsZeroedAndAsLargeAsTheCallers) {
    std::string strRsp(100, '\xFF');
    EXPECT_EQ(0u, Call("echo", kOverlong, "", strRsp)) << "leaves bytes in the server's buffer";
    EXPECT_EQ(0u, Call("echo", kRoom, "", strRsp));
    EXPECT_EQ(Word(100) + Word(0), strRsp.substr(0, 8));
}

TEST_F(Calls, NeitherRequestNorReplyIsNeeded) {
    RpcMsgHead stHead = HeadFor("echo");
    EXPECT_EQ(0u, VT_MSG_RpcCall(&stHead, kEcho, 0, nullptr, 0, nullptr, 0, 5000));
}

TEST_F(Calls, AStatusComesWithItsReply) {
    std::string strRsp(4, '#');
    EXPECT_EQ(0x1234u, Call("echo", kStatus, "", strRsp));
    EXPECT_EQ("why#", strRsp);
}

TEST_F(Calls, AnUnknownRpcIsSaidToBeSo) {
    std::string strRsp(4, '#');
    EXPECT_EQ(VT_HOST_ERR_UNKNOWN_RPC, Call("echo", 0x47209035, "", strRsp));
    EXPECT_EQ("####", strRsp);
}

TEST_F(Calls, TheHeaderArrives) {
    RpcMsgHead stHead{};
    memset(&stHead, 0, sizeof stHead);
    memcpy(stHead.acSndApp, "jamvm", 5);
    memcpy(stHead.acRcvApp, "echo", 4);
    stHead.uiDstMid = 5;
    stHead.uiSndMid = 281;
    RpcMsgHead stBack{};
    EXPECT_EQ(0u, VT_MSG_RpcCall(&stHead, kHead, 0, nullptr, 0, &stBack, sizeof stBack, 5000));
    EXPECT_EQ(0, memcmp(&stHead, &stBack, sizeof stHead));
    std::string strMid(4, '\0');
    EXPECT_EQ(0u, VT_MSG_RpcCall(&stHead, kMid, 77, nullptr, 0, strMid.data(), 4, 5000));
    EXPECT_EQ(Word(77), strMid);
}

int CallerIsTold() {
    std::string strPid(4, '#');
    return Call("echo", kCaller, "", strPid) == 0 && strPid == Word(static_cast<uint32_t>(getpid()))
               ? 0
               : 1;
}

TEST_F(Calls, TheHandlerKnowsWhoCalls) {
    EXPECT_EQ(0, CallerIsTold());
    EXPECT_EQ(0, InChild(CallerIsTold)) << "a child is another one, on a connection of its own";
    EXPECT_EQ(0, CallerIsTold());
}

TEST_F(Calls, ASenderNameWithoutAnEndGetsOne) {
    RpcMsgHead stHead = HeadFor("echo");
    memset(stHead.acSndApp, 'x', sizeof stHead.acSndApp);
    RpcMsgHead stBack{};
    EXPECT_EQ(0u, VT_MSG_RpcCall(&stHead, kHead, 0, nullptr, 0, &stBack, sizeof stBack, 5000));
    EXPECT_EQ(std::string(31, 'x') + '\0', std::string(stBack.acSndApp, 32));
}

TEST_F(Calls, TheLongestPayloadPassesBothWays) {
    std::string strReq(VT_HOST_MAX_PAYLOAD, '\0');
    for (size_t i = 0; i < strReq.size(); i++) {
        strReq[i] = static_cast<char>(i * 7 + i / 251);
    }
    std::string strRsp(VT_HOST_MAX_PAYLOAD, '\0');
    for (int iRound = 0; iRound < 3; iRound++) {
        EXPECT_EQ(0u, Call("echo", kEcho, strReq, strRsp));
        EXPECT_TRUE(strReq == strRsp);
    }
    strReq += 'x';
    EXPECT_EQ(VT_HOST_ERR_TOO_LONG, Call("echo", kEcho, strReq, strRsp));
    EXPECT_EQ(3u, uiCalls.load());
    std::string strHuge(VT_HOST_MAX_PAYLOAD + 100, '#');
    EXPECT_EQ(0u, Call("echo", kRoom, "", strHuge)) << "more room than a reply can fill";
    EXPECT_EQ(Word(VT_HOST_MAX_PAYLOAD), strHuge.substr(0, 4));
}

TEST_F(Calls, PayloadsAroundTheLengthOfAShortPacketPassBothWays) {
    // A packet of 4096 bytes has 3984 behind a request's frame and 4080 behind a reply's.
    for (uint32_t uiLen : {3983u, 3984u, 3985u, 4079u, 4080u, 4081u, 4095u, 4096u, 4097u}) {
        std::string strReq(uiLen, '\0');
        for (size_t i = 0; i < uiLen; i++) {
            strReq[i] = static_cast<char>(i * 7 + uiLen);
        }
        std::string strRsp(uiLen, '#');
        EXPECT_EQ(0u, Call("echo", kEcho, strReq, strRsp)) << uiLen;
        EXPECT_TRUE(strReq == strRsp) << uiLen;
        std::string strWide(VT_HOST_MAX_PAYLOAD, '#');
        EXPECT_EQ(0u, Call("echo", kEcho, strReq, strWide)) << uiLen;
        EXPECT_TRUE(strReq + std::string(strWide.size() - uiLen, '#') == strWide) << uiLen;
    }
}

TEST_F(Calls, BadArgumentsAreRefused) {
    char acRsp[4];
    RpcMsgHead stHead = HeadFor("echo");
    EXPECT_EQ(VT_HOST_ERR_ARGUMENT, VT_MSG_RpcCall(nullptr, 1, 0, "a", 1, acRsp, 4, 100));
    EXPECT_EQ(VT_HOST_ERR_ARGUMENT, VT_MSG_RpcCall(&stHead, 1, 0, nullptr, 1, acRsp, 4, 100));
    EXPECT_EQ(VT_HOST_ERR_ARGUMENT, VT_MSG_RpcCall(&stHead, 1, 0, "a", 1, nullptr, 4, 100));
    memset(stHead.acRcvApp, 'x', sizeof stHead.acRcvApp);
    EXPECT_EQ(VT_HOST_ERR_ARGUMENT, VT_MSG_RpcCall(&stHead, 1, 0, "a", 1, acRsp, 4, 100));
    for (const char *pcName : {"", "../echo", "a/b", ".hidden", "sp ace", "new\nline"}) {
        stHead = HeadFor(pcName);
        EXPECT_EQ(VT_HOST_ERR_ARGUMENT, VT_MSG_RpcCall(&stHead, 1, 0, "a", 1, acRsp, 4, 100))
            << pcName;
    }
}

TEST_F(Calls, AnAbsentReceiverIsKnownAtOnce) {
    std::string strRsp(4, '#');
    Stopwatch stWatch;
    EXPECT_EQ(VT_HOST_ERR_NO_RECEIVER, Call("nobody", kEcho, "a", strRsp, 30000));
    EXPECT_LT(stWatch.Ms(), 1000);
    EXPECT_EQ("####", strRsp);
}

TEST_F(Calls, WithoutAnAnswerTheTimeOutIsKept) {
    std::string strRsp(4, '#');
    for (uint32_t uiTimeout : {1u, 150u, 400u}) {
        Stopwatch stWatch;
        EXPECT_EQ(VT_HOST_ERR_TIMEOUT, Call("echo", kNoReply, "abcd", strRsp, uiTimeout));
        EXPECT_GE(stWatch.Ms(), static_cast<int64_t>(uiTimeout));
        EXPECT_LT(stWatch.Ms(), static_cast<int64_t>(uiTimeout) + 500);
    }
    EXPECT_EQ("####", strRsp);
    EXPECT_EQ(0u, Call("echo", kEcho, "abcd", strRsp)) << "the thread is usable";
    EXPECT_EQ("abcd", strRsp);
    EXPECT_EQ(4u, uiCalls.load()) << "no call was executed twice";
}

TEST_F(Calls, ALateReplyIsNotTheNextCalls) {
    std::string strRsp(8, '#');
    EXPECT_EQ(VT_HOST_ERR_TIMEOUT, Call("echo", kSleep, Word(200) + "late", strRsp, 50));
    EXPECT_EQ(0u, Call("echo", kSleep, Word(300) + "mine", strRsp, 5000));
    EXPECT_EQ(Word(300) + "mine", strRsp);
}

TEST_F(Calls, ALateReplyIsToldToWhoSentIt) {
    static std::atomic<uint32_t> s_uiLost;
    s_uiLost = 0;
    EXPECT_EQ(0u, VT_HOST_OnLostReply([](void *pvContext) {
                  // The same context as the handler's.
                  s_uiLost += static_cast<std::atomic<uint32_t> *>(pvContext)->load();
              }));
    std::string strRsp(8, '#');
    EXPECT_EQ(0u, Call("echo", kEcho, "in time", strRsp));
    EXPECT_EQ(VT_HOST_ERR_TIMEOUT, Call("echo", kNoReply, "", strRsp, 50));
    EXPECT_EQ(VT_HOST_ERR_TIMEOUT, Call("echo", kSleep, Word(200) + "late", strRsp, 50));
    EXPECT_EQ(0u, s_uiLost.load()) << "it is not sent yet";
    Stopwatch stWatch;
    while (s_uiLost.load() == 0 && stWatch.Ms() < 10000) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    EXPECT_EQ(3u, s_uiLost.load());
    EXPECT_EQ(0u, VT_HOST_OnLostReply(nullptr));
    EXPECT_EQ(VT_HOST_ERR_TIMEOUT, Call("echo", kSleep, Word(100) + "late", strRsp, 20));
    EXPECT_EQ(0u, Call("echo", kSleep, Word(300), strRsp));
    EXPECT_EQ(3u, s_uiLost.load());
}

TEST_F(Calls, AHandlerCannotStopItsOwnService) {
    std::string strRsp(4, '#');
    EXPECT_EQ(0u, Call("echo", kTryStop, "", strRsp));
    EXPECT_EQ(Word(VT_HOST_ERR_STATE), strRsp);
}

TEST_F(Calls, AHandlerCannotSayWhoHearsOfLostReplies) {
    std::string strRsp(4, '#');
    EXPECT_EQ(0u, Call("echo", kTryHear, "", strRsp));
    EXPECT_EQ(Word(VT_HOST_ERR_STATE), strRsp);
}

TEST_F(Calls, OfManyThreadsRunAtOnce) {
    constexpr int kThreads = 8;
    std::vector<std::thread> astThreads;
    astThreads.reserve(kThreads);
    Stopwatch stWatch;
    for (int i = 0; i < kThreads; i++) {
        astThreads.emplace_back([] {
            std::string strRsp(4, '#');
            EXPECT_EQ(0u, Call("echo", kSleep, Word(400), strRsp));
        });
    }
    for (std::thread &stThread : astThreads) {
        stThread.join();
    }
    EXPECT_LT(stWatch.Ms(), 400 * kThreads / 2) << "they must have waited side by side";
}

TEST_F(Calls, OfManyThreadsKeepTheirReplies) {
    constexpr int kThreads = 8;
    constexpr int kRounds = 200;
    std::vector<std::thread> astThreads;
    astThreads.reserve(kThreads);
    for (int i = 0; i < kThreads; i++) {
        astThreads.emplace_back([i] {
            for (int iRound = 0; iRound < kRounds; iRound++) {
                std::string strReq(static_cast<size_t>(1 + iRound * 13 % 900),
                                   static_cast<char>('a' + i));
                strReq += std::to_string(iRound);
                std::string strRsp(strReq.size(), '#');
                EXPECT_EQ(0u, Call("echo", kEcho, strReq, strRsp));
                EXPECT_EQ(strReq, strRsp);
            }
        });
    }
    for (std::thread &stThread : astThreads) {
        stThread.join();
    }
    EXPECT_EQ(uint32_t{kThreads * kRounds}, uiCalls.load());
}

/** Descriptors of this process, counted without reading a directory. */
int OpenDescriptors() {
    int iOpen = 0;
    for (int iFd = 0; iFd < 1024; iFd++) {
        iOpen += access(("/proc/self/fd/" + std::to_string(iFd)).c_str(), F_OK) == 0 ? 1 : 0;
    }
    return iOpen;
}

TEST_F(Calls, AThreadsConnectionEndsWithIt) {
    auto pfnOneCall = [] {
        std::string strRsp(1, '#');
        EXPECT_EQ(0u, Call("echo", kEcho, "a", strRsp));
    };
    std::thread(pfnOneCall).join();
    usleep(50000);
    int iBefore = OpenDescriptors();
    for (int i = 0; i < 50; i++) {
        std::thread(pfnOneCall).join();
    }
    usleep(100000);
    EXPECT_LE(OpenDescriptors(), iBefore + 2);
}

TEST_F(Calls, OneThreadReusesItsConnection) {
    std::string strRsp(1, '#');
    EXPECT_EQ(0u, Call("echo", kEcho, "a", strRsp));
    int iBefore = OpenDescriptors();
    for (int i = 0; i < 50; i++) {
        EXPECT_EQ(0u, Call("echo", kEcho, "a", strRsp));
    }
    EXPECT_EQ(iBefore, OpenDescriptors());
}

class CallsToChild : public RuntimeDirTest {};

TEST_F(CallsToChild, WhoDoesNotServeLosesNoReplies) {
    EXPECT_EQ(VT_HOST_ERR_STATE, VT_HOST_OnLostReply([](void *) {}));
    ASSERT_EQ(0u, VT_MSG_Init("silent", 8, 0, 0));
    EXPECT_EQ(VT_HOST_ERR_STATE, VT_HOST_OnLostReply([](void *) {}));
    EXPECT_EQ(0u, VT_HOST_Stop());
}

TEST_F(CallsToChild, WorkWithoutANameOfOnesOwn) {
    ChildServer stServer("child");
    ASSERT_TRUE(stServer.Ready());
    EXPECT_STREQ("", VT_MSG_GetCurProcName());
    std::string strRsp(5, '#');
    EXPECT_EQ(0u, Call("child", kEcho, "hello", strRsp));
    EXPECT_EQ("hello", strRsp);
}

TEST_F(CallsToChild, FailWhileItIsGoneAndSucceedWhenItIsBack) {
    std::string strRsp(5, '#');
    for (int iRound = 0; iRound < 3; iRound++) {
        {
            ChildServer stServer("child");
            ASSERT_TRUE(stServer.Ready()) << "the dead one's socket is no obstacle";
            EXPECT_EQ(0u, Call("child", kEcho, "hello", strRsp));
        }
        EXPECT_EQ(VT_HOST_ERR_NO_RECEIVER, Call("child", kEcho, "hello", strRsp));
    }
}

TEST_F(CallsToChild, GoToTheNewProcessWhenItWasReplacedInBetween) {
    std::string strRsp(5, '#');
    auto pstServer = std::make_unique<ChildServer>("child");
    ASSERT_TRUE(pstServer->Ready());
    EXPECT_EQ(0u, Call("child", kEcho, "first", strRsp));
    pstServer.reset();
    pstServer = std::make_unique<ChildServer>("child");
    ASSERT_TRUE(pstServer->Ready());
    EXPECT_EQ(0u, Call("child", kEcho, "again", strRsp)) << "the old connection shows nothing";
    EXPECT_EQ("again", strRsp);
}

TEST_F(CallsToChild, BreakWhenItDiesInTheMiddle) {
    ChildServer stServer("child");
    ASSERT_TRUE(stServer.Ready());
    std::string strRsp(4, '#');
    Stopwatch stWatch;
    EXPECT_EQ(VT_HOST_ERR_BROKEN, Call("child", kDie, "", strRsp, 10000));
    EXPECT_LT(stWatch.Ms(), 5000);
    EXPECT_EQ("####", strRsp);
    stServer.Kill();  // waits until the dying process has closed its socket
    EXPECT_EQ(VT_HOST_ERR_NO_RECEIVER, Call("child", kEcho, "", strRsp));
}

TEST_F(CallsToChild, RunIntoTheTimeOutWhileItIsStopped) {
    ChildServer stServer("child");
    ASSERT_TRUE(stServer.Ready());
    std::string strRsp(4, '#');
    EXPECT_EQ(0u, Call("child", kEcho, "abcd", strRsp));
    kill(stServer.Pid(), SIGSTOP);
    ASSERT_EQ(stServer.Pid(), waitpid(stServer.Pid(), nullptr, WUNTRACED)) << "has stopped";
    Stopwatch stWatch;
    EXPECT_EQ(VT_HOST_ERR_TIMEOUT, Call("child", kEcho, "wxyz", strRsp, 200));
    EXPECT_EQ(VT_HOST_ERR_TIMEOUT, Call("child", kEcho, "wxyz", strRsp, 200)) << "new connection";
    EXPECT_GE(stWatch.Ms(), 400);
    EXPECT_LT(stWatch.Ms(), 1500);
    kill(stServer.Pid(), SIGCONT);
    EXPECT_EQ(0u, Call("child", kEcho, "back", strRsp));
    EXPECT_EQ("back", strRsp);
}

}  // namespace
}  // namespace wap::test
