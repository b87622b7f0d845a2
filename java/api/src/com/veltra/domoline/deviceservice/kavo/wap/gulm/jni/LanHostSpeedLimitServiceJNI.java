package com.veltra.domoline.deviceservice.kavo.wap.gulm.jni;

import com.veltra.domoline.deviceservice.kavo.wap.JNINativeMethods;
import com.veltra.domoline.deviceservice.kavo.wap.NativeLibrary;

/**
 * Limits how fast single hosts of the LAN may be. {@link LANHostsInfoQueryServiceJNI} tells the
 * limits.
 *
 * <p>{@link JNINativeMethods#startThread()} must have been called once. The methods may be called
 * by any number of threads. Each request to another process of the gateway blocks the calling
 * thread until the answer arrives, 5 seconds at most; a process that is not running makes the
 * method fail without waiting. No method throws because of the gateway's state.
 */
public class LanHostSpeedLimitServiceJNI {
    static {
        NativeLibrary.load();
    }

    /** Creates a client of the service. It holds no state; one can serve all threads. */
    public LanHostSpeedLimitServiceJNI() {}

    /**
     * Limits a host. Reads the MAC filter's mode and both its tables and the hosts' limits from
     * {@code gulm}, one request for each entry, and then has {@code osgi_proxy} make one change;
     * each request takes 5 seconds at most.
     *
     * <p>Limits that the host has already are not sent again, and neither are 0 and 0 for a host
     * that was never limited. A host that the gateway has no record of gets one with these limits
     * and the right to use the storage.
     *
     * <p>The change sets the host's right to use the internet as well, to what follows from the MAC
     * filter's mode and list. That is why no limit is set when the filter can't be read.
     *
     * <p>Example answer: {@code 0}
     *
     * @param sMac the host's MAC address, for example {@code 02:11:22:33:44:55}, in any case; not
     *     empty. At most 31 bytes of it in UTF-8 reach the gateway.
     * @param iUp the upstream limit in the gateway's unit, passed on unchecked as an unsigned
     *     32-bit number; 0 for none
     * @param iDown the downstream limit, likewise
     * @return 0; -1 when the address is {@code null} or empty, or when a process doesn't answer or
     *     refuses, be it while the MAC filter is read, the limits, or when they are changed
     */
    public native int setLANHostSpeedLimit(String sMac, int iUp, int iDown);
}
