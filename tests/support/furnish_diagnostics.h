// A gateway that has run the network diagnostics.
#ifndef WAP_TESTS_SUPPORT_FURNISH_DIAGNOSTICS_H
#define WAP_TESTS_SUPPORT_FURNISH_DIAGNOSTICS_H

#include <string>

#include "support/world.h"

namespace wap::test {

/// The reply of a result that is a block: the status 0, and a descriptor of these bytes.
Reply DiagBlockReply(const std::string &sBytes);
/// The same for a text and its zero.
Reply DiagTextReply(const std::string &sText);

/// Every start is answered with 0, and there is a result of each test.
void FurnishDiagnostics(World &stWorld);

}  // namespace wap::test

#endif
