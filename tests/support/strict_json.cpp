#include "support/strict_json.h"

#include <nlohmann/json.hpp>

#include <set>

namespace wap::test {

namespace {

using Json = nlohmann::json;

/// Objects within each other that are an answer's own: itself, and an element of its list.
constexpr size_t kOwnObjects = 2;

/// Finds a name that stands twice in an object, while it is parsed.
class TwiceFinder {
  public:
    explicit TwiceFinder(Elements eElements) : m_eElements(eElements) {}

    bool Look(Json::parse_event_t eEvent, const Json &stValue) {
        if (eEvent == Json::parse_event_t::object_start) {
            m_asNames.emplace_back();
        } else if (eEvent == Json::parse_event_t::object_end) {
            m_asNames.pop_back();
        } else if (eEvent == Json::parse_event_t::key) {
            const auto &sName = stValue.get_ref<const std::string &>();
            const bool bOwn = m_eElements == Elements::kOwn || m_asNames.size() <= kOwnObjects;
            if (!m_asNames.back().insert(sName).second && bOwn) {
                m_sTwice = sName;
            }
        }
        return true;
    }
    const std::string &Twice() const { return m_sTwice; }

  private:
    Elements m_eElements;
    std::vector<std::set<std::string>> m_asNames;
    std::string m_sTwice;
};

std::string FaultOf(const Json &stRoot) {
    if (!stRoot.is_object()) {
        return "no object";
    }
    const auto itResult = stRoot.find("Result");
    if (itResult == stRoot.end() || !itResult->is_number_integer()) {
        return "no number under Result";
    }
    const auto itList = stRoot.find("List");
    return itList != stRoot.end() && !itList->is_array() ? "no array under List" : "";
}

void AddValues(const Json &stValue, const std::string &sWay, std::vector<std::string> &asValues) {
    if (stValue.is_object()) {
        for (const auto &[sName, stMember] : stValue.items()) {
            AddValues(stMember, std::string(sWay).append(".").append(sName), asValues);
        }
    } else if (stValue.is_array()) {
        for (const Json &stElement : stValue) {
            AddValues(stElement, sWay + "/", asValues);
        }
    } else {
        asValues.push_back(sWay + "=" +
                           (stValue.is_string() ? stValue.get<std::string>() : stValue.dump()));
    }
}

}  // namespace

std::string JsonFault(const std::string &sText, Elements eElements) {
    TwiceFinder stFinder(eElements);
    try {
        const Json stRoot =
            Json::parse(sText, [&](int, Json::parse_event_t eEvent, const Json &stValue) {
                return stFinder.Look(eEvent, stValue);
            });
        return stFinder.Twice().empty() ? FaultOf(stRoot)
                                        : "the name " + stFinder.Twice() + " twice";
    } catch (const Json::parse_error &) {
        return "no JSON";
    } catch (const Json::out_of_range &) {
        return eElements == Elements::kHandedOver ? "" : "a number beyond all types";
    }
}

std::vector<std::string> JsonValues(const std::string &sText) {
    std::vector<std::string> asValues;
    const Json stRoot = Json::parse(sText, nullptr, false);
    if (!stRoot.is_discarded()) {
        AddValues(stRoot, "", asValues);
    }
    return asValues;
}

}  // namespace wap::test
