// Replies about the LAN and its hosts, by hand, and a gateway that gives them.
#ifndef WAP_TESTS_SUPPORT_FURNISH_LAN_H
#define WAP_TESTS_SUPPORT_FURNISH_LAN_H

#include <string>

#include "support/world.h"

namespace wap::test {

/// The reply that holds a DHCP server's settings: switched on, lease 86400.
std::string DhcpRecord();

/// Makes the platform answer every request of the LAN address and host services.
void FurnishLan(World &stWorld);

}  // namespace wap::test

#endif
