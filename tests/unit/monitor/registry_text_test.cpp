// The registry text: which records it has, and the list that is made of them.
#include <cstring>
#include <string>

#include "unit/monitor/monitor_fixture.h"

namespace wap::test {
namespace {

class RegistryTextTest : public MonitorTest {
  protected:
    /// Converts with a buffer of so many bytes, which ends where it says.
    std::string Convert(const std::string &sText, uint32_t uiCap = 4096) {
        Forget();
        std::vector<char> acOut(uiCap, '!');
        uiResult = VT_API_ConvertAddrListToJson(sText.c_str(), acOut.data(), uiCap);
        return uiResult == 0 ? acOut.data() : std::string(acOut.data(), uiCap);
    }
    static std::string List(const std::string &sRecords) {
        return "{\"Result\":0,\"List\":[" + sRecords + "]}";
    }
    static std::string Record(const std::string &sName, const std::string &sAddresses) {
        return "{\"BundleName\":\"" + sName + "\",\"DestAddressList\":" + sAddresses + "}";
    }

    uint32_t uiResult = 0;
};

TEST_F(RegistryTextTest, MakesAListOfTheRecords) {
    const std::string sWanted =
        "{\"Result\":0,\"List\":["
        "{\"BundleName\":\"com.a\",\"DestAddressList\":[\"10.0.0.1\",\"10.0.0.2\"]},"
        "{\"BundleName\":\"b\",\"DestAddressList\":[]},"
        "{\"BundleName\":\"c\",\"DestAddressList\":[\"::1\"]}]}";
    EXPECT_EQ(Convert("com.a[\"10.0.0.1\",\"10.0.0.2\"];b[];c[\"::1\"]"), sWanted);
    EXPECT_EQ(uiResult, 0u);
    EXPECT_EQ(EntryTraces(stPlatform), Calls{"pcOutJson: " + sWanted + "\r\n"});
    EXPECT_EQ(stPlatform.astTraces.at(0).uiMid, 249u);
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(RegistryTextTest, WhatIsNoRecordIsLeftOut) {
    struct Case {
        const char *pcText;
        std::string sRecords;
    };
    const Case astCases[] = {
        {"", ""},
        {";", ""},
        {";;;", ""},
        {"[1]", ""},
        {"name", ""},
        {"name;", ""},
        {"name;[1]", ""},
        {"]", ""},
        {"a[1];[2];b[3]", Record("a", "[1]") + "," + Record("b", "[3]")},
        {"a[1];b;c[3]", Record("a", "[1]") + "," + Record("c", "[3]")},
        {";a[1];;b[2];", Record("a", "[1]") + "," + Record("b", "[2]")},
        // The first bracket is the one that counts; one in the next record is not looked for.
        {"a[[1],[2]]", Record("a", "[[1],[2]]")},
        {"[a[1]", ""},
        {"a;b[1]", Record("b", "[1]")},
    };
    for (const Case &stCase : astCases) {
        SCOPED_TRACE(stCase.pcText);
        EXPECT_EQ(Convert(stCase.pcText), List(stCase.sRecords));
        EXPECT_EQ(uiResult, 0u);
    }
}

// Whether it is JSON is looked at where an answer is made of it, not here.
TEST_F(RegistryTextTest, AddressesAreTakenAsTheyStand) {
    EXPECT_EQ(Convert("a[ \"1\" , 2 ] "), List(Record("a", "[ \"1\" , 2 ] ")));
    EXPECT_EQ(Convert("a[1"), List(Record("a", "[1")));
    EXPECT_EQ(Convert(" a [1]"), List(Record(" a ", "[1]")));
}

TEST_F(RegistryTextTest, NameIsCutTo255Bytes) {
    for (const size_t uiLength : {254u, 255u, 256u, 3000u}) {
        const std::string sName(uiLength, 'n');
        EXPECT_EQ(Convert(sName + "[1]"), List(Record(sName.substr(0, 255), "[1]")));
    }
}

TEST_F(RegistryTextTest, NullAndRoomForNothingAreRefused) {
    char acOut[64] = "before";
    EXPECT_EQ(VT_API_ConvertAddrListToJson(nullptr, acOut, sizeof(acOut)), 1u);
    EXPECT_EQ(TimesRecorded(kMonitorFile, 1, {64}), 1u);
    EXPECT_STREQ(acOut, "before");
    EXPECT_EQ(VT_API_ConvertAddrListToJson("a[1]", nullptr, 64), 1u);
    for (uint32_t uiCap = 0; uiCap < 23; ++uiCap) {
        EXPECT_EQ(Convert("a[1]", uiCap), std::string(uiCap, '!'));
        EXPECT_EQ(uiResult, 1u);
        EXPECT_EQ(TimesRecorded(kMonitorFile, 1, {uiCap}), 1u);
    }
    EXPECT_EQ(Convert("", 23), List(""));
    EXPECT_EQ(uiResult, 0u);
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

// The list is whole for every room: it ends with the last record that fits, and what would fit
// behind one that does not is left out too.
TEST_F(RegistryTextTest, TooLittleRoomCutsBetweenRecords) {
    const std::string sText = "a[1];bb[\"22\"];c[3]";
    const std::string sFirst = Record("a", "[1]");
    const std::string sSecond = sFirst + "," + Record("bb", "[\"22\"]");
    const std::string sAll = sSecond + "," + Record("c", "[3]");
    for (uint32_t uiCap = 23; uiCap <= List(sAll).size() + 2; ++uiCap) {
        SCOPED_TRACE(uiCap);
        const auto Fits = [&](const std::string &sRecords) {
            return List(sRecords).size() < uiCap;
        };
        const std::string sWanted = Fits(sAll)      ? sAll
                                    : Fits(sSecond) ? sSecond
                                    : Fits(sFirst)  ? sFirst
                                                    : "";
        EXPECT_EQ(Convert(sText, uiCap), List(sWanted));
        EXPECT_EQ(uiResult, 0u);
        EXPECT_EQ(TimesRecorded(kMonitorFile, 0xF7700005, {uiCap}), sWanted == sAll ? 0u : 1u);
        EXPECT_EQ(EntryTraces(stPlatform), Calls{"pcOutJson: " + List(sWanted) + "\r\n"});
    }
}

TEST_F(RegistryTextTest, ManyRecordsThatAreNoneAreSkipped) {
    // Not more: AddressSanitizer's strict checks of texts read to their end at each search.
    std::string sText;
    for (int i = 0; i < 10000; ++i) {
        sText += "[;a;";
    }
    sText += "b[1]";
    EXPECT_EQ(Convert(sText), List(Record("b", "[1]")));
}

}  // namespace
}  // namespace wap::test
