import com.sun.source.tree.ClassTree;
import com.sun.source.tree.CompilationUnitTree;
import com.sun.source.tree.MethodInvocationTree;
import com.sun.source.tree.Tree;
import com.sun.source.tree.VariableTree;
import com.sun.source.util.JavacTask;
import com.sun.source.util.Trees;
import java.io.IOException;
import java.net.URI;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.HashSet;
import java.util.List;
import java.util.Map;
import java.util.Set;
import java.util.TreeMap;
import java.util.regex.Matcher;
import java.util.regex.Pattern;
import java.util.stream.Collectors;
import javax.tools.DiagnosticCollector;
import javax.tools.JavaFileObject;
import javax.tools.SimpleJavaFileObject;
import javax.tools.ToolProvider;

/**
 * Checks the Javadoc of the native methods against what the tests expect of them. Each must have
 *
 * <ul>
 *   <li>a description, a tag for each parameter, which tells its bounds, and one for what it
 *       returns, which tells each answer that stands for a failure in a test;
 *   <li>an example, in a paragraph that begins in one of two ways: "Example answer" and some more
 *       words, and then the answer as code, in a {@code <pre>} or not; or "Example:", the call as
 *       code, words with "answers" among them, and the answer as code;
 *   <li>in each example, an answer that a test expects of this method, byte for byte; where the
 *       example breaks a line, there may be a blank in the answer;
 *   <li>each member of an answer that is JSON named, as code, by a comment in its class or in a
 *       class that its own comment links to.
 * </ul>
 *
 * <p>What the tests expect is read by {@link EntryTables} and {@link SystemTests}, and what faults
 * lead to from the list that the fault tests keep.
 */
final class CheckJavadoc {
    private static final Pattern kMember = Pattern.compile("\"([^\"\\\\]+)\" ?:");
    /** Members that mean the same in all answers. */
    private static final Set<String> kEverywhere = Set.of("Result", "List");
    /** It asks nobody and has room for what it answers: only the memory for it may be missing. */
    private static final Set<String> kNeverFail = Set.of("getAPIVersion");
    /** What tells of null as an answer, and not as an argument. */
    private static final Pattern kNullAnswer = Pattern.compile("\\bnull (when|if)\\b");
    /** In what a parameter is said to be: its bounds, that there are none, or where they stand. */
    private static final Pattern kBounds = Pattern.compile(
            "\\d|\\b(null|any|every|whatever|whichever|whether|as (it|they) (is|are)"
            + "|likewise|as for|in the list|a handle of)\\b");
    /** Its answers are numbers of the gateway's, of which some look like failures. */
    private static final Set<String> kAnyNumber = Set.of("getDeviceUpTime");
    /** A number beyond this is no answer of the library's, but a code that some process chose. */
    private static final int kLargestOwn = 255;

    /** The call that an example shows. */
    private record Call(Comments.Native method, String text) {}

    private final Comments comments = new Comments();
    private final Expectations expectations = new Expectations();
    private final List<Call> calls = new ArrayList<>();
    private final Map<String, List<String>> complaints = new TreeMap<>();

    private CheckJavadoc() {}

    /** @param args the project's folder */
    public static void main(String[] args) {
        boolean bGood = false;
        try {
            bGood = new CheckJavadoc().run(Path.of(args[0]));
        } catch (IOException exception) {
            System.out.println("FAILED: the Javadoc cannot be checked: " + exception);
        }
        System.exit(bGood ? 0 : 1);
    }

    private boolean run(Path root) throws IOException {
        comments.read(root.resolve("java/api/src"));
        if (comments.natives.isEmpty()) {
            System.out.println("FAILED: no native method was found");
            return false;
        }
        Set<String> methods = new HashSet<>();
        for (Comments.Native method : comments.natives) {
            complaints.computeIfAbsent(method.service(), key -> new ArrayList<>());
            if (!methods.add(method.name())) {
                complain(method, "another class has a method of this name; the tests know one");
            }
        }
        EntryTables tables = new EntryTables(methods, expectations);
        tables.read(root.resolve("tests/support"), "entry_table");
        tables.read(root.resolve("tests/faults"), "cases_");
        expectations.readFailures(root.resolve("tests/faults/failing_answers.txt"), methods);
        new SystemTests(methods, expectations).read(root.resolve("tests/system/java"));
        comments.natives.forEach(this::check);
        checkCalls();
        complaints.forEach((service, said) -> {
            if (said.isEmpty()) {
                System.out.println("ok " + service);
            }
            said.forEach(complaint -> System.out.println("FAILED: " + service + "." + complaint));
        });
        return complaints.values().stream().allMatch(List::isEmpty);
    }

    private void complain(Comments.Native method, String complaint) {
        complaints.get(method.service()).add(method.name() + ": " + complaint);
    }

