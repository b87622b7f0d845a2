package com.veltra.domoline.sample;

import com.veltra.domoline.deviceservice.kavo.wap.gulm.jni.LANHostsInfoQueryServiceJNI;
import com.veltra.domoline.deviceservice.kavo.wap.gulm.jni.LanNetworkAccessConfigServiceJNI;
import java.util.LinkedHashMap;
import java.util.Map;

/**
 * The entries of this bundle on the gateway's black list. They are taken back in the end, and
 * others are left alone; the gateway doesn't tell who has made an entry, though, so one that
 * somebody else has made for the same host goes, too.
 *
 * <p>The filter's mode is the owner's business: the same list may hold those who are trusted.
 */
final class BlackList {
    /** Modes of the MAC filter. */
    private static final int kOff = 0;
    private static final int kTrustList = 2;

    private final LanNetworkAccessConfigServiceJNI service = new LanNetworkAccessConfigServiceJNI();
    private final LANHostsInfoQueryServiceJNI hosts = new LANHostsInfoQueryServiceJNI();
    private final Map<String, Host> listed = new LinkedHashMap<>();
    private String refused;

    /** Puts a host on the list unless it was put there before. */
    void add(Host host) {
        if (listed.containsKey(host.mac())) {
            return;
        }
        if (service.addLANHostToBlackList(new String[] {host.mac()}) == 0) {
            listed.put(host.mac(), host);
            Activator.log("black-listed " + host
                    + (hosts.getMacFilterMode() == kOff ? ", for when the MAC filter is on" : ""));
        } else if (!host.mac().equals(refused)) {
            refused = host.mac(); // said once; it is tried again with each look
            Activator.log("can't black-list " + host
                    + ": the gateway refuses, or its MAC filter is a trust list");
        }
    }

    /** Takes all of them off the list, or says which stay there. */
    void clear() {
        for (Host host : listed.values()) {
            // Where the list isn't black, taking off does nothing and succeeds. And never without
            // an address: that would empty the list.
            boolean bOff = hosts.getMacFilterMode() != kTrustList
                    && service.deleteLANHostFromBlackList(new String[] {host.mac()}) == 0;
            Activator.log(
                    bOff ? "took off the black list: " + host : "stays on the black list: " + host);
        }
        listed.clear();
    }
}
