package com.veltra.domoline.systemtest;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertTimeoutPreemptively;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.io.FileInputStream;
import java.io.IOException;
import java.time.Duration;
import java.util.ArrayList;
import java.util.List;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.extension.ExtendWith;

/** Who may use a serial device, and what becomes of one that goes away. */
@ExtendWith(AttachedGateway.class)
class UsbDeviceTest {
    private static final String kMeter = "com.example.meter";

    @BeforeEach
    void register() {
        assertEquals(0, Box.kUsb.usbRegister(kMeter, 1));
    }

    @AfterEach
    void unregister() {
        assertEquals(0, Box.kUsb.usbUnregister(kMeter));
    }

    private static String me() {
        return String.valueOf(ProcessHandle.current().pid());
    }

    /** Whether the gateway lists a plug-in of this virtual machine. */
    private static boolean isListed(int iType, String plugIn) {
        return Gateway.ctl("usb").matches(
                "(?s).*\\n" + me() + " +" + iType + " +" + plugIn + "\\n.*");
    }

    // ---- registering ----

    @Test
    void plugInsAreKnownUntilTheyLeave() {
        assertTrue(isListed(1, kMeter));
        assertEquals(0, Box.kUsb.usbRegister("K\u00E4fer", 4711));
        assertTrue(isListed(4711, "K\u00E4fer"));
        assertEquals(0, Box.kUsb.usbUnregister("K\u00E4fer"));
        assertTrue(!isListed(4711, "K\u00E4fer"));
        assertEquals(-1, Box.kUsb.usbUnregister("K\u00E4fer"), "once more");
    }

    @Test
    void registeringAgainChangesTheType() {
        assertEquals(0, Box.kUsb.usbRegister(kMeter, 2));
        assertTrue(isListed(2, kMeter));
        assertTrue(!isListed(1, kMeter));
    }

    @Test
    void aNameIsCutAfter127Bytes() {
        String name = "n".repeat(127);
        assertEquals(0, Box.kUsb.usbRegister(name + "-and-more", 3));
        assertTrue(isListed(3, name));
        assertEquals(0, Box.kUsb.usbUnregister(name + "-or-less"));
    }

    @Test
    void noNameIsRefusedWithoutAsking() {
        Gateway.assertAsksNobody(() -> {
            assertEquals(-1, Box.kUsb.usbRegister(null, 1));
            assertEquals(-1, Box.kUsb.usbRegister("", 1));
            assertEquals(-1, Box.kUsb.usbUnregister(null));
            assertEquals(-1, Box.kUsb.usbUnregister(""));
        });
    }

    @Test
    void whoIsNotRegisteredGetsNothing() {
        assertEquals(0, Box.kUsb.usbUnregister(kMeter));
        try {
            assertEquals(-1, Box.kUsb.usbLock(UsbLine.kEcho));
            assertEquals(-1, Box.kUsb.usbOpen(UsbLine.kEcho));
            assertEquals(-1, Box.kUsb.usbUnlock(UsbLine.kEcho));
        } finally {
            register();
        }
    }

    @Test
    void theLastPlugInThatLeavesTakesTheLocksAlong() {
        assertEquals(0, Box.kUsb.usbRegister("com.example.other", 1));
        assertEquals(0, Box.kUsb.usbLock(UsbLine.kEcho));
        assertEquals(0, Box.kUsb.usbUnregister("com.example.other"));
        assertEquals(me(), UsbLine.owner(UsbLine.kEcho));
        assertEquals(0, Box.kUsb.usbUnregister(kMeter));
        assertEquals("-", UsbLine.owner(UsbLine.kEcho));
        register();
    }

    // ---- locking and opening ----

