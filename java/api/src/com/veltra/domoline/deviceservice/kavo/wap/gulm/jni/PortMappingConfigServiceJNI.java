package com.veltra.domoline.deviceservice.kavo.wap.gulm.jni;

import com.veltra.domoline.deviceservice.kavo.wap.JNINativeMethods;
import com.veltra.domoline.deviceservice.kavo.wap.NativeLibrary;

/**
 * Changes the port mappings (virtual servers) of the gateway's WAN connections. A port mapping
 * leads what arrives at a port of a WAN connection to a port of a host at home. {@link
 * PortMappingQueryServiceJNI#getPortMappingInfo()} lists them.
 *
 * <p>A WAN connection is named by its WAN index, four numbers in one: the type in bits 31 to 28 (1
 * an IP connection, 2 a PPP connection), the WAN device in bits 27 to 20, the connection device in
 * bits 19 to 12, and the connection in bits 11 to 0. So {@code 0x10101001} is the IP connection
 * 1.1.1. Not every WAN connection may have port mappings; the gateway knows which.
 *
 * <p>{@link JNINativeMethods#startThread()} must have been called once. The methods may be called
 * by any number of threads. Each asks processes of the gateway one after the other and waits for
 * each answer, 5 seconds at most; a process that is not running makes it fail without waiting. No
 * method throws because of the gateway's state.
 */
public class PortMappingConfigServiceJNI {
    static {
        NativeLibrary.load();
    }

    /** Creates a client of the service. It holds no state; one can serve all threads. */
    public PortMappingConfigServiceJNI() {}

    /**
     * Adds a port mapping, which is on at once. Asks {@code gulm} for the WAN connection and then
     * {@code osgi_proxy} for the change, at most 5 seconds each.
     *
     * <p>Example: {@code addPortMapping(0x10101001, 8080, 80, "TCP", "192.168.1.20")} answers
     * {@code 0}.
     *
     * @param iWanIndex the WAN connection, as in the list of {@link
     *     com.veltra.domoline.deviceservice.kavo.wap.ozi.jni.AccessInfoQueryServiceJNI}
     * @param iExternalPort its port; sent as it is, the gateway's service decides about it
     * @param iInternalPort the host's port; likewise
     * @param sProtocol the protocol in the gateway's words, such as {@code "TCP"}; not null, not
     *     empty; what is beyond 15 bytes of UTF-8 is cut off
     * @param sInternalClient the host's address as text; not null, not empty; what is beyond 15
     *     bytes of UTF-8 is cut off
     * @return 0; -2 when the gateway's service refuses the mapping; -1 when a text is missing
     *     (nobody is asked then), when the WAN connection is unknown or may not have port mappings,
     *     or when a process doesn't answer or fails otherwise
     */
    public native int addPortMapping(int iWanIndex, int iExternalPort, int iInternalPort,
            String sProtocol, String sInternalClient);

    /**
     * Deletes a port mapping. Asks {@code gulm} for the WAN connection and then {@code osgi_proxy}
     * for the change, at most 5 seconds each.
     *
     * <p>Example: {@code deletePortMapping(0x10101001, 1)} answers {@code 0}.
     *
     * @param iWanIndex the WAN connection, as in the list of {@link
     *     com.veltra.domoline.deviceservice.kavo.wap.ozi.jni.AccessInfoQueryServiceJNI}
     * @param iInstId the mapping: {@code PortMappingIndex} in the list
     * @return 0; -1 when the WAN connection is unknown or may not have port mappings, when the
     *     gateway's service refuses, or when a process doesn't answer
     */
    public native int deletePortMapping(int iWanIndex, int iInstId);

    /**
     * Turns a port mapping on or off. Asks {@code gulm} for the WAN connection and the mapping; if
     * there is something to change, then {@code gulm} for the WAN connection once more and {@code
     * osgi_proxy} for the change: four requests, at most 5 seconds each.
     *
     * <p>Example: {@code setPortMappingSwitch(0x10101001, 1, false)} answers {@code 0}.
     *
     * @param iWanIndex the WAN connection, as in the list of {@link
     *     com.veltra.domoline.deviceservice.kavo.wap.ozi.jni.AccessInfoQueryServiceJNI}
     * @param iInstId the mapping: {@code PortMappingIndex} in the list
     * @param bEnable whether the mapping shall be on
     * @return 0, also when the mapping was so already; -2 when the mapping can't be fetched: it or
     *     its WAN connection is unknown, the connection may not have port mappings or is of neither
     *     kind that has them, or {@code gulm} doesn't answer or refuses; -1 when the change fails:
     *     {@code gulm} doesn't tell the WAN connection once more, or {@code osgi_proxy} doesn't
     *     answer or refuses
     */
    public native int setPortMappingSwitch(int iWanIndex, int iInstId, boolean bEnable);
}
