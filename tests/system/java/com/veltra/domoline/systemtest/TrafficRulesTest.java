package com.veltra.domoline.systemtest;

import static org.junit.jupiter.api.Assertions.assertEquals;

import java.util.List;
import java.util.stream.IntStream;
import org.junit.jupiter.api.AfterAll;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Tag;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.extension.ExtendWith;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.EnumSource;

/** Rules that pick out traffic: to copy it, to divert it, and to look into HTTP. */
@ExtendWith(AttachedGateway.class)
class TrafficRulesTest {
    private static final String kMac = "00:11:22:33:44:55";
    private static final String kCollector = "192.168.1.100";
    private static final int kMany = 500;
    private static final int kLongestAddress = 255;

    /** The kinds of rules. */
    private enum Kind {
        MIRROR("mirrorRules", 0x48304191, 0x48304192, TrafficMethod.MIRROR_RULES),
        FORWARD("forwardRules", 0x48304195, 0x48304196, TrafficMethod.FORWARD_RULES),
        HTTP("httpRules", 0x48304198, 0x48304199, TrafficMethod.HTTP_RULES);

        final String section;
        final int iAdd;
        final int iDelete;
        final TrafficMethod list;

        Kind(String section, int iAdd, int iDelete, TrafficMethod list) {
            this.section = section;
            this.iAdd = iAdd;
            this.iDelete = iDelete;
            this.list = list;
        }

        int add(String address, int iPort, String mac) {
            switch (this) {
            case MIRROR:
                return Traffic.kMirror.addMirrorRule(
                        address, String.valueOf(iPort), "UP", "TCP", mac, kCollector, 9000);
            case FORWARD:
                return Traffic.kForward.addForwardRule(
                        address, String.valueOf(iPort), "UDP", mac, kCollector, 9000);
            default:
                return Traffic.kHttp.addHTTPTrafficProcessRule(address, iPort, "DOWN", mac,
                        new String[] {"GET", "POST"}, new String[] {"200"},
                        new String[] {"Host", "User-Agent"});
            }
        }

        /** The entry of a rule that {@link #add} has added. */
        String entry(String address, int iPort, String mac, int iRule) {
            String head = "{ \"RemoteAddress\": \"" + address + "\", \"RemotePort\": \"" + iPort
                    + "\", ";
            String host = "\"HostMAC\": \"" + mac + "\", ";
            switch (this) {
            case MIRROR:
                return head + "\"Direction\": \"UP\", \"Protocol\": \"TCP\", " + host
                        + "\"MirrorToIP\": \"" + kCollector + "\", \"MirrorToPort\": 9000 }";
            case FORWARD:
                return head + "\"Protocol\": \"UDP\", " + host + "\"ForwardToIP\": \"" + kCollector
                        + "\", \"ForwardToPort\": 9000 }";
            default:
                return head + "\"Direction\": \"DOWN\", " + host
                        + "\"MethodList\": [ \"GET,POST\" ], \"StatuscodeList\": [ \"200\" ], "
                        + "\"HeaderList\": [ \"Host,User-Agent\" ], \"RuleInst\": " + iRule + " }";
            }
        }

        int delete(int iRule) {
            switch (this) {
            case MIRROR:
                return Traffic.kMirror.deleteMirrorRule(iRule);
            case FORWARD:
                return Traffic.kForward.deleteForwardRule(iRule);
            default:
                return Traffic.kHttp.deleteHTTPTrafficProcessRule(iRule);
            }
        }

        int deleteAll() {
            switch (this) {
            case MIRROR:
                return Traffic.kMirror.deleteAllMirrorRule();
            case FORWARD:
                return Traffic.kForward.deleteAllForwardRule();
            default:
                return Traffic.kHttp.deleteAllHTTPTrafficProcessRule();
            }
        }

        /** What a deletion answers; this gateway tells how many rules are left. */
        int deleted(int iLeft) {
            return this == HTTP ? 0 : iLeft;
        }

        String rules() {
            return (String) list.call();
        }

        List<String> numbers() {
            return Home.now().list(section, "number");
        }
    }

    @BeforeEach
    void noRules() {
        for (Kind kind : Kind.values()) {
            assertEquals(0, kind.deleteAll());
            kind.list.assertSucceeds();
        }
    }

    @AfterAll
    static void asShipped() {
        Gateway.startOver();
    }

