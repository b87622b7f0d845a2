package com.veltra.domoline.systemtest;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertTrue;

import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.extension.ExtendWith;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.EnumSource;
import org.junit.jupiter.params.provider.ValueSource;

/** Who is on the LAN, and the names of the gateway and of the hosts. */
@ExtendWith(AttachedGateway.class)
class LanHostsTest {
    private static final int kSetHostName = 0x4720909D;
    private static final int kSetGatewayName = 0x4720909E;
    private static final String kGuest = "02:A1:B2:00:20:09";

    @ParameterizedTest
    @EnumSource(LanMethod.class)
    void answersWhatTheHomeSays(LanMethod method) {
        method.assertSucceeds();
    }

    @Test
    void noAddressesAskForAllHosts() {
        for (String[] none : new String[][] {null, {}, {""}, {"", ""}}) {
            assertEquals(Lan.kAllHosts, Lan.kHosts.getLANHostInfoByMAC(none));
            String statistics = Lan.kHosts.getLANHostStats(none);
            assertEquals(5, Home.answered(statistics, "RxPackets").size(), statistics);
        }
        // Nothing but bad ones: they are left out, and no address remains.
        assertEquals(Lan.kAllHosts, Lan.kHosts.getLANHostInfoByMAC(Lan.macs(null, null)));
    }

    @Test
    void addressesAreComparedWithoutRegardToCase() {
        assertEquals(Lan.hosts(Lan.kTvInfo),
                Lan.kHosts.getLANHostInfoByMAC(Lan.macs("02:a1:b2:00:20:02")));
        assertEquals("{\"Result\":0,\"UpSpeed\":16,\"DownSpeed\":320}",
                Lan.kSpeed.getLANHostSpeed("02:a1:b2:00:20:03"));
    }

    @Test
    void unknownHostsAreNotInTheList() {
        assertEquals(Lan.hosts(), Lan.kHosts.getLANHostInfoByMAC(Lan.macs(kGuest)));
        assertEquals(Lan.hosts(Lan.kPcInfo),
                Lan.kHosts.getLANHostInfoByMAC(Lan.macs(kGuest, "", Lan.kPc)));
        assertEquals(Lan.hosts(), Lan.kHosts.getLANHostStats(Lan.macs("", kGuest)));
        assertEquals(Lan.hosts(), Lan.kHosts.getLANHostInfoByClass("ROBOT"));
        assertEquals(Lan.hosts(), Lan.kHosts.getLANHostInfoByInterface("SSID9"));
        assertEquals(Lan.kFailed, Lan.kSpeed.getLANHostSpeed(kGuest));
    }

    @Test
    void aMissingAddressIsLeftOutOfOneListAndFailsTheOther() {
        assertEquals(Lan.hosts(Lan.kPcInfo, Lan.kPrinterInfo),
                Lan.kHosts.getLANHostInfoByMAC(Lan.macs(null, Lan.kPrinter, null, Lan.kPc)));
        Gateway.assertAsksNobody(() -> {
            assertEquals(Lan.kFailed, Lan.kHosts.getLANHostStats(Lan.macs(Lan.kPc, null)));
            assertEquals(Lan.kFailed, Lan.kHosts.getLANHostStats(Lan.macs((String) null)));
        });
    }

    @Test
    void missingWordsAreRefusedUnasked() {
        Gateway.assertAsksNobody(() -> {
            for (String none : new String[] {null, ""}) {
                assertEquals(Lan.kFailed, Lan.kHosts.getLANHostInfoByClass(none));
                assertEquals(Lan.kFailed, Lan.kHosts.getLANHostInfoByInterface(none));
                assertEquals(Lan.kFailed, Lan.kSpeed.getLANHostSpeed(none));
            }
        });
    }

    @Test
    void fifteenCharactersOfAWordAreSentWholeAndSixteenNotAtAll() {
        String fifteen = "FIFTEEN-LETTERS";
        Gateway.ctl("host", "add", kGuest, "--class", fifteen, "--interface", fifteen);
        try {
            String guest = Lan.hosts("{\"MAC\":\"" + kGuest + "\",\"IP\":\"0.0.0.0\","
                    + "\"DevName\":\"\",\"HostClass\":\"" + fifteen + "\",\"Interface\":\""
                    + fifteen + "\",\"Active\":1,\"OnlineTime\":0}");
            assertEquals(guest, Lan.kHosts.getLANHostInfoByClass(fifteen));
            assertEquals(guest, Lan.kHosts.getLANHostInfoByInterface(fifteen));
            assertEquals(Lan.hosts(), Lan.kHosts.getLANHostInfoByClass(fifteen + "S"));
            assertEquals(Lan.hosts(), Lan.kHosts.getLANHostInfoByInterface(fifteen + "S"));
        } finally {
            Gateway.ctl("host", "remove", kGuest);
        }
        LanMethod.ALL_HOSTS.assertSucceeds();
    }

    @Test
    void hostsJoinChangeAndLeave() {
        Gateway.ctl("host", "add", kGuest, "--name", "G\u00E4ste-\u624B\u673A", "--ip",
                "192.168.1.77", "--class", "PHONE", "--interface", "SSID2");
        try {
            String guest = "{\"MAC\":\"" + kGuest
                    + "\",\"IP\":\"192.168.1.77\",\"DevName\":\"G\u00E4ste-\u624B\u673A\","
                    + "\"HostClass\":\"PHONE\",\"Interface\":\"SSID2\",\"Active\":1,"
                    + "\"OnlineTime\":0}";
            assertEquals(
                    Lan.hosts(Lan.kPhoneInfo, guest), Lan.kHosts.getLANHostInfoByClass("PHONE"));
            Gateway.ctl("host", "set", kGuest, "downSpeed", "4294967295");
            assertEquals("{\"Result\":0,\"UpSpeed\":0,\"DownSpeed\":4294967295}",
                    Lan.kSpeed.getLANHostSpeed(kGuest));
        } finally {
            Gateway.ctl("host", "remove", kGuest);
        }
        LanMethod.ALL_HOSTS.assertSucceeds();
    }

