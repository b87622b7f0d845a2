// Texts that come as bulk blocks.
#include "common/bulk_text.h"

#include <cstring>

#include "unit/lan/lan_test.h"

namespace wap::test {
namespace {

constexpr GeneralRoute kRoute = {"some_process", 77, 0x12345678};
constexpr uint32_t kRpc = 0x12345678;

class BulkText : public BridgeTest {
  protected:
    struct Result {
        uint32_t uiStatus;
        std::optional<std::string> sText;
        bool operator==(const Result &) const = default;
    };

    /// Asks with a request of three bytes. The text goes by its block's size, its zeros included.
    Result Fetch(DescTrace eTrace = DescTrace::kUnsigned) {
        char cMark = 'o';
        char *pcText = &cMark;
        const uint32_t uiStatus = FetchBulkText(WAP_SPOT, kRoute, "abc", 3, &pcText, eTrace);
        if (pcText == nullptr) {
            return {uiStatus, std::nullopt};
        }
        std::string sText(pcText, stWorld.stAllocs.SizeOf(pcText));
        VT_OS_MemFreeD(pcText, __FILE_NAME__, __LINE__);
        return {uiStatus, sText};
    }

    void ExpectRecorded(uint32_t uiCode) {
        ASSERT_FALSE(stPlatform.astFaults.empty());
        EXPECT_EQ(stPlatform.astFaults.back().sFile, "bulk_text_test.cpp");
        EXPECT_EQ(stPlatform.astFaults.back().uiCode, uiCode);
    }

    std::string LastTrace() {
        return stPlatform.astTraces.empty() ? "" : stPlatform.astTraces.back().sText;
    }
};

TEST_F(BulkText, IsAskedForByTheRoute) {
    stPlatform.mapReplies[kRpc] = {0, std::string("text\0", 5), true};
    EXPECT_EQ(Fetch(), (Result{0, std::string("text\0", 5)}));
    ExpectOnlyRpc(stPlatform, {"some_process", 77, kRpc, "abc", 12});
    EXPECT_TRUE(stPlatform.astFaults.empty());
    EXPECT_EQ(stPlatform.asCalls, (Calls{"VT_VDATA_ReadData 4097 5", "VT_VDATA_FreeShm 4097"}));
}

TEST_F(BulkText, MayBeCompressed) {
    for (const size_t uiLen : {2047u, 2048u, 2049u, 60000u}) {
        const std::string sText = std::string(uiLen - 1, 'x') + '\0';
        stPlatform.mapReplies[kRpc] = {0, sText, true};
        stPlatform.asCalls.clear();
        EXPECT_EQ(Fetch(), (Result{0, sText}));
        EXPECT_EQ(stPlatform.CountCalls("VT_OS_Decompress"), uiLen > 2048 ? 1u : 0u);
    }
}

TEST_F(BulkText, EndsWithinItsBlock) {
    stPlatform.mapReplies[kRpc] = {0, std::string("a\0b", 3), true};
    EXPECT_EQ(Fetch(), (Result{0, std::string("a\0b", 3)}));
    stPlatform.mapReplies[kRpc] = {0, std::string(1, '\0'), true};
    EXPECT_EQ(Fetch(), (Result{0, std::string(1, '\0')}));
    for (const size_t uiLen : {1u, 5u, 2048u, 2049u}) {
        stPlatform.mapReplies[kRpc] = {0, std::string(uiLen, 'x'), true};
        EXPECT_EQ(Fetch(), (Result{kMinusOne, std::nullopt})) << "no zero in " << uiLen;
        ExpectRecorded(kMinusOne);
    }
}

TEST_F(BulkText, RefusedRequestGivesItsCodeAndReadsNothing) {
    stPlatform.mapReplies[kRpc] = {kRefused, Word(1) + Word(2) + Word(3)};
    EXPECT_EQ(Fetch(), (Result{kRefused, std::nullopt}));
    ExpectRecorded(kRefused);
    EXPECT_TRUE(stPlatform.asCalls.empty());
}

TEST_F(BulkText, FailedReadGivesItsCode) {
    stPlatform.mapReplies[kRpc] = {0, std::string("t\0", 2), true};
    for (const char *pcCall : {"VT_VDATA_ReadData", "VT_VDATA_FreeShm"}) {
        stPlatform.mapStatus = {{pcCall, kRefused}};
        EXPECT_EQ(Fetch(), (Result{kRefused, std::nullopt})) << pcCall;
        ExpectRecorded(kRefused);
    }
}

TEST_F(BulkText, ShortDescriptorIsRefused) {
    const std::string sDesc = stPlatform.AddBulk(std::string("text\0", 5));
    for (size_t i = 0; i <= 8; ++i) {
        stPlatform.mapReplies[kRpc] = {0, sDesc.substr(0, i)};
        EXPECT_EQ(Fetch(), (Result{kNoMemory, std::nullopt})) << i;
        ExpectRecorded(kNoMemory);
    }
    // The reader frees the block whose id arrived.
    EXPECT_TRUE(stPlatform.mapBlocks.empty());
}

TEST_F(BulkText, LongerReplyIsCutToTheDescriptor) {
    const std::string sDesc = stPlatform.AddBulk(std::string("text\0", 5));
    stPlatform.mapReplies[kRpc] = {0, sDesc + std::string(100, '\xFF')};
    EXPECT_EQ(Fetch(), (Result{0, std::string("text\0", 5)}));
}

TEST_F(BulkText, DescriptorIsTracedInTwoSpellings) {
    stPlatform.mapReplies[kRpc] = {0, Word(0xFFFFFFFF) + Word(0x80000000) + Word(0xFFFFFFFE)};
    EXPECT_EQ(Fetch().uiStatus, kNoMemory);
    EXPECT_EQ(LastTrace(),
              "stVdata Info DataID:4294967295 CompressedLen:4294967294  OriginalLen = 2147483648 "
              "\n\r");
    EXPECT_EQ(Fetch(DescTrace::kSigned).uiStatus, kNoMemory);
    EXPECT_EQ(LastTrace(),
              "stVdata Info DataID:-1 CompressedLen:-2  OriginalLen = -2147483648 \n\r");
    EXPECT_EQ(stPlatform.astTraces.back().uiMid, 249u);
    EXPECT_EQ(stPlatform.astTraces.back().sFile, "bulk_text_test.cpp");
}

}  // namespace
}  // namespace wap::test
