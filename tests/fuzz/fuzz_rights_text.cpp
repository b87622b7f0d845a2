#include <algorithm>
#include <cstring>
#include <string>

#include "fuzz/targets.h"
#include "support/furnish_rights.h"
#include "support/wire_bytes.h"
#include "system/jni_access_right.h"

namespace wap::test {

namespace {

constexpr uint32_t kCountFtp = 0x47201064;
constexpr uint32_t kCountSamba = 0x48200114;
constexpr uint32_t kFailed = 0xFFFFFFFF;
/// Larger segments than for so many accounts are not to be had here.
constexpr uint32_t kAccountsMax = 4096;

/// How a segment's size follows from the number of accounts.
struct Service {
    Share eShare;
    uint32_t uiRpcId;
    uint64_t ulPerAccount;
};
const Service kServices[] = {{Share::kFtp, kCountFtp, 514}, {Share::kSamba, kCountSamba, 322}};

void CheckText(const Service &stService, uint32_t uiCount, const std::string &sBytes) {
    World stWorld;
    FurnishRights(stWorld, sBytes, sBytes);
    stWorld.stPlatform.mapReplies[stService.uiRpcId] = {0, Word(uiCount)};
    const uint64_t ulSize = uiCount * stService.ulPerAccount + 128;
    SecretBlock stText;
    const uint32_t uiResult = FetchRightText(stService.eShare, stText);
    // The number of accounts is another process's word.
    const bool bTooLarge = ulSize >= UINT32_MAX;
    const bool bPossible = uiCount <= kAccountsMax;
    Require(!bTooLarge || uiResult == kFailed, "a size that is none is refused");
    Require(!bPossible || uiResult == 0, "a segment of any bytes is read");
    Require((uiResult == 0) == static_cast<bool>(stText), "a success has a text, and nothing else");
    if (uiResult == 0) {
        // What was not written is zero, and behind the end there is nothing.
        const std::string sSegment = sBytes.substr(0, static_cast<size_t>(ulSize));
        Require(UpToZero(sSegment) == static_cast<const char *>(stText.Lend()),
                "the text is that of the segment, cut at its end");
    }
    stText.Drop();
    RequireClean(stWorld);
}

}  // namespace

void FuzzRightsText(const uint8_t *pucData, size_t uiSize) {
    if (uiSize < 4) {
        return;
    }
    const std::string sBytes(reinterpret_cast<const char *>(pucData), uiSize);
    for (const Service &stService : kServices) {
        const uint32_t uiCount = WordAt(sBytes, 0);
        CheckText(stService, uiCount <= kAccountsMax ? uiCount : uiCount | 0xFF000000,
                  sBytes.substr(4));
        CheckText(stService, uiCount % 8, sBytes.substr(4));
    }
}

}  // namespace wap::test
