package com.veltra.domoline.systemtest;

import java.io.IOException;
import java.lang.reflect.InvocationTargetException;
import java.lang.reflect.Method;
import java.lang.reflect.Modifier;
import java.util.Map;
import java.util.Set;
import java.util.TreeMap;
import java.util.TreeSet;
import java.util.concurrent.ConcurrentHashMap;
import java.util.concurrent.atomic.LongAdder;
import java.util.jar.JarFile;
import java.util.stream.Collectors;

/** The native methods of the services' classes, by reflection: nobody has to list them. */
final class Natives {
    /** How many there are. */
    static final int kMethods = 126;

    private static final Map<Class<?>, Map<String, Method>> known = new ConcurrentHashMap<>();
    private static final Set<String> called = ConcurrentHashMap.newKeySet();
    private static final LongAdder calls = new LongAdder();

    private Natives() {}

    /** Those of all classes of the services' jar. */
    static Set<Method> all() {
        try (JarFile jar = new JarFile(Gateway.property("wap.api.jar"))) {
            return jar.stream()
                    .map(entry -> entry.getName())
                    .filter(name -> name.endsWith(".class") && !name.endsWith("package-info.class"))
                    .map(name -> name.substring(0, name.length() - 6).replace('/', '.'))
                    .flatMap(name -> of(classOf(name)).values().stream())
                    .collect(Collectors.toSet());
        } catch (IOException e) {
            throw new AssertionError(e);
        }
    }

    private static Class<?> classOf(String name) {
        try {
            return Class.forName(name, false, Natives.class.getClassLoader());
        } catch (ClassNotFoundException e) {
            throw new AssertionError(e);
        }
    }

    private static Map<String, Method> of(Class<?> type) {
        return known.computeIfAbsent(type, ignored -> {
            Map<String, Method> methods = new TreeMap<>();
            for (Method method : type.getDeclaredMethods()) {
                if (Modifier.isNative(method.getModifiers())
                        && methods.put(method.getName(), method) != null) {
                    throw new AssertionError("two methods of one name: " + method);
                }
            }
            return methods;
        });
    }

    /** Calls a service's native method, and notes that it was called. */
    static Object call(Object service, String name, Object... arguments) {
        Method method = of(service.getClass()).get(name);
        if (method == null) {
            throw new AssertionError(service.getClass() + " has no native method " + name);
        }
        called.add(nameOf(method));
        calls.increment();
        Lateness.begin();
        try {
            return method.invoke(service, arguments);
        } catch (IllegalAccessException e) {
            throw new AssertionError(e);
        } catch (InvocationTargetException e) {
            throw new AssertionError(nameOf(method) + " threw " + e.getCause(), e.getCause());
        } finally {
            Lateness.end();
        }
    }

    /** The same for a method that answers a number. */
    static int number(Object service, String name, Object... arguments) {
        return (int) call(service, name, arguments);
    }

    /** The same for a method that answers a text. */
    static String text(Object service, String name, Object... arguments) {
        return (String) call(service, name, arguments);
    }

    /** Whether {@link #call} was asked to call a service's method before. */
    static boolean wasCalled(Object service, String name) {
        return called.contains(nameOf(service.getClass(), name));
    }

    /** Those that {@link #call} was never asked to call. */
    static Set<String> neverCalled() {
        Set<String> names =
                all().stream().map(Natives::nameOf).collect(Collectors.toCollection(TreeSet::new));
        names.removeAll(called);
        return names;
    }

    /** How many of them {@link #call} was asked to call. */
    static int called() {
        return called.size();
    }

    /** How often {@link #call} was asked to call any. */
    static long calls() {
        return calls.sum();
    }

    private static String nameOf(Method method) {
        return nameOf(method.getDeclaringClass(), method.getName());
    }

    private static String nameOf(Class<?> type, String method) {
        return type.getSimpleName() + "." + method;
    }
}
