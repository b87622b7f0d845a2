#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "fuzz/targets.h"
#include "support/wire_bytes.h"
#include "wan/jni_wan_info.h"

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

/// A place for a list that may be too small for it, or have no end.
void CheckIpv4(const std::string &sOld, const std::string &sNew, size_t uiPlace) {
    World stWorld;
    // Exactly as large as it says.
    std::vector<char> acPlace(uiPlace, 'z');
    std::copy_n(sNew.c_str(), std::min(sNew.size() + 1, uiPlace), acPlace.begin());
    const std::vector<char> acBefore = acPlace;
    const std::vector<std::string> asMerged = Merged(sOld, sNew);
    const bool bPossible = sNew.size() < uiPlace && !asMerged.empty();
    const uint32_t uiResult =
        VT_API_MergeIpv4Dns(sOld.c_str(), acPlace.data(), static_cast<uint32_t>(uiPlace));
    Require(uiResult == (bPossible ? 0 : 1), "lists with a server are merged, and no others");
    if (bPossible) {
        std::string sWanted = asMerged[0] + (asMerged.size() > 1 ? "," + asMerged[1] : "");
        sWanted.resize(std::min({sWanted.size(), kIpv4Longest, uiPlace - 1}));
        Require(std::string(acPlace.begin(), acPlace.end()) == Field(sWanted, uiPlace),
                "the place holds the merged list, cut where it ends, and zeros");
    } else {
        Require(acPlace == acBefore, "nothing is written without a success");
    }
    RequireClean(stWorld);
}

void CheckIpv6(const std::string &sOld, const std::string &sNew) {
    World stWorld;
    char acOut[2 * kIpv6Field];
    std::memset(acOut, 'z', sizeof(acOut));
    Require(VT_API_MergeIpv6Dns(sOld.c_str(), sNew.c_str(), acOut) == 0, "any lists are merged");
    std::string sWanted;
    std::vector<std::string> asMerged = Merged(sOld, sNew);
    asMerged.resize(2);
    for (const std::string &sServer : asMerged) {
        sWanted += Field(sServer.substr(0, kIpv6Longest), kIpv6Field);
    }
    Require(std::string(acOut, sizeof(acOut)) == sWanted, "the fields hold the merged servers");
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
