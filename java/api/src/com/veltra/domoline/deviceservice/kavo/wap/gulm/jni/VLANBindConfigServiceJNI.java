package com.veltra.domoline.deviceservice.kavo.wap.gulm.jni;

import com.veltra.domoline.deviceservice.kavo.wap.JNINativeMethods;
import com.veltra.domoline.deviceservice.kavo.wap.NativeLibrary;

/**
 * Binds LAN ports and SSIDs to VLANs: what enters such an interface with the tag of a user-side
 * VLAN is carried on a WAN-side VLAN. {@link TransferQueryServiceJNI#getVLANBindInfo()} lists the
 * bindings.
 *
 * <p>{@link JNINativeMethods#startThread()} must have been called once. The methods may be called
 * by any number of threads; each asks the process {@code osgi_proxy} and blocks the calling thread
 * until the answer arrives, 5 seconds at most. A process that is not running makes them fail
 * without waiting. No method throws because of the gateway's state.
 */
public class VLANBindConfigServiceJNI {
    static {
        NativeLibrary.load();
    }

    /** Creates a client of the service. It holds no state; one can serve all threads. */
    public VLANBindConfigServiceJNI() {}

    /**
     * Binds an interface to VLANs, in the place of what it was bound to. Asks the process {@code
     * osgi_proxy}, at most 5 seconds.
     *
     * <p>Example: {@code setVLANBind("LAN1", "10/100,20/200")} answers {@code 0}.
     *
     * <p>A binding is a list of pairs, user-side VLAN, slash, WAN-side VLAN, with commas between
     * them and none behind the last. Each VLAN is a decimal number from 1 to 4094. A pair that ends
     * after its first number has the WAN-side VLAN of the pair before it, so the first one needs
     * both. What follows a pair up to its comma is passed on without being looked at, and so are
     * texts of nothing but commas.
     *
     * @param sInterface {@code LAN} or {@code SSID} and a number from 1, such as {@code LAN1};
     *     neither {@code null} nor empty; cut to 63 bytes of UTF-8. Whether there is such an
     *     interface is for the gateway to know
     * @param sBind the binding, neither {@code null} nor empty; the first 127 bytes of it are
     *     checked, the first 128 sent
     * @return 0, or -1 when an argument is {@code null} or empty or the binding is not as described
     *     (nobody is asked then), or when the process doesn't answer or refuses
     */
    public native int setVLANBind(String sInterface, String sBind);

    /**
     * Takes an interface's binding away. Asks the process {@code osgi_proxy}, at most 5 seconds.
     *
     * <p>Example: {@code clearVLANBind("LAN1")} answers {@code 0}.
     *
     * @param sInterface as for {@link #setVLANBind(String, String)}
     * @return 0, or -1 when the argument is {@code null} or empty (nobody is asked then), or when
     *     the process doesn't answer or refuses
     */
    public native int clearVLANBind(String sInterface);
}
