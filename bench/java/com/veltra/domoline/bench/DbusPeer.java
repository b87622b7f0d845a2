package com.veltra.domoline.bench;

import org.freedesktop.dbus.DBusConnection;
import org.freedesktop.dbus.UInt32;
import org.freedesktop.dbus.exceptions.DBusException;

/** D-Bus by its Java library, through a daemon. */
final class DbusPeer {
    /** The service's name on the bus, and its object. */
    private static final String kService = "com.veltra.domoline.bench";
    private static final String kObject = "/gateway";

    private DbusPeer() {}

    static Gateway connect(String address) throws DBusException {
        return DBusConnection.getConnection(address)
                .getRemoteObject(kService, kObject, Gateway.class);
    }

    static Call call(Gateway gateway, Work work) {
        switch (work) {
            case UP_TIME:
                return () -> gateway.UpTime().intValue();
            case MAC:
                return gateway::Mac;
            case WAN_STATUS:
                UInt32 wan = new UInt32(Work.kWan);
                return () -> gateway.WanStatus(wan);
            default:
                return gateway::Hosts;
        }
    }
}
