package com.veltra.domoline.systemtest;

import static org.junit.jupiter.api.Assertions.assertEquals;

import com.google.gson.JsonArray;
import com.google.gson.JsonObject;
import java.util.ArrayList;
import java.util.List;
import org.junit.jupiter.api.Tag;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.ValueSource;

/** Static routes, and the routes in force. Each test begins with a new gateway. */
class RouteTest extends NewGatewayEachTime {
    private static final int kGetIpv4 = 0x47304002;
    private static final int kGetIpv6 = 0x47100004;
    private static final int kGetWan = 0x47301049;
    private static final String kLan4 = "1 192.168.1.0 255.255.255.0  br0 ";
    private static final String kShipped4 = "2 10.20.0.0 255.255.0.0 203.0.113.1  wan1.1.ip1";
    private static final String kLan6 = "1 fd00:1::/64  br0";
    private static final String kShipped6 = "2 2001:db8:100::/48 2001:db8:0:1::1 wan1.1.ip1";

    private static int add4(String destination, String mask, String gateway, String alias) {
        return Wan.kRoutes.addLayer3ForwardingStatic(destination, mask, gateway, alias);
    }

    private static int add6(String prefix, String nextHop, String alias) {
        return Wan.kRoutes.addIPv6Layer3ForwardingStatic(prefix, nextHop, alias);
    }

    private static String static4() {
        return Wan.kQuery.getLayer3ForwardingStaticConfigInfo();
    }

    private static String static6() {
        return Wan.kQuery.getIPv6Layer3ForwardingStaticConfigInfo();
    }

    private static String shown4(String alias) {
        return Lan.list(Wan.ipv4Route(2, "10.20.0.0", "255.255.0.0", "203.0.113.1", alias));
    }

    private static String shown6(String alias) {
        return Lan.list(Wan.ipv6Route(2, "2001:db8:100::/48", "2001:db8:0:1::1", alias));
    }

    private static void assertAsShipped() {
        assertEquals(List.of(kLan4, kShipped4), Home.now().ipv4Routes());
        assertEquals(List.of(kLan6, kShipped6), Home.now().ipv6Routes());
    }

    // ---- adding ----

    @Test
    void theLanBridgeIsRefusedUnasked() {
        Gateway.assertAsksNobody(() -> {
            for (String bridge : new String[] {"br0", "BR0", "Br0", "", null}) {
                assertEquals(-1, add4("10.30.0.0", "255.255.0.0", "203.0.113.1", bridge), bridge);
                assertEquals(-1, add6("2001:db8::/32", "fe80::1", bridge), bridge);
            }
        });
    }

    @Test
    void addressesHaveOneToFifteenCharacters() {
        Gateway.assertAsksNobody(() -> {
            for (String bad : new String[] {null, "", "192.168.100.1280"}) {
                assertEquals(-1, add4(bad, "255.255.0.0", null, Wan.kOtherName), bad);
                assertEquals(-1, add4("10.30.0.0", bad, null, Wan.kOtherName), bad);
            }
        });
        assertEquals(3, add4("192.168.100.128", "255.255.255.128", "", Wan.kOtherName));
        // What a gateway has more is cut off.
        assertEquals(4, add4("10.40.0.0", "255.255.0.0", "192.168.100.1009", Wan.kOtherName));
        assertEquals(List.of(kLan4, kShipped4, "3 192.168.100.128 255.255.255.128   wan1.2.ip1",
                             "4 10.40.0.0 255.255.0.0 192.168.100.100  wan1.2.ip1"),
                Home.now().ipv4Routes());
    }

    @Test
    void prefixesThatCannotBeReadAreRefusedUnasked() {
        Gateway.assertAsksNobody(() -> {
            for (String bad : new String[] {null, "", "/", "2001:db8::", "2001:db8::/", "/48",
                         "x/48", "2001:db8::/x", "2001:db8::/-1", "2001:db8::/4294967296",
                         "10.0.0.0/8", "2001:db8:::/48", "::/0", "0:0::0/0", "::/00",
                         "0:0:0:0:0:0:0:0/0", "2001:db8::/48" + " ".repeat(51)}) {
                assertEquals(-1, add6(bad, "fe80::1", Wan.kOtherName), bad);
            }
        });
        assertAsShipped();
    }

