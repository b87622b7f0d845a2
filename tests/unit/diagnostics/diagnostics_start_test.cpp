// Starting DNS tests and traceroutes.
#include <string>

#include "access/jni_dns_diagnostics.h"
#include "access/jni_traceroute_diagnostics.h"
#include "unit/diagnostics/diagnostics_fixture.h"

namespace wap::test {
namespace {

class DnsStartTest : public DiagnosticsTest {
  protected:
    uint32_t Start(const char *pcHost, const char *pcServers, const char *pcPara) {
        stPlatform.ClearRecords();
        return VT_JNI_startDnsDiagnostics(kWanIndex, pcHost, pcServers, pcPara);
    }
    void ExpectSent(const std::string &sRequest) {
        ExpectOnlyRpc(stPlatform, {"app_m", 249, kStartDns, sRequest, 4});
        ExpectNoFaults();
    }
    void ExpectRefused() {
        EXPECT_TRUE(stPlatform.astRpcs.empty());
        EXPECT_EQ(FaultCodes(stPlatform), Codes{kMinusOne});
        EXPECT_EQ(TimesRecorded("jni_dns_diagnostics.cpp", kMinusOne, {kWanIndex, 0, 0, 0}), 1u);
    }
};

TEST_F(DnsStartTest, SendsItsTexts) {
    EXPECT_EQ(Start("www.example.com", "192.0.2.53,192.0.2.54", "any text"), 0u);
    ExpectSent(DnsBytes("www.example.com", "192.0.2.53,192.0.2.54", "any text"));
    EXPECT_EQ(stPlatform.astRpcs[0].uiReqLen, 1284u);
    EXPECT_EQ(EntryTraces(stPlatform), Calls{});
    EXPECT_EQ(Start("host", "s", nullptr), 0u);
    ExpectSent(DnsBytes("host", "s"));
}

TEST_F(DnsStartTest, OnlyTheServersAreCut) {
    const std::string sHost(255, 'h');
    const std::string sServers(511, 's');
    const std::string sPara(511, 'p');
    EXPECT_EQ(Start(sHost.c_str(), (sServers + std::string(89, 't')).c_str(), sPara.c_str()), 0u);
    ExpectSent(DnsBytes(sHost, sServers, sPara));
    EXPECT_EQ(Start((sHost + "i").c_str(), "s", nullptr), kMinusOne);
    ExpectRefused();
    EXPECT_EQ(Start("host", "s", (sPara + "q").c_str()), kMinusOne);
    ExpectRefused();
}

TEST_F(DnsStartTest, MissingTextsAreRefused) {
    for (const char *pcMissing : {static_cast<const char *>(nullptr), ""}) {
        EXPECT_EQ(Start(pcMissing, "s", nullptr), kMinusOne);
        ExpectRefused();
        EXPECT_EQ(Start("host", pcMissing, nullptr), kMinusOne);
        ExpectRefused();
    }
}

TEST_F(DnsStartTest, StartStatusIsGivenAsItIs) {
    stPlatform.mapReplies[kStartDns] = {0, Word(0x80000007)};
    EXPECT_EQ(Start("host", "s", nullptr), 0x80000007u);
    ExpectNoFaults();
}

TEST_F(DnsStartTest, RefusalIsRecorded) {
    stPlatform.mapReplies[kStartDns] = {kRefused, Word(3)};
    EXPECT_EQ(Start("host", "s", nullptr), kMinusOne);
    EXPECT_EQ(TimesRecorded("jni_dns_diagnostics.cpp", kRefused, {kWanIndex, 0, 0, 0}), 1u);
}

class TraceStartTest : public DiagnosticsTest {
  protected:
    uint32_t Start(const char *pcHost, const char *pcPara) {
        stPlatform.ClearRecords();
        return VT_JNI_startTraceRouteDiagnostics(kWanIndex, pcHost, pcPara);
    }
    void ExpectSent(const std::string &sRequest) {
        ExpectOnlyRpc(stPlatform, {"app_m", 249, kStartTrace, sRequest, 4});
        ExpectNoFaults();
    }
    void ExpectRefused() {
        EXPECT_TRUE(stPlatform.astRpcs.empty());
        EXPECT_EQ(FaultCodes(stPlatform), Codes{kMinusOne});
        EXPECT_EQ(TimesRecorded("jni_traceroute_diagnostics.cpp", kMinusOne, {kWanIndex, 0, 0, 0}),
                  1u);
    }
};

TEST_F(TraceStartTest, SendsItsTexts) {
    EXPECT_EQ(Start("www.example.com", "any text"), 0u);
    ExpectSent(TraceBytes("www.example.com", "any text"));
    EXPECT_EQ(stPlatform.astRpcs[0].uiReqLen, 516u);
    EXPECT_EQ(EntryTraces(stPlatform), Calls{});
    EXPECT_EQ(Start("host", nullptr), 0u);
    ExpectSent(TraceBytes("host"));
}

// One byte less than the fields have room for.
TEST_F(TraceStartTest, TextsHave254BytesAtMost) {
    const std::string sLongest(254, 't');
    EXPECT_EQ(Start(sLongest.c_str(), sLongest.c_str()), 0u);
    ExpectSent(TraceBytes(sLongest, sLongest));
    EXPECT_EQ(Start((sLongest + "u").c_str(), nullptr), kMinusOne);
    ExpectRefused();
    EXPECT_EQ(Start("host", (sLongest + "u").c_str()), kMinusOne);
    ExpectRefused();
}

TEST_F(TraceStartTest, MissingHostIsRefused) {
    EXPECT_EQ(Start(nullptr, nullptr), kMinusOne);
    ExpectRefused();
    EXPECT_EQ(Start("", "p"), kMinusOne);
    ExpectRefused();
}

TEST_F(TraceStartTest, StartStatusIsGivenAsItIs) {
    stPlatform.mapReplies[kStartTrace] = {0, Word(9)};
    EXPECT_EQ(Start("host", nullptr), 9u);
    ExpectNoFaults();
}

TEST_F(TraceStartTest, RefusalIsRecorded) {
    stPlatform.mapReplies[kStartTrace] = {kRefused, Word(3)};
    EXPECT_EQ(Start("host", nullptr), kMinusOne);
    EXPECT_EQ(TimesRecorded("jni_traceroute_diagnostics.cpp", kRefused, {kWanIndex, 0, 0, 0}), 1u);
}

}  // namespace
}  // namespace wap::test
