import java.util.HashMap;
import java.util.HashSet;
import java.util.Map;
import java.util.Set;

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

        @Override
        public String toString() {
            return number != null ? number.toString() : text != null ? '"' + text + '"' : "null";
        }
    }

    /** What a method answers when all goes well, and when what it asks fails. */
    record Row(Answer good, Answer failure) {}

    /** By the method's name. */
    final Map<String, Row> rows = new HashMap<>();
    /** Further answers, by the method's name. */
    private final Map<String, Set<Answer>> answers = new HashMap<>();

    void add(String method, Answer answer) {
        answers.computeIfAbsent(method, key -> new HashSet<>()).add(answer);
    }

    /** All that the tests know a method to answer when all goes well. */
    Set<Answer> good(String method) {
        Row row = rows.get(method);
        Set<Answer> good = new HashSet<>(answers.getOrDefault(method, Set.of()));
        good.remove(row.failure());
        good.add(row.good());
        return good;
    }
}
