package com.veltra.domoline.systemtest;

import com.veltra.domoline.deviceservice.kavo.wap.JNINativeMethods;
import java.io.File;
import java.io.IOException;
import java.io.InputStream;
import java.io.UncheckedIOException;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.StandardOpenOption;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.List;
import java.util.Map;
import java.util.Set;
import java.util.TreeMap;
import java.util.concurrent.TimeUnit;

/** The simulated gateway that the tests talk to, steered through its command line tool. */
final class Gateway {
    static final String kAppM = "app_m";
    static final String kGulm = "gulm";
    static final String kOsgiProxy = "osgi_proxy";
    static final String kCwmp = "cwmp";
    static final String kIgmp = "igmp";
    static final String kTarn = "tarn";
    static final String kUsbMngt = "usb_mngt";
    /** Seconds for what takes one or two on an idle machine. */
    private static final String kPatience = "60";
    /** How often those are asked that are too slow to tell what they do. */
    private static final int kStatusTries = 20;

    private Gateway() {}

    /** What a program did. */
    static final class Result {
        final int iExit;
        final String out;
        final String err;

        Result(int iExit, String out, String err) {
            this.iExit = iExit;
            this.out = out;
            this.err = err;
        }
    }

    /** Attaches this virtual machine to the gateway; once is enough, more does no harm. */
    static void attach() {
        int iStatus = new JNINativeMethods().startThread();
        if (iStatus != 0) {
            throw new AssertionError("startThread answered " + iStatus);
        }
    }

    /**
     * Has gatewayctl run by the driver script. A virtual machine under the emulator had better not
     * start hundreds of programs: now and then the new process hangs before it is one.
     */
    private static Result tool(String... words) {
        return ask("", words);
    }

    /** Has a program of this machine run by the driver script, and insists on its success. */
    static Result program(String name, String... words) {
        Result result = ask("!" + name + "\n", words);
        if (result.iExit != 0) {
            throw new AssertionError(name + " ended with " + result.iExit + ": " + result.err);
        }
        return result;
    }

    private static synchronized Result ask(String program, String[] words) {
        Path desk = Path.of(property("wap.gatewayctl"));
        StringBuilder lines = new StringBuilder(program);
        for (String word : words) {
            lines.append('.').append(word).append('\n'); // a line for an empty word, too
        }
        try {
            // Two pipes; each end waits for the other one.
            Files.writeString(desk.resolve("ask"), lines, StandardOpenOption.WRITE);
            String exit = Files.readString(desk.resolve("answer")).strip();
            return new Result(Integer.parseInt(exit), Files.readString(desk.resolve("out")),
                    Files.readString(desk.resolve("err")));
        } catch (IOException e) {
            throw new AssertionError("can't have gatewayctl run", e);
        }
    }

    /** Runs gatewayctl and insists on its success. */
    static String ctl(String... words) {
        Result result = tool(words);
        if (result.iExit != 0) {
            throw new AssertionError("gatewayctl " + String.join(" ", words) + " ended with "
                    + result.iExit + ": " + result.out + result.err);
        }
        return result.out;
    }

    /** A value of the home; lists and objects as JSON. */
    static String get(String path) {
        return ctl("get", path).strip();
    }

    static void set(String path, String value) {
        ctl("set", path, value);
    }

    static void kill(String process) {
        ctl("kill", process);
    }

    /** The process's id as it has noted it itself: asking them all takes long while one hangs. */
    static String idOf(String process) {
        try {
            return Files.readString(Leftovers.directory().resolve(process + ".pid")).strip();
        } catch (IOException e) {
            throw new UncheckedIOException(e);
        }
    }

    /** Starts a process and comes back when it answers. */
    static void start(String process) {
        ctl("start", process, "--timeout", kPatience);
    }

    /** Starts what doesn't run and comes back when all the processes answer. */
    static void startRest() {
        ctl("start", "--timeout", kPatience);
    }

    /** Ends all the processes and starts them again. */
    static void restart() {
        ctl("restart", "--timeout", kPatience);
    }

    /** Waits until all the processes answer. */
    static void await() {
        ctl("wait", "--timeout", kPatience);
    }

    /** Lets processes crash and brings them back. */
    static void crash(String... processes) {
        for (String process : processes) {
            kill(process);
        }
        revive(processes);
    }

    /** Starts these processes and comes back when they answer. */
    static void revive(String... processes) {
        ctl(words("start", processes, "--timeout", kPatience));
    }

    /**
     * Ends the gateway and starts it with the home as shipped.
     *
     * @param words for gatewayctl start: another home, or some of the processes
     */
    static void startOver(String... words) {
        ctl("stop");
        ctl(words("start", words, "--fresh", "--timeout", kPatience));
    }

