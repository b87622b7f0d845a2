package com.veltra.domoline.systemtest;

import com.veltra.domoline.deviceservice.kavo.wap.gulm.jni.DeviceSecretInfoQueryServiceJNI;
import java.util.List;

/** A query that is known, called by its method's name, so that it is known to have been called. */
final class KnownQuery {
    private static final DeviceSecretInfoQueryServiceJNI kSecrets =
            new DeviceSecretInfoQueryServiceJNI();

    final GatewayMethod known;
    final String method;
    private final Object service;
    private final Object[] arguments;

    KnownQuery(GatewayMethod known, Object service, String method, Object... arguments) {
        this.known = known;
        this.service = service;
        this.method = method;
        this.arguments = arguments;
    }

    Object call() {
        Object answer = Natives.call(service, method, arguments);
        // As the known query tells a text that is none.
        return known == BoxMethod.POTS ? String.valueOf(answer) : answer;
    }

    /** Those whose answers no change of a home as shipped changes. */
    static List<KnownQuery> constants() {
        return List.of(new KnownQuery(DeviceMethod.INFO, Box.kInfo, "getDeviceInfo"),
                new KnownQuery(DeviceMethod.MAC, Box.kInfo, "getDeviceMAC"),
                new KnownQuery(DeviceMethod.API_VERSION, Box.kInfo, "getAPIVersion"),
                new KnownQuery(DeviceMethod.CPU, Box.kInfo, "getCPUOccupancyRate", 10),
                new KnownQuery(DeviceMethod.RAM, Box.kInfo, "getRAMOccupancyRate", 10),
                new KnownQuery(DeviceMethod.PASSWORD, kSecrets, "getDevicePassword"),
                new KnownQuery(DeviceMethod.OUI, kSecrets, "getDeviceManufacturerOUI"),
                new KnownQuery(DeviceMethod.SERIAL_NUMBER, kSecrets, "getDeviceSerialNumber"),
                new KnownQuery(DeviceMethod.WEB_PASSWORD, kSecrets, "getDeviceDefaultWebPassword"),
                new KnownQuery(DeviceMethod.SSID_NAME, kSecrets, "getDeviceDefaultSSID1Name"),
                new KnownQuery(
                        DeviceMethod.SSID_PASSWORD, kSecrets, "getDeviceDefaultSSID1Password"),
                new KnownQuery(LanMethod.STATISTICS, Lan.kHosts, "getLANHostStats",
                        (Object) Lan.macs(Lan.kTv)),
                new KnownQuery(LanMethod.SPEED, Lan.kSpeed, "getLANHostSpeed", Lan.kPc),
                new KnownQuery(
                        WanMethod.WAN_STATISTICS, Wan.kAccess, "getWANIfStats", Wan.kInternet),
                new KnownQuery(WanMethod.WAN_INFO, Wan.kAccess, "getWANIfInfo", Wan.kManagement),
                new KnownQuery(
                        WanMethod.WAN_BANDWIDTH, Wan.kAccess, "getWanIfBandwidth", Wan.kOther),
                new KnownQuery(WanMethod.WAN_STATUS, Wan.kAccess, "getWANIfStatus", Wan.kInternet),
                new KnownQuery(WanMethod.INTERNET_INDEX, Wan.kAccess, "getInternetWANIndex"),
                new KnownQuery(WanMethod.PON_PHYSICAL, Wan.kAccess, "getPONIfPhyStatus"),
                new KnownQuery(WanMethod.PON_UP_TIME, Wan.kAccess, "getPONIfUpTime"),
                new KnownQuery(WanMethod.PON_REGISTRATION, Wan.kAccess, "getPONIfRegisterStatus"),
                new KnownQuery(WanMethod.UPLINK_STATISTICS, Wan.kAccess, "getUplinkIfStats"),
                new KnownQuery(WanMethod.IPTV_STATUS, Wan.kQuery, "getIPTVStatus"),
                new KnownQuery(BoxMethod.OSGI, Box.kInfo, "getOSGiInfo"),
                new KnownQuery(BoxMethod.POTS, Box.kVoice, "getPOTSInfo"),
                new KnownQuery(TrafficMethod.FLOW_MEMBERS, Traffic.kFlows, "getTrafficInfoByFlow",
                        Traffic.kFlow),
                new KnownQuery(
                        TrafficMethod.FLOW_STATS, Traffic.kFlows, "getStatsByFlow", Traffic.kFlow),
                new KnownQuery(
                        TrafficMethod.FLOW_SPEED, Traffic.kFlows, "getSpeedByFlow", Traffic.kFlow),
                new KnownQuery(TrafficMethod.FLOW_LIMIT, Traffic.kFlows, "getSpeedLimitByFlow",
                        Traffic.kFlow),
                new KnownQuery(TrafficMethod.FLOW_DSCP, Traffic.kFlows, "getDSCPRemarkByFlow",
                        Traffic.kFlow));
    }
}
