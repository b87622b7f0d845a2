package com.veltra.domoline.systemtest;

import com.veltra.domoline.deviceservice.kavo.wap.JNINativeMethods;
import java.util.ArrayList;
import java.util.List;
import java.util.Map;
import java.util.Set;
import java.util.TreeSet;
import java.util.concurrent.ConcurrentHashMap;
import java.util.concurrent.atomic.LongAdder;
import java.util.function.Predicate;
import java.util.function.Supplier;

/**
 * What one of many threads calls. Queries whose answers nobody changes have the answer that the
 * home has as it is shipped. What changes something is a little story about an element of the
 * thread's own, or sets what is set already.
 */
final class ThreadCalls {
    private static final String kOk = "ok";
    private static final String kFailed = "failed: ";
    private static final String kUndone = kFailed + "undone: ";
    /** Each story is told by every so manyth thread. */
    private static final int kShare = 4;
    private static final int kLastFlow = 64;
    /** So many threads have one each, of those that the home has or gets. */
    static final int kSerialDevices = 8;
    private static final JNINativeMethods kStart = new JNINativeMethods();
    /** How often each call succeeded, by its name; 0 for one that only failed. */
    private static final Map<String, LongAdder> kSuccesses = new ConcurrentHashMap<>();

    private final int iThread;
    private final ThreadStories stories;
    private final List<GatewayMethod> calls = new ArrayList<>();
    private int iStory;

    private ThreadCalls(int iThread) {
        this.iThread = iThread;
        stories = new ThreadStories(iThread);
    }

    static List<GatewayMethod> of(int iThread) {
        ThreadCalls all = new ThreadCalls(iThread);
        all.addQueries();
        all.addListsThatChange();
        all.addSettings();
        all.addStories();
        all.addDeletions();
        return all.calls;
    }

    /** The calls that have only failed, which some may at any time. */
    static Set<String> neverSucceeded() {
        Set<String> names = new TreeSet<>(kSuccesses.keySet());
        names.removeIf(name -> kSuccesses.get(name).sum() > 0);
        return names;
    }

    // ---- kinds of calls ----

    private static final class Call implements GatewayMethod {
        private final String name;
        private final Query query;
        private final Predicate<Object> failure;
        private final boolean bStory;

        Call(String name, List<String> processes, Supplier<Object> call, Predicate<Object> success,
                Predicate<Object> failure, boolean bStory) {
            this.name = name;
            this.failure = failure;
            this.bStory = bStory;
            LongAdder successes = kSuccesses.computeIfAbsent(name, none -> new LongAdder());
            Supplier<Object> counted = () -> {
                Object answer = call.get();
                if (answer != null && success.test(answer) && !failure.test(answer)) {
                    successes.increment();
                }
                return answer;
            };
            query = new Query(processes, 0, counted, success, null);
        }

        @Override
        public Query query() {
            return query;
        }

        @Override
        public boolean isFailure(Object answer) {
            return failure.test(answer);
        }

        @Override
        public boolean isStory() {
            return bStory;
        }

        @Override
        public boolean isUndone(Object answer) {
            return bStory && ((String) answer).startsWith(kUndone);
        }

        @Override
        public String toString() {
            return name;
        }
    }

    private void add(String name, List<String> processes, Supplier<Object> call,
            Predicate<Object> success, Predicate<Object> failure) {
        calls.add(new Call(name, processes, call, success, failure, false));
    }

    /** A query that is known, called by its method's name. */
    private void known(GatewayMethod known, Object service, String method, Object... arguments) {
        add(new KnownQuery(known, service, method, arguments));
    }

    private void add(KnownQuery query) {
        add(query.method, query.known.processes(), query::call, query.known::isSuccess,
                query.known::isFailure);
    }

    /** A list that other threads change: it must be JSON, strictly. */
    private void list(GatewayMethod known, boolean bMayBeOvertaken, Object service, String method,
            Object... arguments) {
        Predicate<Object> success = answer -> ThreadStories.result(answer) == 0;
        add(method, known.processes(),
                ()
                        -> Natives.call(service, method, arguments),
                bMayBeOvertaken ? success.or(known::isFailure) : success, known::isFailure);
    }

