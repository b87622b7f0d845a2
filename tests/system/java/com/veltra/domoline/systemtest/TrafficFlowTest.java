package com.veltra.domoline.systemtest;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.google.gson.JsonArray;
import com.google.gson.JsonObject;
import java.util.ArrayList;
import java.util.List;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.ValueSource;

/** Flows of traffic: members, counters, speeds, limits and marks, each time on a new gateway. */
class TrafficFlowTest extends NewGatewayEachTime {
    private static final int[] kChanges = {
            0x4830419B, 0x4830419C, 0x4830419D, 0x483041A2, 0x483041A4};
    private static final String kAddress = "198.51.100.7";
    private static final String kShipped = Traffic.member("198.51.100.20", "443");

    private static int add(String address, String port, int iFlow) {
        return Traffic.kFlows.addTrafficToFlow(address, port, iFlow);
    }

    private static int delete(String address, String port, int iFlow) {
        return Traffic.kFlows.deleteTrafficFromFlow(address, port, iFlow);
    }

    private static String members(int iFlow) {
        return Traffic.kFlows.getTrafficInfoByFlow(iFlow);
    }

    private static String stats(int iFlow) {
        return Traffic.kFlows.getStatsByFlow(iFlow);
    }

    private static String speed(int iFlow) {
        return Traffic.kFlows.getSpeedByFlow(iFlow);
    }

    private static String limit(int iFlow) {
        return Traffic.kFlows.getSpeedLimitByFlow(iFlow);
    }

    private static String pair(String up, long lUp, String down, long lDown) {
        return "{\"Result\":0,\"" + up + "\":" + lUp + ",\"" + down + "\":" + lDown + "}";
    }

    private static void assertSpeed(int iUp, int iDown, int iFlow) {
        assertEquals(pair("upSpeed", iUp, "downSpeed", iDown), speed(iFlow));
    }

    private static void assertLimit(int iUp, int iDown, int iFlow) {
        assertEquals(pair("UpSpeed", iUp, "DownSpeed", iDown), limit(iFlow));
    }

    // ---- members ----

    @Test
    void trafficIsPutIntoAFlowAndTakenOut() {
        assertEquals(0, add(kAddress, "443", 1));
        assertEquals(0, add("", "53", 1));
        assertEquals(0, add("www.example.com", "8080-8090", 1));
        assertEquals(0, add(kAddress, "443", 1), "it is in already");
        assertEquals(Lan.list(Traffic.member(kAddress, "443"), Traffic.member("", "53"),
                             Traffic.member("www.example.com", "8080-8090")),
                members(1));
        assertEquals(0, delete(null, "53", 1), "no address is an empty one");
        assertEquals(-1, delete("", "53", 1), "there is none any more");
        assertEquals(-1, delete(kAddress, "443", 2), "of another flow");
        assertEquals(-1, delete(kAddress, "44", 1));
        assertEquals(Lan.list(Traffic.member(kAddress, "443"),
                             Traffic.member("www.example.com", "8080-8090")),
                members(1));
        assertEquals(0, add(null, "54", 1));
        assertEquals(0, Traffic.kFlows.deleteAllTrafficFromFlow(1));
        assertEquals(Traffic.kFailed, members(1), "an empty flow has no list");
        assertEquals(0, Traffic.kFlows.deleteAllTrafficFromFlow(1), "nothing to take out");
        assertEquals(Lan.list(kShipped), members(Traffic.kFlow));
    }

    @Test
    void aFlowThatNobodyHasUsedHasNoListEither() {
        assertEquals(Traffic.kFailed, members(5));
        assertEquals(pair("UsStats", 0, "DsStats", 0), stats(5));
        assertSpeed(0, 0, 5);
        assertLimit(0, 0, 5);
        assertEquals(0, Traffic.kFlows.getDSCPRemarkByFlow(5));
    }

