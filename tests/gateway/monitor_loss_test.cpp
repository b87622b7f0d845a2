// What a monitor says of what it misses, by what processes tell that exist for the test alone.
#include <fcntl.h>
#include <signal.h>
#include <stdio.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include "framework/files.h"
#include "framework/tap_socket.h"
#include "tap_events.h"
#include "watcher.h"

namespace wap::test {

namespace {

/// How many are missing.
std::string Lost(uint32_t uiLost) {
    return Word(0) + Word(uiLost);
}

std::string Framed(const gateway::TapEvent &stEvent) {
    const std::string acEvent = EncodeEvent(stEvent);
    return Word(static_cast<uint32_t>(acEvent.size())) + Word(0) + acEvent;
}

/// What a process says first.
std::string Hello(const char *pcProcess) {
    gateway::TapEvent stEvent;
    stEvent.eKind = gateway::TapKind::kHello;
    stEvent.acReceiver = pcProcess;
    return Framed(stEvent);
}

/// A call of a process, so many microseconds after others.
std::string CallOf(const char *pcProcess, uint64_t ulAfterUs) {
    gateway::TapEvent stEvent = TapMac();
    stEvent.acReceiver = pcProcess;
    stEvent.ulTimeUs += ulAfterUs;
    return Framed(stEvent);
}

class MonitorLossTest : public WatchTest {
  protected:
    /// No gateway runs: the test is all the processes.
    void SetUp() override {
        WatchTest::SetUp();
        CtlOk({"stop"});
    }

