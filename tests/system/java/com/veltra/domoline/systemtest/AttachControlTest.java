package com.veltra.domoline.systemtest;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;

import java.util.ArrayList;
import java.util.Collections;
import java.util.List;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.ValueSource;

/**
 * What a host may do, and how fast. A record never goes away again, so each test begins with a new
 * gateway. In the rows below a MAC address is followed by the internet right, the storage right,
 * and the limits up and down.
 */
class AttachControlTest extends NewGatewayEachTime {
    private static final int kAddRecord = 0x47209096;
    private static final int kSetRecord = 0x47209097;

    private static int limit(String mac, int iUp, int iDown) {
        return Lan.kLimits.setLANHostSpeedLimit(mac, iUp, iDown);
    }

    private static int bar(String... macs) {
        return Lan.kAccess.addLANHostToStorageBlackList(macs);
    }

    private static int allow(String... macs) {
        return Lan.kAccess.deleteLANHostFromStorageBlackList(macs);
    }

    private static String limits(String... macs) {
        return Lan.kHosts.getLANHostSpeedLimitInfo(macs);
    }

    private static void assertSendsNothing(Runnable calls) {
        long lSent = Gateway.requests().get(Gateway.kOsgiProxy);
        calls.run();
        assertEquals(lSent, Gateway.requests().get(Gateway.kOsgiProxy), "requests to osgi_proxy");
    }

    @Test
    void limitsAreSetAndTold() {
        assertEquals(Lan.list(), limits());
        assertSendsNothing(() -> assertEquals(0, limit(Lan.kTablet, 0, 0)));
        assertEquals(0, limit(Lan.kTablet, 512, 2048));
        assertSendsNothing(() -> assertEquals(0, limit("02:a1:b2:00:20:04", 512, 2048)));
        assertEquals(0, limit(Lan.kPhone, 1, 0));
        assertEquals(0, limit("02:a1:b2:00:20:04", 512, 4096));
        assertEquals(List.of(Lan.kTablet + " 1 1 512 4096", Lan.kPhone + " 1 1 1 0"),
                Home.now().records());
        // In the order of the question, and a host without a record has no limit.
        assertEquals(Lan.list(Lan.limit(1, 0), Lan.limit(0, 0), Lan.limit(512, 4096)),
                limits(Lan.kPhone, Lan.kTv, "02:a1:b2:00:20:04"));
        String all = Lan.list(Lan.limit(512, 4096), Lan.limit(1, 0));
        for (String[] none : new String[][] {null, {}, {""}}) {
            assertEquals(all, Lan.kHosts.getLANHostSpeedLimitInfo(none));
        }
        assertEquals(0, limit(Lan.kTablet, 0, 0));
        assertEquals(Lan.list(Lan.limit(0, 0)), limits(Lan.kTablet));
    }

    @Test
    void hugeLimitsArriveUnsigned() {
        assertEquals(0, limit(Lan.kTablet, -1, Integer.MAX_VALUE));
        assertEquals(List.of(Lan.kTablet + " 1 1 4294967295 2147483647"), Home.now().records());
    }

    @Test
    void storageIsBarredAndAllowed() {
        assertSendsNothing(() -> assertEquals(0, allow(Lan.kTablet)));
        assertEquals(List.of(), Home.now().records());
        assertEquals(0, bar(Lan.kTablet, Lan.kPhone));
        assertSendsNothing(() -> assertEquals(0, bar(Lan.kPhone, "02:a1:b2:00:20:04")));
        assertEquals(
                List.of(Lan.kTablet + " 1 0 0 0", Lan.kPhone + " 1 0 0 0"), Home.now().records());
        assertEquals(0, limit(Lan.kTablet, 7, 8));
        assertEquals(0, allow(Lan.kTv, "02:a1:b2:00:20:04"));
        assertEquals(
                List.of(Lan.kTablet + " 1 1 7 8", Lan.kPhone + " 1 0 0 0"), Home.now().records());
        assertEquals(0, bar(Lan.kTablet));
        assertEquals(
                List.of(Lan.kTablet + " 1 0 7 8", Lan.kPhone + " 1 0 0 0"), Home.now().records());
    }

    @Test
    void allowingNobodyAllowsAll() {
        for (String[] none : new String[][] {null, {}, {""}, {null}, {null, ""}}) {
            assertEquals(0, bar(Lan.kTablet, Lan.kPhone));
            assertEquals(0, Lan.kAccess.deleteLANHostFromStorageBlackList(none));
            assertEquals(List.of(Lan.kTablet + " 1 1 0 0", Lan.kPhone + " 1 1 0 0"),
                    Home.now().records());
        }
    }

    @Test
    void barringNobodyDoesNothing() {
        Gateway.assertAsksNobody(() -> {
            for (String[] none : new String[][] {null, {}, {""}, {null}, {null, ""}}) {
                assertEquals(0, Lan.kAccess.addLANHostToStorageBlackList(none));
            }
        });
        assertEquals(0, bar(null, Lan.kTablet, null));
        assertEquals(List.of(Lan.kTablet + " 1 0 0 0"), Home.now().records());
    }

