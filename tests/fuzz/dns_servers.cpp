#include "fuzz/dns_servers.h"

#include <algorithm>
#include <vector>

#include "support/wire_bytes.h"

namespace wap::test {

namespace {

constexpr size_t kIpv4Longest = 32;
constexpr size_t kIpv6Longest = 63;
constexpr size_t kIpv6Field = 64;

/// The servers of a list that are there, without the commas.
std::vector<std::string> ServersOf(const std::string &sList) {
    std::vector<std::string> asServers;
    std::string sServer;
    for (const char cChar : sList + ",") {
        if (cChar != ',') {
            sServer += cChar;
        } else if (!sServer.empty()) {
            asServers.push_back(sServer);
            sServer.clear();
        }
    }
    return asServers;
}

/// The first two servers of the new list, and of the old one where the new has none.
std::vector<std::string> Merged(const std::string &sOld, const std::string &sNew) {
    const std::vector<std::string> asOld = ServersOf(sOld);
    std::vector<std::string> asMerged = ServersOf(sNew);
    asMerged.resize(std::min<size_t>(asMerged.size(), 2));
    for (size_t i = asMerged.size(); i < 2 && i < asOld.size(); ++i) {
        asMerged.push_back(asOld[i]);
    }
    return asMerged;
}

}  // namespace

std::string MergedIpv4Servers(const std::string &sOld, const std::string &sNew) {
    const std::vector<std::string> asMerged = Merged(sOld, sNew);
    if (asMerged.empty()) {
        return "";
    }
    return (asMerged[0] + (asMerged.size() > 1 ? "," + asMerged[1] : "")).substr(0, kIpv4Longest);
}

std::string MergedIpv6Servers(const std::string &sOld, const std::string &sNew) {
    std::vector<std::string> asMerged = Merged(sOld, sNew);
    asMerged.resize(2);
    return Field(asMerged[0].substr(0, kIpv6Longest), kIpv6Field) +
           Field(asMerged[1].substr(0, kIpv6Longest), kIpv6Field);
}

}  // namespace wap::test
