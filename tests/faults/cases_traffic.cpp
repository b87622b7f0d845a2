// Traffic: monitored addresses, flows, rules; the network diagnostics.

#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_DnsDiagnosticsServiceJNI.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_IPPingDiagnosticsServiceJNI.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_TraceRouteDiagnosticsServiceJNI.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_TrafficDetailProcessServiceJNI.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_TrafficForwardServiceJNI.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_TrafficMirrorServiceJNI.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_TrafficMonitoringConfigServiceJNI.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_TrafficQoSServiceJNI.h>

#include "faults/sweep_cases.h"
#include "support/entry_calls.h"
#include "support/furnish_diagnostics.h"
#include "support/furnish_flows.h"
#include "support/furnish_monitor.h"
#include "support/furnish_rules.h"
#include "support/wire_bytes.h"

namespace wap::test {

namespace {

const Answer &Refused() {
    static const Answer s_stRefused = NumberAnswerOf(-1);
    return s_stRefused;
}

/// The registry with one bundle and an address so long that the block is compressed.
std::string LongRegistry() {
    return "com.example.meter[\"" + std::string(3000, '1') + "\"]";
}

std::function<void(World &)> Registry(uint32_t uiBundles, uint32_t uiAddresses,
                                      const std::string &sText) {
    return [=](World &stWorld) {
        AnswerRegistry(stWorld, uiBundles, uiAddresses, sText + std::string(1, '\0'));
    };
}

/// A list for which json-c's array has to grow twice.
std::string ManyAddresses() {
    std::string sList = "[\"1\"";
    for (int i = 1; i < 70; ++i) {
        sList += ",\"1\"";
    }
    return sList + "]";
}

std::vector<std::string> Members(size_t uiCount) {
    return std::vector<std::string>(uiCount, FlowMemberBytes("198.51.100.7", "443", "1"));
}

std::string MemberList(size_t uiCount) {
    std::string sText = "{ \"Result\": 0, \"List\": [";
    for (size_t i = 0; i < uiCount; ++i) {
        sText += i == 0 ? " " : ", ";
        sText += "{ \"RemoteAddress\": \"198.51.100.7\", \"RemotePort\": \"443\" }";
    }
    return sText + " ] }";
}

template <class Row>
std::string Times(size_t uiCount, const Row &sRow) {
    std::string sRows;
    for (size_t i = 0; i < uiCount; ++i) {
        sRows += sRow;
    }
    return sRows;
}

std::string ForwardList(size_t uiCount) {
    std::string sText = "{ \"Result\": 0, \"List\": [";
    for (size_t i = 0; i < uiCount; ++i) {
        sText += i == 0 ? " " : ", ";
        sText +=
            "{ \"RemoteAddress\": \"203.0.113.80\", \"RemotePort\": \"80\", \"Protocol\": "
            "\"TCP\", \"HostMAC\": \"00:11:22:33:44:55\", \"ForwardToIP\": \"192.168.1.100\", "
            "\"ForwardToPort\": 9000 }";
    }
    return sText + " ] }";
}

constexpr const char *kNoRules = "{\"Result\":0,\"List\":[]}";

/// A text of which each byte takes up six in a list, so that it has no room.
std::string Sixfold(size_t uiBytes) {
    return std::string(uiBytes, '\x01');
}

/// The platform refuses to give the table.
void UnreadableTable(World &stWorld) {
    stWorld.stPlatform.mapStatus["VT_VDATA_ReadData"] = 42;
}

/// A test that has no text yet.
Reply NoTextYet() {
    return {0, Word(7) + std::string(12, '\0')};
}

}  // namespace

std::vector<CaseRow> MonitorCases() {
    const auto fnBundle = Text(u"com.example.meter");
    const auto fnMany =
        Texts(std::vector<std::optional<std::u16string>>(12, std::u16string(250, u'7')));
    return {
        {WAP_ENTRY(TrafficMonitoringConfig, addTrafficMonitoringDestAddress, fnMany, fnBundle),
         "compressed", NumberAnswerOf(0)},
        {WAP_ENTRY(TrafficMonitoringConfig, addTrafficMonitoringDestAddress, NoTexts(), fnBundle),
         "no_addresses", Refused()},
        {WAP_ENTRY(TrafficMonitoringConfig, addTrafficMonitoringDestAddress, Texts({u"10.0.0.1"}),
                   NoText()),
         "no_bundle", Refused()},
        {WAP_ENTRY(TrafficMonitoringConfig, addTrafficMonitoringDestAddress, Texts({u"10.0.0.1"}),
                   fnBundle),
         "refused", Refused(), Answering(kAddMonitored, {8, ""})},
        {WAP_ENTRY(TrafficMonitoringConfig, deleteTrafficMonitoringDestAddress,
                   Texts({u"10.0.0.1", u"10.0.0.2"}), fnBundle),
         "two", NumberAnswerOf(0)},
        {WAP_ENTRY(TrafficMonitoringConfig, getTrafficMonitoringDestAddressInfo), "compressed",
         TextAnswerOf("{\"Result\":0,\"List\":[{\"BundleName\":\"com.example.meter\","
                      "\"DestAddressList\":[\"" +
                      std::string(3000, '1') + "\"]}]}"),
         Registry(1, 12, LongRegistry())},
        {WAP_ENTRY(TrafficMonitoringConfig, getTrafficMonitoringDestAddressInfo), "none",
         TextAnswerOf("{\"Result\":0, \"List\":[]}"),
         Answering(kAskMonitored, {0, std::string(20, '\0')})},
        {WAP_ENTRY(TrafficMonitoringConfig, getTrafficMonitoringDestAddressInfo), "one",
         TextAnswerOf("{\"Result\":0,\"List\":[{\"BundleName\":\"b\",\"DestAddressList\":[\"1\"]}"
                      "]}"),
         Registry(1, 1, "b[\"1\"]")},
        {WAP_ENTRY(TrafficMonitoringConfig, getTrafficMonitoringDestAddressInfo), "many_addresses",
         TextAnswerOf("{\"Result\":0,\"List\":[{\"BundleName\":\"b\",\"DestAddressList\":" +
                      ManyAddresses() + "}]}"),
         Registry(1, 70, "b" + ManyAddresses())},
    };
}

std::vector<CaseRow> FlowCases() {
    return {
        {WAP_ENTRY(TrafficQoS, addTrafficToFlow, NoText(), Text(u"53"), Number(2)), "no_address",
         NumberAnswerOf(0)},
        {WAP_ENTRY(TrafficQoS, addTrafficToFlow, Text(u"198.51.100.7"), NoText(), Number(1)),
         "no_port", Refused()},
        {WAP_ENTRY(TrafficQoS, addTrafficToFlow, Text(u"198.51.100.7"), Text(u"443"),
                   Number(12345)),
         "number_too_long", Refused()},
        {WAP_ENTRY(TrafficQoS, deleteTrafficFromFlow, NoText(), Text(u"53"), Number(1)),
         "no_address", NumberAnswerOf(0)},
        {WAP_ENTRY(TrafficQoS, getTrafficInfoByFlow, Number(1)), "one", TextAnswerOf(MemberList(1)),
         Answering(0x4830419E, FlowTableReply(Members(1)))},
        {WAP_ENTRY(TrafficQoS, getTrafficInfoByFlow, Number(1)), "compressed",
         TextAnswerOf(MemberList(12)), Answering(0x4830419E, FlowTableReply(Members(12)))},
        {WAP_ENTRY(TrafficQoS, getTrafficInfoByFlow, Number(1)), "none",
         TextAnswerOf("{ \"Result\": -1 }"), Answering(0x4830419E, {0, std::string(16, '\0')})},
        {WAP_ENTRY(TrafficQoS, getSpeedByFlow, Number(-1)), "negative",
         TextAnswerOf("{\"Result\":0,\"upSpeed\":-1,\"downSpeed\":-2147483648}"),
         Answering(0x483041A0, {0, Word(0xFFFFFFFF) + Word(0x80000000)})},
    };
}

std::vector<CaseRow> RuleCases() {
    const Answer stNone = TextAnswerOf(kNoRules);
    const Answer stTooLong = TextAnswerOf("{ \"Result\": 1 }");
    const Answer stUnreadable = TextAnswerOf("{ \"Result\": 42 }");
    return {
        {WAP_ENTRY(TrafficMirror, addMirrorRule, NoText(), Text(u"80"), Text(u"UP"), Text(u"TCP"),
                   NoText(), Text(u"192.168.1.100"), Number(9000)),
         "optional_ones_missing", NumberAnswerOf(7)},
        {WAP_ENTRY(TrafficMirror, addMirrorRule, NoText(), NoText(), Text(u"UP"), Text(u"TCP"),
                   NoText(), Text(u"192.168.1.100"), Number(9000)),
         "no_port", Refused()},
        {WAP_ENTRY(TrafficMirror, getMirroRuleInfo), "none", stNone,
         Answering(kGetMirrorRules, {0, ""})},
        {WAP_ENTRY(TrafficMirror, getMirroRuleInfo), "too_long", stTooLong,
         Answering(kGetMirrorRules, {0, MirrorBytes({.sAddress = Sixfold(255)})})},
        {WAP_ENTRY(TrafficMirror, getMirroRuleInfo), "unreadable", stUnreadable, UnreadableTable},
        {WAP_ENTRY(TrafficForward, addForwardRule, Letters(256, u'a'), Text(u"80"), Text(u"TCP"),
                   NoText(), Text(u"192.168.1.100"), Number(9000)),
         "address_too_long", Refused()},
        {WAP_ENTRY(TrafficForward, getForwardRuleInfo), "none", stNone,
         Answering(kGetForwardRules, {0, ""})},
        {WAP_ENTRY(TrafficForward, getForwardRuleInfo), "compressed", TextAnswerOf(ForwardList(7)),
         Answering(kGetForwardRules, {0, Times(7, ForwardBytes({}))})},
        {WAP_ENTRY(TrafficForward, getForwardRuleInfo), "too_long", stTooLong,
         Answering(kGetForwardRules, {0, ForwardBytes({.sAddress = Sixfold(255)})})},
        {WAP_ENTRY(TrafficForward, getForwardRuleInfo), "unreadable", stUnreadable,
         UnreadableTable},
        {WAP_ENTRY(TrafficDetailProcess, addHTTPTrafficProcessRule, NoText(), Number(80),
                   Text(u"UP"), NoText(), NoTexts(), NoTexts(), NoTexts()),
         "no_lists", NumberAnswerOf(9)},
        {WAP_ENTRY(TrafficDetailProcess, addHTTPTrafficProcessRule, NoText(), Number(80), NoText(),
                   NoText(), Texts({u"GET"}), NoTexts(), NoTexts()),
         "no_direction", Refused()},
        {WAP_ENTRY(TrafficDetailProcess, getHTTPTrafficProcessRuleInfo), "none", stNone,
         Answering(kGetHttpRules, {0, ""})},
        {WAP_ENTRY(TrafficDetailProcess, getHTTPTrafficProcessRuleInfo), "too_long", stTooLong,
         Answering(kGetHttpRules,
                   {0, HttpRow(9, {.sAddress = Sixfold(255), .sHeaders = Sixfold(255)})})},
        {WAP_ENTRY(TrafficDetailProcess, getHTTPTrafficProcessRuleInfo), "unreadable", stUnreadable,
         UnreadableTable},
    };
}

std::vector<CaseRow> DiagnosticsCases() {
    const auto fnHost = Text(u"www.example.com");
    const std::string sLong = "{\"Hops\":\"" + std::string(3000, '9') + "\"}";
    const Answer stNoTextYet = TextAnswerOf("{\"Result\":7}");
    return {
        {WAP_ENTRY(IPPingDiagnostics, startIPPingDiagnostics, Number(1), fnHost, NoText()),
         "no_parameters", NumberAnswerOf(0)},
        {WAP_ENTRY(IPPingDiagnostics, startIPPingDiagnostics, Number(1), fnHost, Text(u"{")),
         "bad_parameters", Refused()},
        {WAP_ENTRY(IPPingDiagnostics, startIPPingDiagnostics, Number(1), NoText(), Text(u"{}")),
         "no_host", Refused()},
        {WAP_ENTRY(IPPingDiagnostics, startIPPingDiagnostics, Number(1), Letters(256, u'a'),
                   Text(u"{}")),
         "host_too_long", NumberAnswerOf(-2)},
        {WAP_ENTRY(IPPingDiagnostics, getIPPingDiagnosticsResult), "empty",
         TextAnswerOf("{\"Result\":-1}"), Answering(0x47103089, {0, ""})},
        {WAP_ENTRY(DnsDiagnostics, startDnsDiagnostics, Number(1), fnHost, Text(u"192.0.2.53"),
                   NoText()),
         "no_parameters", NumberAnswerOf(0)},
        {WAP_ENTRY(DnsDiagnostics, startDnsDiagnostics, Number(1), fnHost, NoText(), NoText()),
         "no_servers", Refused()},
        {WAP_ENTRY(DnsDiagnostics, getDnsDiagnosticsResult), "compressed", TextAnswerOf(sLong),
         Answering(0x47103097, DiagTextReply(sLong))},
        {WAP_ENTRY(DnsDiagnostics, getDnsDiagnosticsResult), "no_text_yet", stNoTextYet,
         Answering(0x47103097, NoTextYet())},
        {WAP_ENTRY(TraceRouteDiagnostics, startTraceRouteDiagnostics, Number(1), fnHost, NoText()),
         "no_parameters", NumberAnswerOf(0)},
        {WAP_ENTRY(TraceRouteDiagnostics, getTraceRouteDiagnosticsResult), "compressed",
         TextAnswerOf(sLong), Answering(0x47103091, DiagTextReply(sLong))},
        {WAP_ENTRY(TraceRouteDiagnostics, getTraceRouteDiagnosticsResult), "no_text_yet",
         stNoTextYet, Answering(0x47103091, NoTextYet())},
    };
}

}  // namespace wap::test
