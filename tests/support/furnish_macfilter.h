// Replies about the MAC filter, by hand, and a gateway that gives them.
#ifndef WAP_TESTS_SUPPORT_FURNISH_MACFILTER_H
#define WAP_TESTS_SUPPORT_FURNISH_MACFILTER_H

#include <cstdint>
#include <string>
#include <vector>

#include "support/world.h"

namespace wap::test {

/// What the mode query is answered with.
std::string ModeBytes(uint32_t uiMode, uint32_t uiStatus);
/// An index of uiSlots ids, those that are not given 0.
std::string IndexBytes(const std::vector<uint32_t> &auiIds, size_t uiSlots);
/// An entry of the wired table, with more in it than the bridge ever looks at.
std::string LanEntryBytes(const std::string &sMac);
/// An entry of the wireless table.
std::string WlanEntryBytes(const std::string &sSsidName, const std::string &sMac);

/// The one MAC address of the filter that FurnishMacFilter makes.
inline constexpr const char *kFilteredMac = "02:00:00:00:00:0A";

/// Makes the platform answer every request of the MAC filter: a black list that is on, with one
/// address in either table. There are two wireless networks, 1 and 5, which the bridge asks about
/// when the platform has the feature 314.
void FurnishMacFilter(World &stWorld);
/// Has the bridge ask about the wireless networks, which have a table of their own.
void AddWirelessNetworks(World &stWorld);
/// Makes a trust list of the black list, one with wireless networks.
void MakeTrustList(World &stWorld);

}  // namespace wap::test

#endif
