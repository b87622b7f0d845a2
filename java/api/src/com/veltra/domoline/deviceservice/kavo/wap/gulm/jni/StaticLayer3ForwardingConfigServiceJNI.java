package com.veltra.domoline.deviceservice.kavo.wap.gulm.jni;

import com.veltra.domoline.deviceservice.kavo.wap.JNINativeMethods;
import com.veltra.domoline.deviceservice.kavo.wap.NativeLibrary;

/**
 * Adds and deletes static routes through the gateway's WAN connections. {@link
 * TransferQueryServiceJNI} lists them.
 *
 * <p>A route names its WAN connection by the alias, which is the connection's name in the list of
 * WAN connections, such as {@code "1_INTERNET_R_VID_100"}; the case of its letters doesn't matter.
 *
 * <p>{@link JNINativeMethods#startThread()} must have been called once. The methods may be called
 * by any number of threads. Each asks processes of the gateway one after the other and waits for
 * each answer, 5 seconds at most; a process that is not running makes it fail without waiting. No
 * method throws because of the gateway's state.
 */
public class StaticLayer3ForwardingConfigServiceJNI {
    static {
        NativeLibrary.load();
    }

    /** Creates a client of the service. It holds no state; one can serve all threads. */
    public StaticLayer3ForwardingConfigServiceJNI() {}

    /**
     * Adds an IPv4 route. Asks {@code gulm} for the WAN connections and then {@code osgi_proxy} for
     * the change, at most 5 seconds each. Whether the addresses are right is decided there.
     *
     * <p>Example: {@code addLayer3ForwardingStatic("10.30.0.0", "255.255.0.0", "203.0.113.1",
     * "1_INTERNET_R_VID_100")} answers {@code 3}.
     *
     * @param sDestIP the destination's address, 1 to 15 bytes of UTF-8
     * @param sDestMask the destination's mask, 1 to 15 bytes of UTF-8
     * @param sGateway the gateway's address; null or empty for none; what is beyond 15 bytes of
     *     UTF-8 is cut off
     * @param sInterface the alias of the WAN connection; not null, not empty, and not {@code "br0"}
     *     in letters of either case
     * @return the route's instance id, which is {@code Index} in the list; -1 when an argument is
     *     missing, has not its length or names the LAN bridge (nobody is asked then), when there is
     *     no such WAN connection or {@code gulm} tells of more than eight, when the gateway's
     *     service refuses the route, or when a process doesn't answer
     */
    public native int addLayer3ForwardingStatic(
            String sDestIP, String sDestMask, String sGateway, String sInterface);

    /**
     * Deletes an IPv4 route. Asks {@code osgi_proxy}, at most 5 seconds.
     *
     * <p>Example: {@code deleteLayer3ForwardingStatic(3)} answers {@code 0}.
     *
     * @param iInstId the route: {@code Index} in the list
     * @return 0; -1 when the gateway's service refuses or doesn't answer
     */
    public native int deleteLayer3ForwardingStatic(int iInstId);

    /**
     * Adds an IPv6 route, which must not be the default route. Asks {@code gulm} for the WAN
     * connections and then {@code osgi_proxy} for the change, at most 5 seconds each.
     *
     * <p>Example: {@code addIPv6Layer3ForwardingStatic("2001:db8:200::/48", "fe80::1",
     * "1_INTERNET_R_VID_100")} answers {@code 3}.
     *
     * @param sDestIPPrefix the destination's prefix, as address, slash and length; 1 to 63 bytes of
     *     UTF-8
     * @param sNextHop the next hop's address; null or empty for none; what is beyond 63 bytes of
     *     UTF-8 is cut off
     * @param sInterface the alias of the WAN connection; not null, not empty, and not {@code "br0"}
     *     in letters of either case
     * @return the route's instance id, which is {@code Index} in the list; -1 when an argument is
     *     missing, the prefix is too long, can't be read or is {@code ::/0}, or the interface is
     *     the LAN bridge (nobody is asked then), when there is no such WAN connection or {@code
     *     gulm} tells of more than eight, when the gateway's service refuses the route, or when a
     *     process doesn't answer
     */
    public native int addIPv6Layer3ForwardingStatic(
            String sDestIPPrefix, String sNextHop, String sInterface);

    /**
     * Deletes an IPv6 route. Asks {@code osgi_proxy}, at most 5 seconds.
     *
     * <p>Example: {@code deleteIPv6Layer3ForwardingStatic(3)} answers {@code 0}.
     *
     * @param iInstId the route: {@code Index} in the list
     * @return 0; -1 when the gateway's service refuses or doesn't answer
     */
    public native int deleteIPv6Layer3ForwardingStatic(int iInstId);
}
