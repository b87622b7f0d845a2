package com.veltra.domoline.systemtest;

import static org.junit.jupiter.api.Assertions.assertEquals;

import java.util.List;
import java.util.Locale;
import java.util.stream.Collectors;
import java.util.stream.Stream;

/** The two services that have accounts: how they are asked, and in what they differ. */
enum AccountService {
    FTP(Gateway.kTarn, "FTP", 256, 514, 0x47209038, 0x47209039),
    SAMBA(Gateway.kUsbMngt, "Samba", 64, 322, 0x4720903D, 0x4720903E);

    /** Who owns the accounts. */
    final String owner;
    final int iPasswordMax;
    /** Of each account in the segment. */
    final int iRoom;
    /** What osgi_proxy is asked to fill the segment with, and the first of the four changes. */
    final int iFillRpc;
    final int iSetRightRpc;
    final String deleteAllMethod;
    private final String name;
    private final String section;

    /** @param name as the methods' names have it */
    AccountService(String owner, String name, int iPasswordMax, int iRoom, int iFillRpc,
            int iSetRightRpc) {
        this.owner = owner;
        this.name = name;
        section = name.toLowerCase(Locale.ROOT);
        deleteAllMethod = "deleteAll" + name + "Account";
        this.iPasswordMax = iPasswordMax;
        this.iRoom = iRoom;
        this.iFillRpc = iFillRpc;
        this.iSetRightRpc = iSetRightRpc;
    }

    String info() {
        return Natives.text(Box.kRights, "get" + name + "RightInfo");
    }

    int set(int iRight, int iValue) {
        return Natives.number(Box.kRightConfig, "set" + name + "Right", iRight, iValue);
    }

    int add(String user, String password) {
        return Natives.number(Box.kRightConfig, "add" + name + "Account", user, password);
    }

    int delete(String user) {
        return Natives.number(Box.kRightConfig, "delete" + name + "Account", user);
    }

    int deleteAll() {
        return Natives.number(Box.kRightConfig, deleteAllMethod);
    }

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
