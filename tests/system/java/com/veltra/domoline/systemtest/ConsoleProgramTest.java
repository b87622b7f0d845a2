package com.veltra.domoline.systemtest;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
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
        assertTrue(result.out.endsWith("\n12 methods, 0 failed\n"), result.out);
        for (String answer : List.of("SH-GW100", "02:A1:B2:00:10:01", "sim-web-pass", "02A1B2")) {
            assertTrue(result.out.contains(answer), answer + " is missing in " + result.out);
        }
    }

    @Test
    void failedCallEndsWithOneAndSaysWhatToDo(@TempDir Path empty) throws IOException {
        Files.setPosixFilePermissions(
                empty, java.nio.file.attribute.PosixFilePermissions.fromString("rwx------"));
        Gateway.Result result = console(empty, "call", "getDeviceMAC");
        assertEquals(1, result.iExit);
        assertEquals("{\n  \"Result\": -1\n}\n", result.out);
        assertTrue(result.err.contains("gatewayctl status"), result.err);
        Gateway.Result tour = console(empty, "tour");
        assertEquals(1, tour.iExit);
        assertTrue(tour.out.endsWith("\n12 methods, 9 failed\n"), tour.out);
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
    void everyVerbExplainsItself() {
        for (String verb : List.of("services", "methods", "call", "tour", "quit", "help")) {
            Gateway.Result result = console(null, verb, "--help");
            assertEquals(0, result.iExit, verb);
            assertTrue(result.out.contains("Usage: wap-console " + verb), result.out);
        }
        assertFalse(console(null, "--help").out.isEmpty());
    }
}
