import com.veltra.domoline.deviceservice.kavo.wap.JNINativeMethods;
import com.veltra.domoline.deviceservice.kavo.wap.gulm.jni.DeviceInfoQueryServiceJNI;

/** A Java program of someone else's: compiled and run with the installed tree alone. */
public final class Consumer {
    private Consumer() {}

    /** Prints the identity that the gateway gives. */
    public static void main(String[] arguments) {
        if (new JNINativeMethods().startThread() != 0) {
            throw new IllegalStateException("the gateway's message service can't be reached");
        }
        System.out.println(new DeviceInfoQueryServiceJNI().getDeviceInfo());
        System.out.flush();
        Runtime.getRuntime().halt(0);
    }
}
