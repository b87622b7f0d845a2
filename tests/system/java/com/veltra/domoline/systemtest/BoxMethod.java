package com.veltra.domoline.systemtest;

import java.util.List;
import java.util.function.Predicate;
import java.util.function.Supplier;

/** The queries about the box itself. The answers are written out by hand. */
enum BoxMethod implements GatewayMethod {
    OSGI(List.of(), 0, () -> Box.kInfo.getOSGiInfo(), Box.kOsgi, null),
    FTP_RIGHTS(List.of(Gateway.kTarn, Gateway.kOsgiProxy), 0x47201064,
            () -> Box.kRights.getFTPRightInfo(),
            "{\"Result\":0,\"LanAccess\":1,\"WanAccess\":0,\"Enable\":1,\"Value\":0,"
                    + "\"List\":[{\"User\":\"anna\"}]}",
            Box.kFailed),
    SAMBA_RIGHTS(List.of(Gateway.kUsbMngt, Gateway.kOsgiProxy), 0x48200114,
            () -> Box.kRights.getSambaRightInfo(),
            "{\"Result\":0,\"LanAccess\":0,\"WanAccess\":0,\"Enable\":0,\"Value\":0,\"List\":[]}",
            Box.kFailed),
    HTTP_RIGHTS(List.of(Gateway.kOsgiProxy, Gateway.kTarn), 0x47209042,
            () -> Box.kRights.getHTTPRightInfo(),
            "{\"Result\":0,\"LanAccess\":1,\"WanAccess\":0,\"PasswordChanges\":0}", Box.kFailed),
    STORAGE(List.of(Gateway.kUsbMngt), 0x47103067, () -> Box.kUsb.getStorageInfo(),
            BoxMethod::isShippedVolume, Box.kStorageFailed),
    // Nobody gets null for a text, so that a failure can be told from a query that has none.
    POTS(List.of(Gateway.kAppM), 0x47209061,
            () -> String.valueOf(Box.kVoice.getPOTSInfo()),
            "{\"Result\":0,\"List\":[{\"Name\":\"POTS1\",\"Number\":\"5550101\","
                    + "\"Status\":\"idle\"},{\"Name\":\"POTS2\",\"Number\":\"5550102\","
                    + "\"Status\":\"idle\"}]}",
            "null");

    private final Query query;

    BoxMethod(List<String> processes, int iRpc, Supplier<Object> call, Object golden,
            Object failure) {
        query = new Query(processes, iRpc, call, golden, failure);
    }

    BoxMethod(List<String> processes, int iRpc, Supplier<Object> call, Predicate<Object> success,
            Object failure) {
        query = new Query(processes, iRpc, call, success, failure);
    }

    /** Its folder is in the runtime directory, and its size that of this machine's file system. */
    private static boolean isShippedVolume(Object answer) {
        return ((String) answer)
                .matches("\\{ \"Result\": 0, \"List\": \\[ \\{ \"storagePath\":"
                        + " \"[^\"]+\\\\/storage\\\\/usb1\", \"totalStorage\": [1-9][0-9]*,"
                        + " \"validStorage\": [1-9][0-9]* \\} \\] \\}");
    }

    @Override
    public Query query() {
        return query;
    }
}
