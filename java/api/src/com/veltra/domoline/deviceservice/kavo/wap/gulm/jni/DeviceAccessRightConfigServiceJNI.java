package com.veltra.domoline.deviceservice.kavo.wap.gulm.jni;

import com.veltra.domoline.deviceservice.kavo.wap.JNINativeMethods;
import com.veltra.domoline.deviceservice.kavo.wap.NativeLibrary;

/**
 * Says who may log in to the gateway's FTP, Samba and web services. {@link
 * DeviceAccessRightQueryServiceJNI} tells it.
 *
 * <p>{@link JNINativeMethods#startThread()} must have been called once. The methods may be called
 * by any number of threads. Each asks processes of the gateway one after the other and waits for
 * each answer, 30 seconds at most; a process that is not running makes it fail without waiting. No
 * method throws because of the gateway's state.
 *
 * <p>A right is a number from 0 to 3 that stands for two access flags: 0 none, 1 the first, 2 the
 * second, 3 both. Of the argument only the low 8 bits are looked at, so 256 is the right 0. What
 * the flags open is for the gateway to know.
 *
 * <p>Lengths of names and passwords are those of their UTF-8 form. A U+0000 ends a text. The native
 * library wipes its own copies of passwords; what Java holds is the caller's to keep safe.
 */
public class DeviceAccessRightConfigServiceJNI {
    static {
        NativeLibrary.load();
    }

    /** Creates a client of the service. It holds no state; one can serve all threads. */
    public DeviceAccessRightConfigServiceJNI() {}

    /**
     * Sets the right of the FTP service, which is on unless the right is 0. Asks the process {@code
     * osgi_proxy}, at most 30 seconds.
     *
     * <p>Example: {@code setFTPRight(3, 1)} answers {@code 0}.
     *
     * @param iRight the right, 0 to 3
     * @param iValue passed on to the gateway as it is
     * @return 0, or -1 for another right (nobody is asked then), or when the process doesn't answer
     *     or refuses
     */
    public native int setFTPRight(int iRight, int iValue);

    /**
     * Sets the right of the Samba service, which is on unless the right is 0. Asks the process
     * {@code osgi_proxy}, at most 30 seconds.
     *
     * <p>Example: {@code setSambaRight(0, 1)} answers {@code 0}.
     *
     * @param iRight the right, 0 to 3
     * @param iValue passed on to the gateway as it is
     * @return 0, or -1 for another right (nobody is asked then), or when the process doesn't answer
     *     or refuses
     */
    public native int setSambaRight(int iRight, int iValue);

    /**
     * Adds an account to the FTP service. Asks the process {@code osgi_proxy}, at most 30 seconds.
     *
     * <p>Example: {@code addFTPAccount("guest", "lets-see-0815")} answers {@code 0}.
     *
     * @param sUser the user's name, 1 to 256 bytes
     * @param sPassword the password, 1 to 256 bytes
     * @return 0, or -1 when an argument is {@code null} or has another length (nobody is asked
     *     then), or when the process doesn't answer or refuses
     */
    public native int addFTPAccount(String sUser, String sPassword);

    /**
     * Adds an account to the Samba service. Asks the process {@code osgi_proxy}, at most 30
     * seconds.
     *
     * <p>Example: {@code addSambaAccount("media", "lets-hear-0815")} answers {@code 0}.
     *
     * @param sUser the user's name, 1 to 256 bytes
     * @param sPassword the password, 1 to 64 bytes
     * @return 0, or -1 when an argument is {@code null} or has another length (nobody is asked
     *     then), or when the process doesn't answer or refuses
     */
    public native int addSambaAccount(String sUser, String sPassword);

    /**
     * Deletes an account of the FTP service. Asks {@code tarn} for the number of accounts and
     * {@code osgi_proxy} for the deletion, at most 30 seconds each.
     *
     * <p>Example: {@code deleteFTPAccount("guest")} answers {@code 0}.
     *
     * @param sUser the user's name, 1 to 256 bytes
     * @return 0, or -1 when there are no accounts at all, when the name is {@code null} or has
     *     another length, or when a process doesn't answer or refuses
     */
    public native int deleteFTPAccount(String sUser);

    /**
     * Deletes an account of the Samba service. Asks {@code usb_mngt} for the number of accounts and
     * {@code osgi_proxy} for the deletion, at most 30 seconds each.
     *
     * <p>Example: {@code deleteSambaAccount("media")} answers {@code 0}.
     *
     * @param sUser the user's name, 1 to 256 bytes
     * @return 0, or -1 when there are no accounts at all, when the name is {@code null} or has
     *     another length, or when a process doesn't answer or refuses
     */
    public native int deleteSambaAccount(String sUser);

    /**
     * Deletes all accounts of the FTP service. Asks {@code tarn} for the number of accounts and, if
     * there are any, {@code osgi_proxy} for the deletion, at most 30 seconds each.
     *
     * <p>Example: {@code deleteAllFTPAccount()} answers {@code 0}.
     *
     * @return 0, also when there are no accounts, unlike {@link #deleteFTPAccount(String)}; -1 when
     *     a process doesn't answer or refuses
     */
    public native int deleteAllFTPAccount();

    /**
     * Deletes all accounts of the Samba service. Asks {@code usb_mngt} for the number of accounts
     * and, if there are any, {@code osgi_proxy} for the deletion, at most 30 seconds each.
     *
     * <p>Example: {@code deleteAllSambaAccount()} answers {@code 0}.
     *
     * @return 0, also when there are no accounts, unlike {@link #deleteSambaAccount(String)}; -1
     *     when a process doesn't answer or refuses
     */
    public native int deleteAllSambaAccount();

    /**
     * Sets the right of the web service. Asks the process {@code osgi_proxy}, at most 30 seconds.
     *
     * <p>Example: {@code setHTTPRight(1)} answers {@code 0}.
     *
     * @param iRight the right, 0 to 3
     * @return 0, or -1 for another right (nobody is asked then), or when the process doesn't answer
     *     or refuses
     */
    public native int setHTTPRight(int iRight);

    /**
     * Sets the password of the web service's user. Asks the process {@code osgi_proxy}, at most 30
     * seconds.
     *
     * <p>Example: {@code setHTTPUserPassword("lets-look-0815")} answers {@code 0}.
     *
     * @param sPassword the password, 1 to 127 bytes
     * @return 0, or -1 when the password is {@code null} or has another length (nobody is asked
     *     then), or when the process doesn't answer or refuses
     */
    public native int setHTTPUserPassword(String sPassword);
}
