// The allocator, and the bounded memory functions.
#include <cstdlib>
#include <cstring>

#include "bounds.h"
#include "vt_ssp_host.h"

using wap::host::Overlap;

// File and line serve the gateway's memory accounting. A PC has better tools for that.
void *VT_OS_MemMallocD(uint32_t uiSize, const char *, uint32_t) {
    return uiSize == 0 ? nullptr : malloc(uiSize);
}

void *VT_OS_MemMallocSet(uint32_t uiSize, const char *, uint32_t) {
    return uiSize == 0 ? nullptr : calloc(1, uiSize);
}

void VT_OS_MemFreeD(void *pvBlock, const char *, uint32_t) {
    free(pvBlock);
}

uint32_t VT_OS_MemSet_S(void *pvDst, uint32_t uiDstSize, int32_t iByte, uint32_t uiCount) {
    if (pvDst == nullptr || uiCount > uiDstSize) {
        return VT_HOST_ERR_ARGUMENT;
    }
    memset(pvDst, iByte, uiCount);
    return 0;
}

uint32_t VT_OS_MemCpy_S(void *pvDst, uint32_t uiDstSize, const void *pvSrc, uint32_t uiCount) {
    if (pvDst == nullptr || pvSrc == nullptr || uiCount > uiDstSize ||
        Overlap(pvDst, uiCount, pvSrc, uiCount)) {
        return VT_HOST_ERR_ARGUMENT;
    }
    memcpy(pvDst, pvSrc, uiCount);
    return 0;
}
