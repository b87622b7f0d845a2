package com.veltra.domoline.deviceservice.kavo.wap.gulm.jni;

import com.veltra.domoline.deviceservice.kavo.wap.JNINativeMethods;
import com.veltra.domoline.deviceservice.kavo.wap.NativeLibrary;

/**
 * The gateway's own address on the LAN, and its DHCP server.
 *
 * <p>{@link JNINativeMethods#startThread()} must have been called once. The methods may be called
 * by any number of threads; each asks one process of the gateway and blocks the calling thread
 * until the answer arrives, 5 seconds at most. A process that is not running makes them fail
 * without waiting. No method throws because of the gateway's state.
 */
public class LANIPInfoQueryServiceJNI {
    static {
        NativeLibrary.load();
    }

    /** Creates a client of the service. It holds no state; one can serve all threads. */
    public LANIPInfoQueryServiceJNI() {}

    /**
     * Tells the gateway's LAN address and mask. Asks the process {@code app_m}, at most 5 seconds.
     *
     * <p>Example answer of the simulated gateway:
     *
     * <pre>{@code
     * {"Result":0,"LANHostIP":"192.168.1.1","LANHostMask":"255.255.255.0"}
     * }</pre>
     *
     * <p>The process writes the answer, and its members are the process's own: here {@code
     * LANHostIP} is the gateway's address on the LAN, and {@code LANHostMask} its mask.
     *
     * <p>The text is handed over as it stands: whether it is JSON is up to the process.
     *
     * @return what the process wrote, 128 bytes at most; <code>{"Result":-1}</code> (no blanks)
     *     when it doesn't answer or refuses; {@code null} when it wrote nothing, or when there is
     *     no memory for the text
     */
    public native String getLANHostIP();

    /**
     * Tells the settings of the DHCP server. Asks the process {@code gulm}, at most 5 seconds.
     *
     * <p>Example answer:
     *
     * <pre>{@code
     * { "Result": 0, "EnableDHCPServer": "TRUE", "DHCPStartIP": "192.168.1.2",
     *   "DHCPEndIP": "192.168.1.254", "DHCPDuration": 86400 }
     * }</pre>
     *
     * <p>The answer is one line. {@code EnableDHCPServer} is a text, {@code TRUE} when the server
     * is on and {@code FALSE} when it is off; {@code DHCPStartIP} and {@code DHCPEndIP} are the
     * first and the last address that it gives away; {@code DHCPDuration} is the time that a lease
     * lasts, in the gateway's unit.
     *
     * @return the settings; <code>{"Result":-1}</code> (no blanks) when the process doesn't answer
     *     or refuses, or when the settings take more than 255 bytes, or when memory runs out;
     *     {@code null} when there is no memory for the text
     */
    public native String getLANDHCPInfo();
}
