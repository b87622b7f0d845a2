// Settings of WAN connections: from JSON into the record, and from the record into the trace.
#include <cstring>
#include <string>

#include "common/jni_json_wrap.h"
#include "common/owners.h"
#include "unit/wan/setting_places.h"
#include "unit/wan/wan_fixture.h"
#include "wan/jni_wan_info.h"

namespace wap::test {
namespace {

constexpr size_t kRecordSize = 1080;
constexpr size_t kSettingCount = 31;

const std::string kUser = "dialup-user-0815@isp.example";
const std::string kPassword = "pass-phrase-4711-of-the-line";

std::string Quoted(const std::string &sText) {
    return "\"" + sText + "\"";
}

class WanSettingsTest : public WanTest {
  protected:
    /// The record of a JSON text, which is read into zeros.
    std::string Read(const std::string &sJson) {
        const JsonValue stJson(JSON_Parse(sJson.c_str(), 1));
        EXPECT_TRUE(stJson) << sJson;
        WanIfPara stPara = {};
        EXPECT_EQ(VT_API_GetWANIfFromJson(stJson.Lend(), &stPara), 0u);
        std::string sRecord = BytesOf(stPara);
        Wipe(&stPara, sizeof(stPara));
        return sRecord;
    }
    std::string ReadOne(const char *pcKey, const std::string &sValue) {
        return Read("{" + Quoted(pcKey) + ":" + sValue + "}");
    }

