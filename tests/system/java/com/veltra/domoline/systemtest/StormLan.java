package com.veltra.domoline.systemtest;

import com.google.gson.JsonElement;
import com.google.gson.JsonObject;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.List;
import java.util.Locale;
import java.util.Map;
import java.util.Set;
import java.util.TreeMap;
import java.util.function.UnaryOperator;

/** The LAN in a storm: names, addresses, the MAC filter, limits of hosts, port mappings. */
final class StormLan {
    private StormLan() {}

    static List<StormPart> parts() {
        return List.of(new Names(), new Address(), new Filter(), new Hosts(), new Mappings());
    }

    private static final class Names extends StormPart {
        private static final String[] kHosts = {
                Lan.kPc, Lan.kTv, Lan.kPhone, Lan.kTablet, Lan.kPrinter};

        Names() {
            super("name ");
        }

        @Override
        void act() {
            String name = oneOf("plain", "two words", "K\u00fcche", "a \"quoted\" one", "%s%n",
                                  "back\\slash", "{\"a\":1}")
                    + " " + roll(1000);
            if (oneIn(3)) {
                change("setGatewayName", prefix + "gateway", name,
                        () -> Natives.number(Lan.kNames, "setGatewayName", name));
            } else if (oneIn(20)) {
                refused("a name for nobody", -1,
                        ()
                                -> Natives.number(
                                        Lan.kNames, "setLANHostName", "02:A1:B2:00:20:FF", name));
            } else {
                String mac = oneOf(kHosts);
                change("setLANHostName", prefix + mac, name,
                        () -> Natives.number(Lan.kNames, "setLANHostName", mac, name));
            }
        }

        @Override
        Map<String, String> held(JsonObject home) {
            Map<String, String> rows = new TreeMap<>();
            rows.put(prefix + "gateway", text(home.get("network"), "gatewayName"));
            for (JsonElement host : home.getAsJsonArray("hosts")) {
                put(rows, prefix + text(host, "mac"), text(host, "name"));
            }
            return rows;
        }

        @Override
        Map<String, String> told() {
            Map<String, String> rows = new TreeMap<>();
            String name = Natives.text(Lan.kHosts, "getGatewayName");
            if (name.isEmpty()) {
                throw new Disturbed("the gateway has no name");
            }
            rows.put(prefix + "gateway", name);
            rows.putAll(hosts("getLANHostInfoByMAC", (Object) null));
            Map<String, String> some = hosts("getLANHostInfoByClass", "PHONE");
            some.putAll(hosts("getLANHostInfoByInterface", "LAN2"));
            if (!some.keySet().equals(Set.of(prefix + Lan.kPhone, prefix + Lan.kTv))
                    || !rows.entrySet().containsAll(some.entrySet())) {
                throw new Disturbed(some + " are not among " + rows);
            }
            return rows;
        }

        private Map<String, String> hosts(String query, Object argument) {
            Map<String, String> rows = new TreeMap<>();
            String list = carrying(Gateway.kAppM, () -> Natives.text(Lan.kHosts, query, argument));
            for (JsonElement host : answer(list).getAsJsonArray("List")) {
                put(rows, prefix + text(host, "MAC"), text(host, "DevName"));
            }
            return rows;
        }
    }

    private static final class Address extends StormPart {
        Address() {
            super("address ");
        }

        @Override
        void act() {
            int iNet = roll(200) + 1;
            if (oneIn(2)) {
                String address = "192.168." + iNet + ".1";
                String mask = oneOf("255.255.255.0", "255.255.0.0");
                change("setLANHostIP", prefix + "own", address + " " + mask,
                        () -> Natives.number(Lan.kAddressConfig, "setLANHostIP", address, mask));
            } else if (oneIn(10)) {
                refused("a pool that is no address", -1,
                        ()
                                -> Natives.number(Lan.kAddressConfig, "setLANDHCPInfo", "TRUE",
                                        "pool", "pool", 1));
            } else {
                String status = oneOf("TRUE", "FALSE");
                String first = "192.168." + iNet + ".2";
                String last = "192.168." + iNet + ".99";
                change("setLANDHCPInfo", prefix + "pool",
                        String.join(" ", status, first, last, String.valueOf(iNet * 60)),
                        ()
                                -> Natives.number(Lan.kAddressConfig, "setLANDHCPInfo", status,
                                        first, last, iNet * 60));
            }
        }

