package com.veltra.domoline.systemtest;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.google.gson.JsonObject;
import java.util.ArrayList;
import java.util.List;
import java.util.Random;
import java.util.TreeMap;
import java.util.concurrent.locks.ReentrantReadWriteLock;
import org.junit.jupiter.api.AfterAll;
import org.junit.jupiter.api.BeforeAll;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Tag;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.condition.EnabledIfSystemProperty;

/**
 * All services that change something are used at random, each by a thread, while the gateway's
 * processes die, hang, refuse, answer late or not at all. A model follows what was asked. After
 * each storm the lists must be what the model says, but for changes whose answer was a failure:
 * those may have happened. And nothing may be left behind.
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
    private static final Weather kWeather = new Weather(new Random(kSeed), kSeconds > kLong);
    private static long lStorms;
    private static long lUncertain;
    private static long lCompared;
    private static long lOrphans;

    private final HomeModel model = new HomeModel();
    private final List<StormPart> parts = new ArrayList<>();
    private final List<Thread> threads = new ArrayList<>();
    /** Who does an operation reads; who wants all to be quiet writes. */
    private final ReentrantReadWriteLock quiet = new ReentrantReadWriteLock(true);
    private volatile boolean bStop;

    @BeforeAll
    static void attach() {
        Gateway.attach();
        System.out.println("\nstorm: seed " + kSeed + " (-Dwap.storm.seed)");
    }

    @AfterAll
    static void figures() {
        Gateway.startOver();
        System.out.printf("%nfigure model.operations %d%nfigure model.storms %d%n"
                        + "figure model.kills %d%nfigure model.stops %d%nfigure model.faults %d%n"
                        + "figure model.resets %d%nfigure model.full_disks %d%n"
                        + "figure model.failed_as_documented %d%nfigure model.refused %d%n"
                        + "figure model.uncertain %d%nfigure model.elements_compared %d%n"
                        + "figure model.blocks_until_restart %d%n",
                kTally.lOperations.get(), lStorms, kWeather.lKills, kWeather.lStops,
                kWeather.lFaults, kWeather.lResets, kWeather.lFullDisks, kTally.lFailures.get(),
                kTally.lRefusals.get(), lUncertain, lCompared, lOrphans);
    }

    @BeforeEach
    void newHome() {
        Gateway.startOver();
        parts.addAll(StormLan.parts());
        parts.addAll(StormUplink.parts());
        parts.addAll(StormBox.parts());
        parts.addAll(StormTraffic.parts());
        Random seeds = new Random(kSeed);
        parts.forEach(part -> part.begin(model, kTally, new Random(seeds.nextLong())));
        adopt();
    }

    @Test
    void theListsEqualTheModelAfterEachStorm() throws InterruptedException {
        liveThrough(kSeconds * 3 / 4, false);
        assertTrue(kWeather.lKills > 0 && kWeather.lStops > 0 && kWeather.lResets > 0,
                "hardly any weather");
    }

    @Test
    @EnabledIfSystemProperty(named = "wap.small.disk", matches = "true",
            disabledReason = "the runtime directory has no small disk of its own")
    void
    theListsEqualTheModelWhenTheDiskWasFull() throws InterruptedException {
        liveThrough(kSeconds / 4, true);
        assertTrue(kWeather.lFullDisks > 0, "the disk was never full");
    }

    /** As many storms as begin within so many seconds, at least one. */
    private void liveThrough(long lSeconds, boolean bDisk) throws InterruptedException {
        long lEnd = System.nanoTime() + lSeconds * 1_000_000_000;
        parts.forEach(this::employ);
        try {
            kTally.bCalm = true;
            Thread.sleep(kCalmMilliseconds);
            quiet.writeLock().lock();
            List<String> files = Leftovers.files();
            List<String> names = Leftovers.threads();
            quiet.writeLock().unlock();
            do {
                kTally.bCalm = false;
                long lKillsBefore = kWeather.lKills;
                kWeather.storm(kStormMilliseconds, bDisk);
                lStorms++;
                quiet.writeLock().lock();
                try {
                    kWeather.clearUp();
                    check("storm " + lStorms, kWeather.lKills - lKillsBefore, files, names);
                    kTally.bCalm = true;
                } finally {
                    quiet.writeLock().unlock();
                }
                Thread.sleep(kCalmMilliseconds);
            } while (System.nanoTime() < lEnd && kTally.errors().isEmpty());
        } finally {
            bStop = true;
            for (Thread thread : threads) {
                thread.join();
            }
            lUncertain += model.everUncertain();
        }
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
        thread.start();
        threads.add(thread);
    }

    /** Compares home and model, before and after the whole gateway is started anew. */
    private void check(String when, long lKills, List<String> files, List<String> names) {
        assertEquals("", differences(when));
        assertEquals(List.of(), Leftovers.segments(), when);
        assertEquals(names, Leftovers.threads(), when);
        // A process that dies leaves what it was about to hand over, to each of its callers.
        long lBlocks = Leftovers.blocks();
        lOrphans += lBlocks;
        assertTrue(lBlocks <= lKills * parts.size(),
                when + " left " + lBlocks + " blocks; " + lKills + " processes died");
        adopt();
        Gateway.ctl("restart");
        assertEquals("", differences(when + " and a restart"));
        assertEquals(0, Leftovers.blocks(), when);
        assertEquals(String.join("\n", files), String.join("\n", Leftovers.files()), when);
    }

    /** What was found is certain from now on. */
    private void adopt() {
        JsonObject home = Home.now().json();
        for (StormPart part : parts) {
            model.adopt(part.prefix, part.held(home));
            part.calm(home);
        }
    }

    private String differences(String when) {
        List<String> lines = new ArrayList<>();
        JsonObject home = Home.now().json();
        for (StormPart part : parts) {
            var held = part.held(home);
            lines.addAll(model.differences(part.prefix, held));
            lCompared += held.size();
            var told = part.told();
            if (told != null) {
                var toTell = new TreeMap<>(held);
                toTell.keySet().removeIf(key -> !key.startsWith(part.toldPrefix()));
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
