// gulm's MAC filter: a mode, a wired and a wireless table.
#include <algorithm>

#include "processes/processes.h"
#include "records/mac_filter.h"

namespace wap::gateway {

namespace {

constexpr char kLan[] = "macFilter.lan";
constexpr char kWlan[] = "macFilter.wlan";

uint32_t GetMode(HandlerContext &stContext, const Word &, MacFltModeReply &stReply) {
    const HomeReader stHome(stContext.stHome);
    stReply.uiMode = stReply.uiModeAgain = stHome.Number("macFilter.mode");
    stReply.uiStatus = stReply.uiStatusAgain = stHome.Number("macFilter.status");
    return 0;
}

uint32_t SetMode(HandlerContext &stContext, const MacFltModeRequest &stRequest, Word &) {
    if (stRequest.uiMode > kMacFltTrustList || stRequest.uiStatus > 1) {
        return kRefused;
    }
    HomeChange stChange(stContext.stHome);
    PutNumber(stChange.At("macFilter"), "mode", stRequest.uiMode);
    PutNumber(stChange.At("macFilter"), "status", stRequest.uiStatus);
    stChange.Commit();
    return 0;
}

/// The ids of a table's entries, as many as the reply holds.
template <class Block>
void FillIds(HandlerContext &stContext, const char *pcTable, Block &stReply) {
    const HomeReader stHome(stContext.stHome);
    for (json_object *pstEntry : Elements(stHome.At(pcTable))) {
        if (stReply.uiCount < std::size(stReply.auiInstIds)) {
            stReply.auiInstIds[stReply.uiCount++] = NumberOf(pstEntry, "id");
        }
    }
}

uint32_t ListLan(HandlerContext &stContext, const Word &, MacFltInstBlock &stReply) {
    FillIds(stContext, kLan, stReply);
    return 0;
}

uint32_t ListWlan(HandlerContext &stContext, const Word &, WlanMacFltInstBlock &stReply) {
    FillIds(stContext, kWlan, stReply);
    return 0;
}

uint32_t GetLan(HandlerContext &stContext, const Word &stRequest, LanMacFltBody &stReply) {
    const HomeReader stHome(stContext.stHome);
    json_object *pstEntry = FindNumber(stHome.At(kLan), "id", stRequest.uiValue);
    if (pstEntry == nullptr) {
        return kRefused;
    }
    stReply.uiEnable = 1;
    PutField(stReply.acMac, TextOf(pstEntry, "mac"));
    PutField(stReply.acDays, TextOf(pstEntry, "days"));
    PutField(stReply.acStart, TextOf(pstEntry, "start"));
    PutField(stReply.acEnd, TextOf(pstEntry, "end"));
    return 0;
}

uint32_t GetWlan(HandlerContext &stContext, const Word &stRequest, WlanMacFltBody &stReply) {
    const HomeReader stHome(stContext.stHome);
    json_object *pstEntry = FindNumber(stHome.At(kWlan), "id", stRequest.uiValue);
    if (pstEntry == nullptr) {
        return kRefused;
    }
    stReply.uiEnable = 1;
    PutField(stReply.acSsidName, TextOf(pstEntry, "ssid"));
    PutField(stReply.acMac, TextOf(pstEntry, "mac"));
    return 0;
}

/// Adds an entry to a table that holds so many, and answers its id.
uint32_t AddEntry(HandlerContext &stContext, const char *pcTable, size_t uiMax, JsonValue stEntry,
                  Word &stReply) {
    if (TextOf(stEntry.get(), "mac").empty()) {
        return kRefused;
    }
    HomeChange stChange(stContext.stHome);
    json_object *pstTable = stChange.At(pcTable);
    if (Elements(pstTable).size() >= uiMax) {
        return kTableFull;
    }
    const uint32_t uiId = FreeNumber(pstTable, "id");
    PutNumber(stEntry.get(), "id", uiId);
    Append(pstTable, std::move(stEntry));
    stChange.Commit();
    stReply.uiValue = uiId;
    return 0;
}

uint32_t AddLan(HandlerContext &stContext, const LanMacFltEntry &stRequest, Word &stReply) {
    JsonValue stEntry = MakeObject();
    PutText(stEntry.get(), "mac", TextIn(stRequest.stBody.acMac));
    PutText(stEntry.get(), "days", TextIn(stRequest.stBody.acDays));
    PutText(stEntry.get(), "start", TextIn(stRequest.stBody.acStart));
    PutText(stEntry.get(), "end", TextIn(stRequest.stBody.acEnd));
    return AddEntry(stContext, kLan, std::size(MacFltInstBlock().auiInstIds), std::move(stEntry),
                    stReply);
}

uint32_t AddWlanBody(HandlerContext &stContext, const WlanMacFltBody &stBody, Word &stReply) {
    JsonValue stEntry = MakeObject();
    PutText(stEntry.get(), "ssid", TextIn(stBody.acSsidName));
    PutText(stEntry.get(), "mac", TextIn(stBody.acMac));
    return AddEntry(stContext, kWlan, std::size(WlanMacFltInstBlock().auiInstIds),
                    std::move(stEntry), stReply);
}

uint32_t AddWlan(HandlerContext &stContext, const WlanMacFltAddRequest &stRequest, Word &stReply) {
    return AddWlanBody(stContext, stRequest.stBody, stReply);
}

uint32_t RestoreWlan(HandlerContext &stContext, const WlanMacFltRestoreRequest &stRequest,
                     Word &stReply) {
    return AddWlanBody(stContext, stRequest.stBody, stReply);
}

template <const char *kTable>
uint32_t DelEntry(HandlerContext &stContext, const Word &stRequest, Word &) {
    HomeChange stChange(stContext.stHome);
    json_object *pstTable = stChange.At(kTable);
    json_object *pstEntry = FindNumber(pstTable, "id", stRequest.uiValue);
    if (pstEntry == nullptr) {
        return kRefused;
    }
    TakeOut(pstTable, pstEntry);
    stChange.Commit();
    return 0;
}

uint32_t IsExcluded(HandlerContext &stContext, const Word &stRequest, Word &stReply) {
    const HomeReader stHome(stContext.stHome);
    const auto astSsids = Elements(stHome.At("macFilter.excludedSsids"));
    const bool bExcluded = std::any_of(astSsids.begin(), astSsids.end(), [&](json_object *pstSsid) {
        return json_object_get_int64(pstSsid) == stRequest.uiValue;
    });
    stReply.uiValue = bExcluded ? kSsidExcluded : 0;
    return 0;
}

}  // namespace

void AddMacFilterRpcs(RpcTable &stTable) {
    stTable.Add(kRpcGetMacFltMode, GetMode);
    stTable.Add(kRpcSetMacFltMode, SetMode);
    stTable.Add(kRpcListLanMacFlt, ListLan);
    stTable.Add(kRpcGetLanMacFlt, GetLan);
    stTable.Add(kRpcAddLanMacFlt, AddLan);
    stTable.Add(kRpcDelLanMacFlt, DelEntry<kLan>);
    stTable.Add(kRpcListWlanMacFlt, ListWlan);
    stTable.Add(kRpcGetWlanMacFlt, GetWlan);
    stTable.Add(kRpcAddWlanMacFlt, AddWlan);
    stTable.Add(kRpcRestoreWlanMacFlt, RestoreWlan);
    stTable.Add(kRpcDelWlanMacFlt, DelEntry<kWlan>);
    stTable.Add(kRpcIsSsidExcluded, IsExcluded);
}

}  // namespace wap::gateway
