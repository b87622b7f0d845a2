package com.veltra.domoline.systemtest;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.attribute.PosixFilePermissions;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.List;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

/** The console as a program of its own, started by its script. */
class ConsoleProgramTest {
    private static Gateway.Result console(Path runtimeDir, String... words) {
        List<String> command = new ArrayList<>();
        command.add(Gateway.property("wap.console"));
        command.addAll(Arrays.asList(words));
        ProcessBuilder builder = new ProcessBuilder(command);
        if (runtimeDir != null) {
            builder.environment().put("VT_RUNTIME_DIR", runtimeDir.toString());
        }
        return Gateway.run(builder);
    }

    @Test
    void callPrintsTheAnswerAloneAndEndsWithZero() {
        Gateway.Result result = console(null, "call", "getDeviceInfo");
        assertEquals("{\n"
                        + "  \"Result\": 0,\n"
                        + "  \"Vendor\": \"SimHome\",\n"
                        + "  \"ProductCLass\": \"SH-GW100\",\n"
                        + "  \"HardwareVer\": \"SHW.1.0\",\n"
                        + "  \"FirmwareVer\": \"SIM.2.4.7\",\n"
                        + "  \"FlashSize\": 262144,\n"
                        + "  \"RamSize\": 524288,\n"
                        + "  \"MainChipClass\": \"SIMCHIP-A\",\n"
                        + "  \"NFC\": \"1\"\n"
                        + "}\n",
                result.out);
        assertEquals(0, result.iExit, result.err);
    }

    @Test
    void classNameMayStandBeforeTheMethod() {
        Gateway.Result result =
                console(null, "call", "DeviceSecretInfoQueryServiceJNI.getDeviceSerialNumber");
        assertEquals("SIM0000000001001\n", result.out);
        assertEquals(0, result.iExit, result.err);
    }

    @Test
    void tourCallsEveryQuery() {
        Gateway.Result result = console(null);
        assertEquals(0, result.iExit, result.err);
        assertTrue(result.out.endsWith("\n55 methods, 0 failed, 3 left out\n"), result.out);
        for (String answer : List.of("SH-GW100", "02:A1:B2:00:10:01", "sim-web-pass", "02A1B2",
                     "\"DevName\": \"living-room-tv\"", "\"RxBytes\": 2147483648",
                     "getMacFilterMode\n0\n", "\"WANName\": \"1_INTERNET_R_VID_100\"",
                     "\"DestIPPrefix\": \"2001:db8:100::/48\"",
                     "getIPTVStatus\nIPTV_BUSSINESS_OK\n",
                     "\"RegisterStatus\": \"REG_AUTH\"", "\"LanInterface\": \"SSID5\"",
                     "\"NATEnabled\": \"TRUE\"",
                     "\"Name\": \"Felix OSGi\"", "\"User\": \"anna\"",
                     "\"PasswordChanges\": 0", "/storage/usb1\"", "\"Number\": \"5550102\"",
                     "left out: needs arguments, String getLANHostSpeed(String sMac)")) {
            assertTrue(result.out.contains(answer), answer + " is missing in " + result.out);
        }
    }

    @Test
    void failedCallEndsWithOneAndSaysWhatToDo(@TempDir Path empty) throws IOException {
        Files.setPosixFilePermissions(empty, PosixFilePermissions.fromString("rwx------"));
        Gateway.Result result = console(empty, "call", "getDeviceMAC");
        assertEquals(1, result.iExit);
        assertEquals("{\n  \"Result\": -1\n}\n", result.out);
        assertTrue(result.err.contains("gatewayctl status"), result.err);
        Gateway.Result tour = console(empty, "tour");
        assertEquals(1, tour.iExit);
        // The gateway's name and the list of connections are empty then, which is no failure. The
        // other five ask nobody: the version, load, memory, and what Java and OSGi there is.
        assertTrue(tour.out.endsWith("\n55 methods, 48 failed, 3 left out\n"), tour.out);
    }

