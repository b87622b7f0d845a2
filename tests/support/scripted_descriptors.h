// The descriptors, serial lines and file systems of the scripted platform. VT_OS_Open and its kin
// are the platform's; tcgetattr, tcsetattr, tcflush and statfs are the C library's, in whose place
// these stand.
#ifndef WAP_TESTS_SUPPORT_SCRIPTED_DESCRIPTORS_H
#define WAP_TESTS_SUPPORT_SCRIPTED_DESCRIPTORS_H

#include <termios.h>

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace wap::test {

/// What the system knows about a file system.
struct VolumeFigures {
    uint64_t ullBlocks;
    uint64_t ullFreeBlocks;
    uint64_t ullAvailableBlocks;
    int64_t llBlockSize;
};

struct ScriptedDescriptors {
    // ---- the script; a function that the platform's mapStatus fails gives -1 and iError ----
    /// Calls are noted and made to fail as ever, and then go on to the system.
    bool bReal = false;
    int iError = 5;  // EIO
    int32_t iOpened = 77;
    std::string sReceived = "OK\r\n";                 ///< what a read gives, cut to the room
    int32_t iReadMore = 0;                            ///< by how much a read lies about its length
    int32_t iReady = 1;                               ///< what select gives
    std::function<void()> fnSelect;                   ///< called by select
    termios stLine = {};                              ///< of every descriptor
    std::map<std::string, VolumeFigures> mapVolumes;  ///< by path; others can't be measured

    // ---- the record ----
    std::vector<std::string> asSent;  ///< what was written
    std::vector<termios> astSet;      ///< what tcsetattr was given

    /// Descriptors that were opened since somebody looked last, and neither closed nor named to the
    /// caller. They are watched only when the script says so: a device that a test opens is its
    /// own.
    bool bWatchOpened = false;
    std::vector<int32_t> aiOpened;
    /// The caller has this one now.
    void HandOver(int32_t iFd) { std::erase(aiOpened, iFd); }
    /// Describes those that nobody has, and forgets them.
    std::vector<std::string> TakeOpened();
};

}  // namespace wap::test

#endif
