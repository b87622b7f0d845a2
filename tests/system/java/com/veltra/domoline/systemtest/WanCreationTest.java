package com.veltra.domoline.systemtest;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;

import com.google.gson.JsonArray;
import com.google.gson.JsonObject;
import java.util.List;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.ValueSource;

/** WAN connections come and go. Each test begins with a new gateway. */
class WanCreationTest extends NewGatewayEachTime {
    private static final int kAdd = 0x47209076;
    private static final int kDelete = 0x47209077;
    private static final int kCountPpp = 0x47301012;
    private static final int kCountIp = 0x4730100D;
    private static final List<String> kShipped = List.of(Wan.kInternet + " " + Wan.kInternetName,
            Wan.kOther + " " + Wan.kOtherName, Wan.kIptv + " " + Wan.kIptvName,
            Wan.kManagement + " " + Wan.kManagementName);
    private static final List<String> kShippedDevices = List.of("1 1", "1 2", "1 3", "1 4");

    private static int add(String vlanMode, String vlan, String type) {
        return Wan.kConfig.addWANIf(vlanMode, vlan, type);
    }

    private static int delete(int iWan) {
        return Wan.kConfig.deleteWANIf(iWan);
    }

    private static void assertAsShipped() {
        assertEquals(kShipped, Home.now().connections());
        assertEquals(kShippedDevices, Home.now().connectionDevices());
    }

    // ---- creation ----

    @Test
    void eachTypeIsMadeInLettersOfEitherCase() {
        assertEquals(Wan.kFifthIp, add("0", "0", "IP_Routed"));
        assertEquals(Wan.kSixthPpp, add("1", "1", "pppoe_bridged"));
        assertEquals(Wan.kSeventhIp, add("2", "2", "iP_bRIDGED"));
        assertEquals(0x20108001, add("2", "4094", "PPPOE_ROUTED"));
        assertEquals(Lan.list(Wan.entry(Wan.kInternet, Wan.kInternetName),
                             Wan.entry(Wan.kOther, Wan.kOtherName),
                             Wan.entry(Wan.kIptv, Wan.kIptvName),
                             Wan.entry(Wan.kManagement, Wan.kManagementName),
                             Wan.entry(Wan.kFifthIp, "5_INTERNET_R_VID_0"),
                             Wan.entry(Wan.kSixthPpp, "6_OTHER_B_VID_1"),
                             Wan.entry(Wan.kSeventhIp, "7_OTHER_B_VID_2"),
                             Wan.entry(0x20108001, "8_INTERNET_R_VID_4094")),
                Wan.kAccess.getWANIfList());
        assertEquals(List.of("IP_Routed", "IP_Routed", "IP_Bridged", "PPPoE_Routed", "IP_Routed",
                             "PPPoE_Bridged", "IP_Bridged", "PPPoE_Routed"),
                Home.now().list("wan", "connectionType"));
        assertEquals(-1, add("2", "9", "IP_Routed"), "the gateway keeps no more than eight");
    }

    @Test
    void whatIsOutOfBoundsIsRefusedUnasked() {
        Gateway.assertAsksNobody(() -> {
            for (String mode : new String[] {"3", "-1", "x", "", null, "1x", "4294967296"}) {
                assertEquals(-1, add(mode, "500", "IP_Routed"), mode);
            }
            for (String vlan : new String[] {"4095", "-1", "x", "", null, "5 ", "4294967297"}) {
                assertEquals(-1, add("2", vlan, "IP_Routed"), vlan);
                assertEquals(-1, add("0", vlan, "IP_Routed"), vlan);
            }
            for (String type : new String[] {"IPoE_Routed", "IP_Routed ", "IP", "", null}) {
                assertEquals(-1, add("2", "500", type), type);
            }
        });
        assertAsShipped();
    }

    @Test
    void withoutAVlanModeTheVlanIsZero() {
        assertEquals(Wan.kFifthIp, add("0", "100", "IP_Bridged"), "100 is another's");
        assertEquals(Wan.kFifthIp + " 5_OTHER_B_VID_0", Home.now().connections().get(4));
        assertEquals(-2, add("0", "777", "IP_Bridged"), "0 is in use now");
        assertEquals(-2, add("2", "0", "IP_Bridged"));
    }

    @Test
    void aVlanInUseIsMinusTwo() {
        long lSent = Gateway.requests().get(Gateway.kOsgiProxy);
        for (String vlan : new String[] {"100", "200", "300", "46"}) {
            assertEquals(-2, add("2", vlan, "IP_Routed"), vlan);
            assertEquals(-2, add("1", vlan, "PPPoE_Bridged"), vlan);
        }
        assertEquals(lSent, Gateway.requests().get(Gateway.kOsgiProxy), "requests to osgi_proxy");
        Gateway.set("wan.2.name", "tv_vid_777_in_small_letters");
        assertEquals(-2, add("2", "777", "IP_Routed"));
    }

