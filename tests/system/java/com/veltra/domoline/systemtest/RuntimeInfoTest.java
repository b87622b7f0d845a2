package com.veltra.domoline.systemtest;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.util.ArrayList;
import java.util.List;
import java.util.concurrent.ExecutionException;
import java.util.concurrent.ExecutorService;
import java.util.concurrent.Executors;
import java.util.concurrent.Future;
import java.util.regex.Matcher;
import java.util.regex.Pattern;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.extension.ExtendWith;

/** What the applications run on. */
@ExtendWith(AttachedGateway.class)
class RuntimeInfoTest {
    /** The Java that is on the path of this machine, in its own words. */
    private static String versionOutput() {
        return Gateway.program("java", "-version").err;
    }

    private static String found(String pattern, String text) {
        Matcher matcher = Pattern.compile(pattern, Pattern.MULTILINE).matcher(text);
        assertTrue(matcher.find(), text);
        return matcher.group(1);
    }

    private static String expected() {
        String output = versionOutput();
        return "{ \"Result\": 0, \"Name\": \"" + found("^([^(\\n]*VM )\\(", output)
                + "\", \"Version\": \"" + found("version \"([^\"]*)\"", output)
                + "\", \"Vendor\": \"" + (output.contains("OpenJDK ") ? "Oracle" : "") + "\" }";
    }

    @Test
    void theJavaOfThePathIsDescribed() {
        assertEquals(expected(), Box.kInfo.getJVMInfo());
        assertEquals(expected(), Box.kInfo.getJVMInfo());
    }

    @Test
    void theFrameworkIsDescribedToTheLetter() {
        assertEquals("{ \"Result\": 0, \"Name\": \"Felix OSGi\", \"Version\": \"4.4.0\","
                        + " \"Vendor\": \"Apache Software Foundation\" }",
                Box.kInfo.getOSGiInfo());
    }

    @Test
    void noneOfTheProcessesIsAsked() {
        Gateway.assertAsksNobody(() -> {
            Box.kInfo.getJVMInfo();
            Box.kInfo.getOSGiInfo();
        });
    }

    @Test
    void threadsTakeTurnsAndAllGetWholeAnswers() throws InterruptedException, ExecutionException {
        String expected = expected();
        ExecutorService pool = Executors.newFixedThreadPool(4);
        try {
            List<Future<String>> answers = new ArrayList<>();
            for (int i = 0; i < 8; i++) {
                answers.add(pool.submit(() -> Box.kInfo.getJVMInfo()));
            }
            for (Future<String> answer : answers) {
                assertEquals(expected, answer.get());
            }
        } finally {
            pool.shutdown();
        }
    }
}
