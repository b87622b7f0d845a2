package com.veltra.domoline.systemtest;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.util.ArrayList;
import java.util.List;
import java.util.Queue;
import java.util.concurrent.ConcurrentLinkedQueue;
import java.util.concurrent.Phaser;
import java.util.concurrent.TimeUnit;
import java.util.concurrent.TimeoutException;
import java.util.concurrent.atomic.AtomicInteger;
import java.util.concurrent.atomic.AtomicLong;
import java.util.function.IntFunction;

/**
 * Many threads calling methods without a pause, while processes of the gateway die, come back and
 * misbehave. What native code holds is counted after a warm-up and at the end.
 */
final class LoadRun {
    private static final int kShownErrors = 10;
    private static final int kPauseMilliseconds = 10;
    /**
     * What may be gained without a leak, by machine and library getting used to the work. That
     * comes to an end: of eight intervals of 5.5 s one after the other, the first gained 71 KB of
     * native memory, the second 3 KB and the others less. Therefore an interval that gained too
     * much is followed by another one, and memory has grown when all of them gained too much.
     */
    private static final long kNoiseBytes = 64 * 1024;
    private static final int kIntervals = 2;
    /**
     * Beyond that, a leak is what grows with the calls. Tried with one method that loses bytes with
     * each of its calls: a run of 10 s finds 32, which are 108 KB in 98,000 calls of all methods. A
     * run of 4 s misses these and finds 128.
     */
    private static final double kBytesPerCall = 0.1;
    /** Each thread of the compiler holds one, and they come and go: one less was seen. */
    private static final int kMachinesReferences = 8;
    private static final long kSameStall = TimeUnit.SECONDS.toNanos(5);
    /** One story in so many may find undone what it did. */
    private static final int kMostUndone = 100;

    /** What is known of the process that is in trouble. */
    enum Phase {
        UP,
        /** Its methods answer successes or failures. */
        CHANGING,
        /** Its methods answer failures. */
        DOWN,
        /** Its methods answer anything. */
        WILD
    }

    /** The trouble of a time; a new one with every change. */
    private static final class Trouble {
        final Phase phase;
        private final String process;
        /** What came after it; null for that of now. */
        volatile Trouble next;

        /** @param process whose trouble it is; null for everybody's */
        Trouble(Phase phase, String process) {
            this.phase = phase;
            this.process = process;
        }

        boolean concerns(GatewayMethod method) {
            return phase != Phase.UP && !method.processes().isEmpty()
                    && (process == null || method.processes().contains(process));
        }
    }

    /** Makes trouble for about so long, and leaves all processes as they were. */
    interface Troublemaker {
        void make(LoadRun run, long lMilliseconds) throws InterruptedException;
    }

    private final String name;
    private final int iThreads;
    private final IntFunction<List<GatewayMethod>> work;
    private final Troublemaker troublemaker;
    private volatile Trouble trouble = new Trouble(Phase.UP, null);
    private volatile boolean bStop;
    private volatile boolean bRest;
    private final Phaser rest;
    private final List<Thread> threads = new ArrayList<>();
    private final AtomicLong lCalls = new AtomicLong();
    private final AtomicLong lFailuresWhileDown = new AtomicLong();
    private final AtomicLong lFailures = new AtomicLong();
    private int iStalls;
    private long lStallEnd;
    private final AtomicLong lStories = new AtomicLong();
    private final AtomicLong lUndone = new AtomicLong();
    private final AtomicInteger iErrors = new AtomicInteger();
    private final Queue<String> errors = new ConcurrentLinkedQueue<>();

    /**
     * @param name what it is called in what is printed
     * @param work tells what each thread calls, in this order and again
     */
    LoadRun(String name, int iThreads, IntFunction<List<GatewayMethod>> work,
            Troublemaker troublemaker) {
        this.name = name;
        this.iThreads = iThreads;
        this.work = work;
        this.troublemaker = troublemaker;
        rest = new Phaser(iThreads + 1);
    }

    long calls() {
        return lCalls.get();
    }

    /** How many calls answered the failure of their methods. */
    long failures() {
        return lFailures.get();
    }

    /**
     * How many stories found undone what they did, when a request served late may have been why.
     */
    long undone() {
        return lUndone.get();
    }

    /** How many times calls gave up though nothing was wrong. */
    synchronized int stalls() {
        return iStalls;
    }

    /** From now on a process, or everybody for null, is so. */
    void enter(Phase next, String process) {
        Trouble before = trouble;
        before.next = new Trouble(next, process);
        trouble = before.next;
    }

