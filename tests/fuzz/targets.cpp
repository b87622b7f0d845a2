#include "fuzz/targets.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace wap::test {

void Require(bool bHolds, const char *pcRule) {
    if (!bHolds) {
        (void)std::fprintf(stderr, "Broken: %s\n", pcRule);
        std::abort();
    }
}

void RequireClean(World &stWorld) {
    for (const std::string &sComplaint : stWorld.TakeComplaints()) {
        Require(false, sComplaint.c_str());
    }
}

std::string TextIn(const uint8_t *pucData, size_t uiSize) {
    const auto *pcText = reinterpret_cast<const char *>(pucData);
    return uiSize == 0 ? std::string() : std::string(pcText, strnlen(pcText, uiSize));
}

}  // namespace wap::test
