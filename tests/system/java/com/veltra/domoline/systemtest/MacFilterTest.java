package com.veltra.domoline.systemtest;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;

import java.util.ArrayList;
import java.util.Arrays;
import java.util.Collections;
import java.util.List;
import java.util.function.ToIntFunction;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.extension.ExtendWith;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.ValueSource;

/**
 * The MAC filter. The home has the wireless networks 1, 2 and 5, of which the second is kept out of
 * the filter.
 */
@ExtendWith(AttachedGateway.class)
class MacFilterTest {
    private static final int kAddWired = 0x47209092;
    private static final int kDeleteWired = 0x47209093;
    private static final int kAddWireless = 0x47209094;
    private static final int kDeleteWireless = 0x47209095;
    private static final int kSetMode = 0x47209091;
    private static final int kIsExcluded = 0x49350180;

    @AfterEach
    void putBack() {
        Gateway.set("macFilter.mode", "0");
        Gateway.set("macFilter.status", "0");
        assertEquals(0, unblock());
        assertTables();
        LanMethod.FILTER_MODE.assertSucceeds();
    }

    private static int block(String... macs) {
        return Lan.kAccess.addLANHostToBlackList(macs);
    }

    private static int unblock(String... macs) {
        return Lan.kAccess.deleteLANHostFromBlackList(macs);
    }

    private static int trust(String... macs) {
        return Lan.kAccess.addLANHostToTrustList(macs);
    }

    private static int distrust(String... macs) {
        return Lan.kAccess.deleteLANHostFromTrustList(macs);
    }

    private static void assertTables(String... macs) {
        Home home = Home.now();
        assertEquals(List.of(macs), home.wired());
        String[] wireless = new String[2 * macs.length];
        Arrays.setAll(wireless, i -> (i % 2 == 0 ? "SSID-1 " : "SSID-5 ") + macs[i / 2]);
        assertEquals(List.of(wireless), home.wireless());
    }

    // ---- mode ----

    @Test
    void theModeIsSetAndTold() {
        for (int iMode : new int[] {1, 2, 0, 2, 1}) {
            assertEquals(0, Lan.kAccess.setMacFilterMode(iMode));
            assertEquals(iMode, Lan.kHosts.getMacFilterMode());
            long lSent = Gateway.requests().get(Gateway.kOsgiProxy);
            assertEquals(0, Lan.kAccess.setMacFilterMode(iMode), "it is so already");
            assertEquals(lSent, Gateway.requests().get(Gateway.kOsgiProxy), "sent once more");
        }
    }

    @Test
    void switchingOffKeepsTheMode() {
        assertEquals(0, Lan.kAccess.setMacFilterMode(2));
        assertEquals(0, Lan.kAccess.setMacFilterMode(0));
        assertEquals("1", Gateway.get("macFilter.mode"));
        assertEquals("0", Gateway.get("macFilter.status"));
        assertEquals(0, trust(Lan.kPc), "the mode counts while the filter is off, too");
        assertEquals(0, distrust(Lan.kPc));
    }

    @Test
    void otherModesAreTheGatewaysToRefuse() {
        for (int iMode : new int[] {3, -1, Integer.MAX_VALUE, Integer.MIN_VALUE}) {
            assertEquals(-1, Lan.kAccess.setMacFilterMode(iMode));
        }
        LanMethod.FILTER_MODE.assertSucceeds();
    }

    @Test
    void aModeThatCannotBeReadIsSetNevertheless() {
        Gateway.fault(Gateway.kGulm, LanMethod.FILTER_MODE.rpc(), "--code", "5", "--times", "1");
        assertEquals(0, Lan.kAccess.setMacFilterMode(2));
        assertEquals(2, Lan.kHosts.getMacFilterMode());
        Gateway.fault(Gateway.kOsgiProxy, kSetMode, "--code", "5", "--times", "1");
        assertEquals(-1, Lan.kAccess.setMacFilterMode(1));
        assertEquals(2, Lan.kHosts.getMacFilterMode());
    }

    // ---- lists ----

    @Test
    void aListedHostIsInBothTables() {
        assertEquals(0, block(Lan.kTablet, Lan.kPhone));
        assertTables(Lan.kTablet, Lan.kPhone);
        assertEquals(List.of("YYYYYNN 00:00 23:59", "YYYYYNN 00:00 23:59"),
                Home.now().list("macFilter.lan", "days", "start", "end"));
        assertEquals(0, unblock(Lan.kTablet));
        assertTables(Lan.kPhone);
    }

