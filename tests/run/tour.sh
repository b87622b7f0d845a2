# The answers of the tour, to the letter.

tour() {
    run tour "$pcWork/tour"
    check "without a terminal it ends with 0" exits tour 0
    sed -i -E -e 's/^in [0-9]+ ms$/in T ms/' \
        -e '/\.getCPUOccupancyRate$/{n;s/^([1-9][0-9]?|100)$/PERCENT, NOT 0/}' \
        -e '/\.getRAMOccupancyRate$/{n;s/^([0-9]|[1-9][0-9]|100)$/PERCENT/}' \
        -e '/\.getDeviceUpTime$/{n;s/^864[0-5][0-9]$/A DAY AND LESS THAN A MINUTE/}' \
        "$pcWork/tour.out"
    touch "$pcWork/built-once"
    check "without a terminal it makes the tour: the twelve answers about the device" out_is_tour
    check "the tour goes on with the answers about the LAN" out_is_tour_of_lan
    # Those that need arguments which nobody can guess are left out, and said to be.
    check "the tour closes with the numbers of its calls, none failed" is "the last line" \
        "$(tail -n 1 "$pcWork/tour.out")" "$(awk '
            /^in T ms$/ { iCalled++ }
            /^left out: / { iLeft++ }
            END { print iCalled " methods, 0 failed" (iLeft ? ", " iLeft " left out" : "") }
        ' "$pcWork/tour.out")"
    check "the tour leaves nothing running" nothing_left "$pcWork/tour"
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

out_is_tour_of_lan() {
    local pcHosts=LANHostsInfoQueryServiceJNI pcAddress=LANIPInfoQueryServiceJNI
    awk -v RS= -v ORS='\n\n' '/^(LAN|Lan|PortMapping)[A-Za-z]*\./' "$pcWork/tour.out" |
        diff /dev/fd/3 - 3<<END
$pcHosts.getGatewayName
SimHome gateway
in T ms

$pcHosts.getLANHostInfoByClass
left out: needs arguments, String getLANHostInfoByClass(String)

$pcHosts.getLANHostInfoByInterface
left out: needs arguments, String getLANHostInfoByInterface(String)

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
left out: needs arguments, String getLANHostSpeed(String)

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
