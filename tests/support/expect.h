// Expected bytes and records, written down without any of the bridge's own types.
#ifndef WAP_TESTS_SUPPORT_EXPECT_H
#define WAP_TESTS_SUPPORT_EXPECT_H

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "support/scripted_platform.h"
#include "support/wire_bytes.h"

namespace wap::test {

/// What most workers answer when an argument is wrong, or a reply makes no sense.
inline constexpr uint32_t kMinusOne = 0xFFFFFFFF;
/// What the composing functions answer without something to write to.
inline constexpr uint32_t kNullArgument = 0xF7702001;
/// A status that only the tests' processes give.
inline constexpr uint32_t kRefused = 0x00C0FFEE;

/// The 84 bytes before every request.
inline std::string MessageHead(const std::string &sSndApp, uint32_t uiDstMid,
                               const std::string &sRcvApp, uint32_t uiSndMid) {
    return Word(0) + Field(sSndApp, 32) + Word(uiDstMid) + Field(sRcvApp, 32) + Word(uiSndMid) +
           std::string(8, '\0');
}

/// The sender module id in the header of a recorded call.
inline uint32_t SenderOf(const RpcRecord &stRpc) {
    return WordAt(stRpc.sHead, 72);
}

/// The codes in the fault log, in order.
inline std::vector<uint32_t> FaultCodes(const Platform &stPlatform) {
    std::vector<uint32_t> auiCodes;
    for (const FaultRecord &stFault : stPlatform.astFaults) {
        auiCodes.push_back(stFault.uiCode);
    }
    return auiCodes;
}

inline bool HasFault(const Platform &stPlatform, uint32_t uiCode) {
    const std::vector<uint32_t> auiCodes = FaultCodes(stPlatform);
    return std::find(auiCodes.begin(), auiCodes.end(), uiCode) != auiCodes.end();
}

using Codes = std::vector<uint32_t>;
using Calls = std::vector<std::string>;
using Args = std::array<uint32_t, 4>;

/// A request as it must have gone out.
struct WantedRpc {
    const char *pcReceiver;
    uint32_t uiSender;
    uint32_t uiRpcId;
    std::string sRequest;
    uint32_t uiRspCap;
    uint32_t uiTimeoutMs = 5000;
};

/// Expects a recorded call to be that request, of the process "jamvm" to module 0, with nothing in
/// the room for its reply.
void ExpectRpc(const RpcRecord &stRpc, const WantedRpc &stWanted);
/// Expects that one request went out, and that it is this one.
void ExpectOnlyRpc(const Platform &stPlatform, const WantedRpc &stWanted);

/// Expects that these requests went out, in this order, and no other.
void ExpectRpcs(const Platform &stPlatform, const std::vector<WantedRpc> &astWanted);
/// The RPC ids that were asked, in order.
Codes RpcIds(const Platform &stPlatform);

/// How often a source has recorded this code with these numbers.
size_t TimesRecorded(const Platform &stPlatform, const std::string &sFile, uint32_t uiCode,
                     const Args &auiArgs = {});

/// The traces of the entries and workers, in order; none but those and the RPC layer's may be
/// there.
Calls EntryTraces(const Platform &stPlatform);
bool HasEntryTrace(const Platform &stPlatform, const std::string &sText);

}  // namespace wap::test

#endif
