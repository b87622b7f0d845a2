package com.veltra.domoline.systemtest;

import static org.junit.jupiter.api.Assertions.assertTrue;

import java.util.ArrayList;
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
    private static final List<GatewayMethod> kPatient = List.of(DeviceMethod.INFO, DeviceMethod.MAC,
            DeviceMethod.UP_TIME, DeviceMethod.PASSWORD, DeviceMethod.SSID_NAME, DeviceMethod.OUI,
            BoxMethod.FTP_RIGHTS, BoxMethod.SAMBA_RIGHTS, BoxMethod.HTTP_RIGHTS, BoxMethod.STORAGE);
    private static final List<GatewayMethod> kHasty = List.of(LanMethod.ADDRESS,
            LanMethod.GATEWAY_NAME, LanMethod.ALL_HOSTS, LanMethod.STATISTICS,
            LanMethod.FILTER_MODE, LanMethod.SPEED_LIMITS, LanMethod.PORT_MAPPINGS,
            WanMethod.WAN_LIST, WanMethod.WAN_INFO, WanMethod.PON_PHYSICAL, WanMethod.IPV4_STATIC,
            WanMethod.IPV6_CURRENT, WanMethod.VLAN_BINDINGS, WanMethod.IPTV_STATUS, BoxMethod.POTS,
            TrafficMethod.MONITORED, TrafficMethod.MIRROR_RULES, TrafficMethod.FORWARD_RULES,
            TrafficMethod.HTTP_RULES, TrafficMethod.FLOW_MEMBERS, TrafficMethod.FLOW_STATS,
            TrafficMethod.FLOW_SPEED, TrafficMethod.FLOW_LIMIT, TrafficMethod.FLOW_DSCP,
            TrafficMethod.PING, TrafficMethod.DNS, TrafficMethod.TRACE_ROUTE);

    @BeforeAll
    static void attach() {
        Gateway.attach();
    }

    @AfterAll
    static void clear() {
        Gateway.clear();
    }

    @Test
    void callsFailAfterFiveOrThirtySecondsAndTheirThreadsGoOn()
            throws InterruptedException, ExecutionException {
        List<GatewayMethod> asked = new ArrayList<>(kHasty);
        asked.addAll(kPatient);
        for (GatewayMethod method : asked) {
            Gateway.fault(method.processes().get(0), method.rpc(), "--drop", "--times", "1");
        }
        Map<GatewayMethod, ExecutorService> threads = new LinkedHashMap<>();
        Map<GatewayMethod, Future<Long>> waited = new LinkedHashMap<>();
        ThreadFactory daemons = work -> {
            Thread thread = new Thread(work);
            thread.setDaemon(true);
            return thread;
        };
        for (GatewayMethod method : asked) {
            ExecutorService thread = Executors.newSingleThreadExecutor(daemons);
            threads.put(method, thread);
            waited.put(method, thread.submit(() -> timeOfFailure(method)));
        }
        for (GatewayMethod method : asked) {
            long lMilliseconds = waited.get(method).get();
            long lExpected = kHasty.contains(method) ? 5000 : 30000;
            assertTrue(lMilliseconds >= lExpected && lMilliseconds <= lExpected + 4000,
                    method + " failed after " + lMilliseconds + " ms");
            threads.get(method).submit(method::assertSucceeds).get();
            threads.get(method).shutdown();
        }
    }

    private static long timeOfFailure(GatewayMethod method) {
        long lBegin = System.nanoTime();
        method.assertFails();
        return (System.nanoTime() - lBegin) / 1_000_000;
    }
}
