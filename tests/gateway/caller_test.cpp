// How the gateway tells processes apart, and those that run from those that have ended.
#include <gtest/gtest.h>
#include <pthread.h>
#include <signal.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <chrono>
#include <climits>
#include <fstream>
#include <functional>
#include <optional>
#include <string>
#include <thread>

#include "processes/caller.h"

namespace wap::gateway {
namespace {

constexpr unsigned kPatienceSeconds = 20;

/// Whether something that is waited for is so within a while.
bool Happens(const std::function<bool()> &fnIsSo) {
    const auto stEnd = std::chrono::steady_clock::now() + std::chrono::seconds(kPatienceSeconds);
    while (!fnIsSo()) {
        if (std::chrono::steady_clock::now() > stEnd) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return true;
}

/// A forked process, which ends with its object. The test must have no threads.
class Child {
  public:
    explicit Child(void (*pfnBody)()) : m_iPid(fork()) {
        EXPECT_GE(m_iPid, 0);
        if (m_iPid == 0) {
            alarm(kPatienceSeconds);  // should the test itself be ended
            pfnBody();
            _exit(0);
        }
    }
    ~Child() { Bury(); }
    Child(const Child &) = delete;
    Child &operator=(const Child &) = delete;

    int32_t Pid() const { return m_iPid; }

    /// Waits until the system shows its first thread as ended.
    void AwaitZombie() const {
        const std::string acPath = "/proc/" + std::to_string(m_iPid) + "/stat";
        std::string acLine;
        EXPECT_TRUE(Happens([&] {
            std::getline(std::ifstream(acPath), acLine);
            return acLine.find(") Z ") != std::string::npos;
        })) << acLine;
    }

    /// Waits until all its threads have ended, also those of an emulator; it stays unburied.
    void AwaitEnd() const {
        siginfo_t stInfo = {};
        EXPECT_EQ(waitid(P_PID, static_cast<id_t>(m_iPid), &stInfo, WEXITED | WNOWAIT), 0);
    }

    void Kill() const {
        // No other number: 0 and those below are many processes.
        if (m_iPid > 0) {
            EXPECT_EQ(kill(m_iPid, SIGKILL), 0);
        }
    }
    /// Ends it and takes note of that, upon which the system knows it no more.
    void Bury() {
        if (m_iPid > 0) {
            Kill();
            EXPECT_EQ(waitpid(m_iPid, nullptr, 0), m_iPid);
            m_iPid = -1;
        }
    }

  private:
    pid_t m_iPid;
};

void WaitForEver() {
    for (;;) {
        pause();
    }
}

/// The system's ticks since the machine was started.
uint64_t Ticks() {
    timespec stNow = {};
    EXPECT_EQ(clock_gettime(CLOCK_BOOTTIME, &stNow), 0);
    const auto uiRate = static_cast<uint64_t>(sysconf(_SC_CLK_TCK));
    return static_cast<uint64_t>(stNow.tv_sec) * uiRate +
           static_cast<uint64_t>(stNow.tv_nsec) * uiRate / 1000000000;
}

TEST(CallerTest, ThisProcessRuns) {
    const std::optional<Caller> stSelf = FindCaller(getpid());
    ASSERT_TRUE(stSelf);
    EXPECT_EQ(stSelf->iPid, getpid());
    EXPECT_TRUE(IsAlive(*stSelf));
    EXPECT_EQ(FindCaller(getpid()), stSelf);
}

TEST(CallerTest, IdsOfNoProcess) {
    // The last one is more than any system gives.
    for (const int32_t iPid : {0, -1, -getpid(), INT32_MIN, INT32_MAX}) {
        EXPECT_FALSE(FindCaller(iPid)) << iPid;
        EXPECT_FALSE(IsAlive({iPid, 0})) << iPid;
    }
}

// An id that has come round is another process.
TEST(CallerTest, SameIdWithAnotherStartIsAnotherProcess) {
    const Caller stSelf = FindCaller(getpid()).value_or(Caller{});
    EXPECT_TRUE(IsAlive(stSelf));
    EXPECT_FALSE(IsAlive({stSelf.iPid, stSelf.uiStart + 1}));
    EXPECT_FALSE(IsAlive({stSelf.iPid, stSelf.uiStart - 1}));
}

TEST(CallerTest, StartIsWhenTheProcessBegan) {
    const uint64_t uiBefore = Ticks();
    const Child stChild(WaitForEver);
    const uint64_t uiAfter = Ticks();
    const std::optional<Caller> stCaller = FindCaller(stChild.Pid());
    ASSERT_TRUE(stCaller);
    EXPECT_GE(stCaller->uiStart + 1, uiBefore);
    EXPECT_LE(stCaller->uiStart, uiAfter + 1);
}

TEST(CallerTest, EndedProcessDoesNotRunEvenBeforeAnybodyWaitsForIt) {
    Child stChild(WaitForEver);
    const Caller stCaller = FindCaller(stChild.Pid()).value_or(Caller{});
    EXPECT_TRUE(IsAlive(stCaller));
    stChild.Kill();
    stChild.AwaitEnd();
    EXPECT_FALSE(FindCaller(stCaller.iPid));
    EXPECT_FALSE(IsAlive(stCaller));
    stChild.Bury();
    EXPECT_FALSE(IsAlive(stCaller));
}

TEST(CallerTest, ProcessWhoseFirstThreadHasEndedRunsOnWithTheOthers) {
    const Child stChild([] {
        pthread_t stOther;
        const auto pfnOther = [](void *) -> void * {
            WaitForEver();
            return nullptr;
        };
        if (pthread_create(&stOther, nullptr, pfnOther, nullptr) == 0) {
            // As pthread_exit, which would first unwind the test.
            syscall(SYS_exit, 0);
        }
    });
    const Caller stCaller = FindCaller(stChild.Pid()).value_or(Caller{});
    stChild.AwaitZombie();
    EXPECT_TRUE(IsAlive(stCaller));
    stChild.Kill();
    EXPECT_TRUE(Happens([&] { return !IsAlive(stCaller); }));
}

}  // namespace
}  // namespace wap::gateway
