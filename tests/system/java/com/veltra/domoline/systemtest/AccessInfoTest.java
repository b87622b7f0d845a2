package com.veltra.domoline.systemtest;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.util.List;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.EnumSource;
import org.junit.jupiter.params.provider.ValueSource;

/** How the WAN connections and the PON are doing. Each test begins with a new gateway. */
class AccessInfoTest extends NewGatewayEachTime {
    private static final String kNoConnections = "{ \"Result\": 0, \"List\": [ ] }";
    private static final String kUnknownPhysical =
            "{\"Result\":-2, \"TXPower\": 0, \"RXPower\": 0,\"TransceiverTemperature\": 0,"
            + "\"SupplyVottage\": 0,\"BiasCurrent\": 0}";
    private static final String kFailedPhysical =
            "{\"Result\":-1, \"TXPower\": 0, \"RXPower\": 0,\"TransceiverTemperature\": 0,"
            + "\"SupplyVottage\": 0,\"BiasCurrent\": 0}";
    private static final String kUnknownRegistration =
            "{\"Result\":-2, \"RegisterStatus\": \"NO_REG_NO_AUTH\"}";
    private static final String kFailedRegistration =
            "{\"Result\":-1, \"RegisterStatus\": \"NO_REG_NO_AUTH\"}";
    private static final String kFailedUplink = "{\"Result\":-1, \"UsStats\": 0, \"DsStats\": 0}";
    /** The queries that app_m answers with a text. */
    private static final List<WanMethod> kTexts = List.of(WanMethod.WAN_STATISTICS,
            WanMethod.WAN_INFO, WanMethod.WAN_BANDWIDTH, WanMethod.WAN_STATUS,
            WanMethod.PON_PHYSICAL, WanMethod.PON_REGISTRATION, WanMethod.UPLINK_STATISTICS);
    private static final List<WanMethod> kPon = List.of(WanMethod.PON_PHYSICAL,
            WanMethod.PON_UP_TIME, WanMethod.PON_REGISTRATION, WanMethod.UPLINK_STATISTICS);

    private static void faultAll(List<WanMethod> methods, String... what) {
        for (WanMethod method : methods) {
            Gateway.fault(Gateway.kAppM, method.rpc(), what);
        }
    }

    private static void assertPon(
            String physical, int iUpTime, String registration, String uplink) {
        assertEquals(physical, Wan.kAccess.getPONIfPhyStatus());
        assertEquals(iUpTime, Wan.kAccess.getPONIfUpTime());
        assertEquals(registration, Wan.kAccess.getPONIfRegisterStatus());
        assertEquals(uplink, Wan.kAccess.getUplinkIfStats());
    }

    @ParameterizedTest
    @EnumSource(WanMethod.class)
    void answersWhatTheHomeSays(WanMethod method) {
        method.assertSucceeds();
    }

    // ---- WAN connections ----

    @Test
    void withoutGulmThereAreNoConnections() {
        Gateway.fault(Gateway.kGulm, WanMethod.WAN_LIST.rpc(), "--code", "5", "--times", "1");
        assertEquals(kNoConnections, Wan.kAccess.getWANIfList());
        Gateway.fault(Gateway.kGulm, WanMethod.WAN_LIST.rpc(), "--truncate", "0", "--times", "1");
        assertEquals(kNoConnections, Wan.kAccess.getWANIfList());
        WanMethod.WAN_LIST.assertSucceeds();
        Gateway.kill(Gateway.kGulm);
        assertEquals(kNoConnections, Wan.kAccess.getWANIfList());
        assertEquals(Wan.kFailed, Wan.kAccess.getWANIfStats(Wan.kInternet));
        assertEquals(-1, Wan.kAccess.getInternetWANIndex());
        Gateway.start(Gateway.kGulm);
        WanMethod.WAN_LIST.assertSucceeds();
    }

    @Test
    void aListThatIsTooLongIsNone() {
        for (String name : new String[] {Wan.kInternetName, Wan.kOtherName, Wan.kIptvName}) {
            Gateway.set("wan." + (name.charAt(0) - '1') + ".name", "n".repeat(103));
        }
        String named = Wan.entry(Wan.kInternet, "n".repeat(103)) + ", "
                + Wan.entry(Wan.kOther, "n".repeat(103)) + ", "
                + Wan.entry(Wan.kIptv, "n".repeat(103)) + ", ";
        // The list around the last name takes up 511 bytes.
        int iRoom = 511 - Lan.list(named + Wan.entry(Wan.kManagement, "")).length();
        Gateway.set("wan.3.name", "m".repeat(iRoom));
        String full = Lan.list(named + Wan.entry(Wan.kManagement, "m".repeat(iRoom)));
        assertEquals(511, full.length());
        assertEquals(full, Wan.kAccess.getWANIfList());
        Gateway.set("wan.3.name", "m".repeat(iRoom + 1));
        assertEquals(Wan.kFailed, Wan.kAccess.getWANIfList());
    }

