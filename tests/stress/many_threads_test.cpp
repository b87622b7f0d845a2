// Many Java threads at once. Each has a World and an environment of its own, so that all they share
// is the bridge. WAP_STRESS_SECONDS lengthens the runs of the entries.

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <barrier>
#include <chrono>
#include <cstring>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "common/jni_common.h"
#include "support/entries.h"
#include "support/entry_groups.h"
#include "support/expect.h"
#include "support/load_time.h"
#include "system/wap_msg_jni.h"

namespace wap::test {

namespace {

constexpr uint32_t kThreads = 16;
constexpr uint32_t kProxyCallsEach = 5;
constexpr uint32_t kProxyCalls = kProxyCallsEach * kThreads;
constexpr std::chrono::milliseconds kUsualTime(1500);

/// Runs fnBody(thread number) on kThreads threads, all let go at once, each in its own World.
void OnAllThreads(const std::function<void(uint32_t)> &fnBody) {
    std::barrier stGate(kThreads);
    std::vector<std::thread> astThreads;
    for (uint32_t i = 0; i < kThreads; ++i) {
        astThreads.emplace_back([&, i] {
            World stWorld;
            stGate.arrive_and_wait();
            fnBody(i);
            stWorld.ExpectClean("thread " + std::to_string(i));
        });
    }
    for (std::thread &stThread : astThreads) {
        stThread.join();
    }
}

/// Counts things by name, from any thread.
class Tally {
  public:
    void Add(const std::string &sWhat, uint64_t ulCount) {
        const std::lock_guard stLock(stMutex);
        mapCounts[sWhat] += ulCount;
    }
    uint64_t Of(const std::string &sWhat) {
        const std::lock_guard stLock(stMutex);
        return mapCounts[sWhat];
    }

