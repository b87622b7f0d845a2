package com.veltra.domoline.systemtest;

import com.veltra.domoline.deviceservice.kavo.wap.gulm.jni.StaticLayer3ForwardingConfigServiceJNI;
import com.veltra.domoline.deviceservice.kavo.wap.gulm.jni.TransferQueryServiceJNI;
import com.veltra.domoline.deviceservice.kavo.wap.gulm.jni.VLANBindConfigServiceJNI;
import com.veltra.domoline.deviceservice.kavo.wap.gulm.jni.WanConfigServiceJNI;
import com.veltra.domoline.deviceservice.kavo.wap.ozi.jni.AccessInfoQueryServiceJNI;

/** The services of the uplink, connections of the home as shipped, and how lists are written. */
final class Wan {
    static final int kInternet = 0x10101001;
    static final int kOther = 0x10102001;
    static final int kIptv = 0x10103001;
    static final int kManagement = 0x20104001;
    /** Indexes of connections that are made: each gets the next connection device. */
    static final int kFifthIp = 0x10105001;
    static final int kSixthPpp = 0x20106001;
    static final int kSeventhIp = 0x10107001;
    static final int kSecondPpp = 0x20102001;

    static final String kInternetName = "1_INTERNET_R_VID_100";
    static final String kOtherName = "2_OTHER_R_VID_200";
    static final String kIptvName = "3_IPTV_B_VID_300";
    static final String kManagementName = "4_TR069_R_VID_46";

    static final WanConfigServiceJNI kConfig = new WanConfigServiceJNI();
    static final AccessInfoQueryServiceJNI kAccess = new AccessInfoQueryServiceJNI();
    static final TransferQueryServiceJNI kQuery = new TransferQueryServiceJNI();
    static final StaticLayer3ForwardingConfigServiceJNI kRoutes =
            new StaticLayer3ForwardingConfigServiceJNI();
    static final VLANBindConfigServiceJNI kBinding = new VLANBindConfigServiceJNI();

    static final String kFailed = Lan.kFailed;

    private Wan() {}

    /** An element of the list of connections. */
    static String entry(int iIndex, String name) {
        return "{ \"Index\": " + iIndex + ", \"Name\": \"" + name + "\" }";
    }

    static String ipv4Route(
            int iIndex, String destination, String mask, String gateway, String alias) {
        return "{ \"Index\": \"" + iIndex + "\", \"DestIPAddress\": \"" + destination
                + "\", \"DestSubnetMask\": \"" + mask + "\", \"GatewayIPAddress\": \"" + gateway
                + "\", \"Interface\": \"" + alias + "\" }";
    }

    /** @param prefix as it is; a list has a backslash before its slash */
    static String ipv6Route(int iIndex, String prefix, String nextHop, String alias) {
        return "{ \"Index\": \"" + iIndex + "\", \"DestIPPrefix\": \"" + slashed(prefix)
                + "\", \"NextHop\": \"" + nextHop + "\", \"Interface\": \"" + alias + "\" }";
    }

    /** @param pairs as they are; a list has a backslash before each slash */
    static String bound(String lanInterface, String pairs) {
        return "{ \"LanInterface\": \"" + lanInterface + "\", \"Bind\": \"" + slashed(pairs)
                + "\" }";
    }

    private static String slashed(String text) {
        return text.replace("/", "\\/");
    }

    /** The status of a connection that is up, as app_m writes it. */
    static String status(String address, String mask, String gateway, String dns,
            String ipv6Address, String ipv6Dns) {
        return "{\"Result\":0,\"ConnectionStatus\":\"Connected\",\"ExternalIPAddress\":\"" + address
                + "\",\"SubnetMask\":\"" + mask + "\",\"DefaultGateway\":\"" + gateway
                + "\",\"DNSServers\":\"" + dns + "\",\"IPv6IPAddress\":\"" + ipv6Address
                + "\",\"IPv6DNSServers\":\"" + ipv6Dns + "\"}";
    }

    /** A JSON object of texts. */
    static String json(String... keysAndValues) {
        StringBuilder object = new StringBuilder("{");
        for (int i = 0; i < keysAndValues.length; i += 2) {
            object.append(i == 0 ? "\"" : ",\"")
                    .append(keysAndValues[i])
                    .append("\":\"")
                    .append(keysAndValues[i + 1])
                    .append('"');
        }
        return object.append('}').toString();
    }

    /** Changes settings, given as names and values. */
    static int set(int iWan, String... keysAndValues) {
        return Natives.number(kConfig, "setWANIf", iWan, json(keysAndValues));
    }
}
