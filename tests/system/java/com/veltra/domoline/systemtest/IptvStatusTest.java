package com.veltra.domoline.systemtest;

import static org.junit.jupiter.api.Assertions.assertEquals;

import java.util.Set;
import org.junit.jupiter.api.Test;

/** Whether IPTV works, in each of its words. Each test begins with a new gateway. */
class IptvStatusTest extends NewGatewayEachTime {
    private static final int kGetWan = 0x47317140;
    private static final int kGetStatus = 0x47317145;
    private static final int kGetUsers = 0x47305019;
    private static final String kNone = "NO_IPTV_CONNECTION";
    private static final String kDown = "IPTV_DISCONNECT";
    private static final String kNoVlan = "INVALID_MULTIVLAN";
    private static final String kWatched = "IPTV_BUSSINESS_OK";
    private static final String kIdle = "IPTV_BUSSINESS_NOK";
    private static final String kFailed = "";

    private static void assertStatus(String word, String... change) {
        if (change.length != 0) {
            String[] words = new String[change.length + 1];
            words[0] = "iptv";
            System.arraycopy(change, 0, words, 1, change.length);
            Gateway.ctl(words);
        }
        assertEquals(word, Wan.kQuery.getIPTVStatus(), String.join(" ", change));
    }

    @Test
    void eachWordHasItsReason() {
        assertStatus(kWatched);
        assertStatus(kIdle, "--users", "0");
        assertStatus(kWatched, "--users", "4294967295");
        assertStatus(kNoVlan, "--vlan4", "4095", "--vlan6", "4095");
        assertStatus(kDown, "down");
        assertStatus(kNone, "--service", "12");
        assertStatus(kDown, "--service", "16");
        assertStatus(kNoVlan, "up");
        assertStatus(kWatched, "--vlan6", "0");
        assertStatus(kIdle, "--users", "0");
        Gateway.crash(Gateway.kGulm, Gateway.kIgmp);
        assertStatus(kIdle);
    }

    @Test
    void someServicesAreIptv() {
        Set<Integer> iptv = Set.of(7, 8, 9, 10, 11, 13, 14, 15, 16);
        for (int iService = 0; iService <= 20; iService++) {
            assertStatus(iptv.contains(iService) ? kWatched : kNone, "--service",
                    String.valueOf(iService));
        }
        assertStatus(kNone, "--service", "4294967295");
    }

    @Test
    void aVlanBelow4095IsEnough() {
        assertStatus(kWatched, "--vlan4", "0", "--vlan6", "4095");
        assertStatus(kWatched, "--vlan4", "4094", "--vlan6", "65535");
        assertStatus(kNoVlan, "--vlan4", "4095", "--vlan6", "65535");
        assertStatus(kWatched, "--vlan4", "4095", "--vlan6", "4094");
        assertStatus(kNoVlan, "--vlan4", "65535", "--vlan6", "4095");
    }

    @Test
    void onlyWithoutIpv4IsTheStatusAskedForAgain() {
        Gateway.fault(Gateway.kGulm, kGetStatus, "--code", "5");
        assertStatus(kWatched, "--ipv4", "on");
        assertStatus(kDown, "down");
        assertStatus(kFailed, "--ipv4", "off");
        assertStatus(kNone, "--service", "12");
        Gateway.clear();
        assertStatus(kDown, "--service", "7");
        assertStatus(kWatched, "up");
        // The second reply's status is the one that counts: here it's one that stands for nothing.
        Gateway.fault(Gateway.kGulm, kGetStatus, "--fill", "3", "--times", "1");
        assertStatus(kWatched, "--ipv4", "off");
        Gateway.fault(Gateway.kGulm, kGetStatus, "--fill", "3", "--times", "1");
        assertStatus(kWatched, "down");
        assertStatus(kDown);
    }

    @Test
    void aConnectionThatIsGoneCarriesNothing() {
        assertEquals(0, Wan.kConfig.deleteWANIf(Wan.kIptv));
        assertStatus(kNone);
    }

    @Test
    void aFailureIsAnEmptyText() {
        Gateway.fault(Gateway.kGulm, kGetWan, "--code", "5", "--times", "1");
        assertStatus(kFailed);
        Gateway.fault(Gateway.kIgmp, kGetUsers, "--code", "0xFFFFFFFE", "--times", "1");
        assertStatus(kFailed);
        Gateway.kill(Gateway.kIgmp);
        assertStatus(kFailed);
        // Nobody needs to know who watches what doesn't come.
        assertStatus(kDown, "down");
        assertStatus(kNone, "--service", "12");
        Gateway.start(Gateway.kIgmp);
        Gateway.kill(Gateway.kGulm);
        assertStatus(kFailed);
        Gateway.start(Gateway.kGulm);
        assertStatus(kNone);
    }
}
