// LAN hosts: who they are and what they transfer.
#include "lan/jni_lanhost_info.h"

#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LANHostsInfoQueryServiceJNI.h>

#include <cstring>

#include "unit/lan/lan_test.h"

namespace wap::test {
namespace {

constexpr const char *kNoHosts = "{\"Result\":-1,\"List\":[] }";

using Macs = std::vector<std::optional<std::u16string>>;

void Release(char *pcText) {
    VT_OS_MemFreeD(pcText, __FILE_NAME__, __LINE__);
}

/// A text that a block may hold: longer than what travels uncompressed.
std::string LongText() {
    std::string sText = "{\"List\":[";
    for (int i = 0; i < 300; ++i) {
        sText += std::string(50, static_cast<char>('a' + i % 26)) + "\xC3\xA9";
    }
    return sText + "]}";
}

// ---- the methods that take an array of MAC addresses ----

struct MacMethod {
    const char *pcName;
    jstring (*pfnMethod)(JNIEnv *, jobject, jobjectArray);
    uint32_t (*pfnWorker)(const char *const *, uint32_t, char **);
    uint32_t uiRpcId;
    const char *pcGood;
    const char *pcFailed;        ///< when the process or the block fails
    uint32_t uiWorkerOnFailure;  ///< 0: the failure is the worker's own text
    const char *pcTooLong;
};

const MacMethod kMacMethods[] = {
    {"getLANHostInfoByMAC", WAP_METHOD(LANHostsInfoQuery, getLANHostInfoByMAC),
     VT_JNI_getLANHostInfoByMAC, 0x471030B1, kHostsByMacText, kNoHosts, 0,
     "\r\n uiArrayLength  is too long called \r\n"},
    {"getLANHostStats", WAP_METHOD(LANHostsInfoQuery, getLANHostStats), VT_JNI_getLANHostStats,
     0x471030B4, kHostStatsText, kFault, kRefused, "\r\n uiMacAddrCount  is too long \r\n"},
};

class MacMethodTest : public LanTest, public ::testing::WithParamInterface<MacMethod> {
  protected:
    Answer Ask(jobjectArray jMacs) {
        return Ended(stMethod.pfnMethod(&stEnv, stEnv.JavaObject(), jMacs));
    }
    Answer Ask(const Macs &asMacs) { return Ask(stEnv.JavaTexts(asMacs)); }

    /// The call works, and this went out.
    void ExpectRequest(const Macs &asMacs, const std::string &sRequest) {
        EXPECT_EQ(Ask(asMacs), TextAnswerOf(stMethod.pcGood));
        ExpectAsked("app_m", 249, stMethod.uiRpcId, sRequest, 12);
        EXPECT_TRUE(stPlatform.astFaults.empty());
    }

    bool SkipsBadOnes() const { return stMethod.uiWorkerOnFailure == 0; }

