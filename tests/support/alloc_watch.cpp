#include "support/alloc_watch.h"

#include <dlfcn.h>
#include <locale.h>
#include <stdarg.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "support/world.h"

extern "C" locale_t __real_newlocale(int iMask, const char *pcName, locale_t stBase);

namespace wap::test {

namespace {

std::string Describe(const AllocPlace &stPlace) {
    return stPlace.sFile.empty() ? "" : stPlace.sFile + ":" + std::to_string(stPlace.uiLine);
}

bool EndsWith(const std::string &sText, const std::string &sEnd) {
    return sText.size() > sEnd.size() &&
           sText.compare(sText.size() - sEnd.size(), sEnd.size(), sEnd) == 0;
}

}  // namespace

std::string PlaceFault(const char *pcFile, uint32_t uiLine) {
    if (pcFile == nullptr) {
        return "no file name";
    }
    const std::string sFile = pcFile;
    if (sFile.find('/') != std::string::npos) {
        return "a path instead of a base name: " + sFile;
    }
    if (!EndsWith(sFile, ".cpp") && !EndsWith(sFile, ".h")) {
        return "no source's name: \"" + sFile + "\"";
    }
    return uiLine == 0 ? "no line in " + sFile : "";
}

void AllocWatch::Add(void *pvBlock, size_t uiSize, Origin eOrigin, const AllocPlace &stPlace) {
    astLog.push_back({eOrigin, uiSize, stPlace});
    mapLive[pvBlock] = {uiSize, eOrigin, stPlace};
}

void AllocWatch::ClearRecords() {
    astLog.clear();
    astReleases.clear();
}

bool AllocWatch::Remove(void *pvBlock, Origin *peOrigin) {
    const auto it = mapLive.find(pvBlock);
    if (it == mapLive.end()) {
        return false;
    }
    if (peOrigin != nullptr) {
        *peOrigin = it->second.eOrigin;
    }
    mapLive.erase(it);
    return true;
}

size_t AllocWatch::SizeOf(void *pvBlock) const {
    const auto it = mapLive.find(pvBlock);
    return it == mapLive.end() ? 0 : it->second.uiSize;
}

std::vector<std::string> AllocWatch::TakeLive() {
    std::vector<std::string> asTexts;
    for (const auto &[pvBlock, stBlock] : mapLive) {
        asTexts.push_back(std::to_string(stBlock.uiSize) + " bytes " + Describe(stBlock.stPlace));
    }
    mapLive.clear();
    return asTexts;
}

namespace {

/// True when this allocation shall fail.
bool Refused(std::string_view sName = kMalloc) {
    World *pstWorld = World::Current();
    if (pstWorld == nullptr || !pstWorld->Hit(Op::kAlloc, sName)) {
        return false;
    }
    errno = ENOMEM;
    return true;
}

void *Noted(void *pvBlock, size_t uiSize) {
    World *pstWorld = World::Current();
    if (pstWorld != nullptr && pvBlock != nullptr) {
        pstWorld->stAllocs.Add(pvBlock, uiSize, Origin::kMalloc);
    }
    return pvBlock;
}

/// Overwrites what a new block, or the new part of one, happens to hold: it may be a text of the
/// test's own, which must not be taken for one that the code under test left there.
void Soil(void *pvBlock, size_t uiFrom, size_t uiTo) {
    if (World::Current() != nullptr && pvBlock != nullptr && uiFrom < uiTo) {
        std::memset(static_cast<char *>(pvBlock) + uiFrom, 0xA5, uiTo - uiFrom);
    }
}

void AboutToFree(void *pvBlock) {
    World *pstWorld = World::Current();
    if (pstWorld == nullptr || pvBlock == nullptr) {
        return;
    }
    pstWorld->stSecrets.CheckFreed(pvBlock, pstWorld->stAllocs.SizeOf(pvBlock));
    Origin eOrigin = Origin::kMalloc;
    if (pstWorld->stAllocs.Remove(pvBlock, &eOrigin) && eOrigin == Origin::kPlatform) {
        pstWorld->Violation("a platform block was released with free");
    }
}

/// The C locale is a constant of the C library: to have it, or a copy of it, takes no memory.
bool IsCLocale(locale_t stLocale) {
    static const locale_t s_stC = __real_newlocale(LC_ALL_MASK, "C", nullptr);
    return stLocale == s_stC;
}

/// Checks and keeps what a call of the platform's allocator says of its place.
AllocPlace PlaceOf(World *pstWorld, const char *pcCall, const char *pcFile, uint32_t uiLine) {
    const std::string sFault = PlaceFault(pcFile, uiLine);
    if (pstWorld != nullptr && !sFault.empty()) {
        pstWorld->Violation(std::string(pcCall) + " was told " + sFault);
    }
    return {pcFile == nullptr ? "?" : pcFile, uiLine};
}

}  // namespace
}  // namespace wap::test

