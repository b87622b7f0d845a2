// What is asked for, and the answers that each process at the other end has ready: what is measured
// is the way there and back.
#ifndef WAP_BENCH_COMMON_READY_ANSWERS_H
#define WAP_BENCH_COMMON_READY_ANSWERS_H

#include <stdint.h>

#include <string>
#include <vector>

namespace wap::bench {

/// In the order of the Java side's Work.
enum class Work : uint32_t { kUpTime, kMac, kWanStatus, kHosts };

inline constexpr uint32_t kWan = 0x10101001;
inline constexpr uint32_t kUpTime = 86405;
inline constexpr char kMac[] = "02:A1:B2:00:00:01";
inline constexpr char kWanStatus[] =
    "{\"Result\":0,\"ConnectionStatus\":\"Connected\",\"ExternalIPAddress\":\"203.0.113.10\","
    "\"SubnetMask\":\"255.255.255.0\",\"DefaultGateway\":\"203.0.113.1\","
    "\"DNSServers\":\"192.0.2.53,192.0.2.54\",\"IPv6IPAddress\":\"2001:db8:0:1::10\","
    "\"IPv6DNSServers\":\"2001:db8::53,2001:db8::54\"}";

/// A list of hosts in JSON, 64 KiB with its zero.
const std::string &HostsText();

/// The answer as a text, as Java shows it.
std::string AnswerText(Work eWork);

/// A table of forward rules as records, one behind the other.
std::string ForwardRuleTable(uint32_t uiRules);

}  // namespace wap::bench

#endif
