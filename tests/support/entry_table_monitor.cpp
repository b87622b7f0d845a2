#include "support/entry_table_monitor.h"

#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_TrafficMonitoringConfigServiceJNI.h>

#include "support/entry_calls.h"

namespace wap::test {

std::vector<Entry> MonitorEntries() {
    return {
        {WAP_ENTRY(TrafficMonitoringConfig, addTrafficMonitoringDestAddress,
                   Texts({u"10.0.0.1", std::nullopt, u"10.0.0.2"}), Text(u"com.example.meter")),
         NumberAnswerOf(0), NumberAnswerOf(-1), 0x48304173, false},
        {WAP_ENTRY(TrafficMonitoringConfig, deleteTrafficMonitoringDestAddress,
                   Texts({u"10.0.0.1"}), Text(u"com.example.meter")),
         NumberAnswerOf(0), NumberAnswerOf(-1), 0x48304174, false},
        {WAP_ENTRY(TrafficMonitoringConfig, getTrafficMonitoringDestAddressInfo),
         TextAnswerOf("{\"Result\":0,\"List\":[{\"BundleName\":\"com.example.meter\","
                      "\"DestAddressList\":[\"10.0.0.1\",\"10.0.0.2\"]},{\"BundleName\":"
                      "\"com.example.shield\",\"DestAddressList\":[\"192.0.2.7\"]}]}"),
         TextAnswerOf("{\"Result\":-1}"), 0x483041A5, false},
    };
}

}  // namespace wap::test
