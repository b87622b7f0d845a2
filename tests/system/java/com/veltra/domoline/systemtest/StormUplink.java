package com.veltra.domoline.systemtest;

import com.google.gson.JsonElement;
import com.google.gson.JsonObject;
import java.util.HashMap;
import java.util.List;
import java.util.Map;
import java.util.Set;
import java.util.TreeMap;
import java.util.TreeSet;
import java.util.function.IntSupplier;
import java.util.regex.Matcher;
import java.util.regex.Pattern;

/** The uplink in a storm: routes of both kinds, connections, VLAN bindings. */
final class StormUplink {
    private StormUplink() {}

    static List<StormPart> parts() {
        return List.of(new Routes(false), new Routes(true), new Connections(), new Bindings());
    }

    /** Whether a connection is none of those that the home has as it is shipped. */
    static boolean isAdded(JsonElement wan) {
        return StormPart.text(wan, "name").matches(".*_VID_100[0-3]");
    }

    /** Static routes through connections that stay. */
    private static final class Routes extends StormPart {
        private static final int kRoutes = 20;
        private static final String[] kWays = {Wan.kInternetName, Wan.kOtherName};
        /** The LAN's own route, which nobody changes. */
        private static final String kOwn = "own ";

        private final boolean bIpv6;
        private final Map<String, Integer> numbers = new HashMap<>();

        Routes(boolean bIpv6) {
            super(bIpv6 ? "ipv6 " : "ipv4 ");
            this.bIpv6 = bIpv6;
        }

        private String destination(int i) {
            return bIpv6 ? "2001:db8:" + Integer.toHexString(0x200 + i) + "::/48"
                         : "10." + (100 + i) + ".0.0";
        }

        private int add(String destination, String gateway, String way) {
            return bIpv6 ? Natives.number(
                           Wan.kRoutes, "addIPv6Layer3ForwardingStatic", destination, gateway, way)
                         : Natives.number(Wan.kRoutes, "addLayer3ForwardingStatic", destination,
                                 "255.255.0.0", gateway, way);
        }

        private int delete(int iNumber) {
            return bIpv6 ? Natives.number(Wan.kRoutes, "deleteIPv6Layer3ForwardingStatic", iNumber)
                         : Natives.number(Wan.kRoutes, "deleteLayer3ForwardingStatic", iNumber);
        }

        @Override
        void act() {
            String destination = destination(roll(kRoutes));
            String key = prefix + destination;
            if (!isCertain(key)) {
                return;
            }
            if (model().value(key).equals(HomeModel.kAbsent)) {
                String gateway = bIpv6 ? "fe80::" + (1 + roll(9)) : "203.0.113." + (1 + roll(9));
                String way = oneOf(kWays);
                int[] iNumber = {-1};
                boolean bDone = change("adding a route", Effect.set(key, gateway + " " + way),
                        () -> (iNumber[0] = add(destination, gateway, way)) > 0);
                if (bDone) {
                    numbers.put(key, iNumber[0]);
                }
            } else if (oneIn(6)) {
                refused("deleting the LAN's own route", -1, () -> delete(1));
            } else {
                change("deleting a route", key, HomeModel.kAbsent, () -> delete(numbers.get(key)));
            }
        }

        @Override
        void learn(JsonObject home) {
            numbers.clear();
            for (JsonElement route : list(home)) {
                numbers.put(key(route), route.getAsJsonObject().get("id").getAsInt());
            }
        }

        private Iterable<JsonElement> list(JsonObject home) {
            return home.getAsJsonObject("routes").getAsJsonArray(bIpv6 ? "ipv6" : "ipv4");
        }

        private String key(JsonElement route) {
            return prefix + text(route, bIpv6 ? "prefix" : "destination");
        }

        @Override
        Map<String, String> held(JsonObject home) {
            Map<String, String> rows = new TreeMap<>();
            for (JsonElement route : list(home)) {
                String way = text(route, bIpv6 ? "interface" : "connection");
                int iWay = List.of("wan1.1.ip1", "wan1.2.ip1").indexOf(way);
                if (text(route, "id").equals("1")) {
                    put(rows, kOwn + prefix, route.toString());
                } else {
                    put(rows, key(route),
                            text(route, bIpv6 ? "nextHop" : "gateway") + " "
                                    + (iWay < 0 ? way : kWays[iWay]) + odd(route));
                }
            }
            return rows;
        }

        @Override
        Map<String, String> toTell(Map<String, String> held) {
            Map<String, String> rows = new TreeMap<>(held);
            rows.remove(kOwn + prefix);
            return rows;
        }

        private String odd(JsonElement route) {
            return bIpv6 ? odd(route, "{}", "id", "prefix", "nextHop", "interface")
                         : odd(route, "{'static':true,'mask':'255.255.0.0','lanInterface':''}",
                                 "id", "destination", "gateway", "connection");
        }

        @Override
        Map<String, String> told() {
            String query = (bIpv6 ? "getIPv6" : "get") + "Layer3ForwardingStaticConfigInfo";
            Map<String, String> rows = rows(Natives.text(Wan.kQuery, query));
            checkCurrent(rows);
            return rows;
        }

