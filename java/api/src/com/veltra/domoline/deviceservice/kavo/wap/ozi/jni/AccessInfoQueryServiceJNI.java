package com.veltra.domoline.deviceservice.kavo.wap.ozi.jni;

import com.veltra.domoline.deviceservice.kavo.wap.JNINativeMethods;
import com.veltra.domoline.deviceservice.kavo.wap.NativeLibrary;

/**
 * Tells how the gateway's WAN connections and its optical uplink (PON) are doing.
 *
 * <p>A WAN connection is named by its WAN index, four numbers in one: the type in bits 31 to 28 (1
 * an IP connection, 2 a PPP connection), the WAN device in bits 27 to 20, the connection device in
 * bits 19 to 12, and the connection in bits 11 to 0. So {@code 0x10101001} is the IP connection
 * 1.1.1. Nobody checks it here; the gateway decides what it answers about one that does not exist.
 *
 * <p>All methods but {@link #getWANIfList()} ask the process {@code app_m}, which writes the texts;
 * the members that the examples show are the simulated gateway's, and a real one may have others.
 *
 * <p>{@link JNINativeMethods#startThread()} must have been called once. The methods may be called
 * by any number of threads. Each asks one process of the gateway and waits for the answer, 5
 * seconds at most; a process that is not running makes it fail without waiting. No method throws
 * because of the gateway's state, and none returns null unless the virtual machine runs out of
 * memory. The examples stand on several lines where the answer is one.
 */
public class AccessInfoQueryServiceJNI {
    static {
        NativeLibrary.load();
    }

    /** Creates a client of the service. It holds no state; one can serve all threads. */
    public AccessInfoQueryServiceJNI() {}

    /**
     * Lists the WAN connections, at most eight. Asks the process {@code gulm}, at most 5 seconds.
     *
     * <p>Example answer:
     *
     * <pre>{@code
     * { "Result": 0, "List": [ { "Index": 269488129, "Name": "1_INTERNET_R_VID_100" },
     *   { "Index": 537923586, "Name": "2_TR069_R_VID_46" } ] }
     * }</pre>
     *
     * <p>{@code Index} is the WAN index as a signed number (537923586 is {@code 0x20101002}, a PPP
     * connection), {@code Name} what the gateway calls the connection.
     *
     * @return the list; an empty one with result 0, <code>{ "Result": 0, "List": [ ] }</code>, also
     *     when {@code gulm} doesn't answer or refuses; <code>{"Result":-1}</code> (no blanks) when
     *     the list is longer than 511 bytes of UTF-8 or when memory runs out; {@code null} when
     *     there is no memory for the text
     */
    public native String getWANIfList();

    /**
     * Tells the statistics of a WAN connection. Asks the process {@code app_m}, at most 5 seconds.
     *
     * <p>Example: {@code getWANIfStats(0x10101001)} answers
     *
     * <pre>{@code
     * {"Result":0,"UsStats":52428800,"DsStats":734003200}
     * }</pre>
     *
     * <p>{@code UsStats} and {@code DsStats} are the bytes that the connection has sent (upstream)
     * and received (downstream).
     *
     * <p>The text is handed over as it stands: whether it is JSON is up to the process.
     *
     * @param iWanIndex the WAN connection, as in the list of {@link #getWANIfList()}; sent as it is
     * @return the process's text, at most 128 bytes; <code>{"Result":-1}</code> (no blanks) when
     *     {@code app_m} doesn't answer, refuses or answers nothing; {@code null} when there is no
     *     memory for the text
     */
    public native String getWANIfStats(int iWanIndex);

