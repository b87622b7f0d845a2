package com.veltra.domoline.console;

import static org.junit.jupiter.api.Assertions.assertArrayEquals;
import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertThrows;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.io.ByteArrayInputStream;
import java.io.IOException;
import java.io.OutputStream;
import java.io.PrintWriter;
import java.io.StringWriter;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.List;
import java.util.Map;
import org.jline.reader.LineReader;
import org.jline.terminal.impl.DumbTerminal;
import org.junit.jupiter.api.Test;

/** Finding services and understanding lines; nothing here loads the native library. */
class ConsoleTest {
    private final StringWriter out = new StringWriter();
    private final StringWriter err = new StringWriter();
    private final ServiceCatalog catalog =
            ServiceCatalog.scan(System.getProperty("java.class.path"));
    private final Console console =
            new Console(catalog, Palette.PLAIN, new PrintWriter(out), new PrintWriter(err));

    @Test
    void servicesAreFoundOnTheClassPath() {
        assertEquals(List.of("AccessInfoQueryServiceJNI", "DeviceAccessRightConfigServiceJNI",
                             "DeviceAccessRightQueryServiceJNI", "DeviceConfigServiceJNI",
                             "DeviceInfoQueryServiceJNI", "DeviceRsetServiceJNI",
                             "DeviceSecretInfoQueryServiceJNI", "DnsDiagnosticsServiceJNI",
                             "IPPingDiagnosticsServiceJNI", "JNINativeMethods",
                             "LANHostsInfoQueryServiceJNI", "LANIPConfigServiceJNI",
                             "LANIPInfoQueryServiceJNI", "LanHostSpeedLimitServiceJNI",
                             "LanHostSpeedQueryServiceJNI", "LanNetworkAccessConfigServiceJNI",
                             "LanNetworkNameConfigServiceJNI", "PortMappingConfigServiceJNI",
                             "PortMappingQueryServiceJNI",
                             "StaticLayer3ForwardingConfigServiceJNI",
                             "TraceRouteDiagnosticsServiceJNI", "TrafficDetailProcessServiceJNI",
                             "TrafficForwardServiceJNI", "TrafficMirrorServiceJNI",
                             "TrafficMonitoringConfigServiceJNI", "TrafficQoSServiceJNI",
                             "TransferQueryServiceJNI", "UsbServiceJNI",
                             "VLANBindConfigServiceJNI", "VoIPInfoQueryServiceJNI",
                             "VoIPInfoSubscribeServiceJNI", "WanConfigServiceJNI"),
                List.copyOf(catalog.classNames()));
        assertTrue(ServiceCatalog.scan("/nowhere:/etc/hostname").classNames().isEmpty());
    }

    @Test
    void methodsAreFoundWithAndWithoutTheirClass() throws UsageException {
        String name = "getDeviceMAC";
        String full =
                "com.veltra.domoline.deviceservice.kavo.wap.gulm.jni.DeviceInfoQueryServiceJNI";
        assertEquals(1, catalog.findMethods(name).size());
        assertEquals(catalog.findMethods(name),
                catalog.findMethods("DeviceInfoQueryServiceJNI." + name));
        assertEquals(catalog.findMethods(name), catalog.findMethods(full + "." + name));
        assertThrows(UsageException.class, () -> catalog.findMethods("JNINativeMethods." + name));
    }

    @Test
    void queriesAreToldByTheirNames() throws UsageException {
        assertTrue(ServiceCatalog.isQuery(catalog.findMethods("getAPIVersion").get(0)));
        assertFalse(ServiceCatalog.isQuery(catalog.findMethods("startThread").get(0)));
        assertFalse(ServiceCatalog.isQuery(catalog.findMethods("setMacFilterMode").get(0)));
        assertFalse(ServiceCatalog.isQuery(catalog.findMethods("addPortMapping").get(0)));
        assertTrue(ServiceCatalog.isQuery(catalog.findMethods("getPOTSInfo").get(0)));
        // These change something, for all their names.
        assertFalse(ServiceCatalog.isQuery(catalog.findMethods("getSubscribeVoIPEvent").get(0)));
        assertFalse(ServiceCatalog.isQuery(catalog.findMethods("getUnSubscribeVoIPEvent").get(0)));
    }

    @Test
    void trialsOfQueriesAreAboutAConnectionThatThereIs() throws UsageException {
        assertArrayEquals(new Object[] {269488129},
                Arguments.samples(catalog.findMethods("getWANIfInfo").get(0), () -> 269488129));
        assertArrayEquals(new Object[] {10},
                Arguments.samples(
                        catalog.findMethods("getCPUOccupancyRate").get(0), () -> 269488129));
    }