  private:
    std::mutex stMutex;
    std::map<std::string, uint64_t> mapCounts;
};

std::string SenderName(uint32_t uiSndMid) {
    return "sender " + std::to_string(uiSndMid);
}

/// Counts the sender ids of the requests to the bundle manager's proxy, and what start-up did.
void TallyRecords(const Platform &stPlatform, Tally &stTally) {
    for (const RpcRecord &stRpc : stPlatform.astRpcs) {
        if (std::strcmp(stRpc.sHead.c_str() + 40, "osgi_proxy") == 0) {
            stTally.Add(SenderName(SenderOf(stRpc)), 1);
            stTally.Add("proxy calls", 1);
        }
    }
    stTally.Add("mutex made", stPlatform.CountCalls("VT_OS_MutexInit"));
    stTally.Add("locked", stPlatform.CountCalls("VT_OS_MutexLock"));
    stTally.Add("initialised", stPlatform.astInits.size());
    stTally.Add("registered", stPlatform.astRegistered.size());
    stTally.Add("threads", stPlatform.astThreads.size());
}

/// Expects the ids of that many calls to be 281 to 286 in turn, in whatever order they were seen.
void ExpectRotation(Tally &stTally, uint64_t ulCalls) {
    EXPECT_EQ(stTally.Of("proxy calls"), ulCalls);
    for (uint32_t i = 0; i < 6; ++i) {
        EXPECT_EQ(stTally.Of(SenderName(281 + i)), ulCalls / 6 + (i < ulCalls % 6 ? 1 : 0))
            << SenderName(281 + i);
    }
}

void ExpectStartedOnce(Tally &stTally) {
    EXPECT_EQ(stTally.Of("initialised"), 1u);
    EXPECT_EQ(stTally.Of("registered"), 1u);
    EXPECT_EQ(stTally.Of("threads"), 1u);
    EXPECT_EQ(uiInitFlag, 1u);
}

/// Makes every request fail that FurnishHome answers, and the rates.
void BreakHome(World &stWorld) {
    for (auto &[uiRpcId, stReply] : stWorld.stPlatform.mapReplies) {
        stReply.uiStatus = 0x33333333;
    }
    stWorld.stPlatform.mapStatus = {{"VT_OS_GetCPUBusyRateByTime", 1}, {"VT_OS_GetMemUseRate", 1}};
}

/// What an entry answers in a home that is broken or not.
const Answer &AnswerOf(const Entry &stEntry, bool bBroken) {
    const bool bAsks = stEntry.uiRpcId != 0 || stEntry.sMethod == "getCPUOccupancyRate" ||
                       stEntry.sMethod == "getRAMOccupancyRate";
    return bBroken && bAsks ? stEntry.stFailure : stEntry.stGood;
}

TEST(ManyThreads, CallBasicEntriesInGoodAndBrokenHomes) {
    ResetBridge();
    Tally stTally;
    const auto stEnd = std::chrono::steady_clock::now() + LoadTime(kUsualTime);
    OnAllThreads([&](uint32_t uiThread) {
        World &stWorld = World::Get();
        FakeJni stEnv;
        stEnv.bRecord = false;
        const std::vector<Entry> &astEntries = BasicEntries();
        uint64_t ulRounds = 0;
        do {
            // Half of the threads live in a home where every request fails, then the others.
            const bool bBroken = (uiThread + ulRounds) % 2 == 1;
            stWorld.stPlatform.mapStatus.clear();
            stWorld.stSecrets = {};
            FurnishHome(stWorld);
            if (bBroken) {
                BreakHome(stWorld);
            }
            for (size_t i = 0; i < astEntries.size(); ++i) {
                // Each thread begins with another entry.
                const Entry &stEntry = astEntries[(i + uiThread) % astEntries.size()];
                ASSERT_EQ(stEntry.fnCall(stEnv), AnswerOf(stEntry, bBroken)) << stEntry.sMethod;
                stEnv.EndCall();
            }
            TallyRecords(stWorld.stPlatform, stTally);
            stWorld.ExpectClean(bBroken ? "broken home" : "home");
            stWorld.ClearRecords();
            ++ulRounds;
        } while (std::chrono::steady_clock::now() < stEnd);
        stTally.Add("rounds", ulRounds);
    });
    const uint64_t ulRounds = stTally.Of("rounds");
    EXPECT_GE(ulRounds, kThreads);
    // Seven entries ask the proxy: info, MAC, up-time, password and the three defaults.
    ExpectRotation(stTally, 7 * ulRounds);
    EXPECT_EQ(stTally.Of("mutex made"), 1u);
    EXPECT_EQ(stTally.Of("locked"), 7 * ulRounds);
    ExpectStartedOnce(stTally);
    ResetBridge();
}

/// Furnishes the home that an entry needs, broken or not, and calls it there.
Answer CallIn(World &stWorld, FakeJni &stEnv, const FurnishedEntry &stFurnished, bool bBroken) {
    stWorld.stPlatform.mapReplies.clear();
    stWorld.stPlatform.mapStatus.clear();
    stWorld.stSecrets = {};
    stFurnished.pfnFurnish(stWorld);
    if (bBroken) {
        BreakHome(stWorld);
        stWorld.stPlatform.mapBlocks.clear();  // nobody hears of them
    }
    Answer stAnswer = stFurnished.stEntry.fnCall(stEnv);
    stEnv.EndCall();
    return stAnswer;
}

/// What each entry answers one thread alone where every request fails. Not always its failure: some
/// do without a reply, or answer what they have.
std::vector<Answer> AnswersInBrokenHomes(const std::vector<FurnishedEntry> &astEntries) {
    World stWorld;
    FakeJni stEnv;
    std::vector<Answer> astAnswers;
    for (const FurnishedEntry &stFurnished : astEntries) {
        astAnswers.push_back(CallIn(stWorld, stEnv, stFurnished, true));
        (void)stWorld.TakeComplaints();
    }
    return astAnswers;
}

TEST(ManyThreads, CallEveryEntryOfEveryGroup) {
    ResetBridge();
    const std::vector<Answer> astBroken = AnswersInBrokenHomes(AllEntries());
    ResetBridge();
    const auto stEnd = std::chrono::steady_clock::now() + LoadTime(kUsualTime);
    std::atomic<uint64_t> ulCalls = 0;
    OnAllThreads([&](uint32_t uiThread) {
        World &stWorld = World::Get();
        FakeJni stEnv;
        stEnv.bRecord = false;
        const std::vector<FurnishedEntry> astEntries = AllEntries();
        size_t i = uiThread;
        do {
            const size_t uiEntry = i % astEntries.size();
            const FurnishedEntry &stFurnished = astEntries[uiEntry];
            // Every third round is in a home where every request fails.
            const bool bBroken = (i++ / astEntries.size() + uiThread) % 3 == 0;
            ASSERT_EQ(CallIn(stWorld, stEnv, stFurnished, bBroken),
                      bBroken ? astBroken[uiEntry] : stFurnished.stEntry.stGood)
                << stFurnished.stEntry.sMethod;
            stWorld.ExpectClean(stFurnished.stEntry.sMethod);
            stWorld.ClearRecords();
        } while (i < uiThread + 3 * astEntries.size() || std::chrono::steady_clock::now() < stEnd);
        ulCalls += i - uiThread;
    });
    // By ./test into the figures of the run.
    std::printf("figure stress.threads %u\nfigure stress.entries %zu\nfigure stress.calls %llu\n",
                kThreads, AllEntries().size(), static_cast<unsigned long long>(ulCalls));
    ResetBridge();
}

TEST(ManyThreads, StartOnce) {
    for (int i = 0; i < 30; ++i) {
        ResetBridge();
        Tally stTally;
        OnAllThreads([&](uint32_t) {
            FakeJni stEnv;
            EXPECT_EQ(EntryOf("startThread").fnCall(stEnv), NumberAnswerOf(0));
            TallyRecords(World::Get().stPlatform, stTally);
        });
        ExpectStartedOnce(stTally);
    }
    ResetBridge();
}

TEST(ManyThreads, StartOnceThoughSomeFail) {
    for (int i = 0; i < 30; ++i) {
        ResetBridge();
        Tally stTally;
        OnAllThreads([&](uint32_t uiThread) {
            World &stWorld = World::Get();
            FakeJni stEnv;
            const bool bFails = uiThread % 2 == 0;
            if (bFails) {
                stWorld.stPlatform.mapStatus["VT_OS_PthreadCreate"] = 11;
            }
            const Answer stAnswer = EntryOf("startThread").fnCall(stEnv);
            if (!bFails) {
                EXPECT_EQ(stAnswer, NumberAnswerOf(0));
            }
            // Whoever tried and failed says so; whoever came after the start did not try.
            const bool bTried = !stWorld.stPlatform.astInits.empty();
            EXPECT_EQ(stAnswer == NumberAnswerOf(1), bFails && bTried);
            stTally.Add("threads", stWorld.stPlatform.astThreads.size());
        });
        EXPECT_EQ(stTally.Of("threads"), 1u);
        EXPECT_EQ(uiInitFlag, 1u);
    }
    ResetBridge();
}

TEST(ManyThreads, FirstProxyCalls) {
    for (int i = 0; i < 30; ++i) {
        ResetBridge();
        Tally stTally;
        OnAllThreads([&](uint32_t) {
            World &stWorld = World::Get();
            for (uint32_t j = 0; j < kProxyCallsEach; ++j) {
                stWorld.stPlatform.astNextReplies.push_back({0, ""});
                EXPECT_EQ(OSGI_JNI_BundleMng_RpcCall(0, 1, nullptr, 0, nullptr, 0), 0u);
            }
            TallyRecords(stWorld.stPlatform, stTally);
        });
        ExpectRotation(stTally, kProxyCalls);
        EXPECT_EQ(stTally.Of("mutex made"), 1u);
        EXPECT_EQ(stTally.Of("locked"), kProxyCalls);
        EXPECT_EQ(g_stJNIOsgiMid.uiMutexReady, 1u);
        EXPECT_EQ(g_stJNIOsgiMid.uiCounter, kProxyCalls);
    }
    ResetBridge();
}

TEST(ManyThreads, FirstProxyCallsWhereMutexFails) {
    for (int i = 0; i < 30; ++i) {
        ResetBridge();
        Tally stTally;
        OnAllThreads([&](uint32_t uiThread) {
            World &stWorld = World::Get();
            const bool bFails = uiThread % 2 == 0;
            if (bFails) {
                stWorld.stPlatform.mapStatus["VT_OS_MutexInit"] = 12;
            }
            for (uint32_t j = 0; j < kProxyCallsEach; ++j) {
                stWorld.stPlatform.astNextReplies.push_back({0, ""});
                EXPECT_EQ(OSGI_JNI_BundleMng_RpcCall(0, 1, nullptr, 0, nullptr, 0), 0u);
            }
            TallyRecords(stWorld.stPlatform, stTally);
            stTally.Add("mutex made well",
                        bFails ? 0 : stWorld.stPlatform.CountCalls("VT_OS_MutexInit"));
        });
        ExpectRotation(stTally, kProxyCalls);
        EXPECT_EQ(stTally.Of("mutex made well"), 1u);
        EXPECT_EQ(g_stJNIOsgiMid.uiMutexReady, 1u);
    }
    ResetBridge();
}

}  // namespace

}  // namespace wap::test
