package com.veltra.domoline.systemtest;

import java.util.ArrayDeque;
import java.util.ArrayList;
import java.util.Deque;
import java.util.HashMap;
import java.util.LinkedHashMap;
import java.util.LinkedHashSet;
import java.util.List;
import java.util.Map;
import java.util.Set;
import java.util.TreeMap;
import java.util.TreeSet;
import java.util.function.UnaryOperator;
import java.util.stream.Collectors;

/**
 * What a home must be after all that was asked of it. Each element of it, such as a route or the
 * lights, has a value, and changes may be pending whose answers were failures: each of them may
 * have happened, may not, and may still.
 *
 * <p>A change that was asked and not answered can happen late, for instance when the process that
 * was stopped goes on. Therefore it is pending until the home is looked at. A change that was
 * answered did happen: what the element was before is no longer possible, but what the pending
 * ones make of the new value is.
 */
final class HomeModel {
    /** The value of what isn't there. */
    static final String kAbsent = "(absent)";
    static final String kPresent = "(present)";

    /** A change to one value, whatever it was; two to the same value are equal. */
    static UnaryOperator<String> to(String value) {
        return new To(value);
    }

    private static final class To implements UnaryOperator<String> {
        private final String value;

        To(String value) {
            this.value = value;
        }

        @Override
        public String apply(String ignored) {
            return value;
        }

        @Override
        public boolean equals(Object other) {
            return other instanceof To && value.equals(((To) other).value);
        }

        @Override
        public int hashCode() {
            return value.hashCode();
        }
    }

    /** A value, and how many of the pending changes were used on the way to it. */
    private static final class Outcome {
        final String value;
        private final Map<UnaryOperator<String>, Integer> used;

        Outcome(String value, Map<UnaryOperator<String>, Integer> used) {
            this.value = value;
            this.used = used;
        }

        Outcome after(UnaryOperator<String> change) {
            return new Outcome(change.apply(value), used);
        }

        int uses(UnaryOperator<String> change) {
            return used.getOrDefault(change, 0);
        }

        Outcome using(UnaryOperator<String> change) {
            Map<UnaryOperator<String>, Integer> more = new HashMap<>(used);
            more.merge(change, 1, Integer::sum);
            return new Outcome(change.apply(value), more);
        }

        /** Whether whatever the other one can become, this one can. */
        boolean covers(Outcome other) {
            return value.equals(other.value)
                    && used.entrySet().stream().allMatch(
                            use -> use.getValue() <= other.uses(use.getKey()));
        }
    }

    private static final class Element {
        /** What it is without the pending changes that weren't used; none covers another. */
        private List<Outcome> outcomes = new ArrayList<>();
        /** How many of each are pending, the used ones too. */
        private final Map<UnaryOperator<String>, Integer> pending = new LinkedHashMap<>();

        Element(String value) {
            outcomes.add(new Outcome(value, Map.of()));
        }

        boolean isCertain() {
            return pending.isEmpty();
        }

        /** Adds what isn't covered, and says whether it did. */
        private static boolean put(List<Outcome> outcomes, Outcome outcome) {
            if (outcomes.stream().anyMatch(there -> there.covers(outcome))) {
                return false;
            }
            outcomes.removeIf(outcome::covers);
            return outcomes.add(outcome);
        }

        /** What it can be when any of the pending changes happen, in any order. */
        private List<Outcome> reachable() {
            List<Outcome> all = new ArrayList<>(outcomes);
            Deque<Outcome> left = new ArrayDeque<>(outcomes);
            while (!left.isEmpty()) {
                Outcome outcome = left.remove();
                pending.forEach((change, iTimes) -> {
                    if (outcome.uses(change) < iTimes) {
                        Outcome next = outcome.using(change);
                        if (put(all, next)) {
                            left.add(next);
                        }
                    }
                });
            }
            return all;
        }

        Set<String> values() {
            return reachable()
                    .stream()
                    .map(outcome -> outcome.value)
                    .collect(Collectors.toCollection(LinkedHashSet::new));
        }

        void change(UnaryOperator<String> change) {
            List<Outcome> changed = new ArrayList<>();
            reachable().forEach(outcome -> put(changed, outcome.after(change)));
            outcomes = changed;
        }
    }

    private final Map<String, Element> elements = new TreeMap<>();
    private long lEverUncertain;

    private Element element(String key) {
        return elements.computeIfAbsent(key, none -> new Element(kAbsent));
    }

    /** Whether only one value is possible, and nothing can still come that makes it another. */
    synchronized boolean isCertain(String key) {
        return element(key).isCertain();
    }

    /** The value of an element that is certain. */
    synchronized String value(String key) {
        Element element = element(key);
        if (!element.isCertain()) {
            throw new AssertionError(key + " is uncertain: " + element.values());
        }
        return element.outcomes.get(0).value;
    }

    /** An element has changed. */
    synchronized void changed(String key, UnaryOperator<String> change) {
        element(key).change(change);
    }

    /** An element may have changed, or may still. */
    synchronized void mayHaveChanged(String key, UnaryOperator<String> change) {
        Element element = element(key);
        if (element.isCertain()) {
            lEverUncertain++;
        }
        // Also when it is what it would become: what comes late undoes what is done until then.
        element.pending.merge(change, 1, Integer::sum);
    }

    /** How many times an element became uncertain. */
    synchronized long everUncertain() {
        return lEverUncertain;
    }

    /** The keys that begin so and are certain to have a value of which this says yes. */
    synchronized List<String> keys(String prefix, boolean bPresent) {
        List<String> found = new ArrayList<>();
        elements.forEach((key, element) -> {
            if (key.startsWith(prefix) && element.isCertain()
                    && value(key).equals(kAbsent) != bPresent) {
                found.add(key);
            }
        });
        return found;
    }

    /** Whether all elements whose keys begin so are certain. */
    synchronized boolean isAllCertain(String prefix) {
        return elements.entrySet().stream().noneMatch(
                entry -> entry.getKey().startsWith(prefix) && !entry.getValue().isCertain());
    }

    /** What is certainly there of the elements whose keys begin so, by key. */
    synchronized Map<String, String> certainRows(String prefix) {
        Map<String, String> rows = new TreeMap<>();
        keys(prefix, true).forEach(key -> rows.put(key, value(key)));
        return rows;
    }

    /**
     * Compares the elements whose keys begin so with what was found.
     *
     * @return a line for each difference
     */
    synchronized List<String> differences(String prefix, Map<String, String> found) {
        Set<String> keys = new TreeSet<>(found.keySet());
        elements.keySet().stream().filter(key -> key.startsWith(prefix)).forEach(keys::add);
        List<String> differences = new ArrayList<>();
        for (String key : keys) {
            String value = found.getOrDefault(key, kAbsent);
            Set<String> values =
                    elements.containsKey(key) ? elements.get(key).values() : Set.of(kAbsent);
            if (!values.contains(value)) {
                differences.add(key + " is " + value + " and may be " + values);
            }
        }
        return differences;
    }

    /** Takes what was found for certain from now on. */
    synchronized void adopt(String prefix, Map<String, String> found) {
        elements.keySet().removeIf(key -> key.startsWith(prefix));
        found.forEach((key, value) -> elements.put(key, new Element(value)));
    }
}
