#ifndef WAP_TESTS_SUPPORT_ENTRY_TABLE_PORTMAP_H
#define WAP_TESTS_SUPPORT_ENTRY_TABLE_PORTMAP_H

#include <vector>

#include "support/entry_table.h"

namespace wap::test {

/// The port mapping entries. The good answers are those to FurnishPortMapping, the failing ones
/// those to requests that all fail.
std::vector<Entry> PortMappingEntries();

}  // namespace wap::test

#endif