    @Test
    void usageErrorsEndWithTwoAndCallNothing() {
        Gateway.Result unknown = console(null, "call", "getDeviceInf");
        assertEquals(2, unknown.iExit);
        assertEquals("", unknown.out);
        assertTrue(unknown.err.contains("did you mean getDeviceInfo?"), unknown.err);
        assertEquals(2, console(null, "call", "getCPUOccupancyRate").iExit);
        assertEquals(2, console(null, "call", "getCPUOccupancyRate", "much").iExit);
        assertEquals(2, console(null, "--bogus").iExit);
    }

    @Test
    void negativeArgumentIsNoOption() {
        Gateway.Result result = console(null, "call", "getRAMOccupancyRate", "-1");
        assertEquals(0, result.iExit, result.err);
        assertTrue(result.out.matches("\\d{1,3}\n"), result.out);
    }

    @Test
    void changesTakeListsTextsAndBooleans() {
        assertEquals("0\n",
                console(null, "call", "addLANHostToBlackList", Lan.kTablet + "," + Lan.kPhone).out);
        assertEquals(List.of(Lan.kTablet, Lan.kPhone), Home.now().wired());
        assertEquals("0\n", console(null, "call", "deleteLANHostFromBlackList", "").out);
        assertEquals(List.of(), Home.now().wired());
        assertEquals("{\n  \"Result\": 0,\n  \"List\": [\n    {\n      \"UpSpeed\": 0,\n"
                        + "      \"DownSpeed\": 0\n    }\n  ]\n}\n",
                console(null, "call", "getLANHostSpeedLimitInfo", Lan.kTablet).out);
        String wan = "0x10101001";
        assertEquals("0\n", console(null, "call", "setPortMappingSwitch", wan, "1", "false").out);
        assertEquals("false", Home.now().list("portMapping", "enabled").get(0));
        assertEquals("0\n", console(null, "call", "setPortMappingSwitch", wan, "1", "true").out);
        assertEquals("true", Home.now().list("portMapping", "enabled").get(0));
        assertEquals("0\n", console(null, "call", "setWANIf", wan, "{\"VLANIDMark\":\"101\"}").out);
        assertEquals("1_INTERNET_R_VID_101", Home.now().list("wan", "name").get(0));
        assertEquals("0\n", console(null, "call", "setWANIf", wan, "{\"VLANIDMark\":\"100\"}").out);
        Gateway.Result refused =
                console(null, "call", "addPortMapping", wan, "8443", "1", "TCP", "192.168.1.11");
        assertEquals("-2\n", refused.out);
        assertEquals(1, refused.iExit);
        assertTrue(refused.err.contains("The call failed."), refused.err);
    }

    @Test
    void everyVerbExplainsItself() {
        for (String verb : List.of("services", "methods", "call", "tour", "quit", "help")) {
            Gateway.Result result = console(null, verb, "--help");
            assertEquals(0, result.iExit, verb);
            assertTrue(result.out.contains("Usage: wap-console " + verb), result.out);
        }
        assertFalse(console(null, "--help").out.isEmpty());
    }

    private static final String kHowToStart =
            " It must name the runtime directory of a gateway that runs.\n"
            + "In a clone, './run --keep tour' starts one and says what to set.\n"
            + "With an installed SDK: export VT_RUNTIME_DIR=DIR; gatewayctl start\n";

    @Test
    void withoutARuntimeDirectoryItSaysHowToGetOne(@TempDir Path folder) {
        ProcessBuilder builder =
                new ProcessBuilder(Gateway.property("wap.console"), "call", "getDeviceMAC");
        builder.environment().remove("VT_RUNTIME_DIR");
        Gateway.Result unset = Gateway.run(builder);
        assertEquals("VT_RUNTIME_DIR is not set." + kHowToStart, unset.err);
        assertEquals("", unset.out);
        assertEquals(1, unset.iExit);
        assertEquals(unset.err, console(Path.of(""), "tour").err);
        Path nowhere = folder.resolve("nowhere");
        Gateway.Result wrong = console(nowhere, "call", "getDeviceMAC");
        assertEquals("VT_RUNTIME_DIR is no directory: " + nowhere + "." + kHowToStart, wrong.err);
        assertEquals(1, wrong.iExit);
        assertFalse(Files.exists(nowhere));
    }

