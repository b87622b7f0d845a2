// The four Java methods of attach control, as Java sees them.
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LANHostsInfoQueryServiceJNI.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LanHostSpeedLimitServiceJNI.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LanNetworkAccessConfigServiceJNI.h>

#include <string>
#include <vector>

#include "support/entry_calls.h"
#include "support/entry_table_attach.h"
#include "support/furnish_attach.h"
#include "unit/attach/attach_home.h"

namespace wap::test {
namespace {

using JavaMacs = std::vector<std::optional<std::u16string>>;

constexpr const char *kFailed = "{\"Result\":-1}";

JavaMacs JavaMany(uint32_t uiCount) {
    JavaMacs asMacs;
    for (const std::string &sMac : ManyMacs(uiCount)) {
        asMacs.push_back(FromUtf8(sMac));
    }
    return asMacs;
}

class AttachEntriesTest : public AttachTest {
  protected:
    jint Limit(jstring jMac, jint iUp, jint iDown) {
        return Ended(WAP_METHOD(LanHostSpeedLimit, setLANHostSpeedLimit)(&stEnv, stEnv.JavaObject(),
                                                                         jMac, iUp, iDown));
    }
    jint Bar(jobjectArray jMacs) {
        return Ended(WAP_METHOD(LanNetworkAccessConfig, addLANHostToStorageBlackList)(
            &stEnv, stEnv.JavaObject(), jMacs));
    }
    jint Bar(const JavaMacs &asMacs) { return Bar(stEnv.JavaTexts(asMacs)); }
    jint Allow(jobjectArray jMacs) {
        return Ended(WAP_METHOD(LanNetworkAccessConfig, deleteLANHostFromStorageBlackList)(
            &stEnv, stEnv.JavaObject(), jMacs));
    }
    jint Allow(const JavaMacs &asMacs) { return Allow(stEnv.JavaTexts(asMacs)); }
    std::string Report(jobjectArray jMacs) {
        const jstring jText = WAP_METHOD(LANHostsInfoQuery, getLANHostSpeedLimitInfo)(
            &stEnv, stEnv.JavaObject(), jMacs);
        return Ended(stEnv.Utf8Of(jText).value_or("null"));
    }
    std::string Report(const JavaMacs &asMacs) { return Report(stEnv.JavaTexts(asMacs)); }

