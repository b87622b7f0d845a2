// MACs longer than the field of a record: they are cut there, and the host is found again by every
// text that is cut to the same.
#include <string>

#include "access/jni_attach_control.h"
#include "unit/attach/attach_home.h"

namespace wap::test {
namespace {

constexpr const char *kLong = "02:00:00:00:00:0A-0123456789ABCDEFGHIJKL";
constexpr const char *kAlsoLong = "02:00:00:00:00:0a-0123456789abcxyz";
constexpr const char *kCut = "02:00:00:00:00:0A-0123456789ABC";
constexpr const char *kShorter = "02:00:00:00:00:0A-0123456789AB";

class LongMacTest : public AttachTest {
  protected:
    static uint32_t Bar(const MacTexts &stMacs) {
        return VT_JNI_addLANHostToStorageBlackList(stMacs.Table(), stMacs.Count());
    }
    static uint32_t Allow(const MacTexts &stMacs) {
        return VT_JNI_delLANHostFromStorageBlackList(stMacs.Table(), stMacs.Count());
    }
    static uint32_t Limit(const char *pcMac, uint32_t uiUp, uint32_t uiDown) {
        return VT_JNI_setLANHostSpeedLimit(pcMac, uiUp, uiDown);
    }
};

TEST_F(LongMacTest, ARecordMadeForItIsFoundAgainByTheUndo) {
    stHome.astRecords = {{5, kMacB}};
    stHome.RefuseAt(kSetId, 1);
    EXPECT_EQ(Bar({kLong, kMacB}), kMinusOne);
    EXPECT_EQ(Sent(), FilterRequests() + ListRequests({5}) + AddRequest({0, kCut, 1, 0}, 0x0F) +
                          SetRequest({5, kMacB, 1, 0}, 0x0F) + ListRequests({5, 900}) +
                          SetRequest({900, kCut, 1, 1}, 0x0F));
}

TEST_F(LongMacTest, BarredTwiceItIsSentOnce) {
    EXPECT_EQ(Bar({kLong}), 0u);
    EXPECT_EQ(Sent(), FilterRequests() + ListRequests({}) + AddRequest({0, kCut, 1, 0}, 0x0F));
    for (const char *pcMac : {kLong, kAlsoLong, kCut}) {
        EXPECT_EQ(Bar({pcMac}), 0u);
        EXPECT_EQ(Sent(), FilterRequests() + ListRequests({900}));
    }
}

TEST_F(LongMacTest, NamedTwiceInOneCallItIsOneHost) {
    EXPECT_EQ(Bar({kLong, kAlsoLong, kLong, kCut, kShorter}), 0u);
    EXPECT_EQ(Sent(), FilterRequests() + ListRequests({}) + AddRequest({0, kCut, 1, 0}, 0x0F) +
                          AddRequest({0, kShorter, 1, 0}, 0x0F));
}

TEST_F(LongMacTest, WhoIsBarredCanBeAllowed) {
    stHome.astRecords = {{4, kShorter, 1, 0}, {5, kCut, 1, 0}};
    EXPECT_EQ(Allow({kLong}), 0u);
    EXPECT_EQ(Sent(), FilterRequests() + ListRequests({4, 5}) + SetRequest({5, kCut, 1, 1}, 0x0F));
}

TEST_F(LongMacTest, LimitedTwiceItHasOneRecord) {
    EXPECT_EQ(Limit(kLong, 10, 20), 0u);
    EXPECT_EQ(Sent(),
              FilterRequests() + ListRequests({}) + AddRequest({0, kCut, 1, 1, 10, 20}, 0xFF));
    EXPECT_EQ(Limit(kLong, 10, 20), 0u);
    EXPECT_EQ(Sent(), FilterRequests() + ListRequests({900}));
    EXPECT_EQ(Limit(kAlsoLong, 0, 0), 0u);
    EXPECT_EQ(Sent(), FilterRequests() + ListRequests({900}) + SetRequest({900, kCut, 1, 1}, 0x3D));
}

TEST_F(LongMacTest, TheReportHasItsLimits) {
    stHome.astRecords = {{4, kShorter, 1, 1, 1, 2}, {5, kCut, 1, 1, 100, 200}};
    const MacTexts stMacs({kAlsoLong, kShorter, kLong});
    char *pcText = nullptr;
    ASSERT_EQ(VT_JNI_getLANHostSpeedLimitInfo(stMacs.Table(), stMacs.Count(), &pcText), 0u);
    EXPECT_STREQ(pcText,
                 "{ \"Result\": 0, \"List\": [ { \"UpSpeed\": 100, \"DownSpeed\": 200 }, "
                 "{ \"UpSpeed\": 1, \"DownSpeed\": 2 }, { \"UpSpeed\": 100, \"DownSpeed\": 200 } "
                 "] }");
    VT_OS_MemFreeD(pcText, __FILE_NAME__, __LINE__);
}

// The filter's list has cut it as well.
TEST_F(LongMacTest, ListedInTheFilterItHasTheInternetRightOfItsMode) {
    stHome.asFilterMacs = {kMacB, kCut};
    for (const uint32_t uiMode : {0u, 1u}) {
        SCOPED_TRACE(uiMode);
        stHome.uiMode = uiMode;
        stHome.astRecords.clear();
        stHome.uiNextInst = 900;
        const auto Reads = [](const std::vector<uint32_t> &auiInsts) {
            return FilterRequests(2) + ListRequests(auiInsts);
        };
        EXPECT_EQ(Bar({kLong}), 0u);
        EXPECT_EQ(Sent(), Reads({}) + AddRequest({0, kCut, uiMode, 0}, 0x0F));
        EXPECT_EQ(Allow({kLong}), 0u);
        EXPECT_EQ(Sent(), Reads({900}) + SetRequest({900, kCut, uiMode, 1}, 0x0F));
        EXPECT_EQ(Limit(kLong, 1, 2), 0u);
        EXPECT_EQ(Sent(), Reads({900}) + SetRequest({900, kCut, uiMode, 1, 1, 2}, 0x3D));
        stHome.astRecords.clear();
        EXPECT_EQ(Limit(kLong, 1, 2), 0u);
        EXPECT_EQ(Sent(), Reads({}) + AddRequest({0, kCut, uiMode, 1, 1, 2}, 0xFF));
    }
}

// Cut at the field's end, and not before.
TEST_F(LongMacTest, ListedOneByteShorterItIsNotListed) {
    stHome.asFilterMacs = {kShorter};
    EXPECT_EQ(Bar({kLong}), 0u);
    EXPECT_EQ(Sent(), FilterRequests(1) + ListRequests({}) + AddRequest({0, kCut, 1, 0}, 0x0F));
}

}  // namespace
}  // namespace wap::test
