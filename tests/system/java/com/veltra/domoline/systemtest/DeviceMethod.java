package com.veltra.domoline.systemtest;

import com.veltra.domoline.deviceservice.kavo.wap.gulm.jni.DeviceInfoQueryServiceJNI;
import com.veltra.domoline.deviceservice.kavo.wap.gulm.jni.DeviceSecretInfoQueryServiceJNI;
import java.util.List;
import java.util.function.BiFunction;
import java.util.function.Predicate;

/**
 * The device's query methods with what each answers for the home as it is shipped, and when the
 * process that it asks is not there. The answers are written out by hand.
 */
enum DeviceMethod implements GatewayMethod {
    INFO(Gateway.kOsgiProxy, 0x47209035,
            (info, secret)
                    -> info.getDeviceInfo(),
            "{\"Result\":0 , \"Vendor\":\"SimHome\", \"ProductCLass\":\"SH-GW100\","
                    + " \"HardwareVer\":\"SHW.1.0\", \"FirmwareVer\":\"SIM.2.4.7\","
                    + " \"FlashSize\":262144, \"RamSize\":524288,"
                    + " \"MainChipClass\":\"SIMCHIP-A\", \"NFC\":\"1\"}",
            "{\"Result\":-1}"),
    MAC(Gateway.kOsgiProxy, 0x47209032,
            (info, secret) -> info.getDeviceMAC(), "02:A1:B2:00:10:01", DeviceMethod.kFaultObject),
    UP_TIME(Gateway.kOsgiProxy, 0x47209036,
            (info, secret)
                    -> info.getDeviceUpTime(),
            // The home's base of a day, and at most an hour of this test run.
            answer -> (int) answer >= 86400 && (int) answer < 86400 + 3600, -1),
    API_VERSION(null, 0, (info, secret) -> info.getAPIVersion(), "1.0", "1.0"),
    CPU(null, 0,
            (info, secret)
                    -> info.getCPUOccupancyRate(10),
            answer -> (int) answer >= 1 && (int) answer <= 100, null),
    RAM(null, 0,
            (info, secret)
                    -> info.getRAMOccupancyRate(10),
            answer -> (int) answer >= 0 && (int) answer <= 100, null),
    PASSWORD(Gateway.kOsgiProxy, 0x47209050,
            (info, secret)
                    -> secret.getDevicePassword(),
            "sim-device-pass", DeviceMethod.kFaultObject),
    OUI(Gateway.kCwmp, 0x4720136A,
            (info, secret)
                    -> secret.getDeviceManufacturerOUI(),
            "02A1B2", DeviceMethod.kFaultObject),
    SERIAL_NUMBER(Gateway.kCwmp, 0x4720136A,
            (info, secret)
                    -> secret.getDeviceSerialNumber(),
            "SIM0000000001001", DeviceMethod.kFaultObject),
    WEB_PASSWORD(Gateway.kOsgiProxy, 0x47209037,
            (info, secret)
                    -> secret.getDeviceDefaultWebPassword(),
            "sim-web-pass", DeviceMethod.kFaultObject),
    SSID_NAME(Gateway.kOsgiProxy, 0x47209037,
            (info, secret)
                    -> secret.getDeviceDefaultSSID1Name(),
            "SimHome-1001", DeviceMethod.kFaultObject),
    SSID_PASSWORD(Gateway.kOsgiProxy, 0x47209037,
            (info, secret)
                    -> secret.getDeviceDefaultSSID1Password(),
            "sim-wifi-pass", DeviceMethod.kFaultObject);

    static final String kFaultObject = "{ \"Result\": -1 }";

    /** Apart, as an enum's constructor must not use the enum's own fields. */
    private static final class Services {
        static final DeviceInfoQueryServiceJNI kInfo = new DeviceInfoQueryServiceJNI();
        static final DeviceSecretInfoQueryServiceJNI kSecret =
                new DeviceSecretInfoQueryServiceJNI();
    }

    private static final DeviceInfoQueryServiceJNI kInfo = new DeviceInfoQueryServiceJNI();
    private static final DeviceSecretInfoQueryServiceJNI kSecret =
            new DeviceSecretInfoQueryServiceJNI();

    private final Query query;

    /** @param process the process that is asked; null when none is */
    DeviceMethod(String process, int iRpc,
            BiFunction<DeviceInfoQueryServiceJNI, DeviceSecretInfoQueryServiceJNI, Object> call,
            Predicate<Object> success, Object failure) {
        query = new Query(process == null ? List.of() : List.of(process), iRpc,
                () -> call.apply(Services.kInfo, Services.kSecret), success, failure);
    }

    DeviceMethod(String process, int iRpc,
            BiFunction<DeviceInfoQueryServiceJNI, DeviceSecretInfoQueryServiceJNI, Object> call,
            String golden, Object failure) {
        this(process, iRpc, call, (Predicate<Object>) golden::equals, failure);
    }

    @Override
    public Query query() {
        return query;
    }
}