    @Test
    void listingsPrintToTheOutput() {
        assertEquals(0, console.execute("services"));
        assertTrue(
                out.toString().contains("\nJNINativeMethods                         1 method\n"));
        assertEquals(0, console.execute("methods", "DeviceInfoQueryServiceJNI"));
        assertTrue(out.toString().contains("\nint getCPUOccupancyRate(int iSample)\n"));
        assertEquals(0, console.execute("methods", "PortMappingConfigServiceJNI"));
        assertTrue(
                out.toString().endsWith(
                        "int addPortMapping(int iWanIndex, int iExternalPort, int iInternalPort, "
                        + "String sProtocol, String sInternalClient)\n"
                        + "int deletePortMapping(int iWanIndex, int iInstId)\n"
                        + "int setPortMappingSwitch(int iWanIndex, int iInstId, boolean bEnable)\n"),
                out.toString());
        assertEquals("", err.toString());
    }

    @Test
    void theHistoryKeepsNoPasswords() throws IOException {
        // Not JUnit's own: an emulated virtual machine cannot delete what has a folder in it.
        Path folder = Files.createTempDirectory("wap-console");
        Path file = folder.resolve("history");
        LineReader reader =
                new Shell(console).reader(new DumbTerminal(new ByteArrayInputStream(new byte[0]),
                                                  OutputStream.nullOutputStream()),
                        file);
        reader.getHistory().attach(reader);
        reader.getHistory().add("services");
        reader.getHistory().add("call setWANIf 1 '{\"Password\":\"from-the-isp\"}'");
        reader.getHistory().add("call setUserPassword 1 from-the-isp");
        reader.getHistory().add("call setWANIf 1 '{\"Username\":\"from-the-isp\"}'");
        // Methods that take a password are known by their parameters' names.
        reader.getHistory().add("call addFTPAccount anna from-the-isp");
        reader.getHistory().add("call addsambaaccount anna from-the-isp");
        reader.getHistory().save();
        String kept = Files.readString(file);
        Files.delete(file);
        Files.delete(folder);
        assertTrue(kept.contains("services"), kept);
        assertFalse(kept.contains("from-the-isp"), kept);
    }

    @Test
    void mistakesAreExplained() {
        assertEquals(2, console.execute("call", "getdevicemac"));
        assertEquals(2, console.execute("tuor"));
        assertEquals(2, console.execute("getDeviceMAC"));
        assertEquals(2, console.execute("methods", "DeviceInfo"));
        assertEquals(2, console.execute("call", "zzzzzzzz"));
        assertEquals("there is no method 'getdevicemac'; did you mean getDeviceMAC?\n"
                        + "there is no command 'tuor'; did you mean tour?\n"
                        + "there is no command 'getDeviceMAC'; did you mean call getDeviceMAC?\n"
                        + "there is no service class 'DeviceInfo';"
                        + " did you mean DeviceInfoQueryServiceJNI?\n"
                        + "there is no method 'zzzzzzzz'\n",
                err.toString());
        assertEquals("", out.toString());
    }

    @Test
    void quitEndsTheConsole() {
        assertFalse(console.bQuit);
        assertEquals(0, console.execute("quit"));
        assertTrue(console.bQuit);
    }

    @Test
    void linesAreSplitIntoWords() {
        assertArrayEquals(new String[] {"call", "m", "1"}, Words.split("  call m\t1 "));
        assertArrayEquals(new String[] {"a b", "", "c'd"}, Words.split("'a b' \"\" \"c'd\""));
        assertArrayEquals(new String[] {"x\\,y", "ab"}, Words.split("x\\,y a'b'"));
        assertArrayEquals(new String[] {"open end "}, Words.split("'open end "));
        assertArrayEquals(new String[0], Words.split("   "));
    }

    @Test
    void completionFollowsTheWordsBefore() {
        assertTrue(Shell.completions(console, List.of()).containsAll(List.of("call", "tour")));
        assertEquals(catalog.classNames(),
                new java.util.TreeSet<>(Shell.completions(console, List.of("methods"))));
        assertTrue(Shell.completions(console, List.of("call"))
                           .containsAll(List.of(
                                   "getDeviceInfo", "DeviceInfoQueryServiceJNI.getDeviceInfo")));
        assertTrue(Shell.completions(console, List.of("call", "getDeviceInfo")).isEmpty());
        assertTrue(Shell.completions(console, List.of("call", "nothing")).isEmpty());
        assertTrue(Shell.completions(console, List.of("tour")).isEmpty());
    }

    @Test
    void historyIsKeptInTheUsersStateFolder() {
        assertEquals(Path.of("/state/wap-console/history"),
                Shell.historyFile(Map.of("XDG_STATE_HOME", "/state")));
        Path home = Path.of(System.getProperty("user.home"));
        assertEquals(home.resolve(".local/state/wap-console/history"), Shell.historyFile(Map.of()));
    }
}
