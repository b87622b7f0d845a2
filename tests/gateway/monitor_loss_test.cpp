// What a monitor says of what it misses, by what processes tell that exist for the test alone.
#include <fcntl.h>
#include <signal.h>
#include <stdio.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <regex>
#include <sstream>

#include "framework/files.h"
#include "framework/tap_socket.h"
#include "monitor/pcapng.h"
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

/// What stands in a pipe that nobody writes to any more.
std::string BytesIn(const gateway::FileDescriptor &stPipe) {
    std::string acBytes;
    char acPiece[4096];
    for (ssize_t iCount; (iCount = read(stPipe.Get(), acPiece, sizeof(acPiece))) > 0;) {
        acBytes.append(acPiece, static_cast<size_t>(iCount));
    }
    return acBytes;
}

/// The packets of a capture that stands in a pipe.
std::vector<gateway::Packet> PacketsIn(const gateway::FileDescriptor &stPipe) {
    std::istringstream stFile(BytesIn(stPipe));
    gateway::PcapngReader stReader(stFile);
    std::vector<gateway::Packet> astPackets;
    while (std::optional<gateway::Packet> stPacket = stReader.Next()) {
        astPackets.push_back(std::move(*stPacket));
    }
    return astPackets;
}

/// Expects that a capture ends with statistics that count so many lost calls.
void ExpectStatistics(const std::string &acFile, uint32_t uiLost) {
    ASSERT_GE(acFile.size(), 40u);
    const std::string acLast = acFile.substr(acFile.size() - 40);
    EXPECT_EQ(acLast.substr(0, 12), Word(5) + Word(40) + Word(0));
    EXPECT_EQ(acLast.substr(20),
              std::string("\5\0\10\0", 4) + Word(uiLost) + Word(0) + Word(0) + Word(40));
}

/// Whether a program has ended that nobody has waited for.
bool HasEnded(pid_t iPid) {
    siginfo_t stInfo = {};
    return waitid(P_PID, static_cast<id_t>(iPid), &stInfo, WEXITED | WNOHANG | WNOWAIT) != 0 ||
           stInfo.si_pid != 0;
}

/// How a program ends that should do so by itself; one that does not is killed.
int ExitSoon(pid_t iPid) {
    if (!Soon([iPid] { return HasEnded(iPid); })) {
        (void)kill(iPid, SIGKILL);
    }
    int iStatus = 0;
    EXPECT_EQ(waitpid(iPid, &iStatus, 0), iPid);
    return WIFEXITED(iStatus) ? WEXITSTATUS(iStatus) : 128 + WTERMSIG(iStatus);
}

/// So many calls, told at once: one who does not read can't hold up the test amid them.
std::string CallsOf(const char *pcProcess, size_t uiCount) {
    std::string acCalls;
    for (size_t i = 0; i < uiCount; ++i) {
        acCalls += CallOf(pcProcess, i);
    }
    return acCalls;
}

/// More than a pipe takes, which is 64 KiB, and less when what is written to it is in pieces.
constexpr size_t kHeldUpCalls = 400;
constexpr int kPipeIsFull = 50000;

class MonitorLossTest : public WatchTest {
  protected:
    /// No gateway runs: the test is all the processes.
    void SetUp() override {
        WatchTest::SetUp();
        CtlOk({"stop"});
    }