    @Test
    void prefixesThatCanBeReadAreSent() {
        assertEquals(3, add6("2001:db8::/32", null, Wan.kOtherName));
        assertEquals(4, add6("::/1", "", Wan.kOtherName));
        assertEquals(5, add6("::1/128", "fe80::1", Wan.kManagementName));
        // The gateway takes no more than 128 bits, nor an address with something behind it.
        assertEquals(-1, add6("2001:db8::/129", null, Wan.kOtherName));
        assertEquals(-1, add6("2001:db8::1zz/128", null, Wan.kOtherName));
        assertEquals(-1, add6("2001:db8::1/128", "next hop", Wan.kOtherName));
        assertEquals(List.of(kLan6, kShipped6, "3 2001:db8::/32  wan1.2.ip1", "4 ::/1  wan1.2.ip1",
                             "5 ::1/128 fe80::1 wan1.4.ppp1"),
                Home.now().ipv6Routes());
    }

    @Test
    void theAliasNamesTheConnection() {
        assertEquals(3, add4("10.30.0.0", "255.255.0.0", null, "3_iptv_b_vid_300"));
        assertEquals(3, add6("2001:db8:3::/48", null, "4_TR069_r_VID_46"));
        for (String unknown : new String[] {"wan1.1.ip1", "1_INTERNET", "1_INTERNET_R_VID_1000"}) {
            assertEquals(-1, add4("10.31.0.0", "255.255.0.0", null, unknown), unknown);
            assertEquals(-1, add6("2001:db8:4::/48", null, unknown), unknown);
        }
        assertEquals("3 10.30.0.0 255.255.0.0   wan1.3.ip1", Home.now().ipv4Routes().get(2));
        assertEquals("3 2001:db8:3::/48  wan1.4.ppp1", Home.now().ipv6Routes().get(2));
        // Not even a known one is looked for in a list of more than eight.
        Gateway.fault(Gateway.kGulm, WanMethod.WAN_LIST.rpc(), "--fill", "0xFF", "--times", "1");
        assertEquals(-1, add4("10.31.0.0", "255.255.0.0", null, Wan.kOtherName));
    }

    @Test
    void theGatewayChecksTheAddresses() {
        assertEquals(-1, add4("10.20.0.0", "255.255.0.0", "203.0.113.1", Wan.kInternetName));
        assertEquals(-1, add4("10.30.0.1", "255.255.0.0", null, Wan.kOtherName));
        assertEquals(-1, add4("10.30.0.0", "255.0.255.0", null, Wan.kOtherName));
        assertEquals(-1, add4("ten", "255.255.0.0", null, Wan.kOtherName));
        assertEquals(-1, add4("10.30.0.0", "255.255.0.0", "gateway", Wan.kOtherName));
        assertAsShipped();
    }

    // ---- deleting ----

    @Test
    void aRouteIsDeletedOnceAndTheLansOwnNever() {
        for (int iId : new int[] {0, 1, 3, -1}) {
            assertEquals(-1, Wan.kRoutes.deleteLayer3ForwardingStatic(iId));
            assertEquals(-1, Wan.kRoutes.deleteIPv6Layer3ForwardingStatic(iId));
        }
        assertAsShipped();
        assertEquals(0, Wan.kRoutes.deleteLayer3ForwardingStatic(2));
        assertEquals(-1, Wan.kRoutes.deleteLayer3ForwardingStatic(2));
        assertEquals(Lan.list(), static4());
        WanMethod.IPV6_STATIC.assertSucceeds();
        assertEquals(0, Wan.kRoutes.deleteIPv6Layer3ForwardingStatic(2));
        assertEquals(-1, Wan.kRoutes.deleteIPv6Layer3ForwardingStatic(2));
        assertEquals(Lan.list(), static6());
        assertEquals(Lan.list(), Wan.kQuery.getIPv6Layer3ForwardingCurrent());
        assertEquals(List.of(kLan4), Home.now().ipv4Routes());
        assertEquals(List.of(kLan6), Home.now().ipv6Routes());
    }

