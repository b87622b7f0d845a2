// The status queries that "app_m" answers: what is asked, and what Java gets.
#include "wan/jni_access_info.h"

#include "unit/wanconfig/wanconfig_fixture.h"

namespace wap::test {
namespace {

/// A query whose answer is a text.
struct TextQuery {
    const char *pcMethod;
    uint32_t uiRpcId;
    uint32_t uiReplyCap;
    uint32_t uiRequest;
    const char *pcTrace;
    const char *pcOnMinusTwo;
    const char *pcOnFailure;
};

#define WAP_FULL_TRACE(method)                                      \
    "\r\n Java_com_veltra_domoline_deviceservice_kavo_wap_ozi_jni_" \
    "AccessInfoQueryServiceJNI_" method " called \r\n"
constexpr const char *kPhyMinusTwo =
    "{\"Result\":-2, \"TXPower\": 0, \"RXPower\": 0,\"TransceiverTemperature\": 0,"
    "\"SupplyVottage\": 0,\"BiasCurrent\": 0}";
constexpr const char *kPhyMinusOne =
    "{\"Result\":-1, \"TXPower\": 0, \"RXPower\": 0,\"TransceiverTemperature\": 0,"
    "\"SupplyVottage\": 0,\"BiasCurrent\": 0}";
constexpr const char *kUplinkMinusOne = "{\"Result\":-1, \"UsStats\": 0, \"DsStats\": 0}";

const TextQuery kTextQueries[] = {
    {"getWANIfStats", 0x4710308A, 128, 0x10101001, WAP_FULL_TRACE("getWANIfStats"), kFault, kFault},
    {"getWANIfInfo", 0x4710308B, 2048, 0x10101001, WAP_FULL_TRACE("getWANIfInfo"), kFault, kFault},
    {"getWanIfBandwidth", 0x4710308C, 128, 0x10101001, WAP_FULL_TRACE("getWanIfBandwidth"), kFault,
     kFault},
    {"getWANIfStatus", 0x4710308D, 512, 0x10101001, WAP_FULL_TRACE("getWANIfStatus"), kFault,
     kFault},
    {"getPONIfPhyStatus", 0x4710308F, 512, 0, "\r\n getPONIfPhyStatus called \r\n", kPhyMinusTwo,
     kPhyMinusOne},
    {"getPONIfRegisterStatus", 0x471030D1, 128, 0, "\r\n getPONIfRegisterStatus called \r\n",
     "{\"Result\":-2, \"RegisterStatus\": \"NO_REG_NO_AUTH\"}",
     "{\"Result\":-1, \"RegisterStatus\": \"NO_REG_NO_AUTH\"}"},
    {"getUplinkIfStats", 0x471030D2, 128, 0, "\r\n getUplinkIfStats called \r\n", kUplinkMinusOne,
     kUplinkMinusOne},
};

class TextQueryTest : public WanConfigTest, public ::testing::WithParamInterface<TextQuery> {
  protected:
    Answer CallWith(Reply stReply) {
        stPlatform.mapReplies[stQuery.uiRpcId] = std::move(stReply);
        return Call(stQuery.pcMethod);
    }

