package com.veltra.domoline.systemtest;

import static com.veltra.domoline.systemtest.Natives.number;
import static com.veltra.domoline.systemtest.Natives.text;

import com.google.gson.Gson;
import com.google.gson.JsonElement;
import com.google.gson.JsonObject;
import java.io.IOException;
import java.util.concurrent.ThreadLocalRandom;
import java.util.concurrent.atomic.AtomicInteger;
import java.util.function.BooleanSupplier;

/**
 * Little stories about elements of one thread's own, from their beginning to their end: each step
 * must answer what follows from those before, or fail as its method may, which ends the story.
 */
final class ThreadStories {
    private static final Gson kGson = new Gson();
    private static final int kPatience = 20;
    /** Goes up before and after everything of a kind is deleted, so that it is odd meanwhile. */
    static final AtomicInteger kDeletions = new AtomicInteger();

    private final int iThread;
    private final String mac;

    ThreadStories(int iThread) {
        this.iThread = iThread;
        mac = String.format("02:7E:00:00:00:%02X", iThread);
    }

    // ---- steps ----

    /** A step of a story failed, as its method may. */
    static class Failed extends RuntimeException {
        private static final long serialVersionUID = 1;

        Failed(String step) {
            super(step);
        }
    }

    /** What the story did is undone, and a request that was served late may have done that. */
    static final class Undone extends Failed {
        private static final long serialVersionUID = 1;

        Undone(String what) {
            super(what);
        }
    }

    /** A step that answers 0, or fails with -1. */
    static void step(Object service, String method, Object... arguments) {
        if (!succeeds(service, method, arguments)) {
            throw new Failed(method);
        }
    }

    /** The same for a step that needs what an earlier one did. */
    private static void stepOn(Object service, String method, Object... arguments) {
        if (!succeeds(service, method, arguments)) {
            throw failedOn(method);
        }
    }

    /** What a step on something is that failed. */
    private static Failed failedOn(String what) {
        return Lateness.isPossible() ? new Undone(what) : new Failed(what);
    }

    private static boolean succeeds(Object service, String method, Object... arguments) {
        int iAnswer = number(service, method, arguments);
        insist(iAnswer == 0 || iAnswer == -1, method + " answered " + iAnswer);
        return iAnswer == 0;
    }

    private static void insist(boolean bTrue, String otherwise) {
        if (!bTrue) {
            throw new AssertionError(otherwise);
        }
    }

    /** Insists on what follows from earlier steps, unless somebody's request was served late. */
    private static void rely(boolean bTrue, String otherwise) {
        if (!bTrue && Lateness.isPossible()) {
            throw new Undone(otherwise);
        }
        insist(bTrue, otherwise);
    }

    /** Whether a list that must be one has a text in it. */
    private static boolean lists(String list, String text) {
        int iResult = result(list);
        insist(iResult != Integer.MIN_VALUE, "no JSON: " + list);
        if (iResult != 0) {
            throw new Failed("list");
        }
        return list.contains(text);
    }

    /** The result in a text that is JSON; the smallest number when it is not. */
    static int result(Object answer) {
        try {
            JsonObject object =
                    kGson.getAdapter(JsonElement.class).fromJson((String) answer).getAsJsonObject();
            return object.get("Result").getAsInt();
        } catch (IOException | RuntimeException e) {
            return Integer.MIN_VALUE;
        }
    }

    // ---- elements ----

    String mac() {
        return mac;
    }

    /** A flow of the thread's own; there is none for the last thread. */
    int flow() {
        return iThread + 1 < Traffic.kFlow ? iThread + 1 : iThread + 2;
    }

    String address() {
        return "198.51.100." + iThread;
    }

    private static int roll(int iSides) {
        return ThreadLocalRandom.current().nextInt(iSides);
    }

    // ---- stories ----

    void flowStory() {
        int iUp = roll(10000);
        int iMark = roll(64);
        step(Traffic.kFlows, "setSpeedLimitByFlow", flow(), iUp, 7);
        String limit = text(Traffic.kFlows, "getSpeedLimitByFlow", flow());
        rely(lists(limit, "\"UpSpeed\":" + iUp + ",\"DownSpeed\":7}"), limit);
        step(Traffic.kFlows, "setDSCPRemarkByFlow", flow(), iMark);
        int iTold = number(Traffic.kFlows, "getDSCPRemarkByFlow", flow());
        if (iTold == -1) {
            throw new Failed("getDSCPRemarkByFlow");
        }
        rely(iTold == iMark, "the mark is " + iTold + " instead of " + iMark);
    }

