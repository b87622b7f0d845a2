#include "common/measure.h"

#include <stdio.h>
#include <string.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <exception>
#include <numeric>
#include <optional>
#include <stdexcept>
#include <utility>
#include <vector>

namespace wap::bench {

namespace {

constexpr int kExitUsage = 2;

double Percentile(const std::vector<int64_t> &allSorted, size_t uiPercent) {
    if (allSorted.empty()) {
        return 0;
    }
    return static_cast<double>(allSorted[(allSorted.size() - 1) * uiPercent / 100]) / 1000.0;
}

void Measure(benchmark::State &stState, size_t uiBatch, const TimeCalls &fnTime) {
    std::vector<int64_t> allTimes;
    std::vector<int64_t> allBatch(uiBatch);
    while (stState.KeepRunningBatch(static_cast<benchmark::IterationCount>(uiBatch))) {
        try {
            fnTime(allBatch);
        } catch (const std::exception &stFailure) {
            stState.SkipWithError(stFailure.what());
            return;
        }
        stState.SetIterationTime(
            static_cast<double>(std::accumulate(allBatch.begin(), allBatch.end(), int64_t{0})) /
            1e9);
        allTimes.insert(allTimes.end(), allBatch.begin(), allBatch.end());
    }
    const double dSeconds =
        static_cast<double>(std::accumulate(allTimes.begin(), allTimes.end(), int64_t{0})) / 1e9;
    std::sort(allTimes.begin(), allTimes.end());
    stState.counters["p50_us"] = Percentile(allTimes, 50);
    stState.counters["p90_us"] = Percentile(allTimes, 90);
    stState.counters["calls_per_s"] = static_cast<double>(allTimes.size()) / dSeconds;
}

/// Takes the program's own option out of the arguments.
std::optional<int> TakeCpu(int &iArgCount, char **ppcArgs) {
    constexpr char kOption[] = "--cpu=";
    std::optional<int> iCpu;
    int iKept = 1;
    for (int i = 1; i < iArgCount; ++i) {
        if (strncmp(ppcArgs[i], kOption, strlen(kOption)) != 0) {
            ppcArgs[iKept++] = ppcArgs[i];
            continue;
        }
        const char *pcNumber = ppcArgs[i] + strlen(kOption);
        const char *pcEnd = pcNumber + strlen(pcNumber);
        int iNumber = -1;
        const auto [pcRead, eError] = std::from_chars(pcNumber, pcEnd, iNumber);
        const std::vector<int> aiCpus = AllowedCpus();
        if (eError != std::errc() || pcRead != pcEnd ||
            std::find(aiCpus.begin(), aiCpus.end(), iNumber) == aiCpus.end()) {
            throw std::invalid_argument(
                "--cpu= needs the number of a processor that this process "
                "may run on, not \"" +
                std::string(pcNumber) + "\"");
        }
        iCpu = iNumber;
    }
    iArgCount = iKept;
    return iCpu;
}

bool AsksForHelp(int iArgCount, char **ppcArgs) {
    return std::any_of(ppcArgs + 1, ppcArgs + iArgCount, [](const char *pcArgument) {
        return strcmp(pcArgument, "--help") == 0 || strcmp(pcArgument, "-h") == 0;
    });
}

void PrintHelp(const char *pcProgram, const char *pcPurpose) {
    printf(
        "Usage: %s [--cpu=N] [--benchmark_OPTION]...\n\n%s\n\n"
        "  --cpu=N  the processor to measure on, instead of the last one that may be used\n\n"
        "bench/run runs all programs as they are meant to be run. Options of Google\n"
        "Benchmark, among others: --benchmark_filter=REGEX --benchmark_repetitions=N\n"
        "--benchmark_min_time=SECONDS --benchmark_list_tests --benchmark_out=FILE\n",
        pcProgram, pcPurpose);
}

}  // namespace

int64_t NowNanoseconds() {
    timespec stNow{};
    clock_gettime(CLOCK_MONOTONIC, &stNow);
    return int64_t{stNow.tv_sec} * 1000000000 + stNow.tv_nsec;
}

void Register(const std::string &acName, size_t uiBatch, TimeCalls fnTime) {
    benchmark::RegisterBenchmark(acName.c_str(),
                                 [uiBatch, fnTime = std::move(fnTime)](benchmark::State &stState) {
                                     Measure(stState, uiBatch, fnTime);
                                 })
        ->UseManualTime()
        ->Unit(benchmark::kMicrosecond);
}

void CheckAnswer(const std::string &acPeer, const std::string &acAnswer,
                 const std::string &acWanted) {
    if (acAnswer != acWanted) {
        throw std::runtime_error(acPeer + " answers \"" + acAnswer.substr(0, 200) +
                                 "\" and not \"" + acWanted.substr(0, 200) + "\"");
    }
}

void RegisterJava(Surroundings &stAround, const std::string &acName, size_t uiBatch, jobject jCall,
                  const std::string &acWanted) {
    JavaVm &stJava = *stAround.pstJava;
    CheckAnswer(acName, stJava.Answer(jCall), acWanted);
    Register(acName, uiBatch, [&stJava, jCall](std::span<int64_t> allNanoseconds) {
        stJava.Time(jCall, allNanoseconds);
    });
}

int RunProgram(int iArgCount, char **ppcArgs, const char *pcPurpose,
               const std::function<void(Surroundings &)> &fnSetUp) {
    if (AsksForHelp(iArgCount, ppcArgs)) {
        PrintHelp(ppcArgs[0], pcPurpose);
        return 0;
    }
    int iExit = 0;
    try {
        const std::optional<int> iCpu = TakeCpu(iArgCount, ppcArgs);
        benchmark::Initialize(&iArgCount, ppcArgs);
        if (benchmark::ReportUnrecognizedArguments(iArgCount, ppcArgs)) {
            return kExitUsage;
        }
        Surroundings stAround = {iCpu.value_or(AllowedCpus().back())};
        fnSetUp(stAround);
        benchmark::RunSpecifiedBenchmarks();
    } catch (const std::invalid_argument &stFailure) {
        fprintf(stderr, "%s: %s (--help says more)\n", ppcArgs[0], stFailure.what());
        iExit = kExitUsage;
    } catch (const std::exception &stFailure) {
        fprintf(stderr, "%s: %s\n", ppcArgs[0], stFailure.what());
        iExit = 1;
    }
    // Threads of the virtual machine and of the libraries go on for ever.
    fflush(nullptr);
    _exit(iExit);
}

}  // namespace wap::bench
