package com.veltra.domoline.systemtest;

import com.google.gson.JsonElement;
import com.google.gson.JsonObject;
import java.util.ArrayList;
import java.util.Collections;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;
import java.util.Random;
import java.util.Set;
import java.util.TreeMap;
import java.util.concurrent.ConcurrentHashMap;
import java.util.concurrent.TimeUnit;
import java.util.concurrent.atomic.AtomicLong;
import java.util.function.BooleanSupplier;
import java.util.function.Predicate;
import java.util.function.Supplier;
import java.util.function.UnaryOperator;

/**
 * The part of a home that one service or a few of them change, and operations of these services at
 * random. One thread at a time uses a part. All its keys in the model begin with its prefix, and
 * its instance numbers are given by nobody else, so what it knows of them holds.
 */
abstract class StormPart {
    private static final int kShownErrors = 10;
    /** How long most methods wait for an answer, and how long a few do. */
    private static final long kTimeOut = TimeUnit.SECONDS.toNanos(5);
    private static final long kLongTimeOut = TimeUnit.SECONDS.toNanos(30);

    /** What all parts together have done. */
    static final class Tally {
        final AtomicLong lOperations = new AtomicLong();
        /** Queries whose answers were looked at. */
        final AtomicLong lLooks = new AtomicLong();
        /** Operations whose answer was the documented failure. */
        final AtomicLong lFailures = new AtomicLong();
        /** Operations that must be refused, and were. */
        final AtomicLong lRefusals = new AtomicLong();
        /** Calls that lasted as long as most methods wait, and as a few do. */
        final AtomicLong lTimeOuts = new AtomicLong();
        final AtomicLong lLongTimeOuts = new AtomicLong();
        /** Failures in a calm that came after the time-out. */
        final AtomicLong lStalls = new AtomicLong();
        /** Changes without blocks that failed while nothing was wrong but a full disk. */
        final AtomicLong lFailuresOnFullDisk = new AtomicLong();
        /** Set by who makes trouble: nothing may fail meanwhile. */
        volatile boolean bCalm;
        /** Set by who makes trouble: the disk is full, and nothing else is wrong. */
        volatile boolean bOnlyDiskFull;
        private final Map<String, Carriers> carriers =
                Map.of(Gateway.kGulm, new Carriers(), Gateway.kAppM, new Carriers());
        private final List<String> errors = Collections.synchronizedList(new ArrayList<>());

        /** Those of a process; null for one that makes and takes no blocks. */
        Carriers carriers(String process) {
            return carriers.get(process);
        }

        void complain(String what) {
            errors.add(what);
        }

        /** The first of them; empty when there were none. */
        String errors() {
            synchronized (errors) {
                return String.join("\n", errors.subList(0, Math.min(kShownErrors, errors.size())));
            }
        }
    }

    /** Calls with which a bulk block is under way, to or from one process: one with each. */
    static final class Carriers {
        private final AtomicLong lBegun = new AtomicLong();
        private final AtomicLong lEnded = new AtomicLong();

        void begin() {
            lBegun.incrementAndGet();
        }

        void end() {
            lEnded.incrementAndGet();
        }

        /** How many there were at any time of an action. */
        long during(Runnable action) {
            long lEndedBefore = lEnded.get();
            action.run();
            return lBegun.get() - lEndedBefore;
        }
    }

    /** What may be in trouble: a query's failure, or two answers that don't agree. */
    static final class Disturbed extends AssertionError {
        private static final long serialVersionUID = 1;

        Disturbed(String what) {
            super(what);
        }
    }

    /** What an operation that succeeds does to the model, by key. */
    static final class Effect {
        private final Map<String, UnaryOperator<String>> changes = new LinkedHashMap<>();
        private final List<String> inTrouble = new ArrayList<>();

        static Effect set(String key, String value) {
            return new Effect().and(key, value);
        }

        static Effect map(String key, UnaryOperator<String> change) {
            Effect effect = new Effect();
            effect.changes.put(key, change);
            return effect;
        }

        Effect and(String key, String value) {
            changes.put(key, HomeModel.to(value));
            return this;
        }

        Effect andMap(String key, UnaryOperator<String> change) {
            changes.put(key, change);
            return this;
        }

        /** Something that a success does as well when a query on the way is not answered. */
        Effect inTrouble(String key, String value) {
            changes.put(key, HomeModel.to(value));
            inTrouble.add(key);
            return this;
        }

        private void apply(HomeModel model, boolean bDone, boolean bCalm) {
            changes.forEach((key, change) -> {
                if (bDone && !inTrouble.contains(key)) {
                    model.changed(key, change);
                } else if (!bDone || !bCalm) {
                    model.mayHaveChanged(key, change);
                }
            });
        }
    }

