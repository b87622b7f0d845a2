package com.veltra.domoline.deviceservice.kavo.wap.gulm.jni;

import com.veltra.domoline.deviceservice.kavo.wap.JNINativeMethods;
import com.veltra.domoline.deviceservice.kavo.wap.NativeLibrary;

/**
 * Has the gateway divert (forward) traffic to a collector: what a host at home sends or receives,
 * or what goes to or comes from a remote address and port. {@link TrafficMirrorServiceJNI} copies
 * traffic in the same way.
 *
 * <p>The gateway keeps the rules and numbers them, and it decides which addresses and protocols it
 * accepts; they are handed to it as they are. No text may be longer than its field: a longer one is
 * refused and never cut. Lengths are in bytes of UTF-8.
 *
 * <p>{@link JNINativeMethods#startThread()} must have been called once. The methods may be called
 * by any number of threads. Each asks the gateway's process {@code gulm} once and waits for the
 * answer, 5 seconds at most; when it is not running the method fails without waiting. No method
 * throws because of the gateway's state.
 */
public class TrafficForwardServiceJNI {
    static {
        NativeLibrary.load();
    }

    /** Creates a client of the service. It holds no state; one can serve all threads. */
    public TrafficForwardServiceJNI() {}

    /**
     * Adds a rule. Asks {@code gulm}, at most 5 seconds. Unlike a mirror rule it has no direction.
     *
     * <p>Example: {@code addForwardRule("203.0.113.80", "80", "TCP", "00:11:22:33:44:55",
     * "192.168.1.100", 9000)} answers {@code 8}.
     *
     * @param sRemoteAddress the remote address, at most 255 bytes; null or empty for any
     * @param sRemotePort the remote port, 1 to 11 bytes
     * @param sProtocol the protocol in the gateway's words, 1 to 3 bytes
     * @param sHostMAC the MAC address of the host, at most 17 bytes; null or empty for any
     * @param sForwardToIP the collector's IP address, at most 39 bytes; null or empty for none,
     *     which the gateway may refuse
     * @param iForwardToPort the collector's port; a number that is not between -9999 and 99999 is
     *     refused, any other is sent as it is
     * @return the rule's number; -1 when a required text is missing or empty, when a text is too
     *     long or can't be converted, or the port is refused (nobody is asked then); when the
     *     gateway refuses the rule; or when it doesn't answer or tells no number
     */
    public native int addForwardRule(String sRemoteAddress, String sRemotePort, String sProtocol,
            String sHostMAC, String sForwardToIP, int iForwardToPort);

    /**
     * Deletes a rule. Asks {@code gulm}, at most 5 seconds.
     *
     * <p>Example: {@code deleteForwardRule(8)} answers {@code 4}, say.
     *
     * @param iRuleInst the rule's number; -1 stands for all rules, as in {@link
     *     #deleteAllForwardRule()}
     * @return a number of the gateway's own, handed on as it is; -1 when it refuses or doesn't
     *     answer
     */
    public native int deleteForwardRule(int iRuleInst);

    /**
     * Deletes all rules. Asks {@code gulm}, at most 5 seconds.
     *
     * <p>Example: {@code deleteAllForwardRule()} answers {@code 4}, say.
     *
     * @return a number of the gateway's own, handed on as it is; -1 when it refuses or doesn't
     *     answer
     */
    public native int deleteAllForwardRule();

    /**
     * Lists the rules. Asks {@code gulm}, at most 5 seconds.
     *
     * <p>Example answer:
     *
     * <pre>{@code
     * { "Result": 0, "List": [ { "RemoteAddress": "203.0.113.80", "RemotePort": "80",
     *   "Protocol": "TCP", "HostMAC": "00:11:22:33:44:55", "ForwardToIP": "192.168.1.100",
     *   "ForwardToPort": 9000 }, { "RemoteAddress": "", "RemotePort": "0", "Protocol": "UDP",
     *   "HostMAC": "", "ForwardToIP": "", "ForwardToPort": 9001 } ] }
     * }</pre>
     *
     * <p>The answer is one line. {@code RemoteAddress} and {@code RemotePort} are the remote side
     * of the traffic, {@code Protocol} its protocol and {@code HostMAC} the host at home; {@code
     * ForwardToIP} and {@code ForwardToPort} are where it is diverted to. What a rule leaves open
     * is an empty text. The rules' numbers are not told. A collector's port that the gateway tells
     * as something else than a number is listed as that of the rule before it, 0 with the first;
     * one above 2147483647 is listed as a negative number, less by 4294967296.
     *
     * @return the list; <code>{"Result":0,"List":[]}</code> (no blanks) when there are no rules; a
     *     failure otherwise: <code>{ "Result": -1 }</code> when the gateway refuses or doesn't
     *     answer, when its table can't be read or has more rules than an answer of 16 MiB has room
     *     for, or when memory runs out; <code>{ "Result": 1 }</code> when the answer reaches 512
     *     bytes for each rule and 512 more. When reading the table fails with a code of at most two
     *     characters, that code is told in the place of -1, such as <code>{ "Result": 42 }</code>;
     *     {@code null} when there is no memory for the text
     */
    public native String getForwardRuleInfo();
}
