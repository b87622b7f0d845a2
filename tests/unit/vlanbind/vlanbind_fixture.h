// What the tests of the VLAN bindings and of the IPTV status share.
#ifndef WAP_TESTS_UNIT_VLANBIND_FIXTURE_H
#define WAP_TESTS_UNIT_VLANBIND_FIXTURE_H

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/entries.h"
#include "support/expect.h"
#include "support/furnish_vlanbind.h"

namespace wap::test {

inline constexpr const char *kFile = "jni_vlan_bind.cpp";
inline constexpr uint32_t kChange = 0x47209075;
inline constexpr uint32_t kAskLanPorts = 0x47301017;
inline constexpr uint32_t kAskLanBind = 0x47603122;
inline constexpr uint32_t kAskSsids = 0x47103093;
inline constexpr uint32_t kAskIptv = 0x47317140;
inline constexpr uint32_t kAskIptvStatus = 0x47317145;
inline constexpr uint32_t kAskUsers = 0x47305019;

/// A gateway with bindings and IPTV; the requests, traces and faults of a call are looked at.
class VlanBindTest : public BridgeTest {
  protected:
    void SetUp() override {
        BridgeTest::SetUp();
        FurnishVlanBind(stWorld);
    }

    void ExpectRpcs(const std::vector<WantedRpc> &astWanted) {
        test::ExpectRpcs(stPlatform, astWanted);
    }

    /// How often a file has recorded this code with these numbers.
    size_t TimesRecorded(const std::string &sFile, uint32_t uiCode, const Args &auiArgs = {}) {
        return test::TimesRecorded(stPlatform, sFile, uiCode, auiArgs);
    }

    void Refuse(uint32_t uiRpcId) { stPlatform.mapReplies[uiRpcId].uiStatus = kRefused; }
    void AnswerLanPorts(uint32_t uiCount) {
        stPlatform.mapReplies[kAskLanPorts] = {0, Word(uiCount) + std::string(32, 'z')};
    }
    void AnswerSsids(const std::vector<SsidFacts> &astSsids) {
        stPlatform.mapReplies[kAskSsids] = {0, SsidBytes(astSsids)};
    }
};

}  // namespace wap::test

#endif
