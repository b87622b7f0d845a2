// The whole list as one text, for those who derive rights from it.
#include <cstring>

#include "unit/macfilter/filter_gateway.h"

namespace wap::test {
namespace {

class ListTextTest : public MacFltTest {
  protected:
    uint32_t Get() { return VT_API_getMacFltList(&pcText, &uiMode); }
    void ExpectUntouched() {
        EXPECT_EQ(pcText, acMark);
        EXPECT_EQ(uiMode, 77u);
    }
    /// The text, which must be the caller's to release, and is.
    std::string Text() {
        EXPECT_EQ(Get(), 0u);
        EXPECT_NE(pcText, acMark);
        if (pcText == nullptr || pcText == acMark) {
            return "(none)";
        }
        std::string sText = pcText;
        VT_OS_MemFreeD(pcText, __FILE_NAME__, __LINE__);
        pcText = acMark;
        return sText;
    }

    char acMark[1] = {};
    char *pcText = acMark;
    uint32_t uiMode = 77;
};

TEST_F(ListTextTest, HoldsTheWiredAddressesAndThenTheOthersOfTheWireless) {
    stGateway.uiMode = 1;
    stGateway.uiStatus = 0;
    stGateway.astLan = {{1, "02:00:00:00:00:01"}, {2, "02:00:00:00:00:02"}};
    stGateway.astWlan = {{11, "SSID-1", "02:00:00:00:00:03"},
                         {12, "SSID-5", "02:00:00:00:00:03"},
                         {13, "SSID-1", "02:00:00:00:00:01"}};
    EXPECT_EQ(Text(), "02:00:00:00:00:01,02:00:00:00:00:02,02:00:00:00:00:03");
    EXPECT_EQ(uiMode, 1u);
    EXPECT_EQ(TakeAsked(), (Asked{"mode", "list lan", "get lan 1", "get lan 2", "list wlan",
                                  "get wlan 11", "get wlan 12", "get wlan 13"}));
    EXPECT_EQ(Traced("VT_API_getMacFltList MacFltMode:1 SrcMacList:02:00:00:00:00:01,"
                     "02:00:00:00:00:02,02:00:00:00:00:03 \r\n"),
              1u);
}

TEST_F(ListTextTest, IsNullWhenBothTablesAreEmpty) {
    EXPECT_EQ(Get(), 0u);
    EXPECT_EQ(pcText, nullptr);
    EXPECT_EQ(uiMode, 0u);
    EXPECT_EQ(Traced("VT_API_getMacFltList MacFltMode:0 SrcMacList:NULL \r\n"), 1u);
}

TEST_F(ListTextTest, OneTableIsEnough) {
    stGateway.astLan = {{1, "AA"}};
    EXPECT_EQ(Text(), "AA");
    stGateway.astLan.clear();
    stGateway.astWlan = {{1, "SSID-1", "BB"}, {2, "SSID-1", "CC"}};
    EXPECT_EQ(Text(), "BB,CC");
}

TEST_F(ListTextTest, WiredAddressesAreListedAsOftenAsTheyCome) {
    stGateway.astLan = {{1, "AA"}, {2, "AA"}};
    EXPECT_EQ(Text(), "AA,AA");
}

TEST_F(ListTextTest, CaseMakesAWirelessAddressAnother) {
    stGateway.astLan = {{1, "AA"}};
    stGateway.astWlan = {{11, "SSID-1", "aa"}, {12, "SSID-1", "AA"}};
    EXPECT_EQ(Text(), "AA,aa");
}

TEST_F(ListTextTest, PartOfWhatIsThereCountsAsThere) {
    stGateway.astLan = {{1, "02:00"}};
    stGateway.astWlan = {{11, "SSID-1", "2:0"}, {12, "SSID-1", ""}};
    EXPECT_EQ(Text(), "02:00");
}

TEST_F(ListTextTest, EmptyAddressGetsNoComma) {
    stGateway.astLan = {{1, ""}, {2, "AA"}, {3, ""}};
    EXPECT_EQ(Text(), "AA,");
}

TEST_F(ListTextTest, LongestAddressesFit) {
    stGateway.mapBytes["list lan"] = Word(32) + std::string(128, '\0');
    stGateway.mapBytes["get lan 0"] = std::string(116, 'x');
    std::string sWlan = Word(256);
    for (uint32_t i = 0; i < 256; ++i) {
        sWlan += Word(i);
        stGateway.mapBytes["get wlan " + std::to_string(i)] =
            Word(1) + std::string(32, 's') + std::string(30, 'y') +
            static_cast<char>('!' + i % 90) + static_cast<char>('!' + i / 90);
    }
    stGateway.mapBytes["list wlan"] = sWlan;
    const std::string sText = Text();
    // 32 wired ones of 31 bytes, and 90 of the wireless that differ in the last that is kept.
    EXPECT_EQ(sText.size(), (32u + 90) * 32 - 1);
    EXPECT_EQ(stWorld.stAllocs.astLog.back().uiSize, (32u + 256) * 32);
}

TEST_F(ListTextTest, RefusalsArePassedUp) {
    stGateway.astLan = {{1, "AA"}};
    stGateway.astWlan = {{11, "SSID-1", "BB"}};
    const struct {
        const char *pcRefused;
        uint32_t uiResult;
    } astCases[] = {{"mode", kSomeCode},
                    {"list lan", kSomeCode},
                    {"get lan 1", 1},
                    {"list wlan", kSomeCode},
                    {"get wlan 11", 1}};
    for (const auto &stCase : astCases) {
        SCOPED_TRACE(stCase.pcRefused);
        stGateway.mapRefused = {{stCase.pcRefused, kSomeCode}};
        stPlatform.ClearRecords();
        EXPECT_EQ(Get(), stCase.uiResult);
        ExpectUntouched();
        EXPECT_EQ(TakeAsked().back(), stCase.pcRefused);
        EXPECT_TRUE(Recorded("jni_macflter.cpp", stCase.uiResult));
        EXPECT_EQ(stWorld.stAllocs.Live(), 0u);
    }
}

TEST_F(ListTextTest, WithoutMemoryItIsOne) {
    stGateway.astLan = {{1, "AA"}};
    stGateway.astWlan = {{11, "SSID-1", "BB"}};
    // The wired entries, the wireless index and entries, the text.
    for (uint32_t uiAt = 1; uiAt <= 4; ++uiAt) {
        SCOPED_TRACE(uiAt);
        stWorld.Plan({Op::kAlloc, uiAt, false});
        EXPECT_EQ(Get(), 1u);
        stWorld.Plan({});
        ExpectUntouched();
        EXPECT_EQ(stPlatform.astFaults.back().uiCode, 1u);
        EXPECT_EQ(stWorld.stAllocs.Live(), 0u);
    }
    stWorld.Plan({Op::kAlloc, 5, false});
    EXPECT_EQ(Text(), "AA,BB");
    stWorld.Plan({});
}

TEST_F(ListTextTest, NeedsBothPlaces) {
    EXPECT_EQ(VT_API_getMacFltList(nullptr, &uiMode), kNullArgument);
    EXPECT_EQ(VT_API_getMacFltList(&pcText, nullptr), kNullArgument);
    ExpectUntouched();
    EXPECT_TRUE(TakeAsked().empty());
}

TEST_F(ListTextTest, AppendPutsACommaBeforeAllButTheFirst) {
    char acText[8] = {};
    EXPECT_EQ(VT_API_appendMacFltStr(acText, sizeof(acText), "AAA"), 0u);
    EXPECT_STREQ(acText, "AAA");
    EXPECT_EQ(VT_API_appendMacFltStr(acText, sizeof(acText), "BBB"), 0u);
    EXPECT_STREQ(acText, "AAA,BBB");
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(ListTextTest, AppendToAFullBufferFails) {
    char acText[8] = "AAA";
    EXPECT_NE(VT_API_appendMacFltStr(acText, sizeof(acText), "BBBB"), 0u);
    EXPECT_EQ(std::string(acText, 3), "AAA");
    EXPECT_LT(strnlen(acText, 8), 8u);
    char acFull[4] = "AAA";
    const uint32_t uiResult = VT_API_appendMacFltStr(acFull, sizeof(acFull), "B");
    EXPECT_NE(uiResult, 0u);
    EXPECT_STREQ(acFull, "AAA");
    EXPECT_TRUE(Recorded("jni_macflter.cpp", uiResult));
    EXPECT_EQ(VT_API_appendMacFltStr(nullptr, 4, "B"), kNullArgument);
    EXPECT_EQ(VT_API_appendMacFltStr(acFull, 4, nullptr), kNullArgument);
}

}  // namespace
}  // namespace wap::test
