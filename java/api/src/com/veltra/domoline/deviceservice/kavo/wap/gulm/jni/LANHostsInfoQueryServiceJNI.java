package com.veltra.domoline.deviceservice.kavo.wap.gulm.jni;

import com.veltra.domoline.deviceservice.kavo.wap.JNINativeMethods;
import com.veltra.domoline.deviceservice.kavo.wap.NativeLibrary;

/**
 * The hosts on the LAN: who they are, what they transfer, and what limits them; and the gateway's
 * name.
 *
 * <p>{@link JNINativeMethods#startThread()} must have been called once. The methods may be called
 * by any number of threads; each blocks the calling thread until the gateway's processes have
 * answered, 5 seconds at most for each request. A process that is not running makes them fail
 * without waiting. No method throws because of the gateway's state.
 *
 * <p>A list of MAC addresses is an array of up to 128 texts, of which 31 bytes each are used.
 * {@code null}, an array without elements, and one of empty texts alone stand for all hosts. A
 * {@code null} element is left out by {@link #getLANHostInfoByMAC(String[])}; the other methods
 * refuse an array that has one, even if it has nothing else. Where the process {@code app_m} writes
 * the answer, its keys are the process's own.
 */
public class LANHostsInfoQueryServiceJNI {
    static {
        NativeLibrary.load();
    }

    /** Creates a client of the service. It holds no state; one can serve all threads. */
    public LANHostsInfoQueryServiceJNI() {}

    /**
     * Tells the gateway's name. Asks the process {@code app_m}, at most 5 seconds.
     *
     * <p>Example answer of the simulated gateway: {@code SimHome gateway}
     *
     * @return what the process wrote, 256 bytes at most; an empty text, and no fault object, when
     *     it doesn't answer, refuses or has no name; {@code null} when there is no memory for the
     *     text
     */
    public native String getGatewayName();

    /**
     * Describes hosts by their MAC addresses. Asks the process {@code app_m}, at most 5 seconds.
     *
     * <p>Example answer of the simulated gateway:
     *
     * <pre>{@code
     * {"Result":0,"List":[{"MAC":"02:A1:B2:00:20:01","IP":"192.168.1.10","DevName":"desk-pc",
     *   "HostClass":"PC","Interface":"LAN1","Active":1,"OnlineTime":7200},
     *   {"MAC":"02:A1:B2:00:20:04","IP":"192.168.1.13","DevName":"tablet-tom",
     *   "HostClass":"TABLET","Interface":"SSID5","Active":1,"OnlineTime":900}]}
     * }</pre>
     *
     * <p>The answer is one line. {@code MAC} and {@code IP} are the addresses of a host, {@code
     * DevName} is its name, {@code HostClass} what kind of device it is, and {@code Interface}
     * where it is connected: a LAN port or a wireless network. {@code Active} is 1 when it is there
     * now, and {@code OnlineTime} for how long it has been, in the gateway's unit.
     *
     * <p>The text is handed over as it stands: whether it is JSON is up to the process.
     *
     * @param asMacs the addresses, of which 31 bytes each are sent; {@code null} elements are left
     *     out. If none is left, all hosts are asked for
     * @return what the process wrote; <code>{"Result":-1,"List":[] }</code> (one blank) when it
     *     doesn't answer or refuses, or when its text can't be read; <code>{"Result":-1}</code>
     *     when there are more than 128 addresses, or when memory runs out before any of them is
     *     known; {@code null} when the process wrote nothing, or when there is no memory for the
     *     text
     */
    public native String getLANHostInfoByMAC(String[] asMacs);

    /**
     * Describes the hosts behind an interface. Asks the process {@code app_m}, at most 5 seconds.
     *
     * <p>Example: {@code getLANHostInfoByInterface("LAN2")} answers, in the simulated gateway
     *
     * <pre>{@code
     * {"Result":0,"List":[{"MAC":"02:A1:B2:00:20:02","IP":"192.168.1.11",
     *   "DevName":"living-room-tv","HostClass":"TV","Interface":"LAN2","Active":1,
     *   "OnlineTime":3600}]}
     * }</pre>
     *
     * <p>The answer is one line; its members are those of {@link #getLANHostInfoByMAC(String[])}.
     *
     * <p>The text is handed over as it stands: whether it is JSON is up to the process.
     *
     * @param sInterface the interface's name in the vocabulary of {@code app_m}, for example {@code
     *     LAN1}; neither {@code null} nor empty. One of more than 15 bytes is sent as an empty text
     * @return what the process wrote; <code>{"Result":-1}</code> (no blanks) when the argument is
     *     {@code null} or empty, or when the process doesn't answer or refuses or its text can't be
     *     read; {@code null} when it wrote nothing, or when there is no memory for the text
     */
    public native String getLANHostInfoByInterface(String sInterface);