    const TextQuery &stQuery = GetParam();
};

TEST_P(TextQueryTest, AsksOnceAndPassesTheTextOn) {
    EXPECT_EQ(CallWith({0, "any text, \"JSON\" or not"}),
              TextAnswerOf("any text, \"JSON\" or not"));
    ExpectOnlyRpc(stPlatform,
                  {"app_m", 249, stQuery.uiRpcId, Word(stQuery.uiRequest), stQuery.uiReplyCap});
    EXPECT_EQ(EntryTraces(stPlatform), Calls{stQuery.pcTrace});
    EXPECT_EQ(stPlatform.astTraces.at(0).sFile, kAccessEntries);
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_P(TextQueryTest, AnswersItsFallbackByTheCode) {
    for (const uint32_t uiStatus : {kMinusOne, kRefused, 1u, 0xFFFFFFFDu, 0x7FFFFFFFu}) {
        EXPECT_EQ(CallWith({uiStatus, "rubbish"}), TextAnswerOf(stQuery.pcOnFailure)) << uiStatus;
        // The call, the worker and the entry.
        EXPECT_EQ(FilesOf(uiStatus), (Calls{"jni_rpc.cpp", kAccessWorkers, kAccessEntries}));
    }
    EXPECT_EQ(CallWith({kMinusTwo, "rubbish"}), TextAnswerOf(stQuery.pcOnMinusTwo));
    EXPECT_EQ(FilesOf(kMinusTwo), (Calls{"jni_rpc.cpp", kAccessWorkers, kAccessEntries}));
}

TEST_P(TextQueryTest, NoTextIsAFailure) {
    for (const std::string &sNothing : {std::string(), std::string("\0behind", 7)}) {
        EXPECT_EQ(CallWith({0, sNothing}), TextAnswerOf(stQuery.pcOnFailure));
        EXPECT_EQ(FilesOf(kMinusOne), (Calls{kAccessWorkers, kAccessEntries}));
        EXPECT_TRUE(HasRecorded(kAccessWorkers, kMinusOne, {stQuery.uiRequest, 0, 0, 0}));
    }
}

TEST_P(TextQueryTest, TextMayFillItsReply) {
    for (const uint32_t uiLength : {stQuery.uiReplyCap - 1, stQuery.uiReplyCap,
                                    stQuery.uiReplyCap + 1, stQuery.uiReplyCap + 4000}) {
        const std::string sWanted(std::min(uiLength, stQuery.uiReplyCap), 't');
        EXPECT_EQ(CallWith({0, std::string(uiLength, 't')}), TextAnswerOf(sWanted)) << uiLength;
    }
}

TEST_P(TextQueryTest, TextsOutsideAsciiArriveWhole) {
    EXPECT_EQ(CallWith({0, "Caf\xC3\xA9 \xF0\x9F\x8F\xA0"}),
              TextAnswerOf("Caf\xC3\xA9 \xF0\x9F\x8F\xA0"));
}

TEST_P(TextQueryTest, AnswersAgainAfterAFailure) {
    EXPECT_EQ(CallWith({kRefused, ""}), TextAnswerOf(stQuery.pcOnFailure));
    EXPECT_EQ(CallWith({0, "back"}), TextAnswerOf("back"));
}

INSTANTIATE_TEST_SUITE_P(Methods, TextQueryTest, ::testing::ValuesIn(kTextQueries),
                         [](const auto &stInfo) { return stInfo.param.pcMethod; });

// ---- the workers, as C code calls them ----

struct TextWorkerCase {
    const char *pcName;
    std::function<uint32_t(char *, uint32_t)> fnCall;
    uint32_t uiRpcId;
    std::string sRequest;
};

std::vector<TextWorkerCase> TextWorkers() {
    const auto Of = [](uint32_t (*pfnWorker)(uint32_t, char *, uint32_t)) {
        return [=](char *pcBuf, uint32_t uiCap) { return pfnWorker(0xFEDCBA98, pcBuf, uiCap); };
    };
    const std::string sWan = "\x98\xBA\xDC\xFE";
    return {
        {"GetWANIfStats", Of(VT_JNI_GetWANIfStats), 0x4710308A, sWan},
        {"GetWANIfInfo", Of(VT_JNI_GetWANIfInfo), 0x4710308B, sWan},
        {"GetWanIfBandwidth", Of(VT_JNI_GetWanIfBandwidth), 0x4710308C, sWan},
        {"GetWANIfStatus", Of(VT_JNI_GetWANIfStatus), 0x4710308D, sWan},
        {"GetPONIfPhyStatus", VT_JNI_GetPONIfPhyStatus, 0x4710308F, Word(0)},
        {"GetPONIfRegisterStatus", VT_JNI_GetPONIfRegisterStatus, 0x471030D1, Word(0)},
        {"getUplinkIfStats", VT_JNI_getUplinkIfStats, 0x471030D2, Word(0)},
    };
}

class TextWorkerTest : public WanConfigTest,
                       public ::testing::WithParamInterface<TextWorkerCase> {};

TEST_P(TextWorkerTest, FillsTheCallersBufferAndNoMore) {
    AnswerWith(GetParam().uiRpcId, "a text that is longer than the buffer");
    char acBuf[8];
    std::fill_n(acBuf, sizeof(acBuf), 'b');
    EXPECT_EQ(GetParam().fnCall(acBuf, 6), 0u);
    EXPECT_EQ(std::string(acBuf, sizeof(acBuf)), "a textbb");
    ExpectOnlyRpc(stPlatform, {"app_m", 249, GetParam().uiRpcId, GetParam().sRequest, 6});
}

TEST_P(TextWorkerTest, NoBufferIsRefusedWithoutAsking) {
    char acBuf[1] = {'b'};
    EXPECT_EQ(GetParam().fnCall(nullptr, 128), 1u);
    EXPECT_EQ(GetParam().fnCall(acBuf, 0), 1u);
    EXPECT_EQ(acBuf[0], 'b');
    EXPECT_TRUE(stPlatform.astRpcs.empty());
    EXPECT_EQ(FilesOf(1), (Calls{kAccessWorkers, kAccessWorkers}));
}

TEST_P(TextWorkerTest, GivesTheCodeOfTheRequest) {
    stPlatform.mapReplies[GetParam().uiRpcId] = {kRefused, "rubbish"};
    char acBuf[16];
    EXPECT_EQ(GetParam().fnCall(acBuf, sizeof(acBuf)), kRefused);
    EXPECT_EQ(std::string(acBuf, sizeof(acBuf)), std::string(sizeof(acBuf), '\0'));
}

INSTANTIATE_TEST_SUITE_P(Workers, TextWorkerTest, ::testing::ValuesIn(TextWorkers()),
                         [](const auto &stInfo) { return stInfo.param.pcName; });

// ---- the two numbers ----

class NumberQueryTest : public WanConfigTest {};

TEST_F(NumberQueryTest, InternetWanIsAskedTracedAndGiven) {
    EXPECT_EQ(Call("getInternetWANIndex"), NumberAnswerOf(0x10101001));
    ASSERT_EQ(stPlatform.astRpcs.size(), 1u);
    const RpcRecord &stRpc = stPlatform.astRpcs[0];
    EXPECT_EQ(stRpc.sHead, MessageHead("jamvm", 0, "app_m", 249));
    EXPECT_EQ(stRpc.uiRpcId, 0x4710308Eu);
    EXPECT_EQ(stRpc.sRequest, Word(0));
    EXPECT_EQ(stRpc.uiRspCap, 4u);
    EXPECT_EQ(stRpc.uiTimeoutMs, 5000u);
    EXPECT_EQ(EntryTraces(stPlatform), (Calls{WAP_FULL_TRACE("getInternetWANIndex"),
                                              "getInternetWANIndex uiWanIndex: 269488129"}));
    AnswerWith(0x4710308E, Word(0x90000001));
    EXPECT_EQ(Call("getInternetWANIndex"), NumberAnswerOf(static_cast<int32_t>(0x90000001)));
    AnswerWith(0x4710308E, Word(0));
    EXPECT_EQ(Call("getInternetWANIndex"), NumberAnswerOf(0));
}

TEST_F(NumberQueryTest, FailedInternetWanIsMinusOne) {
    for (const uint32_t uiStatus : {kRefused, kMinusTwo, kMinusOne}) {
        stPlatform.mapReplies[0x4710308E] = {uiStatus, Word(7)};
        EXPECT_EQ(Call("getInternetWANIndex"), NumberAnswerOf(-1));
        EXPECT_TRUE(HasEntryTrace(stPlatform, "getInternetWANIndex uiWanIndex: 4294967295"));
        EXPECT_EQ(FilesOf(uiStatus), (Calls{"jni_rpc.cpp", kAccessWorkers, kAccessEntries}));
    }
}

TEST_F(NumberQueryTest, ReplyWithoutAnIndexNamesNoWan) {
    AnswerWith(0x4710308E, "");
    EXPECT_EQ(Call("getInternetWANIndex"), NumberAnswerOf(-1));
}

TEST_F(NumberQueryTest, UpTimeIsAskedAndGiven) {
    EXPECT_EQ(Call("getPONIfUpTime"), NumberAnswerOf(86400));
    ExpectOnlyRpc(stPlatform, {"app_m", 249, 0x471030D0, Word(0), 4});
    EXPECT_EQ(EntryTraces(stPlatform), Calls{"\r\n getPONIfUpTime called \r\n"});
    EXPECT_TRUE(stPlatform.astFaults.empty());
    AnswerWith(0x471030D0, Word(kMinusOne));
    EXPECT_EQ(Call("getPONIfUpTime"), NumberAnswerOf(-1));
    EXPECT_TRUE(stPlatform.astFaults.empty());
    AnswerWith(0x471030D0, "");
    EXPECT_EQ(Call("getPONIfUpTime"), NumberAnswerOf(0));
}

TEST_F(NumberQueryTest, FailedUpTimeIsToldByTheCode) {
    stPlatform.mapReplies[0x471030D0] = {kMinusTwo, Word(7)};
    EXPECT_EQ(Call("getPONIfUpTime"), NumberAnswerOf(-2));
    EXPECT_EQ(FilesOf(kMinusTwo), (Calls{"jni_rpc.cpp", kAccessWorkers, kAccessEntries}));
    for (const uint32_t uiStatus : {kRefused, kMinusOne, 1u, 0xFFFFFFFDu}) {
        stPlatform.mapReplies[0x471030D0] = {uiStatus, Word(7)};
        EXPECT_EQ(Call("getPONIfUpTime"), NumberAnswerOf(-1)) << uiStatus;
        EXPECT_EQ(FilesOf(uiStatus), (Calls{"jni_rpc.cpp", kAccessWorkers, kAccessEntries}));
    }
}

TEST_F(NumberQueryTest, WorkersWriteOnSuccessOnly) {
    using Worker = uint32_t (*)(uint32_t *);
    for (const Worker pfnWorker : {&VT_JNI_GetInternetWANIndex, &VT_JNI_GetPONIfUpTime}) {
        stPlatform.ClearRecords();
        EXPECT_EQ(pfnWorker(nullptr), 1u);
        EXPECT_TRUE(stPlatform.astRpcs.empty());
        EXPECT_EQ(FilesOf(1), Calls{kAccessWorkers});
        stPlatform.astNextReplies.push_back({kRefused, Word(7)});
        uint32_t uiNumber = 42;
        EXPECT_EQ(pfnWorker(&uiNumber), kRefused);
        EXPECT_EQ(uiNumber, 42u);
        stPlatform.astNextReplies.push_back({0, Word(7)});
        EXPECT_EQ(pfnWorker(&uiNumber), 0u);
        EXPECT_EQ(uiNumber, 7u);
    }
}

// ---- the only query here that needs memory ----

TEST_F(NumberQueryTest, WanInfoNeedsMemoryOfItsOwn) {
    stWorld.Plan({Op::kAlloc, 1, false});
    EXPECT_EQ(Call("getWANIfInfo"), TextAnswerOf(kFault));
    EXPECT_EQ(stWorld.Count(Op::kAlloc), 1u);
    stWorld.Plan({});
    EXPECT_TRUE(stPlatform.astRpcs.empty());
    EXPECT_EQ(FilesOf(kNoMemory), Calls{kAccessEntries});
    stWorld.stAllocs.ClearRecords();
    EXPECT_EQ(Call("getWANIfInfo"), TextAnswerOf(kWanInfoText));
    ASSERT_EQ(stWorld.stAllocs.astLog.size(), 1u);
    // The reply's size and a zero that it can't reach.
    EXPECT_EQ(stWorld.stAllocs.astLog[0].uiSize, 2049u);
    EXPECT_EQ(stWorld.stAllocs.astLog[0].eOrigin, Origin::kPlatform);
}

}  // namespace
}  // namespace wap::test