    /// A connection to a monitor, as a process makes it; -1 when that has ended.
    gateway::FileDescriptor TryConnect(pid_t iWatch) const {
        gateway::FileDescriptor stSocket(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
        sockaddr_un stAddress = {};
        stAddress.sun_family = AF_UNIX;
        const std::string acPath = m_acDir + "/monitor." + std::to_string(iWatch);
        EXPECT_LT(acPath.size(), sizeof(stAddress.sun_path));
        (void)acPath.copy(stAddress.sun_path, sizeof(stAddress.sun_path) - 1);
        return connect(stSocket.Get(), reinterpret_cast<const sockaddr *>(&stAddress),
                       sizeof(stAddress)) == 0
                   ? std::move(stSocket)
                   : gateway::FileDescriptor();
    }

    gateway::FileDescriptor Connect(pid_t iWatch) const {
        gateway::FileDescriptor stSocket = TryConnect(iWatch);
        EXPECT_GE(stSocket.Get(), 0);
        return stSocket;
    }

    /// Has a monitor be held up by a pipe that nobody reads, and ends it with a signal; without one
    /// it ends by itself. Whether the pipe was full before, for which a monitor that ends by itself
    /// leaves a slow machine too little time.
    bool HoldUp(pid_t iWatch, const gateway::FileDescriptor &stPipe, int iSignal) const {
        const gateway::FileDescriptor stProcess = TryConnect(iWatch);
        const std::string acCalls = Hello("gulm") + CallsOf("gulm", kHeldUpCalls);
        (void)send(stProcess.Get(), acCalls.data(), acCalls.size(), MSG_NOSIGNAL);
        bool bFull = false;
        EXPECT_TRUE(Soon([&] {
            int iWaiting = 0;
            bFull = ioctl(stPipe.Get(), FIONREAD, &iWaiting) == 0 && iWaiting > kPipeIsFull;
            return bFull || HasEnded(iWatch);
        }));
        EXPECT_TRUE(bFull || iSignal == 0);
        EXPECT_EQ(kill(iWatch, iSignal), 0);
        EXPECT_EQ(ExitSoon(iWatch), 0) << iSignal;
        return bFull;
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
    pid_t Begin(const std::vector<std::string> &astArguments = {"--brief"}) const {
        std::vector<std::string> astWords = {"sh", "-c", R"(exec "$@" 2>"$0.err")",
                                             m_acDir + "/watch"};
        std::vector<std::string> astMonitor = {"monitor"};
        astMonitor.insert(astMonitor.end(), astArguments.begin(), astArguments.end());
        astMonitor = CtlWords(astMonitor);
        astWords.insert(astWords.end(), astMonitor.begin(), astMonitor.end());
        return Launch(astWords);
    }

    /// Starts one to which osgi_proxy and cwmp answer without connecting to it.
    pid_t BeginHidden(const std::vector<std::string> &astArguments) const {
        const pid_t iStopped = std::stoi(ReadFile("osgi_proxy.pid"));
        const std::string acHidden = m_acDir + "/hidden";
        pid_t iWatch = -1;
        // On a machine that is too busy the monitor has given the process up before it goes on.
        for (int iAttempt = 0; iAttempt < 10; ++iAttempt) {
            EXPECT_EQ(kill(iStopped, SIGSTOP), 0);
            (void)unlink((m_acDir + "/watch.err").c_str());
            iWatch = Begin(astArguments);
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
        EXPECT_EQ(unlink(acHidden.c_str()), 0);
        return iWatch;
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

TEST_F(MonitorLossTest, ProcessesThatTellTooManyAreNamedOnce) {
    const pid_t iWatch = Watch("watch", {"--brief"});
    gateway::TapEvent stFull;
    stFull.eKind = gateway::TapKind::kFull;
    stFull.acReceiver = "gulm";
    for (int i = 0; i < 2; ++i) {
        Tell(Connect(iWatch), Framed(stFull));
    }
    const gateway::FileDescriptor stLater = Connect(iWatch);
    Tell(stLater, Hello("gulm"));
    Await("watch.err", "is watched now\n");
    Tell(Connect(iWatch), Framed(stFull));
    EXPECT_TRUE(Soon([&] { return CountOf(Err("watch"), "is not watched") == 2; }));
    EndWatch("watch", iWatch);
    EXPECT_EQ(Err("watch"),
              "gatewayctl: watching for processes that start; none runs\n"
              "gatewayctl: gulm is not watched: 16 watch it already, which is the most\n"
              "gatewayctl: gulm is watched now\n"
              "gatewayctl: gulm is not watched: 16 watch it already, which is the most\n"
              "gatewayctl: 0 seen, 0 shown, 0 lost\n");
}

TEST_F(MonitorLossTest, LossesBehindTheLastCallAreToldAtTheEnd) {
    const pid_t iWatch = Watch("watch", {"--quiet", "--capture", m_acDir + "/calls.pcapng"});
    const gateway::FileDescriptor stProcess = Connect(iWatch);
    Tell(stProcess, Hello("gulm") + CallOf("gulm", 0) + Lost(6));
    Await("watch.err", "gulm has started\n");
    EndWatch("watch", iWatch);
    EXPECT_NE(Err("watch").find("gatewayctl: 1 seen, 1 shown, 6 lost\n"), std::string::npos);
    ExpectStatistics(ReadFile("calls.pcapng"), 6);
    EXPECT_EQ(Run({"capinfos", "-c", m_acDir + "/calls.pcapng"}).iExit, 0);
}

TEST_F(MonitorLossTest, LossesOfOneProcessDoNotStandBeforeCallsOfAnother) {
    const pid_t iWatch = Watch("watch", {"--brief", "--process", "gulm"});
    const gateway::FileDescriptor stGulm = Connect(iWatch);
    {
        const gateway::FileDescriptor stIgmp = Connect(iWatch);
        Tell(stIgmp, Hello("igmp") + CallOf("igmp", 0) + Lost(7) + CallOf("igmp", 1) + Lost(1));
    }
    Await("watch.err", "igmp has ended\n");
    // What is no event ends it, and stands behind a call and a loss.
    Tell(stGulm, Hello("gulm") + CallOf("gulm", 2) + Lost(5) + Word(4) + Word(0) + "what");
    Await("watch.err", "gulm is not watched any more");
    const gateway::FileDescriptor stNext = Connect(iWatch);
    Tell(stNext, Hello("gulm") + CallOf("gulm", 3));
    EXPECT_TRUE(Soon([&] { return CountOf(Out("watch"), "GetDeviceMac") == 2; }));
    EndWatch("watch", iWatch);
    const std::string acCall =
        "TIME  jamvm/281    -> gulm        GetDeviceMac           0x47209032 TOOK  ok\n";
    EXPECT_EQ(WithoutTimes(Out("watch")), acCall + "(5 lost here)\n" + acCall);
    EXPECT_NE(Err("watch").find("gatewayctl: 4 seen, 2 shown, 13 lost\n"), std::string::npos)
        << Err("watch");
}

TEST_F(MonitorLossTest, CaptureThatNobodyReadsEndsInTime) {
    const std::string acPipe = m_acDir + "/calls";
    ASSERT_EQ(mkfifo(acPipe.c_str(), 0600), 0);
    const std::vector<std::string> astWords = {"--quiet", "--capture", acPipe};
    for (const int iSignal : {SIGTERM, SIGINT, 0}) {
        const gateway::FileDescriptor stPipe(
            open(acPipe.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
        ASSERT_GE(stPipe.Get(), 0);
        std::vector<std::string> astEnd = astWords;
        if (iSignal == 0) {
            astEnd.insert(astEnd.end(), {"--seconds", "5"});
        }
        const pid_t iWatch = Watch("watch", astEnd);
        if (!HoldUp(iWatch, stPipe, iSignal)) {
            continue;
        }
        const std::vector<gateway::Packet> astPackets = PacketsIn(stPipe);
        EXPECT_GT(astPackets.size(), 100u);
        EXPECT_LT(astPackets.size(), kHeldUpCalls);
        // Nobody waits for what this process has not read when it is to end.
        EXPECT_TRUE(std::regex_search(Err("watch"),
                                      std::regex(R"(gatewayctl: (\d+) seen, \1 shown, 0 lost\n)"
                                                 R"(gatewayctl: \d+ of them are not in )" +
                                                 acPipe + ", which nobody read\n")))
            << Err("watch");
        EXPECT_NE(Err("watch").find(
                      std::to_string(NumberBefore(Err("watch"), "seen") - astPackets.size()) +
                      " of them are not in "),
                  std::string::npos)
            << Err("watch");
    }
}

TEST_F(MonitorLossTest, CaptureWhoseEndNobodyReadsEndsAllTheSame) {
    const std::string acPipe = m_acDir + "/calls";
    ASSERT_EQ(mkfifo(acPipe.c_str(), 0600), 0);
    const gateway::FileDescriptor stPipe(open(acPipe.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    ASSERT_GE(stPipe.Get(), 0);
    const pid_t iWatch = Watch("watch", {"--quiet", "--capture", acPipe, "--count", "1"});
    EXPECT_FALSE(BytesIn(stPipe).empty()) << "how it begins";
    // From now on a single write makes it full: that of the call, before the statistics.
    EXPECT_GE(fcntl(stPipe.Get(), F_SETPIPE_SZ, 1), 0);
    const gateway::FileDescriptor stProcess = Connect(iWatch);
    Tell(stProcess, Hello("gulm") + CallOf("gulm", 0));
    EXPECT_EQ(ExitSoon(iWatch), 0);
    EXPECT_NE(Err("watch").find("gatewayctl: 1 seen, 1 shown, 0 lost\n"), std::string::npos)
        << Err("watch");
}

TEST_F(MonitorLossTest, CaptureIntoAPipeThatNobodyOpensIsGivenUp) {
    const std::string acPipe = m_acDir + "/calls";
    ASSERT_EQ(mkfifo(acPipe.c_str(), 0600), 0);
    const std::string acSays =
        "gatewayctl: cannot write " + acPipe + ": nobody has opened it to read\n";
    const Outcome stTime = Ctl({"monitor", "--capture", acPipe, "--seconds", "1"});
    EXPECT_EQ(stTime.iExit, 1);
    EXPECT_EQ(stTime.acErr, acSays);
    const pid_t iWatch = Launch(CtlWords({"monitor", "--capture", acPipe}));
    // It is there, and waits for a reader.
    EXPECT_TRUE(Soon([&] { return !Files("monitor").empty(); }));
    EXPECT_EQ(kill(iWatch, SIGINT), 0);
    EXPECT_EQ(ExitSoon(iWatch), 1);
    EXPECT_EQ(ReadFile("test.err"), acSays);
}

TEST_F(MonitorLossTest, CapturesEndWellWhenTheOutputCantBeWritten) {
    const std::string acFile = m_acDir + "/calls.pcapng";
    const pid_t iWatch =
        WatchWith(R"(exec "$@" >/dev/full 2>"$0.err")", "watch", {"--capture", acFile});
    const gateway::FileDescriptor stProcess = Connect(iWatch);
    Tell(stProcess, Hello("gulm") + Lost(6) + CallOf("gulm", 0));
    EXPECT_EQ(ExitSoon(iWatch), 1);
    EXPECT_NE(Err("watch").find("gatewayctl: 1 seen, 0 shown, 6 lost\n"
                                "gatewayctl: cannot write the output: No space left on device\n"),
              std::string::npos)
        << Err("watch");
    ExpectStatistics(ReadFile("calls.pcapng"), 6);
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
    for (const int iSignal : {SIGTERM, 0}) {
        const gateway::FileDescriptor stPipe(
            open(acPipe.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
        ASSERT_GE(stPipe.Get(), 0);
        std::vector<std::string> astWords = {"--json"};
        if (iSignal == 0) {
            astWords.insert(astWords.end(), {"--seconds", "3"});
        }
        const pid_t iWatch = WatchWith(R"(exec "$@" >"$0.out" 2>"$0.err")", "watch", astWords);
        if (!HoldUp(iWatch, stPipe, iSignal)) {
            continue;
        }
        const std::string acOut = BytesIn(stPipe);
        ASSERT_FALSE(acOut.empty());
        EXPECT_EQ(acOut.back(), '\n');
        const size_t uiShown = CountOf(acOut, "\n");
        EXPECT_EQ(CountOf(acOut, "GetDeviceMac"), uiShown);
        EXPECT_LT(uiShown, kHeldUpCalls);
        const std::string acErr = Err("watch");
        EXPECT_NE(acErr.find(" seen, " + std::to_string(uiShown) + " shown, "), std::string::npos)
            << acErr;
        EXPECT_NE(acErr.find(" that nobody read, 0 lost\n"), std::string::npos) << acErr;
    }
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
    const pid_t iWatch = BeginHidden({"--brief"});
    Await("watch.err", "gatewayctl: cwmp is not watched: it has not connected\n");
    Await("watch.err", "gatewayctl: osgi_proxy is not watched: it has not connected\n");
    EndWatch("watch", iWatch);
}

TEST_F(MonitorBeginTest, ProcessesThatDoNotConnectAreToldBeforeASoonEnd) {
    const pid_t iWatch = BeginHidden({"--brief", "--seconds", "1"});
    EXPECT_EQ(GatewayTest::Await(iWatch), 0);
    EXPECT_EQ(Err("watch"),
              "gatewayctl: watching osgi_proxy, cwmp\n"
              "gatewayctl: cwmp is not watched: it has not connected\n"
              "gatewayctl: osgi_proxy is not watched: it has not connected\n"
              "gatewayctl: 0 seen, 0 shown, 0 lost\n");
}

}  // namespace wap::test
