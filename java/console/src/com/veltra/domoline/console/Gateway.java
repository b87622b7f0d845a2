package com.veltra.domoline.console;

import com.veltra.domoline.shared.RuntimeDirectory;
import java.io.IOException;
import java.lang.reflect.InvocationTargetException;
import java.lang.reflect.Method;
import java.util.List;
import java.util.Objects;
import java.util.concurrent.TimeUnit;
import java.util.stream.Collectors;

/**
 * The gateway as the console sees it: makes the calls, and starts the message service before the
 * first one.
 */
public final class Gateway {
    static final String kStartMethod = "startThread";

    /** What to do when calls fail because no gateway answers. */
    static final String kHint =
            "Does the gateway run where VT_RUNTIME_DIR says? 'gatewayctl status' shows its"
            + " processes, 'gatewayctl start' starts them.";

    private final ServiceCatalog catalog;
    private boolean bStarted;

    /**
     * Makes one; nothing is started yet.
     *
     * @param catalog the services
     */
    public Gateway(ServiceCatalog catalog) {
        this.catalog = catalog;
    }

    /** The gateway can't be reached at all; the message says why and what to do. */
    public static final class UnreachableException extends Exception {
        private static final long serialVersionUID = 1L;

        UnreachableException(String message) {
            super(message);
        }
    }

    /**
     * Calls a method on a new object of its class. The first call starts the message service.
     *
     * @param call what to call
     * @return what it brought, failures included
     * @throws UnreachableException if the library can't be loaded or the message service not
     *     started
     */
    public Outcome call(Arguments.Call call) throws UnreachableException {
        start();
        Object[] before = new Object[call.values.length];
        for (int i = 0; i < before.length; i++) {
            Object value = call.values[i];
            before[i] = value instanceof byte[] ? ((byte[]) value).clone() : value;
        }
        Outcome outcome = invoke(call.method, call.values);
        for (int i = 0; i < before.length; i++) {
            if (!Objects.deepEquals(before[i], call.values[i])) {
                outcome.addFilled(
                        call.method.getParameters()[i].getName(), (byte[]) call.values[i]);
            }
        }
        return outcome;
    }

    /**
     * Loads the library and starts the message service; later calls do nothing.
     *
     * @throws UnreachableException if one of them can't be done, or no folder is named where the
     *     gateway could be
     */
    void start() throws UnreachableException {
        if (bStarted) {
            return;
        }
        try {
            RuntimeDirectory.check();
        } catch (IOException e) {
            throw new UnreachableException(e.getMessage());
        }
        for (Method method : catalog.methods()) {
            if (method.getName().equals(kStartMethod)) {
                Outcome outcome = invoke(method, new Object[0]);
                if (outcome.failed()) {
                    throw new UnreachableException(
                            "The message service refuses this process; it takes one Java process"
                            + " at a time (startThread answered " + outcome.describe(Palette.PLAIN)
                            + "). " + kHint);
                }
                bStarted = true;
                return;
            }
        }
        throw new UnreachableException("No class on the class path starts the message service.");
    }

    private static Outcome invoke(Method method, Object[] values) throws UnreachableException {
        long lBegin = System.nanoTime();
        Object value = null;
        Throwable thrown = null;
        try {
            Object target = method.getDeclaringClass().getDeclaredConstructor().newInstance();
            value = method.invoke(target, values);
        } catch (LinkageError e) {
            throw unloadable(e);
        } catch (InvocationTargetException e) {
            if (e.getCause() instanceof LinkageError) {
                throw unloadable(e.getCause());
            }
            thrown = e.getCause();
        } catch (ReflectiveOperationException e) {
            thrown = e;
        }
        long lMilliseconds = TimeUnit.NANOSECONDS.toMillis(System.nanoTime() - lBegin);
        return new Outcome(method, value, thrown, lMilliseconds);
    }

    private static UnreachableException unloadable(Throwable reason) {
        return new UnreachableException("The native library can't be used: " + reason.getMessage()
                + ". -Djava.library.path=DIR names the folder that holds"
                + " libvt_wap_jni.so and libvt_ssp_basic.so.");
    }

    /**
     * Gives the services.
     *
     * @return the catalog
     */
    public ServiceCatalog catalog() {
        return catalog;
    }

    /**
     * Lists the queries, for a tour of the device.
     *
     * @return every method that only asks
     */
    List<Method> queries() {
        return catalog.methods()
                .stream()
                .filter(ServiceCatalog::isQuery)
                .collect(Collectors.toList());
    }

    /**
     * Asks which WAN connection carries internet service, as one to try queries with.
     *
     * @return its index; -1 when there is none or nobody tells
     */
    int internetWan() {
        for (Method method : catalog.methods()) {
            if (method.getName().equals("getInternetWANIndex")) {
                try {
                    Object value = call(new Arguments.Call(method, new Object[0])).value();
                    return value instanceof Integer ? (Integer) value : -1;
                } catch (UnreachableException e) {
                    return -1;
                }
            }
        }
        return -1;
    }
}
