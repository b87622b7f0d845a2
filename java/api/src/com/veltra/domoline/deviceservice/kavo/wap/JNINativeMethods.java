package com.veltra.domoline.deviceservice.kavo.wap;

/**
 * Attaches this Java process to the gateway's message service.
 *
 * <p>A bundle, or any other Java program, does this once before it uses a service class:
 *
 * <pre>{@code
 * if (new JNINativeMethods().startThread() != 0) {
 *     throw new IllegalStateException("the gateway's message service can't be reached");
 * }
 * System.out.println(new DeviceInfoQueryServiceJNI().getDeviceInfo());
 * }</pre>
 *
 * <p>The process is known to the gateway under the name {@code jamvm} from then on. There is no way
 * to detach: the connection and its thread live as long as the process.
 */
public class JNINativeMethods {
    static {
        NativeLibrary.load();
    }

    /** Creates the caller's handle. It holds no state; one is as good as another. */
    public JNINativeMethods() {}

    /**
     * Starts the message service and the native thread {@code WAP_JNI_msgthread} that receives the
     * gateway's messages. Once it has succeeded, further calls do nothing and answer 0.
     *
     * <p>The first call is meant to be made by one thread, before the others start working.
     *
     * <p>Example answer: {@code 0}
     *
     * @return 0 when the service runs, and also when the platform's library can't be opened: then a
     *     later call tries again, and service methods answer their failures meanwhile; 1 when the
     *     message service refuses this process or the thread can't be started
     */
    public native int startThread();
}
