#include "support/entry_table_rules.h"

#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_TrafficDetailProcessServiceJNI.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_TrafficForwardServiceJNI.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_TrafficMirrorServiceJNI.h>

#include "support/entry_calls.h"

namespace wap::test {

std::vector<Entry> RulesEntries() {
    const Answer stFailed = NumberAnswerOf(-1);
    const Answer stNoList = TextAnswerOf("{ \"Result\": -1 }");
    return {
        {WAP_ENTRY(TrafficMirror, addMirrorRule, Text(u"203.0.113.80"), Text(u"80"), Text(u"UP"),
                   Text(u"TCP"), Text(u"00:11:22:33:44:55"), Text(u"192.168.1.100"), Number(9000)),
         NumberAnswerOf(7), stFailed, 0x48304191, false},
        {WAP_ENTRY(TrafficMirror, deleteMirrorRule, Number(7)), NumberAnswerOf(3), stFailed,
         0x48304192, false},
        {WAP_ENTRY(TrafficMirror, deleteAllMirrorRule), NumberAnswerOf(3), stFailed, 0x48304192,
         false},
        {WAP_ENTRY(TrafficMirror, getMirroRuleInfo),
         TextAnswerOf("{ \"Result\": 0, \"List\": [ { \"RemoteAddress\": \"203.0.113.80\", "
                      "\"RemotePort\": \"80\", \"Direction\": \"UP\", \"Protocol\": \"TCP\", "
                      "\"HostMAC\": \"00:11:22:33:44:55\", \"MirrorToIP\": \"192.168.1.100\", "
                      "\"MirrorToPort\": 9000 }, { \"RemoteAddress\": \"\", \"RemotePort\": \"0\", "
                      "\"Direction\": \"DOWN\", \"Protocol\": \"UDP\", \"HostMAC\": \"\", "
                      "\"MirrorToIP\": \"2001:db8::1\", \"MirrorToPort\": 9001 } ] }"),
         stNoList, 0x48304193, false},
        {WAP_ENTRY(TrafficForward, addForwardRule, Text(u"203.0.113.80"), Text(u"80"), Text(u"TCP"),
                   Text(u"00:11:22:33:44:55"), Text(u"192.168.1.100"), Number(9000)),
         NumberAnswerOf(8), stFailed, 0x48304195, false},
        {WAP_ENTRY(TrafficForward, deleteForwardRule, Number(8)), NumberAnswerOf(4), stFailed,
         0x48304196, false},
        {WAP_ENTRY(TrafficForward, deleteAllForwardRule), NumberAnswerOf(4), stFailed, 0x48304196,
         false},
        {WAP_ENTRY(TrafficForward, getForwardRuleInfo),
         TextAnswerOf("{ \"Result\": 0, \"List\": [ { \"RemoteAddress\": \"203.0.113.80\", "
                      "\"RemotePort\": \"80\", \"Protocol\": \"TCP\", \"HostMAC\": "
                      "\"00:11:22:33:44:55\", \"ForwardToIP\": \"192.168.1.100\", "
                      "\"ForwardToPort\": 9000 }, { \"RemoteAddress\": \"\", \"RemotePort\": "
                      "\"0\", \"Protocol\": \"UDP\", \"HostMAC\": \"\", \"ForwardToIP\": \"\", "
                      "\"ForwardToPort\": 9001 } ] }"),
         stNoList, 0x48304197, false},
        {WAP_ENTRY(TrafficDetailProcess, addHTTPTrafficProcessRule, Text(u"203.0.113.80"),
                   Number(80), Text(u"UP"), Text(u"00:11:22:33:44:55"), Texts({u"GET", u"POST"}),
                   Texts({u"200"}), Texts({u"Host", u"User-Agent"})),
         NumberAnswerOf(9), stFailed, 0x48304198, false},
        {WAP_ENTRY(TrafficDetailProcess, deleteHTTPTrafficProcessRule, Number(9)),
         NumberAnswerOf(0), stFailed, 0x48304199, false},
        {WAP_ENTRY(TrafficDetailProcess, deleteAllHTTPTrafficProcessRule), NumberAnswerOf(0),
         stFailed, 0x48304199, false},
        {WAP_ENTRY(TrafficDetailProcess, getHTTPTrafficProcessRuleInfo),
         TextAnswerOf("{ \"Result\": 0, \"List\": [ { \"RemoteAddress\": \"203.0.113.80\", "
                      "\"RemotePort\": \"80\", \"Direction\": \"UP\", \"HostMAC\": "
                      "\"00:11:22:33:44:55\", \"MethodList\": [ \"GET,POST\" ], "
                      "\"StatuscodeList\": [ \"200\" ], \"HeaderList\": [ \"Host,User-Agent\" ], "
                      "\"RuleInst\": 9 }, { \"RemoteAddress\": \"\", \"RemotePort\": \"0\", "
                      "\"Direction\": \"DOWN\", \"HostMAC\": \"\", \"MethodList\": [ \"\" ], "
                      "\"StatuscodeList\": [ \"\" ], \"HeaderList\": [ \"\" ], \"RuleInst\": 12 } "
                      "] }"),
         stNoList, 0x4830419A, false},
    };
}

}  // namespace wap::test
