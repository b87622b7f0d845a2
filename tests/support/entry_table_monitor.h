// The entries of the traffic monitoring services.
#ifndef WAP_TESTS_SUPPORT_ENTRY_TABLE_MONITOR_H
#define WAP_TESTS_SUPPORT_ENTRY_TABLE_MONITOR_H

#include <vector>

#include "support/entry_table.h"

namespace wap::test {

/// With FurnishMonitor.
std::vector<Entry> MonitorEntries();

}  // namespace wap::test

#endif
