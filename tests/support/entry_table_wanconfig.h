#ifndef WAP_TESTS_SUPPORT_ENTRY_TABLE_WANCONFIG_H
#define WAP_TESTS_SUPPORT_ENTRY_TABLE_WANCONFIG_H

#include <cstdint>
#include <vector>

#include "support/entry_table.h"

namespace wap::test {

// What "app_m" writes; none of it means anything to the bridge.
inline constexpr const char *kWanStatsText = R"({"Result":0, "Stats":"of a WAN"})";
inline constexpr const char *kWanInfoText = R"({"Result":0, "Info":"about a WAN"})";
inline constexpr const char *kWanBandwidthText = R"({"Result":0, "Bandwidth":"of a WAN"})";
inline constexpr const char *kWanStatusText = R"({"Result":0, "Status":"of a WAN"})";
inline constexpr const char *kPonPhyText = R"({"Result":0, "TXPower": 3})";
inline constexpr const char *kPonRegText = R"({"Result":0, "RegisterStatus": "REG_AUTH"})";
inline constexpr const char *kUplinkText = R"({"Result":0, "UsStats": 5, "DsStats": 6})";

inline constexpr uint32_t kInternetWan = 0x10101001;
inline constexpr uint32_t kPonUpTime = 86400;
inline constexpr uint32_t kNewWan = 0x10102001;

// What the settings of the entry table hold, and nobody must see.
inline constexpr const char *kPppUser = "ppp-user-0123456789";
inline constexpr const char *kPppPassword = "ppp-password-ABCDEFGHIJ";

/// The entries of the WAN configuration and of the status queries. The good answers are those to
/// FurnishWanConfig, the failing ones those to requests that all fail.
std::vector<Entry> WanConfigEntries();

}  // namespace wap::test

#endif
