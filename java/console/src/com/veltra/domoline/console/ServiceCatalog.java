package com.veltra.domoline.console;

import java.io.File;
import java.io.IOException;
import java.lang.reflect.Method;
import java.lang.reflect.Modifier;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.Collection;
import java.util.Comparator;
import java.util.List;
import java.util.SortedMap;
import java.util.TreeMap;
import java.util.TreeSet;
import java.util.function.Function;
import java.util.jar.JarFile;
import java.util.stream.Collectors;
import java.util.stream.Stream;

/**
 * The service classes on the class path: the classes with public native methods in the package of
 * the device services or below it.
 */
public final class ServiceCatalog {
    private static final String kRoot = "com/veltra/domoline/deviceservice/";
    private static final String kClassSuffix = ".class";

    private final SortedMap<String, Class<?>> classes = new TreeMap<>();
    private final List<Method> methods = new ArrayList<>();

    private ServiceCatalog() {}

    /**
     * Looks through a class path. No class is initialized by that, so no native library is loaded.
     *
     * @param classPath jars and folders, separated as the platform does; those that can't be read
     *     are passed over, as the virtual machine does
     * @return the catalog, possibly empty
     */
    public static ServiceCatalog scan(String classPath) {
        Collection<String> names = new TreeSet<>();
        for (String entry : classPath.split(File.pathSeparator)) {
            Path path = Path.of(entry);
            try {
                if (Files.isDirectory(path.resolve(kRoot))) {
                    addFromFolder(path, names);
                } else if (Files.isRegularFile(path)) {
                    addFromJar(path, names);
                }
            } catch (IOException e) {
                continue;
            }
        }
        ServiceCatalog catalog = new ServiceCatalog();
        names.forEach(catalog::addIfService);
        catalog.methods.sort(
                Comparator.comparing((Method method) -> method.getDeclaringClass().getName())
                        .thenComparing(Method::getName)
                        .thenComparing(Method::getParameterCount));
        return catalog;
    }

    private static void addFromFolder(Path folder, Collection<String> names) throws IOException {
        try (Stream<Path> files = Files.walk(folder.resolve(kRoot))) {
            files.forEach(file -> addIfClass(folder.relativize(file).toString(), names));
        }
    }

    private static void addFromJar(Path jar, Collection<String> names) throws IOException {
        try (JarFile file = new JarFile(jar.toFile())) {
            file.stream().forEach(entry -> addIfClass(entry.getName(), names));
        }
    }

    private static void addIfClass(String entry, Collection<String> names) {
        if (entry.startsWith(kRoot) && entry.endsWith(kClassSuffix)) {
            String name = entry.substring(0, entry.length() - kClassSuffix.length());
            names.add(name.replace('/', '.'));
        }
    }

    private void addIfService(String name) {
        Class<?> type;
        try {
            type = Class.forName(name, false, ServiceCatalog.class.getClassLoader());
        } catch (ClassNotFoundException | LinkageError e) {
            return;
        }
        List<Method> natives = Arrays.stream(type.getDeclaredMethods())
                                       .filter(method -> Modifier.isNative(method.getModifiers()))
                                       .filter(method -> Modifier.isPublic(method.getModifiers()))
                                       .collect(Collectors.toList());
        if (!natives.isEmpty()) {
            // Two services of one simple name (in different packages) keep their full names apart.
            classes.put(
                    classes.containsKey(type.getSimpleName()) ? name : type.getSimpleName(), type);
            methods.addAll(natives);
        }
    }

    /**
     * Names the services.
     *
     * @return the classes' simple names in order
     */
    public Collection<String> classNames() {
        return classes.keySet();
    }

    /**
     * Lists every native method.
     *
     * @return the methods, ordered by class and name
     */
    public List<Method> methods() {
        return methods;
    }

    /**
     * Lists the native methods of one class.
     *
     * @param type a service class
     * @return its methods in order
     */
    public List<Method> methodsOf(Class<?> type) {
        return methods.stream()
                .filter(method -> method.getDeclaringClass() == type)
                .collect(Collectors.toList());
    }

    /**
     * Finds a service class.
     *
     * @param name its simple or full name
     * @return the class
     * @throws UsageException if there is none of that name
     */
    public Class<?> findClass(String name) throws UsageException {
        for (Class<?> type : classes.values()) {
            if (type.getName().equals(name)) {
                return type;
            }
        }
        Class<?> type = classes.get(name);
        if (type == null) {
            throw new UsageException("there is no service class '" + name + "'"
                    + Suggestions.phrase(name, classNames()));
        }
        return type;
    }

    /**
     * Finds the methods that a call can mean.
     *
     * @param name {@code method}, {@code Class.method} or {@code package.Class.method}
     * @return the methods of that name, at least one; several when it is overloaded
     * @throws UsageException if there is none, or if classes share the name and none is given
     */
    public List<Method> findMethods(String name) throws UsageException {
        int dot = name.lastIndexOf('.');
        String simple = name.substring(dot + 1);
        List<Method> candidates = dot < 0 ? methods : methodsOf(findClass(name.substring(0, dot)));
        List<Method> found = candidates.stream()
                                     .filter(method -> method.getName().equals(simple))
                                     .collect(Collectors.toList());
        if (found.isEmpty()) {
            String where = dot < 0 ? "" : " in " + name.substring(0, dot);
            throw new UsageException("there is no method '" + simple + "'" + where
                    + Suggestions.phrase(simple, names(candidates, Method::getName)));
        }
        if (found.stream().map(Method::getDeclaringClass).distinct().count() > 1) {
            throw new UsageException("several classes have a method '" + simple
                    + "': " + String.join(" or ", names(found, ServiceCatalog::qualifiedName)));
        }
        return found;
    }

    private static Collection<String> names(List<Method> methods, Function<Method, String> naming) {
        return methods.stream().map(naming).collect(Collectors.toCollection(TreeSet::new));
    }

    /**
     * Names a method with its class.
     *
     * @param method a service method
     * @return {@code Class.method}
     */
    public static String qualifiedName(Method method) {
        return method.getDeclaringClass().getSimpleName() + "." + method.getName();
    }

    /**
     * Writes a method as Java would declare it.
     *
     * @param method a service method
     * @return for example {@code int getCPUOccupancyRate(int iSample)}; without the names when the
     *     class was compiled without them
     */
    public static String signature(Method method) {
        return Arrays.stream(method.getParameters())
                .map(parameter
                        -> parameter.getType().getSimpleName()
                                + (parameter.isNamePresent() ? " " + parameter.getName() : ""))
                .collect(Collectors.joining(", ",
                        method.getReturnType().getSimpleName() + " " + method.getName() + "(",
                        ")"));
    }

    /**
     * Tells whether a method only asks: then calling it changes nothing on the gateway.
     *
     * @param method a service method
     * @return true when its name is {@code get…}, {@code query…} or {@code is…}, but for those that
     *     subscribe to events, whatever their names say
     */
    public static boolean isQuery(Method method) {
        return method.getName().matches("(get|query|is)(\\P{Lower}.*)?")
                && !method.getName().matches("get(Un)?Subscribe.*");
    }

    /**
     * Tells whether a method takes a password.
     *
     * @param method a service method
     * @return true when one of its parameters is named so
     */
    static boolean takesPassword(Method method) {
        return Arrays.stream(method.getParameters())
                .anyMatch(parameter -> parameter.getName().endsWith("Password"));
    }
}