    @Test
    void refusedStartIsExplained(@TempDir Path folder) throws IOException {
        Path open = Files.createDirectory(folder.resolve("open"));
        // Others may look into it, which the message service minds.
        Files.setPosixFilePermissions(open, PosixFilePermissions.fromString("rwxr-xr-x"));
        Gateway.Result result = console(open, "call", "getDeviceMAC");
        assertEquals(1, result.iExit);
        assertEquals("", result.out);
        assertTrue(result.err.contains("startThread answered 1"), result.err);
        assertTrue(result.err.contains("'gatewayctl start' starts them"), result.err);
    }

    /** Calls getJVMInfo where the path has nothing but one folder. */
    private static Gateway.Result describeJava(Path runtimeDir, Path path) {
        Path java = Path.of(System.getProperty("java.home"), "bin", "java");
        ProcessBuilder builder = new ProcessBuilder(java.toString(),
                "-Djava.library.path=" + System.getProperty("java.library.path"), "-cp",
                System.getProperty("java.class.path"), "com.veltra.domoline.console.Console",
                "call", "getJVMInfo");
        builder.environment().put("VT_RUNTIME_DIR", runtimeDir.toString());
        builder.environment().put("PATH", path.toString());
        return Gateway.run(builder);
    }

    private static String javaDescription(int iResult, String name, String version, String vendor) {
        return "{\n  \"Result\": " + iResult + ",\n  \"Name\": \"" + name
                + "\",\n  \"Version\": \"" + version + "\",\n  \"Vendor\": \"" + vendor
                + "\"\n}\n";
    }

    private static Path privateFolder(Path path) throws IOException {
        return Files.createDirectory(path,
                PosixFilePermissions.asFileAttribute(PosixFilePermissions.fromString("rwx------")));
    }

    /** A Java that says something else. */
    private static void makeJava(Path folder, String... lines) throws IOException {
        StringBuilder script = new StringBuilder("#!/bin/sh\nset -e\n[ \"$*\" = -version ]\n");
        for (String line : lines) {
            script.append("echo '").append(line).append("' >&2\n");
        }
        Path java = Files.writeString(folder.resolve("java"), script);
        Files.setPosixFilePermissions(java, PosixFilePermissions.fromString("rwx------"));
    }

    @Test
    void anyJavaOfThePathIsDescribed(@TempDir Path folder) throws IOException {
        Path runtimeDir = privateFolder(folder.resolve("runtime"));
        Path path = privateFolder(folder.resolve("path"));
        makeJava(path, "openjdk version \"1.8.0_212\"", "OpenJDK Runtime Environment (build 1.8.0)",
                "OpenJDK Client VM (build 25.212-b04, mixed mode)");
        assertEquals(javaDescription(0, "OpenJDK Client VM ", "1.8.0_212", "Oracle"),
                describeJava(runtimeDir, path).out);
        makeJava(path, "java version \"9\" 2017-09-21", "Another VM (build 9)");
        assertEquals(javaDescription(0, "Another VM ", "9", ""),
                describeJava(runtimeDir, path).out);
        makeJava(path);
        assertEquals(javaDescription(0, "", "", ""), describeJava(runtimeDir, path).out);
    }

    @Test
    void withoutJavaOnThePathItsDescriptionIsEmpty(@TempDir Path folder) throws IOException {
        Path runtimeDir = privateFolder(folder.resolve("runtime"));
        Path path = privateFolder(folder.resolve("path"));
        makeJava(path, "java version \"9\"");
        assertEquals(javaDescription(0, "", "9", ""), describeJava(runtimeDir, path).out);
        Files.delete(path.resolve("java"));
        // What the shell says about it takes the place of what was there.
        Gateway.Result result = describeJava(runtimeDir, path);
        assertEquals(javaDescription(0, "", "", ""), result.out);
        assertEquals(0, result.iExit, result.err);
    }

