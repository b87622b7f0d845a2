package com.veltra.domoline.systemtest;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertNotEquals;
import static org.junit.jupiter.api.Assertions.assertNull;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.util.ArrayList;
import java.util.List;
import java.util.Map;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.extension.ExtendWith;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.EnumSource;
import org.junit.jupiter.params.provider.ValueSource;

/** The box itself: its lights, its telephone lines, and its reset. */
@ExtendWith(AttachedGateway.class)
class BoxTest {
    private static final int kLedSwitch = 0x471030D3;
    private static final int kPots = 0x47209061;
    private static final int kSubscribe = 0x47209062;
    private static final int kUnsubscribe = 0x47209063;
    private static final int kReset = 0x47209051;

    private static final String kPhone = "com.example.phone";
    private static final String kCalls = "NOTIFY_VOICE_CALL_INFO";
    /** With the letters of its last but one word in this order. */
    private static final String kRestart = "NOTIFY_VOICE_RESTRAT_FINISH";

    private static final int kPatienceSeconds = 120;
    private static final int kAllProcesses = 7;

    @AfterEach
    void asShipped() {
        Gateway.ctl("leds", "on");
        Gateway.ctl("voice", "POTS1", "idle");
        Gateway.ctl("voice", "POTS2", "idle");
        for (String bundle : bundles()) {
            assertEquals(0, unsubscribe(bundle));
        }
    }

    private static String lights() {
        return Gateway.ctl("leds").strip();
    }

    /** Who is told of voice events, as the gateway's tool shows it. */
    private static List<String> bundles() {
        List<String> bundles = new ArrayList<>();
        for (String line : Gateway.ctl("voice").split("\n")) {
            if (line.startsWith("events go to ")) {
                bundles.add(line.substring(13));
            }
        }
        return bundles;
    }

    private static int subscribe(String bundle, String... events) {
        return Box.kVoiceEvents.getSubscribeVoIPEvent(bundle, events);
    }

    private static int unsubscribe(String bundle, String... events) {
        return Box.kVoiceEvents.getUnSubscribeVoIPEvent(bundle, events);
    }

    @ParameterizedTest
    @EnumSource(BoxMethod.class)
    void answersWhatTheHomeSays(BoxMethod method) {
        method.assertSucceeds();
    }

    // ---- lights ----

    @Test
    void lightsAreSwitched() {
        assertEquals("on", lights());
        assertEquals(0, Box.kLights.setLedSwitch(0));
        assertEquals("off", lights());
        assertEquals(0, Box.kLights.setLedSwitch(0));
        assertEquals("off", lights());
        assertEquals(0, Box.kLights.setLedSwitch(1));
        assertEquals("on", lights());
    }

    @ParameterizedTest
    @ValueSource(ints = {2, -1, 256, Integer.MAX_VALUE, Integer.MIN_VALUE})
    void otherSwitchesAreRefusedWithoutAsking(int iSwitch) {
        assertEquals(0, Box.kLights.setLedSwitch(0));
        Gateway.assertAsksNobody(() -> assertEquals(-1, Box.kLights.setLedSwitch(iSwitch)));
        assertEquals("off", lights());
    }

    @Test
    void lightsStayWhenNobodySwitchesThem() {
        Gateway.fault(Gateway.kAppM, kLedSwitch, "--code", "7", "--times", "1");
        assertEquals(-1, Box.kLights.setLedSwitch(0));
        Gateway.kill(Gateway.kAppM);
        try {
            assertEquals(-1, Box.kLights.setLedSwitch(0));
        } finally {
            Gateway.start(Gateway.kAppM);
        }
        assertEquals("on", lights());
    }

    // ---- telephone lines ----

    @Test
    void linesAreToldAsTheyAre() {
        for (String state :
                new String[] {"ringing", "talking", "offhook", "unregistered", "idle"}) {
            Gateway.ctl("voice", "POTS2", state);
            assertEquals(Box.pots("idle", state), Box.kVoice.getPOTSInfo());
        }
        Gateway.ctl("voice", "POTS1", "ringing");
        Gateway.ctl("voice", "POTS2", "talking");
        assertEquals(Box.pots("ringing", "talking"), Box.kVoice.getPOTSInfo());
    }

    /** Another home, whose first line has that state. */
    private static void startOverWithState(String state) {
        Home.startOverWith(home
                -> home.getAsJsonArray("voice").get(0).getAsJsonObject().addProperty(
                        "state", state));
    }

