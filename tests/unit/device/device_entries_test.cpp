// The twelve Java methods of the device information classes, as Java sees them.
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_DeviceSecretInfoQueryServiceJNI.h>

#include <cstring>
#include <set>
#include <string>
#include <vector>

#include "support/entries.h"
#include "support/entry_calls.h"
#include "support/expect.h"
#include "system/jni_device_info.h"

namespace wap::test {
namespace {

constexpr const char *kInfoClass =
    "Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_DeviceInfoQueryServiceJNI_";
constexpr const char *kSecretClass =
    "Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_DeviceSecretInfoQueryServiceJNI_";

std::vector<Entry> DeviceEntries() {
    std::vector<Entry> astEntries;
    for (const Entry &stEntry : BasicEntries()) {
        if (stEntry.sMethod != "startThread") {
            astEntries.push_back(stEntry);
        }
    }
    return astEntries;
}

/// Every reply is refused, whatever bytes come with it.
void RefuseAll(Platform &stPlatform) {
    for (auto &[uiRpcId, stReply] : stPlatform.mapReplies) {
        stReply.uiStatus = kRefused;
    }
    stPlatform.mapStatus["VT_OS_GetCPUBusyRateByTime"] = kRefused;
    stPlatform.mapStatus["VT_OS_GetMemUseRate"] = kRefused;
}

class DeviceEntryTest : public BridgeTest, public ::testing::WithParamInterface<Entry> {
  protected:
    void SetUp() override {
        BridgeTest::SetUp();
        FurnishHome(stWorld);
    }

    /// No trace or console text holds a secret of the furnished home.
    void ExpectNothingShown() {
        for (const TraceRecord &stTrace : stPlatform.astTraces) {
            for (const char *pcSecret : {kDevicePassword, kSsidPassword, kWebPassword}) {
                EXPECT_EQ(stTrace.sText.find(pcSecret), std::string::npos) << stTrace.sText;
            }
        }
        EXPECT_TRUE(stPlatform.asConsole.empty());
    }

    bool CanFail() const { return stEntry.sMethod != "getAPIVersion"; }

