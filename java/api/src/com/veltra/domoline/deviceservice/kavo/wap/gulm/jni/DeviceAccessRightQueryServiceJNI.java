package com.veltra.domoline.deviceservice.kavo.wap.gulm.jni;

import com.veltra.domoline.deviceservice.kavo.wap.JNINativeMethods;
import com.veltra.domoline.deviceservice.kavo.wap.NativeLibrary;

/**
 * Tells who may log in to the gateway's FTP, Samba and web services. {@link
 * DeviceAccessRightConfigServiceJNI} changes it.
 *
 * <p>{@link JNINativeMethods#startThread()} must have been called once. The methods may be called
 * by any number of threads. Each asks processes of the gateway one after the other and waits for
 * each answer, 30 seconds at most; a process that is not running makes it fail without waiting. No
 * method throws because of the gateway's state.
 *
 * <p>The answers are texts of the gateway's process {@code osgi_proxy}, handed over as they are;
 * only a failure, <code>{ "Result": -1 }</code>, is the library's.
 */
public class DeviceAccessRightQueryServiceJNI {
    static {
        NativeLibrary.load();
    }

    /** Creates a client of the service. It holds no state; one can serve all threads. */
    public DeviceAccessRightQueryServiceJNI() {}

    /**
     * Tells the right and the accounts of the FTP service. Asks {@code tarn} for the number of
     * accounts and {@code osgi_proxy} for the text, at most 30 seconds each. One thread at a time
     * is served; others wait for their turn.
     *
     * <p>Example answer of the simulated gateway:
     *
     * <pre>{@code
     * {"Result":0,"LanAccess":1,"WanAccess":0,"Enable":1,"Value":0,"List":[{"User":"anna"}]}
     * }</pre>
     *
     * <p>{@code LanAccess} and {@code WanAccess} are the first and the second access flag of the
     * right that {@link DeviceAccessRightConfigServiceJNI#setFTPRight(int, int)} sets, each 0 or 1;
     * {@code Enable} is 1 when the service is on, {@code Value} the number that was handed over
     * with the right. {@code User} is the name of an account; passwords are not told.
     *
     * <p>The text is handed over as it stands: whether it is JSON is up to the process.
     *
     * @return the text; <code>{ "Result": -1 }</code> when a process doesn't answer or refuses, or
     *     when the shared memory for the answer can't be made, read or removed, or when memory runs
     *     out; {@code null} when the text is empty, or when there is no memory for it
     */
    public native String getFTPRightInfo();

    /**
     * Tells the right and the accounts of the Samba service. Asks {@code usb_mngt} for the number
     * of accounts and {@code osgi_proxy} for the text, at most 30 seconds each. One thread at a
     * time is served; others wait for their turn.
     *
     * <p>Example answer of the simulated gateway:
     *
     * <pre>{@code
     * {"Result":0,"LanAccess":0,"WanAccess":0,"Enable":0,"Value":0,"List":[]}
     * }</pre>
     *
     * <p>The members are those of {@link #getFTPRightInfo()}; the right is that of {@link
     * DeviceAccessRightConfigServiceJNI#setSambaRight(int, int)}.
     *
     * <p>The text is handed over as it stands: whether it is JSON is up to the process.
     *
     * @return the text; <code>{ "Result": -1 }</code> when a process doesn't answer or refuses,
     *     when the shared memory for the answer can't be made, read or removed, or when memory runs
     *     out; {@code null} when the text is empty, or when there is no memory for it
     */
    public native String getSambaRightInfo();

    /**
     * Tells the right of the web service. Asks the process {@code osgi_proxy}, at most 30 seconds.
     *
     * <p>Example answer of the simulated gateway:
     *
     * <pre>{@code
     * {"Result":0,"LanAccess":1,"WanAccess":0,"PasswordChanges":0}
     * }</pre>
     *
     * <p>{@code LanAccess} and {@code WanAccess} are the first and the second access flag of the
     * right that {@link DeviceAccessRightConfigServiceJNI#setHTTPRight(int)} sets, each 0 or 1;
     * {@code PasswordChanges} counts how often the password was set.
     *
     * <p>The text is handed over as it stands: whether it is JSON is up to the process.
     *
     * @return the text, 255 bytes at most; <code>{ "Result": -1 }</code> when the process doesn't
     *     answer, refuses, or sends a longer text; {@code null} when the text is empty, or when
     *     there is no memory for it
     */
    public native String getHTTPRightInfo();
}
