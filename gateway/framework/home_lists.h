// Lists of the home: elements are objects that one of their members, a text, tells apart.
#ifndef WAP_GATEWAY_FRAMEWORK_HOME_LISTS_H
#define WAP_GATEWAY_FRAMEWORK_HOME_LISTS_H

#include <string>
#include <string_view>

#include "framework/home.h"

namespace wap::gateway {

/// Where an element is: the list's path, the member that tells elements apart, and its text. Case
/// does not matter, as with MAC addresses.
struct ListPlace {
    std::string acPath;
    std::string acKey;
    std::string acId;
};

/// The element whose member is that text, in whatever case or exactly, or that number; borrowed,
/// null when there is none.
json_object *FindElement(json_object *pstList, const char *pcKey, std::string_view pcText);
json_object *FindExactly(json_object *pstList, const char *pcKey, std::string_view pcText);
json_object *FindNumber(json_object *pstList, const char *pcKey, int64_t iNumber);

/// Takes an element out of the list that it is in.
void TakeOut(json_object *pstList, json_object *pstElement);

/// Adds an element. Throws GatewayError when one with its key is there, or there is no such list.
void AddElement(Home &stHome, const ListPlace &stPlace, JsonValue stElement);

/// Removes an element. Throws GatewayError when there is none.
void RemoveElement(Home &stHome, const ListPlace &stPlace);

/// Changes a member of an element, as Home::Set does. Throws GatewayError.
void SetElement(Home &stHome, const ListPlace &stPlace, const std::string &acMember,
                std::string_view pcText);

/// The smallest number from 1 that no element has under that key: a new one's id.
uint32_t FreeNumber(json_object *pstList, const char *pcKey);

}  // namespace wap::gateway

#endif