    // ---- what the kinds share ----

    @ParameterizedTest
    @EnumSource(Kind.class)
    void rulesComeAndGo(Kind kind) {
        assertEquals(1, kind.add("203.0.113.80", 80, kMac));
        assertEquals(2, kind.add(null, 443, null));
        assertEquals(3, kind.add("www.example.com", 8080, ""));
        String first = kind.entry("203.0.113.80", 80, kMac, 1);
        String third = kind.entry("www.example.com", 8080, "", 3);
        assertEquals(Lan.list(first, kind.entry("", 443, "", 2), third), kind.rules());
        assertEquals(kind.deleted(2), kind.delete(2));
        assertEquals(Lan.list(first, third), kind.rules());
        for (int iNone : new int[] {0, 2, 4, -2, Integer.MIN_VALUE}) {
            assertEquals(-1, kind.delete(iNone), "rule " + iNone);
        }
        assertEquals(2, kind.add("", 1, kMac), "a number is given again");
        assertEquals(List.of("1", "3", "2"), kind.numbers());
        assertEquals(Lan.list(first, third, kind.entry("", 1, kMac, 2)), kind.rules());
        assertEquals(0, kind.deleteAll());
        assertEquals(Traffic.kNoRules, kind.rules(), "no blanks");
        assertEquals(0, kind.deleteAll(), "nothing to delete");
        assertEquals(List.of(), kind.numbers());
    }

    @ParameterizedTest
    @EnumSource(Kind.class)
    void minusOneStandsForAllRules(Kind kind) {
        assertEquals(1, kind.add("203.0.113.80", 80, kMac));
        assertEquals(2, kind.add("203.0.113.80", 80, kMac), "the same twice");
        assertEquals(0, kind.delete(-1));
        assertEquals(Traffic.kNoRules, kind.rules());
    }

    @Test
    void theKindsAreApart() {
        for (Kind kind : Kind.values()) {
            assertEquals(1, kind.add("203.0.113.80", 80, kMac), kind.name());
        }
        assertEquals(0, Kind.FORWARD.deleteAll());
        assertEquals(Traffic.kNoRules, Kind.FORWARD.rules());
        for (Kind kind : new Kind[] {Kind.MIRROR, Kind.HTTP}) {
            assertEquals(Lan.list(kind.entry("203.0.113.80", 80, kMac, 1)), kind.rules());
        }
    }

    @ParameterizedTest
    @EnumSource(Kind.class)
    void addressesAndHostsHaveTheirLength(Kind kind) {
        String longest = "a".repeat(kLongestAddress);
        Gateway.assertAsksNobody(() -> {
            assertEquals(-1, kind.add(longest + "a", 80, kMac));
            assertEquals(-1, kind.add("\u00E4".repeat(128), 80, kMac), "256 bytes");
            assertEquals(-1, kind.add("203.0.113.80", 80, kMac + "0"));
        });
        assertEquals(Traffic.kNoRules, kind.rules());
        assertEquals(1, kind.add(longest, 80, kMac));
        assertEquals(2, kind.add("\u00E4.example", 80, kMac));
        assertEquals(Lan.list(kind.entry(longest, 80, kMac, 1),
                             kind.entry("\u00E4.example", 80, kMac, 2)),
                kind.rules());
    }

    // ---- many ----

    private static void addMany(Kind kind) {
        for (int i = 1; i <= kMany; i++) {
            assertEquals(i, kind.add("h" + i + ".example.com", 1000 + i, kMac));
        }
    }

    private static String manyEntries(Kind kind, int iFirst) {
        return Lan.list(
                IntStream.rangeClosed(iFirst, kMany)
                        .mapToObj(i -> kind.entry("h" + i + ".example.com", 1000 + i, kMac, i))
                        .toArray(String[] ::new));
    }

    @ParameterizedTest
    @EnumSource(Kind.class)
    @Tag("long")
    void fiveHundredRulesAreListedInOneAnswerAndDeleted(Kind kind) {
        addMany(kind);
        assertEquals(manyEntries(kind, 1), kind.rules());
        for (int i = 1; i <= kMany; i++) {
            assertEquals(kind.deleted(kMany - i), kind.delete(i));
            if (i == kMany / 2) {
                assertEquals(manyEntries(kind, i + 1), kind.rules());
            }
        }
        assertEquals(Traffic.kNoRules, kind.rules());
        addMany(kind);
        assertEquals(manyEntries(kind, 1), kind.rules());
        assertEquals(0, kind.deleteAll());
        assertEquals(Traffic.kNoRules, kind.rules());
        assertEquals(List.of(), kind.numbers());
    }

