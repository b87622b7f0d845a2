// What reads bytes from outside, each part as a function of bytes. A function ends the program when
// the bridge breaks a rule; that something else is wrong is for the sanitizers to say.
//
// A target is a line here, a source fuzz_<name>.cpp, and a folder of seeds, corpus/<name>.
#ifndef WAP_TESTS_FUZZ_TARGETS_H
#define WAP_TESTS_FUZZ_TARGETS_H

#include <json-c/json_types.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "support/world.h"

/// X(name, function)
#define WAP_FUZZ_TARGETS(X)                \
    X(any_reply, FuzzAnyReply)             \
    X(bind_text, FuzzBindText)             \
    X(captures, FuzzCaptures)              \
    X(connection_name, FuzzConnectionName) \
    X(descriptors, FuzzDescriptors)        \
    X(dns_lists, FuzzDnsLists)             \
    X(ipv6_prefix, FuzzIpv6Prefix)         \
    X(jvm_version, FuzzJvmVersion)         \
    X(ping_parameters, FuzzPingParameters) \
    X(registry_text, FuzzRegistryText)     \
    X(rights_text, FuzzRightsText)         \
    X(rule_tables, FuzzRuleTables)         \
    X(wan_name, FuzzWanName)               \
    X(wan_settings, FuzzWanSettings)

namespace wap::test {

/// An entry of Java, by its method's name, whose requests get other replies than an honest process
/// gives: behind a zero byte, what becomes of each reply, and with which bytes.
void FuzzAnyReply(const uint8_t *pucData, size_t uiSize);
/// A text of which a binding is made: which texts are acceptable, and what is sent for them.
void FuzzBindText(const uint8_t *pucData, size_t uiSize);
/// A file that gatewayctl replay is given, or the event of a packet in one.
void FuzzCaptures(const uint8_t *pucData, size_t uiSize);
/// The name of a WAN connection in a route, as a process of the gateway or a bundle writes it.
void FuzzConnectionName(const uint8_t *pucData, size_t uiSize);
/// A bulk block: two words that tell its lengths, a byte that tells whether it is named rightly,
/// and the block. What is in it is written and read again, too.
void FuzzDescriptors(const uint8_t *pucData, size_t uiSize);
/// Two lists of DNS servers with a zero byte between them, to the list that is sent; the byte
/// before them tells how much room there is for an IPv4 list.
void FuzzDnsLists(const uint8_t *pucData, size_t uiSize);
/// The prefix of an IPv6 route.
void FuzzIpv6Prefix(const uint8_t *pucData, size_t uiSize);
/// What a Java runtime says about its version, to the object that Java gets.
void FuzzJvmVersion(const uint8_t *pucData, size_t uiSize);
/// The parameters of a ping as JSON, to the record that is sent; behind a zero byte, the host.
void FuzzPingParameters(const uint8_t *pucData, size_t uiSize);
/// The registry of monitored addresses, to the list that Java gets; behind a zero byte, the numbers
/// of bundles and of addresses that the gateway tells.
void FuzzRegistryText(const uint8_t *pucData, size_t uiSize);
/// The accounts of a storage service as they come in a segment: a word for how many there are, and
/// what is written into it.
void FuzzRightsText(const uint8_t *pucData, size_t uiSize);
/// A listing of rules about traffic: a byte for their kind, a word for the number that the gateway
/// tells, and the table.
void FuzzRuleTables(const uint8_t *pucData, size_t uiSize);
/// The list of WAN connections: a word for a VLAN that is looked for in their names, and the reply.
void FuzzWanName(const uint8_t *pucData, size_t uiSize);
/// The settings of a WAN connection as JSON, to the record that is sent; behind a zero byte, the
/// DNS servers that the gateway tells.
void FuzzWanSettings(const uint8_t *pucData, size_t uiSize);

/// Ends the program unless a rule holds.
void Require(bool bHolds, const char *pcRule);
/// Ends the program when something is still held, or a secret was seen in the open.
void RequireClean(World &stWorld);
/// A text that is JSON and nothing else, by json-c; null for any other. The caller puts it away.
json_object *StrictJson(const std::string &sText, int iFlags = 0, int iDepth = 32);
/// Whether a process can put the bytes into a block: many are packed, and must not become more.
bool FitsBlock(const std::string &sBytes);
/// The bytes up to a zero, as the bridge gets to see them.
std::string TextIn(const uint8_t *pucData, size_t uiSize);
/// The number of 32 bits that digits tell, and nothing else; none at all tell 0.
std::optional<uint32_t> DecimalIn(const std::string &sText);

}  // namespace wap::test

#endif