        @Override
        Map<String, String> held(JsonObject home) {
            JsonElement lan = home.get("lan");
            return Map.of(prefix + "own", text(lan, "address") + " " + text(lan, "mask"),
                    prefix + "pool",
                    String.join(" ", text(lan, "dhcpEnabled").toUpperCase(Locale.ROOT),
                            text(lan, "dhcpStart"), text(lan, "dhcpEnd"), text(lan, "dhcpLease")));
        }

        @Override
        Map<String, String> told() {
            JsonObject own = answer(Natives.text(Lan.kAddress, "getLANHostIP"));
            JsonObject pool = answer(Natives.text(Lan.kAddress, "getLANDHCPInfo"));
            return Map.of(prefix + "own", text(own, "LANHostIP") + " " + text(own, "LANHostMask"),
                    prefix + "pool",
                    String.join(" ", text(pool, "EnableDHCPServer"), text(pool, "DHCPStartIP"),
                            text(pool, "DHCPEndIP"), text(pool, "DHCPDuration")));
        }
    }

    /** The MAC filter: its mode, and a row for each address and table. */
    private static final class Filter extends StormPart {
        private static final int kMacs = 12;
        private static final String kWired = "filter wired ";
        private static final String[] kTables = {"wired ", "SSID-1 ", "SSID-5 "};
        /** The gateway keeps it out of the filter, unless nobody says so. */
        private static final String kExcluded = "filter SSID-2 ";
        private static final String kMode = "filter mode";
        private static final UnaryOperator<String> kOff = value -> value.charAt(0) + "/0";

        Filter() {
            super("filter ");
        }

        private static String mac(int i) {
            return String.format("02:F1:00:00:00:%02X", i);
        }

        private boolean isCertainEverywhere(String mac) {
            return isCertain(kExcluded + mac) && isCertain(kWired + mac)
                    && isCertain(prefix + "SSID-1 " + mac) && isCertain(prefix + "SSID-5 " + mac);
        }

        @Override
        void act() {
            if (oneIn(6) || !isCertain(kMode)) {
                switchFilter();
                return;
            }
            boolean bTrust = model().value(kMode).startsWith("1");
            if (rarely(15, Lan.kAccess, "deleteLANHostFromBlackList") && !bTrust
                    && model().isAllCertain(prefix)) {
                Effect all = new Effect();
                model().keys(prefix, true)
                        .stream()
                        .filter(key -> !key.equals(kMode))
                        .forEach(key -> all.and(key, HomeModel.kAbsent));
                holdBackUnless(change("emptying the black list", all,
                        ()
                                -> isDone("emptying",
                                        Natives.number(Lan.kAccess, "deleteLANHostFromBlackList",
                                                (Object) null))));
                return;
            }
            // Present in all tables or in none, but for those that a storm has left in some.
            boolean bAdd = oneIn(2);
            List<String> macs = new ArrayList<>();
            for (int i = roll(kMacs), iLeft = 1 + roll(3); i < kMacs && iLeft > 0; i++) {
                boolean bThere = isCertainEverywhere(mac(i))
                        && !model().value(kWired + mac(i)).equals(HomeModel.kAbsent);
                if (isCertainEverywhere(mac(i)) && bThere != bAdd && (bThere || isNowhere(i))) {
                    macs.add(mac(i));
                    iLeft--;
                }
            }
            if (!macs.isEmpty()) {
                changeList(bAdd, bTrust, macs);
            }
        }

