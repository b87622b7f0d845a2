#include "framework/home_lists.h"

#include <strings.h>

#include <algorithm>
#include <set>

#include "framework/error.h"

namespace wap::gateway {

namespace {

json_object *ListAt(const HomeChange &stChange, const std::string &acPath) {
    json_object *pstList = stChange.At(acPath);
    if (!json_object_is_type(pstList, json_type_array)) {
        throw GatewayError(acPath + " is no list");
    }
    return pstList;
}

json_object *ElementAt(json_object *pstList, const ListPlace &stPlace) {
    json_object *pstElement = FindElement(pstList, stPlace.acKey.c_str(), stPlace.acId);
    if (pstElement == nullptr) {
        throw GatewayError(stPlace.acPath + " has nothing with " + stPlace.acKey + " \"" +
                           stPlace.acId + "\"");
    }
    return pstElement;
}

template <class Matches>
json_object *FindIf(json_object *pstList, Matches fnMatches) {
    const auto astElements = Elements(pstList);
    const auto stFound = std::find_if(astElements.begin(), astElements.end(), fnMatches);
    return stFound == astElements.end() ? nullptr : *stFound;
}

}  // namespace

json_object *FindElement(json_object *pstList, const char *pcKey, std::string_view pcText) {
    const std::string acText(pcText);
    return FindIf(pstList, [&](json_object *pstElement) {
        const auto acFound = GetText(pstElement, pcKey);
        return acFound && strcasecmp(acFound->c_str(), acText.c_str()) == 0;
    });
}

json_object *FindExactly(json_object *pstList, const char *pcKey, std::string_view pcText) {
    return FindIf(pstList,
                  [&](json_object *pstElement) { return GetText(pstElement, pcKey) == pcText; });
}

json_object *FindNumber(json_object *pstList, const char *pcKey, int64_t iNumber) {
    return FindIf(pstList,
                  [&](json_object *pstElement) { return GetNumber(pstElement, pcKey) == iNumber; });
}

void TakeOut(json_object *pstList, json_object *pstElement) {
    const auto astElements = Elements(pstList);
    const auto stFound = std::find(astElements.begin(), astElements.end(), pstElement);
    if (stFound != astElements.end()) {
        (void)json_object_array_del_idx(pstList, static_cast<size_t>(stFound - astElements.begin()),
                                        1);
    }
}

uint32_t FreeNumber(json_object *pstList, const char *pcKey) {
    std::set<int64_t> setTaken;
    for (json_object *pstElement : Elements(pstList)) {
        setTaken.insert(GetNumber(pstElement, pcKey).value_or(0));
    }
    uint32_t uiFree = 1;
    while (setTaken.contains(uiFree)) {
        ++uiFree;
    }
    return uiFree;
}

void AddElement(Home &stHome, const ListPlace &stPlace, JsonValue stElement) {
    HomeChange stChange(stHome);
    json_object *pstList = ListAt(stChange, stPlace.acPath);
    if (!json_object_is_type(stElement.get(), json_type_object)) {
        throw GatewayError("only an object can be added to " + stPlace.acPath);
    }
    if (FindElement(pstList, stPlace.acKey.c_str(), stPlace.acId) != nullptr) {
        throw GatewayError(stPlace.acPath + " already has one with " + stPlace.acKey + " \"" +
                           stPlace.acId + "\"");
    }
    Append(pstList, std::move(stElement));
    stChange.Commit();
}

void RemoveElement(Home &stHome, const ListPlace &stPlace) {
    HomeChange stChange(stHome);
    json_object *pstList = ListAt(stChange, stPlace.acPath);
    TakeOut(pstList, ElementAt(pstList, stPlace));
    stChange.Commit();
}

void SetElement(Home &stHome, const ListPlace &stPlace, const std::string &acMember,
                std::string_view pcText) {
    HomeChange stChange(stHome);
    json_object *pstList = ListAt(stChange, stPlace.acPath);
    json_object *pstElement = ElementAt(pstList, stPlace);
    json_object *pstMember = FindMember(pstElement, acMember.c_str());
    if (pstMember == nullptr) {
        throw GatewayError("it has no \"" + acMember + "\"; it has " + NamesIn(pstElement));
    }
    // The key would make it another element, perhaps one that is there already.
    if (acMember == stPlace.acKey &&
        strcasecmp(stPlace.acId.c_str(), std::string(pcText).c_str()) != 0) {
        throw GatewayError("\"" + acMember +
                           "\" tells the elements apart: remove this one and add another");
    }
    Assign(pstMember, acMember, pcText);
    stChange.Commit();
}

}  // namespace wap::gateway