    @Test
    void aListThatCannotBeRightIsHarmless() {
        // A count of 4 thousand million, and names without an end.
        Gateway.fault(Gateway.kGulm, WanMethod.WAN_LIST.rpc(), "--fill", "0xFF", "--times", "1");
        assertEquals(Wan.kFailed, Wan.kAccess.getWANIfList());
        // The first four bytes are the count; connections that are not there have no name.
        Gateway.fault(Gateway.kGulm, WanMethod.WAN_LIST.rpc(), "--truncate", "4", "--times", "1");
        assertEquals(Lan.list(Wan.entry(0, ""), Wan.entry(0, ""), Wan.entry(0, ""),
                             Wan.entry(0, "")),
                Wan.kAccess.getWANIfList());
        WanMethod.WAN_LIST.assertSucceeds();
    }

    @ParameterizedTest
    @ValueSource(ints = {0, -1, 1, 0x10109001, 0x20101001})
    void anUnknownConnectionIsAFailure(int iWan) {
        long lAsked = Gateway.requests().get(Gateway.kAppM);
        assertEquals(Wan.kFailed, Wan.kAccess.getWANIfStats(iWan));
        assertEquals(Wan.kFailed, Wan.kAccess.getWANIfInfo(iWan));
        assertEquals(Wan.kFailed, Wan.kAccess.getWanIfBandwidth(iWan));
        assertEquals(Wan.kFailed, Wan.kAccess.getWANIfStatus(iWan));
        assertEquals(lAsked + 4, Gateway.requests().get(Gateway.kAppM), "it is asked all the same");
    }

    @Test
    void eachConnectionHasItsOwnAnswers() {
        assertEquals("{\"Result\":0,\"UsStats\":65536,\"DsStats\":4294967296}",
                Wan.kAccess.getWANIfStats(Wan.kIptv));
        assertEquals("{\"Result\":0,\"Index\":269496321,\"Name\":\"3_IPTV_B_VID_300\","
                        + "\"ConnectionType\":\"IP_Bridged\",\"ServiceList\":\"IPTV\","
                        + "\"LanInterface\":\"\",\"VLANMode\":\"2\",\"VLANIDMark\":\"300\","
                        + "\"802-1pMark\":\"\",\"MulticastVlan\":\"300\",\"IPMode\":\"\","
                        + "\"NATEnabled\":\"\",\"AddressingType\":\"\",\"DNSEnabled\":\"\"}",
                Wan.kAccess.getWANIfInfo(Wan.kIptv));
        assertEquals("{\"Result\":0,\"Index\":269488129,\"Name\":\"1_INTERNET_R_VID_100\","
                        + "\"ConnectionType\":\"IP_Routed\",\"ServiceList\":\"INTERNET\","
                        + "\"LanInterface\":\"\",\"VLANMode\":\"2\",\"VLANIDMark\":\"100\","
                        + "\"802-1pMark\":\"\",\"MulticastVlan\":\"\",\"IPMode\":\"3\","
                        + "\"NATEnabled\":\"TRUE\",\"AddressingType\":\"DHCP\","
                        + "\"DNSEnabled\":\"TRUE\"}",
                Wan.kAccess.getWANIfInfo(Wan.kInternet));
        Gateway.set("wan.2.sendBandwidth", "64000");
        assertEquals("{\"Result\":0,\"UsBandwidth\":64000,\"DsBandwidth\":2500000000}",
                Wan.kAccess.getWanIfBandwidth(Wan.kIptv));
        Gateway.ctl("wan", "set", Wan.kOtherName, "down");
        assertEquals(Wan.status("198.51.100.20", "255.255.255.0", "198.51.100.1", "198.51.100.53",
                             "", "")
                             .replace("Connected", "Disconnected"),
                Wan.kAccess.getWANIfStatus(Wan.kOther));
    }

