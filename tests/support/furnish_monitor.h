// A gateway that keeps the registry of monitored addresses.
#ifndef WAP_TESTS_SUPPORT_FURNISH_MONITOR_H
#define WAP_TESTS_SUPPORT_FURNISH_MONITOR_H

#include <cstdint>
#include <string>

#include "support/world.h"

namespace wap::test {

inline constexpr uint32_t kAddMonitored = 0x48304173;
inline constexpr uint32_t kDelMonitored = 0x48304174;
inline constexpr uint32_t kAskMonitored = 0x483041A5;

/// The registry text of the gateway below, without its zero, and what Java gets for it.
inline constexpr const char *kRegistryText =
    "com.example.meter[\"10.0.0.1\",\"10.0.0.2\"];com.example.shield[\"192.0.2.7\"]";
inline constexpr const char *kRegistryAnswer =
    "{\"Result\":0,\"List\":[{\"BundleName\":\"com.example.meter\",\"DestAddressList\":"
    "[\"10.0.0.1\",\"10.0.0.2\"]},{\"BundleName\":\"com.example.shield\",\"DestAddressList\":"
    "[\"192.0.2.7\"]}]}";

/// Makes the query's reply one of these counts and a block of these bytes.
void AnswerRegistry(World &stWorld, uint32_t uiBundles, uint32_t uiAddresses, std::string sBlock);

/// Two bundles with addresses. The blocks that come with changes and notices are taken, unless the
/// change is refused.
void FurnishMonitor(World &stWorld);

}  // namespace wap::test

#endif
