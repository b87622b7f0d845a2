package com.veltra.domoline.deviceservice.kavo.wap.gulm.jni;

import com.veltra.domoline.deviceservice.kavo.wap.JNINativeMethods;
import com.veltra.domoline.deviceservice.kavo.wap.NativeLibrary;

/**
 * Changes the gateway's own address on the LAN, and its DHCP server.
 *
 * <p>{@link JNINativeMethods#startThread()} must have been called once. The methods may be called
 * by any number of threads; each asks the process {@code osgi_proxy} and blocks the calling thread
 * until the answer arrives, 5 seconds at most. A process that is not running makes them fail
 * without waiting. No method throws because of the gateway's state.
 *
 * <p>An address is a text of up to 15 bytes, such as {@code 192.168.1.1}. The library doesn't look
 * at what is in it; the gateway does. A longer one is sent as an empty text.
 */
public class LANIPConfigServiceJNI {
    static {
        NativeLibrary.load();
    }

    /** Creates a client of the service. It holds no state; one can serve all threads. */
    public LANIPConfigServiceJNI() {}

    /**
     * Sets the gateway's LAN address and mask. Asks the process {@code osgi_proxy}, at most 5
     * seconds. Those who reach the gateway under the old address lose it.
     *
     * <p>Example: {@code setLANHostIP("192.168.1.1", "255.255.255.0")} answers {@code 0}.
     *
     * @param sAddress the address, neither {@code null} nor empty; one of more than 15 bytes is
     *     sent as an empty text
     * @param sMask the mask, likewise
     * @return 0, or -1 when an argument is {@code null} or empty, or when the process doesn't
     *     answer or refuses
     */
    public native int setLANHostIP(String sAddress, String sMask);

    /**
     * Sets up the DHCP server. Asks the process {@code osgi_proxy}, at most 5 seconds.
     *
     * <p>Example: {@code setLANDHCPInfo("TRUE", "192.168.1.2", "192.168.1.254", 86400)} answers
     * {@code 0}.
     *
     * @param sStatus {@code TRUE}, in upper or lower case, switches the server on; every other text
     *     switches it off, so beware of {@code yes} and {@code 1}; neither {@code null} nor empty
     * @param sStart the first address of the pool, neither {@code null} nor empty; one of more than
     *     15 bytes is sent as an empty text
     * @param sEnd the last address of the pool, likewise
     * @param iDuration the time that a lease lasts, in the gateway's unit, passed on as it is
     * @return 0, or -1 when a text is {@code null} or empty, or when the process doesn't answer or
     *     refuses
     */
    public native int setLANDHCPInfo(String sStatus, String sStart, String sEnd, int iDuration);
}
