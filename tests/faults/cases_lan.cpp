// The LAN, its hosts, port mappings and routes.

#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LANHostsInfoQueryServiceJNI.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LANIPConfigServiceJNI.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LANIPInfoQueryServiceJNI.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LanHostSpeedQueryServiceJNI.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LanNetworkNameConfigServiceJNI.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_PortMappingConfigServiceJNI.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_PortMappingQueryServiceJNI.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_StaticLayer3ForwardingConfigServiceJNI.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_TransferQueryServiceJNI.h>

#include "faults/sweep_cases.h"
#include "support/entries.h"
#include "support/entry_calls.h"
#include "support/entry_table_lan.h"
#include "support/furnish_lan.h"
#include "support/furnish_portmap.h"
#include "support/furnish_route.h"
#include "support/wire_bytes.h"

namespace wap::test {

namespace {

/// What the process says of hosts, so long that its block is compressed.
const std::string kManyHostsText = "{\"Result\":0,\"List\":[\"" + std::string(3000, 'h') + "\"]}";

std::function<void(World &)> ManyHosts(uint32_t uiRpcId) {
    return Answering(uiRpcId, {0, kManyHostsText + '\0', true});
}

/// The process writes an empty text.
std::function<void(World &)> NoHosts(uint32_t uiRpcId) {
    return Answering(uiRpcId, {0, std::string(1, '\0'), true});
}

constexpr const char16_t *kMac = u"02:00:00:00:00:01";

std::string SwitchedOff(std::string sDhcp) {
    PutText(sDhcp, 4, Word(0));
    return sDhcp;
}

std::string MappingText(uint32_t uiIndex) {
    return "{ \"PortMappingIndex\": " + std::to_string(uiIndex) +
           ", \"PortMappingEnabled\": \"TRUE\", \"ExternalPort\": 8080, \"InternalPort\": 80, "
           "\"PortMappingProtocol\": \"TCP\", \"InternalClient\": \"192.168.1.20\" }";
}

/// The list of connections with so many mappings each, numbered on.
std::string MappingList(const std::vector<uint32_t> &auiCounts) {
    std::string sText = "{ \"Result\": 0, \"List\": [";
    uint32_t uiIndex = 0;
    const char *pcBetween = " ";
    for (const uint32_t uiCount : auiCounts) {
        sText += pcBetween;
        sText += "{ \"WANName\": \"1_INTERNET_R_VID_100\", \"MapList\": [ ";
        for (uint32_t i = 0; i < uiCount; ++i) {
            sText += (i == 0 ? "" : ", ") + MappingText(++uiIndex);
        }
        sText += " ] }";
        pcBetween = ", ";
    }
    return sText + " ] }";
}

std::function<void(World &)> Mappings(std::vector<uint32_t> auiCounts) {
    return [auiCounts = std::move(auiCounts)](World &stWorld) {
        std::string sTable;
        uint32_t uiIndex = 0;
        uint32_t uiWan = 0x10101003;
        for (const uint32_t uiCount : auiCounts) {
            for (uint32_t i = 0; i < uiCount; ++i) {
                sTable += RowBytes(uiWan, ++uiIndex);
            }
            ++uiWan;
        }
        FurnishMappingTable(stWorld, sTable);
    };
}

std::function<void(World &)> WanOf(const WanFacts &stWan) {
    return Answering(0x47301049, {0, WanBytes(stWan)});
}

/// Routes in force: so many of the second family as one, and one that leads into the LAN.
std::string ManyCurrent(uint32_t uiCount) {
    std::string sRoutes = CurrentBytes(CurrentRoute6{.sInterface = "br0"});
    for (uint32_t i = 0; i < uiCount; ++i) {
        sRoutes += CurrentBytes(CurrentRoute6{});
    }
    return sRoutes;
}

std::string ManyCurrentText(uint32_t uiCount) {
    std::string sText = "{ \"Result\": 0, \"List\": [";
    for (uint32_t i = 1; i <= uiCount; ++i) {
        sText += i == 1 ? " " : ", ";
        sText += "{ \"Index\": \"" + std::to_string(i) +
                 "\", \"DestIPPrefix\": \"::\\/0\", \"NextHop\": \"fe80::1\", \"Interface\": "
                 "\"2_INTERNET_R_VID_100\" }";
    }
    return sText + " ] }";
}

}  // namespace

std::vector<CaseRow> LanCases() {
    const auto fnOneMac = Texts({kMac});
    const Answer stRefused = NumberAnswerOf(-1);
    const Answer stNameTooLong = NumberAnswerOf(-2);
    const Answer stFault = TextAnswerOf("{\"Result\":-1}");
    return {
        {WAP_ENTRY(LANIPInfoQuery, getLANDHCPInfo), "switched_off",
         TextAnswerOf("{ \"Result\": 0, \"EnableDHCPServer\": \"FALSE\", \"DHCPStartIP\": "
                      "\"192.168.1.2\", \"DHCPEndIP\": \"192.168.1.254\", \"DHCPDuration\": 86400 "
                      "}"),
         Answering(0x47302001, {0, SwitchedOff(DhcpRecord())})},
        {WAP_ENTRY(LANIPInfoQuery, getLANDHCPInfo), "fields_without_an_end",
         TextAnswerOf("{ \"Result\": 0, \"EnableDHCPServer\": \"FALSE\", \"DHCPStartIP\": \"" +
                      std::string(16, 'x') + "\", \"DHCPEndIP\": \"" + std::string(16, 'x') +
                      "\", \"DHCPDuration\": 2021161080 }"),
         Answering(0x47302001, {0, std::string(1990, 'x')})},
        {WAP_ENTRY(LANIPInfoQuery, getLANHostIP), "empty", NullAnswer(),
         Answering(0x471030A0, {0, ""})},
        {WAP_ENTRY(LANIPConfig, setLANHostIP, Text(u"192.168.1.1"), NoText()), "no_mask",
         stRefused},
        {WAP_ENTRY(LANIPConfig, setLANDHCPInfo, Text(u"FALSE"), Text(u"192.168.1.2"),
                   Text(u"192.168.1.254"), Number(-1)),
         "off", NumberAnswerOf(0)},
        {WAP_ENTRY(LANIPConfig, setLANDHCPInfo, Text(u"TRUE"), NoText(), Text(u"192.168.1.254"),
                   Number(60)),
         "no_start", stRefused},
        {WAP_ENTRY(LANHostsInfoQuery, getGatewayName), "empty", TextAnswerOf(""),
         Answering(0x4830512A, {0, ""})},
        {WAP_ENTRY(LANHostsInfoQuery, getLANHostInfoByMAC, fnOneMac), "one",
         TextAnswerOf(kHostsByMacText)},
        {WAP_ENTRY(LANHostsInfoQuery, getLANHostInfoByMAC, NoTexts()), "all",
         TextAnswerOf(kManyHostsText), ManyHosts(0x471030B1)},
        {WAP_ENTRY(LANHostsInfoQuery, getLANHostInfoByMAC, Texts({std::nullopt, kMac})),
         "null_element", TextAnswerOf(kHostsByMacText)},
        {WAP_ENTRY(LANHostsInfoQuery, getLANHostInfoByInterface, NoText()), "no_interface",
         stFault},
        {WAP_ENTRY(LANHostsInfoQuery, getLANHostInfoByInterface, Text(u"LAN1")), "compressed",
         TextAnswerOf(kManyHostsText), ManyHosts(0x471030B3)},
        {WAP_ENTRY(LANHostsInfoQuery, getLANHostInfoByClass, Text(u"TABLET")), "compressed",
         TextAnswerOf(kManyHostsText), ManyHosts(0x471030B2)},
        {WAP_ENTRY(LANHostsInfoQuery, getLANHostStats, fnOneMac), "compressed",
         TextAnswerOf(kManyHostsText), ManyHosts(0x471030B4)},
        {WAP_ENTRY(LANHostsInfoQuery, getLANHostStats, Texts({kMac, std::nullopt})), "null_element",
         stFault},
        {WAP_ENTRY(LANHostsInfoQuery, getLANHostInfoByMAC, NoTexts()), "empty", NullAnswer(),
         NoHosts(0x471030B1)},
        {WAP_ENTRY(LANHostsInfoQuery, getLANHostInfoByInterface, Text(u"LAN1")), "empty",
         NullAnswer(), NoHosts(0x471030B3)},
        {WAP_ENTRY(LANHostsInfoQuery, getLANHostInfoByClass, Text(u"TABLET")), "empty",
         NullAnswer(), NoHosts(0x471030B2)},
        {WAP_ENTRY(LANHostsInfoQuery, getLANHostStats, fnOneMac), "empty", NullAnswer(),
         NoHosts(0x471030B4)},
        {WAP_ENTRY(LanHostSpeedQuery, getLANHostSpeed, Text(kMac)), "empty", NullAnswer(),
         Answering(0x471030B0, {0, ""})},
        {WAP_ENTRY(LanHostSpeedQuery, getLANHostSpeed, NoText()), "no_host", stFault},
        {WAP_ENTRY(LanNetworkNameConfig, setGatewayName, NoText()), "no_name", stRefused},
        {WAP_ENTRY(LanNetworkNameConfig, setGatewayName, Letters(257, u'n')), "name_too_long",
         stNameTooLong},
        {WAP_ENTRY(LanNetworkNameConfig, setLANHostName, Text(kMac), NoText()), "no_name",
         stRefused},
        {WAP_ENTRY(LanNetworkNameConfig, setLANHostName, Text(kMac), Letters(65, u'n')),
         "name_too_long", stNameTooLong},
    };
}

std::vector<CaseRow> PortMappingCases() {
    constexpr jint kWan = 0x10101003;
    return {
        {WAP_ENTRY(PortMappingConfig, addPortMapping, Number(kWan), Number(1), Number(65535),
                   Text(u"UDP"), Text(u"192.168.1.20")),
         "not_mappable", NumberAnswerOf(-1), WanOf({.uiGate = 0})},
        {WAP_ENTRY(PortMappingConfig, addPortMapping, Number(kWan), Number(1), Number(65535),
                   Text(u"UDP"), Text(u"192.168.1.20")),
         "refused", NumberAnswerOf(-2), Answering(0x4720909A, {0xF7307005, ""})},
        {WAP_ENTRY(PortMappingConfig, addPortMapping, Number(kWan), Number(1), Number(2),
                   Text(u"TCP"), NoText()),
         "no_client", NumberAnswerOf(-1)},
        {WAP_ENTRY(PortMappingConfig, deletePortMapping, Number(kWan), Number(1)), "bridged",
         NumberAnswerOf(-1), WanOf({.uiMode = 1})},
        {WAP_ENTRY(PortMappingConfig, setPortMappingSwitch, Number(kWan), Number(1), Flag(true)),
         "nothing_to_do", NumberAnswerOf(0)},
        {WAP_ENTRY(PortMappingConfig, setPortMappingSwitch, Number(kWan), Number(1), Flag(false)),
         "of_the_other_kind", NumberAnswerOf(0), WanOf({.uiKind = 0})},
        {WAP_ENTRY(PortMappingConfig, setPortMappingSwitch, Number(kWan), Number(1), Flag(false)),
         "of_no_kind", NumberAnswerOf(-2), WanOf({.uiKind = 2})},
        {WAP_ENTRY(PortMappingQuery, getPortMappingInfo), "none", TextAnswerOf(kEmptyList),
         Mappings({})},
        {WAP_ENTRY(PortMappingQuery, getPortMappingInfo), "one", TextAnswerOf(MappingList({1})),
         Mappings({1})},
        {WAP_ENTRY(PortMappingQuery, getPortMappingInfo), "several_connections",
         TextAnswerOf(MappingList({4, 1, 3})), Mappings({4, 1, 3})},
    };
}

std::vector<CaseRow> RouteCases() {
    constexpr const char16_t *kAlias = u"2_INTERNET_R_VID_100";
    const Answer stRefused = NumberAnswerOf(-1);
    return {
        {WAP_ENTRY(StaticLayer3ForwardingConfig, addLayer3ForwardingStatic, Text(u"10.20.0.0"),
                   Text(u"255.255.0.0"), NoText(), Text(kAlias)),
         "no_gateway", NumberAnswerOf(7)},
        {WAP_ENTRY(StaticLayer3ForwardingConfig, addLayer3ForwardingStatic, Text(u"10.20.0.0"),
                   NoText(), Text(u"100.64.0.1"), Text(kAlias)),
         "no_mask", stRefused},
        {WAP_ENTRY(StaticLayer3ForwardingConfig, addLayer3ForwardingStatic, Text(u"10.20.0.0"),
                   Text(u"255.255.0.0"), Text(u"100.64.0.1"), Text(u"9_INTERNET_R_VID_9")),
         "unknown_interface", stRefused},
        {WAP_ENTRY(StaticLayer3ForwardingConfig, addIPv6Layer3ForwardingStatic,
                   Text(u"2001:db8:20::/48"), NoText(), Text(kAlias)),
         "no_next_hop", NumberAnswerOf(8)},
        {WAP_ENTRY(StaticLayer3ForwardingConfig, addIPv6Layer3ForwardingStatic, Text(u"no prefix"),
                   Text(u"fe80::1"), Text(kAlias)),
         "bad_prefix", stRefused},
        {WAP_ENTRY(TransferQuery, getLayer3ForwardingStaticConfigInfo), "none",
         TextAnswerOf(kEmptyList), Answering(0x47304006, {0, RouteIdBytes({})})},
        {WAP_ENTRY(TransferQuery, getLayer3ForwardingStaticConfigInfo), "all_left_out",
         TextAnswerOf(kEmptyList),
         Answering(0x47304002, {0, StaticBytes(StaticRoute4{.uiStatic = 0})})},
        {WAP_ENTRY(TransferQuery, getIPv6Layer3ForwardingStaticConfigInfo), "none",
         TextAnswerOf(kEmptyList), Answering(0x47100009, {0, RouteIdBytes({})})},
        {WAP_ENTRY(TransferQuery, getIPv6Layer3ForwardingStaticConfigInfo), "one",
         TextAnswerOf("{ \"Result\": 0, \"List\": [ { \"Index\": \"5\", \"DestIPPrefix\": "
                      "\"2001:db8:20::\\/48\", \"NextHop\": \"fe80::1\", \"Interface\": "
                      "\"2_INTERNET_R_VID_100\" } ] }"),
         Answering(0x47100009, {0, RouteIdBytes({5})})},
        {WAP_ENTRY(TransferQuery, getLayer3ForwardingCurrent), "none", TextAnswerOf(kEmptyList),
         Answering(kCurrentOfFamily[0], {0, ""})},
        {WAP_ENTRY(TransferQuery, getIPv6Layer3ForwardingCurrent), "compressed",
         TextAnswerOf(ManyCurrentText(9)), Answering(kCurrentOfFamily[1], {0, ManyCurrent(9)})},
    };
}

}  // namespace wap::test
