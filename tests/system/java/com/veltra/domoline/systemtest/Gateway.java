package com.veltra.domoline.systemtest;

import com.veltra.domoline.deviceservice.kavo.wap.JNINativeMethods;
import java.io.File;
import java.io.IOException;
import java.io.InputStream;
import java.nio.charset.StandardCharsets;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.List;
import java.util.concurrent.TimeUnit;

/** The simulated gateway that the tests talk to, steered through its command line tool. */
final class Gateway {
    static final String kOsgiProxy = "osgi_proxy";
    static final String kCwmp = "cwmp";

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

    /** Runs gatewayctl and insists on its success. */
    static String ctl(String... words) {
        List<String> command = new ArrayList<>();
        command.add(property("wap.gatewayctl"));
        command.addAll(Arrays.asList(words));
        Result result = run(new ProcessBuilder(command));
        if (result.iExit != 0) {
            throw new AssertionError("gatewayctl " + String.join(" ", words) + " ended with "
                    + result.iExit + ": " + result.out + result.err);
        }
        return result.out;
    }

    static void set(String path, String value) {
        ctl("set", path, value);
    }

    static void kill(String process) {
        ctl("kill", process);
    }

    /** Starts a process and comes back when the whole gateway answers. */
    static void start(String process) {
        ctl("start", process);
        ctl("wait");
    }

    /** Lets the next calls of one RPC go wrong, until {@link #clear}. */
    static void fault(String process, int iRpc, String... what) {
        List<String> words = new ArrayList<>();
        words.addAll(Arrays.asList("fault", process, String.format("0x%08X", iRpc)));
        words.addAll(Arrays.asList(what));
        ctl(words.toArray(new String[0]));
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
