#include "support/scripted_files.h"

#include <algorithm>
#include <cstring>

#include "support/world.h"

namespace wap::test {

namespace {

using FilePlace = std::vector<std::unique_ptr<OpenFile>>::iterator;

/// Where an open file is; complains about anything else.
bool Find(const char *pcName, const void *pvFile, FilePlace &itFile) {
    auto &apstOpen = World::Get().stPlatform.stFiles.apstOpen;
    itFile = std::find_if(apstOpen.begin(), apstOpen.end(),
                          [&](const auto &pstFile) { return pstFile.get() == pvFile; });
    if (itFile == apstOpen.end()) {
        World::Get().Violation(std::string(pcName) + " of what is no open file");
        return false;
    }
    return true;
}

}  // namespace

}  // namespace wap::test

using namespace wap::test;

extern "C" {

uint32_t VT_OS_ExecShellCmdEx(const char *pcCmd) {
    const uint32_t uiStatus = Scripted(Op::kPlatform, "VT_OS_ExecShellCmdEx", pcCmd);
    const ScriptedFiles &stFiles = World::Get().stPlatform.stFiles;
    if (uiStatus == 0 && stFiles.fnCommand) {
        stFiles.fnCommand(pcCmd);
    }
    return uiStatus;
}

void *VT_OS_Fopen(const char *pcPath, const char *pcMode) {
    ScriptedFiles &stFiles = World::Get().stPlatform.stFiles;
    const uint32_t uiStatus =
        Scripted(Op::kPlatform, "VT_OS_Fopen", std::string(pcPath) + " " + pcMode);
    const auto it = stFiles.mapFiles.find(pcPath);
    if (uiStatus != 0 || it == stFiles.mapFiles.end()) {
        return nullptr;
    }
    stFiles.apstOpen.push_back(std::make_unique<OpenFile>(OpenFile{it->second, 0}));
    return stFiles.apstOpen.back().get();
}

// A file that can be read no further looks like one that ends there.
char *VT_OS_Fgets(char *pcBuf, uint32_t uiSize, void *pvFile) {
    FilePlace itFile;
    if (!Find("VT_OS_Fgets", pvFile, itFile) || uiSize == 0 ||
        World::Get().Hit(Op::kPlatform, "VT_OS_Fgets")) {
        return nullptr;
    }
    OpenFile &stFile = **itFile;
    const size_t uiLeft = stFile.sBytes.size() - stFile.uiAt;
    if (uiLeft == 0) {
        return nullptr;
    }
    const size_t uiLineEnd = stFile.sBytes.find('\n', stFile.uiAt);
    const size_t uiLine = uiLineEnd == std::string::npos ? uiLeft : uiLineEnd + 1 - stFile.uiAt;
    const size_t uiCount = std::min<size_t>(uiLine, uiSize - 1);
    std::memcpy(pcBuf, stFile.sBytes.data() + stFile.uiAt, uiCount);
    pcBuf[uiCount] = '\0';
    stFile.uiAt += uiCount;
    return pcBuf;
}

int32_t VT_OS_Fclose(void *pvFile) {
    FilePlace itFile;
    const uint32_t uiStatus = Scripted(Op::kPlatform, "VT_OS_Fclose", "");
    if (!Find("VT_OS_Fclose", pvFile, itFile)) {
        return -1;
    }
    ScriptedFiles &stFiles = World::Get().stPlatform.stFiles;
    // A planned failure is told after the fact, so that it is no leak.
    stFiles.apstOpen.erase(itFile);
    if (stFiles.fnClose) {
        stFiles.fnClose();
    }
    return uiStatus == 0 ? 0 : -1;
}
}
