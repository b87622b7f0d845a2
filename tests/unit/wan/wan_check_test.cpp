// The checks that the settings of a WAN connection must pass.
#include <cstring>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "common/owners.h"
#include "unit/wan/setting_places.h"
#include "unit/wan/wan_fixture.h"
#include "wan/jni_wan_info.h"

namespace wap::test {
namespace {

using Settings = std::map<std::string, std::string>;

const char *const kIpv4Keys[] = {"AddressingType", "ExternalIPAddress", "SubnetMask",
                                 "DefaultGateway", "DNSServers"};
const char *const kIpv6Keys[] = {
    "IPv6IPAddressOrigin", "IPv6IPAddress",    "IPv6DNSServers",   "IPv6PrefixDelegationEnabled",
    "IPv6PrefixOrigin",    "IPv6Prefix",       "IPv6PrefixPltime", "IPv6PrefixVltime",
    "IPv6DefaultGateway",  "IPv6DsliteEnable", "IPv6AftrMode",     "IPv6AftrAddress"};
const char *const kSwitchKeys[] = {"DNSEnabled", "LanInterface-DHCPEnable", "NATEnabled",
                                   "IPv6DsliteEnable", "IPv6PrefixDelegationEnabled"};

const SettingPlace &PlaceOf(const std::string &sKey) {
    for (const SettingPlace &stPlace : kSettingPlaces) {
        if (sKey == stPlace.pcKey) {
            return stPlace;
        }
    }
    ADD_FAILURE() << sKey;
    return kSettingPlaces[0];
}

/// The record of settings, all of which are set.
std::string RecordOf(const Settings &mapSettings) {
    std::string sRecord(1080, '\0');
    for (const auto &[sKey, sValue] : mapSettings) {
        PutText(sRecord, PlaceOf(sKey).uiAt, sValue);
        PutText(sRecord, PlaceOf(sKey).uiFlagAt, "\x01");
    }
    return sRecord;
}

/// Every setting, with values that pass.
Settings EverySetting() {
    Settings mapSettings;
    for (const SettingPlace &stPlace : kSettingPlaces) {
        mapSettings[stPlace.pcKey] = "x";
    }
    for (const char *pcKey : kSwitchKeys) {
        mapSettings[pcKey] = "TRUE";
    }
    mapSettings["LanInterface"] = "lan1,ssid2";
    mapSettings["IPMode"] = "3";
    mapSettings["VLANMode"] = "2";
    mapSettings["DNSServers"] = "8.8.8.8";
    return mapSettings;
}

class WanCheckTest : public WanTest {
  protected:
    void SetUp() override {
        WanTest::SetUp();
        AnswerIpDns("1.1.1.1,2.2.2.2");
        AnswerPppDns("3.3.3.3,4.4.4.4");
        AnswerList(ListBytes({{1, "1_INTERNET_R_VID_100"}, {kPppWan, "2_TR069_R_VID_46"}}));
    }

    /// Checks a record and gives it back as it is then.
    std::string CheckRecord(const std::string &sRecord, uint32_t uiWanted, uint32_t uiWanIndex) {
        stPlatform.ClearRecords();
        WanIfPara stPara = {};
        std::memcpy(&stPara, sRecord.data(), sizeof(stPara));
        EXPECT_EQ(VT_API_CheckWanPara(uiWanIndex, &stPara), uiWanted);
        return BytesOf(stPara);
    }
    std::string Check(const Settings &mapSettings, uint32_t uiWanted,
                      uint32_t uiWanIndex = kIpWan) {
        return CheckRecord(RecordOf(mapSettings), uiWanted, uiWanIndex);
    }

