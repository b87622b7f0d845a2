// A gateway with one attach-control record.
#ifndef WAP_TESTS_SUPPORT_FURNISH_ATTACH_H
#define WAP_TESTS_SUPPORT_FURNISH_ATTACH_H

#include "support/world.h"

namespace wap::test {

/// Makes the platform answer every request of attach control: one record, of a host that may do
/// all and has limits, and a MAC filter with nothing in it unless the platform has one already.
void FurnishAttach(World &stWorld);

}  // namespace wap::test

#endif
