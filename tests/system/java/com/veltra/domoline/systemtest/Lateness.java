package com.veltra.domoline.systemtest;

import java.util.Map;
import java.util.concurrent.ConcurrentHashMap;
import java.util.concurrent.TimeUnit;

/**
 * Calls that gave up waiting, whose requests may still be served. What somebody set, added or
 * deleted in time may then be changed by what somebody else asked for long ago.
 */
final class Lateness {
    /** A little less than the shortest time that a call waits for an answer, 5 s. */
    private static final long kGivesUp = TimeUnit.MILLISECONDS.toNanos(4500);
    /** By then, a process that is there has served what it was asked. */
    private static final long kServed = TimeUnit.SECONDS.toNanos(20);

    /** When the calls that are under way have begun. */
    private static final Map<Thread, Long> running = new ConcurrentHashMap<>();
    /** When each thread's last call that gave up did so. */
    private static final Map<Thread, Long> gaveUp = new ConcurrentHashMap<>();

    private Lateness() {}

    /** This thread begins a call. */
    static void begin() {
        running.put(Thread.currentThread(), System.nanoTime());
    }

    /** It has ended. */
    static void end() {
        Thread me = Thread.currentThread();
        long lNow = System.nanoTime();
        if (lNow - running.get(me) >= kGivesUp) {
            gaveUp.put(me, lNow);
        }
        running.remove(me);
    }

    /** Whether a request of a call that gave up may just have been served, or be served now. */
    static boolean isPossible() {
        long lNow = System.nanoTime();
        // In this order: a call that ends in between is seen twice rather than never.
        return running.values().stream().anyMatch(lBegin -> lNow - lBegin >= kGivesUp)
                || gaveUp.values().stream().anyMatch(lEnd -> lNow - lEnd < kServed);
    }

    /** Whether a call of this thread has given up since then. */
    static boolean isMine(long lSince) {
        Long lEnd = gaveUp.get(Thread.currentThread());
        return lEnd != null && lEnd - lSince >= 0;
    }
}
