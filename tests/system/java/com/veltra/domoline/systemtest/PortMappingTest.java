package com.veltra.domoline.systemtest;

import static org.junit.jupiter.api.Assertions.assertEquals;

import java.util.List;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.extension.ExtendWith;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.ValueSource;

/** Port mappings. The home as shipped has one, for its first WAN connection. */
@ExtendWith(AttachedGateway.class)
class PortMappingTest {
    private static final int kGetWan = 0x47301049;
    private static final int kGetMapping = 0x47309010;
    private static final int kAdd = 0x4720909A;
    private static final int kDelete = 0x4720909B;
    private static final int kSwitch = 0x4720909C;
    private static final String kShipped = row(1, Lan.kFirst, "true 8443 443 TCP 192.168.1.10");

    @AfterEach
    void putBack() {
        for (String row : Home.now().list("portMapping", "id", "wanIndex")) {
            int iId = Integer.parseInt(row.split(" ")[0]);
            if (iId != 1) {
                delete(Integer.parseInt(row.split(" ")[1]), iId);
            }
        }
        turn(Lan.kFirst, 1, true);
    }

    @BeforeEach
    void homeIsAsShipped() {
        LanMethod.PORT_MAPPINGS.assertSucceeds();
        assertEquals(List.of(kShipped), Home.now().mappings());
    }

    /** A mapping as the home has it. */
    private static String row(int iId, int iWan, String rest) {
        return iId + " " + iWan + " " + rest;
    }

    private static int add(int iWan, int iExternal, int iInternal, String protocol, String client) {
        return Lan.kMappingConfig.addPortMapping(iWan, iExternal, iInternal, protocol, client);
    }

    private static int delete(int iWan, int iId) {
        return Lan.kMappingConfig.deletePortMapping(iWan, iId);
    }

    private static int turn(int iWan, int iId, boolean bOn) {
        return Lan.kMappingConfig.setPortMappingSwitch(iWan, iId, bOn);
    }

    private static String listed() {
        return Lan.kMappings.getPortMappingInfo();
    }

    @Test
    void mappingsAreListedByWanConnection() {
        assertEquals(0, add(Lan.kSecond, 53, 5353, "UDP", "192.168.1.11"));
        assertEquals(0, add(Lan.kFirst, 22, 2222, "TCP", "192.168.1.12"));
        assertEquals(Lan.list(Lan.wan(Lan.kWanName, Lan.kShippedMapping,
                                      Lan.mapping(3, true, 22, 2222, "TCP", "192.168.1.12")),
                             Lan.wan(Lan.kOtherWanName,
                                     Lan.mapping(2, true, 53, 5353, "UDP", "192.168.1.11"))),
                listed());
        assertEquals(List.of(kShipped, row(2, Lan.kSecond, "true 53 5353 UDP 192.168.1.11"),
                             row(3, Lan.kFirst, "true 22 2222 TCP 192.168.1.12")),
                Home.now().mappings());
    }

    @Test
    void aListWithoutMappingsIsEmpty() {
        assertEquals(0, delete(Lan.kFirst, 1));
        try {
            assertEquals("{ \"Result\": 0, \"List\": [ ] }", listed());
        } finally {
            assertEquals(0, add(Lan.kFirst, 8443, 443, "TCP", "192.168.1.10"));
        }
    }

    @Test
    void aMappingIsSwitchedOffAndOn() {
        for (boolean bOn : new boolean[] {false, true}) {
            assertEquals(0, turn(Lan.kFirst, 1, bOn));
            assertEquals(Lan.list(Lan.wan(Lan.kWanName,
                                 Lan.mapping(1, bOn, 8443, 443, "TCP", "192.168.1.10"))),
                    listed());
            long lSent = Gateway.requests().get(Gateway.kOsgiProxy);
            assertEquals(0, turn(Lan.kFirst, 1, bOn), "it is so already");
            assertEquals(lSent, Gateway.requests().get(Gateway.kOsgiProxy), "sent once more");
        }
        // The second connection is of the other kind, whose mappings are asked for by another RPC.
        assertEquals(0, add(Lan.kSecond, 53, 5353, "UDP", "192.168.1.11"));
        assertEquals(0, turn(Lan.kSecond, 2, false));
        assertEquals(row(2, Lan.kSecond, "false 53 5353 UDP 192.168.1.11"),
                Home.now().mappings().get(1));
    }

    @Test
    void aMappingIsDeletedOnce() {
        assertEquals(0, add(Lan.kFirst, 22, 2222, "TCP", "192.168.1.12"));
        assertEquals(-1, delete(Lan.kSecond, 2), "of another connection");
        assertEquals(0, delete(Lan.kFirst, 2));
        assertEquals(-1, delete(Lan.kFirst, 2));
        LanMethod.PORT_MAPPINGS.assertSucceeds();
    }

