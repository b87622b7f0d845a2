package com.veltra.domoline.systemtest;

import static org.junit.jupiter.api.Assertions.assertEquals;

import com.google.gson.JsonArray;
import com.google.gson.JsonObject;
import java.util.List;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.ValueSource;

/** LAN ports and SSIDs and their VLANs. Each test begins with a new gateway. */
class VlanBindTest extends NewGatewayEachTime {
    private static final int kChange = 0x47209075;
    private static final int kGetPort = 0x47603122;
    private static final int kGetSsids = 0x47103093;
    private static final List<String> kFreePorts = List.of("1 0 ", "2 0 ", "3 0 ", "4 0 ");
    private static final String kSsid1 = Wan.bound("SSID1", "");
    private static final String kSsid2 = Wan.bound("SSID2", "");
    private static final String kSsid5 = Wan.bound("SSID5", "");

    private static int bind(String lanInterface, String pairs) {
        return Wan.kBinding.setVLANBind(lanInterface, pairs);
    }

    private static int free(String lanInterface) {
        return Wan.kBinding.clearVLANBind(lanInterface);
    }

    private static String listed() {
        return Wan.kQuery.getVLANBindInfo();
    }

    private static void assertNothingBound() {
        assertEquals(kFreePorts, Home.now().ports());
        assertEquals(List.of(), Home.now().ssids());
    }

    // ---- changes ----

    @Test
    void portsAndSsidsAreBoundAndFreed() {
        assertEquals(0, bind("LAN4", "10/100"));
        assertEquals(0, bind("lan1", "10/100,20/200"));
        assertEquals(0, bind("SSID2", "1/4094"));
        assertEquals(0, bind("ssid1", "4094/1"));
        assertEquals(Lan.list(Wan.bound("LAN1", "10/100,20/200"), Wan.bound("LAN4", "10/100"),
                             Wan.bound("SSID1", "4094/1"), Wan.bound("SSID2", "1/4094"), kSsid5),
                listed());
        assertEquals(List.of("1 1 10/100,20/200", "2 0 ", "3 0 ", "4 1 10/100"),
                Home.now().ports());
        assertEquals(List.of("2 1 1/4094", "1 1 4094/1"), Home.now().ssids());
        assertEquals(0, bind("LAN1", "30/300"), "in the place of what there was");
        for (String bound : new String[] {"Lan4", "SSID1", "SSID2", "SSID1", "LAN2"}) {
            assertEquals(0, free(bound), bound);
        }
        assertEquals(Lan.list(Wan.bound("LAN1", "30/300"), kSsid1, kSsid2, kSsid5), listed());
    }

    @Test
    void whatIsNoBindingIsRefusedUnasked() {
        Gateway.assertAsksNobody(() -> {
            for (String pairs : new String[] {null, "", "10", "10/", "/10", "x", "0/10", "10/0",
                         "10/4095", "4095/10", "-1/10", "10/100,", "10/100,20/200,", ",10/100",
                         "10/100,x", "10/100,0/20", "10/100,20/0", "x,10/100", "20/200,10,0/1",
                         "4294967306/100", "10/4294967306", "10,20/200"}) {
                assertEquals(-1, bind("LAN1", pairs), pairs);
                assertEquals(-1, bind("SSID1", pairs), pairs);
            }
            for (String none : new String[] {null, ""}) {
                assertEquals(-1, bind(none, "10/100"));
                assertEquals(-1, free(none));
            }
        });
        assertNothingBound();
    }

    @Test
    void someOddBindingsPass() {
        // A pair with one number has the other of the pair before it; what follows isn't read.
        for (String pairs : new String[] {"10/100,20", "10/100,20,30/300", "10/100x", "10/100/7",
                     " 10/100", "10/ 100", "+10/100", "010/0100", ","}) {
            assertEquals(0, bind("LAN3", pairs), pairs);
            assertEquals("3 1 " + pairs, Home.now().ports().get(2));
        }
    }

    @Test
    void oneHundredTwentySevenCharactersAreCheckedAndOneMoreIsSent() {
        // 18 pairs of seven characters, and the first digit of the 19th.
        String checked = "10/100,".repeat(18) + "1";
        assertEquals(0, bind("LAN1", checked + "0/100,99999/0"));
        assertEquals("1 1 " + checked + "0", Home.now().ports().get(0));
        Gateway.assertAsksNobody(
                () -> assertEquals(-1, bind("LAN1", "10/100,".repeat(18) + "x0/100")));
    }

    @Test
    void anInterfaceThatIsNotThereIsRefused() {
        for (String unknown : new String[] {"LAN0", "LAN5", "LAN", "LAN1x", "SSID3", "SSID", "eth0",
                     "br0", " LAN1", "LAN1,LAN2"}) {
            assertEquals(-1, bind(unknown, "10/100"), unknown);
            assertEquals(-1, free(unknown), unknown);
        }
        assertNothingBound();
        // 63 characters of a name are sent: so this one names a port.
        assertEquals(0, bind("LAN" + "0".repeat(59) + "2x", "10/100"));
        assertEquals("2 1 10/100", Home.now().ports().get(1));
    }

