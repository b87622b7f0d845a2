// The speed of a LAN host, and the names of hosts and of the gateway.
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LANHostsInfoQueryServiceJNI.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LanHostSpeedQueryServiceJNI.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LanNetworkNameConfigServiceJNI.h>

#include <cstring>

#include "lan/jni_lanhost_info.h"
#include "unit/lan/lan_test.h"

namespace wap::test {
namespace {

constexpr uint32_t kGetSpeed = 0x471030B0;
constexpr uint32_t kGetGatewayName = 0x4830512A;
constexpr uint32_t kSetHostName = 0x4720909D;
constexpr uint32_t kSetGatewayName = 0x4720909E;

// ---- speed ----

class HostSpeed : public LanTest {
  protected:
    Answer Ask(jstring jMac) {
        return Ended(
            WAP_METHOD(LanHostSpeedQuery, getLANHostSpeed)(&stEnv, stEnv.JavaObject(), jMac));
    }
    Answer Ask(const std::string &sMac) { return Ask(Java(sMac)); }
};

TEST_F(HostSpeed, AddressGoesOutAsATextOfItsOwnLength) {
    EXPECT_EQ(Ask("02:00:00:00:00:01"), TextAnswerOf(kHostSpeedText));
    ExpectAsked("app_m", 249, kGetSpeed, std::string("02:00:00:00:00:01\0", 18), 128);
    EXPECT_EQ(Ask(std::string(1000, 'm')), TextAnswerOf(kHostSpeedText));
    ExpectAsked("app_m", 249, kGetSpeed, std::string(1000, 'm') + '\0', 128);
    EXPECT_TRUE(stPlatform.astFaults.empty());
    EXPECT_EQ(EntryTraces(stPlatform)[0],
              std::string(kPrefix) + "LanHostSpeedQueryServiceJNI_getLANHostSpeed called \r\n");
}

TEST_F(HostSpeed, TextEndsThoughTheReplyFillsTheBuffer) {
    for (const size_t uiLen : {127u, 128u, 129u}) {
        stPlatform.mapReplies[kGetSpeed] = {0, std::string(uiLen, 'x')};
        EXPECT_EQ(Ask("m"), TextAnswerOf(std::string(std::min<size_t>(uiLen, 128), 'x')));
    }
    stPlatform.mapReplies[kGetSpeed] = {0, ""};
    EXPECT_EQ(Ask("m"), NullAnswer());
}

TEST_F(HostSpeed, NoAddressAsksNobody) {
    EXPECT_EQ(Ask(static_cast<jstring>(nullptr)), TextAnswerOf(kFault));
    EXPECT_EQ(Ask(""), TextAnswerOf(kFault));
    EXPECT_EQ(TakeFaults(), (FileCodes{{"LanHostSpeedQueryServiceJNI.cpp", 1},
                                       {"LanHostSpeedQueryServiceJNI.cpp", 1}}));
    ExpectNotAsked();
}

TEST_F(HostSpeed, RefusedRequestIsAFaultText) {
    Refuse(kGetSpeed);
    EXPECT_EQ(Ask("m"), TextAnswerOf(kFault));
    EXPECT_EQ(TakeFaults(), (FileCodes{{"jni_rpc.cpp", kRefused},
                                       {"jni_lanhost_info.cpp", kRefused},
                                       {"LanHostSpeedQueryServiceJNI.cpp", kRefused}}));
}

TEST_F(HostSpeed, WorkerClearsItsBuffer) {
    char acBuf[128];
    memset(acBuf, 'o', sizeof(acBuf));
    stPlatform.mapReplies[kGetSpeed] = {0, "ab"};
    EXPECT_EQ(VT_JNI_getLANHostSpeed("m", acBuf, sizeof(acBuf)), 0u);
    EXPECT_EQ(std::string(acBuf, sizeof(acBuf)), Field("ab", 128));
    Refuse(kGetSpeed);
    EXPECT_EQ(VT_JNI_getLANHostSpeed("m", acBuf, sizeof(acBuf)), kRefused);
    EXPECT_EQ(std::string(acBuf, sizeof(acBuf)), std::string(128, '\0'));
}

TEST_F(HostSpeed, WorkerRefusesNull) {
    char acBuf[4] = "ooo";
    EXPECT_EQ(VT_JNI_getLANHostSpeed(nullptr, acBuf, sizeof(acBuf)), kNullArgument);
    EXPECT_EQ(VT_JNI_getLANHostSpeed("m", nullptr, 128), kNullArgument);
    EXPECT_EQ(VT_JNI_getLANHostSpeed("m", acBuf, 0), kNullArgument);
    EXPECT_STREQ(acBuf, "ooo");
    EXPECT_EQ(FaultCodes(stPlatform), (Codes{kNullArgument, kNullArgument, kNullArgument}));
    ExpectNotAsked();
}

// ---- the gateway's name ----

class GatewayName : public LanTest {
  protected:
    Answer Ask() {
        return Ended(WAP_METHOD(LANHostsInfoQuery, getGatewayName)(&stEnv, stEnv.JavaObject()));
    }
    Answer Set(jstring jName) {
        return Ended(
            WAP_METHOD(LanNetworkNameConfig, setGatewayName)(&stEnv, stEnv.JavaObject(), jName));
    }
    Answer Set(const std::string &sName) { return Set(Java(sName)); }
};

TEST_F(GatewayName, IsAskedWithAWordOfZero) {
    EXPECT_EQ(Ask(), TextAnswerOf(kGatewayNameText));
    ExpectAsked("app_m", 249, kGetGatewayName, Word(0), 256);
    EXPECT_TRUE(stPlatform.astFaults.empty());
    EXPECT_EQ(
        EntryTraces(stPlatform),
        (Calls{std::string(kPrefix) + "LANHostsInfoQueryServiceJNI_getGatewayName called \r\n"}));
}

TEST_F(GatewayName, EndsThoughTheReplyFillsTheBuffer) {
    for (const size_t uiLen : {255u, 256u, 257u, 5000u}) {
        stPlatform.mapReplies[kGetGatewayName] = {0, std::string(uiLen, 'x')};
        EXPECT_EQ(Ask(), TextAnswerOf(std::string(std::min<size_t>(uiLen, 256), 'x')));
    }
}

TEST_F(GatewayName, IsAnEmptyTextWhenThereIsNone) {
    stPlatform.mapReplies[kGetGatewayName] = {0, ""};
    EXPECT_EQ(Ask(), TextAnswerOf(""));
    stPlatform.mapReplies[kGetGatewayName] = {0, std::string("\0abc", 4)};
    EXPECT_EQ(Ask(), TextAnswerOf(""));
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(GatewayName, IsAnEmptyTextWhenTheRequestFails) {
    Refuse(kGetGatewayName);
    EXPECT_EQ(Ask(), TextAnswerOf(""));
    EXPECT_EQ(TakeFaults(), (FileCodes{{"jni_rpc.cpp", kRefused},
                                       {"jni_lanhost_info.cpp", kRefused},
                                       {"LANHostsInfoQueryServiceJNI.cpp", kRefused}}));
}

TEST_F(GatewayName, WorkerTellsAFailureAndClearsItsBuffer) {
    char acBuf[256];
    memset(acBuf, 'o', sizeof(acBuf));
    Refuse(kGetGatewayName);
    EXPECT_EQ(VT_JNI_getGatewayName(acBuf, sizeof(acBuf)), kRefused);
    EXPECT_EQ(std::string(acBuf, sizeof(acBuf)), std::string(256, '\0'));
    EXPECT_EQ(VT_JNI_getGatewayName(nullptr, 256), kNullArgument);
    EXPECT_EQ(VT_JNI_getGatewayName(acBuf, 0), kNullArgument);
}

TEST_F(GatewayName, IsSetAsATextOfItsOwnLength) {
    EXPECT_EQ(Set("The house"), NumberAnswerOf(0));
    ExpectAsked("osgi_proxy", 0, kSetGatewayName, std::string("The house\0", 10), 4);
    EXPECT_TRUE(stPlatform.astFaults.empty());
    EXPECT_EQ(EntryTraces(stPlatform),
              (Calls{std::string(kPrefix) +
                     "LanNetworkNameConfigServiceJNI_setGatewayName called \r\n"}));
}

TEST_F(GatewayName, HasUpTo256Bytes) {
    EXPECT_EQ(Set(std::string(256, 'n')), NumberAnswerOf(0));
    ExpectAsked("osgi_proxy", 0, kSetGatewayName, std::string(256, 'n') + '\0', 4);
    EXPECT_EQ(Set(std::string(257, 'n')), NumberAnswerOf(-2));
    std::string sWide;
    for (int i = 0; i < 129; ++i) {
        sWide += "\xC3\xA9";  // 129 characters of two bytes each
    }
    EXPECT_EQ(Set(sWide), NumberAnswerOf(-2));
    ExpectNotAsked();
    EXPECT_EQ(TakeFaults(), (FileCodes{{"jni_lanhost_info.cpp", 1}, {"jni_lanhost_info.cpp", 1}}));
}

TEST_F(GatewayName, MayNotBeEmpty) {
    EXPECT_EQ(Set(static_cast<jstring>(nullptr)), NumberAnswerOf(-1));
    EXPECT_EQ(Set(""), NumberAnswerOf(-1));
    EXPECT_EQ(VT_JNI_setGatewayName(nullptr), kMinusOne);
    EXPECT_EQ(VT_JNI_setGatewayName(""), kMinusOne);
    EXPECT_EQ(TakeFaults(), (FileCodes{{"LanNetworkNameConfigServiceJNI.cpp", 1},
                                       {"LanNetworkNameConfigServiceJNI.cpp", 1},
                                       {"jni_lanhost_info.cpp", 1},
                                       {"jni_lanhost_info.cpp", 1}}));
    ExpectNotAsked();
}

TEST_F(GatewayName, RefusedChangeIsMinusOne) {
    Refuse(kSetGatewayName);
    EXPECT_EQ(Set("n"), NumberAnswerOf(-1));
    EXPECT_EQ(TakeFaults(), (FileCodes{{"jni_rpc.cpp", kRefused},
                                       {"jni_lanhost_info.cpp", kRefused},
                                       {"LanNetworkNameConfigServiceJNI.cpp", kMinusOne}}));
}

// ---- a host's name ----

class HostName : public LanTest {
  protected:
    Answer Set(jstring jMac, jstring jName) {
        return Ended(WAP_METHOD(LanNetworkNameConfig, setLANHostName)(&stEnv, stEnv.JavaObject(),
                                                                      jMac, jName));
    }
    Answer Set(const std::string &sMac, const std::string &sName) {
        return Set(Java(sMac), Java(sName));
    }
    void ExpectSent(const std::string &sMac, const std::string &sName) {
        ExpectAsked("osgi_proxy", 0, kSetHostName,
                    Word(0) + Field(sMac, 32) + Field(sName, 257) + std::string(3, '\0'), 4);
    }
};

TEST_F(HostName, GoesOutWithItsAddress) {
    EXPECT_EQ(Set("02:00:00:00:00:01", "Tablet"), NumberAnswerOf(0));
    ExpectSent("02:00:00:00:00:01", "Tablet");
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(HostName, IsShownOnTheConsoleInsteadOfTheTrace) {
    EXPECT_EQ(Set("02:00:00:00:00:01", "Tablet"), NumberAnswerOf(0));
    EXPECT_EQ(stPlatform.asConsole,
              (Calls{"\r\n gulm_jni_LanNetworkNameConfigServiceJNI_setLANHostName called "
                     "Mac:02:00:00:00:00:01  DevName:Tablet \r\n"}));
    EXPECT_TRUE(EntryTraces(stPlatform).empty());
}

TEST_F(HostName, HasUpTo64Bytes) {
    EXPECT_EQ(Set("m", std::string(64, 'n')), NumberAnswerOf(0));
    ExpectSent("m", std::string(64, 'n'));
    EXPECT_EQ(Set("m", std::string(65, 'n')), NumberAnswerOf(-2));
    EXPECT_EQ(Set("m", std::string(64, 'n') + "\xC3\xA9"), NumberAnswerOf(-2));
    EXPECT_EQ(Set("m", std::string(3000, 'n')), NumberAnswerOf(-2));
    ExpectNotAsked();
    EXPECT_EQ(TakeFaults(), (FileCodes(3, {"jni_lanhost_info.cpp", 1})));
}

TEST_F(HostName, AddressIsWholeOrEmpty) {
    EXPECT_EQ(Set(std::string(31, 'm'), "n"), NumberAnswerOf(0));
    ExpectSent(std::string(31, 'm'), "n");
    EXPECT_EQ(Set(std::string(32, 'm'), "n"), NumberAnswerOf(0));
    ExpectSent("", "n");
}

TEST_F(HostName, NeedsBothTexts) {
    using Texts = std::pair<const char *, const char *>;
    for (const auto &[pcMac, pcName] :
         {Texts{nullptr, "n"}, {"m", nullptr}, {"", "n"}, {"m", ""}, {nullptr, nullptr}}) {
        EXPECT_EQ(Set(Java(pcMac), Java(pcName)), NumberAnswerOf(-1));
        EXPECT_EQ(TakeFaults(), (FileCodes{{"LanNetworkNameConfigServiceJNI.cpp", 1}}));
    }
    EXPECT_EQ(VT_JNI_setLANHostName(nullptr, "n"), kMinusOne);
    EXPECT_EQ(VT_JNI_setLANHostName("m", nullptr), kMinusOne);
    EXPECT_EQ(TakeFaults(), (FileCodes(2, {"jni_lanhost_info.cpp", 1})));
    EXPECT_TRUE(stPlatform.asConsole.empty());
    ExpectNotAsked();
}

TEST_F(HostName, RefusedChangeIsMinusOne) {
    Refuse(kSetHostName);
    EXPECT_EQ(Set("m", "n"), NumberAnswerOf(-1));
    EXPECT_EQ(TakeFaults(), (FileCodes{{"jni_rpc.cpp", kRefused},
                                       {"jni_lanhost_info.cpp", kRefused},
                                       {"LanNetworkNameConfigServiceJNI.cpp", kMinusOne}}));
}

}  // namespace
}  // namespace wap::test