    // ---- one by one ----

    private static int mirror(String port, String direction, String protocol, String to, int iTo) {
        return Traffic.kMirror.addMirrorRule(null, port, direction, protocol, null, to, iTo);
    }

    @Test
    void aMirrorRuleNeedsMostOfItsTexts() {
        Gateway.assertAsksNobody(() -> {
            for (String none : new String[] {null, ""}) {
                assertEquals(-1, mirror(none, "UP", "TCP", kCollector, 1));
                assertEquals(-1, mirror("80", none, "TCP", kCollector, 1));
                assertEquals(-1, mirror("80", "UP", none, kCollector, 1));
                assertEquals(-1, mirror("80", "UP", "TCP", none, 1));
            }
            assertEquals(-1, mirror("1".repeat(12), "UP", "TCP", kCollector, 1));
            assertEquals(-1, mirror("80", "UPWAR", "TCP", kCollector, 1));
            assertEquals(-1, mirror("80", "UP", "ICMP", kCollector, 1));
            assertEquals(-1, mirror("80", "UP", "TCP", "1".repeat(40), 1));
            for (int iPort : new int[] {100000, -10000, Integer.MAX_VALUE, Integer.MIN_VALUE}) {
                assertEquals(-1, mirror("80", "UP", "TCP", kCollector, iPort), "to " + iPort);
            }
        });
        assertEquals(1, mirror("1".repeat(11), "DOWN", "ALL", "1".repeat(39), 99999));
        assertEquals(Lan.list("{ \"RemoteAddress\": \"\", \"RemotePort\": \"11111111111\","
                             + " \"Direction\": \"DOWN\", \"Protocol\": \"ALL\", \"HostMAC\": \"\","
                             + " \"MirrorToIP\": \"" + "1".repeat(39)
                             + "\", \"MirrorToPort\": 99999 }"),
                Kind.MIRROR.rules());
    }

    private static int forward(String port, String protocol, String to, int iTo) {
        return Traffic.kForward.addForwardRule(null, port, protocol, null, to, iTo);
    }

    @Test
    void aForwardRuleNeedsPortAndProtocol() {
        Gateway.assertAsksNobody(() -> {
            for (String none : new String[] {null, ""}) {
                assertEquals(-1, forward(none, "TCP", kCollector, 1));
                assertEquals(-1, forward("80", none, kCollector, 1));
            }
            assertEquals(-1, forward("1".repeat(12), "TCP", kCollector, 1));
            assertEquals(-1, forward("80", "ICMP", kCollector, 1));
            assertEquals(-1, forward("80", "TCP", "1".repeat(40), 1));
            for (int iPort : new int[] {100000, -10000, Integer.MAX_VALUE, Integer.MIN_VALUE}) {
                assertEquals(-1, forward("80", "TCP", kCollector, iPort), "to " + iPort);
            }
        });
        assertEquals(1, forward("80", "TCP", null, 0));
        assertEquals(2, forward("80", "TCP", "", 99999));
        String head = "{ \"RemoteAddress\": \"\", \"RemotePort\": \"80\", \"Protocol\": \"TCP\","
                + " \"HostMAC\": \"\", \"ForwardToIP\": \"\", \"ForwardToPort\": ";
        assertEquals(Lan.list(head + "0 }", head + "99999 }"), Kind.FORWARD.rules());
    }

    @ParameterizedTest
    @EnumSource(value = Kind.class, names = {"MIRROR", "FORWARD"})
    void aCollectorsPortThatIsNoNumberIsThatOfTheRuleBefore(Kind kind) {
        for (int i = 1; i <= 4; i++) {
            assertEquals(i, kind.add("", i, ""));
        }
        Gateway.set(kind.section + ".0.toPort", "x");
        Gateway.set(kind.section + ".1.toPort", "7000");
        Gateway.set(kind.section + ".2.toPort", "x");
        assertEquals(Lan.list(kind.entry("", 1, "", 1).replace(": 9000", ": 0"),
                             kind.entry("", 2, "", 2).replace(": 9000", ": 7000"),
                             kind.entry("", 3, "", 3).replace(": 9000", ": 7000"),
                             kind.entry("", 4, "", 4)),
                kind.rules());
    }

