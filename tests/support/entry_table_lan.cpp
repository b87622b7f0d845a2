#include "support/entry_table_lan.h"

#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LANHostsInfoQueryServiceJNI.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LANIPConfigServiceJNI.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LANIPInfoQueryServiceJNI.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LanHostSpeedQueryServiceJNI.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LanNetworkNameConfigServiceJNI.h>

#include "support/entry_calls.h"

namespace wap::test {

std::vector<Entry> LanEntries() {
    const auto fnTwoMacs = Texts({u"02:00:00:00:00:01", u"02:00:00:00:00:02"});
    const Answer stDone = NumberAnswerOf(0);
    const Answer stRefused = NumberAnswerOf(-1);
    const Answer stFault = TextAnswerOf("{\"Result\":-1}");
    return {
        {WAP_ENTRY(LANIPInfoQuery, getLANHostIP), TextAnswerOf(kLanAddressText), stFault,
         0x471030A0, false},
        {WAP_ENTRY(LANIPInfoQuery, getLANDHCPInfo),
         TextAnswerOf("{ \"Result\": 0, \"EnableDHCPServer\": \"TRUE\", \"DHCPStartIP\": "
                      "\"192.168.1.2\", \"DHCPEndIP\": \"192.168.1.254\", \"DHCPDuration\": 86400 "
                      "}"),
         stFault, 0x47302001, false},
        {WAP_ENTRY(LANIPConfig, setLANHostIP, Text(u"192.168.1.1"), Text(u"255.255.255.0")), stDone,
         stRefused, 0x47209098, false},
        {WAP_ENTRY(LANIPConfig, setLANDHCPInfo, Text(u"TRUE"), Text(u"192.168.1.2"),
                   Text(u"192.168.1.254"), Number(86400)),
         stDone, stRefused, 0x47209099, false},
        {WAP_ENTRY(LANHostsInfoQuery, getGatewayName), TextAnswerOf(kGatewayNameText),
         TextAnswerOf(""), 0x4830512A, false},
        {WAP_ENTRY(LANHostsInfoQuery, getLANHostInfoByMAC, fnTwoMacs),
         TextAnswerOf(kHostsByMacText), TextAnswerOf("{\"Result\":-1,\"List\":[] }"), 0x471030B1,
         false},
        {WAP_ENTRY(LANHostsInfoQuery, getLANHostInfoByInterface, Text(u"LAN2")),
         TextAnswerOf(kHostsByInterfaceText), stFault, 0x471030B3, false},
        {WAP_ENTRY(LANHostsInfoQuery, getLANHostInfoByClass, Text(u"PHONE")),
         TextAnswerOf(kHostsByClassText), stFault, 0x471030B2, false},
        {WAP_ENTRY(LANHostsInfoQuery, getLANHostStats, fnTwoMacs), TextAnswerOf(kHostStatsText),
         stFault, 0x471030B4, false},
        {WAP_ENTRY(LanHostSpeedQuery, getLANHostSpeed, Text(u"02:00:00:00:00:01")),
         TextAnswerOf(kHostSpeedText), stFault, 0x471030B0, false},
        {WAP_ENTRY(LanNetworkNameConfig, setGatewayName, Text(u"The house")), stDone, stRefused,
         0x4720909E, false},
        {WAP_ENTRY(LanNetworkNameConfig, setLANHostName, Text(u"02:00:00:00:00:01"),
                   Text(u"Tablet")),
         stDone, stRefused, 0x4720909D, false},
    };
}

}  // namespace wap::test
