package com.veltra.domoline.systemtest;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.google.gson.JsonArray;
import com.google.gson.JsonElement;
import com.google.gson.JsonObject;
import java.util.ArrayList;
import java.util.List;
import java.util.Random;
import java.util.Set;
import java.util.concurrent.TimeUnit;
import java.util.concurrent.locks.ReentrantReadWriteLock;
import java.util.function.Supplier;
import org.junit.jupiter.api.AfterAll;
import org.junit.jupiter.api.BeforeAll;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Tag;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.condition.EnabledIfSystemProperty;

/**
 * All services are used at random, each by a thread, while the gateway's processes die, hang,
 * refuse, answer late or not at all. A model follows what was asked. After each storm, and after
 * the calm that follows, the lists must be what the model says, but for changes whose answer was a
 * failure: those may have happened. And nothing may be left behind.
 *
 * <p>What the threads and the weather do comes from one seed. A run is not repeated exactly by it,
 * as nobody knows in which order the threads get their turns, but the choices are the same.
 */
@Tag("storm")
class StormTest {
    private static final int kPauseMilliseconds = 30;
    private static final long kCalmMilliseconds = 700;
    private static final long kStormMilliseconds = 6000;
    /** From so many seconds on there is time for what makes callers wait for half a minute. */
    private static final long kLong = 60;

    private static final long kSeconds = Long.getLong("wap.storm.seconds", 30L);
    private static final long kSeed = Long.getLong("wap.storm.seed", new Random().nextInt(1 << 30));

    private static final StormPart.Tally kTally = new StormPart.Tally();
    private static final Weather kWeather =
            new Weather(new Random(kSeed), kSeconds > kLong, kTally);
    private static long lStorms;
    private static long lUncertain;
    private static long lCompared;
    private static long lOrphans;

    /**
     * What operations of the parts change. A part compares it, and nothing else of the home; but
     * the time of the last reset, and what app_m was told of the monitored addresses, follow from
     * no operation alone.
     */
    private static final String[] kChanging = {"device.upTimeBase", "leds", "voiceEvents", "ftp",
            "samba", "web", "lan", "network.gatewayName", "hosts.name", "ssidBindings",
            "lanPorts.mode", "lanPorts.bind", "wan", "wanDevices", "routes", "portMapping",
            "macFilter.mode", "macFilter.status", "macFilter.lan", "macFilter.wlan",
            "attachControl", "monitoring", "monitorNotices", "mirrorRules", "forwardRules",
            "httpRules", "flows"};

    private final HomeModel model = new HomeModel();
    private final List<StormPart> parts = new ArrayList<>();
    private final List<Thread> threads = new ArrayList<>();
    /** Who does an operation reads; who wants all to be quiet writes. */
    private final ReentrantReadWriteLock quiet = new ReentrantReadWriteLock(true);
    private volatile boolean bStop;
    private JsonObject untouched;

    @BeforeAll
    static void attach() {
        Gateway.attach();
        System.out.println("\nstorm: seed " + kSeed + " (-Dwap.storm.seed)");
    }

    @AfterAll
    static void figures() {
        Gateway.startOver();
        System.out.println();
        figure("operations", kTally.lOperations.get());
        figure("looks", kTally.lLooks.get());
        figure("natives", Natives.called());
        figure("storms", lStorms);
        figure("kills", kWeather.lKills);
        figure("stops", kWeather.lStops);
        figure("faults", kWeather.lFaults);
        figure("late", kWeather.lLate);
        figure("dropped", kWeather.lDropped);
        figure("resets", kWeather.lResets);
        figure("full_disks", kWeather.lFullDisks);
        figure("waited_5_seconds", kTally.lTimeOuts.get());
        figure("waited_30_seconds", kTally.lLongTimeOuts.get());
        figure("stalls", kTally.lStalls.get());
        figure("failed_as_documented", kTally.lFailures.get());
        figure("failed_on_full_disk", kTally.lFailuresOnFullDisk.get());
        figure("refused", kTally.lRefusals.get());
        figure("uncertain", lUncertain);
        figure("elements_compared", lCompared);
        figure("blocks_until_restart", lOrphans);
        figure("blocks_allowed", kWeather.lBlocksLost);
    }

    private static void figure(String name, long lNumber) {
        System.out.printf("figure model.%s %d%n", name, lNumber);
    }

