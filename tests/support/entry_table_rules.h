// The entries of the rules about traffic.
#ifndef WAP_TESTS_SUPPORT_ENTRY_TABLE_RULES_H
#define WAP_TESTS_SUPPORT_ENTRY_TABLE_RULES_H

#include <vector>

#include "support/entry_table.h"

namespace wap::test {

/// With FurnishRules.
std::vector<Entry> RulesEntries();

}  // namespace wap::test

#endif
