package com.veltra.domoline.systemtest;

import java.io.IOException;
import java.io.OutputStream;
import java.nio.charset.StandardCharsets;
import java.util.concurrent.TimeUnit;
import java.util.regex.Matcher;
import java.util.regex.Pattern;

/** Types lines into a program on a terminal, and waits for what it shows. */
final class Typist implements AutoCloseable {
    private static final int kPatienceSeconds = 60;
    private static final String kPrompt = "wap> ";
    private static final String kColour = "\u001B\\[[0-9;]*m";

    private final Process program;
    private final StringBuilder screen = new StringBuilder();
    private int iSeen;

    Typist(Process program) {
        this.program = program;
        Thread reader = new Thread(this::read);
        reader.setDaemon(true);
        reader.start();
        await(Pattern.quote(kPrompt));
    }

    private void read() {
        byte[] piece = new byte[4096];
        try {
            for (int i = program.getInputStream().read(piece); i >= 0;
                    i = program.getInputStream().read(piece)) {
                synchronized (screen) {
                    screen.append(new String(piece, 0, i, StandardCharsets.ISO_8859_1));
                    screen.notifyAll();
                }
            }
        } catch (IOException e) {
            // It was killed; whoever waits says what is missing.
        }
    }

    /** Waits for a pattern behind what was seen before, and answers its first group, if any. */
    private String await(String pattern) {
        long lEnd = System.nanoTime() + TimeUnit.SECONDS.toNanos(kPatienceSeconds);
        synchronized (screen) {
            Matcher matcher = Pattern.compile(pattern).matcher(screen);
            while (!matcher.find(iSeen)) {
                long lLeft = TimeUnit.NANOSECONDS.toMillis(lEnd - System.nanoTime());
                if (lLeft <= 0) {
                    throw new AssertionError(pattern + " is not in " + screen.substring(iSeen));
                }
                try {
                    screen.wait(lLeft);
                } catch (InterruptedException e) {
                    throw new AssertionError(e);
                }
                matcher = Pattern.compile(pattern).matcher(screen);
            }
            iSeen = matcher.end();
            return matcher.groupCount() == 0 ? "" : matcher.group(1);
        }
    }

    void type(String line) {
        try {
            OutputStream keys = program.getOutputStream();
            keys.write((line + "\n").getBytes(StandardCharsets.US_ASCII));
            keys.flush();
        } catch (IOException e) {
            throw new AssertionError("can't type " + line, e);
        }
    }

    /** Types a call and waits for its number, and for what else must be shown before the prompt. */
    String answers(String line, String number, String... texts) {
        type(line);
        String answer = await(kColour + "(-?[0-9]+)" + kColour);
        if (!answer.matches(number)) {
            throw new AssertionError(line + " answered " + answer);
        }
        for (String text : texts) {
            await(Pattern.quote(text));
        }
        await(Pattern.quote(kPrompt));
        return answer;
    }

    /** Waits for the program's end and answers its exit code. */
    int end() {
        try {
            if (!program.waitFor(kPatienceSeconds, TimeUnit.SECONDS)) {
                throw new AssertionError("it doesn't end");
            }
            return program.exitValue();
        } catch (InterruptedException e) {
            throw new AssertionError(e);
        }
    }

    @Override
    public void close() {
        program.destroyForcibly();
    }
}
