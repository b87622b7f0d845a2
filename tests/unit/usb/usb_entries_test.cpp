// All methods of the USB service, as Java sees them.
#include <set>
#include <string>

#include "support/entry_table_usb.h"
#include "unit/usb/usb_fixture.h"

namespace wap::test {
namespace {

class UsbEntryTest : public UsbTest, public ::testing::WithParamInterface<Entry> {
  protected:
    const Entry &stEntry = GetParam();
};

TEST_P(UsbEntryTest, TracesTheCallFirst) {
    (void)stEntry.fnCall(stEnv);
    ASSERT_FALSE(stPlatform.astTraces.empty());
    const TraceRecord &stTrace = stPlatform.astTraces[0];
    EXPECT_EQ(stTrace.sFile, kEntryFile);
    EXPECT_EQ(stTrace.sText, "\r\n " + stEntry.sSymbol + " called \r\n");
    EXPECT_EQ(stTrace.uiMid, 249u);
    EXPECT_NE(stTrace.uiLine, 0u);
}

// Each trace tells where it was made.
TEST_P(UsbEntryTest, TracesAreOfTheirPlaces) {
    (void)stEntry.fnCall(stEnv);
    std::set<uint32_t> auiLines;
    size_t uiOfTheEntry = 0;
    for (const TraceRecord &stTrace : stPlatform.astTraces) {
        EXPECT_EQ(stTrace.uiMid, 249u);
        EXPECT_NE(stTrace.uiLine, 0u);
        // The call and its arguments are the entry's own; workers begin with no such pair.
        if (stTrace.sText.starts_with("\r\n ")) {
            EXPECT_EQ(stTrace.sFile, kEntryFile) << stTrace.sText;
            auiLines.insert(stTrace.uiLine);
            ++uiOfTheEntry;
        } else {
            EXPECT_EQ(stTrace.sFile,
                      stEntry.sMethod == "getStorageInfo" ? "jni_storage_info.cpp" : kWorkerFile)
                << stTrace.sText;
        }
    }
    EXPECT_EQ(auiLines.size(), uiOfTheEntry);
}

TEST_P(UsbEntryTest, AnswersFromAWorkingGateway) {
    EXPECT_EQ(stEntry.fnCall(stEnv), stEntry.stGood);
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_P(UsbEntryTest, AnswersItsFailureAndWorksAgain) {
    for (auto &[uiRpcId, stReply] : stPlatform.mapReplies) {
        stReply.uiStatus = kRefused;
    }
    for (const char *pcFunction :
         {"VT_OS_Open", "VT_OS_Read", "VT_OS_Write", "VT_OS_Close", "VT_OS_Select", "tcgetattr"}) {
        stPlatform.mapStatus[pcFunction] = 1;
    }
    EXPECT_EQ(stEntry.fnCall(stEnv), stEntry.stFailure);
    EXPECT_FALSE(stPlatform.astFaults.empty());
    stPlatform.mapStatus.clear();
    FurnishUsb(stWorld);
    EXPECT_EQ(stEntry.fnCall(stEnv), stEntry.stGood);
}

INSTANTIATE_TEST_SUITE_P(Methods, UsbEntryTest, ::testing::ValuesIn(UsbEntries()),
                         [](const auto &stInfo) { return stInfo.param.sMethod; });

}  // namespace
}  // namespace wap::test
