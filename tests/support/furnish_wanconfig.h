// Replies about WAN connections and their uplink, by hand, and a gateway that gives them.
#ifndef WAP_TESTS_SUPPORT_FURNISH_WANCONFIG_H
#define WAP_TESTS_SUPPORT_FURNISH_WANCONFIG_H

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "support/entry_table_wanconfig.h"
#include "support/world.h"

namespace wap::test {

/// A list of connections: WAN index and name of each.
std::string WanListBytes(const std::vector<std::pair<uint32_t, std::string>> &astWans);
/// The answer to the question how many connections of a kind there are.
std::string CountBytes(uint32_t uiCount);
/// Replies of uiSize bytes with the connection's DNS servers at uiAt.
std::string DnsBytes(size_t uiSize, size_t uiAt, const std::string &sServers);

/// Makes the platform answer every request of the WAN configuration and of the status queries, and
/// watches the secrets of the entry table.
void FurnishWanConfig(World &stWorld);

}  // namespace wap::test

#endif
