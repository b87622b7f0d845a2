package com.veltra.domoline.osgi;

import java.io.IOException;
import java.io.InputStream;
import java.nio.file.FileSystemException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayDeque;
import java.util.Deque;
import java.util.HashMap;
import java.util.Map;
import java.util.ServiceLoader;
import java.util.concurrent.TimeUnit;
import java.util.stream.Collectors;
import java.util.stream.IntStream;
import java.util.stream.Stream;
import org.osgi.framework.Bundle;
import org.osgi.framework.BundleException;
import org.osgi.framework.Constants;
import org.osgi.framework.FrameworkEvent;
import org.osgi.framework.launch.Framework;
import org.osgi.framework.launch.FrameworkFactory;

/** An OSGi framework in this virtual machine, and the bundles in it. */
public final class BundleHost implements AutoCloseable {
    /** Longer than a bundle takes to stop that waits for an answer of the gateway. */
    private static final long lPatience = TimeUnit.SECONDS.toMillis(120);

    private final Framework framework;
    private final Deque<Bundle> installed = new ArrayDeque<>();

    /**
     * Starts a framework without bundles.
     *
     * @param storage a folder for the framework's own files; what is in it is deleted
     * @param properties what bundles can ask the framework for, beside the system's properties
     * @throws BundleException if the framework can't be started
     */
    public BundleHost(Path storage, Map<String, String> properties) throws BundleException {
        Map<String, String> configuration = new HashMap<>(properties);
        configuration.put(Constants.FRAMEWORK_STORAGE, storage.toString());
        configuration.put(
                Constants.FRAMEWORK_STORAGE_CLEAN, Constants.FRAMEWORK_STORAGE_CLEAN_ONFIRSTINIT);
        // It reaches into classes of Java's that Java has closed since.
        configuration.put("felix.service.urlhandlers", "false");
        // It knows Java up to version 8, and of a later one neither its name nor its packages.
        configuration.put(Constants.FRAMEWORK_SYSTEMCAPABILITIES, javaVersions());
        configuration.put(Constants.FRAMEWORK_SYSTEMPACKAGES_EXTRA, javaPackages());
        FrameworkFactory factory =
                ServiceLoader.load(FrameworkFactory.class)
                        .findFirst()
                        .orElseThrow(() -> new BundleException("no framework on the class path"));
        framework = factory.newFramework(configuration);
        framework.start();
    }

    private static String javaVersions() {
        String versions = Stream.concat(IntStream.rangeClosed(0, 8).mapToObj(i -> "1." + i),
                                        IntStream.rangeClosed(9, Runtime.version().feature())
                                                .mapToObj(String::valueOf))
                                  .collect(Collectors.joining(","));
        return "osgi.ee; osgi.ee=\"JavaSE\"; version:List<Version>=\"" + versions + '"';
    }

    /** Packages that any program may use; those named java.* each bundle has anyway. */
    private static String javaPackages() {
        return ModuleLayer.boot()
                .modules()
                .stream()
                .flatMap(module -> module.getDescriptor().exports().stream())
                .filter(exports -> !exports.isQualified())
                .map(exports -> exports.source())
                .filter(name -> !name.startsWith("java."))
                .sorted()
                .collect(Collectors.joining(","));
    }

    /**
     * Installs a bundle, without starting it.
     *
     * @param jar the bundle
     * @return the bundle in this framework
     * @throws BundleException if the file is no bundle, or is installed already; the message names
     *     the file
     * @throws IOException if the file can't be read
     */
    public synchronized Bundle install(Path jar) throws BundleException, IOException {
        if (!Files.isReadable(jar)) {
            throw new FileSystemException(jar.toString(), null, "can't be read");
        }
        Bundle bundle;
        try (InputStream content = Files.newInputStream(jar)) {
            bundle = framework.getBundleContext().installBundle(jar.toUri().toString(), content);
        } catch (BundleException e) {
            throw new BundleException(jar + ": " + e.getMessage(), e.getCause());
        }
        if (bundle.getSymbolicName() == null) {
            bundle.uninstall();
            throw new BundleException(jar + " is no bundle: its manifest has no "
                    + Constants.BUNDLE_SYMBOLICNAME + ". The tool bnd makes one of it");
        }
        installed.push(bundle);
        return bundle;
    }

    /**
     * Tells what bundles get for a property.
     *
     * @param name its name
     * @return its value, or {@code null}
     */
    public String property(String name) {
        return framework.getBundleContext().getProperty(name);
    }

    /**
     * Names the framework.
     *
     * @return its name and version
     */
    public String name() {
        return nameOf(framework);
    }

    /**
     * Names a bundle.
     *
     * @param bundle the bundle
     * @return its name and version
     */
    public static String nameOf(Bundle bundle) {
        return bundle.getSymbolicName() + " " + bundle.getVersion();
    }

    /**
     * Stops the bundles, the last one first, and the framework. Any thread may do it, and do it
     * again.
     *
     * @throws BundleException if one of them doesn't stop as it should, or the thread is
     *         interrupted
     */
    @Override
    public synchronized void close() throws BundleException {
        BundleException failure = null;
        while (!installed.isEmpty()) {
            try {
                installed.pop().stop();
            } catch (BundleException e) {
                failure = e; // the framework would keep it to itself
            }
        }
        framework.stop();
        try {
            if (framework.waitForStop(lPatience).getType() == FrameworkEvent.WAIT_TIMEDOUT) {
                throw new BundleException("the framework doesn't stop");
            }
        } catch (InterruptedException e) {
            Thread.currentThread().interrupt();
            throw new BundleException("interrupted while the framework stops", e);
        }
        if (failure != null) {
            throw failure;
        }
    }
}
