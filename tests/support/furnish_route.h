// Replies about routes, by hand, and a gateway that gives them.
#ifndef WAP_TESTS_SUPPORT_FURNISH_ROUTE_H
#define WAP_TESTS_SUPPORT_FURNISH_ROUTE_H

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "support/world.h"

namespace wap::test {

/// The name that the gateway gives for every WAN connection.
inline constexpr const char *kRouteAlias = "2_INTERNET_R_VID_100";

/// The WAN list of 2116 bytes, with these indexes and names; what is behind them is not zero.
std::string RouteWans(const std::vector<std::pair<uint32_t, std::string>> &astWans);
/// The list of 772 bytes.
std::string RouteIdBytes(const std::vector<uint32_t> &auiIds);

/// A static route of 731 or 621 bytes.
struct StaticRoute4 {
    std::string sDest = "10.20.0.0";
    std::string sMask = "255.255.0.0";
    std::string sGateway = "100.64.0.1";
    std::string sConnection = "wan1.2.ip3";
    std::string sLan{};
    uint32_t uiStatic = 1;
};
struct StaticRoute6 {
    std::string sPrefix = "2001:db8:20::/48";
    std::string sNextHop = "fe80::1";
    std::string sInterface = "wan1.2.ip3";
};
std::string StaticBytes(const StaticRoute4 &stRoute);
std::string StaticBytes(const StaticRoute6 &stRoute);

/// A route in force of 112 or 220 bytes.
struct CurrentRoute4 {
    std::string sInterface = "wan1.2.ip3";
    std::string sDest = "0.0.0.0";
    std::string sMask = "0.0.0.0";
    std::string sGateway = "100.64.0.1";
};
struct CurrentRoute6 {
    std::string sInterface = "wan1.2.ip3";
    std::string sPrefix = "::/0";
    std::string sNextHop = "fe80::1";
};
std::string CurrentBytes(const CurrentRoute4 &stRoute);
std::string CurrentBytes(const CurrentRoute6 &stRoute);

/// Where the scripted replies hold the records of the routes in force of a family: the numbers that
/// precede the descriptor are made for each request.
inline constexpr uint32_t kCurrentOfFamily[] = {0x46345865, 0xC6345865};

/// Makes the platform answer every request of the routes: two static routes and one in force of
/// each family.
void FurnishRoutes(World &stWorld);

}  // namespace wap::test

#endif
