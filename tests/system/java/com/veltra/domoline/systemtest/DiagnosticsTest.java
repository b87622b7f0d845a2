package com.veltra.domoline.systemtest;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertTrue;

import org.junit.jupiter.api.AfterAll;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.extension.ExtendWith;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.EnumSource;
import org.junit.jupiter.params.provider.ValueSource;

/** Ping, name resolution and traceroute, from the start to the result. */
@ExtendWith(AttachedGateway.class)
class DiagnosticsTest {
    private static final String kHost = "www.example.com";
    private static final String kHostsAddress = "203.0.113.1";
    private static final String kServers = "192.0.2.53,192.0.2.54";
    private static final String kRunning = "{\"Result\":1}";
    private static final int kBusy = 1;
    private static final int kNoConnection = 2;
    /** Long enough for some calls under the emulator. */
    private static final String kMilliseconds = "3000";

    /** The kinds of diagnoses. */
    private enum Diagnosis {
        PING("pingMs", 0x47103088, TrafficMethod.PING, 255, -2),
        DNS("dnsMs", 0x47103096, TrafficMethod.DNS, 255, -1),
        TRACE_ROUTE("traceRouteMs", 0x47103090, TrafficMethod.TRACE_ROUTE, 254, -1);

        final String time;
        final int iStart;
        final TrafficMethod result;
        final int iLongestHost;
        final int iTooLong;

        Diagnosis(String time, int iStart, TrafficMethod result, int iLongestHost, int iTooLong) {
            this.time = time;
            this.iStart = iStart;
            this.result = result;
            this.iLongestHost = iLongestHost;
            this.iTooLong = iTooLong;
        }

        int start(int iWan, String host) {
            switch (this) {
            case PING:
                return Traffic.kPing.startIPPingDiagnostics(iWan, host, null);
            case DNS:
                return Traffic.kDns.startDnsDiagnostics(iWan, host, kServers, null);
            default:
                return Traffic.kTraceRoute.startTraceRouteDiagnostics(iWan, host, null);
            }
        }

        String complete(String host, String address) {
            String head =
                    "{\"Result\":0,\"State\":\"Complete\",\"Host\":\"" + host + "\",";
            switch (this) {
            case PING:
                return head + "\"Address\":\"" + address + "\"," + pings(4, 0, 0);
            case DNS:
                return head + "\"Servers\":\"" + kServers + "\",\"Addresses\":[\"" + address
                        + "\"],\"Parameters\":\"\"}";
            default:
                return head + hops(address) + ",\"Parameters\":\"\"}";
            }
        }

        String answer() {
            return (String) result.call();
        }

        void takes(String milliseconds) {
            Gateway.set("diagnostics." + time, milliseconds);
        }

        /** Waits for the end of one that has been started. */
        String awaitAnswer() {
            Traffic.await(() -> !answer().equals(kRunning));
            return answer();
        }
    }

    private static String pings(int iSent, int iSize, int iDscp) {
        return "\"Sent\":" + iSent + ",\"Received\":" + iSent + ",\"DataBlockSize\":" + iSize
                + ",\"DSCP\":" + iDscp + ",\"MinimumMs\":2,\"AverageMs\":3,\"MaximumMs\":5}";
    }

    private static String hops(String address) {
        return "\"Hops\":[{\"Hop\":1,\"Address\":\"198.51.100.1\",\"Ms\":2},"
                + "{\"Hop\":2,\"Address\":\"198.51.100.2\",\"Ms\":4},"
                + "{\"Hop\":3,\"Address\":\"198.51.100.3\",\"Ms\":6},"
                + "{\"Hop\":4,\"Address\":\"" + address + "\",\"Ms\":8}]";
    }

    /** A process that has just been started has run nothing. */
    @BeforeEach
    void forgetResults() {
        for (Diagnosis diagnosis : Diagnosis.values()) {
            diagnosis.takes("0");
        }
        Gateway.crash(Gateway.kAppM);
    }

