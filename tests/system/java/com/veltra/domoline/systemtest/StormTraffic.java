package com.veltra.domoline.systemtest;

import com.google.gson.JsonArray;
import com.google.gson.JsonElement;
import com.google.gson.JsonObject;
import java.util.HashMap;
import java.util.List;
import java.util.Map;
import java.util.Set;
import java.util.TreeMap;
import java.util.TreeSet;

/** Traffic in a storm: monitored addresses, rules of the three kinds, flows. */
final class StormTraffic {
    private StormTraffic() {}

    static List<StormPart> parts() {
        return List.of(new Monitored(), new Rules(RuleKind.MIRROR), new Rules(RuleKind.FORWARD),
                new Rules(RuleKind.HTTP), new Flows());
    }

    private static final class Monitored extends StormPart {
        private static final int kBundles = 4;
        private static final int kAddresses = 10;

        /** app_m may still have the notice of the last change before it. */
        private boolean bNoticed;

        Monitored() {
            super("monitored ");
        }

        @Override
        void act() {
            if (bNoticed) {
                carriers(Gateway.kAppM).end();
                bNoticed = false;
            }
            String bundle = "com.example.meter-" + roll(kBundles);
            boolean bAdd = oneIn(2);
            Set<String> addresses = new TreeSet<>();
            Effect effect = new Effect();
            for (int i = 1 + roll(4); i > 0; i--) {
                String address = "198.51.100." + roll(kAddresses);
                String key = prefix + bundle + " " + address;
                boolean bThere = isCertain(key) && !model().value(key).equals(HomeModel.kAbsent);
                if (isCertain(key) && bThere != bAdd && addresses.add(address)) {
                    effect.and(key, bAdd ? HomeModel.kPresent : HomeModel.kAbsent);
                }
            }
            String[] them = addresses.toArray(new String[0]);
            if (them.length > 0) {
                String name = (bAdd ? "add" : "delete") + "TrafficMonitoringDestAddress";
                carriers(Gateway.kAppM).begin();
                bNoticed = true;
                change(name, effect,
                        ()
                                -> isDone(name,
                                        carrying(Gateway.kGulm,
                                                ()
                                                        -> Natives.number(Traffic.kMonitor, name,
                                                                them, bundle))));
            }
        }

        private Map<String, String> rows(JsonArray list, String bundle, String addresses) {
            Map<String, String> rows = new TreeMap<>();
            for (JsonElement entry : list) {
                for (JsonElement address : entry.getAsJsonObject().getAsJsonArray(addresses)) {
                    put(rows, prefix + text(entry, bundle) + " " + address.getAsString(),
                            HomeModel.kPresent);
                }
            }
            return rows;
        }

        @Override
        Map<String, String> held(JsonObject home) {
            return rows(home.getAsJsonArray("monitoring"), "bundle", "addresses");
        }

        @Override
        Map<String, String> told() {
            String registry = carrying(Gateway.kGulm,
                    () -> Natives.text(Traffic.kMonitor, "getTrafficMonitoringDestAddressInfo"));
            return rows(answer(registry).getAsJsonArray("List"), "BundleName", "DestAddressList");
        }
    }

    private enum RuleKind {
        MIRROR("mirrorRules", Traffic.kMirror, "MirrorRule", "getMirroRuleInfo",
                "{'direction':'UP','protocol':'TCP','hostMac':'','toIp':'192.168.1.100',"
                        + "'toPort':'9000'}") {
            @Override
            Object[] rule(String address, int iPort) {
                return new Object[] {
                        address, String.valueOf(iPort), "UP", "TCP", null, "192.168.1.100", 9000};
            }
        },
        FORWARD("forwardRules", Traffic.kForward, "ForwardRule", "getForwardRuleInfo",
                "{'protocol':'UDP','hostMac':'','toIp':'192.168.1.100','toPort':'9000'}") {
            @Override
            Object[] rule(String address, int iPort) {
                return new Object[] {
                        address, String.valueOf(iPort), "UDP", null, "192.168.1.100", 9000};
            }
        },
        HTTP("httpRules", Traffic.kHttp, "HTTPTrafficProcessRule", "getHTTPTrafficProcessRuleInfo",
                "{'direction':'DOWN','hostMac':'','methods':'GET','statusCodes':'200',"
                        + "'headers':'Host'}") {
            @Override
            Object[] rule(String address, int iPort) {
                return new Object[] {address, iPort, "DOWN", null, Lan.macs("GET"), Lan.macs("200"),
                        Lan.macs("Host")};
            }
        };

