#include "support/entry_table_lan.h"

#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LANHostsInfoQueryServiceJNI.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LANIPConfigServiceJNI.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LANIPInfoQueryServiceJNI.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LanHostSpeedQueryServiceJNI.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LanNetworkNameConfigServiceJNI.h>

#include <type_traits>

namespace wap::test {

namespace {

/// A call with arguments that are made when it happens.
template <class Result, class... Args, class... Makers>
std::function<Answer(FakeJni &)> Calling(Result (*pfnMethod)(JNIEnv *, jobject, Args...),
                                         Makers... fnMakers) {
    return [=](FakeJni &stEnv) {
        const Result xResult = pfnMethod(&stEnv, stEnv.JavaObject(), fnMakers(stEnv)...);
        if constexpr (std::is_same_v<Result, jint>) {
            return NumberAnswerOf(xResult);
        } else {
            return Answer{stEnv.Utf8Of(xResult), std::nullopt};
        }
    };
}

auto Text(const char16_t *pcText) {
    return [=](FakeJni &stEnv) { return stEnv.JavaText(pcText); };
}

jobjectArray TwoMacs(FakeJni &stEnv) {
    return stEnv.JavaTexts({u"02:00:00:00:00:01", u"02:00:00:00:00:02"});
}

jint Lease(FakeJni &) {
    return 86400;
}

}  // namespace

#define WAP_LAN(type, method) \
    Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_##type##ServiceJNI_##method
#define WAP_TEXT_OF(name) #name
#define WAP_NAMED(function, method) WAP_TEXT_OF(function), #method
#define WAP_LAN_ENTRY(type, method, ...)      \
    WAP_NAMED(WAP_LAN(type, method), method), \
        Calling(WAP_LAN(type, method) __VA_OPT__(, ) __VA_ARGS__)

std::vector<Entry> LanEntries() {
    const Answer stDone = NumberAnswerOf(0);
    const Answer stRefused = NumberAnswerOf(-1);
    const Answer stFault = TextAnswerOf("{\"Result\":-1}");
    return {
        {WAP_LAN_ENTRY(LANIPInfoQuery, getLANHostIP), TextAnswerOf(kLanAddressText), stFault,
         0x471030A0, false},
        {WAP_LAN_ENTRY(LANIPInfoQuery, getLANDHCPInfo),
         TextAnswerOf("{ \"Result\": 0, \"EnableDHCPServer\": \"TRUE\", \"DHCPStartIP\": "
                      "\"192.168.1.2\", \"DHCPEndIP\": \"192.168.1.254\", \"DHCPDuration\": 86400 "
                      "}"),
         stFault, 0x47302001, false},
        {WAP_LAN_ENTRY(LANIPConfig, setLANHostIP, Text(u"192.168.1.1"), Text(u"255.255.255.0")),
         stDone, stRefused, 0x47209098, false},
        {WAP_LAN_ENTRY(LANIPConfig, setLANDHCPInfo, Text(u"TRUE"), Text(u"192.168.1.2"),
                       Text(u"192.168.1.254"), Lease),
         stDone, stRefused, 0x47209099, false},
        {WAP_LAN_ENTRY(LANHostsInfoQuery, getGatewayName), TextAnswerOf(kGatewayNameText),
         TextAnswerOf(""), 0x4830512A, false},
        {WAP_LAN_ENTRY(LANHostsInfoQuery, getLANHostInfoByMAC, TwoMacs),
         TextAnswerOf(kHostsByMacText), TextAnswerOf("{\"Result\":-1,\"List\":[] }"), 0x471030B1,
         false},
        {WAP_LAN_ENTRY(LANHostsInfoQuery, getLANHostInfoByInterface, Text(u"LAN2")),
         TextAnswerOf(kHostsByInterfaceText), stFault, 0x471030B3, false},
        {WAP_LAN_ENTRY(LANHostsInfoQuery, getLANHostInfoByClass, Text(u"PHONE")),
         TextAnswerOf(kHostsByClassText), stFault, 0x471030B2, false},
        {WAP_LAN_ENTRY(LANHostsInfoQuery, getLANHostStats, TwoMacs), TextAnswerOf(kHostStatsText),
         stFault, 0x471030B4, false},
        {WAP_LAN_ENTRY(LanHostSpeedQuery, getLANHostSpeed, Text(u"02:00:00:00:00:01")),
         TextAnswerOf(kHostSpeedText), stFault, 0x471030B0, false},
        {WAP_LAN_ENTRY(LanNetworkNameConfig, setGatewayName, Text(u"The house")), stDone, stRefused,
         0x4720909E, false},
        {WAP_LAN_ENTRY(LanNetworkNameConfig, setLANHostName, Text(u"02:00:00:00:00:01"),
                       Text(u"Tablet")),
         stDone, stRefused, 0x4720909D, false},
    };
}

}  // namespace wap::test