    @ParameterizedTest
    @ValueSource(strings = {Gateway.kOsgiProxy, Gateway.kGulm})
    void nothingChangesWhenAProcessIsAway(String process) {
        Gateway.kill(process);
        try {
            assertEquals(-1, add4("10.30.0.0", "255.255.0.0", null, Wan.kOtherName));
            assertEquals(-1, add6("2001:db8::/32", null, Wan.kOtherName));
            assertEquals(-1, Wan.kRoutes.deleteLayer3ForwardingStatic(2));
            assertEquals(-1, Wan.kRoutes.deleteIPv6Layer3ForwardingStatic(2));
        } finally {
            Gateway.start(process);
        }
        assertAsShipped();
    }

    // ---- lists ----

    private static void connect(String connection) {
        Gateway.set("routes.ipv4.1.connection", connection);
        Gateway.set("routes.ipv6.1.interface", connection);
    }

    private static void assertShown(String alias) {
        assertEquals(shown4(alias), static4());
        assertEquals(shown6(alias), static6());
    }

    private static void assertNotShown(String why) {
        assertEquals(Wan.kFailed, static4(), why);
        assertEquals(Wan.kFailed, static6(), why);
    }

    @Test
    void connectionNamesAreReadTheirOwnWay() {
        // Eight bits are left of the last number; what is no WAN connection is shown as it is.
        String[][] shown = {{"wan1.1.ip257", Wan.kInternetName},
                {"WAN1.4.PPP1", Wan.kManagementName}, {"wan1.2.Ip513", Wan.kOtherName},
                {"bridge", "bridge"}};
        for (String[] pair : shown) {
            connect(pair[0]);
            assertShown(pair[1]);
        }
        for (String bad : new String[] {"ppp0", "wan1.1.ip9", "wan1.1.ip0", "wan1.1.ip", "wan1.1.1",
                     "wan1.ip1", "wan.1.ip1", "wan1.1.atm1", "wan1.1.ppp1", "wan1.9.ip1"}) {
            connect(bad);
            assertNotShown(bad);
        }
    }

    @Test
    void anAliasOfUpTo127CharactersIsShown() {
        Gateway.set("wan.0.name", "n".repeat(127));
        assertShown("n".repeat(127));
        Gateway.set("wan.0.name", "n".repeat(128));
        assertNotShown("128");
    }

    @Test
    void whatIsNoStaticRouteIsLeftOut() {
        Gateway.set("routes.ipv4.1.static", "false");
        assertEquals(Lan.list(), static4());
        Gateway.set("routes.ipv4.1.static", "true");
        Gateway.set("routes.ipv4.1.lanInterface", "BR0");
        assertEquals(Lan.list(), static4());
        Gateway.set("routes.ipv4.1.lanInterface", "lan2");
        WanMethod.IPV4_STATIC.assertSucceeds();

        for (String all : new String[] {"::/0", "0::0/0"}) {
            Gateway.set("routes.ipv6.1.prefix", all);
            assertEquals(Lan.list(), static6());
        }
        Gateway.set("routes.ipv6.1.prefix", "somewhere");
        assertEquals(Wan.kFailed, static6());
        Gateway.set("routes.ipv6.1.interface", "Br0");
        assertEquals(Lan.list(), static6(), "nobody reads the prefix of the LAN's own");
    }

