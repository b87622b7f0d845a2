#ifndef WAP_TESTS_SUPPORT_ENTRY_TABLE_ROUTE_H
#define WAP_TESTS_SUPPORT_ENTRY_TABLE_ROUTE_H

#include <vector>

#include "support/entry_table.h"

namespace wap::test {

/// The entries of the routes. The good answers are those to FurnishRoutes, the failing ones those
/// to requests that all fail.
std::vector<Entry> RouteEntries();

}  // namespace wap::test

#endif
