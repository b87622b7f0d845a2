# The answers of the tour, to the letter.

tour() {
    run tour "$pcWork/tour"
    check "without a terminal it ends with 0" exits tour 0
    sed -i -E -e 's/^in [0-9]+ ms$/in T ms/' \
        -e '/\.getCPUOccupancyRate$/{n;s/^([1-9][0-9]?|100)$/PERCENT, NOT 0/}' \
        -e '/\.getRAMOccupancyRate$/{n;s/^([0-9]|[1-9][0-9]|100)$/PERCENT/}' \
        -e '/\.getDeviceUpTime$/{n;s/^864[0-5][0-9]$/A DAY AND LESS THAN A MINUTE/}' \
        -e '/\.getPONIfUpTime$/{n;s/^[0-5]?[0-9]$/LESS THAN A MINUTE/}' \
        -e '/\.getJVMInfo$/,/^\}$/{' \
        -e 's/^(  "Name": ").+ VM ",$/\1A VM ",/' \
        -e 's/^(  "Version": ")[0-9][^"]*",$/\1A VERSION",/' -e '}' \
        -e '/\.getStorageInfo$/,/^\}$/{' \
        -e "s#^(      \"storagePath\": \")$pcWork/tour/#\1THE GATEWAY/#" \
        -e 's/^(      "(total|valid)Storage": )[1-9][0-9]+/\1BYTES/' -e '}' \
        "$pcWork/tour.out"
    touch "$pcWork/built-once"
    check "without a terminal it makes the tour: the fourteen answers about the device" out_is_tour
    check "the tour goes on with the answers about rights, voice and storage" out_is_tour_of_box
    check "the tour goes on with the answers about the LAN" out_is_tour_of_lan
    check "the tour goes on with the answers about the uplink" out_is_tour_of_uplink
    check "the tour goes on with the answers about traffic and diagnostics" out_is_tour_of_traffic
    # Those that need arguments which nobody can guess are left out, and said to be.
    check "the tour closes with the numbers of its calls, none failed" is "the last line" \
        "$(tail -n 1 "$pcWork/tour.out")" "$(awk '
            /^in T ms$/ { iCalled++ }
            /^left out: / { iLeft++ }
            END { print iCalled " methods, 0 failed" (iLeft ? ", " iLeft " left out" : "") }
        ' "$pcWork/tour.out")"
    check "the tour leaves nothing running" nothing_left "$pcWork/tour"
}
# The vendor as the library tells it: one for every runtime of the open kind, none for others.
runtime_vendor() {
    PATH=$pcPath java -version 2>&1 | grep -v -e version -e VM | grep -q OpenJDK && echo Oracle
}
out_is_tour() {
    local pcInfo=DeviceInfoQueryServiceJNI pcSecret=DeviceSecretInfoQueryServiceJNI
    awk -v RS= -v ORS='\n\n' '/^Device(Secret)?InfoQueryServiceJNI\./' "$pcWork/tour.out" |
        diff /dev/fd/3 - 3<<END
$pcInfo.getAPIVersion
1.0
in T ms

$pcInfo.getCPUOccupancyRate
PERCENT, NOT 0
in T ms

$pcInfo.getDeviceInfo
$kInfo
in T ms

$pcInfo.getDeviceMAC
$kMac
in T ms

$pcInfo.getDeviceUpTime
A DAY AND LESS THAN A MINUTE
in T ms

$pcInfo.getJVMInfo
{
  "Result": 0,
  "Name": "A VM ",
  "Version": "A VERSION",
  "Vendor": "$(runtime_vendor)"
}
in T ms

$pcInfo.getOSGiInfo
{
  "Result": 0,
  "Name": "Felix OSGi",
  "Version": "4.4.0",
  "Vendor": "Apache Software Foundation"
}
in T ms

$pcInfo.getRAMOccupancyRate
PERCENT
in T ms

$pcSecret.getDeviceDefaultSSID1Name
SimHome-1001
in T ms

$pcSecret.getDeviceDefaultSSID1Password
sim-wifi-pass
in T ms

$pcSecret.getDeviceDefaultWebPassword
sim-web-pass
in T ms

$pcSecret.getDeviceManufacturerOUI
02A1B2
in T ms

$pcSecret.getDevicePassword
sim-device-pass
in T ms

$pcSecret.getDeviceSerialNumber
SIM0000000001001
in T ms

END
}