    /** A change of something to what it is. */
    private void same(List<String> processes, Object service, String method, Object... arguments) {
        add(method, processes,
                ()
                        -> Natives.call(service, method, arguments),
                answer -> answer.equals(0), answer -> answer.equals(-1));
    }

    /** A story of a few calls, told by some of the threads. */
    private void story(String name, List<String> processes, Runnable steps) {
        if ((iThread + iStory++) % kShare == 0) {
            calls.add(new Call(name, processes, () -> {
                try {
                    steps.run();
                    return kOk;
                } catch (ThreadStories.Undone e) {
                    return kUndone + e.getMessage();
                } catch (ThreadStories.Failed e) {
                    return kFailed + e.getMessage();
                }
            }, kOk::equals, answer -> ((String) answer).startsWith(kFailed), true));
        }
    }

    // ---- queries ----

    private void addQueries() {
        KnownQuery.constants().forEach(this::add);
        known(DeviceMethod.UP_TIME, Box.kInfo, "getDeviceUpTime");
        known(LanMethod.ADDRESS, Lan.kAddress, "getLANHostIP");
        known(LanMethod.DHCP, Lan.kAddress, "getLANDHCPInfo");
        known(LanMethod.GATEWAY_NAME, Lan.kHosts, "getGatewayName");
        known(LanMethod.ALL_HOSTS, Lan.kHosts, "getLANHostInfoByMAC", (Object) null);
        known(LanMethod.HOSTS_BY_CLASS, Lan.kHosts, "getLANHostInfoByClass", "PHONE");
        known(LanMethod.HOSTS_BY_INTERFACE, Lan.kHosts, "getLANHostInfoByInterface", "LAN2");
        known(LanMethod.FILTER_MODE, Lan.kHosts, "getMacFilterMode");
        known(LanMethod.SPEED_LIMITS, Lan.kHosts, "getLANHostSpeedLimitInfo",
                (Object) Lan.macs(Lan.kPhone, Lan.kTablet));
        known(BoxMethod.STORAGE, Box.kUsb, "getStorageInfo");
        if (iThread == 0) {
            // It starts a virtual machine, and its callers take turns.
            add("getJVMInfo", List.of(),
                    ()
                            -> Natives.call(Box.kInfo, "getJVMInfo"),
                    answer -> ThreadStories.result(answer) == 0, answer -> false);
        }
        add("startThread", List.of(),
                ()
                        -> Natives.call(kStart, "startThread"),
                answer -> answer.equals(0), answer -> false);
    }

    private void addListsThatChange() {
        list(WanMethod.WAN_LIST, false, Wan.kAccess, "getWANIfList");
        list(LanMethod.PORT_MAPPINGS, false, Lan.kMappings, "getPortMappingInfo");
        list(WanMethod.IPV4_CURRENT, false, Wan.kQuery, "getLayer3ForwardingCurrent");
        list(WanMethod.IPV6_CURRENT, false, Wan.kQuery, "getIPv6Layer3ForwardingCurrent");
        list(WanMethod.VLAN_BINDINGS, false, Wan.kQuery, "getVLANBindInfo");
        list(BoxMethod.HTTP_RIGHTS, false, Box.kRights, "getHTTPRightInfo");
        list(TrafficMethod.MONITORED, false, Traffic.kMonitor,
                "getTrafficMonitoringDestAddressInfo");
        list(TrafficMethod.MIRROR_RULES, false, Traffic.kMirror, "getMirroRuleInfo");
        list(TrafficMethod.FORWARD_RULES, false, Traffic.kForward, "getForwardRuleInfo");
        list(TrafficMethod.HTTP_RULES, false, Traffic.kHttp, "getHTTPTrafficProcessRuleInfo");
        // They ask for one entry after the other, or for their number before: an entry that goes
        // meanwhile, or comes, makes them fail.
        list(WanMethod.IPV4_STATIC, true, Wan.kQuery, "getLayer3ForwardingStaticConfigInfo");
        list(WanMethod.IPV6_STATIC, true, Wan.kQuery, "getIPv6Layer3ForwardingStaticConfigInfo");
        list(BoxMethod.FTP_RIGHTS, true, Box.kRights, "getFTPRightInfo");
        list(BoxMethod.SAMBA_RIGHTS, true, Box.kRights, "getSambaRightInfo");
        diagnosis(Traffic.kPing, "getIPPingDiagnosticsResult", "startIPPingDiagnostics",
                Wan.kInternet, "printer", null);
        diagnosis(Traffic.kDns, "getDnsDiagnosticsResult", "startDnsDiagnostics", Wan.kInternet,
                "printer", "192.0.2.53", null);
        diagnosis(Traffic.kTraceRoute, "getTraceRouteDiagnosticsResult",
                "startTraceRouteDiagnostics", Wan.kInternet, "printer", null);
    }

