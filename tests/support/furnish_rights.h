// A gateway with accounts that answers about them.
#ifndef WAP_TESTS_SUPPORT_FURNISH_RIGHTS_H
#define WAP_TESTS_SUPPORT_FURNISH_RIGHTS_H

#include <string>

#include "support/entry_table_rights.h"
#include "support/world.h"

namespace wap::test {

/// Makes the platform answer every request about accounts and rights, and watches the passwords of
/// the entry table. The requests for right information, unless their reply is a refusal, write
/// these bytes into the segments.
void FurnishRights(World &stWorld, const std::string &sFtpBytes, const std::string &sSambaBytes);
/// The same with the texts of the entry table.
void FurnishRights(World &stWorld);

}  // namespace wap::test

#endif
