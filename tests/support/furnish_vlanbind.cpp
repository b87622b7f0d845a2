#include "support/furnish_vlanbind.h"

#include "support/wire_bytes.h"

namespace wap::test {

namespace {

std::string HalfWord(uint16_t usValue) {
    return Word(usValue).substr(0, 2);
}

}  // namespace

std::string LanBindBytes(const std::string &sBind, uint32_t uiMode) {
    return Word(77) + Field("eth", 192) + Word(uiMode) + Field(sBind, 129);
}

std::string SsidBytes(const std::vector<SsidFacts> &astSsids, uint32_t uiCount) {
    std::string sBytes = Word(uiCount);
    for (const SsidFacts &stSsid : astSsids) {
        sBytes += Word(stSsid.uiSsid) + Word(stSsid.uiMode) + Field(stSsid.sBind, 132);
    }
    sBytes.resize(1124, 'z');
    return sBytes;
}

std::string SsidBytes(const std::vector<SsidFacts> &astSsids) {
    return SsidBytes(astSsids, static_cast<uint32_t>(astSsids.size()));
}

std::string IptvBytes(const IptvFacts &stIptv) {
    return Word(stIptv.uiWanIndex) + Word(stIptv.uiStatus) + Word(stIptv.uiServiceType) +
           Word(stIptv.uiIpv4) + HalfWord(stIptv.usMvlan4) + HalfWord(stIptv.usMvlan6);
}

void FurnishVlanBind(World &stWorld) {
    Platform &stPlatform = stWorld.stPlatform;
    stPlatform.mapReplies[0x47209075] = {0, Word(0)};
    stPlatform.mapReplies[0x47301017] = {0, Word(2) + std::string(32, 'z')};
    stPlatform.mapReplies[0x47603122] = {0, LanBindBytes("10/100")};
    stPlatform.mapReplies[0x47103093] = {0, SsidBytes({{1, "20/200,30/300"}, {2, "", 0}})};
    stPlatform.mapReplies[0x47317140] = {0, IptvBytes({})};
    stPlatform.mapReplies[0x47317145] = {0, Word(2)};
    stPlatform.mapReplies[0x47305019] = {0, Word(3)};
}

}  // namespace wap::test
