package com.veltra.domoline.systemtest;

import static org.junit.jupiter.api.Assertions.assertEquals;

import java.util.ArrayList;
import java.util.List;
import java.util.concurrent.ExecutorService;
import java.util.concurrent.Executors;
import java.util.concurrent.Future;
import java.util.stream.Collectors;
import java.util.stream.IntStream;
import org.junit.jupiter.api.AfterAll;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.extension.ExtendWith;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.ValueSource;

/** The registry of the addresses whose traffic bundles want monitored. */
@ExtendWith(AttachedGateway.class)
class TrafficMonitorTest {
    private static final int kAdd = 0x48304173;
    private static final int kDelete = 0x48304174;
    private static final String kMeter = "com.example.meter";
    private static final String kShield = "com.example.shield";
    private static final int kThreads = 16;

    @BeforeEach
    void emptyRegistry() {
        for (String bundle : Home.now().list("monitoring", "bundle")) {
            String[] addresses = addressesOf(bundle);
            assertEquals(0, delete(bundle, addresses));
        }
        TrafficMethod.MONITORED.assertSucceeds();
    }

    @AfterAll
    static void asShipped() {
        Gateway.startOver();
    }

    private static int add(String bundle, String... addresses) {
        return Traffic.kMonitor.addTrafficMonitoringDestAddress(addresses, bundle);
    }

    private static int delete(String bundle, String... addresses) {
        return Traffic.kMonitor.deleteTrafficMonitoringDestAddress(addresses, bundle);
    }

    private static String registry() {
        return Traffic.kMonitor.getTrafficMonitoringDestAddressInfo();
    }

    /** What the gateway keeps for a bundle, asked of it beside the library. */
    private static String[] addressesOf(String bundle) {
        int i = Home.now().list("monitoring", "bundle").indexOf(bundle);
        String list = Gateway.get("monitoring." + i + ".addresses");
        return list.replaceAll("[\\[\\]\"\\s]", "").split(",");
    }

    private static String entry(String bundle, String... addresses) {
        return "{\"BundleName\":\"" + bundle + "\",\"DestAddressList\":[\""
                + String.join("\",\"", addresses) + "\"]}";
    }

    private static String listed(String... entries) {
        return "{\"Result\":0,\"List\":[" + String.join(",", entries) + "]}";
    }

    private static String[] manyAddresses(int iCount) {
        return IntStream.range(0, iCount)
                .mapToObj(i -> "2001:db8:0:0:0:0:0:" + Integer.toHexString(0x1000 + i))
                .toArray(String[] ::new);
    }

    // ---- the registry ----

    @Test
    void theRegistryListsTheAddressesOfAllBundles() {
        assertEquals(Traffic.kNoAddresses, registry(), "a blank after the comma");
        assertEquals(0, add(kMeter, "10.0.0.1", "10.0.0.2"));
        assertEquals(0, add(kShield, "192.0.2.7"));
        assertEquals(listed(entry(kMeter, "10.0.0.1", "10.0.0.2"), entry(kShield, "192.0.2.7")),
                registry());
        // What a bundle has already stays once; another one can have it as well.
        assertEquals(0, add(kMeter, "10.0.0.2", "www.example.com"));
        assertEquals(0, add(kShield, "10.0.0.1", "2001:db8::7"));
        assertEquals(listed(entry(kMeter, "10.0.0.1", "10.0.0.2", "www.example.com"),
                             entry(kShield, "192.0.2.7", "10.0.0.1", "2001:db8::7")),
                registry());
    }

