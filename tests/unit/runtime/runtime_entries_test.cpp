// The Java methods of the runtime descriptions, the reset, the lights and the voice lines, as Java
// sees them.
#include <string>

#include "support/entry_table_runtime.h"
#include "unit/runtime/runtime_fixture.h"

namespace wap::test {
namespace {

class RuntimeEntryTest : public RuntimeTest, public ::testing::WithParamInterface<Entry> {
  protected:
    const Entry &stEntry = GetParam();
};

/// Which source holds an entry, and the line that it traces first; null for none.
struct EntryStart {
    const char *pcFile;
    const char *pcTrace;
};

EntryStart StartOf(const std::string &sMethod) {
#define WAP_JAVA "Java_com_veltra_domoline_deviceservice_kavo_wap_"
    if (sMethod == "getJVMInfo") {
        return {"DeviceInfoQueryServiceJNI.cpp",
                "\n " WAP_JAVA "gulm_jni_DeviceInfoQueryServiceJNI_getJVMInfo called \r\n"};
    }
    if (sMethod == "getOSGiInfo") {
        return {"DeviceInfoQueryServiceJNI.cpp",
                "\n " WAP_JAVA "gulm_jni_DeviceInfoQueryServiceJNI_getOSGiInfo called \r\n"};
    }
    if (sMethod == "reset") {
        return {"DeviceRsetServiceJNI.cpp", nullptr};
    }
    if (sMethod == "setLedSwitch") {
        return {"DeviceConfigServiceJNI.cpp",
                "\r\n " WAP_JAVA "gulm_jni_DeviceConfigServiceJNI_setLedSwitch called \r\n"};
    }
    if (sMethod == "getPOTSInfo") {
        return {"VoIPInfoQueryServiceJNI.cpp", "\r\n GetPOTSInfo called \r\n"};
    }
    return {"VoIPInfoSubscribeServiceJNI.cpp",
            sMethod == "getSubscribeVoIPEvent"
                ? "\r\n " WAP_JAVA
                  "voip_jni_VoIPInfoSubscribeServiceJNI_getSubscribeVoIPEvent called \r\n"
                : "\r\n " WAP_JAVA
                  "voip_jni_VoIPInfoSubscribeServiceJNI_getUnSubscribeVoIPEvent called \r\n"};
#undef WAP_JAVA
}

TEST_P(RuntimeEntryTest, TracesTheCallFirst) {
    (void)stEntry.fnCall(stEnv);
    const EntryStart stStart = StartOf(stEntry.sMethod);
    if (stStart.pcTrace == nullptr) {
        EXPECT_TRUE(stPlatform.astTraces.empty());
        return;
    }
    ASSERT_FALSE(stPlatform.astTraces.empty());
    EXPECT_EQ(stPlatform.astTraces[0].sText, stStart.pcTrace);
    EXPECT_EQ(stPlatform.astTraces[0].sFile, stStart.pcFile);
    EXPECT_EQ(stPlatform.astTraces[0].uiMid, 249u);
}

TEST_P(RuntimeEntryTest, AnswersFromAWorkingGateway) {
    EXPECT_EQ(stEntry.fnCall(stEnv), stEntry.stGood);
    EXPECT_TRUE(stPlatform.astFaults.empty());
    EXPECT_EQ(RpcIds(stPlatform), stEntry.uiRpcId == 0 ? Codes{} : Codes{stEntry.uiRpcId});
}

TEST_P(RuntimeEntryTest, AnswersItsFailureWhenRefusedAndWorksAgain) {
    stPlatform.mapStatus["VT_OS_Fopen"] = 1;
    // The framework's description asks nobody: only memory can fail it.
    stWorld.Plan({stEntry.sMethod == "getOSGiInfo" ? Op::kAlloc : Op::kRpc, 1, true});
    EXPECT_EQ(stEntry.fnCall(stEnv), stEntry.stFailure);
    EXPECT_FALSE(stPlatform.astFaults.empty());
    stWorld.Plan({});
    stPlatform.mapStatus.clear();
    EXPECT_EQ(stEntry.fnCall(stEnv), stEntry.stGood);
}

// What is said of a failure that Java sees: the entry's own record comes last.
TEST_P(RuntimeEntryTest, RecordsAFailureInItsOwnSource) {
    stWorld.Plan({stEntry.uiRpcId == 0 ? Op::kAlloc : Op::kRpc, 1, true});
    (void)stEntry.fnCall(stEnv);
    ASSERT_FALSE(stPlatform.astFaults.empty());
    const bool bSubscription = stEntry.sMethod.ends_with("SubscribeVoIPEvent");
    EXPECT_EQ(stPlatform.astFaults.back().sFile,
              bSubscription ? "voip_events.cpp" : StartOf(stEntry.sMethod).pcFile);
}

INSTANTIATE_TEST_SUITE_P(Methods, RuntimeEntryTest, ::testing::ValuesIn(RuntimeEntries()),
                         [](const auto &stInfo) { return stInfo.param.sMethod; });

class RuntimeAnswerTest : public RuntimeTest, public ::testing::WithParamInterface<const char *> {
  protected:
    const Entry stEntry = EntryOf(RuntimeEntries(), GetParam());
};

TEST_P(RuntimeAnswerTest, NoMemoryForTheObjectIsTheFixedFailure) {
    stWorld.Plan({Op::kAlloc, 1, true});
    EXPECT_EQ(stEntry.fnCall(stEnv), TextAnswerOf("{\"Result\":-1}"));
    EXPECT_EQ(TimesRecorded("DeviceInfoQueryServiceJNI.cpp", 0xF7100000), 1u);
}

TEST_P(RuntimeAnswerTest, NullWhenJavaFails) {
    (void)stEntry.fnCall(stEnv);
    const uint32_t uiCalls = stWorld.Count(Op::kJni);
    ASSERT_GT(uiCalls, 0u);
    for (uint32_t uiAt = 1; uiAt <= uiCalls; ++uiAt) {
        stWorld.Plan({Op::kJni, uiAt, false});
        EXPECT_EQ(stEntry.fnCall(stEnv), NullAnswer()) << uiAt;
        stWorld.Plan({});
        stEnv.EndCall();
        stWorld.ExpectClean();
    }
}

INSTANTIATE_TEST_SUITE_P(Both, RuntimeAnswerTest, ::testing::Values("getJVMInfo", "getOSGiInfo"),
                         [](const auto &stInfo) { return std::string(stInfo.param); });

TEST_F(RuntimeTest, JvmInfoThatDoesNotFitIsTheFixedFailure) {
    stPlatform.stFiles.mapFiles[kVersionPath] = "VM" + std::string(29, '\x01') + "(\n";
    const Entry stEntry = EntryOf(RuntimeEntries(), "getJVMInfo");
    EXPECT_EQ(stEntry.fnCall(stEnv), TextAnswerOf("{\"Result\":-1}"));
    EXPECT_EQ(TimesRecorded("DeviceInfoQueryServiceJNI.cpp", 0xF7700005), 1u);
}

// Six characters for each byte without a sign of its own: the longest description that has room,
// and one character more.
TEST_F(RuntimeTest, JvmInfoHasRoomFor127Characters) {
    const Entry stEntry = EntryOf(RuntimeEntries(), "getJVMInfo");
    const auto fnAnswer = [&](size_t uiSixfold, size_t uiPlain) {
        stPlatform.stFiles.mapFiles[kVersionPath] =
            "version \"" + std::string(uiSixfold, '\x01') + std::string(uiPlain, 'v') + "\"\n";
        stPlatform.ClearRecords();
        return stEntry.fnCall(stEnv);
    };
    std::string sLongest = R"({ "Result": 0, "Name": "", "Version": ")";
    for (int i = 0; i < 8; ++i) {
        sLongest += R"(\u0001)";
    }
    sLongest += R"(vvvvvvvvvvvvvvvvvvvvvvv", "Vendor": "" })";
    ASSERT_EQ(sLongest.size(), 127u);
    EXPECT_EQ(fnAnswer(8, 23), TextAnswerOf(sLongest));
    EXPECT_TRUE(stPlatform.astFaults.empty());
    EXPECT_EQ(fnAnswer(9, 18), TextAnswerOf("{\"Result\":-1}"));
    EXPECT_EQ(TimesRecorded("jni_runtime_info.cpp", 0xF7700005, {128, 128}), 1u);
    EXPECT_EQ(TimesRecorded("DeviceInfoQueryServiceJNI.cpp", 0xF7700005), 1u);
}

}  // namespace
}  // namespace wap::test