    final String prefix;
    private HomeModel model;
    private Tally tally;
    private Random random;
    /** What has succeeded since the home was quiet. */
    private final Set<String> done = ConcurrentHashMap.newKeySet();
    private boolean bHeldBack;
    private long lCarried;
    /** How long the last call took. */
    private long lLasted;

    StormPart(String prefix) {
        this.prefix = prefix;
    }

    final void begin(HomeModel model, Tally tally, Random random) {
        this.model = model;
        this.tally = tally;
        this.random = random;
    }

    /** An operation, or a look at the lists. */
    final void turn() {
        if (oneIn(10)) {
            look();
        } else if (!bHeldBack) {
            act();
        }
    }

    private void look() {
        boolean bCalmBefore = tally.bCalm;
        try {
            Map<String, String> rows = timed(this::told);
            if (rows != null && bCalmBefore && tally.bCalm) {
                compare(rows);
            }
        } catch (Disturbed e) {
            if (bCalmBefore && tally.bCalm && !canBeOvertaken() && !isStall()) {
                throw e;
            }
        }
    }

    /** Compares what the lists tell in a calm with what is certain. */
    private void compare(Map<String, String> told) {
        Map<String, String> rows = new TreeMap<>(told);
        rows.keySet().removeIf(key -> !isCertain(key));
        Map<String, String> toTell = toTell(model.certainRows(prefix));
        if (!toTell.equals(rows)) {
            tally.complain(prefix + "was told in a calm as " + rows + " instead of " + toTell);
        }
    }

    private <T> T timed(Supplier<T> call) {
        long lBegin = System.nanoTime();
        try {
            return call.get();
        } finally {
            long lNanoseconds = System.nanoTime() - lBegin;
            lLasted = lNanoseconds;
            if (lNanoseconds >= kTimeOut) {
                tally.lTimeOuts.incrementAndGet();
            }
            if (lNanoseconds >= kLongTimeOut) {
                tally.lLongTimeOuts.incrementAndGet();
            }
        }
    }

    /**
     * Whether a call that failed in a calm did so because the machine stood still: it waited until
     * the time-out. That may happen once; a gateway that doesn't answer makes it happen more often.
     */
    private boolean isStall() {
        return lLasted >= kTimeOut && tally.lStalls.incrementAndGet() == 1;
    }

    final void rest(int iMilliseconds) {
        try {
            Thread.sleep(roll(2 * iMilliseconds));
        } catch (InterruptedException e) {
            throw new AssertionError(e);
        }
    }

    /** The home is quiet and certain again. */
    final void calm(JsonObject home) {
        bHeldBack = false;
        done.clear();
        learn(home);
    }

    /**
     * After a deletion of everything that failed: if it comes late it takes away what was added
     * meanwhile. Therefore nothing is done until all is calm.
     */
    final void holdBackUnless(boolean bDone) {
        bHeldBack |= !bDone;
    }

    /** What this part succeeds with sooner or later while nothing is wrong. */
    Set<String> mustSucceed() {
        return Set.of();
    }

    /** Whether all of that was done since the home was quiet. */
    final boolean hasSucceeded() {
        return done.containsAll(mustSucceed());
    }

    /** Whether what leaves something behind when it is done first has been done. */
    boolean isWarm() {
        return true;
    }

    /** Does one operation, or none when all that it could do is uncertain. */
    abstract void act();

    /** Tells what the processes that own the part hold, by key; nothing of one without keys. */
    Map<String, String> held(JsonObject home) {
        return Map.of();
    }

    /** Tells the same as far as the services' lists tell it; null for a part without any. */
    Map<String, String> told() {
        return null;
    }

    /** What the keys begin with that {@link #told} tells. */
    String toldPrefix() {
        return prefix;
    }

    /** What {@link #told} must tell of what is held. */
    Map<String, String> toTell(Map<String, String> held) {
        Map<String, String> rows = new TreeMap<>(held);
        rows.keySet().removeIf(key -> !key.startsWith(toldPrefix()));
        return rows;
    }

    /** What the processes still hold of this part beside the home, when it is at rest; or "". */
    String leftInProcesses() {
        return "";
    }

    /** Notes what the home says of instance numbers. The home is quiet. */
    void learn(JsonObject home) {}

    /** Whether another part's change can make an operation of this one fail. */
    boolean canBeOvertaken() {
        return false;
    }

    final HomeModel model() {
        return model;
    }

    final boolean isCertain(String key) {
        return model.isCertain(key);
    }

    /** Whether nothing is wrong now. */
    final boolean isCalm() {
        return tally.bCalm;
    }

    // ---- operations ----

