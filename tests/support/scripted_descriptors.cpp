#include "support/scripted_descriptors.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/select.h>
#include <sys/vfs.h>
#include <unistd.h>
#include <vt_ssp_basic.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

#include "support/world.h"

extern "C" void *__real_dlsym(void *pvHandle, const char *pcName);

namespace wap::test {

namespace {

/// Above it no set that a select is given has a place.
constexpr int32_t kSetMax = 51579;

ScriptedDescriptors &Script() {
    return World::Get().stPlatform.stDescriptors;
}

/// Notes a call. False, with errno, when the plan or the script makes it fail.
bool GoesWell(const char *pcName, const std::string &sArgs) {
    if (Scripted(Op::kPlatform, pcName, sArgs) != 0) {
        errno = Script().iError;
        return false;
    }
    return true;
}

std::string Text(int64_t llNumber) {
    return std::to_string(llNumber);
}

/// The descriptors in a set that select may look at.
std::string Members(const void *pvSet, int32_t iCount) {
    std::string sMembers;
    const auto *pulWords = static_cast<const unsigned long *>(pvSet);
    constexpr int32_t kBits = 8 * sizeof(unsigned long);
    for (int32_t i = 0; i < std::min(iCount, kSetMax + 1); ++i) {
        if ((pulWords[i / kBits] >> i % kBits & 1) != 0) {
            sMembers += " " + Text(i);
        }
    }
    return sMembers;
}

/// The function that the C library has under the name of one of ours.
template <class Function>
Function *OfTheLibrary(Function *, const char *pcName) {
    return reinterpret_cast<Function *>(__real_dlsym(RTLD_NEXT, pcName));
}

}  // namespace

std::vector<std::string> ScriptedDescriptors::TakeOpened() {
    std::vector<std::string> asTexts;
    for (const int32_t iFd : std::exchange(aiOpened, {})) {
        asTexts.push_back("descriptor " + std::to_string(iFd) + " was left open");
    }
    return asTexts;
}

}  // namespace wap::test

using wap::test::GoesWell;
using wap::test::Members;
using wap::test::OfTheLibrary;
using wap::test::Script;
using wap::test::Text;