  private:
    template <class Result>
    Result Ended(Result xResult) {
        EXPECT_FALSE(stEnv.bPending);
        stEnv.EndCall();
        return xResult;
    }
};

// ---- one limit ----

TEST_F(AttachEntriesTest, LimitIsPassedOnAsItIs) {
    EXPECT_EQ(Limit(stEnv.JavaText(u"02:00:00:00:00:0A"), -1, -2147483647 - 1), 0);
    EXPECT_EQ(Sent(), FilterRequests() + ListRequests({}) +
                          AddRequest({0, kMacA, 1, 1, 0xFFFFFFFF, 0x80000000}, 0xFF));
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(AttachEntriesTest, LimitNeedsAMac) {
    EXPECT_EQ(Limit(nullptr, 1, 2), -1);
    EXPECT_EQ(Limit(stEnv.JavaText(u""), 1, 2), -1);
    EXPECT_TRUE(Sent().empty());
    ASSERT_EQ(FaultCodes(stPlatform), (Codes{1, 1}));
    EXPECT_EQ(stPlatform.astFaults[0].sFile, "LanHostSpeedLimitServiceJNI.cpp");
}

TEST_F(AttachEntriesTest, LimitThatIsRefused) {
    stHome.RefuseAt(kAddId, 1);
    EXPECT_EQ(Limit(stEnv.JavaText(u"02:00:00:00:00:0A"), 1, 2), -1);
    EXPECT_EQ(stPlatform.astFaults.back().sFile, "LanHostSpeedLimitServiceJNI.cpp");
    EXPECT_EQ(stPlatform.astFaults.back().uiCode, kMinusOne);
}

// ---- the black list of the storage ----

TEST_F(AttachEntriesTest, NullAndEmptyArraysBarNobodyAndAllowAll) {
    stHome.astRecords = {{5, kMacA, 1, 0}};
    for (const bool bNull : {true, false}) {
        EXPECT_EQ(bNull ? Bar(nullptr) : Bar(JavaMacs{}), 0);
        EXPECT_TRUE(Sent().empty());
        EXPECT_EQ(bNull ? Allow(nullptr) : Allow(JavaMacs{}), 0);
        EXPECT_EQ(Sent(),
                  FilterRequests() + ListRequests({5}) + SetRequest({5, kMacA, 1, 1}, 0x0F));
        stHome.astRecords = {{5, kMacA, 1, 0}};
    }
    EXPECT_EQ(Bar({u"", u""}), 0);
    EXPECT_TRUE(Sent().empty());
    EXPECT_EQ(Allow({u"", std::nullopt}), 0);
    EXPECT_EQ(stHome.astRecords[0].uiStorage, 1u);
}

TEST_F(AttachEntriesTest, ElementsAreTracedAndNullOnesKeepTheirPlace) {
    EXPECT_EQ(Bar({u"02:00:00:00:00:0A", std::nullopt, u"", u"02:00:00:00:00:0B"}), 0);
    EXPECT_EQ(Sent(), FilterRequests() + ListRequests({}) + AddRequest({0, kMacA, 1, 0}, 0x0F) +
                          AddRequest({0, "", 1, 0}, 0x0F) + AddRequest({0, kMacB, 1, 0}, 0x0F));
    EXPECT_TRUE(HasEntryTrace(stPlatform, "\r\n jMacAddrArray[0]=02:00:00:00:00:0A \r\n"));
    EXPECT_TRUE(HasEntryTrace(stPlatform, "VT_API_setStorageRightList Mac[1] is Null\r\n"));
    EXPECT_TRUE(HasEntryTrace(stPlatform, "\r\n jMacAddrArray[2]= \r\n"));
    EXPECT_TRUE(HasEntryTrace(stPlatform, "\r\n jMacAddrArray[3]=02:00:00:00:00:0B \r\n"));
    EXPECT_EQ(Allow({std::nullopt, u"02:00:00:00:00:0A"}), 0);
    EXPECT_TRUE(HasEntryTrace(stPlatform, "VT_API_setStorageRightList Mac[0] is Null\r\n"));
    EXPECT_TRUE(HasEntryTrace(stPlatform, "\r\n jMacAddrArray[1]=02:00:00:00:00:0A \r\n"));
    EXPECT_EQ(stHome.astRecords[0].uiStorage, 1u);
}

// Deliberately uneven: 128 to bar, 8 to allow.
TEST_F(AttachEntriesTest, LongestArrays) {
    const std::string sTooLong = "\r\n uiMacAddrCount  is too long called \r\n";
    EXPECT_EQ(Bar(JavaMany(128)), 0);
    ASSERT_EQ(stHome.astRecords.size(), 128u);
    EXPECT_EQ(Allow(JavaMany(8)), 0);
    for (size_t i = 0; i < 128; ++i) {
        EXPECT_EQ(stHome.astRecords[i].uiStorage, i < 8 ? 1u : 0u);
    }
    EXPECT_FALSE(HasEntryTrace(stPlatform, sTooLong));
    (void)Sent();
    EXPECT_EQ(Bar(JavaMany(129)), -1);
    EXPECT_TRUE(HasEntryTrace(stPlatform, sTooLong));
    stPlatform.astTraces.clear();
    EXPECT_EQ(Allow(JavaMany(9)), -1);
    EXPECT_TRUE(HasEntryTrace(stPlatform, sTooLong));
    EXPECT_TRUE(Sent().empty());
}

TEST_F(AttachEntriesTest, RefusedRightsAreMinusOneAndUndone) {
    stHome.astRecords = {{5, kMacA}, {6, kMacB}};
    stHome.RefuseAt(kSetId, 2);
    EXPECT_EQ(Bar({u"02:00:00:00:00:0A", u"02:00:00:00:00:0B"}), -1);
    EXPECT_EQ(stHome.astRecords, (std::vector<Record>{{5, kMacA}, {6, kMacB}}));
    EXPECT_EQ(stPlatform.astFaults.back().sFile, "LanNetworkAccessConfigServiceJNI.cpp");
    stHome.astRecords = {{5, kMacA, 1, 0}, {6, kMacB, 1, 0}};
    stHome.RefuseAt(kSetId, 2);
    EXPECT_EQ(Allow(nullptr), -1);
    EXPECT_EQ(stHome.astRecords, (std::vector<Record>{{5, kMacA, 1, 0}, {6, kMacB, 1, 0}}));
}

// ---- the report ----

TEST_F(AttachEntriesTest, ReportOfHostsAndOfAll) {
    stHome.astRecords = {{5, kMacA, 1, 1, 1, 2}, {6, kMacB, 1, 1, 3, 4}};
    EXPECT_EQ(Report({u"02:00:00:00:00:0B", u"02:00:00:00:00:0C"}),
              "{ \"Result\": 0, \"List\": [ { \"UpSpeed\": 3, \"DownSpeed\": 4 }, "
              "{ \"UpSpeed\": 0, \"DownSpeed\": 0 } ] }");
    const std::string sAll =
        "{ \"Result\": 0, \"List\": [ { \"UpSpeed\": 1, \"DownSpeed\": 2 }, "
        "{ \"UpSpeed\": 3, \"DownSpeed\": 4 } ] }";
    EXPECT_EQ(Report(nullptr), sAll);
    EXPECT_EQ(Report(JavaMacs{}), sAll);
    EXPECT_EQ(Report({u"", u""}), sAll);
}

TEST_F(AttachEntriesTest, ReportWithAnEmptyElementKeepsItsPlace) {
    stHome.astRecords = {{5, kMacA, 1, 1, 1, 2}};
    EXPECT_EQ(Report({u"", u"02:00:00:00:00:0A"}),
              "{ \"Result\": 0, \"List\": [ { \"UpSpeed\": 0, \"DownSpeed\": 0 }, "
              "{ \"UpSpeed\": 1, \"DownSpeed\": 2 } ] }");
}

TEST_F(AttachEntriesTest, ReportWithANullElementIsRefusedWithoutARequest) {
    EXPECT_EQ(Report({u"02:00:00:00:00:0A", std::nullopt}), kFailed);
    EXPECT_TRUE(Sent().empty());
}

TEST_F(AttachEntriesTest, ReportTakesAHundredAndTwentyEight) {
    std::string sWanted = "{ \"Result\": 0, \"List\": [ { \"UpSpeed\": 0, \"DownSpeed\": 0 }";
    for (int i = 1; i < 128; ++i) {
        sWanted += ", { \"UpSpeed\": 0, \"DownSpeed\": 0 }";
    }
    EXPECT_EQ(Report(JavaMany(128)), sWanted + " ] }");
    EXPECT_EQ(Sent(), ListRequests({}));
    EXPECT_EQ(Report(JavaMany(129)), kFailed);
    EXPECT_TRUE(Sent().empty());
}

TEST_F(AttachEntriesTest, ReportThatIsRefused) {
    stHome.RefuseAt(kListId, 1);
    EXPECT_EQ(Report({u"02:00:00:00:00:0A"}), kFailed);
    EXPECT_EQ(stPlatform.astFaults.back().sFile, "LANHostsInfoQueryServiceJNI.cpp");
}

// ---- the table of the entries ----

class AttachTableTest : public BridgeTest, public ::testing::WithParamInterface<Entry> {
  protected:
    const Entry &stEntry = GetParam();
};

TEST_P(AttachTableTest, AnswersAndTracesItsNameFirst) {
    FurnishAttach(stWorld);
    EXPECT_EQ(stEntry.fnCall(stEnv), stEntry.stGood);
    ASSERT_FALSE(stPlatform.astTraces.empty());
    EXPECT_EQ(stPlatform.astTraces[0].sText, "\r\n " + stEntry.sSymbol + " called \r\n");
    EXPECT_EQ(stPlatform.astTraces[0].uiMid, 249u);
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_P(AttachTableTest, FailsWhenEverythingIsRefused) {
    EXPECT_EQ(stEntry.fnCall(stEnv), stEntry.stFailure);
    EXPECT_FALSE(stPlatform.astFaults.empty());
    FurnishAttach(stWorld);
    EXPECT_EQ(stEntry.fnCall(stEnv), stEntry.stGood);
}

INSTANTIATE_TEST_SUITE_P(Methods, AttachTableTest, ::testing::ValuesIn(AttachEntries()),
                         [](const auto &stInfo) { return stInfo.param.sMethod; });

}  // namespace
}  // namespace wap::test
