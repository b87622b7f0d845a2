#include "support/furnish_wanconfig.h"

#include "support/entries.h"
#include "support/wire_bytes.h"

namespace wap::test {

std::string WanListBytes(const std::vector<std::pair<uint32_t, std::string>> &astWans) {
    std::string sList = Word(static_cast<uint32_t>(astWans.size()));
    for (const auto &[uiWanIndex, sName] : astWans) {
        sList += Word(uiWanIndex);
        sList += Field(sName, 260);
    }
    sList.resize(2116, '\0');
    return sList;
}

std::string CountBytes(uint32_t uiCount) {
    return Word(uiCount) + std::string(512, '\x5A');
}

std::string DnsBytes(size_t uiSize, size_t uiAt, const std::string &sServers) {
    std::string sReply(uiSize, '\0');
    PutText(sReply, uiAt, sServers);
    return sReply;
}

void FurnishWanConfig(World &stWorld) {
    auto &mapReplies = stWorld.stPlatform.mapReplies;
    mapReplies[0x47302025] = {
        0, WanListBytes({{0x10101001, "1_INTERNET_R_VID_100"}, {0x20101002, "2_TR069_R_VID_46"}})};
    mapReplies[0x47209076] = {0, Word(kNewWan)};
    mapReplies[0x47209077] = {0, Word(0)};
    mapReplies[0x47209078] = {0, Word(0)};
    mapReplies[0x47301012] = {0, CountBytes(0)};
    mapReplies[0x4730100D] = {0, CountBytes(0)};
    mapReplies[0x4730100B] = {0, DnsBytes(12864, 524, "192.0.2.1,192.0.2.2")};
    mapReplies[0x4730100F] = {0, DnsBytes(12004, 704, "192.0.2.3,192.0.2.4")};
    mapReplies[0x4930000F] = {0, DnsBytes(1389, 912, "2001:db8::1,2001:db8::2")};
    mapReplies[0x4730105A] = {0, Word(0)};

    mapReplies[0x4710308A] = {0, kWanStatsText};
    mapReplies[0x4710308B] = {0, kWanInfoText};
    mapReplies[0x4710308C] = {0, kWanBandwidthText};
    mapReplies[0x4710308D] = {0, kWanStatusText};
    mapReplies[0x4710308E] = {0, Word(kInternetWan)};
    mapReplies[0x4710308F] = {0, kPonPhyText};
    mapReplies[0x471030D0] = {0, Word(kPonUpTime)};
    mapReplies[0x471030D1] = {0, kPonRegText};
    mapReplies[0x471030D2] = {0, kUplinkText};

    stWorld.stSecrets.Watch(kPppUser);
    stWorld.stSecrets.Watch(kPppPassword);
}

}  // namespace wap::test
