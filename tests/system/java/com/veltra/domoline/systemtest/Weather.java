package com.veltra.domoline.systemtest;

import java.io.IOException;
import java.io.OutputStream;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.List;
import java.util.Map;
import java.util.Random;
import java.util.Set;
import java.util.StringJoiner;
import java.util.TreeSet;

/**
 * What goes wrong in a home, by chance: processes die, hang and come back, answers are failures,
 * late or none, the disk is full, the box is reset.
 */
final class Weather {
    private static final String[] kProcesses = {Gateway.kAppM, Gateway.kGulm, Gateway.kOsgiProxy,
            Gateway.kCwmp, Gateway.kIgmp, Gateway.kTarn, Gateway.kUsbMngt};
    /** Their callers wait for 5 seconds. */
    private static final String[] kHasty = {Gateway.kGulm, Gateway.kAppM};
    private static final int kTooLate = 5500;
    private static final int kMuchTooLate = 30500;
    /** cwmp's only request, whose callers wait for 30 seconds. */
    private static final String kPatient = "0x4720136A";
    private static final int kPatienceSeconds = 120;
    /** After the end of a delay, for what it has held up. */
    private static final int kAfterwards = 200;
    private static final int kFullAlone = 500;

    private final Random random;
    private final boolean bLong;
    private final StormPart.Tally tally;
    long lKills;
    long lStops;
    long lFaults;
    long lFullDisks;
    long lResets;
    /** Requests that were answered after the time-out of their callers, certainly. */
    long lLate;
    /** Requests that were never answered, certainly. */
    long lDropped;
    /** Blocks that may have been under way when their process died. */
    long lBlocksLost;
    private boolean bWasVeryLate;
    private long lSlow;
    private final long lBegin = System.nanoTime();
    private final StringBuilder report = new StringBuilder();
    private long lLongestDelay;
    /** Since when nothing is delayed any more. */
    private long lFaultsEnded;
    /** The process that hangs while others are in trouble; "" for none. */
    private String hanging = "";
    /** Those that don't die, so that what they were told happens. */
    private final Set<String> spared = new TreeSet<>();

    /**
     * @param bLong also what makes callers wait for half a minute
     * @param tally gets to know when nothing is wrong but the disk
     */
    Weather(Random random, boolean bLong, StormPart.Tally tally) {
        this.random = random;
        this.bLong = bLong;
        this.tally = tally;
    }

    /** What happened when, in milliseconds. */
    String report() {
        return report.toString();
    }

    private void note(String what) {
        report.append((System.nanoTime() - lBegin) / 1_000_000)
                .append(' ')
                .append(what)
                .append('\n');
    }

    private int roll(int iSides) {
        return random.nextInt(iSides);
    }

    private String oneOf(String... names) {
        return names[roll(names.length)];
    }

    private static void rest(long lMilliseconds) {
        try {
            Thread.sleep(lMilliseconds);
        } catch (InterruptedException e) {
            throw new AssertionError(e);
        }
    }

    /** Makes trouble for so long; what it began it ends, but for delays. */
    void storm(long lMilliseconds, boolean bDisk) {
        long lEnd = System.nanoTime() + lMilliseconds * 1_000_000;
        lLongestDelay = 0;
        // Of the rare ones at least one.
        if (bDisk) {
            fillDisk(kFullAlone + roll(500), true);
        } else {
            reset();
            kill();
            beSlow();
        }
        String id = hanging.isEmpty() ? "" : stop(hanging);
        try {
            makeTrouble(lEnd, bDisk);
        } finally {
            hanging = "";
            spared.clear();
            if (!id.isEmpty()) {
                goOn(id);
            }
        }
        Gateway.startRest();
        Gateway.clear();
        lFaultsEnded = System.nanoTime();
    }

