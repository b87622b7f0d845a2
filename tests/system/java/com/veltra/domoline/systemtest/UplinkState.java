package com.veltra.domoline.systemtest;

import static org.junit.jupiter.api.Assertions.assertEquals;

import java.util.ArrayList;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;
import java.util.function.BiFunction;

/** What a test knows of the uplink, and what therefore every list and every owner must tell. */
final class UplinkState {
    /** A route: its id, the connection that it leads through, and its texts. */
    private static final class Route {
        final int iId;
        final String[] texts;
        final int iWan;

        Route(int iId, int iWan, String... texts) {
            this.iId = iId;
            this.iWan = iWan;
            this.texts = texts;
        }
    }

    /** Of each connection, by its index. */
    final Map<Integer, String> names = new LinkedHashMap<>();
    final Map<Integer, String> ifNames = new LinkedHashMap<>();
    final Map<Integer, String> statuses = new LinkedHashMap<>();
    final List<Route> ipv4 = new ArrayList<>();
    final List<Route> ipv6 = new ArrayList<>();
    /** The connection that the default route leads through, and its gateway. */
    int iWayOut = Wan.kInternet;
    String gateway = "203.0.113.1";
    /** The connection that is down; 0 when all are up. */
    int iDown;
    int iInternet = Wan.kInternet;
    /** What the four ports are bound to, and then the SSIDs 1, 2 and 5. */
    final String[] bound = {"", "", "", "", "", "", ""};
    List<String> ssids = List.of();
    String iptv = "IPTV_BUSSINESS_OK";
    List<String> mappings = List.of("1 " + Wan.kInternet);

    void connect(int iWan, String name, String ifName) {
        names.put(iWan, name);
        ifNames.put(iWan, ifName);
    }

    void disconnect(int iWan) {
        names.remove(iWan);
        statuses.remove(iWan);
        ipv4.removeIf(route -> route.iWan == iWan);
        ipv6.removeIf(route -> route.iWan == iWan);
    }

    void addIpv4(int iId, int iWan, String destination, String mask, String gateway) {
        ipv4.add(new Route(iId, iWan, destination, mask, gateway));
    }

    void addIpv6(int iId, int iWan, String prefix, String nextHop) {
        ipv6.add(new Route(iId, iWan, prefix, nextHop));
    }

    // ---- what the lists must say ----

    private String connectionList() {
        List<String> rows = new ArrayList<>();
        names.forEach((iWan, name) -> rows.add(Wan.entry(iWan, name)));
        return Lan.list(rows.toArray(new String[0]));
    }

    private String ipv4Row(int iIndex, Route route) {
        return Wan.ipv4Route(
                iIndex, route.texts[0], route.texts[1], route.texts[2], names.get(route.iWan));
    }

    private String ipv6Row(int iIndex, Route route) {
        return Wan.ipv6Route(iIndex, route.texts[0], route.texts[1], names.get(route.iWan));
    }

    /** The routes through connections that are up, counted, or all of them with their ids. */
    private List<String> routeRows(
            List<Route> routes, boolean bCurrent, BiFunction<Integer, Route, String> row) {
        List<String> rows = new ArrayList<>();
        for (Route route : routes) {
            if (!bCurrent) {
                rows.add(row.apply(route.iId, route));
            } else if (route.iWan != iDown) {
                rows.add(row.apply(rows.size() + 1, route));
            }
        }
        return rows;
    }

    private String ipv4List(boolean bCurrent) {
        List<String> rows = routeRows(ipv4, bCurrent, this::ipv4Row);
        if (bCurrent && iWayOut != 0) {
            rows.add(Wan.ipv4Route(
                    rows.size() + 1, "0.0.0.0", "0.0.0.0", gateway, names.get(iWayOut)));
        }
        return Lan.list(rows.toArray(new String[0]));
    }

    private String ipv6List(boolean bCurrent) {
        return Lan.list(routeRows(ipv6, bCurrent, this::ipv6Row).toArray(new String[0]));
    }

    private String bindingList() {
        List<String> rows = new ArrayList<>();
        for (int i = 0; i < 4; i++) {
            if (!bound[i].isEmpty()) {
                rows.add(Wan.bound("LAN" + (i + 1), bound[i]));
            }
        }
        rows.add(Wan.bound("SSID1", bound[4]));
        rows.add(Wan.bound("SSID2", bound[5]));
        rows.add(Wan.bound("SSID5", bound[6]));
        return Lan.list(rows.toArray(new String[0]));
    }

    // ---- what the owners must hold ----

    private List<String> connectionRows() {
        List<String> rows = new ArrayList<>();
        names.forEach((iWan, name) -> rows.add(iWan + " " + name));
        return rows;
    }

    private List<String> deviceRows() {
        List<String> rows = new ArrayList<>();
        names.forEach((iWan, name) -> rows.add("1 " + (iWan >> 12 & 0xFF)));
        return rows;
    }

    private List<String> ipv4Rows() {
        List<String> rows = new ArrayList<>(List.of("1 192.168.1.0 255.255.255.0  br0 "));
        ipv4.forEach(route -> rows.add(route.iId + " " + String.join(" ", route.texts) + "  "
                + ifNames.get(route.iWan)));
        return rows;
    }

    private List<String> ipv6Rows() {
        List<String> rows = new ArrayList<>(List.of("1 fd00:1::/64  br0"));
        ipv6.forEach(route -> rows.add(
                route.iId + " " + String.join(" ", route.texts) + " " + ifNames.get(route.iWan)));
        return rows;
    }

    private List<String> portRows() {
        List<String> rows = new ArrayList<>();
        for (int i = 0; i < 4; i++) {
            rows.add((i + 1) + (bound[i].isEmpty() ? " 0 " : " 1 ") + bound[i]);
        }
        return rows;
    }

    void assertAgrees(String when) {
        Home home = Home.now();
        assertEquals(connectionList(), Wan.kAccess.getWANIfList(), when);
        assertEquals(connectionRows(), home.connections(), when);
        assertEquals(deviceRows(), home.connectionDevices(), when);
        assertEquals(iInternet, Wan.kAccess.getInternetWANIndex(), when);
        statuses.forEach((iWan, status)
                                 -> assertEquals(status, Wan.kAccess.getWANIfStatus(iWan), when));
        assertEquals(ipv4List(false), Wan.kQuery.getLayer3ForwardingStaticConfigInfo(), when);
        assertEquals(ipv4List(true), Wan.kQuery.getLayer3ForwardingCurrent(), when);
        assertEquals(ipv4Rows(), home.ipv4Routes(), when);
        assertEquals(ipv6List(false), Wan.kQuery.getIPv6Layer3ForwardingStaticConfigInfo(), when);
        assertEquals(ipv6List(true), Wan.kQuery.getIPv6Layer3ForwardingCurrent(), when);
        assertEquals(ipv6Rows(), home.ipv6Routes(), when);
        assertEquals(bindingList(), Wan.kQuery.getVLANBindInfo(), when);
        assertEquals(portRows(), home.ports(), when);
        assertEquals(ssids, home.ssids(), when);
        assertEquals(iptv, Wan.kQuery.getIPTVStatus(), when);
        assertEquals(mappings, home.list("portMapping", "id", "wanIndex"), when);
    }
}