    @Test
    void aTextThatFitsIsToldWholeAndALongerOneIsNone() {
        int iRoom = 512 - 1 - Box.pots("", "idle").length();
        String longest = "\u00E4" + "x".repeat(iRoom - 2);
        try {
            startOverWithState(longest);
            assertEquals(Box.pots(longest, "idle"), Box.kVoice.getPOTSInfo());
            startOverWithState(longest + "x");
            assertNull(Box.kVoice.getPOTSInfo());
        } finally {
            Gateway.startOver();
        }
    }

    @Test
    void noTextIsNull() {
        Gateway.fault(Gateway.kAppM, kPots, "--truncate", "0", "--times", "1");
        assertNull(Box.kVoice.getPOTSInfo());
        Gateway.fault(Gateway.kAppM, kPots, "--code", "7", "--times", "1");
        assertNull(Box.kVoice.getPOTSInfo());
        assertEquals(Box.pots("idle", "idle"), Box.kVoice.getPOTSInfo());
    }

    // ---- voice events ----

    @Test
    void bundlesSubscribeAndUnsubscribe() {
        assertEquals(0, subscribe(kPhone, kCalls));
        assertEquals(0, subscribe("com.example.K\u00E4fer", kRestart));
        assertEquals(0, subscribe(kPhone, kRestart), "once more");
        assertEquals(List.of(kPhone, "com.example.K\u00E4fer"), bundles());
        // The events are only looked at: a bundle is told of both or of none.
        assertEquals(0, unsubscribe(kPhone, kCalls));
        assertEquals(List.of("com.example.K\u00E4fer"), bundles());
        assertNotEquals(0, unsubscribe(kPhone, kCalls), "it is not subscribed any more");
    }

    /** Lists of events that are fine, whatever is in them. */
    private static final String[][] kFine = {
            null,
            {},
            {kCalls},
            {kRestart},
            {kCalls, null},
            {null, kCalls},
            {null},
            {""},
            {"", kRestart, ""},
            {kCalls, kCalls, kCalls, kCalls, kRestart, kRestart, null, ""},
            {null, null, null, null, null, null, null, null},
    };

    private static final String[][] kWrong = {
            {kCalls, kCalls, kCalls, kCalls, kCalls, kCalls, kCalls, kCalls, kCalls},
            {null, null, null, null, null, null, null, null, null},
            {"NOTIFY_VOICE_RESTART_FINISH"},
            {kCalls, "NOTIFY_VOICE_RESTART_FINISH"},
            {null, "", kCalls, "anything"},
            {"notify_voice_call_info"},
            {kCalls + " "},
            {kCalls.substring(1)},
            {kCalls + "\u0000" + "X", "anything"},
            {"\u00E4".repeat(10_000)},
    };

    @Test
    void listsOfKnownEventsAreTaken() {
        for (String[] events : kFine) {
            assertEquals(0, Box.kVoiceEvents.getSubscribeVoIPEvent(kPhone, events));
            assertEquals(List.of(kPhone), bundles());
            assertEquals(0, Box.kVoiceEvents.getUnSubscribeVoIPEvent(kPhone, events));
            assertEquals(List.of(), bundles());
        }
    }

    @Test
    void otherListsAreRefusedWithoutAsking() {
        assertEquals(0, subscribe(kPhone));
        Gateway.assertAsksNobody(() -> {
            for (String[] events : kWrong) {
                String shown = String.join(",", events);
                assertEquals(-1, subscribe("com.example.other", events), shown);
                assertEquals(-1, unsubscribe(kPhone, events), shown);
            }
        });
        assertEquals(List.of(kPhone), bundles());
    }

    @Test
    void aBundleWithoutNameIsRefusedWithoutAsking() {
        Gateway.assertAsksNobody(() -> {
            for (String name : new String[] {null, ""}) {
                assertEquals(-1, subscribe(name, kCalls));
                assertEquals(-1, unsubscribe(name, kCalls));
                assertEquals(-1, Box.kVoiceEvents.getSubscribeVoIPEvent(name, null));
            }
        });
    }