out_is_tour_of_box() {
    local pcRights=DeviceAccessRightQueryServiceJNI
    awk -v RS= -v ORS='\n\n' '/^(DeviceAccess|Usb|VoIP)[A-Za-z]*\./' "$pcWork/tour.out" |
        diff /dev/fd/3 - 3<<END
$pcRights.getFTPRightInfo
{
  "Result": 0,
  "LanAccess": 1,
  "WanAccess": 0,
  "Enable": 1,
  "Value": 0,
  "List": [
    {
      "User": "anna"
    }
  ]
}
in T ms

$pcRights.getHTTPRightInfo
{
  "Result": 0,
  "LanAccess": 1,
  "WanAccess": 0,
  "PasswordChanges": 0
}
in T ms

$pcRights.getSambaRightInfo
{
  "Result": 0,
  "LanAccess": 0,
  "WanAccess": 0,
  "Enable": 0,
  "Value": 0,
  "List": []
}
in T ms

UsbServiceJNI.getStorageInfo
{
  "Result": 0,
  "List": [
    {
      "storagePath": "THE GATEWAY/storage/usb1",
      "totalStorage": BYTES,
      "validStorage": BYTES
    }
  ]
}
in T ms

VoIPInfoQueryServiceJNI.getPOTSInfo
{
  "Result": 0,
  "List": [
    {
      "Name": "POTS1",
      "Number": "5550101",
      "Status": "idle"
    },
    {
      "Name": "POTS2",
      "Number": "5550102",
      "Status": "idle"
    }
  ]
}
in T ms

END
}

out_is_tour_of_lan() {
    local pcHosts=LANHostsInfoQueryServiceJNI pcAddress=LANIPInfoQueryServiceJNI
    awk -v RS= -v ORS='\n\n' '/^(LAN|Lan|PortMapping)[A-Za-z]*\./' "$pcWork/tour.out" |
        diff /dev/fd/3 - 3<<END
$pcHosts.getGatewayName
SimHome gateway
in T ms

$pcHosts.getLANHostInfoByClass
left out: needs arguments, String getLANHostInfoByClass(String sHostClass)

$pcHosts.getLANHostInfoByInterface
left out: needs arguments, String getLANHostInfoByInterface(String sInterface)

$pcHosts.getLANHostInfoByMAC
{
  "Result": 0,
  "List": [
    {
      "MAC": "02:A1:B2:00:20:01",
      "IP": "192.168.1.10",
      "DevName": "desk-pc",
      "HostClass": "PC",
      "Interface": "LAN1",
      "Active": 1,
      "OnlineTime": 7200
    },
    {
      "MAC": "02:A1:B2:00:20:02",
      "IP": "192.168.1.11",
      "DevName": "living-room-tv",
      "HostClass": "TV",
      "Interface": "LAN2",
      "Active": 1,
      "OnlineTime": 3600
    },
    {
      "MAC": "02:A1:B2:00:20:03",
      "IP": "192.168.1.12",
      "DevName": "phone-anna",
      "HostClass": "PHONE",
      "Interface": "SSID1",
      "Active": 1,
      "OnlineTime": 1800
    },
    {
      "MAC": "02:A1:B2:00:20:04",
      "IP": "192.168.1.13",
      "DevName": "tablet-tom",
      "HostClass": "TABLET",
      "Interface": "SSID5",
      "Active": 1,
      "OnlineTime": 900
    },
    {
      "MAC": "02:A1:B2:00:20:05",
      "IP": "192.168.1.14",
      "DevName": "printer",
      "HostClass": "OTHER",
      "Interface": "LAN3",
      "Active": 0,
      "OnlineTime": 0
    }
  ]
}
in T ms

$pcHosts.getLANHostSpeedLimitInfo
{
  "Result": 0,
  "List": []
}
in T ms

$pcHosts.getLANHostStats
{
  "Result": 0,
  "List": [
    {
      "MAC": "02:A1:B2:00:20:01",
      "RxBytes": 734003200,
      "TxBytes": 52428800,
      "RxPackets": 734003,
      "TxPackets": 52428
    },
    {
      "MAC": "02:A1:B2:00:20:02",
      "RxBytes": 2147483648,
      "TxBytes": 10485760,
      "RxPackets": 2147483,
      "TxPackets": 10485
    },
    {
      "MAC": "02:A1:B2:00:20:03",
      "RxBytes": 104857600,
      "TxBytes": 20971520,
      "RxPackets": 104857,
      "TxPackets": 20971
    },
    {
      "MAC": "02:A1:B2:00:20:04",
      "RxBytes": 52428800,
      "TxBytes": 5242880,
      "RxPackets": 52428,
      "TxPackets": 5242
    },
    {
      "MAC": "02:A1:B2:00:20:05",
      "RxBytes": 1048576,
      "TxBytes": 2097152,
      "RxPackets": 1048,
      "TxPackets": 2097
    }
  ]
}
in T ms

$pcHosts.getMacFilterMode
0
in T ms

$pcAddress.getLANDHCPInfo
{
  "Result": 0,
  "EnableDHCPServer": "TRUE",
  "DHCPStartIP": "192.168.1.2",
  "DHCPEndIP": "192.168.1.254",
  "DHCPDuration": 86400
}
in T ms

$pcAddress.getLANHostIP
{
  "Result": 0,
  "LANHostIP": "192.168.1.1",
  "LANHostMask": "255.255.255.0"
}
in T ms

LanHostSpeedQueryServiceJNI.getLANHostSpeed
left out: needs arguments, String getLANHostSpeed(String sMac)

PortMappingQueryServiceJNI.getPortMappingInfo
{
  "Result": 0,
  "List": [
    {
      "WANName": "1_INTERNET_R_VID_100",
      "MapList": [
        {
          "PortMappingIndex": 1,
          "PortMappingEnabled": "TRUE",
          "ExternalPort": 8443,
          "InternalPort": 443,
          "PortMappingProtocol": "TCP",
          "InternalClient": "192.168.1.10"
        }
      ]
    }
  ]
}
in T ms

END
}

