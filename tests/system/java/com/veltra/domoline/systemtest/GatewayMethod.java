package com.veltra.domoline.systemtest;

import java.util.ArrayList;
import java.util.Arrays;
import java.util.List;

/**
 * A query as the tests know it: whom it asks, what it answers for the home as it is shipped, and
 * what when nobody answers.
 */
interface GatewayMethod {
    /** The processes without which it fails, the one that is asked first; none when none is. */
    List<String> processes();

    /** The RPC that it asks the first of them. */
    int rpc();

    Object call();

    boolean isSuccess(Object answer);

    boolean isFailure(Object answer);

    default void assertSucceeds() {
        Object answer = call();
        if (!isSuccess(answer)) {
            throw new AssertionError(this + " answered " + answer);
        }
    }

    default void assertFails() {
        Object answer = call();
        if (!isFailure(answer)) {
            throw new AssertionError(this + " answered " + answer + " and no failure");
        }
    }

    /** The queries of all services. */
    static List<GatewayMethod> all() {
        List<GatewayMethod> methods = new ArrayList<>(Arrays.asList(DeviceMethod.values()));
        methods.addAll(Arrays.asList(LanMethod.values()));
        return methods;
    }
}