    @Test
    void aRouteThatCannotBeFetchedFailsItsList() {
        for (int iRpc : new int[] {kGetIpv4, kGetIpv6, kGetWan}) {
            Gateway.fault(Gateway.kGulm, iRpc, "--code", "5");
        }
        assertNotShown("refused");
        Gateway.clear();
        Gateway.refuseNth(Gateway.kGulm, kGetIpv4, 2, WanMethod.IPV4_STATIC.rpc());
        assertEquals(Wan.kFailed, static4());
        WanMethod.IPV4_STATIC.assertSucceeds();
        Gateway.fault(Gateway.kGulm, kGetWan, "--code", "5");
        assertEquals(Wan.kFailed, Wan.kQuery.getLayer3ForwardingCurrent());
        assertEquals(Wan.kFailed, Wan.kQuery.getIPv6Layer3ForwardingCurrent());
    }

    @Test
    @Tag("long")
    void fullTablesAreListedWhole() {
        int iMost = 192;
        Home.startOverWith(home -> {
            JsonObject routes = home.getAsJsonObject("routes");
            for (String family : new String[] {"ipv4", "ipv6"}) {
                JsonArray list = routes.getAsJsonArray(family);
                JsonObject model = list.get(1).getAsJsonObject();
                for (int i = 3; i <= iMost; i++) {
                    JsonObject route = model.deepCopy();
                    route.addProperty("id", i);
                    route.addProperty("destination", "10." + i + ".0.0");
                    route.addProperty("prefix", "2001:db8:" + i + "::/48");
                    route.remove(family.equals("ipv4") ? "prefix" : "destination");
                    list.add(route);
                }
            }
        });
        List<String> ipv4 = new ArrayList<>();
        List<String> ipv6 = new ArrayList<>();
        for (int i = 2; i <= iMost; i++) {
            ipv4.add(Wan.ipv4Route(i, "10." + (i == 2 ? 20 : i) + ".0.0", "255.255.0.0",
                    "203.0.113.1", Wan.kInternetName));
            ipv6.add(Wan.ipv6Route(i, "2001:db8:" + (i == 2 ? 100 : i) + "::/48", "2001:db8:0:1::1",
                    Wan.kInternetName));
        }
        assertEquals(Lan.list(ipv4.toArray(new String[0])), static4());
        assertEquals(Lan.list(ipv6.toArray(new String[0])), static6());
        assertEquals(-1, add4("192.0.2.0", "255.255.255.0", null, Wan.kOtherName), "no room");
        assertEquals(-1, add6("2001:db8::/32", null, Wan.kOtherName), "no room");
        assertEquals(iMost, Home.answered(Wan.kQuery.getLayer3ForwardingCurrent(), "Index").size());
    }

    @Test
    void withoutRoutesTheListsAreEmpty() {
        Home.startOverWith(home -> {
            home.getAsJsonObject("routes").add("ipv4", new JsonArray());
            home.getAsJsonObject("routes").add("ipv6", new JsonArray());
            home.add("wan", new JsonArray());
        });
        assertEquals(Lan.list(), static4());
        assertEquals(Lan.list(), static6());
        assertEquals(Lan.list(), Wan.kQuery.getLayer3ForwardingCurrent());
        assertEquals(Lan.list(), Wan.kQuery.getIPv6Layer3ForwardingCurrent());
    }

    @Test
    void theDefaultRouteIsInForceThoughNobodySetIt() {
        assertEquals(0, Wan.set(Wan.kManagement, "IPv6DefaultGateway", "fe80::4"));
        assertEquals(Lan.list(Wan.ipv6Route(1, "2001:db8:100::/48", "2001:db8:0:1::1",
                                      Wan.kInternetName),
                             Wan.ipv6Route(2, "::/0", "fe80::4", Wan.kManagementName)),
                Wan.kQuery.getIPv6Layer3ForwardingCurrent());
        WanMethod.IPV6_STATIC.assertSucceeds();
        Gateway.ctl("wan", "set", Wan.kInternetName, "down");
        assertEquals(Lan.list(Wan.ipv4Route(
                             1, "0.0.0.0", "0.0.0.0", "198.51.100.1", Wan.kOtherName)),
                Wan.kQuery.getLayer3ForwardingCurrent());
    }
}