    void memberStory() {
        step(Traffic.kFlows, "addTrafficToFlow", address(), "443", flow());
        String members = text(Traffic.kFlows, "getTrafficInfoByFlow", flow());
        if (result(members) > 0) {
            throw failedOn("members");
        }
        rely(lists(members, "\"" + address() + "\""), members);
        if (roll(2) == 0) {
            stepOn(Traffic.kFlows, "deleteTrafficFromFlow", address(), "443", flow());
        } else {
            stepOn(Traffic.kFlows, "deleteAllTrafficFromFlow", flow());
        }
        rely(text(Traffic.kFlows, "getTrafficInfoByFlow", flow()).equals(Traffic.kFailed),
                "the flow still has members");
        lists(text(Traffic.kFlows, "getStatsByFlow", flow()), "");
        lists(text(Traffic.kFlows, "getSpeedByFlow", flow()), "");
    }

    void ruleStory(Object service, String name, String list, Object... rule) {
        int iBefore = kDeletions.get();
        BooleanSupplier isAlone = () -> iBefore % 2 == 0 && iBefore == kDeletions.get();
        int iRule = number(service, "add" + name, rule);
        if (iRule == -1) {
            throw new Failed("add");
        }
        insist(iRule > 0, "the rule has the number " + iRule);
        String rules = text(service, list);
        boolean bListed = lists(rules, "\"" + address() + "\"");
        rely(bListed || !isAlone.getAsBoolean(), address() + " is not in " + rules);
        if (!isAlone.getAsBoolean()) {
            return; // the number may be another rule's by now
        }
        int iAnswer = number(service, "delete" + name, iRule);
        if (iAnswer == -1 && isAlone.getAsBoolean()) {
            throw failedOn("delete");
        }
    }

    void monitorStory() {
        String bundle = "com.example.thread-" + iThread;
        String[] addresses = {address(), "2001:db8::" + iThread};
        step(Traffic.kMonitor, "addTrafficMonitoringDestAddress", addresses, bundle);
        String all = text(Traffic.kMonitor, "getTrafficMonitoringDestAddressInfo");
        rely(lists(all, "\"" + bundle + "\""), bundle + " is not in " + all);
        stepOn(Traffic.kMonitor, "deleteTrafficMonitoringDestAddress", addresses, bundle);
    }

    /** A change that reads what other threads change, one entry after the other. */
    private static void overtakable(Object service, String method, Object... arguments) {
        int iAnswer = number(service, method, arguments);
        insist(iAnswer == 0 || iAnswer == -1, method + " answered " + iAnswer);
    }

    void limitStory() {
        int iUp = 1 + roll(10000);
        overtakable(Lan.kLimits, "setLANHostSpeedLimit", mac, iUp, 1);
        String limits = text(Lan.kHosts, "getLANHostSpeedLimitInfo", (Object) Lan.macs(mac));
        lists(limits, "");
        step(Lan.kAddressConfig, "setLANHostIP", "192.168.1.1", "255.255.255.0");
    }

    void storageStory() {
        overtakable(Lan.kAccess, "addLANHostToStorageBlackList", (Object) Lan.macs(mac));
        overtakable(Lan.kAccess, "deleteLANHostFromStorageBlackList", (Object) Lan.macs(mac));
        step(Lan.kAddressConfig, "setLANHostIP", "192.168.1.1", "255.255.255.0");
    }

    void blackListStory() {
        overtakable(Lan.kAccess, "addLANHostToBlackList", (Object) Lan.macs(mac));
        overtakable(Lan.kAccess, "deleteLANHostFromBlackList", (Object) Lan.macs(mac));
        step(Lan.kNames, "setLANHostName", Lan.kTv, "living-room-tv");
        step(Lan.kAddressConfig, "setLANHostIP", "192.168.1.1", "255.255.255.0");
    }

    void voiceStory() {
        String bundle = "com.example.phone-" + iThread;
        if (number(Box.kVoiceEvents, "getSubscribeVoIPEvent", bundle, null) != 0
                || number(Box.kVoiceEvents, "getUnSubscribeVoIPEvent", bundle, null) != 0) {
            throw new Failed("voice");
        }
    }

    /** The list's element that has such a text; null if none has. */
    private static JsonObject find(String list, String member, String text, String inner) {
        lists(list, "");
        for (JsonElement element : Home.object(list).getAsJsonArray("List")) {
            JsonObject object = element.getAsJsonObject();
            if (inner == null) {
                if (object.get(member).getAsString().equals(text)) {
                    return object;
                }
                continue;
            }
            for (JsonElement part : object.getAsJsonArray(inner)) {
                if (part.getAsJsonObject().get(member).getAsString().equals(text)) {
                    return part.getAsJsonObject();
                }
            }
        }
        return null;
    }

