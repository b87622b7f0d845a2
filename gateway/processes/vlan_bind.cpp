#include "processes/vlan_bind.h"

#include <strings.h>

#include <charconv>

namespace wap::gateway {

std::optional<uint32_t> InterfaceNumber(const std::string &acName, std::string_view pcKind) {
    if (strncasecmp(acName.c_str(), pcKind.data(), pcKind.size()) != 0) {
        return std::nullopt;
    }
    const char *pcEnd = acName.data() + acName.size();
    uint32_t uiNumber = 0;
    const auto stRead = std::from_chars(acName.data() + pcKind.size(), pcEnd, uiNumber);
    if (stRead.ec != std::errc() || stRead.ptr != pcEnd || uiNumber == 0) {
        return std::nullopt;
    }
    return uiNumber;
}

bool ApplyBinding(const VlanBindReq &stRequest, json_object *pstInterface) {
    const std::string acBind = TextIn(stRequest.acBind);
    const bool bSet = stRequest.uiOperation == kVlanBindSet;
    if ((!bSet && stRequest.uiOperation != kVlanBindClear) || bSet == acBind.empty()) {
        return false;
    }
    PutNumber(pstInterface, "mode", bSet ? kBoundToVlan : 0);
    PutText(pstInterface, "bind", acBind);
    return true;
}

}  // namespace wap::gateway
