package com.veltra.domoline.systemtest;

import com.google.gson.JsonArray;
import com.google.gson.JsonElement;
import com.google.gson.JsonObject;
import com.veltra.domoline.deviceservice.kavo.wap.JNINativeMethods;
import java.util.EnumMap;
import java.util.HashSet;
import java.util.List;
import java.util.Map;
import java.util.Set;
import java.util.function.Predicate;

/** What a storm asks and does not change: queries with known answers, and diagnoses. */
final class StormLooks {
    private static final JNINativeMethods kStart = new JNINativeMethods();

    private StormLooks() {}

    static List<StormPart> parts() {
        return List.of(new Constants(), new Machine(), new Diagnoses());
    }

    /** Queries whose answers no change of the home changes. */
    private static final class Constants extends StormPart {
        private static final List<KnownQuery> kQueries = KnownQuery.constants();

        private int iNext;

        Constants() {
            super("constants ");
        }

        @Override
        void act() {
            KnownQuery query = kQueries.get(iNext++ % kQueries.size());
            GatewayMethod known = query.known;
            boolean bTable = known == TrafficMethod.FLOW_MEMBERS;
            boolean bText = known == LanMethod.STATISTICS;
            asked(query.method,
                    ()
                            -> bTable ? carrying(Gateway.kGulm, query::call)
                            : bText   ? carrying(Gateway.kAppM, query::call)
                                      : query.call(),
                    known::isSuccess, known::isFailure);
        }
    }

    /** What depends on the machine and its clock, and on what no process knows. */
    private static final class Machine extends StormPart {
        private static final int kLongestTest = 3600;

        private volatile boolean bRuntimeKnown;

        Machine() {
            super("machine ");
        }

        @Override
        boolean isWarm() {
            return bRuntimeKnown;
        }

        @Override
        void act() {
            if (!bRuntimeKnown || oneIn(100)) {
                // It starts a virtual machine, and leaves a file when it does so first.
                bRuntimeKnown = true;
                asked("getJVMInfo",
                        () -> Natives.call(Box.kInfo, "getJVMInfo"), isResult(0), isResult(1));
                return;
            }
            switch (roll(3)) {
            case 0:
                // A reset lets the time begin at 0, as it does not in the home as shipped.
                asked("getDeviceUpTime",
                        ()
                                -> Natives.call(Box.kInfo, "getDeviceUpTime"),
                        Machine::isUpTime, DeviceMethod.UP_TIME::isFailure);
                break;
            case 1:
                asked("getStorageInfo",
                        ()
                                -> Natives.call(Box.kUsb, "getStorageInfo"),
                        Machine::isVolume, BoxMethod.STORAGE::isFailure);
                break;
            default:
                asked("startThread",
                        ()
                                -> Natives.call(kStart, "startThread"),
                        answer -> answer.equals(0), answer -> false);
            }
        }

        private static boolean isUpTime(Object answer) {
            int iSeconds = (int) answer;
            int iShipped = 86400;
            return iSeconds >= 0 && iSeconds < kLongestTest
                    || iSeconds >= iShipped && iSeconds < iShipped + kLongestTest;
        }

        /** Nothing of it is free while the disk is full. */
        private static boolean isVolume(Object answer) {
            return BoxMethod.STORAGE.isSuccess(
                    ((String) answer).replace("\"validStorage\": 0 ", "\"validStorage\": 1 "));
        }

        private static Predicate<Object> isResult(int iResult) {
            return answer -> ThreadStories.result(answer) == iResult;
        }
    }

    private enum Kind {
        PING(Traffic.kPing, "IPPing") {
            @Override
            String address(JsonObject result) {
                return StormPart.text(result, "Address");
            }
        },
        DNS(Traffic.kDns, "Dns") {
            @Override
            Object[] arguments(String host) {
                return new Object[] {Wan.kInternet, host, "192.0.2.53", null};
            }
            @Override
            String address(JsonObject result) {
                return result.getAsJsonArray("Addresses").get(0).getAsString();
            }
        },
        TRACE_ROUTE(Traffic.kTraceRoute, "TraceRoute") {
            @Override
            String address(JsonObject result) {
                JsonArray hops = result.getAsJsonArray("Hops");
                JsonElement last = hops.get(hops.size() - 1);
                return StormPart.text(last, "Address");
            }
        };

        final Object service;
        final String start;
        final String result;

        Kind(Object service, String name) {
            this.service = service;
            start = "start" + name + "Diagnostics";
            result = "get" + name + "DiagnosticsResult";
        }

        Object[] arguments(String host) {
            return new Object[] {Wan.kInternet, host, null};
        }

        /** What a complete result says of the host. */
        abstract String address(JsonObject result);
    }

    /**
     * Diagnoses from their start to their result. Their process keeps the last one of each kind in
     * its memory, and forgets it when it dies.
     */
    private static final class Diagnoses extends StormPart {
        private static final String kNone = "";
        private static final int kHosts = 1000;

        /** The hosts that the last one of a kind may have been for. */
        private final Map<Kind, Set<String>> possible = new EnumMap<>(Kind.class);

        Diagnoses() {
            super("diagnosis ");
        }

        @Override
        void act() {
            Kind kind = oneOf(Kind.values());
            if (rarely(3, kind.service, kind.start)) {
                start(kind);
            } else {
                asked(kind.result,
                        ()
                                -> result(kind),
                        answer
                        -> isPossible(kind, (String) answer),
                        Traffic.kFailedWithoutBlanks::equals);
            }
        }

        private void start(Kind kind) {
            String host = "host-" + roll(kHosts) + ".example";
            boolean bCalmBefore = isCalm();
            // 1 says that one runs.
            Object answer = asked(kind.start,
                    ()
                            -> Natives.call(kind.service, kind.start, kind.arguments(host)),
                    started
                    -> started.equals(0) || started.equals(1),
                    started -> started.equals(-1));
            if (answer.equals(0) && bCalmBefore && isCalm()) {
                possible.get(kind).clear();
            }
            if (!answer.equals(1)) {
                possible.get(kind).add(host);
            }
        }

        private Object result(Kind kind) {
            if (kind == Kind.PING) {
                return Natives.call(kind.service, kind.result);
            }
            return carrying(Gateway.kAppM, () -> Natives.call(kind.service, kind.result));
        }

        private boolean isPossible(Kind kind, String answer) {
            Set<String> hosts = possible.get(kind);
            JsonObject result = Home.object(answer);
            if (result.get("Result").getAsInt() == 1) {
                return hosts.stream().anyMatch(host -> !host.equals(kNone));
            }
            if (answer.equals(Traffic.kNotRun)) {
                // In trouble its process may have died since.
                return hosts.contains(kNone) || !isCalm();
            }
            if (result.get("Result").getAsInt() != 0) {
                return false;
            }
            String host = text(result, "Host");
            return text(result, "State").equals("Complete") && hosts.contains(host)
                    && kind.address(result).equals(addressOf(host));
        }

        /** As the gateway makes it of a name that is nobody's on the LAN. */
        private static String addressOf(String host) {
            return "203.0.113." + (1 + Integer.toUnsignedLong(host.hashCode()) % 254);
        }

        @Override
        void learn(JsonObject home) {
            // The process is started anew.
            for (Kind kind : Kind.values()) {
                possible.put(kind, new HashSet<>(Set.of(kNone)));
            }
        }
    }
}
