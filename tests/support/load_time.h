// How long the tests under load run.
#ifndef WAP_TEST_LOAD_TIME_H
#define WAP_TEST_LOAD_TIME_H

#include <chrono>
#include <cstdlib>

namespace wap::test {

/// The whole seconds that WAP_STRESS_SECONDS asks for, from 1 to a day; the usual time without it.
inline std::chrono::milliseconds LoadTime(std::chrono::milliseconds stUsual) {
    constexpr long kMaxSeconds = 86400;
    const char *pcSeconds = std::getenv("WAP_STRESS_SECONDS");
    if (pcSeconds == nullptr) {
        return stUsual;
    }
    char *pcEnd = nullptr;
    const long iSeconds = std::strtol(pcSeconds, &pcEnd, 10);
    return *pcEnd == '\0' && iSeconds > 0 && iSeconds <= kMaxSeconds
               ? std::chrono::seconds(iSeconds)
               : stUsual;
}

}  // namespace wap::test
#endif
