package com.veltra.domoline.systemtest;

import static org.junit.jupiter.api.Assertions.assertEquals;

import java.util.List;
import org.junit.jupiter.api.AfterAll;
import org.junit.jupiter.api.BeforeAll;
import org.junit.jupiter.api.Tag;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.extension.ExtendWith;

/**
 * A home changes its provider's services. After each thing that is done, every list tells it,
 * through Java and in the processes that own it; and they still do when these processes have
 * crashed and are back.
 */
@ExtendWith(AttachedGateway.class)
@Tag("long")
class UplinkStoryTest {
    private final UplinkState home = new UplinkState();

    @BeforeAll
    static void newGateway() {
        Gateway.startOver();
    }

    @AfterAll
    static void startOver() {
        Gateway.startOver();
    }

    private void step(String what) {
        home.assertAgrees(what);
        Gateway.crash(Gateway.kGulm, Gateway.kAppM, Gateway.kOsgiProxy, Gateway.kIgmp);
        home.assertAgrees(what + ", and the processes crashed");
    }

    /** Only gulm, and by its own doing. */
    private void restartOfGulm(String when) {
        Gateway.ctl("stop", Gateway.kGulm);
        assertEquals(Lan.list(), Wan.kAccess.getWANIfList(), when);
        Gateway.start(Gateway.kGulm);
        home.assertAgrees(when + ", and gulm was restarted");
    }

    // ---- the story ----

    @Test
    void everyListAgreesWithWhatWasDone() {
        home.connect(Wan.kInternet, Wan.kInternetName, "wan1.1.ip1");
        home.connect(Wan.kOther, Wan.kOtherName, "wan1.2.ip1");
        home.connect(Wan.kIptv, Wan.kIptvName, "wan1.3.ip1");
        home.connect(Wan.kManagement, Wan.kManagementName, "wan1.4.ppp1");
        home.addIpv4(2, Wan.kInternet, "10.20.0.0", "255.255.0.0", "203.0.113.1");
        home.addIpv6(2, Wan.kInternet, "2001:db8:100::/48", "2001:db8:0:1::1");
        internetStatus("192.0.2.53,192.0.2.54", "2001:db8::53,2001:db8::54");
        step("nothing was done yet");

        createConnections();
        changeDnsServers();
        addRoutes();
        bindInterfaces();
        deleteRoutesAndBindings();
        deleteConnections();
    }

    private void internetStatus(String dns, String ipv6Dns) {
        home.statuses.put(Wan.kInternet,
                Wan.status("203.0.113.10", "255.255.255.0", "203.0.113.1", dns, "2001:db8:0:1::10",
                        ipv6Dns));
    }

    private void createConnections() {
        assertEquals(Wan.kFifthIp, Wan.kConfig.addWANIf("2", "500", "IP_Bridged"));
        home.connect(Wan.kFifthIp, "5_OTHER_B_VID_500", "wan1.5.ip1");
        assertEquals("{\"ServiceList\":\"OTHER\",\"VLANMode\":\"2\",\"VLANIDMark\":\"500\"}",
                Home.now().settings(Wan.kFifthIp));
        step("a bridged connection was made");

        assertEquals(Wan.kSixthPpp, Wan.kConfig.addWANIf("1", "600", "pppoe_routed"));
        home.connect(Wan.kSixthPpp, "6_INTERNET_R_VID_600", "wan1.6.ppp1");
        home.statuses.put(Wan.kSixthPpp, Wan.status("", "", "", "", "", ""));
        step("a routed connection was made");

        assertEquals(-2, Wan.kConfig.addWANIf("2", "500", "IP_Routed"));
        assertEquals(-2, Wan.kConfig.addWANIf("1", "600", "IP_Routed"));
        assertEquals(-2, Wan.kConfig.addWANIf("2", "46", "PPPoE_Bridged"));
        assertEquals(-1, Wan.set(Wan.kSixthPpp, "ServiceList", "TR069"));
        assertEquals(-1, Wan.set(Wan.kFifthIp, "ServiceList", "INTERNET,tr069"));
        step("VLANs in use and a second management connection were refused");

        assertEquals(0, Wan.set(Wan.kSixthPpp, "ServiceList", "VOIP", "NATEnabled", "FALSE"));
        home.names.put(Wan.kSixthPpp, "6_VOIP_R_VID_600");
        assertEquals("{\"ServiceList\":\"VOIP\",\"VLANMode\":\"1\",\"VLANIDMark\":\"600\","
                        + "\"IPMode\":\"1\",\"NATEnabled\":\"FALSE\"}",
                Home.now().settings(Wan.kSixthPpp));
        step("the routed connection is for telephony");
    }

