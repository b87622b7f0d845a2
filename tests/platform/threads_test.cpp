#include <gtest/gtest.h>
#include <pthread.h>
#include <unistd.h>

#include <atomic>
#include <cstring>
#include <future>
#include <thread>
#include <vector>

#include "vt_ssp_host.h"

namespace wap::test {
namespace {

struct alignas(8) MutexMemory {
    unsigned char aucBytes[VT_OS_MUTEX_SIZE];
};

void *SetFlag(void *pvFlag) {
    static_cast<std::promise<void *> *>(pvFlag)->set_value(pvFlag);
    return nullptr;
}

TEST(Threads, RunTheirBodyWithTheArgument) {
    auto pstFlag = std::make_unique<std::promise<void *>>();
    auto stFuture = pstFlag->get_future();
    unsigned long ulId = 0;
    ASSERT_EQ(0u, VT_OS_PthreadCreate(&ulId, nullptr, SetFlag, pstFlag.get()));
    EXPECT_NE(0ul, ulId);
    EXPECT_EQ(pstFlag.get(), stFuture.get());
    usleep(20000);  // set_value may still be returning
}

void *Nothing(void *pvArg) {
    return pvArg;
}

TEST(Threads, KeepTheCallersAttributes) {
    pthread_attr_t stAttr;
    ASSERT_EQ(0, pthread_attr_init(&stAttr));  // joinable
    unsigned long ulId = 0;
    int iValue = 0;
    ASSERT_EQ(0u, VT_OS_PthreadCreate(&ulId, &stAttr, Nothing, &iValue));
    void *pvResult = nullptr;
    EXPECT_EQ(0, pthread_join(static_cast<pthread_t>(ulId), &pvResult));
    EXPECT_EQ(&iValue, pvResult);
    pthread_attr_destroy(&stAttr);
}

TEST(Threads, NeedABody) {
    unsigned long ulId = 77;
    EXPECT_EQ(VT_HOST_ERR_ARGUMENT, VT_OS_PthreadCreate(&ulId, nullptr, nullptr, nullptr));
    EXPECT_EQ(77ul, ulId);
}

TEST(Threads, AreNamedUpToTheKernelsLimit) {
    std::thread([] {
        EXPECT_EQ(0u, VT_OS_ModifyThreadName("WAP_JNI_msgthread"));
        char acName[16] = {};
        EXPECT_EQ(0, pthread_getname_np(pthread_self(), acName, sizeof acName));
        EXPECT_STREQ("WAP_JNI_msgthre", acName);
        EXPECT_EQ(0u, VT_OS_ModifyThreadName("x"));
        EXPECT_EQ(0, pthread_getname_np(pthread_self(), acName, sizeof acName));
        EXPECT_STREQ("x", acName);
        EXPECT_EQ(VT_HOST_ERR_ARGUMENT, VT_OS_ModifyThreadName(nullptr));
    }).join();
}

TEST(Mutexes, AreMadeInMemoryOfAnyContent) {
    for (int iFill : {0x00, 0xFF, 0x4D}) {
        MutexMemory stMutex;
        memset(&stMutex, iFill, sizeof stMutex);
        EXPECT_EQ(0u, VT_OS_MutexInit(&stMutex));
        EXPECT_EQ(0u, VT_OS_MutexLock(&stMutex));
        EXPECT_EQ(0u, VT_OS_MutexUnLock(&stMutex));
    }
}

TEST(Mutexes, StayWithinTheirMemory) {
    struct {
        MutexMemory stMutex;
        uint64_t uiBehind;
    } stRoom{{}, 0x1122334455667788u};
    EXPECT_EQ(0u, VT_OS_MutexInit(&stRoom.stMutex));
    EXPECT_EQ(0u, VT_OS_MutexLock(&stRoom.stMutex));
    EXPECT_EQ(0u, VT_OS_MutexUnLock(&stRoom.stMutex));
    EXPECT_EQ(0x1122334455667788u, stRoom.uiBehind);
}

TEST(Mutexes, MisuseFails) {
    MutexMemory stMutex{};
    EXPECT_EQ(VT_HOST_ERR_ARGUMENT, VT_OS_MutexLock(&stMutex)) << "none was made";
    EXPECT_EQ(VT_HOST_ERR_ARGUMENT, VT_OS_MutexUnLock(&stMutex));
    EXPECT_EQ(VT_HOST_ERR_ARGUMENT, VT_OS_MutexInit(nullptr));
    EXPECT_EQ(VT_HOST_ERR_ARGUMENT, VT_OS_MutexLock(nullptr));
    EXPECT_EQ(VT_HOST_ERR_ARGUMENT, VT_OS_MutexUnLock(nullptr));
    ASSERT_EQ(0u, VT_OS_MutexInit(&stMutex));
    EXPECT_EQ(VT_HOST_ERR_STATE, VT_OS_MutexUnLock(&stMutex)) << "not locked";
    EXPECT_EQ(0u, VT_OS_MutexLock(&stMutex)) << "still in order";
}

TEST(Mutexes, LetOneThreadInAtATime) {
    MutexMemory stMutex{};
    ASSERT_EQ(0u, VT_OS_MutexInit(&stMutex));
    uint64_t uiCount = 0;  // plain: the thread sanitizer watches it
    constexpr int kThreads = 8;
    constexpr int kRounds = 2000;
    std::vector<std::thread> astThreads;
    astThreads.reserve(kThreads);
    for (int i = 0; i < kThreads; i++) {
        astThreads.emplace_back([&] {
            for (int iRound = 0; iRound < kRounds; iRound++) {
                EXPECT_EQ(0u, VT_OS_MutexLock(&stMutex));
                uiCount++;
                if (iRound % 100 == 0) {
                    std::this_thread::yield();  // makes the others wait for real
                }
                EXPECT_EQ(0u, VT_OS_MutexUnLock(&stMutex));
            }
        });
    }
    for (std::thread &stThread : astThreads) {
        stThread.join();
    }
    EXPECT_EQ(uint64_t{kThreads} * kRounds, uiCount);
}

TEST(Mutexes, MakeTheSecondWait) {
    MutexMemory stMutex{};
    ASSERT_EQ(0u, VT_OS_MutexInit(&stMutex));
    ASSERT_EQ(0u, VT_OS_MutexLock(&stMutex));
    std::atomic<bool> bIn{false};
    std::thread stSecond([&] {
        VT_OS_MutexLock(&stMutex);
        bIn.store(true);
        VT_OS_MutexUnLock(&stMutex);
    });
    usleep(50000);
    EXPECT_FALSE(bIn.load());
    EXPECT_EQ(0u, VT_OS_MutexUnLock(&stMutex));
    stSecond.join();
    EXPECT_TRUE(bIn.load());
}

}  // namespace
}  // namespace wap::test