    /** How many requests each process that runs has served. */
    static Map<String, Long> requests() {
        return new Status().requests();
    }

    /** The ids of the processes that run. */
    static Map<String, Long> processIds() {
        return new Status().numbers(2);
    }

    /** What the processes told of themselves at one time. */
    static final class Status {
        private final List<String[]> lines = new ArrayList<>();
        /** Whether some that run were too slow to tell. */
        final boolean bLacksSome;

        Status() {
            // It ends with 1 when one is down.
            String table = tool("status").out;
            bLacksSome = table.contains("not answering");
            for (String line : table.split("\n")) {
                String[] columns = line.trim().split(" +");
                if (columns.length == 7 && columns[1].equals("running")) {
                    lines.add(columns);
                }
            }
        }

        /** How many requests each has served. */
        Map<String, Long> requests() {
            return numbers(4);
        }

        /** Those that have requests under way. */
        Set<String> busy() {
            Map<String, Long> busy = numbers(6);
            busy.values().removeIf(lBusy -> lBusy == 0);
            return busy.keySet();
        }

        private Map<String, Long> numbers(int iColumn) {
            Map<String, Long> numbers = new TreeMap<>();
            lines.forEach(columns -> numbers.put(columns[0], Long.valueOf(columns[iColumn])));
            return numbers;
        }
    }

    /** Insists that none of the gateway's processes is asked anything meanwhile. */
    static void assertAsksNobody(Runnable calls) {
        Map<String, Long> before = requestsOfAll();
        calls.run();
        Map<String, Long> after = requestsOfAll();
        if (!before.equals(after)) {
            throw new AssertionError("requests before " + before + ", after " + after);
        }
    }

    /** The requests of all processes that run: one that is too slow to tell is asked again. */
    private static Map<String, Long> requestsOfAll() {
        Status status = new Status();
        for (int i = 0; status.bLacksSome && i < kStatusTries; i++) {
            status = new Status();
        }
        return status.requests();
    }

    private static String[] words(String verb, String[] others, String... more) {
        List<String> words = new ArrayList<>(List.of(verb));
        words.addAll(Arrays.asList(others));
        words.addAll(Arrays.asList(more));
        return words.toArray(new String[0]);
    }

    /** Lets the next calls of one RPC go wrong, until {@link #clear}. */
    static void fault(String process, int iRpc, String... what) {
        ctl(words("fault", new String[] {process, String.format("0x%08X", iRpc)}, what));
    }

    /**
     * Lets the k-th next request of one RPC be refused, and no other of the same process. The
     * refusal stands under no RPC; what is not to be refused has a fault of its own, which does
     * nothing but wait a millisecond.
     *
     * @param others what else is asked of the process before
     */
    static void refuseNth(String process, int iRpc, int k, int... others) {
        for (int iOther : others) {
            fault(process, iOther, "--delay", "1");
        }
        if (k > 1) {
            fault(process, iRpc, "--delay", "1", "--times", String.valueOf(k - 1));
        }
        ctl("fault", process, "any", "--code", "7", "--times", "1");
    }

    /** Whether the refusal of {@link #refuseNth} is still to come. */
    static boolean isRefusalLeft() {
        return ctl("faults").contains("code");
    }

    static void clear() {
        ctl("clear");
    }

    /** Runs a program without input to its end, a minute at most. */
    static Result run(ProcessBuilder builder) {
        return run(builder, new File("/dev/null"));
    }

    /** Runs a program that reads a file to its end, a minute at most. */
    static Result run(ProcessBuilder builder, File input) {
        try {
            Process process = builder.redirectInput(input).start();
            StringBuilder err = new StringBuilder();
            Thread drain = new Thread(() -> err.append(readAll(process.getErrorStream())));
            drain.start();
            String out = readAll(process.getInputStream());
            drain.join();
            if (!process.waitFor(60, TimeUnit.SECONDS)) {
                process.destroyForcibly();
                throw new AssertionError(builder.command() + " doesn't end");
            }
            return new Result(process.exitValue(), out, err.toString());
        } catch (IOException | InterruptedException e) {
            throw new AssertionError("can't run " + builder.command(), e);
        }
    }

    private static String readAll(InputStream stream) {
        try {
            return new String(stream.readAllBytes(), StandardCharsets.UTF_8);
        } catch (IOException e) {
            throw new AssertionError(e);
        }
    }

    /** A setting of the run, given by the driver script. */
    static String property(String name) {
        String value = System.getProperty(name);
        if (value == null) {
            throw new AssertionError("-D" + name + " is missing: run-system-tests gives it");
        }
        return value;
    }
}
