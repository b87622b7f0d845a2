package com.veltra.domoline.deviceservice.kavo.wap.gulm.jni;

import com.veltra.domoline.deviceservice.kavo.wap.JNINativeMethods;
import com.veltra.domoline.deviceservice.kavo.wap.NativeLibrary;

/**
 * The gateway's identity and the credentials that it left the factory with.
 *
 * <p>{@link JNINativeMethods#startThread()} must have been called once. The methods may be called
 * by any number of threads; each asks one process of the gateway and blocks the calling thread
 * until the answer arrives, 30 seconds at most. A process that is not running makes them fail
 * without waiting. No method throws because of the gateway's state.
 *
 * <p>Every method answers the bare text; only a failure is JSON, <code>{ "Result": -1 }</code> with
 * a blank after the opening brace, after the colon and before the closing brace. A text that is
 * empty on the gateway arrives as {@code null}. The native library wipes its own native copies of
 * passwords; what Java holds is the caller's to keep safe.
 */
public class DeviceSecretInfoQueryServiceJNI {
    static {
        NativeLibrary.load();
    }

    /** Creates a client of the service. It holds no state; one can serve all threads. */
    public DeviceSecretInfoQueryServiceJNI() {}

    /**
     * Tells the device password. Asks the process {@code osgi_proxy}, at most 30 seconds.
     *
     * <p>Example answer: {@code device-pass-0123456789}
     *
     * @return the password, 64 bytes at most; <code>{ "Result": -1 }</code> when the process
     *     doesn't answer or refuses; {@code null} when there is no password, or when there is no
     *     memory for the text
     */
    public native String getDevicePassword();

    /**
     * Tells the manufacturer's organisation number (OUI). Asks the process {@code cwmp}, at most 30
     * seconds.
     *
     * <p>Example answer: {@code 02A1B2}
     *
     * @return the number, 6 characters at most; <code>{ "Result": -1 }</code> when the process
     *     doesn't answer, refuses, or sends a longer text; {@code null} when the text is empty, or
     *     when there is no memory for it
     */
    public native String getDeviceManufacturerOUI();

    /**
     * Tells the device's serial number. Asks the process {@code cwmp}, at most 30 seconds.
     *
     * <p>Example answer: {@code EX0123456789AB}
     *
     * @return the serial number, 127 bytes at most; <code>{ "Result": -1 }</code> when the process
     *     doesn't answer, refuses, or sends a longer text; {@code null} when the text is empty, or
     *     when there is no memory for it
     */
    public native String getDeviceSerialNumber();

    /**
     * Tells the factory password of the administration pages. Asks the process {@code osgi_proxy},
     * at most 30 seconds.
     *
     * <p>Example answer: {@code web-pass-abcdefghijklmnopq}
     *
     * @return the password, 127 bytes at most; <code>{ "Result": -1 }</code> when the process
     *     doesn't answer, refuses, or sends a longer text; {@code null} when the text is empty, or
     *     when there is no memory for it
     */
    public native String getDeviceDefaultWebPassword();

    /**
     * Tells the factory name of the first wireless network. Asks the process {@code osgi_proxy}, at
     * most 30 seconds.
     *
     * <p>Example answer: {@code Home-2G}
     *
     * @return the name, 31 bytes of UTF-8 at most; <code>{ "Result": -1 }</code> when the process
     *     doesn't answer, refuses, or sends a longer text; {@code null} when the text is empty, or
     *     when there is no memory for it
     */
    public native String getDeviceDefaultSSID1Name();

    /**
     * Tells the factory password of the first wireless network. Asks the process {@code
     * osgi_proxy}, at most 30 seconds.
     *
     * <p>Example answer: {@code ssid-pass-ABCDEFGHIJKL}
     *
     * @return the password, 31 bytes at most; <code>{ "Result": -1 }</code> when the process
     *     doesn't answer, refuses, or sends a longer text; {@code null} when the text is empty, or
     *     when there is no memory for it
     */
    public native String getDeviceDefaultSSID1Password();
}
