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

    private final Random random = new Random();
    private int iTroubles;

    @BeforeAll
    static void attach() {
        Gateway.attach();
    }

    @AfterAll
    static void startOver() {
        Gateway.startOver();
    }

    @Test
    void allNativeMethodsStandManyThreadsAndTrouble() throws InterruptedException {
        long lSeconds = Long.getLong("wap.threads.seconds", 20L);
        LoadRun run = new LoadRun("threads", kThreads, ThreadCalls::of, this::makeTrouble);
        long lBegin = System.nanoTime();
        run.run(lSeconds * 1000);
        assertEquals(Set.of(), Natives.neverCalled(), "never called");
        assertEquals(Natives.kMethods, Natives.called());
        System.out.printf("%nfigure threads.threads %d%nfigure threads.natives %d%n"
                        + "figure threads.calls %d%nfigure threads.seconds %d%n"
                        + "figure threads.failed_as_documented %d%nfigure threads.troubles %d%n",
                kThreads, Natives.called(), Natives.calls(),
                TimeUnit.NANOSECONDS.toSeconds(System.nanoTime() - lBegin), run.failures(),
                iTroubles);
    }

    /** One trouble after the other, for twice as long as one death would take alone. */
    private void makeTrouble(LoadRun run, long lMilliseconds) throws InterruptedException {
        long lEnd = System.nanoTime() + 2 * lMilliseconds * 1_000_000;
        resetInVain(run);
        do {
            iTroubles++;
            String process = kProcesses.get(random.nextInt(kProcesses.size()));
            switch (random.nextInt(4)) {
            case 0:
                run.killAndRestart(process, kAway);
                break;
            case 1:
                misbehave(run, LoadRun.Phase.CHANGING, process, "--code", "7");
                break;
            case 2:
                // Nothing fails that waits.
                misbehave(run, LoadRun.Phase.UP, process, "--delay", "20");
                break;
            default:
                // Only of those whose answers nobody relies on afterwards.
                misbehave(run, LoadRun.Phase.WILD,
                        random.nextBoolean() ? Gateway.kCwmp : Gateway.kIgmp, "--garbage");
            }
        } while (System.nanoTime() < lEnd);
    }

    private static void misbehave(LoadRun run, LoadRun.Phase phase, String process, String... how)
            throws InterruptedException {
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
