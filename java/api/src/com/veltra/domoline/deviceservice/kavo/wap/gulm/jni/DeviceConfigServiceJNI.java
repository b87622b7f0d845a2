package com.veltra.domoline.deviceservice.kavo.wap.gulm.jni;

import com.veltra.domoline.deviceservice.kavo.wap.JNINativeMethods;
import com.veltra.domoline.deviceservice.kavo.wap.NativeLibrary;

/**
 * Switches the gateway's indicator lights.
 *
 * <p>{@link JNINativeMethods#startThread()} must have been called once. Any number of threads may
 * call. The method blocks the calling thread until the answer arrives, 5 seconds at most; a process
 * that is not running makes it fail without waiting. It does not throw because of the gateway's
 * state.
 */
public class DeviceConfigServiceJNI {
    static {
        NativeLibrary.load();
    }

    /** Creates a client of the service. It holds no state; one can serve all threads. */
    public DeviceConfigServiceJNI() {}

    /**
     * Switches the lights on or off. Asks the process {@code app_m}, at most 5 seconds.
     *
     * <p>Example: {@code setLedSwitch(0)} answers {@code 0}, and the lights are off.
     *
     * @param iSwitch 1 for on, 0 for off
     * @return 0; -1 for any other switch, of which nobody is told, and when the process doesn't
     *     answer or refuses
     */
    public native int setLedSwitch(int iSwitch);
}