out_is_tour_of_uplink() {
    local pcAccess=AccessInfoQueryServiceJNI pcTransfer=TransferQueryServiceJNI
    awk -v RS= -v ORS='\n\n' '/^(AccessInfo|Transfer)Query[A-Za-z]*\./' "$pcWork/tour.out" |
        diff /dev/fd/3 - 3<<END
$pcTransfer.getIPTVStatus
IPTV_BUSSINESS_OK
in T ms

$pcTransfer.getIPv6Layer3ForwardingCurrent
{
  "Result": 0,
  "List": [
    {
      "Index": "1",
      "DestIPPrefix": "2001:db8:100::/48",
      "NextHop": "2001:db8:0:1::1",
      "Interface": "1_INTERNET_R_VID_100"
    }
  ]
}
in T ms

$pcTransfer.getIPv6Layer3ForwardingStaticConfigInfo
{
  "Result": 0,
  "List": [
    {
      "Index": "2",
      "DestIPPrefix": "2001:db8:100::/48",
      "NextHop": "2001:db8:0:1::1",
      "Interface": "1_INTERNET_R_VID_100"
    }
  ]
}
in T ms

$pcTransfer.getLayer3ForwardingCurrent
{
  "Result": 0,
  "List": [
    {
      "Index": "1",
      "DestIPAddress": "10.20.0.0",
      "DestSubnetMask": "255.255.0.0",
      "GatewayIPAddress": "203.0.113.1",
      "Interface": "1_INTERNET_R_VID_100"
    },
    {
      "Index": "2",
      "DestIPAddress": "0.0.0.0",
      "DestSubnetMask": "0.0.0.0",
      "GatewayIPAddress": "203.0.113.1",
      "Interface": "1_INTERNET_R_VID_100"
    }
  ]
}
in T ms

$pcTransfer.getLayer3ForwardingStaticConfigInfo
{
  "Result": 0,
  "List": [
    {
      "Index": "2",
      "DestIPAddress": "10.20.0.0",
      "DestSubnetMask": "255.255.0.0",
      "GatewayIPAddress": "203.0.113.1",
      "Interface": "1_INTERNET_R_VID_100"
    }
  ]
}
in T ms

$pcTransfer.getVLANBindInfo
{
  "Result": 0,
  "List": [
    {
      "LanInterface": "SSID1",
      "Bind": ""
    },
    {
      "LanInterface": "SSID2",
      "Bind": ""
    },
    {
      "LanInterface": "SSID5",
      "Bind": ""
    }
  ]
}
in T ms

$pcAccess.getInternetWANIndex
269488129
in T ms

$pcAccess.getPONIfPhyStatus
{
  "Result": 0,
  "TXPower": 2.15,
  "RXPower": -18.2,
  "TransceiverTemperature": 45.5,
  "SupplyVottage": 3.3,
  "BiasCurrent": 12.25
}
in T ms

$pcAccess.getPONIfRegisterStatus
{
  "Result": 0,
  "RegisterStatus": "REG_AUTH"
}
in T ms

$pcAccess.getPONIfUpTime
LESS THAN A MINUTE
in T ms

$pcAccess.getUplinkIfStats
{
  "Result": 0,
  "UsStats": 53739520,
  "DsStats": 5031600128
}
in T ms

$pcAccess.getWANIfInfo
{
  "Result": 0,
  "Index": 269488129,
  "Name": "1_INTERNET_R_VID_100",
  "ConnectionType": "IP_Routed",
  "ServiceList": "INTERNET",
  "LanInterface": "",
  "VLANMode": "2",
  "VLANIDMark": "100",
  "802-1pMark": "",
  "MulticastVlan": "",
  "IPMode": "3",
  "NATEnabled": "TRUE",
  "AddressingType": "DHCP",
  "DNSEnabled": "TRUE"
}
in T ms

$pcAccess.getWANIfList
{
  "Result": 0,
  "List": [
    {
      "Index": 269488129,
      "Name": "1_INTERNET_R_VID_100"
    },
    {
      "Index": 269492225,
      "Name": "2_OTHER_R_VID_200"
    },
    {
      "Index": 269496321,
      "Name": "3_IPTV_B_VID_300"
    },
    {
      "Index": 537935873,
      "Name": "4_TR069_R_VID_46"
    }
  ]
}
in T ms

$pcAccess.getWANIfStats
{
  "Result": 0,
  "UsStats": 52428800,
  "DsStats": 734003200
}
in T ms

$pcAccess.getWANIfStatus
{
  "Result": 0,
  "ConnectionStatus": "Connected",
  "ExternalIPAddress": "203.0.113.10",
  "SubnetMask": "255.255.255.0",
  "DefaultGateway": "203.0.113.1",
  "DNSServers": "192.0.2.53,192.0.2.54",
  "IPv6IPAddress": "2001:db8:0:1::10",
  "IPv6DNSServers": "2001:db8::53,2001:db8::54"
}
in T ms

$pcAccess.getWanIfBandwidth
{
  "Result": 0,
  "UsBandwidth": 1250000000,
  "DsBandwidth": 2500000000
}
in T ms

END
}

