#include "support/furnish_rights.h"

#include <optional>

#include "support/wire_bytes.h"

namespace wap::test {

namespace {

constexpr uint32_t kFillFtp = 0x47209038;
constexpr uint32_t kFillSamba = 0x4720903D;

}  // namespace

void FurnishRights(World &stWorld, const std::string &sFtpBytes, const std::string &sSambaBytes) {
    Platform &stPlatform = stWorld.stPlatform;
    auto &mapReplies = stPlatform.mapReplies;
    // Nothing behind the count has a meaning.
    mapReplies[0x47201064] = {0, Word(2) + std::string(1016, '\x5A')};
    mapReplies[0x48200114] = {0, Word(3) + std::string(1016, '\x5A')};
    for (uint32_t uiRpcId = 0x47209038; uiRpcId <= 0x47209044; ++uiRpcId) {
        mapReplies[uiRpcId] = {0, Word(0xC0DE0000 + (uiRpcId & 0xFF))};
    }
    mapReplies[0x47209042] = {0, Field(kHttpRightText, 256)};
    stPlatform.fnReply = [&stPlatform, sFtpBytes,
                          sSambaBytes](const RpcRecord &stRpc) -> std::optional<Reply> {
        const bool bFtp = stRpc.uiRpcId == kFillFtp;
        if ((bFtp || stRpc.uiRpcId == kFillSamba) &&
            stPlatform.mapReplies[stRpc.uiRpcId].uiStatus == 0) {
            (void)stPlatform.stShm.Fill(bFtp ? 0xD2036 : 0xD2038, bFtp ? sFtpBytes : sSambaBytes);
        }
        return std::nullopt;
    };
    for (const char *pcSecret : {kFtpPassword, kSambaPassword, kHttpPassword, kListedPassword}) {
        stWorld.stSecrets.Watch(pcSecret);
    }
}

void FurnishRights(World &stWorld) {
    // With their zeros.
    FurnishRights(stWorld, std::string(kFtpRightText) + '\0', std::string(kSambaRightText) + '\0');
}

}  // namespace wap::test
