package com.veltra.domoline.deviceservice.kavo.wap.gulm.jni;

import com.veltra.domoline.deviceservice.kavo.wap.JNINativeMethods;
import com.veltra.domoline.deviceservice.kavo.wap.NativeLibrary;

/**
 * Puts traffic into flows. A flow is known by its number; its members are remote addresses and
 * ports, and it has counters, current speeds, a speed limit in each direction and a DSCP mark.
 *
 * <p>Which flows there are, which limits and marks they take, and the units of speeds and limits
 * are for the gateway to know: numbers are handed on as they are.
 *
 * <p>{@link JNINativeMethods#startThread()} must have been called once. The methods may be called
 * by any number of threads; each asks the process {@code gulm} once and blocks the calling thread
 * until the answer arrives, 5 seconds at most. A process that is not running makes them fail
 * without waiting. No method throws because of the gateway's state.
 */
public class TrafficQoSServiceJNI {
    static {
        NativeLibrary.load();
    }

    /** Creates a client of the service. It holds no state; one can serve all threads. */
    public TrafficQoSServiceJNI() {}

    /**
     * Puts the traffic towards an address and port into a flow. Asks the process {@code gulm}, at
     * most 5 seconds.
     *
     * <p>Example: {@code addTrafficToFlow("198.51.100.7", "443", 1)} answers {@code 0}.
     *
     * @param sRemoteAddress the remote address, at most 255 bytes of UTF-8; {@code null} and an
     *     empty text are both sent as an empty address
     * @param sRemotePort the remote port, at most 11 bytes; neither {@code null} nor empty
     * @param iFlow the flow, from -99 to 999: this request has room for three characters
     * @return 0, or -1 when there is no port, or a text or the flow is longer than described
     *     (nobody is asked then), or when the process doesn't answer or refuses
     */
    public native int addTrafficToFlow(String sRemoteAddress, String sRemotePort, int iFlow);

    /**
     * Takes the traffic towards an address and port out of a flow. Asks the process {@code gulm},
     * at most 5 seconds.
     *
     * <p>Example: {@code deleteTrafficFromFlow("198.51.100.7", "443", 1)} answers {@code 0}.
     *
     * @param sRemoteAddress as for {@link #addTrafficToFlow(String, String, int)}
     * @param sRemotePort as for {@link #addTrafficToFlow(String, String, int)}
     * @param iFlow as for {@link #addTrafficToFlow(String, String, int)}
     * @return 0, or -1 when there is no port, or a text or the flow is longer than described
     *     (nobody is asked then), or when the process doesn't answer or refuses
     */
    public native int deleteTrafficFromFlow(String sRemoteAddress, String sRemotePort, int iFlow);

    /**
     * Takes all traffic out of a flow. Asks the process {@code gulm}, at most 5 seconds.
     *
     * <p>Example: {@code deleteAllTrafficFromFlow(1)} answers {@code 0}.
     *
     * @param iFlow the flow; sent as it is
     * @return 0, or -1 when the process doesn't answer or refuses
     */
    public native int deleteAllTrafficFromFlow(int iFlow);

    /**
     * Lists the traffic that is in a flow. Asks the process {@code gulm}, at most 5 seconds.
     *
     * <p>Example: {@code getTrafficInfoByFlow(1)} answers, in one line
     *
     * <pre>{@code
     * { "Result": 0, "List": [ { "RemoteAddress": "198.51.100.7", "RemotePort": "443" },
     *   { "RemoteAddress": "", "RemotePort": "53" } ] }
     * }</pre>
     *
     * <p>{@code RemoteAddress} and {@code RemotePort} are what {@link #addTrafficToFlow(String,
     * String, int)} was given.
     *
     * <p>A flow without members answers with the failure, not with an empty list. A member for
     * which the list cannot grow is left out of it, and so are members for which the gateway's
     * table is too short.
     *
     * @param iFlow the flow; sent as it is
     * @return the list; <code>{ "Result": -1 }</code> (with blanks) when the flow has no members,
     *     when the process doesn't answer or refuses, when its table can't be read, when the answer
     *     reaches 297 bytes for each member and 297 more, or when memory runs out; {@code null}
     *     when there is no memory for the text
     */
    public native String getTrafficInfoByFlow(int iFlow);

