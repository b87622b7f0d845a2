#include "support/entry_table_flows.h"

#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_TrafficQoSServiceJNI.h>

#include "support/entry_calls.h"

namespace wap::test {

std::vector<Entry> FlowEntries() {
    const Answer stFault = TextAnswerOf("{ \"Result\": -1 }");
    return {
        {WAP_ENTRY(TrafficQoS, addTrafficToFlow, Text(u"198.51.100.7"), Text(u"443"), Number(1)),
         NumberAnswerOf(0), NumberAnswerOf(-1), 0x4830419B, false},
        {WAP_ENTRY(TrafficQoS, deleteTrafficFromFlow, Text(u"198.51.100.7"), Text(u"443"),
                   Number(1)),
         NumberAnswerOf(0), NumberAnswerOf(-1), 0x4830419C, false},
        {WAP_ENTRY(TrafficQoS, deleteAllTrafficFromFlow, Number(1)), NumberAnswerOf(0),
         NumberAnswerOf(-1), 0x4830419D, false},
        {WAP_ENTRY(TrafficQoS, getTrafficInfoByFlow, Number(1)),
         TextAnswerOf("{ \"Result\": 0, \"List\": [ "
                      "{ \"RemoteAddress\": \"198.51.100.7\", \"RemotePort\": \"443\" }, "
                      "{ \"RemoteAddress\": \"\", \"RemotePort\": \"53\" } ] }"),
         stFault, 0x4830419E, false},
        {WAP_ENTRY(TrafficQoS, getStatsByFlow, Number(1)),
         TextAnswerOf("{\"Result\":0,\"UsStats\":4294967301,\"DsStats\":18446744073709551615}"),
         stFault, 0x4830419F, false},
        {WAP_ENTRY(TrafficQoS, getSpeedByFlow, Number(1)),
         TextAnswerOf("{\"Result\":0,\"upSpeed\":512,\"downSpeed\":20480}"), stFault, 0x483041A0,
         false},
        {WAP_ENTRY(TrafficQoS, getSpeedLimitByFlow, Number(1)),
         TextAnswerOf("{\"Result\":0,\"UpSpeed\":1024,\"DownSpeed\":40960}"), stFault, 0x483041A1,
         false},
        {WAP_ENTRY(TrafficQoS, setSpeedLimitByFlow, Number(1), Number(1024), Number(40960)),
         NumberAnswerOf(0), NumberAnswerOf(-1), 0x483041A2, false},
        {WAP_ENTRY(TrafficQoS, getDSCPRemarkByFlow, Number(1)), NumberAnswerOf(46),
         NumberAnswerOf(-1), 0x483041A3, false},
        {WAP_ENTRY(TrafficQoS, setDSCPRemarkByFlow, Number(1), Number(46)), NumberAnswerOf(0),
         NumberAnswerOf(-1), 0x483041A4, false},
    };
}

}  // namespace wap::test
