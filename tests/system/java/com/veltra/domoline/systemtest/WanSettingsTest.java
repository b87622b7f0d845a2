package com.veltra.domoline.systemtest;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertTimeout;

import java.time.Duration;
import java.util.List;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.ValueSource;

/** What WAN connections are set to. Each test begins with a new gateway. */
class WanSettingsTest extends NewGatewayEachTime {
    private static final int kSet = 0x47209078;
    private static final int kAskIpDns = 0x4730100B;
    private static final int kAskIpv6Dns = 0x4930000F;
    private static final int kSetIpv6Dns = 0x4730105A;
    private static final int kMegabyte = 1 << 20;
    private static final String kShippedOther =
            "{\"ServiceList\":\"OTHER\",\"VLANMode\":\"2\",\"VLANIDMark\":\"200\","
            + "\"IPMode\":\"1\",\"NATEnabled\":\"TRUE\",\"AddressingType\":\"DHCP\","
            + "\"ExternalIPAddress\":\"198.51.100.20\",\"SubnetMask\":\"255.255.255.0\","
            + "\"DefaultGateway\":\"198.51.100.1\",\"DNSServers\":\"198.51.100.53\"}";

    private static int setJson(String json) {
        return Wan.kConfig.setWANIf(Wan.kOther, json);
    }

    private static String other() {
        return Home.now().settings(Wan.kOther);
    }

    /** What the second connection is set to, with a text of it replaced. */
    private static String otherBut(String before, String after) {
        return kShippedOther.replace(before, after);
    }

    // ---- the text ----

    private static String nested(int iLevels, String begin, String end) {
        return begin.repeat(iLevels) + end.repeat(iLevels);
    }

    @Test
    void whatIsNotJsonIsRefusedUnasked() {
        String voip = "{\"ServiceList\":\"VOIP\"}";
        Gateway.assertAsksNobody(() -> {
            for (String json : new String[] {null, "", " ", "{", "}", "VOIP", "null",
                         "{\"ServiceList\":\"VOIP\"", "{\"ServiceList\":\"VOIP}",
                         "{'ServiceList':'VOIP'}", "{ServiceList:\"VOIP\"}",
                         "{\"ServiceList\":\"VOIP\",}", "{\"ServiceList\" \"VOIP\"}",
                         "{\"ServiceList\":}", "[1,]", "{\"a\":01}",
                         "/* why */" + voip, voip + "x", voip + voip, voip + ",", voip + " null",
                         "{\"ServiceList\":\"VO\\xIP\"}"}) {
                assertEquals(-1, setJson(json), json);
            }
        });
        assertEquals(kShippedOther, other());
        assertEquals(0, setJson(" \n" + voip + " \n\t"));
        assertEquals(otherBut("OTHER", "VOIP"), other());
    }

    @Test
    void nestingHasItsLimit() {
        String voip = "\"ServiceList\":\"VOIP\"}";
        Gateway.assertAsksNobody(() -> {
            for (int iLevels : new int[] {32, 33, 1000, 100000}) {
                assertEquals(-1, setJson("{\"a\":" + nested(iLevels, "[", "]") + "," + voip));
                assertEquals(-1,
                        setJson(nested(iLevels, "{\"a\":", "").concat("1") + "}".repeat(iLevels)
                                + "}"));
                assertEquals(-1, setJson("[".repeat(iLevels)));
            }
        });
        assertEquals(0, setJson("{\"a\":" + nested(31, "[", "]") + "," + voip));
        assertEquals(otherBut("OTHER", "VOIP"), other());
    }

    @Test
    void aMegabyteOfTextIsAnswered() {
        String filler = "x".repeat(kMegabyte);
        assertTimeout(Duration.ofSeconds(30), () -> {
            Gateway.assertAsksNobody(() -> {
                assertEquals(-1, setJson(filler));
                assertEquals(-1, setJson("{\"ServiceList\":\"" + filler));
                assertEquals(-1, setJson("{\"a\":".repeat(kMegabyte / 5)));
                assertEquals(-1, setJson("{\"a\":1,".repeat(kMegabyte / 7)));
            });
            assertEquals(0, Wan.set(Wan.kOther, "ServiceList", filler));
            assertEquals(0, Wan.set(Wan.kOther, filler, "VOIP"));
            assertEquals(0, setJson("{\"a\":[1" + ",1".repeat(kMegabyte / 2) + "]}"));
            assertEquals(kShippedOther, other());
            assertEquals(0,
                    setJson("{" + "\"a\":\"b\",".repeat(kMegabyte / 8)
                            + "\"ServiceList\":\"VOIP\"}"));
        });
        assertEquals(otherBut("OTHER", "VOIP"), other());
    }

