package com.veltra.domoline.deviceservice.kavo.wap.gulm.jni;

import com.veltra.domoline.deviceservice.kavo.wap.JNINativeMethods;
import com.veltra.domoline.deviceservice.kavo.wap.NativeLibrary;

/**
 * Creates, changes and deletes the gateway's WAN connections. {@link
 * com.veltra.domoline.deviceservice.kavo.wap.ozi.jni.AccessInfoQueryServiceJNI#getWANIfList()}
 * lists them.
 *
 * <p>A WAN connection is named by its WAN index, four numbers in one: the type in bits 31 to 28 (1
 * an IP connection, 2 a PPP connection), the WAN device in bits 27 to 20, the connection device in
 * bits 19 to 12, and the connection in bits 11 to 0. So {@code 0x10101001} is the IP connection
 * 1.1.1. Nobody checks it here; the gateway decides about one that does not exist.
 *
 * <p>{@link JNINativeMethods#startThread()} must have been called once. The methods may be called
 * by any number of threads. Each asks processes of the gateway one after the other and waits for
 * each answer, 5 seconds at most; a process that is not running makes it fail without waiting. No
 * method throws because of the gateway's state.
 */
public class WanConfigServiceJNI {
    static {
        NativeLibrary.load();
    }

    /** Creates a client of the service. It holds no state; one can serve all threads. */
    public WanConfigServiceJNI() {}

    /**
     * Creates a WAN connection. Asks {@code gulm} for the connections that there are and then
     * {@code osgi_proxy} for the new one, at most 5 seconds each.
     *
     * <p>Whether the VLAN is taken shows in the names of the connections, such as {@code
     * 2_INTERNET_B_VID_200}. They are looked at in the order of the list, up to the first that
     * names no VLAN.
     *
     * <p>Example: {@code addWANIf("2", "500", "IP_Routed")} answers {@code 269504513}, the index
     * {@code 0x10105001} that the gateway chose.
     *
     * @param sVlanMode the VLAN mode, {@code "0"}, {@code "1"} or {@code "2"}; not null, not empty
     * @param sVlan the VLAN, {@code "0"} to {@code "4094"} in decimal digits; not null, not empty.
     *     With VLAN mode 0 it counts as 0, whatever it says
     * @param sConnectionType {@code "IP_Routed"}, {@code "IP_Bridged"}, {@code "PPPoE_Bridged"} or
     *     {@code "PPPoE_Routed"}, in upper or lower case; not null
     * @return the new connection's WAN index; -2 when a connection has the VLAN already; -1 when an
     *     argument is missing or out of its bounds (nobody is asked then), or when a process
     *     doesn't answer or refuses
     */
    public native int addWANIf(String sVlanMode, String sVlan, String sConnectionType);