    private void changeDnsServers() {
        assertEquals(0, Wan.set(Wan.kInternet, "DNSServers", "9.9.9.9"));
        internetStatus("9.9.9.9,192.0.2.54", "2001:db8::53,2001:db8::54");
        step("the first IPv4 server was replaced");

        assertEquals(0, Wan.set(Wan.kInternet, "DNSServers", "9.9.9.9,149.112.112.112"));
        internetStatus("9.9.9.9,149.112.112.112", "2001:db8::53,2001:db8::54");
        step("the second one was replaced");

        assertEquals(0, Wan.set(Wan.kInternet, "IPv6DNSServers", "2620:fe::fe"));
        internetStatus("9.9.9.9,149.112.112.112", "2620:fe::fe,2001:db8::54");
        step("the first IPv6 server was replaced");

        assertEquals(0,
                Wan.set(Wan.kInternet, "IPv6DNSServers", "2620:fe::fe,2620:fe::9", "DNSServers",
                        ",1.1.1.1"));
        // The blank place isn't kept: the server that was given comes first.
        internetStatus("1.1.1.1,149.112.112.112", "2620:fe::fe,2620:fe::9");
        step("the second IPv6 server was replaced, and an IPv4 server");

        assertEquals(0, Wan.set(Wan.kManagement, "DNSServers", "100.64.0.99"));
        home.statuses.put(Wan.kManagement,
                Wan.status("100.64.0.7", "255.255.255.255", "100.64.0.1", "100.64.0.99,100.64.0.54",
                        "", ""));
        assertEquals(0, Wan.set(Wan.kSixthPpp, "DNSServers", "198.51.100.7"));
        home.statuses.put(Wan.kSixthPpp, Wan.status("", "", "", "198.51.100.7", "", ""));
        step("PPP connections got servers");

        assertEquals(0,
                Wan.set(Wan.kSixthPpp, "DNSServers", "198.51.100.7,198.51.100.8",
                        "IPv6DNSServers", "2001:db8::7"));
        home.statuses.put(Wan.kSixthPpp,
                Wan.status("", "", "", "198.51.100.7,198.51.100.8", "", "2001:db8::7"));
        restartOfGulm("a PPP connection has servers of both kinds");
    }

    private void addRoutes() {
        assertEquals(3,
                Wan.kRoutes.addLayer3ForwardingStatic(
                        "198.18.0.0", "255.254.0.0", null, "6_voip_r_vid_600"));
        home.addIpv4(3, Wan.kSixthPpp, "198.18.0.0", "255.254.0.0", "");
        step("an IPv4 route was added by its connection's alias");

        assertEquals(4,
                Wan.kRoutes.addLayer3ForwardingStatic(
                        "192.0.2.128", "255.255.255.128", "198.51.100.1", Wan.kOtherName));
        home.addIpv4(4, Wan.kOther, "192.0.2.128", "255.255.255.128", "198.51.100.1");
        assertEquals(3,
                Wan.kRoutes.addIPv6Layer3ForwardingStatic(
                        "2001:db8:600::/40", "fe80::6", "6_VOIP_R_VID_600"));
        home.addIpv6(3, Wan.kSixthPpp, "2001:db8:600::/40", "fe80::6");
        assertEquals(4,
                Wan.kRoutes.addIPv6Layer3ForwardingStatic(
                        "2001:db8:5::/64", null, "5_OTHER_B_VID_500"));
        home.addIpv6(4, Wan.kFifthIp, "2001:db8:5::/64", "");
        step("more routes were added");

        Gateway.ctl("wan", "set", "6_VOIP_R_VID_600", "down");
        home.iDown = Wan.kSixthPpp;
        home.statuses.computeIfPresent(
                Wan.kSixthPpp, (iWan, status) -> status.replace("Connected", "Disconnected"));
        step("a connection went down, and its routes are not in force");

        Gateway.ctl("wan", "set", "6_VOIP_R_VID_600", "up");
        home.iDown = 0;
        home.statuses.computeIfPresent(
                Wan.kSixthPpp, (iWan, status) -> status.replace("Disconnected", "Connected"));
        assertEquals(0, Wan.set(Wan.kFifthIp, "VLANIDMark", "501"));
        home.names.put(Wan.kFifthIp, "5_OTHER_B_VID_501");
        restartOfGulm("a connection has another VLAN, and so another name");
    }