    @Test
    void theInternetsConnectionIsFound() {
        assertEquals(0, Wan.set(Wan.kManagement, "ServiceList", "TR069_INTERNET"));
        assertEquals(Wan.kInternet, Wan.kAccess.getInternetWANIndex(), "the first of two");
        assertEquals(0, Wan.set(Wan.kInternet, "ServiceList", "VOIP"));
        assertEquals(Wan.kManagement, Wan.kAccess.getInternetWANIndex());
        assertEquals(0, Wan.set(Wan.kManagement, "ServiceList", "TR069"));
        assertEquals(-1, Wan.kAccess.getInternetWANIndex());
    }

    // ---- PON ----

    @Test
    void thePonHasNothingToTellWhileItIsDown() {
        Gateway.ctl("pon", "down");
        assertPon(kUnknownPhysical, -2, kUnknownRegistration, kFailedUplink);
        WanMethod.WAN_STATUS.assertSucceeds();
        Gateway.crash(Gateway.kAppM);
        assertPon(kUnknownPhysical, -2, kUnknownRegistration, kFailedUplink);
        Gateway.ctl("pon", "up");
        for (WanMethod method : kPon) {
            method.assertSucceeds();
        }
    }

    @Test
    void onlyOneCodeSaysThatThePonIsUnknown() {
        faultAll(kPon, "--code", "0xFFFFFFFE", "--times", "1");
        assertPon(kUnknownPhysical, -2, kUnknownRegistration, kFailedUplink);
        for (String code : new String[] {"1", "2", "0xFFFFFFFF", "0xFFFFFFFD"}) {
            faultAll(kPon, "--code", code, "--times", "1");
            assertPon(kFailedPhysical, -1, kFailedRegistration, kFailedUplink);
        }
        Gateway.kill(Gateway.kAppM);
        assertPon(kFailedPhysical, -1, kFailedRegistration, kFailedUplink);
        Gateway.start(Gateway.kAppM);
        faultAll(List.of(WanMethod.WAN_STATISTICS, WanMethod.INTERNET_INDEX), "--code",
                "0xFFFFFFFE", "--times", "1");
        assertEquals(Wan.kFailed, Wan.kAccess.getWANIfStats(Wan.kInternet));
        assertEquals(-1, Wan.kAccess.getInternetWANIndex());
    }

    @Test
    void thePonsFiguresAreTold() {
        Gateway.set("pon.rxPower", "-31.25");
        Gateway.set("pon.registerStatus", "REG_NO_AUTH");
        Gateway.set("pon.receivedBytes", "4294967295");
        assertEquals("{\"Result\":0,\"TXPower\":2.15,\"RXPower\":-31.25,"
                        + "\"TransceiverTemperature\":45.5,\"SupplyVottage\":3.3,"
                        + "\"BiasCurrent\":12.25}",
                Wan.kAccess.getPONIfPhyStatus());
        assertEquals("{\"Result\":0,\"RegisterStatus\":\"REG_NO_AUTH\"}",
                Wan.kAccess.getPONIfRegisterStatus());
        assertEquals("{\"Result\":0,\"UsStats\":53739520,\"DsStats\":4294967295}",
                Wan.kAccess.getUplinkIfStats());
    }

    @Test
    void thePonsUpTimeGoesOn() throws InterruptedException {
        Gateway.ctl("pon", "down");
        Gateway.ctl("pon", "up");
        int iFirst = Wan.kAccess.getPONIfUpTime();
        Thread.sleep(2100);
        int iSecond = Wan.kAccess.getPONIfUpTime();
        assertTrue(iFirst >= 0 && iSecond >= iFirst + 2, iFirst + " s, and then " + iSecond);
        // All bits set are a time as well, which looks like a failure.
        Gateway.fault(Gateway.kAppM, WanMethod.PON_UP_TIME.rpc(), "--fill", "0xFF", "--times", "1");
        assertEquals(-1, Wan.kAccess.getPONIfUpTime());
    }

    // ---- the process's texts ----

    @ParameterizedTest
    @ValueSource(strings = {"--truncate", "--fill"})
    void anEmptyTextIsAFailure(String how) {
        faultAll(kTexts, how, "0", "--times", "1");
        for (WanMethod method : kTexts) {
            method.assertFails();
            method.assertSucceeds();
        }
    }

    @Test
    void aTextThatFillsItsBufferIsToldWhole() {
        faultAll(kTexts, "--fill", "0x41", "--times", "1");
        int[] room = {128, 2048, 128, 512, 512, 128, 128};
        for (int i = 0; i < room.length; i++) {
            assertEquals("A".repeat(room[i]), kTexts.get(i).call(), kTexts.get(i).name());
        }
    }
}
