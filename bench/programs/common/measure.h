// What the programs that measure have in common.
#ifndef WAP_BENCH_COMMON_MEASURE_H
#define WAP_BENCH_COMMON_MEASURE_H

#include <benchmark/benchmark.h>

#include <cstdint>
#include <functional>
#include <span>
#include <string>

#include "common/children.h"
#include "common/java_vm.h"
#include "common/processor.h"

namespace wap::bench {

/// Makes as many calls as there are places, and puts down how many nanoseconds each took.
using TimeCalls = std::function<void(std::span<int64_t> allNanoseconds)>;

/**
 * Registers a benchmark. Its counters are the percentiles of the calls' times in microseconds,
 * p50_us and p90_us, and calls_per_s.
 * @param uiBatch how many calls are made between two looks at the clock of the library
 */
void Register(const std::string &acName, size_t uiBatch, TimeCalls fnTime);

/// The monotonic clock, which Java's nanoTime reads as well.
int64_t NowNanoseconds();

/// Times calls of C++ one by one, as the Java side times its own.
template <class Call>
TimeCalls Timing(Call fnCall) {
    return [fnCall](std::span<int64_t> allNanoseconds) mutable {
        int64_t llBefore = NowNanoseconds();
        for (int64_t &llTime : allNanoseconds) {
            fnCall();
            const int64_t llAfter = NowNanoseconds();
            llTime = llAfter - llBefore;
            llBefore = llAfter;
        }
    };
}

/// Ends the program unless a peer answers what it should.
void CheckAnswer(const std::string &acPeer, const std::string &acAnswer,
                 const std::string &acWanted);

/// What a program has around it until it ends.
struct Surroundings {
    int iCpu;  ///< the processor of all that is kept on one
    RuntimeFolder stFolder{};
    Children stChildren{};
    /// Made when all children have been started, as it has threads.
    JavaVm *pstJava = nullptr;

    /// Keeps the program on its processor, with all that it starts from now on.
    void StayOnOneCpu() const { RunOn({iCpu}); }
    /// It is never taken down: that would wait for threads that go on for ever.
    void StartJava() { pstJava = new JavaVm; }
};

/// Registers a call of Java's as a benchmark, after a look at what it answers.
void RegisterJava(Surroundings &stAround, const std::string &acName, size_t uiBatch, jobject jCall,
                  const std::string &acWanted);

/**
 * Runs a program: takes its options out, sets all up, and runs the benchmarks.
 * @param pcPurpose what --help says of the program
 * @param fnSetUp   registers the benchmarks; called before there is any thread
 * @return the exit code
 */
int RunProgram(int iArgCount, char **ppcArgs, const char *pcPurpose,
               const std::function<void(Surroundings &)> &fnSetUp);

}  // namespace wap::bench

#endif
