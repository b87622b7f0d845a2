#include "ctl/features.h"

#include <algorithm>
#include <charconv>
#include <sstream>

namespace wap::gateway {

std::set<uint32_t> ReadFeatures(const RuntimeDir &stDir) {
    std::set<uint32_t> setFeatures;
    std::istringstream stText(ReadTextFile(stDir.FeaturesFile()).value_or(""));
    for (std::string acLine; std::getline(stText, acLine);) {
        std::istringstream stWords(acLine.substr(0, acLine.find('#')));
        for (std::string acWord; stWords >> acWord;) {
            uint32_t uiFeature = 0;
            const char *pcEnd = acWord.data() + acWord.size();
            const auto stRead = std::from_chars(acWord.data(), pcEnd, uiFeature);
            if (stRead.ec == std::errc() && stRead.ptr == pcEnd) {
                setFeatures.insert(uiFeature);
            }
        }
    }
    return setFeatures;
}

void ShipFeatures(const RuntimeDir &stDir, json_object *pstHome) {
    if (ReadTextFile(stDir.FeaturesFile())) {
        return;
    }
    std::set<uint32_t> setFeatures;
    for (json_object *pstFeature : Elements(FindMember(pstHome, "features"))) {
        if (json_object_is_type(pstFeature, json_type_int)) {
            setFeatures.insert(static_cast<uint32_t>(json_object_get_int64(pstFeature)));
        }
    }
    WriteFeatures(stDir, setFeatures);
}

void WriteFeatures(const RuntimeDir &stDir, const std::set<uint32_t> &setFeatures) {
    std::string acText = "# What the simulated firmware has; see gatewayctl feature.\n";
    for (const uint32_t uiFeature : setFeatures) {
        acText += std::to_string(uiFeature) + "\n";
    }
    WriteTextFile(stDir.FeaturesFile(), acText);
}

}  // namespace wap::gateway