        /** Those in force are the static ones and the way out, as all connections are up. */
        private void checkCurrent(Map<String, String> rows) {
            String query = (bIpv6 ? "getIPv6" : "get") + "Layer3ForwardingCurrent";
            String list = carrying(Gateway.kGulm, () -> Natives.text(Wan.kQuery, query));
            Map<String, String> current = rows(list);
            current.remove(prefix + (bIpv6 ? "::/0" : "0.0.0.0"));
            if (!current.equals(rows)) {
                throw new Disturbed(rows + " are set, and in force are " + current);
            }
        }

        private Map<String, String> rows(String list) {
            Map<String, String> rows = new TreeMap<>();
            for (JsonElement route : answer(list).getAsJsonArray("List")) {
                put(rows, prefix + text(route, bIpv6 ? "DestIPPrefix" : "DestIPAddress"),
                        text(route, bIpv6 ? "NextHop" : "GatewayIPAddress") + " "
                                + text(route, "Interface"));
            }
            return rows;
        }
    }

    /** Connections beside those that the home has as it is shipped, by their VLANs. */
    private static final class Connections extends StormPart {
        private static final int kFirst = 1000;
        private static final int kVlans = 4;
        private static final String kNat = "connection nat ";
        private static final String kDevices = "connection devices";
        private static final Pattern kName = Pattern.compile("\\d+_(.*)_([RB])_VID_(\\d+)");

        private final Map<String, Integer> indexes = new HashMap<>();
        /** A connection and its device come and go in two steps, of which one may have failed. */
        private boolean bDevicesMayStay;
        /** Devices of connections that are gone, as such a failure left them. */
        private Map<String, Integer> leftDevices = Map.of();

        Connections() {
            super("connection ");
        }

        @Override
        void act() {
            String vlan = String.valueOf(kFirst + roll(kVlans));
            String key = prefix + vlan;
            if (!isCertain(key)) {
                return;
            }
            if (model().value(key).equals(HomeModel.kAbsent)) {
                boolean bRouted = oneIn(2);
                String type = oneOf("IP_", "PPPoE_") + (bRouted ? "Routed" : "Bridged");
                int[] iIndex = {-1};
                boolean bDone = change("addWANIf",
                        Effect.set(key, bRouted ? "INTERNET R" : "OTHER B")
                                .and(kNat + vlan, type + (bRouted ? " TRUE" : " unset")),
                        ()
                                -> (iIndex[0] = Natives.number(
                                            Wan.kConfig, "addWANIf", "2", vlan, type))
                                > 0);
                bDevicesMayStay |= !bDone;
                if (bDone) {
                    indexes.put(key, iIndex[0]);
                }
            } else if (oneIn(6)) {
                refused("a VLAN that is taken", -2,
                        () -> Natives.number(Wan.kConfig, "addWANIf", "2", vlan, "IP_Routed"));
            } else if (oneIn(2)) {
                String service = oneOf("VOIP", "OTHER", "INTERNET");
                String nat = oneOf("TRUE", "FALSE");
                change("setWANIf",
                        Effect.map(key, value -> service + value.substring(value.indexOf(' ')))
                                .andMap(kNat + vlan,
                                        value -> value.substring(0, value.indexOf(' ') + 1) + nat),
                        ()
                                -> isDone("setWANIf",
                                        Wan.set(indexes.get(key), "ServiceList", service,
                                                "NATEnabled", nat)));
            } else if (model().isAllCertain(prefix)) {
                // Its connection device goes in a step of its own, which would take a later
                // connection's away if it came that late.
                bDevicesMayStay |= !change("deleteWANIf",
                        Effect.set(key, HomeModel.kAbsent).and(kNat + vlan, HomeModel.kAbsent),
                        ()
                                -> isDone("deleteWANIf",
                                        Natives.number(
                                                Wan.kConfig, "deleteWANIf", indexes.get(key))));
            }
        }

        private void putName(Map<String, String> rows, String name) {
            Matcher parts = kName.matcher(name);
            if (!parts.matches()) {
                throw new AssertionError("a connection's name is " + name);
            }
            put(rows, prefix + parts.group(3), parts.group(1) + " " + parts.group(2));
        }

        @Override
        void learn(JsonObject home) {
            indexes.clear();
            bDevicesMayStay = false;
            leftDevices = leftDevices(home);
            for (JsonElement wan : home.getAsJsonArray("wan")) {
                String name = text(wan, "name");
                indexes.put(prefix + name.substring(name.lastIndexOf('_') + 1),
                        wan.getAsJsonObject().get("index").getAsInt());
            }
        }

