#include "support/entry_table_wanconfig.h"

#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_WanConfigServiceJNI.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_ozi_jni_AccessInfoQueryServiceJNI.h>

#include "support/entry_calls.h"

namespace wap::test {

namespace {

constexpr jint kWan = 0x10101001;

std::vector<Entry> WanChanges() {
    const Answer stRefused = NumberAnswerOf(-1);
    return {
        {WAP_ENTRY(WanConfig, addWANIf, Text(u"2"), Text(u"200"), Text(u"IP_Routed")),
         NumberAnswerOf(static_cast<int32_t>(kNewWan)), stRefused, 0x47209076, false},
        {WAP_ENTRY(WanConfig, setWANIf, Number(kWan),
                   Text(u"{\"Username\":\"ppp-user-0123456789\","
                        "\"Password\":\"ppp-password-ABCDEFGHIJ\",\"ServiceList\":\"INTERNET\","
                        "\"DNSServers\":\"192.0.2.9\",\"IPv6DNSServers\":\"2001:db8::9\"}")),
         NumberAnswerOf(0), stRefused, 0x47209078, true},
        {WAP_ENTRY(WanConfig, deleteWANIf, Number(kWan)), NumberAnswerOf(0), stRefused, 0x47209077,
         false},
    };
}

std::vector<Entry> WanEntries() {
    const Answer stFault = TextAnswerOf("{\"Result\":-1}");
    return {
        {WAP_ENTRY_OF(ozi, AccessInfoQuery, getWANIfList),
         TextAnswerOf("{ \"Result\": 0, \"List\": [ { \"Index\": 269488129, \"Name\": "
                      "\"1_INTERNET_R_VID_100\" }, { \"Index\": 537923586, \"Name\": "
                      "\"2_TR069_R_VID_46\" } ] }"),
         TextAnswerOf("{ \"Result\": 0, \"List\": [ ] }"), 0x47302025, false},
        {WAP_ENTRY_OF(ozi, AccessInfoQuery, getWANIfStats, Number(kWan)),
         TextAnswerOf(kWanStatsText), stFault, 0x4710308A, false},
        {WAP_ENTRY_OF(ozi, AccessInfoQuery, getWANIfInfo, Number(kWan)), TextAnswerOf(kWanInfoText),
         stFault, 0x4710308B, false},
        {WAP_ENTRY_OF(ozi, AccessInfoQuery, getWanIfBandwidth, Number(kWan)),
         TextAnswerOf(kWanBandwidthText), stFault, 0x4710308C, false},
        {WAP_ENTRY_OF(ozi, AccessInfoQuery, getWANIfStatus, Number(kWan)),
         TextAnswerOf(kWanStatusText), stFault, 0x4710308D, false},
        {WAP_ENTRY_OF(ozi, AccessInfoQuery, getInternetWANIndex),
         NumberAnswerOf(static_cast<int32_t>(kInternetWan)), NumberAnswerOf(-1), 0x4710308E, false},
    };
}

std::vector<Entry> UplinkEntries() {
    return {
        {WAP_ENTRY_OF(ozi, AccessInfoQuery, getPONIfPhyStatus), TextAnswerOf(kPonPhyText),
         TextAnswerOf(R"({"Result":-1, "TXPower": 0, "RXPower": 0,"TransceiverTemperature": 0,)"
                      R"("SupplyVottage": 0,"BiasCurrent": 0})"),
         0x4710308F, false},
        {WAP_ENTRY_OF(ozi, AccessInfoQuery, getPONIfUpTime),
         NumberAnswerOf(static_cast<int32_t>(kPonUpTime)), NumberAnswerOf(-1), 0x471030D0, false},
        {WAP_ENTRY_OF(ozi, AccessInfoQuery, getPONIfRegisterStatus), TextAnswerOf(kPonRegText),
         TextAnswerOf(R"({"Result":-1, "RegisterStatus": "NO_REG_NO_AUTH"})"), 0x471030D1, false},
        {WAP_ENTRY_OF(ozi, AccessInfoQuery, getUplinkIfStats), TextAnswerOf(kUplinkText),
         TextAnswerOf(R"({"Result":-1, "UsStats": 0, "DsStats": 0})"), 0x471030D2, false},
    };
}

}  // namespace

std::vector<Entry> WanConfigEntries() {
    std::vector<Entry> astEntries = WanChanges();
    for (const std::vector<Entry> &astMore : {WanEntries(), UplinkEntries()}) {
        astEntries.insert(astEntries.end(), astMore.begin(), astMore.end());
    }
    return astEntries;
}

}  // namespace wap::test
