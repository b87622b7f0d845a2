// Arguments that a bundle might pass, for each method that has any: those that the entry's good
// answer is given for. A test compares the two.

#include <initializer_list>
#include <map>
#include <string>

#include "callers/natives.h"

namespace wap::test {

namespace {

Argument T(const char16_t *pcText) {
    return JavaString(pcText);
}
Argument N(jint iNumber) {
    return iNumber;
}
Argument F(bool bFlag) {
    return static_cast<jboolean>(bFlag ? JNI_TRUE : JNI_FALSE);
}
Argument L(std::initializer_list<JavaString> stTexts) {
    return JavaStrings(stTexts);
}
Argument B(const char *pcBytes) {
    return JavaByteArray(pcBytes);
}

constexpr const char16_t *kAlias = u"2_INTERNET_R_VID_100";
constexpr const char16_t *kHost = u"www.example.com";
constexpr jint kWan = 0x10101001;
constexpr jint kMappedWan = 0x10101003;

using Rows = std::map<std::string, Arguments>;

Rows DeviceRows() {
    const Argument stBundle = T(u"com.example.phone");
    const Argument stEvents = L({u"NOTIFY_VOICE_CALL_INFO", u"NOTIFY_VOICE_RESTRAT_FINISH"});
    return {
        {"getCPUOccupancyRate", {N(12345)}},
        {"getRAMOccupancyRate", {N(12345)}},
        {"setLedSwitch", {N(1)}},
        {"getSubscribeVoIPEvent", {stBundle, stEvents}},
        {"getUnSubscribeVoIPEvent", {stBundle, stEvents}},
        {"usbRegister", {T(u"com.example.meter"), N(1)}},
        {"usbUnregister", {T(u"com.example.meter")}},
        {"usbLock", {N(3)}},
        {"usbUnlock", {N(3)}},
        {"usbOpen", {N(3)}},
        {"usbDataAvailable", {N(77)}},
        {"usbRead", {N(77), B("0123456789"), N(2), N(8), N(1)}},
        {"usbWrite", {N(77), B("ATZ\r"), N(0), N(4)}},
        {"usbSetSerial", {N(77), N(115200), N(0), N(8), N(1), F(false), F(false)}},
        {"usbClose", {N(77)}},
        {"setFTPRight", {N(3), N(7)}},
        {"setSambaRight", {N(2), N(-1)}},
        {"addFTPAccount", {T(u"share-user"), T(u"ftp-password-0123456789")}},
        {"addSambaAccount", {T(u"share-user"), T(u"samba-password-ABCDEFGHIJ")}},
        {"deleteFTPAccount", {T(u"share-user")}},
        {"deleteSambaAccount", {T(u"share-user")}},
        {"setHTTPRight", {N(1)}},
        {"setHTTPUserPassword", {T(u"http-password-abcdefghij")}},
    };
}

Rows LanRows() {
    const Argument stTwoMacs = L({u"02:00:00:00:00:01", u"02:00:00:00:00:02"});
    const Argument stTwoHosts = L({u"02:00:00:00:00:0a", u"02:00:00:00:00:0b"});
    const Argument stListed = L({u"02:00:00:00:00:0a"});
    return {
        {"setLANHostIP", {T(u"192.168.1.1"), T(u"255.255.255.0")}},
        {"setLANDHCPInfo", {T(u"TRUE"), T(u"192.168.1.2"), T(u"192.168.1.254"), N(86400)}},
        {"getLANHostInfoByMAC", {stTwoMacs}},
        {"getLANHostInfoByInterface", {T(u"LAN2")}},
        {"getLANHostInfoByClass", {T(u"PHONE")}},
        {"getLANHostStats", {stTwoMacs}},
        {"getLANHostSpeed", {T(u"02:00:00:00:00:01")}},
        {"setGatewayName", {T(u"The house")}},
        {"setLANHostName", {T(u"02:00:00:00:00:01"), T(u"Tablet")}},
        {"setLANHostSpeedLimit", {T(u"02:00:00:00:00:0a"), N(512), N(1024)}},
        {"getLANHostSpeedLimitInfo", {stTwoHosts}},
        {"addLANHostToStorageBlackList", {stTwoHosts}},
        {"deleteLANHostFromStorageBlackList", {stTwoHosts}},
        {"setMacFilterMode", {N(2)}},
        {"addLANHostToBlackList", {stListed}},
        {"deleteLANHostFromBlackList", {stListed}},
        {"addLANHostToTrustList", {stListed}},
        {"deleteLANHostFromTrustList", {stListed}},
        {"addPortMapping", {N(kMappedWan), N(8080), N(80), T(u"TCP"), T(u"192.168.1.20")}},
        {"deletePortMapping", {N(kMappedWan), N(2)}},
        {"setPortMappingSwitch", {N(kMappedWan), N(1), F(false)}},
        {"addLayer3ForwardingStatic",
         {T(u"10.20.0.0"), T(u"255.255.0.0"), T(u"100.64.0.1"), T(kAlias)}},
        {"deleteLayer3ForwardingStatic", {N(7)}},
        {"addIPv6Layer3ForwardingStatic", {T(u"2001:db8:20::/48"), T(u"fe80::1"), T(kAlias)}},
        {"deleteIPv6Layer3ForwardingStatic", {N(8)}},
    };
}

Rows WanRows() {
    return {
        {"addWANIf", {T(u"2"), T(u"200"), T(u"IP_Routed")}},
        {"setWANIf",
         {N(kWan), T(u"{\"Username\":\"ppp-user-0123456789\","
                     "\"Password\":\"ppp-password-ABCDEFGHIJ\",\"ServiceList\":\"INTERNET\","
                     "\"DNSServers\":\"192.0.2.9\",\"IPv6DNSServers\":\"2001:db8::9\"}")}},
        {"deleteWANIf", {N(kWan)}},
        {"getWANIfStats", {N(kWan)}},
        {"getWANIfInfo", {N(kWan)}},
        {"getWanIfBandwidth", {N(kWan)}},
        {"getWANIfStatus", {N(kWan)}},
        {"setVLANBind", {T(u"LAN1"), T(u"10/100,20/200")}},
        {"clearVLANBind", {T(u"SSID2")}},
        {"startIPPingDiagnostics",
         {N(kWan), T(kHost),
          T(u"{\"NumberOfRepetitions\":4,\"Timeout\":1000,\"DataBlockSize\":64,\"DSCP\":46}")}},
        {"startDnsDiagnostics", {N(kWan), T(kHost), T(u"192.0.2.53"), T(u"retries=2")}},
        {"startTraceRouteDiagnostics", {N(kWan), T(kHost), T(u"hops=8")}},
    };
}

Rows TrafficRows() {
    const Argument stAddress = T(u"203.0.113.80");
    const Argument stMac = T(u"00:11:22:33:44:55");
    const Argument stCollector = T(u"192.168.1.100");
    const Argument stBundle = T(u"com.example.meter");
    return {
        {"addTrafficMonitoringDestAddress",
         {L({u"10.0.0.1", std::nullopt, u"10.0.0.2"}), stBundle}},
        {"deleteTrafficMonitoringDestAddress", {L({u"10.0.0.1"}), stBundle}},
        {"addMirrorRule", {stAddress, T(u"80"), T(u"UP"), T(u"TCP"), stMac, stCollector, N(9000)}},
        {"deleteMirrorRule", {N(7)}},
        {"addForwardRule", {stAddress, T(u"80"), T(u"TCP"), stMac, stCollector, N(9000)}},
        {"deleteForwardRule", {N(8)}},
        {"addHTTPTrafficProcessRule",
         {stAddress, N(80), T(u"UP"), stMac, L({u"GET", u"POST"}), L({u"200"}),
          L({u"Host", u"User-Agent"})}},
        {"deleteHTTPTrafficProcessRule", {N(9)}},
        {"addTrafficToFlow", {T(u"198.51.100.7"), T(u"443"), N(1)}},
        {"deleteTrafficFromFlow", {T(u"198.51.100.7"), T(u"443"), N(1)}},
        {"deleteAllTrafficFromFlow", {N(1)}},
        {"getTrafficInfoByFlow", {N(1)}},
        {"getStatsByFlow", {N(1)}},
        {"getSpeedByFlow", {N(1)}},
        {"getSpeedLimitByFlow", {N(1)}},
        {"setSpeedLimitByFlow", {N(1), N(1024), N(40960)}},
        {"getDSCPRemarkByFlow", {N(1)}},
        {"setDSCPRemarkByFlow", {N(1), N(46)}},
    };
}

Rows MakeRows() {
    Rows mapRows = DeviceRows();
    for (const Rows &mapMore : {LanRows(), WanRows(), TrafficRows()}) {
        mapRows.insert(mapMore.begin(), mapMore.end());
    }
    return mapRows;
}

}  // namespace

Arguments GoodArgumentsOf(const std::string &sMethod) {
    static const Rows s_mapRows = MakeRows();
    const auto itRow = s_mapRows.find(sMethod);
    return itRow == s_mapRows.end() ? Arguments{} : itRow->second;
}

}  // namespace wap::test
