package com.veltra.domoline.systemtest;

import static org.junit.jupiter.api.Assertions.assertEquals;

import java.io.IOException;
import java.lang.reflect.Method;
import java.lang.reflect.Modifier;
import java.util.TreeSet;
import java.util.jar.JarFile;
import java.util.regex.Matcher;
import java.util.regex.Pattern;
import java.util.stream.Collectors;
import org.junit.jupiter.api.Test;

/** Every native method has its entry in the library, and every entry its native method. */
class NativeExportsTest {
    private static final int kMethods = 126;

    @Test
    void nativeMethodsAndExportedEntriesAreTheSame() throws IOException {
        TreeSet<String> natives = nativesOfTheJar();
        assertEquals(kMethods, natives.size(), lines(natives));
        assertEquals(lines(natives), lines(exportedEntries()));
    }

    private static String lines(TreeSet<String> names) {
        return names.stream().collect(Collectors.joining("\n"));
    }

    private static TreeSet<String> nativesOfTheJar() throws IOException {
        TreeSet<String> names = new TreeSet<>();
        try (JarFile jar = new JarFile(Gateway.property("wap.api.jar"))) {
            jar.stream()
                    .map(entry -> entry.getName())
                    .filter(name -> name.endsWith(".class") && !name.endsWith("package-info.class"))
                    .map(name -> name.substring(0, name.length() - 6).replace('/', '.'))
                    .forEach(name -> addNatives(name, names));
        }
        return names;
    }

    private static void addNatives(String className, TreeSet<String> names) {
        try {
            Class<?> type =
                    Class.forName(className, false, NativeExportsTest.class.getClassLoader());
            for (Method method : type.getDeclaredMethods()) {
                if (Modifier.isNative(method.getModifiers())) {
                    names.add("Java_" + mangled(className) + "_" + mangled(method.getName()));
                }
            }
        } catch (ClassNotFoundException e) {
            throw new AssertionError(e);
        }
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
