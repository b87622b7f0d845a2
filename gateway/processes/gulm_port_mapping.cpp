// gulm's port mappings.
#include <algorithm>

#include "framework/bulk.h"
#include "processes/processes.h"
#include "records/port_mapping.h"

namespace wap::gateway {

namespace {

constexpr size_t kMappingsMax = 64;

/// The WAN connection with these instances; null when there is none.
json_object *FindWan(json_object *pstWans, uint32_t uiDev, uint32_t uiConnDev, uint32_t uiConn) {
    for (json_object *pstWan : Elements(pstWans)) {
        if (NumberOf(pstWan, "deviceInstance") == uiDev &&
            NumberOf(pstWan, "connDeviceInstance") == uiConnDev &&
            NumberOf(pstWan, "connInstance") == uiConn) {
            return pstWan;
        }
    }
    return nullptr;
}

/// The same by a request's header, whose kind must be the connection's.
json_object *FindWan(json_object *pstWans, const PortMappingWan &stWan) {
    json_object *pstWan =
        FindWan(pstWans, stWan.uiWanDevIns, stWan.uiWanConnDevIns, stWan.uiWanConnIns);
    return pstWan != nullptr && NumberOf(pstWan, "kind") == stWan.uiConnKind ? pstWan : nullptr;
}

/// Whether a WAN connection may have port mappings.
bool IsMappable(json_object *pstWan) {
    const uint32_t uiMode = NumberOf(pstWan, "mappingMode");
    return NumberOf(pstWan, "mappingGate") == 1 && (uiMode == 0 || uiMode == 2);
}

/// A WAN connection's mapping, or null.
json_object *FindMapping(json_object *pstMappings, json_object *pstWan, uint32_t uiId) {
    json_object *pstMapping = FindNumber(pstMappings, "id", uiId);
    const bool bOfWan = pstMapping != nullptr && pstWan != nullptr &&
                        NumberOf(pstMapping, "wanIndex") == NumberOf(pstWan, "index");
    return bOfWan ? pstMapping : nullptr;
}

PortMappingEntry EntryOf(json_object *pstMapping) {
    PortMappingEntry stEntry = {};
    stEntry.uiEnable = IsTrue(pstMapping, "enabled") ? kMappingOn : 0;
    stEntry.uiExternalPort = NumberOf(pstMapping, "externalPort");
    stEntry.uiExternalPortEnd = stEntry.uiExternalPort;
    stEntry.uiInternalPort = NumberOf(pstMapping, "internalPort");
    stEntry.uiInternalPortCopy = stEntry.uiInternalPort;
    PutField(stEntry.acProtocol, TextOf(pstMapping, "protocol"));
    PutField(stEntry.acInternalClient, TextOf(pstMapping, "client"));
    return stEntry;
}

template <uint32_t kKind>
uint32_t GetMapping(HandlerContext &stContext, const PortMappingRequest &stRequest,
                    PortMappingEntry &stReply) {
    const HomeReader stHome(stContext.stHome);
    json_object *pstWan = FindWan(stHome.At("wan"), stRequest.uiWanDevIns,
                                  stRequest.uiWanConnDevIns, stRequest.uiWanConnIns);
    json_object *pstMapping = FindMapping(stHome.At("portMapping"), pstWan, stRequest.uiInstId);
    if (pstMapping == nullptr || NumberOf(pstWan, "kind") != kKind) {
        return kRefused;
    }
    stReply = EntryOf(pstMapping);
    return 0;
}

uint32_t GetTable(HandlerContext &stContext, const AllPortMappingsRequest &, VDataDesc &stReply) {
    std::vector<PortMappingRow> astRows;
    {
        const HomeReader stHome(stContext.stHome);
        for (json_object *pstMapping : Elements(stHome.At("portMapping"))) {
            PortMappingRow stRow = {};
            stRow.uiWanIndex = NumberOf(pstMapping, "wanIndex");
            stRow.uiInstId = NumberOf(pstMapping, "id");
            stRow.stEntry = EntryOf(pstMapping);
            astRows.push_back(stRow);
        }
    }
    // One WAN's mappings stand together, in the order in which they were added.
    std::stable_sort(astRows.begin(), astRows.end(), [](const auto &stLeft, const auto &stRight) {
        return stLeft.uiWanIndex < stRight.uiWanIndex;
    });
    if (!astRows.empty()) {
        stReply = PublishBlock({reinterpret_cast<const char *>(astRows.data()),
                                astRows.size() * sizeof(PortMappingRow)});
    }
    return 0;
}

uint32_t GetNumberOfMappings(HandlerContext &stContext, const AllPortMappingsRequest &,
                             PortMappingNumReply &stReply) {
    const HomeReader stHome(stContext.stHome);
    stReply.uiNum = static_cast<uint32_t>(Elements(stHome.At("portMapping")).size());
    return 0;
}

bool IsPort(uint32_t uiPort) {
    return uiPort >= 1 && uiPort <= 65535;
}

uint32_t AddMapping(HandlerContext &stContext, const AddPortMappingRequest &stRequest, Word &) {
    const PortMappingEntry &stEntry = stRequest.stEntry;
    const std::string acProtocol = TextIn(stEntry.acProtocol);
    HomeChange stChange(stContext.stHome);
    json_object *pstMappings = stChange.At("portMapping");
    json_object *pstWan = FindWan(stChange.At("wan"), stRequest.stWan);
    if (pstWan == nullptr || !IsMappable(pstWan) || !IsPort(stEntry.uiExternalPort) ||
        stEntry.uiExternalPortEnd != stEntry.uiExternalPort || !IsPort(stEntry.uiInternalPort) ||
        stEntry.uiInternalPortCopy != stEntry.uiInternalPort || acProtocol.empty()) {
        return kRefused;
    }
    const auto astMappings = Elements(pstMappings);
    if (astMappings.size() >= kMappingsMax) {
        return kTableFull;
    }
    const bool bTaken =
        std::any_of(astMappings.begin(), astMappings.end(), [&](json_object *pstMapping) {
            return NumberOf(pstMapping, "wanIndex") == NumberOf(pstWan, "index") &&
                   NumberOf(pstMapping, "externalPort") == stEntry.uiExternalPort &&
                   TextOf(pstMapping, "protocol") == acProtocol;
        });
    if (bTaken) {
        return kErrMappingRefused;
    }
    JsonValue stMapping = MakeObject();
    PutNumber(stMapping.get(), "id", FreeNumber(pstMappings, "id"));
    PutNumber(stMapping.get(), "wanIndex", NumberOf(pstWan, "index"));
    PutBool(stMapping.get(), "enabled", stEntry.uiEnable == kMappingOn);
    PutNumber(stMapping.get(), "externalPort", stEntry.uiExternalPort);
    PutNumber(stMapping.get(), "internalPort", stEntry.uiInternalPort);
    PutText(stMapping.get(), "protocol", acProtocol);
    PutText(stMapping.get(), "client", TextIn(stEntry.acInternalClient));
    Append(pstMappings, std::move(stMapping));
    stChange.Commit();
    return 0;
}

uint32_t DelMapping(HandlerContext &stContext, const DelPortMappingRequest &stRequest, Word &) {
    HomeChange stChange(stContext.stHome);
    json_object *pstMappings = stChange.At("portMapping");
    json_object *pstMapping =
        FindMapping(pstMappings, FindWan(stChange.At("wan"), stRequest.stWan), stRequest.uiInstId);
    if (pstMapping == nullptr) {
        return kRefused;
    }
    TakeOut(pstMappings, pstMapping);
    stChange.Commit();
    return 0;
}

uint32_t SwitchMapping(HandlerContext &stContext, const SwitchPortMappingRequest &stRequest,
                       Word &) {
    HomeChange stChange(stContext.stHome);
    const PortMappingWan &stWan = stRequest.stWan;
    // The one request that does not tell the connection's kind.
    json_object *pstWan =
        FindWan(stChange.At("wan"), stWan.uiWanDevIns, stWan.uiWanConnDevIns, stWan.uiWanConnIns);
    json_object *pstMapping = FindMapping(stChange.At("portMapping"), pstWan, stRequest.uiInstId);
    if (pstMapping == nullptr || stWan.uiConnKind != 0 || stRequest.uiChanges != kChangeEnable) {
        return kRefused;
    }
    PutBool(pstMapping, "enabled", stRequest.stEntry.uiEnable == kMappingOn);
    stChange.Commit();
    return 0;
}

}  // namespace

void AddPortMappingRpcs(RpcTable &stTable) {
    stTable.Add(kRpcGetPortMappingOfKind1, GetMapping<1>);
    stTable.Add(kRpcGetPortMappingOfKind0, GetMapping<0>);
    stTable.Add(kRpcGetPortMappingTable, GetTable);
    stTable.Add(kRpcGetPortMappingNum, GetNumberOfMappings);
    stTable.Add(kRpcAddPortMapping, AddMapping);
    stTable.Add(kRpcDelPortMapping, DelMapping);
    stTable.Add(kRpcSwitchPortMapping, SwitchMapping);
}

}  // namespace wap::gateway
