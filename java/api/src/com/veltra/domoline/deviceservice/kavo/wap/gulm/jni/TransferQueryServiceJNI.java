package com.veltra.domoline.deviceservice.kavo.wap.gulm.jni;

import com.veltra.domoline.deviceservice.kavo.wap.JNINativeMethods;
import com.veltra.domoline.deviceservice.kavo.wap.NativeLibrary;

/**
 * Tells how the gateway forwards traffic: the routes through its WAN connections, those that were
 * set and those that are in force; the VLANs that LAN ports and SSIDs are bound to; and whether
 * IPTV works. {@link StaticLayer3ForwardingConfigServiceJNI} changes the static routes, {@link
 * VLANBindConfigServiceJNI} the VLANs.
 *
 * <p>Route lists are one line each. {@code Index} is a number written as a text, and {@code
 * Interface} the alias of the route's WAN connection, which is its name in the list of WAN
 * connections; the name of an interface that is no WAN connection is shown as it is. {@code
 * DestIPAddress}, {@code DestSubnetMask} and {@code GatewayIPAddress} are the destination of an
 * IPv4 route, its mask and the gateway that it leads over; {@code DestIPPrefix} and {@code NextHop}
 * the destination and the next hop of an IPv6 route. A route for which a list cannot grow is left
 * out of it.
 *
 * <p>{@link JNINativeMethods#startThread()} must have been called once. The methods may be called
 * by any number of threads. Each asks processes of the gateway one after the other and waits for
 * each answer, 5 seconds at most; a process that is not running makes it fail without waiting. No
 * method throws because of the gateway's state.
 */
public class TransferQueryServiceJNI {
    static {
        NativeLibrary.load();
    }

    /** Creates a client of the service. It holds no state; one can serve all threads. */
    public TransferQueryServiceJNI() {}

    /**
     * Lists the static IPv4 routes, without those that lead into the LAN. Asks {@code gulm} for the
     * ids, and for each of at most 192 routes twice, for the route and for its WAN connection, at
     * most 5 seconds each time.
     *
     * <p>Example answer:
     *
     * <pre>{@code
     * { "Result": 0, "List": [ { "Index": "2", "DestIPAddress": "10.20.0.0",
     *   "DestSubnetMask": "255.255.0.0", "GatewayIPAddress": "203.0.113.1",
     *   "Interface": "1_INTERNET_R_VID_100" } ] }
     * }</pre>
     *
     * <p>{@code Index} is what {@link
     * StaticLayer3ForwardingConfigServiceJNI#deleteLayer3ForwardingStatic(int)} takes. Without any
     * route the list is empty: <code>{ "Result": 0, "List": [ ] }</code>.
     *
     * @return the list; <code>{"Result":-1}</code> (no blanks) when {@code gulm} doesn't answer,
     *     refuses, tells of more than 192 routes, or doesn't know a route or its WAN connection;
     *     when the interface of a listed route is shorter than 6 characters, is called like a WAN
     *     connection but numbered like none, or is shown with more than 127 bytes; when the answer
     *     reaches 256 bytes for each route, those left out among them, and 256 more; or when memory
     *     runs out; {@code null} when there is no memory for the text
     */
    public native String getLayer3ForwardingStaticConfigInfo();

    /**
     * Lists the static IPv6 routes, without the default route and those that lead into the LAN.
     * Asks as {@link #getLayer3ForwardingStaticConfigInfo()} does.
     *
     * <p>Example answer:
     *
     * <pre>{@code
     * { "Result": 0, "List": [ { "Index": "2", "DestIPPrefix": "2001:db8:100::\/48",
     *   "NextHop": "2001:db8:0:1::1", "Interface": "1_INTERNET_R_VID_100" } ] }
     * }</pre>
     *
     * <p>{@code Index} is what {@link
     * StaticLayer3ForwardingConfigServiceJNI#deleteIPv6Layer3ForwardingStatic(int)} takes. JSON
     * lets a slash be written as here; a parser gives it back alone.
     *
     * @return the list; <code>{"Result":-1}</code> (no blanks) when {@code gulm} doesn't answer,
     *     refuses, tells of more than 192 routes, or doesn't know a route or its WAN connection;
     *     when the interface of a listed route is shorter than 6 characters, is called like a WAN
     *     connection but numbered like none, or is shown with more than 127 bytes; when the answer
     *     reaches 256 bytes for each route, those left out among them, and 256 more; when a route's
     *     prefix can't be read; or when memory runs out; {@code null} when there is no memory for
     *     the text
     */
    public native String getIPv6Layer3ForwardingStaticConfigInfo();

