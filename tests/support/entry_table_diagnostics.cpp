#include "support/entry_table_diagnostics.h"

#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_DnsDiagnosticsServiceJNI.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_IPPingDiagnosticsServiceJNI.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_TraceRouteDiagnosticsServiceJNI.h>

#include "support/entry_calls.h"

namespace wap::test {

std::vector<Entry> DiagnosticsEntries() {
    const Answer stFault = TextAnswerOf("{\"Result\":-1}");
    return {
        {WAP_ENTRY(IPPingDiagnostics, startIPPingDiagnostics, Number(0x10101001),
                   Text(u"www.example.com"),
                   Text(u"{\"NumberOfRepetitions\":4,\"Timeout\":1000,\"DataBlockSize\":64,"
                        u"\"DSCP\":46}")),
         NumberAnswerOf(0), NumberAnswerOf(-1), 0x47103088, false},
        {WAP_ENTRY(IPPingDiagnostics, getIPPingDiagnosticsResult),
         TextAnswerOf("{\"Result\":0,\"SuccessCount\":4}"), stFault, 0x47103089, false},
        {WAP_ENTRY(DnsDiagnostics, startDnsDiagnostics, Number(0x10101001),
                   Text(u"www.example.com"), Text(u"192.0.2.53"), Text(u"retries=2")),
         NumberAnswerOf(0), NumberAnswerOf(-1), 0x47103096, false},
        {WAP_ENTRY(DnsDiagnostics, getDnsDiagnosticsResult),
         TextAnswerOf("{\"Result\":0,\"IPAddress\":\"198.51.100.7\"}"), stFault, 0x47103097, false},
        {WAP_ENTRY(TraceRouteDiagnostics, startTraceRouteDiagnostics, Number(0x10101001),
                   Text(u"www.example.com"), Text(u"hops=8")),
         NumberAnswerOf(0), NumberAnswerOf(-1), 0x47103090, false},
        {WAP_ENTRY(TraceRouteDiagnostics, getTraceRouteDiagnosticsResult),
         TextAnswerOf("{\"Result\":0,\"Hops\":[\"192.168.1.1\"]}"), stFault, 0x47103091, false},
    };
}

}  // namespace wap::test
