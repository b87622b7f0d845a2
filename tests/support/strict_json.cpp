#include "support/strict_json.h"

#include <nlohmann/json.hpp>

#include <set>
#include <string_view>

namespace wap::test {

namespace {

using Json = nlohmann::json;

/// Objects within each other that are an answer's own: itself, and an element of its list.
constexpr size_t kOwnObjects = 2;
/// What is open within such an element.
constexpr std::string_view kElement = "{[{";
constexpr size_t kEscape = 6;  ///< backslash, u, four digits

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

/// Whether the escape of a UTF-16 unit stands there.
bool IsUnitAt(const std::string &sText, size_t uiAt) {
    const std::string sEscape = sText.substr(uiAt, kEscape);
    return sEscape.size() == kEscape && sEscape.compare(0, 2, "\\u") == 0 &&
           sEscape.find_first_not_of("0123456789abcdefABCDEF", 2) == std::string::npos;
}

/// A text in which somebody else's values of the list have nothing that JSON allows and nobody can
/// store: half a surrogate pair, for which escaped units become all the same, and a number beyond
/// all types. Faults stay.
class Smoother {
  public:
    explicit Smoother(const std::string &sText) : m_sText(sText) {}

    std::string Smoothed() {
        while (m_uiAt < m_sText.size()) {
            if (m_bInText) {
                Letter();
            } else {
                Mark(m_sText[m_uiAt]);
            }
        }
        return std::move(m_sOut);
    }

  private:
    /// Whether what is looked at stands in a list or an object of theirs.
    bool IsInside() const {
        return m_sOpen.starts_with(kElement) && m_sOpen.size() > kElement.size();
    }
    /// The same, or whether it is an element's value.
    bool IsTheirs() const { return IsInside() || (m_sOpen == kElement && m_cBefore == ':'); }
    void Take(size_t uiCount) {
        m_sOut.append(m_sText, m_uiAt, uiCount);
        m_uiAt += uiCount;
    }

    void Letter() {
        if (m_sText[m_uiAt] != '\\') {
            m_bInText = m_sText[m_uiAt] != '"';
            Take(1);
            return;
        }
        if (IsTheirs() && IsUnitAt(m_sText, m_uiAt)) {
            m_sOut += "\\uFFFD";
            m_uiAt += kEscape;
        } else {
            Take(2);
        }
    }

    void Mark(char cMark) {
        // A number is as good without the third digit in a row and those behind it, and small.
        m_uiDigits = cMark >= '0' && cMark <= '9' ? m_uiDigits + 1 : 0;
        if (m_uiDigits > 2 && IsInside()) {
            ++m_uiAt;
            return;
        }
        if (cMark == '{' || cMark == '[') {
            m_sOpen += cMark;
        } else if ((cMark == '}' || cMark == ']') && !m_sOpen.empty()) {
            m_sOpen.pop_back();
        }
        m_bInText = cMark == '"';
        if (!m_bInText && std::string_view(" \t\r\n").find(cMark) == std::string_view::npos) {
            m_cBefore = cMark;
        }
        Take(1);
    }

    const std::string &m_sText;
    std::string m_sOut;
    size_t m_uiAt = 0;
    std::string m_sOpen;
    char m_cBefore = '\0';
    bool m_bInText = false;
    size_t m_uiDigits = 0;
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
            Json::parse(eElements == Elements::kHandedOver ? Smoother(sText).Smoothed() : sText,
                        [&](int, Json::parse_event_t eEvent, const Json &stValue) {
                            return stFinder.Look(eEvent, stValue);
                        });
        return stFinder.Twice().empty() ? FaultOf(stRoot)
                                        : "the name " + stFinder.Twice() + " twice";
    } catch (const Json::parse_error &) {
        return "no JSON";
    } catch (const Json::out_of_range &) {
        return "a number beyond all types";
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