        private boolean isNowhere(int i) {
            for (String table : kTables) {
                if (!model().value(prefix + table + mac(i)).equals(HomeModel.kAbsent)) {
                    return false;
                }
            }
            return model().value(kExcluded + mac(i)).equals(HomeModel.kAbsent);
        }

        private void switchFilter() {
            int iMode = roll(3);
            if (iMode == 0) {
                // The mode is kept if the gateway tells it.
                boolean bDone = change("switching the filter off", Effect.map(kMode, kOff),
                        ()
                                -> isDone("setMacFilterMode",
                                        Natives.number(Lan.kAccess, "setMacFilterMode", 0)));
                if (!bDone || !isCalm()) {
                    model().mayHaveChanged(kMode, HomeModel.to("0/0"));
                }
                // What comes late has the mode of when it was asked for.
                if (!bDone) {
                    model().mayHaveChanged(kMode, HomeModel.to("1/0"));
                }
            } else {
                change("setMacFilterMode", kMode, (iMode - 1) + "/1",
                        () -> Natives.number(Lan.kAccess, "setMacFilterMode", iMode));
            }
        }

        private void changeList(boolean bAdd, boolean bTrust, List<String> macs) {
            Effect effect = new Effect();
            String value = bAdd ? HomeModel.kPresent : HomeModel.kAbsent;
            for (String mac : macs) {
                for (String table : kTables) {
                    effect.and(prefix + table + mac, value);
                }
                if (bAdd) {
                    effect.inTrouble(kExcluded + mac, value);
                } else {
                    effect.and(kExcluded + mac, value);
                }
            }
            String[] them = macs.toArray(new String[0]);
            change((bAdd ? "adding " : "deleting ") + macs, effect, () -> {
                if (bAdd) {
                    return isDone("adding",
                            bTrust ? Natives.number(
                                    Lan.kAccess, "addLANHostToTrustList", (Object) them)
                                   : Natives.number(
                                           Lan.kAccess, "addLANHostToBlackList", (Object) them));
                }
                return isDone("deleting",
                        bTrust ? Natives.number(
                                Lan.kAccess, "deleteLANHostFromTrustList", (Object) them)
                               : Natives.number(
                                       Lan.kAccess, "deleteLANHostFromBlackList", (Object) them));
            });
        }

        @Override
        Map<String, String> held(JsonObject home) {
            Map<String, String> rows = new TreeMap<>();
            JsonObject filter = home.getAsJsonObject("macFilter");
            rows.put(kMode, text(filter, "mode") + "/" + text(filter, "status"));
            for (JsonElement entry : filter.getAsJsonArray("lan")) {
                put(rows, kWired + text(entry, "mac"),
                        HomeModel.kPresent
                                + odd(entry, "{'days':'YYYYYNN','start':'00:00','end':'23:59'}",
                                        "id", "mac"));
            }
            for (JsonElement entry : filter.getAsJsonArray("wlan")) {
                put(rows, prefix + text(entry, "ssid") + " " + text(entry, "mac"),
                        HomeModel.kPresent);
            }
            return rows;
        }

        /** 0 while the filter is off, whatever its mode; the lists are told by nobody. */
        @Override
        Map<String, String> toTell(Map<String, String> held) {
            String mode = held.get(kMode);
            if (mode == null) {
                return Map.of();
            }
            boolean bOn = mode.endsWith("/1");
            return Map.of(kMode, String.valueOf(bOn ? 1 + mode.charAt(0) - '0' : 0));
        }

        @Override
        Map<String, String> told() {
            int iMode = Natives.number(Lan.kHosts, "getMacFilterMode");
            if (iMode == -1) {
                throw new Disturbed("the filter's mode is " + iMode);
            }
            looked();
            return Map.of(kMode, String.valueOf(iMode));
        }
    }

