package com.veltra.domoline.systemtest;

import java.util.ArrayList;
import java.util.Collection;
import java.util.List;
import java.util.concurrent.TimeUnit;
import java.util.stream.Collectors;

/** How long threads are waited for, and what is said of those that never come. */
final class Patience {
    /** Longer than a thread's longest work takes: a few calls that wait for half a minute each. */
    static final int kSeconds = 180;

    private Patience() {}

    /**
     * Waits for the end of threads that were told to end.
     *
     * @return what those do that don't; empty when all have ended
     */
    static String end(Collection<Thread> threads) throws InterruptedException {
        long lEnd = System.nanoTime() + TimeUnit.SECONDS.toNanos(kSeconds);
        List<Thread> left = new ArrayList<>();
        for (Thread thread : threads) {
            // At least a moment, as no time at all stands for any.
            TimeUnit.NANOSECONDS.timedJoin(
                    thread, Math.max(lEnd - System.nanoTime(), TimeUnit.MILLISECONDS.toNanos(1)));
            if (thread.isAlive()) {
                left.add(thread);
            }
        }
        return left.isEmpty() ? "" : left.size() + " threads don't end:\n" + stacks(left);
    }

    /** Where threads are. */
    static String stacks(Collection<Thread> threads) {
        return threads.stream()
                .map(thread -> thread.getName() + ", " + thread.getState() + lines(thread))
                .collect(Collectors.joining("\n"));
    }

    private static String lines(Thread thread) {
        StringBuilder lines = new StringBuilder();
        for (StackTraceElement element : thread.getStackTrace()) {
            lines.append("\n    ").append(element);
        }
        return lines.toString();
    }
}
