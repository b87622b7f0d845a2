// The entries of the VLAN bindings and of the IPTV status.
#ifndef WAP_TESTS_SUPPORT_ENTRY_TABLE_VLANBIND_H
#define WAP_TESTS_SUPPORT_ENTRY_TABLE_VLANBIND_H

#include <vector>

#include "support/entry_table.h"

namespace wap::test {

/// With FurnishVlanBind.
std::vector<Entry> VlanBindEntries();

}  // namespace wap::test

#endif