        final String section;
        final Object service;
        final String deleteAll;
        private final String name;
        private final String list;
        /** What {@link #rule} gives each of them. */
        final String always;

        RuleKind(String section, Object service, String name, String list, String always) {
            this.section = section;
            this.service = service;
            this.name = name;
            this.list = list;
            this.always = always;
            deleteAll = "deleteAll" + name;
        }

        abstract Object[] rule(String address, int iPort);

        int add(String address, int iPort) {
            return Natives.number(service, "add" + name, rule(address, iPort));
        }

        int delete(int iNumber) {
            return Natives.number(service, "delete" + name, iNumber);
        }

        int deleteAll() {
            return Natives.number(service, deleteAll);
        }

        String list() {
            return Natives.text(service, list);
        }
    }

    private static final class Rules extends StormPart {
        private static final int kRules = 24;

        private final RuleKind kind;
        private final Map<String, Integer> numbers = new HashMap<>();

        Rules(RuleKind kind) {
            super(kind.name() + " ");
            this.kind = kind;
        }

        @Override
        void act() {
            if (rarely(30, kind.service, kind.deleteAll) && model().isAllCertain(prefix)) {
                Effect all = new Effect();
                model().keys(prefix, true).forEach(key -> all.and(key, HomeModel.kAbsent));
                holdBackUnless(change("deleting all rules", all, () -> kind.deleteAll() == 0));
                return;
            }
            String address = "203.0.113." + roll(kRules);
            String key = prefix + address;
            if (!isCertain(key)) {
                return;
            }
            if (oneIn(12)) {
                refused("deleting a rule that isn't there", -1, () -> kind.delete(100000));
            } else if (model().value(key).equals(HomeModel.kAbsent)) {
                int iPort = 1 + roll(65535);
                int[] iNumber = {-1};
                if (change("adding a rule", Effect.set(key, String.valueOf(iPort)),
                            () -> (iNumber[0] = kind.add(address, iPort)) > 0)) {
                    numbers.put(key, iNumber[0]);
                }
            } else {
                // This gateway tells how many are left.
                change("deleting a rule", Effect.set(key, HomeModel.kAbsent),
                        () -> kind.delete(numbers.get(key)) >= 0);
            }
        }

        @Override
        void learn(JsonObject home) {
            numbers.clear();
            for (JsonElement rule : home.getAsJsonArray(kind.section)) {
                numbers.put(prefix + text(rule, "remoteAddress"),
                        rule.getAsJsonObject().get("number").getAsInt());
            }
        }

        @Override
        Map<String, String> held(JsonObject home) {
            Map<String, String> rows = new TreeMap<>();
            for (JsonElement rule : home.getAsJsonArray(kind.section)) {
                put(rows, prefix + text(rule, "remoteAddress"),
                        text(rule, "remotePort")
                                + odd(rule, kind.always, "number", "remoteAddress", "remotePort"));
            }
            return rows;
        }

        @Override
        Map<String, String> told() {
            Map<String, String> rows = new TreeMap<>();
            for (JsonElement rule :
                    answer(carrying(Gateway.kGulm, kind::list)).getAsJsonArray("List")) {
                put(rows, prefix + text(rule, "RemoteAddress"), text(rule, "RemotePort"));
            }
            return rows;
        }
    }

    private static final class Flows extends StormPart {
        private static final int kFirst = 21;
        private static final int kFlows = 4;
        private static final int kMembers = 8;
        /** Flows that nobody touches. */
        private static final String kOthers = "flow of others ";

        Flows() {
            super("flow ");
        }

        private String limit(int iFlow) {
            return prefix + iFlow + " limit";
        }

        private String mark(int iFlow) {
            return prefix + iFlow + " mark";
        }

        private String members(int iFlow) {
            return prefix + iFlow + " member ";
        }