    @Test
    void theTrustListWorksLikewise() {
        Lan.kAccess.setMacFilterMode(2);
        assertEquals(0, trust(Lan.kTablet, Lan.kPhone));
        assertTables(Lan.kTablet, Lan.kPhone);
        assertEquals(0, distrust(Lan.kPhone, Lan.kTv));
        assertTables(Lan.kTablet);
    }

    @Test
    void deletingIgnoresCaseAndStrangers() {
        assertEquals(0, block("02:aa:BB:cc:dd:EE", Lan.kPc));
        assertEquals(0, unblock(Lan.kTv, "02:AA:bb:CC:DD:ee"));
        assertTables(Lan.kPc);
    }

    @Test
    void addressesOfOtherFormsPassAsTheyAre() {
        assertEquals(0, block("x", "an address of more than thirty-one characters"));
        assertTables("x", "an address of more than thirty-");
    }

    @Test
    void withoutWifiOnlyTheWiredTableChanges() {
        Gateway.ctl("feature", "314", "off");
        try {
            assertEquals(0, block(Lan.kTablet));
            assertEquals(List.of(Lan.kTablet), Home.now().wired());
            assertEquals(List.of(), Home.now().wireless());
        } finally {
            Gateway.ctl("feature", "314", "on");
        }
    }

    @Test
    void aNetworkThatCannotBeAskedAboutTakesPart() {
        Gateway.fault(Gateway.kGulm, kIsExcluded, "--code", "5", "--times", "3");
        assertEquals(0, block(Lan.kTablet));
        assertEquals(
                List.of("SSID-1 " + Lan.kTablet, "SSID-2 " + Lan.kTablet, "SSID-5 " + Lan.kTablet),
                Home.now().wireless());
    }

    @Test
    void theOtherModesListIsLeftAlone() {
        assertEquals(0, block(Lan.kTablet));
        assertEquals(-1, trust(Lan.kPc));
        assertEquals(0, distrust(Lan.kTablet));
        assertTables(Lan.kTablet);
        Gateway.set("macFilter.mode", "1");
        assertEquals(-1, block(Lan.kPc));
        assertEquals(0, unblock(Lan.kTablet));
        assertEquals(0, unblock());
        assertTables(Lan.kTablet);
    }

    @Test
    void deletingNothingEmptiesTheBlackListAndNotTheTrustList() {
        for (String[] none : new String[][] {null, {}, {""}, {null}, {null, "", ""}}) {
            assertEquals(0, block(Lan.kTablet, Lan.kPhone));
            assertEquals(0, Lan.kAccess.deleteLANHostFromBlackList(none));
            assertTables();
            Gateway.set("macFilter.mode", "1");
            assertEquals(0, trust(Lan.kTablet));
            assertEquals(0, Lan.kAccess.deleteLANHostFromTrustList(none));
            assertTables(Lan.kTablet);
            assertEquals(0, distrust(Lan.kTablet));
            Gateway.set("macFilter.mode", "0");
        }
    }

    @Test
    void addingNothingDoesNothing() {
        Gateway.assertAsksNobody(() -> {
            for (String[] none : new String[][] {null, {}, {""}, {null}, {null, "", ""}}) {
                assertEquals(0, Lan.kAccess.addLANHostToBlackList(none));
                assertEquals(0, Lan.kAccess.addLANHostToTrustList(none));
            }
        });
        assertEquals(0, block(null, Lan.kPc, ""));
        assertTables(Lan.kPc);
    }

    // ---- limits ----

    @Test
    void eachListHasItsLimit() {
        assertEquals(0, block(Lan.manyMacs(8)));
        assertTables(Lan.manyMacs(8));
        assertEquals(0, unblock(Lan.manyMacs(128)));
        assertTables();
        Gateway.set("macFilter.mode", "1");
        assertEquals(0, trust(Lan.manyMacs(8)));
        assertEquals(0, distrust(Lan.manyMacs(8)));
        assertTables();
        Gateway.set("macFilter.mode", "0");
        Gateway.assertAsksNobody(() -> {
            assertEquals(-1, block(Lan.manyMacs(9)));
            assertEquals(-1, unblock(Lan.manyMacs(129)));
            assertEquals(-1, trust(Lan.manyMacs(9)));
            assertEquals(-1, distrust(Lan.manyMacs(9)));
            // Nothing in them, but too many of it.
            assertEquals(-1, block(new String[9]));
            assertEquals(-1, unblock(new String[129]));
        });
    }

