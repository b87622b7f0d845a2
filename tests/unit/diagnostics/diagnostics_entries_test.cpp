// The Java methods of the network diagnostics, as Java sees them.
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_DnsDiagnosticsServiceJNI.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_IPPingDiagnosticsServiceJNI.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_TraceRouteDiagnosticsServiceJNI.h>

#include <string>

#include "support/entry_calls.h"
#include "support/entry_table_diagnostics.h"
#include "unit/diagnostics/diagnostics_fixture.h"

namespace wap::test {
namespace {

constexpr const char *kFault = "{\"Result\":-1}";

/// The source of an entry.
std::string FileOf(const Entry &stEntry) {
    const std::string sMethod = stEntry.sMethod;
    const size_t uiFrom = sMethod.starts_with("get") ? 3 : 5;
    std::string sService = sMethod.substr(uiFrom, sMethod.find("Diagnostics") - uiFrom);
    sService[0] = static_cast<char>(std::toupper(sService[0]));
    return sService + "DiagnosticsServiceJNI.cpp";
}

class DiagnosticsEntryTest : public DiagnosticsTest, public ::testing::WithParamInterface<Entry> {
  protected:
    const Entry &stEntry = GetParam();
};

TEST_P(DiagnosticsEntryTest, TracesTheCallFirst) {
    (void)stEntry.fnCall(stEnv);
    ASSERT_FALSE(stPlatform.astTraces.empty());
    const TraceRecord &stTrace = stPlatform.astTraces[0];
    EXPECT_EQ(stTrace.sFile, FileOf(stEntry));
    EXPECT_EQ(stTrace.sText, "\r\n " + stEntry.sSymbol + " called \r\n");
    EXPECT_EQ(stTrace.uiMid, 249u);
}

TEST_P(DiagnosticsEntryTest, AnswersFromAWorkingGateway) {
    EXPECT_EQ(stEntry.fnCall(stEnv), stEntry.stGood);
    EXPECT_EQ(RpcIds(stPlatform), Codes{stEntry.uiRpcId});
    ExpectNoFaults();
}

TEST_P(DiagnosticsEntryTest, AnswersItsFailureWhenRefusedAndWorksAgain) {
    Refuse(stEntry.uiRpcId);
    EXPECT_EQ(stEntry.fnCall(stEnv), stEntry.stFailure);
    const bool bStart = stEntry.sMethod.starts_with("start");
    EXPECT_EQ(TimesRecorded(FileOf(stEntry), bStart ? kMinusOne : kRefused), 1u);
    stEnv.EndCall();
    FurnishDiagnostics(stWorld);
    EXPECT_EQ(stEntry.fnCall(stEnv), stEntry.stGood);
}

TEST_P(DiagnosticsEntryTest, SurvivesEveryFailureOfJava) {
    EXPECT_GT(ExpectNothingWithoutJava(stEntry, FurnishDiagnostics), 0u);
}

INSTANTIATE_TEST_SUITE_P(Methods, DiagnosticsEntryTest, ::testing::ValuesIn(DiagnosticsEntries()),
                         [](const auto &stInfo) { return stInfo.param.sMethod; });

class DiagnosticsStartEntryTest : public DiagnosticsTest {
  protected:
    jstring Text(const char16_t *pcText) {
        return pcText == nullptr ? nullptr : stEnv.JavaText(pcText);
    }
    jint Ping(const char16_t *pcHost, const char16_t *pcPara) {
        stPlatform.ClearRecords();
        const jint iResult = WAP_METHOD(IPPingDiagnostics, startIPPingDiagnostics)(
            &stEnv, stEnv.JavaObject(), kWanIndex, Text(pcHost), Text(pcPara));
        stEnv.EndCall();
        return iResult;
    }
    jint Dns(const char16_t *pcHost, const char16_t *pcServers, const char16_t *pcPara) {
        stPlatform.ClearRecords();
        const jint iResult = WAP_METHOD(DnsDiagnostics, startDnsDiagnostics)(
            &stEnv, stEnv.JavaObject(), kWanIndex, Text(pcHost), Text(pcServers), Text(pcPara));
        stEnv.EndCall();
        return iResult;
    }
    jint Trace(const char16_t *pcHost, const char16_t *pcPara) {
        stPlatform.ClearRecords();
        const jint iResult = WAP_METHOD(TraceRouteDiagnostics, startTraceRouteDiagnostics)(
            &stEnv, stEnv.JavaObject(), kWanIndex, Text(pcHost), Text(pcPara));
        stEnv.EndCall();
        return iResult;
    }
    std::string Sent() { return stPlatform.astRpcs.at(0).sRequest; }
    /// What is traced behind the call.
    Calls ArgumentTraces() {
        Calls asTraces = EntryTraces(stPlatform);
        asTraces.erase(asTraces.begin());
        return asTraces;
    }
    void ExpectRefused(const std::string &sFile) {
        EXPECT_TRUE(stPlatform.astRpcs.empty());
        EXPECT_EQ(FaultCodes(stPlatform), Codes{kMinusOne});
        EXPECT_EQ(TimesRecorded(sFile, kMinusOne), 1u);
        EXPECT_EQ(ArgumentTraces(), Calls{});
    }
};

TEST_F(DiagnosticsStartEntryTest, PingSendsAndTracesItsArguments) {
    EXPECT_EQ(Ping(u"caf\u00e9.example", u"{\"Timeout\":5}"), 0);
    EXPECT_EQ(Sent(), PingBytes("caf\xC3\xA9.example", 0, 5));
    EXPECT_EQ(ArgumentTraces(), Calls{"startIPPingDiagnostics wanindex:269488131, pcHost: "
                                      "caf\xC3\xA9.example\r\n"});
}

TEST_F(DiagnosticsStartEntryTest, DnsSendsAndTracesItsArguments) {
    EXPECT_EQ(Dns(u"host", u"servers", u"more"), 0);
    EXPECT_EQ(Sent(), DnsBytes("host", "servers", "more"));
    EXPECT_EQ(ArgumentTraces(), (Calls{"startDnsDiagnostics wanindex:269488131, pcHost: host "
                                       "pcDnsServerlist :servers",
                                       "startDnsDiagnostics wanindex:269488131, pcHost: host "
                                       "pcDnsServerlist :servers pcPara :more"}));
}

TEST_F(DiagnosticsStartEntryTest, TraceRouteSendsAndTracesItsArguments) {
    EXPECT_EQ(Trace(u"host", u"more"), 0);
    EXPECT_EQ(Sent(), TraceBytes("host", "more"));
    EXPECT_EQ(ArgumentTraces(),
              (Calls{"startTraceRouteDiagnostics wanindex:269488131, pcHost: host",
                     "startTraceRouteDiagnostics wanindex:269488131, pcHost: host, pcPara:more"}));
}

TEST_F(DiagnosticsStartEntryTest, WanIndexIsTracedWithoutSign) {
    (void)WAP_METHOD(IPPingDiagnostics, startIPPingDiagnostics)(&stEnv, stEnv.JavaObject(), -1,
                                                                Text(u"h"), nullptr);
    EXPECT_EQ(ArgumentTraces(), Calls{"startIPPingDiagnostics wanindex:4294967295, pcHost: h\r\n"});
    EXPECT_EQ(Sent().substr(0, 4), Word(0xFFFFFFFF));
}

TEST_F(DiagnosticsStartEntryTest, ParametersMayBeMissing) {
    for (const char16_t *pcMissing : {static_cast<const char16_t *>(nullptr), u""}) {
        EXPECT_EQ(Ping(u"host", pcMissing), 0);
        EXPECT_EQ(Sent(), PingBytes("host"));
        EXPECT_EQ(Dns(u"host", u"s", pcMissing), 0);
        EXPECT_EQ(Sent(), DnsBytes("host", "s"));
        EXPECT_EQ(ArgumentTraces().size(), 1u);
        EXPECT_EQ(Trace(u"host", pcMissing), 0);
        EXPECT_EQ(Sent(), TraceBytes("host"));
        EXPECT_EQ(ArgumentTraces().size(), 1u);
    }
}

TEST_F(DiagnosticsStartEntryTest, OtherTextsMayNot) {
    for (const char16_t *pcMissing : {static_cast<const char16_t *>(nullptr), u""}) {
        EXPECT_EQ(Ping(pcMissing, u"{}"), -1);
        ExpectRefused("IPPingDiagnosticsServiceJNI.cpp");
        EXPECT_EQ(Dns(pcMissing, u"s", nullptr), -1);
        ExpectRefused("DnsDiagnosticsServiceJNI.cpp");
        EXPECT_EQ(Dns(u"host", pcMissing, nullptr), -1);
        ExpectRefused("DnsDiagnosticsServiceJNI.cpp");
        EXPECT_EQ(Trace(pcMissing, nullptr), -1);
        ExpectRefused("TraceRouteDiagnosticsServiceJNI.cpp");
    }
}

TEST_F(DiagnosticsStartEntryTest, PingTellsALongHostFromBadParameters) {
    const std::u16string sLong(256, u'h');
    EXPECT_EQ(Ping(sLong.c_str(), nullptr), -2);
    EXPECT_TRUE(stPlatform.astRpcs.empty());
    EXPECT_EQ(FaultCodes(stPlatform), Codes{});
    EXPECT_EQ(Ping(sLong.substr(1).c_str(), nullptr), 0);
    EXPECT_EQ(Ping(u"host", u"{Timeout:5}"), -1);
    EXPECT_TRUE(stPlatform.astRpcs.empty());
}

TEST_F(DiagnosticsStartEntryTest, StartStatusReachesJava) {
    stPlatform.mapReplies[kStartPing] = {0, Word(3)};
    EXPECT_EQ(Ping(u"host", nullptr), 3);
    stPlatform.mapReplies[kStartDns] = {0, Word(0xFFFFFFF0)};
    EXPECT_EQ(Dns(u"host", u"s", nullptr), -16);
    stPlatform.mapReplies[kStartTrace] = {0, Word(5)};
    EXPECT_EQ(Trace(u"host", nullptr), 5);
}

class DiagnosticsResultEntryTest : public DiagnosticsTest {
  protected:
    std::string Taken(jstring jText) {
        std::string sText = stEnv.Utf8Of(jText).value_or("null");
        stEnv.EndCall();
        return sText;
    }
    std::string Ping() {
        return Taken(
            WAP_METHOD(IPPingDiagnostics, getIPPingDiagnosticsResult)(&stEnv, stEnv.JavaObject()));
    }
    std::string Dns() {
        return Taken(
            WAP_METHOD(DnsDiagnostics, getDnsDiagnosticsResult)(&stEnv, stEnv.JavaObject()));
    }
    std::string Trace() {
        return Taken(WAP_METHOD(TraceRouteDiagnostics, getTraceRouteDiagnosticsResult)(
            &stEnv, stEnv.JavaObject()));
    }
};

TEST_F(DiagnosticsResultEntryTest, PingTextHas512BytesAtMost) {
    stPlatform.mapReplies[kAskPing] = {0, std::string(600, 'x')};
    EXPECT_EQ(Ping(), std::string(512, 'x'));
    EXPECT_EQ(stPlatform.astRpcs.at(0).uiRspCap, 512u);
}

TEST_F(DiagnosticsResultEntryTest, NoTextIsAFailure) {
    stPlatform.mapReplies[kAskPing] = {0, ""};
    EXPECT_EQ(Ping(), kFault);
    stPlatform.mapReplies[kAskDns] = DiagTextReply("");
    EXPECT_EQ(Dns(), kFault);
    stPlatform.mapReplies[kAskTrace] = DiagBlockReply("no end");
    EXPECT_EQ(Trace(), kFault);
}

TEST_F(DiagnosticsResultEntryTest, RefusedPingTellsNothingOfTheReply) {
    stPlatform.mapReplies[kAskPing] = {kRefused, "{\"Result\":0,\"SuccessCount\":9}"};
    EXPECT_EQ(Ping(), kFault);
}

TEST_F(DiagnosticsResultEntryTest, StatusReachesJava) {
    stPlatform.mapReplies[kAskDns] = {0, Word(7)};
    EXPECT_EQ(Dns(), "{\"Result\":7}");
    stPlatform.mapReplies[kAskTrace] = {0, Word(0xFFFFFFFE)};
    EXPECT_EQ(Trace(), "{\"Result\":-2}");
}

}  // namespace
}  // namespace wap::test
