package com.veltra.domoline.osgi;

import java.io.IOException;
import java.nio.charset.StandardCharsets;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.List;
import java.util.concurrent.TimeUnit;

/** A host that comes to the simulated home, for a bundle to have something to do. */
final class Visitor {
    private static final String kMac = "02:00:00:00:00:77";
    /** The command that brings it, as a user would type it. */
    static final String kCommand = "host add " + kMac + " --name unwanted --interface SSID1";

    private final String gatewayctl;
    private boolean bHere;

    /**
     * Makes one that is not there yet.
     *
     * @param gatewayctl the program
     */
    Visitor(String gatewayctl) {
        this.gatewayctl = gatewayctl;
    }

    /** Comes; not before a visitor that an unclean end has left is gone. */
    synchronized void come() throws IOException, InterruptedException {
        if (run("host", "list").contains(kMac)) {
            run("host", "remove", kMac);
        }
        run(kCommand.split(" "));
        bHere = true;
    }

    /** Waits so many seconds until the gateway has it on the MAC filter's list. */
    void awaitRefusal(int iSeconds) throws IOException, InterruptedException {
        long lEnd = System.nanoTime() + TimeUnit.SECONDS.toNanos(iSeconds);
        while (!run("get", "macFilter.lan").contains(kMac)) {
            if (System.nanoTime() > lEnd) {
                throw new IOException("nobody has black-listed the visitor " + kMac + " in "
                        + iSeconds + " seconds");
            }
            Thread.sleep(100);
        }
    }

    /** Leaves, if it has come. */
    synchronized void leave() throws IOException, InterruptedException {
        if (bHere) {
            bHere = false;
            run("host", "remove", kMac);
        }
    }

    private String run(String... words) throws IOException, InterruptedException {
        List<String> command = new ArrayList<>(List.of(gatewayctl));
        command.addAll(Arrays.asList(words));
        Process process =
                new ProcessBuilder(command).redirectError(ProcessBuilder.Redirect.INHERIT).start();
        process.getOutputStream().close();
        String output = new String(process.getInputStream().readAllBytes(), StandardCharsets.UTF_8);
        int iExit = process.waitFor();
        if (iExit != 0) {
            throw new IOException(String.join(" ", command) + " ended with " + iExit);
        }
        return output;
    }
}
