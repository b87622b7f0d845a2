package com.veltra.domoline.deviceservice.kavo.wap.voip.jni;

import com.veltra.domoline.deviceservice.kavo.wap.JNINativeMethods;
import com.veltra.domoline.deviceservice.kavo.wap.NativeLibrary;

/**
 * Tells about the gateway's telephone ports.
 *
 * <p>{@link JNINativeMethods#startThread()} must have been called once. Any number of threads may
 * call. The method blocks the calling thread until the answer arrives, 5 seconds at most; a process
 * that is not running makes it fail without waiting. It does not throw because of the gateway's
 * state.
 */
public class VoIPInfoQueryServiceJNI {
    static {
        NativeLibrary.load();
    }

    /** Creates a client of the service. It holds no state; one can serve all threads. */
    public VoIPInfoQueryServiceJNI() {}

    /**
     * Tells the state of the telephone ports. Asks the process {@code app_m}, at most 5 seconds,
     * and passes on what it writes.
     *
     * <p>Example answer of the simulated gateway:
     *
     * <pre>{@code
     * {"Result":0,"List":[{"Name":"POTS1","Number":"5550101","Status":"idle"},
     *  {"Name":"POTS2","Number":"5550102","Status":"idle"}]}
     * }</pre>
     *
     * <p>The answer is one line. {@code Name} is the name of a telephone port, {@code Number} its
     * telephone number, and {@code Status} what it is doing, such as {@code idle}, {@code ringing}
     * or {@code talking}.
     *
     * <p>The text is handed over as it stands: whether it is JSON is up to the process.
     *
     * @return the text of the process as it is, 512 bytes of UTF-8 at most; {@code null} when the
     *     process doesn't answer, refuses or sends an empty text, or when memory runs out
     */
    public native String getPOTSInfo();
}
