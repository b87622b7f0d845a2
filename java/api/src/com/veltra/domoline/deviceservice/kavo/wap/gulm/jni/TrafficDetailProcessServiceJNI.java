package com.veltra.domoline.deviceservice.kavo.wap.gulm.jni;

import com.veltra.domoline.deviceservice.kavo.wap.JNINativeMethods;
import com.veltra.domoline.deviceservice.kavo.wap.NativeLibrary;

/**
 * Has the gateway pick out HTTP traffic, of a host at home or with a remote address and port, by
 * the request's method, the reply's status code and by headers.
 *
 * <p>The gateway keeps the rules and numbers them, and it decides which addresses, directions and
 * headers it accepts; they are handed to it as they are. No text may be longer than its field: a
 * longer one is refused and never cut. Lengths are in bytes of UTF-8.
 *
 * <p>{@link JNINativeMethods#startThread()} must have been called once. The methods may be called
 * by any number of threads. Each asks the gateway's process {@code gulm} once and waits for the
 * answer, 5 seconds at most; when it is not running the method fails without waiting. No method
 * throws because of the gateway's state.
 */
public class TrafficDetailProcessServiceJNI {
    static {
        NativeLibrary.load();
    }

    /** Creates a client of the service. It holds no state; one can serve all threads. */
    public TrafficDetailProcessServiceJNI() {}

    /**
     * Adds a rule. Asks {@code gulm}, at most 5 seconds.
     *
     * <p>Each of the three lists travels as one text, with commas between its elements. Null and
     * empty elements are left out; a list without any other, and null, is an empty text. Each
     * element takes local references of the virtual machine, which grants so many to one call;
     * lists with more elements together are refused.
     *
     * <p>Example: {@code addHTTPTrafficProcessRule("203.0.113.80", 80, "UP", "00:11:22:33:44:55",
     * new String[] {"GET", "POST"}, new String[] {"200"}, new String[] {"Host", "User-Agent"})}
     * answers {@code 9}.
     *
     * @param sRemoteAddress the remote address, at most 255 bytes; null or empty for any
     * @param iRemotePort the remote port; sent as it is
     * @param sDirection the direction in the gateway's words, 1 to 4 bytes
     * @param sHostMAC the MAC address of the host, at most 17 bytes; null or empty for any
     * @param asMethods the request methods, at most 61 bytes with the commas
     * @param asStatusCodes the status codes of the replies, at most 253 bytes with the commas
     * @param asHeaders the headers, at most 253 bytes with the commas
     * @return the rule's number; -1 when the direction is missing or empty, when a text or list is
     *     too long, has too many elements or can't be converted (nobody is asked then); when the
     *     gateway refuses the rule; or when it doesn't answer or tells no number
     */
    public native int addHTTPTrafficProcessRule(String sRemoteAddress, int iRemotePort,
            String sDirection, String sHostMAC, String[] asMethods, String[] asStatusCodes,
            String[] asHeaders);

    /**
     * Deletes a rule. Asks {@code gulm}, at most 5 seconds.
     *
     * <p>Example: {@code deleteHTTPTrafficProcessRule(9)} answers {@code 0}.
     *
     * @param iRuleInst the rule's number, {@code RuleInst} in the list; -1 stands for all rules, as
     *     in {@link #deleteAllHTTPTrafficProcessRule()}
     * @return 0; -1 when the gateway refuses or doesn't answer
     */
    public native int deleteHTTPTrafficProcessRule(int iRuleInst);

    /**
     * Deletes all rules. Asks {@code gulm}, at most 5 seconds.
     *
     * <p>Example: {@code deleteAllHTTPTrafficProcessRule()} answers {@code 0}.
     *
     * @return 0; -1 when the gateway refuses or doesn't answer
     */
    public native int deleteAllHTTPTrafficProcessRule();

    /**
     * Lists the rules. Asks {@code gulm}, at most 5 seconds.
     *
     * <p>Example answer:
     *
     * <pre>{@code
     * { "Result": 0, "List": [ { "RemoteAddress": "203.0.113.80", "RemotePort": "80",
     *   "Direction": "UP", "HostMAC": "00:11:22:33:44:55", "MethodList": [ "GET,POST" ],
     *   "StatuscodeList": [ "200" ], "HeaderList": [ "Host,User-Agent" ], "RuleInst": 9 },
     *   { "RemoteAddress": "", "RemotePort": "0", "Direction": "DOWN", "HostMAC": "",
     *   "MethodList": [ "" ], "StatuscodeList": [ "" ], "HeaderList": [ "" ], "RuleInst": 12 } ] }
     * }</pre>
     *
     * <p>The answer is one line. {@code RemoteAddress} and {@code RemotePort} are the remote side
     * of the traffic, {@code Direction} is its direction, and {@code HostMAC} the host at home.
     * {@code MethodList}, {@code StatuscodeList} and {@code HeaderList} are the methods, status
     * codes and headers, and {@code RuleInst} is the rule's number. What a rule leaves open is an
     * empty text. Each of the three lists has exactly one element, the text with the commas, which
     * may be empty.
     *
     * @return the list; <code>{"Result":0,"List":[]}</code> (no blanks) when there are no rules; a
     *     failure otherwise: <code>{ "Result": -1 }</code> when the gateway refuses or doesn't
     *     answer, when its table can't be read or has more rules than an answer of 16 MiB has room
     *     for, or when memory runs out; <code>{ "Result": 1 }</code> when the answer reaches 1280
     *     bytes for each rule and 1280 more. When reading the table fails with a code of at most
     *     two characters, that code is told in the place of -1, such as <code>{ "Result": 42
     *     }</code>; {@code null} when there is no memory for the text
     */
    public native String getHTTPTrafficProcessRuleInfo();
}