    @Test
    void whatSetsNothingIsSentAndChangesNothing() {
        long lSent = Gateway.requests().get(Gateway.kOsgiProxy);
        String[] empty = {"{}", "[]", "1", "true", "\"ServiceList\"",
                "[{\"ServiceList\":\"VOIP\"}]", "[\"ServiceList\",\"VOIP\"]",
                "{\"servicelist\":\"VOIP\"}", "{\"ServiceList\":\"\"}", "{\"VLANIDMark\":201}",
                "{\"ServiceList\":null}", "{\"NATEnabled\":false}", "{\"ServiceList\":[\"VOIP\"]}",
                "{\"ServiceList\":{\"ServiceList\":\"VOIP\"}}"};
        for (String json : empty) {
            assertEquals(0, setJson(json), json);
        }
        assertEquals(lSent + empty.length, Gateway.requests().get(Gateway.kOsgiProxy));
        assertEquals(kShippedOther, other());
    }

    @Test
    void ofASettingGivenTwiceTheLastCounts() {
        assertEquals(0, setJson("{\"ServiceList\":\"IPTV\",\"ServiceList\":\"VOIP\"}"));
        assertEquals(otherBut("OTHER", "VOIP"), other());
        assertEquals(0, setJson("{\"Service\\u004cist\":\"A\\u00e4\\/\\\"B\"}"));
        assertEquals(otherBut("OTHER", "A\u00E4/\\\"B"), other());
    }

    // ---- the settings ----

    @Test
    void eachSettingArrives() {
        String json = "{\"LanInterface\":\"LAN1,SSID2\",\"VLANMode\":\"1\",\"VLANIDMark\":\"46\","
                + "\"802-1pMark\":\"5\",\"MulticastVlan\":\"47\","
                + "\"LanInterface-DHCPEnable\":\"TRUE\",\"IPMode\":\"3\",\"NATEnabled\":\"FALSE\","
                + "\"Username\":\"gw@isp\",\"Password\":\"pass\",\"AddressingType\":\"Static\","
                + "\"ExternalIPAddress\":\"192.0.2.2\",\"SubnetMask\":\"255.255.255.252\","
                + "\"DefaultGateway\":\"192.0.2.1\",\"DNSEnabled\":\"TRUE\","
                + "\"DNSServers\":\"9.9.9.9,1.1.1.1\",\"MACAddress\":\"02:A1:B2:00:30:01\","
                + "\"ConnectionTrigger\":\"AlwaysOn\",\"IPv6IPAddressOrigin\":\"AutoConfigured\","
                + "\"IPv6IPAddress\":\"2001:db8::2\","
                + "\"IPv6DNSServers\":\"2001:db8::3,2001:db8::4\","
                + "\"IPv6PrefixDelegationEnabled\":\"TRUE\",\"IPv6PrefixOrigin\":\"Static\","
                + "\"IPv6Prefix\":\"2001:db8:1::/48\",\"IPv6PrefixPltime\":\"3600\","
                + "\"IPv6PrefixVltime\":\"7200\",\"IPv6DefaultGateway\":\"fe80::1\","
                + "\"IPv6DsliteEnable\":\"FALSE\",\"IPv6AftrMode\":\"1\","
                + "\"IPv6AftrAddress\":\"aftr.example\",\"ServiceList\":\"TR069\"}";
        assertEquals(0, Wan.kConfig.deleteWANIf(Wan.kOther));
        assertEquals(0, Wan.kConfig.deleteWANIf(Wan.kManagement));
        assertEquals(Wan.kSecondPpp, Wan.kConfig.addWANIf("0", "0", "PPPoE_Routed"));
        assertEquals(0, Wan.kConfig.setWANIf(Wan.kSecondPpp, json));
        // What a new connection has comes first, the IPv6 servers last, and no password at all.
        assertEquals("{\"ServiceList\":\"TR069\",\"VLANMode\":\"1\",\"VLANIDMark\":\"46\","
                        + "\"IPMode\":\"3\",\"NATEnabled\":\"FALSE\","
                        + json.substring(1)
                                  .replace("\"VLANMode\":\"1\",\"VLANIDMark\":\"46\",", "")
                                  .replace("\"IPMode\":\"3\",\"NATEnabled\":\"FALSE\",", "")
                                  .replace("\"Password\":\"pass\"", "\"PasswordSet\":true")
                                  .replace("\"IPv6DNSServers\":\"2001:db8::3,2001:db8::4\",", "")
                                  .replace("\"ServiceList\":\"TR069\"",
                                          "\"IPv6DNSServers\":\"2001:db8::3,2001:db8::4\""),
                Home.now().settings(Wan.kSecondPpp));
        assertEquals("2_TR069_R_VID_46", Home.now().connections().get(2).split(" ")[1]);
    }

