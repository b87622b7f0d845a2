#include "framework/process_list.h"

#include <algorithm>

namespace wap::gateway {

const ProcessInfo *FindProcess(std::string_view pcName) {
    const auto stFound = std::find_if(kProcesses.begin(), kProcesses.end(),
                                      [&](const auto &stInfo) { return pcName == stInfo.pcName; });
    return stFound == kProcesses.end() ? nullptr : &*stFound;
}

const ProcessInfo *FindOwner(std::string_view pcSection) {
    if (pcSection.empty()) {
        return nullptr;
    }
    for (const ProcessInfo &stInfo : kProcesses) {
        const auto &astSections = stInfo.astSections;
        if (std::find(astSections.begin(), astSections.end(), pcSection) != astSections.end()) {
            return &stInfo;
        }
    }
    return nullptr;
}

}  // namespace wap::gateway