    /** Insists that nothing fails without a reason and that nothing grows. */
    void run(long lDuration) throws InterruptedException {
        for (int i = 0; i < iThreads; i++) {
            int iFirst = i;
            Thread thread = new Thread(() -> work(iFirst), name + "-" + i);
            // One that never ends shall not keep the machine from its end.
            thread.setDaemon(true);
            thread.start();
            threads.add(thread);
        }
        Stock before;
        List<Interval> intervals = new ArrayList<>();
        String endless;
        try {
            Thread.sleep(lDuration / 4);
            // One trouble belongs to the warm-up: its first failures load what only failures need.
            troublemaker.make(this, lDuration / 20);
            Thread.sleep(lDuration / 10);
            before = takeStock(null);
            intervals.add(workOn(before, lDuration, 0));
            for (int i = 1; i < kIntervals && !intervals.get(i - 1).isBounded(); i++) {
                Interval last = intervals.get(i - 1);
                intervals.add(workOn(last.end, lDuration, last.lCalls));
            }
        } finally {
            bStop = true;
            rest.forceTermination();
            endless = Patience.end(threads);
        }
        assertEquals("", endless);
        System.out.printf("%s: %d calls, %d failed as documented while a process was away%n", name,
                lCalls.get(), lFailuresWhileDown.get());
        assertEquals(0, iErrors.get(), () -> String.join("\n", errors));
        assertTrue(lCalls.get() > 100L * iThreads, "only " + lCalls.get() + " calls");
        assertTrue(lFailuresWhileDown.get() > 0, "no call met a process's absence");
        assertTrue(lUndone.get() * kMostUndone <= lStories.get(),
                () -> lUndone + " of " + lStories + " stories found undone what they did");
        intervals.forEach(interval -> System.out.println(name + ": " + interval));
        assertTrue(intervals.stream().anyMatch(Interval::isBounded),
                "memory grew with the calls, each time anew: " + intervals);
        ProcessFootprint after = intervals.get(intervals.size() - 1).end.footprint;
        int iReferences = after.iGlobalReferences - before.footprint.iGlobalReferences;
        System.out.printf("%s: JNI global references %+d%n", name, iReferences);
        assertTrue(iReferences <= kMachinesReferences,
                iReferences + " more JNI global references than before");
        assertEquals(before.footprint.iDescriptors, after.iDescriptors, "open descriptors");
        intervals.forEach(interval
                -> assertEquals(before.threads, interval.end.threads, "threads of the process"));
    }

    /** What the process holds, and how many calls had been made by then. */
    private static final class Stock {
        final ProcessFootprint footprint;
        final long lCalls;
        /** By name; none under an emulator, where a 32-bit program cannot list a folder. */
        final List<String> threads;

        Stock(ProcessFootprint footprint, long lCalls, List<String> threads) {
            this.footprint = footprint;
            this.lCalls = lCalls;
            this.threads = threads;
        }
    }

    /** What a time of work has added. */
    private static final class Interval {
        final Stock end;
        final long lCalls;
        private final long lNative;
        private final long lHeap;
        private final long lResidentKiB;

        Interval(Stock start, Stock end) {
            this.end = end;
            lCalls = end.lCalls - start.lCalls;
            lNative = end.footprint.lNative - start.footprint.lNative;
            lHeap = end.footprint.lHeap - start.footprint.lHeap;
            lResidentKiB = end.footprint.lResidentKiB - start.footprint.lResidentKiB;
        }

        private long bound() {
            return kNoiseBytes + (long) (kBytesPerCall * lCalls);
        }

        boolean isBounded() {
            return Math.max(lNative, lHeap) <= bound();
        }

        @Override
        public String toString() {
            return String.format("%d calls, native memory %+d bytes, Java objects %+d bytes, of"
                            + " which %d may be; resident memory %+d KiB",
                    lCalls, lNative, lHeap, bound(), lResidentKiB);
        }
    }

    /**
     * Works on, with trouble in between, and takes stock again.
     *
     * @param lAtLeast so many calls are made, however long they take, unless one of them fails
     */
    private Interval workOn(Stock start, long lDuration, long lAtLeast)
            throws InterruptedException {
        Thread.sleep(lDuration / 5);
        troublemaker.make(this, lDuration / 10);
        Thread.sleep(lDuration / 4);
        long lCallsBefore = lCalls.get();
        long lEnd = System.nanoTime() + TimeUnit.SECONDS.toNanos(Patience.kSeconds);
        while (lCalls.get() - start.lCalls < lAtLeast && iErrors.get() == 0) {
            if (System.nanoTime() > lEnd) {
                // Slow is no error: who hangs will be missed when stock is taken.
                assertTrue(lCalls.get() > lCallsBefore,
                        () -> "nobody calls anything any more:\n" + Patience.stacks(threads));
                break;
            }
            Thread.sleep(kPauseMilliseconds);
        }
        return new Interval(start, takeStock(start.threads));
    }

