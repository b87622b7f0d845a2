#include <cstdio>
#include <string>

#include "fuzz/targets.h"
#include "support/wire_bytes.h"
#include "wan/jni_vlan_bind.h"

namespace wap::test {

namespace {

constexpr uint32_t kChange = 0x47209075;

/// The numbers of the last pair; the second stays when a text has none.
struct Pair {
    long long iUser = 0;
    long long iWan = 0;

    bool Reads(const std::string &sText) {
        // The C library's own scanning; numbers too large for it become its largest.
        // NOLINTNEXTLINE(cert-err34-c)
        const int iItems = std::sscanf(sText.c_str(), "%lld/%lld", &iUser, &iWan);
        return iItems >= 1 && iUser >= 1 && iUser <= 4094 && iWan >= 1 && iWan <= 4094;
    }
};

/// Whether a binding text is acceptable, worked out in another way.
bool IsAcceptable(const std::string &sWhole) {
    std::string sRest = sWhole.substr(0, 127);
    Pair stPair;
    if (sRest.find(',') == std::string::npos) {
        return stPair.Reads(sRest);
    }
    bool bFirst = true;
    while (sRest.find(',') != std::string::npos) {
        const size_t uiBegin = sRest.find_first_not_of(',');
        if (uiBegin == std::string::npos) {
            return bFirst;
        }
        const size_t uiEnd = sRest.find(',', uiBegin);
        if (!stPair.Reads(sRest.substr(uiBegin, uiEnd - uiBegin))) {
            return false;
        }
        sRest = uiEnd == std::string::npos ? "" : sRest.substr(uiEnd + 1);
        bFirst = false;
    }
    return stPair.Reads(sRest);
}

}  // namespace

void FuzzBindText(const uint8_t *pucData, size_t uiSize) {
    const std::string sText = TextIn(pucData, uiSize);
    const bool bAcceptable = IsAcceptable(sText);
    World stWorld;
    stWorld.stPlatform.mapReplies[kChange] = {0, Word(0)};
    Require(VT_JNI_CheckVlanBind(sText.c_str()) == (bAcceptable ? 0 : 1),
            "acceptable texts are accepted, and no others");
    const bool bSent = bAcceptable && !sText.empty();
    Require(VT_JNI_SetVlanBind("LAN1", sText.c_str()) == (bSent ? 0 : 1),
            "acceptable texts are sent, and no others");
    const auto &astRpcs = stWorld.stPlatform.astRpcs;
    Require(astRpcs.size() == (bSent ? 1 : 0), "one request is sent, or none");
    if (bSent) {
        Require(astRpcs[0].sRequest == Field("LAN1", 64) + Word(1) +
                                           Field(sText.substr(0, 128), 129) + std::string(3, '\0'),
                "the request holds the text, cut to its field");
    }
    RequireClean(stWorld);
}

}  // namespace wap::test
