// The files and commands of the scripted platform.
#ifndef WAP_TESTS_SUPPORT_SCRIPTED_FILES_H
#define WAP_TESTS_SUPPORT_SCRIPTED_FILES_H

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace wap::test {

class World;

/// A file that is open for reading.
struct OpenFile {
    std::string sBytes;
    size_t uiAt = 0;
};

struct ScriptedFiles {
    // ---- the script ----
    std::map<std::string, std::string> mapFiles;  ///< what VT_OS_Fopen finds, by path
    /// What a command does; its status comes from the platform's script. None does nothing.
    std::function<void(const std::string &sCommand)> fnCommand;
    std::function<void()> fnClose;  ///< called when a file is closed

    // ---- the record ----
    std::vector<std::unique_ptr<OpenFile>> apstOpen;
};

}  // namespace wap::test

#endif
