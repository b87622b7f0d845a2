package com.veltra.domoline.systemtest;

import static org.junit.jupiter.api.Assertions.assertArrayEquals;
import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.nio.charset.StandardCharsets;
import java.util.Arrays;
import java.util.Random;
import java.util.concurrent.CompletableFuture;
import java.util.concurrent.TimeUnit;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.extension.ExtendWith;

/** What a plug-in sends to a serial device and what it reads from it. */
@ExtendWith(AttachedGateway.class)
class UsbSerialTest {
    private static final String kMeter = "com.example.meter";
    private static final String kPhone = "com.example.phone";

    @BeforeEach
    void register() {
        assertEquals(0, Box.kUsb.usbRegister(kMeter, 1));
    }

    /** With its last plug-in a virtual machine loses its locks. */
    @AfterEach
    void unregister() {
        assertEquals(0, Box.kUsb.usbUnregister(kMeter));
    }

    private static byte[] ascii(String text) {
        return text.getBytes(StandardCharsets.US_ASCII);
    }

    private static long millisecondsOf(Runnable call) {
        long lBegin = System.nanoTime();
        call.run();
        return (System.nanoTime() - lBegin) / 1_000_000;
    }

    /** A wait of so many seconds; how long it lasts beyond that is the machine's business. */
    private static void assertWaits(long lSeconds, Runnable call) {
        long lMilliseconds = millisecondsOf(call);
        assertTrue(lMilliseconds >= lSeconds * 1000 && lMilliseconds < lSeconds * 1000 + 20_000,
                lMilliseconds + " ms");
    }

    private static void assertDoesNotWait(Runnable call) {
        // All waits of the library are longer than that.
        long lMilliseconds = millisecondsOf(call);
        assertTrue(lMilliseconds < 1900, lMilliseconds + " ms");
    }

    // ---- the whole story ----

    @Test
    void aPlugInTalksToTheModemWhileAnotherOneFindsItBusy() {
        assertEquals(0, Box.kUsb.usbRegister(kPhone, 2));
        assertEquals(0, Box.kUsb.usbLock(UsbLine.kModem));
        assertEquals(UsbLine.kBusy, Box.kUsb.usbLock(UsbLine.kModem), "the other one's lock");
        int iHandle = Box.kUsb.usbOpen(UsbLine.kModem);
        assertTrue(iHandle >= 0, "usbOpen answered " + iHandle);
        assertEquals(0, Box.kUsb.usbSetSerial(iHandle, 115200, 0, 8, 1, false, false));

        byte[] command = ascii("AT\r");
        assertEquals(3, Box.kUsb.usbWrite(iHandle, command, 0, command.length));
        StringBuilder heard = new StringBuilder();
        byte[] piece = new byte[16];
        while (heard.indexOf("\r\nOK\r\n") < 0) {
            assertEquals(1, Box.kUsb.usbDataAvailable(iHandle), "after " + heard);
            int iRead = Box.kUsb.usbRead(iHandle, piece, 0, piece.length, 2);
            assertTrue(iRead > 0, "usbRead answered " + iRead);
            heard.append(new String(piece, 0, iRead, StandardCharsets.US_ASCII));
        }
        assertEquals("AT\r\r\nOK\r\n", heard.toString(), "the echo, and then the answer");

        assertEquals(0, Box.kUsb.usbClose(iHandle));
        assertEquals(UsbLine.kBusy, Box.kUsb.usbLock(UsbLine.kModem), "closed, but locked still");
        assertEquals(0, Box.kUsb.usbUnlock(UsbLine.kModem));
        assertEquals(0, Box.kUsb.usbLock(UsbLine.kModem), "the other one's turn");
        assertEquals(0, Box.kUsb.usbUnlock(UsbLine.kModem));
        assertEquals(0, Box.kUsb.usbUnregister(kPhone));
    }

    @Test
    void theModemAnswersWordForWord() {
        try (UsbLine modem = new UsbLine(UsbLine.kModem).setUp()) {
            modem.send("ATE0\r");
            assertEquals("ATE0\r\r\nOK\r\n", modem.receiveUntil("OK\r\n"));
            modem.send("at+csq\r");
            assertEquals("\r\n+CSQ: 20,99\r\n\r\nOK\r\n", modem.receiveUntil("OK\r\n"));
            modem.send("AT+NONSENSE\r");
            assertEquals("\r\nERROR\r\n", modem.receiveUntil("ERROR\r\n"));
        }
        // Whoever locks it next finds it as it was plugged in.
        try (UsbLine modem = new UsbLine(UsbLine.kModem).setUp()) {
            modem.send("AT\r");
            assertEquals("AT\r\r\nOK\r\n", modem.receiveUntil("OK\r\n"));
        }
    }

    // ---- bytes ----

