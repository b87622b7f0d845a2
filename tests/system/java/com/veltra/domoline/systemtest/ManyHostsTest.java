package com.veltra.domoline.systemtest;

import static org.junit.jupiter.api.Assertions.assertEquals;

import java.util.Arrays;
import java.util.List;
import org.junit.jupiter.api.AfterAll;
import org.junit.jupiter.api.BeforeAll;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.ValueSource;

/** Homes whose hosts take far more room than a reply has: they come through shared memory. */
class ManyHostsTest {
    @BeforeAll
    static void attach() {
        Gateway.attach();
    }

    @AfterAll
    static void startOver() {
        Gateway.startOver();
    }

    private static String host(int i) {
        return "{\"MAC\":\"" + Lan.manyMac(i) + "\",\"IP\":\"10.0." + (i >> 8) + "." + (i & 0xFF)
                + "\",\"DevName\":\"host-" + i + "\",\"HostClass\":\""
                + (i % 2 == 0 ? "PC" : "PHONE")
                + "\",\"Interface\":\"LAN1\",\"Active\":1,\"OnlineTime\":7200}";
    }

    private static String hosts(int iFirst, int iStep, int iEnd) {
        StringBuilder hosts = new StringBuilder();
        for (int i = iFirst; i < iEnd; i += iStep) {
            hosts.append(i == iFirst ? "" : ",").append(host(i));
        }
        return Lan.hosts(hosts.toString());
    }

    @ParameterizedTest
    @ValueSource(ints = {128, 2000})
    void aLargeHomeIsListedWhole(int iHosts) {
        Home.startOverWith(home -> Home.putHosts(home, iHosts));
        List<String> all = Arrays.asList(Lan.manyMacs(iHosts));

        String answer = Lan.kHosts.getLANHostInfoByMAC(null);
        assertEquals(all, Home.answered(answer, "MAC"));
        assertEquals(hosts(0, 1, iHosts), answer);
        assertEquals(hosts(0, 2, iHosts), Lan.kHosts.getLANHostInfoByClass("PC"));
        assertEquals(hosts(1, 2, iHosts), Lan.kHosts.getLANHostInfoByClass("PHONE"));
        assertEquals(hosts(0, 1, iHosts), Lan.kHosts.getLANHostInfoByInterface("LAN1"));

        String statistics = Lan.kHosts.getLANHostStats(null);
        assertEquals(all, Home.answered(statistics, "MAC"));
        List<String> bytes = Home.answered(statistics, "RxBytes");
        assertEquals("0", bytes.get(0));
        assertEquals(String.valueOf(1000L * (iHosts - 1)), bytes.get(iHosts - 1));

        // The last 128 of them by name, which is as many as one call may ask about.
        String[] last = all.subList(iHosts - 128, iHosts).toArray(new String[0]);
        assertEquals(hosts(iHosts - 128, 1, iHosts), Lan.kHosts.getLANHostInfoByMAC(last));
        assertEquals(Arrays.asList(last), Home.answered(Lan.kHosts.getLANHostStats(last), "MAC"));
    }
}
