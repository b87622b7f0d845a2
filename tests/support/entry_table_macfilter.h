#ifndef WAP_TESTS_SUPPORT_ENTRY_TABLE_MACFILTER_H
#define WAP_TESTS_SUPPORT_ENTRY_TABLE_MACFILTER_H

#include <vector>

#include "support/entry_table.h"

namespace wap::test {

/// The MAC filter entries. The good answers are those to FurnishMacFilter, the failing ones those
/// to requests that all fail.
std::vector<Entry> MacFilterEntries();

}  // namespace wap::test

#endif
