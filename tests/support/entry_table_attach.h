#ifndef WAP_TESTS_SUPPORT_ENTRY_TABLE_ATTACH_H
#define WAP_TESTS_SUPPORT_ENTRY_TABLE_ATTACH_H

#include <vector>

#include "support/entry_table.h"

namespace wap::test {

/// The attach control entries. The good answers are those to FurnishAttach, the failing ones those
/// to requests that all fail.
std::vector<Entry> AttachEntries();

}  // namespace wap::test

#endif
