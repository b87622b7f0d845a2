// What reads bytes from outside, each part as a function of bytes. A function ends the program when
// the bridge breaks a rule; that something else is wrong is for the sanitizers to say.
//
// A target is a line here, a source fuzz_<name>.cpp, and a folder of seeds, corpus/<name>.
#ifndef WAP_TESTS_FUZZ_TARGETS_H
#define WAP_TESTS_FUZZ_TARGETS_H

#include <cstddef>
#include <cstdint>
#include <string>

#include "support/world.h"

/// X(name, function)
#define WAP_FUZZ_TARGETS(X)                \
    X(bind_text, FuzzBindText)             \
    X(connection_name, FuzzConnectionName) \
    X(ipv6_prefix, FuzzIpv6Prefix)         \
    X(ping_parameters, FuzzPingParameters) \
    X(registry_text, FuzzRegistryText)     \
    X(rule_tables, FuzzRuleTables)         \
    X(wan_settings, FuzzWanSettings)

namespace wap::test {

/// A text of which a binding is made: which texts are acceptable, and what is sent for them.
void FuzzBindText(const uint8_t *pucData, size_t uiSize);
/// The name of a WAN connection in a route, as a process of the gateway or a bundle writes it.
void FuzzConnectionName(const uint8_t *pucData, size_t uiSize);
/// The prefix of an IPv6 route.
void FuzzIpv6Prefix(const uint8_t *pucData, size_t uiSize);
/// The parameters of a ping as JSON, to the record that is sent; behind a zero byte, the host.
void FuzzPingParameters(const uint8_t *pucData, size_t uiSize);
/// The registry of monitored addresses, to the list that Java gets; behind a zero byte, the numbers
/// of bundles and of addresses that the gateway tells.
void FuzzRegistryText(const uint8_t *pucData, size_t uiSize);
/// A listing of rules about traffic: a byte for their kind, a word for the number that the gateway
/// tells, and the table.
void FuzzRuleTables(const uint8_t *pucData, size_t uiSize);
/// The settings of a WAN connection as JSON, to the record that is sent; behind a zero byte, the
/// DNS servers that the gateway tells.
void FuzzWanSettings(const uint8_t *pucData, size_t uiSize);

/// Ends the program unless a rule holds.
void Require(bool bHolds, const char *pcRule);
/// Ends the program when something is still held, or a secret was seen in the open.
void RequireClean(World &stWorld);
/// The bytes up to a zero, as the bridge gets to see them.
std::string TextIn(const uint8_t *pucData, size_t uiSize);

}  // namespace wap::test

#endif
