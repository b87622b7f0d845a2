package com.veltra.domoline.bench;

import java.nio.ByteBuffer;
import java.nio.charset.StandardCharsets;

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

    /** The conversion alone, of the bytes of a direct buffer. */
    private static native String text(ByteBuffer utf8);

    /** Makes a Java text of bytes that C has already, and nothing else. */
    static Call conversion(String text) {
        byte[] bytes = text.getBytes(StandardCharsets.UTF_8);
        ByteBuffer utf8 = ByteBuffer.allocateDirect(bytes.length).put(bytes);
        return () -> text(utf8);
    }

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
