package com.veltra.domoline.systemtest;

import com.veltra.domoline.deviceservice.kavo.wap.gulm.jni.LANHostsInfoQueryServiceJNI;
import com.veltra.domoline.deviceservice.kavo.wap.gulm.jni.LANIPConfigServiceJNI;
import com.veltra.domoline.deviceservice.kavo.wap.gulm.jni.LANIPInfoQueryServiceJNI;
import com.veltra.domoline.deviceservice.kavo.wap.gulm.jni.LanHostSpeedLimitServiceJNI;
import com.veltra.domoline.deviceservice.kavo.wap.gulm.jni.LanHostSpeedQueryServiceJNI;
import com.veltra.domoline.deviceservice.kavo.wap.gulm.jni.LanNetworkAccessConfigServiceJNI;
import com.veltra.domoline.deviceservice.kavo.wap.gulm.jni.LanNetworkNameConfigServiceJNI;
import com.veltra.domoline.deviceservice.kavo.wap.gulm.jni.PortMappingConfigServiceJNI;
import com.veltra.domoline.deviceservice.kavo.wap.gulm.jni.PortMappingQueryServiceJNI;
import java.util.Arrays;

/** The services of the LAN, who is on it, and how answers about it are written. */
final class Lan {
    /** WAN indexes of the home as shipped: two that may have port mappings, one that may not. */
    static final int kFirst = 0x10101001;
    static final int kSecond = 0x10102001;
    static final int kThird = 0x10103001;

    static final LANIPInfoQueryServiceJNI kAddress = new LANIPInfoQueryServiceJNI();
    static final LANIPConfigServiceJNI kAddressConfig = new LANIPConfigServiceJNI();
    static final LANHostsInfoQueryServiceJNI kHosts = new LANHostsInfoQueryServiceJNI();
    static final LanHostSpeedQueryServiceJNI kSpeed = new LanHostSpeedQueryServiceJNI();
    static final LanNetworkNameConfigServiceJNI kNames = new LanNetworkNameConfigServiceJNI();
    static final PortMappingQueryServiceJNI kMappings = new PortMappingQueryServiceJNI();
    static final PortMappingConfigServiceJNI kMappingConfig = new PortMappingConfigServiceJNI();
    static final LanNetworkAccessConfigServiceJNI kAccess = new LanNetworkAccessConfigServiceJNI();
    static final LanHostSpeedLimitServiceJNI kLimits = new LanHostSpeedLimitServiceJNI();

    static final String kPc = "02:A1:B2:00:20:01";
    static final String kTv = "02:A1:B2:00:20:02";
    static final String kPhone = "02:A1:B2:00:20:03";
    static final String kTablet = "02:A1:B2:00:20:04";
    static final String kPrinter = "02:A1:B2:00:20:05";

    static final String kPcInfo =
            "{\"MAC\":\"02:A1:B2:00:20:01\",\"IP\":\"192.168.1.10\",\"DevName\":\"desk-pc\","
            + "\"HostClass\":\"PC\",\"Interface\":\"LAN1\",\"Active\":1,\"OnlineTime\":7200}";
    static final String kTvInfo =
            "{\"MAC\":\"02:A1:B2:00:20:02\",\"IP\":\"192.168.1.11\",\"DevName\":\"living-room-tv\","
            + "\"HostClass\":\"TV\",\"Interface\":\"LAN2\",\"Active\":1,\"OnlineTime\":3600}";
    static final String kPhoneInfo =
            "{\"MAC\":\"02:A1:B2:00:20:03\",\"IP\":\"192.168.1.12\",\"DevName\":\"phone-anna\","
            + "\"HostClass\":\"PHONE\",\"Interface\":\"SSID1\",\"Active\":1,\"OnlineTime\":1800}";
    static final String kTabletInfo =
            "{\"MAC\":\"02:A1:B2:00:20:04\",\"IP\":\"192.168.1.13\",\"DevName\":\"tablet-tom\","
            + "\"HostClass\":\"TABLET\",\"Interface\":\"SSID5\",\"Active\":1,\"OnlineTime\":900}";
    static final String kPrinterInfo =
            "{\"MAC\":\"02:A1:B2:00:20:05\",\"IP\":\"192.168.1.14\",\"DevName\":\"printer\","
            + "\"HostClass\":\"OTHER\",\"Interface\":\"LAN3\",\"Active\":0,\"OnlineTime\":0}";
    static final String kAllHosts = hosts(kPcInfo, kTvInfo, kPhoneInfo, kTabletInfo, kPrinterInfo);

    static final String kWanName = "1_INTERNET_R_VID_100";
    static final String kOtherWanName = "2_OTHER_R_VID_200";
    static final String kShippedMapping = mapping(1, true, 8443, 443, "TCP", "192.168.1.10");

    static final String kFailed = "{\"Result\":-1}";
    /** One blank, before the last brace. */
    static final String kNoHosts = "{\"Result\":-1,\"List\":[] }";

    private Lan() {}

    static String[] macs(String... macs) {
        return macs;
    }

    /** Addresses that nobody in the home as shipped has, all of them different. */
    static String[] manyMacs(int iCount) {
        String[] macs = new String[iCount];
        Arrays.setAll(macs, i -> manyMac(i));
        return macs;
    }

    static String manyMac(int i) {
        return String.format("02:C0:00:00:%02X:%02X", i >> 8, i & 0xFF);
    }

    /** An answer that app_m writes, without blanks. */
    static String hosts(String... hosts) {
        return "{\"Result\":0,\"List\":[" + String.join(",", hosts) + "]}";
    }

    /** An answer that the library composes. */
    static String list(String... elements) {
        String inside = elements.length == 0 ? "" : String.join(", ", elements) + " ";
        return "{ \"Result\": 0, \"List\": [ " + inside + "] }";
    }

    static String limit(long lUp, long lDown) {
        return "{ \"UpSpeed\": " + lUp + ", \"DownSpeed\": " + lDown + " }";
    }

    static String mapping(
            int iId, boolean bOn, int iExternal, int iInternal, String protocol, String client) {
        return "{ \"PortMappingIndex\": " + iId + ", \"PortMappingEnabled\": \""
                + (bOn ? "TRUE" : "FALSE") + "\", \"ExternalPort\": " + iExternal
                + ", \"InternalPort\": " + iInternal + ", \"PortMappingProtocol\": \"" + protocol
                + "\", \"InternalClient\": \"" + client + "\" }";
    }

    static String wan(String name, String... mappings) {
        return "{ \"WANName\": \"" + name + "\", \"MapList\": [ " + String.join(", ", mappings)
                + " ] }";
    }
}
