#include <atomic>
#include <fstream>
#include <thread>
#include <vector>

#include "runtime_dir.h"

namespace wap::test {
namespace {

class Figures : public RuntimeDirTest {};

TEST_F(Figures, TheBusyRateIsAPercentageAndTakesTheSample) {
    uint32_t uiRate = 1000;
    Stopwatch stWatch;
    EXPECT_EQ(0u, VT_OS_GetCPUBusyRateByTime(100, &uiRate));
    EXPECT_GE(stWatch.Ms(), 99);
    EXPECT_LE(uiRate, 100u);
}

TEST_F(Figures, ABusyMachineShows) {
    std::atomic<bool> bStop{false};
    std::vector<std::thread> astThreads;
    for (unsigned i = 0; i < std::thread::hardware_concurrency(); i++) {
        astThreads.emplace_back([&] {
            while (!bStop.load(std::memory_order_relaxed)) {
            }
        });
    }
    uint32_t uiRate = 0;
    EXPECT_EQ(0u, VT_OS_GetCPUBusyRateByTime(300, &uiRate));
    bStop.store(true);
    for (std::thread &stThread : astThreads) {
        stThread.join();
    }
    EXPECT_GE(uiRate, 25u) << "every processor had something to do all the time";
}

TEST_F(Figures, TheBusyRateRefusesBadArguments) {
    uint32_t uiRate = 1000;
    EXPECT_EQ(VT_HOST_ERR_ARGUMENT, VT_OS_GetCPUBusyRateByTime(10, nullptr));
    EXPECT_EQ(VT_HOST_ERR_ARGUMENT, VT_OS_GetCPUBusyRateByTime(0, &uiRate));
    EXPECT_EQ(VT_HOST_ERR_ARGUMENT, VT_OS_GetCPUBusyRateByTime(10001, &uiRate));
    EXPECT_EQ(1000u, uiRate);
}

TEST_F(Figures, TheMemoryRateIsAPercentage) {
    uint32_t uiRate = 1000;
    EXPECT_EQ(0u, VT_OS_GetMemUseRate(&uiRate));
    EXPECT_LE(uiRate, 100u);
    EXPECT_EQ(VT_HOST_ERR_ARGUMENT, VT_OS_GetMemUseRate(nullptr));
}

TEST_F(Figures, FeaturesAreThoseOfTheFile) {
    EXPECT_EQ(0u, VT_Feature_IsSupport(314)) << "no file";
    std::ofstream(Path("features")) << "# Wi-Fi 5\n314 # and 6\n  20 21\n-7\n4x";
    EXPECT_EQ(1u, VT_Feature_IsSupport(314));
    EXPECT_EQ(1u, VT_Feature_IsSupport(20));
    EXPECT_EQ(1u, VT_Feature_IsSupport(21));
    EXPECT_EQ(0u, VT_Feature_IsSupport(5)) << "in a comment";
    EXPECT_EQ(0u, VT_Feature_IsSupport(6)) << "in a comment";
    EXPECT_EQ(0u, VT_Feature_IsSupport(7));
    EXPECT_EQ(0u, VT_Feature_IsSupport(4));
    EXPECT_EQ(0u, VT_Feature_IsSupport(31));
    std::ofstream(Path("features")) << "4\n";
    EXPECT_EQ(0u, VT_Feature_IsSupport(314)) << "read anew at each call";
    EXPECT_EQ(1u, VT_Feature_IsSupport(4));
}

}  // namespace
}  // namespace wap::test
