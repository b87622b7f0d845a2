package com.veltra.domoline.systemtest;

import static org.junit.jupiter.api.Assertions.assertEquals;

import java.util.ArrayList;
import java.util.List;
import org.junit.jupiter.api.AfterAll;
import org.junit.jupiter.api.BeforeAll;
import org.junit.jupiter.api.Tag;
import org.junit.jupiter.api.Test;

/**
 * An evening at home. After each thing that is done, every list tells it, through Java and in the
 * processes that own it; and they still do when these processes have crashed and are back.
 */
@Tag("long")
class EveningTest {
    private static final String kGuest = "02:A1:B2:00:20:09";
    private static final String kConsole = "02:A1:B2:00:20:0A";
    private static final String kShippedMapping =
            "1 " + Lan.kFirst + " true 8443 443 TCP 192.168.1.10";

    // What the home must be like now.
    private final List<String> hosts = new ArrayList<>(
            List.of(Lan.kPcInfo, Lan.kTvInfo, Lan.kPhoneInfo, Lan.kTabletInfo, Lan.kPrinterInfo));
    private String mappingsAnswer = Lan.list(Lan.wan(Lan.kWanName, Lan.kShippedMapping));
    private List<String> mappings = List.of(kShippedMapping);
    private int iFilterMode;
    private List<String> wired = List.of();
    private List<String> wireless = List.of();
    private List<String> records = List.of();
    private String limitsAnswer = Lan.list();

    @BeforeAll
    static void attach() {
        Gateway.attach();
        Gateway.startOver();
    }

    @AfterAll
    static void startOver() {
        Gateway.startOver();
    }

    private static String host(String mac, String ip, String name, String type, String where) {
        return "{\"MAC\":\"" + mac + "\",\"IP\":\"" + ip + "\",\"DevName\":\"" + name
                + "\",\"HostClass\":\"" + type + "\",\"Interface\":\"" + where
                + "\",\"Active\":1,\"OnlineTime\":0}";
    }

    private void assertHome(String when) {
        Home home = Home.now();
        assertEquals(Lan.hosts(hosts.toArray(new String[0])), Lan.kHosts.getLANHostInfoByMAC(null),
                when);
        assertEquals(hosts.size(), home.list("hosts", "mac").size(), when);
        assertEquals(mappingsAnswer, Lan.kMappings.getPortMappingInfo(), when);
        assertEquals(mappings, home.mappings(), when);
        assertEquals(iFilterMode, Lan.kHosts.getMacFilterMode(), when);
        assertEquals(wired, home.wired(), when);
        assertEquals(wireless, home.wireless(), when);
        assertEquals(limitsAnswer, Lan.kHosts.getLANHostSpeedLimitInfo(null), when);
        assertEquals(records, home.records(), when);
    }

    private void step(String what) {
        assertHome(what);
        Gateway.crash(Gateway.kGulm, Gateway.kAppM, Gateway.kOsgiProxy);
        assertHome(what + ", and the processes crashed");
    }

    @Test
    void everyListAgreesWithWhatWasDone() {
        step("nothing was done yet");

        Gateway.ctl("host", "add", kGuest, "--ip", "192.168.1.20", "--name", "guest", "--class",
                "PHONE", "--interface", "SSID1");
        Gateway.ctl("host", "add", kConsole, "--ip", "192.168.1.21", "--class", "OTHER",
                "--interface", "LAN4");
        assertEquals(0, Lan.kNames.setLANHostName(kConsole, "games"));
        hosts.add(host(kGuest, "192.168.1.20", "guest", "PHONE", "SSID1"));
        hosts.add(host(kConsole, "192.168.1.21", "games", "OTHER", "LAN4"));
        step("two hosts joined");

        assertEquals(0,
                Lan.kMappingConfig.addPortMapping(
                        Lan.kSecond, 3074, 3075, "UDP", "192.168.1.21"));
        mappings = List.of(
                kShippedMapping, "2 " + Lan.kSecond + " true 3074 3075 UDP 192.168.1.21");
        mappingsAnswer = Lan.list(Lan.wan(Lan.kWanName, Lan.kShippedMapping),
                Lan.wan(Lan.kOtherWanName,
                        Lan.mapping(2, true, 3074, 3075, "UDP", "192.168.1.21")));
        step("a port was mapped");

        assertEquals(0, Lan.kMappingConfig.setPortMappingSwitch(Lan.kSecond, 2, false));
        mappings = List.of(
                kShippedMapping, "2 " + Lan.kSecond + " false 3074 3075 UDP 192.168.1.21");
        mappingsAnswer = Lan.list(Lan.wan(Lan.kWanName, Lan.kShippedMapping),
                Lan.wan(Lan.kOtherWanName,
                        Lan.mapping(2, false, 3074, 3075, "UDP", "192.168.1.21")));
        step("the mapping was switched off");

        assertEquals(0, Lan.kMappingConfig.deletePortMapping(Lan.kSecond, 2));
        mappings = List.of(kShippedMapping);
        mappingsAnswer = Lan.list(Lan.wan(Lan.kWanName, Lan.kShippedMapping));
        step("the mapping was deleted");

        assertEquals(0, Lan.kAccess.setMacFilterMode(1));
        assertEquals(0, Lan.kAccess.addLANHostToBlackList(Lan.macs(Lan.kTablet)));
        iFilterMode = 1;
        wired = List.of(Lan.kTablet);
        wireless = List.of("SSID-1 " + Lan.kTablet, "SSID-5 " + Lan.kTablet);
        step("the child's tablet is black-listed");

        assertEquals(0, Lan.kLimits.setLANHostSpeedLimit(Lan.kTablet, 512, 2048));
        limitsAnswer = Lan.list(Lan.limit(512, 2048));
        records = List.of(Lan.kTablet + " 0 1 512 2048");
        step("the tablet is slowed down");

        assertEquals(0, Lan.kAccess.addLANHostToStorageBlackList(Lan.macs(Lan.kTablet, kGuest)));
        limitsAnswer = Lan.list(Lan.limit(512, 2048), Lan.limit(0, 0));
        records = List.of(Lan.kTablet + " 0 0 512 2048", kGuest + " 1 0 0 0");
        step("the tablet and the guest are kept from the storage");

        assertEquals(0, Lan.kAccess.deleteLANHostFromBlackList(Lan.macs()));
        wired = List.of();
        wireless = List.of();
        step("the filter was cleared by deleting nothing");

        assertEquals(0, Lan.kLimits.setLANHostSpeedLimit(Lan.kTablet, 0, 0));
        limitsAnswer = Lan.list(Lan.limit(0, 0), Lan.limit(0, 0));
        records = List.of(Lan.kTablet + " 1 0 0 0", kGuest + " 1 0 0 0");
        step("the tablet is as fast as it can");

        assertEquals(0, Lan.kAccess.deleteLANHostFromStorageBlackList(Lan.macs()));
        records = List.of(Lan.kTablet + " 1 1 0 0", kGuest + " 1 1 0 0");
        step("everyone may use the storage");

        assertEquals(0, Lan.kAccess.setMacFilterMode(0));
        Gateway.ctl("host", "remove", kGuest);
        iFilterMode = 0;
        hosts.remove(5);
        step("the guest went home");
    }
}
