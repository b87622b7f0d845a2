import com.sun.source.doctree.DocCommentTree;
import com.sun.source.doctree.DocTree;
import com.sun.source.doctree.EntityTree;
import com.sun.source.doctree.LinkTree;
import com.sun.source.doctree.LiteralTree;
import com.sun.source.doctree.ParamTree;
import com.sun.source.doctree.ReturnTree;
import com.sun.source.doctree.StartElementTree;
import com.sun.source.doctree.TextTree;
import com.sun.source.tree.ClassTree;
import com.sun.source.tree.CompilationUnitTree;
import com.sun.source.tree.MethodTree;
import com.sun.source.util.DocTreeScanner;
import com.sun.source.util.DocTrees;
import com.sun.source.util.JavacTask;
import com.sun.source.util.TreePathScanner;
import java.io.IOException;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.HashMap;
import java.util.HashSet;
import java.util.List;
import java.util.Map;
import java.util.Set;
import java.util.stream.Collectors;
import javax.lang.model.element.Modifier;

/** Reads the comments of the service classes as javadoc does. */
final class Comments {
    /** An example. The call is null when it is not shown, and the answer when it is missing. */
    record Example(String call, String answer) {}

    /**
     * A native method and what its comment says.
     *
     * @param described what each parameter is said to be
     * @param returned what is said of its answer
     * @param linked the classes that the comment links to, its own among them
     */
    record Native(String service, String name, String result, List<String> parameters,
            String description, Map<String, String> described, String returned,
            List<Example> examples, Set<String> linked) {}

    final List<Native> natives = new ArrayList<>();
    /** What the comments in a class name as code. */
    private final Map<String, Set<String>> named = new HashMap<>();

    void read(Path folder) throws IOException {
        JavacTask task = Sources.parser(Sources.in(folder, ".java"));
        DocTrees trees = DocTrees.instance(task);
        for (CompilationUnitTree unit : task.parse()) {
            new TreePathScanner<Void, String>() {
                @Override
                public Void visitClass(ClassTree type, String outer) {
                    String service = type.getSimpleName().toString();
                    noteNames(service, trees.getDocCommentTree(getCurrentPath()));
                    return super.visitClass(type, service);
                }

                @Override
                public Void visitMethod(MethodTree method, String service) {
                    DocCommentTree comment = trees.getDocCommentTree(getCurrentPath());
                    noteNames(service, comment);
                    if (method.getModifiers().getFlags().contains(Modifier.NATIVE)) {
                        natives.add(nativeOf(service, method, comment));
                    }
                    return null;
                }
            }.scan(unit, null);
        }
    }

    /** Whether a comment in one of these classes names a thing as code. */
    boolean isNamed(Set<String> services, String name) {
        return services.stream().anyMatch(
                service -> named.getOrDefault(service, Set.of()).contains(name));
    }

    private void noteNames(String service, DocCommentTree comment) {
        Set<String> names = named.computeIfAbsent(service, key -> new HashSet<>());
        new DocTreeScanner<Void, Void>() {
            @Override
            public Void visitLiteral(LiteralTree literal, Void none) {
                names.add(literal.getBody().getBody().strip());
                return null;
            }
        }.scan(comment, null);
    }

    private static Native nativeOf(String service, MethodTree method, DocCommentTree comment) {
        String description = "";
        Map<String, String> described = new HashMap<>();
        StringBuilder returned = new StringBuilder();
        List<Example> examples = List.of();
        if (comment != null) {
            description = words(comment.getFullBody());
            examples = examples(comment.getFullBody());
            for (DocTree tag : comment.getBlockTags()) {
                if (tag instanceof ParamTree parameter) {
                    described.put(parameter.getName().getName().toString(),
                            words(parameter.getDescription()));
                } else if (tag instanceof ReturnTree result) {
                    returned.append(words(result.getDescription()));
                }
            }
        }
        return new Native(service, method.getName().toString(), method.getReturnType().toString(),
                method.getParameters()
                        .stream()
                        .map(parameter -> parameter.getName().toString())
                        .collect(Collectors.toList()),
                description, described, returned.toString(), examples, links(service, comment));
    }

    private static Set<String> links(String service, DocCommentTree comment) {
        Set<String> linked = new HashSet<>(Set.of(service));
        new DocTreeScanner<Void, Void>() {
            @Override
            public Void visitLink(LinkTree link, Void none) {
                String type = link.getReference().getSignature().replaceFirst("(?s)#.*", "");
                linked.add(type.substring(type.lastIndexOf('.') + 1));
                return null;
            }
        }.scan(comment, null);
        return linked;
    }

    /** What a comment says, in one line. */
    private static String words(List<? extends DocTree> trees) {
        StringBuilder words = new StringBuilder();
        new DocTreeScanner<Void, Void>() {
            @Override
            public Void visitText(TextTree text, Void none) {
                words.append(text.getBody());
                return null;
            }

            @Override
            public Void visitLiteral(LiteralTree literal, Void none) {
                words.append(literal.getBody().getBody());
                return null;
            }

            @Override
            public Void visitEntity(EntityTree entity, Void none) {
                words.append(entity);
                return null;
            }
        }.scan(trees, null);
        return words.toString().replaceAll("\\s+", " ").strip();
    }

    private static List<Example> examples(List<? extends DocTree> body) {
        List<Example> examples = new ArrayList<>();
        for (int iAt = 1; iAt < body.size(); iAt++) {
            String start = words(List.of(body.get(iAt)));
            if (isParagraph(body.get(iAt - 1)) && start.startsWith("Example")) {
                examples.add(example(start, body.subList(iAt, body.size())));
            }
        }
        return examples;
    }

    private static Example example(String start, List<? extends DocTree> rest) {
        List<String> codes = new ArrayList<>();
        StringBuilder between = new StringBuilder();
        for (DocTree tree : rest) {
            if (isParagraph(tree)) {
                break;
            } else if (tree instanceof LiteralTree literal) {
                codes.add(literal.getBody().getBody().strip());
            } else if (codes.size() == 1) {
                between.append(words(List.of(tree))).append(' ');
            }
        }
        if (start.startsWith("Example answer")) {
            return new Example(null, codes.isEmpty() ? null : codes.get(0));
        }
        boolean bAnswers = codes.size() > 1 && between.toString().matches(".*\\banswers\\b.*");
        return new Example(codes.isEmpty() ? "" : codes.get(0), bAnswers ? codes.get(1) : null);
    }

    private static boolean isParagraph(DocTree tree) {
        return tree instanceof StartElementTree element && element.getName().contentEquals("p");
    }
}
