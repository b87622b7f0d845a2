package com.veltra.domoline.systemtest;

import java.util.List;
import java.util.Map;
import java.util.Queue;
import java.util.concurrent.ConcurrentHashMap;
import java.util.concurrent.ConcurrentLinkedQueue;
import java.util.concurrent.TimeUnit;

/**
 * Calls that waited so long that somebody has given up, they themselves or a process that asked
 * another one for them. What was given up may still be served: then it undoes what somebody did
 * meanwhile.
 */
final class Lateness {
    /** A little less than the shortest time that anybody waits for an answer, 5 s. */
    private static final long kGivesUp = TimeUnit.MILLISECONDS.toNanos(4500);
    /** By then, a process that is there has served what it was asked. */
    private static final long kServed = TimeUnit.SECONDS.toNanos(20);

    /** A call by its thread, with the processes that it needs. */
    private static final class LongCall {
        final Thread thread = Thread.currentThread();
        final List<String> processes = asked.get();
        final long lBegin = System.nanoTime();
        volatile long lEnd;

        boolean needsOneOf(List<String> others) {
            return processes.stream().anyMatch(others::contains);
        }
    }

    private static final ThreadLocal<List<String>> asked = ThreadLocal.withInitial(List::of);
    private static final Map<Thread, LongCall> running = new ConcurrentHashMap<>();
    private static final Queue<LongCall> gaveUp = new ConcurrentLinkedQueue<>();

    private Lateness() {}

    /** This thread's next calls need these processes. */
    static void expect(List<String> processes) {
        asked.set(processes);
    }

    /** This thread begins a call. */
    static void begin() {
        LongCall call = new LongCall();
        running.put(call.thread, call);
    }

    /** It has ended. */
    static void end() {
        LongCall call = running.get(Thread.currentThread());
        call.lEnd = System.nanoTime();
        if (call.lEnd - call.lBegin >= kGivesUp && !call.processes.isEmpty()) {
            gaveUp.removeIf(old -> call.lEnd - old.lEnd >= kServed);
            gaveUp.add(call);
        }
        running.remove(call.thread);
    }

    /**
     * Whether one of the processes that this thread's calls need may have served something late, or
     * may do so now.
     */
    static boolean isPossible() {
        List<String> mine = asked.get();
        long lNow = System.nanoTime();
        // In this order: a call that ends in between is seen twice rather than never.
        return running.values().stream().anyMatch(
                       call -> lNow - call.lBegin >= kGivesUp && call.needsOneOf(mine))
                || gaveUp.stream().anyMatch(
                        call -> lNow - call.lEnd < kServed && call.needsOneOf(mine));
    }

    /** Whether a call of this thread that began then, or later, waited so long. */
    static boolean isMine(long lSince) {
        return gaveUp.stream().anyMatch(
                call -> call.thread == Thread.currentThread() && call.lBegin - lSince >= 0);
    }
}
