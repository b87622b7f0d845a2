package com.veltra.domoline.deviceservice.kavo.wap;

/**
 * Loads the native library {@code vt_wap_jni} on behalf of the service classes.
 *
 * <p>Every service class calls {@link #load()} from its static initializer, so an application never
 * has to: naming a service class is enough. The library is searched for where {@code
 * java.library.path} points, and needs {@code libvt_ssp_basic.so} beside it. A virtual machine
 * loads it into one class loader only; in an OSGi framework that is the one of the bundle with
 * these classes.
 *
 * <p>Loading opens no connection. Before its first call of a service method an application starts
 * the message service with {@link JNINativeMethods#startThread()}, once.
 */
public final class NativeLibrary {
    static {
        System.loadLibrary("vt_wap_jni");
    }

    /** Not to be made: everything here is static. */
    private NativeLibrary() {}

    /**
     * Makes sure that the native library is loaded. Later calls do nothing; any thread may call.
     *
     * @throws UnsatisfiedLinkError if the library or one that it needs can't be found, or another
     *     class loader has loaded it; from the second attempt on the virtual machine reports
     *     {@link NoClassDefFoundError} instead
     */
    public static void load() {
        // Being called has run the static initializer; there is nothing left to do.
    }
}
