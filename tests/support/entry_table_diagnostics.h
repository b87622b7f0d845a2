// The entries of the network diagnostics.
#ifndef WAP_TESTS_SUPPORT_ENTRY_TABLE_DIAGNOSTICS_H
#define WAP_TESTS_SUPPORT_ENTRY_TABLE_DIAGNOSTICS_H

#include <vector>

#include "support/entry_table.h"

namespace wap::test {

/// With FurnishDiagnostics.
std::vector<Entry> DiagnosticsEntries();

}  // namespace wap::test

#endif
