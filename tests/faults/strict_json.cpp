#include "faults/strict_json.h"

#include <nlohmann/json.hpp>

#include <set>
#include <vector>

namespace wap::test {

std::string JsonFault(const std::string &sText) {
    using Json = nlohmann::json;
    std::vector<std::set<std::string>> asNames;
    std::string sTwice;
    const auto fnLook = [&](int, Json::parse_event_t eEvent, Json &stValue) {
        if (eEvent == Json::parse_event_t::object_start) {
            asNames.emplace_back();
        } else if (eEvent == Json::parse_event_t::object_end) {
            asNames.pop_back();
        } else if (eEvent == Json::parse_event_t::key &&
                   !asNames.back().insert(stValue.get<std::string>()).second) {
            sTwice = stValue.get<std::string>();
        }
        return true;
    };
    const Json stRoot = Json::parse(sText, fnLook, false);
    if (stRoot.is_discarded()) {
        return "no JSON";
    }
    if (!stRoot.is_object()) {
        return "no object";
    }
    if (!sTwice.empty()) {
        return "the name " + sTwice + " twice";
    }
    const auto itResult = stRoot.find("Result");
    if (itResult == stRoot.end() || !itResult->is_number_integer()) {
        return "no number under Result";
    }
    const auto itList = stRoot.find("List");
    return itList != stRoot.end() && !itList->is_array() ? "no array under List" : "";
}

}  // namespace wap::test
