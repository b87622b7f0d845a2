package com.veltra.domoline.systemtest;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertNull;
import static org.junit.jupiter.api.Assertions.assertTimeout;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.veltra.domoline.deviceservice.kavo.wap.gulm.jni.DeviceInfoQueryServiceJNI;
import java.time.Duration;
import java.util.List;
import java.util.stream.Collectors;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.extension.ExtendWith;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.MethodSource;
import org.junit.jupiter.params.provider.ValueSource;

/** What Java sees when the gateway's processes are away, refuse, or answer nonsense. */
@ExtendWith(AttachedGateway.class)
class FailureTest {
    static List<GatewayMethod> askingMethods() {
        return GatewayMethod.all()
                .stream()
                .filter(method -> !method.processes().isEmpty())
                .collect(Collectors.toList());
    }

    private static void fault(GatewayMethod method, String... what) {
        Gateway.fault(method.processes().get(0), method.rpc(), what);
    }

    @ParameterizedTest
    @ValueSource(strings = {Gateway.kOsgiProxy, Gateway.kCwmp, Gateway.kAppM, Gateway.kGulm,
            Gateway.kIgmp, Gateway.kTarn, Gateway.kUsbMngt})
    void killedProcessFailsItsMethodsUntilItIsBack(String process) {
        for (GatewayMethod method : GatewayMethod.all()) {
            method.assertSucceeds(); // and so leaves a connection behind that will break
        }
        Gateway.kill(process);
        try {
            for (GatewayMethod method : GatewayMethod.all()) {
                if (method.processes().contains(process)) {
                    assertTimeout(Duration.ofSeconds(5), method::assertFails);
                    assertTimeout(Duration.ofSeconds(5), method::assertFails);
                } else {
                    method.assertSucceeds();
                }
            }
        } finally {
            Gateway.start(process);
        }
        for (GatewayMethod method : GatewayMethod.all()) {
            method.assertSucceeds();
        }
    }

    @ParameterizedTest
    @MethodSource("askingMethods")
    void refusalIsTheDocumentedFailure(GatewayMethod method) {
        fault(method, "--code", "7", "--times", "1");
        method.assertFails();
        method.assertSucceeds();
    }

    @ParameterizedTest
    @MethodSource("askingMethods")
    void garbageIsHarmless(GatewayMethod method) {
        // What a random reply is answered with is as random; that Java goes on is the point.
        fault(method, "--garbage", "--times", "20");
        for (int i = 0; i < 20; i++) {
            method.call();
        }
        method.assertSucceeds();
    }

    @ParameterizedTest
    @MethodSource("askingMethods")
    void truncatedReplyIsHarmless(GatewayMethod method) {
        for (String length : new String[] {"0", "1", "3", "11", "17"}) {
            fault(method, "--truncate", length, "--times", "1");
            method.call();
            method.assertSucceeds();
        }
    }

    @Test
    void truncatedReplyLeavesTheRestEmpty() {
        Gateway.fault(
                Gateway.kOsgiProxy, DeviceMethod.INFO.rpc(), "--truncate", "8", "--times", "1");
        assertEquals("{\"Result\":0 , \"Vendor\":\"\", \"ProductCLass\":\"\", \"HardwareVer\":\"\","
                        + " \"FirmwareVer\":\"\", \"FlashSize\":262144, \"RamSize\":524288,"
                        + " \"MainChipClass\":\"\", \"NFC\":\"\"}",
                DeviceMethod.INFO.call());
        Gateway.fault(
                Gateway.kOsgiProxy, DeviceMethod.MAC.rpc(), "--truncate", "5", "--times", "1");
        assertEquals("02:A1", DeviceMethod.MAC.call());
        Gateway.fault(
                Gateway.kOsgiProxy, DeviceMethod.MAC.rpc(), "--truncate", "0", "--times", "1");
        assertNull(new DeviceInfoQueryServiceJNI().getDeviceMAC());
    }

    @Test
    void anEmptyTextIsNullButForTheGatewaysName() {
        for (LanMethod method : new LanMethod[] {LanMethod.ADDRESS, LanMethod.SPEED}) {
            fault(method, "--truncate", "0", "--times", "1");
            assertNull(method.call(), method.name());
        }
        fault(LanMethod.GATEWAY_NAME, "--truncate", "0", "--times", "1");
        assertEquals("", LanMethod.GATEWAY_NAME.call());
    }

    @Test
    void aFilterModeThatContradictsItselfIsNone() {
        // Of its two copies only the first is left.
        fault(LanMethod.FILTER_MODE, "--truncate", "8", "--times", "1");
        Gateway.set("macFilter.status", "1");
        try {
            LanMethod.FILTER_MODE.assertFails();
            assertEquals(1, LanMethod.FILTER_MODE.call());
        } finally {
            Gateway.set("macFilter.status", "0");
        }
    }

    @Test
    void slowAnswerIsWaitedFor() {
        Gateway.fault(
                Gateway.kOsgiProxy, DeviceMethod.MAC.rpc(), "--delay", "1500", "--times", "1");
        long lBegin = System.nanoTime();
        DeviceMethod.MAC.assertSucceeds();
        long lMilliseconds = (System.nanoTime() - lBegin) / 1_000_000;
        assertTrue(lMilliseconds >= 1500 && lMilliseconds < 10000, lMilliseconds + " ms");
    }
}
