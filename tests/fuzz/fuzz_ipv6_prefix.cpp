#include <arpa/inet.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>
#include <string>
#include <vector>

#include "fuzz/targets.h"
#include "lan/route_names.h"

namespace wap::test {

namespace {

using Address = std::array<uint8_t, 16>;

std::optional<Address> AddressOf(std::string sText) {
    Address aucAddress{};
    if (inet_pton(AF_INET6, sText.c_str(), aucAddress.data()) == 1) {
        return aucAddress;
    }
    sText.erase(sText.find_last_of("0123456789abcdefABCDEF") + 1);
    return inet_pton(AF_INET6, sText.c_str(), aucAddress.data()) == 1
               ? std::optional<Address>(aucAddress)
               : std::nullopt;
}

/// What stands between slashes.
std::vector<std::string> PartsOf(const std::string &sText) {
    std::vector<std::string> asParts(1);
    for (const char cChar : sText) {
        if (cChar != '/') {
            asParts.back() += cChar;
        } else if (!asParts.back().empty()) {
            asParts.emplace_back();
        }
    }
    if (asParts.back().empty()) {
        asParts.pop_back();
    }
    return asParts;
}

}  // namespace

void FuzzIpv6Prefix(const uint8_t *pucData, size_t uiSize) {
    const std::string sText = TextIn(pucData, uiSize);
    std::optional<Address> aucWanted;
    std::optional<uint32_t> uiWanted;
    const std::vector<std::string> asParts = PartsOf(sText.substr(0, 63));
    if (asParts.size() >= 2) {
        aucWanted = AddressOf(asParts[0]);
        uiWanted = DecimalIn(asParts[1]);
    }
    World stWorld;
    Ipv6Prefix stPrefix;
    std::memset(&stPrefix, 0xA5, sizeof(stPrefix));
    const Ipv6Prefix stBefore = stPrefix;
    const uint32_t uiResult = VT_Route6_GetIpStuctFromString(sText.c_str(), &stPrefix);
    Require(uiResult <= 1, "a prefix is read or not");
    Require((uiResult == 0) == (aucWanted && uiWanted), "the right prefixes are read");
    if (uiResult == 0) {
        Require(std::equal(aucWanted->begin(), aucWanted->end(), stPrefix.aucAddress),
                "the address is what the text says");
        Require(stPrefix.uiLength == *uiWanted, "the length is what the text says");
    } else {
        Require(std::memcmp(&stPrefix, &stBefore, sizeof(stPrefix)) == 0,
                "nothing is written without a success");
    }
    RequireClean(stWorld);
}

}  // namespace wap::test
