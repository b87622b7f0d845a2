package com.veltra.domoline.systemtest;

import com.google.gson.JsonObject;
import java.nio.charset.StandardCharsets;
import java.util.Arrays;
import java.util.List;
import java.util.function.IntPredicate;
import java.util.function.Supplier;

/** Serial devices in a storm: stories from a plug-in's registration to its end. */
final class StormSerial extends StormPart {
    private static final String kPlugIn = "com.example.storm";
    private static final int kMost = 200;
    private static final String[] kQuestions = {"+CSQ", "+CPIN?", "+CREG?", "+CGMR"};
    private static final String[] kAnswers = {"+CSQ: 20,99", "+CPIN: READY", "+CREG: 0,1", "1.0"};

    /** An unlocking failed: the lock may still be there. */
    private boolean bMayBeLocked;

    private StormSerial() {
        super("serial ");
    }

    static List<StormPart> parts() {
        return List.of(new StormSerial());
    }

    /** The process forgets plug-ins and locks when it dies, so that each step may fail. */
    @Override
    void act() {
        int iDevice = oneIn(2) ? UsbLine.kModem : UsbLine.kEcho;
        step("usbRegister", () -> Natives.number(Box.kUsb, "usbRegister", kPlugIn, 1));
        if (bMayBeLocked) {
            unlockBoth();
        }
        if (step("usbLock", () -> Natives.number(Box.kUsb, "usbLock", iDevice))) {
            talk(iDevice);
        }
        boolean bUnlocked = step("usbUnlock", () -> Natives.number(Box.kUsb, "usbUnlock", iDevice));
        boolean bGone =
                step("usbUnregister", () -> Natives.number(Box.kUsb, "usbUnregister", kPlugIn));
        bMayBeLocked |= !bUnlocked && !bGone;
    }

    private void unlockBoth() {
        for (int iDevice : new int[] {UsbLine.kModem, UsbLine.kEcho}) {
            asked("usbUnlock",
                    ()
                            -> Natives.number(Box.kUsb, "usbUnlock", iDevice),
                    answer -> answer.equals(0) || answer.equals(-1), answer -> false);
        }
        bMayBeLocked = false;
    }

    private void talk(int iDevice) {
        int iHandle = number("usbOpen",
                () -> Natives.number(Box.kUsb, "usbOpen", iDevice), answer -> answer >= 0);
        if (iHandle < 0) {
            return;
        }
        try {
            boolean bReady = step("usbSetSerial",
                    ()
                            -> Natives.number(Box.kUsb, "usbSetSerial", iHandle, 115200, 0, 8, 1,
                                    false, false));
            if (bReady) {
                if (iDevice == UsbLine.kModem) {
                    int i = roll(kQuestions.length);
                    String question = "AT" + kQuestions[i] + "\r";
                    converse(iHandle, question, question + "\r\n" + kAnswers[i] + "\r\n\r\nOK\r\n");
                } else {
                    StringBuilder text = new StringBuilder();
                    for (int i = 1 + roll(kMost); i > 0; i--) {
                        text.append((char) roll(256));
                    }
                    converse(iHandle, text.toString(), text.toString());
                }
            }
        } finally {
            asked("usbClose",
                    ()
                            -> Natives.number(Box.kUsb, "usbClose", iHandle),
                    answer -> answer.equals(0), answer -> false);
        }
    }

    /** Sends a text and reads what must come; in trouble it may end at any time. */
    private void converse(int iHandle, String sent, String expected) {
        byte[] bytes = sent.getBytes(StandardCharsets.ISO_8859_1);
        byte[] wanted = expected.getBytes(StandardCharsets.ISO_8859_1);
        int iWritten = number("usbWrite",
                ()
                        -> Natives.number(Box.kUsb, "usbWrite", iHandle, bytes, 0, bytes.length),
                answer -> answer == bytes.length);
        byte[] piece = new byte[wanted.length];
        for (int iDone = 0; iWritten == bytes.length && iDone < wanted.length;) {
            int iLeft = wanted.length - iDone;
            boolean bThere =
                    number("usbDataAvailable",
                            ()
                                    -> Natives.number(Box.kUsb, "usbDataAvailable", iHandle),
                            answer -> answer == 1)
                    == 1;
            int iRead = !bThere ? -1
                                : number("usbRead",
                                        ()
                                                -> Natives.number(Box.kUsb, "usbRead", iHandle,
                                                        piece, 0, iLeft, 1),
                                        answer -> answer > 0 && answer <= iLeft);
            if (iRead <= 0) {
                return;
            }
            byte[] heard = Arrays.copyOf(piece, iRead);
            byte[] right = Arrays.copyOfRange(wanted, iDone, iDone + iRead);
            if (!Arrays.equals(heard, right)) {
                throw new AssertionError("heard " + Arrays.toString(heard) + " instead of "
                        + Arrays.toString(right));
            }
            iDone += iRead;
        }
    }

    /** A step that answers 0, or fails. */
    private boolean step(String what, Supplier<Integer> call) {
        return number(what, call, answer -> answer == 0) == 0;
    }

    /**
     * A step whose failures are -1, and -2 for what is busy or doesn't come; 0 ends a dead line.
     */
    private int number(String what, Supplier<Integer> call, IntPredicate success) {
        return (int) asked(what, call::get,
                answer
                -> success.test((int) answer),
                answer -> (int) answer <= 0 && (int) answer >= -2);
    }

    @Override
    void learn(JsonObject home) {
        bMayBeLocked = false;
    }

    @Override
    String leftInProcesses() {
        String list = Gateway.ctl("usb");
        boolean bLocked = list.lines().skip(1).anyMatch(
                line -> !line.isEmpty() && !line.strip().endsWith(" -"));
        return bLocked ? list : "";
    }
}
