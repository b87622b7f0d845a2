// Where threads run.
#ifndef WAP_BENCH_COMMON_PROCESSOR_H
#define WAP_BENCH_COMMON_PROCESSOR_H

#include <sys/types.h>

#include <vector>

namespace wap::bench {

/// The processors that this process may run on.
std::vector<int> AllowedCpus();

/// Keeps the calling thread, and all that it starts from now on, on some processors. Throws
/// std::runtime_error when there are none such.
void RunOn(const std::vector<int> &aiCpus);

/// The same for every thread of another process.
void RunOn(pid_t iProcess, const std::vector<int> &aiCpus);

}  // namespace wap::bench

#endif