    @ParameterizedTest
    @ValueSource(strings = {Gateway.kOsgiProxy, Gateway.kGulm, Gateway.kAppM})
    void nothingChangesWhenAProcessIsAway(String process) {
        Gateway.kill(process);
        try {
            if (!process.equals(Gateway.kAppM)) {
                assertEquals(-1, bind("LAN1", "10/100"));
                assertEquals(-1, free("LAN1"));
            }
            if (!process.equals(Gateway.kGulm)) {
                assertEquals(-1, bind("SSID1", "10/100"));
                assertEquals(-1, free("SSID1"));
            }
            assertEquals(process.equals(Gateway.kOsgiProxy) ? Lan.list(kSsid1, kSsid2, kSsid5)
                                                            : Wan.kFailed,
                    listed());
        } finally {
            Gateway.start(process);
        }
        assertNothingBound();
    }

    @Test
    void refusedChangesAreMinusOne() {
        for (String code : new String[] {"1", "0xFFFFFFFE"}) {
            Gateway.fault(Gateway.kOsgiProxy, kChange, "--code", code, "--times", "2");
            assertEquals(-1, bind("LAN1", "10/100"));
            assertEquals(-1, free("LAN1"));
        }
        assertNothingBound();
    }

    // ---- the list ----

    @Test
    void modesMatterForPortsAndNotForSsids() {
        assertEquals(0, bind("LAN1", "10/100"));
        assertEquals(0, bind("LAN2", "10/100"));
        assertEquals(0, bind("SSID1", "10/100"));
        Gateway.set("lanPorts.0.mode", "0");
        Gateway.set("lanPorts.1.mode", "2");
        Gateway.set("ssidBindings.0.mode", "0");
        assertEquals(Lan.list(Wan.bound("SSID1", "10/100"), kSsid2, kSsid5), listed());
    }

    @Test
    void aFailureAnywhereFailsTheList() {
        Gateway.fault(Gateway.kGulm, kGetPort, "--code", "5", "--times", "1");
        assertEquals(Wan.kFailed, listed());
        Gateway.refuseNth(Gateway.kGulm, kGetPort, 4, WanMethod.VLAN_BINDINGS.rpc());
        assertEquals(Wan.kFailed, listed());
        Gateway.clear();
        Gateway.fault(Gateway.kAppM, kGetSsids, "--code", "5", "--times", "1");
        assertEquals(Wan.kFailed, listed());
        WanMethod.VLAN_BINDINGS.assertSucceeds();
    }

    @Test
    void whatCannotBeRightIsHarmless() {
        // As many ports as a reply may name, half of which are not there.
        Gateway.fault(
                Gateway.kGulm, WanMethod.VLAN_BINDINGS.rpc(), "--fill", "0xFF", "--times", "1");
        assertEquals(Wan.kFailed, listed());
        // Eight SSIDs, with texts that don't end and are too long for the list.
        Gateway.fault(Gateway.kAppM, kGetSsids, "--fill", "0x11", "--times", "1");
        assertEquals(Wan.kFailed, listed());
        WanMethod.VLAN_BINDINGS.assertSucceeds();
        Gateway.set("network.ssids.0", "12345");
        assertEquals(Lan.list(Wan.bound("SSID123", ""), kSsid2, kSsid5), listed());
    }

    @Test
    void aListHas1087BytesOfRoom() {
        // Each slash takes up two of them.
        String pairs = "10/100,".repeat(17) + "10/100";
        for (String bound : new String[] {"LAN1", "LAN2", "LAN3", "LAN4", "SSID1"}) {
            assertEquals(0, bind(bound, pairs));
        }
        assertEquals(0, bind("SSID2", "1/1"));
        String[] rows = {Wan.bound("LAN1", pairs), Wan.bound("LAN2", pairs),
                Wan.bound("LAN3", pairs), Wan.bound("LAN4", pairs), Wan.bound("SSID1", pairs),
                kSsid2, kSsid5};
        int iRoom = 1087 - Lan.list(rows).length();
        rows[5] = Wan.bound("SSID2", "2".repeat(iRoom));
        assertEquals(1087, Lan.list(rows).length());
        Gateway.set("ssidBindings.1.bind", "2".repeat(iRoom));
        assertEquals(Lan.list(rows), listed());
        Gateway.set("ssidBindings.1.bind", "2".repeat(iRoom + 1));
        assertEquals(Wan.kFailed, listed());
    }

    private static void putPorts(JsonObject home, int iCount) {
        JsonObject model = home.getAsJsonArray("lanPorts").get(0).getAsJsonObject();
        JsonArray ports = new JsonArray();
        for (int i = 1; i <= iCount; i++) {
            JsonObject port = model.deepCopy();
            port.addProperty("port", i);
            port.addProperty("mode", 1);
            port.addProperty("bind", "10/" + i);
            ports.add(port);
        }
        home.add("lanPorts", ports);
        home.getAsJsonObject("network").add("ssids", new JsonArray());
    }

    @Test
    void theListHasNoneToEightPorts() {
        Home.startOverWith(home -> putPorts(home, 0));
        assertEquals(Lan.list(), listed());
        String[] eight = new String[8];
        for (int i = 0; i < 8; i++) {
            eight[i] = Wan.bound("LAN" + (i + 1), "10/" + (i + 1));
        }
        newGateway();
        Home.startOverWith(home -> putPorts(home, 9));
        assertEquals(Lan.list(eight), listed());
    }
}