    /** One of a kind runs for all, so that a start may be refused and a result may be to come. */
    private void diagnosis(Object service, String result, String start, Object... arguments) {
        add(result, List.of(Gateway.kAppM),
                ()
                        -> Natives.call(service, result),
                answer -> ThreadStories.result(answer) >= 0, TrafficMethod.PING::isFailure);
        if (iThread % kShare == 0) {
            // app_m asks gulm for the connections.
            add(start, List.of(Gateway.kAppM, Gateway.kGulm),
                    ()
                            -> Natives.call(service, start, arguments),
                    answer -> answer.equals(0) || answer.equals(1), answer -> answer.equals(-1));
        }
    }

    // ---- settings that stay as they are ----

    private void addSettings() {
        List<String> viaProxy = List.of(Gateway.kOsgiProxy, Gateway.kGulm);
        List<String> toAppM = List.of(Gateway.kOsgiProxy, Gateway.kAppM);
        List<String> toTarn = List.of(Gateway.kOsgiProxy, Gateway.kTarn);
        switch (iThread % kShare) {
        case 0:
            same(toAppM, Lan.kNames, "setGatewayName", "SimHome gateway");
            same(toAppM, Lan.kNames, "setLANHostName", Lan.kPc, "desk-pc");
            same(viaProxy, Lan.kAddressConfig, "setLANHostIP", "192.168.1.1", "255.255.255.0");
            break;
        case 1:
            same(viaProxy, Lan.kAddressConfig, "setLANDHCPInfo", "TRUE", "192.168.1.2",
                    "192.168.1.254", 86400);
            same(toTarn, Box.kRightConfig, "setFTPRight", 1, 0);
            // What is so already is not sent.
            same(List.of(Gateway.kGulm), Lan.kAccess, "setMacFilterMode", 0);
            break;
        case 2:
            same(List.of(Gateway.kOsgiProxy, Gateway.kUsbMngt), Box.kRightConfig, "setSambaRight",
                    0, 0);
            same(toTarn, Box.kRightConfig, "setHTTPRight", 1);
            same(List.of(Gateway.kAppM), Box.kLights, "setLedSwitch", 1);
            break;
        default:
            same(toTarn, Box.kRightConfig, "setHTTPUserPassword", "secret");
            same(viaProxy, Wan.kConfig, "setWANIf", Wan.kOther, "{\"NATEnabled\":\"TRUE\"}");
            // The mode is that of the black list, in which nobody is trusted.
            add("addLANHostToTrustList", List.of(Gateway.kGulm),
                    ()
                            -> Natives.call(Lan.kAccess, "addLANHostToTrustList",
                                    (Object) Lan.macs(stories.mac())),
                    answer -> answer.equals(-1), answer -> answer.equals(-1));
            same(List.of(Gateway.kGulm), Lan.kAccess, "deleteLANHostFromTrustList",
                    (Object) Lan.macs(stories.mac()));
        }
    }

    // ---- stories ----