    @Test
    void aMappingThatTheServiceRefusesIsMinusTwo() {
        assertEquals(-2, add(Lan.kFirst, 8443, 1, "TCP", "192.168.1.11"), "the port is taken");
        assertEquals(-1, add(Lan.kFirst, 0, 1, "TCP", "192.168.1.11"), "refused with another code");
        assertEquals(-1, add(Lan.kFirst, 1, 65536, "TCP", "192.168.1.11"));
        assertEquals(-1, add(Lan.kFirst, -1, 1, "TCP", "192.168.1.11"));
        Gateway.fault(Gateway.kOsgiProxy, kAdd, "--code", "0xF7307005", "--times", "1");
        assertEquals(-2, add(Lan.kFirst, 1, 1, "TCP", "192.168.1.11"));
        Gateway.fault(Gateway.kOsgiProxy, kAdd, "--code", "0xF7307006", "--times", "1");
        assertEquals(-1, add(Lan.kFirst, 1, 1, "TCP", "192.168.1.11"));
    }

    @Test
    void missingTextsAreRefusedUnasked() {
        Gateway.assertAsksNobody(() -> {
            for (String none : new String[] {null, ""}) {
                assertEquals(-1, add(Lan.kFirst, 22, 22, none, "192.168.1.12"));
                assertEquals(-1, add(Lan.kFirst, 22, 22, "TCP", none));
            }
        });
    }

    @Test
    void fifteenCharactersOfATextAreKept() {
        assertEquals(0, add(Lan.kFirst, 22, 22, "PROTOCOL-OF-15-", "client-of-15-ch"));
        assertEquals(
                0, add(Lan.kFirst, 23, 23, "PROTOCOL-OF-15-AND-MORE", "client-of-15-ch-and-more"));
        assertEquals(List.of(kShipped,
                             row(2, Lan.kFirst, "true 22 22 PROTOCOL-OF-15- client-of-15-ch"),
                             row(3, Lan.kFirst, "true 23 23 PROTOCOL-OF-15- client-of-15-ch")),
                Home.now().mappings());
    }

    @Test
    void onlySomeConnectionsMayHaveMappings() {
        // The third is closed to them, and the others don't exist.
        for (int iWan : new int[] {Lan.kThird, 0x10109001, 1, 0, -1}) {
            assertEquals(-1, add(iWan, 22, 22, "TCP", "192.168.1.12"));
            assertEquals(-1, delete(iWan, 1));
            assertEquals(-2, turn(iWan, 1, false));
        }
    }

    @Test
    void anUnknownMappingCannotBeFetched() {
        assertEquals(-2, turn(Lan.kFirst, 2, true));
        assertEquals(-2, turn(Lan.kFirst, 0, true));
        assertEquals(-2, turn(Lan.kSecond, 1, true), "of another connection");
        Gateway.fault(Gateway.kGulm, kGetMapping, "--code", "5", "--times", "1");
        assertEquals(-2, turn(Lan.kFirst, 1, false));
    }

    @Test
    void refusedChangesAreMinusOne() {
        Gateway.fault(Gateway.kOsgiProxy, kDelete, "--code", "0xF7307005", "--times", "1");
        Gateway.fault(Gateway.kOsgiProxy, kSwitch, "--code", "0xF7307005", "--times", "1");
        assertEquals(-1, delete(Lan.kFirst, 1));
        assertEquals(-1, turn(Lan.kFirst, 1, false));
        // The connection is asked for twice, and here only the first time in vain or the second.
        Gateway.fault(Gateway.kGulm, kGetWan, "--code", "5", "--times", "1");
        assertEquals(-2, turn(Lan.kFirst, 1, false));
        Gateway.refuseNth(Gateway.kGulm, kGetWan, 2, kGetMapping);
        assertEquals(-1, turn(Lan.kFirst, 1, false));
        Gateway.fault(Gateway.kGulm, kGetWan, "--code", "5", "--times", "1");
        assertEquals(Lan.kFailed, listed(), "the connection's name is missing");
    }

    @ParameterizedTest
    @ValueSource(strings = {Gateway.kOsgiProxy, Gateway.kGulm})
    void nothingChangesWhenAProcessIsAway(String process) {
        boolean bOwner = process.equals(Gateway.kGulm);
        Gateway.kill(process);
        try {
            assertEquals(-1, add(Lan.kFirst, 22, 22, "TCP", "192.168.1.12"));
            assertEquals(-1, delete(Lan.kFirst, 1));
            assertEquals(bOwner ? -2 : -1, turn(Lan.kFirst, 1, false));
            assertEquals(
                    bOwner ? Lan.kFailed : Lan.list(Lan.wan(Lan.kWanName, Lan.kShippedMapping)),
                    listed());
        } finally {
            Gateway.start(process);
        }
    }

    @Test
    void aFullTableIsListedWhole() {
        int iMost = 64;
        StringBuilder mappings = new StringBuilder(Lan.kShippedMapping);
        for (int i = 2; i <= iMost; i++) {
            assertEquals(0, add(Lan.kFirst, 1000 + i, i, "TCP", "192.168.100.200"));
            mappings.append(", ").append(
                    Lan.mapping(i, true, 1000 + i, i, "TCP", "192.168.100.200"));
        }
        assertEquals(
                -1, add(Lan.kFirst, 999, 999, "TCP", "192.168.100.200"), "no room for another");
        assertEquals(Lan.list(Lan.wan(Lan.kWanName, mappings.toString())), listed());
    }
}
