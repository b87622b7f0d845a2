import com.sun.source.util.JavacTask;
import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.List;
import java.util.stream.Collectors;
import java.util.stream.Stream;
import javax.tools.JavaCompiler;
import javax.tools.StandardJavaFileManager;
import javax.tools.ToolProvider;

/** Files of the project. */
final class Sources {
    private Sources() {}

    /** The files in a folder and those in it whose names have one of these ends, in order. */
    static List<Path> in(Path folder, String... ends) throws IOException {
        List<Path> found;
        try (Stream<Path> files = Files.walk(folder)) {
            found = files.filter(file -> Stream.of(ends).anyMatch(file.toString()::endsWith))
                            .sorted()
                            .collect(Collectors.toList());
        }
        if (found.isEmpty()) {
            throw new IOException("no file " + String.join(" or ", ends) + " is in " + folder);
        }
        return found;
    }

    /** The compiler, for no more than reading these Java sources. */
    static JavacTask parser(List<Path> files) {
        JavaCompiler compiler = ToolProvider.getSystemJavaCompiler();
        StandardJavaFileManager manager = compiler.getStandardFileManager(null, null, null);
        return (JavacTask) compiler.getTask(
                null, manager, null, null, null, manager.getJavaFileObjectsFromPaths(files));
    }
}
