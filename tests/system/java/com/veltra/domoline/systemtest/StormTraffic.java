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

        Monitored() {
            super("monitored ");
        }

        @Override
        void act() {
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
                change(bAdd ? "monitoring" : "monitoring no longer", effect,
                        ()
                                -> isDone("monitoring",
                                        bAdd ? Traffic.kMonitor.addTrafficMonitoringDestAddress(
                                                them, bundle)
                                             : Traffic.kMonitor.deleteTrafficMonitoringDestAddress(
                                                     them, bundle)));
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
            String registry = Traffic.kMonitor.getTrafficMonitoringDestAddressInfo();
            return rows(answer(registry).getAsJsonArray("List"), "BundleName", "DestAddressList");
        }
    }

    private enum RuleKind {
        MIRROR("mirrorRules") {
            @Override
            int add(String address, int iPort) {
                return Traffic.kMirror.addMirrorRule(
                        address, String.valueOf(iPort), "UP", "TCP", null, "192.168.1.100", 9000);
            }
            @Override
            int delete(int iNumber) {
                return Traffic.kMirror.deleteMirrorRule(iNumber);
            }
            @Override
            int deleteAll() {
                return Traffic.kMirror.deleteAllMirrorRule();
            }
            @Override
            String list() {
                return Traffic.kMirror.getMirroRuleInfo();
            }
        },
        FORWARD("forwardRules") {
            @Override
            int add(String address, int iPort) {
                return Traffic.kForward.addForwardRule(
                        address, String.valueOf(iPort), "UDP", null, "192.168.1.100", 9000);
            }
            @Override
            int delete(int iNumber) {
                return Traffic.kForward.deleteForwardRule(iNumber);
            }
            @Override
            int deleteAll() {
                return Traffic.kForward.deleteAllForwardRule();
            }
            @Override
            String list() {
                return Traffic.kForward.getForwardRuleInfo();
            }
        },
        HTTP("httpRules") {
            @Override
            int add(String address, int iPort) {
                return Traffic.kHttp.addHTTPTrafficProcessRule(address, iPort, "DOWN", null,
                        new String[] {"GET"}, new String[] {"200"}, new String[] {"Host"});
            }
            @Override
            int delete(int iNumber) {
                return Traffic.kHttp.deleteHTTPTrafficProcessRule(iNumber);
            }
            @Override
            int deleteAll() {
                return Traffic.kHttp.deleteAllHTTPTrafficProcessRule();
            }
            @Override
            String list() {
                return Traffic.kHttp.getHTTPTrafficProcessRuleInfo();
            }
        };

        final String section;

        RuleKind(String section) {
            this.section = section;
        }

        abstract int add(String address, int iPort);

        abstract int delete(int iNumber);

        abstract int deleteAll();

        abstract String list();
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
            if (oneIn(30) && model().isAllCertain(prefix)) {
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
                refused("deleting a rule that isn't there", () -> kind.delete(100000));
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

        private Map<String, String> rows(JsonArray list, String address, String port) {
            Map<String, String> rows = new TreeMap<>();
            for (JsonElement rule : list) {
                put(rows, prefix + text(rule, address), text(rule, port));
            }
            return rows;
        }

        @Override
        Map<String, String> held(JsonObject home) {
            return rows(home.getAsJsonArray(kind.section), "remoteAddress", "remotePort");
        }

        @Override
        Map<String, String> told() {
            return rows(answer(kind.list()).getAsJsonArray("List"), "RemoteAddress", "RemotePort");
        }
    }

    private static final class Flows extends StormPart {
        private static final int kFirst = 21;
        private static final int kFlows = 4;
        private static final int kMembers = 8;

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
                        () -> Traffic.kFlows.setSpeedLimitByFlow(iFlow, iUp, iDown));
                break;
            }
            case 1: {
                int iMark = roll(64);
                change("setDSCPRemarkByFlow", mark(iFlow), String.valueOf(iMark),
                        () -> Traffic.kFlows.setDSCPRemarkByFlow(iFlow, iMark));
                break;
            }
            case 2:
                if (oneIn(5) && model().isAllCertain(members(iFlow))) {
                    Effect all = new Effect();
                    model().keys(members(iFlow), true)
                            .forEach(key -> all.and(key, HomeModel.kAbsent));
                    holdBackUnless(change("deleteAllTrafficFromFlow", all,
                            ()
                                    -> isDone("deleteAllTrafficFromFlow",
                                            Traffic.kFlows.deleteAllTrafficFromFlow(iFlow))));
                } else {
                    refused("a mark that is none",
                            () -> Traffic.kFlows.setDSCPRemarkByFlow(iFlow, 64));
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
                        () -> Traffic.kFlows.addTrafficToFlow(address, "443", iFlow));
            } else {
                change("deleteTrafficFromFlow", key, HomeModel.kAbsent,
                        () -> Traffic.kFlows.deleteTrafficFromFlow(address, "443", iFlow));
            }
        }

        @Override
        Map<String, String> held(JsonObject home) {
            Map<String, String> rows = new TreeMap<>();
            for (JsonElement flow : home.getAsJsonArray("flows")) {
                int iFlow = flow.getAsJsonObject().get("flow").getAsInt();
                if (iFlow < kFirst || iFlow >= kFirst + kFlows) {
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
        Map<String, String> told() {
            Map<String, String> rows = new TreeMap<>();
            for (int i = kFirst; i < kFirst + kFlows; i++) {
                JsonObject limits = answer(Traffic.kFlows.getSpeedLimitByFlow(i));
                put(rows, limit(i), text(limits, "UpSpeed") + " " + text(limits, "DownSpeed"));
                put(rows, mark(i), String.valueOf(Traffic.kFlows.getDSCPRemarkByFlow(i)));
                // Without members it is the failure.
                String list = Traffic.kFlows.getTrafficInfoByFlow(i);
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
