// The Java methods of the VLAN bindings and of the IPTV status, as Java sees them.
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_TransferQueryServiceJNI.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_VLANBindConfigServiceJNI.h>

#include <string>

#include "support/entry_calls.h"
#include "support/entry_table_vlanbind.h"
#include "unit/vlanbind/vlanbind_fixture.h"

namespace wap::test {
namespace {

class VlanEntryTest : public VlanBindTest, public ::testing::WithParamInterface<Entry> {
  protected:
    const Entry &stEntry = GetParam();
};

TEST_P(VlanEntryTest, TracesTheCallFirst) {
    (void)stEntry.fnCall(stEnv);
    ASSERT_FALSE(stPlatform.astTraces.empty());
    const TraceRecord &stTrace = stPlatform.astTraces[0];
    const bool bChange = stEntry.sMethod.ends_with("VLANBind");
    EXPECT_EQ(stTrace.sFile,
              bChange ? "VLANBindConfigServiceJNI.cpp" : "TransferQueryServiceJNI.cpp");
    EXPECT_EQ(stTrace.sText, "\r\n " + stEntry.sSymbol + " called \r\n");
    if (stEntry.sMethod == "getVLANBindInfo") {
        EXPECT_EQ(stPlatform.astTraces.at(1).sText, "\r\n getVLANBindInfo\r\n");
    }
    EXPECT_EQ(stTrace.uiMid, 249u);
}

TEST_P(VlanEntryTest, AnswersFromAWorkingGateway) {
    EXPECT_EQ(stEntry.fnCall(stEnv), stEntry.stGood);
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_P(VlanEntryTest, AnswersItsFailureWhenRefusedAndWorksAgain) {
    for (auto &[uiRpcId, stReply] : stPlatform.mapReplies) {
        stReply.uiStatus = kRefused;
    }
    EXPECT_EQ(stEntry.fnCall(stEnv), stEntry.stFailure);
    EXPECT_TRUE(HasFault(stPlatform, kRefused));
    FurnishVlanBind(stWorld);
    EXPECT_EQ(stEntry.fnCall(stEnv), stEntry.stGood);
}

TEST_P(VlanEntryTest, SurvivesEveryFailureOfJava) {
    EXPECT_GT(ExpectNothingWithoutJava(stEntry, FurnishVlanBind), 0u);
}

INSTANTIATE_TEST_SUITE_P(Methods, VlanEntryTest, ::testing::ValuesIn(VlanBindEntries()),
                         [](const auto &stInfo) { return stInfo.param.sMethod; });

class VlanConfigTest : public VlanBindTest {
  protected:
    jint Set(jstring jInterface, jstring jBind) {
        stPlatform.ClearRecords();
        const jint iResult =
            WAP_METHOD(VLANBindConfig, setVLANBind)(&stEnv, stEnv.JavaObject(), jInterface, jBind);
        stEnv.EndCall();
        return iResult;
    }
    jint Clear(jstring jInterface) {
        stPlatform.ClearRecords();
        const jint iResult =
            WAP_METHOD(VLANBindConfig, clearVLANBind)(&stEnv, stEnv.JavaObject(), jInterface);
        stEnv.EndCall();
        return iResult;
    }
    std::string SetTrace() { return EntryTraces(stPlatform).back(); }
};

TEST_F(VlanConfigTest, ArgumentsReachTheirPlaces) {
    EXPECT_EQ(Set(stEnv.JavaText(u"SSID3"), stEnv.JavaText(u"10/100")), 0);
    EXPECT_EQ(stPlatform.astRpcs.at(0).sRequest,
              Field("SSID3", 64) + Word(1) + Field("10/100", 132));
    EXPECT_EQ(SetTrace(), "\r\n VT_JNI_SetVlanBind iResult:0\r\n");
    EXPECT_EQ(Clear(stEnv.JavaText(u"LAN4")), 0);
    EXPECT_EQ(stPlatform.astRpcs.at(0).sRequest, Field("LAN4", 64) + Word(0) + Field("", 132));
    EXPECT_EQ(EntryTraces(stPlatform).size(), 1u);
}

TEST_F(VlanConfigTest, EveryFailureIsMinusOne) {
    stPlatform.mapReplies[kChange].uiStatus = 5;
    EXPECT_EQ(Set(stEnv.JavaText(u"LAN1"), stEnv.JavaText(u"1/1")), -1);
    EXPECT_EQ(SetTrace(), "\r\n VT_JNI_SetVlanBind iResult:-1\r\n");
    EXPECT_EQ(TimesRecorded("VLANBindConfigServiceJNI.cpp", 5), 1u);
    EXPECT_EQ(Clear(stEnv.JavaText(u"LAN1")), -1);
    EXPECT_EQ(TimesRecorded("VLANBindConfigServiceJNI.cpp", 5), 1u);
    EXPECT_EQ(Set(stEnv.JavaText(u"LAN1"), stEnv.JavaText(u"1/0")), -1);
    EXPECT_EQ(SetTrace(), "\r\n VT_JNI_SetVlanBind iResult:-1\r\n");
    EXPECT_TRUE(stPlatform.astRpcs.empty());
    EXPECT_EQ(TimesRecorded("VLANBindConfigServiceJNI.cpp", 1), 1u);
}

TEST_F(VlanConfigTest, MissingTextsAreRefusedWithoutAsking) {
    for (const bool bNull : {false, true}) {
        const auto fnMissing = [&] { return bNull ? nullptr : stEnv.JavaText(u""); };
        EXPECT_EQ(Set(fnMissing(), stEnv.JavaText(u"1/1")), -1);
        EXPECT_TRUE(stPlatform.astRpcs.empty());
        EXPECT_EQ(FaultCodes(stPlatform), (Codes{0xFFFFFFFF}));
        EXPECT_EQ(EntryTraces(stPlatform).size(), 1u);
        EXPECT_EQ(Set(stEnv.JavaText(u"LAN1"), fnMissing()), -1);
        EXPECT_TRUE(stPlatform.astRpcs.empty());
        EXPECT_EQ(FaultCodes(stPlatform), (Codes{0xFFFFFFFF}));
        EXPECT_EQ(Clear(fnMissing()), -1);
        EXPECT_TRUE(stPlatform.astRpcs.empty());
        EXPECT_EQ(FaultCodes(stPlatform), (Codes{1, 1}));
    }
}

class TransferEntryTest : public VlanBindTest {
  protected:
    Answer Iptv() {
        const jstring jWord = WAP_METHOD(TransferQuery, getIPTVStatus)(&stEnv, stEnv.JavaObject());
        Answer stAnswer{stEnv.Utf8Of(jWord), std::nullopt};
        stEnv.EndCall();
        return stAnswer;
    }
    std::string LastTrace() { return EntryTraces(stPlatform).back(); }
};

TEST_F(TransferEntryTest, WordOfTheIptvStatusIsTheWholeAnswer) {
    EXPECT_EQ(Iptv(), TextAnswerOf("IPTV_BUSSINESS_OK"));
    EXPECT_EQ(LastTrace(), "\r\n getIPTVStatus acBuff:IPTV_BUSSINESS_OK\r\n");
    stPlatform.mapReplies[kAskUsers] = {0, Word(0)};
    EXPECT_EQ(Iptv(), TextAnswerOf("IPTV_BUSSINESS_NOK"));
    stPlatform.mapReplies[kAskIptv] = {0, IptvBytes({.uiServiceType = 12})};
    EXPECT_EQ(Iptv(), TextAnswerOf("NO_IPTV_CONNECTION"));
}

// Empty, not null: null means that the virtual machine failed.
TEST_F(TransferEntryTest, IptvStatusOfAFailureIsEmpty) {
    Refuse(kAskUsers);
    EXPECT_EQ(Iptv(), TextAnswerOf(""));
    EXPECT_EQ(LastTrace(), "\r\n getIPTVStatus acBuff:\r\n");
}

}  // namespace
}  // namespace wap::test
