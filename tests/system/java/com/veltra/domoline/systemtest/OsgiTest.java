package com.veltra.domoline.systemtest;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertNotEquals;
import static org.junit.jupiter.api.Assertions.assertNotSame;
import static org.junit.jupiter.api.Assertions.assertNull;
import static org.junit.jupiter.api.Assertions.assertSame;
import static org.junit.jupiter.api.Assertions.assertThrows;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.veltra.domoline.osgi.BundleHost;
import java.io.ByteArrayInputStream;
import java.io.ByteArrayOutputStream;
import java.io.IOException;
import java.io.InputStream;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.List;
import java.util.Map;
import java.util.TreeMap;
import java.util.jar.JarEntry;
import java.util.jar.JarInputStream;
import java.util.jar.JarOutputStream;
import java.util.jar.Manifest;
import java.util.stream.Collectors;
import org.junit.jupiter.api.AfterAll;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.BeforeAll;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;
import org.osgi.framework.Bundle;
import org.osgi.framework.BundleException;
import org.osgi.framework.Constants;
import org.osgi.framework.FrameworkUtil;
import org.osgi.framework.wiring.BundleWiring;

/**
 * The service classes and the sample as bundles of an OSGi framework. In this virtual machine the
 * bundle of the service classes is the one to load the library, so no test here may use the service
 * classes of the class path.
 */
class OsgiTest {
    private static final String kApi = "com.veltra.domoline.deviceservice.kavo.wap";
    private static final String kHosts = kApi + ".gulm.jni.LANHostsInfoQueryServiceJNI";
    private static final String kActivator = "com.veltra.domoline.sample.Activator";
    private static final String kGuest = "02:00:00:00:00:AA";
    private static final int kDeleteWired = 0x47209093;

    private static Listener said;
    private static BundleHost host;
    private static Bundle api;
    private static Bundle sample;

    @BeforeAll
    static void installBundles(@TempDir Path folder) throws BundleException, IOException {
        said = new Listener();
        host = new BundleHost(
                folder.resolve("osgi"), Map.of("sample.unwanted", kGuest.toLowerCase()));
        host.install(jar("wap.gson.jar"));
        api = host.install(jar("wap.api.jar"));
        sample = host.install(jar("wap.sample.jar"));
    }

    @AfterAll
    static void close() throws BundleException {
        host.close();
        said.close();
    }

    @BeforeEach
    void startSample() throws BundleException, InterruptedException {
        said.forget();
        sample.start();
        said.await("[sample] new host " + Lan.kPrinter);
    }

    /** What a test has made of the home is taken back; what the sample has, is the sample's to. */
    @AfterEach
    void stopSample() throws BundleException {
        Gateway.clear();
        sample.stop();
        if (Gateway.ctl("host", "list").contains(kGuest)) {
            Gateway.ctl("host", "remove", kGuest);
        }
        List<String> left = Home.now().wired();
        left.addAll(Home.now().wireless());
        if (!left.isEmpty()) {
            Gateway.startOver(); // so that the next test fails for reasons of its own
        }
        assertEquals(List.of(), left);
    }

    private static Path jar(String property) {
        return Path.of(Gateway.property(property));
    }

    private static void addGuest(String name) {
        Gateway.ctl("host", "add", kGuest, "--name", name, "--interface", "SSID2");
    }

    /** The time of a look or two. */
    private static void letItLook() {
        try {
            Thread.sleep(2500);
        } catch (InterruptedException e) {
            throw new AssertionError(e);
        }
    }

    /** The sample with other headers, as another version or another bundle would be. */
    private static InputStream sampleWith(String... headers) throws IOException {
        ByteArrayOutputStream bytes = new ByteArrayOutputStream();
        try (JarInputStream in = new JarInputStream(Files.newInputStream(jar("wap.sample.jar")))) {
            Manifest manifest = in.getManifest();
            for (int i = 0; i < headers.length; i += 2) {
                manifest.getMainAttributes().putValue(headers[i], headers[i + 1]);
            }
            try (JarOutputStream out = new JarOutputStream(bytes, manifest)) {
                for (JarEntry entry = in.getNextJarEntry(); entry != null;
                        entry = in.getNextJarEntry()) {
                    out.putNextEntry(new JarEntry(entry.getName()));
                    in.transferTo(out);
                }
            }
        }
        return new ByteArrayInputStream(bytes.toByteArray());
    }

    private static long sampleThreads() {
        return Thread.getAllStackTraces()
                .keySet()
                .stream()
                .filter(thread -> thread.getName().equals("sample-host-watch"))
                .count();
    }

    /** Where the library begins in this process: a line for each time that it is there. */
    private static List<String> libraryAddresses() throws IOException {
        try (var lines = Files.lines(Path.of("/proc/self/maps"))) {
            return lines.filter(line -> line.endsWith("/libvt_wap_jni.so"))
                    .map(line -> line.split(" +"))
                    .filter(columns -> columns[2].matches("0+"))
                    .map(columns -> columns[0])
                    .collect(Collectors.toList());
        }
    }