    @Test
    void aSettingIsTakenWholeOrNotAtAll() {
        assertEquals(0,
                Wan.set(Wan.kOther, "ServiceList", "S".repeat(31), "VLANIDMark", "4".repeat(7)));
        String longest = otherBut("OTHER", "S".repeat(31)).replace("\"200\"", "\"4444444\"");
        assertEquals(longest, other());
        assertEquals(0,
                Wan.set(Wan.kOther, "ServiceList", "T".repeat(32), "VLANIDMark", "5".repeat(8)));
        assertEquals(longest, other());
        // Counted as they travel: two bytes each.
        assertEquals(0, Wan.set(Wan.kOther, "ServiceList", "\u00E4".repeat(16)));
        assertEquals(longest, other());
    }

    @Test
    void whatIsOutOfBoundsIsRefused() {
        long lSent = Gateway.requests().get(Gateway.kOsgiProxy);
        String[][] refused = {{"IPMode", "0"}, {"IPMode", "4"}, {"IPMode", "abc"},
                {"LanInterface", "eth0"}, {"VLANMode", "3"}, {"NATEnabled", "true"},
                {"DNSEnabled", "1"}, {"LanInterface-DHCPEnable", "True"},
                {"IPv6DsliteEnable", "TRUE "}, {"IPv6PrefixDelegationEnabled", "yes"},
                {"ServiceList", "tr069"}, {"ServiceList", "VOIP,TR069"}};
        for (String[] setting : refused) {
            assertEquals(-1, Wan.set(Wan.kOther, setting), setting[0] + " " + setting[1]);
            // A good setting beside it doesn't come through either.
            assertEquals(-1, Wan.set(Wan.kOther, "VLANIDMark", "201", setting[0], setting[1]));
        }
        assertEquals(lSent, Gateway.requests().get(Gateway.kOsgiProxy), "requests to osgi_proxy");
        assertEquals(kShippedOther, other());
        // A mode that is no number counts as 0 here.
        assertEquals(0, Wan.set(Wan.kOther, "LanInterface", "lan1,ssid2", "VLANMode", "none"));
        assertEquals(otherBut("\"VLANMode\":\"2\"", "\"VLANMode\":\"none\"").replace("}",
                             ",\"LanInterface\":\"lan1,ssid2\"}"),
                other());
    }

