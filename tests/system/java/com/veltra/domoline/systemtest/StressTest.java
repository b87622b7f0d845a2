package com.veltra.domoline.systemtest;

import org.junit.jupiter.api.BeforeAll;
import org.junit.jupiter.api.Tag;
import org.junit.jupiter.api.Test;

/**
 * Sixteen threads calling all queries without a pause, while a process of the gateway dies and
 * comes back.
 */
@Tag("stress")
class StressTest {
    private static final int kThreads = 16;

    @BeforeAll
    static void attach() {
        Gateway.attach();
    }

    @Test
    void nothingFailsWhileTheGatewayIsUpAndNothingGrows() throws Exception {
        new LoadRun("stress", kThreads,
                iThread
                -> GatewayMethod.all(),
                (run, lMilliseconds) -> run.killAndRestart(Gateway.kOsgiProxy, lMilliseconds))
                .run(Long.getLong("wap.stress.seconds", 10L) * 1000);
    }
}