    /**
     * Takes stock while the threads rest between two calls, with all their connections open.
     *
     * @param wanted the threads that there shall be when those that are ending have ended; null for
     *     any
     */
    private Stock takeStock(List<String> wanted) throws InterruptedException {
        bRest = true;
        awaitAll();
        try {
            if (wanted != null) {
                Traffic.await(() -> wanted.equals(namesOfThreads()));
            }
            return new Stock(ProcessFootprint.take(), lCalls.get(), namesOfThreads());
        } finally {
            bRest = false;
            awaitAll();
        }
    }

    /** Waits until all threads begin or end their rest, but not for ever. */
    private void awaitAll() throws InterruptedException {
        try {
            rest.awaitAdvanceInterruptibly(rest.arrive(), Patience.kSeconds, TimeUnit.SECONDS);
        } catch (TimeoutException e) {
            throw new AssertionError(rest.getUnarrivedParties()
                    + " threads never come to their rest, or out of it:\n"
                    + Patience.stacks(threads));
        }
    }

    private static List<String> namesOfThreads() {
        return Boolean.getBoolean("wap.emulated") ? List.of() : Leftovers.threads();
    }

    /** Lets a process die and come back. */
    void killAndRestart(String process, long lAwayMilliseconds) throws InterruptedException {
        enter(Phase.CHANGING, process);
        Gateway.kill(process);
        enter(Phase.DOWN, process);
        Thread.sleep(lAwayMilliseconds);
        enter(Phase.CHANGING, process);
        Gateway.start(process);
        enter(Phase.UP, process);
    }

    private void work(int iFirst) {
        List<GatewayMethod> methods = work.apply(iFirst);
        for (int i = iFirst; !bStop; i++) {
            if (bRest) {
                // Once round, so that each thread has all its connections.
                for (GatewayMethod method : methods) {
                    callAndCheck(method);
                }
                rest.arriveAndAwaitAdvance();
                rest.arriveAndAwaitAdvance();
            }
            callAndCheck(methods.get(i % methods.size()));
        }
    }

    private void callAndCheck(GatewayMethod method) {
        Trouble before = trouble;
        long lBegin = System.nanoTime();
        Lateness.expect(method.processes());
        Object answer;
        try {
            answer = method.call();
        } catch (RuntimeException | Error e) {
            complain(method + " threw " + e);
            return;
        }
        lCalls.incrementAndGet();
        Phase during = before.concerns(method) ? before.phase : Phase.UP;
        for (Trouble next = before.next; next != null; next = next.next) {
            // A call that a change overlapped may have met either state.
            if (next.concerns(method) || during != Phase.UP) {
                boolean bWild =
                        during == Phase.WILD || next.concerns(method) && next.phase == Phase.WILD;
                during = bWild ? Phase.WILD : Phase.CHANGING;
            }
        }
        if (method.isStory()) {
            lStories.incrementAndGet();
        }
        if (during == Phase.UP && method.isUndone(answer) && !Lateness.isMine(lBegin)) {
            lUndone.incrementAndGet();
            return;
        }
        if (during == Phase.UP && method.isFailure(answer) && Lateness.isMine(lBegin)
                && isStall(lBegin)) {
            return;
        }
        check(method, answer, during);
    }

    /**
     * Whether calls that gave up did so because the machine stood still: a process that does not
     * answer would be met again. The calls of one such time count as one.
     */
    private synchronized boolean isStall(long lBegin) {
        if (iStalls == 0 || lBegin - lStallEnd > kSameStall) {
            iStalls++;
        }
        lStallEnd = System.nanoTime();
        return iStalls == 1;
    }

    private void check(GatewayMethod method, Object answer, Phase during) {
        boolean bSuccess = method.isSuccess(answer);
        boolean bFailure = method.isFailure(answer);
        boolean bAllowed;
        switch (during) {
        case UP:
            bAllowed = bSuccess;
            break;
        case DOWN:
            bAllowed = bFailure;
            lFailuresWhileDown.incrementAndGet();
            break;
        case CHANGING:
            bAllowed = bSuccess || bFailure;
            break;
        default:
            bAllowed = true;
        }
        if (bFailure) {
            lFailures.incrementAndGet();
        }
        if (!bAllowed) {
            complain(method + " answered " + answer + " while its processes were " + during);
        }
    }

    private void complain(String what) {
        if (iErrors.incrementAndGet() <= kShownErrors) {
            errors.add(what);
        }
    }
}