    @Test
    void anIpModeDropsWhatItHasNoUseFor() {
        String[] both = {"AddressingType", "Static", "ExternalIPAddress", "192.0.2.9",
                "DNSServers", "9.9.9.9", "DNSEnabled", "TRUE", "IPv6IPAddress", "2001:db8::9",
                "IPv6DNSServers", "2001:db8::99", "IPMode", "1"};
        assertEquals(0, Wan.set(Wan.kOther, both));
        String ipv4 = otherBut("DHCP", "Static").replace("198.51.100.20", "192.0.2.9").replace(
                "198.51.100.53", "9.9.9.9");
        assertEquals(ipv4.replace("}", ",\"DNSEnabled\":\"TRUE\"}"), other());

        newGateway();
        both[both.length - 1] = "2";
        assertEquals(0, Wan.set(Wan.kOther, both));
        String ipv6 = ",\"DNSEnabled\":\"TRUE\",\"IPv6IPAddress\":\"2001:db8::9\","
                + "\"IPv6DNSServers\":\"2001:db8::99\"}";
        assertEquals(otherBut("\"IPMode\":\"1\"", "\"IPMode\":\"2\"").replace("}", ipv6), other());

        // The number is in its bounds, but it is the text that drops.
        for (String mode : new String[] {"3", "02"}) {
            newGateway();
            both[both.length - 1] = mode;
            assertEquals(0, Wan.set(Wan.kOther, both));
            assertEquals(ipv4.replace("\"IPMode\":\"1\"", "\"IPMode\":\"" + mode + "\"")
                                 .replace("}", ipv6),
                    other());
        }
    }

    @Test
    void onlyOneConnectionIsForTheManagement() {
        assertEquals(0, Wan.set(Wan.kManagement, "ServiceList", "VOIP_tr069"));
        assertEquals(-1, Wan.set(Wan.kOther, "ServiceList", "TR069"));
        // When nobody can tell there is none.
        Gateway.fault(Gateway.kGulm, WanMethod.WAN_LIST.rpc(), "--code", "5", "--times", "1");
        assertEquals(0, Wan.set(Wan.kOther, "ServiceList", "TR069"));
        assertEquals(List.of("1_INTERNET_R_VID_100", "2_TR069_R_VID_200", "3_IPTV_B_VID_300",
                             "4_VOIP_tr069_R_VID_46"),
                Home.now().list("wan", "name"));
        // Of two, the first in the list is the one.
        assertEquals(-1, Wan.set(Wan.kManagement, "ServiceList", "TR069"));
        assertEquals(0, Wan.set(Wan.kOther, "ServiceList", "OTHER"));
        assertEquals(0, Wan.set(Wan.kManagement, "ServiceList", "TR069"));
        WanMethod.WAN_LIST.assertSucceeds();
    }

    @ParameterizedTest
    @ValueSource(ints = {0, -1, 1, 0x10109001, 0x20102001, 0x30102001, 0x10202001, 0x10102002})
    void aConnectionThatIsNotThereIsRefused(int iWan) {
        assertEquals(-1, Wan.set(iWan, "ServiceList", "VOIP"));
        assertEquals(-1, Wan.set(iWan, "DNSServers", "9.9.9.9"));
        WanMethod.WAN_LIST.assertSucceeds();
    }

    @Test
    void dnsServersThatCannotBeCompletedChangeNothing() {
        Gateway.fault(Gateway.kGulm, kAskIpDns, "--code", "5", "--times", "1");
        assertEquals(-1, Wan.set(Wan.kOther, "VLANIDMark", "201", "DNSServers", "9.9.9.9"));
        Gateway.fault(Gateway.kOsgiProxy, kSet, "--code", "5", "--times", "1");
        assertEquals(-1, Wan.set(Wan.kOther, "IPv6DNSServers", "2001:db8::99"));
        assertEquals(kShippedOther, other());
        // Commas alone name no server, and the present one stays.
        assertEquals(0, Wan.set(Wan.kOther, "DNSServers", ",,"));
        assertEquals(kShippedOther, other());
        assertEquals(-1, Wan.set(Wan.kIptv, "DNSServers", ","), "and there is none to stay");
    }

    @ParameterizedTest
    @ValueSource(ints = {kAskIpv6Dns, kSetIpv6Dns})
    void ipv6ServersThatFailLeaveTheRestChanged(int iRpc) {
        Gateway.fault(Gateway.kGulm, iRpc, "--code", "5", "--times", "1");
        assertEquals(-1,
                Wan.set(Wan.kOther, "VLANIDMark", "201", "IPv6DNSServers", "2001:db8::99"));
        assertEquals(otherBut("\"200\"", "\"201\""), other());
    }
}