    @Test
    void whereNothingCanBeWrittenJavaHasNoDescription(@TempDir Path folder) throws IOException {
        Path runtimeDir = privateFolder(folder.resolve("runtime"));
        Path path = privateFolder(folder.resolve("path"));
        makeJava(path, "java version \"9\"");
        Files.createFile(runtimeDir.resolve("var")); // where a folder should be
        Gateway.Result result = describeJava(runtimeDir, path);
        assertEquals(javaDescription(1, "", "", ""), result.out);
        assertEquals(1, result.iExit);
    }

    @Test
    void modemIsTalkedToOnTheConsole(@TempDir Path folder)
            throws IOException, InterruptedException {
        ProcessBuilder builder =
                new ProcessBuilder("script", "-qefc", Gateway.property("wap.console"), "/dev/null");
        builder.environment().put("XDG_STATE_HOME", folder.toString());
        builder.environment().put("TERM", "xterm");
        Process console = builder.redirectErrorStream(true).start();
        try (Typist typist = new Typist(console)) {
            typist.answers("call usbRegister com.example.console 1", "0");
            typist.answers("call usbLock 1", "0");
            typist.answers("call usbLock 1", "-2");
            String handle = typist.answers("call usbOpen 1", "[0-9]+");
            typist.answers("call usbSetSerial " + handle + " 115200 0 8 1 false false", "0");
            typist.answers("call usbWrite " + handle + " text:AT\\r 0 3", "3");
            typist.answers("call usbDataAvailable " + handle, "1");
            Thread.sleep(1000); // a read takes what there is, and this wants it in one piece
            typist.answers("call usbRead " + handle + " zeros:16 0 16 3", "9",
                    "abBuffer: 41540d0d0a4f4b0d0a00000000000000"
                            + " \"AT\\u000d\\u000d\\nOK\\u000d\\n\"");
            typist.answers("call usbRead " + handle + " zeros:16 0 16 0", "0");
            typist.answers("call usbClose " + handle, "0");
            typist.answers("call usbUnlock 1", "0");
            typist.answers("call usbUnregister com.example.console", "0");
            typist.type("quit");
            assertEquals(0, typist.end());
        }
    }

    @Test
    void missingLibraryIsExplained(@TempDir Path empty) {
        Path java = Path.of(System.getProperty("java.home"), "bin", "java");
        Gateway.Result result = Gateway.run(new ProcessBuilder(java.toString(),
                "-Djava.library.path=" + empty, "-cp", System.getProperty("java.class.path"),
                "com.veltra.domoline.console.Console", "call", "getDeviceMAC"));
        assertEquals(1, result.iExit);
        assertEquals("", result.out);
        assertTrue(result.err.contains("The native library can't be used"), result.err);
        assertTrue(result.err.contains("-Djava.library.path="), result.err);
    }

    @Test
    void terminalGetsTheInteractiveConsole(@TempDir Path folder) throws IOException {
        Path typed = Files.writeString(
                folder.resolve("typed"), "call getDeviceMAC\ncall getDeviceSerialN\t\nquit\n");
        // script gives the console a terminal of its own.
        ProcessBuilder builder =
                new ProcessBuilder("script", "-qec", Gateway.property("wap.console"), "/dev/null");
        builder.environment().put("XDG_STATE_HOME", folder.toString());
        builder.environment().put("TERM", "xterm");
        Gateway.Result result = Gateway.run(builder, typed.toFile());
        assertEquals(0, result.iExit, result.out);
        assertTrue(result.out.contains("wap> "), result.out);
        assertTrue(result.out.contains("\u001B[32m02:A1:B2:00:10:01\u001B[0m"), result.out);
        assertTrue(result.out.contains("SIM0000000001001"), "no completion: " + result.out);
        String history = Files.readString(folder.resolve("wap-console").resolve("history"));
        assertTrue(history.contains(":call getDeviceMAC\n"), history);
    }
}