    @AfterAll
    static void asShipped() {
        Gateway.startOver();
    }

    // ---- from start to result ----

    @ParameterizedTest
    @EnumSource(Diagnosis.class)
    void aDiagnosisRunsFromItsStartToItsResult(Diagnosis diagnosis) {
        diagnosis.takes(kMilliseconds);
        assertEquals(Traffic.kNotRun, diagnosis.answer());
        long lBegin = System.nanoTime();
        assertEquals(0, diagnosis.start(Wan.kInternet, kHost));
        assertEquals(kRunning, diagnosis.answer());
        assertEquals(kBusy, diagnosis.start(Wan.kInternet, "other.example"));
        assertEquals(diagnosis.complete(kHost, kHostsAddress), diagnosis.awaitAnswer());
        long lMilliseconds = (System.nanoTime() - lBegin) / 1_000_000;
        assertTrue(lMilliseconds >= Integer.parseInt(kMilliseconds) - 1, lMilliseconds + " ms");
        assertEquals(diagnosis.complete(kHost, kHostsAddress), diagnosis.answer(), "once more");
        for (Diagnosis other : Diagnosis.values()) {
            if (other != diagnosis) {
                assertEquals(Traffic.kNotRun, other.answer(), other.name());
            }
        }
    }

    @Test
    void eachKindTellsWhatItFound() {
        assertEquals(0,
                Traffic.kPing.startIPPingDiagnostics(Wan.kInternet, kHost,
                        "{\"NumberOfRepetitions\":4,\"Timeout\":1000,\"DataBlockSize\":64,"
                                + "\"DSCP\":46}"));
        assertEquals("{\"Result\":0,\"State\":\"Complete\",\"Host\":\"www.example.com\","
                        + "\"Address\":\"203.0.113.1\",\"Sent\":4,\"Received\":4,"
                        + "\"DataBlockSize\":64,\"DSCP\":46,\"MinimumMs\":2,\"AverageMs\":3,"
                        + "\"MaximumMs\":5}",
                Traffic.kPing.getIPPingDiagnosticsResult());
        assertEquals(0,
                Traffic.kDns.startDnsDiagnostics(
                        Wan.kInternet, kHost, "192.0.2.53", "retries=2"));
        assertEquals("{\"Result\":0,\"State\":\"Complete\",\"Host\":\"www.example.com\","
                        + "\"Servers\":\"192.0.2.53\",\"Addresses\":[\"203.0.113.1\"],"
                        + "\"Parameters\":\"retries=2\"}",
                Traffic.kDns.getDnsDiagnosticsResult());
        assertEquals(0,
                Traffic.kTraceRoute.startTraceRouteDiagnostics(Wan.kInternet, kHost, "hops=8"));
        assertEquals("{\"Result\":0,\"State\":\"Complete\",\"Host\":\"www.example.com\","
                        + "\"Hops\":[{\"Hop\":1,\"Address\":\"198.51.100.1\",\"Ms\":2},"
                        + "{\"Hop\":2,\"Address\":\"198.51.100.2\",\"Ms\":4},"
                        + "{\"Hop\":3,\"Address\":\"198.51.100.3\",\"Ms\":6},"
                        + "{\"Hop\":4,\"Address\":\"203.0.113.1\",\"Ms\":8}],"
                        + "\"Parameters\":\"hops=8\"}",
                Traffic.kTraceRoute.getTraceRouteDiagnosticsResult());
    }

    @Test
    void theKindsRunBesideEachOther() {
        for (Diagnosis diagnosis : Diagnosis.values()) {
            diagnosis.takes(kMilliseconds);
        }
        for (Diagnosis diagnosis : Diagnosis.values()) {
            assertEquals(0, diagnosis.start(Wan.kInternet, kHost), diagnosis.name());
        }
        for (Diagnosis diagnosis : Diagnosis.values()) {
            assertEquals(kRunning, diagnosis.answer(), diagnosis.name());
        }
        for (Diagnosis diagnosis : Diagnosis.values()) {
            assertEquals(diagnosis.complete(kHost, kHostsAddress), diagnosis.awaitAnswer());
        }
    }

