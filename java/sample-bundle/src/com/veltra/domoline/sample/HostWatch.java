package com.veltra.domoline.sample;

import com.veltra.domoline.deviceservice.kavo.wap.gulm.jni.LANHostsInfoQueryServiceJNI;
import java.util.HashSet;
import java.util.List;
import java.util.Set;
import java.util.stream.Collectors;

/** Looks who is on the LAN, and remembers who was. For one thread. */
final class HostWatch implements Runnable {
    private final LANHostsInfoQueryServiceJNI service = new LANHostsInfoQueryServiceJNI();
    private final String unwanted;
    private final BlackList blackList;
    private final Set<String> known = new HashSet<>();
    private boolean bAnswers = true;

    HostWatch(String unwanted, BlackList blackList) {
        this.unwanted = unwanted;
        this.blackList = blackList;
    }

    /** One look. Says what is new since the last one. */
    @Override
    public void run() {
        List<Host> hosts = Host.read(service.getLANHostInfoByMAC(null));
        if ((hosts != null) != bAnswers) {
            bAnswers = hosts != null;
            Activator.log(bAnswers ? "the gateway tells its hosts again"
                                   : "the gateway doesn't tell its hosts; asking on");
        }
        if (hosts == null) {
            return; // no answer does not mean that all have gone
        }
        for (Host host : hosts) {
            if (known.add(host.mac())) {
                Activator.log("new host " + host);
            }
            if (host.isCalled(unwanted)) {
                blackList.add(host);
            }
        }
        // Who has left is forgotten, and new again when it returns.
        known.retainAll(hosts.stream().map(Host::mac).collect(Collectors.toSet()));
    }
}
