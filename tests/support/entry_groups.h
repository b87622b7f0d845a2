// All Java entries, each with a gateway that answers it.
#ifndef WAP_TESTS_SUPPORT_ENTRY_GROUPS_H
#define WAP_TESTS_SUPPORT_ENTRY_GROUPS_H

#include <vector>

#include "support/entry_table.h"
#include "support/world.h"

namespace wap::test {

/// Entries that the same furnishing answers.
struct EntryGroup {
    std::vector<Entry> astEntries;
    void (*pfnFurnish)(World &stWorld);
};

const std::vector<EntryGroup> &EntryGroups();

/// An entry with the furnishing of its group.
struct FurnishedEntry {
    Entry stEntry;
    void (*pfnFurnish)(World &stWorld);
};

/// The entries of all groups.
std::vector<FurnishedEntry> AllEntries();

}  // namespace wap::test

#endif
