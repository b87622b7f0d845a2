// The report of the speed limits, byte for byte.
#include <string>
#include <vector>

#include "access/jni_attach_control.h"
#include "unit/attach/attach_home.h"

namespace wap::test {
namespace {

class SpeedReportTest : public AttachTest {
  protected:
    /// The report's text, or the worker's code in words.
    std::string Report(const char *const *ppcMacs, uint32_t uiCount) {
        return Take(VT_JNI_getLANHostSpeedLimitInfo(ppcMacs, uiCount, &pcText));
    }
    std::string Report(const MacTexts &stMacs) { return Report(stMacs.Table(), stMacs.Count()); }
    std::string Take(uint32_t uiResult) {
        if (uiResult != 0) {
            EXPECT_EQ(pcText, nullptr);
            return "code " + std::to_string(static_cast<int32_t>(uiResult));
        }
        EXPECT_NE(pcText, nullptr);
        std::string sText = pcText == nullptr ? "" : pcText;
        VT_OS_MemFreeD(pcText, __FILE_NAME__, __LINE__);
        pcText = nullptr;
        return sText;
    }
    /// The sizes that the worker asked the platform's allocator for.
    std::vector<size_t> Blocks() const {
        std::vector<size_t> auiSizes;
        for (const AllocRecord &stRecord : stWorld.stAllocs.astLog) {
            if (stRecord.stPlace.sFile == kWorkerFile) {
                auiSizes.push_back(stRecord.uiSize);
            }
        }
        return auiSizes;
    }

