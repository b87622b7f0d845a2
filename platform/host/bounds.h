#ifndef WAP_HOST_BOUNDS_H
#define WAP_HOST_BOUNDS_H

#include <cstddef>
#include <cstdint>

namespace wap::host {

/** @return whether two ranges of memory share a byte; an empty range shares none. */
inline bool Overlap(const void *pvA, size_t uiLenA, const void *pvB, size_t uiLenB) {
    uintptr_t uiA = reinterpret_cast<uintptr_t>(pvA);
    uintptr_t uiB = reinterpret_cast<uintptr_t>(pvB);
    if (uiLenA == 0 || uiLenB == 0) {
        return false;
    }
    return uiA < uiB ? uiB - uiA < uiLenA : uiA - uiB < uiLenB;
}

}  // namespace wap::host
#endif
