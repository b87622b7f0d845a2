#include <strings.h>

#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>

#include "fuzz/targets.h"
#include "lan/route_names.h"
#include "wan/jni_wan_info.h"

namespace wap::test {

namespace {

constexpr uint32_t kNoNumber = 0xFFFFFFFF;

/// What the C library read as a number of 32 bits; kNoNumber when it does not fit.
uint32_t As32Bits(long long iNumber) {
    return iNumber <= -(1LL << 32) || iNumber >= (1LL << 32) ? kNoNumber
                                                             : static_cast<uint32_t>(iNumber);
}

/// The WAN index of a connection name, worked out with the C library.
std::optional<uint32_t> IndexOf(const std::string &sWhole) {
    const std::string sName = sWhole.substr(0, 31);
    if (sName.size() < 4) {
        return std::nullopt;
    }
    long long iDev = kNoNumber;
    long long iConnDev = kNoNumber;
    (void)std::sscanf(sName.c_str() + 3, "%lld.%lld", &iDev, &iConnDev);  // NOLINT(cert-err34-c)
    const uint32_t uiDev = As32Bits(iDev);
    const uint32_t uiConnDev = As32Bits(iConnDev);
    const size_t uiPoint = sName.rfind('.');
    if (uiPoint == std::string::npos || uiPoint + 2 > sName.size()) {
        return std::nullopt;
    }
    const size_t uiNumber = sName.find_first_of("12345678", uiPoint + 2);
    if (uiNumber == std::string::npos) {
        return std::nullopt;
    }
    const unsigned long long uiConn = std::strtoull(sName.c_str() + uiNumber, nullptr, 10);
    if (uiDev == kNoNumber || uiConnDev == kNoNumber || uiConn >= kNoNumber) {
        return std::nullopt;
    }
    const std::string sWord = sName.substr(uiPoint + 1, uiNumber - uiPoint - 1);
    uint32_t uiKind = 0;
    if (strcasecmp(sWord.c_str(), "ppp") == 0) {
        uiKind = 0x20000000;
    } else if (strcasecmp(sWord.c_str(), "ip") == 0) {
        uiKind = 0x10000000;
    } else {
        return std::nullopt;
    }
    return uiKind | (uiDev & 0xFF) << 20 | (uiConnDev & 0xFF) << 12 |
           static_cast<uint32_t>(uiConn & 0xFF);
}

/// The name that an index has leads back to it, unless its last number begins with a digit that no
/// such number begins with.
void CheckWayBack(uint32_t uiIndex) {
    char acName[32] = {};
    Require(VT_API_GetWanIfName(uiIndex, acName) == 0, "an index that was read has a name");
    const std::string sLast = std::to_string(uiIndex & 0xFFF);
    const bool bReadable = sLast[0] >= '1' && sLast[0] <= '8';
    uint32_t uiAgain = 0;
    Require((ParseConnectionName(acName, &uiAgain) == 0) == bReadable,
            "names that the bridge writes are read, but for some first digits");
    Require(!bReadable || uiAgain == uiIndex, "an index's name has that index");
}

}  // namespace

void FuzzConnectionName(const uint8_t *pucData, size_t uiSize) {
    const std::string sName = TextIn(pucData, uiSize);
    World stWorld;
    uint32_t uiIndex = 0xA5A5A5A5;
    const uint32_t uiResult = ParseConnectionName(sName.c_str(), &uiIndex);
    Require(uiResult <= 1, "a name is read or not");
    Require(uiResult == 0 || uiIndex == 0xA5A5A5A5, "nothing is written without a success");
    const std::optional<uint32_t> uiWanted = IndexOf(sName);
    Require((uiResult == 0) == uiWanted.has_value(), "the right names are read");
    Require(!uiWanted || uiIndex == *uiWanted, "a name has the right index");
    if (uiResult == 0) {
        CheckWayBack(uiIndex);
    }
    char acShown[kShownNameSize] = {};
    stWorld.stPlatform.mapReplies[0x47301049] = {0, sName};
    const uint32_t uiShown = ShowInterface(sName.c_str(), acShown);
    Require(uiShown == 0 || acShown[0] == '\0', "nothing is shown without a success");
    RequireClean(stWorld);
}

}  // namespace wap::test
