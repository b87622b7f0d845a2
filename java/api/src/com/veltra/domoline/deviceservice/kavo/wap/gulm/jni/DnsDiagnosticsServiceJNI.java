package com.veltra.domoline.deviceservice.kavo.wap.gulm.jni;

import com.veltra.domoline.deviceservice.kavo.wap.JNINativeMethods;
import com.veltra.domoline.deviceservice.kavo.wap.NativeLibrary;

/**
 * Has the gateway resolve a name. A start answers at once; the result is asked for later, as often
 * as needed. Whether a second start may overlap a running test is for the gateway to decide.
 *
 * <p>{@link JNINativeMethods#startThread()} must have been called once. The methods may be called
 * by any number of threads; each asks the process {@code app_m} once and blocks the calling thread
 * until the answer arrives, 5 seconds at most. A process that is not running makes them fail
 * without waiting. No method throws because of the gateway's state.
 */
public class DnsDiagnosticsServiceJNI {
    static {
        NativeLibrary.load();
    }

    /** Creates a client of the service. It holds no state; one can serve all threads. */
    public DnsDiagnosticsServiceJNI() {}

    /**
     * Starts the resolving of a name. Asks the process {@code app_m}, at most 5 seconds.
     *
     * <p>Example: {@code startDnsDiagnostics(0x10101001, "www.example.com", "192.0.2.53",
     * "retries=2")} answers {@code 0}.
     *
     * @param iWanIndex the WAN connection to ask through, as in the list of {@link
     *     com.veltra.domoline.deviceservice.kavo.wap.ozi.jni.AccessInfoQueryServiceJNI}; sent as it
     *     is
     * @param sHost the name, from 1 to 255 bytes of UTF-8; not {@code null}
     * @param sDnsServers the DNS servers to ask, in the gateway's words; neither {@code null} nor
     *     empty; what is beyond 511 bytes is cut off
     * @param sParameters parameters in the gateway's words, which are not looked at, at most 511
     *     bytes; {@code null} or empty for none
     * @return 0 when it has started, or another start status of the gateway's own, such as the
     *     simulated one's (1: a test runs already; 2: the WAN connection is not up); -1 when the
     *     host or the servers are missing, or the host or the parameters too long (nobody is asked
     *     then), or when the process doesn't answer or refuses
     */
    public native int startDnsDiagnostics(
            int iWanIndex, String sHost, String sDnsServers, String sParameters);

    /**
     * Gives the result of the test. Asks the process {@code app_m}, at most 5 seconds.
     *
     * <p>Example answer of the simulated gateway, which is one line:
     *
     * <pre>{@code
     * {"Result":0,"State":"Complete","Host":"www.example.com","Servers":"192.0.2.53",
     * "Addresses":["203.0.113.1"],"Parameters":"retries=2"}
     * }</pre>
     *
     * <p>{@code State} is {@code Complete}. {@code Host} is the name that was resolved and {@code
     * Addresses} are its addresses; {@code Servers} and {@code Parameters} are those of the start.
     * Before a first test, the simulated gateway answers <code>{"Result":0,"State":"None"}</code>,
     * and while one runs, <code>{"Result":1}</code>.
     *
     * <p>The text is handed over as it stands: whether it is JSON is up to the process.
     *
     * @return the text as the process wrote it; an object with nothing but the process's status,
     *     such as <code>{"Result":7}</code>, when there is no text yet; <code>{"Result":-1}</code>
     *     when the process doesn't answer or refuses, the text is empty or can't be read, or memory
     *     runs out; {@code null} when there is no memory for the text
     */
    public native String getDnsDiagnosticsResult();
}
