package com.veltra.domoline.systemtest;

import static org.junit.jupiter.api.Assertions.assertEquals;

import java.util.List;
import java.util.Random;
import java.util.Set;
import java.util.concurrent.TimeUnit;
import org.junit.jupiter.api.AfterAll;
import org.junit.jupiter.api.BeforeAll;
import org.junit.jupiter.api.Tag;
import org.junit.jupiter.api.Test;

/**
 * Sixty-four threads calling all native methods, those that change something too, while processes
 * die, refuse, hesitate and send nonsense.
 */
@Tag("threads")
class ThreadsTest {
    private static final int kThreads = 64;
    private static final List<String> kProcesses = List.of(Gateway.kGulm, Gateway.kOsgiProxy,
            Gateway.kAppM, Gateway.kTarn, Gateway.kUsbMngt, Gateway.kCwmp, Gateway.kIgmp);
    private static final long kAway = 200;
    /**
     * Their answers are the same whether a process is there or not: the trust list is not the one
     * that is in use, and the version is the library's own.
     */
    private static final Set<String> kAlwaysTheSame =
            Set.of("addLANHostToTrustList", "getAPIVersion");

    /** What a run printed, to meet the same troubles again. */
    private static final String kGivenSeed = System.getenv("WAP_THREADS_SEED");
    private static final long kSeed =
            kGivenSeed == null ? new Random().nextInt(1 << 30) : Long.parseLong(kGivenSeed);
    private static final long kSeconds = Long.getLong("wap.threads.seconds", 20L);
    /** From so many seconds on there is time for a process that hangs beyond the time-out. */
    private static final long kLong = 60;
    private static final long kBeyondTimeOut = 5500;
    /** For what it was asked meanwhile. */
    private static final long kAfterwards = 500;

    private final Random random = new Random(kSeed);
    private int iTroubles;
    private int iStops;

    @BeforeAll
    static void attach() {
        Gateway.attach();
        System.out.println("\nthreads: seed " + kSeed + " (WAP_THREADS_SEED)");
        // Each of the threads that use one has its own, two of them those of the home as shipped.
        for (int i = UsbLine.kEcho + 1; i <= ThreadCalls.kSerialDevices; i++) {
            Gateway.ctl("usb", "plug", "line-" + i, "--kind", i % 2 == 0 ? "echo" : "modem");
        }
    }

    @AfterAll
    static void startOver() {
        Gateway.startOver();
    }

    @Test
    void allNativeMethodsStandManyThreadsAndTrouble() throws InterruptedException {
        LoadRun run = new LoadRun("threads", kThreads, ThreadCalls::of, this::makeTrouble);
        long lBegin = System.nanoTime();
        run.run(kSeconds * 1000);
        assertEquals(Set.of(), Natives.neverCalled(), "never called");
        assertEquals(Natives.kMethods, Natives.called());
        assertEquals(kAlwaysTheSame, ThreadCalls.neverSucceeded(), "only failed, seed " + kSeed);
        System.out.printf("%nfigure threads.threads %d%nfigure threads.natives %d%n"
                        + "figure threads.calls %d%nfigure threads.seconds %d%n"
                        + "figure threads.failed_as_documented %d%nfigure threads.troubles %d%n"
                        + "figure threads.stops %d%nfigure threads.undone %d%n"
                        + "figure threads.stalls %d%n",
                kThreads, Natives.called(), Natives.calls(),
                TimeUnit.NANOSECONDS.toSeconds(System.nanoTime() - lBegin), run.failures(),
                iTroubles, iStops, run.undone(), run.stalls());
    }

    /** One trouble after the other, for twice as long as one death would take alone. */
    private void makeTrouble(LoadRun run, long lMilliseconds) throws InterruptedException {
        long lEnd = System.nanoTime() + 2 * lMilliseconds * 1_000_000;
        resetInVain(run);
        // Two that the dice may leave out.
        hang(run, LoadRun.Phase.UP, someProcess(), kAway);
        if (kSeconds >= kLong) {
            // Nobody's story relies on what this one does late.
            hang(run, LoadRun.Phase.CHANGING, Gateway.kAppM, kBeyondTimeOut);
        }
        do {
            String process = someProcess();
            switch (random.nextInt(5)) {
            case 0:
                iTroubles++;
                run.killAndRestart(process, kAway);
                break;
            case 1:
                misbehave(run, LoadRun.Phase.CHANGING, process, "--code", "7");
                break;
            case 2:
                // Nothing fails that waits.
                misbehave(run, LoadRun.Phase.UP, process, "--delay", "20");
                break;
            case 3:
                // Shorter than anybody waits.
                hang(run, LoadRun.Phase.UP, process, kAway);
                break;
            default:
                // Only of those whose answers nobody relies on afterwards.
                misbehave(run, LoadRun.Phase.WILD,
                        random.nextBoolean() ? Gateway.kCwmp : Gateway.kIgmp, "--garbage");
            }
        } while (System.nanoTime() < lEnd);
    }

    private String someProcess() {
        return kProcesses.get(random.nextInt(kProcesses.size()));
    }

    private void hang(LoadRun run, LoadRun.Phase phase, String process, long lMilliseconds)
            throws InterruptedException {
        String id = Gateway.idOf(process);
        iTroubles++;
        iStops++;
        run.enter(phase, process);
        Gateway.program("kill", "-STOP", id);
        try {
            Thread.sleep(lMilliseconds);
        } finally {
            Gateway.program("kill", "-CONT", id);
        }
        if (phase != LoadRun.Phase.UP) {
            Thread.sleep(kAfterwards);
        }
        run.enter(LoadRun.Phase.UP, process);
    }

    private void misbehave(LoadRun run, LoadRun.Phase phase, String process, String... how)
            throws InterruptedException {
        iTroubles++;
        run.enter(phase, process);
        String[] words = new String[how.length + 3];
        words[0] = "fault";
        words[1] = process;
        words[2] = "any";
        System.arraycopy(how, 0, words, 3, how.length);
        Gateway.ctl(words);
        Thread.sleep(kAway);
        Gateway.clear();
        run.enter(LoadRun.Phase.UP, process);
    }

    /** The one method that no thread may call as it likes: it would end everything. */
    private void resetInVain(LoadRun run) throws InterruptedException {
        run.enter(LoadRun.Phase.CHANGING, Gateway.kOsgiProxy);
        Gateway.kill(Gateway.kOsgiProxy);
        run.enter(LoadRun.Phase.DOWN, Gateway.kOsgiProxy);
        assertEquals(1, Natives.call(Box.kReset, "reset"));
        Thread.sleep(kAway);
        run.enter(LoadRun.Phase.CHANGING, Gateway.kOsgiProxy);
        Gateway.start(Gateway.kOsgiProxy);
        run.enter(LoadRun.Phase.UP, Gateway.kOsgiProxy);
        iTroubles++;
    }
}
