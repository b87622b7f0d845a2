package com.veltra.domoline.console;

import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;

/** The colours of what is printed; none of them when the output is no terminal. */
public enum Palette {
    /** No colours, for files and pipes. */
    PLAIN("", "", "", "", "", ""),
    /** Colours by the escape sequences that every terminal knows. */
    COLOURED("\u001B[36m", "\u001B[32m", "\u001B[33m", "\u001B[31m", "\u001B[1m", "\u001B[0m");

    final String key;
    final String text;
    final String number;
    final String bad;
    final String strong;
    final String end;

    Palette(String key, String text, String number, String bad, String strong, String end) {
        this.key = key;
        this.text = text;
        this.number = number;
        this.bad = bad;
        this.strong = strong;
        this.end = end;
    }

    /**
     * Chooses for the process's standard output. The environment variable {@code NO_COLOR} and a
     * terminal of type {@code dumb} switch colours off.
     *
     * @return the palette
     */
    public static Palette forStandardOutput() {
        String noColour = System.getenv("NO_COLOR");
        boolean bWanted = noColour == null || noColour.isEmpty();
        return bWanted && !"dumb".equals(System.getenv("TERM")) && isTerminal(1) ? COLOURED : PLAIN;
    }

    /**
     * Tells whether a descriptor is a terminal. The virtual machine's own test answers for input
     * and output together, and differently from version to version.
     *
     * @param iDescriptor 0 for standard input, 1 for standard output
     * @return true for a terminal
     */
    static boolean isTerminal(int iDescriptor) {
        try {
            String target =
                    Files.readSymbolicLink(Path.of("/proc/self/fd/" + iDescriptor)).toString();
            return target.matches("/dev/(pts/\\d+|tty.*|console)");
        } catch (IOException e) {
            return false;
        }
    }

    /**
     * Paints a text.
     *
     * @param colour one of this palette's colours
     * @param words the text
     * @return the text between the colour's sequences
     */
    String paint(String colour, String words) {
        return colour + words + end;
    }
}
