package com.veltra.domoline.osgi;

import com.google.gson.Gson;
import com.google.gson.JsonParseException;
import java.io.IOException;
import java.nio.charset.StandardCharsets;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.List;
import java.util.concurrent.TimeUnit;
import java.util.function.Predicate;
import java.util.stream.Collectors;
import java.util.stream.Stream;

/** A host that comes to the simulated home, for a bundle to have something to do. */
final class Visitor {
    private static final String kMac = "02:00:00:00:00:77";
    /** What it calls itself, and whom the sample refuses unless told otherwise. */
    static final String kName = "unwanted";
    /** The command that brings it, as a user would type it. */
    static final String kCommand = "host add " + kMac + " --name " + kName + " --interface SSID1";

    /** A host as the lists of the simulated home have it. */
    private static final class Host {
        private String mac;
        private String name;
    }

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

    /**
     * Waits until the gateway has a host on the MAC filter's list: this one, or another.
     *
     * @param nameOrMac the host; one that isn't there yet may come in the meantime
     * @param iSeconds how long at most
     */
    void awaitRefusal(String nameOrMac, int iSeconds) throws IOException, InterruptedException {
        long lEnd = System.nanoTime() + TimeUnit.SECONDS.toNanos(iSeconds);
        List<String> called = called(nameOrMac);
        while (called.isEmpty() || !macs("macFilter.lan", host -> true).containsAll(called)) {
            if (System.nanoTime() > lEnd) {
                throw new IOException((called.isEmpty() ? "no host on the LAN has been called "
                                                        : "nobody has black-listed ")
                        + nameOrMac + " in " + iSeconds
                        + " seconds; 'gatewayctl host list' shows who is there");
            }
            Thread.sleep(100);
            called = called(nameOrMac);
        }
    }

    private List<String> called(String nameOrMac) throws IOException, InterruptedException {
        return macs("hosts",
                host -> nameOrMac.equalsIgnoreCase(host.mac) || nameOrMac.equals(host.name));
    }

    private List<String> macs(String list, Predicate<Host> wanted)
            throws IOException, InterruptedException {
        return Stream.of(hosts(list))
                .filter(wanted)
                .map(host -> host.mac)
                .collect(Collectors.toList());
    }

    /** What a list holds; whoever changes the home may have put anything there. */
    private Host[] hosts(String list) throws IOException, InterruptedException {
        String problem = "'gatewayctl get " + list + "' shows no list of hosts; 'gatewayctl stop' and"
                + " 'gatewayctl start --fresh' begin with a new home";
        try {
            Host[] hosts = new Gson().fromJson(run("get", list), Host[].class);
            if (hosts == null
                    || Stream.of(hosts).anyMatch(host -> host == null || host.mac == null)) {
                throw new IOException(problem);
            }
            return hosts;
        } catch (JsonParseException e) {
            throw new IOException(problem, e);
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
