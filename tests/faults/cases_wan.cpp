// WAN connections and the uplink, VLANs and IPTV, USB devices.

#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_TransferQueryServiceJNI.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_VLANBindConfigServiceJNI.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_WanConfigServiceJNI.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_ozi_jni_AccessInfoQueryServiceJNI.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_tarn_jni_UsbServiceJNI.h>

#include "faults/sweep_cases.h"
#include "support/entry_calls.h"
#include "support/entry_table_wanconfig.h"
#include "support/furnish_usb.h"
#include "support/furnish_vlanbind.h"
#include "support/furnish_wanconfig.h"
#include "support/wire_bytes.h"

#define WAP_USB_ENTRY(method, ...) WAP_ENTRY_OF(tarn, Usb, method __VA_OPT__(, ) __VA_ARGS__)

namespace wap::test {

namespace {

constexpr jint kIpWan = 0x10101001;
constexpr jint kPppWan = 0x20101001;

std::function<void(World &)> IptvOf(const IptvFacts &stIptv) {
    return Answering(0x47317140, {0, IptvBytes(stIptv)});
}

std::function<void(World &)> Ready(int32_t iReady) {
    return [=](World &stWorld) { stWorld.stPlatform.stDescriptors.iReady = iReady; };
}

std::function<void(World &)> NothingBound() {
    return [](World &stWorld) {
        stWorld.stPlatform.mapReplies[0x47301017] = {0, Word(0) + std::string(32, 'z')};
        stWorld.stPlatform.mapReplies[0x47103093] = {0, SsidBytes({})};
    };
}

std::string FullWanList() {
    std::string sText = "{ \"Result\": 0, \"List\": [";
    for (uint32_t i = 0; i < 8; ++i) {
        sText += i == 0 ? " " : ", ";
        sText += "{ \"Index\": " + std::to_string(0x10101001 + i) + ", \"Name\": \"" +
                 std::string(20, 'n') + "\" }";
    }
    return sText + " ] }";
}

std::string FullWanRecord() {
    std::vector<std::pair<uint32_t, std::string>> astWans;
    for (uint32_t i = 0; i < 8; ++i) {
        astWans.emplace_back(0x10101001 + i, std::string(20, 'n'));
    }
    return WanListBytes(astWans);
}

}  // namespace

std::vector<CaseRow> WanCases() {
    const Answer stRefused = NumberAnswerOf(-1);
    const Answer stDone = NumberAnswerOf(0);
    const Answer stNew = NumberAnswerOf(static_cast<int32_t>(kNewWan));
    constexpr const char *kNoPower =
        R"({"Result":-2, "TXPower": 0, "RXPower": 0,"TransceiverTemperature": 0,)"
        R"("SupplyVottage": 0,"BiasCurrent": 0})";
    return {
        {WAP_ENTRY(WanConfig, addWANIf, Text(u"0"), Text(u"200"), Text(u"PPPoE_Bridged")),
         "without_vlan", stNew},
        {WAP_ENTRY(WanConfig, addWANIf, Text(u"2"), Text(u"100"), Text(u"IP_Routed")),
         "vlan_in_use", NumberAnswerOf(-2)},
        {WAP_ENTRY(WanConfig, addWANIf, Text(u"2"), Text(u"4095"), Text(u"IP_Routed")),
         "vlan_too_large", stRefused},
        {WAP_ENTRY(WanConfig, addWANIf, Text(u"2"), Text(u"200"), Text(u"By_Air")), "unknown_type",
         stRefused},
        {WAP_ENTRY(WanConfig, addWANIf, NoText(), Text(u"200"), Text(u"IP_Routed")), "no_mode",
         stRefused},
        {WAP_ENTRY(WanConfig, setWANIf, Number(kPppWan),
                   Text(u"{\"Username\":\"ppp-user-0123456789\","
                        u"\"Password\":\"ppp-password-ABCDEFGHIJ\",\"DNSServers\":\"192.0.2.9\"}")),
         "ppp", stDone},
        {WAP_ENTRY(WanConfig, setWANIf, Number(kIpWan), Text(u"{}")), "nothing", stDone},
        {WAP_ENTRY(WanConfig, setWANIf, Number(kIpWan),
                   Text(u"{\"Password\":\"ppp-password-ABCDEFGHIJ\",\"NATEnabled\":\"MAYBE\"}")),
         "bad_switch", stRefused},
        {WAP_ENTRY(WanConfig, setWANIf, Number(kIpWan),
                   Text(u"{\"Password\":\"ppp-password-ABCDEFGHIJ\"")),
         "bad_json", stRefused},
        {WAP_ENTRY(WanConfig, setWANIf, Number(kIpWan), Text(u"{\"ServiceList\":\"TR069\"}")),
         "second_for_management", stRefused},
        {WAP_ENTRY(WanConfig, setWANIf, Number(kIpWan), NoText()), "no_settings", stRefused},
        {WAP_ENTRY(WanConfig, deleteWANIf, Number(kPppWan)), "others_stay", stDone,
         Answering(0x47301012, {0, CountBytes(1)})},
        {WAP_ENTRY_OF(ozi, AccessInfoQuery, getWANIfList), "none", TextAnswerOf(kEmptyList),
         Answering(0x47302025, {0, WanListBytes({})})},
        {WAP_ENTRY_OF(ozi, AccessInfoQuery, getWANIfList), "eight", TextAnswerOf(FullWanList()),
         Answering(0x47302025, {0, FullWanRecord()})},
        {WAP_ENTRY_OF(ozi, AccessInfoQuery, getWANIfInfo, Number(-1)), "long",
         TextAnswerOf("{\"I\":\"" + std::string(1500, 'i') + "\"}"),
         Answering(0x4710308B, {0, "{\"I\":\"" + std::string(1500, 'i') + "\"}"})},
        {WAP_ENTRY_OF(ozi, AccessInfoQuery, getWANIfStatus, Number(kIpWan)), "empty",
         TextAnswerOf("{\"Result\":-1}"), Answering(0x4710308D, {0, ""})},
        {WAP_ENTRY_OF(ozi, AccessInfoQuery, getPONIfPhyStatus), "unknown", TextAnswerOf(kNoPower),
         Answering(0x4710308F, {0xFFFFFFFE, ""})},
        {WAP_ENTRY_OF(ozi, AccessInfoQuery, getPONIfUpTime), "unknown", NumberAnswerOf(-2),
         Answering(0x471030D0, {0xFFFFFFFE, ""})},
        {WAP_ENTRY_OF(ozi, AccessInfoQuery, getPONIfRegisterStatus), "unknown",
         TextAnswerOf(R"({"Result":-2, "RegisterStatus": "NO_REG_NO_AUTH"})"),
         Answering(0x471030D1, {0xFFFFFFFE, ""})},
        {WAP_ENTRY_OF(ozi, AccessInfoQuery, getUplinkIfStats), "unknown",
         TextAnswerOf(R"({"Result":-1, "UsStats": 0, "DsStats": 0})"),
         Answering(0x471030D2, {0xFFFFFFFE, ""})},
    };
}

std::vector<CaseRow> VlanCases() {
    const Answer stRefused = NumberAnswerOf(-1);
    return {
        {WAP_ENTRY(VLANBindConfig, setVLANBind, Text(u"LAN1"), Text(u"10/5000")), "bad_vlan",
         stRefused},
        {WAP_ENTRY(VLANBindConfig, setVLANBind, Text(u"LAN2"), Text(u"10/100")), "one_pair",
         NumberAnswerOf(0)},
        {WAP_ENTRY(VLANBindConfig, setVLANBind, Text(u"LAN1"), NoText()), "no_pairs", stRefused},
        {WAP_ENTRY(VLANBindConfig, clearVLANBind, NoText()), "no_interface", stRefused},
        {WAP_ENTRY(TransferQuery, getVLANBindInfo), "nothing_bound", TextAnswerOf(kEmptyList),
         NothingBound()},
        {WAP_ENTRY(TransferQuery, getVLANBindInfo), "ports_are_not_bound",
         TextAnswerOf("{ \"Result\": 0, \"List\": [ "
                      "{ \"LanInterface\": \"SSID1\", \"Bind\": \"20\\/200,30\\/300\" }, "
                      "{ \"LanInterface\": \"SSID2\", \"Bind\": \"\" } ] }"),
         Answering(0x47603122, {0, LanBindBytes("10/100", 0)})},
        {WAP_ENTRY(TransferQuery, getIPTVStatus), "no_connection",
         TextAnswerOf("NO_IPTV_CONNECTION"), IptvOf({.uiServiceType = 12})},
        {WAP_ENTRY(TransferQuery, getIPTVStatus), "down", TextAnswerOf("IPTV_DISCONNECT"),
         IptvOf({.uiStatus = 3})},
        {WAP_ENTRY(TransferQuery, getIPTVStatus), "second_family",
         TextAnswerOf("IPTV_BUSSINESS_OK"), IptvOf({.uiIpv4 = 0})},
        {WAP_ENTRY(TransferQuery, getIPTVStatus), "no_multicast_vlan",
         TextAnswerOf("INVALID_MULTIVLAN"), IptvOf({.usMvlan4 = 4095})},
        {WAP_ENTRY(TransferQuery, getIPTVStatus), "nobody_watches",
         TextAnswerOf("IPTV_BUSSINESS_NOK"), Answering(0x47305019, {0, Word(0)})},
    };
}

std::vector<CaseRow> UsbCases() {
    const Answer stDone = NumberAnswerOf(0);
    const Answer stFailed = NumberAnswerOf(-1);
    const Answer stBusy = NumberAnswerOf(-2);
    return {
        {WAP_USB_ENTRY(usbRegister, NoText(), Number(1)), "no_plugin", stFailed},
        {WAP_USB_ENTRY(usbUnregister, NoText()), "no_plugin", stFailed},
        {WAP_USB_ENTRY(usbRegister, Text(u"com.example.meter"), Number(1)), "busy", stBusy,
         Answering(0x47103041, {0xF710403D, ""})},
        {WAP_USB_ENTRY(usbUnregister, Text(u"com.example.meter")), "busy", stBusy,
         Answering(0x47103042, {0xF710403D, ""})},
        {WAP_USB_ENTRY(usbUnlock, Number(3)), "busy", stBusy,
         Answering(0x47103044, {0xF710403D, ""})},
        {WAP_USB_ENTRY(usbLock, Number(3)), "busy", stBusy,
         Answering(0x47103043, {0xF710403D, ""})},
        {WAP_USB_ENTRY(usbOpen, Number(3)), "busy", stBusy,
         Answering(0x4710303F, {0xF710403D, ""})},
        {WAP_USB_ENTRY(usbUnlock, Number(-1)), "refused", stFailed, Answering(0x47103044, {5, ""})},
        {WAP_USB_ENTRY(usbOpen, Number(3)), "not_allowed", stFailed,
         Answering(0x4710303F, {0, OpenBytes("/dev/ttyUSB0", 1)})},
        {WAP_USB_ENTRY(usbDataAvailable, Number(77)), "nothing", stBusy, Ready(0)},
        {WAP_USB_ENTRY(usbDataAvailable, Number(60000)), "too_high", stDone},
        {WAP_USB_ENTRY(usbRead, Number(77), Bytes("0123456789"), Number(0), Number(10), Number(0)),
         "nothing_at_once", stDone, Ready(0)},
        {WAP_USB_ENTRY(usbRead, Number(77), Bytes("0123456789"), Number(0), Number(10), Number(3)),
         "nothing_in_time", stBusy, Ready(0)},
        {WAP_USB_ENTRY(usbRead, Number(77), Bytes("0123456789"), Number(0), Number(2), Number(-1)),
         "for_ever", NumberAnswerOf(2)},
        {WAP_USB_ENTRY(usbRead, Number(77), NoBytes(), Number(0), Number(2), Number(1)),
         "no_buffer", stFailed},
        {WAP_USB_ENTRY(usbWrite, Number(77), Bytes("ATZ\r"), Number(1), Number(4)), "out_of_range",
         stFailed},
        {WAP_USB_ENTRY(usbWrite, Number(77), Bytes("ATZ\r"), Number(4), Number(0)), "nothing",
         stDone},
        {WAP_USB_ENTRY(usbSetSerial, Number(77), Number(9600), Number(2), Number(7), Number(2),
                       Flag(true), Flag(true)),
         "odd_and_flow_control", stDone},
        {WAP_USB_ENTRY(usbSetSerial, Number(77), Number(12345), Number(0), Number(8), Number(1),
                       Flag(false), Flag(false)),
         "unknown_rate", stFailed},
        {WAP_USB_ENTRY(getStorageInfo), "none", TextAnswerOf(kEmptyList),
         Answering(0x47103067, {0, DiscBytes({})})},
        {WAP_USB_ENTRY(getStorageInfo), "one",
         TextAnswerOf(std::string("{ \"Result\": 0, \"List\": [ ") + kMeasuredVolume + " ] }"),
         Answering(0x47103067, {0, DiscBytes({"/mnt/usb1"})})},
    };
}

}  // namespace wap::test