    @BeforeEach
    void newHome() {
        Gateway.startOver();
        // Short enough for a result in a calm.
        for (String time : new String[] {"pingMs", "dnsMs", "traceRouteMs"}) {
            Gateway.set("diagnostics." + time, "100");
        }
        parts.addAll(StormLan.parts());
        parts.addAll(StormUplink.parts());
        parts.addAll(StormBox.parts());
        parts.addAll(StormTraffic.parts());
        parts.addAll(StormSerial.parts());
        parts.addAll(StormLooks.parts());
        Random seeds = new Random(kSeed);
        parts.forEach(part -> part.begin(model, kTally, new Random(seeds.nextLong())));
        adopt();
        untouched = untouched(Home.now().json());
    }

    @Test
    void theListsEqualTheModelAfterEachStorm() throws InterruptedException {
        liveThrough(kSeconds * 3 / 4, false);
        assertTrue(kWeather.lKills > 0 && kWeather.lStops > 0 && kWeather.lResets > 0,
                "hardly any weather");
        assertTrue(kWeather.lLate > 0 && kWeather.lDropped > 0, "everybody was answered in time");
        assertTrue(kTally.lTimeOuts.get() > 0, "nobody waited until the time-out");
        assertTrue(kTally.lLongTimeOuts.get() > 0 || kSeconds <= kLong, "nobody waited for long");
        assertEquals(Set.of(), Natives.neverCalled(), "never called");
    }

    @Test
    @EnabledIfSystemProperty(named = "wap.small.disk", matches = "true",
            disabledReason = "the runtime directory has no small disk of its own")
    void
    theListsEqualTheModelWhenTheDiskWasFull() throws InterruptedException {
        liveThrough(kSeconds / 4, true);
        assertTrue(kWeather.lFullDisks > 0, "the disk was never full");
        assertTrue(kTally.lFailuresOnFullDisk.get() > 0, "a full disk is no obstacle");
    }

    /** As many storms as begin within so many seconds, at least one. */
    private void liveThrough(long lSeconds, boolean bDisk) throws InterruptedException {
        long lEnd = System.nanoTime() + lSeconds * 1_000_000_000;
        String endless;
        parts.forEach(this::employ);
        try {
            kTally.bCalm = true;
            Thread.sleep(kCalmMilliseconds);
            Traffic.await(() -> parts.stream().allMatch(StormPart::isWarm));
            Rest before = quietly(() -> rest("the calm before"));
            do {
                kTally.bCalm = false;
                long lLostBefore = kWeather.lBlocksLost;
                kWeather.storm(kStormMilliseconds, bDisk);
                lStorms++;
                String when = "storm " + lStorms;
                quietly(() -> {
                    kWeather.clearUp();
                    check(when, kWeather.lBlocksLost - lLostBefore, before);
                    kTally.bCalm = true;
                    return null;
                });
                Thread.sleep(kCalmMilliseconds);
                Traffic.await(() -> parts.stream().allMatch(StormPart::hasSucceeded));
                parts.stream()
                        .filter(part -> !part.hasSucceeded())
                        .forEach(part -> kTally.complain(part.prefix + "never succeeds in a calm"));
                before.assertSame(when + " and the calm after it",
                        quietly(() -> rest(when + " and the calm after it")));
            } while (System.nanoTime() < lEnd && kTally.errors().isEmpty());
            // On a slow machine chance may have left one out.
            Traffic.await(() -> bDisk || Natives.neverCalled().isEmpty());
        } finally {
            bStop = true;
            endless = Patience.end(threads);
            lUncertain += model.everUncertain();
            System.out.print(kTally.errors());
        }
        assertEquals("", endless, "with the seed " + kSeed + "\n" + kWeather.report());
        assertEquals("", kTally.errors(), "with the seed " + kSeed + "\n" + kWeather.report());
    }

    private void employ(StormPart part) {
        Thread thread = new Thread(() -> {
            while (!bStop) {
                quiet.readLock().lock();
                try {
                    part.turn();
                } catch (RuntimeException | Error e) {
                    kTally.complain(part.prefix + "threw " + e);
                } finally {
                    quiet.readLock().unlock();
                }
                part.rest(kPauseMilliseconds);
            }
        }, "storm-" + part.prefix.strip());
        // One that never ends shall not keep the machine from its end.
        thread.setDaemon(true);
        thread.start();
        threads.add(thread);
    }

