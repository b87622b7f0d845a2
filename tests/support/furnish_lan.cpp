#include "support/furnish_lan.h"

#include "support/entries.h"
#include "support/entry_table_lan.h"
#include "support/wire_bytes.h"

namespace wap::test {

std::string DhcpRecord() {
    std::string sRecord(1990, '\0');
    PutText(sRecord, 0, Word(0x5A5A5A5A));  // says nothing to the bridge
    PutText(sRecord, 4, Word(1));
    PutText(sRecord, 12, Word(86400));
    PutText(sRecord, 20, "192.168.1.2");
    PutText(sRecord, 36, "192.168.1.254");
    return sRecord;
}

void FurnishLan(World &stWorld) {
    auto &mapReplies = stWorld.stPlatform.mapReplies;
    mapReplies[0x471030A0] = {0, kLanAddressText};
    mapReplies[0x47302001] = {0, DhcpRecord()};
    mapReplies[0x471030B0] = {0, kHostSpeedText};
    mapReplies[0x4830512A] = {0, kGatewayNameText};
    for (const uint32_t uiChange : {0x47209098u, 0x47209099u, 0x4720909Du, 0x4720909Eu}) {
        mapReplies[uiChange] = {0, Word(0)};
    }
    const auto Bulk = [](const char *pcText) {
        return Reply{0, pcText + std::string(1, '\0'), true};
    };
    mapReplies[0x471030B1] = Bulk(kHostsByMacText);
    mapReplies[0x471030B2] = Bulk(kHostsByClassText);
    mapReplies[0x471030B3] = Bulk(kHostsByInterfaceText);
    mapReplies[0x471030B4] = Bulk(kHostStatsText);
}

}  // namespace wap::test
