package com.veltra.domoline.systemtest;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.veltra.domoline.deviceservice.kavo.wap.JNINativeMethods;
import java.io.BufferedReader;
import java.io.IOException;
import java.io.InputStreamReader;
import java.io.PrintStream;
import java.io.UncheckedIOException;
import java.nio.charset.StandardCharsets;
import java.util.ArrayList;
import java.util.List;
import java.util.concurrent.CompletableFuture;
import java.util.concurrent.ExecutionException;
import java.util.concurrent.TimeUnit;
import java.util.concurrent.TimeoutException;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.extension.ExtendWith;

/** Plug-ins in two virtual machines. */
@ExtendWith(AttachedGateway.class)
class UsbOtherProcessTest {
    private static final String kMeter = "com.example.meter";
    private static final String kTheirs = "com.example.theirs";
    /** Generous: under an emulator, on a busy machine, the other one is slow to start. */
    private static final int kPatienceSeconds = 180;

    /** The other virtual machine's program: a call a line, and its answer a line. */
    static final class OtherMachine {
        private OtherMachine() {}

        /** Is told a method's name and its argument in each line. */
        public static void main(String[] arguments) throws IOException {
            BufferedReader calls = new BufferedReader(
                    new InputStreamReader(System.in, StandardCharsets.US_ASCII));
            for (String call = calls.readLine(); call != null; call = calls.readLine()) {
                String[] words = call.split(" ", 2);
                System.out.println("answer " + answer(words[0], words[1]));
            }
        }

        private static int answer(String method, String argument) {
            switch (method) {
                case "start":
                    return new JNINativeMethods().startThread();
                case "register":
                    return Box.kUsb.usbRegister(argument, 9);
                case "lock":
                    return Box.kUsb.usbLock(Integer.parseInt(argument));
                case "unlock":
                    return Box.kUsb.usbUnlock(Integer.parseInt(argument));
                case "open":
                    return Box.kUsb.usbOpen(Integer.parseInt(argument));
                default:
                    throw new IllegalArgumentException(method);
            }
        }
    }

    private Process machine;
    private PrintStream calls;
    private BufferedReader answers;

    @BeforeEach
    void startTheOther() throws IOException {
        assertEquals(0, Box.kUsb.usbRegister(kMeter, 1));
        List<String> command = new ArrayList<>();
        if (Boolean.getBoolean("wap.emulated")) {
            command.addAll(List.of(System.getenv("WAP_EMULATOR").split(" ")));
        }
        command.addAll(List.of(System.getProperty("java.home") + "/bin/java", "-Xmx32m",
                "-XX:+UseSerialGC", "-XX:TieredStopAtLevel=1", "-XX:ReservedCodeCacheSize=24m",
                "-Djava.library.path=" + System.getProperty("java.library.path"), "-cp",
                System.getProperty("java.class.path"), OtherMachine.class.getName()));
        machine = new ProcessBuilder(command)
                          .redirectError(ProcessBuilder.Redirect.INHERIT)
                          .start();
        calls = new PrintStream(machine.getOutputStream(), true, StandardCharsets.US_ASCII);
        answers = new BufferedReader(
                new InputStreamReader(machine.getInputStream(), StandardCharsets.US_ASCII));
        assertEquals(1, theirs("start", ""), "one virtual machine attaches, and that is this one");
        assertEquals(0, theirs("register", kTheirs), "which this needs not");
    }

    @AfterEach
    void endTheOther() throws InterruptedException {
        kill();
        assertEquals(0, Box.kUsb.usbUnregister(kMeter));
    }

    private void kill() throws InterruptedException {
        machine.destroyForcibly().waitFor();
    }

    private int theirs(String method, Object argument) {
        calls.println(method + " " + argument);
        // The reader ends when the machine does, which is killed after each test.
        CompletableFuture<String> line = CompletableFuture.supplyAsync(this::nextLine);
        try {
            String answer = line.get(kPatienceSeconds, TimeUnit.SECONDS);
            if (answer == null || !answer.startsWith("answer ")) {
                throw new AssertionError("the other machine says " + answer);
            }
            return Integer.parseInt(answer.substring(7));
        } catch (InterruptedException | ExecutionException | TimeoutException e) {
            throw new AssertionError("the other machine's " + method, e);
        }
    }

    private String nextLine() {
        try {
            return answers.readLine();
        } catch (IOException e) {
            throw new UncheckedIOException(e);
        }
    }

    @Test
    void whatOneHasLockedIsBusyForTheOther() {
        assertEquals(0, theirs("lock", UsbLine.kEcho));
        assertEquals(String.valueOf(machine.pid()), UsbLine.owner(UsbLine.kEcho));
        assertEquals(UsbLine.kBusy, Box.kUsb.usbLock(UsbLine.kEcho));
        assertEquals(UsbLine.kBusy, Box.kUsb.usbOpen(UsbLine.kEcho));
        assertEquals(-1, Box.kUsb.usbUnlock(UsbLine.kEcho), "it is not ours to give");
        try (UsbLine modem = new UsbLine(UsbLine.kModem).setUp()) {
            assertEquals(UsbLine.kBusy, theirs("lock", UsbLine.kModem));
            assertEquals(UsbLine.kBusy, theirs("open", UsbLine.kModem));
            modem.send("AT\r");
            assertEquals("AT\r\r\nOK\r\n", modem.receiveUntil("OK\r\n"));
        }
        assertTrue(theirs("open", UsbLine.kEcho) >= 0);
        assertEquals(0, theirs("unlock", UsbLine.kEcho));
        assertEquals(0, theirs("lock", UsbLine.kModem), "given back by the other one");
        try (UsbLine echo = new UsbLine(UsbLine.kEcho)) {
            echo.send("ours");
            assertEquals("ours", echo.receiveText(4));
        }
    }

    @Test
    void aNameBelongsToWhoHasRegisteredIt() {
        assertEquals(-1, Box.kUsb.usbRegister(kTheirs, 1));
        assertEquals(-1, Box.kUsb.usbUnregister(kTheirs));
        assertEquals(-1, theirs("register", kMeter));
    }

    @Test
    void whatADeadMachineHadIsFree() throws InterruptedException {
        assertEquals(0, theirs("lock", UsbLine.kEcho));
        assertTrue(theirs("open", UsbLine.kEcho) >= 0);
        assertEquals(UsbLine.kBusy, Box.kUsb.usbLock(UsbLine.kEcho));
        kill();
        try (UsbLine echo = new UsbLine(UsbLine.kEcho).setUp()) {
            echo.send("ours");
            assertEquals("ours", echo.receiveText(4));
        }
        assertEquals(0, Box.kUsb.usbRegister(kTheirs, 1), "its name is free, too");
        assertEquals(0, Box.kUsb.usbUnregister(kTheirs));
    }
}
