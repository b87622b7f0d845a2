package com.veltra.domoline.systemtest;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertTrue;

import org.junit.jupiter.api.AfterAll;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.BeforeAll;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.extension.ExtendWith;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.CsvSource;
import org.junit.jupiter.params.provider.ValueSource;

/**
 * How a line is set up, as the system's own tool sees it. A pseudo-terminal has eight data bits and
 * no parity whatever it is told, so those are looked at elsewhere.
 */
@ExtendWith(AttachedGateway.class)
class UsbSettingsTest {
    private static final String kSettings = "com.example.settings";

    private UsbLine echo;

    @BeforeAll
    static void register() {
        assertEquals(0, Box.kUsb.usbRegister(kSettings, 1));
    }

    @AfterAll
    static void unregister() {
        assertEquals(0, Box.kUsb.usbUnregister(kSettings));
    }

    @BeforeEach
    void open() {
        echo = new UsbLine(UsbLine.kEcho).setUp();
    }

    @AfterEach
    void close() {
        echo.close();
    }

    private void assertShows(String... words) {
        String settings = echo.settings();
        for (String word : words) {
            assertTrue(settings.contains(" " + word + " "), word + " is not in" + settings);
        }
    }

    private int set(int iBaudRate, int iParity, int iDataBits, int iStopBits) {
        return Box.kUsb.usbSetSerial(
                echo.iHandle, iBaudRate, iParity, iDataBits, iStopBits, false, false);
    }

    @Test
    void bytesGoThroughUnchanged() {
        assertShows("speed 115200 baud", "cs8", "-cstopb", "-icanon", "-isig", "-echo", "-echoe",
                "-opost", "-inlcr", "-igncr", "-icrnl", "-ixon", "-ixoff", "-ixany", "min = 0");
    }

    @ParameterizedTest
    @ValueSource(ints = {50, 75, 110, 134, 150, 200, 300, 600, 1200, 1800, 2400, 4800, 9600, 19200,
            38400, 57600, 115200, 230400, 460800, 500000, 576000, 921600, 1000000, 1152000, 1500000,
            2000000, 2500000, 3000000, 3500000, 4000000})
    void everySpeedOfTheListIsSet(int iBaudRate) {
        assertEquals(0, set(iBaudRate, 0, 8, 1));
        // The emulator does not know the higher ones, and hands on none in their place.
        boolean bKnown = iBaudRate <= 460800 || !Boolean.getBoolean("wap.emulated");
        assertShows("speed " + (bKnown ? iBaudRate : 0) + " baud");
    }

    @Test
    void noSpeedHangsUp() {
        assertEquals(0, set(0, 0, 8, 1));
        assertShows("speed 0 baud");
    }

    @ParameterizedTest
    @CsvSource({"5, 1, -cstopb", "6, 2, cstopb", "7, 1, -cstopb", "8, 2, cstopb"})
    void dataAndStopBitsAreSet(int iDataBits, int iStopBits, String stopBits) {
        assertEquals(0, set(9600, 0, iDataBits, iStopBits));
        assertShows("speed 9600 baud", stopBits);
    }

    @ParameterizedTest
    @CsvSource({"0, -inpck", "1, inpck", "2, inpck", "3, inpck", "4, inpck"})
    void parityIsChecked(int iParity, String check) {
        assertEquals(0, set(9600, iParity, 8, 1));
        assertShows(check);
    }

    @Test
    void noParityLeavesTheCheckAsItWas() {
        assertEquals(0, set(9600, 1, 8, 1));
        assertEquals(0, set(9600, 0, 8, 1));
        assertShows("inpck");
    }

    @Test
    void flowControlByCharactersIsSwitched() {
        assertEquals(0, Box.kUsb.usbSetSerial(echo.iHandle, 9600, 0, 8, 1, false, true));
        assertShows("ixon", "ixoff", "ixany");
        assertEquals(0, Box.kUsb.usbSetSerial(echo.iHandle, 9600, 0, 8, 1, false, false));
        assertShows("-ixon", "-ixoff", "-ixany");
    }

    @Test
    void flowControlByLinesIsTakenAndBytesStillFlow() {
        assertEquals(0, Box.kUsb.usbSetSerial(echo.iHandle, 9600, 0, 8, 1, true, false));
        echo.send("flows");
        assertEquals("flows", echo.receiveText(5));
    }

    @ParameterizedTest
    @ValueSource(ints = {14400, 1, -1, 115201, Integer.MAX_VALUE, Integer.MIN_VALUE})
    void anotherSpeedDoesNotTouchTheLine(int iBaudRate) {
        String before = echo.settings();
        echo.send("kept");
        assertEquals(1, Box.kUsb.usbDataAvailable(echo.iHandle));
        assertEquals(-1, set(iBaudRate, 0, 7, 2));
        assertEquals(before, echo.settings());
        assertEquals("kept", echo.receiveText(4));
    }

    @ParameterizedTest
    @CsvSource({"5, 8, 1", "-1, 8, 1", "0, 4, 1", "0, 9, 1", "0, 0, 1", "0, -1, 1", "0, 8, 0",
            "0, 8, 3", "0, 8, -1", "2147483647, 8, 1", "-2147483648, 8, 1", "0, 2147483647, 1",
            "0, -2147483648, 1", "0, 8, 2147483647", "0, 8, -2147483648"})
    void otherFormatsLeaveTheSettings(int iParity, int iDataBits, int iStopBits) {
        String before = echo.settings();
        assertEquals(-1, set(9600, iParity, iDataBits, iStopBits));
        assertEquals(before, echo.settings());
    }

    @Test
    void settingUpDropsWhatWasNotRead() {
        echo.send("old");
        assertEquals(1, Box.kUsb.usbDataAvailable(echo.iHandle));
        assertEquals("old", echo.receiveText(3));
        echo.send("o");
        assertEquals(1, Box.kUsb.usbDataAvailable(echo.iHandle));
        assertEquals(0, set(115200, 0, 8, 1));
        assertEquals(0, Box.kUsb.usbRead(echo.iHandle, new byte[1], 0, 1, 0));
        echo.assertNothingWaits();
    }
}
