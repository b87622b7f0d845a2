package com.veltra.domoline.systemtest;

import static org.junit.jupiter.api.Assertions.assertEquals;

import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.extension.ExtendWith;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.CsvSource;
import org.junit.jupiter.params.provider.ValueSource;

/** The gateway's own address on the LAN, and its DHCP server. */
@ExtendWith(AttachedGateway.class)
class LanAddressTest {
    private static final int kSetAddress = 0x47209098;
    private static final int kSetDhcp = 0x47209099;

    @AfterEach
    void putBack() {
        assertEquals(0, Lan.kAddressConfig.setLANHostIP("192.168.1.1", "255.255.255.0"));
        assertEquals(0, setDhcp("TRUE", "192.168.1.2", "192.168.1.254"));
        LanMethod.ADDRESS.assertSucceeds();
        LanMethod.DHCP.assertSucceeds();
    }

    private static int setDhcp(String status, String start, String end) {
        return Lan.kAddressConfig.setLANDHCPInfo(status, start, end, 86400);
    }

    @Test
    void aChangedAddressIsTold() {
        assertEquals(0, Lan.kAddressConfig.setLANHostIP("10.20.30.40", "255.255.255.128"));
        assertEquals("{\"Result\":0,\"LANHostIP\":\"10.20.30.40\","
                        + "\"LANHostMask\":\"255.255.255.128\"}",
                Lan.kAddress.getLANHostIP());
        assertEquals("10.20.30.40", Gateway.get("lan.address"));
        assertEquals("255.255.255.128", Gateway.get("lan.mask"));
    }

    @ParameterizedTest
    @CsvSource({"TRUE,TRUE", "true,TRUE", "tRuE,TRUE", "FALSE,FALSE", "yes,FALSE", "1,FALSE",
            "TRUE1,FALSE", "' TRUE',FALSE"})
    void onlyTrueSwitchesTheServerOn(String status, String expected) {
        assertEquals(
                0, Lan.kAddressConfig.setLANDHCPInfo(status, "192.168.1.50", "192.168.1.60", 600));
        assertEquals("{ \"Result\": 0, \"EnableDHCPServer\": \"" + expected
                        + "\", \"DHCPStartIP\": \"192.168.1.50\", \"DHCPEndIP\": \"192.168.1.60\","
                        + " \"DHCPDuration\": 600 }",
                Lan.kAddress.getLANDHCPInfo());
        assertEquals(expected.toLowerCase(java.util.Locale.ROOT), Gateway.get("lan.dhcpEnabled"));
    }

    @ParameterizedTest
    @ValueSource(ints = {0, Integer.MAX_VALUE})
    void anyDurationIsPassedOn(int iDuration) {
        assertEquals(0,
                Lan.kAddressConfig.setLANDHCPInfo("TRUE", "192.168.1.2", "192.168.1.3", iDuration));
        assertEquals(String.valueOf(iDuration), Gateway.get("lan.dhcpLease"));
        assertEquals("{ \"Result\": 0, \"EnableDHCPServer\": \"TRUE\", \"DHCPStartIP\":"
                        + " \"192.168.1.2\", \"DHCPEndIP\": \"192.168.1.3\", \"DHCPDuration\": "
                        + iDuration + " }",
                Lan.kAddress.getLANDHCPInfo());
    }

    @Test
    void aNegativeDurationArrivesUnsigned() {
        assertEquals(
                0, Lan.kAddressConfig.setLANDHCPInfo("TRUE", "192.168.1.2", "192.168.1.3", -1));
        assertEquals("4294967295", Gateway.get("lan.dhcpLease"));
    }

    @Test
    void missingTextsAreRefusedUnasked() {
        Gateway.assertAsksNobody(() -> {
            for (String none : new String[] {null, ""}) {
                assertEquals(-1, Lan.kAddressConfig.setLANHostIP(none, "255.255.255.0"));
                assertEquals(-1, Lan.kAddressConfig.setLANHostIP("192.168.1.1", none));
                assertEquals(-1, setDhcp(none, "192.168.1.2", "192.168.1.3"));
                assertEquals(-1, setDhcp("TRUE", none, "192.168.1.3"));
                assertEquals(-1, setDhcp("TRUE", "192.168.1.2", none));
            }
        });
    }

    @Test
    void fifteenCharactersFitAndSixteenAreNotSent() {
        assertEquals(0, Lan.kAddressConfig.setLANHostIP("192.168.100.200", "255.255.255.255"));
        assertEquals("192.168.100.200", Gateway.get("lan.address"));
        // An empty text arrives, and the gateway has no use for it.
        assertEquals(-1, Lan.kAddressConfig.setLANHostIP("192.168.100.2000", "255.255.255.0"));
        assertEquals(-1, Lan.kAddressConfig.setLANHostIP("192.168.1.1", "255.255.255.0000"));
        assertEquals(-1, setDhcp("TRUE", "192.168.100.2000", "192.168.1.3"));
        assertEquals(-1, setDhcp("TRUE", "192.168.1.2", "192.168.100.2000"));
        assertEquals("192.168.100.200", Gateway.get("lan.address"));
        LanMethod.DHCP.assertSucceeds();
    }

    @Test
    void whatTheGatewayRefusesChangesNothing() {
        assertEquals(-1, Lan.kAddressConfig.setLANHostIP("192.168.1.256", "255.255.255.0"));
        assertEquals(-1, setDhcp("FALSE", "here", "there"));
        LanMethod.ADDRESS.assertSucceeds();
        LanMethod.DHCP.assertSucceeds();
    }

    @Test
    void refusedOrUnansweredChangesAreMinusOne() {
        Gateway.fault(Gateway.kOsgiProxy, kSetAddress, "--code", "0xF7307005", "--times", "1");
        Gateway.fault(Gateway.kOsgiProxy, kSetDhcp, "--code", "0xF7307005", "--times", "1");
        assertEquals(-1, Lan.kAddressConfig.setLANHostIP("10.0.0.1", "255.0.0.0"));
        assertEquals(-1, setDhcp("FALSE", "10.0.0.2", "10.0.0.3"));
        for (String process : new String[] {Gateway.kOsgiProxy, Gateway.kGulm}) {
            Gateway.kill(process);
            try {
                assertEquals(-1, Lan.kAddressConfig.setLANHostIP("10.0.0.1", "255.0.0.0"));
                assertEquals(-1, setDhcp("FALSE", "10.0.0.2", "10.0.0.3"));
            } finally {
                Gateway.start(process);
            }
            LanMethod.ADDRESS.assertSucceeds();
            LanMethod.DHCP.assertSucceeds();
        }
    }
}
