#include <json-c/json.h>

#include <algorithm>
#include <limits>
#include <optional>
#include <string>

#include "access/jni_ping_diagnostics.h"
#include "fuzz/targets.h"
#include "support/wire_bytes.h"

namespace wap::test {

namespace {

constexpr uint32_t kStart = 0x47103088;
constexpr uint32_t kWanIndex = 0x10101001;
constexpr uint32_t kStatus = 0x5A;
constexpr uint32_t kBadParameters = 0xFFFFFFFF;
constexpr uint32_t kBadHost = 0xFFFFFFFE;

/// The words that the record ends with.
using Numbers = std::string;

/// A member that is an integer, brought into the range of 32 bits; else 0.
int32_t NumberOf(json_object *pstRoot, const char *pcKey) {
    json_object *pstValue = nullptr;
    if (json_object_is_type(pstRoot, json_type_object) == 0 ||
        json_object_object_get_ex(pstRoot, pcKey, &pstValue) == 0 ||
        json_object_is_type(pstValue, json_type_int) == 0) {
        return 0;
    }
    using Limits = std::numeric_limits<int32_t>;
    return static_cast<int32_t>(
        std::clamp<int64_t>(json_object_get_int64(pstValue), Limits::min(), Limits::max()));
}

/// What is to be sent for parameters; nothing for those that are no JSON.
std::optional<Numbers> NumbersOf(const std::string &sPara) {
    json_object *pstRoot = StrictJson(sPara);
    if (pstRoot == nullptr) {
        return std::nullopt;
    }
    Numbers sNumbers;
    for (const char *pcKey : {"NumberOfRepetitions", "Timeout", "DataBlockSize", "DSCP"}) {
        sNumbers += Word(static_cast<uint32_t>(NumberOf(pstRoot, pcKey)));
    }
    json_object_put(pstRoot);
    return sNumbers;
}

}  // namespace

void FuzzPingParameters(const uint8_t *pucData, size_t uiSize) {
    const std::string sPara = TextIn(pucData, uiSize);
    const size_t uiRest = std::min(uiSize, sPara.size() + 1);
    // Without a second text there is a host all the same, so that most inputs start a ping.
    const std::string sHost = uiRest == uiSize ? "host" : TextIn(pucData + uiRest, uiSize - uiRest);
    const std::optional<Numbers> sNumbers = NumbersOf(sPara);
    const bool bGoodHost = !sHost.empty() && sHost.size() < 256;
    World stWorld;
    stWorld.stPlatform.mapReplies[kStart] = {0, Word(kStatus)};
    const uint32_t uiResult = VT_JNI_SetIPPingDiagnostics(kWanIndex, sHost.c_str(), sPara.c_str());
    const uint32_t uiWanted = !sNumbers ? kBadParameters : bGoodHost ? kStatus : kBadHost;
    Require(uiResult == uiWanted, "what is JSON starts a ping, and nothing else");
    const auto &astRpcs = stWorld.stPlatform.astRpcs;
    Require(astRpcs.size() == (uiWanted == kStatus ? 1 : 0), "one request is sent, or none");
    if (!astRpcs.empty()) {
        Require(astRpcs[0].sRequest ==
                    Word(kWanIndex) + std::string(256, '\0') + Field(sHost, 256) + *sNumbers,
                "the request holds the host and the numbers");
    }
    RequireClean(stWorld);
}

}  // namespace wap::test
