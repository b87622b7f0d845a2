// The gateway's LAN address and its DHCP server.
#include "lan/jni_lan_address.h"

#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LANIPConfigServiceJNI.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LANIPInfoQueryServiceJNI.h>

#include <cstring>

#include "unit/lan/lan_test.h"

namespace wap::test {
namespace {

constexpr uint32_t kGetAddress = 0x471030A0;
constexpr uint32_t kGetDhcp = 0x47302001;
constexpr uint32_t kSetAddress = 0x47209098;
constexpr uint32_t kSetDhcp = 0x47209099;

class LanAddressTest : public LanTest {
  protected:
    Answer GetAddress() {
        return Ended(WAP_METHOD(LANIPInfoQuery, getLANHostIP)(&stEnv, stEnv.JavaObject()));
    }
    Answer GetDhcp() {
        return Ended(WAP_METHOD(LANIPInfoQuery, getLANDHCPInfo)(&stEnv, stEnv.JavaObject()));
    }
    Answer SetAddress(jstring jAddress, jstring jMask) {
        return Ended(
            WAP_METHOD(LANIPConfig, setLANHostIP)(&stEnv, stEnv.JavaObject(), jAddress, jMask));
    }
    Answer SetDhcp(jstring jStatus, jstring jStart, jstring jEnd, jint iDuration) {
        return Ended(WAP_METHOD(LANIPConfig, setLANDHCPInfo)(&stEnv, stEnv.JavaObject(), jStatus,
                                                             jStart, jEnd, iDuration));
    }