    /** Speed limits and the right to use the storage. */
    private static final class Hosts extends StormPart {
        private static final int kMacs = 10;
        private static final String kLimit = "host limit ";
        private static final String kStorage = "host storage ";

        Hosts() {
            super("host ");
        }

        private static String mac(int i) {
            return String.format("02:F2:00:00:00:%02X", i);
        }

        /** The filter's entries, which it reads, come and go. */
        @Override
        boolean canBeOvertaken() {
            return true;
        }

        @Override
        Set<String> mustSucceed() {
            return Set.of("setLANHostSpeedLimit", "barring", "allowing");
        }

        @Override
        void act() {
            String mac = mac(roll(kMacs));
            if (oneIn(2)) {
                int iUp = roll(5) * 100;
                int iDown = iUp * 10;
                if (isCertain(kLimit + mac)) {
                    change("setLANHostSpeedLimit", kLimit + mac, iUp + " " + iDown,
                            ()
                                    -> Natives.number(
                                            Lan.kLimits, "setLANHostSpeedLimit", mac, iUp, iDown));
                }
                return;
            }
            String other = mac(roll(kMacs));
            boolean bBar = oneIn(2);
            if (isCertain(kStorage + mac) && isCertain(kStorage + other)) {
                String value = bBar ? "0" : "1";
                change(bBar ? "barring" : "allowing",
                        Effect.set(kStorage + mac, value).and(kStorage + other, value),
                        ()
                                -> isDone("storage",
                                        bBar ? Natives.number(Lan.kAccess,
                                                "addLANHostToStorageBlackList",
                                                (Object) Lan.macs(mac, other))
                                             : Natives.number(Lan.kAccess,
                                                     "deleteLANHostFromStorageBlackList",
                                                     (Object) Lan.macs(mac, other))));
            }
        }

        @Override
        Map<String, String> held(JsonObject home) {
            Map<String, String> rows = new TreeMap<>();
            for (JsonElement record : home.getAsJsonArray("attachControl")) {
                String mac = text(record, "mac");
                put(rows, kLimit + mac, text(record, "upLimit") + " " + text(record, "downLimit"));
                put(rows, kStorage + mac,
                        text(record, "storageRight")
                                + odd(record, "{'upGuarantee':0,'downGuarantee':0}", "id",
                                        "internetRight", "mac", "upLimit", "downLimit",
                                        "storageRight"));
            }
            for (int i = 0; i < kMacs; i++) {
                rows.putIfAbsent(kLimit + mac(i), "0 0");
                rows.putIfAbsent(kStorage + mac(i), "1");
            }
            return rows;
        }

        /** Nobody tells who is barred from the storage. */
        @Override
        String toldPrefix() {
            return kLimit;
        }

        @Override
        Map<String, String> told() {
            String[] macs = new String[kMacs];
            Arrays.setAll(macs, i -> mac(i));
            Map<String, String> rows = new TreeMap<>();
            int i = 0;
            for (JsonElement limit :
                    answer(Natives.text(Lan.kHosts, "getLANHostSpeedLimitInfo", (Object) macs))
                            .getAsJsonArray("List")) {
                rows.put(kLimit + macs[i++],
                        text(limit, "UpSpeed") + " " + text(limit, "DownSpeed"));
            }
            return rows;
        }
    }

    private static final class Mappings extends StormPart {
        private static final int kPorts = 24;
        private static final int[] kWans = {Lan.kFirst, Lan.kSecond};
        private static final String[] kNames = {Lan.kWanName, Lan.kOtherWanName};

        Mappings() {
            super("mapping ");
        }

        private String key(int iWan, int iPort) {
            return prefix + kNames[iWan] + " " + iPort;
        }