    @Test
    void aFullTableTakesNoMoreAndKeepsWhatItHas() {
        for (int i = 0; i < 32; i += 8) {
            String[] macs = Arrays.copyOfRange(Lan.manyMacs(32), i, i + 8);
            assertEquals(0, block(macs));
        }
        assertEquals(-1, block(Lan.kTablet));
        assertTables(Lan.manyMacs(32));
        assertEquals(0, unblock(Lan.manyMacs(31)));
        assertTables(Lan.manyMac(31));
    }

    // ---- processes ----

    @ParameterizedTest
    @ValueSource(strings = {Gateway.kOsgiProxy, Gateway.kGulm})
    void nothingChangesWhenAProcessIsAway(String process) {
        assertEquals(0, block(Lan.kTablet));
        Gateway.kill(process);
        try {
            assertEquals(-1, Lan.kAccess.setMacFilterMode(1));
            assertEquals(-1, block(Lan.kPc));
            assertEquals(-1, unblock(Lan.kTablet));
            assertEquals(-1, unblock());
            if (process.equals(Gateway.kGulm)) {
                assertEquals(-1, trust(Lan.kPc));
                assertEquals(-1, distrust(Lan.kPc));
                assertEquals(-1, Lan.kHosts.getMacFilterMode());
            }
        } finally {
            Gateway.start(process);
        }
        assertTables(Lan.kTablet);
    }

    @Test
    void addingNeedsTheWirelessNetworksOfAppM() {
        Gateway.kill(Gateway.kAppM);
        try {
            assertEquals(-1, block(Lan.kTablet));
        } finally {
            Gateway.start(Gateway.kAppM);
        }
        assertTables();
    }

    // ---- undo ----

    /** Each step of a change in turn is refused: both tables stay as they were. */
    private static void undone(int iRpc, int iSteps, int iOther, ToIntFunction<String[]> change) {
        for (int k = 1; k <= iSteps; k += Boolean.getBoolean("wap.emulated") ? iSteps - 1 : 1) {
            List<String> before = tables();
            Gateway.refuseNth(Gateway.kOsgiProxy, iRpc, k, iOther);
            assertEquals(-1, change.applyAsInt(Lan.macs(Lan.kTablet, Lan.kPhone, Lan.kTv)));
            assertFalse(Gateway.isRefusalLeft(), "step " + k + " was not refused");
            Gateway.clear();
            assertEquals(before, tables(), "step " + k);
        }
    }

    /** Both tables without their order, which an undo need not keep. */
    private static List<String> tables() {
        Home home = Home.now();
        List<String> rows = new ArrayList<>(home.wired());
        rows.addAll(home.wireless());
        Collections.sort(rows);
        return rows;
    }

    @Test
    void aFailedAddIsUndone() {
        assertEquals(0, block(Lan.kPc));
        undone(kAddWired, 3, kAddWireless, macs -> block(macs));
        undone(kAddWireless, 6, kAddWired, macs -> block(macs));
        assertTables(Lan.kPc);
    }

    @Test
    void aFailedDeletionIsUndone() {
        assertEquals(0, block(Lan.kTablet, Lan.kPc, Lan.kPhone, Lan.kTv));
        undone(kDeleteWired, 3, kDeleteWireless, macs -> unblock(macs));
        undone(kDeleteWireless, 6, kDeleteWired, macs -> unblock(macs));
        assertEquals(4, Home.now().wired().size());
        assertEquals(8, Home.now().wireless().size());
    }

    @Test
    void aFailedClearingIsUndone() {
        assertEquals(0, block(Lan.kTablet, Lan.kPc, Lan.kPhone, Lan.kTv));
        undone(kDeleteWired, 4, kDeleteWireless, macs -> unblock());
        undone(kDeleteWireless, 8, kDeleteWired, macs -> unblock());
        assertEquals(4, Home.now().wired().size());
        assertEquals(8, Home.now().wireless().size());
    }
}
