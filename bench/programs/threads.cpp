// Many Java threads at once.
#include <unistd.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "common/measure.h"
#include "common/ready_answers.h"
#include "peers/gateway.h"

using namespace wap::bench;

namespace {

constexpr char kPurpose[] =
    "Measures how many calls several Java threads make together, on two processors:\n"
    "  threads/1/one_cpu   one thread, with all that takes part kept on one processor\n"
    "  threads/N/two_cpus  N threads, with all that takes part on two processors\n"
    "A single thread on two processors is fast or slow by where the system puts the two ends.";

constexpr int kCallsOfAll = 8000;

void RegisterThreads(JavaVm &stJava, jobject jCall, const std::vector<pid_t> &aiGateway,
                     int iThreads, const std::vector<int> &aiCpus) {
    const std::string acName =
        "threads/" + std::to_string(iThreads) + (aiCpus.size() == 1 ? "/one_cpu" : "/two_cpus");
    const auto fnMeasure = [=, &stJava](benchmark::State &stState) {
        RunOn(getpid(), aiCpus);
        for (const pid_t iProcess : aiGateway) {
            RunOn(iProcess, aiCpus);
        }
        int64_t llTime = 0;
        const int iCallsEach = kCallsOfAll / iThreads;
        for ([[maybe_unused]] auto stIteration : stState) {
            const int64_t llRun = stJava.TimeThreads(jCall, iThreads, iCallsEach);
            stState.SetIterationTime(static_cast<double>(llRun) / 1e9);
            llTime += llRun;
        }
        const auto dCalls = static_cast<double>(stState.iterations() * iCallsEach * iThreads);
        stState.counters["calls_per_s"] = dCalls / (static_cast<double>(llTime) / 1e9);
    };
    benchmark::RegisterBenchmark(acName.c_str(), fnMeasure)
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond);
}

std::vector<int> TwoCpus(int iFirst) {
    for (const int iCpu : AllowedCpus()) {
        if (iCpu != iFirst) {
            return {iFirst, iCpu};
        }
    }
    throw std::runtime_error("this needs two processors that the process may run on");
}

void SetUp(Surroundings &stAround) {
    const std::vector<int> aiCpus = TwoCpus(stAround.iCpu);
    RunOn(aiCpus);
    const std::vector<pid_t> aiGateway = StartGateway(stAround.stChildren);
    stAround.StartJava();
    JavaVm &stJava = *stAround.pstJava;
    const jobject jCall = stJava.Prepare("bridge", "mac", "");
    CheckAnswer("the bridge", stJava.Answer(jCall), AnswerText(Work::kMac));
    RegisterThreads(stJava, jCall, aiGateway, 1, {stAround.iCpu});
    for (const int iThreads : {1, 2, 4}) {
        RegisterThreads(stJava, jCall, aiGateway, iThreads, aiCpus);
    }
}

}  // namespace

int main(int iArgCount, char **ppcArgs) {
    return RunProgram(iArgCount, ppcArgs, kPurpose, SetUp);
}