        /** The number of a mapping as the list tells it now; 0 when it doesn't. */
        private int number(int iWan, int iPort) {
            String list = list();
            JsonObject object = Home.object(list);
            if (object.get("Result").getAsInt() == 0) {
                for (JsonElement wan : object.getAsJsonArray("List")) {
                    for (JsonElement mapping : wan.getAsJsonObject().getAsJsonArray("MapList")) {
                        if (text(wan, "WANName").equals(kNames[iWan])
                                && text(mapping, "ExternalPort").equals(String.valueOf(iPort))) {
                            return mapping.getAsJsonObject().get("PortMappingIndex").getAsInt();
                        }
                    }
                }
            }
            return 0;
        }

        private String list() {
            return carrying(Gateway.kGulm, () -> Natives.text(Lan.kMappings, "getPortMappingInfo"));
        }

        private static String value(boolean bOn, int iInternal, String client) {
            return (bOn ? "TRUE " : "FALSE ") + iInternal + " " + client;
        }

        @Override
        void act() {
            int iWan = roll(2);
            int iPort = 9000 + roll(kPorts);
            String key = key(iWan, iPort);
            if (!isCertain(key)) {
                return;
            }
            String now = model().value(key);
            int iInternal = 1 + roll(1000);
            String client = "192.168.1." + (2 + roll(200));
            if (now.equals(HomeModel.kAbsent)) {
                change("addPortMapping", key, value(true, iInternal, client),
                        ()
                                -> Natives.number(Lan.kMappingConfig, "addPortMapping", kWans[iWan],
                                        iPort, iInternal, "TCP", client));
                return;
            }
            if (oneIn(6)) {
                refused("a mapping that is there already", -2,
                        ()
                                -> Natives.number(Lan.kMappingConfig, "addPortMapping", kWans[iWan],
                                        iPort, iInternal, "TCP", client));
                return;
            }
            int iNumber = number(iWan, iPort);
            if (iNumber == 0) {
                return;
            }
            if (oneIn(2)) {
                change("deletePortMapping", key, HomeModel.kAbsent,
                        ()
                                -> Natives.number(Lan.kMappingConfig, "deletePortMapping",
                                        kWans[iWan], iNumber));
            } else {
                boolean bOn = oneIn(2);
                change("setPortMappingSwitch",
                        Effect.map(key,
                                value
                                -> (bOn ? "TRUE" : "FALSE") + value.substring(value.indexOf(' '))),
                        ()
                                -> isDone("setPortMappingSwitch",
                                        Natives.number(Lan.kMappingConfig, "setPortMappingSwitch",
                                                kWans[iWan], iNumber, bOn)));
            }
        }

        @Override
        Map<String, String> held(JsonObject home) {
            Map<String, String> rows = new TreeMap<>();
            for (JsonElement mapping : home.getAsJsonArray("portMapping")) {
                String wan = text(mapping, "wanIndex");
                for (int i = 0; i < kWans.length; i++) {
                    wan = wan.equals(String.valueOf(kWans[i])) ? kNames[i] : wan;
                }
                put(rows, prefix + wan + " " + text(mapping, "externalPort"),
                        value(mapping.getAsJsonObject().get("enabled").getAsBoolean(),
                                mapping.getAsJsonObject().get("internalPort").getAsInt(),
                                text(mapping, "client"))
                                + odd(mapping, "{'protocol':'TCP'}", "id", "wanIndex", "enabled",
                                        "externalPort", "internalPort", "client"));
            }
            return rows;
        }

        @Override
        Map<String, String> told() {
            Map<String, String> rows = new TreeMap<>();
            for (JsonElement wan : answer(list()).getAsJsonArray("List")) {
                for (JsonElement mapping : wan.getAsJsonObject().getAsJsonArray("MapList")) {
                    put(rows, prefix + text(wan, "WANName") + " " + text(mapping, "ExternalPort"),
                            text(mapping, "PortMappingEnabled") + " "
                                    + text(mapping, "InternalPort") + " "
                                    + text(mapping, "InternalClient"));
                }
            }
            return rows;
        }
    }
}