    private void addStories() {
        List<String> gulm = List.of(Gateway.kGulm);
        List<String> viaProxy = List.of(Gateway.kOsgiProxy, Gateway.kGulm);
        if (stories.flow() <= kLastFlow) {
            story("flow", gulm, stories::flowStory);
            story("members of a flow", gulm, stories::memberStory);
        }
        story("mirror rule", gulm,
                ()
                        -> stories.ruleStory(Traffic.kMirror, "MirrorRule", "getMirroRuleInfo",
                                stories.address(), "80", "UP", "TCP", null, "192.168.1.100", 9000));
        story("forward rule", gulm,
                ()
                        -> stories.ruleStory(Traffic.kForward, "ForwardRule", "getForwardRuleInfo",
                                stories.address(), "80", "UDP", null, "192.168.1.100", 9000));
        story("HTTP rule", gulm,
                ()
                        -> stories.ruleStory(Traffic.kHttp, "HTTPTrafficProcessRule",
                                "getHTTPTrafficProcessRuleInfo", stories.address(), 80, "DOWN",
                                stories.mac(), Lan.macs("GET"), null, Lan.macs("Host")));
        story("monitored address", gulm, stories::monitorStory);
        story("speed limit", viaProxy, stories::limitStory);
        story("storage", viaProxy, stories::storageStory);
        story("voice events", List.of(Gateway.kOsgiProxy), stories::voiceStory);
        story("port mapping", viaProxy, stories::mappingStory);
        story("IPv4 route", viaProxy,
                ()
                        -> stories.routeStory("", "getLayer3ForwardingStaticConfigInfo",
                                "10." + (100 + iThread) + ".0.0", "255.255.0.0", null,
                                Wan.kInternetName));
        story("IPv6 route", viaProxy,
                ()
                        -> stories.routeStory("IPv6", "getIPv6Layer3ForwardingStaticConfigInfo",
                                "2001:db8:" + (1000 + iThread) + "::/48", null, Wan.kInternetName));
        if (iThread < 28) {
            story("FTP account", List.of(Gateway.kOsgiProxy, Gateway.kTarn),
                    () -> stories.accountStory("FTP"));
            story("Samba account", List.of(Gateway.kOsgiProxy, Gateway.kUsbMngt),
                    () -> stories.accountStory("Samba"));
        }
        iStory = 0; // the rest is for few threads
        if (iThread < 3 * kShare) {
            story("connection", viaProxy, stories::connectionStory);
        }
        if (iThread < 4 * kShare) {
            story("binding", viaProxy, () -> {
                String port = "LAN" + (1 + iThread / kShare);
                ThreadStories.step(Wan.kBinding, "setVLANBind", port, "1/" + (1 + iThread));
                ThreadStories.step(Wan.kBinding, "clearVLANBind", port);
            });
            story("black list", List.of(Gateway.kOsgiProxy, Gateway.kGulm, Gateway.kAppM),
                    stories::blackListStory);
        }
        if (iThread < kSerialDevices) {
            int iDevice = iThread + 1;
            add("serial device", List.of(Gateway.kUsbMngt),
                    ()
                            -> stories.serialStory(iDevice) ? kOk : kFailed,
                    kOk::equals, kFailed::equals);
        }
    }

    // ---- everything at once ----

    /** One thread deletes everything of a kind now and then; the stories know that it does. */
    private void addDeletions() {
        if (iThread != kShare + 1) {
            return;
        }
        List<String> gulm = List.of(Gateway.kGulm);
        Predicate<Object> failure = answer -> answer.equals(-1);
        Predicate<Object> left = answer -> (int) answer >= 0;
        deletion(gulm, Traffic.kMirror, "deleteAllMirrorRule", left, failure);
        deletion(gulm, Traffic.kForward, "deleteAllForwardRule", left, failure);
        deletion(gulm, Traffic.kHttp, "deleteAllHTTPTrafficProcessRule", left, failure);
        // osgi_proxy is asked only if there are accounts, so that its absence shows or doesn't.
        deletion(List.of(Gateway.kTarn), Box.kRightConfig, "deleteAllFTPAccount", left.or(failure),
                failure);
        deletion(List.of(Gateway.kUsbMngt), Box.kRightConfig, "deleteAllSambaAccount",
                left.or(failure), failure);
    }

    private void deletion(List<String> processes, Object service, String method,
            Predicate<Object> success, Predicate<Object> failure) {
        add(method, processes, () -> {
            ThreadStories.kDeletions.incrementAndGet();
            try {
                return Natives.call(service, method);
            } finally {
                ThreadStories.kDeletions.incrementAndGet();
            }
        }, success, failure);
    }
}
