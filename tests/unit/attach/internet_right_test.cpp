// The internet right that goes with every change of a record: by the MAC filter's list and mode.
#include <functional>
#include <string>
#include <vector>

#include "access/jni_attach_control.h"
#include "unit/attach/attach_home.h"

namespace wap::test {
namespace {

/// What the filter says, and what follows from it for the host 02:00:00:00:00:0A.
struct FilterCase {
    const char *pcName;
    std::vector<std::string> asMacs;
    uint32_t uiMode;
    uint32_t uiRight;
};

const FilterCase kCases[] = {
    {"NoListInBlackMode", {}, 0, 1},
    {"NoListInTrustMode", {}, 1, 1},
    {"NoListInAnotherMode", {}, 2, 1},
    {"ListedInBlackMode", {kMacA}, 0, 0},
    {"ListedInTrustMode", {kMacA}, 1, 1},
    {"ListedInAnotherMode", {kMacA}, 2, 1},
    {"ListedInTheLastMode", {kMacA}, 0xFFFFFFFF, 1},
    {"AbsentInBlackMode", {kMacB}, 0, 1},
    {"AbsentInTrustMode", {kMacB}, 1, 0},
    {"AbsentInAnotherMode", {kMacB}, 2, 0},
    {"AbsentInTheLastMode", {kMacB}, 0xFFFFFFFF, 0},
    {"OtherCaseInBlackMode", {"02:00:00:00:00:0a"}, 0, 0},
    {"OtherCaseInTrustMode", {"02:00:00:00:00:0a"}, 1, 1},
    {"LastOfSeveralInBlackMode", {kMacB, kMacC, kMacA}, 0, 0},
    {"LastOfSeveralInTrustMode", {kMacB, kMacC, kMacA}, 1, 1},
    {"FirstOfSeveralInBlackMode", {kMacA, kMacB}, 0, 0},
    {"PartOfALongerTextInBlackMode", {"x02:00:00:00:00:0Ay"}, 0, 0},
    {"PartOfALongerTextInTrustMode", {"x02:00:00:00:00:0Ay"}, 1, 1},
    {"BeginningOnlyInBlackMode", {"02:00:00:00:00:0"}, 0, 1},
    {"BeginningOnlyInTrustMode", {"02:00:00:00:00:0"}, 1, 0},
};

class InternetRightTest : public AttachTest, public ::testing::WithParamInterface<FilterCase> {
  protected:
    void SetUp() override {
        AttachTest::SetUp();
        stHome.uiMode = stCase.uiMode;
        stHome.asFilterMacs = stCase.asMacs;
    }
    Requests Reads(const std::vector<uint32_t> &auiInsts) const {
        return FilterRequests(static_cast<uint32_t>(stCase.asMacs.size())) + ListRequests(auiInsts);
    }

    const FilterCase &stCase = GetParam();
};

TEST_P(InternetRightTest, OfARecordMadeToBarTheStorage) {
    EXPECT_EQ(VT_JNI_addLANHostToStorageBlackList(MacTexts({kMacA}).Table(), 1), 0u);
    EXPECT_EQ(Sent(), Reads({}) + AddRequest({0, kMacA, stCase.uiRight, 0}, 0x0F));
}

TEST_P(InternetRightTest, OfARecordBarredFromTheStorage) {
    for (const uint32_t uiBefore : {0u, 1u, 9u}) {
        stHome.astRecords = {{5, kMacA, uiBefore, 1, 10, 20}};
        EXPECT_EQ(VT_JNI_addLANHostToStorageBlackList(MacTexts({kMacA}).Table(), 1), 0u);
        EXPECT_EQ(Sent(), Reads({5}) + SetRequest({5, kMacA, stCase.uiRight, 0, 10, 20}, 0x0F));
    }
}

TEST_P(InternetRightTest, OfARecordMadeForALimit) {
    EXPECT_EQ(VT_JNI_setLANHostSpeedLimit(kMacA, 10, 20), 0u);
    EXPECT_EQ(Sent(), Reads({}) + AddRequest({0, kMacA, stCase.uiRight, 1, 10, 20}, 0xFF));
}

TEST_P(InternetRightTest, OfARecordWhoseLimitChanges) {
    for (const uint32_t uiBefore : {0u, 1u, 9u}) {
        stHome.astRecords = {{5, kMacA, uiBefore, 0, 10, 20}};
        EXPECT_EQ(VT_JNI_setLANHostSpeedLimit(kMacA, 30, 40), 0u);
        EXPECT_EQ(Sent(), Reads({5}) + SetRequest({5, kMacA, stCase.uiRight, 0, 30, 40}, 0x3D));
    }
}

INSTANTIATE_TEST_SUITE_P(Filters, InternetRightTest, ::testing::ValuesIn(kCases),
                         [](const auto &stInfo) { return std::string(stInfo.param.pcName); });

class FilterFailureTest : public AttachTest {};

// Guessing a right would open or close the internet for somebody.
TEST_F(FilterFailureTest, NothingIsChangedWithoutTheFilter) {
    stHome.astRecords = {{5, kMacA}};
    stHome.asFilterMacs = {kMacA};
    const struct {
        uint32_t uiRpcId;
        uint32_t uiCode;
    } astCases[] = {{kFilterModeId, kRefused},
                    {0x47309024, kRefused},
                    // An entry that can't be read is the filter's own failure.
                    {0x40007000, 1},
                    {0x47309027, kRefused}};
    for (const auto &stCase : astCases) {
        const auto fnExpectFailure = [&](const std::function<uint32_t()> &fnCall) {
            stPlatform.ClearRecords();
            stHome.RefuseAt(stCase.uiRpcId, 1);
            EXPECT_EQ(fnCall(), kMinusOne);
            const Requests astSent = Sent();
            ASSERT_FALSE(astSent.empty());
            EXPECT_EQ(astSent.back().uiRpcId, stCase.uiRpcId);
            EXPECT_EQ(stPlatform.astFaults.front().uiCode, kRefused);
            EXPECT_EQ(stPlatform.astFaults.back().uiCode, stCase.uiCode);
            EXPECT_EQ(stPlatform.astFaults.back().sFile, kWorkerFile);
        };
        SCOPED_TRACE(stCase.uiRpcId);
        fnExpectFailure([] { return VT_JNI_setLANHostSpeedLimit(kMacA, 1, 2); });
        fnExpectFailure(
            [] { return VT_JNI_addLANHostToStorageBlackList(MacTexts({kMacA}).Table(), 1); });
        fnExpectFailure([] { return VT_JNI_delLANHostFromStorageBlackList(nullptr, 0); });
    }
    EXPECT_EQ(stHome.astRecords, (std::vector<Record>{{5, kMacA}}));
}

}  // namespace
}  // namespace wap::test
