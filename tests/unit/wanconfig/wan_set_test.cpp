// Changing WAN connections: the record that goes out, and what has to go well before and after.
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_WanConfigServiceJNI.h>

#include "support/entry_calls.h"
#include "unit/wanconfig/wanconfig_fixture.h"
#include "wan/jni_wan_config.h"

namespace wap::test {
namespace {

constexpr const char *kSplitTrace = "etype:1, Id1:1, id2:1, Id3:1 \r\n";

class SetWanTest : public WanConfigTest {
  protected:
    jint Set(const std::string &sJson, uint32_t uiWanIndex = kWan) {
        stPlatform.ClearRecords();
        const jint iResult = WAP_METHOD(WanConfig, setWANIf)(&stEnv, stEnv.JavaObject(),
                                                             static_cast<jint>(uiWanIndex),
                                                             stEnv.JavaText(FromUtf8(sJson)));
        stEnv.EndCall();
        return iResult;
    }
    /// The record that went out, or nothing.
    std::string Sent() const {
        for (const RpcRecord &stRpc : stPlatform.astRpcs) {
            if (stRpc.uiRpcId == kSet) {
                return stRpc.sRequest;
            }
        }
        return "";
    }
    /// A record with some texts and their flags.
    struct Setting {
        size_t uiAt;
        std::string sText;
        size_t uiFlag;
    };
    static std::string Record(uint32_t uiKind, uint32_t uiDev, uint32_t uiConnDev, uint32_t uiConn,
                              const std::vector<Setting> &astSettings) {
        std::string sRecord(1080, '\0');
        PutText(sRecord, 0, Word(uiKind) + Word(uiDev) + Word(uiConnDev) + Word(uiConn));
        for (const Setting &stSetting : astSettings) {
            PutText(sRecord, stSetting.uiAt, stSetting.sText);
            sRecord[stSetting.uiFlag] = '\x01';
        }
        return sRecord;
    }
};

TEST_F(SetWanTest, ObjectWithoutSettingsSendsTheirAbsence) {
    EXPECT_EQ(Set("{}", 0x21234567), 0);
    ExpectOnlyRpc(stPlatform, {"osgi_proxy", 0, kSet, Record(2, 0x12, 0x34, 0x567, {}), 4});
    const Calls asTraces = EntryTraces(stPlatform);
    ASSERT_EQ(asTraces.size(), 4u);
    EXPECT_EQ(asTraces[0],
              "\r\n Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_"
              "WanConfigServiceJNI_setWANIf called \r\n");
    EXPECT_EQ(asTraces[1], "VT_JNI_SetWANIf uiWanIndex:0x21234567\r\n");
    EXPECT_EQ(asTraces[2], "etype:2, Id1:18, id2:52, Id3:1383 \r\n");
    EXPECT_EQ(asTraces[3].substr(0, 28), "\r\n setWANIf LanInterface:[0]");
    EXPECT_EQ(Set("{\"unknown\":\"value\",\"lanInterface\":\"LAN1\"}", 0x21234567), 0);
    EXPECT_EQ(Sent(), Record(2, 0x12, 0x34, 0x567, {}));
}

TEST_F(SetWanTest, SettingsReachTheirPlaces) {
    EXPECT_EQ(Set(R"({"LanInterface":"LAN1,SSID2","VLANMode":"2","NATEnabled":"TRUE",)"
                  R"("Username":"someone","Password":"p","ServiceList":"INTERNET"})"),
              0);
    EXPECT_EQ(Sent(), Record(1, 1, 1, 1,
                             {{16, "LAN1,SSID2", 1049},
                              {80, "2", 1050},
                              {136, "TRUE", 1056},
                              {144, "someone", 1057},
                              {212, "p", 1058},
                              {1017, "INTERNET", 1079}}));
    EXPECT_EQ(Rpcs(), Codes{kSet});
    EXPECT_TRUE(HasEntryTrace(stPlatform, kSplitTrace));
}

TEST_F(SetWanTest, IndexGoesOutAsItIs) {
    EXPECT_EQ(Set("{}", 0), 0);
    EXPECT_EQ(Sent(), Record(0, 0, 0, 0, {}));
    EXPECT_EQ(Set("{}", 0xFFFFFFFF), 0);
    EXPECT_EQ(Sent(), Record(15, 255, 255, 4095, {}));
}

TEST_F(SetWanTest, MergedDnsServersAreInTheRecord) {
    EXPECT_EQ(Set(R"({"DNSServers":"192.0.2.9"})"), 0);
    EXPECT_EQ(Rpcs(), (Codes{kAskIpDns, kSet}));
    EXPECT_EQ(Sent(), Record(1, 1, 1, 1, {{352, "192.0.2.9,192.0.2.2", 1064}}));
    EXPECT_EQ(Set(R"({"DNSServers":"192.0.2.9"})", 0x20101001), 0);
    EXPECT_EQ(Rpcs(), (Codes{kAskPppDns, kSet}));
    EXPECT_EQ(Sent(), Record(2, 1, 1, 1, {{352, "192.0.2.9,192.0.2.4", 1064}}));
}

TEST_F(SetWanTest, Ipv6DnsServersAreSetApartAndLast) {
    EXPECT_EQ(Set(R"({"IPv6DNSServers":"2001:db8::9"})"), 0);
    ASSERT_EQ(Rpcs(), (Codes{kSet, kAskIpv6Dns, kSetIpv6Dns}));
    EXPECT_EQ(Sent(), Record(1, 1, 1, 1, {{560, "2001:db8::9", 1069}}));
    ExpectRpc(stPlatform.astRpcs[1], {"gulm", 50, kAskIpv6Dns, Field("wan1.1.ip1", 32), 1389});
    ExpectRpc(stPlatform.astRpcs[2],
              {"gulm", 89, kSetIpv6Dns,
               Word(kWan) + Field("2001:db8::9", 64) + Field("2001:db8::2", 64) + '\0', 4});
    // An IPv4 connection has none.
    EXPECT_EQ(Set(R"({"IPMode":"1","IPv6DNSServers":"2001:db8::9"})"), 0);
    EXPECT_EQ(Rpcs(), Codes{kSet});
    EXPECT_EQ(Sent()[1069], '\0');
    EXPECT_EQ(Set(R"({"IPMode":"3","IPv6DNSServers":"2001:db8::9"})"), 0);
    EXPECT_EQ(Rpcs(), (Codes{kSet, kAskIpv6Dns, kSetIpv6Dns}));
}

TEST_F(SetWanTest, SecondManagementConnectionIsRefused) {
    // The furnished one is 0x20101002.
    EXPECT_EQ(Set(R"({"ServiceList":"TR069"})"), -1);
    EXPECT_EQ(Rpcs(), Codes{kAskList});
    EXPECT_TRUE(HasRecorded(kWanWorkers, 1, {kWan, 0, 0, 0}));
    EXPECT_EQ(stPlatform.astFaults.back().sFile, kWanEntries);
    EXPECT_EQ(Set(R"({"ServiceList":"INTERNET,tr069"})"), -1);
    EXPECT_EQ(Set(R"({"ServiceList":"TR069"})", 0x20101002), 0);
    EXPECT_EQ(Rpcs(), (Codes{kAskList, kSet}));
}

TEST_F(SetWanTest, RefusedSettingsAreNotSent) {
    for (const char *pcJson :
         {R"({"IPMode":"4"})", R"({"LanInterface":"eth0"})", R"({"VLANMode":"3"})",
          R"({"NATEnabled":"true"})", R"({"DNSServers":","})"}) {
        AnswerWith(kAskIpDns, std::string(12864, '\0'));
        EXPECT_EQ(Set(pcJson), -1) << pcJson;
        EXPECT_EQ(Sent(), "") << pcJson;
        // The worker twice: where the settings are refused, and for Java.
        EXPECT_TRUE(HasRecorded(kWanWorkers, 1, {kWan, 0, 0, 0})) << pcJson;
        EXPECT_EQ(stPlatform.astFaults.back().sFile, kWanEntries) << pcJson;
        EXPECT_EQ(stPlatform.astFaults.back().uiCode, kMinusOne) << pcJson;
    }
}

// What does not fit a setting's field is no setting, and so is not checked.
TEST_F(SetWanTest, TooLongSettingsAreLeftOut) {
    EXPECT_EQ(Set(R"({"NATEnabled":"disable"})"), -1);
    EXPECT_EQ(Set(R"({"NATEnabled":"DISABLED"})"), 0);
    EXPECT_EQ(Sent(), Record(1, 1, 1, 1, {}));
}

TEST_F(SetWanTest, FailedRequestsEndIt) {
    const struct {
        uint32_t uiRpcId;
        Codes auiAsked;
    } astFailures[] = {
        {kAskIpDns, {kAskIpDns}},
        {kSet, {kAskIpDns, kSet}},
        {kAskIpv6Dns, {kAskIpDns, kSet, kAskIpv6Dns}},
        {kSetIpv6Dns, {kAskIpDns, kSet, kAskIpv6Dns, kSetIpv6Dns}},
    };
    for (const auto &stFailure : astFailures) {
        FurnishWanConfig(stWorld);
        Refuse(stFailure.uiRpcId);
        EXPECT_EQ(Set(R"({"DNSServers":"192.0.2.9","IPv6DNSServers":"2001:db8::9"})"), -1);
        EXPECT_EQ(Rpcs(), stFailure.auiAsked);
        EXPECT_TRUE(HasRecorded(kWanWorkers, kRefused, {kWan, 0, 0, 0}));
        EXPECT_EQ(stPlatform.astFaults.back().sFile, kWanEntries);
    }
}

TEST_F(SetWanTest, Ipv6DnsServersNeedAConnection) {
    EXPECT_EQ(Set(R"({"IPv6DNSServers":"2001:db8::9"})", 0x30101001), -1);
    EXPECT_EQ(Rpcs(), Codes{kSet});
}

TEST_F(SetWanTest, WorkersRefuseNullArguments) {
    EXPECT_EQ(VT_JNI_SetWANIf(kWan, nullptr), kMinusOne);
    EXPECT_TRUE(HasRecorded(kWanWorkers, kNoJson, {kWan, 0, 0, 0}));
    EXPECT_EQ(VT_API_SetIPWANIf(nullptr, kWan), 1u);
    EXPECT_TRUE(HasRecorded(kWanWorkers, 1, {kWan, 0, 0, 0}));
    EXPECT_TRUE(stPlatform.astRpcs.empty());
}

TEST_F(SetWanTest, ParsedSettingsAreLent) {
    json_object *pstJson = JSON_Parse(R"({"VLANMode":"1"})", 1);
    EXPECT_EQ(VT_API_SetIPWANIf(pstJson, kWan), 0u);
    EXPECT_EQ(Sent(), Record(1, 1, 1, 1, {{80, "1", 1050}}));
    EXPECT_STREQ(JNI_JSON_ObjToJsonString(pstJson), R"({ "VLANMode": "1" })");
    Refuse(kSet);
    EXPECT_EQ(VT_API_SetIPWANIf(pstJson, kWan), kRefused);
    stWorld.Plan({Op::kAlloc, 1, false});
    EXPECT_EQ(VT_API_SetIPWANIf(pstJson, kWan), 1u);
    stWorld.Plan({});
    JNI_JSON_ObjPut(pstJson);
}

TEST_F(SetWanTest, RecordIsTakenFromThePlatform) {
    EXPECT_EQ(Set("{}"), 0);
    bool bTaken = false;
    for (const AllocRecord &stAlloc : stWorld.stAllocs.astLog) {
        bTaken = bTaken || (stAlloc.eOrigin == Origin::kPlatform && stAlloc.uiSize == 1080);
    }
    EXPECT_TRUE(bTaken);
}

TEST_F(SetWanTest, MissingTextIsRefusedWithoutAsking) {
    EXPECT_EQ(Set(""), -1);
    EXPECT_EQ(FilesOf(kMinusOne), Calls{kWanEntries});
    stPlatform.ClearRecords();
    EXPECT_EQ(WAP_METHOD(WanConfig, setWANIf)(&stEnv, stEnv.JavaObject(), 5, nullptr), -1);
    EXPECT_TRUE(HasRecorded(kWanEntries, kMinusOne, {5, 0, 0, 0}));
    EXPECT_TRUE(stPlatform.astRpcs.empty());
}

}  // namespace
}  // namespace wap::test
