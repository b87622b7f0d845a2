// What the tests of the flows share.
#ifndef WAP_TESTS_UNIT_FLOWS_FIXTURE_H
#define WAP_TESTS_UNIT_FLOWS_FIXTURE_H

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/entries.h"
#include "support/expect.h"
#include "support/furnish_flows.h"

namespace wap::test {

inline constexpr uint32_t kTooLong = 0xF7700005;
inline constexpr const char *kFile = "jni_traffic_qos_srv.cpp";

inline constexpr uint32_t kAdd = 0x4830419B;
inline constexpr uint32_t kDelete = 0x4830419C;
inline constexpr uint32_t kDeleteAll = 0x4830419D;
inline constexpr uint32_t kAskMembers = 0x4830419E;
inline constexpr uint32_t kAskStats = 0x4830419F;
inline constexpr uint32_t kAskSpeed = 0x483041A0;
inline constexpr uint32_t kAskLimit = 0x483041A1;
inline constexpr uint32_t kSetLimit = 0x483041A2;
inline constexpr uint32_t kAskDscp = 0x483041A3;
inline constexpr uint32_t kSetDscp = 0x483041A4;

/// A gateway with flows; the requests, traces and faults of a call are looked at.
class FlowTest : public BridgeTest {
  protected:
    void SetUp() override {
        BridgeTest::SetUp();
        FurnishFlows(stWorld);
    }

    static WantedRpc Request(uint32_t uiRpcId, const std::string &sRequest, uint32_t uiRspCap = 4) {
        return {"gulm", 353, uiRpcId, sRequest, uiRspCap};
    }

    void ExpectNoFaults() { EXPECT_EQ(FaultCodes(stPlatform), Codes{}); }
    /// The workers' file has recorded this code once, with these numbers.
    void ExpectRecorded(uint32_t uiCode, const Args &auiArgs) {
        EXPECT_EQ(TimesRecorded(stPlatform, kFile, uiCode, auiArgs), 1u);
    }

    void Refuse(uint32_t uiRpcId) { stPlatform.mapReplies[uiRpcId].uiStatus = kRefused; }
};

}  // namespace wap::test

#endif
