import com.sun.source.tree.BinaryTree;
import com.sun.source.tree.ClassTree;
import com.sun.source.tree.CompilationUnitTree;
import com.sun.source.tree.ExpressionTree;
import com.sun.source.tree.IdentifierTree;
import com.sun.source.tree.LiteralTree;
import com.sun.source.tree.MemberSelectTree;
import com.sun.source.tree.MethodInvocationTree;
import com.sun.source.tree.NewClassTree;
import com.sun.source.tree.Tree;
import com.sun.source.tree.UnaryTree;
import com.sun.source.tree.VariableTree;
import com.sun.source.util.TreePathScanner;
import com.sun.source.util.TreeScanner;
import java.io.IOException;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.HashMap;
import java.util.HashSet;
import java.util.List;
import java.util.Map;
import java.util.Set;

/**
 * Reads what the system tests expect of native methods: the texts, and the numbers in assertEquals,
 * that are arguments beside an expression with a call of a native method in it.
 */
final class SystemTests {
    private static final int kDeepest = 20;
    /** Processes, id, call, good answer, failure. */
    private static final int kRow = 5;

    private final Set<String> methods;
    private final Expectations expectations;
    private final Map<String, ExpressionTree> constants = new HashMap<>();

    /** @param methods the names of the native methods */
    SystemTests(Set<String> methods, Expectations expectations) {
        this.methods = methods;
        this.expectations = expectations;
    }

    void read(Path folder) throws IOException {
        List<CompilationUnitTree> units = new ArrayList<>();
        Sources.parser(Sources.in(folder, ".java")).parse().forEach(units::add);
        units.forEach(this::findConstants);
        units.forEach(this::findCalls);
    }

    private void findConstants(CompilationUnitTree unit) {
        new TreePathScanner<Void, Void>() {
            @Override
            public Void visitVariable(VariableTree variable, Void none) {
                if (getCurrentPath().getParentPath().getLeaf() instanceof ClassTree type
                        && variable.getInitializer() != null) {
                    constants.put(type.getSimpleName() + "." + variable.getName(),
                            variable.getInitializer());
                }
                return super.visitVariable(variable, none);
            }
        }.scan(unit, null);
    }

    private void findCalls(CompilationUnitTree unit) {
        new TreeScanner<Void, String>() {
            @Override
            public Void visitClass(ClassTree type, String outer) {
                return super.visitClass(type, type.getSimpleName().toString());
            }

            @Override
            public Void visitNewClass(NewClassTree made, String type) {
                note(made.getArguments(), type, false);
                if (made.getArguments().size() >= kRow) {
                    noteFailure(made.getArguments(), type);
                }
                return super.visitNewClass(made, type);
            }

            @Override
            public Void visitMethodInvocation(MethodInvocationTree call, String type) {
                note(call.getArguments(), type, nameOf(call).equals("assertEquals"));
                if (nameOf(call).equals("assertNull")) {
                    called(call.getArguments()).forEach(method
                            -> expectations.addFailure(method, Expectations.Answer.ofNull()));
                }
                return super.visitMethodInvocation(call, type);
            }
        }.scan(unit, null);
    }

    /** A row about a query ends with its good answer and with its failure. */
    private void noteFailure(List<? extends ExpressionTree> row, String type) {
        Object failure = value(row.get(row.size() - 1), type, 0);
        if (failure instanceof String text) {
            called(row).forEach(
                    method -> expectations.addFailure(method, Expectations.Answer.of(text)));
        }
    }

    /** The native methods that expressions call. */
    private Set<String> called(List<? extends ExpressionTree> expressions) {
        Set<String> called = new HashSet<>();
        new TreeScanner<Void, Void>() {
            @Override
            public Void visitMethodInvocation(MethodInvocationTree call, Void none) {
                if (methods.contains(nameOf(call))) {
                    called.add(nameOf(call));
                }
                return super.visitMethodInvocation(call, none);
            }
        }.scan(expressions, null);
        return called;
    }

    private static String nameOf(MethodInvocationTree call) {
        ExpressionTree method = call.getMethodSelect();
        return method instanceof MemberSelectTree member ? member.getIdentifier().toString()
                                                         : method.toString();
    }

    private void note(List<? extends ExpressionTree> arguments, String type, boolean bNumbers) {
        Set<String> called = called(arguments);
        if (called.isEmpty()) {
            return;
        }
        for (ExpressionTree argument : arguments) {
            Object value = value(argument, type, 0);
            if (value instanceof String text) {
                called.forEach(name -> expectations.add(name, Expectations.Answer.of(text)));
            } else if (bNumbers && value instanceof Integer number) {
                called.forEach(name -> expectations.add(name, Expectations.Answer.of(number)));
            }
        }
    }

    /** A constant's value; null when it is none that can be read off. */
    private Object value(ExpressionTree tree, String type, int iDepth) {
        if (iDepth > kDeepest) {
            return null;
        }
        if (tree instanceof LiteralTree literal) {
            return literal.getValue();
        }
        if (tree instanceof UnaryTree unary && tree.getKind() == Tree.Kind.UNARY_MINUS
                && value(unary.getExpression(), type, iDepth + 1) instanceof Integer number) {
            return -number;
        }
        if (tree instanceof BinaryTree sum && tree.getKind() == Tree.Kind.PLUS) {
            Object left = value(sum.getLeftOperand(), type, iDepth + 1);
            Object right = value(sum.getRightOperand(), type, iDepth + 1);
            boolean bText = left instanceof String || right instanceof String;
            return bText && left != null && right != null ? left.toString() + right : null;
        }
        String name = tree instanceof IdentifierTree ? type + "." + tree : tree.toString();
        ExpressionTree constant = constants.get(name);
        return constant == null
                ? null
                : value(constant, name.substring(0, name.indexOf('.')), iDepth + 1);
    }
}
