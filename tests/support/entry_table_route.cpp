#include "support/entry_table_route.h"

#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_StaticLayer3ForwardingConfigServiceJNI.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_TransferQueryServiceJNI.h>

#include "support/entry_calls.h"

namespace wap::test {

namespace {

constexpr const char16_t *kAlias = u"2_INTERNET_R_VID_100";

std::vector<Entry> RouteChanges() {
    return {
        {WAP_ENTRY(StaticLayer3ForwardingConfig, addLayer3ForwardingStatic, Text(u"10.20.0.0"),
                   Text(u"255.255.0.0"), Text(u"100.64.0.1"), Text(kAlias)),
         NumberAnswerOf(7), NumberAnswerOf(-1), 0x47209071, false},
        {WAP_ENTRY(StaticLayer3ForwardingConfig, deleteLayer3ForwardingStatic, Number(7)),
         NumberAnswerOf(0), NumberAnswerOf(-1), 0x47209072, false},
        {WAP_ENTRY(StaticLayer3ForwardingConfig, addIPv6Layer3ForwardingStatic,
                   Text(u"2001:db8:20::/48"), Text(u"fe80::1"), Text(kAlias)),
         NumberAnswerOf(8), NumberAnswerOf(-1), 0x47209073, false},
        {WAP_ENTRY(StaticLayer3ForwardingConfig, deleteIPv6Layer3ForwardingStatic, Number(8)),
         NumberAnswerOf(0), NumberAnswerOf(-1), 0x47209074, false},
    };
}

std::vector<Entry> RouteQueries() {
    return {
        {WAP_ENTRY(TransferQuery, getLayer3ForwardingStaticConfigInfo),
         TextAnswerOf("{ \"Result\": 0, \"List\": [ { \"Index\": \"5\", \"DestIPAddress\": "
                      "\"10.20.0.0\", \"DestSubnetMask\": \"255.255.0.0\", \"GatewayIPAddress\": "
                      "\"100.64.0.1\", \"Interface\": \"2_INTERNET_R_VID_100\" }, { \"Index\": "
                      "\"9\", \"DestIPAddress\": \"10.20.0.0\", \"DestSubnetMask\": "
                      "\"255.255.0.0\", \"GatewayIPAddress\": \"100.64.0.1\", \"Interface\": "
                      "\"2_INTERNET_R_VID_100\" } ] }"),
         TextAnswerOf("{\"Result\":-1}"), 0x47304006, false},
        {WAP_ENTRY(TransferQuery, getIPv6Layer3ForwardingStaticConfigInfo),
         TextAnswerOf("{ \"Result\": 0, \"List\": [ { \"Index\": \"5\", \"DestIPPrefix\": "
                      "\"2001:db8:20::\\/48\", \"NextHop\": \"fe80::1\", \"Interface\": "
                      "\"2_INTERNET_R_VID_100\" }, { \"Index\": \"9\", \"DestIPPrefix\": "
                      "\"2001:db8:20::\\/48\", \"NextHop\": \"fe80::1\", \"Interface\": "
                      "\"2_INTERNET_R_VID_100\" } ] }"),
         TextAnswerOf("{\"Result\":-1}"), 0x47100009, false},
        {WAP_ENTRY(TransferQuery, getLayer3ForwardingCurrent),
         TextAnswerOf("{ \"Result\": 0, \"List\": [ { \"Index\": \"1\", \"DestIPAddress\": "
                      "\"0.0.0.0\", \"DestSubnetMask\": \"0.0.0.0\", \"GatewayIPAddress\": "
                      "\"100.64.0.1\", \"Interface\": \"2_INTERNET_R_VID_100\" } ] }"),
         TextAnswerOf("{\"Result\":-1}"), 0x46345865, false},
        {WAP_ENTRY(TransferQuery, getIPv6Layer3ForwardingCurrent),
         TextAnswerOf("{ \"Result\": 0, \"List\": [ { \"Index\": \"1\", \"DestIPPrefix\": "
                      "\"::\\/0\", \"NextHop\": \"fe80::1\", \"Interface\": "
                      "\"2_INTERNET_R_VID_100\" } ] }"),
         TextAnswerOf("{\"Result\":-1}"), 0x46345865, false},
    };
}

}  // namespace

std::vector<Entry> RouteEntries() {
    std::vector<Entry> astEntries = RouteChanges();
    for (Entry &stEntry : RouteQueries()) {
        astEntries.push_back(std::move(stEntry));
    }
    return astEntries;
}

}  // namespace wap::test
