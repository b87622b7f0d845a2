#include "support/furnish_macfilter.h"

#include "support/wire_bytes.h"

namespace wap::test {

std::string ModeBytes(uint32_t uiMode, uint32_t uiStatus) {
    return Word(uiMode) + Word(uiStatus) + std::string(60, '\x5A') + Word(uiMode) + Word(uiStatus) +
           std::string(52, '\x5A');
}

std::string IndexBytes(const std::vector<uint32_t> &auiIds, size_t uiSlots) {
    std::string sBytes = Word(static_cast<uint32_t>(auiIds.size()));
    for (const uint32_t uiId : auiIds) {
        sBytes += Word(uiId);
    }
    sBytes.resize(4 + 4 * uiSlots, '\0');
    return sBytes;
}

std::string LanEntryBytes(const std::string &sMac) {
    return Word(1) + Field(sMac, 32) + Field("whatever", 32) + Field("YYYYYNN", 16) +
           Field("00:00", 16) + Field("23:59", 16);
}

std::string WlanEntryBytes(const std::string &sSsidName, const std::string &sMac) {
    return Word(1) + Field(sSsidName, 32) + Field(sMac, 32);
}

void FurnishMacFilter(World &stWorld) {
    std::map<uint32_t, Reply> &mapReplies = stWorld.stPlatform.mapReplies;
    mapReplies[0x47307000] = {0, ModeBytes(0, 1)};
    mapReplies[0x47309024] = {0, IndexBytes({3}, 32)};
    mapReplies[0x40007000] = {0, LanEntryBytes(kFilteredMac)};
    mapReplies[0x47309027] = {0, IndexBytes({4}, 256)};
    mapReplies[0x4730701A] = {0, WlanEntryBytes("SSID-1", kFilteredMac)};
    mapReplies[0x49350180] = {0, Word(0)};
    mapReplies[0x47103092] = {0, IndexBytes({1, 5}, 32)};
    mapReplies[0x4730701D] = {0, Word(21)};
    mapReplies[0x47209091] = {0, Word(0)};
    mapReplies[0x47209092] = {0, Word(22)};
    mapReplies[0x47209093] = {0, Word(0)};
    mapReplies[0x47209094] = {0, Word(23)};
    mapReplies[0x47209095] = {0, Word(0)};
}

void AddWirelessNetworks(World &stWorld) {
    stWorld.stPlatform.setFeatures.insert(314);
}

void MakeTrustList(World &stWorld) {
    stWorld.stPlatform.mapReplies[0x47307000] = {0, ModeBytes(1, 1)};
    AddWirelessNetworks(stWorld);
}

}  // namespace wap::test