    /**
     * Describes a WAN connection. Asks the process {@code app_m}, at most 5 seconds.
     *
     * <p>Example: {@code getWANIfInfo(0x10101001)} answers
     *
     * <pre>{@code
     * {"Result":0,"Index":269488129,"Name":"1_INTERNET_R_VID_100","ConnectionType":"IP_Routed",
     *   "ServiceList":"INTERNET","LanInterface":"","VLANMode":"2","VLANIDMark":"100",
     *   "802-1pMark":"","MulticastVlan":"","IPMode":"3","NATEnabled":"TRUE",
     *   "AddressingType":"DHCP","DNSEnabled":"TRUE"}
     * }</pre>
     *
     * <p>{@code Index} and {@code Name} are those of {@link #getWANIfList()}, {@code
     * ConnectionType} is one of the types that {@link
     * com.veltra.domoline.deviceservice.kavo.wap.gulm.jni.WanConfigServiceJNI#addWANIf(String,
     * String, String)} takes, and the others are settings as {@link
     * com.veltra.domoline.deviceservice.kavo.wap.gulm.jni.WanConfigServiceJNI#setWANIf(int,
     * String)} describes them; one that was never made is an empty text. User name and password are
     * not told.
     *
     * <p>The text is handed over as it stands: whether it is JSON is up to the process.
     *
     * @param iWanIndex the WAN connection, as in the list of {@link #getWANIfList()}; sent as it is
     * @return the process's text, at most 2048 bytes; <code>{"Result":-1}</code> (no blanks) when
     *     {@code app_m} doesn't answer, refuses or answers nothing, or when memory runs out; {@code
     *     null} when there is no memory for the text
     */
    public native String getWANIfInfo(int iWanIndex);

    /**
     * Tells the bandwidth of a WAN connection. Asks the process {@code app_m}, at most 5 seconds.
     *
     * <p>Example: {@code getWanIfBandwidth(0x10101001)} answers
     *
     * <pre>{@code
     * {"Result":0,"UsBandwidth":1250000000,"DsBandwidth":2500000000}
     * }</pre>
     *
     * <p>{@code UsBandwidth} and {@code DsBandwidth} are what the connection can send (upstream)
     * and receive (downstream), in bits per second.
     *
     * <p>The text is handed over as it stands: whether it is JSON is up to the process.
     *
     * @param iWanIndex the WAN connection, as in the list of {@link #getWANIfList()}; sent as it is
     * @return the process's text, at most 128 bytes; <code>{"Result":-1}</code> (no blanks) when
     *     {@code app_m} doesn't answer, refuses or answers nothing; {@code null} when there is no
     *     memory for the text
     */
    public native String getWanIfBandwidth(int iWanIndex);

    /**
     * Tells the status of a WAN connection. Asks the process {@code app_m}, at most 5 seconds.
     *
     * <p>Example: {@code getWANIfStatus(0x10101001)} answers
     *
     * <pre>{@code
     * {"Result":0,"ConnectionStatus":"Connected","ExternalIPAddress":"203.0.113.10",
     *   "SubnetMask":"255.255.255.0","DefaultGateway":"203.0.113.1",
     *   "DNSServers":"192.0.2.53,192.0.2.54","IPv6IPAddress":"2001:db8:0:1::10",
     *   "IPv6DNSServers":"2001:db8::53,2001:db8::54"}
     * }</pre>
     *
     * <p>{@code ConnectionStatus} is {@code Connected} or {@code Disconnected}. {@code
     * ExternalIPAddress}, {@code SubnetMask} and {@code DefaultGateway} are the IPv4 address of the
     * connection, its mask and its gateway, {@code DNSServers} one or two servers with a comma
     * between them; {@code IPv6IPAddress} and {@code IPv6DNSServers} are the same for IPv6. What
     * the connection doesn't have is an empty text.
     *
     * <p>The text is handed over as it stands: whether it is JSON is up to the process.
     *
     * @param iWanIndex the WAN connection, as in the list of {@link #getWANIfList()}; sent as it is
     * @return the process's text, at most 512 bytes; <code>{"Result":-1}</code> (no blanks) when
     *     {@code app_m} doesn't answer, refuses or answers nothing; {@code null} when there is no
     *     memory for the text
     */
    public native String getWANIfStatus(int iWanIndex);

    /**
     * Tells which WAN connection carries internet service. Asks the process {@code app_m}, at most
     * 5 seconds.
     *
     * <p>Example answer: {@code 269488129}, which is {@code 0x10101001}.
     *
     * @return its WAN index; -1 when {@code app_m} doesn't answer, refuses or answers nothing
     */
    public native int getInternetWANIndex();