        @Override
        void act() {
            int iFlow = kFirst + roll(kFlows);
            switch (roll(5)) {
            case 0: {
                int iUp = roll(10000);
                int iDown = roll(10000);
                change("setSpeedLimitByFlow", limit(iFlow), iUp + " " + iDown,
                        ()
                                -> Natives.number(
                                        Traffic.kFlows, "setSpeedLimitByFlow", iFlow, iUp, iDown));
                break;
            }
            case 1: {
                int iMark = roll(64);
                change("setDSCPRemarkByFlow", mark(iFlow), String.valueOf(iMark),
                        () -> Natives.number(Traffic.kFlows, "setDSCPRemarkByFlow", iFlow, iMark));
                break;
            }
            case 2:
                if (rarely(5, Traffic.kFlows, "deleteAllTrafficFromFlow")
                        && model().isAllCertain(members(iFlow))) {
                    Effect all = new Effect();
                    model().keys(members(iFlow), true)
                            .forEach(key -> all.and(key, HomeModel.kAbsent));
                    holdBackUnless(change("deleteAllTrafficFromFlow", all,
                            ()
                                    -> isDone("deleteAllTrafficFromFlow",
                                            Natives.number(Traffic.kFlows,
                                                    "deleteAllTrafficFromFlow", iFlow))));
                } else {
                    refused("a mark that is none", -1,
                            () -> Natives.number(Traffic.kFlows, "setDSCPRemarkByFlow", iFlow, 64));
                }
                break;
            default:
                changeMember(iFlow);
            }
        }

        private void changeMember(int iFlow) {
            String address = "198.51.100." + roll(kMembers);
            String key = members(iFlow) + address;
            if (!isCertain(key)) {
                return;
            }
            if (model().value(key).equals(HomeModel.kAbsent)) {
                change("addTrafficToFlow", key, "443",
                        ()
                                -> Natives.number(
                                        Traffic.kFlows, "addTrafficToFlow", address, "443", iFlow));
            } else {
                change("deleteTrafficFromFlow", key, HomeModel.kAbsent,
                        ()
                                -> Natives.number(Traffic.kFlows, "deleteTrafficFromFlow", address,
                                        "443", iFlow));
            }
        }

        @Override
        Map<String, String> held(JsonObject home) {
            Map<String, String> rows = new TreeMap<>();
            for (JsonElement flow : home.getAsJsonArray("flows")) {
                int iFlow = flow.getAsJsonObject().get("flow").getAsInt();
                if (iFlow < kFirst || iFlow >= kFirst + kFlows) {
                    put(rows, kOthers + iFlow, flow.toString());
                    continue;
                }
                put(rows, limit(iFlow), text(flow, "upLimit") + " " + text(flow, "downLimit"));
                put(rows, mark(iFlow), text(flow, "dscp"));
                for (JsonElement member : flow.getAsJsonObject().getAsJsonArray("members")) {
                    put(rows, members(iFlow) + text(member, "address"), text(member, "port"));
                }
            }
            // One that nothing is known of has neither limits nor a mark.
            for (int i = kFirst; i < kFirst + kFlows; i++) {
                rows.putIfAbsent(limit(i), "0 0");
                rows.putIfAbsent(mark(i), "0");
            }
            return rows;
        }

        @Override
        Map<String, String> toTell(Map<String, String> held) {
            Map<String, String> rows = new TreeMap<>(held);
            rows.keySet().removeIf(key -> key.startsWith(kOthers));
            return rows;
        }

        @Override
        Map<String, String> told() {
            Map<String, String> rows = new TreeMap<>();
            for (int i = kFirst; i < kFirst + kFlows; i++) {
                JsonObject limits = answer(Natives.text(Traffic.kFlows, "getSpeedLimitByFlow", i));
                put(rows, limit(i), text(limits, "UpSpeed") + " " + text(limits, "DownSpeed"));
                put(rows, mark(i),
                        String.valueOf(Natives.number(Traffic.kFlows, "getDSCPRemarkByFlow", i)));
                // Without members it is the failure.
                int iFlow = i;
                String list = carrying(Gateway.kGulm,
                        () -> Natives.text(Traffic.kFlows, "getTrafficInfoByFlow", iFlow));
                if (!Traffic.kFailed.equals(list)) {
                    for (JsonElement member : answer(list).getAsJsonArray("List")) {
                        put(rows, members(i) + text(member, "RemoteAddress"),
                                text(member, "RemotePort"));
                    }
                }
            }
            return rows;
        }
    }
}
