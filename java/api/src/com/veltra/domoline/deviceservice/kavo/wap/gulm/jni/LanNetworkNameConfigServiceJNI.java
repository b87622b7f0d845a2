package com.veltra.domoline.deviceservice.kavo.wap.gulm.jni;

import com.veltra.domoline.deviceservice.kavo.wap.JNINativeMethods;
import com.veltra.domoline.deviceservice.kavo.wap.NativeLibrary;

/**
 * Gives names to the gateway and to the hosts on its LAN.
 *
 * <p>{@link JNINativeMethods#startThread()} must have been called once. The methods may be called
 * by any number of threads; each asks the process {@code osgi_proxy} and blocks the calling thread
 * until the answer arrives, 5 seconds at most. A process that is not running makes them fail
 * without waiting. No method throws because of the gateway's state.
 *
 * <p>Names may hold any characters; their length counts in bytes of UTF-8.
 */
public class LanNetworkNameConfigServiceJNI {
    static {
        NativeLibrary.load();
    }

    /** Creates a client of the service. It holds no state; one can serve all threads. */
    public LanNetworkNameConfigServiceJNI() {}

    /**
     * Names the gateway. Asks the process {@code osgi_proxy}, at most 5 seconds.
     *
     * <p>Example: {@code setGatewayName("Home")} answers {@code 0}, and {@link
     * LANHostsInfoQueryServiceJNI#getGatewayName()} tells it from then on.
     *
     * @param sName the name, 1 to 256 bytes
     * @return 0; -1 when the name is {@code null} or empty, or when the process doesn't answer or
     *     refuses; -2 when the name is longer
     */
    public native int setGatewayName(String sName);

    /**
     * Names a host. Asks the process {@code osgi_proxy}, at most 5 seconds.
     *
     * <p>Example: {@code setLANHostName("02:A1:B2:00:20:01", "Tablet")} answers {@code 0}.
     *
     * @param sMac the host's MAC address; one of more than 31 bytes is sent as an empty text
     * @param sName the name, 1 to 64 bytes
     * @return 0; -1 when an argument is {@code null} or empty, or when the process doesn't answer
     *     or refuses; -2 when the name is longer
     */
    public native int setLANHostName(String sMac, String sName);
}
