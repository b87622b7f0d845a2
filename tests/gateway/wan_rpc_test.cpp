// What gulm, app_m, igmp and the proxy answer about the uplink, byte for byte, and that changes
// take effect.
#include "gateway_fixture.h"
#include "vt_ssp_host.h"

namespace wap::test {

namespace {

constexpr uint32_t kPonUnknown = 0xFFFFFFFE;

class WanGatewayTest : public GatewayTest {
  protected:
    void SetUp() override {
        GatewayTest::SetUp();
        CtlOk({"start", "gulm", "app_m", "osgi_proxy", "igmp", "--timeout", "60"});
    }

    void Restart(const char *pcProcess) {
        CtlOk({"kill", pcProcess});
        CtlOk({"start", pcProcess, "--timeout", "60"});
    }

    /// A change by the proxy: its status.
    static uint32_t Change(uint32_t uiRpcId, const std::string &acRequest) {
        return Call("osgi_proxy", uiRpcId, acRequest, 0).uiStatus;
    }
    /// The same for one that answers a number.
    static uint32_t Added(uint32_t uiRpcId, const std::string &acRequest) {
        const RpcReply stReply = Call("osgi_proxy", uiRpcId, acRequest, 4);
        EXPECT_EQ(stReply.uiStatus, 0u);
        return WordAt(stReply.acBytes, 0);
    }
    static uint32_t AddStatus(uint32_t uiRpcId, const std::string &acRequest) {
        return Call("osgi_proxy", uiRpcId, acRequest, 4).uiStatus;
    }
};

std::string AddWan(uint32_t uiMode, uint32_t uiVlan, const std::string &acType) {
    return Word(uiMode) + Word(uiVlan) + Field(acType, 16);
}

/// A record that sets one text.
std::string SetWan(const std::string &acPlace, size_t uiOffset, size_t uiFlag,
                   const std::string &acText) {
    std::string acRecord = acPlace + std::string(1064, '\0');
    acRecord.replace(uiOffset, acText.size(), acText);
    acRecord[1049 + uiFlag] = '\1';
    return acRecord;
}

std::string Place(uint32_t uiKind, uint32_t uiConnDev) {
    return Word(uiKind) + Word(1) + Word(uiConnDev) + Word(1);
}

std::string ListEntry(uint32_t uiIndex, const std::string &acName) {
    return Word(uiIndex) + Field(acName, 260);
}

std::string AddIpv4(const std::string &acDest, const std::string &acMask,
                    const std::string &acGateway, const std::string &acConnection) {
    return Word(1) + Field(acDest, 16) + Field(acMask, 16) + Field(acGateway, 16) +
           Field(acConnection, 32);
}

std::string AddIpv6(const std::string &acPrefix, const std::string &acNextHop,
                    const std::string &acConnection) {
    return Field(acPrefix, 64) + Field(acNextHop, 64) + Field(acConnection, 32) +
           std::string(224, '\0');
}

std::string Bind(const std::string &acInterface, uint32_t uiOperation, const std::string &acBind) {
    return Field(acInterface, 64) + Word(uiOperation) + Field(acBind, 129) + std::string(3, '\0');
}

std::string CurrentIpv4(const std::string &acDest, const std::string &acMask,
                        const std::string &acGateway, const std::string &acInterface) {
    return Field(acDest, 16) + Field(acMask, 16) + Field(acGateway, 16) + Field(acInterface, 64);
}

std::string CurrentIpv6(const std::string &acPrefix, const std::string &acInterface,
                        const std::string &acNextHop) {
    return Field(acPrefix, 48) + Field(acInterface, 32) + Field(acNextHop, 140);
}

}  // namespace

TEST_F(WanGatewayTest, ConnectionsAreListed) {
    EXPECT_EQ(Call("gulm", 0x47302025, Word(0), 2116).acBytes,
              Word(4) + ListEntry(0x10101001, "1_INTERNET_R_VID_100") +
                  ListEntry(0x10102001, "2_OTHER_R_VID_200") +
                  ListEntry(0x10103001, "3_IPTV_B_VID_300") +
                  ListEntry(0x20104001, "4_TR069_R_VID_46") + std::string(size_t{4} * 264, '\0'));
    EXPECT_EQ(CtlOk({"wan", "list"}),
              "INDEX       STATE TYPE           NAME\n"
              "0x10101001  up    IP_Routed      1_INTERNET_R_VID_100\n"
              "0x10102001  up    IP_Routed      2_OTHER_R_VID_200\n"
              "0x10103001  up    IP_Bridged     3_IPTV_B_VID_300\n"
              "0x20104001  up    PPPoE_Routed   4_TR069_R_VID_46\n");
}

TEST_F(WanGatewayTest, ConnectionsAreMadeUntilTheListIsFull) {
    EXPECT_EQ(Added(0x47209076, AddWan(2, 500, "ip_routed")), 0x10105001u);
    EXPECT_EQ(Added(0x47209076, AddWan(2, 501, "PPPoE_Bridged")), 0x20106001u);
    EXPECT_EQ(Added(0x47209076, AddWan(0, 0, "IP_Bridged")), 0x10107001u);
    EXPECT_EQ(AddStatus(0x47209076, AddWan(2, 500, "IP_Routed")), kRefused) << "VLAN taken";
    EXPECT_EQ(AddStatus(0x47209076, AddWan(3, 502, "IP_Routed")), kRefused);
    EXPECT_EQ(AddStatus(0x47209076, AddWan(2, 4095, "IP_Routed")), kRefused);
    EXPECT_EQ(AddStatus(0x47209076, AddWan(0, 7, "IP_Routed")), kRefused);
    EXPECT_EQ(AddStatus(0x47209076, AddWan(2, 502, "IPoE_Routed")), kRefused);
    Restart("gulm");
    EXPECT_EQ(Added(0x47209076, AddWan(1, 4094, "PPPoE_Routed")), 0x20108001u);
    EXPECT_EQ(AddStatus(0x47209076, AddWan(2, 503, "IP_Routed")), kTableFull);
    EXPECT_EQ(Call("gulm", 0x47302025, Word(0), 2116).acBytes.substr(4 + 4 * 264),
              ListEntry(0x10105001, "5_INTERNET_R_VID_500") +
                  ListEntry(0x20106001, "6_OTHER_B_VID_501") +
                  ListEntry(0x10107001, "7_OTHER_B_VID_0") +
                  ListEntry(0x20108001, "8_INTERNET_R_VID_4094"));
    EXPECT_EQ(Call("gulm", 0x47301049, Word(0) + Word(0x20106001), 284).acBytes,
              Field("6_OTHER_B_VID_501", 256) + Word(1) + Word(6) + Word(1) + Word(0) + Word(0) +
                  Word(0) + Word(0));
}

TEST_F(WanGatewayTest, ConnectionsAreCountedAndDeletedWithWhatHangsOnThem) {
    EXPECT_EQ(Call("gulm", 0x4730100D, Word(1) + Word(1), 516).acBytes,
              Word(1) + std::string(512, '\0'));
    EXPECT_EQ(Call("gulm", 0x47301012, Word(1) + Word(1), 516).acBytes, std::string(516, '\0'));
    EXPECT_EQ(Call("gulm", 0x47301012, Word(1) + Word(4), 516).acBytes,
              Word(1) + std::string(512, '\0'));
    EXPECT_EQ(Change(0x47209077, Word(6) + Word(1) + Word(1) + Word(1)), kRefused)
        << "a connection device that has a connection";
    EXPECT_EQ(Change(0x47209077, Place(2, 1)), kRefused) << "of another kind";
    EXPECT_EQ(Change(0x47209077, Place(1, 1)), 0u);
    EXPECT_EQ(Change(0x47209077, Place(1, 1)), kRefused);
    EXPECT_EQ(Call("gulm", 0x4730100D, Word(1) + Word(1), 516).acBytes, std::string(516, '\0'));
    EXPECT_EQ(Call("gulm", 0x4730902A, Word(0), 4).acBytes, Word(0)) << "port mappings";
    EXPECT_EQ(Call("gulm", 0x47304006, Word(0), 772).acBytes,
              Word(1) + Word(1) + std::string(764, '\0'));
    EXPECT_EQ(Call("gulm", 0x47100009, Word(0), 772).acBytes,
              Word(1) + Word(1) + std::string(764, '\0'));

    EXPECT_EQ(Added(0x47209076, AddWan(2, 500, "IP_Routed")), 0x10105001u)
        << "the connection device is still there";
    EXPECT_EQ(Change(0x47209077, Word(6) + Word(1) + Word(1) + Word(1)), 0u);
    EXPECT_EQ(Change(0x47209077, Word(6) + Word(1) + Word(1) + Word(1)), kRefused);
    EXPECT_EQ(Added(0x47209076, AddWan(2, 501, "IP_Routed")), 0x10101001u);
}

TEST_F(WanGatewayTest, SettingsChangeTheName) {
    EXPECT_EQ(Change(0x47209078, SetWan(Place(1, 2), 1017, 30, "VOIP")), 0u);
    EXPECT_EQ(Change(0x47209078, SetWan(Place(1, 2), 88, 2, "201")), 0u);
    EXPECT_EQ(Call("gulm", 0x47302025, Word(0), 2116).acBytes.substr(4 + 264, 264),
              ListEntry(0x10102001, "2_VOIP_R_VID_201"));
    std::string acUnset = SetWan(Place(1, 2), 1017, 30, "INTERNET");
    acUnset[1049 + 30] = '\0';
    EXPECT_EQ(Change(0x47209078, acUnset), 0u);
    EXPECT_EQ(Call("gulm", 0x47302025, Word(0), 2116).acBytes.substr(4 + 264, 264),
              ListEntry(0x10102001, "2_VOIP_R_VID_201"));
    EXPECT_EQ(Change(0x47209078, SetWan(Place(1, 9), 88, 2, "201")), kRefused);
}

TEST_F(WanGatewayTest, ThePasswordIsNotKept) {
    EXPECT_EQ(Change(0x47209078, SetWan(Place(2, 4), 212, 9, "s3cret-word")), 0u);
    EXPECT_EQ(Change(0x47209078, SetWan(Place(2, 4), 144, 8, "user@isp")), 0u);
    const std::string acHome = CtlOk({"get", "wan"});
    EXPECT_EQ(CountOf(acHome, "s3cret-word"), 0u);
    EXPECT_EQ(CountOf(acHome, R"("PasswordSet": true)"), 1u) << acHome;
    EXPECT_EQ(CountOf(acHome, "user@isp"), 1u);
    EXPECT_EQ(CountOf(TextIn(Call("app_m", 0x4710308B, Word(0x20104001), 2048)), "user@isp"), 0u);
}

TEST_F(WanGatewayTest, DnsServersStandWhereTheyAreRead) {
    const std::string acIp = Call("gulm", 0x4730100B, Word(1) + Word(1) + Word(1), 12864).acBytes;
    EXPECT_EQ(acIp.substr(0, 588), std::string(524, '\0') + Field("192.0.2.53,192.0.2.54", 64));
    const std::string acPpp = Call("gulm", 0x4730100F, Word(1) + Word(4) + Word(1), 12004).acBytes;
    EXPECT_EQ(acPpp.substr(0, 768), std::string(704, '\0') + Field("100.64.0.53,100.64.0.54", 64));
    EXPECT_EQ(Call("gulm", 0x4730100F, Word(1) + Word(1) + Word(1), 12004).uiStatus, kRefused);
    EXPECT_EQ(Change(0x47209078, SetWan(Place(1, 1), 352, 15, "9.9.9.9,192.0.2.54")), 0u);
    EXPECT_EQ(Call("gulm", 0x4730100B, Word(1) + Word(1) + Word(1), 12864).acBytes.substr(524, 64),
              Field("9.9.9.9,192.0.2.54", 64));

    const std::string acName = Field("wan1.1.ip1", 32);
    EXPECT_EQ(Call("gulm", 0x4930000F, acName, 1389).acBytes.substr(0, 976),
              std::string(912, '\0') + Field("2001:db8::53,2001:db8::54", 64));
    EXPECT_EQ(Change(0x47209078, SetWan(Place(1, 1), 560, 20, "2001:db8::99")), 0u);
    EXPECT_EQ(Call("gulm", 0x4930000F, acName, 1389).acBytes.substr(912, 64),
              Field("2001:db8::53,2001:db8::54", 64))
        << "they come in a request of their own";
    const auto SetIpv6 = [](const std::string &acFirst, const std::string &acSecond) {
        return Word(0x10101001) + Field(acFirst, 64) + Field(acSecond, 64) + std::string(1, '\0');
    };
    EXPECT_EQ(Call("gulm", 0x4730105A, SetIpv6("2001:db8::99", "2001:db8::54"), 0).uiStatus, 0u);
    EXPECT_EQ(Call("gulm", 0x4930000F, acName, 1389).acBytes.substr(912, 64),
              Field("2001:db8::99,2001:db8::54", 64));
    EXPECT_EQ(Call("gulm", 0x4730105A, SetIpv6("", "2001:db8::54"), 0).uiStatus, 0u);
    EXPECT_EQ(Call("gulm", 0x4930000F, acName, 1389).acBytes.substr(912, 64),
              Field("2001:db8::54", 64));
    EXPECT_EQ(Call("gulm", 0x4930000F, Field("wan1.9.ip1", 32), 1389).uiStatus, kRefused);
}

TEST_F(WanGatewayTest, TheUplinkIsTold) {
    EXPECT_EQ(TextIn(Call("app_m", 0x4710308A, Word(0x10103001), 128)),
              R"({"Result":0,"UsStats":65536,"DsStats":4294967296})");
    EXPECT_EQ(TextIn(Call("app_m", 0x4710308B, Word(0x10103001), 2048)),
              R"({"Result":0,"Index":269496321,"Name":"3_IPTV_B_VID_300",)"
              R"("ConnectionType":"IP_Bridged","ServiceList":"IPTV","LanInterface":"",)"
              R"("VLANMode":"2","VLANIDMark":"300","802-1pMark":"","MulticastVlan":"300",)"
              R"("IPMode":"","NATEnabled":"","AddressingType":"","DNSEnabled":""})");
    EXPECT_EQ(TextIn(Call("app_m", 0x4710308C, Word(0x10103001), 128)),
              R"({"Result":0,"UsBandwidth":1250000000,"DsBandwidth":2500000000})");
    const char *pcStatus =
        R"({"Result":0,"ConnectionStatus":"%s","ExternalIPAddress":"198.51.100.20",)"
        R"("SubnetMask":"255.255.255.0","DefaultGateway":"198.51.100.1",)"
        R"("DNSServers":"198.51.100.53","IPv6IPAddress":"","IPv6DNSServers":""})";
    const auto Status = [&](const std::string &acState) {
        std::string acText(pcStatus);
        return acText.replace(acText.find("%s"), 2, acState);
    };
    EXPECT_EQ(TextIn(Call("app_m", 0x4710308D, Word(0x10102001), 512)), Status("Connected"));
    CtlOk({"wan", "set", "2_OTHER_R_VID_200", "down"});
    EXPECT_EQ(TextIn(Call("app_m", 0x4710308D, Word(0x10102001), 512)), Status("Disconnected"));
    EXPECT_EQ(Call("app_m", 0x4710308E, Word(0), 4).acBytes, Word(0x10101001));
    for (const uint32_t uiRpcId : {0x4710308Au, 0x4710308Bu, 0x4710308Cu, 0x4710308Du}) {
        EXPECT_EQ(Call("app_m", uiRpcId, Word(0), 512).uiStatus, kRefused);
        EXPECT_EQ(Call("app_m", uiRpcId, "", 512).uiStatus, VT_HOST_ERR_ARGUMENT);
    }
    EXPECT_EQ(Change(0x47209077, Place(1, 1)), 0u);
    EXPECT_EQ(Call("app_m", 0x4710308E, Word(0), 4).uiStatus, kRefused) << "no internet";
}

TEST_F(WanGatewayTest, ThePonGoesDownAndUp) {
    EXPECT_EQ(CtlOk({"pon"}), "up\n");
    EXPECT_EQ(TextIn(Call("app_m", 0x4710308F, Word(0), 512)),
              R"({"Result":0,"TXPower":2.15,"RXPower":-18.2,"TransceiverTemperature":45.5,)"
              R"("SupplyVottage":3.3,"BiasCurrent":12.25})");
    EXPECT_EQ(TextIn(Call("app_m", 0x471030D1, Word(0), 128)),
              R"({"Result":0,"RegisterStatus":"REG_AUTH"})");
    EXPECT_EQ(TextIn(Call("app_m", 0x471030D2, Word(0), 128)),
              R"({"Result":0,"UsStats":53739520,"DsStats":5031600128})");
    const uint32_t uiUp = WordAt(Call("app_m", 0x471030D0, Word(0), 4).acBytes, 0);
    EXPECT_LE(uiUp, WordAt(Call("app_m", 0x471030D0, Word(0), 4).acBytes, 0));
    EXPECT_LT(uiUp, 3600u) << "since the gateway's start, not the machine's";
    CtlOk({"pon", "down"});
    EXPECT_EQ(CtlOk({"pon"}), "down\n");
    for (const uint32_t uiRpcId : {0x4710308Fu, 0x471030D0u, 0x471030D1u, 0x471030D2u}) {
        EXPECT_EQ(Call("app_m", uiRpcId, Word(0), 512).uiStatus, kPonUnknown);
    }
    Restart("app_m");
    EXPECT_EQ(CtlOk({"pon"}), "down\n");
    CtlOk({"pon", "up"});
    EXPECT_EQ(Call("app_m", 0x471030D0, Word(0), 4).uiStatus, 0u);
    EXPECT_EQ(Call("app_m", 0x471030D1, "", 128).uiStatus, VT_HOST_ERR_ARGUMENT);
    EXPECT_EQ(Ctl({"pon", "sideways"}).iExit, 2);
}

TEST_F(WanGatewayTest, Ipv4RoutesAreAddedToldAndDeleted) {
    EXPECT_EQ(Call("gulm", 0x47304006, Word(0), 772).acBytes,
              Word(2) + Word(1) + Word(2) + std::string(760, '\0'));
    const std::string acAdd = AddIpv4("10.30.0.0", "255.255.0.0", "198.51.100.1", "wan1.2.ip1");
    EXPECT_EQ(Added(0x47209071, acAdd), 3u);
    EXPECT_EQ(AddStatus(0x47209071, acAdd), kRefused) << "there already";
    EXPECT_EQ(AddStatus(0x47209071, AddIpv4("10.30.0.1", "255.255.0.0", "", "wan1.2.ip1")),
              kRefused)
        << "the address of a host in the network";
    EXPECT_EQ(AddStatus(0x47209071, AddIpv4("10.0.0.0", "255.0.255.0", "", "wan1.2.ip1")),
              kRefused);
    EXPECT_EQ(AddStatus(0x47209071, AddIpv4("10.31.0.0", "255.255.0.0", "x", "wan1.2.ip1")),
              kRefused);
    EXPECT_EQ(AddStatus(0x47209071, AddIpv4("10.31.0.0", "255.255.0.0", "", "wan1.9.ip1")),
              kRefused);
    EXPECT_EQ(Call("gulm", 0x47304002, Word(3), 731).acBytes,
              std::string(21, '\0') + Word(1) + std::string(9, '\0') + Field("10.30.0.0", 16) +
                  Field("255.255.0.0", 16) + std::string(96, '\0') + Field("198.51.100.1", 16) +
                  std::string(265, '\0') + Field("wan1.2.ip1", 288));
    EXPECT_EQ(Call("gulm", 0x47304002, Word(1), 731).acBytes.substr(162, 25),
              std::string(16, '\0') + Field("br0", 9));
    EXPECT_EQ(Call("gulm", 0x47304002, Word(9), 731).uiStatus, kRefused);

    const std::string acLan = CurrentIpv4("192.168.1.0", "255.255.255.0", "", "br0");
    const std::string acShipped =
        CurrentIpv4("10.20.0.0", "255.255.0.0", "203.0.113.1", "wan1.1.ip1");
    const std::string acNew = CurrentIpv4("10.30.0.0", "255.255.0.0", "198.51.100.1", "wan1.2.ip1");
    const std::string acDefault = CurrentIpv4("0.0.0.0", "0.0.0.0", "203.0.113.1", "wan1.1.ip1");
    const std::string acElsewhere = CurrentIpv4("0.0.0.0", "0.0.0.0", "198.51.100.1", "wan1.2.ip1");
    RpcReply stReply = Call("gulm", 0x46345865, Word(0), 16);
    EXPECT_EQ(WordAt(stReply.acBytes, 0), 4u);
    EXPECT_EQ(BlockOf(stReply, 4), acLan + acShipped + acNew + acDefault);
    CtlOk({"wan", "set", "1_INTERNET_R_VID_100", "down"});
    stReply = Call("gulm", 0x46345865, Word(0), 16);
    EXPECT_EQ(WordAt(stReply.acBytes, 0), 3u);
    EXPECT_EQ(BlockOf(stReply, 4), acLan + acNew + acElsewhere);

    EXPECT_EQ(Change(0x47209072, Word(1)), kRefused) << "the LAN's own";
    EXPECT_EQ(Change(0x47209072, Word(3)), 0u);
    EXPECT_EQ(Change(0x47209072, Word(3)), kRefused);
    Restart("gulm");
    EXPECT_EQ(Call("gulm", 0x47304002, Word(3), 731).uiStatus, kRefused);
}

TEST_F(WanGatewayTest, Ipv6RoutesAreAddedToldAndDeleted) {
    const std::string acAdd = AddIpv6("2001:db8:200::/48", "2001:db8::2", "wan1.2.ip1");
    EXPECT_EQ(Added(0x47209073, acAdd), 3u);
    EXPECT_EQ(AddStatus(0x47209073, acAdd), kRefused);
    for (const char *pcPrefix :
         {"", "2001:db8::", "2001:db8::/129", "2001:db8::/x", "10.0.0.0/8"}) {
        EXPECT_EQ(AddStatus(0x47209073, AddIpv6(pcPrefix, "", "wan1.2.ip1")), kRefused) << pcPrefix;
    }
    EXPECT_EQ(AddStatus(0x47209073, AddIpv6("2001:db8:300::/48", "gw", "wan1.2.ip1")), kRefused);
    EXPECT_EQ(AddStatus(0x47209073, AddIpv6("2001:db8:300::/48", "", "br0")), kRefused);
    EXPECT_EQ(Call("gulm", 0x47100009, Word(0), 772).acBytes,
              Word(3) + Word(1) + Word(2) + Word(3) + std::string(756, '\0'));
    EXPECT_EQ(Call("gulm", 0x47100004, Word(3), 621).acBytes,
              std::string(69, '\0') + Field("2001:db8:200::/48", 64) + Field("2001:db8::2", 64) +
                  Field("wan1.2.ip1", 424));
    const std::string acRows = CurrentIpv6("fd00:1::/64", "br0", "") +
                               CurrentIpv6("2001:db8:100::/48", "wan1.1.ip1", "2001:db8:0:1::1") +
                               CurrentIpv6("2001:db8:200::/48", "wan1.2.ip1", "2001:db8::2");
    EXPECT_EQ(BlockOf(Call("gulm", 0x46345865, Word(1), 16), 4), acRows);
    EXPECT_EQ(Change(0x47209078, SetWan(Place(1, 1), 872, 26, "fe80::1")), 0u);
    EXPECT_EQ(BlockOf(Call("gulm", 0x46345865, Word(1), 16), 4),
              acRows + CurrentIpv6("::/0", "wan1.1.ip1", "fe80::1"));
    EXPECT_EQ(Call("gulm", 0x46345865, Word(2), 16).uiStatus, kRefused);
    EXPECT_EQ(Change(0x47209074, Word(1)), kRefused);
    EXPECT_EQ(Change(0x47209074, Word(3)), 0u);
    EXPECT_EQ(Call("gulm", 0x47100004, Word(3), 621).uiStatus, kRefused);
}

TEST_F(WanGatewayTest, PortsAndSsidsAreBound) {
    EXPECT_EQ(Call("gulm", 0x47301017, Word(1), 36).acBytes, Word(4) + std::string(32, '\0'));
    EXPECT_EQ(Call("gulm", 0x47301017, Word(2), 36).uiStatus, kRefused);
    EXPECT_EQ(Call("gulm", 0x47603122, Word(2), 329).acBytes, std::string(329, '\0'));
    EXPECT_EQ(AddStatus(0x47209075, Bind("lan2", 1, "10/100,20/200")), 0u);
    EXPECT_EQ(Call("gulm", 0x47603122, Word(2), 329).acBytes,
              std::string(196, '\0') + Word(1) + Field("10/100,20/200", 129));
    EXPECT_EQ(AddStatus(0x47209075, Bind("SSID5", 1, "30/300")), 0u);
    const auto Ssids = [](const std::string &acLast) {
        return Word(3) + Word(1) + std::string(136, '\0') + Word(2) + std::string(136, '\0') +
               Word(5) + acLast + std::string(size_t{5} * 140, '\0');
    };
    EXPECT_EQ(Call("app_m", 0x47103093, Word(0), 1124).acBytes,
              Ssids(Word(1) + Field("30/300", 132)));
    for (const char *pcName : {"LAN0", "LAN5", "LAN", "LAN1x", "SSID3", "SSID", "WAN1", ""}) {
        EXPECT_EQ(AddStatus(0x47209075, Bind(pcName, 1, "1/2")), kRefused) << pcName;
    }
    EXPECT_EQ(AddStatus(0x47209075, Bind("LAN1", 1, "")), kRefused);
    EXPECT_EQ(AddStatus(0x47209075, Bind("LAN1", 2, "1/2")), kRefused);
    EXPECT_EQ(AddStatus(0x47209075, Bind("LAN2", 0, "")), 0u);
    EXPECT_EQ(AddStatus(0x47209075, Bind("ssid5", 0, "")), 0u);
    EXPECT_EQ(Call("gulm", 0x47603122, Word(2), 329).acBytes, std::string(329, '\0'));
    EXPECT_EQ(Call("app_m", 0x47103093, Word(0), 1124).acBytes, Ssids(std::string(136, '\0')));
    EXPECT_EQ(Call("gulm", 0x47603122, Word(5), 329).uiStatus, kRefused);
}

TEST_F(WanGatewayTest, IptvFollowsItsConnection) {
    const auto Told = [](uint32_t uiStatus, uint32_t uiService, uint32_t uiIpv4,
                         const std::string &acVlans) {
        return Word(0x10103001) + Word(uiStatus) + Word(uiService) + Word(uiIpv4) + acVlans;
    };
    EXPECT_EQ(Call("gulm", 0x47317140, Word(0), 20).acBytes, Told(1, 7, 1, "\x2C\x01\xFF\x0F"));
    EXPECT_EQ(Call("gulm", 0x47317145, Word(0x10103001), 4).acBytes, Word(1));
    EXPECT_EQ(Call("gulm", 0x47317145, Word(0x10109001), 4).uiStatus, kRefused);
    EXPECT_EQ(Call("igmp", 0x47305019, Word(0), 4).acBytes, Word(1));
    CtlOk({"iptv", "down", "--users", "12", "--service", "16", "--vlan4", "4095", "--vlan6", "1",
           "--ipv4", "off"});
    EXPECT_EQ(Call("gulm", 0x47317140, Word(0), 20).acBytes,
              Told(3, 16, 0, std::string("\xFF\x0F\x01\x00", 4)));
    EXPECT_EQ(Call("gulm", 0x47317145, Word(0x10103001), 4).acBytes, Word(3));
    EXPECT_EQ(Call("igmp", 0x47305019, Word(0), 4).acBytes, Word(12));
    EXPECT_EQ(CtlOk({"iptv"}),
              "connection   3_IPTV_B_VID_300 (down)\n"
              "service type 16\n"
              "IPv4         off\n"
              "IPv4 VLAN    4095\n"
              "IPv6 VLAN    1\n"
              "users        12\n");
    EXPECT_EQ(Change(0x47209077, Place(1, 3)), 0u);
    EXPECT_EQ(Call("gulm", 0x47317140, Word(0), 20).acBytes,
              Told(3, 0, 0, std::string("\xFF\x0F\x01\x00", 4)));
    const Outcome stGone = Ctl({"iptv", "up"});
    EXPECT_EQ(stGone.iExit, 1);
    EXPECT_EQ(CountOf(stGone.acErr, "IPTV has no WAN connection"), 1u) << stGone.acErr;
    EXPECT_EQ(CountOf(CtlOk({"iptv"}), "connection   none"), 1u);
    EXPECT_EQ(Ctl({"iptv", "--vlan4", "65536"}).iExit, 2);
    EXPECT_EQ(Ctl({"wan", "set", "3_IPTV_B_VID_300", "up"}).iExit, 1);
    EXPECT_EQ(Ctl({"wan"}).iExit, 2);
}

}  // namespace wap::test
