package com.veltra.domoline.deviceservice.kavo.wap.gulm.jni;

import com.veltra.domoline.deviceservice.kavo.wap.JNINativeMethods;
import com.veltra.domoline.deviceservice.kavo.wap.NativeLibrary;

/**
 * Has the gateway ping a host. A start answers at once; the result is asked for later, as often as
 * needed. Whether a second start may overlap a running ping is for the gateway to decide.
 *
 * <p>{@link JNINativeMethods#startThread()} must have been called once. The methods may be called
 * by any number of threads; each asks the process {@code app_m} once and blocks the calling thread
 * until the answer arrives, 5 seconds at most. A process that is not running makes them fail
 * without waiting. No method throws because of the gateway's state.
 */
public class IPPingDiagnosticsServiceJNI {
    static {
        NativeLibrary.load();
    }

    /** Creates a client of the service. It holds no state; one can serve all threads. */
    public IPPingDiagnosticsServiceJNI() {}

    /**
     * Starts a ping. Asks the process {@code app_m}, at most 5 seconds.
     *
     * <p>Example: {@code startIPPingDiagnostics(0x10101001, "www.example.com",
     * "{\"NumberOfRepetitions\":4,\"Timeout\":1000,\"DataBlockSize\":64,\"DSCP\":46}")} answers
     * {@code 0}.
     *
     * @param iWanIndex the WAN connection to ping through, as in the list of {@link
     *     com.veltra.domoline.deviceservice.kavo.wap.ozi.jni.AccessInfoQueryServiceJNI}; sent as it
     *     is
     * @param sHost name or address, from 1 to 255 bytes of UTF-8; not {@code null}
     * @param sParameters a JSON object with the integers {@code NumberOfRepetitions}, {@code
     *     Timeout}, {@code DataBlockSize} and {@code DSCP}, in the gateway's units; {@code null} or
     *     empty for none. What is missing, or is no integer (the text {@code "5"} is none), is sent
     *     as 0, and an integer beyond 32 bits as the nearest within them. The text must be JSON and
     *     nothing else: nothing may follow the value. JSON that is no object starts a ping with
     *     zeros, and {@code "null"} is refused
     * @return 0 when it has started, or another start status of the gateway's own, such as the
     *     simulated one's (1: a ping runs already; 2: the WAN connection is not up); -1 when the
     *     host is {@code null} or empty or the parameters are no JSON (nobody is asked then), or
     *     when the process doesn't answer or refuses; -2 when the host is longer than 255 bytes or
     *     begins with U+0000 (nobody is asked then)
     */
    public native int startIPPingDiagnostics(int iWanIndex, String sHost, String sParameters);

    /**
     * Gives the result of the ping. Asks the process {@code app_m}, at most 5 seconds.
     *
     * <p>Example answer of the simulated gateway, which is one line:
     *
     * <pre>{@code
     * {"Result":0,"State":"Complete","Host":"www.example.com","Address":"203.0.113.1","Sent":4,
     * "Received":4,"DataBlockSize":64,"DSCP":46,"MinimumMs":2,"AverageMs":3,"MaximumMs":5}
     * }</pre>
     *
     * <p>{@code State} is {@code Complete}. {@code Host} is what was pinged and {@code Address} its
     * address; {@code Sent} and {@code Received} count the requests and their replies, {@code
     * MinimumMs}, {@code AverageMs} and {@code MaximumMs} are how long these took, in milliseconds.
     * {@code DataBlockSize} and {@code DSCP} are the parameters of the start. Before a first ping,
     * the simulated gateway answers <code>{"Result":0,"State":"None"}</code>, and while one runs,
     * <code>{"Result":1}</code>.
     *
     * <p>The text is handed over as it stands: whether it is JSON is up to the process.
     *
     * @return the text as the process wrote it, at most 512 bytes; <code>{"Result":-1}</code> when
     *     it is empty, or the process doesn't answer or refuses; {@code null} when there is no
     *     memory for the text
     */
    public native String getIPPingDiagnosticsResult();
}