    @Test
    void whatDoesNotFitAsksNobody() {
        Gateway.assertAsksNobody(() -> {
            for (String bad : new String[] {null, "", "1".repeat(12)}) {
                assertEquals(-1, add(kAddress, bad, 1), bad);
                assertEquals(-1, delete(kAddress, bad, 1), bad);
            }
            assertEquals(-1, add("a".repeat(256), "443", 1));
            assertEquals(-1, add("\u00E4".repeat(128), "443", 1), "256 bytes");
            assertEquals(-1, delete("a".repeat(256), "443", 1));
            for (int iFlow : new int[] {1000, -100, Integer.MAX_VALUE, Integer.MIN_VALUE}) {
                assertEquals(-1, add(kAddress, "443", iFlow), "flow " + iFlow);
                assertEquals(-1, delete(kAddress, "443", iFlow), "flow " + iFlow);
            }
        });
        assertEquals(0, add("a".repeat(255), "1".repeat(11), 64));
        assertEquals(Lan.list(Traffic.member("a".repeat(255), "1".repeat(11))), members(64));
        assertEquals(0, delete("a".repeat(255), "1".repeat(11), 64));
    }

    @ParameterizedTest
    @ValueSource(ints = {0, 65, 999, -1, -99})
    void flowsThatTheGatewayHasNotFail(int iFlow) {
        assertEquals(-1, add(kAddress, "443", iFlow));
        assertEquals(-1, delete(kAddress, "443", iFlow));
        assertAllElseFails(iFlow);
    }

    @ParameterizedTest
    @ValueSource(ints = {1000, Integer.MAX_VALUE, Integer.MIN_VALUE})
    void onlyMembersHaveFlowsOfThreeCharacters(int iFlow) {
        assertAllElseFails(iFlow);
    }

    private static void assertAllElseFails(int iFlow) {
        assertEquals(-1, Traffic.kFlows.deleteAllTrafficFromFlow(iFlow));
        assertEquals(-1, Traffic.kFlows.setSpeedLimitByFlow(iFlow, 1, 1));
        assertEquals(-1, Traffic.kFlows.setDSCPRemarkByFlow(iFlow, 1));
        assertEquals(-1, Traffic.kFlows.getDSCPRemarkByFlow(iFlow));
        for (String answer :
                new String[] {members(iFlow), stats(iFlow), speed(iFlow), limit(iFlow)}) {
            assertEquals(Traffic.kFailed, answer);
        }
    }

    @Test
    void aFullFlowIsListedWhole() {
        int iMost = 512;
        List<String> expected = new ArrayList<>(List.of(kShipped));
        Home.startOverWith(home -> {
            JsonArray members = home.getAsJsonArray("flows")
                                        .get(0)
                                        .getAsJsonObject()
                                        .getAsJsonArray("members");
            for (int i = 1; i < iMost; i++) {
                String address = "h" + i + ".example.com";
                JsonObject member = new JsonObject();
                member.addProperty("address", address);
                member.addProperty("port", String.valueOf(1000 + i));
                members.add(member);
                expected.add(Traffic.member(address, String.valueOf(1000 + i)));
            }
        });
        assertEquals(Lan.list(expected.toArray(new String[0])), members(Traffic.kFlow));
        assertEquals(-1, add(kAddress, "443", Traffic.kFlow), "no room");
        assertSpeed(iMost * 2000, iMost * 16000, Traffic.kFlow);
    }

    // ---- speeds, counters, limits and marks ----

    @Test
    void speedsGrowWithTheMembersUpToTheLimits() {
        assertSpeed(2000, 16000, Traffic.kFlow);
        assertEquals(0, add(kAddress, "443", Traffic.kFlow));
        assertSpeed(4000, 32000, Traffic.kFlow);
        assertEquals(0, Traffic.kFlows.setSpeedLimitByFlow(Traffic.kFlow, 1024, 40960));
        assertLimit(1024, 40960, Traffic.kFlow);
        assertSpeed(1024, 32000, Traffic.kFlow);
        assertEquals(0, Traffic.kFlows.setSpeedLimitByFlow(Traffic.kFlow, 0, 30000));
        assertLimit(0, 30000, Traffic.kFlow);
        assertSpeed(4000, 30000, Traffic.kFlow);
        assertEquals(-1, Traffic.kFlows.setSpeedLimitByFlow(Traffic.kFlow, -1, 0));
        assertEquals(-1, Traffic.kFlows.setSpeedLimitByFlow(Traffic.kFlow, 0, -1));
        int iMost = Integer.MAX_VALUE;
        assertEquals(0, Traffic.kFlows.setSpeedLimitByFlow(2, iMost, iMost));
        assertLimit(iMost, iMost, 2);
        assertSpeed(0, 0, 2);
        assertLimit(0, 30000, Traffic.kFlow);
    }

