package com.veltra.domoline.bench;

/**
 * The least that can be done: one request, and the conversions in the order in which they have to
 * be, in C.
 */
final class FloorPeer {
    static {
        System.loadLibrary("bench_floor");
    }

    private FloorPeer() {}

    static native int upTime();

    static native String mac();

    static native String wanStatus(int wan);

    static native String hosts();

    static Call call(Work work) {
        switch (work) {
            case UP_TIME:
                return FloorPeer::upTime;
            case MAC:
                return FloorPeer::mac;
            case WAN_STATUS:
                return () -> wanStatus(Work.kWan);
            default:
                return FloorPeer::hosts;
        }
    }
}
