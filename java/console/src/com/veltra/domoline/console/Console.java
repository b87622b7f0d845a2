package com.veltra.domoline.console;

import java.io.OutputStreamWriter;
import java.io.PrintWriter;
import java.nio.charset.StandardCharsets;
import java.util.Set;
import java.util.TreeSet;
import java.util.concurrent.Callable;
import picocli.CommandLine;
import picocli.CommandLine.Command;
import picocli.CommandLine.HelpCommand;

/**
 * The program. With a verb it does that and ends; without one it opens the interactive console, or,
 * when its input is no terminal, makes the tour.
 *
 * <p>Exit codes: 0 done, 1 a call failed or the gateway can't be reached, 2 a usage error.
 */
@Command(name = "wap-console", mixinStandardHelpOptions = true, version = "wap-console 1.0",
        description =
                {
                        "Calls the gateway's device services.",
                        "Without a COMMAND: the interactive console on a terminal, else the tour.",
                },
        synopsisSubcommandLabel = "[COMMAND]", exitCodeListHeading = "%nExit codes:%n",
        exitCodeList =
                {
                        "0:done",
                        "1:a call failed, or the gateway can't be reached",
                        "2:a usage error",
                },
        subcommands =
                {
                        Verbs.Services.class,
                        Verbs.Methods.class,
                        Verbs.Call.class,
                        Verbs.Tour.class,
                        Verbs.Quit.class,
                        HelpCommand.class,
                })
public final class Console implements Callable<Integer> {
    static final int kDone = 0;
    static final int kFailed = 1;
    static final int kUsage = 2;

    final Gateway gateway;
    final Palette palette;
    final PrintWriter out;
    final PrintWriter err;
    boolean bQuit;

    /**
     * Makes a console.
     *
     * @param catalog the services to offer
     * @param palette the colours of what is printed
     * @param out where answers go
     * @param err where complaints go
     */
    public Console(ServiceCatalog catalog, Palette palette, PrintWriter out, PrintWriter err) {
        this.gateway = new Gateway(catalog);
        this.palette = palette;
        this.out = out;
        this.err = err;
    }

    /**
     * Runs the program and ends the process.
     *
     * @param words the command line
     */
    public static void main(String[] words) {
        // Texts of the gateway are UTF-8, whatever the locale says.
        PrintWriter out =
                new PrintWriter(new OutputStreamWriter(System.out, StandardCharsets.UTF_8), false);
        PrintWriter err =
                new PrintWriter(new OutputStreamWriter(System.err, StandardCharsets.UTF_8), true);
        ServiceCatalog catalog = ServiceCatalog.scan(System.getProperty("java.class.path", ""));
        int iCode = new Console(catalog, Palette.forStandardOutput(), out, err).execute(words);
        out.flush();
        err.flush();
        System.exit(iCode);
    }

    /**
     * Carries out one command line.
     *
     * @param words a verb and its arguments; none for the default
     * @return the exit code
     */
    public int execute(String... words) {
        CommandLine line = commandLine();
        int iCode = line.execute(words);
        out.flush();
        return iCode;
    }

    private CommandLine commandLine() {
        CommandLine line = new CommandLine(this).setOut(out).setErr(err).setColorScheme(
                CommandLine.Help.defaultColorScheme(palette == Palette.COLOURED
                                ? CommandLine.Help.Ansi.ON
                                : CommandLine.Help.Ansi.OFF));
        // A negative number behind the method is an argument and no option.
        line.getSubcommands().get("call").setStopAtPositional(true);
        line.setExpandAtFiles(false);
        line.setParameterExceptionHandler(this::explain);
        return line;
    }

    private int explain(CommandLine.ParameterException reason, String[] words) {
        CommandLine where = reason.getCommandLine();
        boolean bVerbMissing = where.getCommand() == this && words.length > 0;
        String first = words.length > 0 ? words[0] : "";
        if (bVerbMissing && !first.startsWith("-")) {
            boolean bMethod = gateway.catalog().methods().stream().anyMatch(
                    method -> method.getName().equals(first));
            complain("there is no command '" + first + "'"
                    + (bMethod ? "; did you mean call " + first + "?"
                               : Suggestions.phrase(first, verbs())));
        } else {
            complain(reason.getMessage());
            where.usage(err);
        }
        return kUsage;
    }

    /**
     * Names the verbs.
     *
     * @return the names in order
     */
    Set<String> verbs() {
        return new TreeSet<>(commandLine().getSubcommands().keySet());
    }

    /**
     * Says on the error channel what went wrong.
     *
     * @param words the words
     */
    void complain(String words) {
        out.flush();
        err.println(palette.paint(palette.bad, words));
    }

    @Override
    public Integer call() {
        if (Palette.isTerminal(0) && Palette.isTerminal(1)) {
            return new Shell(this).run();
        }
        return execute("tour");
    }
}