out_is_tour_of_traffic() {
    awk -v RS= -v ORS='\n\n' '/^(Traffic|Dns|IPPing|TraceRoute)[A-Za-z]*\./' "$pcWork/tour.out" |
        diff /dev/fd/3 - 3<<END
DnsDiagnosticsServiceJNI.getDnsDiagnosticsResult
{
  "Result": 0,
  "State": "None"
}
in T ms

IPPingDiagnosticsServiceJNI.getIPPingDiagnosticsResult
{
  "Result": 0,
  "State": "None"
}
in T ms

TraceRouteDiagnosticsServiceJNI.getTraceRouteDiagnosticsResult
{
  "Result": 0,
  "State": "None"
}
in T ms

TrafficDetailProcessServiceJNI.getHTTPTrafficProcessRuleInfo
{
  "Result": 0,
  "List": []
}
in T ms

TrafficForwardServiceJNI.getForwardRuleInfo
{
  "Result": 0,
  "List": []
}
in T ms

TrafficMirrorServiceJNI.getMirroRuleInfo
{
  "Result": 0,
  "List": []
}
in T ms

TrafficMonitoringConfigServiceJNI.getTrafficMonitoringDestAddressInfo
{
  "Result": 0,
  "List": []
}
in T ms

TrafficQoSServiceJNI.getDSCPRemarkByFlow
46
in T ms

TrafficQoSServiceJNI.getSpeedByFlow
{
  "Result": 0,
  "upSpeed": 2000,
  "downSpeed": 16000
}
in T ms

TrafficQoSServiceJNI.getSpeedLimitByFlow
{
  "Result": 0,
  "UpSpeed": 0,
  "DownSpeed": 0
}
in T ms

TrafficQoSServiceJNI.getStatsByFlow
{
  "Result": 0,
  "UsStats": 0,
  "DsStats": 0
}
in T ms

TrafficQoSServiceJNI.getTrafficInfoByFlow
{
  "Result": 0,
  "List": [
    {
      "RemoteAddress": "198.51.100.20",
      "RemotePort": "443"
    }
  ]
}
in T ms

END
}
