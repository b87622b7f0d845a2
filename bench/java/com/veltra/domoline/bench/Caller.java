package com.veltra.domoline.bench;

import java.util.ArrayList;
import java.util.List;
import java.util.Locale;
import java.util.concurrent.CountDownLatch;
import java.util.concurrent.atomic.AtomicReference;

/** Makes calls and measures them. The native programs start everything from here. */
public final class Caller {
    /** Results go here, so that no compiler finds out that nobody needs them. */
    private static volatile Object s_last;

    private Caller() {}

    /**
     * Gives the calls of a peer.
     *
     * @param peer bridge, floor, text, sockets_java, sockets_java_deflated, dbus_java, rules_bridge
     *     or rules_plain
     * @param work what to ask for, in lower case; without a meaning for the listings of rules
     * @param address the socket's path, the daemon's address, or the text that is made; otherwise
     *     without a meaning
     * @return what {@link #time} takes
     * @throws Exception if the peer can't be reached
     */
    static Call prepare(String peer, String work, String address) throws Exception {
        switch (peer) {
            case "rules_bridge":
                return RuleList.bridgeCall();
            case "rules_plain":
                return RuleList.plainCall();
            default:
                return prepare(peer, Work.valueOf(work.toUpperCase(Locale.ROOT)), address);
        }
    }

    private static Call prepare(String peer, Work work, String address) throws Exception {
        switch (peer) {
            case "bridge":
                BridgePeer.attach();
                return BridgePeer.call(work);
            case "floor":
                BridgePeer.attach();
                return FloorPeer.call(work);
            case "text":
                return FloorPeer.conversion(address);
            case "sockets_java":
                return SocketPeer.connect(address).call(work);
            case "sockets_java_deflated":
                return SocketPeer.connect(address).compressedCall();
            case "dbus_java":
                return DbusPeer.call(DbusPeer.connect(address), work);
            default:
                throw new IllegalArgumentException("no peer is called " + peer);
        }
    }

    /**
     * Makes one call, to look at what it answers.
     *
     * @return the answer as a text
     */
    static String answer(Call call) throws Exception {
        return String.valueOf(call.once());
    }

    /** Makes as many calls as there are places, and puts down how many nanoseconds each took. */
    static void time(Call call, long[] nanoseconds) throws Exception {
        long before = System.nanoTime();
        for (int i = 0; i < nanoseconds.length; i++) {
            s_last = call.once();
            long after = System.nanoTime();
            nanoseconds[i] = after - before;
            before = after;
        }
    }

    /**
     * Makes calls on several threads at once, which all start before the first call.
     *
     * @param threads how many threads
     * @param calls how many calls each makes
     * @return the nanoseconds from the start of all to the end of the last
     */
    static long timeThreads(Call call, int threads, int calls) throws Exception {
        CountDownLatch ready = new CountDownLatch(threads);
        CountDownLatch go = new CountDownLatch(1);
        AtomicReference<Exception> failure = new AtomicReference<>();
        List<Thread> started = new ArrayList<>();
        for (int i = 0; i < threads; i++) {
            Thread thread = new Thread(() -> {
                try {
                    // The first call of a thread opens its connection.
                    Object last = call.once();
                    ready.countDown();
                    go.await();
                    for (int j = 0; j < calls; j++) {
                        last = call.once();
                    }
                    s_last = last;
                } catch (Exception e) {
                    failure.set(e);
                    ready.countDown();
                }
            });
            started.add(thread);
            thread.start();
        }
        ready.await();
        long before = System.nanoTime();
        go.countDown();
        for (Thread thread : started) {
            thread.join();
        }
        long after = System.nanoTime();
        if (failure.get() != null) {
            throw failure.get();
        }
        return after - before;
    }
}