    @Test
    void everyByteComesBackAsItIs() {
        byte[] bytes = new byte[256];
        for (int i = 0; i < bytes.length; i++) {
            bytes[i] = (byte) i;
        }
        try (UsbLine echo = new UsbLine(UsbLine.kEcho).setUp()) {
            echo.send(bytes);
            assertArrayEquals(bytes, echo.receive(bytes.length));
            echo.assertNothingWaits();
        }
    }

    @Test
    void muchGoesBothWaysAtOnce() throws Exception {
        byte[] bytes = new byte[256 * 1024];
        new Random(1).nextBytes(bytes);
        try (UsbLine echo = new UsbLine(UsbLine.kEcho).setUp()) {
            // The line holds a few thousand bytes: each side waits for the other again and again.
            CompletableFuture<Void> sender = CompletableFuture.runAsync(() -> echo.send(bytes));
            assertArrayEquals(bytes, echo.receive(bytes.length));
            sender.get(60, TimeUnit.SECONDS);
            echo.assertNothingWaits();
        }
    }

    @Test
    void partsOfAnArrayAreSent() {
        byte[] bytes = ascii("0123456789");
        try (UsbLine echo = new UsbLine(UsbLine.kEcho).setUp()) {
            assertEquals(4, Box.kUsb.usbWrite(echo.iHandle, bytes, 3, 4));
            assertEquals(0, Box.kUsb.usbWrite(echo.iHandle, bytes, 10, 0));
            assertEquals(1, Box.kUsb.usbWrite(echo.iHandle, bytes, 9, 1));
            assertEquals("34569", echo.receiveText(5));
            assertEquals("0123456789", new String(bytes, StandardCharsets.US_ASCII));
        }
    }

    // ---- waiting ----

    @Test
    void aReadWaitsAsLongAsItIsTold() {
        byte[] buffer = ascii("untouched");
        try (UsbLine echo = new UsbLine(UsbLine.kEcho).setUp()) {
            assertWaits(1,
                    ()
                            -> assertEquals(UsbLine.kBusy,
                                    Box.kUsb.usbRead(echo.iHandle, buffer, 0, 9, 1)));
            assertWaits(2,
                    ()
                            -> assertEquals(UsbLine.kBusy,
                                    Box.kUsb.usbRead(echo.iHandle, buffer, 0, 9, 2)));
            assertEquals("untouched", new String(buffer, StandardCharsets.US_ASCII));
        }
    }

    @Test
    void aReadWithoutTimeFindsNothingAndClearsItsRange() {
        byte[] buffer = ascii("untouched");
        try (UsbLine echo = new UsbLine(UsbLine.kEcho).setUp()) {
            assertDoesNotWait(
                    () -> assertEquals(0, Box.kUsb.usbRead(echo.iHandle, buffer, 2, 3, 0)));
            assertEquals("\0\0\0\0\0ched", new String(buffer, StandardCharsets.US_ASCII));
        }
    }

    @Test
    void aReadWithoutLimitWaitsForData() throws Exception {
        byte[] buffer = new byte[8];
        try (UsbLine echo = new UsbLine(UsbLine.kEcho).setUp()) {
            CompletableFuture<Integer> reader = new CompletableFuture<>();
            Thread thread = new Thread(
                    () -> reader.complete(Box.kUsb.usbRead(echo.iHandle, buffer, 0, 8, -1)));
            thread.setDaemon(true);
            thread.start();
            Thread.sleep(3000); // longer than any time-out of the library's own
            assertFalse(reader.isDone());
            echo.send("now");
            assertEquals(3, reader.get(60, TimeUnit.SECONDS));
            assertArrayEquals(ascii("now\0\0\0\0\0"), buffer);
        }
    }

    @Test
    void aReadEndsWithTheFirstBytesThatCome() {
        byte[] buffer = new byte[64];
        try (UsbLine echo = new UsbLine(UsbLine.kEcho).setUp()) {
            echo.send("few");
            assertEquals(1, Box.kUsb.usbDataAvailable(echo.iHandle));
            assertWaits(0, () -> {
                int iRead = Box.kUsb.usbRead(echo.iHandle, buffer, 0, 64, 60);
                assertTrue(iRead >= 1 && iRead <= 3, "usbRead answered " + iRead);
            });
        }
    }

    @Test
    void dataIsAnnouncedAndTakesNothingAway() {
        try (UsbLine echo = new UsbLine(UsbLine.kEcho).setUp()) {
            assertWaits(2, () -> assertEquals(-2, Box.kUsb.usbDataAvailable(echo.iHandle)));
            echo.send("x");
            assertEquals(1, Box.kUsb.usbDataAvailable(echo.iHandle));
            assertDoesNotWait(() -> assertEquals(1, Box.kUsb.usbDataAvailable(echo.iHandle)));
            assertEquals("x", echo.receiveText(1));
        }
    }

