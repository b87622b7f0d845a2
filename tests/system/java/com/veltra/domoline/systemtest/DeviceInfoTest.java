package com.veltra.domoline.systemtest;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertNull;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.veltra.domoline.deviceservice.kavo.wap.gulm.jni.DeviceInfoQueryServiceJNI;
import com.veltra.domoline.deviceservice.kavo.wap.gulm.jni.DeviceSecretInfoQueryServiceJNI;
import org.junit.jupiter.api.BeforeAll;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.EnumSource;
import org.junit.jupiter.params.provider.ValueSource;

/** The device's answers, and how they follow what the gateway knows. */
class DeviceInfoTest {
    private final DeviceInfoQueryServiceJNI info = new DeviceInfoQueryServiceJNI();
    private final DeviceSecretInfoQueryServiceJNI secret = new DeviceSecretInfoQueryServiceJNI();

    @BeforeAll
    static void attach() {
        Gateway.attach();
    }

    /** Runs a check with one value of the home changed, and puts the old one back. */
    private static void with(String path, String value, String original, Runnable check) {
        Gateway.set(path, value);
        try {
            check.run();
        } finally {
            Gateway.set(path, original);
        }
    }

    @ParameterizedTest
    @EnumSource(DeviceMethod.class)
    void answersWhatTheHomeSays(DeviceMethod method) {
        method.assertSucceeds();
    }

    @Test
    void emptyNfcIsAnEmptyText() {
        with("device.nfc", "", "1",
                ()
                        -> assertTrue(info.getDeviceInfo().endsWith(", \"NFC\":\"\"}"),
                                info.getDeviceInfo()));
    }

    @Test
    void changedValuesAreAnswered() {
        with("device.vendor", "Another", "SimHome",
                ()
                        -> assertTrue(info.getDeviceInfo().startsWith(
                                "{\"Result\":0 , \"Vendor\":\"Another\", ")));
        DeviceMethod.INFO.assertSucceeds();
    }

    @Test
    void upTimeRuns() throws InterruptedException {
        int iBefore = info.getDeviceUpTime();
        Thread.sleep(2100);
        int iPassed = info.getDeviceUpTime() - iBefore;
        assertTrue(iPassed >= 2 && iPassed <= 10, "2.1 s were counted as " + iPassed);
    }

    @ParameterizedTest
    @ValueSource(ints = {Integer.MIN_VALUE, -1, 0, 1, Integer.MAX_VALUE})
    void samplingArgumentIsIgnored(int iSample) {
        int iCpu = info.getCPUOccupancyRate(iSample);
        int iRam = info.getRAMOccupancyRate(iSample);
        assertTrue(iCpu >= 1 && iCpu <= 100, "CPU " + iCpu);
        assertTrue(iRam >= 0 && iRam <= 100, "RAM " + iRam);
    }

    @Test
    void sixCharactersOfOuiFitAndSevenDoNot() {
        with("identity.manufacturerOui", "ABCDEF", "02A1B2",
                () -> assertEquals("ABCDEF", secret.getDeviceManufacturerOUI()));
        with("identity.manufacturerOui", "ABCDEFG", "02A1B2",
                () -> assertEquals("{ \"Result\": -1 }", secret.getDeviceManufacturerOUI()));
        DeviceMethod.OUI.assertSucceeds();
    }

    @ParameterizedTest
    @ValueSource(strings = {
            "K\u00E4fer \u00DF", // two bytes each
            "\u5BB6\u5EAD\u7DB2\u8DEF", // three
            "\uD83C\uDFE0 home \uD83D\uDE00", // four, surrogate pairs in Java
            "quote\" back\\slash {}",
    })
    void anyTextArrivesUnchanged(String name) {
        with("device.defaultSsid1Name", name, "SimHome-1001",
                () -> assertEquals(name, secret.getDeviceDefaultSSID1Name()));
    }

    @Test
    void thirtyOneBytesOfNameArriveWhole() {
        String name = "0123456789012345678901234567890";
        with("device.defaultSsid1Name", name, "SimHome-1001",
                () -> assertEquals(name, secret.getDeviceDefaultSSID1Name()));
    }

    @Test
    void emptyTextsAreNull() {
        with("device.defaultWebPassword", "", "sim-web-pass",
                () -> assertNull(secret.getDeviceDefaultWebPassword()));
        with("identity.serialNumber", "", "SIM0000000001001",
                () -> assertNull(secret.getDeviceSerialNumber()));
    }
}