    void Passes(const Settings &mapSettings) {
        EXPECT_EQ(Check(mapSettings, 0), RecordOf(mapSettings));
        EXPECT_TRUE(stPlatform.astFaults.empty());
    }
    /// Refused, unchanged, and recorded with one number beside the WAN index.
    void Fails(const Settings &mapSettings, uint32_t uiNumber) {
        EXPECT_EQ(Check(mapSettings, 1), RecordOf(mapSettings));
        EXPECT_EQ(Recorded(kSettingsFile, 1), (Records{{kIpWan, uiNumber, 0, 0}}));
    }
};

TEST_F(WanCheckTest, NothingSetIsFine) {
    Passes({});
    EXPECT_TRUE(stPlatform.astRpcs.empty());
    EXPECT_EQ(EntryTraces(stPlatform), Calls{});
}

// What is in a field does not count unless its flag says so.
TEST_F(WanCheckTest, OnlyWhatIsSetIsChecked) {
    std::string sRecord = RecordOf(EverySetting());
    for (const SettingPlace &stPlace : kSettingPlaces) {
        PutText(sRecord, stPlace.uiAt, "bad");
        PutText(sRecord, stPlace.uiFlagAt, std::string(1, '\0'));
    }
    PutText(sRecord, PlaceOf("ServiceList").uiAt, "TR069");
    EXPECT_EQ(CheckRecord(sRecord, 0, kIpWan), sRecord);
    EXPECT_TRUE(stPlatform.astRpcs.empty());
}

// ---- IP mode ----

TEST_F(WanCheckTest, IpModesFromOneToThree) {
    for (const char *pcMode : {"1", "2", "3", "02", "01", "003", "000000000000001"}) {
        Passes({{"IPMode", pcMode}});
    }
    const struct {
        const char *pcMode;
        uint32_t uiNumber;
    } astBad[] = {{"0", 0},  {"4", 4},  {"abc", 0}, {" 1", 0},         {"1 ", 0},
                  {"-1", 0}, {"+1", 0}, {"1.0", 0}, {"4294967297", 0}, {"4294967295", 0xFFFFFFFF},
                  {"0x1", 0}};
    for (const auto &stBad : astBad) {
        Fails({{"IPMode", stBad.pcMode}}, stBad.uiNumber);
    }
}

TEST_F(WanCheckTest, Ipv6OnlyDropsFiveIpv4Settings) {
    Settings mapSettings = EverySetting();
    mapSettings["IPMode"] = "2";
    std::string sWanted = RecordOf(mapSettings);
    for (const char *pcKey : kIpv4Keys) {
        PutText(sWanted, PlaceOf(pcKey).uiFlagAt, std::string(1, '\0'));
    }
    EXPECT_EQ(Check(mapSettings, 0), sWanted);
    // The servers' flag is gone: nobody is asked for the present ones.
    EXPECT_TRUE(stPlatform.astRpcs.empty());
    EXPECT_EQ(sWanted[PlaceOf("DNSEnabled").uiFlagAt], '\x01');
}

TEST_F(WanCheckTest, Ipv4OnlyDropsTwelveIpv6Settings) {
    Settings mapSettings = EverySetting();
    mapSettings["IPMode"] = "1";
    mapSettings["DNSServers"] = "8.8.8.8,9.9.9.9";
    std::string sWanted = RecordOf(mapSettings);
    for (const char *pcKey : kIpv6Keys) {
        PutText(sWanted, PlaceOf(pcKey).uiFlagAt, std::string(1, '\0'));
    }
    EXPECT_EQ(Check(mapSettings, 0), sWanted);
    ASSERT_EQ(std::size(kIpv6Keys), 12u);
}

TEST_F(WanCheckTest, BothDropNothingAndNorDoOtherSpellings) {
    for (const char *pcMode : {"3", "03", "01", "02"}) {
        Settings mapSettings = EverySetting();
        mapSettings["IPMode"] = pcMode;
        mapSettings["DNSServers"] = "8.8.8.8,9.9.9.9";
        EXPECT_EQ(Check(mapSettings, 0), RecordOf(mapSettings)) << pcMode;
    }
}

TEST_F(WanCheckTest, DroppedSwitchesAreNotChecked) {
    EXPECT_EQ(Check({{"IPMode", "1"}, {"IPv6DsliteEnable", "bad"}}, 0)[1076], '\0');
    Check({{"IPMode", "3"}, {"IPv6DsliteEnable", "bad"}}, 1);
}

// ---- LAN interfaces, VLAN mode, switches ----

TEST_F(WanCheckTest, LanInterfacesNameLanOrSsid) {
    for (const char *pcPorts : {"LAN1", "lan1,ssid2", "SSID1", "sSiD", "wlan0", "eth0,Lan2"}) {
        Passes({{"LanInterface", pcPorts}});
    }
    for (const char *pcPorts : {"eth0", "LA N", "SSI", ",", "1"}) {
        Fails({{"LanInterface", pcPorts}}, 0);
    }
}

TEST_F(WanCheckTest, VlanModesUpToTwo) {
    // A text that is no number counts as 0.
    for (const char *pcMode : {"0", "1", "2", "002", "abc", "-1"}) {
        Passes({{"VLANMode", pcMode}});
    }
    Fails({{"VLANMode", "3"}}, 3);
    Fails({{"VLANMode", "65537"}}, 65537);
}

TEST_F(WanCheckTest, SwitchesAreTrueOrFalseInUpperCase) {
    const std::map<std::string, uint32_t> mapNumbers = {{"DNSEnabled", 14},
                                                        {"LanInterface-DHCPEnable", 5},
                                                        {"NATEnabled", 7},
                                                        {"IPv6DsliteEnable", 27},
                                                        {"IPv6PrefixDelegationEnabled", 21}};
    for (const auto &[sKey, uiNumber] : mapNumbers) {
        SCOPED_TRACE(sKey);
        Passes({{sKey, "TRUE"}});
        Passes({{sKey, "FALSE"}});
        for (const char *pcValue :
             {"true", "True", "FALSe", "1", "0", "TRUE ", " TRUE", "TRU", "FALSES"}) {
            Fails({{sKey, pcValue}}, uiNumber);
        }
    }
    // No other setting is a switch.
    Settings mapOthers = EverySetting();
    mapOthers.erase("DNSServers");
    Passes(mapOthers);
}

// ---- services ----

TEST_F(WanCheckTest, ManagementConnectionMayKeepItsService) {
    const Settings mapSettings = {{"ServiceList", "INTERNET,tr069"}};
    EXPECT_EQ(Check(mapSettings, 0, kPppWan), RecordOf(mapSettings));
    ExpectRpcs({ListQuery()});
}

TEST_F(WanCheckTest, NoSecondManagementConnection) {
    Fails({{"ServiceList", "xTr069x"}}, kPppWan);
    ExpectRpcs({ListQuery()});
}

TEST_F(WanCheckTest, FirstManagementConnectionWhenThereIsNone) {
    AnswerList(ListBytes({{1, "1_INTERNET_R_VID_100"}}));
    Passes({{"ServiceList", "TR069"}});
    AnswerList(ListBytes({}));
    Passes({{"ServiceList", "TR069"}});
}

// What can't be found out stands in nobody's way.
TEST_F(WanCheckTest, FailedListMeansNoManagementConnection) {
    const Settings mapSettings = {{"ServiceList", "TR069"}};
    Refuse(kAskList);
    EXPECT_EQ(Check(mapSettings, 0), RecordOf(mapSettings));
    EXPECT_TRUE(Recorded(kSettingsFile, 1).empty());
    EXPECT_TRUE(HasFault(stPlatform, kRefused));
}

TEST_F(WanCheckTest, OtherServicesAskNobody) {
    Passes({{"ServiceList", "INTERNET"}});
    EXPECT_TRUE(stPlatform.astRpcs.empty());
}

// ---- DNS servers ----

TEST_F(WanCheckTest, DnsServersAreCompleted) {
    std::string sWanted = RecordOf({{"DNSServers", "8.8.8.8,2.2.2.2"}});
    EXPECT_EQ(Check({{"DNSServers", "8.8.8.8"}}, 0), sWanted);
    ExpectRpcs({{"gulm", 50, kAskIpDns, Word(1) + Word(1) + Word(1), 12864}});
    sWanted = RecordOf({{"DNSServers", "8.8.8.8,4.4.4.4"}});
    EXPECT_EQ(Check({{"DNSServers", "8.8.8.8"}}, 0, kPppWan), sWanted);
    ExpectRpcs({{"gulm", 50, kAskPppDns, Word(1) + Word(2) + Word(3), 12004}});
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(WanCheckTest, FailedCompletionPassesItsCodeOn) {
    Refuse(kAskIpDns);
    const Settings mapSettings = {{"DNSServers", "8.8.8.8"}};
    EXPECT_EQ(Check(mapSettings, kRefused), RecordOf(mapSettings));
    EXPECT_EQ(Recorded(kSettingsFile, kRefused), (Records{{kIpWan, 0, 0, 0}}));
}

// ---- all of it ----

TEST_F(WanCheckTest, ChecksAreMadeInOrderAndTheFirstFailureEndsThem) {
    Settings mapSettings = EverySetting();
    mapSettings["IPMode"] = "9";
    mapSettings["LanInterface"] = "eth0";
    mapSettings["VLANMode"] = "8";
    for (const char *pcKey : kSwitchKeys) {
        mapSettings[pcKey] = "maybe";
    }
    mapSettings["ServiceList"] = "TR069";
    // What each failure records, and how it is repaired.
    const struct {
        uint32_t uiNumber;
        const char *pcKey;
        const char *pcGood;
    } astSteps[] = {{9, "IPMode", "3"},
                    {0, "LanInterface", "LAN1"},
                    {8, "VLANMode", "0"},
                    {14, "DNSEnabled", "TRUE"},
                    {5, "LanInterface-DHCPEnable", "FALSE"},
                    {7, "NATEnabled", "TRUE"},
                    {27, "IPv6DsliteEnable", "FALSE"},
                    {21, "IPv6PrefixDelegationEnabled", "TRUE"}};
    for (const auto &stStep : astSteps) {
        SCOPED_TRACE(stStep.pcKey);
        Fails(mapSettings, stStep.uiNumber);
        EXPECT_TRUE(stPlatform.astRpcs.empty());
        mapSettings[stStep.pcKey] = stStep.pcGood;
    }
    Fails(mapSettings, kPppWan);
    ExpectRpcs({ListQuery()});
    mapSettings["ServiceList"] = "VOIP";
    Check(mapSettings, 0);
}

TEST_F(WanCheckTest, FieldsWithoutAZeroEndWhereTheyEnd) {
    // A list of services is looked through as well; it holds nothing that could be refused.
    const std::set<std::string> asChecked = {"IPMode",
                                             "LanInterface",
                                             "VLANMode",
                                             "DNSEnabled",
                                             "LanInterface-DHCPEnable",
                                             "NATEnabled",
                                             "IPv6DsliteEnable",
                                             "IPv6PrefixDelegationEnabled",
                                             "DNSServers"};
    std::string sRecord(1080, '9');
    for (size_t i = 1049; i < sRecord.size(); ++i) {
        sRecord[i] = '\0';
    }
    for (const SettingPlace &stPlace : kSettingPlaces) {
        std::string sOne = sRecord;
        sOne[stPlace.uiFlagAt] = '\xFF';
        WanIfPara stPara = {};
        std::memcpy(&stPara, sOne.data(), sizeof(stPara));
        const bool bChecked = asChecked.contains(stPlace.pcKey);
        EXPECT_EQ(VT_API_CheckWanPara(kIpWan, &stPara), bChecked ? 1u : 0u) << stPlace.pcKey;
        EXPECT_EQ(BytesOf(stPara), sOne) << stPlace.pcKey;
    }
}

TEST_F(WanCheckTest, NullRecord) {
    EXPECT_EQ(VT_API_CheckWanPara(kIpWan, nullptr), 1u);
    EXPECT_EQ(Recorded(kSettingsFile, 1), (Records{{kIpWan, 0, 0, 0}}));
}

}  // namespace
}  // namespace wap::test
