package com.veltra.domoline.systemtest;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.veltra.domoline.deviceservice.kavo.wap.JNINativeMethods;
import java.io.IOException;
import java.nio.file.DirectoryStream;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.List;
import java.util.concurrent.ExecutionException;
import java.util.concurrent.ExecutorService;
import java.util.concurrent.Executors;
import java.util.concurrent.Future;
import org.junit.jupiter.api.Test;

/** Starting the message service. */
class StartThreadTest {
    @Test
    void startingAgainSucceedsAndStartsNothing() throws IOException {
        assertEquals(0, new JNINativeMethods().startThread());
        long lThreads = messageThreads();
        assertEquals(0, new JNINativeMethods().startThread());
        assertEquals(lThreads, messageThreads());
        DeviceMethod.MAC.assertSucceeds();
    }

    @Test
    void manyThreadsMayStartAtOnce() throws InterruptedException, ExecutionException, IOException {
        ExecutorService pool = Executors.newFixedThreadPool(8);
        try {
            List<Future<Integer>> answers = new ArrayList<>();
            for (int i = 0; i < 64; i++) {
                answers.add(pool.submit(() -> new JNINativeMethods().startThread()));
            }
            for (Future<Integer> answer : answers) {
                assertEquals(0, answer.get());
            }
        } finally {
            pool.shutdown();
        }
        if (!Boolean.getBoolean("wap.emulated")) {
            assertEquals(1, messageThreads());
        }
    }

    /** The native threads named as the message thread is; a name has room for 15 characters. */
    static long messageThreads() throws IOException {
        long lFound = 0;
        boolean bAnyThread = false;
        if (Boolean.getBoolean("wap.emulated")) {
            return 0; // a 32-bit program can't list this folder under the emulator
        }
        try (DirectoryStream<Path> tasks = Files.newDirectoryStream(Path.of("/proc/self/task"))) {
            for (Path task : tasks) {
                String name = nameOf(task);
                bAnyThread |= !name.isEmpty();
                lFound += "WAP_JNI_msgthread".startsWith(name) && name.length() == 15 ? 1 : 0;
            }
        }
        assertTrue(bAnyThread);
        return lFound;
    }

    /** A thread's name; empty when the thread has ended meanwhile. */
    private static String nameOf(Path task) {
        try {
            return Files.readString(task.resolve("comm")).trim();
        } catch (IOException e) {
            return "";
        }
    }
}