    const Entry &stEntry = GetParam();
};

TEST_P(DeviceEntryTest, TracesItsNameFirst) {
    (void)stEntry.fnCall(stEnv);
    ASSERT_FALSE(stPlatform.astTraces.empty());
    const TraceRecord &stTrace = stPlatform.astTraces[0];
    const bool bSecretClass = stTrace.sFile == "DeviceSecretInfoQueryServiceJNI.cpp";
    EXPECT_TRUE(bSecretClass || stTrace.sFile == "DeviceInfoQueryServiceJNI.cpp") << stTrace.sFile;
    EXPECT_EQ(stTrace.sText, "\r\n " + std::string(bSecretClass ? kSecretClass : kInfoClass) +
                                 stEntry.sMethod + " called \r\n");
    EXPECT_EQ(stTrace.uiMid, 249u);
    EXPECT_EQ(stTrace.uiZero, 0u);
    EXPECT_GT(stTrace.uiLine, 0u);
}

TEST_P(DeviceEntryTest, AnswersFromAWorkingGateway) {
    EXPECT_EQ(stEntry.fnCall(stEnv), stEntry.stGood);
    EXPECT_TRUE(stPlatform.astFaults.empty());
    if (stEntry.uiRpcId == 0) {
        EXPECT_TRUE(stPlatform.astRpcs.empty());
    } else {
        ASSERT_EQ(stPlatform.astRpcs.size(), 1u);
        EXPECT_EQ(stPlatform.astRpcs[0].uiRpcId, stEntry.uiRpcId);
    }
    ExpectNothingShown();
}

TEST_P(DeviceEntryTest, AnswersItsFallbackWhenRefused) {
    RefuseAll(stPlatform);
    EXPECT_EQ(stEntry.fnCall(stEnv), CanFail() ? stEntry.stFailure : stEntry.stGood);
    ExpectNothingShown();
    if (!CanFail()) {
        EXPECT_TRUE(stPlatform.astFaults.empty());
        return;
    }
    // The worker records the platform's code, the entry the worker's.
    ASSERT_EQ(FaultCodes(stPlatform), (Codes{kRefused, kMinusOne}));
    EXPECT_EQ(stPlatform.astFaults[0].sFile, "jni_device_info.cpp");
    EXPECT_NE(stPlatform.astFaults[1].sFile.find("QueryServiceJNI.cpp"), std::string::npos);
}

TEST_P(DeviceEntryTest, AnswersAgainAfterAFailure) {
    RefuseAll(stPlatform);
    (void)stEntry.fnCall(stEnv);
    FurnishHome(stWorld);
    stPlatform.mapStatus.clear();
    EXPECT_EQ(stEntry.fnCall(stEnv), stEntry.stGood);
}

// What is left behind, a secret in some buffer included, is complained about when the test ends.
TEST_P(DeviceEntryTest, SurvivesEveryFailureOfJava) {
    (void)stEntry.fnCall(stEnv);
    const uint32_t uiCalls = stWorld.Count(Op::kJni);
    EXPECT_EQ(uiCalls == 0, stEntry.stGood.iNumber.has_value());
    for (const bool bForever : {false, true}) {
        for (uint32_t uiAt = 1; uiAt <= uiCalls; ++uiAt) {
            SCOPED_TRACE(uiAt);
            stWorld.Plan({Op::kJni, uiAt, bForever});
            const Answer stAnswer = stEntry.fnCall(stEnv);
            stWorld.Plan({});
            EXPECT_TRUE(stAnswer == NullAnswer() || stAnswer == stEntry.stGood) << stAnswer;
            EXPECT_FALSE(stEnv.bPending);
            stEnv.EndCall();
            stWorld.ExpectClean();
        }
    }
    ExpectNothingShown();
}

TEST_P(DeviceEntryTest, SurvivesRepliesWithoutAnyZero) {
    for (auto &[uiRpcId, stReply] : stPlatform.mapReplies) {
        stReply.sBytes.assign(400, '\xFF');
    }
    const Answer stAnswer = stEntry.fnCall(stEnv);
    EXPECT_EQ(stAnswer.iNumber.has_value(), stEntry.stGood.iNumber.has_value());
    EXPECT_EQ(stAnswer.sText.has_value(), stEntry.stGood.sText.has_value());
}

/// A method whose reply holds a secret, without anything around it.
struct SecretMethod {
    const char *pcName;
    jstring (*pfnCall)(JNIEnv *pstEnv, jobject jThis);
    uint32_t (*pfnWorker)(char *pcBuf, uint32_t uiCap);
};
constexpr SecretMethod kSecretMethods[] = {
    {"getDevicePassword", WAP_METHOD(DeviceSecretInfoQuery, getDevicePassword),
     VT_KAVO_JNI_GetDevicePassword},
    {"getDeviceDefaultWebPassword", WAP_METHOD(DeviceSecretInfoQuery, getDeviceDefaultWebPassword),
     VT_JNI_GetDeviceDefaultWebPassword},
    {"getDeviceDefaultSSID1Name", WAP_METHOD(DeviceSecretInfoQuery, getDeviceDefaultSSID1Name),
     VT_JNI_GetDeviceDefaultSSID1Name},
    {"getDeviceDefaultSSID1Password",
     WAP_METHOD(DeviceSecretInfoQuery, getDeviceDefaultSSID1Password),
     VT_JNI_GetDeviceDefaultSSID1Password},
};

class DeviceSecretTest : public BridgeTest, public ::testing::WithParamInterface<SecretMethod> {
  protected:
    const SecretMethod &stMethod = GetParam();
    const Entry stEntry = EntryOf(stMethod.pcName);
    const std::vector<std::string> asSecrets = {kDevicePassword, kSsidPassword, kWebPassword};

    void SetUp() override {
        BridgeTest::SetUp();
        FurnishHome(stWorld);
    }

