package com.veltra.domoline.systemtest;

import static org.junit.jupiter.api.Assertions.assertTrue;

import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;
import java.util.concurrent.ExecutionException;
import java.util.concurrent.ExecutorService;
import java.util.concurrent.Executors;
import java.util.concurrent.Future;
import java.util.concurrent.ThreadFactory;
import org.junit.jupiter.api.AfterAll;
import org.junit.jupiter.api.BeforeAll;
import org.junit.jupiter.api.Tag;
import org.junit.jupiter.api.Test;

/** A process that takes requests and never answers. */
@Tag("slow")
class TimeoutTest {
    private static final List<DeviceMethod> kAsked = List.of(DeviceMethod.INFO, DeviceMethod.MAC,
            DeviceMethod.UP_TIME, DeviceMethod.PASSWORD, DeviceMethod.SSID_NAME, DeviceMethod.OUI);

    @BeforeAll
    static void attach() {
        Gateway.attach();
    }

    @AfterAll
    static void clear() {
        Gateway.clear();
    }

    @Test
    void callsFailAfterThirtySecondsAndTheirThreadsGoOn()
            throws InterruptedException, ExecutionException {
        for (DeviceMethod method : kAsked) {
            Gateway.fault(method.process, method.iRpc, "--drop", "--times", "1");
        }
        Map<DeviceMethod, ExecutorService> threads = new LinkedHashMap<>();
        Map<DeviceMethod, Future<Long>> waited = new LinkedHashMap<>();
        ThreadFactory daemons = work -> {
            Thread thread = new Thread(work);
            thread.setDaemon(true);
            return thread;
        };
        for (DeviceMethod method : kAsked) {
            ExecutorService thread = Executors.newSingleThreadExecutor(daemons);
            threads.put(method, thread);
            waited.put(method, thread.submit(() -> timeOfFailure(method)));
        }
        for (DeviceMethod method : kAsked) {
            long lMilliseconds = waited.get(method).get();
            assertTrue(lMilliseconds >= 30000 && lMilliseconds <= 31000,
                    method + " failed after " + lMilliseconds + " ms");
            threads.get(method).submit(method::assertSucceeds).get();
            threads.get(method).shutdown();
        }
    }

    private static long timeOfFailure(DeviceMethod method) {
        long lBegin = System.nanoTime();
        method.assertFails();
        return (System.nanoTime() - lBegin) / 1_000_000;
    }
}