    /** One process hangs for all of the storm, another one is late, and once it says nothing. */
    private void beSlow() {
        hanging = oneOf(kHasty);
        String slow = hastyVictim();
        // It lives on in every other storm, and then it does late what it was asked for.
        if (lSlow++ % 2 == 0) {
            spared.add(slow);
        }
        late(kTooLate, slow);
        awaitTaken(slow);
        lLate += spared.size();
        fault(slow, 1, "--drop");
        awaitTaken(slow);
        lDropped++;
        if (bLong && !bWasVeryLate) {
            bWasVeryLate = true;
            spared.add(Gateway.kCwmp);
            lLongestDelay = kMuchTooLate;
            faultOf(Gateway.kCwmp, kPatient, 1, "--delay", String.valueOf(kMuchTooLate));
            awaitTaken(Gateway.kCwmp);
            lLate++;
        }
    }

    /** Waits until all requests that a process's faults are for have come. */
    private void awaitTaken(String process) {
        long lEnd = System.nanoTime() + kPatienceSeconds * 1_000_000_000L;
        // The first line is a heading.
        while (Gateway.ctl("faults", process).lines().count() > 1) {
            if (System.nanoTime() > lEnd) {
                throw new AssertionError("nobody asks " + process);
            }
            rest(10);
        }
    }

    private void makeTrouble(long lEnd, boolean bDisk) {
        while (System.nanoTime() < lEnd) {
            int iWhat = roll(10);
            if (iWhat < 4) {
                kill();
            } else if (iWhat < 7) {
                misbehave();
            } else if (bDisk) {
                fillDisk(100 + roll(700), false);
            } else {
                hang(bLong && roll(4) == 0 ? kTooLate + 100 : 50 + roll(1000));
            }
            rest(roll(150));
        }
    }

    /** Waits until all is well and what was late has happened. Nobody asks for anything. */
    void clearUp() {
        note("clearing up");
        long lSince = (System.nanoTime() - lFaultsEnded) / 1_000_000;
        rest(Math.max(kAfterwards, lLongestDelay + kAfterwards - lSince));
        long lEnd = System.nanoTime() + kPatienceSeconds * 1_000_000_000L;
        String restless;
        Gateway.Status after = new Gateway.Status();
        do {
            rest(200);
            Gateway.Status before = after;
            after = new Gateway.Status();
            restless = restless(before.requests(), after.requests(), after.busy());
            if (System.nanoTime() > lEnd) {
                throw new AssertionError("in the calm " + restless + "\n" + report);
            }
        } while (!restless.isEmpty());
        note("all is quiet");
    }

    /** Who is not as it should be when nobody asks for anything; empty when all are. */
    private static String restless(
            Map<String, Long> before, Map<String, Long> after, Set<String> busy) {
        StringJoiner who = new StringJoiner(", ");
        for (String process : kProcesses) {
            if (!after.containsKey(process)) {
                who.add(process + " is gone");
            } else if (!after.get(process).equals(before.get(process))) {
                who.add(process + " is asked");
            } else if (busy.contains(process)) {
                who.add(process + " is busy");
            }
        }
        return who.toString();
    }

    private void kill() {
        TreeSet<String> victims = new TreeSet<>();
        for (int i = roll(3); i >= 0; i--) {
            victims.add(victim());
        }
        victims.removeAll(spared);
        note("dead: " + victims);
        for (String process : victims) {
            StormPart.Carriers carriers = tally.carriers(process);
            if (carriers == null) {
                Gateway.kill(process);
            } else {
                lBlocksLost += carriers.during(() -> Gateway.kill(process));
            }
            lKills++;
        }
        rest(roll(300));
        Gateway.revive(victims.toArray(new String[0]));
        note("alive again");
    }

    private void hang(long lMilliseconds) {
        String id = stop(victim());
        try {
            rest(lMilliseconds);
        } finally {
            goOn(id);
        }
    }

    /** A process that doesn't hang. */
    private String victim() {
        String process;
        do {
            process = oneOf(kProcesses);
        } while (process.equals(hanging));
        return process;
    }

    private String stop(String process) {
        String id = Gateway.idOf(process);
        Gateway.program("kill", "-STOP", id);
        lStops++;
        note("stopped: " + process + " " + id);
        return id;
    }