    /// What is traced of a record.
    Calls Trace(const std::string &sRecord) {
        WanIfPara stPara = {};
        std::memcpy(&stPara, sRecord.data(), sizeof(stPara));
        stPlatform.ClearRecords();
        VT_API_PrintWanInfo(&stPara);
        return EntryTraces(stPlatform);
    }
};

TEST_F(WanSettingsTest, EachKeyHasItsPlaceAndFlag) {
    ASSERT_EQ(std::size(kSettingPlaces), kSettingCount);
    for (const SettingPlace &stPlace : kSettingPlaces) {
        std::string sWanted(kRecordSize, '\0');
        PutText(sWanted, stPlace.uiAt, "v");
        PutText(sWanted, stPlace.uiFlagAt, "\x01");
        EXPECT_EQ(ReadOne(stPlace.pcKey, "\"v\""), sWanted) << stPlace.pcKey;
    }
}

TEST_F(WanSettingsTest, TextFillsItsFieldUpToTheZero) {
    for (const SettingPlace &stPlace : kSettingPlaces) {
        const std::string sLongest(stPlace.uiSize - 1, 'w');
        std::string sWanted(kRecordSize, '\0');
        PutText(sWanted, stPlace.uiAt, sLongest);
        PutText(sWanted, stPlace.uiFlagAt, "\x01");
        EXPECT_EQ(ReadOne(stPlace.pcKey, Quoted(sLongest)), sWanted) << stPlace.pcKey;
        // One more is not cut but not set.
        EXPECT_EQ(ReadOne(stPlace.pcKey, Quoted(sLongest + "w")), std::string(kRecordSize, '\0'))
            << stPlace.pcKey;
    }
}

TEST_F(WanSettingsTest, AllSettingsTogether) {
    std::string sJson;
    std::string sWanted(kRecordSize, '\0');
    for (const SettingPlace &stPlace : kSettingPlaces) {
        const std::string sValue = std::string(stPlace.pcKey).substr(0, stPlace.uiSize - 1);
        sJson += (sJson.empty() ? "{" : ",") + Quoted(stPlace.pcKey) + ":" + Quoted(sValue);
        PutText(sWanted, stPlace.uiAt, sValue);
        PutText(sWanted, stPlace.uiFlagAt, "\x01");
    }
    EXPECT_EQ(Read(sJson + "}"), sWanted);
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(WanSettingsTest, WhatIsNoTextIsNotSet) {
    for (const SettingPlace &stPlace : kSettingPlaces) {
        for (const char *pcValue :
             {"\"\"", "null", "1", "1.5", "true", "{}", "[\"v\"]", "\"\\u0000v\""}) {
            EXPECT_EQ(ReadOne(stPlace.pcKey, pcValue), std::string(kRecordSize, '\0'))
                << stPlace.pcKey << pcValue;
        }
    }
    EXPECT_EQ(ReadOne("IPMode", "\"1\\u00002\"").substr(120, 16), Field("1", 16));
}

TEST_F(WanSettingsTest, OtherKeysAndKeysInOtherCaseMeanNothing) {
    EXPECT_EQ(Read(R"({"ipmode":"1","IPMODE":"1","Username ":"u","X":"y"})"),
              std::string(kRecordSize, '\0'));
    EXPECT_EQ(Read("{}"), std::string(kRecordSize, '\0'));
    EXPECT_EQ(Read("[]"), std::string(kRecordSize, '\0'));
    EXPECT_EQ(Read("\"IPMode\""), std::string(kRecordSize, '\0'));
}

TEST_F(WanSettingsTest, PlaceOfTheConnectionIsLeftAlone) {
    const JsonValue stJson(JSON_Parse(R"({"IPMode":"3"})", 1));
    WanIfPara stPara = {};
    stPara.stPlace = {2, 1, 2, 3};
    EXPECT_EQ(VT_API_GetWANIfFromJson(stJson.Lend(), &stPara), 0u);
    EXPECT_EQ(BytesOf(stPara).substr(0, 16), Word(2) + Word(1) + Word(2) + Word(3));
}

TEST_F(WanSettingsTest, FlagsOfAnEarlierReadingAreTakenBack) {
    WanIfPara stPara;
    std::memset(&stPara, 0xFF, sizeof(stPara));
    const JsonValue stJson(JSON_Parse("{}", 1));
    EXPECT_EQ(VT_API_GetWANIfFromJson(stJson.Lend(), &stPara), 0u);
    EXPECT_EQ(BytesOf(stPara).substr(1049), std::string(31, '\0'));
}

TEST_F(WanSettingsTest, ReadingNeverFails) {
    WanIfPara stPara = {};
    EXPECT_EQ(VT_API_GetWANIfFromJson(nullptr, &stPara), 0u);
    EXPECT_EQ(BytesOf(stPara), std::string(kRecordSize, '\0'));
    stPlatform.ClearRecords();
    EXPECT_EQ(VT_API_GetWANIfFromJson(nullptr, nullptr), 0u);
    EXPECT_EQ(FaultCodes(stPlatform), (Codes{0xF7702001}));
}

TEST_F(WanSettingsTest, FlagFollowsResultAndText) {
    const struct {
        const char *pcField;
        uint32_t uiResult;
        uint8_t ucFlag;
    } astCases[] = {{"x", 0, 1},     {"", 0, 0},      {"x", 1, 0}, {"x", 0xF710000C, 0},
                    {nullptr, 0, 0}, {nullptr, 1, 0}, {"", 1, 0}};
    for (const auto &stCase : astCases) {
        for (const uint8_t ucBefore : {uint8_t{0}, uint8_t{1}, uint8_t{0xFF}}) {
            uint8_t ucFlag = ucBefore;
            VT_API_IsParaSet(stCase.uiResult, stCase.pcField, &ucFlag);
            EXPECT_EQ(ucFlag, stCase.ucFlag) << stCase.uiResult;
        }
    }
    VT_API_IsParaSet(0, "x", nullptr);
}

// ---- the trace ----

TEST_F(WanSettingsTest, TraceOfNothing) {
    EXPECT_EQ(
        Trace(std::string(kRecordSize, '\0')),
        (Calls{"\r\n setWANIf LanInterface:[0], VlanMode:[0], Vlan:[0], 8021P:[0], "
               "MulticastVlan:[0], LanDhcpEnable:[0], IpMode:[0], NatEnable:[0], AddrType:[0], "
               "ExtIpAddr:[0], SubMask:[0], DefaultGateWay:[0], DnsEnable:[0], DnsServers:[0], "
               "ConTrigger:[0], Ipv6Origin:[0], Ipv6Addr:[0], Ipv6DnsServer:[0], "
               "Ipv6PrefixDelegationEnable:[0], Ipv6PrefixOrigin:[0], Ipv6Prefix:[0], "
               "Ipv6PrefixPlTime:[0], Ipv6PrefixVlTime:[0], Ipv6DefaultGateway:[0], "
               "Ipv6DeliteEnable:[0], Ipv6AftrMode:[0], Ipv6AftrAddr:[0], ServiceList:[0] \r\n"}));
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(WanSettingsTest, TraceShowsEachFieldWithItsFlag) {
    for (const SettingPlace &stPlace : kSettingPlaces) {
        std::string sRecord(kRecordSize, '\0');
        PutText(sRecord, stPlace.uiAt, "value");
        PutText(sRecord, stPlace.uiFlagAt, "\x01");
        const Calls asTraces = Trace(sRecord);
        ASSERT_EQ(asTraces.size(), 1u);
        const bool bShown = *stPlace.pcLabel != '\0';
        EXPECT_EQ(CountOf(asTraces[0], std::string(" ") + stPlace.pcLabel + ":value[1]"),
                  bShown ? 1u : 0u)
            << stPlace.pcKey;
        EXPECT_EQ(CountOf(asTraces[0], "value"), bShown ? 1u : 0u) << stPlace.pcKey;
    }
}

// Taken out of the settings by a check, a field keeps its text and loses its flag.
TEST_F(WanSettingsTest, TraceShowsTextsThatAreNotSet) {
    std::string sRecord(kRecordSize, '\0');
    PutText(sRecord, 280, "Static");
    EXPECT_EQ(CountOf(Trace(sRecord).at(0), " AddrType:Static[0],"), 1u);
}

TEST_F(WanSettingsTest, TraceOfFullFieldsEndsAtEach) {
    std::string sRecord(kRecordSize, 'f');
    for (size_t i = 1049; i < kRecordSize; ++i) {
        sRecord[i] = '\xFF';
    }
    std::string sWanted = "\r\n setWANIf ";
    for (const SettingPlace &stPlace : kSettingPlaces) {
        if (*stPlace.pcLabel != '\0') {
            sWanted += std::string(stPlace.uiAt == 16 ? "" : ", ") + stPlace.pcLabel + ":" +
                       std::string(stPlace.uiSize, 'f') + "[255]";
        }
    }
    EXPECT_EQ(Trace(sRecord), (Calls{sWanted + " \r\n"}));
}

TEST_F(WanSettingsTest, CredentialsAreNeverTraced) {
    const std::string sRecord = Read(R"({"Username":")" + kUser + R"(","Password":")" + kPassword +
                                     R"(","MACAddress":"00:11:22:33:44:55","IPMode":"3"})");
    EXPECT_EQ(sRecord.substr(144, kUser.size()), kUser);
    EXPECT_EQ(sRecord.substr(212, kPassword.size()), kPassword);
    EXPECT_EQ(sRecord.substr(416, 17), "00:11:22:33:44:55");
    // From here on the World looks into everything that is shown.
    stWorld.stSecrets.Watch(kUser);
    stWorld.stSecrets.Watch(kPassword);
    const Calls asTraces = Trace(sRecord);
    EXPECT_EQ(CountOf(asTraces.at(0), "IpMode:3[1]"), 1u);
    EXPECT_EQ(CountOf(asTraces.at(0), "00:11"), 0u);
    EXPECT_EQ(CountOf(asTraces.at(0), "dialup"), 0u);
    EXPECT_EQ(CountOf(asTraces.at(0), "4711"), 0u);
}

TEST_F(WanSettingsTest, TraceWithoutARecordIsRecorded) {
    VT_API_PrintWanInfo(nullptr);
    EXPECT_EQ(EntryTraces(stPlatform), Calls{});
    EXPECT_EQ(FaultCodes(stPlatform), (Codes{0xF7702001}));
}

}  // namespace
}  // namespace wap::test
