package com.veltra.domoline.systemtest;

import static org.junit.jupiter.api.Assertions.assertEquals;

import java.util.List;
import java.util.stream.Collectors;
import java.util.stream.Stream;

/** The two services that have accounts: how they are asked, and in what they differ. */
enum AccountService {
    FTP(Gateway.kTarn, "ftp", 256, 514, 0x47209038, 0x47209039) {
        @Override
        String info() {
            return Box.kRights.getFTPRightInfo();
        }
        @Override
        int set(int iRight, int iValue) {
            return Box.kRightConfig.setFTPRight(iRight, iValue);
        }
        @Override
        int add(String user, String password) {
            return Box.kRightConfig.addFTPAccount(user, password);
        }
        @Override
        int delete(String user) {
            return Box.kRightConfig.deleteFTPAccount(user);
        }
        @Override
        int deleteAll() {
            return Box.kRightConfig.deleteAllFTPAccount();
        }
    },
    SAMBA(Gateway.kUsbMngt, "samba", 64, 322, 0x4720903D, 0x4720903E) {
        @Override
        String info() {
            return Box.kRights.getSambaRightInfo();
        }
        @Override
        int set(int iRight, int iValue) {
            return Box.kRightConfig.setSambaRight(iRight, iValue);
        }
        @Override
        int add(String user, String password) {
            return Box.kRightConfig.addSambaAccount(user, password);
        }
        @Override
        int delete(String user) {
            return Box.kRightConfig.deleteSambaAccount(user);
        }
        @Override
        int deleteAll() {
            return Box.kRightConfig.deleteAllSambaAccount();
        }
    };

    /** Who owns the accounts. */
    final String owner;
    final int iPasswordMax;
    /** Of each account in the segment. */
    final int iRoom;
    /** What osgi_proxy is asked to fill the segment with, and the first of the four changes. */
    final int iFillRpc;
    final int iSetRightRpc;
    private final String section;

    AccountService(String owner, String section, int iPasswordMax, int iRoom, int iFillRpc,
            int iSetRightRpc) {
        this.owner = owner;
        this.section = section;
        this.iPasswordMax = iPasswordMax;
        this.iRoom = iRoom;
        this.iFillRpc = iFillRpc;
        this.iSetRightRpc = iSetRightRpc;
    }

    abstract String info();

    abstract int set(int iRight, int iValue);

    abstract int add(String user, String password);

    abstract int delete(String user);

    abstract int deleteAll();

    /** As the home has them, asked beside the library. */
    List<String> accounts() {
        return Home.now().list(section + ".accounts", "user");
    }

    private void put(boolean bOn, boolean bFirst, boolean bSecond, long lValue) {
        Gateway.set(section + ".enabled", String.valueOf(bOn));
        Gateway.set(section + ".lanAccess", String.valueOf(bFirst));
        Gateway.set(section + ".wanAccess", String.valueOf(bSecond));
        Gateway.set(section + ".value", String.valueOf(lValue));
    }

    /** Puts the service into a known state: on for the LAN, with the value 7 and no accounts. */
    void prepare() {
        put(true, true, false, 7);
        assertEquals(0, deleteAll());
    }

    /** The home as shipped. */
    void restore() {
        put(this == FTP, this == FTP, false, 0);
        assertEquals(0, deleteAll());
        if (this == FTP) {
            assertEquals(0, add("anna", "whatever"));
        }
    }

    /** What Java is told. */
    static String told(int iFirst, int iSecond, int iOn, long lValue, String... users) {
        return "{\"Result\":0,\"LanAccess\":" + iFirst + ",\"WanAccess\":" + iSecond
                + ",\"Enable\":" + iOn + ",\"Value\":" + lValue + ",\"List\":["
                + Stream.of(users)
                          .map(user -> "{\"User\":\"" + user + "\"}")
                          .collect(Collectors.joining(","))
                + "]}";
    }

    /** What Java is told of a service in the state of {@link #prepare} with such accounts. */
    static String prepared(String... users) {
        return told(1, 0, 1, 7, users);
    }
}
