package com.veltra.domoline.console;

import java.io.IOException;
import java.lang.reflect.Method;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.attribute.PosixFilePermissions;
import java.time.Instant;
import java.util.Collection;
import java.util.List;
import java.util.Map;
import java.util.TreeSet;
import java.util.regex.Pattern;
import java.util.stream.Collectors;
import org.jline.reader.Candidate;
import org.jline.reader.EndOfFileException;
import org.jline.reader.LineReader;
import org.jline.reader.LineReaderBuilder;
import org.jline.reader.ParsedLine;
import org.jline.reader.UserInterruptException;
import org.jline.reader.impl.DefaultParser;
import org.jline.reader.impl.history.DefaultHistory;
import org.jline.terminal.Terminal;
import org.jline.terminal.TerminalBuilder;

/** The interactive console: reads lines with completion and a history that outlives it. */
final class Shell {
    private static final String kPrompt = "wap> ";

    /**
     * A history without lines that name a password or who it belongs to, or a method that takes a
     * password.
     */
    private static final class DiscreetHistory extends DefaultHistory {
        private final Pattern secret;

        DiscreetHistory(ServiceCatalog catalog) {
            String methods = catalog.methods()
                                     .stream()
                                     .filter(ServiceCatalog::takesPassword)
                                     .map(method -> "|" + Pattern.quote(method.getName()))
                                     .collect(Collectors.joining());
            secret = Pattern.compile("password|username" + methods, Pattern.CASE_INSENSITIVE);
        }

        @Override
        public void add(Instant time, String line) {
            if (!secret.matcher(line).find()) {
                super.add(time, line);
            }
        }
    }

    private final Console console;

    Shell(Console console) {
        this.console = console;
    }

    /**
     * Reads and carries out lines until {@code quit} or the end of the input.
     *
     * @return the exit code: 0, or 1 when there is no terminal to be had
     */
    int run() {
        try (Terminal terminal = TerminalBuilder.builder().system(true).build()) {
            LineReader reader = reader(terminal, historyFile(System.getenv()));
            console.out.println("The gateway's device services. 'help' lists the commands, 'tour'");
            console.out.println("shows all answers, Tab completes, 'quit' leaves.");
            console.out.flush();
            while (!console.bQuit) {
                readAndExecute(reader);
            }
            saveHistory(reader);
            return Console.kDone;
        } catch (IOException e) {
            console.complain("The terminal can't be used: " + e.getMessage());
            return Console.kFailed;
        }
    }

    private void readAndExecute(LineReader reader) {
        try {
            String[] words = Words.split(reader.readLine(kPrompt));
            if (words.length > 0) {
                console.execute(words);
            }
        } catch (UserInterruptException e) {
            return; // Ctrl-C drops the line
        } catch (EndOfFileException e) {
            console.bQuit = true;
        }
    }

    /**
     * Makes what reads the lines.
     *
     * @param terminal where they are typed
     * @param history where they are kept
     * @return the reader
     */
    LineReader reader(Terminal terminal, Path history) {
        DefaultParser parser = new DefaultParser();
        parser.setEscapeChars(null); // a backslash belongs to the argument
        LineReader reader =
                LineReaderBuilder.builder()
                        .terminal(terminal)
                        .appName("wap-console")
                        .parser(parser)
                        .history(new DiscreetHistory(console.gateway.catalog()))
                        .completer((lineReader, line, candidates) -> complete(line, candidates))
                        .build();
        // So does an exclamation mark. Looking for lines of the history after one eats backslashes.
        reader.setOpt(LineReader.Option.DISABLE_EVENT_EXPANSION);
        try {
            // What was typed may hold secrets all the same: the folder is the user's alone.
            Files.createDirectories(history.getParent());
            Files.setPosixFilePermissions(
                    history.getParent(), PosixFilePermissions.fromString("rwx------"));
            reader.setVariable(LineReader.HISTORY_FILE, history);
        } catch (IOException e) {
            console.complain("The history is not kept: " + e.getMessage());
        }
        return reader;
    }

    private void saveHistory(LineReader reader) {
        try {
            reader.getHistory().save();
        } catch (IOException | IllegalStateException e) {
            console.complain("The history is not kept: " + e.getMessage());
        }
    }

    /**
     * Tells where the history is kept.
     *
     * @param environment the environment's variables
     * @return {@code wap-console/history} in the user's folder for state
     */
    static Path historyFile(Map<String, String> environment) {
        String state = environment.getOrDefault("XDG_STATE_HOME", "");
        Path folder = state.isEmpty() ? Path.of(System.getProperty("user.home"), ".local", "state")
                                      : Path.of(state);
        return folder.resolve("wap-console").resolve("history");
    }

    private void complete(ParsedLine line, List<Candidate> candidates) {
        completions(console, line.words().subList(0, line.wordIndex()))
                .forEach(name -> candidates.add(new Candidate(name)));
    }

    /**
     * Lists what can stand behind some words.
     *
     * @param console the console
     * @param before the words before the one to complete
     * @return the possible words
     */
    static Collection<String> completions(Console console, List<String> before) {
        ServiceCatalog catalog = console.gateway.catalog();
        Collection<String> names = new TreeSet<>();
        if (before.isEmpty()) {
            names.addAll(console.verbs());
        } else if (before.get(0).equals("methods") && before.size() == 1) {
            names.addAll(catalog.classNames());
        } else if (before.get(0).equals("help") && before.size() == 1) {
            names.addAll(console.verbs());
        } else if (before.get(0).equals("call") && before.size() == 1) {
            for (Method method : catalog.methods()) {
                names.add(method.getName());
                names.add(ServiceCatalog.qualifiedName(method));
            }
        } else if (before.get(0).equals("call")) {
            addValues(catalog, before, names);
        }
        return names;
    }

    private static void addValues(
            ServiceCatalog catalog, List<String> before, Collection<String> names) {
        int iArgument = before.size() - 2;
        try {
            for (Method method : catalog.findMethods(before.get(1))) {
                Class<?>[] types = method.getParameterTypes();
                if (iArgument < types.length && types[iArgument] == boolean.class) {
                    names.addAll(List.of("true", "false"));
                } else if (iArgument < types.length && !types[iArgument].isPrimitive()) {
                    names.add("null");
                }
            }
        } catch (UsageException e) {
            return; // no such method: nothing to offer
        }
    }
}
