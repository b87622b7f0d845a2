package com.veltra.domoline.systemtest;

import java.util.ArrayList;
import java.util.Arrays;
import java.util.List;
import java.util.function.Predicate;
import java.util.function.Supplier;

/**
 * A query as the tests know it: whom it asks, what it answers for the home as it is shipped, and
 * what when nobody answers.
 */
interface GatewayMethod {
    /** What is known of a query; a failure of null says that it has none. */
    final class Query {
        private final List<String> processes;
        private final int iRpc;
        private final Supplier<Object> call;
        private final Predicate<Object> success;
        private final Object failure;

        Query(List<String> processes, int iRpc, Supplier<Object> call, Predicate<Object> success,
                Object failure) {
            this.processes = processes;
            this.iRpc = iRpc;
            this.call = call;
            this.success = success;
            this.failure = failure;
        }

        Query(List<String> processes, int iRpc, Supplier<Object> call, Object golden,
                Object failure) {
            this(processes, iRpc, call, (Predicate<Object>) golden::equals, failure);
        }
    }

    Query query();

    /** The processes without which it fails, the one that is asked first; none when none is. */
    default List<String> processes() {
        return query().processes;
    }

    /** The RPC that it asks the first of them. */
    default int rpc() {
        return query().iRpc;
    }

    default Object call() {
        return query().call.get();
    }

    default boolean isSuccess(Object answer) {
        return answer != null && query().success.test(answer);
    }

    default boolean isFailure(Object answer) {
        return query().failure != null && query().failure.equals(answer);
    }

    /** Whether it does something and relies on it afterwards. */
    default boolean isStory() {
        return false;
    }

    /**
     * Whether it found undone what it did, when a request that was served late may have been why.
     */
    default boolean isUndone(Object answer) {
        return false;
    }

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
        methods.addAll(Arrays.asList(WanMethod.values()));
        methods.addAll(Arrays.asList(BoxMethod.values()));
        methods.addAll(Arrays.asList(TrafficMethod.values()));
        return methods;
    }
}