    @ParameterizedTest
    @EnumSource(Diagnosis.class)
    void aLaterResultTakesTheFormersPlace(Diagnosis diagnosis) {
        assertEquals(0, diagnosis.start(Wan.kInternet, "192.0.2.7"));
        assertEquals(diagnosis.complete("192.0.2.7", "192.0.2.7"), diagnosis.answer());
        assertEquals(0, diagnosis.start(0, "living-room-tv"));
        assertEquals(diagnosis.complete("living-room-tv", "192.168.1.11"), diagnosis.answer());
        assertEquals(0, diagnosis.start(Wan.kOther, "2001:db8::7"));
        assertEquals(diagnosis.complete("2001:db8::7", "2001:db8::7"), diagnosis.answer());
    }

    @ParameterizedTest
    @EnumSource(Diagnosis.class)
    void theConnectionMustBeUp(Diagnosis diagnosis) {
        assertEquals(kNoConnection, diagnosis.start(0x10109001, kHost));
        assertEquals(kNoConnection, diagnosis.start(-1, kHost));
        Gateway.ctl("wan", "set", Wan.kInternetName, "down");
        try {
            assertEquals(kNoConnection, diagnosis.start(Wan.kInternet, kHost));
            assertEquals(Traffic.kNotRun, diagnosis.answer());
        } finally {
            Gateway.ctl("wan", "set", Wan.kInternetName, "up");
        }
        assertEquals(0, diagnosis.start(Wan.kInternet, kHost));
    }

    // ---- arguments ----

    @ParameterizedTest
    @EnumSource(Diagnosis.class)
    void hostsAreNeitherMissingNorTooLong(Diagnosis diagnosis) {
        int iLongest = diagnosis.iLongestHost;
        Gateway.assertAsksNobody(() -> {
            assertEquals(-1, diagnosis.start(Wan.kInternet, null));
            assertEquals(-1, diagnosis.start(Wan.kInternet, ""));
            assertEquals(diagnosis.iTooLong,
                    diagnosis.start(Wan.kInternet, "h".repeat(iLongest + 1)));
            assertEquals(diagnosis.iTooLong,
                    diagnosis.start(Wan.kInternet, "h".repeat(iLongest - 1) + "\u00E4"));
        });
        assertEquals(0, diagnosis.start(Wan.kInternet, "h".repeat(iLongest)));
        String answer = diagnosis.answer();
        assertTrue(answer.contains("\"Host\":\"" + "h".repeat(iLongest) + "\","), answer);
        assertEquals(0, diagnosis.start(Wan.kInternet, "K\u00E4fer.example"));
        assertTrue(diagnosis.answer().contains("\"Host\":\"K\u00E4fer.example\","));
    }

    private static int ping(String parameters) {
        return Traffic.kPing.startIPPingDiagnostics(Wan.kInternet, kHost, parameters);
    }

    private static void assertPings(int iSent, int iSize, int iDscp) {
        assertEquals("{\"Result\":0,\"State\":\"Complete\",\"Host\":\"" + kHost
                        + "\",\"Address\":\"" + kHostsAddress + "\"," + pings(iSent, iSize, iDscp),
                Diagnosis.PING.answer());
    }

    @Test
    void aPingsParametersAreRead() {
        assertEquals(0, ping("{\"NumberOfRepetitions\":7,\"Timeout\":1000,\"DataBlockSize\":64,"
                        + "\"DSCP\":10}"));
        assertPings(7, 64, 10);
        assertEquals(0, ping(" { \"DSCP\" : 5, \"Other\": [1] } "));
        assertPings(4, 0, 5);
        assertEquals(0, ping("{\"NumberOfRepetitions\":\"9\",\"DataBlockSize\":true}"));
        assertPings(4, 0, 0);
        assertEquals(0, ping(""));
        assertPings(4, 0, 0);
    }