    private void goOn(String id) {
        Gateway.program("kill", "-CONT", id);
        note("going on: " + id);
    }

    private String hastyVictim() {
        return hanging.equals(kHasty[0])    ? kHasty[1]
                : hanging.equals(kHasty[1]) ? kHasty[0]
                                            : oneOf(kHasty);
    }

    private void misbehave() {
        String process = victim();
        switch (roll(4)) {
        case 0:
            fault(process, 1 + roll(6), "--code", "7");
            break;
        case 1:
            fault(process, 1 + roll(20), "--delay", String.valueOf(1 + roll(200)));
            break;
        case 2:
            if (bLong && roll(4) == 0) {
                late(kMuchTooLate, process);
            } else {
                late(kTooLate, hastyVictim());
            }
            break;
        default:
            fault(bLong && roll(4) == 0 ? process : hastyVictim(), 1, "--drop");
        }
    }

    private void late(int iMilliseconds, String process) {
        lLongestDelay = Math.max(lLongestDelay, iMilliseconds);
        fault(process, 1 + roll(2), "--delay", String.valueOf(iMilliseconds));
    }

    private void fault(String process, int iTimes, String... how) {
        faultOf(process, "any", iTimes, how);
    }

    private void faultOf(String process, String rpc, int iTimes, String... how) {
        List<String> words = new ArrayList<>(List.of("fault", process, rpc));
        words.addAll(List.of(how));
        words.addAll(List.of("--times", String.valueOf(iTimes)));
        lFaults++;
        note(String.join(" ", words));
        Gateway.ctl(words.toArray(new String[0]));
    }

    private void reset() {
        Map<String, Long> before = Gateway.processIds();
        int iAnswer = Natives.number(Box.kReset, "reset");
        if (iAnswer != 0) {
            throw new AssertionError("reset answered " + iAnswer + " though nothing was wrong");
        }
        lResets++;
        note("reset");
        long lEnd = System.nanoTime() + kPatienceSeconds * 1_000_000_000L;
        Map<String, Long> now;
        do {
            if (System.nanoTime() > lEnd) {
                throw new AssertionError("the reset does not end: " + before);
            }
            rest(100);
            now = Gateway.processIds();
            now.values().removeAll(before.values());
        } while (now.size() < before.size());
        Gateway.await();
        note("up again");
    }

    /**
     * Where the disk ends: everything that is written there fails for a while.
     *
     * @param lMilliseconds how long; longer if it is alone, until a change fails
     * @param bAlone whether nothing else is wrong
     */
    private void fillDisk(long lMilliseconds, boolean bAlone) {
        Path ballast = Leftovers.directory().resolve("ballast");
        try {
            try {
                fill(ballast);
                lFullDisks++;
                note("the disk is full");
                long lMetBefore = tally.lFailuresOnFullDisk.get();
                tally.bOnlyDiskFull = bAlone;
                rest(lMilliseconds);
                if (bAlone) {
                    // On a slow machine nobody may have met it yet.
                    Traffic.await(() -> tally.lFailuresOnFullDisk.get() > lMetBefore);
                }
            } finally {
                tally.bOnlyDiskFull = false;
                Files.deleteIfExists(ballast);
                note("the disk has room again");
            }
        } catch (IOException e) {
            throw new AssertionError(e);
        }
    }

    private static void fill(Path file) throws IOException {
        byte[] piece = new byte[1 << 16];
        long lMost = file.getParent().toFile().getTotalSpace();
        if (lMost > 1L << 26) {
            throw new AssertionError("a disk of " + lMost + " bytes would take long to fill");
        }
        try (OutputStream out = Files.newOutputStream(file)) {
            for (int iLength = piece.length; iLength > 0; iLength /= 2) {
                try {
                    while (true) {
                        out.write(piece, 0, iLength);
                    }
                } catch (IOException e) {
                    // No room for a piece of this length: on with shorter ones.
                }
            }
        }
        if (Files.size(file) > lMost) {
            throw new AssertionError(
                    "the disk took " + Files.size(file) + " bytes and is not full");
        }
    }
}