    char *pcText = nullptr;
};

TEST_F(SpeedReportTest, TellsTheHostsAskedForInTheirOrder) {
    stHome.astRecords = {{5, kMacA, 1, 1, 100, 200}, {6, kMacB, 1, 0, 300, 400}};
    EXPECT_EQ(Report({kMacB, kMacA}),
              "{ \"Result\": 0, \"List\": [ { \"UpSpeed\": 300, \"DownSpeed\": 400 }, "
              "{ \"UpSpeed\": 100, \"DownSpeed\": 200 } ] }");
    EXPECT_EQ(Sent(), ListRequests({5, 6}));
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(SpeedReportTest, AnUnknownHostHasZeros) {
    stHome.astRecords = {{5, kMacA, 1, 1, 100, 200}};
    EXPECT_EQ(Report({kMacB, kMacA}),
              "{ \"Result\": 0, \"List\": [ { \"UpSpeed\": 0, \"DownSpeed\": 0 }, "
              "{ \"UpSpeed\": 100, \"DownSpeed\": 200 } ] }");
}

TEST_F(SpeedReportTest, AHostNamedTwiceIsToldTwice) {
    stHome.astRecords = {{5, kMacA, 1, 1, 1, 2}};
    EXPECT_EQ(Report({kMacA, "02:00:00:00:00:0a"}),
              "{ \"Result\": 0, \"List\": [ { \"UpSpeed\": 1, \"DownSpeed\": 2 }, "
              "{ \"UpSpeed\": 1, \"DownSpeed\": 2 } ] }");
}

// Java counts on one object for each element.
TEST_F(SpeedReportTest, EmptyAndNullEntriesKeepTheirPlaces) {
    stHome.astRecords = {{5, kMacA, 1, 1, 1, 2}};
    EXPECT_EQ(Report({"", kMacA, nullptr}),
              "{ \"Result\": 0, \"List\": [ { \"UpSpeed\": 0, \"DownSpeed\": 0 }, "
              "{ \"UpSpeed\": 1, \"DownSpeed\": 2 }, { \"UpSpeed\": 0, \"DownSpeed\": 0 } ] }");
}

TEST_F(SpeedReportTest, ATableWithoutTextAsksForAll) {
    stHome.astRecords = {{5, kMacB, 1, 1, 3, 4}, {6, kMacA, 1, 0, 1, 2}};
    const std::string sAll =
        "{ \"Result\": 0, \"List\": [ { \"UpSpeed\": 3, \"DownSpeed\": 4 }, "
        "{ \"UpSpeed\": 1, \"DownSpeed\": 2 } ] }";
    EXPECT_EQ(Report(nullptr, 0), sAll);
    EXPECT_EQ(Sent(), ListRequests({5, 6}));
    EXPECT_EQ(Report(nullptr, 4), sAll);
    EXPECT_EQ(Report({nullptr, nullptr}), sAll);
    EXPECT_EQ(Report({"", nullptr}), sAll);
}

TEST_F(SpeedReportTest, NoRecordsMakeAnEmptyList) {
    EXPECT_EQ(Report(nullptr, 0), "{ \"Result\": 0, \"List\": [ ] }");
    EXPECT_EQ(Report({kMacA}),
              "{ \"Result\": 0, \"List\": [ { \"UpSpeed\": 0, \"DownSpeed\": 0 } ] }");
}

TEST_F(SpeedReportTest, LimitsAreShownSigned) {
    stHome.astRecords = {{5, kMacA, 1, 1, 0x7FFFFFFF, 0x80000000}, {6, kMacB, 1, 1, 0xFFFFFFFF, 1}};
    EXPECT_EQ(
        Report(nullptr, 0),
        "{ \"Result\": 0, \"List\": [ { \"UpSpeed\": 2147483647, \"DownSpeed\": -2147483648 }, "
        "{ \"UpSpeed\": -1, \"DownSpeed\": 1 } ] }");
}

TEST_F(SpeedReportTest, TheBlockHasAShareForEachHostAndOneMore) {
    stHome.astRecords = {{5, kMacA}, {6, kMacB}, {7, kMacC}};
    stWorld.stAllocs.ClearRecords();
    (void)Report(nullptr, 0);
    EXPECT_EQ(Blocks(), (std::vector<size_t>{192, 512}));
    stWorld.stAllocs.ClearRecords();
    (void)Report({kMacA});
    EXPECT_EQ(Blocks(), (std::vector<size_t>{192, 64, 256}));
    stHome.astRecords.clear();
    stWorld.stAllocs.ClearRecords();
    (void)Report(nullptr, 0);
    EXPECT_EQ(Blocks(), (std::vector<size_t>{128}));
    EXPECT_EQ(Traces("VT_JNI_getSpeedLimitJsonStr"),
              (std::vector<std::string>{"VT_JNI_getSpeedLimitJsonStr  malloc size:512\n\r",
                                        "VT_JNI_getSpeedLimitJsonStr  malloc size:256\n\r",
                                        "VT_JNI_getSpeedLimitJsonStr  malloc size:128\n\r"}));
}

TEST_F(SpeedReportTest, AHundredAndTwentyEightOfTheLongestFit) {
    const std::vector<std::string> asMacs = ManyMacs(128);
    std::string sWanted = "{ \"Result\": 0, \"List\": [";
    for (const std::string &sMac : asMacs) {
        stHome.astRecords.push_back({1000 + static_cast<uint32_t>(stHome.astRecords.size()), sMac,
                                     1, 1, 0x80000000, 0x80000001});
        sWanted += (stHome.astRecords.size() == 1 ? "" : ",");
        sWanted += " { \"UpSpeed\": -2147483648, \"DownSpeed\": -2147483647 }";
    }
    sWanted += " ] }";
    EXPECT_EQ(Report(nullptr, 0), sWanted);
    EXPECT_EQ(Report(MacTexts(asMacs)), sWanted);
}

TEST_F(SpeedReportTest, MoreThanThatAreRefusedWithoutARequest) {
    const std::vector<std::string> asMacs = ManyMacs(129);
    EXPECT_EQ(Report(MacTexts(asMacs)), "code -1");
    EXPECT_TRUE(Sent().empty());
    ASSERT_FALSE(stPlatform.astFaults.empty());
    EXPECT_EQ(stPlatform.astFaults[0].uiCode, 1u);
    EXPECT_EQ(stPlatform.astFaults[0].auiArgs, (Args{129, 0, 0, 0}));
}

TEST_F(SpeedReportTest, AListThatClaimsMoreIsToldUpToThere) {
    stPlatform.fnReply = nullptr;
    stPlatform.mapReplies[kListId] = {0, Word(0xFFFFFFFF)};
    stPlatform.mapReplies[kRecordId] = {0, std::string(64, '\xFF')};
    const std::string sReport = Report(nullptr, 0);
    EXPECT_EQ(Sent().size(), 129u);
    size_t uiObjects = 0;
    const std::string sObject = "{ \"UpSpeed\": -1, \"DownSpeed\": -1 }";
    for (size_t uiAt = sReport.find(sObject); uiAt != std::string::npos;
         uiAt = sReport.find(sObject, uiAt + 1)) {
        ++uiObjects;
    }
    EXPECT_EQ(uiObjects, 128u);
}

TEST_F(SpeedReportTest, RefusalsBecomeMinusOne) {
    stHome.astRecords = {{5, kMacA}};
    for (const uint32_t uiRpcId : {kListId, kRecordId}) {
        stHome.RefuseAt(uiRpcId, 1);
        EXPECT_EQ(Report(nullptr, 0), "code -1");
        stHome.RefuseAt(uiRpcId, 1);
        EXPECT_EQ(Report({kMacA}), "code -1");
        EXPECT_EQ(stPlatform.astFaults.back().uiCode, kRefused);
        EXPECT_EQ(stPlatform.astFaults.back().sFile, kWorkerFile);
    }
}

// ---- the pieces ----

TEST_F(SpeedReportTest, HostsByMacAreRecordsInTheOrderAskedFor) {
    stHome.astRecords = {{5, kMacA, 0, 0, 1, 2, 3, 4, 5}};
    const std::string sLong = "0123456789012345678901234567890123456789";
    const MacTexts stMacs({sLong.c_str(), "02:00:00:00:00:0a"});
    AttachControl *pstHosts = nullptr;
    ASSERT_EQ(VT_API_getAttachControlListByMac(stMacs.Table(), stMacs.Count(), &pstHosts), 0u);
    EXPECT_EQ(std::string(reinterpret_cast<const char *>(pstHosts), 128),
              Field(sLong.substr(0, 31), 32) + Word(0) + Word(1) + std::string(24, '\0') +
                  (Record{5, kMacA, 0, 0, 1, 2, 3, 4, 5}).Bytes(5));
    VT_OS_MemFreeD(pstHosts, __FILE_NAME__, __LINE__);
}

TEST_F(SpeedReportTest, HostsByMacNeedBetweenOneAndAHundredAndTwentyEight) {
    const std::vector<std::string> asMacs = ManyMacs(129);
    const MacTexts stMacs(asMacs);
    AttachControl *pstHosts = nullptr;
    EXPECT_EQ(VT_API_getAttachControlListByMac(stMacs.Table(), 129, &pstHosts), 1u);
    EXPECT_EQ(VT_API_getAttachControlListByMac(stMacs.Table(), 0x04000000, &pstHosts), 1u);
    EXPECT_EQ(VT_API_getAttachControlListByMac(stMacs.Table(), 0, &pstHosts), 1u);
    EXPECT_EQ(VT_API_getAttachControlListByMac(nullptr, 1, &pstHosts), 1u);
    EXPECT_EQ(VT_API_getAttachControlListByMac(stMacs.Table(), 1, nullptr), 1u);
    EXPECT_EQ(pstHosts, nullptr);
    EXPECT_TRUE(Sent().empty());
}

TEST_F(SpeedReportTest, TheTwoQueriesByName) {
    stHome.astRecords = {{5, kMacA, 1, 1, 1, 2}, {6, kMacB, 1, 1, 3, 4}};
    EXPECT_EQ(Take(VT_JNI_getAllLANHostSpeedLimitInfo(&pcText)),
              "{ \"Result\": 0, \"List\": [ { \"UpSpeed\": 1, \"DownSpeed\": 2 }, "
              "{ \"UpSpeed\": 3, \"DownSpeed\": 4 } ] }");
    const MacTexts stMacs({kMacB});
    EXPECT_EQ(Take(VT_JNI_getSingleLANHostSpeedLimitInfo(stMacs.Table(), 1, &pcText)),
              "{ \"Result\": 0, \"List\": [ { \"UpSpeed\": 3, \"DownSpeed\": 4 } ] }");
}

TEST_F(SpeedReportTest, PrintingChecksItsArguments) {
    AttachControl stHost = {};
    stHost.uiUsBandwidth = 7;
    EXPECT_EQ(VT_JNI_getSpeedLimitJsonStr(nullptr, 1, &pcText), 1u);
    EXPECT_EQ(VT_JNI_getSpeedLimitJsonStr(&stHost, 129, &pcText), 1u);
    EXPECT_EQ(VT_JNI_getSpeedLimitJsonStr(&stHost, 0x01FFFFFF, &pcText), 1u);
    EXPECT_EQ(VT_JNI_getSpeedLimitJsonStr(&stHost, 1, nullptr), 1u);
    EXPECT_EQ(pcText, nullptr);
    EXPECT_EQ(FaultCodes(stPlatform), (Codes{1, 1, 1, 1}));
    EXPECT_EQ(Take(VT_JNI_getSpeedLimitJsonStr(&stHost, 1, &pcText)),
              "{ \"Result\": 0, \"List\": [ { \"UpSpeed\": 7, \"DownSpeed\": 0 } ] }");
    EXPECT_EQ(Take(VT_JNI_getSpeedLimitJsonStr(nullptr, 0, &pcText)),
              "{ \"Result\": 0, \"List\": [ ] }");
}

}  // namespace
}  // namespace wap::test
