package com.veltra.domoline.deviceservice.kavo.wap.gulm.jni;

import com.veltra.domoline.deviceservice.kavo.wap.JNINativeMethods;
import com.veltra.domoline.deviceservice.kavo.wap.NativeLibrary;

/**
 * Keeps the registry of the destination addresses whose traffic bundles want monitored.
 *
 * <p>{@link JNINativeMethods#startThread()} must have been called once. The methods may be called
 * by any number of threads; each asks the process {@code gulm} and blocks the calling thread until
 * the answer arrives, 5 seconds at most. A process that is not running makes them fail without
 * waiting. Changes are announced to the process {@code app_m} as well, before {@code gulm} is
 * asked; whether that succeeds has no influence on the result. A process {@code app_m} that has
 * stopped answering without having ended can hold the announcement, and with it the change, for
 * another 5 seconds. No method throws because of the gateway's state.
 */
public class TrafficMonitoringConfigServiceJNI {
    static {
        NativeLibrary.load();
    }

    /** Creates a client of the service. It holds no state; one can serve all threads. */
    public TrafficMonitoringConfigServiceJNI() {}

    /**
     * Registers addresses for a bundle. Asks the process {@code gulm}, at most 5 seconds, once the
     * process {@code app_m} has taken note, for which it is given 5 seconds as well.
     *
     * <p>Example: {@code addTrafficMonitoringDestAddress(new String[] {"10.0.0.1", "10.0.0.2"},
     * "com.example.meter")} answers {@code 0}.
     *
     * @param asAddresses the addresses, at least one; each has less than 256 bytes of UTF-8 and is
     *     passed on as it is, joined to the others with commas. A {@code null} or empty element
     *     leaves nothing but its comma. How many there may be is bounded by the local references
     *     that the virtual machine grants to one call, four for each, and by 65535; addresses that
     *     take more than 2048 bytes together are sent compressed, and fail when that does not make
     *     them shorter
     * @param sBundle the bundle's name, neither {@code null} nor empty; {@code gulm} gets its first
     *     255 bytes of UTF-8, {@code app_m} its first 127
     * @return 0, or -1 when the array is {@code null} or empty, an address is too long, there are
     *     too many, or the name is {@code null} or empty (nobody is asked or told then), when
     *     memory runs out, or when the process doesn't answer or refuses
     */
    public native int addTrafficMonitoringDestAddress(String[] asAddresses, String sBundle);

    /**
     * Takes addresses of a bundle out of the registry. Asks the process {@code gulm}, at most 5
     * seconds, once the process {@code app_m} has taken note, for which it is given 5 seconds as
     * well.
     *
     * <p>Example: {@code deleteTrafficMonitoringDestAddress(new String[] {"10.0.0.1"},
     * "com.example.meter")} answers {@code 0}.
     *
     * @param asAddresses as for {@link #addTrafficMonitoringDestAddress(String[], String)}
     * @param sBundle as for {@link #addTrafficMonitoringDestAddress(String[], String)}
     * @return 0, or -1 when the array is {@code null} or empty, an address is too long, there are
     *     too many, or the name is {@code null} or empty (nobody is asked or told then), when
     *     memory runs out, or when the process doesn't answer or refuses
     */
    public native int deleteTrafficMonitoringDestAddress(String[] asAddresses, String sBundle);

    /**
     * Lists the registry of all bundles. Asks the process {@code gulm}, at most 5 seconds.
     *
     * <p>Example answer:
     *
     * <pre>{@code
     * {"Result":0,"List":[{"BundleName":"com.example.meter","DestAddressList":["10.0.0.1",
     *   "10.0.0.2"]},{"BundleName":"com.example.shield","DestAddressList":["192.0.2.7"]}]}
     * }</pre>
     *
     * <p>The answer is one line, and always JSON. {@code BundleName} is the name of a bundle,
     * {@code DestAddressList} are its addresses. The bundles come in the gateway's order, and the
     * lists of addresses exactly as {@code gulm} writes them. A bundle's name is cut to 255 bytes,
     * and what is left of it is inserted as it stands: when a name or a list would reach beyond its
     * place, or the answer be no JSON, the call fails. What has no name or no list of addresses is
     * left out.
     *
     * @return the list; <code>{"Result":0, "List":[]}</code> (a blank after the comma) when the
     *     registry is empty; <code>{"Result":-1}</code> (no blanks) when {@code gulm} doesn't
     *     answer, refuses, or sends what can't be read or would not be JSON in the list (a quote
     *     that ends a name, a control character, a list without its end, or one nested more than 29
     *     deep), when it counts neither bundles nor addresses beside a text or so many that the
     *     answer would exceed 16 MiB, or when memory runs out; {@code null} when there is no memory
     *     for the text. The text has less than 384 bytes for each bundle and 272 for each address,
     *     as {@code gulm} counts them; where that is not enough, the list ends with the last bundle
     *     that fits
     */
    public native String getTrafficMonitoringDestAddressInfo();
}
