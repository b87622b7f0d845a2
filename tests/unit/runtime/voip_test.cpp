// The telephone ports and the subscriptions to voice events.
#include <com_veltra_domoline_deviceservice_kavo_wap_voip_jni_VoIPInfoQueryServiceJNI.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_voip_jni_VoIPInfoSubscribeServiceJNI.h>

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "common/voip_events.h"
#include "support/entry_calls.h"
#include "system/jni_voip.h"
#include "unit/runtime/runtime_fixture.h"

namespace wap::test {
namespace {

constexpr const char *kEventsFile = "voip_events.cpp";
constexpr const char *kQueryFile = "VoIPInfoQueryServiceJNI.cpp";

class PotsInfoTest : public RuntimeTest {
  protected:
    Answer Pots() {
        stWorld.ClearRecords();
        const jstring jText =
            WAP_METHOD_OF(voip, VoIPInfoQuery, getPOTSInfo)(&stEnv, stEnv.JavaObject());
        Answer stAnswer{stEnv.Utf8Of(jText), std::nullopt};
        stEnv.EndCall();
        return stAnswer;
    }
};

TEST_F(PotsInfoTest, PassesTheTextOn) {
    EXPECT_EQ(Pots(), TextAnswerOf("{\"Result\":0,\"List\":[{\"Port\":1}]}"));
    ExpectOnlyRpc(stPlatform, {"app_m", 249, kPots, Word(0), 512});
    EXPECT_EQ(EntryTraces(stPlatform), Calls{"\r\n GetPOTSInfo called \r\n"});
    EXPECT_TRUE(stPlatform.astFaults.empty());
    stPlatform.mapReplies[kPots] = {0, "no JSON at all, and no zero"};
    EXPECT_EQ(Pots(), TextAnswerOf("no JSON at all, and no zero"));
    stPlatform.mapReplies[kPots] = {0, Field("behind the zero", 20) + std::string(492, 'x')};
    EXPECT_EQ(Pots(), TextAnswerOf("behind the zero"));
}

TEST_F(PotsInfoTest, TextThatFillsItsRoomEndsThere) {
    stPlatform.mapReplies[kPots] = {0, std::string(2000, 'x')};
    EXPECT_EQ(Pots(), TextAnswerOf(std::string(512, 'x')));
}

TEST_F(PotsInfoTest, NullForAnEmptyText) {
    stPlatform.mapReplies[kPots] = {0, ""};
    EXPECT_EQ(Pots(), NullAnswer());
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(PotsInfoTest, NullForAFailure) {
    stPlatform.mapReplies[kPots] = {kRefused, "a text all the same"};
    EXPECT_EQ(Pots(), NullAnswer());
    EXPECT_EQ(TimesRecorded("jni_voip.cpp", kRefused), 1u);
    EXPECT_EQ(TimesRecorded(kQueryFile, kRefused), 1u);
}

TEST_F(PotsInfoTest, NullWithoutMemoryAndNobodyIsAsked) {
    stWorld.Plan({Op::kAlloc, 1, false});
    EXPECT_EQ(Pots(), NullAnswer());
    EXPECT_TRUE(stPlatform.astRpcs.empty());
    EXPECT_EQ(TimesRecorded("jni_voip.cpp", 1, {512, 0, 0, 0}), 1u);
    EXPECT_EQ(TimesRecorded(kQueryFile, 1), 1u);
}

TEST_F(PotsInfoTest, NoPlaceForTheTextIsRefused) {
    EXPECT_EQ(FetchPotsInfo(nullptr), 1u);
    EXPECT_TRUE(stPlatform.astRpcs.empty());
}

using Events = std::vector<std::optional<std::u16string>>;

class VoiceCheckTest : public RuntimeTest {
  protected:
    uint32_t Check(const Events &asEvents) {
        stWorld.ClearRecords();
        const uint32_t uiResult =
            CheckVoIPEventSubscribePara(&stEnv, stEnv.JavaTexts(asEvents), nullptr);
        stEnv.EndCall();
        return uiResult;
    }
    static std::string CountTrace(int iCount) {
        return "\r\n CheckVoIPEventSubscribePara called, uiEvtCount[" + std::to_string(iCount) +
               "] \r\n";
    }
};

TEST_F(VoiceCheckTest, BothEventsArePassed) {
    EXPECT_EQ(Check({u"NOTIFY_VOICE_CALL_INFO", u"NOTIFY_VOICE_RESTRAT_FINISH"}), 0u);
    EXPECT_EQ(EntryTraces(stPlatform),
              (Calls{CountTrace(2), "\r\n jEventArray=NOTIFY_VOICE_CALL_INFO \r\n",
                     "\r\n jEventArray=NOTIFY_VOICE_RESTRAT_FINISH \r\n"}));
    EXPECT_EQ(stPlatform.astTraces[0].sFile, kEventsFile);
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(VoiceCheckTest, NothingIsPassed) {
    EXPECT_EQ(CheckVoIPEventSubscribePara(&stEnv, nullptr, nullptr), 0u);
    EXPECT_EQ(EntryTraces(stPlatform), Calls{CountTrace(0)});
    EXPECT_EQ(Check({}), 0u);
    EXPECT_EQ(EntryTraces(stPlatform), Calls{CountTrace(0)});
    EXPECT_EQ(CheckVoIPEventSubscribePara(nullptr, nullptr, nullptr), kMinusOne);
}

TEST_F(VoiceCheckTest, NullAndEmptyElementsAreRecordedAndSkipped) {
    EXPECT_EQ(Check({u"NOTIFY_VOICE_CALL_INFO", std::nullopt, u""}), 0u);
    EXPECT_EQ(FaultCodes(stPlatform), (Codes{1, 1}));
    EXPECT_EQ(TimesRecorded(kEventsFile, 1, {1, 3, 0, 0}), 1u);
    EXPECT_EQ(TimesRecorded(kEventsFile, 1, {2, 3, 0, 0}), 1u);
    EXPECT_EQ(EntryTraces(stPlatform),
              (Calls{CountTrace(3), "\r\n jEventArray=NOTIFY_VOICE_CALL_INFO \r\n"}));
    EXPECT_EQ(Check({std::nullopt, u"something else"}), kMinusOne);
}

TEST_F(VoiceCheckTest, OtherNamesAreRefusedAtOnce) {
    for (const char16_t *pcName : {u"NOTIFY_VOICE_RESTART_FINISH", u"notify_voice_call_info",
                                   u"NOTIFY_VOICE_CALL_INF", u"NOTIFY_VOICE_CALL_INFO ", u" "}) {
        EXPECT_EQ(Check({pcName, u"NOTIFY_VOICE_CALL_INFO"}), kMinusOne);
        EXPECT_EQ(EntryTraces(stPlatform),
                  (Calls{CountTrace(2), "\r\n jEventArray=" + ToUtf8(pcName) + " \r\n",
                         "\r\n jEventArray is not surpport. \r\n"}));
        EXPECT_TRUE(stPlatform.astFaults.empty());
    }
}

TEST_F(VoiceCheckTest, EightAreTheMost) {
    EXPECT_EQ(Check(Events(8, u"NOTIFY_VOICE_CALL_INFO")), 0u);
    EXPECT_EQ(EntryTraces(stPlatform).size(), 9u);
    EXPECT_EQ(Check(Events(9, u"NOTIFY_VOICE_CALL_INFO")), kMinusOne);
    EXPECT_EQ(EntryTraces(stPlatform),
              (Calls{CountTrace(9), "\r\n uiEvtCount is too long called \r\n"}));
    EXPECT_EQ(Check(Events(9, std::nullopt)), kMinusOne);
    EXPECT_EQ(Check(Events(8, std::nullopt)), 0u);
}

TEST_F(VoiceCheckTest, RefusedReferencesAreRefused) {
    stEnv.uiCapacityMax = 15;
    EXPECT_EQ(Check(Events(8, u"NOTIFY_VOICE_CALL_INFO")), kMinusOne);
    EXPECT_EQ(TimesRecorded(kEventsFile, kMinusOne, {8, 0, 0, 0}), 1u);
}

/// Either direction of a subscription.
struct Direction {
    const char *pcName;
    uint32_t uiRpcId;
    const char *pcTrace;
    jint (*pfnMethod)(JNIEnv *, jobject, jstring, jobjectArray);
    uint32_t (*pfnWorker)(const char *);
};

class SubscribeTest : public RuntimeTest, public ::testing::WithParamInterface<Direction> {
  protected:
    jint Call(jstring jBundle, jobjectArray jEvents) {
        stWorld.ClearRecords();
        const jint iResult = GetParam().pfnMethod(&stEnv, stEnv.JavaObject(), jBundle, jEvents);
        stEnv.EndCall();
        return iResult;
    }
    jobjectArray OneEvent() { return stEnv.JavaTexts({u"NOTIFY_VOICE_CALL_INFO"}); }
    WantedRpc Request(const std::string &sName) const {
        return {"osgi_proxy", 0, GetParam().uiRpcId, Field(sName, 128), 4};
    }
};

TEST_P(SubscribeTest, SendsTheBundlesName) {
    EXPECT_EQ(Call(stEnv.JavaText(u"com.example.phone"), OneEvent()), 0);
    ExpectOnlyRpc(stPlatform, Request("com.example.phone"));
    const std::string sTrace =
        std::string("\r\n ") + GetParam().pcTrace + " called, pcBundleName[com.example.phone] \r\n";
    EXPECT_EQ(EntryTraces(stPlatform).back(), sTrace);
    EXPECT_EQ(EntryTraces(stPlatform).size(), 4u);
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_P(SubscribeTest, EventsMayBeMissing) {
    EXPECT_EQ(Call(stEnv.JavaText(u"a"), nullptr), 0);
    ExpectOnlyRpc(stPlatform, Request("a"));
    EXPECT_EQ(Call(stEnv.JavaText(u"a"), stEnv.JavaTexts({})), 0);
    EXPECT_EQ(
        Call(stEnv.JavaText(u"a"), stEnv.JavaTexts({u"NOTIFY_VOICE_CALL_INFO", std::nullopt})), 0);
    EXPECT_EQ(stPlatform.astRpcs.size(), 1u);
}

TEST_P(SubscribeTest, LongNamesAreCutTo128Bytes) {
    for (const size_t uiLength : {127u, 128u, 129u, 5000u}) {
        SCOPED_TRACE(uiLength);
        EXPECT_EQ(Call(stEnv.JavaText(std::u16string(uiLength, u'n')), nullptr), 0);
        ExpectOnlyRpc(stPlatform, Request(std::string(std::min<size_t>(uiLength, 128), 'n')));
    }
    // Nothing behind the name is read.
    EXPECT_EQ(Call(stEnv.JavaText(u"\u00e9"), nullptr), 0);
    ExpectOnlyRpc(stPlatform, Request("\xC3\xA9"));
}

TEST_P(SubscribeTest, BadArgumentsAreRefusedWithoutAsking) {
    for (const bool bNull : {false, true}) {
        EXPECT_EQ(Call(bNull ? nullptr : stEnv.JavaText(u""), OneEvent()), -1);
        EXPECT_TRUE(stPlatform.astRpcs.empty());
        EXPECT_EQ(FaultCodes(stPlatform), Codes{kMinusOne});
        EXPECT_EQ(TimesRecorded(kEventsFile, kMinusOne), 1u);
        EXPECT_EQ(EntryTraces(stPlatform).size(), 3u);
    }
    EXPECT_EQ(Call(stEnv.JavaText(u"a"), stEnv.JavaTexts({u"NOTIFY_VOICE_RESTART_FINISH"})), -1);
    EXPECT_TRUE(stPlatform.astRpcs.empty());
    EXPECT_EQ(Call(stEnv.JavaText(u"a"), stEnv.JavaTexts(Events(9, u"NOTIFY_VOICE_CALL_INFO"))),
              -1);
    EXPECT_TRUE(stPlatform.astRpcs.empty());
}

TEST_P(SubscribeTest, CodesOfTheRequestComeBack) {
    for (const uint32_t uiCode : {1u, 0xF710403Du, 0x7FFFFFFFu}) {
        stPlatform.mapReplies[GetParam().uiRpcId].uiStatus = uiCode;
        EXPECT_EQ(Call(stEnv.JavaText(u"a"), nullptr), static_cast<jint>(uiCode));
        EXPECT_EQ(TimesRecorded(kEventsFile, uiCode), 1u);
        EXPECT_EQ(GetParam().pfnWorker("a"), uiCode);
    }
    stPlatform.mapReplies[GetParam().uiRpcId] = {0, Word(99)};
    EXPECT_EQ(Call(stEnv.JavaText(u"a"), nullptr), 0) << "the reply says nothing";
}

TEST_P(SubscribeTest, WorkerRefusesNull) {
    EXPECT_EQ(GetParam().pfnWorker(nullptr), 0xF7702001u);
    EXPECT_EQ(FaultCodes(stPlatform), Codes{0xF7702001});
    EXPECT_TRUE(stPlatform.astRpcs.empty());
}

INSTANTIATE_TEST_SUITE_P(
    Both, SubscribeTest,
    ::testing::Values(Direction{"On", kSubscribe, "subscribeVoIPEvent",
                                WAP_METHOD_OF(voip, VoIPInfoSubscribe, getSubscribeVoIPEvent),
                                SubscribeVoice},
                      Direction{"Off", kUnsubscribe, "unSubscribeVoIPEvent",
                                WAP_METHOD_OF(voip, VoIPInfoSubscribe, getUnSubscribeVoIPEvent),
                                UnsubscribeVoice}),
    [](const auto &stInfo) { return stInfo.param.pcName; });

}  // namespace
}  // namespace wap::test