    // ---- what a bundle imports ----

    @Test
    void theServiceClassesAreExportedWithTheirVersion() {
        Map<String, String> exported = new TreeMap<>();
        api.adapt(BundleWiring.class).getCapabilities("osgi.wiring.package").forEach(capability -> {
            Map<String, Object> attributes = capability.getAttributes();
            exported.put((String) attributes.get("osgi.wiring.package"),
                    String.valueOf(attributes.get(Constants.VERSION_ATTRIBUTE)));
        });
        String version = api.getVersion().toString();
        assertEquals(Gateway.property("wap.version"), version);
        assertEquals(kApi, api.getSymbolicName());
        assertEquals(Map.of(kApi, version, kApi + ".gulm.jni", version, kApi + ".ozi.jni", version,
                             kApi + ".tarn.jni", version, kApi + ".voip.jni", version),
                exported);
        // Not its own packages either: those are never another bundle's.
        assertNull(api.getHeaders().get(Constants.IMPORT_PACKAGE));
    }

    @Test
    void aBundleThatNeedsAnotherVersionDoesNotStart() throws BundleException, IOException {
        String imports = sample.getHeaders().get(Constants.IMPORT_PACKAGE);
        String later = imports.replaceAll("(kavo[^,]*;version=\")[^\"]*", "$1[2.0,3)");
        assertNotEquals(imports, later);
        Bundle other = sample.getBundleContext().installBundle("other:",
                sampleWith(
                        Constants.BUNDLE_SYMBOLICNAME, "other", Constants.IMPORT_PACKAGE, later));
        try {
            BundleException refusal = assertThrows(BundleException.class, other::start);
            assertTrue(refusal.getMessage().contains(kApi), refusal.getMessage());
        } finally {
            other.uninstall();
        }
    }

    // ---- the sample ----

    @Test
    void theUnwantedHostIsBlackListedUntilTheSampleStops()
            throws BundleException, InterruptedException {
        assertEquals("[sample] this is a SimHome SH-GW100", said.await("[sample] this"));
        assertEquals(List.of("[sample] new host 02:A1:B2:00:20:01 desk-pc (LAN1)",
                             "[sample] new host 02:A1:B2:00:20:02 living-room-tv (LAN2)",
                             "[sample] new host 02:A1:B2:00:20:03 phone-anna (SSID1)",
                             "[sample] new host 02:A1:B2:00:20:04 tablet-tom (SSID5)",
                             "[sample] new host 02:A1:B2:00:20:05 printer (LAN3)"),
                said.lines("[sample] new host"));
        assertEquals(List.of(), Home.now().wired());
        addGuest("G\u00E4ste-\u001B[31m");
        String guest = kGuest + " G\u00E4ste-?[31m (SSID2)";
        assertEquals("[sample] new host " + guest, said.await("[sample] new host " + kGuest));
        assertEquals("[sample] black-listed " + guest + ", for when the MAC filter is on",
                said.await("[sample] black-listed"));
        assertEquals(List.of(kGuest), Home.now().wired());
        assertEquals(List.of("SSID-1 " + kGuest, "SSID-5 " + kGuest), Home.now().wireless());
        letItLook();
        assertEquals(1, said.lines("[sample] black-listed").size());
        assertEquals(6, said.lines("[sample] new host").size());
        assertEquals(1, sampleThreads());

        sample.stop();
        assertEquals(List.of("[sample] took off the black list: " + guest),
                said.lines("[sample] took off"));
        assertEquals(List.of(), Home.now().wired());
        assertEquals(List.of(), Home.now().wireless());
        assertEquals(0, sampleThreads());
        Gateway.assertAsksNobody(OsgiTest::letItLook);

        said.forget();
        sample.start();
        assertEquals("[sample] new host " + guest, said.await("[sample] new host " + kGuest));
        said.await("[sample] black-listed " + guest);
    }

    @Test
    void whoReturnsIsNewAgain() throws InterruptedException {
        addGuest("guest");
        said.await("[sample] black-listed");
        Gateway.ctl("host", "remove", kGuest);
        letItLook();
        said.forget();
        addGuest("guest");
        said.await("[sample] new host " + kGuest);
        assertEquals(List.of(kGuest), Home.now().wired());
    }

    @Test
    void aSilentGatewayIsNoEmptyHome() throws InterruptedException {
        said.forget();
        Gateway.kill(Gateway.kAppM);
        try {
            said.await("[sample] the gateway doesn't tell its hosts");
            letItLook();
        } finally {
            Gateway.start(Gateway.kAppM);
        }
        said.await("[sample] the gateway tells its hosts again");
        letItLook();
        assertEquals(1, said.lines("[sample] the gateway doesn't").size());
        assertEquals(List.of(), said.lines("[sample] new host"));
    }