    @Test
    void deletingTakesOutTheBundlesOwnAddresses() {
        assertEquals(0, add(kMeter, "10.0.0.1", "10.0.0.2", "10.0.0.3"));
        assertEquals(0, add(kShield, "10.0.0.1"));
        assertEquals(-1, delete(kShield, "10.0.0.2"), "another bundle's");
        assertEquals(-1, delete("com.example.nobody", "10.0.0.1"));
        assertEquals(0, delete(kMeter, "10.0.0.1", "10.0.0.3", "10.0.0.9"));
        assertEquals(listed(entry(kMeter, "10.0.0.2"), entry(kShield, "10.0.0.1")), registry());
        assertEquals(-1, delete(kMeter, "10.0.0.1"), "there is none any more");
        assertEquals(0, delete(kMeter, "10.0.0.2"));
        assertEquals(listed(entry(kShield, "10.0.0.1")), registry(), "no bundle without addresses");
        assertEquals(0, delete(kShield, "10.0.0.1"));
        assertEquals(Traffic.kNoAddresses, registry());
    }

    @Test
    void missingElementsLeaveNothingBehind() {
        assertEquals(0, add(kMeter, null, "10.0.0.1", "", "10.0.0.2", null));
        assertEquals(listed(entry(kMeter, "10.0.0.1", "10.0.0.2")), registry());
        assertEquals(-1, add(kShield, null, ""), "the gateway takes no list of commas");
        assertEquals(0, delete(kMeter, "", "10.0.0.1", null));
        assertEquals(listed(entry(kMeter, "10.0.0.2")), registry());
    }

    @ParameterizedTest
    @ValueSource(ints = {6, 7, 8, 9})
    void someAddressesTakeMoreReferencesThanACallIsGivenUnasked(int iCount) {
        String[] addresses = manyAddresses(iCount);
        assertEquals(0, add(kMeter, addresses));
        assertEquals(listed(entry(kMeter, addresses)), registry());
    }

    @Test
    void manyAddressesTravelCompressed() {
        String[] addresses = manyAddresses(256);
        assertEquals(0, add(kMeter, addresses));
        assertEquals(0, add(kShield, "10.0.0.1"));
        assertEquals(listed(entry(kMeter, addresses), entry(kShield, "10.0.0.1")), registry());
        assertEquals(-1, add(kMeter, "10.0.0.1"), "no room");
        assertEquals(0, delete(kMeter, addresses));
        assertEquals(listed(entry(kShield, "10.0.0.1")), registry());
    }

    @Test
    void bundlesMayRegisterAtOnce() throws Exception {
        ExecutorService threads = Executors.newFixedThreadPool(kThreads);
        List<Future<Integer>> results = new ArrayList<>();
        try {
            for (int i = 0; i < kThreads; i++) {
                String bundle = "com.example.bundle" + i;
                String address = "10.0.0." + i;
                results.add(threads.submit(
                        () -> add(bundle, address, "192.0.2.1") + delete(bundle, "192.0.2.1")));
            }
            for (Future<Integer> result : results) {
                assertEquals(0, result.get());
            }
        } finally {
            threads.shutdown();
        }
        List<String> expected = IntStream.range(0, kThreads)
                                        .mapToObj(i -> "com.example.bundle" + i)
                                        .sorted()
                                        .collect(Collectors.toList());
        List<String> names = Home.answered(registry(), "BundleName");
        assertEquals(expected, names.stream().sorted().collect(Collectors.toList()));
        for (String name : names) {
            assertEquals("10.0.0." + name.substring("com.example.bundle".length()),
                    String.join(",", addressesOf(name)));
        }
    }

    // ---- arguments ----

    @Test
    void argumentsThatCannotBeSentAskNobody() {
        String[] tooMuch = {"10.0.0.1", "a".repeat(256)};
        Gateway.assertAsksNobody(() -> {
            assertEquals(-1, add(kMeter, (String[]) null));
            assertEquals(-1, add(kMeter));
            assertEquals(-1, add(null, "10.0.0.1"));
            assertEquals(-1, add("", "10.0.0.1"));
            assertEquals(-1, add(kMeter, tooMuch));
            assertEquals(-1, add(kMeter, "\u00E4".repeat(128)), "256 bytes");
            assertEquals(-1, delete(kMeter, (String[]) null));
            assertEquals(-1, delete(kMeter));
            assertEquals(-1, delete(null, "10.0.0.1"));
            assertEquals(-1, delete("", "10.0.0.1"));
            assertEquals(-1, delete(kMeter, tooMuch));
        });
        assertEquals(Traffic.kNoAddresses, registry());
        assertEquals(0, add(kMeter, "a".repeat(255)));
        assertEquals(listed(entry(kMeter, "a".repeat(255))), registry());
    }