    /**
     * Describes the hosts of a class. Asks the process {@code app_m}, at most 5 seconds.
     *
     * <p>Example: {@code getLANHostInfoByClass("PHONE")} answers, in the simulated gateway
     *
     * <pre>{@code
     * {"Result":0,"List":[{"MAC":"02:A1:B2:00:20:03","IP":"192.168.1.12",
     *   "DevName":"phone-anna","HostClass":"PHONE","Interface":"SSID1","Active":1,
     *   "OnlineTime":1800}]}
     * }</pre>
     *
     * <p>The answer is one line; its members are those of {@link #getLANHostInfoByMAC(String[])}.
     *
     * <p>The text is handed over as it stands: whether it is JSON is up to the process.
     *
     * @param sHostClass the class in the vocabulary of {@code app_m}, for example {@code PHONE};
     *     neither {@code null} nor empty. One of more than 15 bytes is sent as an empty text
     * @return what the process wrote; <code>{"Result":-1}</code> (no blanks) when the argument is
     *     {@code null} or empty, or when the process doesn't answer or refuses or its text can't be
     *     read; {@code null} when it wrote nothing, or when there is no memory for the text
     */
    public native String getLANHostInfoByClass(String sHostClass);

    /**
     * Tells what hosts have transferred. Asks the process {@code app_m}, at most 5 seconds.
     *
     * <p>Example answer of the simulated gateway:
     *
     * <pre>{@code
     * {"Result":0,"List":[{"MAC":"02:A1:B2:00:20:02","RxBytes":2147483648,"TxBytes":10485760,
     *   "RxPackets":2147483,"TxPackets":10485}]}
     * }</pre>
     *
     * <p>The answer is one line. {@code MAC} is the address of a host; {@code RxBytes} and {@code
     * RxPackets} count what it has received, {@code TxBytes} and {@code TxPackets} what it has
     * sent.
     *
     * <p>The text is handed over as it stands: whether it is JSON is up to the process.
     *
     * @param asMacs the addresses, of which 31 bytes each are sent, none of them {@code null}. No
     *     addresses ask for all hosts
     * @return what the process wrote; <code>{"Result":-1}</code> (no blanks) when there are more
     *     than 128 addresses or a {@code null} one, or when the process doesn't answer or refuses
     *     or its text can't be read; {@code null} when it wrote nothing, or when there is no memory
     *     for the text
     */
    public native String getLANHostStats(String[] asMacs);

    /**
     * Tells whether hosts are filtered by their MAC addresses. Asks the process {@code gulm}, at
     * most 5 seconds.
     *
     * <p>Example answer: {@code 1}
     *
     * @return 0 when the filter is off; 1 when those on the black list are refused; 2 when only
     *     those on the trust list are admitted; for any other mode that the process tells, its
     *     number plus 1; -1 when the process doesn't answer or refuses, or when its answer
     *     contradicts itself
     */
    public native int getMacFilterMode();

    /**
     * Tells the speed limits of hosts. Asks the process {@code gulm} for the list of its records
     * and then for each of them, at most 5 seconds each.
     *
     * <p>Example answer, for two hosts of which the second has no limit:
     *
     * <pre>{@code
     * { "Result": 0, "List": [ { "UpSpeed": 100, "DownSpeed": 200 },
     *   { "UpSpeed": 0, "DownSpeed": 0 } ] }
     * }</pre>
     *
     * <p>The answer is one line. The hosts come in the order of the addresses asked for, and
     * without them; when all are asked for, in the order of the gateway's records, of which the
     * first 128 are told. {@code UpSpeed} and {@code DownSpeed} are the upstream and the downstream
     * limit in the gateway's unit, 0 for none; a limit from 2147483648 on is told as a negative
     * number, less by 4294967296.
     *
     * @param asMacs the addresses, none of them {@code null}. No addresses ask for all records
     * @return the limits; <code>{"Result":-1}</code> (no blanks) when there are more than 128
     *     addresses or a {@code null} one, when the process doesn't answer or refuses, or when
     *     memory runs out; {@code null} when there is no memory for the text
     */
    public native String getLANHostSpeedLimitInfo(String[] asMacs);
}