        @Override
        Map<String, String> held(JsonObject home) {
            Map<String, String> rows = new TreeMap<>();
            for (JsonElement wan : home.getAsJsonArray("wan")) {
                if (isAdded(wan)) {
                    JsonObject settings = wan.getAsJsonObject().getAsJsonObject("settings");
                    String vlan = text(settings, "VLANIDMark");
                    put(rows, kNat + vlan,
                            text(wan, "connectionType") + " "
                                    + (settings.has("NATEnabled") ? text(settings, "NATEnabled")
                                                                  : "unset")
                                    + oddities(wan, settings));
                }
                putName(rows, text(wan, "name"));
            }
            Map<String, Integer> left = leftDevices(home);
            boolean bMissing = left.values().stream().anyMatch(iLeft -> iLeft < 0);
            boolean bMore = left.entrySet().stream().anyMatch(
                    one -> one.getValue() > leftDevices.getOrDefault(one.getKey(), 0));
            put(rows, kDevices,
                    bMissing || bMore && !bDevicesMayStay ? "more than theirs: " + left : "theirs");
            return rows;
        }

        /** How many more of each device there are than one for all connections that have it. */
        private static Map<String, Integer> leftDevices(JsonObject home) {
            Set<String> needed = new TreeSet<>();
            home.getAsJsonArray("wan").forEach(wan -> needed.add(device(wan)));
            Map<String, Integer> left = new TreeMap<>();
            needed.forEach(one -> left.put(one, -1));
            home.getAsJsonArray("wanDevices")
                    .forEach(one -> left.merge(device(one), 1, Integer::sum));
            left.values().removeIf(iLeft -> iLeft == 0);
            return left;
        }

        private static String device(JsonElement element) {
            return text(element, "deviceInstance") + "." + text(element, "connDeviceInstance");
        }

        private static String oddities(JsonElement wan, JsonObject settings) {
            boolean bRouted = text(wan, "connectionType").endsWith("_Routed");
            return odd(wan,
                           "{'deviceInstance':1,'connInstance':1,'mappingMode':0,'connected':true,"
                                   + "'sentBytes':0,'receivedBytes':0,"
                                   + "'sendBandwidth':100000000,'receiveBandwidth':100000000}",
                           "index", "name", "number", "connDeviceInstance", "kind", "mappingGate",
                           "connectionType", "settings")
                    + odd(settings, bRouted ? "{'VLANMode':'2','IPMode':'1'}" : "{'VLANMode':'2'}",
                            "ServiceList", "VLANIDMark", "NATEnabled");
        }

        /** The settings and the devices are told by nobody. */
        @Override
        Map<String, String> toTell(Map<String, String> held) {
            Map<String, String> rows = new TreeMap<>(held);
            rows.keySet().removeIf(key -> key.startsWith(kNat) || key.equals(kDevices));
            return rows;
        }

        @Override
        Map<String, String> told() {
            Map<String, String> rows = new TreeMap<>();
            for (JsonElement wan :
                    answer(Natives.text(Wan.kAccess, "getWANIfList")).getAsJsonArray("List")) {
                putName(rows, text(wan, "Name"));
            }
            return rows;
        }
    }

    private static final class Bindings extends StormPart {
        private static final String[] kInterfaces = {
                "LAN1", "LAN2", "LAN3", "LAN4", "SSID1", "SSID2", "SSID5"};

        Bindings() {
            super("binding ");
        }

        @Override
        void act() {
            String place = oneOf(kInterfaces);
            if (oneIn(12)) {
                refused("binding what isn't there", -1,
                        ()
                                -> Natives.number(Wan.kBinding, "setVLANBind",
                                        oneOf("LAN9", "SSID9", "USB1"), "1/2"));
                return;
            }
            boolean bSet = oneIn(2);
            String pairs = (1 + roll(4094)) + "/" + (1 + roll(4094)) + ",7/8";
            IntSupplier call = ()
                    -> bSet ? Natives.number(Wan.kBinding, "setVLANBind", place, pairs)
                            : Natives.number(Wan.kBinding, "clearVLANBind", place);
            change(bSet ? "setVLANBind" : "clearVLANBind", prefix + place,
                    bSet ? pairs : HomeModel.kAbsent, call::getAsInt);
        }

        @Override
        Map<String, String> held(JsonObject home) {
            Map<String, String> rows = new TreeMap<>();
            for (JsonElement port : home.getAsJsonArray("lanPorts")) {
                putHeld(rows, "LAN" + text(port, "port"), port);
            }
            for (JsonElement ssid : home.getAsJsonArray("ssidBindings")) {
                putHeld(rows, "SSID" + text(ssid, "ssid"), ssid);
            }
            return rows;
        }

        private void putHeld(Map<String, String> rows, String place, JsonElement bound) {
            String pairs = text(bound, "bind");
            putBound(rows, place,
                    pairs
                            + odd(bound, pairs.isEmpty() ? "{'mode':0}" : "{'mode':1}", "port",
                                    "ssid", "bind"));
        }

        private void putBound(Map<String, String> rows, String place, String pairs) {
            if (!pairs.isEmpty()) {
                put(rows, prefix + place, pairs);
            }
        }

        @Override
        Map<String, String> told() {
            Map<String, String> rows = new TreeMap<>();
            for (JsonElement row :
                    answer(Natives.text(Wan.kQuery, "getVLANBindInfo")).getAsJsonArray("List")) {
                putBound(rows, text(row, "LanInterface"), text(row, "Bind"));
            }
            return rows;
        }
    }
}
