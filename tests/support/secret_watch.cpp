#include "support/secret_watch.h"

#include <pthread.h>
#include <sys/mman.h>

#include "support/sanitizers.h"
#ifdef WAP_ADDRESS_SANITIZER
#include <sanitizer/asan_interface.h>
#endif

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include "support/world.h"

namespace wap::test {

void SecretWatch::Written(const void *pvAt, size_t uiLen) {
    const std::string_view sBytes(static_cast<const char *>(pvAt), uiLen);
    for (const std::string &sSecret : asSecrets) {
        for (size_t uiPos = sBytes.find(sSecret); uiPos != std::string_view::npos;
             uiPos = sBytes.find(sSecret, uiPos + 1)) {
            astPlaces.push_back({reinterpret_cast<uintptr_t>(pvAt) + uiPos, sSecret.size()});
        }
    }
}

void SecretWatch::Wiped(const void *pvAt, size_t uiLen) {
    const uintptr_t ulFrom = reinterpret_cast<uintptr_t>(pvAt);
    std::erase_if(astPlaces, [&](const Place &stPlace) {
        return stPlace.ulAt >= ulFrom && stPlace.ulAt + stPlace.uiLen <= ulFrom + uiLen;
    });
}

void SecretWatch::CheckFreed(const void *pvAt, size_t uiLen) {
    if (uiLen != 0) {
        CheckShown({static_cast<const char *>(pvAt), uiLen}, "a released block");
    }
}

void SecretWatch::CheckShown(std::string_view sText, const char *pcWhere) {
    for (const std::string &sSecret : asSecrets) {
        if (sText.find(sSecret) != std::string_view::npos) {
            asSeen.push_back("secret '" + sSecret + "' in " + pcWhere);
        }
    }
}

std::vector<std::string> SecretWatch::TakeUnwiped() {
    std::vector<std::string> asAll = std::exchange(asSeen, {});
    for (const Place &stPlace : astPlaces) {
        asAll.push_back("a secret of " + std::to_string(stPlace.uiLen) + " bytes was not wiped");
    }
    astPlaces.clear();
    return asAll;
}

namespace {

constexpr size_t kStackSize = 1 << 20;
/// Room for the frames of the look itself, so that they overwrite nothing of what is looked at.
constexpr size_t kGap = 1 << 14;

struct Job {
    const std::function<void()> *pfnCall;
    const std::vector<std::string> *pasTexts;
    World *pstWorld;
    const volatile char *pcStack;
    bool bKept;
};

// Dead frames may still carry a sanitizer's marks, hence without it.
__attribute__((noinline, no_sanitize("address", "thread", "undefined"))) bool Holds(
    const volatile char *pcFrom, size_t uiLen, const std::string &sText) {
    const char *pcText = sText.data();
    const size_t uiText = sText.size();
    for (size_t i = 0; i + uiText <= uiLen; ++i) {
        size_t j = 0;
        while (j < uiText && pcFrom[i + j] == pcText[j]) {
            ++j;
        }
        if (j == uiText) {
            return true;
        }
    }
    return false;
}

#ifdef WAP_ADDRESS_SANITIZER
/// The same for the place where AddressSanitizer keeps locals when it looks for their use after
/// the return; false where it does not. Eleven sizes of frames have a part of it each, as large as
/// the stack; pages that no frame has touched are passed over.
__attribute__((noinline, no_sanitize("address"))) bool FakeStackHolds(const std::string &sText) {
    const auto *pcFake = static_cast<const volatile char *>(__asan_get_current_fake_stack());
    if (pcFake == nullptr) {
        return false;
    }
    constexpr size_t kPage = 4096;
    constexpr size_t kPages = (11 * kStackSize + (kStackSize >> 5)) / kPage + 1;
    static unsigned char s_aucTouched[kPages];
    if (mincore(const_cast<char *>(pcFake), kPages * kPage, s_aucTouched) != 0) {
        std::perror("mincore");
        std::abort();
    }
    for (size_t uiFrom = 0; uiFrom < kPages; ++uiFrom) {
        size_t uiTo = uiFrom;
        while (uiTo < kPages && (s_aucTouched[uiTo] & 1) != 0) {
            ++uiTo;
        }
        if (uiTo > uiFrom && Holds(pcFake + uiFrom * kPage, (uiTo - uiFrom) * kPage, sText)) {
            return true;
        }
        uiFrom = uiTo;
    }
    return false;
}
#else
bool FakeStackHolds(const std::string &) {
    return false;
}
#endif

/// Calls behind a gap that no later call of the caller's reaches through.
__attribute__((noinline)) void CallBelowGap(const std::function<void()> &fnCall) {
    [[maybe_unused]] volatile char acGap[kGap];
    acGap[0] = 0;
    fnCall();
    acGap[kGap - 1] = 0;  // Keeps the gap there until the call has ended.
}

void *RunJob(void *pvJob) {
    Job &stJob = *static_cast<Job *>(pvJob);
    World::SetCurrent(stJob.pstWorld);
    CallBelowGap(*stJob.pfnCall);
    for (const std::string &sText : *stJob.pasTexts) {
        stJob.bKept =
            stJob.bKept || Holds(stJob.pcStack, kStackSize, sText) || FakeStackHolds(sText);
    }
    World::SetCurrent(nullptr);
    return nullptr;
}

}  // namespace

bool StackKeeps(const std::function<void()> &fnCall, const std::vector<std::string> &asTexts) {
    void *pvStack = mmap(nullptr, kStackSize, PROT_READ | PROT_WRITE,
                         MAP_PRIVATE | MAP_ANONYMOUS | MAP_STACK, -1, 0);
    if (pvStack == MAP_FAILED) {
        std::perror("mmap");
        std::abort();
    }
    pthread_attr_t stAttr;
    pthread_attr_init(&stAttr);
    if (pthread_attr_setstack(&stAttr, pvStack, kStackSize) != 0) {
        std::perror("pthread_attr_setstack");
        std::abort();
    }
    Job stJob{&fnCall, &asTexts, World::Current(), static_cast<const char *>(pvStack), false};
    pthread_t stThread;
    if (pthread_create(&stThread, &stAttr, RunJob, &stJob) != 0) {
        std::perror("pthread_create");
        std::abort();
    }
    pthread_join(stThread, nullptr);
    pthread_attr_destroy(&stAttr);
    munmap(pvStack, kStackSize);
    return stJob.bKept;
}

}  // namespace wap::test
