package com.veltra.domoline.systemtest;

import com.veltra.domoline.deviceservice.kavo.wap.gulm.jni.DnsDiagnosticsServiceJNI;
import com.veltra.domoline.deviceservice.kavo.wap.gulm.jni.IPPingDiagnosticsServiceJNI;
import com.veltra.domoline.deviceservice.kavo.wap.gulm.jni.TraceRouteDiagnosticsServiceJNI;
import com.veltra.domoline.deviceservice.kavo.wap.gulm.jni.TrafficDetailProcessServiceJNI;
import com.veltra.domoline.deviceservice.kavo.wap.gulm.jni.TrafficForwardServiceJNI;
import com.veltra.domoline.deviceservice.kavo.wap.gulm.jni.TrafficMirrorServiceJNI;
import com.veltra.domoline.deviceservice.kavo.wap.gulm.jni.TrafficMonitoringConfigServiceJNI;
import com.veltra.domoline.deviceservice.kavo.wap.gulm.jni.TrafficQoSServiceJNI;
import java.util.function.BooleanSupplier;

/** The services that look at traffic, and how answers about it are written. */
final class Traffic {
    static final TrafficMonitoringConfigServiceJNI kMonitor =
            new TrafficMonitoringConfigServiceJNI();
    static final TrafficMirrorServiceJNI kMirror = new TrafficMirrorServiceJNI();
    static final TrafficForwardServiceJNI kForward = new TrafficForwardServiceJNI();
    static final TrafficDetailProcessServiceJNI kHttp = new TrafficDetailProcessServiceJNI();
    static final TrafficQoSServiceJNI kFlows = new TrafficQoSServiceJNI();
    static final IPPingDiagnosticsServiceJNI kPing = new IPPingDiagnosticsServiceJNI();
    static final DnsDiagnosticsServiceJNI kDns = new DnsDiagnosticsServiceJNI();
    static final TraceRouteDiagnosticsServiceJNI kTraceRoute =
            new TraceRouteDiagnosticsServiceJNI();

    /** The failure of rules and flows. */
    static final String kFailed = "{ \"Result\": -1 }";
    /** The failure of the registry and of the diagnoses. */
    static final String kFailedWithoutBlanks = "{\"Result\":-1}";
    static final String kNoAddresses = "{\"Result\":0, \"List\":[]}";
    static final String kNoRules = "{\"Result\":0,\"List\":[]}";
    static final String kNotRun = "{\"Result\":0,\"State\":\"None\"}";
    /** The only flow that the home has as it is shipped. */
    static final int kFlow = 10;

    private static final int kPatienceSeconds = 60;
    private static final int kPauseMilliseconds = 50;

    private Traffic() {}

    /** Waits until something has happened, a minute at most; whether it has is for the caller. */
    static void await(BooleanSupplier happened) {
        long lEnd = System.nanoTime() + kPatienceSeconds * 1_000_000_000L;
        while (!happened.getAsBoolean() && System.nanoTime() < lEnd) {
            try {
                Thread.sleep(kPauseMilliseconds);
            } catch (InterruptedException e) {
                throw new AssertionError(e);
            }
        }
    }

    /** An entry of the list of a flow's members. */
    static String member(String address, String port) {
        return "{ \"RemoteAddress\": \"" + address + "\", \"RemotePort\": \"" + port + "\" }";
    }
}