    @Test
    void countersGrowWhileTrafficFlowsAndStayAfterwards() {
        String none = pair("UsStats", 0, "DsStats", 0);
        assertEquals(0, add(kAddress, "443", 1));
        Traffic.await(() -> !stats(1).equals(none));
        JsonObject first = Home.object(stats(1));
        long lUp = first.get("UsStats").getAsLong();
        assertTrue(lUp >= 2000 && lUp % 2000 == 0, first.toString());
        assertEquals(lUp * 8, first.get("DsStats").getAsLong());
        Traffic.await(() -> Home.object(stats(1)).get("UsStats").getAsLong() > lUp);
        assertTrue(Home.object(stats(1)).get("UsStats").getAsLong() > lUp, stats(1));
        assertEquals(0, delete(kAddress, "443", 1));
        String end = stats(1);
        assertTrue(Home.object(end).get("UsStats").getAsLong() > lUp, end);
        assertSpeed(0, 0, 1);
        assertEquals(none, stats(2));
        assertEquals(end, stats(1));
    }

    @Test
    void countersHaveMoreThan32Bits() {
        Home.startOverWith(home -> {
            JsonObject flow = home.getAsJsonArray("flows").get(0).getAsJsonObject();
            flow.addProperty("upBytes", 4294967296L);
            flow.addProperty("downBytes", Long.MAX_VALUE);
        });
        assertEquals(pair("UsStats", 4294967296L, "DsStats", Long.MAX_VALUE), stats(Traffic.kFlow));
    }

    @Test
    void aMarkHasSixBits() {
        assertEquals(46, Traffic.kFlows.getDSCPRemarkByFlow(Traffic.kFlow));
        for (int iDscp : new int[] {0, 63}) {
            assertEquals(0, Traffic.kFlows.setDSCPRemarkByFlow(1, iDscp));
            assertEquals(iDscp, Traffic.kFlows.getDSCPRemarkByFlow(1));
        }
        for (int iDscp : new int[] {64, -1, Integer.MAX_VALUE}) {
            assertEquals(-1, Traffic.kFlows.setDSCPRemarkByFlow(1, iDscp), "mark " + iDscp);
        }
        assertEquals(63, Traffic.kFlows.getDSCPRemarkByFlow(1));
        assertEquals(46, Traffic.kFlows.getDSCPRemarkByFlow(Traffic.kFlow));
    }

    // ---- failures ----

    private static void assertAllFails() {
        assertEquals(-1, add(kAddress, "443", Traffic.kFlow));
        assertEquals(-1, delete("198.51.100.20", "443", Traffic.kFlow));
        assertEquals(-1, Traffic.kFlows.deleteAllTrafficFromFlow(Traffic.kFlow));
        assertEquals(-1, Traffic.kFlows.setSpeedLimitByFlow(Traffic.kFlow, 1, 1));
        assertEquals(-1, Traffic.kFlows.setDSCPRemarkByFlow(Traffic.kFlow, 1));
    }

    private static void assertAsShipped() {
        for (TrafficMethod method :
                new TrafficMethod[] {TrafficMethod.FLOW_MEMBERS, TrafficMethod.FLOW_STATS,
                        TrafficMethod.FLOW_SPEED, TrafficMethod.FLOW_LIMIT,
                        TrafficMethod.FLOW_DSCP}) {
            method.assertSucceeds();
        }
    }

    @Test
    void withoutTheProcessNothingChanges() {
        Gateway.kill(Gateway.kGulm);
        try {
            assertAllFails();
            assertAllElseFails(Traffic.kFlow);
        } finally {
            Gateway.start(Gateway.kGulm);
        }
        assertAsShipped();
    }

    @Test
    void refusedChangesAreFailures() {
        for (int iRpc : kChanges) {
            Gateway.fault(Gateway.kGulm, iRpc, "--code", "7", "--times", "1");
        }
        assertAllFails();
        assertAsShipped();
    }
}
