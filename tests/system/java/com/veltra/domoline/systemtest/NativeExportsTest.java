package com.veltra.domoline.systemtest;

import static org.junit.jupiter.api.Assertions.assertEquals;

import java.util.TreeSet;
import java.util.regex.Matcher;
import java.util.regex.Pattern;
import java.util.stream.Collectors;
import org.junit.jupiter.api.Test;

/** Every native method has its entry in the library, and every entry its native method. */
class NativeExportsTest {
    @Test
    void nativeMethodsAndExportedEntriesAreTheSame() {
        TreeSet<String> natives = nativesOfTheJar();
        assertEquals(Natives.kMethods, natives.size(), lines(natives));
        assertEquals(lines(natives), lines(exportedEntries()));
    }

    private static String lines(TreeSet<String> names) {
        return names.stream().collect(Collectors.joining("\n"));
    }

    private static TreeSet<String> nativesOfTheJar() {
        return Natives.all()
                .stream()
                .map(method
                        -> "Java_" + mangled(method.getDeclaringClass().getName()) + "_"
                                + mangled(method.getName()))
                .collect(Collectors.toCollection(TreeSet::new));
    }

    /** Java's rule for names in C: an underscore is _1, and a dot becomes the underscore. */
    private static String mangled(String name) {
        return name.replace("_", "_1").replace('.', '_');
    }

    private static TreeSet<String> exportedEntries() {
        Gateway.Result result = Gateway.run(
                new ProcessBuilder("nm", "-D", "--defined-only", Gateway.property("wap.library")));
        assertEquals(0, result.iExit, result.err);
        Matcher matcher =
                Pattern.compile("^[0-9a-f]+ T (Java_\\w+)$", Pattern.MULTILINE).matcher(result.out);
        TreeSet<String> names = new TreeSet<>();
        while (matcher.find()) {
            names.add(matcher.group(1));
        }
        return names;
    }
}
