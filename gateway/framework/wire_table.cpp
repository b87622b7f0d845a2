#include "framework/wire_table.h"

#include <algorithm>
#include <string_view>

namespace wap::gateway {

namespace {

// How the facts are written.
constexpr bool kShown = false;
constexpr bool kSecret = true;
constexpr WireModules kNoModules = {1, 0};

constexpr WirePart NothingPart() {
    return {WireForm::kNothing, nullptr, 0, nullptr, kShown};
}
constexpr WirePart WordPart(const char *pcName) {
    return {WireForm::kWord, nullptr, 4, pcName, kShown};
}
constexpr WirePart TextPart(uint32_t uiSize) {
    return {WireForm::kText, nullptr, uiSize, nullptr, kShown};
}
constexpr WirePart RecordPart(const WireRecord &stRecord) {
    return {WireForm::kRecord, &stRecord, stRecord.uiSize, nullptr, kShown};
}
constexpr WirePart RowsPart(const WireRecord &stRecord) {
    return {WireForm::kRows, &stRecord, stRecord.uiSize, nullptr, kShown};
}
/// A part that is a secret as a whole.
[[maybe_unused]] constexpr WirePart Hidden(WirePart stPart) {
    stPart.bSecret = kSecret;
    return stPart;
}

constexpr WireContent Alone(const WirePart &stPart) {
    return {WireJoin::kAlone, {{stPart, NothingPart()}}};
}
constexpr WireContent Either(const WirePart &stFirst, const WirePart &stSecond) {
    return {WireJoin::kEither, {{stFirst, stSecond}}};
}
constexpr WireContent Both(const WirePart &stFirst, const WirePart &stSecond) {
    return {WireJoin::kBoth, {{stFirst, stSecond}}};
}
constexpr WireContent kNoContent = Alone(NothingPart());

#include "framework/wire_facts.inc"

/// The field with which a descriptor begins.
constexpr std::string_view kDescriptorStart = kFieldsOfVDataDesc[0].pcName;

const WireRpc *Find(std::span<const WireRpc> astRpcs, uint32_t uiId) {
    const auto it = std::lower_bound(
        astRpcs.begin(), astRpcs.end(), uiId,
        [](const WireRpc &stRpc, uint32_t uiWanted) { return stRpc.uiId < uiWanted; });
    return it != astRpcs.end() && it->uiId == uiId ? &*it : nullptr;
}

}  // namespace

std::span<const WireRpc> WireRpcs() {
    return kRpcs;
}

std::span<const WireRpc> WireMessages() {
    return kMessages;
}

const WireRecord &WireMessageHead() {
    return kRecordRpcMsgHead;
}

const WireRpc *FindWireRpc(uint32_t uiId) {
    return Find(kRpcs, uiId);
}

const WireRpc *FindWireMessage(uint32_t uiType) {
    return Find(kMessages, uiType);
}

std::optional<uint32_t> DescriptorOffset(const WireContent &stContent) {
    const WirePart &stPart = stContent.astParts[0];
    if (stPart.eForm != WireForm::kRecord) {
        return std::nullopt;
    }
    for (const WireField &stField : stPart.pstRecord->astFields) {
        // The record itself may be the descriptor, or have its words among its own.
        const bool bFirstWord = std::string_view(stField.pcName) == kDescriptorStart;
        if (stField.eKind == WireKind::kDescriptor || bFirstWord) {
            return stField.uiOffset;
        }
    }
    return std::nullopt;
}

}  // namespace wap::gateway