    @ParameterizedTest
    @ValueSource(strings = {"{", "{\"DSCP\":1", "{\"DSCP\":1}x", "{\"DSCP\":1}{}", "4 pings"})
    void aPingsParametersMustBeJson(String parameters) {
        Gateway.assertAsksNobody(() -> assertEquals(-1, ping(parameters)));
        assertEquals(Traffic.kNotRun, Diagnosis.PING.answer());
    }

    private static int resolve(String servers, String parameters) {
        return Traffic.kDns.startDnsDiagnostics(Wan.kInternet, kHost, servers, parameters);
    }

    @Test
    void serversAreCutAndParametersAreNot() {
        Gateway.assertAsksNobody(() -> {
            assertEquals(-1, resolve(null, null));
            assertEquals(-1, resolve("", null));
            assertEquals(-1, resolve(kServers, "p".repeat(512)));
        });
        assertEquals(0, resolve("s".repeat(600), "p".repeat(511)));
        assertEquals("{\"Result\":0,\"State\":\"Complete\",\"Host\":\"" + kHost
                        + "\",\"Servers\":\"" + "s".repeat(511) + "\",\"Addresses\":[\""
                        + kHostsAddress + "\"],\"Parameters\":\"" + "p".repeat(511) + "\"}",
                Diagnosis.DNS.answer());
    }

    @Test
    void aRoutesParametersAreHandedOn() {
        Gateway.assertAsksNobody(()
                                         -> assertEquals(-1,
                                                 Traffic.kTraceRoute.startTraceRouteDiagnostics(
                                                         Wan.kInternet, kHost, "p".repeat(255))));
        assertEquals(0,
                Traffic.kTraceRoute.startTraceRouteDiagnostics(
                        Wan.kInternet, kHost, "p".repeat(254)));
        assertEquals("{\"Result\":0,\"State\":\"Complete\",\"Host\":\"" + kHost + "\","
                        + hops(kHostsAddress) + ",\"Parameters\":\"" + "p".repeat(254) + "\"}",
                Diagnosis.TRACE_ROUTE.answer());
    }

    // ---- failures ----

    @ParameterizedTest
    @EnumSource(Diagnosis.class)
    void withoutTheProcessNothingIsStarted(Diagnosis diagnosis) {
        assertEquals(0, diagnosis.start(Wan.kInternet, kHost));
        Gateway.kill(Gateway.kAppM);
        try {
            assertEquals(-1, diagnosis.start(Wan.kInternet, kHost));
            diagnosis.result.assertFails();
        } finally {
            Gateway.start(Gateway.kAppM);
        }
        assertEquals(Traffic.kNotRun, diagnosis.answer(), "forgotten");
        assertEquals(0, diagnosis.start(Wan.kInternet, kHost));
        assertEquals(diagnosis.complete(kHost, kHostsAddress), diagnosis.answer());
    }

    @ParameterizedTest
    @EnumSource(Diagnosis.class)
    void aRefusedStartIsAFailure(Diagnosis diagnosis) {
        Gateway.fault(Gateway.kAppM, diagnosis.iStart, "--code", "7", "--times", "1");
        assertEquals(-1, diagnosis.start(Wan.kInternet, kHost));
        assertEquals(Traffic.kNotRun, diagnosis.answer());
    }

    @ParameterizedTest
    @EnumSource(Diagnosis.class)
    void aResultThatIsRefusedCanBeHadLater(Diagnosis diagnosis) {
        assertEquals(0, diagnosis.start(Wan.kInternet, kHost));
        Gateway.fault(Gateway.kAppM, diagnosis.result.rpc(), "--code", "7", "--times", "1");
        diagnosis.result.assertFails();
        assertEquals(diagnosis.complete(kHost, kHostsAddress), diagnosis.answer());
    }
}