    @Test
    void ofALongNameThereAre128Bytes() {
        String name = "b".repeat(128);
        assertEquals(0, subscribe(name + "-and-more"));
        assertEquals(List.of(name), bundles());
        assertEquals(0, subscribe(name), "the same");
        assertEquals(List.of(name), bundles());
        assertEquals(0, unsubscribe(name + "!"));
        assertEquals(List.of(), bundles());
        assertEquals(0, subscribe("b".repeat(127)));
        assertEquals(List.of("b".repeat(127)), bundles());
        assertEquals(0, subscribe("\u00E4".repeat(64) + "\u00E4"));
        assertEquals(List.of("b".repeat(127), "\u00E4".repeat(64)), bundles());
    }

    @Test
    void theCodeOfAnEventsRefusalIsAnswered() {
        Gateway.fault(Gateway.kOsgiProxy, kSubscribe, "--code", "0xF7000001", "--times", "1");
        assertEquals(0xF7000001, subscribe(kPhone, kCalls));
        Gateway.fault(Gateway.kOsgiProxy, kUnsubscribe, "--code", "7", "--times", "1");
        assertEquals(7, unsubscribe(kPhone, kCalls));
        Gateway.kill(Gateway.kOsgiProxy);
        try {
            assertNotEquals(0, subscribe(kPhone, kCalls));
            assertNotEquals(0, unsubscribe(kPhone, kCalls));
        } finally {
            Gateway.start(Gateway.kOsgiProxy);
        }
        assertEquals(List.of(), bundles());
    }

    // ---- reset ----

    /** Waits until every process has been replaced and answers. */
    private static void awaitRestart(Map<String, Long> before) throws InterruptedException {
        long lEnd = System.nanoTime() + kPatienceSeconds * 1_000_000_000L;
        boolean bNew = false;
        while (!bNew && System.nanoTime() < lEnd) {
            Thread.sleep(100);
            Map<String, Long> now = Gateway.processIds();
            bNew = now.keySet().equals(before.keySet())
                    && now.entrySet().stream().noneMatch(
                            entry -> entry.getValue().equals(before.get(entry.getKey())));
        }
        assertTrue(bNew, "not all processes were replaced");
        Gateway.await();
    }

    @Test
    void aResetRestartsEverythingAndKeepsTheHome() throws InterruptedException {
        assertEquals(0, subscribe(kPhone, kCalls));
        assertEquals(0, Box.kLights.setLedSwitch(0));
        assertEquals(0, AccountService.SAMBA.add("reset", "secret"));
        assertEquals(0, Wan.set(Wan.kInternet, "DNSServers", "9.9.9.9"));
        DeviceMethod.UP_TIME.assertSucceeds();
        Map<String, Long> before = Gateway.processIds();
        assertEquals(kAllProcesses, before.size(), before.toString());
        try {
            assertEquals(0, Box.kReset.reset());
            awaitRestart(before);

            int iUpTime = Box.kInfo.getDeviceUpTime();
            assertTrue(iUpTime >= 0 && iUpTime < 2 * kPatienceSeconds, "up for " + iUpTime);
            assertEquals(List.of(kPhone), bundles());
            assertEquals("off", lights());
            assertEquals("{\"Result\":0,\"LanAccess\":0,\"WanAccess\":0,\"Enable\":0,\"Value\":0,"
                            + "\"List\":[{\"User\":\"reset\"}]}",
                    Box.kRights.getSambaRightInfo());
            assertTrue(Wan.kAccess.getWANIfStatus(Wan.kInternet).contains(
                    "\"DNSServers\":\"9.9.9.9,"));
            for (BoxMethod method : BoxMethod.values()) {
                if (method != BoxMethod.SAMBA_RIGHTS) {
                    method.assertSucceeds();
                }
            }
            DeviceMethod.MAC.assertSucceeds();
            LanMethod.ALL_HOSTS.assertSucceeds();
        } finally {
            Gateway.startOver();
        }
        DeviceMethod.UP_TIME.assertSucceeds();
    }

    @Test
    void aResetThatNobodyCarriesOutIsOne() {
        Map<String, Long> before = Gateway.processIds();
        Gateway.fault(Gateway.kOsgiProxy, kReset, "--code", "7", "--times", "1");
        assertEquals(1, Box.kReset.reset());
        Gateway.kill(Gateway.kOsgiProxy);
        try {
            assertEquals(1, Box.kReset.reset());
        } finally {
            Gateway.start(Gateway.kOsgiProxy);
        }
        Map<String, Long> after = Gateway.processIds();
        before.remove(Gateway.kOsgiProxy);
        after.remove(Gateway.kOsgiProxy);
        assertEquals(before, after, "nothing else was restarted");
    }
}