    @Test
    void theInternetRightFollowsTheMacFilter() {
        assertEquals(0, Lan.kAccess.addLANHostToBlackList(Lan.macs(Lan.kTablet)));
        assertEquals(0, limit(Lan.kTablet, 1, 1));
        assertEquals(0, bar(Lan.kPhone));
        assertEquals(
                List.of(Lan.kTablet + " 0 1 1 1", Lan.kPhone + " 1 0 0 0"), Home.now().records());
        Gateway.set("macFilter.mode", "1");
        assertEquals(0, limit("02:a1:b2:00:20:04", 2, 2));
        assertEquals(0, allow(Lan.kPhone));
        assertEquals(
                List.of(Lan.kTablet + " 1 1 2 2", Lan.kPhone + " 0 1 0 0"), Home.now().records());
        assertEquals(0, Lan.kAccess.deleteLANHostFromTrustList(Lan.macs(Lan.kTablet)));
        assertEquals(0, limit(Lan.kPhone, 3, 3));
        assertEquals(
                List.of(Lan.kTablet + " 1 1 2 2", Lan.kPhone + " 1 1 3 3"), Home.now().records());
    }

    @Test
    void missingTextsAreRefusedUnasked() {
        Gateway.assertAsksNobody(() -> {
            assertEquals(-1, limit(null, 1, 1));
            assertEquals(-1, limit("", 1, 1));
            assertEquals(Lan.kFailed, limits((String) null));
            assertEquals(Lan.kFailed, limits(Lan.kTablet, null));
        });
    }

    @Test
    void eachListHasItsLimit() {
        String[] most = Lan.manyMacs(128);
        assertEquals(0, bar(most));
        List<String> records = new ArrayList<>();
        for (String mac : most) {
            records.add(mac + " 1 0 0 0");
        }
        assertEquals(records, Home.now().records());
        String[] none = Collections.nCopies(128, Lan.limit(0, 0)).toArray(new String[0]);
        assertEquals(0, limit(most[127], 5, 6));
        none[127] = Lan.limit(5, 6);
        assertEquals(Lan.list(none), limits());
        assertEquals(Lan.list(none), limits(most));
        assertEquals(-1, bar(Lan.kTablet), "the gateway keeps no more records");
        assertEquals(0, allow(Lan.manyMacs(8)));
        for (int i = 0; i < 8; i++) {
            records.set(i, most[i] + " 1 1 0 0");
        }
        records.set(127, most[127] + " 1 0 5 6");
        assertEquals(records, Home.now().records());
        Gateway.assertAsksNobody(() -> {
            assertEquals(-1, bar(Lan.manyMacs(129)));
            assertEquals(-1, bar(new String[129]));
            assertEquals(-1, allow(Lan.manyMacs(9)));
            assertEquals(-1, allow(new String[9]));
            assertEquals(Lan.kFailed, limits(Lan.manyMacs(129)));
            assertEquals(Lan.kFailed, limits(new String[129]));
        });
    }

    @Test
    void aFailedChangeOfStorageRightsIsUndone() {
        assertEquals(0, bar(Lan.kPc, Lan.kPrinter));
        assertEquals(0, allow(Lan.kPrinter));
        List<String> before = Home.now().records();

        // A host that is barred already, one with a record, and one that gets its first record.
        Gateway.fault(Gateway.kOsgiProxy, kAddRecord, "--code", "5", "--times", "1");
        assertEquals(-1, bar(Lan.kPc, Lan.kPrinter, Lan.kTablet));
        assertEquals(before, Home.now().records());

        Gateway.refuseNth(Gateway.kOsgiProxy, kAddRecord, 2, kSetRecord);
        assertEquals(-1, bar(Lan.kTablet, Lan.kPrinter, Lan.kPhone));
        assertFalse(Gateway.isRefusalLeft());
        // A record stays where there was none, with the right that it stood for.
        assertEquals(List.of(before.get(0), before.get(1), Lan.kTablet + " 1 1 0 0"),
                Home.now().records());
        Gateway.clear();

        assertEquals(0, bar(Lan.kPrinter, Lan.kTablet));
        before = Home.now().records();
        for (int k = 1; k <= 3; k++) {
            Gateway.refuseNth(Gateway.kOsgiProxy, kSetRecord, k);
            assertEquals(-1, k % 2 == 0 ? allow() : allow(Lan.kPc, Lan.kTablet, Lan.kPrinter));
            assertFalse(Gateway.isRefusalLeft());
            Gateway.clear();
            assertEquals(before, Home.now().records(), "step " + k);
        }
    }

    @Test
    void refusedLimitsAreMinusOne() {
        Gateway.fault(Gateway.kOsgiProxy, kAddRecord, "--code", "5", "--times", "1");
        assertEquals(-1, limit(Lan.kTablet, 1, 1));
        assertEquals(0, limit(Lan.kTablet, 1, 1));
        Gateway.fault(Gateway.kOsgiProxy, kSetRecord, "--code", "5", "--times", "1");
        assertEquals(-1, limit(Lan.kTablet, 2, 2));
        assertEquals(List.of(Lan.kTablet + " 1 1 1 1"), Home.now().records());
    }

    @ParameterizedTest
    @ValueSource(strings = {Gateway.kOsgiProxy, Gateway.kGulm})
    void nothingChangesWhenAProcessIsAway(String process) {
        assertEquals(0, bar(Lan.kPc));
        Gateway.kill(process);
        try {
            assertEquals(-1, limit(Lan.kTablet, 1, 1));
            assertEquals(-1, bar(Lan.kTablet));
            assertEquals(-1, allow(Lan.kPc));
            assertEquals(-1, allow());
            assertEquals(process.equals(Gateway.kGulm) ? Lan.kFailed : Lan.list(Lan.limit(0, 0)),
                    limits());
        } finally {
            Gateway.start(process);
        }
        assertEquals(List.of(Lan.kPc + " 1 0 0 0"), Home.now().records());
    }
}