    /**
     * Lists the IPv4 routes in force that lead through WAN connections, whoever made them. Asks
     * {@code gulm} for the routes, and for the WAN connection of each listed route, at most 5
     * seconds each time.
     *
     * <p>Example answer:
     *
     * <pre>{@code
     * { "Result": 0, "List": [ { "Index": "1", "DestIPAddress": "10.20.0.0",
     *   "DestSubnetMask": "255.255.0.0", "GatewayIPAddress": "203.0.113.1",
     *   "Interface": "1_INTERNET_R_VID_100" }, { "Index": "2", "DestIPAddress": "0.0.0.0",
     *   "DestSubnetMask": "0.0.0.0", "GatewayIPAddress": "203.0.113.1",
     *   "Interface": "1_INTERNET_R_VID_100" } ] }
     * }</pre>
     *
     * <p>{@code Index} counts the listed routes from 1; it names nothing.
     *
     * @return the list; <code>{"Result":-1}</code> (no blanks) when {@code gulm} doesn't answer,
     *     refuses, or doesn't know a WAN connection; when its table can't be read or is shorter
     *     than the number of routes that it tells; for the interface of a listed route as in {@link
     *     #getLayer3ForwardingStaticConfigInfo()}; when the answer reaches 256 bytes for each
     *     listed route and 256 more; or when memory runs out; {@code null} when there is no memory
     *     for the text
     */
    public native String getLayer3ForwardingCurrent();

    /**
     * Lists the IPv6 routes in force that lead through WAN connections. Asks and counts as {@link
     * #getLayer3ForwardingCurrent()} does.
     *
     * <p>Example answer:
     *
     * <pre>{@code
     * { "Result": 0, "List": [ { "Index": "1", "DestIPPrefix": "2001:db8:100::\/48",
     *   "NextHop": "2001:db8:0:1::1", "Interface": "1_INTERNET_R_VID_100" } ] }
     * }</pre>
     *
     * @return the list; <code>{"Result":-1}</code> (no blanks) for the reasons of {@link
     *     #getLayer3ForwardingCurrent()}; {@code null} when there is no memory for the text
     */
    public native String getIPv6Layer3ForwardingCurrent();

    /**
     * Lists the VLANs that LAN ports and SSIDs are bound to: the LAN ports that have a binding, and
     * then all SSIDs, those without a binding too. Asks {@code gulm} for the number of LAN ports
     * and for each of at most 8 ports, and then {@code app_m} for the SSIDs, at most 8 of which are
     * listed; at most 5 seconds each time.
     *
     * <p>Example answer:
     *
     * <pre>{@code
     * { "Result": 0, "List": [ { "LanInterface": "LAN1", "Bind": "10\/100" },
     *   { "LanInterface": "LAN2", "Bind": "10\/100" },
     *   { "LanInterface": "SSID1", "Bind": "20\/200,30\/300" },
     *   { "LanInterface": "SSID2", "Bind": "" } ] }
     * }</pre>
     *
     * <p>The answer is one line, and a parser gives the slashes back alone. {@code LanInterface} is
     * the LAN port or the SSID, {@code Bind} its binding: they are what {@link
     * VLANBindConfigServiceJNI#setVLANBind(String, String)} takes. Without LAN ports and SSIDs the
     * list is empty: <code>{ "Result": 0, "List": [ ] }</code>.
     *
     * @return the list; <code>{"Result":-1}</code> (no blanks) when a process doesn't answer or
     *     refuses, when the answer exceeds 1087 bytes, or when memory runs out; {@code null} when
     *     there is no memory for the text
     */
    public native String getVLANBindInfo();

    /**
     * Tells in one word whether the gateway's IPTV service works. Asks {@code gulm} for the IPTV
     * connection, once more for its status if it has no IPv4, and {@code igmp} for the number of
     * set-top boxes, at most 5 seconds each time.
     *
     * <p>Example: {@code getIPTVStatus()} answers {@code IPTV_BUSSINESS_OK}, a text that is no
     * JSON. The words, spelled as they are:
     *
     * <ul>
     *   <li>{@code NO_IPTV_CONNECTION}: no WAN connection carries IPTV;
     *   <li>{@code IPTV_DISCONNECT}: the one that does is down;
     *   <li>{@code INVALID_MULTIVLAN}: it has no valid multicast VLAN, neither for IPv4 nor for
     *       IPv6;
     *   <li>{@code IPTV_BUSSINESS_OK}: it works, and somebody has joined a multicast group;
     *   <li>{@code IPTV_BUSSINESS_NOK}: nobody has.
     * </ul>
     *
     * @return the word; an empty text when a process doesn't answer or refuses; {@code null} when
     *     there is no memory for the text
     */
    public native String getIPTVStatus();
}
