// What the tests of the traffic monitoring services share.
#ifndef WAP_TESTS_UNIT_MONITOR_FIXTURE_H
#define WAP_TESTS_UNIT_MONITOR_FIXTURE_H

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "support/entries.h"
#include "support/expect.h"
#include "support/furnish_monitor.h"
#include "wan/jni_traffic_monitor.h"

namespace wap::test {

inline constexpr uint32_t kNoMemory = 0xF7108001;
inline constexpr const char *kMonitorFile = "jni_traffic_monitor.cpp";
inline constexpr const char *kMonitorEntryFile = "TrafficMonitoringConfigServiceJNI.cpp";

/// A block as it was sent, and what was in it.
struct SentBlock {
    std::string sDesc;
    std::string sBytes;
};

/// A gateway with a registry; the blocks that come with changes and notices are looked into.
class MonitorTest : public BridgeTest {
  protected:
    void SetUp() override {
        BridgeTest::SetUp();
        FurnishMonitor(stWorld);
        stPlatform.fnReply = [this](const RpcRecord &stRpc) -> std::optional<Reply> {
            if (stRpc.uiRpcId != kAskMonitored) {
                Take(stRpc.sRequest.substr(0, 12), astLists,
                     stPlatform.mapReplies[stRpc.uiRpcId].uiStatus == 0);
            }
            return std::nullopt;
        };
        stPlatform.fnMessage = [this](const MessageRecord &stMessage) {
            Take(stMessage.sData, astNotices, true);
        };
    }

    void Forget() {
        stPlatform.ClearRecords();
        astLists.clear();
        astNotices.clear();
    }

    size_t TimesRecorded(const std::string &sFile, uint32_t uiCode, const Args &auiArgs = {}) {
        return test::TimesRecorded(stPlatform, sFile, uiCode, auiArgs);
    }

    std::vector<SentBlock> astLists;
    std::vector<SentBlock> astNotices;

  private:
    /// Looks into the block of a descriptor; a receiver that means to answer well takes it.
    void Take(const std::string &sDesc, std::vector<SentBlock> &astBlocks, bool bTakes) {
        const auto it = stPlatform.mapBlocks.find(WordAt(sDesc, 0));
        ASSERT_NE(it, stPlatform.mapBlocks.end());
        const std::string sStored = it->second;
        EXPECT_EQ(WordAt(sDesc, 8), sStored.size());
        std::string sBytes = *stPlatform.TakeBulk(sDesc);
        EXPECT_EQ(WordAt(sDesc, 4), sBytes.size());
        if (!bTakes) {
            stPlatform.mapBlocks[WordAt(sDesc, 0)] = sStored;
        }
        astBlocks.push_back({sDesc, std::move(sBytes)});
    }
};

}  // namespace wap::test

#endif
