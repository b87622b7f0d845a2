// What lists of DNS servers come to, worked out in another way than the bridge does.
#ifndef WAP_TESTS_FUZZ_DNS_SERVERS_H
#define WAP_TESTS_FUZZ_DNS_SERVERS_H

#include <string>

namespace wap::test {

/// The list that is sent of an old and a new list of IPv4 servers; empty when there is no server.
std::string MergedIpv4Servers(const std::string &sOld, const std::string &sNew);
/// The two fields that are sent of an old and a new list of IPv6 servers.
std::string MergedIpv6Servers(const std::string &sOld, const std::string &sNew);

}  // namespace wap::test

#endif
