package com.veltra.domoline.systemtest;

import java.io.ByteArrayOutputStream;
import java.io.IOException;
import java.io.OutputStream;
import java.io.PrintStream;
import java.nio.charset.StandardCharsets;
import java.util.List;
import java.util.concurrent.TimeUnit;
import java.util.stream.Collectors;

/** Listens to what is said on standard output, which gets it all the same. */
final class Listener implements AutoCloseable {
    private final PrintStream before = System.out;
    private final ByteArrayOutputStream heard = new ByteArrayOutputStream();

    Listener() {
        System.setOut(new PrintStream(new Both(), true, StandardCharsets.UTF_8));
    }

    private final class Both extends OutputStream {
        @Override
        public void write(int iByte) {
            heard.write(iByte);
            before.write(iByte);
        }

        @Override
        public void write(byte[] bytes, int iFrom, int iCount) {
            heard.write(bytes, iFrom, iCount);
            before.write(bytes, iFrom, iCount);
        }

        @Override
        public void flush() throws IOException {
            before.flush();
        }
    }

    /** What was said so far is of no interest. */
    void forget() {
        heard.reset();
    }

    /** The whole lines with this beginning. */
    List<String> lines(String beginning) {
        String text = heard.toString(StandardCharsets.UTF_8);
        return text.substring(0, text.lastIndexOf('\n') + 1)
                .lines()
                .filter(line -> line.startsWith(beginning))
                .collect(Collectors.toList());
    }

    /** Waits until a line with this beginning was said, and tells the line. */
    String await(String beginning) throws InterruptedException {
        long lEnd = System.nanoTime() + TimeUnit.SECONDS.toNanos(Patience.kSeconds);
        while (lines(beginning).isEmpty()) {
            if (System.nanoTime() > lEnd) {
                throw new AssertionError("nobody says '" + beginning + "', but:\n" + heard);
            }
            Thread.sleep(20);
        }
        return lines(beginning).get(0);
    }

    @Override
    public void close() {
        System.setOut(before);
    }
}
