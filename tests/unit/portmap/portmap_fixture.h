// What the tests of the port mappings share.
#ifndef WAP_TESTS_UNIT_PORTMAP_FIXTURE_H
#define WAP_TESTS_UNIT_PORTMAP_FIXTURE_H

#include <string>
#include <vector>

#include "support/entries.h"
#include "support/expect.h"
#include "support/furnish_portmap.h"

namespace wap::test {

inline constexpr uint32_t kWanIndex = 0x10101003;
inline constexpr uint32_t kMinusTwo = 0xFFFFFFFE;
inline constexpr uint32_t kNotMappable = 0xF7307006;
inline constexpr uint32_t kRefusedByService = 0xF7307005;

inline constexpr uint32_t kAskWan = 0x47301049;
inline constexpr uint32_t kAskEntryOfKind1 = 0x47309010;
inline constexpr uint32_t kAskEntryOfKind0 = 0x47309014;
inline constexpr uint32_t kAskTable = 0x47309029;
inline constexpr uint32_t kAskNum = 0x4730902A;
inline constexpr uint32_t kAdd = 0x4720909A;
inline constexpr uint32_t kDelete = 0x4720909B;
inline constexpr uint32_t kSwitch = 0x4720909C;

inline const std::string kWanTrace = "VT_API_getOsgiWanInfoByWanIndex WanInfo \n\r";
inline const std::string kNumbersTrace =
    "VT_API_CoverWanInfo uiWANDevIns:1,  uiWANConnDevIns:2  uiWANConnIns:3 \n\r";

/// A gateway with port mappings; the requests, traces and faults of a call are looked at.
class PortMappingTest : public BridgeTest {
  protected:
    void SetUp() override {
        BridgeTest::SetUp();
        FurnishPortMapping(stWorld);
    }

    void ExpectRpcs(const std::vector<WantedRpc> &astWanted) {
        test::ExpectRpcs(stPlatform, astWanted);
    }

    /// The RPC ids that were asked, in order.
    Codes Rpcs() const { return RpcIds(stPlatform); }

    /// The worker's file has recorded this code with these numbers.
    bool HasRecorded(uint32_t uiCode, const Args &auiArgs) const {
        return TimesRecorded(stPlatform, "jni_port_mapping.cpp", uiCode, auiArgs) != 0;
    }

    void AnswerWan(const WanFacts &stWan) { stPlatform.mapReplies[kAskWan] = {0, WanBytes(stWan)}; }
    void Refuse(uint32_t uiRpcId, uint32_t uiStatus = kRefused) {
        stPlatform.mapReplies[uiRpcId].uiStatus = uiStatus;
    }
};

/// What the service says about WAN connections with and without port mappings.
struct GateCase {
    uint32_t uiGate;
    uint32_t uiMode;
    bool bAllowed;
};
inline const GateCase kGateCases[] = {
    {1, 0, true},  {1, 2, true},  {1, 1, false}, {1, 3, false},          {1, 0xFFFFFFFF, false},
    {0, 0, false}, {0, 2, false}, {2, 0, false}, {0xFFFFFFFF, 2, false}, {0, 1, false},
};

/// The query for the WAN record, which nearly everything begins with.
inline WantedRpc WanQuery() {
    return {"gulm", 48, kAskWan, Word(0) + Word(kWanIndex), 284};
}

}  // namespace wap::test

#endif
