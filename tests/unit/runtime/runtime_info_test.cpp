// The objects that describe the Java runtime and the OSGi framework.
#include <memory>
#include <set>
#include <string>

#include "faults/fault_sweep.h"
#include "system/jni_runtime_info.h"
#include "unit/runtime/runtime_fixture.h"

namespace wap::test {
namespace {

constexpr const char *kJvm =
    "{ \"Result\": 0, \"Name\": \"OpenJDK Client VM \", \"Version\": \"1.8.0_212\", "
    "\"Vendor\": \"Oracle\" }";
constexpr const char *kNoJvm =
    "{ \"Result\": 1, \"Name\": \"\", \"Version\": \"\", \"Vendor\": \"\" }";
constexpr const char *kOsgi =
    "{ \"Result\": 0, \"Name\": \"Felix OSGi\", \"Version\": \"4.4.0\", "
    "\"Vendor\": \"Apache Software Foundation\" }";

using Worker = uint32_t (*)(char *, uint32_t);

struct Query {
    const char *pcName;
    Worker pfnWorker;
    const char *pcGood;
};

class RuntimeInfoTest : public RuntimeTest, public ::testing::WithParamInterface<Query> {
  protected:
    /// The text that a worker writes into so much room, or "untouched".
    std::string Ask(uint32_t uiWanted = 0, uint32_t uiCap = 128) {
        char acBuf[256] = "untouched";
        stPlatform.ClearRecords();
        EXPECT_EQ(GetParam().pfnWorker(acBuf, uiCap), uiWanted);
        return acBuf;
    }
    const std::string sGood = GetParam().pcGood;
};

TEST_P(RuntimeInfoTest, WritesAndTracesTheObject) {
    EXPECT_EQ(Ask(), sGood);
    EXPECT_EQ(EntryTraces(stPlatform).back(), "pcOutBuffer:" + sGood + "\r\n");
    EXPECT_EQ(stPlatform.astTraces.back().sFile, kFile);
    EXPECT_TRUE(stPlatform.astFaults.empty());
    EXPECT_TRUE(stPlatform.astRpcs.empty());
}

TEST_P(RuntimeInfoTest, FitsWithItsZeroOrNotAtAll) {
    const auto uiLength = static_cast<uint32_t>(sGood.size());
    EXPECT_EQ(Ask(0, uiLength + 1), sGood);
    EXPECT_EQ(Ask(0xF7700005, uiLength), "untouched");
    EXPECT_EQ(TimesRecorded(kFile, 0xF7700005, {uiLength, uiLength, 0, 0}), 1u);
    EXPECT_EQ(Ask(0xF7700005, 0), "untouched");
}

TEST_P(RuntimeInfoTest, NullBufferIsRefusedWithoutAnything) {
    EXPECT_EQ(GetParam().pfnWorker(nullptr, 128), 1u);
    EXPECT_EQ(FaultCodes(stPlatform), Codes{1});
    EXPECT_EQ(TimesRecorded(kFile, 1), 1u);
    EXPECT_TRUE(stPlatform.asCalls.empty());
}

// Nothing is written when memory runs out, and what is written is never half of it.
TEST_P(RuntimeInfoTest, EveryAllocationThatFailsHasItsCode) {
    auto pstOutcome = std::make_shared<std::string>();
    Subject stSubject;
    stSubject.sName = GetParam().pcName;
    stSubject.fnFurnish = FurnishRuntime;
    stSubject.fnCall = [&](FakeJni &) {
        char acBuf[128] = "untouched";
        const uint32_t uiResult = GetParam().pfnWorker(acBuf, sizeof(acBuf));
        *pstOutcome = std::to_string(uiResult) + " " + acBuf;
    };
    stSubject.fnOutcome = [&](FakeJni &) { return *pstOutcome; };
    EXPECT_EQ(OutcomesWithoutMemory(stSubject),
              (std::set<std::string>{std::to_string(0xF7100000u) + " untouched",  // no object
                                     std::to_string(kMinusOne) + " untouched",    // no value
                                     "1 untouched"}));                            // no text
}

INSTANTIATE_TEST_SUITE_P(Both, RuntimeInfoTest,
                         ::testing::Values(Query{"Jvm", VT_JNI_GetJVMInfo, kJvm},
                                           Query{"Osgi", VT_JNI_GetOSGiInfo, kOsgi}),
                         [](const auto &stInfo) { return stInfo.param.pcName; });

class JvmInfoTest : public RuntimeTest {
  protected:
    std::string Ask(uint32_t uiWanted = 0) {
        char acBuf[128] = "untouched";
        EXPECT_EQ(VT_JNI_GetJVMInfo(acBuf, sizeof(acBuf)), uiWanted);
        return acBuf;
    }
};

TEST_F(JvmInfoTest, WithoutOutputTheResultIsOne) {
    stPlatform.stFiles.mapFiles.clear();
    EXPECT_EQ(Ask(), kNoJvm);
    // Seen by the reader, and by the one that asked it.
    EXPECT_EQ(FaultCodes(stPlatform), (Codes{1, 1}));
    EXPECT_EQ(TimesRecorded(kFile, 1), 2u);
    FurnishRuntime(stWorld);
    stPlatform.mapStatus["VT_OS_Fopen"] = 1;
    EXPECT_EQ(Ask(), kNoJvm);
}

TEST_F(JvmInfoTest, RefusedCommandAloneIsNoFailure) {
    stPlatform.mapStatus["VT_OS_ExecShellCmdEx"] = kRefused;
    EXPECT_EQ(Ask(), kJvm);
    EXPECT_EQ(FaultCodes(stPlatform), Codes{kRefused});
}

TEST_F(JvmInfoTest, LongestTextsFit) {
    const std::string s31(31, '5');
    stPlatform.stFiles.mapFiles[kVersionPath] =
        "version \"" + s31 + "\"\nOpenJDK\nVM" + std::string(29, 'x') + "(\n";
    EXPECT_EQ(Ask(), "{ \"Result\": 0, \"Name\": \"VM" + std::string(29, 'x') +
                         "\", \"Version\": \"" + s31 + "\", \"Vendor\": \"Oracle\" }");
}

// Escapes make a text longer than its field.
TEST_F(JvmInfoTest, EscapesThatDoNotFitAreAFailure) {
    stPlatform.stFiles.mapFiles[kVersionPath] =
        "version \"" + std::string(31, '/') + "\"\nVM" + std::string(29, '\x01') + "(\n";
    EXPECT_EQ(Ask(0xF7700005), "untouched");
    EXPECT_EQ(FaultCodes(stPlatform), Codes{0xF7700005});
}

TEST(OsgiInfo, AsksNobody) {
    ResetBridge();
    World stWorld;
    char acBuf[128] = "";
    EXPECT_EQ(VT_JNI_GetOSGiInfo(acBuf, sizeof(acBuf)), 0u);
    EXPECT_STREQ(acBuf, kOsgi);
    EXPECT_TRUE(stWorld.stPlatform.asCalls.empty());
    EXPECT_EQ(stWorld.stPlatform.astTraces.size(), 1u);
    stWorld.ExpectClean();
}

}  // namespace
}  // namespace wap::test
