package com.veltra.domoline.osgi;

import com.veltra.domoline.shared.RuntimeDirectory;
import java.io.FileDescriptor;
import java.io.FileOutputStream;
import java.io.IOException;
import java.io.PrintStream;
import java.nio.charset.StandardCharsets;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.HashMap;
import java.util.List;
import java.util.Map;
import java.util.concurrent.Callable;
import java.util.concurrent.TimeUnit;
import java.util.stream.Collectors;
import org.osgi.framework.Bundle;
import org.osgi.framework.BundleException;
import picocli.CommandLine;
import picocli.CommandLine.Command;
import picocli.CommandLine.Option;
import picocli.CommandLine.Parameters;

/**
 * The program. Runs bundles in an OSGi framework; without any, the sample, to which it sends a
 * visitor.
 *
 * <p>Where things are is told by the script that starts it, in system properties.
 */
@Command(name = "wap-osgi", mixinStandardHelpOptions = true, version = "wap-osgi 1.0",
        description =
                {
                        "Runs bundles in an OSGi framework that has the device services and Gson,"
                                + " against the simulated gateway.",
                        "Without a BUNDLE: the sample bundle, and a visitor for it to black-list.",
                        "On a terminal they run until Enter or Ctrl-C, else for some seconds.",
                },
        exitCodeListHeading = "%nExit codes:%n",
        exitCodeList =
                {
                        "0:done",
                        "1:a bundle can't be installed, started or stopped, or the sample has"
                                + " not done its work",
                        "2:a usage error",
                })
public final class Launcher implements Callable<Integer> {
    private static final int kFailed = 1;
    private static final int kDefaultSeconds = 3;

    @Option(names = "-D", paramLabel = "NAME=VALUE",
            description = "what bundles get for the property NAME, such as sample.unwanted")
    private final Map<String, String> properties = new HashMap<>();

    @Option(names = "--seconds", paramLabel = "N",
            description = "run for so long, on a terminal, too; without one 3")
    private Integer seconds;

    @Option(names = "--patience", paramLabel = "N",
            description = "give the sample so many seconds to black-list its visitor, or whom"
                    + " sample.unwanted names; without one 60")
    private int iPatience = 60;

    @Parameters(paramLabel = "BUNDLE", description = "jars of bundles, which are started in order")
    private final List<Path> bundles = new ArrayList<>();

    private volatile boolean bSignalled;
    private final Visitor visitor = new Visitor(setting("gatewayctl"));

    private Launcher() {}

    /**
     * Runs the program and ends the process.
     *
     * @param words the command line
     */
    public static void main(String[] words) {
        // Texts of the gateway are UTF-8, whatever the locale says.
        System.setOut(new PrintStream(
                new FileOutputStream(FileDescriptor.out), true, StandardCharsets.UTF_8));
        System.setErr(new PrintStream(
                new FileOutputStream(FileDescriptor.err), true, StandardCharsets.UTF_8));
        Launcher launcher = new Launcher();
        System.exit(new CommandLine(launcher)
                            .setExecutionExceptionHandler(launcher::explain)
                            .setHelpFactory(Launcher::help)
                            .execute(words));
    }

    /** Values are understood behind a blank and behind '='; -D=NAME=VALUE would be hard to read. */
    private static CommandLine.Help help(
            CommandLine.Model.CommandSpec command, CommandLine.Help.ColorScheme colors) {
        command.parser().separator(" "); // by now the words are parsed
        return new CommandLine.Help(command, colors);
    }

    private int explain(Exception reason, CommandLine line, CommandLine.ParseResult words)
            throws Exception {
        if (bSignalled) {
            return kFailed; // what was going on was cut short
        }
        if (!(reason instanceof BundleException || reason instanceof IOException)) {
            throw reason;
        }
        complain(reason);
        return kFailed;
    }

    /** What a bundle has thrown is inside what the framework throws. */
    private static void complain(Throwable reason) {
        System.err.println("wap-osgi: " + reason.getMessage());
        for (Throwable t = reason.getCause(); t != null; t = t.getCause()) {
            System.err.println("    " + t);
        }
    }

    private static String setting(String name) {
        return System.getProperty("wap.osgi." + name);
    }

    @Override
    public Integer call() throws BundleException, IOException, InterruptedException {
        Path storage = RuntimeDirectory.find().resolve("osgi");
        try (BundleHost host = new BundleHost(storage, properties)) {
            Thread end = new Thread(() -> end(host), "end");
            Runtime.getRuntime().addShutdownHook(end); // for Ctrl-C and other signals
            show(host);
        } finally {
            visitor.leave();
        }
        return 0;
    }

    /** The process ends as soon as this returns. Without a signal nothing is left to do here. */
    private void end(BundleHost host) {
        bSignalled = true;
        try {
            host.close();
            visitor.leave();
        } catch (BundleException | IOException | InterruptedException e) {
            complain(e);
        }
    }

    private void show(BundleHost host) throws BundleException, IOException, InterruptedException {
        boolean bSample = bundles.isEmpty();
        List<Path> jars = new ArrayList<>();
        for (String library : setting("libraries").split(":")) {
            jars.add(Path.of(library));
        }
        jars.addAll(bSample ? List.of(Path.of(setting("sample"))) : bundles);
        List<Bundle> installed = new ArrayList<>();
        for (Path jar : jars) {
            installed.add(host.install(jar));
        }
        say(host.name() + " with "
                + installed.stream().map(BundleHost::nameOf).collect(Collectors.joining(", ")));
        for (Bundle bundle : installed) {
            bundle.start();
        }
        boolean bTimed = seconds != null || System.console() == null;
        if (!bTimed) {
            say("Enter ends it.");
        }
        if (bSample) {
            say("A host joins the LAN, as with: gatewayctl " + Visitor.kCommand);
            visitor.come();
            String unwanted = host.property("sample.unwanted");
            visitor.awaitRefusal(unwanted == null ? Visitor.kName : unwanted, iPatience);
        }
        if (bTimed) {
            TimeUnit.SECONDS.sleep(seconds == null ? kDefaultSeconds : seconds);
        } else {
            System.in.read(); // a terminal gives whole lines
        }
        say("Stopping");
    }

    private static void say(String line) {
        System.out.println("[osgi] " + line);
    }
}
