#include "common/processor.h"

#include <sched.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <string>

namespace wap::bench {

namespace {

void RunThreadOn(pid_t iThread, const std::vector<int> &aiCpus) {
    cpu_set_t stSet;
    CPU_ZERO(&stSet);
    for (const int iCpu : aiCpus) {
        CPU_SET(static_cast<size_t>(iCpu), &stSet);
    }
    // A thread that has ended meanwhile is no failure.
    if (sched_setaffinity(iThread, sizeof(stSet), &stSet) != 0 && errno != ESRCH) {
        throw std::runtime_error("cannot run on processor " + std::to_string(aiCpus.front()) +
                                 ": " + strerror(errno) +
                                 "; see which ones there are with: taskset -cp $$");
    }
}

}  // namespace

std::vector<int> AllowedCpus() {
    cpu_set_t stSet;
    CPU_ZERO(&stSet);
    std::vector<int> aiCpus;
    if (sched_getaffinity(0, sizeof(stSet), &stSet) == 0) {
        for (int iCpu = 0; iCpu < CPU_SETSIZE; ++iCpu) {
            if (CPU_ISSET(static_cast<size_t>(iCpu), &stSet)) {
                aiCpus.push_back(iCpu);
            }
        }
    }
    return aiCpus;
}

void RunOn(const std::vector<int> &aiCpus) {
    RunThreadOn(0, aiCpus);
}

void RunOn(pid_t iProcess, const std::vector<int> &aiCpus) {
    const std::string acTasks = "/proc/" + std::to_string(iProcess) + "/task";
    for (const auto &stTask : std::filesystem::directory_iterator(acTasks)) {
        RunThreadOn(std::stoi(stTask.path().filename().string()), aiCpus);
    }
}

}  // namespace wap::bench
