import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.HashMap;
import java.util.HashSet;
import java.util.LinkedHashSet;
import java.util.Map;
import java.util.Set;
import java.util.regex.Matcher;
import java.util.regex.Pattern;

/** What the tests expect of the native methods, each of which has a name of its own. */
final class Expectations {
    /** A text, a number, or neither: null. */
    record Answer(String text, Integer number) {
        static Answer of(String text) {
            return new Answer(text, null);
        }

        static Answer of(int iNumber) {
            return new Answer(null, iNumber);
        }

        static Answer ofNull() {
            return new Answer(null, null);
        }

        /** Of one as it is printed, here and in the list that the fault tests keep. */
        static Answer ofPrinted(String printed) {
            return printed.equals("null")      ? ofNull()
                    : printed.startsWith("\"") ? of(printed.substring(1, printed.length() - 1))
                                               : of(Integer.parseInt(printed));
        }

        @Override
        public String toString() {
            return number != null ? number.toString() : text != null ? '"' + text + '"' : "null";
        }
    }

    /** What a method answers when all goes well, and when what it asks fails. */
    record Row(Answer good, Answer failure) {}

    /** A text that says of itself that it is a failure. */
    private static final Pattern kFailure = Pattern.compile(
            "\\{\\s*\"Result\"\\s*:\\s*-?[1-9].*", Pattern.DOTALL);

    /** A method and an answer. */
    private static final Pattern kListed = Pattern.compile("(\\w+) (null|-?\\d{1,9}|\".*\")");

    /** By the method's name. */
    final Map<String, Row> rows = new HashMap<>();
    /** Further answers, by the method's name. */
    private final Map<String, Set<Answer>> answers = new HashMap<>();
    private final Map<String, Set<Answer>> failures = new HashMap<>();

    /** Notes what a method answers: a failure when it looks like one. */
    void add(String method, Answer answer) {
        boolean bFailure = answer.number() != null ? answer.number() < 0
                : answer.text() != null            ? kFailure.matcher(answer.text()).matches()
                                                   : true;
        (bFailure ? failures : answers)
                .computeIfAbsent(method, key -> new HashSet<>())
                .add(answer);
    }

    void addFailure(String method, Answer answer) {
        failures.computeIfAbsent(method, key -> new HashSet<>()).add(answer);
    }

    /**
     * Reads the list of what faults lead to: lines of a method, a blank and an answer, and such as
     * begin with '#'.
     *
     * @param methods the names of the native methods
     */
    void readFailures(Path list, Set<String> methods) throws IOException {
        for (String line : Files.readAllLines(list)) {
            Matcher listed = kListed.matcher(line);
            if (line.startsWith("#")) {
                continue;
            }
            if (!listed.matches() || !methods.contains(listed.group(1))) {
                throw new IOException(list + " has a line without a method and an answer: " + line);
            }
            addFailure(listed.group(1), Answer.ofPrinted(listed.group(2)));
        }
    }

    /** All that the tests know a method to answer when something is wrong. */
    Set<Answer> failures(String method) {
        Set<Answer> all = new LinkedHashSet<>(Set.of(rows.get(method).failure()));
        all.addAll(failures.getOrDefault(method, Set.of()));
        return all;
    }

    /** All that the tests know a method to answer when all goes well. */
    Set<Answer> good(String method) {
        Set<Answer> good = new HashSet<>(answers.getOrDefault(method, Set.of()));
        good.removeAll(failures(method));
        good.add(rows.get(method).good());
        return good;
    }
}