    private static int http(String direction, String[] methods, String[] codes, String[] headers) {
        return Traffic.kHttp.addHTTPTrafficProcessRule(
                null, 80, direction, null, methods, codes, headers);
    }

    private static String httpEntry(String methods, String codes, String headers, int iRule) {
        return "{ \"RemoteAddress\": \"\", \"RemotePort\": \"80\", \"Direction\": \"UP\","
                + " \"HostMAC\": \"\", \"MethodList\": [ \"" + methods
                + "\" ], \"StatuscodeList\": [ \"" + codes + "\" ], \"HeaderList\": [ \"" + headers
                + "\" ], \"RuleInst\": " + iRule + " }";
    }

    @Test
    void theListsOfAnHttpRuleAreToldAsOneText() {
        String[] get = {"GET"};
        assertEquals(1, http("UP", null, null, null));
        assertEquals(2, http("UP", new String[0], new String[] {null, ""}, new String[] {null}));
        assertEquals(3, http("UP", new String[] {null, "GET", "", "POST", null},
                                new String[] {"200", "404", "500"}, new String[] {"", "Host"}));
        assertEquals(4, http("UP", new String[] {"m".repeat(30), "n".repeat(30)},
                                new String[] {"c".repeat(253)}, new String[] {"h".repeat(253)}));
        Gateway.assertAsksNobody(() -> {
            assertEquals(-1, http(null, get, get, get));
            assertEquals(-1, http("", get, get, get));
            assertEquals(-1, http("UPWAR", get, get, get));
            assertEquals(-1, http("UP", new String[] {"m".repeat(30), "n".repeat(31)}, get, get));
            assertEquals(-1, http("UP", get, new String[] {"c".repeat(254)}, get));
            assertEquals(-1, http("UP", get, get, new String[] {"h".repeat(252), "i"}));
        });
        assertEquals(Lan.list(httpEntry("", "", "", 1), httpEntry("", "", "", 2),
                             httpEntry("GET,POST", "200,404,500", "Host", 3),
                             httpEntry("m".repeat(30) + "," + "n".repeat(30), "c".repeat(253),
                                     "h".repeat(253), 4)),
                Kind.HTTP.rules());
    }

    @Test
    void anHttpRulesPortIsSentAsItIs() {
        int[] ports = {0, -1, 65536, Integer.MAX_VALUE, Integer.MIN_VALUE};
        String[] entries = new String[ports.length];
        for (int i = 0; i < ports.length; i++) {
            assertEquals(i + 1, Kind.HTTP.add("", ports[i], ""));
            entries[i] = Kind.HTTP.entry("", ports[i], "", i + 1);
        }
        assertEquals(Lan.list(entries), Kind.HTTP.rules());
    }

    // ---- failures ----

    @ParameterizedTest
    @EnumSource(Kind.class)
    void withoutTheProcessNothingChanges(Kind kind) {
        assertEquals(1, kind.add("203.0.113.80", 80, kMac));
        Gateway.kill(Gateway.kGulm);
        try {
            assertEquals(-1, kind.add("203.0.113.81", 80, kMac));
            assertEquals(-1, kind.delete(1));
            assertEquals(-1, kind.deleteAll());
            kind.list.assertFails();
        } finally {
            Gateway.start(Gateway.kGulm);
        }
        assertEquals(Lan.list(kind.entry("203.0.113.80", 80, kMac, 1)), kind.rules());
    }

    @ParameterizedTest
    @EnumSource(Kind.class)
    void aRefusalIsAFailure(Kind kind) {
        assertEquals(1, kind.add("203.0.113.80", 80, kMac));
        Gateway.fault(Gateway.kGulm, kind.iAdd, "--code", "7", "--times", "1");
        Gateway.fault(Gateway.kGulm, kind.iDelete, "--code", "7", "--times", "2");
        assertEquals(-1, kind.add("203.0.113.81", 80, kMac));
        assertEquals(-1, kind.delete(1));
        assertEquals(-1, kind.deleteAll());
        assertEquals(Lan.list(kind.entry("203.0.113.80", 80, kMac, 1)), kind.rules());
    }
}