    const MacMethod &stMethod = GetParam();
};

TEST_P(MacMethodTest, AddressesGoOutInSlots) {
    ExpectRequest({u"02:00:00:00:00:01"}, Field("02:00:00:00:00:01", 32));
    ExpectRequest({u"02:00:00:00:00:01", u"x", u"02:00:00:00:00:03"},
                  Field("02:00:00:00:00:01", 32) + Field("x", 32) + Field("02:00:00:00:00:03", 32));
}

TEST_P(MacMethodTest, AddressesAreCutAt31Bytes) {
    const std::string s31(31, 'm');
    ExpectRequest({std::u16string(31, u'm'), std::u16string(32, u'm'), std::u16string(500, u'm')},
                  Field(s31, 32) + Field(s31, 32) + Field(s31, 32));
}

TEST_P(MacMethodTest, NoTextAsksForAllHosts) {
    EXPECT_EQ(Ask(static_cast<jobjectArray>(nullptr)), TextAnswerOf(stMethod.pcGood));
    ExpectAsked("app_m", 249, stMethod.uiRpcId, Word(0), 12);
    ExpectRequest({}, Word(0));
    ExpectRequest({u""}, Word(0));
    ExpectRequest(Macs(128, u""), Word(0));
}

TEST_P(MacMethodTest, EmptyAddressesKeepTheirSlots) {
    ExpectRequest({u"", u"b", u""}, Field("", 32) + Field("b", 32) + Field("", 32));
}

TEST_P(MacMethodTest, UpTo128AddressesGoOut) {
    std::string sRequest;
    Macs asMacs;
    for (int i = 0; i < 128; ++i) {
        const std::string sMac = "mac " + std::to_string(i);
        asMacs.emplace_back(FromUtf8(sMac));
        sRequest += Field(sMac, 32);
    }
    ASSERT_EQ(sRequest.size(), 4096u);
    ExpectRequest(asMacs, sRequest);
}

TEST_P(MacMethodTest, MoreAddressesAreRefusedWithoutAsking) {
    EXPECT_EQ(Ask(Macs(129, u"m")), TextAnswerOf(kFault));
    EXPECT_EQ(Ask(Macs(1000, std::nullopt)), TextAnswerOf(kFault));
    ExpectNotAsked();
    EXPECT_EQ(TakeFaults(), (FileCodes{{"LANHostsInfoQueryServiceJNI.cpp", 1},
                                       {"LANHostsInfoQueryServiceJNI.cpp", 1}}));
    EXPECT_TRUE(HasEntryTrace(stPlatform, stMethod.pcTooLong));
    for (const std::string &sCall : stEnv.asCalls) {
        EXPECT_EQ(sCall.find("GetObjectArrayElement"), std::string::npos) << sCall;
    }
}

TEST_P(MacMethodTest, NullAddressIsLeftOutOrRefused) {
    const Macs asMacs = {u"a", std::nullopt, u"c"};
    const std::string sTrace = "\r\n apcMacAddr[1] memory allocate is failed \r\n";
    if (SkipsBadOnes()) {
        ExpectRequest(asMacs, Field("a", 32) + Field("c", 32));
        ExpectRequest({std::nullopt, std::nullopt}, Word(0));
        EXPECT_FALSE(HasEntryTrace(stPlatform, sTrace));
    } else {
        EXPECT_EQ(Ask(asMacs), TextAnswerOf(kFault));
        ExpectNotAsked();
        EXPECT_TRUE(HasEntryTrace(stPlatform, sTrace));
        EXPECT_EQ(TakeFaults(), (FileCodes{{"LANHostsInfoQueryServiceJNI.cpp", 1}}));
    }
}

TEST_P(MacMethodTest, TracesTheCallAndItsLengthAndTheDescriptor) {
    stPlatform.uiNextBlock = 0x80000001;
    EXPECT_EQ(Ask(Macs{u"a", u"b"}), TextAnswerOf(stMethod.pcGood));
    const size_t uiLen = strlen(stMethod.pcGood) + 1;
    const std::string sLen = std::to_string(uiLen);
    // One prints the descriptor's numbers unsigned, the other signed.
    const std::string sId = SkipsBadOnes() ? "2147483649" : "-2147483647";
    EXPECT_EQ(EntryTraces(stPlatform),
              (Calls{std::string(kPrefix) + "LANHostsInfoQueryServiceJNI_" + stMethod.pcName +
                         " called \r\n",
                     "\r\n called uiArrayLength:2 \r\n",
                     "stVdata Info DataID:" + sId + " CompressedLen:" + sLen +
                         "  OriginalLen = " + sLen + " \n\r"}));
    stPlatform.astTraces.clear();
    (void)Ask(static_cast<jobjectArray>(nullptr));
    EXPECT_TRUE(HasEntryTrace(stPlatform, "\r\n called uiArrayLength:0 \r\n"));
}

TEST_P(MacMethodTest, AnswerIsPassedOnAsItStands) {
    for (const std::string &sText : {std::string("no JSON, %s%n"), LongText()}) {
        stPlatform.mapReplies[stMethod.uiRpcId] = {0, sText + '\0', true};
        EXPECT_EQ(Ask(Macs{u"a"}), TextAnswerOf(sText));
    }
    stPlatform.mapReplies[stMethod.uiRpcId] = {0, std::string("first\0second", 12), true};
    EXPECT_EQ(Ask(Macs{u"a"}), TextAnswerOf("first"));
    stPlatform.mapReplies[stMethod.uiRpcId] = {0, std::string(1, '\0'), true};
    EXPECT_EQ(Ask(Macs{u"a"}), NullAnswer());
}

TEST_P(MacMethodTest, RefusedRequest) {
    Refuse(stMethod.uiRpcId);
    EXPECT_EQ(Ask(Macs{u"a"}), TextAnswerOf(stMethod.pcFailed));
    FileCodes astWanted = {{"jni_rpc.cpp", kRefused}, {"jni_lanhost_info.cpp", kRefused}};
    if (stMethod.uiWorkerOnFailure != 0) {
        astWanted.emplace_back("LANHostsInfoQueryServiceJNI.cpp", kRefused);
    }
    EXPECT_EQ(TakeFaults(), astWanted);
    EXPECT_EQ(Ask(static_cast<jobjectArray>(nullptr)), TextAnswerOf(stMethod.pcFailed));
}

TEST_P(MacMethodTest, BlockThatCanNotBeRead) {
    stPlatform.mapStatus["VT_VDATA_ReadData"] = kRefused;
    EXPECT_EQ(Ask(Macs{u"a"}), TextAnswerOf(stMethod.pcFailed));
    stPlatform.mapStatus.clear();
    // Nothing in the reply, ids that nobody made, and absurd lengths.
    for (const std::string &sReply : {std::string(), Word(0x1001), Word(77) + Word(10) + Word(10),
                                      std::string(12, '\xFF'), Word(77) + Word(0) + Word(0)}) {
        stPlatform.mapReplies[stMethod.uiRpcId] = {0, sReply};
        EXPECT_EQ(Ask(Macs{u"a"}), TextAnswerOf(stMethod.pcFailed));
    }
    stPlatform.mapReplies[stMethod.uiRpcId] = {0, std::string(100, 'x'), true};
    EXPECT_EQ(Ask(Macs{u"a"}), TextAnswerOf(stMethod.pcFailed)) << "no zero in the block";
}

TEST_P(MacMethodTest, WorkerTakesTablesWithHoles) {
    const char *apcMacs[] = {nullptr, "", "b", nullptr};
    char *pcText = nullptr;
    ASSERT_EQ(stMethod.pfnWorker(apcMacs, 4, &pcText), 0u);
    EXPECT_STREQ(pcText, stMethod.pcGood);
    Release(pcText);
    ExpectAsked("app_m", 249, stMethod.uiRpcId,
                Field("", 32) + Field("", 32) + Field("b", 32) + Field("", 32), 12);
    for (const auto &[ppcTable, uiCount] :
         {std::pair<const char *const *, uint32_t>{nullptr, 5}, {apcMacs, 2}, {apcMacs, 0}}) {
        ASSERT_EQ(stMethod.pfnWorker(ppcTable, uiCount, &pcText), 0u);
        EXPECT_STREQ(pcText, stMethod.pcGood);
        Release(pcText);
        ExpectAsked("app_m", 249, stMethod.uiRpcId, Word(0), 12);
    }
}

TEST_P(MacMethodTest, WorkerRefusesNoPlaceForItsText) {
    EXPECT_EQ(stMethod.pfnWorker(nullptr, 0, nullptr), kNullArgument);
    EXPECT_EQ(TakeFaults(), (FileCodes{{"jni_lanhost_info.cpp", kNullArgument}}));
    ExpectNotAsked();
}

TEST_P(MacMethodTest, WorkerLeavesNoTextWhenItFails) {
    Refuse(stMethod.uiRpcId);
    char cMark = 'o';
    char *pcText = &cMark;
    ASSERT_EQ(stMethod.pfnWorker(nullptr, 0, &pcText), stMethod.uiWorkerOnFailure);
    if (stMethod.uiWorkerOnFailure == 0) {
        EXPECT_STREQ(pcText, kNoHosts);
        Release(pcText);
    } else {
        EXPECT_EQ(pcText, nullptr);
    }
}

TEST_P(MacMethodTest, WorkerWithoutMemoryForTheList) {
    const char *apcMacs[] = {"a", "b"};
    char *pcText = nullptr;
    stWorld.Plan({Op::kAlloc, 1, false});
    const uint32_t uiResult = stMethod.pfnWorker(apcMacs, 2, &pcText);
    stWorld.Plan({});
    ExpectNotAsked();
    EXPECT_EQ(TakeFaults(), (FileCodes{{"jni_lanhost_info.cpp", kNoMemory}}));
    if (stMethod.uiWorkerOnFailure == 0) {
        EXPECT_EQ(uiResult, 0u);
        EXPECT_STREQ(pcText, kNoHosts);
        Release(pcText);
    } else {
        EXPECT_EQ(uiResult, kNoMemory);
        EXPECT_EQ(pcText, nullptr);
    }
}

// A list whose length passes 32 bits must not become a short one. Only the first entry is looked
// at before the length is.
TEST_P(MacMethodTest, WorkerRefusesACountWhoseListHasNoLength) {
    const char *pcMac = "a";
    for (const uint32_t uiCount : {0x08000000u, 0x08000001u, 0xFFFFFFFFu}) {
        char *pcText = nullptr;
        (void)stMethod.pfnWorker(&pcMac, uiCount, &pcText);
        Release(pcText);
        EXPECT_EQ(TakeFaults(), (FileCodes{{"jni_lanhost_info.cpp", kNoMemory}}));
    }
    ExpectNotAsked();
}

INSTANTIATE_TEST_SUITE_P(Methods, MacMethodTest, ::testing::ValuesIn(kMacMethods),
                         [](const auto &stInfo) { return std::string(stInfo.param.pcName); });

using HostInfoByMac = LanTest;

TEST_F(HostInfoByMac, WithoutMemoryForItsOwnAnswerItFailsAfterAll) {
    Refuse(0x471030B1);
    stWorld.Plan({Op::kAlloc, 1, true});
    char cMark = 'o';
    char *pcText = &cMark;
    EXPECT_EQ(VT_JNI_getLANHostInfoByMAC(nullptr, 0, &pcText), 1u);
    EXPECT_EQ(pcText, nullptr);
    const Answer stAnswer = Ended(
        WAP_METHOD(LANHostsInfoQuery, getLANHostInfoByMAC)(&stEnv, stEnv.JavaObject(), nullptr));
    stWorld.Plan({});
    EXPECT_EQ(stAnswer, TextAnswerOf(kFault));
    EXPECT_EQ(TakeFaults().back(), (FileCode{"LANHostsInfoQueryServiceJNI.cpp", 1}));
}

// ---- the methods that take a word ----

struct WordMethod {
    const char *pcName;
    jstring (*pfnMethod)(JNIEnv *, jobject, jstring);
    uint32_t (*pfnWorker)(const char *, char **);
    uint32_t uiRpcId;
    const char *pcGood;
};

const WordMethod kWordMethods[] = {
    {"getLANHostInfoByClass", WAP_METHOD(LANHostsInfoQuery, getLANHostInfoByClass),
     VT_JNI_getLANHostInfoByClass, 0x471030B2, kHostsByClassText},
    {"getLANHostInfoByInterface", WAP_METHOD(LANHostsInfoQuery, getLANHostInfoByInterface),
     VT_JNI_getLANHostInfoByInterface, 0x471030B3, kHostsByInterfaceText},
};

class WordMethodTest : public LanTest, public ::testing::WithParamInterface<WordMethod> {
  protected:
    Answer Ask(jstring jWord) {
        return Ended(stMethod.pfnMethod(&stEnv, stEnv.JavaObject(), jWord));
    }
    Answer Ask(const std::string &sWord) { return Ask(Java(sWord)); }

