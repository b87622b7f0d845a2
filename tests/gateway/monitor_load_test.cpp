// Whatever becomes of those who watch, the gateway goes on.
#include <fcntl.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <thread>

#include "watcher.h"

namespace wap::test {

namespace {

using Clock = std::chrono::steady_clock;

/// Long calls, so that few of them are more than anything holds. Not one may fail to be answered.
class Load {
  public:
    explicit Load(size_t uiThreads) {
        for (size_t i = 0; i < uiThreads; ++i) {
            m_astThreads.emplace_back([this] {
                while (!m_bEnd) {
                    Ask();
                }
            });
        }
    }
    Load(const Load &) = delete;
    Load &operator=(const Load &) = delete;
    ~Load() { End(); }

    void End() {
        m_bEnd = true;
        for (std::thread &stThread : m_astThreads) {
            stThread.join();
        }
        m_astThreads.clear();
    }

    /// One call.
    void Ask() {
        static const std::string kLong(131072, 'x');
        const uint32_t uiStatus = Call("cwmp", 0x12345678, kLong, 4).uiStatus;
        m_uiFailed += uiStatus == 0xF700000B ? 0 : 1;
        ++m_uiAsked;
    }

    size_t Asked() const { return m_uiAsked; }
    size_t Failed() const { return m_uiFailed; }

  private:
    std::atomic<bool> m_bEnd{false};
    std::atomic<size_t> m_uiAsked{0};
    std::atomic<size_t> m_uiFailed{0};
    std::vector<std::thread> m_astThreads;
};

}  // namespace

TEST_F(WatchTest, OneThatIsKilledDisturbsNobody) {
    Load stLoad(2);
    for (int iRound = 0; iRound < 3; ++iRound) {
        const pid_t iWatch = Watch("watch", {"--brief"});
        Await("watch.out", "0x12345678");
        EXPECT_EQ(kill(iWatch, SIGKILL), 0);
        EXPECT_EQ(GatewayTest::Await(iWatch), 128 + SIGKILL);
        EXPECT_EQ(Files("monitor"), "monitor." + std::to_string(iWatch) + "\n");
        const size_t uiAsked = stLoad.Asked();
        EXPECT_TRUE(Soon([&] { return stLoad.Asked() > uiAsked + 100; }));
    }
    stLoad.End();
    EXPECT_EQ(stLoad.Failed(), 0u);
    // The next one finds no trace of it.
    const pid_t iWatch = Watch("last", {});
    EXPECT_EQ(Files("monitor"), "monitor." + std::to_string(iWatch) + "\n");
    EXPECT_EQ(AskForMac().uiStatus, 0u);
    Await("last.out", "GetDeviceMac");
    EndWatch("last", iWatch);
}

TEST_F(WatchTest, OneThatIsStoppedHoldsNobodyUp) {
    const pid_t iStopped = Watch("stopped", {"--brief"});
    const pid_t iOther = Watch("other", {"--brief", "--rpc", "GetDeviceMac"});
    EXPECT_EQ(kill(iStopped, SIGSTOP), 0);
    Load stLoad(0);
    // Far more than is kept for it: what it does not take is lost.
    while (stLoad.Asked() < 200) {
        stLoad.Ask();
    }
    EXPECT_EQ(stLoad.Failed(), 0u);
    EXPECT_EQ(AskForMac().uiStatus, 0u);
    Await("other.out", "GetDeviceMac");
    EndWatch("other", iOther);
    EXPECT_EQ(CountOf(Out("stopped"), "GetDeviceMac"), 0u) << "it is stopped";

    EXPECT_EQ(kill(iStopped, SIGCONT), 0);
    Await("stopped.out", "GetDeviceMac");
    // What comes behind what was lost tells of it.
    EXPECT_EQ(Query("cwmp", 0x4720136A, 265).uiStatus, 0u);
    Await("stopped.out", "GetDeviceIdentity");
    EXPECT_GE(CountOf(Out("stopped"), " lost here)\n"), 1u);
    EndWatch("stopped", iStopped);
    EXPECT_GE(NumberBefore(Err("stopped"), "lost"), 100u) << Err("stopped");
    EXPECT_EQ(NumberBefore(Err("stopped"), "seen") + NumberBefore(Err("stopped"), "lost"),
              stLoad.Asked() + 2)
        << Err("stopped");
}

TEST_F(WatchTest, OneWhoseOutputNobodyReadsEndsAllTheSame) {
    const std::string acPipe = m_acDir + "/watch.out";
    ASSERT_EQ(mkfifo(acPipe.c_str(), 0600), 0);
    const int iPipe = open(acPipe.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    ASSERT_GE(iPipe, 0);
    const pid_t iWatch = WatchWith(R"(exec "$@" >"$0.out" 2>"$0.err")", "watch", {});
    // A pipe takes 64 KiB.
    for (int i = 0; i < 1000; ++i) {
        EXPECT_EQ(AskForMac().uiStatus, 0u);
    }
    int iWaiting = 0;
    EXPECT_TRUE(Soon([&] { return ioctl(iPipe, FIONREAD, &iWaiting) == 0 && iWaiting > 60000; }))
        << iWaiting;
    const auto stBegin = Clock::now();
    EndWatch("watch", iWatch);
    EXPECT_LT(Clock::now() - stBegin, std::chrono::seconds(10));
    close(iPipe);
}

TEST_F(WatchTest, ProcessesEndBesideOneThatIsStopped) {
    const pid_t iWatch = Watch("watch", {"--brief"});
    EXPECT_EQ(kill(iWatch, SIGSTOP), 0);
    Load stLoad(0);
    for (int i = 0; i < 100; ++i) {
        stLoad.Ask();
    }
    CtlOk({"stop", "cwmp", "--timeout", "20"});
    CtlOk({"start", "cwmp", "--timeout", "60"});
    EXPECT_EQ(Query("cwmp", 0x4720136A, 265).uiStatus, 0u);
    EXPECT_EQ(kill(iWatch, SIGCONT), 0);
    Await("watch.out", "GetDeviceIdentity");
    EndWatch("watch", iWatch);
}

TEST_F(WatchTest, ManyMayComeAndGo) {
    Load stLoad(1);
    std::vector<std::pair<std::string, pid_t>> astWatches;
    for (int i = 0; i < 5; ++i) {
        const std::string acName = "watch" + std::to_string(i);
        astWatches.emplace_back(acName, Watch(acName, {"--brief", "--rpc", "GetDeviceMac"}));
    }
    EXPECT_EQ(AskForMac().uiStatus, 0u);
    for (const auto &[acName, iPid] : astWatches) {
        Await(acName + ".out", "GetDeviceMac");
        EndWatch(acName, iPid);
    }
    stLoad.End();
    EXPECT_EQ(stLoad.Failed(), 0u);
    EXPECT_EQ(Files("monitor"), "");
}

}  // namespace wap::test
