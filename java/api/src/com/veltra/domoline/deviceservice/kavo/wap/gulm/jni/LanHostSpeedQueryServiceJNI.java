package com.veltra.domoline.deviceservice.kavo.wap.gulm.jni;

import com.veltra.domoline.deviceservice.kavo.wap.JNINativeMethods;
import com.veltra.domoline.deviceservice.kavo.wap.NativeLibrary;

/**
 * How fast a host on the LAN is at the moment.
 *
 * <p>{@link JNINativeMethods#startThread()} must have been called once. The method may be called by
 * any number of threads; it asks one process of the gateway and blocks the calling thread until the
 * answer arrives, 5 seconds at most. A process that is not running makes it fail without waiting.
 * It doesn't throw because of the gateway's state.
 */
public class LanHostSpeedQueryServiceJNI {
    static {
        NativeLibrary.load();
    }

    /** Creates a client of the service. It holds no state; one can serve all threads. */
    public LanHostSpeedQueryServiceJNI() {}

    /**
     * Tells the current speed of a host. Asks the process {@code app_m}, at most 5 seconds.
     *
     * <p>Example: {@code getLANHostSpeed("02:A1:B2:00:20:01")} answers, in the simulated gateway
     *
     * <pre>{@code
     * {"Result":0,"UpSpeed":120,"DownSpeed":2400}
     * }</pre>
     *
     * <p>The process writes the answer, and its members are the process's own: here {@code UpSpeed}
     * and {@code DownSpeed} are what the host sends and receives at the moment, in the gateway's
     * unit.
     *
     * <p>The text is handed over as it stands: whether it is JSON is up to the process.
     *
     * @param sMac the host's MAC address as {@code app_m} writes it, for example {@code
     *     02:A1:B2:00:20:01}; neither {@code null} nor empty
     * @return what the process wrote, 128 bytes at most; <code>{"Result":-1}</code> (no blanks)
     *     when the argument is {@code null} or empty, or when the process doesn't answer or
     *     refuses; {@code null} when it wrote nothing, or when there is no memory for the text
     */
    public native String getLANHostSpeed(String sMac);
}
