package com.veltra.domoline.bench;

import org.freedesktop.dbus.DBusInterface;
import org.freedesktop.dbus.UInt32;

/** The gateway as D-Bus shows it. The daemon knows it by the package's name and the class's. */
public interface Gateway extends DBusInterface {
    /** Tells the time since the start. */
    UInt32 UpTime();

    /** Tells the MAC address. */
    String Mac();

    /** Tells the status of a WAN connection. */
    String WanStatus(UInt32 wan);

    /** Lists the hosts. */
    String Hosts();
}
