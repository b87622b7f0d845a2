package com.veltra.domoline.systemtest;

import java.util.ArrayList;
import java.util.LinkedHashSet;
import java.util.List;
import java.util.Map;
import java.util.Set;
import java.util.TreeMap;
import java.util.TreeSet;
import java.util.function.UnaryOperator;

/**
 * What a home must be after all that was asked of it. Each element of it, such as a route or the
 * lights, has a value, and after a change whose answer was a failure two: it may have happened.
 *
 * <p>A change that was asked and not answered can still happen, for instance when the process that
 * was stopped goes on. Therefore an element that is uncertain stays so until the home is looked at,
 * and a change that keeps a part of an uncertain element's value is not followed: it would have to
 * be tried in every order.
 */
final class HomeModel {
    /** The value of what isn't there. */
    static final String kAbsent = "(absent)";
    static final String kPresent = "(present)";

    private static final class Element {
        final Set<String> values = new LinkedHashSet<>();
        boolean bCertain = true;
    }

    private final Map<String, Element> elements = new TreeMap<>();
    private long lEverUncertain;

    private Element element(String key) {
        return elements.computeIfAbsent(key, none -> {
            Element element = new Element();
            element.values.add(kAbsent);
            return element;
        });
    }

    /** Whether only one value is possible, and nothing can still come that makes it another. */
    synchronized boolean isCertain(String key) {
        return element(key).bCertain;
    }

    /** The value of an element that is certain. */
    synchronized String value(String key) {
        Element element = element(key);
        if (!element.bCertain) {
            throw new AssertionError(key + " is uncertain: " + element.values);
        }
        return element.values.iterator().next();
    }

    /** An element has changed. */
    synchronized void changed(String key, UnaryOperator<String> change) {
        Element element = element(key);
        if (!element.bCertain) {
            // What was asked before may come after this.
            mayHaveChanged(key, change);
            return;
        }
        Set<String> before = new LinkedHashSet<>(element.values);
        element.values.clear();
        before.forEach(value -> element.values.add(change.apply(value)));
    }

    /** An element may have changed, or may still. */
    synchronized void mayHaveChanged(String key, UnaryOperator<String> change) {
        Element element = element(key);
        Set<String> before = new LinkedHashSet<>(element.values);
        before.forEach(value -> element.values.add(change.apply(value)));
        // Also when it is what it would become: what comes late undoes what is done until then.
        if (element.bCertain) {
            element.bCertain = false;
            lEverUncertain++;
        }
    }

    /** How many times an element became uncertain. */
    synchronized long everUncertain() {
        return lEverUncertain;
    }

    /** The keys that begin so and are certain to have a value of which this says yes. */
    synchronized List<String> keys(String prefix, boolean bPresent) {
        List<String> found = new ArrayList<>();
        elements.forEach((key, element) -> {
            if (key.startsWith(prefix) && element.bCertain
                    && element.values.contains(kAbsent) != bPresent) {
                found.add(key);
            }
        });
        return found;
    }

    /** Whether all elements whose keys begin so are certain. */
    synchronized boolean isAllCertain(String prefix) {
        return elements.entrySet().stream().noneMatch(
                entry -> entry.getKey().startsWith(prefix) && !entry.getValue().bCertain);
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
                    elements.containsKey(key) ? elements.get(key).values : Set.of(kAbsent);
            if (!values.contains(value)) {
                differences.add(key + " is " + value + " and may be " + values);
            }
        }
        return differences;
    }

    /** Takes what was found for certain from now on. */
    synchronized void adopt(String prefix, Map<String, String> found) {
        elements.keySet().removeIf(key -> key.startsWith(prefix));
        found.forEach((key, value) -> {
            Element element = new Element();
            element.values.add(value);
            elements.put(key, element);
        });
    }
}
