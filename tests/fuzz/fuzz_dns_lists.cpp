#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "fuzz/dns_servers.h"
#include "fuzz/targets.h"
#include "support/wire_bytes.h"
#include "wan/jni_wan_info.h"

namespace wap::test {

namespace {

/// A place for a list that may be too small for it, or have no end.
void CheckIpv4(const std::string &sOld, const std::string &sNew, size_t uiPlace) {
    World stWorld;
    // Exactly as large as it says.
    std::vector<char> acPlace(uiPlace, 'z');
    std::copy_n(sNew.c_str(), std::min(sNew.size() + 1, uiPlace), acPlace.begin());
    const std::vector<char> acBefore = acPlace;
    const std::string sMerged = MergedIpv4Servers(sOld, sNew);
    const bool bPossible = sNew.size() < uiPlace && !sMerged.empty();
    const uint32_t uiResult =
        VT_API_MergeIpv4Dns(sOld.c_str(), acPlace.data(), static_cast<uint32_t>(uiPlace));
    Require(uiResult == (bPossible ? 0 : 1), "lists with a server are merged, and no others");
    if (bPossible) {
        Require(std::string(acPlace.begin(), acPlace.end()) ==
                    Field(sMerged.substr(0, uiPlace - 1), uiPlace),
                "the place holds the merged list, cut where it ends, and zeros");
    } else {
        Require(acPlace == acBefore, "nothing is written without a success");
    }
    RequireClean(stWorld);
}

void CheckIpv6(const std::string &sOld, const std::string &sNew) {
    World stWorld;
    char acOut[128];
    std::memset(acOut, 'z', sizeof(acOut));
    Require(VT_API_MergeIpv6Dns(sOld.c_str(), sNew.c_str(), acOut) == 0, "any lists are merged");
    Require(std::string(acOut, sizeof(acOut)) == MergedIpv6Servers(sOld, sNew),
            "the fields hold the merged servers");
    RequireClean(stWorld);
}

}  // namespace

void FuzzDnsLists(const uint8_t *pucData, size_t uiSize) {
    if (uiSize == 0) {
        return;
    }
    const std::string sOld = TextIn(pucData + 1, uiSize - 1);
    const size_t uiRest = std::min(uiSize, sOld.size() + 2);
    const std::string sNew = TextIn(pucData + uiRest, uiSize - uiRest);
    CheckIpv4(sOld, sNew, size_t{pucData[0]} + 1);
    CheckIpv4(sOld, sNew, sNew.size() + 1);
    CheckIpv6(sOld, sNew);
}

}  // namespace wap::test