    /**
     * Tells how many bytes a flow has carried. Asks the process {@code gulm}, at most 5 seconds.
     *
     * <p>Example: {@code getStatsByFlow(1)} answers
     *
     * <pre>{@code
     * {"Result":0,"UsStats":4294967301,"DsStats":18446744073709551615}
     * }</pre>
     *
     * <p>{@code UsStats} and {@code DsStats} are the bytes in upstream and in downstream direction,
     * from 0 to 2<sup>64</sup> - 1, which a Java {@code long} can't hold.
     *
     * @param iFlow the flow; sent as it is
     * @return the bytes; <code>{ "Result": -1 }</code> (with blanks) when the process doesn't
     *     answer or refuses; {@code null} when there is no memory for the text
     */
    public native String getStatsByFlow(int iFlow);

    /**
     * Tells a flow's current speeds. Asks the process {@code gulm}, at most 5 seconds.
     *
     * <p>Example: {@code getSpeedByFlow(1)} answers
     *
     * <pre>{@code
     * {"Result":0,"upSpeed":512,"downSpeed":20480}
     * }</pre>
     *
     * <p>{@code upSpeed} and {@code downSpeed} are the speeds in upstream and in downstream
     * direction. The keys begin with small letters, unlike those of {@link
     * #getSpeedLimitByFlow(int)}.
     *
     * @param iFlow the flow; sent as it is
     * @return the speeds; <code>{ "Result": -1 }</code> (with blanks) when the process doesn't
     *     answer or refuses; {@code null} when there is no memory for the text
     */
    public native String getSpeedByFlow(int iFlow);

    /**
     * Tells a flow's speed limits. Asks the process {@code gulm}, at most 5 seconds.
     *
     * <p>Example: {@code getSpeedLimitByFlow(1)} answers
     *
     * <pre>{@code
     * {"Result":0,"UpSpeed":1024,"DownSpeed":40960}
     * }</pre>
     *
     * <p>{@code UpSpeed} and {@code DownSpeed} are the limits in upstream and in downstream
     * direction. The keys begin with capital letters, unlike those of {@link #getSpeedByFlow(int)}.
     *
     * @param iFlow the flow; sent as it is
     * @return the limits; <code>{ "Result": -1 }</code> (with blanks) when the process doesn't
     *     answer or refuses; {@code null} when there is no memory for the text
     */
    public native String getSpeedLimitByFlow(int iFlow);

    /**
     * Limits a flow's speeds. Asks the process {@code gulm}, at most 5 seconds.
     *
     * <p>Example: {@code setSpeedLimitByFlow(1, 1024, 40960)} answers {@code 0}.
     *
     * @param iFlow the flow; sent as it is
     * @param iUpLimit the limit in upstream direction; sent as it is
     * @param iDownLimit the limit in downstream direction; likewise
     * @return 0, or -1 when the process doesn't answer or refuses
     */
    public native int setSpeedLimitByFlow(int iFlow, int iUpLimit, int iDownLimit);

    /**
     * Tells a flow's DSCP mark. Asks the process {@code gulm}, at most 5 seconds.
     *
     * <p>Example: {@code getDSCPRemarkByFlow(1)} answers {@code 46}.
     *
     * @param iFlow the flow; sent as it is
     * @return the mark, or -1 when the process doesn't answer or refuses
     */
    public native int getDSCPRemarkByFlow(int iFlow);

    /**
     * Sets the DSCP mark of a flow's traffic. Asks the process {@code gulm}, at most 5 seconds.
     *
     * <p>Example: {@code setDSCPRemarkByFlow(1, 46)} answers {@code 0}.
     *
     * @param iFlow the flow; sent as it is
     * @param iDscp the mark; sent as it is
     * @return 0, or -1 when the process doesn't answer or refuses
     */
    public native int setDSCPRemarkByFlow(int iFlow, int iDscp);
}
