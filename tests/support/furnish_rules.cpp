#include "support/furnish_rules.h"

#include <optional>

#include "support/wire_bytes.h"

namespace wap::test {

namespace {

size_t RowSizeOf(uint32_t uiRpcId) {
    switch (uiRpcId) {
        case kGetMirrorRules:
            return 347;
        case kGetForwardRules:
            return 342;
        case kGetHttpRules:
            return 923;
        default:
            return 0;
    }
}

}  // namespace

std::string MirrorBytes(const MirrorFacts &stRule) {
    return Field(stRule.sAddress, 256) + Field(stRule.sPort, 12) + Field(stRule.sDirection, 5) +
           Field(stRule.sProtocol, 4) + Field(stRule.sMac, 18) + Field(stRule.sIp, 40) +
           Field(stRule.sToPort, 12);
}

std::string ForwardBytes(const ForwardFacts &stRule) {
    return Field(stRule.sAddress, 256) + Field(stRule.sPort, 12) + Field(stRule.sProtocol, 4) +
           Field(stRule.sMac, 18) + Field(stRule.sIp, 40) + Field(stRule.sToPort, 12);
}

std::string HttpBytes(const HttpFacts &stRule) {
    return Field(stRule.sAddress, 256) + Field(stRule.sPort, 12) + Field(stRule.sDirection, 5) +
           Field(stRule.sMac, 18) + Field(stRule.sMethods, 64) + Field(stRule.sStatusCodes, 256) +
           Field(stRule.sHeaders, 256) + std::string(52, '\0');
}

std::string HttpRow(uint32_t uiNumber, const HttpFacts &stRule) {
    return Word(uiNumber) + HttpBytes(stRule);
}

void FurnishRules(World &stWorld) {
    Platform &stPlatform = stWorld.stPlatform;
    auto &mapReplies = stPlatform.mapReplies;
    mapReplies[0x48304191] = {0, Word(7)};
    mapReplies[0x48304192] = {0, Word(3)};
    mapReplies[kGetMirrorRules] = {
        0, MirrorBytes({}) + MirrorBytes({"", "0", "DOWN", "UDP", "", "2001:db8::1", "9001"})};
    mapReplies[0x48304195] = {0, Word(8)};
    mapReplies[0x48304196] = {0, Word(4)};
    mapReplies[kGetForwardRules] = {
        0, ForwardBytes({}) + ForwardBytes({"", "0", "UDP", "", "", "9001"})};
    mapReplies[0x48304198] = {0, Word(9)};
    mapReplies[0x48304199] = {0, ""};
    mapReplies[kGetHttpRules] = {0,
                                 HttpRow(9, {}) + HttpRow(12, {"", "0", "DOWN", "", "", "", ""})};
    stPlatform.fnReply = [&stPlatform](const RpcRecord &stRpc) -> std::optional<Reply> {
        const size_t uiRow = RowSizeOf(stRpc.uiRpcId);
        const auto it = stPlatform.mapReplies.find(stRpc.uiRpcId);
        if (uiRow == 0 || it == stPlatform.mapReplies.end() || it->second.uiStatus != 0 ||
            it->second.sBytes.size() % uiRow != 0) {
            return std::nullopt;
        }
        const std::string &sTable = it->second.sBytes;
        const auto uiCount = static_cast<uint32_t>(sTable.size() / uiRow);
        return Reply{0, Word(uiCount) + (uiCount == 0 ? Word(0) + Word(0) + Word(0)
                                                      : stPlatform.AddBulk(sTable))};
    };
}

}  // namespace wap::test
