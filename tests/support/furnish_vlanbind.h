// A gateway whose LAN ports and SSIDs are bound to VLANs, and whose IPTV service works.
#ifndef WAP_TESTS_SUPPORT_FURNISH_VLANBIND_H
#define WAP_TESTS_SUPPORT_FURNISH_VLANBIND_H

#include <cstdint>
#include <string>
#include <vector>

#include "support/world.h"

namespace wap::test {

/// The reply about a LAN port: 329 bytes.
std::string LanBindBytes(const std::string &sBind, uint32_t uiMode = 1);

struct SsidFacts {
    uint32_t uiSsid;
    std::string sBind;
    uint32_t uiMode = 1;
};
/// The reply about the SSIDs, 1124 bytes: what is behind the given ones is not zero. The count is
/// that of the SSIDs unless another is given.
std::string SsidBytes(const std::vector<SsidFacts> &astSsids);
std::string SsidBytes(const std::vector<SsidFacts> &astSsids, uint32_t uiCount);

/// The reply about the IPTV connection, by fields.
struct IptvFacts {
    uint32_t uiWanIndex = 0x10102003;
    uint32_t uiStatus = 2;
    uint32_t uiServiceType = 8;
    uint32_t uiIpv4 = 1;
    uint16_t usMvlan4 = 45;
    uint16_t usMvlan6 = 4095;
};
std::string IptvBytes(const IptvFacts &stIptv);

/// Two LAN ports, SSID1 and SSID2, three multicast users.
void FurnishVlanBind(World &stWorld);

}  // namespace wap::test

#endif