    private void bindInterfaces() {
        assertEquals(0, Wan.kBinding.setVLANBind("LAN2", "10/501,20/600"));
        home.bound[1] = "10/501,20/600";
        step("a port was bound");

        assertEquals(0, Wan.kBinding.setVLANBind("SSID5", "30/501"));
        home.bound[6] = "30/501";
        home.ssids = List.of("5 1 30/501");
        step("an SSID was bound");

        assertEquals(0, Wan.kBinding.setVLANBind("LAN2", "1/4094"));
        home.bound[1] = "1/4094";
        restartOfGulm("the port was bound to others");
    }

    private void deleteRoutesAndBindings() {
        assertEquals(0, Wan.kRoutes.deleteLayer3ForwardingStatic(2));
        home.ipv4.remove(0);
        assertEquals(0, Wan.kRoutes.deleteIPv6Layer3ForwardingStatic(4));
        home.ipv6.remove(2);
        step("routes were deleted");

        assertEquals(0, Wan.kBinding.clearVLANBind("LAN2"));
        home.bound[1] = "";
        assertEquals(0, Wan.kBinding.clearVLANBind("SSID5"));
        home.bound[6] = "";
        home.ssids = List.of("5 0 ");
        step("nothing is bound");
    }

    private void deleteConnections() {
        assertEquals(0, Wan.kConfig.deleteWANIf(Wan.kSixthPpp));
        home.disconnect(Wan.kSixthPpp);
        step("the telephony's connection was deleted, and its routes");

        assertEquals(0, Wan.kConfig.deleteWANIf(Wan.kIptv));
        home.disconnect(Wan.kIptv);
        home.iptv = "NO_IPTV_CONNECTION";
        step("the television's connection was deleted");

        assertEquals(0, Wan.kConfig.deleteWANIf(Wan.kInternet));
        home.disconnect(Wan.kInternet);
        // The next connection with a gateway is the way out, though it isn't for the Internet.
        home.iInternet = -1;
        home.iWayOut = Wan.kOther;
        home.gateway = "198.51.100.1";
        home.mappings = List.of();
        assertEquals(-1, Wan.kConfig.deleteWANIf(Wan.kInternet), "once more");
        step("the Internet's connection was deleted, and with it its port mapping");

        assertEquals(0, Wan.kConfig.deleteWANIf(Wan.kFifthIp));
        home.disconnect(Wan.kFifthIp);
        assertEquals(0, Wan.kConfig.deleteWANIf(Wan.kOther));
        home.disconnect(Wan.kOther);
        home.iWayOut = Wan.kManagement;
        home.gateway = "100.64.0.1";
        restartOfGulm("the management's connection alone is left");

        assertEquals(0, Wan.kConfig.deleteWANIf(Wan.kManagement));
        home.disconnect(Wan.kManagement);
        home.iWayOut = 0;
        step("everything is deleted");

        assertEquals(Wan.kInternet, Wan.kConfig.addWANIf("0", "46", "IP_Routed"));
        home.connect(Wan.kInternet, "1_INTERNET_R_VID_0", "wan1.1.ip1");
        assertEquals(0, Wan.set(Wan.kInternet, "ServiceList", "INTERNET_TR069"));
        home.connect(Wan.kInternet, "1_INTERNET_TR069_R_VID_0", "wan1.1.ip1");
        home.iInternet = Wan.kInternet;
        step("a new connection does all");
    }
}