    /// The entry leaves nothing on the stack, and gives this answer.
    void ExpectNothingLeft(const Answer &stWanted) {
        const jobject jThis = stEnv.JavaObject();
        jstring jText = nullptr;
        EXPECT_FALSE(StackKeeps([&] { jText = stMethod.pfnCall(&stEnv, jThis); }, asSecrets));
        EXPECT_EQ((Answer{stEnv.Utf8Of(jText), std::nullopt}), stWanted);
        stEnv.EndCall();
    }
};

TEST_P(DeviceSecretTest, SecretsDoNotStayOnTheStack) {
    ExpectNothingLeft(stEntry.stGood);
    RefuseAll(stPlatform);
    ExpectNothingLeft(stEntry.stFailure);
    stWorld.Plan({Op::kJni, 1, true});
    FurnishHome(stWorld);
    ExpectNothingLeft(NullAnswer());
    stWorld.Plan({});
}

// What the worker leaves below its caller's buffer, which an entry's later calls may hide.
TEST_P(DeviceSecretTest, TheWorkerLeavesNothingOnTheStack) {
    std::vector<char> acText(200);
    char *pcText = acText.data();
    const auto fnExpect = [&](uint32_t uiWanted) {
        uint32_t uiResult = 1;
        EXPECT_FALSE(StackKeeps([&] { uiResult = stMethod.pfnWorker(pcText, 200); }, asSecrets));
        EXPECT_EQ(uiResult, uiWanted);
    };
    fnExpect(0);
    EXPECT_EQ(TextAnswerOf(pcText), stEntry.stGood);
    RefuseAll(stPlatform);
    fnExpect(kMinusOne);
    stWorld.stSecrets.Disown(pcText, acText.size());
}

INSTANTIATE_TEST_SUITE_P(Methods, DeviceEntryTest, ::testing::ValuesIn(DeviceEntries()),
                         [](const auto &stInfo) { return stInfo.param.sMethod; });

INSTANTIATE_TEST_SUITE_P(Methods, DeviceSecretTest, ::testing::ValuesIn(kSecretMethods),
                         [](const auto &stInfo) { return stInfo.param.pcName; });

TEST(DeviceSecrets, AllMethodsWhoseReplyHoldsOneAreTested) {
    std::set<std::string> setTested;
    for (const SecretMethod &stMethod : kSecretMethods) {
        setTested.insert(stMethod.pcName);
    }
    std::set<std::string> setSecret;
    for (const Entry &stEntry : BasicEntries()) {
        if (stEntry.bSecret) {
            setSecret.insert(stEntry.sMethod);
        }
    }
    EXPECT_EQ(setTested, setSecret);
}

class DeviceMethodTest : public BridgeTest {
  protected:
    Answer CallWith(const std::string &sMethod, const std::string &sReply) {
        const Entry stEntry = EntryOf(sMethod);
        stPlatform.mapReplies[stEntry.uiRpcId] = {0, sReply};
        Answer stAnswer = stEntry.fnCall(stEnv);
        stEnv.EndCall();
        return stAnswer;
    }

