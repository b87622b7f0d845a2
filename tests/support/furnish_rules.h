// A gateway that keeps rules about traffic.
#ifndef WAP_TESTS_SUPPORT_FURNISH_RULES_H
#define WAP_TESTS_SUPPORT_FURNISH_RULES_H

#include <cstdint>
#include <string>
#include <vector>

#include "support/world.h"

namespace wap::test {

// The listings of the three kinds of rules.
inline constexpr uint32_t kGetMirrorRules = 0x48304193;
inline constexpr uint32_t kGetForwardRules = 0x48304197;
inline constexpr uint32_t kGetHttpRules = 0x4830419A;

/// The texts of a mirror rule: 347 bytes.
struct MirrorFacts {
    std::string sAddress = "203.0.113.80";
    std::string sPort = "80";
    std::string sDirection = "UP";
    std::string sProtocol = "TCP";
    std::string sMac = "00:11:22:33:44:55";
    std::string sIp = "192.168.1.100";
    std::string sToPort = "9000";
};
std::string MirrorBytes(const MirrorFacts &stRule);

/// The same of a forward rule: 342 bytes.
struct ForwardFacts {
    std::string sAddress = "203.0.113.80";
    std::string sPort = "80";
    std::string sProtocol = "TCP";
    std::string sMac = "00:11:22:33:44:55";
    std::string sIp = "192.168.1.100";
    std::string sToPort = "9000";
};
std::string ForwardBytes(const ForwardFacts &stRule);

/// The same of an HTTP rule: 919 bytes.
struct HttpFacts {
    std::string sAddress = "203.0.113.80";
    std::string sPort = "80";
    std::string sDirection = "UP";
    std::string sMac = "00:11:22:33:44:55";
    std::string sMethods = "GET,POST";
    std::string sStatusCodes = "200";
    std::string sHeaders = "Host,User-Agent";
};
std::string HttpBytes(const HttpFacts &stRule);
/// A row of their table: 923 bytes.
std::string HttpRow(uint32_t uiNumber, const HttpFacts &stRule);

/// Two rules of each kind. A listing is answered with the number of rules and a new block of what
/// the replies have for it, whose length is a number of rows; with what else is there as it is.
void FurnishRules(World &stWorld);

}  // namespace wap::test

#endif
