// Figures of the machine, read from /proc, and the features that a configuration file grants.
#include <time.h>

#include <algorithm>
#include <charconv>
#include <cstring>
#include <iterator>
#include <string_view>

#include "host_util.h"

using wap::host::ReadWhole;
using wap::host::RuntimePath;

namespace {

constexpr uint32_t kMaxSampleMs = 10000;

struct CpuTimes {
    uint64_t uiTotal;
    uint64_t uiIdle;
};

/** Reads decimal numbers, blanks before each. @return how many there are, uiMax at most */
size_t ReadNumbers(std::string_view strText, uint64_t *puiNumbers, size_t uiMax) {
    const char *pcAt = strText.data();
    const char *pcEnd = pcAt + strText.size();
    for (size_t i = 0; i < uiMax; i++) {
        pcAt = std::find_if(pcAt, pcEnd, [](char cNext) { return cNext != ' '; });
        const auto stRead = std::from_chars(pcAt, pcEnd, puiNumbers[i]);
        if (stRead.ec != std::errc()) {
            return i;
        }
        pcAt = stRead.ptr;
    }
    return uiMax;
}

bool ReadCpuTimes(CpuTimes &stTimes) {
    constexpr std::string_view kKey = "cpu ";
    std::string strText;
    uint64_t auiPart[8] = {};
    if (!ReadWhole("/proc/stat", strText) || strText.compare(0, kKey.size(), kKey) != 0 ||
        ReadNumbers(std::string_view(strText).substr(kKey.size()), auiPart, std::size(auiPart)) <
            4) {
        return false;
    }
    stTimes = {};
    for (uint64_t uiPart : auiPart) {
        stTimes.uiTotal += uiPart;
    }
    stTimes.uiIdle = auiPart[3] + auiPart[4];  // idle, and waiting for input or output
    return true;
}

void Sleep(uint32_t uiMilliseconds) {
    timespec stLeft{};
    stLeft.tv_sec = static_cast<time_t>(uiMilliseconds / 1000);
    stLeft.tv_nsec = static_cast<long>(uiMilliseconds % 1000) * 1000000L;
    while (clock_nanosleep(CLOCK_MONOTONIC, 0, &stLeft, &stLeft) == EINTR) {
    }
}

bool ReadMemInfo(std::string_view strText, std::string_view strKey, uint64_t &uiValue) {
    size_t uiAt = strText.find(strKey);
    return uiAt != std::string_view::npos &&
           ReadNumbers(strText.substr(uiAt + strKey.size()), &uiValue, 1) == 1;
}

}  // namespace

uint32_t VT_OS_GetCPUBusyRateByTime(uint32_t uiSample, uint32_t *puiRate) {
    if (puiRate == nullptr || uiSample == 0 || uiSample > kMaxSampleMs) {
        return VT_HOST_ERR_ARGUMENT;
    }
    CpuTimes stBefore{};
    CpuTimes stAfter{};
    if (!ReadCpuTimes(stBefore)) {
        return VT_HOST_ERR_SYSTEM;
    }
    // The kernel counts in ticks of 10 ms, so a short sample may see none: wait for one then.
    constexpr int kMoreTries = 10;
    uint32_t uiWait = uiSample;
    for (int iTry = 0; iTry < kMoreTries; iTry++) {
        Sleep(uiWait);
        if (!ReadCpuTimes(stAfter)) {
            return VT_HOST_ERR_SYSTEM;
        }
        if (stAfter.uiTotal > stBefore.uiTotal) {
            break;
        }
        uiWait = 10;
    }
    uint64_t uiTotal = stAfter.uiTotal > stBefore.uiTotal ? stAfter.uiTotal - stBefore.uiTotal : 0;
    // The waiting time may shrink between two readings, so the difference is bounded both ways.
    uint64_t uiIdle = stAfter.uiIdle > stBefore.uiIdle ? stAfter.uiIdle - stBefore.uiIdle : 0;
    uiIdle = std::min(uiIdle, uiTotal);
    *puiRate = uiTotal == 0 ? 0u : static_cast<uint32_t>((uiTotal - uiIdle) * 100 / uiTotal);
    return 0;
}

uint32_t VT_OS_GetMemUseRate(uint32_t *puiRate) {
    if (puiRate == nullptr) {
        return VT_HOST_ERR_ARGUMENT;
    }
    std::string strText;
    uint64_t uiTotal = 0;
    uint64_t uiFree = 0;
    if (!ReadWhole("/proc/meminfo", strText) || !ReadMemInfo(strText, "MemTotal:", uiTotal) ||
        !ReadMemInfo(strText, "MemAvailable:", uiFree) || uiTotal == 0) {
        return VT_HOST_ERR_SYSTEM;
    }
    *puiRate = static_cast<uint32_t>((uiTotal - std::min(uiFree, uiTotal)) * 100 / uiTotal);
    return 0;
}

uint32_t VT_Feature_IsSupport(uint32_t uiFeature) {
    std::string strPath = RuntimePath("features");
    std::string strText;
    if (strPath.empty() || !ReadWhole(strPath.c_str(), strText)) {
        return 0;
    }
    char *pcNextLine = nullptr;
    char *pcLine = VT_OS_StrtokR(strText.data(), "\r\n", &pcNextLine);
    for (; pcLine != nullptr; pcLine = VT_OS_StrtokR(nullptr, "\r\n", &pcNextLine)) {
        pcLine[strcspn(pcLine, "#")] = '\0';  // the rest is a comment
        char *pcNextWord = nullptr;
        const char *pcWord = VT_OS_StrtokR(pcLine, " \t", &pcNextWord);
        for (; pcWord != nullptr; pcWord = VT_OS_StrtokR(nullptr, " \t", &pcNextWord)) {
            uint32_t uiListed = 0;
            if (VT_OS_StrToUInt32(pcWord, &uiListed) == 0 && uiListed == uiFeature) {
                return 1;
            }
        }
    }
    return 0;
}