    /// A reply of uiSize bytes with one text in it.
    static std::string With(uint32_t uiSize, uint32_t uiAt, const std::string &sText) {
        std::string sReply(uiSize, '\0');
        PutText(sReply, uiAt, sText);
        return sReply;
    }
};

TEST_F(DeviceMethodTest, TwelveMethodsAreTested) {
    EXPECT_EQ(DeviceEntries().size(), 12u);
}

TEST_F(DeviceMethodTest, UpTimeOfAllOnesLooksLikeAFailure) {
    EXPECT_EQ(CallWith("getDeviceUpTime", "\xFF\xFF\xFF\xFF"), NumberAnswerOf(-1));
    EXPECT_TRUE(stPlatform.astFaults.empty());
    EXPECT_EQ(CallWith("getDeviceUpTime", std::string(4, '\0')), NumberAnswerOf(0));
    EXPECT_EQ(CallWith("getDeviceUpTime", Word(0x80000000)), NumberAnswerOf(-2147483647 - 1));
}

TEST_F(DeviceMethodTest, EmptyTextIsNull) {
    EXPECT_EQ(CallWith("getDeviceMAC", std::string(18, '\0')), NullAnswer());
    EXPECT_EQ(CallWith("getDevicePassword", std::string(64, '\0')), NullAnswer());
    for (const char *pcMethod : {"getDeviceManufacturerOUI", "getDeviceSerialNumber"}) {
        EXPECT_EQ(CallWith(pcMethod, std::string(265, '\0')), NullAnswer()) << pcMethod;
    }
    for (const char *pcMethod : {"getDeviceDefaultWebPassword", "getDeviceDefaultSSID1Name",
                                 "getDeviceDefaultSSID1Password"}) {
        EXPECT_EQ(CallWith(pcMethod, std::string(192, '\0')), NullAnswer()) << pcMethod;
    }
    EXPECT_FALSE(stEnv.bPending);
}

TEST_F(DeviceMethodTest, TextsAtTheirLimits) {
    const Answer stFault = TextAnswerOf("{ \"Result\": -1 }");
    const struct {
        const char *pcMethod;
        uint32_t uiReplySize;
        uint32_t uiAt;
        uint32_t uiLongest;
    } astLimits[] = {
        {"getDeviceMAC", 18, 0, 17},
        {"getDeviceManufacturerOUI", 265, 65, 6},
        {"getDeviceSerialNumber", 265, 137, 127},
        {"getDeviceDefaultWebPassword", 192, 64, 127},
        {"getDeviceDefaultSSID1Name", 192, 0, 31},
        {"getDeviceDefaultSSID1Password", 192, 32, 31},
    };
    for (const auto &stLimit : astLimits) {
        SCOPED_TRACE(stLimit.pcMethod);
        stPlatform.ClearRecords();
        const std::string sLongest(stLimit.uiLongest, 'k');
        EXPECT_EQ(CallWith(stLimit.pcMethod, With(stLimit.uiReplySize, stLimit.uiAt, sLongest)),
                  TextAnswerOf(sLongest));
        EXPECT_TRUE(stPlatform.astFaults.empty());
        EXPECT_EQ(
            CallWith(stLimit.pcMethod, With(stLimit.uiReplySize, stLimit.uiAt, sLongest + "k")),
            stFault);
        EXPECT_EQ(FaultCodes(stPlatform), (Codes{0xF7700005, 0xF7700005}));
    }
}

TEST_F(DeviceMethodTest, DevicePasswordMayFillItsReply) {
    EXPECT_EQ(CallWith("getDevicePassword", std::string(64, 'k')),
              TextAnswerOf(std::string(64, 'k')));
    EXPECT_EQ(CallWith("getDevicePassword", Field(std::string(63, 'k'), 64)),
              TextAnswerOf(std::string(63, 'k')));
}

TEST_F(DeviceMethodTest, TextsOutsideAsciiArriveWhole) {
    EXPECT_EQ(CallWith("getDeviceDefaultSSID1Name", With(192, 0, "Caf\xC3\xA9 \xF0\x9F\x8F\xA0")),
              TextAnswerOf("Caf\xC3\xA9 \xF0\x9F\x8F\xA0"));
}

TEST_F(DeviceMethodTest, RatesPassThrough) {
    stPlatform.uiCpuRate = 0;
    stPlatform.uiMemRate = 0;
    EXPECT_EQ(EntryOf("getCPUOccupancyRate").fnCall(stEnv), NumberAnswerOf(1));
    EXPECT_EQ(EntryOf("getRAMOccupancyRate").fnCall(stEnv), NumberAnswerOf(0));
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(DeviceMethodTest, FaultObjectIsTracedBehindTheCall) {
    EXPECT_EQ(EntryOf("getDeviceMAC").fnCall(stEnv), TextAnswerOf("{ \"Result\": -1 }"));
    ASSERT_EQ(stPlatform.astTraces.size(), 2u);
    EXPECT_EQ(stPlatform.astTraces[1].sText, "pcJsonStr:{ \"Result\": -1 }\r\n");
}

// What the worker refuses to hand out has reached its reply buffer all the same.
TEST_F(DeviceMethodTest, SecretsTooLongForTheirMethodAreWiped) {
    const std::string sSecret = "a secret that is longer than its field can be";
    stWorld.stSecrets.Watch(sSecret.substr(0, 32));
    EXPECT_EQ(CallWith("getDeviceDefaultSSID1Password", With(192, 32, sSecret)),
              TextAnswerOf("{ \"Result\": -1 }"));
    ASSERT_EQ(stPlatform.astRpcs.size(), 1u);
}

}  // namespace
}  // namespace wap::test
