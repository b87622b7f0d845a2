package com.veltra.domoline.console;

import java.util.Collection;
import java.util.Comparator;
import java.util.List;
import java.util.Locale;
import java.util.stream.Collectors;

/** Guesses what was meant by a name that doesn't exist. */
final class Suggestions {
    private static final int kMost = 3;

    private Suggestions() {}

    /**
     * Picks the names that resemble what was typed: the same letters in another case, a part of the
     * name, or a few wrong letters.
     *
     * @param typed what the user wrote
     * @param names the names that exist
     * @return at most three names, the closest first; empty when nothing resembles it
     */
    static List<String> near(String typed, Collection<String> names) {
        int iBest = names.stream().mapToInt(name -> distance(typed, name)).min().orElse(0);
        int iLimit = Math.min(iBest + 1, Math.max(2, typed.length() / 3));
        return names.stream()
                .distinct()
                .filter(name -> distance(typed, name) <= iLimit)
                .sorted(Comparator.comparingInt((String name) -> distance(typed, name))
                                .thenComparing(Comparator.naturalOrder()))
                .limit(kMost)
                .collect(Collectors.toList());
    }

    /**
     * Ends an error message with the suggestions for a name.
     *
     * @param typed what the user wrote
     * @param names the names that exist
     * @return {@code ""}, or words that begin with a semicolon
     */
    static String phrase(String typed, Collection<String> names) {
        List<String> near = near(typed, names);
        return near.isEmpty() ? "" : "; did you mean " + String.join(" or ", near) + "?";
    }

    /** The edit distance without regard to case; a name that contains what was typed is close. */
    private static int distance(String typed, String name) {
        String a = typed.toLowerCase(Locale.ROOT);
        String b = name.toLowerCase(Locale.ROOT);
        if (a.length() >= 3 && b.contains(a)) {
            return a.length() == b.length() ? 0 : 1;
        }
        int[] previous = new int[b.length() + 1];
        for (int j = 0; j <= b.length(); j++) {
            previous[j] = j;
        }
        for (int i = 1; i <= a.length(); i++) {
            int[] current = new int[b.length() + 1];
            current[0] = i;
            for (int j = 1; j <= b.length(); j++) {
                int swap = previous[j - 1] + (a.charAt(i - 1) == b.charAt(j - 1) ? 0 : 1);
                current[j] = Math.min(swap, 1 + Math.min(previous[j], current[j - 1]));
            }
            previous = current;
        }
        return previous[b.length()];
    }
}