    private void check(Comments.Native method) {
        if (method.description().isEmpty()) {
            complain(method, "it has no description");
        }
        for (String parameter : method.parameters()) {
            String described = method.described().getOrDefault(parameter, "");
            if (described.isEmpty()) {
                complain(method, "no @param tells what " + parameter + " is");
            } else if (!kBounds.matcher(described).find()) {
                complain(method, "@param doesn't tell the bounds of " + parameter
                                + ": numbers, null, \"sent as it is\", or as other ones do");
            }
        }
        if (method.result().equals("void")) {
            return;
        }
        if (method.returned().isEmpty()) {
            complain(method, "no @return tells what it answers");
        }
        Expectations.Row row = expectations.rows.get(method.name());
        if (row == null) {
            complain(method, "no row of tests/support/entry_table*.cpp could be read for it");
            return;
        }
        for (Expectations.Answer failure : expectations.failures(method.name())) {
            if (!isExempt(method.name(), failure) && !tells(method.returned(), failure)) {
                complain(method,
                        "@return doesn't tell what a failure is answered with: " + failure);
            }
        }
        if (method.examples().isEmpty()) {
            complain(method, "it has no example");
        }
        method.examples().forEach(example -> check(method, example));
    }

    /** Whether an answer that the tests take for a failure need not be told. */
    private boolean isExempt(String method, Expectations.Answer failure) {
        if (kNeverFail.contains(method)) {
            return !failure.equals(Expectations.Answer.ofNull());
        }
        return kAnyNumber.contains(method)
                && !failure.equals(expectations.rows.get(method).failure());
    }

    /** Whether a description of results tells of an answer. */
    private static boolean tells(String returned, Expectations.Answer answer) {
        if (answer.number() != null) {
            return Math.abs((long) answer.number()) > kLargestOwn
                    ? returned.contains("code")
                    : Pattern.compile("(?<![\\w-])" + answer.number() + "(?!\\w)")
                              .matcher(returned)
                              .find();
        }
        if (answer.text() == null) {
            return kNullAnswer.matcher(returned).find();
        }
        return returned.contains(answer.text().isEmpty() ? "empty text" : answer.text());
    }

    private void check(Comments.Native method, Comments.Example example) {
        if (example.call() != null) {
            calls.add(new Call(method, example.call()));
        }
        if (example.answer() == null) {
            complain(method, "an example without an answer; CheckJavadoc.java has the forms");
            return;
        }
        if (expectations.good(method.name()).stream().noneMatch(good -> shows(example, good))) {
            complain(method, "no test expects the example " + example.answer()
                            + "\n    The entry table expects "
                            + expectations.rows.get(method.name()).good());
        }
        Set<String> members = new HashSet<>();
        Matcher member = kMember.matcher(example.answer());
        while (member.find()) {
            String name = member.group(1);
            if (!kEverywhere.contains(name) && members.add(name)
                    && !comments.isNamed(method.linked(), name)) {
                complain(method, "no comment tells what the member " + name + " is");
            }
        }
    }

    private static boolean shows(Comments.Example example, Expectations.Answer good) {
        if (good.number() != null) {
            return good.number().toString().equals(example.answer());
        }
        String pattern = example.answer()
                                 .lines()
                                 .map(line -> Pattern.quote(line.strip()))
                                 .collect(Collectors.joining(" ?"));
        return good.text() != null && good.text().matches(pattern);
    }

    /** Reads all calls of examples at once, a line each; each must be one of its method. */
    private void checkCalls() throws IOException {
        String code = calls.stream()
                              .map(call -> call.text().replaceAll("\\s+", " "))
                              .map(call -> "Object o = " + call + ";\n")
                              .collect(Collectors.joining("", "class Calls {\n", "}\n"));
        JavaFileObject file = new SimpleJavaFileObject(
                URI.create("string:///Calls.java"), JavaFileObject.Kind.SOURCE) {
            @Override
            public CharSequence getCharContent(boolean bIgnored) {
                return code;
            }
        };
        DiagnosticCollector<JavaFileObject> errors = new DiagnosticCollector<>();
        JavacTask task = (JavacTask) ToolProvider.getSystemJavaCompiler().getTask(
                null, null, errors, null, null, List.of(file));
        Trees trees = Trees.instance(task);
        Set<Call> good = new HashSet<>();
        for (CompilationUnitTree unit : task.parse()) {
            for (Tree member : ((ClassTree) unit.getTypeDecls().get(0)).getMembers()) {
                long lAt = trees.getSourcePositions().getStartPosition(unit, member);
                Call call = callAt(unit.getLineMap().getLineNumber(lAt));
                if (member instanceof VariableTree variable
                        && variable.getInitializer() instanceof MethodInvocationTree made
                        && made.getMethodSelect().toString().equals(call.method().name())
                        && made.getArguments().size() == call.method().parameters().size()) {
                    good.add(call);
                }
            }
        }
        errors.getDiagnostics().forEach(error -> good.remove(callAt(error.getLineNumber())));
        for (Call call : calls) {
            if (!good.contains(call)) {
                complain(call.method(), "the example is no call of it: " + call.text());
            }
        }
    }

    /** The first is on line 2. What is missing in the last is found behind it. */
    private Call callAt(long lLine) {
        return calls.get((int) Math.min(lLine - 2, calls.size() - 1));
    }
}