    @Test
    void whatComesAfterANameWithoutVlanIsNotSeen() {
        // The gateway itself refuses a VLAN in use; that is not -2, but it tells who noticed.
        Gateway.set("wan.1.name", "second");
        assertEquals(-2, add("2", "100", "IP_Routed"));
        assertEquals(-1, add("2", "300", "IP_Routed"));
        assertEquals(-1, add("2", "46", "IP_Routed"));
        Gateway.set("wan.0.name", "first");
        assertEquals(-1, add("2", "100", "IP_Routed"));
    }

    @Test
    void onlyTheVlanSearchSaysMinusTwo() {
        Gateway.fault(Gateway.kOsgiProxy, kAdd, "--code", "0xFFFFFFFE", "--times", "1");
        assertEquals(-1, add("2", "500", "IP_Routed"));
        Gateway.fault(Gateway.kGulm, WanMethod.WAN_LIST.rpc(), "--code", "0xFFFFFFFE");
        assertEquals(-1, add("2", "100", "IP_Routed"));
        Gateway.clear();
        assertAsShipped();
    }

    @ParameterizedTest
    @ValueSource(strings = {Gateway.kOsgiProxy, Gateway.kGulm})
    void nothingChangesWhenAProcessIsAway(String process) {
        Gateway.kill(process);
        try {
            assertEquals(-1, add("2", "500", "IP_Routed"));
            assertEquals(-1, delete(Wan.kInternet));
            assertEquals(-1, Wan.set(Wan.kInternet, "ServiceList", "VOIP"));
        } finally {
            Gateway.start(process);
        }
        assertAsShipped();
    }

    // ---- deletion ----

    /** Makes a connection share the connection device of the first one. */
    private static void share(JsonObject home, int iPlace, int iIndex, int iInstance) {
        JsonArray connections = home.getAsJsonArray("wan");
        JsonObject connection = connections.get(iPlace).getAsJsonObject();
        connection.addProperty("index", iIndex);
        connection.addProperty("connDeviceInstance", 1);
        connection.addProperty("connInstance", iInstance);
        home.getAsJsonArray("wanDevices").remove(1);
    }

    @Test
    void aConnectionDeviceGoesWithItsLastConnection() {
        Home.startOverWith(home -> {
            share(home, 1, 0x10101002, 2);
            share(home, 3, 0x20101001, 1);
        });
        List<String> devices = List.of("1 1", "1 4");
        assertEquals(devices, Home.now().connectionDevices());
        long lSent = Gateway.requests().get(Gateway.kOsgiProxy);
        assertEquals(0, delete(0x10101001));
        assertEquals(devices, Home.now().connectionDevices(), "an IP and a PPP connection left");
        assertEquals(0, delete(0x10101002));
        assertEquals(devices, Home.now().connectionDevices(), "a PPP connection left");
        assertEquals(lSent + 2, Gateway.requests().get(Gateway.kOsgiProxy));
        assertEquals(0, delete(0x20101001));
        assertEquals(List.of("1 4"), Home.now().connectionDevices());
        assertEquals(lSent + 4, Gateway.requests().get(Gateway.kOsgiProxy));
        assertEquals(Lan.list(Wan.entry(Wan.kIptv, Wan.kIptvName)), Wan.kAccess.getWANIfList());
    }

    @Test
    void whatIsNotThereCannotBeDeleted() {
        // The last is one of no kind, whose number is the code that deletes connection devices.
        for (int iWan : new int[] {0, -1, 1, 0x10109001, 0x20101001, 0x30101001, 0x60101001}) {
            assertEquals(-1, delete(iWan), String.format("0x%x", iWan));
        }
        assertAsShipped();
    }

    @Test
    void aDeletionThatFailsHalfwayLeavesTheConnectionDevice() {
        Gateway.fault(Gateway.kGulm, kCountPpp, "--code", "5", "--times", "1");
        assertEquals(-1, delete(Wan.kManagement));
        Gateway.fault(Gateway.kGulm, kCountIp, "--code", "5", "--times", "1");
        assertEquals(-1, delete(Wan.kIptv));
        Gateway.refuseNth(Gateway.kOsgiProxy, kDelete, 2);
        assertEquals(-1, delete(Wan.kOther));
        assertFalse(Gateway.isRefusalLeft());
        Gateway.clear();
        assertEquals(kShipped.subList(0, 1), Home.now().connections());
        assertEquals(kShippedDevices, Home.now().connectionDevices());
        Gateway.fault(Gateway.kOsgiProxy, kDelete, "--code", "5", "--times", "1");
        assertEquals(-1, delete(Wan.kInternet));
        assertEquals(kShipped.subList(0, 1), Home.now().connections());
        assertEquals(0, delete(Wan.kInternet));
        assertEquals(kShippedDevices.subList(1, 4), Home.now().connectionDevices());
    }
}
