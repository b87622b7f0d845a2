package com.veltra.domoline.bench;

import com.veltra.domoline.deviceservice.kavo.wap.JNINativeMethods;
import com.veltra.domoline.deviceservice.kavo.wap.gulm.jni.DeviceInfoQueryServiceJNI;
import com.veltra.domoline.deviceservice.kavo.wap.gulm.jni.LANHostsInfoQueryServiceJNI;
import com.veltra.domoline.deviceservice.kavo.wap.ozi.jni.AccessInfoQueryServiceJNI;

/** The bridge itself: the service classes over the host platform. */
final class BridgePeer {
    private BridgePeer() {}

    /** Attaches the process to the message service; the floor uses it, too. */
    static void attach() {
        if (new JNINativeMethods().startThread() != 0) {
            throw new IllegalStateException("the gateway's message service can't be reached");
        }
    }

    static Call call(Work work) {
        DeviceInfoQueryServiceJNI device = new DeviceInfoQueryServiceJNI();
        switch (work) {
            case UP_TIME:
                return device::getDeviceUpTime;
            case MAC:
                return device::getDeviceMAC;
            case WAN_STATUS:
                AccessInfoQueryServiceJNI access = new AccessInfoQueryServiceJNI();
                return () -> access.getWANIfStatus(Work.kWan);
            default:
                LANHostsInfoQueryServiceJNI hosts = new LANHostsInfoQueryServiceJNI();
                return () -> hosts.getLANHostInfoByMAC(null);
        }
    }
}