extern "C" {

int32_t VT_OS_Open(const char *pcPath, int32_t iFlags, uint32_t uiMode) {
    if (!GoesWell("VT_OS_Open", std::string(pcPath) + " " + Text(iFlags) + " " + Text(uiMode))) {
        return -1;
    }
    const int32_t iFd = Script().bReal ? open(pcPath, iFlags, uiMode) : Script().iOpened;
    if (Script().bWatchOpened && iFd >= 0) {
        Script().aiOpened.push_back(iFd);
    }
    return iFd;
}

int32_t VT_OS_Read(int32_t iFd, void *pvBuf, uint32_t uiCount) {
    if (!GoesWell("VT_OS_Read", Text(iFd) + " " + Text(uiCount))) {
        return -1;
    }
    if (Script().bReal) {
        return static_cast<int32_t>(read(iFd, pvBuf, uiCount));
    }
    const size_t uiLength = std::min<size_t>(uiCount, Script().sReceived.size());
    std::memcpy(pvBuf, Script().sReceived.data(), uiLength);
    return static_cast<int32_t>(uiLength) + Script().iReadMore;
}

int32_t VT_OS_Write(int32_t iFd, const void *pvBuf, uint32_t uiCount) {
    if (!GoesWell("VT_OS_Write", Text(iFd) + " " + Text(uiCount))) {
        return -1;
    }
    Script().asSent.emplace_back(static_cast<const char *>(pvBuf), uiCount);
    return Script().bReal ? static_cast<int32_t>(write(iFd, pvBuf, uiCount))
                          : static_cast<int32_t>(uiCount);
}

int32_t VT_OS_Close(int32_t iFd) {
    // A failure that is planned or scripted is told after the fact: close has no other.
    Script().HandOver(iFd);
    if (!GoesWell("VT_OS_Close", Text(iFd))) {
        return -1;
    }
    return Script().bReal ? close(iFd) : 0;
}

int32_t VT_OS_Select(int32_t iNfds, void *pvRead, void *pvWrite, void *pvExcept, void *pvTimeval) {
    const auto *pstTime = static_cast<const timeval *>(pvTimeval);
    std::string sArgs = Text(iNfds) + ":" + Members(pvRead, iNfds);
    sArgs += pvWrite == nullptr && pvExcept == nullptr ? "" : " and other sets";
    sArgs += pstTime == nullptr
                 ? ", for ever"
                 : ", " + Text(pstTime->tv_sec) + " s " + Text(pstTime->tv_usec) + " us";
    if (Script().fnSelect) {
        Script().fnSelect();
    }
    if (!GoesWell("VT_OS_Select", sArgs)) {
        return -1;
    }
    if (Script().bReal) {
        return select(iNfds, static_cast<fd_set *>(pvRead), static_cast<fd_set *>(pvWrite),
                      static_cast<fd_set *>(pvExcept), static_cast<timeval *>(pvTimeval));
    }
    return Script().iReady;
}

// ---- of the C library, whose own declarations name the parameters otherwise ----

int ScriptedTcgetattr(int iFd, termios *pstLine) noexcept __asm__("tcgetattr");
int ScriptedTcsetattr(int iFd, int iWhen, const termios *pstLine) noexcept __asm__("tcsetattr");
int ScriptedTcflush(int iFd, int iQueues) noexcept __asm__("tcflush");
// The tests and the code under test are built for wide figures, which have this name inside.
int ScriptedStatfs(const char *pcPath, struct statfs *pstVolume) noexcept __asm__("statfs64");

int ScriptedTcgetattr(int iFd, termios *pstLine) noexcept {
    if (!GoesWell("tcgetattr", Text(iFd))) {
        return -1;
    }
    if (Script().bReal) {
        return OfTheLibrary(tcgetattr, "tcgetattr")(iFd, pstLine);
    }
    *pstLine = Script().stLine;
    return 0;
}

int ScriptedTcsetattr(int iFd, int iWhen, const termios *pstLine) noexcept {
    if (!GoesWell("tcsetattr", Text(iFd) + (iWhen == TCSANOW ? " at once" : " later"))) {
        return -1;
    }
    Script().astSet.push_back(*pstLine);
    if (Script().bReal) {
        return OfTheLibrary(tcsetattr, "tcsetattr")(iFd, iWhen, pstLine);
    }
    Script().stLine = *pstLine;
    return 0;
}

int ScriptedTcflush(int iFd, int iQueues) noexcept {
    if (!GoesWell("tcflush", Text(iFd) + (iQueues == TCIOFLUSH ? " both" : " one"))) {
        return -1;
    }
    if (Script().bReal) {
        return OfTheLibrary(tcflush, "tcflush")(iFd, iQueues);
    }
    return 0;
}

int ScriptedStatfs(const char *pcPath, struct statfs *pstVolume) noexcept {
    if (!GoesWell("statfs", pcPath)) {
        return -1;
    }
    if (Script().bReal) {
        const int iFd = open(pcPath, O_PATH);
        const int iResult = fstatfs(iFd, pstVolume);
        close(iFd);
        return iResult;
    }
    const auto it = Script().mapVolumes.find(pcPath);
    if (it == Script().mapVolumes.end()) {
        errno = ENOENT;
        return -1;
    }
    // What nobody asks for is not zero.
    std::memset(pstVolume, 0x5A, sizeof(*pstVolume));
    pstVolume->f_blocks = it->second.ullBlocks;
    pstVolume->f_bfree = it->second.ullFreeBlocks;
    pstVolume->f_bavail = it->second.ullAvailableBlocks;
    pstVolume->f_bsize = static_cast<decltype(pstVolume->f_bsize)>(it->second.llBlockSize);
    return 0;
}
}