    static std::string AddressRequest(const std::string &sAddress, const std::string &sMask) {
        return Word(1) + Word(1) + std::string(4, '\0') + Field(sAddress, 16) + Field(sMask, 16) +
               std::string(152, '\0') + "\x18" + std::string(3, '\0');
    }
    static std::string DhcpRequest(uint32_t uiEnable, const std::string &sStart,
                                   const std::string &sEnd, uint32_t uiLease) {
        return Word(1) + Word(0) + Word(uiEnable) + Word(0) + Word(uiLease) + Word(0) +
               Field(sStart, 16) + Field(sEnd, 16) + std::string(1825, '\0') + "\xD5" +
               std::string(7, '\0');
    }
    /// The answer about a DHCP server; the lease as it is printed.
    static Answer DhcpAnswer(const std::string &sEnabled, const std::string &sStart,
                             const std::string &sEnd, const std::string &sLease) {
        return TextAnswerOf("{ \"Result\": 0, \"EnableDHCPServer\": \"" + sEnabled +
                            "\", \"DHCPStartIP\": \"" + sStart + "\", \"DHCPEndIP\": \"" + sEnd +
                            "\", \"DHCPDuration\": " + sLease + " }");
    }
    /// The furnished DHCP settings with some bytes at an offset.
    static std::string DhcpWith(size_t uiAt, const std::string &sBytes) {
        std::string sRecord = DhcpRecord();
        PutText(sRecord, uiAt, sBytes);
        return sRecord;
    }
};

// ---- reading the address ----

TEST_F(LanAddressTest, AddressIsAskedOfTheAccessProcess) {
    EXPECT_EQ(GetAddress(), TextAnswerOf(kLanAddressText));
    ExpectAsked("app_m", 249, kGetAddress, Word(1), 128);
    EXPECT_TRUE(stPlatform.astFaults.empty());
    EXPECT_EQ(EntryTraces(stPlatform),
              (Calls{"\r\n Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_"
                     "LANIPInfoQueryServiceJNI_getLANHostIP called \r\n"}));
}

TEST_F(LanAddressTest, AddressTextIsPassedOnAsItStands) {
    for (const std::string sText : {"no JSON at all", "%s%n {", "Caf\xC3\xA9", "x"}) {
        stPlatform.mapReplies[kGetAddress] = {0, sText};
        EXPECT_EQ(GetAddress(), TextAnswerOf(sText));
    }
}

TEST_F(LanAddressTest, AddressTextEndsThoughTheReplyFillsTheBuffer) {
    for (const size_t uiLen : {127u, 128u, 129u, 4000u}) {
        stPlatform.mapReplies[kGetAddress] = {0, std::string(uiLen, 'x')};
        EXPECT_EQ(GetAddress(), TextAnswerOf(std::string(std::min<size_t>(uiLen, 128), 'x')));
    }
}

TEST_F(LanAddressTest, EmptyAddressTextIsNull) {
    stPlatform.mapReplies[kGetAddress] = {0, ""};
    EXPECT_EQ(GetAddress(), NullAnswer());
    stPlatform.mapReplies[kGetAddress] = {0, std::string(128, '\0')};
    EXPECT_EQ(GetAddress(), NullAnswer());
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(LanAddressTest, RefusedAddressIsAFaultText) {
    Refuse(kGetAddress);
    EXPECT_EQ(GetAddress(), TextAnswerOf(kFault));
    EXPECT_EQ(TakeFaults(),
              (FileCodes{{"jni_rpc.cpp", kRefused}, {"jni_lan_address.cpp", kRefused}}));
}

TEST_F(LanAddressTest, AddressWorkerSucceedsWhateverTheProcessSays) {
    char acBuf[128];
    memset(acBuf, 'o', sizeof(acBuf));
    Refuse(kGetAddress);
    EXPECT_EQ(VT_JNI_getLANHostIP(acBuf, sizeof(acBuf)), 0u);
    EXPECT_EQ(std::string(acBuf, sizeof(acBuf)), Field(kFault, 128));
    // What was in the buffer before doesn't lengthen a short reply.
    stPlatform.mapReplies[kGetAddress] = {0, "ab"};
    memset(acBuf, 'o', sizeof(acBuf));
    EXPECT_EQ(VT_JNI_getLANHostIP(acBuf, sizeof(acBuf)), 0u);
    EXPECT_EQ(std::string(acBuf, sizeof(acBuf)), Field("ab", 128));
}

TEST_F(LanAddressTest, FaultTextStaysInASmallBuffer) {
    Refuse(kGetAddress);
    Refuse(kGetDhcp);
    for (const auto pfnWorker : {VT_JNI_getLANHostIP, VT_JNI_getLANDHCPInfo}) {
        char acBuf[8] = "ooooooo";
        EXPECT_EQ(pfnWorker(acBuf, 5), 0u);
        EXPECT_EQ(std::string(acBuf, 8), std::string("{\"Re\0oo\0", 8));
        EXPECT_EQ(pfnWorker(acBuf, 1), 0u);
        EXPECT_EQ(std::string(acBuf, 8), std::string("\0\"Re\0oo\0", 8));
    }
}

TEST_F(LanAddressTest, QueriesWithoutRoomAreRefused) {
    char cRoom = 'o';
    for (const auto pfnWorker : {VT_JNI_getLANHostIP, VT_JNI_getLANDHCPInfo}) {
        EXPECT_EQ(pfnWorker(nullptr, 128), kNullArgument);
        EXPECT_EQ(pfnWorker(&cRoom, 0), kNullArgument);
        EXPECT_EQ(TakeFaults(), (FileCodes{{"jni_lan_address.cpp", kNullArgument},
                                           {"jni_lan_address.cpp", kNullArgument}}));
    }
    EXPECT_EQ(cRoom, 'o');
    ExpectNotAsked();
}

// ---- reading the DHCP server's settings ----

TEST_F(LanAddressTest, DhcpSettingsAreAskedOfTheBroadbandProcess) {
    EXPECT_EQ(GetDhcp(), DhcpAnswer("TRUE", "192.168.1.2", "192.168.1.254", "86400"));
    ExpectAsked("gulm", 48, kGetDhcp, Word(1), 1990);
    EXPECT_TRUE(stPlatform.astFaults.empty());
    EXPECT_EQ(EntryTraces(stPlatform),
              (Calls{"\r\n Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_"
                     "LANIPInfoQueryServiceJNI_getLANDHCPInfo called \r\n"}));
}

TEST_F(LanAddressTest, OnlyAOneSaysThatTheServerIsOn) {
    for (const uint32_t uiEnable : {0u, 2u, 0x101u, 0x01000000u, 0xFFFFFFFFu}) {
        stPlatform.mapReplies[kGetDhcp] = {0, DhcpWith(4, Word(uiEnable))};
        EXPECT_EQ(GetDhcp(), DhcpAnswer("FALSE", "192.168.1.2", "192.168.1.254", "86400"))
            << uiEnable;
    }
}

TEST_F(LanAddressTest, LeaseIsASignedNumber) {
    stPlatform.mapReplies[kGetDhcp] = {0, DhcpWith(12, Word(0x7FFFFFFF))};
    EXPECT_EQ(GetDhcp(), DhcpAnswer("TRUE", "192.168.1.2", "192.168.1.254", "2147483647"));
    stPlatform.mapReplies[kGetDhcp] = {0, DhcpWith(12, Word(0xFFFFFFFF))};
    EXPECT_EQ(GetDhcp(), DhcpAnswer("TRUE", "192.168.1.2", "192.168.1.254", "-1"));
}

TEST_F(LanAddressTest, DhcpTextsEndAtTheirFields) {
    stPlatform.mapReplies[kGetDhcp] = {0, DhcpWith(20, std::string(16, 's'))};
    EXPECT_EQ(GetDhcp(), DhcpAnswer("TRUE", std::string(16, 's'), "192.168.1.254", "86400"));
    stPlatform.mapReplies[kGetDhcp] = {0, DhcpWith(36, std::string(1954, 'e'))};
    EXPECT_EQ(GetDhcp(), DhcpAnswer("TRUE", "192.168.1.2", std::string(16, 'e'), "86400"));
    stPlatform.mapReplies[kGetDhcp] = {0, std::string(3000, '\xFF')};
    std::string sUnknown;
    for (int i = 0; i < 16; ++i) {
        sUnknown += "\xEF\xBF\xBD";  // Java's sign for what is no UTF-8
    }
    EXPECT_EQ(GetDhcp(), DhcpAnswer("FALSE", sUnknown, sUnknown, "-1"));
}

TEST_F(LanAddressTest, EmptyDhcpTextsStay) {
    stPlatform.mapReplies[kGetDhcp] = {0, std::string(1990, '\0')};
    EXPECT_EQ(GetDhcp(), DhcpAnswer("FALSE", "", "", "0"));
}

TEST_F(LanAddressTest, ShortDhcpReplyCountsAsZerosFromItsEnd) {
    stPlatform.mapReplies[kGetDhcp] = {0, DhcpRecord().substr(0, 23)};
    EXPECT_EQ(GetDhcp(), DhcpAnswer("TRUE", "192", "", "86400"));
    stPlatform.mapReplies[kGetDhcp] = {0, ""};
    EXPECT_EQ(GetDhcp(), DhcpAnswer("FALSE", "", "", "0"));
}

TEST_F(LanAddressTest, DhcpAnswerThatDoesNotFitIsAFault) {
    // Each of these bytes takes six in JSON: together they pass the 255 that there are.
    stPlatform.mapReplies[kGetDhcp] = {0, DhcpWith(20, std::string(32, '\x01'))};
    EXPECT_EQ(GetDhcp(), TextAnswerOf(kFault));
    EXPECT_EQ(TakeFaults(), (FileCodes{{"jni_common.cpp", 1}, {"jni_lan_address.cpp", 1}}));
}

TEST_F(LanAddressTest, DhcpAnswerMustFitWithItsZero) {
    const std::string sWanted = *DhcpAnswer("TRUE", "192.168.1.2", "192.168.1.254", "86400").sText;
    const auto uiLength = static_cast<uint32_t>(sWanted.size());
    std::string sBuf(uiLength + 2, 'o');
    EXPECT_EQ(VT_JNI_getLANDHCPInfo(sBuf.data(), uiLength + 1), 0u);
    EXPECT_EQ(sBuf, sWanted + std::string("\0o", 2));
    EXPECT_EQ(VT_JNI_getLANDHCPInfo(sBuf.data(), uiLength), 0u);
    EXPECT_EQ(sBuf.substr(0, uiLength), Field(kFault, uiLength));
    EXPECT_EQ(sBuf.substr(uiLength), std::string("\0o", 2));
}

TEST_F(LanAddressTest, RefusedDhcpSettingsAreAFaultText) {
    Refuse(kGetDhcp);
    EXPECT_EQ(GetDhcp(), TextAnswerOf(kFault));
    EXPECT_EQ(TakeFaults(),
              (FileCodes{{"jni_rpc.cpp", kRefused}, {"jni_lan_address.cpp", kRefused}}));
}

TEST_F(LanAddressTest, DhcpSettingsWithoutMemoryAskNobody) {
    stWorld.Plan({Op::kAlloc, 1, false});
    char acBuf[256] = {};
    EXPECT_EQ(VT_JNI_getLANDHCPInfo(acBuf, sizeof(acBuf)), 0u);
    stWorld.Plan({});
    EXPECT_STREQ(acBuf, kFault);
    ExpectNotAsked();
    ASSERT_EQ(stPlatform.astFaults.size(), 1u);
    EXPECT_EQ(stPlatform.astFaults[0].uiCode, kNoMemory);
    EXPECT_EQ(stPlatform.astFaults[0].auiArgs, (Args{1990, 0, 0, 0}));
}

TEST_F(LanAddressTest, DhcpComposerRefusesNull) {
    DhcpSettings stSettings = {};
    char acBuf[8] = "ooooooo";
    EXPECT_EQ(VT_API_getDhcpInfoJsonStr(nullptr, acBuf, sizeof(acBuf)), kNullArgument);
    EXPECT_EQ(VT_API_getDhcpInfoJsonStr(&stSettings, nullptr, 256), kNullArgument);
    EXPECT_EQ(FaultCodes(stPlatform), (Codes{kNullArgument, kNullArgument}));
    EXPECT_EQ(VT_API_getDhcpInfoJsonStr(&stSettings, acBuf, sizeof(acBuf)), 1u);
    EXPECT_STREQ(acBuf, "ooooooo");
}

// ---- setting the address ----

TEST_F(LanAddressTest, AddressAndMaskGoOut) {
    EXPECT_EQ(SetAddress(Java("192.168.1.1"), Java("255.255.255.0")), NumberAnswerOf(0));
    ExpectAsked("osgi_proxy", 0, kSetAddress, AddressRequest("192.168.1.1", "255.255.255.0"), 4);
    EXPECT_TRUE(stPlatform.astFaults.empty());
    EXPECT_EQ(EntryTraces(stPlatform),
              (Calls{"\r\n Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_"
                     "LANIPConfigServiceJNI_setLANHostIP called \r\n"}));
}

TEST_F(LanAddressTest, AddressIsWholeOrEmpty) {
    const std::string sLongest = "1234567890abcde";
    EXPECT_EQ(SetAddress(Java(sLongest), Java(sLongest)), NumberAnswerOf(0));
    ExpectAsked("osgi_proxy", 0, kSetAddress, AddressRequest(sLongest, sLongest), 4);
    EXPECT_EQ(SetAddress(Java(sLongest + "f"), Java("m")), NumberAnswerOf(0));
    ExpectAsked("osgi_proxy", 0, kSetAddress, AddressRequest("", "m"), 4);
    EXPECT_EQ(SetAddress(Java("a"), Java(std::string(300, 'm'))), NumberAnswerOf(0));
    ExpectAsked("osgi_proxy", 0, kSetAddress, AddressRequest("a", ""), 4);
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(LanAddressTest, AddressNeedsBothTexts) {
    using Texts = std::pair<const char *, const char *>;
    for (const auto &[pcAddress, pcMask] :
         {Texts{nullptr, "m"}, {"a", nullptr}, {"", "m"}, {"a", ""}, {nullptr, nullptr}}) {
        EXPECT_EQ(SetAddress(Java(pcAddress), Java(pcMask)), NumberAnswerOf(-1));
        EXPECT_EQ(TakeFaults(), (FileCodes{{"LANIPConfigServiceJNI.cpp", 1}}));
    }
    EXPECT_EQ(VT_JNI_setLANHostIP(nullptr, "m"), kMinusOne);
    EXPECT_EQ(VT_JNI_setLANHostIP("a", nullptr), kMinusOne);
    EXPECT_EQ(FaultCodes(stPlatform), (Codes{kNullArgument, kNullArgument}));
    ExpectNotAsked();
}

TEST_F(LanAddressTest, RefusedAddressChangeIsMinusOne) {
    Refuse(kSetAddress);
    EXPECT_EQ(SetAddress(Java("a"), Java("m")), NumberAnswerOf(-1));
    EXPECT_EQ(TakeFaults(), (FileCodes{{"jni_rpc.cpp", kRefused},
                                       {"jni_lan_address.cpp", kRefused},
                                       {"LANIPConfigServiceJNI.cpp", kMinusOne}}));
}

TEST_F(LanAddressTest, WhatTheReplyToAChangeSaysDoesNotMatter) {
    for (const std::string &sReply : {std::string(), Word(7), std::string(9, '\xFF')}) {
        stPlatform.mapReplies[kSetAddress] = {0, sReply};
        stPlatform.mapReplies[kSetDhcp] = {0, sReply};
        EXPECT_EQ(SetAddress(Java("a"), Java("m")), NumberAnswerOf(0));
        EXPECT_EQ(SetDhcp(Java("TRUE"), Java("a"), Java("b"), 1), NumberAnswerOf(0));
    }
}

TEST_F(LanAddressTest, ChangesWithoutMemoryAskNobody) {
    const struct {
        uint32_t uiSize;
        std::function<uint32_t()> fnCall;
    } astChanges[] = {
        {200, [] { return VT_JNI_setLANHostIP("a", "m"); }},
        {1889, [] { return VT_JNI_setLANDHCPInfo("TRUE", "a", "b", 1); }},
    };
    for (const auto &stChange : astChanges) {
        stPlatform.ClearRecords();
        stWorld.Plan({Op::kAlloc, 1, false});
        EXPECT_EQ(stChange.fnCall(), kMinusOne);
        stWorld.Plan({});
        ExpectNotAsked();
        ASSERT_EQ(stPlatform.astFaults.size(), 1u);
        EXPECT_EQ(stPlatform.astFaults[0].uiCode, kNoMemory);
        EXPECT_EQ(stPlatform.astFaults[0].auiArgs, (Args{stChange.uiSize, 0, 0, 0}));
    }
}

// ---- setting up the DHCP server ----

TEST_F(LanAddressTest, DhcpSettingsGoOut) {
    EXPECT_EQ(SetDhcp(Java("TRUE"), Java("192.168.1.2"), Java("192.168.1.254"), 86400),
              NumberAnswerOf(0));
    ExpectAsked("osgi_proxy", 0, kSetDhcp, DhcpRequest(1, "192.168.1.2", "192.168.1.254", 86400),
                4);
    EXPECT_TRUE(stPlatform.astFaults.empty());
    EXPECT_EQ(EntryTraces(stPlatform),
              (Calls{"\r\n Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_"
                     "LANIPConfigServiceJNI_setLANDHCPInfo called \r\n",
                     "VT_JNI_setLANDHCPInfo  Status:1 , startIp:192.168.1.2  "
                     "endIp:192.168.1.254 duration:86400 \n\r"}));
}

TEST_F(LanAddressTest, OnlyTrueSwitchesTheServerOn) {
    for (const char *pcStatus : {"TRUE", "true", "tRuE"}) {
        EXPECT_EQ(SetDhcp(Java(pcStatus), Java("a"), Java("b"), 5), NumberAnswerOf(0));
        ExpectAsked("osgi_proxy", 0, kSetDhcp, DhcpRequest(1, "a", "b", 5), 4);
    }
    stPlatform.astTraces.clear();
    for (const char *pcStatus : {"FALSE", "false", "yes", "1", "TRUE ", "TRU", " TRUE"}) {
        EXPECT_EQ(SetDhcp(Java(pcStatus), Java("a"), Java("b"), 5), NumberAnswerOf(0));
        ExpectAsked("osgi_proxy", 0, kSetDhcp, DhcpRequest(0, "a", "b", 5), 4);
    }
    EXPECT_TRUE(HasEntryTrace(
        stPlatform, "VT_JNI_setLANDHCPInfo  Status:0 , startIp:a  endIp:b duration:5 \n\r"));
}

TEST_F(LanAddressTest, DurationIsPassedOnAsItIs) {
    EXPECT_EQ(SetDhcp(Java("TRUE"), Java("a"), Java("b"), -2), NumberAnswerOf(0));
    ExpectAsked("osgi_proxy", 0, kSetDhcp, DhcpRequest(1, "a", "b", 0xFFFFFFFE), 4);
    EXPECT_TRUE(HasEntryTrace(
        stPlatform,
        "VT_JNI_setLANDHCPInfo  Status:1 , startIp:a  endIp:b duration:4294967294 \n\r"));
    EXPECT_EQ(SetDhcp(Java("TRUE"), Java("a"), Java("b"), 0), NumberAnswerOf(0));
    ExpectAsked("osgi_proxy", 0, kSetDhcp, DhcpRequest(1, "a", "b", 0), 4);
}

TEST_F(LanAddressTest, PoolAddressIsWholeOrEmpty) {
    const std::string sLongest = "1234567890abcde";
    EXPECT_EQ(SetDhcp(Java("TRUE"), Java(sLongest), Java(sLongest), 1), NumberAnswerOf(0));
    ExpectAsked("osgi_proxy", 0, kSetDhcp, DhcpRequest(1, sLongest, sLongest, 1), 4);
    EXPECT_EQ(SetDhcp(Java("TRUE"), Java(sLongest + "f"), Java("b"), 1), NumberAnswerOf(0));
    ExpectAsked("osgi_proxy", 0, kSetDhcp, DhcpRequest(1, "", "b", 1), 4);
    EXPECT_EQ(SetDhcp(Java("TRUE"), Java("a"), Java(std::string(3000, 'b')), 1), NumberAnswerOf(0));
    ExpectAsked("osgi_proxy", 0, kSetDhcp, DhcpRequest(1, "a", "", 1), 4);
}

TEST_F(LanAddressTest, DhcpNeedsAllTexts) {
    for (const char *pcMissing : {static_cast<const char *>(nullptr), ""}) {
        EXPECT_EQ(SetDhcp(Java(pcMissing), Java("a"), Java("b"), 1), NumberAnswerOf(-1));
        EXPECT_EQ(SetDhcp(Java("TRUE"), Java(pcMissing), Java("b"), 1), NumberAnswerOf(-1));
        EXPECT_EQ(SetDhcp(Java("TRUE"), Java("a"), Java(pcMissing), 1), NumberAnswerOf(-1));
        EXPECT_EQ(TakeFaults(), (FileCodes{{"LANIPConfigServiceJNI.cpp", 1},
                                           {"LANIPConfigServiceJNI.cpp", 1},
                                           {"LANIPConfigServiceJNI.cpp", 1}}));
    }
    EXPECT_EQ(VT_JNI_setLANDHCPInfo(nullptr, "a", "b", 1), kMinusOne);
    EXPECT_EQ(VT_JNI_setLANDHCPInfo("TRUE", nullptr, "b", 1), kMinusOne);
    EXPECT_EQ(VT_JNI_setLANDHCPInfo("TRUE", "a", nullptr, 1), kMinusOne);
    EXPECT_EQ(FaultCodes(stPlatform), (Codes{kNullArgument, kNullArgument, kNullArgument}));
    ExpectNotAsked();
}

TEST_F(LanAddressTest, RefusedDhcpChangeIsMinusOne) {
    Refuse(kSetDhcp);
    EXPECT_EQ(SetDhcp(Java("TRUE"), Java("a"), Java("b"), 1), NumberAnswerOf(-1));
    EXPECT_EQ(TakeFaults(), (FileCodes{{"jni_rpc.cpp", kRefused},
                                       {"jni_lan_address.cpp", kRefused},
                                       {"LANIPConfigServiceJNI.cpp", kMinusOne}}));
}

}  // namespace
}  // namespace wap::test
