package com.veltra.domoline.systemtest;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.util.ArrayList;
import java.util.List;
import org.junit.jupiter.api.AfterAll;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.extension.ExtendWith;

/**
 * Gives the secrets of this run away in every way that a setting can come through or fail. The
 * trace is on; the driver script then looks for them in all that the processes left behind.
 */
@ExtendWith(AttachedGateway.class)
class WanSecretsTest {
    private static final int kSet = 0x47209078;
    private static final int kSetIpv6Dns = 0x4730105A;
    private static final String kUser = Gateway.property("wap.secret.user");
    private static final String kPassword = Gateway.property("wap.secret.password");

    /** What was set must not stay in the gateway, which keeps the user's name. */
    @AfterAll
    static void forget() {
        assertEquals(0, Wan.set(Wan.kManagement, "Username", "nobody"));
    }

    /** Settings with the secrets among them. */
    private static String settings(String... others) {
        List<String> all =
                new ArrayList<>(List.of("Username", kUser, "Password", kPassword));
        all.addAll(List.of(others));
        return Wan.json(all.toArray(new String[0]));
    }

    private static int set(String json) {
        return Wan.kConfig.setWANIf(Wan.kManagement, json);
    }

    @Test
    void theyAreSet() {
        assertEquals(0, set(settings()));
        assertEquals(0, set(settings("DNSServers", "9.9.9.9", "IPv6DNSServers", "2001:db8::9")));
        String kept = Home.now().settings(Wan.kManagement);
        assertTrue(kept.contains("\"Username\":\"" + kUser + "\""), "the user's name arrived");
        assertTrue(kept.contains("\"PasswordSet\":true"), "the password arrived");
    }

    @Test
    void theyAreRefusedInTheirPlace() {
        // Too long, of another type, given as a name, and twice.
        assertEquals(
                0, set(Wan.json("Username", kUser.repeat(9), "Password", kPassword.repeat(9))));
        assertEquals(0, set("{\"Username\":[\"" + kUser + "\"],\"Password\":{\"a\":\"" + kPassword
                                   + "\"}}"));
        assertEquals(0, set(Wan.json(kUser, kPassword)));
        assertEquals(0, set("[\"" + kUser + "\",\"" + kPassword + "\"]"));
        assertEquals(0, set("\"" + kPassword + "\""));
        assertEquals(0, set(settings("Username", kUser, "Password", kPassword)));
    }

    @Test
    void theirTextIsNoJson() {
        String good = settings();
        for (int i = 1; i < good.length(); i++) {
            assertEquals(-1, set(good.substring(0, i)));
        }
        assertEquals(-1, set(good + good));
        assertEquals(-1, set(good.replace('"', '\'')));
        assertEquals(-1, set(kUser + kPassword));
    }

    @Test
    void whatComesWithThemIsRefused() {
        assertEquals(-1, set(settings("IPMode", "9")));
        assertEquals(-1, set(settings("LanInterface", "eth0")));
        assertEquals(-1, set(settings("NATEnabled", "maybe")));
        assertEquals(-1, Wan.kConfig.setWANIf(Wan.kOther, settings("ServiceList", "TR069")));
        assertEquals(-1, Wan.kConfig.setWANIf(0, settings()));
        Gateway.fault(Gateway.kOsgiProxy, kSet, "--code", "5", "--times", "1");
        assertEquals(-1, set(settings()));
        Gateway.fault(Gateway.kGulm, kSet, "--code", "5", "--times", "1");
        assertEquals(-1, set(settings()));
        Gateway.fault(Gateway.kGulm, kSetIpv6Dns, "--code", "5", "--times", "1");
        assertEquals(-1, set(settings("IPv6DNSServers", "2001:db8::9")));
        Gateway.kill(Gateway.kOsgiProxy);
        try {
            assertEquals(-1, set(settings()));
        } finally {
            Gateway.start(Gateway.kOsgiProxy);
        }
    }

    @Test
    void theyAreNotTold() {
        assertEquals(0, set(settings()));
        WanMethod.WAN_INFO.assertSucceeds();
        WanMethod.WAN_LIST.assertSucceeds();
        DeviceMethod.PASSWORD.assertSucceeds();
        DeviceMethod.SSID_PASSWORD.assertSucceeds();
        DeviceMethod.WEB_PASSWORD.assertSucceeds();
    }
}
