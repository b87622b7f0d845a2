// The six Java methods of the MAC filter, as Java sees them.
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LANHostsInfoQueryServiceJNI.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LanNetworkAccessConfigServiceJNI.h>

#include "support/entry_calls.h"
#include "support/entry_table_macfilter.h"
#include "unit/macfilter/filter_gateway.h"

namespace wap::test {
namespace {

using JavaMacs = std::vector<std::optional<std::u16string>>;

/// What differs from method to method.
struct ListMethod {
    std::string sName;
    jint (*pfnMethod)(JNIEnv *, jobject, jobjectArray);
    bool bAdds;
    uint32_t uiMode;
    size_t uiMax;
    std::string sTooLong;
};

void PrintTo(const ListMethod &stMethod, std::ostream *pstOut) {
    *pstOut << stMethod.sName;
}

const ListMethod kMethods[] = {
    {"addLANHostToBlackList", WAP_METHOD(LanNetworkAccessConfig, addLANHostToBlackList), true, 0, 8,
     "\r\n uiArrayLength  is too long called \r\n"},
    {"deleteLANHostFromBlackList", WAP_METHOD(LanNetworkAccessConfig, deleteLANHostFromBlackList),
     false, 0, 128, "\r\n uiMacAddrCount  is too long called \r\n"},
    {"addLANHostToTrustList", WAP_METHOD(LanNetworkAccessConfig, addLANHostToTrustList), true, 1, 8,
     "\r\n uiArrayLength  is too long called \r\n"},
    {"deleteLANHostFromTrustList", WAP_METHOD(LanNetworkAccessConfig, deleteLANHostFromTrustList),
     false, 1, 8, "\r\n uiMacAddrCount  is too long called \r\n"},
};

class MacListTest : public MacFltTest, public ::testing::WithParamInterface<ListMethod> {
  protected:
    void SetUp() override {
        MacFltTest::SetUp();
        stGateway.uiMode = stMethod.uiMode;
    }
    jint Call(const JavaMacs &asMacs) {
        const jint iResult =
            stMethod.pfnMethod(&stEnv, stEnv.JavaObject(), stEnv.JavaTexts(asMacs));
        stEnv.EndCall();
        return iResult;
    }
    jint CallWithNull() {
        const jint iResult = stMethod.pfnMethod(&stEnv, stEnv.JavaObject(), nullptr);
        stEnv.EndCall();
        return iResult;
    }
    /// What a call without any text asks.
    Asked AskedForNothing() const {
        if (stMethod.bAdds) {
            return {};
        }
        return stMethod.uiMode == 0
                   ? Asked{"mode", "list lan", "list wlan", "list lan", "list wlan"}
                   : Asked{"mode", "list lan", "list wlan"};
    }

