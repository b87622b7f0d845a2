// Starting a ping, and the parameters that it is given.
#include <string>

#include "access/jni_ping_diagnostics.h"
#include "faults/fault_sweep.h"
#include "unit/diagnostics/diagnostics_fixture.h"

namespace wap::test {
namespace {

constexpr const char *kFile = "jni_ping_diagnostics.cpp";

class PingStartTest : public DiagnosticsTest {
  protected:
    uint32_t Start(const char *pcHost, const char *pcPara) {
        stPlatform.ClearRecords();
        return VT_JNI_SetIPPingDiagnostics(kWanIndex, pcHost, pcPara);
    }
    void ExpectSent(const std::string &sRequest) {
        ExpectOnlyRpc(stPlatform, {"app_m", 249, kStartPing, sRequest, 4});
    }
    void ExpectRefused(const Codes &auiCodes) {
        EXPECT_TRUE(stPlatform.astRpcs.empty());
        EXPECT_EQ(FaultCodes(stPlatform), auiCodes);
    }
};

TEST_F(PingStartTest, SendsHostAndParameters) {
    EXPECT_EQ(Start("www.example.com",
                    "{\"NumberOfRepetitions\":4,\"Timeout\":1000,"
                    "\"DataBlockSize\":64,\"DSCP\":46}"),
              0u);
    ExpectSent(PingBytes("www.example.com", 4, 1000, 64, 46));
    EXPECT_EQ(stPlatform.astRpcs[0].uiReqLen, 532u);
    EXPECT_EQ(EntryTraces(stPlatform), Calls{});
    ExpectNoFaults();
}

TEST_F(PingStartTest, SendsZerosWithoutParameters) {
    EXPECT_EQ(Start("host", nullptr), 0u);
    ExpectSent(PingBytes("host"));
    ExpectNoFaults();
}

// A ping starts whatever the parameters hold.
TEST_F(PingStartTest, WhatIsNoIntegerCountsAsZero) {
    for (const char *pcTimeout : {"\"5\"", "5.0", "true", "null", "[5]", "{\"Timeout\":5}"}) {
        const std::string sPara =
            std::string("{\"DSCP\":1,\"Timeout\":") + pcTimeout + ",\"DataBlockSize\":2}";
        EXPECT_EQ(Start("host", sPara.c_str()), 0u) << pcTimeout;
        ExpectSent(PingBytes("host", 0, 0, 2, 1));
    }
    EXPECT_EQ(Start("host", "{\"Timeout\":\"5\"}"), 0u);
    ExpectSent(PingBytes("host"));
}

TEST_F(PingStartTest, ParametersNeedNotBeAnObject) {
    for (const char *pcPara : {"{}", "[]", "[{\"Timeout\":5}]", "5", "\"Timeout\"", "true"}) {
        EXPECT_EQ(Start("host", pcPara), 0u) << pcPara;
        ExpectSent(PingBytes("host"));
    }
}

TEST_F(PingStartTest, NumbersKeepTheirSignAndEndWith32Bits) {
    EXPECT_EQ(Start("host",
                    "{\"NumberOfRepetitions\":-1,\"Timeout\":2147483647,"
                    "\"DataBlockSize\":2147483648,\"DSCP\":-2147483649}"),
              0u);
    ExpectSent(PingBytes("host", 0xFFFFFFFF, 0x7FFFFFFF, 0x7FFFFFFF, 0x80000000));
}

TEST_F(PingStartTest, KeysAreSpelledExactlyAndTheLastOneCounts) {
    EXPECT_EQ(Start("host",
                    "{\"timeout\":1,\"Timeout\":2,\"Timeout\":3,\"Timeouts\":4,"
                    "\"Dscp\":5}"),
              0u);
    ExpectSent(PingBytes("host", 0, 3));
}

TEST_F(PingStartTest, ParametersThatAreNoJsonAreRefused) {
    for (const char *pcPara : {"", " ", "null", "Timeout", "{\"Timeout\":5", "{Timeout:5}",
                               "{\"Timeout\":5}x", "{\"Timeout\":5}{}", "{\"Timeout\":05}"}) {
        EXPECT_EQ(Start("host", pcPara), kMinusOne) << pcPara;
        EXPECT_TRUE(stPlatform.astRpcs.empty()) << pcPara;
        EXPECT_EQ(TimesRecorded(kFile, kMinusOne, {kWanIndex, 0, 0, 0}), 1u);
    }
}

TEST_F(PingStartTest, HostHas255BytesAtMost) {
    const std::string sLongest(255, 'h');
    EXPECT_EQ(Start(sLongest.c_str(), nullptr), 0u);
    ExpectSent(PingBytes(sLongest));
    EXPECT_EQ(Start((sLongest + "i").c_str(), nullptr), kMinusTwo);
    ExpectRefused({});
    EXPECT_EQ(Start("", nullptr), kMinusTwo);
    ExpectRefused({});
    EXPECT_EQ(Start("", "{}"), kMinusTwo);
    EXPECT_TRUE(stPlatform.astRpcs.empty());
}

// They are read before the host is looked at.
TEST_F(PingStartTest, BadParametersOutweighABadHost) {
    EXPECT_EQ(Start(std::string(256, 'h').c_str(), "{"), kMinusOne);
    EXPECT_TRUE(stPlatform.astRpcs.empty());
}

TEST_F(PingStartTest, WithoutHostNobodyIsAsked) {
    EXPECT_EQ(Start(nullptr, nullptr), kMinusOne);
    ExpectRefused({kMinusOne});
}

TEST_F(PingStartTest, StartStatusIsGivenAsItIs) {
    for (const uint32_t uiStatus : {0u, 1u, 0x80000000u, kMinusTwo}) {
        stPlatform.mapReplies[kStartPing] = {0, Word(uiStatus)};
        EXPECT_EQ(Start("host", nullptr), uiStatus);
        ExpectNoFaults();
    }
    stPlatform.mapReplies[kStartPing] = {0, ""};
    EXPECT_EQ(Start("host", nullptr), 0u);
}

TEST_F(PingStartTest, RefusalIsRecorded) {
    stPlatform.mapReplies[kStartPing] = {kRefused, Word(3)};
    EXPECT_EQ(Start("host", nullptr), kMinusOne);
    EXPECT_EQ(TimesRecorded(kFile, kRefused, {kWanIndex, 0, 0, 0}), 1u);
}

TEST_F(PingStartTest, SurvivesEveryFault) {
    // One parameter that did not arrive would be another ping.
    std::string sSent;
    uint32_t uiResult = 0;
    Subject stSubject;
    stSubject.sName = "VT_JNI_SetIPPingDiagnostics";
    stSubject.fnFurnish = FurnishDiagnostics;
    stSubject.fnCall = [&](FakeJni &) {
        uiResult = VT_JNI_SetIPPingDiagnostics(kWanIndex, "host", "{\"Timeout\":5,\"DSCP\":6}");
        const auto &astRpcs = World::Get().stPlatform.astRpcs;
        sSent = astRpcs.empty() ? "" : astRpcs.back().sRequest;
    };
    stSubject.fnOutcome = [&](FakeJni &) {
        return std::to_string(uiResult) +
               (uiResult == 0 && sSent == PingBytes("host", 0, 5, 0, 6) ? " whole" : "");
    };
    stSubject.sGood = "0 whole";
    stSubject.fnAllowed = [&](const FaultPlan &stPlan) -> std::set<std::string> {
        const bool bMatters = stPlan.eOp == Op::kAlloc || stPlan.eOp == Op::kRpc;
        return {bMatters ? std::to_string(kMinusOne) : stSubject.sGood};
    };
    EXPECT_EQ(CountOf(SweepFaults(stSubject), Op::kRpc), 1u);
}

}  // namespace
}  // namespace wap::test