    /** Makes a change and follows it in the model. */
    final boolean change(String what, Effect effect, BooleanSupplier call) {
        boolean bCalmBefore = tally.bCalm;
        boolean bFullBefore = tally.bOnlyDiskFull;
        long lCarriedBefore = lCarried;
        boolean bDone = timed(call::getAsBoolean);
        boolean bCalm = bCalmBefore && tally.bCalm;
        tally.lOperations.incrementAndGet();
        effect.apply(model, bDone, bCalm);
        if (bDone && bCalm) {
            done.add(what);
        }
        if (!bDone) {
            tally.lFailures.incrementAndGet();
            // A block takes a place on the disk, too; what counts is what the gateway keeps.
            if (bFullBefore && tally.bOnlyDiskFull && lCarried == lCarriedBefore) {
                tally.lFailuresOnFullDisk.incrementAndGet();
            }
            if (bCalm && !canBeOvertaken() && !isStall()) {
                tally.complain(what + " failed though nothing was wrong");
            }
        }
        return bDone;
    }

    final boolean change(String what, String key, String value, Supplier<Integer> call) {
        return change(what, Effect.set(key, value), () -> isDone(what, call.get()));
    }

    /** Whether an answer is 0; anything else but the documented failures is an error. */
    final boolean isDone(String what, int iAnswer) {
        if (iAnswer != 0 && iAnswer != -1 && iAnswer != -2) {
            tally.complain(what + " answered " + iAnswer);
        }
        return iAnswer == 0;
    }

    /**
     * Asks for what must be refused whatever happens, and changes nothing.
     *
     * @param iRefusal what it is answered; while something is wrong it may be the failure, too
     */
    final void refused(String what, int iRefusal, Supplier<Integer> call) {
        boolean bCalmBefore = tally.bCalm;
        int iAnswer = timed(call);
        boolean bCalm = bCalmBefore && tally.bCalm;
        tally.lOperations.incrementAndGet();
        tally.lRefusals.incrementAndGet();
        if (iAnswer != iRefusal && ((bCalm && !isStall()) || iAnswer != -1)) {
            tally.complain(what + " answered " + iAnswer + " instead of " + iRefusal);
        }
    }

    /**
     * Asks something, and insists on the answer.
     *
     * @param success what it may be at any time
     * @param failure what it may be besides while something is wrong
     * @return the answer
     */
    final Object asked(String what, Supplier<Object> call, Predicate<Object> success,
            Predicate<Object> failure) {
        boolean bCalmBefore = tally.bCalm;
        Object answer = timed(call);
        boolean bCalm = bCalmBefore && tally.bCalm;
        looked();
        if (!success.test(answer) && ((bCalm && !isStall()) || !failure.test(answer))) {
            tally.complain(
                    what + " answered " + answer + (bCalm ? " though nothing was wrong" : ""));
        }
        return answer;
    }

    /** Makes a call with which one block is under way between the library and a process. */
    final <T> T carrying(String process, Supplier<T> call) {
        Carriers carriers = tally.carriers(process);
        lCarried++;
        carriers.begin();
        try {
            return call.get();
        } finally {
            carriers.end();
        }
    }

    final Carriers carriers(String process) {
        return tally.carriers(process);
    }

    // ---- chance ----

    final int roll(int iSides) {
        return random.nextInt(iSides);
    }

    final boolean oneIn(int iSides) {
        return roll(iSides) == 0;
    }

    /** One time in so many, but at once when this method has never been called. */
    final boolean rarely(int iSides, Object service, String method) {
        return oneIn(iSides) || !Natives.wasCalled(service, method);
    }

    @SafeVarargs
    final <T> T oneOf(T... choices) {
        return choices[roll(choices.length)];
    }

    /** One of the keys that begin so and are certainly there, or certainly not; null if none is. */
    final String anyKey(String begin, boolean bPresent) {
        List<String> keys = model.keys(begin, bPresent);
        return keys.isEmpty() ? null : keys.get(roll(keys.size()));
    }

    // ---- reading ----

    /** What follows a key's prefix. */
    static String rest(String key, String begin) {
        return key.substring(begin.length());
    }

    /**
     * What an element has beside some of its members, when that is not what it always is.
     *
     * @param always a JSON object
     * @return nothing when all is well; otherwise what there is, for a row's value
     */
    static String odd(JsonElement element, String always, String... members) {
        JsonObject others = element.getAsJsonObject().deepCopy();
        for (String member : members) {
            others.remove(member);
        }
        return others.equals(Home.object(always)) ? "" : " with " + others;
    }

    static String text(JsonElement element, String member) {
        return element.getAsJsonObject().get(member).getAsString();
    }

    /** An answer that must be no failure now. */
    final JsonObject answer(String text) {
        JsonObject object = text == null ? null : Home.object(text);
        if (object == null || object.get("Result").getAsInt() != 0) {
            throw new Disturbed("a query was answered " + text);
        }
        looked();
        return object;
    }

    /** An answer was looked at. */
    final void looked() {
        tally.lLooks.incrementAndGet();
    }

    /** Puts a row, and marks the second one of the same key. */
    static void put(Map<String, String> rows, String key, String value) {
        rows.merge(key, value, (first, second) -> first + " and once more " + second);
    }
}