    const ListMethod &stMethod = GetParam();
};

TEST_P(MacListTest, TracesItsNameAndEachAddress) {
    EXPECT_EQ(Call({u"AA", std::nullopt, u"BB"}), 0);
    ASSERT_GE(stPlatform.astTraces.size(), 3u);
    const TraceRecord &stTrace = stPlatform.astTraces[0];
    EXPECT_EQ(stTrace.sText,
              "\r\n Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_"
              "LanNetworkAccessConfigServiceJNI_" +
                  stMethod.sName + " called \r\n");
    EXPECT_EQ(stTrace.uiMid, 249u);
    EXPECT_EQ(stTrace.sFile, "LanNetworkAccessConfigServiceJNI.cpp");
    EXPECT_EQ(stPlatform.astTraces[1].sText, "\r\n jMacAddrArray[0]=AA \r\n");
    EXPECT_EQ(stPlatform.astTraces[1].sFile, "LanNetworkAccessConfigServiceJNI.cpp");
    // The place in Java's array, not the one to which the text moved up.
    EXPECT_EQ(stPlatform.astTraces[2].sText, "\r\n jMacAddrArray[2]=BB \r\n");
}

TEST_P(MacListTest, ChangesBothTables) {
    ListTwo();
    EXPECT_EQ(Call({u"AA"}), 0);
    const size_t uiLan = stMethod.bAdds ? 3u : 1u;
    EXPECT_EQ(stGateway.astLan.size(), uiLan);
    EXPECT_EQ(stGateway.astWlan.size(), 2 * uiLan);
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_P(MacListTest, TakesAsManyAsItMay) {
    JavaMacs asMacs(stMethod.uiMax, u"XX");
    asMacs.back() = u"AA";
    stGateway.astLan = {{1, "AA"}};
    EXPECT_EQ(Call(asMacs), 0);
    EXPECT_EQ(stGateway.astLan.size(), stMethod.bAdds ? 9u : 0u);
}

TEST_P(MacListTest, OneMoreIsRefusedWithoutARequest) {
    EXPECT_EQ(Call(JavaMacs(stMethod.uiMax + 1, u"AA")), -1);
    EXPECT_TRUE(TakeAsked().empty());
    EXPECT_EQ(Traced(stMethod.sTooLong), 1u);
    EXPECT_EQ(stPlatform.astFaults.size(), 1u);
    // Nulls count as well.
    EXPECT_EQ(Call(JavaMacs(stMethod.uiMax + 1)), -1);
    EXPECT_EQ(Traced(stMethod.sTooLong), 2u);
}

TEST_P(MacListTest, WithoutAnyText) {
    EXPECT_EQ(CallWithNull(), 0);
    EXPECT_EQ(TakeAsked(), AskedForNothing());
    for (const JavaMacs &asMacs :
         {JavaMacs{}, JavaMacs{std::nullopt}, JavaMacs{u"", std::nullopt}}) {
        EXPECT_EQ(Call(asMacs), 0);
        EXPECT_EQ(TakeAsked(), AskedForNothing());
    }
}

TEST_P(MacListTest, NullAndEmptyElementsAreLeftOut) {
    stGateway.astLan = {{1, ""}, {2, "AA"}};
    EXPECT_EQ(Call({std::nullopt, u"", u"AA"}), 0);
    Asked asAsked = TakeAsked();
    const Asked asExpected =
        stMethod.bAdds ? Asked{"mode", "add lan AA"} : Asked{"mode",      "list lan",  "get lan 1",
                                                             "get lan 2", "del lan 2", "list wlan"};
    EXPECT_EQ(asAsked, asExpected);
    for (const TraceRecord &stTrace : stPlatform.astTraces) {
        EXPECT_EQ(stTrace.sText.find("is Null"), std::string::npos);
    }
}

TEST_P(MacListTest, FailsWhenTheModeCannotBeRead) {
    stGateway.mapRefused["mode"] = kSomeCode;
    EXPECT_EQ(Call({u"AA"}), -1);
    EXPECT_TRUE(Recorded("LanNetworkAccessConfigServiceJNI.cpp", kMinusOne));
}

TEST_P(MacListTest, InAnotherModeAddingFailsAndDeletingHasNothingToDo) {
    ListTwo();
    stGateway.uiMode = 1 - stMethod.uiMode;
    const std::string sBefore = stGateway.State();
    EXPECT_EQ(Call({u"AA"}), stMethod.bAdds ? -1 : 0);
    EXPECT_EQ(stGateway.State(), sBefore);
    EXPECT_EQ(CallWithNull(), 0);
    EXPECT_EQ(stGateway.State(), sBefore);
}

TEST_P(MacListTest, RefusedReferencesAreAFailure) {
    stEnv.uiCapacityMax = 0;
    EXPECT_EQ(Call({u"AA"}), -1);
    EXPECT_TRUE(TakeAsked().empty());
}

INSTANTIATE_TEST_SUITE_P(Of, MacListTest, ::testing::ValuesIn(kMethods),
                         [](const auto &stInfo) { return stInfo.param.sName; });

class MacModeEntryTest : public MacFltTest {
  protected:
    jint Set(jint iPara) {
        return WAP_METHOD(LanNetworkAccessConfig, setMacFilterMode)(&stEnv, stEnv.JavaObject(),
                                                                    iPara);
    }
    jint Get() {
        return WAP_METHOD(LANHostsInfoQuery, getMacFilterMode)(&stEnv, stEnv.JavaObject());
    }
};

TEST_F(MacModeEntryTest, WhatIsSetIsRead) {
    for (const jint iPara : {2, 1, 0, 2}) {
        EXPECT_EQ(Set(iPara), 0);
        EXPECT_EQ(Get(), iPara);
    }
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(MacModeEntryTest, TraceTheirNames) {
    const std::string sHead = "\r\n Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_";
    (void)Set(1);
    ASSERT_FALSE(stPlatform.astTraces.empty());
    EXPECT_EQ(stPlatform.astTraces[0].sText,
              sHead + "LanNetworkAccessConfigServiceJNI_setMacFilterMode called \r\n");
    stPlatform.ClearRecords();
    (void)Get();
    ASSERT_FALSE(stPlatform.astTraces.empty());
    EXPECT_EQ(stPlatform.astTraces[0].sText,
              sHead + "LANHostsInfoQueryServiceJNI_getMacFilterMode called \r\n");
    EXPECT_EQ(stPlatform.astTraces[0].sFile, "LANHostsInfoQueryServiceJNI.cpp");
}

TEST_F(MacModeEntryTest, FailuresAreMinusOneAndRecorded) {
    stGateway.mapRefused = {{"mode", kSomeCode}, {"set mode 1 1", kSomeCode}};
    EXPECT_EQ(Get(), -1);
    EXPECT_TRUE(Recorded("LANHostsInfoQueryServiceJNI.cpp", kMinusOne));
    EXPECT_EQ(Set(2), -1);
    EXPECT_TRUE(Recorded("LanNetworkAccessConfigServiceJNI.cpp", kMinusOne));
}

TEST_F(MacModeEntryTest, CopiesThatDifferAreAFailure) {
    stGateway.mapBytes["mode"] = ModeBytes(0, 1).replace(72, 1, std::string(1, '\0'));
    EXPECT_EQ(Get(), -1);
}

TEST_F(MacModeEntryTest, NegativeNumbersGoOnAsTheyAre) {
    EXPECT_EQ(Set(-1), 0);
    EXPECT_EQ(TakeAsked(), (Asked{"mode", "set mode 4294967294 1"}));
}

class FurnishedTest : public BridgeTest {};

TEST_F(FurnishedTest, TableOfEntriesAnswersAsItSays) {
    EXPECT_EQ(MacFilterEntries().size(), 6u);
    for (const bool bNetworks : {false, true}) {
        stPlatform.setFeatures = bNetworks ? std::set<uint32_t>{314} : std::set<uint32_t>{};
        for (const Entry &stEntry : MacFilterEntries()) {
            SCOPED_TRACE(stEntry.sMethod);
            FurnishMacFilter(stWorld);
            EXPECT_EQ(stEntry.fnCall(stEnv), stEntry.stGood);
            stEnv.EndCall();
            for (auto &[uiRpcId, stReply] : stPlatform.mapReplies) {
                stReply.uiStatus = kRefused;
            }
            EXPECT_EQ(stEntry.fnCall(stEnv), stEntry.stFailure);
            stEnv.EndCall();
            stWorld.ExpectClean();
        }
    }
}

}  // namespace
}  // namespace wap::test
