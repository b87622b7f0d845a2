// What the tests of the WAN configuration and of the status queries share.
#ifndef WAP_TESTS_UNIT_WANCONFIG_FIXTURE_H
#define WAP_TESTS_UNIT_WANCONFIG_FIXTURE_H

#include <stdexcept>
#include <string>
#include <vector>

#include "support/entries.h"
#include "support/entry_table_wanconfig.h"
#include "support/expect.h"
#include "support/furnish_wanconfig.h"

namespace wap::test {

inline constexpr uint32_t kMinusTwo = 0xFFFFFFFE;
inline constexpr uint32_t kNoMemory = 0xF7108001;
inline constexpr uint32_t kNoJson = 0xF7100000;
inline constexpr const char *kFault = "{\"Result\":-1}";

inline constexpr const char *kAccessEntries = "AccessInfoQueryServiceJNI.cpp";
inline constexpr const char *kAccessWorkers = "jni_access_info.cpp";
inline constexpr const char *kWanEntries = "WanConfigServiceJNI.cpp";
inline constexpr const char *kWanWorkers = "jni_wan_config.cpp";
/// The index of an IP connection.
inline constexpr uint32_t kWan = 0x10101001;

inline constexpr uint32_t kAskList = 0x47302025;
inline constexpr uint32_t kAdd = 0x47209076;
inline constexpr uint32_t kDelete = 0x47209077;
inline constexpr uint32_t kSet = 0x47209078;
inline constexpr uint32_t kCountIp = 0x4730100D;
inline constexpr uint32_t kCountPpp = 0x47301012;
inline constexpr uint32_t kAskIpDns = 0x4730100B;
inline constexpr uint32_t kAskPppDns = 0x4730100F;
inline constexpr uint32_t kAskIpv6Dns = 0x4930000F;
inline constexpr uint32_t kSetIpv6Dns = 0x4730105A;

/// A gateway that answers all requests; the requests, traces and faults of a call are looked at.
class WanConfigTest : public BridgeTest {
  protected:
    void SetUp() override {
        BridgeTest::SetUp();
        FurnishWanConfig(stWorld);
    }

    /// Calls with what was recorded before forgotten.
    Answer Call(const std::string &sMethod) {
        stPlatform.ClearRecords();
        Answer stAnswer = EntryOf(WanConfigEntries(), sMethod).fnCall(stEnv);
        stEnv.EndCall();
        return stAnswer;
    }

    void Refuse(uint32_t uiRpcId, uint32_t uiStatus = kRefused) {
        stPlatform.mapReplies[uiRpcId].uiStatus = uiStatus;
    }
    void AnswerWith(uint32_t uiRpcId, std::string sBytes) {
        stPlatform.mapReplies[uiRpcId] = {0, std::move(sBytes)};
    }

    /// The RPC ids that were asked, in order.
    Codes Rpcs() const { return RpcIds(stPlatform); }

    /// A source has recorded this code with these numbers.
    bool HasRecorded(const std::string &sFile, uint32_t uiCode, const Args &auiArgs) const {
        return TimesRecorded(stPlatform, sFile, uiCode, auiArgs) != 0;
    }
    /// The sources that recorded this code, in order.
    Calls FilesOf(uint32_t uiCode) const {
        Calls asFiles;
        for (const FaultRecord &stFault : stPlatform.astFaults) {
            if (stFault.uiCode == uiCode) {
                asFiles.push_back(stFault.sFile);
            }
        }
        return asFiles;
    }
};

}  // namespace wap::test

#endif
