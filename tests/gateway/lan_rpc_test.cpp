// What app_m, gulm and the proxy answer about the LAN, byte for byte, and that changes take effect.
#include <chrono>
#include <thread>

#include "gateway_fixture.h"
#include "vt_ssp_host.h"

namespace wap::test {

namespace {

/// Words of zero, as the unused end of a list has them.
std::string ZeroWords(size_t uiCount) {
    return std::string(uiCount * sizeof(uint32_t), '\0');
}

class LanGatewayTest : public GatewayTest {
  protected:
    void SetUp() override {
        GatewayTest::SetUp();
        CtlOk({"start", "gulm", "app_m", "osgi_proxy", "--timeout", "60"});
    }

    /// A change that succeeds; the word that it answers.
    static uint32_t Change(uint32_t uiRpcId, const std::string &acRequest) {
        const RpcReply stReply = Call("osgi_proxy", uiRpcId, acRequest, 4);
        EXPECT_EQ(stReply.uiStatus, 0u);
        return WordAt(stReply.acBytes, 0);
    }
    static uint32_t Status(uint32_t uiRpcId, const std::string &acRequest) {
        return Call("osgi_proxy", uiRpcId, acRequest, 4).uiStatus;
    }
};

std::string LanAddress(const std::string &acAddress, const std::string &acMask) {
    return Word(1) + Word(1) + Word(0) + Field(acAddress, 16) + Field(acMask, 16) +
           std::string(152, '\0') + "\x18" + std::string(3, '\0');
}

std::string Dhcp(uint32_t uiEnable, const std::string &acStart, const std::string &acEnd,
                 uint32_t uiLease) {
    return Word(1) + Word(0) + Word(uiEnable) + Word(0) + Word(uiLease) + Word(0) +
           Field(acStart, 16) + Field(acEnd, 16) + std::string(1825, '\0') + "\xD5" +
           std::string(7, '\0');
}

std::string Mapping(uint32_t uiEnable, uint32_t uiExternal, uint32_t uiInternal,
                    const std::string &acProtocol, const std::string &acClient) {
    return Word(uiEnable) + std::string(20, '\0') + Word(uiExternal) + Word(uiExternal) +
           Word(uiInternal) + Field(acProtocol, 16) + Field(acClient, 16) + std::string(257, '\0') +
           Word(uiInternal) + std::string(47, '\0');
}

std::string Wan(uint32_t uiKind, uint32_t uiConnDevice) {
    return Word(uiKind) + Word(1) + Word(uiConnDevice) + Word(1);
}

}  // namespace

TEST_F(LanGatewayTest, AddressIsToldByOneProcessAndChangedInAnother) {
    EXPECT_EQ(TextIn(Call("app_m", 0x471030A0, Word(1), 128)),
              R"({"Result":0,"LANHostIP":"192.168.1.1","LANHostMask":"255.255.255.0"})");
    Change(0x47209098, LanAddress("10.0.0.1", "255.255.0.0"));
    EXPECT_EQ(TextIn(Call("app_m", 0x471030A0, Word(1), 128)),
              R"({"Result":0,"LANHostIP":"10.0.0.1","LANHostMask":"255.255.0.0"})");
    EXPECT_EQ(Status(0x47209098, LanAddress("10.0.0.256", "255.255.0.0")), kRefused);
    EXPECT_EQ(Status(0x47209098, LanAddress("10.0.0.1", "")), kRefused);
    EXPECT_EQ(Status(0x47209098, "short"), VT_HOST_ERR_ARGUMENT);
    EXPECT_EQ(CtlOk({"get", "lan.address"}), "10.0.0.1\n");
    CtlOk({"kill", "gulm"});
    EXPECT_NE(Call("app_m", 0x471030A0, Word(1), 128).uiStatus, 0u);
    EXPECT_EQ(Status(0x47209098, LanAddress("10.0.0.2", "255.0.0.0")), VT_HOST_ERR_NO_RECEIVER);
}

TEST_F(LanGatewayTest, DhcpSettingsAreKept) {
    RpcReply stReply = Call("gulm", 0x47302001, Word(1), 1990);
    EXPECT_EQ(stReply.acBytes, Word(0) + Word(1) + Word(0) + Word(86400) + Word(0) +
                                   Field("192.168.1.2", 16) + Field("192.168.1.254", 16) +
                                   std::string(1938, '\0'));
    EXPECT_EQ(Call("gulm", 0x47302001, Word(2), 1990).uiStatus, kRefused);
    EXPECT_EQ(Call("app_m", 0x471030A0, Word(2), 128).uiStatus, VT_HOST_ERR_ARGUMENT);
    EXPECT_EQ(Call("app_m", 0x4830512A, Word(1), 256).uiStatus, VT_HOST_ERR_ARGUMENT);
    Change(0x47209099, Dhcp(0, "192.168.1.50", "192.168.1.60", 600));
    CtlOk({"kill", "gulm"});
    CtlOk({"start", "gulm", "--timeout", "60"});
    stReply = Call("gulm", 0x47302001, Word(1), 1990);
    EXPECT_EQ(stReply.acBytes.substr(0, 52), Word(0) + Word(0) + Word(0) + Word(600) + Word(0) +
                                                 Field("192.168.1.50", 16) +
                                                 Field("192.168.1.60", 16));
    EXPECT_EQ(Status(0x47209099, Dhcp(1, "here", "192.168.1.60", 600)), kRefused);
}

TEST_F(LanGatewayTest, HostsAreListedByMacClassAndInterface) {
    const std::string acTablet =
        R"({"Result":0,"List":[{"MAC":"02:A1:B2:00:20:04","IP":"192.168.1.13",)"
        R"("DevName":"tablet-tom","HostClass":"TABLET","Interface":"SSID5","Active":1,)"
        R"("OnlineTime":900}]})" +
        std::string(1, '\0');
    EXPECT_EQ(BlockOf(Call("app_m", 0x471030B1, Field("02:a1:b2:00:20:04", 32), 12)), acTablet);
    EXPECT_EQ(BlockOf(Call("app_m", 0x471030B2, Field("TABLET", 16), 12)), acTablet);
    EXPECT_EQ(BlockOf(Call("app_m", 0x471030B3, Field("SSID5", 16), 12)), acTablet);
    EXPECT_EQ(BlockOf(Call("app_m", 0x471030B3, Field("SSID9", 16), 12)),
              std::string(R"({"Result":0,"List":[]})") + '\0');
    const std::string acAll = BlockOf(Call("app_m", 0x471030B1, Word(0), 12));
    EXPECT_EQ(CountOf(acAll, "\"MAC\""), 5u);
    EXPECT_EQ(Call("app_m", 0x471030B1, Word(1), 12).uiStatus, VT_HOST_ERR_ARGUMENT);
    EXPECT_EQ(Call("app_m", 0x471030B1, "", 12).uiStatus, VT_HOST_ERR_ARGUMENT);
    EXPECT_EQ(Call("app_m", 0x471030B1, std::string(33, 'x'), 12).uiStatus, VT_HOST_ERR_ARGUMENT);
}

TEST_F(LanGatewayTest, StatisticsAndSpeed) {
    EXPECT_EQ(BlockOf(Call("app_m", 0x471030B4,
                           Field("02:A1:B2:00:20:02", 32) + Field("no such", 32), 12)),
              std::string(R"({"Result":0,"List":[{"MAC":"02:A1:B2:00:20:02",)"
                          R"("RxBytes":2147483648,"TxBytes":10485760,"RxPackets":2147483,)"
                          R"("TxPackets":10485}]})") +
                  '\0');
    EXPECT_EQ(TextIn(Call("app_m", 0x471030B0, std::string("02:A1:B2:00:20:02\0", 18), 128)),
              R"({"Result":0,"UpSpeed":40,"DownSpeed":8000})");
    EXPECT_EQ(Call("app_m", 0x471030B0, std::string("02:00\0", 6), 128).uiStatus, kRefused);
}

TEST_F(LanGatewayTest, NamesChange) {
    EXPECT_EQ(TextIn(Call("app_m", 0x4830512A, Word(0), 256)), "SimHome gateway");
    Change(0x4720909E, std::string("Villa\0", 6));
    EXPECT_EQ(TextIn(Call("app_m", 0x4830512A, Word(0), 256)), "Villa");
    Change(0x4720909D,
           Word(0) + Field("02:A1:B2:00:20:05", 32) + Field("laser", 257) + std::string(3, '\0'));
    const std::string acHost =
        BlockOf(Call("app_m", 0x471030B1, Field("02:A1:B2:00:20:05", 32), 12));
    EXPECT_EQ(CountOf(acHost, "\"DevName\":\"laser\""), 1u) << acHost;
    EXPECT_EQ(Status(0x4720909D,
                     Word(0) + Field("02:00", 32) + Field("laser", 257) + std::string(3, '\0')),
              kRefused);
}

TEST_F(LanGatewayTest, HostsJoinChangeAndLeave) {
    CtlOk({"host", "add", "02:A1:B2:00:20:09", "--name", "guest", "--ip", "192.168.1.20", "--class",
           "PHONE", "--interface", "SSID1"});
    EXPECT_EQ(BlockOf(Call("app_m", 0x471030B1, Field("02:A1:B2:00:20:09", 32), 12)),
              std::string(R"({"Result":0,"List":[{"MAC":"02:A1:B2:00:20:09",)"
                          R"("IP":"192.168.1.20","DevName":"guest","HostClass":"PHONE",)"
                          R"("Interface":"SSID1","Active":1,"OnlineTime":0}]})") +
                  '\0');
    CtlOk({"host", "set", "02:a1:b2:00:20:09", "upSpeed", "77"});
    EXPECT_EQ(TextIn(Call("app_m", 0x471030B0, std::string("02:A1:B2:00:20:09\0", 18), 128)),
              R"({"Result":0,"UpSpeed":77,"DownSpeed":0})");
    EXPECT_EQ(CountOf(CtlOk({"host", "list"}), "guest"), 1u);
    CtlOk({"host", "remove", "02:A1:B2:00:20:09"});
    EXPECT_EQ(CountOf(CtlOk({"host", "list"}), "guest"), 0u);
    const struct {
        std::vector<std::string> astArguments;
        const char *pcSays;
    } astRefused[] = {
        {{"host", "add", "02:a1:b2:00:20:01"}, "already has one with mac"},
        {{"host", "remove", "02:A1:B2:00:20:09"}, "has nothing with mac \"02:A1:B2:00:20:09\""},
        {{"host", "set", "02:A1:B2:00:20:01", "colour", "red"}, "it has no \"colour\"; it has "},
        {{"host", "set", "02:A1:B2:00:20:01", "upSpeed", "fast"}, "not \"fast\""},
        {{"host", "set", "02:A1:B2:00:20:01", "mac", "02:A1:B2:00:20:02"}, "tells the elements"},
    };
    for (const auto &stCase : astRefused) {
        const Outcome stOutcome = Ctl(stCase.astArguments);
        EXPECT_EQ(stOutcome.iExit, 1) << stCase.pcSays;
        EXPECT_NE(stOutcome.acErr.find(stCase.pcSays), std::string::npos) << stOutcome.acErr;
    }
    EXPECT_EQ(Ctl({"host"}).iExit, 2);
    EXPECT_EQ(Ctl({"host", "add"}).iExit, 2);
}

TEST_F(LanGatewayTest, ManyHostsComeInACompressedBlock) {
    for (int iHost = 0; iHost < 20; ++iHost) {
        CtlOk({"host", "add", "02:A1:B2:00:30:" + std::to_string(10 + iHost), "--name", "h"});
    }
    const RpcReply stReply = Call("app_m", 0x471030B1, Word(0), 12);
    EXPECT_GT(WordAt(stReply.acBytes, 4), 2048u);
    EXPECT_EQ(CountOf(BlockOf(stReply), "\"MAC\""), 25u);
}

TEST_F(LanGatewayTest, BlockOfAReplyThatComesTooLateDoesNotStay) {
    const auto fnBlocks = [this] { return Run({"ls", m_acDir + "/vdata"}).acOut; };
    // One that is fetched, so that the folder is there.
    EXPECT_NE(BlockOf(Call("app_m", 0x471030B1, Word(0), 12)), "");
    CtlOk({"fault", "app_m", "0x471030B1", "--delay", "300", "--times", "1"});
    EXPECT_EQ(Call("app_m", 0x471030B1, Word(0), 12, 100).uiStatus, VT_HOST_ERR_TIMEOUT);
    // Answered behind the late one, or beside it; hence the second look.
    EXPECT_NE(BlockOf(Call("app_m", 0x471030B1, Word(0), 12)), "");
    std::this_thread::sleep_for(std::chrono::milliseconds(1500));
    EXPECT_EQ(fnBlocks(), "");
}

TEST_F(LanGatewayTest, FeaturesAreShownAndSwitched) {
    EXPECT_EQ(CtlOk({"feature"}), "314 on\n");
    EXPECT_EQ(VT_Feature_IsSupport(314), 1u);
    CtlOk({"feature", "314", "off"});
    EXPECT_EQ(VT_Feature_IsSupport(314), 0u);
    CtlOk({"feature", "7", "on"});
    EXPECT_EQ(CtlOk({"feature", "314"}), "314 off\n");
    EXPECT_EQ(CtlOk({"feature"}), "7 on\n");
    CtlOk({"stop"});
    CtlOk({"start", "gulm", "--timeout", "60"});
    EXPECT_EQ(CtlOk({"feature"}), "7 on\n") << "a restart changes nothing";
    CtlOk({"stop"});
    CtlOk({"start", "gulm", "--fresh", "--timeout", "60"});
    EXPECT_EQ(CtlOk({"feature"}), "314 on\n");
    EXPECT_EQ(Ctl({"feature", "x"}).iExit, 2);
    EXPECT_EQ(Ctl({"feature", "1", "maybe"}).iExit, 2);
}

TEST_F(LanGatewayTest, WanRecords) {
    for (const uint32_t uiPlace : {1u, 2u, 3u}) {
        // An IP connection, and its place three times over: in the index and in the record.
        const RpcReply stReply =
            Call("gulm", 0x47301049, Word(0) + Word(0x10100001 + (uiPlace << 12)), 284);
        EXPECT_EQ(stReply.uiStatus, 0u);
        EXPECT_EQ(stReply.acBytes.substr(256, 12), Word(1) + Word(uiPlace) + Word(1));
    }
    const RpcReply stReply = Call("gulm", 0x47301049, Word(0) + Word(0x10102001), 284);
    EXPECT_EQ(stReply.acBytes, Field("2_OTHER_R_VID_200", 256) + Word(1) + Word(2) + Word(1) +
                                   Word(0) + Word(0) + Word(1) + Word(2));
    EXPECT_EQ(Call("gulm", 0x47301049, Word(0) + Word(0x10109001), 284).uiStatus, kRefused);
}

TEST_F(LanGatewayTest, PortMappingsAreAddedFetchedSwitchedAndDeleted) {
    const std::string acShipped = Mapping(1, 8443, 443, "TCP", "192.168.1.10");
    EXPECT_EQ(Call("gulm", 0x47309010, Word(1) + Word(1) + Word(1) + Word(1), 376).acBytes,
              acShipped);
    EXPECT_EQ(Call("gulm", 0x47309014, Word(1) + Word(1) + Word(1) + Word(1), 376).uiStatus,
              kRefused)
        << "of another kind";
    Change(0x4720909A, Wan(0, 2) + Mapping(1, 80, 8080, "UDP", "192.168.1.11"));
    Change(0x4720909A, Wan(1, 1) + Mapping(1, 81, 8081, "TCP", "192.168.1.12"));
    EXPECT_EQ(Status(0x4720909A, Wan(1, 1) + Mapping(1, 81, 9, "TCP", "192.168.1.13")),
              0xF7307005u);
    EXPECT_EQ(Status(0x4720909A, Wan(1, 1) + Mapping(1, 0, 9, "TCP", "192.168.1.13")), kRefused);
    EXPECT_EQ(Status(0x4720909A, Wan(1, 1) + Mapping(1, 82, 65536, "TCP", "a")), kRefused);
    EXPECT_EQ(Status(0x4720909A, Wan(1, 9) + Mapping(1, 82, 82, "TCP", "a")), kRefused);
    EXPECT_EQ(Status(0x4720909A, Wan(0, 1) + Mapping(1, 82, 82, "TCP", "a")), kRefused)
        << "of another kind";
    EXPECT_EQ(Status(0x4720909A, Wan(0, 3) + Mapping(1, 82, 82, "TCP", "a")), kRefused)
        << "closed to mappings";
    EXPECT_EQ(Call("gulm", 0x4730902A, Word(0), 4).acBytes, Word(3));

    Change(0x4720909C, Wan(0, 1) + Word(3) + Mapping(0, 0, 0, "", "") + Word(0x10));
    const std::string acUnread(32, '\0');
    EXPECT_EQ(BlockOf(Call("gulm", 0x47309029, Word(0), 12)),
              Word(0x10101001) + Word(1) + acUnread + acShipped + Word(0x10101001) + Word(3) +
                  acUnread + Mapping(0, 81, 8081, "TCP", "192.168.1.12") + Word(0x10102001) +
                  Word(2) + acUnread + Mapping(1, 80, 8080, "UDP", "192.168.1.11"))
        << "one WAN's mappings stand together";

    EXPECT_EQ(Status(0x4720909B, Wan(1, 1) + Word(2)), kRefused) << "of another WAN";
    EXPECT_EQ(Status(0x4720909B, Wan(0, 1) + Word(1)), kRefused) << "of another kind";
    EXPECT_EQ(Status(0x4720909C, Wan(1, 1) + Word(1) + Mapping(0, 0, 0, "", "") + Word(0x10)),
              kRefused)
        << "the switch tells no kind";
    for (const uint32_t uiId : {1u, 3u}) {
        Change(0x4720909B, Wan(1, 1) + Word(uiId));
    }
    Change(0x4720909B, Wan(0, 2) + Word(2));
    EXPECT_EQ(Call("gulm", 0x47309029, Word(0), 12).acBytes, Word(0) + Word(0) + Word(0));
}

TEST_F(LanGatewayTest, MacFilterModeAndTables) {
    EXPECT_EQ(Call("gulm", 0x47307000, Word(0), 128).acBytes, std::string(128, '\0'));
    Change(0x47209091, Word(1) + Word(1));
    EXPECT_EQ(
        Call("gulm", 0x47307000, Word(0), 128).acBytes,
        Word(1) + Word(1) + std::string(60, '\0') + Word(1) + Word(1) + std::string(52, '\0'));
    EXPECT_EQ(Status(0x47209091, Word(2) + Word(1)), kRefused);

    const std::string acMac = Field("02:00:00:00:00:07", 32);
    const std::string acTimes = Field("YYYYYNN", 16) + Field("00:00", 16) + Field("23:59", 16);
    EXPECT_EQ(Change(0x47209092, Word(0) + Word(1) + acMac + std::string(32, '\0') + acTimes), 1u);
    EXPECT_EQ(Call("gulm", 0x47309024, Word(0), 132).acBytes, Word(1) + Word(1) + ZeroWords(31));
    EXPECT_EQ(Call("gulm", 0x40007000, Word(1), 116).acBytes,
              Word(1) + acMac + std::string(32, '\0') + acTimes);

    const std::string acSsid = Field("SSID-5", 32);
    EXPECT_EQ(Change(0x47209094, Word(0) + Word(1) + acSsid + acMac + std::string(12, '\xFF')), 1u);
    EXPECT_EQ(
        Call("gulm", 0x4730701D, Word(1) + acSsid + acMac + std::string(16, '\xFF'), 4).acBytes,
        Word(2));
    EXPECT_EQ(Call("gulm", 0x47309027, Word(0), 1028).acBytes,
              Word(2) + Word(1) + Word(2) + ZeroWords(254));
    EXPECT_EQ(Call("gulm", 0x4730701A, Word(2), 68).acBytes, Word(1) + acSsid + acMac);

    Change(0x47209095, Word(1));
    Change(0x47209093, Word(1));
    EXPECT_EQ(Call("gulm", 0x47309024, Word(0), 132).acBytes, std::string(132, '\0'));
    EXPECT_EQ(Call("gulm", 0x4730701A, Word(1), 68).uiStatus, kRefused);
    EXPECT_EQ(Call("gulm", 0x40007000, Word(1), 116).uiStatus, kRefused);
    EXPECT_EQ(Status(0x47209093, Word(1)), kRefused);
}

TEST_F(LanGatewayTest, MacFilterTablesHaveAnEnd) {
    for (uint32_t uiEntry = 1; uiEntry <= 32; ++uiEntry) {
        EXPECT_EQ(
            Change(0x47209092, Word(0) + Word(1) + Field("02:00", 32) + std::string(32 + 48, '\0')),
            uiEntry);
    }
    EXPECT_EQ(
        Status(0x47209092, Word(0) + Word(1) + Field("02:00", 32) + std::string(32 + 48, '\0')),
        0xF7300002u);
    EXPECT_EQ(Status(0x47209092, Word(0) + Word(1) + std::string(32 + 32 + 48, '\0')), kRefused)
        << "no MAC address";
}

TEST_F(LanGatewayTest, WirelessMacFilterTableHasAnEnd) {
    const std::string acEntry = Word(1) + Field("SSID-5", 32) + Field("02:00", 32);
    const std::string acAdd = Word(0) + acEntry + std::string(12, '\xFF');
    const std::string acRestore = acEntry + std::string(16, '\xFF');
    for (uint32_t uiEntry = 1; uiEntry <= 256; ++uiEntry) {
        ASSERT_EQ(Change(0x47209094, acAdd), uiEntry);
    }
    EXPECT_EQ(Status(0x47209094, acAdd), 0xF7300002u);
    EXPECT_EQ(Call("gulm", 0x4730701D, acRestore, 4).uiStatus, 0xF7300002u);
    const std::string acIndex = Call("gulm", 0x47309027, Word(0), 1028).acBytes;
    EXPECT_EQ(WordAt(acIndex, 0), 256u);
    EXPECT_EQ(WordAt(acIndex, 1024), 256u);
    // And there is room again where one was.
    Change(0x47209095, Word(7));
    EXPECT_EQ(Call("gulm", 0x4730701D, acRestore, 4).uiStatus, 0u);
    EXPECT_EQ(Status(0x47209094, acAdd), 0xF7300002u);
}

TEST_F(LanGatewayTest, AttachControlListHasAnEnd) {
    const auto Add = [](uint32_t uiHost) {
        return Field("02:00:00:00:00:" + std::to_string(100 + uiHost), 32) + Word(1) +
               std::string(28, '\0') + '\x0F' + std::string(15, '\0');
    };
    for (uint32_t uiHost = 1; uiHost <= 128; ++uiHost) {
        ASSERT_EQ(Change(0x47209096, Add(uiHost)), uiHost);
    }
    EXPECT_EQ(Status(0x47209096, Add(129)), 0xF7300002u);
    EXPECT_EQ(Status(0x47209096, Add(128)), kRefused) << "there is one for this host";
    const std::string acIndex = Call("gulm", 0x47307034, Word(0), 516).acBytes;
    EXPECT_EQ(WordAt(acIndex, 0), 128u);
    EXPECT_EQ(WordAt(acIndex, 512), 128u);
}

TEST_F(LanGatewayTest, WirelessNetworksAndTheExcludedOne) {
    EXPECT_EQ(Call("app_m", 0x47103092, Word(0), 132).acBytes,
              Word(3) + Word(1) + Word(2) + Word(5) + ZeroWords(29));
    EXPECT_EQ(Call("gulm", 0x49350180, Word(2), 4).acBytes, Word(1));
    EXPECT_EQ(Call("gulm", 0x49350180, Word(5), 4).acBytes, Word(0));
}

TEST_F(LanGatewayTest, AttachControlKeepsWhatTheMaskLeavesOut) {
    const std::string acMac = Field("02:A1:B2:00:20:04", 32);
    const auto Record = [&](const std::vector<uint32_t> &auiWords) {
        std::string acRecord = acMac;
        for (const uint32_t uiWord : auiWords) {
            acRecord += Word(uiWord);
        }
        return acRecord;
    };
    const auto Masked = [](char cMask) { return cMask + std::string(15, '\0'); };
    EXPECT_EQ(Change(0x47209096, Record({1, 0, 0, 0, 0, 0, 0, 0}) + Masked('\x0F')), 1u);
    EXPECT_EQ(Call("gulm", 0x47307034, Word(0), 516).acBytes, Word(1) + Word(1) + ZeroWords(127));
    EXPECT_EQ(Change(0x47209097, Word(1) + Record({0, 1, 512, 2048, 9, 9, 0, 1}) + Masked('\x3D')),
              1u);
    EXPECT_EQ(Call("gulm", 0x47307030, Word(1), 64).acBytes, Record({0, 0, 512, 2048, 0, 0, 0, 0}))
        << "the storage right and the guarantees were not meant";
    EXPECT_EQ(Status(0x47209096, Record({1, 1, 0, 0, 0, 0, 0, 0}) + Masked('\xFF')), kRefused)
        << "there is one for this host";
    EXPECT_EQ(Status(0x47209097, Word(2) + Record({1, 1, 0, 0, 0, 0, 0, 0}) + Masked('\x0F')),
              kRefused);
    EXPECT_EQ(Call("gulm", 0x47307030, Word(2), 64).uiStatus, kRefused);
}

}  // namespace wap::test
