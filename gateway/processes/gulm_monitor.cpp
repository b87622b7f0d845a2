// gulm's registry of the addresses whose traffic bundles want to have watched.
#include "framework/bulk.h"
#include "processes/processes.h"
#include "records/traffic_monitor.h"

namespace wap::gateway {

namespace {

constexpr size_t kBundlesMax = 64;
/// Of one bundle.
constexpr size_t kAddressesMax = 256;
/// The longest address is 255 bytes.
constexpr uint32_t kListMax = 256 * (kAddressesMax + 1);

/// The element of an array that is this text; null when there is none.
json_object *FindText(json_object *pstArray, const std::string &acText) {
    const auto astElements = Elements(pstArray);
    const auto stFound = std::find_if(
        astElements.begin(), astElements.end(),
        [&](json_object *pstElement) { return acText == json_object_get_string(pstElement); });
    return stFound == astElements.end() ? nullptr : *stFound;
}

/// Whether a text can stand in the registry's text: without what is between its parts, and without
/// what JSON would need to escape, for readers put names into JSON as they are.
bool CanBeListed(const std::string &acText, const char *pcSeparators) {
    return acText.find_first_of(pcSeparators) == std::string::npos &&
           std::none_of(acText.begin(), acText.end(), [](char cByte) {
               return cByte == '"' || cByte == '\\' || static_cast<unsigned char>(cByte) < 0x20;
           });
}

/// The parts of a list that are not empty.
std::vector<std::string> SplitList(const std::string &acList) {
    std::vector<std::string> asParts;
    for (size_t uiAt = 0; uiAt <= acList.size();) {
        const size_t uiEnd = std::min(acList.find(',', uiAt), acList.size());
        if (uiEnd > uiAt) {
            asParts.push_back(acList.substr(uiAt, uiEnd - uiAt));
        }
        uiAt = uiEnd + 1;
    }
    return asParts;
}

uint32_t AddAddresses(HandlerContext &stContext, const TrafficMonitorOperReq &stRequest,
                      TrafficMonitorOperReply &) {
    const std::string acBundle = TextIn(stRequest.acBundleName);
    const auto asAddresses = SplitList(FetchText(stRequest.stAddrList, kListMax));
    if (acBundle.empty() || !CanBeListed(acBundle, "[;") || asAddresses.empty()) {
        return kRefused;
    }
    HomeChange stChange(stContext.stHome);
    json_object *pstRegistry = stChange.At("monitoring");
    json_object *pstEntry = FindExactly(pstRegistry, "bundle", acBundle);
    if (pstEntry == nullptr) {
        if (json_object_array_length(pstRegistry) >= kBundlesMax) {
            return kTableFull;
        }
        JsonValue stEntry = MakeObject();
        pstEntry = stEntry.get();
        PutText(pstEntry, "bundle", acBundle);
        PutMember(pstEntry, "addresses", MakeArray());
        Append(pstRegistry, std::move(stEntry));
    }
    json_object *pstAddresses = FindMember(pstEntry, "addresses");
    for (const std::string &acAddress : asAddresses) {
        if (!CanBeListed(acAddress, ";")) {
            return kRefused;
        }
        if (FindText(pstAddresses, acAddress) == nullptr) {
            Append(pstAddresses, JsonValue(json_object_new_string(acAddress.c_str())));
        }
    }
    if (json_object_array_length(pstAddresses) > kAddressesMax) {
        return kTableFull;
    }
    stChange.Commit();
    return 0;
}

uint32_t DelAddresses(HandlerContext &stContext, const TrafficMonitorOperReq &stRequest,
                      TrafficMonitorOperReply &) {
    const auto asAddresses = SplitList(FetchText(stRequest.stAddrList, kListMax));
    HomeChange stChange(stContext.stHome);
    json_object *pstRegistry = stChange.At("monitoring");
    json_object *pstEntry = FindExactly(pstRegistry, "bundle", TextIn(stRequest.acBundleName));
    json_object *pstAddresses = FindMember(pstEntry, "addresses");
    bool bAny = false;
    for (const std::string &acAddress : asAddresses) {
        if (json_object *pstAddress = FindText(pstAddresses, acAddress)) {
            TakeOut(pstAddresses, pstAddress);
            bAny = true;
        }
    }
    if (!bAny) {
        return kRefused;
    }
    if (json_object_array_length(pstAddresses) == 0) {
        TakeOut(pstRegistry, pstEntry);
    }
    stChange.Commit();
    return 0;
}

uint32_t GetAddresses(HandlerContext &stContext, const Word &, TrafficMonitorInfoReply &stReply) {
    std::string acText;
    {
        const HomeReader stHome(stContext.stHome);
        for (json_object *pstEntry : Elements(stHome.At("monitoring"))) {
            json_object *pstAddresses = FindMember(pstEntry, "addresses");
            acText += (acText.empty() ? "" : ";") + TextOf(pstEntry, "bundle") +
                      PrintJson(pstAddresses, false);
            ++stReply.uiBundles;
            stReply.uiAddresses += static_cast<uint32_t>(json_object_array_length(pstAddresses));
        }
    }
    if (!acText.empty()) {
        stReply.stRegistry = PublishText(acText);
    }
    return 0;
}

}  // namespace

void AddMonitorRpcs(RpcTable &stTable) {
    stTable.Add(kRpcAddMonitoredAddresses, AddAddresses);
    stTable.Add(kRpcDelMonitoredAddresses, DelAddresses);
    stTable.Add(kRpcGetMonitoredAddresses, GetAddresses);
}

}  // namespace wap::gateway
