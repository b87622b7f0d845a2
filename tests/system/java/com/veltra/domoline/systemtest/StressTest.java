package com.veltra.domoline.systemtest;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.List;
import java.util.Queue;
import java.util.concurrent.ConcurrentLinkedQueue;
import java.util.concurrent.atomic.AtomicInteger;
import java.util.concurrent.atomic.AtomicLong;
import java.util.regex.Matcher;
import java.util.regex.Pattern;
import org.junit.jupiter.api.BeforeAll;
import org.junit.jupiter.api.Tag;
import org.junit.jupiter.api.Test;

/**
 * Sixteen threads calling everything without a pause, while a process of the gateway dies and comes
 * back. The driver runs it in a virtual machine whose heap has one size from the start, so that a
 * growing process means growing native memory.
 */
@Tag("stress")
class StressTest {
    private static final int kThreads = 16;
    private static final int kShownErrors = 10;

    /** What is known of osgi_proxy; the number of the phase's start goes up with every change. */
    private enum Phase { UP, CHANGING, DOWN }

    private volatile Phase phase = Phase.UP;
    private volatile boolean bStop;
    private final AtomicInteger iChanges = new AtomicInteger();
    private final AtomicLong lCalls = new AtomicLong();
    private final AtomicLong lFailuresWhileDown = new AtomicLong();
    private final AtomicInteger iErrors = new AtomicInteger();
    private final Queue<String> errors = new ConcurrentLinkedQueue<>();

    @BeforeAll
    static void attach() {
        Gateway.attach();
    }

    private void enter(Phase next) {
        phase = next;
        iChanges.incrementAndGet();
    }

    @Test
    void nothingFailsWhileTheGatewayIsUpAndNothingGrows() throws Exception {
        long lDuration = Long.getLong("wap.stress.seconds", 10L) * 1000;
        List<Thread> threads = new ArrayList<>();
        for (int i = 0; i < kThreads; i++) {
            int iFirst = i;
            Thread thread = new Thread(() -> work(iFirst), "stress-" + i);
            thread.start();
            threads.add(thread);
        }
        long lGrowth;
        try {
            Thread.sleep(lDuration / 4);
            // One death belongs to the warm-up: its first failures load what only failures need.
            killAndRestart(lDuration / 20);
            Thread.sleep(lDuration / 10);
            long lWarm = residentKiB();
            Thread.sleep(lDuration / 5);
            killAndRestart(lDuration / 10);
            Thread.sleep(lDuration / 4);
            lGrowth = residentKiB() - lWarm; // the threads, and their stacks, are still there
        } finally {
            bStop = true;
            for (Thread thread : threads) {
                thread.join();
            }
        }
        System.out.printf("stress: %d calls, %d failed as documented while osgi_proxy was away,"
                        + " resident memory %+d KiB%n",
                lCalls.get(), lFailuresWhileDown.get(), lGrowth);
        assertEquals(0, iErrors.get(), () -> String.join("\n", errors));
        assertTrue(lCalls.get() > 100L * kThreads, "only " + lCalls.get() + " calls");
        assertTrue(lFailuresWhileDown.get() > 0, "no call met the process's absence");
        long lLimit = Long.getLong("wap.stress.growth.kib", 12 * 1024L);
        assertTrue(lGrowth <= lLimit, "the process grew by " + lGrowth + " KiB");
    }

    private void killAndRestart(long lAwayMilliseconds) throws InterruptedException {
        enter(Phase.CHANGING);
        Gateway.kill(Gateway.kOsgiProxy);
        enter(Phase.DOWN);
        Thread.sleep(lAwayMilliseconds);
        enter(Phase.CHANGING);
        Gateway.start(Gateway.kOsgiProxy);
        enter(Phase.UP);
    }

    private void work(int iFirst) {
        DeviceMethod[] methods = DeviceMethod.values();
        for (int i = iFirst; !bStop; i++) {
            DeviceMethod method = methods[i % methods.length];
            int iBefore = iChanges.get();
            Phase during = phase;
            Object answer;
            try {
                answer = method.call();
            } catch (RuntimeException | Error e) {
                complain(method + " threw " + e);
                continue;
            }
            lCalls.incrementAndGet();
            // A call that a change overlapped may have met either state.
            boolean bSteady = iBefore == iChanges.get() && during != Phase.CHANGING;
            check(method, answer, bSteady ? during : Phase.CHANGING);
        }
    }

    private void check(DeviceMethod method, Object answer, Phase during) {
        boolean bSuccess = method.isSuccess(answer);
        boolean bFailure = method.isFailure(answer);
        boolean bAllowed;
        if (!Gateway.kOsgiProxy.equals(method.process) || during == Phase.UP) {
            bAllowed = bSuccess;
        } else if (during == Phase.DOWN) {
            bAllowed = bFailure;
            lFailuresWhileDown.incrementAndGet();
        } else {
            bAllowed = bSuccess || bFailure;
        }
        if (!bAllowed) {
            complain(method + " answered " + answer + " while osgi_proxy was " + during);
        }
    }

    private void complain(String what) {
        if (iErrors.incrementAndGet() <= kShownErrors) {
            errors.add(what);
        }
    }

    private static long residentKiB() throws IOException {
        String status = Files.readString(Path.of("/proc/self/status"));
        Matcher matcher = Pattern.compile("VmRSS:\\s+(\\d+) kB").matcher(status);
        assertTrue(matcher.find(), "no VmRSS in /proc/self/status");
        return Long.parseLong(matcher.group(1));
    }
}
