// What the tests of the network diagnostics share.
#ifndef WAP_TESTS_UNIT_DIAGNOSTICS_FIXTURE_H
#define WAP_TESTS_UNIT_DIAGNOSTICS_FIXTURE_H

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/entries.h"
#include "support/expect.h"
#include "support/furnish_diagnostics.h"

namespace wap::test {

inline constexpr uint32_t kMinusTwo = 0xFFFFFFFE;
inline constexpr uint32_t kNoMemory = 0xF7108001;
inline constexpr uint32_t kWanIndex = 0x10101003;

inline constexpr uint32_t kStartPing = 0x47103088;
inline constexpr uint32_t kAskPing = 0x47103089;
inline constexpr uint32_t kStartTrace = 0x47103090;
inline constexpr uint32_t kAskTrace = 0x47103091;
inline constexpr uint32_t kStartDns = 0x47103096;
inline constexpr uint32_t kAskDns = 0x47103097;

/// A gateway that runs diagnostics; the requests, traces and faults of a call are looked at.
class DiagnosticsTest : public BridgeTest {
  protected:
    void SetUp() override {
        BridgeTest::SetUp();
        FurnishDiagnostics(stWorld);
    }

    void ExpectNoFaults() { EXPECT_EQ(FaultCodes(stPlatform), Codes{}); }
    size_t TimesRecorded(const std::string &sFile, uint32_t uiCode, const Args &auiArgs = {}) {
        return test::TimesRecorded(stPlatform, sFile, uiCode, auiArgs);
    }
    void Refuse(uint32_t uiRpcId) { stPlatform.mapReplies[uiRpcId].uiStatus = kRefused; }
};

/// The requests of the starts, by hand.
inline std::string PingBytes(const std::string &sHost, uint32_t uiRepetitions = 0,
                             uint32_t uiTimeout = 0, uint32_t uiBlockSize = 0,
                             uint32_t uiDscp = 0) {
    return Word(kWanIndex) + std::string(256, '\0') + Field(sHost, 256) + Word(uiRepetitions) +
           Word(uiTimeout) + Word(uiBlockSize) + Word(uiDscp);
}
inline std::string DnsBytes(const std::string &sHost, const std::string &sServers,
                            const std::string &sPara = "") {
    return Word(kWanIndex) + Field(sHost, 256) + Field(sServers, 512) + Field(sPara, 512);
}
inline std::string TraceBytes(const std::string &sHost, const std::string &sPara = "") {
    return Word(kWanIndex) + Field(sHost, 256) + Field(sPara, 256);
}

}  // namespace wap::test

#endif