    void mappingStory() {
        int iPort = 10000 + iThread;
        int iAdded = number(Lan.kMappingConfig, "addPortMapping", Lan.kSecond, iPort, 80, "TCP",
                "192.168.1.10");
        // -2 says that it is still there from the last time.
        if (iAdded == -1) {
            throw new Failed("addPortMapping");
        }
        String list = text(Lan.kMappings, "getPortMappingInfo");
        JsonObject mine = find(list, "ExternalPort", String.valueOf(iPort), "MapList");
        rely(mine != null, iPort + " is not in " + list);
        int iId = mine.get("PortMappingIndex").getAsInt();
        int iSwitched = number(Lan.kMappingConfig, "setPortMappingSwitch", Lan.kSecond, iId, false);
        if (iSwitched != 0) {
            throw failedOn("setPortMappingSwitch");
        }
        stepOn(Lan.kMappingConfig, "deletePortMapping", Lan.kSecond, iId);
    }

    void routeStory(String family, String list, Object... route) {
        String member = family.isEmpty() ? "DestIPAddress" : "DestIPPrefix";
        int iRoute = -1;
        for (int i = 0; i < kPatience && iRoute == -1; i++) {
            iRoute = number(Wan.kRoutes, "add" + family + "Layer3ForwardingStatic", route);
            if (iRoute == -1) {
                // Or is it still there from the last time? The list fails when a route goes while
                // it is read.
                String routes = text(Wan.kQuery, list);
                JsonObject mine =
                        result(routes) == 0 ? find(routes, member, (String) route[0], null) : null;
                iRoute = mine == null ? -1 : mine.get("Index").getAsInt();
            }
        }
        if (iRoute == -1) {
            throw new Failed("add");
        }
        stepOn(Wan.kRoutes, "delete" + family + "Layer3ForwardingStatic", iRoute);
    }

    void accountStory(String service) {
        String user = "thread-" + iThread;
        int iBefore = kDeletions.get();
        // One that was left from the last time is not added, but can be deleted all the same,
        // unless it goes in between: hence twice.
        for (int i = 0; i < 2; i++) {
            int iAdded = number(Box.kRightConfig, "add" + service + "Account", user, "secret");
            int iDeleted = number(Box.kRightConfig, "delete" + service + "Account", user);
            boolean bAlone = iBefore % 2 == 0 && iBefore == kDeletions.get();
            if (iDeleted == 0 || iAdded == 0 && !bAlone) {
                return;
            }
        }
        throw failedOn("account");
    }

    void connectionStory() {
        String vlan = String.valueOf(2000 + iThread);
        int iWan = number(Wan.kConfig, "addWANIf", "2", vlan, "IP_Bridged");
        if (iWan == -1) {
            throw new Failed("addWANIf");
        }
        if (iWan == -2) {
            String list = text(Wan.kAccess, "getWANIfList");
            lists(list, "");
            for (JsonElement wan : Home.object(list).getAsJsonArray("List")) {
                if (wan.getAsJsonObject().get("Name").getAsString().endsWith("_" + vlan)) {
                    iWan = wan.getAsJsonObject().get("Index").getAsInt();
                }
            }
            if (iWan == -2) {
                throw new Failed("getWANIfList"); // whose failure is an empty list
            }
        }
        stepOn(Wan.kConfig, "deleteWANIf", iWan);
    }

    /**
     * A serial device of the thread's own, from its registration to the end. Its process forgets
     * plug-ins and locks when it dies, so that each step may fail then.
     *
     * @return whether none did
     */
    boolean serialStory(int iDevice) {
        String plugIn = "com.example.thread-" + iThread;
        boolean bAll = number(Box.kUsb, "usbRegister", plugIn, 1) == 0;
        int iLocked = number(Box.kUsb, "usbLock", iDevice);
        if (iLocked == UsbLine.kBusy) {
            // Left from the last time, when it could not be unlocked.
            number(Box.kUsb, "usbUnlock", iDevice);
            iLocked = number(Box.kUsb, "usbLock", iDevice);
        }
        int iHandle = number(Box.kUsb, "usbOpen", iDevice);
        bAll &= iLocked == 0 & iHandle >= 0;
        if (iHandle >= 0) {
            byte[] bytes = {'A', 'T', '\r', '\n'};
            bAll &= number(Box.kUsb, "usbSetSerial", iHandle, 9600, 0, 8, 1, false, false) == 0
                    & number(Box.kUsb, "usbWrite", iHandle, bytes, 0, 4) == 4
                    & number(Box.kUsb, "usbDataAvailable", iHandle) == 1 & reads(iHandle)
                    & number(Box.kUsb, "usbClose", iHandle) == 0;
        }
        bAll &= number(Box.kUsb, "usbUnlock", iDevice) == 0
                & number(Box.kUsb, "usbUnregister", plugIn) == 0;
        return bAll;
    }

    /** Whether a read has what is there; so many threads' connections are open that few can. */
    private static boolean reads(int iHandle) {
        byte[] bytes = new byte[8];
        return iHandle<UsbLine.kUnreadable
                       ? number(Box.kUsb, "usbRead", iHandle, bytes, 0, bytes.length, 1)> 0
            : number(Box.kUsb, "usbRead", iHandle, bytes, 0, bytes.length, 0)
              == 0;
    }
}
