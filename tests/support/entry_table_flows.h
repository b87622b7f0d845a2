// The entries of the flows.
#ifndef WAP_TESTS_SUPPORT_ENTRY_TABLE_FLOWS_H
#define WAP_TESTS_SUPPORT_ENTRY_TABLE_FLOWS_H

#include <vector>

#include "support/entry_table.h"

namespace wap::test {

/// With FurnishFlows.
std::vector<Entry> FlowEntries();

}  // namespace wap::test

#endif