    /// A connection to a monitor, as a process makes it.
    gateway::FileDescriptor Connect(pid_t iWatch) const {
        gateway::FileDescriptor stSocket(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
        sockaddr_un stAddress = {};
        stAddress.sun_family = AF_UNIX;
        const std::string acPath = m_acDir + "/monitor." + std::to_string(iWatch);
        EXPECT_LT(acPath.size(), sizeof(stAddress.sun_path));
        (void)acPath.copy(stAddress.sun_path, sizeof(stAddress.sun_path) - 1);
        EXPECT_EQ(connect(stSocket.Get(), reinterpret_cast<const sockaddr *>(&stAddress),
                          sizeof(stAddress)),
                  0);
        return stSocket;
    }

    static void Tell(const gateway::FileDescriptor &stSocket, const std::string &acBytes) {
        EXPECT_EQ(send(stSocket.Get(), acBytes.data(), acBytes.size(), MSG_NOSIGNAL),
                  static_cast<ssize_t>(acBytes.size()));
    }

    /// Has a monitor find all at once what is told meanwhile.
    template <class Action>
    static void WhileStopped(pid_t iWatch, const Action &fnAction) {
        EXPECT_EQ(kill(iWatch, SIGSTOP), 0);
        fnAction();
        EXPECT_EQ(kill(iWatch, SIGCONT), 0);
    }
};

class MonitorBeginTest : public WatchTest {
  protected:
    /// Starts a monitor without waiting for anything.
    pid_t Begin() const {
        std::vector<std::string> astWords = {"sh", "-c", R"(exec "$@" 2>"$0.err")",
                                             m_acDir + "/watch"};
        const std::vector<std::string> astMonitor = CtlWords({"monitor", "--brief"});
        astWords.insert(astWords.end(), astMonitor.begin(), astMonitor.end());
        return Launch(astWords);
    }
};

}  // namespace

TEST_F(MonitorLossTest, LossesStandBeforeTheNextCallOfTheirProcess) {
    const pid_t iWatch = Watch("watch", {"--brief"});
    const pid_t iJson = Watch("json", {"--json"});
    for (const pid_t iPid : {iWatch, iJson}) {
        const gateway::FileDescriptor stFirst = Connect(iPid);
        const gateway::FileDescriptor stSecond = Connect(iPid);
        Tell(stFirst, Hello("gulm"));
        Tell(stSecond, Hello("igmp"));
        const std::string acName = iPid == iWatch ? "watch" : "json";
        Await(acName + ".err", "igmp has started\n");
        WhileStopped(iPid, [&] {
            Tell(stFirst,
                 CallOf("gulm", 0) + CallOf("gulm", 1) + Lost(3) + Lost(4) + CallOf("gulm", 4));
            Tell(stSecond, CallOf("igmp", 2) + Lost(5) + CallOf("igmp", 3));
        });
        EXPECT_TRUE(Soon([&] { return CountOf(Out(acName), "GetDeviceMac") == 5; }));
        EndWatch(acName, iPid);
        EXPECT_NE(Err(acName).find("gatewayctl: 5 seen, 5 shown, 12 lost\n"), std::string::npos);
    }
    const std::string acCall = "GetDeviceMac           0x47209032 TOOK  ok\n";
    const std::string acGulm = "TIME  jamvm/281    -> gulm        " + acCall;
    const std::string acIgmp = "TIME  jamvm/281    -> igmp        " + acCall;
    EXPECT_EQ(WithoutTimes(Out("watch")),
              acGulm + acGulm + acIgmp + "(5 lost here)\n" + acIgmp + "(7 lost here)\n" + acGulm);
    const std::string acJson = Out("json");
    EXPECT_EQ(CountOf(acJson, "lostBefore"), 2u) << acJson;
    EXPECT_NE(acJson.find("\n{\"lostBefore\":5,"), std::string::npos) << acJson;
    EXPECT_NE(acJson.find("\n{\"lostBefore\":7,"), std::string::npos) << acJson;
}

TEST_F(MonitorLossTest, LossesBehindTheLastCallAreToldAtTheEnd) {
    const pid_t iWatch = Watch("watch", {"--quiet", "--capture", m_acDir + "/calls.pcapng"});
    const gateway::FileDescriptor stProcess = Connect(iWatch);
    Tell(stProcess, Hello("gulm") + CallOf("gulm", 0) + Lost(6));
    Await("watch.err", "gulm has started\n");
    EndWatch("watch", iWatch);
    EXPECT_NE(Err("watch").find("gatewayctl: 1 seen, 1 shown, 6 lost\n"), std::string::npos);
    const std::string acFile = ReadFile("calls.pcapng");
    ASSERT_GE(acFile.size(), 40u);
    const std::string acLast = acFile.substr(acFile.size() - 40);
    EXPECT_EQ(acLast.substr(0, 12), Word(5) + Word(40) + Word(0));
    EXPECT_EQ(acLast.substr(20),
              std::string("\5\0\10\0", 4) + Word(6) + Word(0) + Word(0) + Word(40));
    EXPECT_EQ(Run({"capinfos", "-c", m_acDir + "/calls.pcapng"}).iExit, 0);
}

TEST_F(MonitorLossTest, ProcessesThatEndAmidACallAreSaidTo) {
    const pid_t iWatch = Watch("watch", {"--brief"});
    const std::string acCall = CallOf("gulm", 0);
    {
        const gateway::FileDescriptor stCut = Connect(iWatch);
        Tell(stCut, Hello("gulm") + acCall + acCall.substr(0, acCall.size() - 1));
    }
    Await("watch.err", "gatewayctl: gulm has ended; calls may be missing\n");
    {
        const gateway::FileDescriptor stWhole = Connect(iWatch);
        Tell(stWhole, Hello("igmp") + CallOf("igmp", 0));
    }
    Await("watch.err", "gatewayctl: igmp has ended\n");
    const gateway::FileDescriptor stDamaged = Connect(iWatch);
    Tell(stDamaged, Hello("tarn") + Word(4) + Word(0) + "what");
    Await("watch.err", "gatewayctl: tarn is not watched any more: what came is no event\n");
    EndWatch("watch", iWatch);
    EXPECT_EQ(CountOf(Out("watch"), "GetDeviceMac"), 2u) << Out("watch");
}

TEST_F(MonitorLossTest, OutputThatNobodyReadsEndsWithAWholeLineAndInTime) {
    const std::string acPipe = m_acDir + "/watch.out";
    ASSERT_EQ(mkfifo(acPipe.c_str(), 0600), 0);
    const gateway::FileDescriptor stPipe(open(acPipe.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    ASSERT_GE(stPipe.Get(), 0);
    const pid_t iWatch =
        WatchWith(R"(exec "$@" >"$0.out" 2>"$0.err")", "watch", {"--json", "--seconds", "3"});
    const gateway::FileDescriptor stProcess = Connect(iWatch);
    Tell(stProcess, Hello("gulm"));
    constexpr size_t kCalls = 400;
    for (size_t i = 0; i < kCalls; ++i) {
        Tell(stProcess, CallOf("gulm", i));
    }
    EXPECT_EQ(GatewayTest::Await(iWatch), 0) << "--seconds ends it";
    std::string acOut;
    char acPiece[4096];
    for (ssize_t iCount; (iCount = read(stPipe.Get(), acPiece, sizeof(acPiece))) > 0;) {
        acOut.append(acPiece, static_cast<size_t>(iCount));
    }
    ASSERT_FALSE(acOut.empty());
    EXPECT_EQ(acOut.back(), '\n');
    const size_t uiShown = CountOf(acOut, "\n");
    EXPECT_EQ(CountOf(acOut, "GetDeviceMac"), uiShown);
    EXPECT_LT(uiShown, kCalls) << "a pipe takes 64 KiB";
    EXPECT_NE(Err("watch").find(" seen, " + std::to_string(uiShown) + " shown, "),
              std::string::npos)
        << Err("watch");
    EXPECT_NE(Err("watch").find(" that nobody read, 0 lost\n"), std::string::npos) << Err("watch");
}

TEST_F(MonitorBeginTest, IsEndedWhileItAsksProcessesThatHang) {
    CtlOk({"start", "gulm", "app_m", "tarn", "--timeout", "60"});
    std::vector<pid_t> aiStopped;
    for (const char *pcName : {"osgi_proxy", "cwmp", "gulm", "app_m", "tarn"}) {
        aiStopped.push_back(std::stoi(ReadFile(std::string(pcName) + ".pid")));
        EXPECT_EQ(kill(aiStopped.back(), SIGSTOP), 0);
    }
    const pid_t iWatch = Begin();
    Await("watch.err", " is not watched yet: ");
    EXPECT_EQ(kill(iWatch, SIGINT), 0);
    EXPECT_EQ(GatewayTest::Await(iWatch), 0);
    for (const pid_t iPid : aiStopped) {
        EXPECT_EQ(kill(iPid, SIGCONT), 0);
    }
    EXPECT_LT(CountOf(Err("watch"), " is not watched yet: "), aiStopped.size()) << Err("watch");
    EXPECT_NE(Err("watch").find("gatewayctl: 0 seen, 0 shown, 0 lost\n"), std::string::npos);
}

TEST_F(MonitorBeginTest, ProcessesThatDoNotConnectAreTold) {
    const pid_t iStopped = std::stoi(ReadFile("osgi_proxy.pid"));
    const std::string acHidden = m_acDir + "/hidden";
    pid_t iWatch = -1;
    // On a machine that is too busy the monitor has given the process up before it goes on.
    for (int iAttempt = 0; iAttempt < 10; ++iAttempt) {
        EXPECT_EQ(kill(iStopped, SIGSTOP), 0);
        iWatch = Begin();
        const std::string acSocket = m_acDir + "/monitor." + std::to_string(iWatch);
        // When they look for the monitor, it is not there.
        EXPECT_TRUE(Soon([&] { return rename(acSocket.c_str(), acHidden.c_str()) == 0; }));
        EXPECT_EQ(kill(iStopped, SIGCONT), 0);
        Await("watch.err", "gatewayctl: watching ");
        if (Err("watch").find("watching osgi_proxy, cwmp\n") != std::string::npos) {
            break;
        }
        EndWatch("watch", iWatch);
    }
    Await("watch.err", "gatewayctl: cwmp is not watched: it has not connected\n");
    Await("watch.err", "gatewayctl: osgi_proxy is not watched: it has not connected\n");
    EndWatch("watch", iWatch);
    EXPECT_EQ(unlink(acHidden.c_str()), 0);
}

}  // namespace wap::test
