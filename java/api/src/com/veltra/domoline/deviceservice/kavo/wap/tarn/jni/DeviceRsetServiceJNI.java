package com.veltra.domoline.deviceservice.kavo.wap.tarn.jni;

import com.veltra.domoline.deviceservice.kavo.wap.JNINativeMethods;
import com.veltra.domoline.deviceservice.kavo.wap.NativeLibrary;

/**
 * Resets the gateway. The class's name has no e in "Rset"; the native library knows it by this name
 * only.
 *
 * <p>{@link JNINativeMethods#startThread()} must have been called once. Any number of threads may
 * call. The method blocks the calling thread until the answer arrives, 30 seconds at most; a
 * process that is not running makes it fail without waiting. It does not throw because of the
 * gateway's state.
 */
public class DeviceRsetServiceJNI {
    static {
        NativeLibrary.load();
    }

    /** Creates a client of the service. It holds no state; one can serve all threads. */
    public DeviceRsetServiceJNI() {}

    /**
     * Resets the gateway: it restarts. Asks the process {@code osgi_proxy}, at most 30 seconds,
     * which decides when the restart begins; the answer may come before it, or never.
     *
     * <p>Example answer: {@code 0}
     *
     * @return 0; 1, not -1, when the process doesn't answer or refuses
     */
    public native int reset();
}