    @Test
    void handlesThatAreNoneHaveNoData() {
        assertDoesNotWait(() -> {
            assertEquals(0, Box.kUsb.usbDataAvailable(51580));
            assertEquals(0, Box.kUsb.usbDataAvailable(Integer.MAX_VALUE));
            assertEquals(-1, Box.kUsb.usbDataAvailable(-1));
            assertEquals(-1, Box.kUsb.usbDataAvailable(Integer.MIN_VALUE));
        });
        // The last one that is looked at. The system passes over what is far above all open files.
        if (UsbLine.kWatched == 51579) {
            assertWaits(2, () -> assertEquals(-2, Box.kUsb.usbDataAvailable(51579)));
        }
    }

    // ---- ranges ----

    @Test
    void aReadWritesTheArrayFromItsStart() {
        byte[] buffer = ascii("abcdefghij");
        try (UsbLine echo = new UsbLine(UsbLine.kEcho).setUp()) {
            echo.send("1");
            assertEquals(1, Box.kUsb.usbRead(echo.iHandle, buffer, 4, 4, 60));
            assertArrayEquals(ascii("\0\0\0\0001\0\0\0ij"), buffer);
            echo.send("2");
            assertEquals(1, Box.kUsb.usbRead(echo.iHandle, buffer, 9, 1, 60));
            assertArrayEquals(ascii("\0\0\0\0\0\0\0\0\0002"), buffer);
        }
    }

    private static final int[][] kWrongRanges = {
            {-1, 1}, {0, -1}, {-1, -1}, {0, 9}, {9, 0}, {8, 1}, {5, 4}, {4, 5},
            {Integer.MAX_VALUE, 1}, {1, Integer.MAX_VALUE},
            {Integer.MAX_VALUE, Integer.MAX_VALUE}, {Integer.MIN_VALUE, 8},
            {8, Integer.MIN_VALUE}, {Integer.MIN_VALUE, Integer.MIN_VALUE},
    };

    @Test
    void rangesOutsideTheArrayAreRefusedAndNothingIsLost() {
        byte[] buffer = ascii("abcdefgh");
        try (UsbLine echo = new UsbLine(UsbLine.kEcho).setUp()) {
            echo.send("12345678");
            assertEquals(1, Box.kUsb.usbDataAvailable(echo.iHandle));
            for (int[] range : kWrongRanges) {
                for (int iTimeOut : new int[] {-1, 0, 1}) {
                    assertEquals(-1,
                            Box.kUsb.usbRead(
                                    echo.iHandle, buffer, range[0], range[1], iTimeOut),
                            "reading " + Arrays.toString(range));
                }
                assertEquals(-1, Box.kUsb.usbWrite(echo.iHandle, buffer, range[0], range[1]),
                        "writing " + Arrays.toString(range));
            }
            assertArrayEquals(ascii("abcdefgh"), buffer);
            assertEquals("12345678", echo.receiveText(8));
            echo.assertNothingWaits();
        }
    }

    @Test
    void missingArraysAreRefused() {
        try (UsbLine echo = new UsbLine(UsbLine.kEcho).setUp()) {
            for (int iCount : new int[] {0, 1, -1}) {
                assertEquals(-1, Box.kUsb.usbRead(echo.iHandle, null, 0, iCount, 0));
                assertEquals(-1, Box.kUsb.usbWrite(echo.iHandle, null, 0, iCount));
            }
            assertEquals(0, Box.kUsb.usbRead(echo.iHandle, new byte[0], 0, 0, 0));
            assertEquals(0, Box.kUsb.usbWrite(echo.iHandle, new byte[0], 0, 0));
            echo.assertNothingWaits();
        }
    }

    @Test
    void closedHandlesAreRefused() {
        byte[] buffer = ascii("untouched");
        try (UsbLine echo = new UsbLine(UsbLine.kEcho).setUp()) {
            echo.closeHandle();
            for (int iHandle : new int[] {-1, Integer.MIN_VALUE, 51579, Integer.MAX_VALUE}) {
                assertEquals(-1, Box.kUsb.usbWrite(iHandle, buffer, 0, 9));
                assertEquals(-1, Box.kUsb.usbSetSerial(iHandle, 9600, 0, 8, 1, false, false));
                assertEquals(-1, Box.kUsb.usbClose(iHandle));
            }
            assertEquals(-1, Box.kUsb.usbRead(-1, buffer, 0, 9, 0));
            assertEquals(-1, Box.kUsb.usbRead(Integer.MIN_VALUE, buffer, 0, 9, -1));
            assertEquals("untouched", new String(buffer, StandardCharsets.US_ASCII));
        }
    }
}
