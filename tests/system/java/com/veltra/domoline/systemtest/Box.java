package com.veltra.domoline.systemtest;

import com.veltra.domoline.deviceservice.kavo.wap.gulm.jni.DeviceAccessRightConfigServiceJNI;
import com.veltra.domoline.deviceservice.kavo.wap.gulm.jni.DeviceAccessRightQueryServiceJNI;
import com.veltra.domoline.deviceservice.kavo.wap.gulm.jni.DeviceConfigServiceJNI;
import com.veltra.domoline.deviceservice.kavo.wap.gulm.jni.DeviceInfoQueryServiceJNI;
import com.veltra.domoline.deviceservice.kavo.wap.tarn.jni.DeviceRsetServiceJNI;
import com.veltra.domoline.deviceservice.kavo.wap.tarn.jni.UsbServiceJNI;
import com.veltra.domoline.deviceservice.kavo.wap.voip.jni.VoIPInfoQueryServiceJNI;
import com.veltra.domoline.deviceservice.kavo.wap.voip.jni.VoIPInfoSubscribeServiceJNI;

/** The services of the box itself, and how answers about it are written. */
final class Box {
    static final DeviceInfoQueryServiceJNI kInfo = new DeviceInfoQueryServiceJNI();
    static final DeviceConfigServiceJNI kLights = new DeviceConfigServiceJNI();
    static final DeviceRsetServiceJNI kReset = new DeviceRsetServiceJNI();
    static final VoIPInfoQueryServiceJNI kVoice = new VoIPInfoQueryServiceJNI();
    static final VoIPInfoSubscribeServiceJNI kVoiceEvents = new VoIPInfoSubscribeServiceJNI();
    static final UsbServiceJNI kUsb = new UsbServiceJNI();
    static final DeviceAccessRightQueryServiceJNI kRights = new DeviceAccessRightQueryServiceJNI();
    static final DeviceAccessRightConfigServiceJNI kRightConfig =
            new DeviceAccessRightConfigServiceJNI();

    static final String kOsgi = "{ \"Result\": 0, \"Name\": \"Felix OSGi\","
            + " \"Version\": \"4.4.0\", \"Vendor\": \"Apache Software Foundation\" }";
    static final String kFailed = "{ \"Result\": -1 }";
    static final String kStorageFailed = "{ \"Result\": 1 }";

    private Box() {}

    /** The telephone ports in the given states. */
    static String pots(String first, String second) {
        return "{\"Result\":0,\"List\":[{\"Name\":\"POTS1\",\"Number\":\"5550101\",\"Status\":\""
                + first + "\"},{\"Name\":\"POTS2\",\"Number\":\"5550102\",\"Status\":\"" + second
                + "\"}]}";
    }
}
