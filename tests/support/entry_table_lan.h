#ifndef WAP_TESTS_SUPPORT_ENTRY_TABLE_LAN_H
#define WAP_TESTS_SUPPORT_ENTRY_TABLE_LAN_H

#include <vector>

#include "support/entry_table.h"

namespace wap::test {

// What the furnished processes write; none of it means anything to the bridge.
inline constexpr const char *kLanAddressText =
    R"({"Result":0,"IP":"192.168.1.1","Mask":"255.255.255.0"})";
inline constexpr const char *kHostSpeedText = R"({"Result":0,"Up":12,"Down":3456})";
inline constexpr const char *kGatewayNameText = "The house";
inline constexpr const char *kHostsByMacText =
    R"({"Result":0,"List":[{"Mac":"02:00:00:00:00:01"}]})";
inline constexpr const char *kHostsByClassText = R"({"Result":0,"List":[{"Class":"PHONE"}]})";
inline constexpr const char *kHostsByInterfaceText = R"({"Result":0,"List":[{"Port":"LAN2"}]})";
inline constexpr const char *kHostStatsText = R"({"Result":0,"List":[{"Bytes":77}]})";

/// The entries of the LAN address and of the LAN hosts. The good answers are those to FurnishLan,
/// the failing ones those to requests that all fail.
std::vector<Entry> LanEntries();

}  // namespace wap::test

#endif