    const WordMethod &stMethod = GetParam();
};

TEST_P(WordMethodTest, WordGoesOutInItsField) {
    EXPECT_EQ(Ask("PHONE"), TextAnswerOf(stMethod.pcGood));
    ExpectAsked("app_m", 249, stMethod.uiRpcId, Field("PHONE", 16), 12);
    EXPECT_TRUE(stPlatform.astFaults.empty());
    const std::string sLen = std::to_string(strlen(stMethod.pcGood) + 1);
    EXPECT_EQ(EntryTraces(stPlatform),
              (Calls{std::string(kPrefix) + "LANHostsInfoQueryServiceJNI_" + stMethod.pcName +
                         " called \r\n",
                     "stVdata Info DataID:4097 CompressedLen:" + sLen + "  OriginalLen = " + sLen +
                         " \n\r"}));
}

TEST_P(WordMethodTest, WordIsWholeOrEmpty) {
    EXPECT_EQ(Ask("123456789012345"), TextAnswerOf(stMethod.pcGood));
    ExpectAsked("app_m", 249, stMethod.uiRpcId, Field("123456789012345", 16), 12);
    for (const size_t uiLen : {16u, 17u, 1000u}) {
        EXPECT_EQ(Ask(std::string(uiLen, 'w')), TextAnswerOf(stMethod.pcGood));
        ExpectAsked("app_m", 249, stMethod.uiRpcId, std::string(16, '\0'), 12);
    }
}

TEST_P(WordMethodTest, NoWordAsksNobody) {
    EXPECT_EQ(Ask(static_cast<jstring>(nullptr)), TextAnswerOf(kFault));
    EXPECT_EQ(Ask(""), TextAnswerOf(kFault));
    EXPECT_EQ(TakeFaults(), (FileCodes{{"LANHostsInfoQueryServiceJNI.cpp", 1},
                                       {"LANHostsInfoQueryServiceJNI.cpp", 1}}));
    ExpectNotAsked();
}

TEST_P(WordMethodTest, AnswerIsPassedOnAsItStands) {
    stPlatform.mapReplies[stMethod.uiRpcId] = {0, LongText() + '\0', true};
    EXPECT_EQ(Ask("w"), TextAnswerOf(LongText()));
}

TEST_P(WordMethodTest, FailuresAreFaultTexts) {
    stPlatform.mapStatus["VT_VDATA_ReadData"] = kRefused;
    EXPECT_EQ(Ask("w"), TextAnswerOf(kFault));
    stPlatform.mapReplies[stMethod.uiRpcId] = {0, "no zero", true};
    stPlatform.mapStatus.clear();
    EXPECT_EQ(Ask("w"), TextAnswerOf(kFault));
    (void)TakeFaults();
    Refuse(stMethod.uiRpcId);
    EXPECT_EQ(Ask("w"), TextAnswerOf(kFault));
    EXPECT_EQ(TakeFaults(), (FileCodes{{"jni_rpc.cpp", kRefused},
                                       {"jni_lanhost_info.cpp", kRefused},
                                       {"LANHostsInfoQueryServiceJNI.cpp", kRefused}}));
}

TEST_P(WordMethodTest, WorkerRefusesNull) {
    char cMark = 'o';
    char *pcText = &cMark;
    EXPECT_EQ(stMethod.pfnWorker(nullptr, &pcText), kNullArgument);
    EXPECT_EQ(pcText, nullptr);
    EXPECT_EQ(stMethod.pfnWorker("w", nullptr), kNullArgument);
    EXPECT_EQ(TakeFaults(), (FileCodes{{"jni_lanhost_info.cpp", kNullArgument},
                                       {"jni_lanhost_info.cpp", kNullArgument}}));
    ExpectNotAsked();
}

INSTANTIATE_TEST_SUITE_P(Methods, WordMethodTest, ::testing::ValuesIn(kWordMethods),
                         [](const auto &stInfo) { return std::string(stInfo.param.pcName); });

}  // namespace
}  // namespace wap::test
