package com.veltra.domoline.systemtest;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.nio.charset.StandardCharsets;
import java.util.Arrays;

/** A serial device of the home as shipped, locked and open; closing it unlocks it again. */
final class UsbLine implements AutoCloseable {
    static final int kModem = 1;
    static final int kEcho = 2;
    static final int kMissing = 77;

    /** Busy, or nothing came in time. */
    static final int kBusy = -2;

    /** The emulator gives up when it is asked to watch a higher one: its own sets end there. */
    static final int kWatched = Boolean.getBoolean("wap.emulated") ? 1023 : 51579;

    /** A read from this handle on ends by its time-out, whatever there is to read. */
    static final int kUnreadable = 128;

    private static final int kPatienceSeconds = 20;
    private static final int kPiece = 4096;

    final int iDevice;
    final int iHandle;
    private boolean bOpen = true;

    /** Some plug-in of this virtual machine must be registered. */
    UsbLine(int iDevice) {
        this.iDevice = iDevice;
        assertEquals(0, Box.kUsb.usbLock(iDevice), "lock");
        iHandle = Box.kUsb.usbOpen(iDevice);
        if (iHandle < 0) {
            Box.kUsb.usbUnlock(iDevice);
            throw new AssertionError("open: " + iHandle);
        }
    }

    /** 115200 bits a second, eight bits, no parity, one stop bit, no flow control. */
    UsbLine setUp() {
        assertEquals(0, Box.kUsb.usbSetSerial(iHandle, 115200, 0, 8, 1, false, false));
        return this;
    }

    void send(String text) {
        send(text.getBytes(StandardCharsets.ISO_8859_1));
    }

    void send(byte[] bytes) {
        for (int iDone = 0; iDone < bytes.length;) {
            int iCount = Math.min(kPiece, bytes.length - iDone);
            int iWritten = Box.kUsb.usbWrite(iHandle, bytes, iDone, iCount);
            assertTrue(iWritten > 0 && iWritten <= iCount, "usbWrite answered " + iWritten);
            iDone += iWritten;
        }
    }

    /** Reads as many bytes, however many pieces they come in. */
    byte[] receive(int iCount) {
        byte[] all = new byte[iCount];
        byte[] piece = new byte[kPiece];
        for (int iDone = 0; iDone < iCount;) {
            int iRead = Box.kUsb.usbRead(
                    iHandle, piece, 0, Math.min(kPiece, iCount - iDone), kPatienceSeconds);
            assertTrue(iRead > 0, "handle " + iHandle + ": usbRead answered " + iRead);
            System.arraycopy(piece, 0, all, iDone, iRead);
            iDone += iRead;
        }
        return all;
    }

    String receiveText(int iCount) {
        return new String(receive(iCount), StandardCharsets.ISO_8859_1);
    }

    /** Reads up to and with an ending, as a plug-in does: it looks whether there is anything. */
    String receiveUntil(String end) {
        StringBuilder text = new StringBuilder();
        byte[] piece = new byte[64];
        while (text.indexOf(end) < 0) {
            assertEquals(1, Box.kUsb.usbDataAvailable(iHandle), "after \"" + text + "\"");
            int iRead = Box.kUsb.usbRead(iHandle, piece, 0, piece.length, 0);
            assertTrue(iRead > 0, "usbRead answered " + iRead + " after \"" + text + "\"");
            text.append(new String(piece, 0, iRead, StandardCharsets.ISO_8859_1));
        }
        return text.toString();
    }

    /** Insists that nothing is left to read, by what comes back first from the echo. */
    void assertNothingWaits() {
        send("@");
        assertEquals("@", receiveText(1));
    }

    /** What the system's own tool says of the line's settings, each a word. */
    String settings() {
        String shown = Gateway.program("stty", "-F", node(iDevice), "-a").out;
        return " " + shown.replaceAll("[;\\s]+", " ");
    }

    /** The path of a device, as the gateway tells it. */
    static String node(int iDevice) {
        for (String line : Gateway.ctl("usb").split("\n")) {
            String[] columns = line.trim().split(" +");
            if (columns[0].equals(String.valueOf(iDevice))) {
                return columns[3];
            }
        }
        throw new AssertionError("no device " + iDevice);
    }

    /** Who has a device locked; "-" when nobody has. */
    static String owner(int iDevice) {
        return Arrays.stream(Gateway.ctl("usb").split("\n"))
                .map(line -> line.trim().split(" +"))
                .filter(columns -> columns[0].equals(String.valueOf(iDevice)))
                .map(columns -> columns[4])
                .findFirst()
                .orElse("no device");
    }

    void closeHandle() {
        if (bOpen) {
            bOpen = false;
            assertEquals(0, Box.kUsb.usbClose(iHandle), "close");
        }
    }

    @Override
    public void close() {
        closeHandle();
        Box.kUsb.usbUnlock(iDevice);
    }
}