    // ---- names ----

    @Test
    void theGatewaysNameChanges() {
        try {
            for (String name : new String[] {"Villa", "K\u00E4fer \uD83C\uDFE0", "a \"b\" \\c"}) {
                assertEquals(0, Lan.kNames.setGatewayName(name));
                assertEquals(name, Lan.kHosts.getGatewayName());
                assertEquals(name, Gateway.get("network.gatewayName"));
            }
        } finally {
            Lan.kNames.setGatewayName("SimHome gateway");
        }
        LanMethod.GATEWAY_NAME.assertSucceeds();
    }

    @Test
    void twoHundredFiftySixCharactersOfTheGatewaysNameAreSentAndOneMoreIsNot() {
        String longest = "n".repeat(256);
        try {
            assertEquals(0, Lan.kNames.setGatewayName(longest));
            assertEquals(longest, Gateway.get("network.gatewayName"));
            // The reply fills the library's buffer; it has no room for the text's end.
            assertEquals(longest, Lan.kHosts.getGatewayName());
            Gateway.assertAsksNobody(() -> {
                assertEquals(-2, Lan.kNames.setGatewayName(longest + "n"));
                // Counted as they travel: two bytes each.
                assertEquals(-2, Lan.kNames.setGatewayName("\u00E4".repeat(129)));
                assertEquals(-1, Lan.kNames.setGatewayName(""));
                assertEquals(-1, Lan.kNames.setGatewayName(null));
            });
        } finally {
            Lan.kNames.setGatewayName("SimHome gateway");
        }
    }

    @Test
    void aHostsNameChanges() {
        String longest = "n".repeat(64);
        try {
            assertEquals(0, Lan.kNames.setLANHostName("02:a1:b2:00:20:05", longest));
            assertEquals(Lan.hosts(Lan.kPrinterInfo.replace("printer", longest)),
                    Lan.kHosts.getLANHostInfoByMAC(Lan.macs(Lan.kPrinter)));
            Gateway.assertAsksNobody(
                    () -> assertEquals(-2, Lan.kNames.setLANHostName(Lan.kPrinter, longest + "n")));
        } finally {
            Lan.kNames.setLANHostName(Lan.kPrinter, "printer");
        }
        LanMethod.ALL_HOSTS.assertSucceeds();
    }

    @Test
    void aHostsNameNeedsBothTexts() {
        Gateway.assertAsksNobody(() -> {
            for (String none : new String[] {null, ""}) {
                assertEquals(-1, Lan.kNames.setLANHostName(none, "laser"));
                assertEquals(-1, Lan.kNames.setLANHostName(Lan.kPrinter, none));
            }
        });
        assertEquals(-1, Lan.kNames.setLANHostName(kGuest, "nobody"));
        // Whole or not at all: a shortened address could be another host's.
        assertEquals(-1,
                Lan.kNames.setLANHostName("02:A1:B2:00:20:05"
                                + " ".repeat(15),
                        "laser"));
        LanMethod.ALL_HOSTS.assertSucceeds();
    }

    @ParameterizedTest
    @ValueSource(strings = {Gateway.kOsgiProxy, Gateway.kAppM})
    void namesStayWhenAProcessIsAway(String process) {
        Gateway.kill(process);
        try {
            assertEquals(-1, Lan.kNames.setGatewayName("Villa"));
            assertEquals(-1, Lan.kNames.setLANHostName(Lan.kPrinter, "laser"));
        } finally {
            Gateway.start(process);
        }
        LanMethod.GATEWAY_NAME.assertSucceeds();
        LanMethod.ALL_HOSTS.assertSucceeds();
    }

    @Test
    void refusedNamesAreMinusOne() {
        Gateway.fault(Gateway.kOsgiProxy, kSetGatewayName, "--code", "0xFFFFFFFE", "--times", "1");
        Gateway.fault(Gateway.kOsgiProxy, kSetHostName, "--code", "9", "--times", "1");
        assertEquals(-1, Lan.kNames.setGatewayName("Villa"));
        assertEquals(-1, Lan.kNames.setLANHostName(Lan.kPrinter, "laser"));
        LanMethod.GATEWAY_NAME.assertSucceeds();
        LanMethod.ALL_HOSTS.assertSucceeds();
    }

    // ---- how many ----

    @Test
    void oneHundredTwentyEightAddressesAreAskedAboutAndOneMoreIsNot() {
        String[] most = Lan.manyMacs(128);
        most[127] = Lan.kTablet;
        assertEquals(Lan.hosts(Lan.kTabletInfo), Lan.kHosts.getLANHostInfoByMAC(most));
        assertTrue(Lan.kHosts.getLANHostStats(most).startsWith(
                "{\"Result\":0,\"List\":[{\"MAC\":\"02:A1:B2:00:20:04\",\"RxBytes\":52428800,"));
        Gateway.assertAsksNobody(() -> {
            for (String[] tooMany : new String[][] {Lan.manyMacs(129), new String[129]}) {
                assertEquals(Lan.kFailed, Lan.kHosts.getLANHostInfoByMAC(tooMany));
                assertEquals(Lan.kFailed, Lan.kHosts.getLANHostStats(tooMany));
            }
        });
    }
}
