package com.veltra.domoline.deviceservice.kavo.wap.voip.jni;

import com.veltra.domoline.deviceservice.kavo.wap.JNINativeMethods;
import com.veltra.domoline.deviceservice.kavo.wap.NativeLibrary;

/**
 * Has a bundle told of voice events, or no longer.
 *
 * <p>There are two events: {@code NOTIFY_VOICE_CALL_INFO}, and {@code NOTIFY_VOICE_RESTRAT_FINISH},
 * with the letters of RESTRAT in this order. Their names are checked but go no further: a bundle is
 * told of both or of none.
 *
 * <p>{@link JNINativeMethods#startThread()} must have been called once. The methods may be called
 * by any number of threads; each asks the process {@code osgi_proxy} and blocks the calling thread
 * until the answer arrives, 5 seconds at most. A process that is not running makes them fail
 * without waiting. No method throws because of the gateway's state.
 */
public class VoIPInfoSubscribeServiceJNI {
    static {
        NativeLibrary.load();
    }

    /** Creates a client of the service. It holds no state; one can serve all threads. */
    public VoIPInfoSubscribeServiceJNI() {}

    /**
     * Subscribes a bundle to the voice events. Asks the process {@code osgi_proxy}, at most 5
     * seconds.
     *
     * <p>Example: {@code getSubscribeVoIPEvent("com.example.phone", new String[]
     * {"NOTIFY_VOICE_CALL_INFO"})} answers {@code 0}.
     *
     * @param sBundleName the bundle's name, neither {@code null} nor empty; the first 128 bytes of
     *     its UTF-8 are sent
     * @param asEvents at most 8 names of events; {@code null}, an empty array, and elements that
     *     are {@code null} or empty are fine
     * @return 0; -1 when an argument is not as described or memory runs out, of which nobody is
     *     told; otherwise the code of the platform or of the process that doesn't answer or
     *     refuses, never 0
     */
    public native int getSubscribeVoIPEvent(String sBundleName, String[] asEvents);

    /**
     * Ends a bundle's subscription to the voice events. Asks the process {@code osgi_proxy}, at
     * most 5 seconds.
     *
     * <p>Example: {@code getUnSubscribeVoIPEvent("com.example.phone", null)} answers {@code 0}.
     *
     * @param sBundleName as for {@link #getSubscribeVoIPEvent(String, String[])}
     * @param asEvents as for {@link #getSubscribeVoIPEvent(String, String[])}
     * @return 0; -1 when an argument is not as described or memory runs out, of which nobody is
     *     told; otherwise the code of the platform or of the process that doesn't answer or
     *     refuses, never 0
     */
    public native int getUnSubscribeVoIPEvent(String sBundleName, String[] asEvents);
}