    /** Does something while no part does. */
    private <T> T quietly(Supplier<T> action) throws InterruptedException {
        if (!quiet.writeLock().tryLock(Patience.kSeconds, TimeUnit.SECONDS)) {
            throw new AssertionError("it never gets quiet, seed " + kSeed + "\n" + kWeather.report()
                    + Patience.stacks(threads));
        }
        try {
            return action.get();
        } finally {
            quiet.writeLock().unlock();
        }
    }

    /** What there is of what nobody's call may leave behind. */
    private static final class Rest {
        private final List<String> files = Leftovers.files();
        private final List<String> segments = Leftovers.segments();
        private final List<String> threads = Leftovers.threads();
        private final List<String> terminals = Leftovers.terminals();

        void assertSame(String when, Rest now) {
            assertEquals(String.join("\n", files), String.join("\n", now.files), when);
            assertEquals(segments, now.segments, when);
            assertEquals(threads, now.threads, when);
            assertEquals(terminals, now.terminals, when);
        }
    }

    /** Compares home and model at the end of a calm, which leaves nothing behind. */
    private Rest rest(String when) {
        assertEquals("", differences(when));
        assertEquals(0, Leftovers.blocksAtRest(), when);
        for (StormPart part : parts) {
            assertEquals("", part.leftInProcesses(), when);
        }
        Rest now = new Rest();
        assertEquals(List.of(), now.segments, when);
        return now;
    }

    /** Compares home and model, before and after the whole gateway is started anew. */
    private void check(String when, long lLost, Rest before) {
        assertEquals("", differences(when));
        before.assertSame(when, new Rest());
        // A process that dies leaves what it was about to hand over. A notice may still be read.
        Traffic.await(() -> Leftovers.blocks() <= lLost);
        long lBlocks = Leftovers.blocks();
        lOrphans += lBlocks;
        assertTrue(lBlocks <= lLost,
                ()
                        -> when + " left " + lBlocks + " blocks; " + lLost
                        + " were under way when their process"
                        + " died, seed " + kSeed + "\n" + kWeather.report());
        adopt();
        Gateway.restart();
        assertEquals("", differences(when + " and a restart"));
        assertEquals(0, Leftovers.blocks(), when);
        before.assertSame(when + " and a restart", new Rest());
    }

    /** What was found is certain from now on. */
    private void adopt() {
        JsonObject home = Home.now().json();
        for (StormPart part : parts) {
            model.adopt(part.prefix, part.held(home));
            part.calm(home);
        }
    }

    /** What nobody changes: the home without what the parts compare. */
    private static JsonObject untouched(JsonObject home) {
        JsonObject rest = home.deepCopy();
        for (String path : kChanging) {
            String[] names = path.split("\\.");
            JsonElement section = rest.get(names[0]);
            if (names.length == 1) {
                rest.remove(path);
            } else if (section.isJsonArray()) {
                section.getAsJsonArray().forEach(
                        element -> element.getAsJsonObject().remove(names[1]));
            } else {
                section.getAsJsonObject().remove(names[1]);
            }
        }
        JsonArray shipped = new JsonArray();
        home.getAsJsonArray("wan").forEach(wan -> {
            if (!StormUplink.isAdded(wan)) {
                shipped.add(wan);
            }
        });
        rest.add("wan", shipped);
        return rest;
    }

    private String differences(String when) {
        List<String> lines = new ArrayList<>();
        JsonObject home = Home.now().json();
        if (!untouched(home).equals(untouched)) {
            lines.add("what nobody changes is " + untouched(home) + " instead of " + untouched);
        }
        for (StormPart part : parts) {
            var held = part.held(home);
            lines.addAll(model.differences(part.prefix, held));
            lCompared += held.size();
            var told = part.told();
            if (told != null) {
                var toTell = part.toTell(held);
                if (!toTell.equals(told)) {
                    lines.add(part.prefix + "is told as " + told + " and held as " + toTell);
                }
            }
        }
        if (!lines.isEmpty()) {
            lines.add(0, when + ", seed " + kSeed + ":");
            lines.add(kWeather.report());
        }
        return String.join("\n", lines);
    }
}