    /**
     * Tells the state of the optical module: transmitted and received power, temperature, supply
     * voltage and bias current. Asks the process {@code app_m}, at most 5 seconds.
     *
     * <p>Example answer:
     *
     * <pre>{@code
     * {"Result":0,"TXPower":2.15,"RXPower":-18.2,"TransceiverTemperature":45.5,
     *   "SupplyVottage":3.3,"BiasCurrent":12.25}
     * }</pre>
     *
     * <p>{@code TXPower} and {@code RXPower} are the transmitted and the received power, {@code
     * TransceiverTemperature} the temperature, {@code SupplyVottage} (spelled so) the supply
     * voltage and {@code BiasCurrent} the bias current of the laser, each in the unit of the
     * gateway.
     *
     * <p>The text is handed over as it stands: whether it is JSON is up to the process.
     *
     * @return the process's text, at most 512 bytes; <code>{"Result":-2, "TXPower": 0, "RXPower":
     *     0,"TransceiverTemperature": 0,"SupplyVottage": 0,"BiasCurrent": 0}</code> when {@code
     *     app_m} says that it can't tell (its code {@code 0xFFFFFFFE}); <code>{"Result":-1,
     *     "TXPower": 0, "RXPower": 0,"TransceiverTemperature": 0,"SupplyVottage": 0,"BiasCurrent":
     *     0}</code> when it doesn't answer, refuses otherwise or answers nothing; {@code null} when
     *     there is no memory for the text
     */
    public native String getPONIfPhyStatus();

    /**
     * Tells how long the PON has been up, in the gateway's unit. Asks the process {@code app_m}, at
     * most 5 seconds.
     *
     * <p>Example answer: {@code 86400}.
     *
     * @return the time; -2 when {@code app_m} says that it can't tell (its code {@code
     *     0xFFFFFFFE}); -1 when it doesn't answer or refuses otherwise. A time of such a value
     *     looks the same
     */
    public native int getPONIfUpTime();

    /**
     * Tells whether the gateway is registered with the optical network. Asks the process {@code
     * app_m}, at most 5 seconds.
     *
     * <p>Example answer:
     *
     * <pre>{@code
     * {"Result":0,"RegisterStatus":"REG_AUTH"}
     * }</pre>
     *
     * <p>{@code RegisterStatus} is a word of the gateway's; {@code REG_AUTH} is that of one that is
     * registered and authenticated, {@code NO_REG_NO_AUTH} of one that is neither.
     *
     * <p>The text is handed over as it stands: whether it is JSON is up to the process.
     *
     * @return the process's text, at most 128 bytes; <code>{"Result":-2, "RegisterStatus":
     *     "NO_REG_NO_AUTH"}</code> when {@code app_m} says that it can't tell (its code {@code
     *     0xFFFFFFFE}); <code>{"Result":-1, "RegisterStatus": "NO_REG_NO_AUTH"}</code> when it
     *     doesn't answer, refuses otherwise or answers nothing; {@code null} when there is no
     *     memory for the text
     */
    public native String getPONIfRegisterStatus();

    /**
     * Tells the upstream and downstream counters of the uplink. Asks the process {@code app_m}, at
     * most 5 seconds.
     *
     * <p>Example answer:
     *
     * <pre>{@code
     * {"Result":0,"UsStats":53739520,"DsStats":5031600128}
     * }</pre>
     *
     * <p>{@code UsStats} and {@code DsStats} are the bytes that the uplink has sent (upstream) and
     * received (downstream).
     *
     * <p>The text is handed over as it stands: whether it is JSON is up to the process.
     *
     * @return the process's text, at most 128 bytes; <code>{"Result":-1, "UsStats": 0, "DsStats":
     *     0}</code> when {@code app_m} doesn't answer, refuses (with whichever code) or answers
     *     nothing; {@code null} when there is no memory for the text
     */
    public native String getUplinkIfStats();
}
