package com.veltra.domoline.deviceservice.kavo.wap.gulm.jni;

import com.veltra.domoline.deviceservice.kavo.wap.JNINativeMethods;
import com.veltra.domoline.deviceservice.kavo.wap.NativeLibrary;

/**
 * Lists the port mappings (virtual servers) of the gateway's WAN connections; {@link
 * PortMappingConfigServiceJNI} changes them.
 *
 * <p>{@link JNINativeMethods#startThread()} must have been called once. The method may be called by
 * any number of threads, and doesn't throw because of the gateway's state.
 */
public class PortMappingQueryServiceJNI {
    static {
        NativeLibrary.load();
    }

    /** Creates a client of the service. It holds no state; one can serve all threads. */
    public PortMappingQueryServiceJNI() {}

    /**
     * Lists all port mappings, grouped by WAN connection. Asks the process {@code gulm} for the
     * mappings and then once for each group, at most 5 seconds each time; a process that is not
     * running makes it fail without waiting.
     *
     * <p>Example answer:
     *
     * <pre>{@code
     * { "Result": 0, "List": [ { "WANName": "1_INTERNET_R_VID_100", "MapList": [
     *   { "PortMappingIndex": 1, "PortMappingEnabled": "TRUE", "ExternalPort": 8080,
     *     "InternalPort": 80, "PortMappingProtocol": "TCP", "InternalClient": "192.168.1.20" },
     *   { "PortMappingIndex": 2, "PortMappingEnabled": "FALSE", "ExternalPort": 2222,
     *     "InternalPort": 22, "PortMappingProtocol": "TCP", "InternalClient": "192.168.1.21" }
     * ] } ] }
     * }</pre>
     *
     * <p>The answer is one line. {@code WANName} is the name of a WAN connection and {@code
     * MapList} its mappings. {@code PortMappingIndex} is what {@link PortMappingConfigServiceJNI}
     * takes as a mapping's number, {@code PortMappingEnabled} is {@code TRUE} when it is on and
     * {@code FALSE} when it is off. {@code ExternalPort} is the port of the WAN connection; {@code
     * InternalClient} and {@code InternalPort} are the host and the port that it leads to; {@code
     * PortMappingProtocol} is the protocol in the gateway's words. The mappings come in the
     * gateway's order, and those of one WAN connection that stand apart in it make several groups
     * of the same name. Without any mapping the list is empty: <code>{ "Result": 0, "List": [ ]
     * }</code>.
     *
     * @return the list; <code>{"Result":-1}</code> (no blanks) when {@code gulm} doesn't answer,
     *     refuses, or doesn't know a WAN connection that has mappings, when its table can't be
     *     read, when memory runs out, or when the text would have 512 bytes or more for each
     *     mapping and for the list itself: 512 for each, and 512 more; {@code null} when there is
     *     no memory for the text. A mapping for which the list cannot grow is left out of it
     */
    public native String getPortMappingInfo();
}