    @Test
    void locksAreTakenAndGivenBack() {
        assertEquals(-1, Box.kUsb.usbUnlock(UsbLine.kEcho), "not locked yet");
        assertEquals(0, Box.kUsb.usbLock(UsbLine.kEcho));
        assertEquals(me(), UsbLine.owner(UsbLine.kEcho));
        assertEquals("-", UsbLine.owner(UsbLine.kModem));
        assertEquals(-2, Box.kUsb.usbLock(UsbLine.kEcho));
        assertEquals(0, Box.kUsb.usbUnlock(UsbLine.kEcho));
        assertEquals("-", UsbLine.owner(UsbLine.kEcho));
        assertEquals(-1, Box.kUsb.usbUnlock(UsbLine.kEcho), "not locked any more");
    }

    @Test
    void onlyLockedDevicesAreOpened() {
        assertEquals(-1, Box.kUsb.usbOpen(UsbLine.kEcho));
        try (UsbLine echo = new UsbLine(UsbLine.kEcho)) {
            assertEquals(-1, Box.kUsb.usbOpen(UsbLine.kModem));
            echo.send("open");
            assertEquals("open", echo.receiveText(4));
        }
        assertEquals(-1, Box.kUsb.usbOpen(UsbLine.kEcho));
    }

    @Test
    void devicesThatAreNotThereAreRefused() {
        for (int iDevice : new int[] {UsbLine.kMissing, 0, -1, Integer.MIN_VALUE,
                     Integer.MAX_VALUE}) {
            assertEquals(-1, Box.kUsb.usbLock(iDevice));
            assertEquals(-1, Box.kUsb.usbOpen(iDevice));
            assertEquals(-1, Box.kUsb.usbUnlock(iDevice));
        }
    }

    // ---- coming and going ----

    @Test
    void aDeviceThatIsPluggedInCanBeUsedAtOnce() {
        String answer = Gateway.ctl("usb", "plug", "late", "--kind", "echo");
        try {
            int iDevice = Integer.parseInt(answer.split("[ :]+")[1]);
            try (UsbLine late = new UsbLine(iDevice).setUp()) {
                late.send("here");
                assertEquals("here", late.receiveText(4));
            }
        } finally {
            Gateway.ctl("usb", "unplug", "late");
        }
    }

    @Test
    void aDeviceThatIsUnpluggedEndsItsLine() {
        String answer = Gateway.ctl("usb", "plug", "loose", "--kind", "echo");
        int iDevice = Integer.parseInt(answer.split("[ :]+")[1]);
        byte[] buffer = new byte[8];
        try (UsbLine loose = new UsbLine(iDevice).setUp()) {
            loose.send("there");
            assertEquals("there", loose.receiveText(5));
            Gateway.ctl("usb", "unplug", "loose");
            assertEndsWithoutWaiting(loose, buffer);
            assertEquals(-1, Box.kUsb.usbUnlock(iDevice));
            assertEquals(-1, Box.kUsb.usbLock(iDevice));
            assertEquals(-1, Box.kUsb.usbOpen(iDevice));
        }
    }

    /** What is left of a line whose far end is gone: its end can be read, again and again. */
    private static void assertEndsWithoutWaiting(UsbLine line, byte[] buffer) {
        assertTimeoutPreemptively(Duration.ofSeconds(20), () -> {
            for (int iTimeOut : new int[] {0, 1, -1}) {
                assertEquals(1, Box.kUsb.usbDataAvailable(line.iHandle));
                assertEquals(0, Box.kUsb.usbRead(line.iHandle, buffer, 0, 8, iTimeOut));
            }
            assertEquals(-1, Box.kUsb.usbWrite(line.iHandle, buffer, 0, 8));
            assertEquals(-1, Box.kUsb.usbSetSerial(line.iHandle, 9600, 0, 8, 1, false, false));
        });
    }

