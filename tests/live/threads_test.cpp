// Sixteen threads calling queries of all kinds while a process of the gateway dies and comes back.
// WAP_STRESS_SECONDS lengthens the run.
#include <atomic>
#include <chrono>
#include <cstdio>
#include <mutex>
#include <thread>
#include <vector>

#include "live/live_gateway.h"
#include "support/load_time.h"

namespace wap::test {

namespace {

constexpr uint32_t kThreads = 16;
constexpr const char *kDying = "osgi_proxy";

/// What is known of the process that dies.
enum class Phase { kUp, kChanging, kDown };

/// The threads and what they saw.
class Load {
  public:
    Load() {
        for (uint32_t i = 0; i < kThreads; ++i) {
            astThreads.emplace_back([this, i] { Work(i); });
        }
    }
    ~Load() { Stop(); }
    Load(const Load &) = delete;
    Load &operator=(const Load &) = delete;

    void Enter(Phase eNext) {
        ePhase = eNext;
        ++uiChanges;
    }
    void Stop() {
        bStop = true;
        for (std::thread &stThread : astThreads) {
            stThread.join();
        }
        astThreads.clear();
    }
    uint64_t Calls() const { return ulCalls; }
    uint64_t FailuresWhileDown() const { return ulFailuresWhileDown; }

  private:
    void Work(uint32_t uiFirst);
    void Check(const LiveMethod &stMethod, const Answer &stAnswer, Phase eDuring);

    std::atomic<Phase> ePhase = Phase::kUp;
    std::atomic<uint32_t> uiChanges = 0;
    std::atomic<bool> bStop = false;
    std::atomic<uint64_t> ulCalls = 0;
    std::atomic<uint64_t> ulFailuresWhileDown = 0;
    std::vector<std::thread> astThreads;
};

void Load::Work(uint32_t uiFirst) {
    FakeJni stEnv;
    stEnv.bRecord = false;
    EXPECT_EQ(EntryOf("startThread").fnCall(stEnv), NumberAnswerOf(0));
    const std::vector<LiveMethod> &astMethods = LiveMethods();
    for (size_t i = uiFirst; !bStop && !testing::Test::HasFailure(); ++i) {
        const LiveMethod &stMethod = astMethods[i % astMethods.size()];
        const uint32_t uiBefore = uiChanges;
        const Phase eBefore = ePhase;
        const Answer stAnswer = CallLive(stEnv, stMethod);
        ++ulCalls;
        // A call that a change overlapped may have met either state.
        const bool bSteady = uiBefore == uiChanges;
        Check(stMethod, stAnswer, bSteady ? eBefore : Phase::kChanging);
    }
}

void Load::Check(const LiveMethod &stMethod, const Answer &stAnswer, Phase eDuring) {
    const bool bGood = stMethod.fnIsGood(stAnswer);
    const bool bFailed = stAnswer == stMethod.stFailure;
    if (stMethod.sProcess != kDying || eDuring == Phase::kUp) {
        EXPECT_TRUE(bGood) << stMethod.sMethod << " answered " << stAnswer;
    } else if (eDuring == Phase::kDown) {
        EXPECT_TRUE(bFailed) << stMethod.sMethod << " answered " << stAnswer << " without "
                             << kDying;
        ++ulFailuresWhileDown;
    } else {
        EXPECT_TRUE(bGood || bFailed) << stMethod.sMethod << " answered " << stAnswer;
    }
}

class LiveThreadsTest : public LiveGatewayTest {
  protected:
    /// A whole run of all threads with a death in the middle. Returns the number of calls.
    uint64_t LoadWithADeath(std::chrono::milliseconds stDuration) const {
        Load stLoad;
        std::this_thread::sleep_for(stDuration / 3);
        stLoad.Enter(Phase::kChanging);
        CtlOk({"kill", kDying});
        stLoad.Enter(Phase::kDown);
        std::this_thread::sleep_for(stDuration / 3);
        stLoad.Enter(Phase::kChanging);
        CtlOk({"start", kDying, "--timeout", "120"});
        stLoad.Enter(Phase::kUp);
        std::this_thread::sleep_for(stDuration / 3);
        stLoad.Stop();
        EXPECT_GE(stLoad.Calls(), 100u * kThreads);
        EXPECT_GE(stLoad.FailuresWhileDown(), kThreads);
        return stLoad.Calls();
    }
};

}  // namespace

TEST_F(LiveThreadsTest, QueryWhileAProcessDiesAndReturns) {
    // The first run is the warm-up: what is taken once is taken in it.
    const auto stTime = LoadTime(std::chrono::seconds(4));
    (void)LoadWithADeath(stTime / 4);
    const size_t uiBefore = HeapBytes();
    const uint64_t ulCalls = LoadWithADeath(stTime);
    const auto lGrowth = static_cast<int64_t>(HeapBytes()) - static_cast<int64_t>(uiBefore);
    std::printf("%llu calls, heap %+lld bytes\n", static_cast<unsigned long long>(ulCalls),
                static_cast<long long>(lGrowth));
    // A byte lost by a method is lost once in a round of all of them.
    EXPECT_LT(lGrowth, static_cast<int64_t>(ulCalls / LiveMethods().size()));
}

}  // namespace wap::test