    // ---- app_m ----

    private static String notices() {
        return Gateway.get("monitorNotices.added") + " " + Gateway.get("monitorNotices.deleted")
                + " " + Gateway.get("monitorNotices.bundle") + " "
                + Gateway.get("monitorNotices.addresses");
    }

    private static void startCounting() {
        Gateway.crash(Gateway.kAppM); // with the last notice written
        Gateway.set("monitorNotices.added", "0");
        Gateway.set("monitorNotices.deleted", "0");
    }

    private static void assertNoticed(String expected) {
        Traffic.await(() -> notices().equals(expected));
        assertEquals(expected, notices());
    }

    @Test
    void theOtherProcessIsToldOfChanges() {
        startCounting();
        assertEquals(0, add(kMeter, "10.0.0.1", "10.0.0.2"));
        assertNoticed("1 0 " + kMeter + " 10.0.0.1,10.0.0.2");
        assertEquals(0, add(kShield, "192.0.2.7"));
        assertNoticed("2 0 " + kShield + " 192.0.2.7");
        assertEquals(0, delete(kMeter, "10.0.0.2"));
        assertNoticed("2 1 " + kMeter + " 10.0.0.2");
        registry();
        // It is told before the registry's keeper is asked, whatever that one says.
        assertEquals(-1, delete(kMeter, "10.0.0.9"));
        assertNoticed("2 2 " + kMeter + " 10.0.0.9");
    }

    @Test
    void aLongBundleNameIsCutForEach() {
        startCounting();
        String name = "n".repeat(300);
        assertEquals(0, add(name, "10.0.0.1"));
        assertEquals(listed(entry(name.substring(0, 255), "10.0.0.1")), registry());
        assertNoticed("1 0 " + name.substring(0, 127) + " 10.0.0.1");
    }

    // ---- failures ----

    @Test
    void whetherTheOtherProcessHearsOfItMakesNoDifference() {
        Gateway.kill(Gateway.kAppM);
        try {
            assertEquals(0, add(kMeter, "10.0.0.1", "10.0.0.2"));
            assertEquals(0, delete(kMeter, "10.0.0.2"));
            assertEquals(listed(entry(kMeter, "10.0.0.1")), registry());
        } finally {
            Gateway.start(Gateway.kAppM);
        }
    }

    @Test
    void withoutTheRegistrysKeeperNothingChanges() {
        assertEquals(0, add(kMeter, "10.0.0.1"));
        Gateway.kill(Gateway.kGulm);
        try {
            assertEquals(-1, add(kMeter, "10.0.0.2"));
            assertEquals(-1, delete(kMeter, "10.0.0.1"));
            TrafficMethod.MONITORED.assertFails();
        } finally {
            Gateway.start(Gateway.kGulm);
        }
        assertEquals(listed(entry(kMeter, "10.0.0.1")), registry());
    }

    @Test
    void aRefusalIsAFailure() {
        assertEquals(0, add(kMeter, "10.0.0.1"));
        Gateway.fault(Gateway.kGulm, kAdd, "--code", "7", "--times", "1");
        Gateway.fault(Gateway.kGulm, kDelete, "--code", "7", "--times", "1");
        assertEquals(-1, add(kMeter, "10.0.0.2"));
        assertEquals(-1, delete(kMeter, "10.0.0.1"));
        assertEquals(listed(entry(kMeter, "10.0.0.1")), registry());
        assertEquals(0, add(kMeter, "10.0.0.2"));
        assertEquals(0, delete(kMeter, "10.0.0.1"));
        assertEquals(listed(entry(kMeter, "10.0.0.2")), registry());
    }
}