    @Test
    void aReaderIsWokenWhenItsDeviceIsUnplugged() throws InterruptedException {
        String answer = Gateway.ctl("usb", "plug", "loose", "--kind", "modem");
        int iDevice = Integer.parseInt(answer.split("[ :]+")[1]);
        List<Integer> results = new ArrayList<>();
        try (UsbLine loose = new UsbLine(iDevice).setUp()) {
            Thread reader = new Thread(
                    () -> results.add(Box.kUsb.usbRead(loose.iHandle, new byte[8], 0, 8, -1)));
            reader.setDaemon(true);
            reader.start();
            Thread.sleep(500);
            Gateway.ctl("usb", "unplug", "loose");
            reader.join(30_000);
            assertEquals(List.of(0), results);
        }
    }

    @Test
    void aManagerThatDiesTakesLinesAndLocksAlong() {
        byte[] buffer = new byte[8];
        UsbLine echo = new UsbLine(UsbLine.kEcho).setUp();
        Gateway.kill(Gateway.kUsbMngt);
        try {
            assertEndsWithoutWaiting(echo, buffer);
            echo.closeHandle();
            assertTimeoutPreemptively(Duration.ofSeconds(20), () -> {
                assertEquals(-1, Box.kUsb.usbRegister(kMeter, 1));
                assertEquals(-1, Box.kUsb.usbUnregister(kMeter));
                assertEquals(-1, Box.kUsb.usbLock(UsbLine.kEcho));
                assertEquals(-1, Box.kUsb.usbUnlock(UsbLine.kEcho));
                assertEquals(-1, Box.kUsb.usbOpen(UsbLine.kEcho));
            });
        } finally {
            Gateway.start(Gateway.kUsbMngt);
        }
        assertEquals(-1, Box.kUsb.usbLock(UsbLine.kEcho), "it knows no plug-ins yet");
        register();
        try (UsbLine again = new UsbLine(UsbLine.kEcho).setUp()) {
            again.send("again");
            assertEquals("again", again.receiveText(5));
        }
    }

    @Test
    void refusalsOfTheManagerAreFailures() {
        int[] rpcs = {0x47103041, 0x47103042, 0x47103043, 0x47103044, 0x4710303F};
        for (String code : new String[] {"0xF710403D", "7"}) {
            for (int iRpc : rpcs) {
                Gateway.fault(Gateway.kUsbMngt, iRpc, "--code", code, "--times", "1");
            }
            int iExpected = code.equals("7") ? -1 : -2;
            assertEquals(iExpected, Box.kUsb.usbRegister(kMeter, 1), code);
            assertEquals(iExpected, Box.kUsb.usbUnregister(kMeter), code);
            assertEquals(iExpected, Box.kUsb.usbLock(UsbLine.kEcho), code);
            assertEquals(iExpected, Box.kUsb.usbUnlock(UsbLine.kEcho), code);
            assertEquals(iExpected, Box.kUsb.usbOpen(UsbLine.kEcho), code);
        }
    }

    // ---- handles ----

    /** Opens files until new handles are that high. */
    private static void openFiles(List<FileInputStream> files, int iCount) throws IOException {
        while (files.size() < iCount) {
            files.add(new FileInputStream("/dev/null"));
        }
    }

    @Test
    void highHandlesAreWrittenAndWatchedButNeverRead() throws IOException {
        List<FileInputStream> files = new ArrayList<>();
        byte[] buffer = new byte[8];
        try {
            for (int iLeast : new int[] {128, Math.min(1100, UsbLine.kWatched - 100)}) {
                openFiles(files, iLeast);
                try (UsbLine echo = new UsbLine(UsbLine.kEcho).setUp()) {
                    assertTrue(echo.iHandle >= iLeast, "handle " + echo.iHandle);
                    assertEquals(-2, Box.kUsb.usbDataAvailable(echo.iHandle));
                    echo.send("unheard");
                    assertEquals(1, Box.kUsb.usbDataAvailable(echo.iHandle));
                    assertEquals(0, Box.kUsb.usbRead(echo.iHandle, buffer, 0, 8, 0));
                    assertEquals(-2, Box.kUsb.usbRead(echo.iHandle, buffer, 0, 8, 1));
                }
            }
        } finally {
            for (FileInputStream file : files) {
                file.close();
            }
        }
    }
}
