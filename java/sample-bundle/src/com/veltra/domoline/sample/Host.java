package com.veltra.domoline.sample;

import com.google.gson.annotations.SerializedName;
import java.util.List;
import java.util.Objects;
import java.util.stream.Collectors;

/** A host on the LAN. */
final class Host {
    @SerializedName("MAC") private String mac;

    @SerializedName("DevName") private String name;

    @SerializedName("Interface") private String port;

    /** The answer around a list of hosts. */
    private static final class Hosts extends Answer {
        @SerializedName("List") private List<Host> hosts;
    }

    /**
     * Reads the answer of {@code getLANHostInfoByMAC}.
     *
     * @return the hosts that have an address, or {@code null} when the answer is a failure
     */
    static List<Host> read(String answer) {
        Hosts read = Answer.read(answer, Hosts.class);
        if (read == null || read.hosts == null) {
            return null;
        }
        return read.hosts.stream()
                .filter(Objects::nonNull)
                .filter(host -> host.mac != null && !host.mac.isEmpty())
                .collect(Collectors.toList());
    }

    String mac() {
        return mac;
    }

    /** Tells whether somebody who names a host by its name or its MAC address means this one. */
    boolean isCalled(String nameOrMac) {
        return nameOrMac.equalsIgnoreCase(mac) || nameOrMac.equals(name);
    }

    @Override
    public String toString() {
        return String.format("%s %s (%s)", Answer.printable(mac), Answer.printable(name),
                Answer.printable(port));
    }
}
