// The entries of the runtime descriptions, the reset, the lights and the voice lines.
#ifndef WAP_TESTS_SUPPORT_ENTRY_TABLE_RUNTIME_H
#define WAP_TESTS_SUPPORT_ENTRY_TABLE_RUNTIME_H

#include <vector>

#include "support/entry_table.h"

namespace wap::test {

/// With FurnishRuntime.
std::vector<Entry> RuntimeEntries();

}  // namespace wap::test

#endif
