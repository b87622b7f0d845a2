package com.veltra.domoline.sample;

import com.veltra.domoline.deviceservice.kavo.wap.JNINativeMethods;
import com.veltra.domoline.deviceservice.kavo.wap.gulm.jni.DeviceInfoQueryServiceJNI;
import java.util.concurrent.Executors;
import java.util.concurrent.ScheduledExecutorService;
import java.util.concurrent.TimeUnit;
import org.osgi.framework.BundleActivator;
import org.osgi.framework.BundleContext;

/** Begins to watch when the bundle is started, and ends when it is stopped. */
public final class Activator implements BundleActivator {
    /** The framework's or the system's property that says who is unwanted: a name or a MAC. */
    static final String kUnwanted = "sample.unwanted";
    private static final String kUnwantedByDefault = "unwanted";

    /** Longer than the watch's longest look takes, with a gateway that doesn't answer. */
    private static final int kPatienceSeconds = 60;

    private ScheduledExecutorService worker;
    private BlackList blackList;

    /** Made by the framework. */
    public Activator() {}

    /** Attaches to the gateway and leaves the work to a thread, for others wait for this to end. */
    @Override
    public void start(BundleContext context) {
        // For the whole virtual machine, and for good: whoever is first attaches it, for the others
        // this does nothing. What is thrown here is why the bundle doesn't start.
        if (new JNINativeMethods().startThread() != 0) {
            throw new IllegalStateException("the gateway's message service can't be reached");
        }
        String unwanted = context.getProperty(kUnwanted);
        blackList = new BlackList();
        HostWatch watch =
                new HostWatch(unwanted == null ? kUnwantedByDefault : unwanted, blackList);
        worker = Executors.newSingleThreadScheduledExecutor(
                task -> new Thread(task, "sample-host-watch"));
        worker.execute(Activator::greet);
        worker.scheduleWithFixedDelay(watch, 0, 1, TimeUnit.SECONDS);
    }

    private static void greet() {
        Device device = Device.read(new DeviceInfoQueryServiceJNI().getDeviceInfo());
        log(device == null ? "this gateway doesn't say what it is" : "this is a " + device);
    }

    /**
     * Ends the thread before anything else, so that nobody is black-listed behind its back. An
     * interrupt doesn't end a call of a service, so the one that runs is waited for.
     */
    @Override
    public void stop(BundleContext context) throws InterruptedException {
        worker.shutdownNow();
        if (!worker.awaitTermination(kPatienceSeconds, TimeUnit.SECONDS)) {
            throw new IllegalStateException("the host watch doesn't end");
        }
        blackList.clear();
    }

    /** Says what happens; a gateway has a better place for it than standard output. */
    static void log(String line) {
        System.out.println("[sample] " + line);
    }
}
