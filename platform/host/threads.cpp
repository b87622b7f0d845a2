// Threads and the 24-byte mutex.
#include <pthread.h>

#include <atomic>
#include <cstring>
#include <new>

#include "vt_ssp_host.h"

namespace {

constexpr uint32_t kMutexMark = 0x4D55544Du;
constexpr uint32_t kFree = 0;
constexpr uint32_t kHeld = 1;
constexpr uint32_t kHeldAndWanted = 2;

/** A pthread mutex does not fit the 24 bytes on every machine; this one does on all. */
struct Mutex {
    std::atomic<uint32_t> uiMark;
    std::atomic<uint32_t> uiState;
    uint32_t auiRest[4];
};
static_assert(sizeof(Mutex) == VT_OS_MUTEX_SIZE);
static_assert(alignof(Mutex) <= 8);
static_assert(std::atomic<uint32_t>::is_always_lock_free);

/** @return the mutex in that memory, or null when none was made there. */
Mutex *AsMutex(void *pvMutex) {
    Mutex *pstMutex = static_cast<Mutex *>(pvMutex);
    bool bOk = pstMutex != nullptr && reinterpret_cast<uintptr_t>(pvMutex) % alignof(Mutex) == 0 &&
               pstMutex->uiMark.load(std::memory_order_acquire) == kMutexMark;
    return bOk ? pstMutex : nullptr;
}

}  // namespace

uint32_t VT_OS_PthreadCreate(unsigned long *pulThreadId, const void *pvAttr,
                             void *(*pfnEntry)(void *), void *pvArg) {
    if (pfnEntry == nullptr) {
        return VT_HOST_ERR_ARGUMENT;
    }
    const pthread_attr_t *pstAttr = static_cast<const pthread_attr_t *>(pvAttr);
    pthread_attr_t stDetached;
    if (pstAttr == nullptr) {
        if (pthread_attr_init(&stDetached) != 0) {
            return VT_HOST_ERR_MEMORY;
        }
        pthread_attr_setdetachstate(&stDetached, PTHREAD_CREATE_DETACHED);
        pstAttr = &stDetached;
    }
    pthread_t stThread{};
    int iError = pthread_create(&stThread, pstAttr, pfnEntry, pvArg);
    if (pvAttr == nullptr) {
        pthread_attr_destroy(&stDetached);
    }
    if (iError != 0) {
        return VT_HOST_ERR_SYSTEM;
    }
    if (pulThreadId != nullptr) {
        *pulThreadId = static_cast<unsigned long>(stThread);
    }
    return 0;
}

uint32_t VT_OS_ModifyThreadName(const char *pcName) {
    if (pcName == nullptr) {
        return VT_HOST_ERR_ARGUMENT;
    }
    char acName[16] = {};
    memcpy(acName, pcName, strnlen(pcName, sizeof acName - 1));
    return pthread_setname_np(pthread_self(), acName) == 0 ? 0u : VT_HOST_ERR_SYSTEM;
}

uint32_t VT_OS_MutexInit(void *pvMutex) {
    if (pvMutex == nullptr || reinterpret_cast<uintptr_t>(pvMutex) % alignof(Mutex) != 0) {
        return VT_HOST_ERR_ARGUMENT;
    }
    // cppcheck-suppress unreadVariable ; stays in the memory that the caller gave
    Mutex *pstMutex = new (pvMutex) Mutex{};
    pstMutex->uiState.store(kFree, std::memory_order_relaxed);
    pstMutex->uiMark.store(kMutexMark, std::memory_order_release);
    return 0;
}

uint32_t VT_OS_MutexLock(void *pvMutex) {
    Mutex *pstMutex = AsMutex(pvMutex);
    if (pstMutex == nullptr) {
        return VT_HOST_ERR_ARGUMENT;
    }
    uint32_t uiSeen = kFree;
    if (pstMutex->uiState.compare_exchange_strong(uiSeen, kHeld, std::memory_order_acquire)) {
        return 0;
    }
    // Whoever had to wait takes it as wanted: others may still be waiting behind him.
    while (pstMutex->uiState.exchange(kHeldAndWanted, std::memory_order_acquire) != kFree) {
        pstMutex->uiState.wait(kHeldAndWanted, std::memory_order_relaxed);
    }
    return 0;
}

uint32_t VT_OS_MutexUnLock(void *pvMutex) {
    Mutex *pstMutex = AsMutex(pvMutex);
    if (pstMutex == nullptr) {
        return VT_HOST_ERR_ARGUMENT;
    }
    uint32_t uiBefore = pstMutex->uiState.exchange(kFree, std::memory_order_release);
    if (uiBefore == kHeldAndWanted) {
        pstMutex->uiState.notify_one();
    }
    return uiBefore == kFree ? VT_HOST_ERR_STATE : 0u;
}
