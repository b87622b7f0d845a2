// Replies about port mappings, by hand, and a gateway that gives them.
#ifndef WAP_TESTS_SUPPORT_FURNISH_PORTMAP_H
#define WAP_TESTS_SUPPORT_FURNISH_PORTMAP_H

#include <cstdint>
#include <string>
#include <vector>

#include "support/world.h"

namespace wap::test {

/// A WAN connection as "gulm" describes it.
struct WanFacts {
    std::string sName = "1_INTERNET_R_VID_100";
    uint32_t uiDev = 1;
    uint32_t uiConnDev = 2;
    uint32_t uiConn = 3;
    uint32_t uiKind = 1;
    uint32_t uiGate = 1;
    uint32_t uiMode = 0;
};

/// A port mapping.
struct MappingFacts {
    uint32_t uiEnable = 1;
    uint32_t uiExternalPort = 8080;
    uint32_t uiInternalPort = 80;
    std::string sProtocol = "TCP";
    std::string sClient = "192.168.1.20";
};

std::string WanBytes(const WanFacts &stWan = {});
/// As the addition writes it: the external port twice, the internal one at both its places.
std::string MappingBytes(const MappingFacts &stMapping = {});
/// A row of the table of all mappings.
std::string RowBytes(uint32_t uiWanIndex, uint32_t uiInstId, const MappingFacts &stMapping = {});

/// Makes the platform answer with a table of these bytes, in a new block for each request.
void FurnishMappingTable(World &stWorld, const std::string &sTable);
/// Makes the platform answer every request of the port mapping services.
void FurnishPortMapping(World &stWorld);

}  // namespace wap::test

#endif
