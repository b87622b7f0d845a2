package com.veltra.domoline.systemtest;

import java.util.List;
import java.util.function.Predicate;
import java.util.function.Supplier;

/** The queries about the uplink. The answers are written out by hand. */
enum WanMethod implements GatewayMethod {
    // An empty list, and not a failure, when nobody answers.
    WAN_LIST(List.of(Gateway.kGulm), 0x47302025, () -> Wan.kAccess.getWANIfList(),
            "{ \"Result\": 0, \"List\": [ { \"Index\": 269488129,"
                    + " \"Name\": \"1_INTERNET_R_VID_100\" }, { \"Index\": 269492225,"
                    + " \"Name\": \"2_OTHER_R_VID_200\" }, { \"Index\": 269496321,"
                    + " \"Name\": \"3_IPTV_B_VID_300\" }, { \"Index\": 537935873,"
                    + " \"Name\": \"4_TR069_R_VID_46\" } ] }",
            "{ \"Result\": 0, \"List\": [ ] }"),
    WAN_STATISTICS(List.of(Gateway.kAppM, Gateway.kGulm), 0x4710308A,
            () -> Wan.kAccess.getWANIfStats(Wan.kInternet),
            "{\"Result\":0,\"UsStats\":52428800,\"DsStats\":734003200}", "{\"Result\":-1}"),
    WAN_INFO(List.of(Gateway.kAppM, Gateway.kGulm), 0x4710308B,
            () -> Wan.kAccess.getWANIfInfo(Wan.kManagement),
            "{\"Result\":0,\"Index\":537935873,\"Name\":\"4_TR069_R_VID_46\","
                    + "\"ConnectionType\":\"PPPoE_Routed\",\"ServiceList\":\"TR069\","
                    + "\"LanInterface\":\"\",\"VLANMode\":\"2\",\"VLANIDMark\":\"46\","
                    + "\"802-1pMark\":\"\",\"MulticastVlan\":\"\",\"IPMode\":\"1\","
                    + "\"NATEnabled\":\"\",\"AddressingType\":\"\",\"DNSEnabled\":\"\"}",
            "{\"Result\":-1}"),
    WAN_BANDWIDTH(List.of(Gateway.kAppM, Gateway.kGulm), 0x4710308C,
            () -> Wan.kAccess.getWanIfBandwidth(Wan.kOther),
            "{\"Result\":0,\"UsBandwidth\":1250000000,\"DsBandwidth\":2500000000}",
            "{\"Result\":-1}"),
    WAN_STATUS(List.of(Gateway.kAppM, Gateway.kGulm), 0x4710308D,
            () -> Wan.kAccess.getWANIfStatus(Wan.kInternet),
            "{\"Result\":0,\"ConnectionStatus\":\"Connected\","
                    + "\"ExternalIPAddress\":\"203.0.113.10\",\"SubnetMask\":\"255.255.255.0\","
                    + "\"DefaultGateway\":\"203.0.113.1\","
                    + "\"DNSServers\":\"192.0.2.53,192.0.2.54\","
                    + "\"IPv6IPAddress\":\"2001:db8:0:1::10\","
                    + "\"IPv6DNSServers\":\"2001:db8::53,2001:db8::54\"}",
            "{\"Result\":-1}"),
    INTERNET_INDEX(List.of(Gateway.kAppM, Gateway.kGulm), 0x4710308E,
            () -> Wan.kAccess.getInternetWANIndex(), 269488129, -1),
    PON_PHYSICAL(List.of(Gateway.kAppM), 0x4710308F, () -> Wan.kAccess.getPONIfPhyStatus(),
            "{\"Result\":0,\"TXPower\":2.15,\"RXPower\":-18.2,\"TransceiverTemperature\":45.5,"
                    + "\"SupplyVottage\":3.3,\"BiasCurrent\":12.25}",
            "{\"Result\":-1, \"TXPower\": 0, \"RXPower\": 0,\"TransceiverTemperature\": 0,"
                    + "\"SupplyVottage\": 0,\"BiasCurrent\": 0}"),
    PON_UP_TIME(List.of(Gateway.kAppM), 0x471030D0, () -> Wan.kAccess.getPONIfUpTime(),
            // Since the gateway's start, which is at most an hour ago.
            (Predicate<Object>) answer -> (int) answer >= 0 && (int) answer < 3600, -1),
    PON_REGISTRATION(List.of(Gateway.kAppM), 0x471030D1,
            () -> Wan.kAccess.getPONIfRegisterStatus(),
            "{\"Result\":0,\"RegisterStatus\":\"REG_AUTH\"}",
            "{\"Result\":-1, \"RegisterStatus\": \"NO_REG_NO_AUTH\"}"),
    UPLINK_STATISTICS(List.of(Gateway.kAppM), 0x471030D2, () -> Wan.kAccess.getUplinkIfStats(),
            "{\"Result\":0,\"UsStats\":53739520,\"DsStats\":5031600128}",
            "{\"Result\":-1, \"UsStats\": 0, \"DsStats\": 0}"),
    IPV4_STATIC(List.of(Gateway.kGulm), 0x47304006,
            () -> Wan.kQuery.getLayer3ForwardingStaticConfigInfo(),
            "{ \"Result\": 0, \"List\": [ { \"Index\": \"2\", \"DestIPAddress\": \"10.20.0.0\","
                    + " \"DestSubnetMask\": \"255.255.0.0\","
                    + " \"GatewayIPAddress\": \"203.0.113.1\","
                    + " \"Interface\": \"1_INTERNET_R_VID_100\" } ] }",
            "{\"Result\":-1}"),
    IPV6_STATIC(List.of(Gateway.kGulm), 0x47100009,
            () -> Wan.kQuery.getIPv6Layer3ForwardingStaticConfigInfo(),
            "{ \"Result\": 0, \"List\": [ { \"Index\": \"2\","
                    + " \"DestIPPrefix\": \"2001:db8:100::\\/48\","
                    + " \"NextHop\": \"2001:db8:0:1::1\","
                    + " \"Interface\": \"1_INTERNET_R_VID_100\" } ] }",
            "{\"Result\":-1}"),
    IPV4_CURRENT(List.of(Gateway.kGulm), 0x46345865,
            () -> Wan.kQuery.getLayer3ForwardingCurrent(),
            "{ \"Result\": 0, \"List\": [ { \"Index\": \"1\", \"DestIPAddress\": \"10.20.0.0\","
                    + " \"DestSubnetMask\": \"255.255.0.0\","
                    + " \"GatewayIPAddress\": \"203.0.113.1\","
                    + " \"Interface\": \"1_INTERNET_R_VID_100\" },"
                    + " { \"Index\": \"2\", \"DestIPAddress\": \"0.0.0.0\","
                    + " \"DestSubnetMask\": \"0.0.0.0\", \"GatewayIPAddress\": \"203.0.113.1\","
                    + " \"Interface\": \"1_INTERNET_R_VID_100\" } ] }",
            "{\"Result\":-1}"),
    IPV6_CURRENT(List.of(Gateway.kGulm), 0x46345865,
            () -> Wan.kQuery.getIPv6Layer3ForwardingCurrent(),
            "{ \"Result\": 0, \"List\": [ { \"Index\": \"1\","
                    + " \"DestIPPrefix\": \"2001:db8:100::\\/48\","
                    + " \"NextHop\": \"2001:db8:0:1::1\","
                    + " \"Interface\": \"1_INTERNET_R_VID_100\" } ] }",
            "{\"Result\":-1}"),
    VLAN_BINDINGS(List.of(Gateway.kGulm, Gateway.kAppM), 0x47301017,
            () -> Wan.kQuery.getVLANBindInfo(),
            "{ \"Result\": 0, \"List\": [ { \"LanInterface\": \"SSID1\", \"Bind\": \"\" },"
                    + " { \"LanInterface\": \"SSID2\", \"Bind\": \"\" },"
                    + " { \"LanInterface\": \"SSID5\", \"Bind\": \"\" } ] }",
            "{\"Result\":-1}"),
    IPTV_STATUS(List.of(Gateway.kGulm, Gateway.kIgmp), 0x47317140,
            () -> Wan.kQuery.getIPTVStatus(), "IPTV_BUSSINESS_OK", "");

    private final Query query;

    WanMethod(List<String> processes, int iRpc, Supplier<Object> call, Object golden,
            Object failure) {
        query = new Query(processes, iRpc, call, golden, failure);
    }

    WanMethod(List<String> processes, int iRpc, Supplier<Object> call, Predicate<Object> success,
            Object failure) {
        query = new Query(processes, iRpc, call, success, failure);
    }

    @Override
    public Query query() {
        return query;
    }
}