    @Test
    void aDescriptionThatIsNoJsonIsNone() throws BundleException, InterruptedException {
        sample.stop();
        Gateway.set("device.vendor", "A \"quoted\" maker");
        try {
            sample.start();
            said.await("[sample] this gateway doesn't say what it is");
        } finally {
            Gateway.set("device.vendor", "SimHome");
        }
    }

    @Test
    void aTrustListIsLeftAlone() throws InterruptedException {
        Gateway.set("macFilter.mode", "1");
        Gateway.set("macFilter.status", "1");
        try {
            addGuest("guest");
            said.await("[sample] can't black-list " + kGuest);
            letItLook();
            assertEquals(1, said.lines("[sample] can't black-list").size());
            assertEquals(List.of(), Home.now().wired());
            // It goes on trying, and succeeds as soon as it may.
            Gateway.set("macFilter.mode", "0");
            assertEquals("[sample] black-listed " + kGuest + " guest (SSID2)",
                    said.await("[sample] black-listed"));
        } finally {
            Gateway.set("macFilter.mode", "0");
            Gateway.set("macFilter.status", "0");
        }
    }

    @Test
    void whatStaysOnTheListIsSaid() throws BundleException, InterruptedException {
        addGuest("guest");
        said.await("[sample] black-listed");
        Gateway.fault(Gateway.kOsgiProxy, kDeleteWired, "--code", "5", "--times", "1");
        sample.stop();
        assertEquals(List.of("[sample] stays on the black list: " + kGuest + " guest (SSID2)"),
                said.lines("[sample] stays"));
        assertEquals(List.of(kGuest), Home.now().wired());

        said.forget();
        sample.start();
        said.await("[sample] black-listed");
        // Where hosts are trusted, the entry means something else now.
        Gateway.set("macFilter.mode", "1");
        Gateway.set("macFilter.status", "1");
        try {
            sample.stop();
            assertEquals(1, said.lines("[sample] stays").size());
            // Listed twice counts as listed, and one call takes both off.
            assertEquals(List.of(kGuest, kGuest), Home.now().wired());
        } finally {
            Gateway.set("macFilter.mode", "0");
            Gateway.set("macFilter.status", "0");
        }

        said.forget();
        sample.start();
        said.await("[sample] black-listed");
    }

    // ---- the library ----

    @Test
    void anUpdateBringsNewClassesAndNoSecondLibrary()
            throws BundleException, InterruptedException, IOException, ClassNotFoundException {
        List<String> library = libraryAddresses();
        assertEquals(1, library.size(), library.toString());
        Class<?> service = sample.loadClass(kHosts);
        assertSame(api, FrameworkUtil.getBundle(service));
        for (int i = 1; i <= 3; i++) {
            Class<?> activator = sample.loadClass(kActivator);
            said.forget();
            String version = sample.getVersion().getMajor() + ".7." + i;
            sample.update(sampleWith(Constants.BUNDLE_VERSION, version));
            assertEquals(Bundle.ACTIVE, sample.getState());
            assertEquals(version, sample.getVersion().toString());
            said.await("[sample] new host " + Lan.kPrinter);
            assertNotSame(activator, sample.loadClass(kActivator));
            assertSame(service, sample.loadClass(kHosts));
            assertEquals(library, libraryAddresses());
            assertEquals(1, sampleThreads());
            assertEquals(1, StartThreadTest.messageThreads());
        }
    }

    /** Those of another framework stand for what a refresh of theirs would make. */
    @Test
    void otherServiceClassesDoNotGetTheLibrary(@TempDir Path folder)
            throws BundleException, IOException {
        List<String> library = libraryAddresses();
        try (BundleHost other = new BundleHost(folder, Map.of())) {
            other.install(jar("wap.gson.jar"));
            other.install(jar("wap.api.jar"));
            Bundle user = other.install(jar("wap.sample.jar"));
            for (Class<?> expected :
                    List.of(UnsatisfiedLinkError.class, NoClassDefFoundError.class)) {
                BundleException failure = assertThrows(BundleException.class, user::start);
                assertEquals(expected, failure.getCause().getClass());
            }
        }
        assertEquals(library, libraryAddresses());
    }

    @Test
    void twoBundlesShareTheLibrary() throws BundleException, InterruptedException, IOException {
        Bundle other = sample.getBundleContext().installBundle(
                "other:", sampleWith(Constants.BUNDLE_SYMBOLICNAME, "other"));
        said.forget();
        other.start();
        said.await("[sample] new host " + Lan.kPrinter);
        assertEquals(2, sampleThreads());
        assertEquals(1, libraryAddresses().size());
        assertEquals(1, StartThreadTest.messageThreads());
        other.uninstall();
        assertEquals(1, sampleThreads());
        assertEquals(Bundle.ACTIVE, sample.getState());
    }
}
