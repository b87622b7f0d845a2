package com.veltra.domoline.systemtest;

import java.util.List;
import java.util.function.Supplier;

/** The queries about the LAN. The answers are written out by hand. */
enum LanMethod implements GatewayMethod {
    ADDRESS(List.of(Gateway.kAppM, Gateway.kGulm), 0x471030A0,
            () -> Lan.kAddress.getLANHostIP(),
            "{\"Result\":0,\"LANHostIP\":\"192.168.1.1\",\"LANHostMask\":\"255.255.255.0\"}",
            "{\"Result\":-1}"),
    DHCP(List.of(Gateway.kGulm), 0x47302001,
            () -> Lan.kAddress.getLANDHCPInfo(),
            "{ \"Result\": 0, \"EnableDHCPServer\": \"TRUE\", \"DHCPStartIP\": \"192.168.1.2\","
                    + " \"DHCPEndIP\": \"192.168.1.254\", \"DHCPDuration\": 86400 }",
            "{\"Result\":-1}"),
    // Whoever asks for the name gets an empty one, and no fault object.
    GATEWAY_NAME(List.of(Gateway.kAppM), 0x4830512A,
            () -> Lan.kHosts.getGatewayName(), "SimHome gateway", ""),
    ALL_HOSTS(List.of(Gateway.kAppM), 0x471030B1,
            () -> Lan.kHosts.getLANHostInfoByMAC(null),
            Lan.kAllHosts, "{\"Result\":-1,\"List\":[] }"),
    HOSTS_BY_MAC(List.of(Gateway.kAppM), 0x471030B1,
            () -> Lan.kHosts.getLANHostInfoByMAC(Lan.macs(Lan.kTablet, Lan.kPc)),
            "{\"Result\":0,\"List\":[" + Lan.kPcInfo + "," + Lan.kTabletInfo + "]}",
            "{\"Result\":-1,\"List\":[] }"),
    HOSTS_BY_CLASS(List.of(Gateway.kAppM), 0x471030B2,
            () -> Lan.kHosts.getLANHostInfoByClass("PHONE"),
            "{\"Result\":0,\"List\":[" + Lan.kPhoneInfo + "]}", "{\"Result\":-1}"),
    HOSTS_BY_INTERFACE(List.of(Gateway.kAppM), 0x471030B3,
            () -> Lan.kHosts.getLANHostInfoByInterface("LAN2"),
            "{\"Result\":0,\"List\":[" + Lan.kTvInfo + "]}", "{\"Result\":-1}"),
    STATISTICS(List.of(Gateway.kAppM), 0x471030B4,
            () -> Lan.kHosts.getLANHostStats(Lan.macs(Lan.kTv)),
            "{\"Result\":0,\"List\":[{\"MAC\":\"02:A1:B2:00:20:02\",\"RxBytes\":2147483648,"
                    + "\"TxBytes\":10485760,\"RxPackets\":2147483,\"TxPackets\":10485}]}",
            "{\"Result\":-1}"),
    SPEED(List.of(Gateway.kAppM), 0x471030B0,
            () -> Lan.kSpeed.getLANHostSpeed(Lan.kPc),
            "{\"Result\":0,\"UpSpeed\":120,\"DownSpeed\":2400}", "{\"Result\":-1}"),
    FILTER_MODE(List.of(Gateway.kGulm), 0x47307000, () -> Lan.kHosts.getMacFilterMode(), 0, -1),
    SPEED_LIMITS(List.of(Gateway.kGulm), 0x47307034,
            () -> Lan.kHosts.getLANHostSpeedLimitInfo(Lan.macs(Lan.kPhone, Lan.kTablet)),
            "{ \"Result\": 0, \"List\": [ { \"UpSpeed\": 0, \"DownSpeed\": 0 },"
                    + " { \"UpSpeed\": 0, \"DownSpeed\": 0 } ] }",
            "{\"Result\":-1}"),
    PORT_MAPPINGS(List.of(Gateway.kGulm), 0x47309029,
            () -> Lan.kMappings.getPortMappingInfo(),
            "{ \"Result\": 0, \"List\": [ { \"WANName\": \"1_INTERNET_R_VID_100\", \"MapList\": ["
                    + " { \"PortMappingIndex\": 1, \"PortMappingEnabled\": \"TRUE\","
                    + " \"ExternalPort\": 8443, \"InternalPort\": 443,"
                    + " \"PortMappingProtocol\": \"TCP\", \"InternalClient\": \"192.168.1.10\" }"
                    + " ] } ] }",
            "{\"Result\":-1}");

    private final Query query;

    LanMethod(List<String> processes, int iRpc, Supplier<Object> call, Object golden,
            Object failure) {
        query = new Query(processes, iRpc, call, golden, failure);
    }

    @Override
    public Query query() {
        return query;
    }
}