    /**
     * Changes the settings of a WAN connection. Asks {@code gulm} for what has to be known before,
     * {@code osgi_proxy} for the change, and {@code gulm} again for IPv6 DNS servers: up to five
     * requests, at most 5 seconds each.
     *
     * <p>Example: {@code setWANIf(0x10101001, "{\"NATEnabled\":\"TRUE\",
     * \"DNSServers\":\"192.0.2.1\"}")} answers {@code 0}.
     *
     * <p>The settings are the members of a JSON object, all of them texts. One that is left out,
     * empty, not a text or longer than said here is not changed. In bytes of UTF-8:
     *
     * <ul>
     *   <li>{@code LanInterface} (63): the LAN ports and SSIDs that belong to the connection, a
     *       list that names at least one, such as {@code "LAN1,SSID2"}; {@code
     *       LanInterface-DHCPEnable}: whether they get addresses by DHCP
     *   <li>{@code VLANMode} (7): {@code "0"} to {@code "2"}, and what is no number is let through
     *       as well; {@code VLANIDMark}, {@code 802-1pMark}, {@code MulticastVlan} (7 each): the
     *       VLAN, its priority, and the VLAN of multicast
     *   <li>{@code IPMode} (15): {@code "1"} for IPv4, whose IPv6 settings are then not changed,
     *       {@code "2"} for IPv6, and likewise, {@code "3"} for both
     *   <li>{@code NATEnabled}: whether addresses are translated
     *   <li>{@code Username}, {@code Password} (67 each): of a PPP connection. They are overwritten
     *       in memory once they have been sent, and show up in no trace
     *   <li>{@code AddressingType}, {@code ExternalIPAddress}, {@code SubnetMask}, {@code
     *       DefaultGateway} (15 each): how the connection gets its IPv4 address, such as {@code
     *       "DHCP"}, the address, its mask and its gateway
     *   <li>{@code DNSEnabled}: whether names are resolved; {@code DNSServers} (63): one or two
     *       addresses with a comma between them. Where there is none, the connection's present
     *       server stays, and 32 bytes of the two are sent
     *   <li>{@code MACAddress} (31), {@code ConnectionTrigger} (15): the connection's MAC address,
     *       and what makes it dial
     *   <li>{@code IPv6IPAddressOrigin} (31), {@code IPv6IPAddress} (63): how it gets its IPv6
     *       address, and the address; {@code IPv6DNSServers} (127): as {@code DNSServers}, 63 bytes
     *       of each are sent; {@code IPv6PrefixDelegationEnabled}: whether it is given a prefix for
     *       the home; {@code IPv6PrefixOrigin} (31), {@code IPv6Prefix} (63), {@code
     *       IPv6PrefixPltime}, {@code IPv6PrefixVltime} (39 each): how it gets the prefix, the
     *       prefix, and for how long that is preferred and valid; {@code IPv6DefaultGateway} (64)
     *   <li>{@code IPv6DsliteEnable}, {@code IPv6AftrMode} (7), {@code IPv6AftrAddress} (63):
     *       whether IPv4 is carried over IPv6, how the far end of that is found, and its address
     *   <li>{@code ServiceList} (31): what the connection is for, such as {@code "INTERNET"}; one
     *       connection only may name {@code TR069} in it
     * </ul>
     *
     * <p>Those whose name ends in {@code Enable} or {@code Enabled} are {@code "TRUE"} or {@code
     * "FALSE"}, in upper case; like any other setting, a text of more than 7 bytes is not looked
     * at.
     *
     * @param iWanIndex the WAN connection, as in the list of {@link
     *     com.veltra.domoline.deviceservice.kavo.wap.ozi.jni.AccessInfoQueryServiceJNI}
     * @param sJson the settings, strictly JSON: nothing behind the object, names and texts in
     *     double quotes, 32 levels at most; not null, not empty
     * @return 0, also for an object without any of the settings; -1 when the text is missing or no
     *     JSON, when a setting is out of its bounds, when another connection serves {@code TR069}
     *     already, when {@code DNSServers} names no server and the connection has none, when IPv6
     *     DNS servers are to be set for an index whose type is neither 1 nor 2, when a process
     *     doesn't answer or refuses, or when memory runs out. A failure may leave IPv6 DNS servers
     *     unchanged and everything else changed
     */
    public native int setWANIf(int iWanIndex, String sJson);

    /**
     * Deletes a WAN connection, and its connection device when it was the last one there. Asks
     * {@code osgi_proxy} for the deletion, {@code gulm} twice for what is left, and {@code
     * osgi_proxy} again if that is nothing: at most 5 seconds each.
     *
     * <p>Example: {@code deleteWANIf(0x10101001)} answers {@code 0}.
     *
     * @param iWanIndex the WAN connection, as in the list of {@link
     *     com.veltra.domoline.deviceservice.kavo.wap.ozi.jni.AccessInfoQueryServiceJNI}
     * @return 0; -1 when a process doesn't answer or refuses. The connection may be gone then all
     *     the same, and its connection device left
     */
    public native int deleteWANIf(int iWanIndex);
}