extern "C" {

void *__real_malloc(size_t uiSize);
void *__real_calloc(size_t uiCount, size_t uiSize);
void *__real_realloc(void *pvBlock, size_t uiSize);
char *__real_strdup(const char *pcText);
void __real_free(void *pvBlock);
int __real_vasprintf(char **ppcOut, const char *pcFmt, va_list stArgs);
locale_t __real_duplocale(locale_t stLocale);
void *__real_dlopen(const char *pcName, int iFlags);
void *__real_dlsym(void *pvHandle, const char *pcName);

void *__wrap_malloc(size_t uiSize) {
    if (wap::test::Refused()) {
        return nullptr;
    }
    void *pvBlock = __real_malloc(uiSize);
    wap::test::Soil(pvBlock, 0, uiSize);
    return wap::test::Noted(pvBlock, uiSize);
}

void *__wrap_calloc(size_t uiCount, size_t uiSize) {
    if (wap::test::Refused()) {
        return nullptr;
    }
    return wap::test::Noted(__real_calloc(uiCount, uiSize), uiCount * uiSize);
}

void *__wrap_realloc(void *pvBlock, size_t uiSize) {
    wap::test::World *pstWorld = wap::test::World::Current();
    if (pstWorld == nullptr) {
        return __real_realloc(pvBlock, uiSize);
    }
    if (wap::test::Refused()) {
        return nullptr;
    }
    const size_t uiBefore = pstWorld->stAllocs.SizeOf(pvBlock);
    wap::test::AboutToFree(pvBlock);
    void *pvNew = __real_realloc(pvBlock, uiSize);
    // A block of unknown size came from elsewhere; what it holds counts.
    if (pvBlock == nullptr || uiBefore != 0) {
        wap::test::Soil(pvNew, uiBefore, uiSize);
    }
    return wap::test::Noted(pvNew, uiSize);
}

char *__wrap_strdup(const char *pcText) {
    if (wap::test::Refused()) {
        return nullptr;
    }
    return static_cast<char *>(wap::test::Noted(__real_strdup(pcText), std::strlen(pcText) + 1));
}

void __wrap_free(void *pvBlock) {
    wap::test::AboutToFree(pvBlock);
    __real_free(pvBlock);
}

int __wrap_vasprintf(char **ppcOut, const char *pcFmt, va_list stArgs) {
    if (wap::test::Refused()) {
        return -1;
    }
    const int iLen = __real_vasprintf(ppcOut, pcFmt, stArgs);
    if (iLen >= 0) {
        wap::test::Noted(*ppcOut, static_cast<size_t>(iLen) + 1);
    }
    return iLen;
}

int __wrap___vasprintf_chk(char **ppcOut, int, const char *pcFmt, va_list stArgs) {
    return __wrap_vasprintf(ppcOut, pcFmt, stArgs);
}

locale_t __wrap_newlocale(int iMask, const char *pcName, locale_t stBase) {
    const bool bFree =
        std::strcmp(pcName, "C") == 0 && (stBase == nullptr || wap::test::IsCLocale(stBase));
    return !bFree && wap::test::Refused(wap::test::kLocale)
               ? nullptr
               : __real_newlocale(iMask, pcName, stBase);
}

locale_t __wrap_duplocale(locale_t stLocale) {
    return !wap::test::IsCLocale(stLocale) && wap::test::Refused(wap::test::kLocale)
               ? nullptr
               : __real_duplocale(stLocale);
}

void *__wrap_dlopen(const char *pcName, int iFlags) {
    wap::test::World *pstWorld = wap::test::World::Current();
    return pstWorld ? pstWorld->stPlatform.Open(*pstWorld, pcName, iFlags)
                    : __real_dlopen(pcName, iFlags);
}

void *__wrap_dlsym(void *pvHandle, const char *pcName) {
    wap::test::World *pstWorld = wap::test::World::Current();
    return pstWorld ? pstWorld->stPlatform.Symbol(*pstWorld, pvHandle, pcName)
                    : __real_dlsym(pvHandle, pcName);
}

// ---- the platform's allocator ----

static void *AllocateForPlatform(bool bZeroed, uint32_t uiSize, const char *pcFile,
                                 uint32_t uiLine) {
    wap::test::World &stWorld = wap::test::World::Get();
    const wap::test::AllocPlace stPlace =
        wap::test::PlaceOf(&stWorld, "the platform's allocator", pcFile, uiLine);
    if (uiSize == 0 || stWorld.Hit(wap::test::Op::kAlloc, wap::test::kPlatformAllocation)) {
        return nullptr;
    }
    // Of a large block that is zero from the start, only the pages that are used cost anything.
    void *pvBlock = bZeroed ? __real_calloc(1, uiSize) : __real_malloc(uiSize);
    if (pvBlock != nullptr) {
        if (!bZeroed) {
            wap::test::Soil(pvBlock, 0, uiSize);
        }
        stWorld.stAllocs.Add(pvBlock, uiSize, wap::test::Origin::kPlatform, stPlace);
    }
    return pvBlock;
}

void *VT_OS_MemMallocD(uint32_t uiSize, const char *pcFile, uint32_t uiLine) {
    return AllocateForPlatform(false, uiSize, pcFile, uiLine);
}

void *VT_OS_MemMallocSet(uint32_t uiSize, const char *pcFile, uint32_t uiLine) {
    return AllocateForPlatform(true, uiSize, pcFile, uiLine);
}

void VT_OS_MemFreeD(void *pvBlock, const char *pcFile, uint32_t uiLine) {
    wap::test::World *pstWorld = wap::test::World::Current();
    const wap::test::AllocPlace stPlace =
        wap::test::PlaceOf(pstWorld, "the platform's release", pcFile, uiLine);
    if (pstWorld != nullptr) {
        pstWorld->stAllocs.NoteRelease(stPlace);
    }
    if (pvBlock == nullptr) {
        return;
    }
    wap::test::World &stWorld = wap::test::World::Get();
    stWorld.stSecrets.CheckFreed(pvBlock, stWorld.stAllocs.SizeOf(pvBlock));
    if (!stWorld.stAllocs.Remove(pvBlock)) {
        stWorld.Violation("released twice or never allocated: " + stPlace.sFile + ":" +
                          std::to_string(uiLine));
        return;
    }
    __real_free(pvBlock);
}
}
