package com.veltra.domoline.console;

import java.io.PrintWriter;
import java.lang.reflect.Method;
import java.util.ArrayList;
import java.util.List;
import java.util.concurrent.Callable;
import picocli.CommandLine.Command;
import picocli.CommandLine.Option;
import picocli.CommandLine.Parameters;
import picocli.CommandLine.ParentCommand;

/** The console's verbs. Each answers the exit code that the program ends with when used alone. */
final class Verbs {
    private Verbs() {}

    /** What the verbs share: the way to the console they belong to. */
    abstract static class Verb implements Callable<Integer> {
        @Option(names = {"-h", "--help"}, usageHelp = true,
                description = "Show this help and leave.")
        boolean bHelp;

        @ParentCommand Console console;

        ServiceCatalog catalog() {
            return console.gateway.catalog();
        }

        PrintWriter out() {
            return console.out;
        }

        abstract int run() throws UsageException, Gateway.UnreachableException;

        @Override
        public Integer call() {
            try {
                return run();
            } catch (UsageException e) {
                console.complain(e.getMessage());
                return Console.kUsage;
            } catch (Gateway.UnreachableException e) {
                console.complain(e.getMessage());
                return Console.kFailed;
            } finally {
                console.out.flush();
            }
        }
    }

    @Command(name = "services", description = "List the service classes.")
    static final class Services extends Verb {
        @Override
        int run() throws UsageException {
            int iWidth = catalog().classNames().stream().mapToInt(String::length).max().orElse(1);
            for (String name : catalog().classNames()) {
                int iMethods = catalog().methodsOf(catalog().findClass(name)).size();
                out().printf("%-" + iWidth + "s %3d %s%n", name, iMethods,
                        iMethods == 1 ? "method" : "methods");
            }
            return Console.kDone;
        }
    }

    @Command(name = "methods", description = "List the methods of a service class.")
    static final class Methods extends Verb {
        @Parameters(paramLabel = "CLASS", description = "A class, as 'services' names it.")
        String name;

        @Override
        int run() throws UsageException {
            for (Method method : catalog().methodsOf(catalog().findClass(name))) {
                out().println(ServiceCatalog.signature(method));
            }
            return Console.kDone;
        }
    }

    @Command(name = "call",
            description = "Call a method and print its answer. Ends with 1 when the call fails.",
            footer = {"", "Arguments by type: numbers 10, -1, 0x1F; booleans true, false;",
                    "texts as they are, null for none, text:null for the text \"null\"; byte",
                    "arrays in hexadecimal, as 'text:AT\\r', or zeros:64 for room to read into;",
                    "other arrays a,b,c with \\, for a comma in an element, '' for an empty",
                    "array.", "", "Examples: call getDeviceInfo",
                    "          call DeviceInfoQueryServiceJNI.getCPUOccupancyRate 10"})
    static final class Call extends Verb {
        @Parameters(index = "0", paramLabel = "METHOD",
                description = "A method's name, or Class.method.")
        String name;

        @Parameters(
                index = "1..*", paramLabel = "ARG", description = "Its arguments, one word each.")
        List<String> words = new ArrayList<>();

        @Override
        int run() throws UsageException, Gateway.UnreachableException {
            Outcome outcome =
                    console.gateway.call(Arguments.bind(catalog().findMethods(name), words));
            out().println(outcome.describe(console.palette));
            if (!outcome.failed()) {
                return Console.kDone;
            }
            console.complain("The call failed. " + Gateway.kHint);
            return Console.kFailed;
        }
    }

    @Command(name = "tour",
            description = "Call every query method and show the answers; WAN connections asked for"
                    + " are the internet's, other numbers 10 and lists empty, methods that need a"
                    + " text are left out. Ends with 1 when a call fails.")
    static final class Tour extends Verb {
        @Override
        int run() throws Gateway.UnreachableException {
            int iCalled = 0;
            int iFailed = 0;
            int iLeftOut = 0;
            Palette palette = console.palette;
            console.gateway.start();
            for (Method method : console.gateway.queries()) {
                out().println(palette.paint(palette.strong, ServiceCatalog.qualifiedName(method)));
                Object[] values = Arguments.samples(method, console.gateway::internetWan);
                if (values == null) {
                    out().println("left out: needs arguments, " + ServiceCatalog.signature(method));
                    iLeftOut++;
                } else {
                    Outcome outcome = console.gateway.call(new Arguments.Call(method, values));
                    out().println(outcome.describe(palette));
                    out().println((outcome.failed() ? "FAILED in " : "in ") + outcome.milliseconds()
                            + " ms");
                    iCalled++;
                    iFailed += outcome.failed() ? 1 : 0;
                }
                out().println();
                out().flush();
            }
            out().println(iCalled + " methods, " + iFailed + " failed"
                    + (iLeftOut == 0 ? "" : ", " + iLeftOut + " left out"));
            if (iFailed > 0) {
                console.complain(Gateway.kHint);
            }
            return iFailed == 0 && iCalled > 0 ? Console.kDone : Console.kFailed;
        }
    }

    @Command(name = "quit", aliases = {"exit"}, description = "Leave the console.")
    static final class Quit extends Verb {
        @Override
        int run() {
            console.bQuit = true;
            return Console.kDone;
        }
    }
}
