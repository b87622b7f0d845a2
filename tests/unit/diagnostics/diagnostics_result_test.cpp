// The results of the network diagnostics.
#include <memory>
#include <set>
#include <string>

#include "access/jni_dns_diagnostics.h"
#include "access/jni_ping_diagnostics.h"
#include "access/jni_traceroute_diagnostics.h"
#include "faults/fault_sweep.h"
#include "unit/diagnostics/diagnostics_fixture.h"

namespace wap::test {
namespace {

class PingResultTest : public DiagnosticsTest {};

TEST_F(PingResultTest, ReplyIsTheTextItself) {
    char acBuf[512] = "untouched, and longer than what comes";
    stPlatform.mapReplies[kAskPing] = {0, "{\"Result\":0}"};
    EXPECT_EQ(VT_JNI_GetIPPingDiagnosticsResult(acBuf, sizeof(acBuf)), 0u);
    EXPECT_EQ(std::string(acBuf, sizeof(acBuf)), Field("{\"Result\":0}", 512));
    ExpectOnlyRpc(stPlatform, {"app_m", 249, kAskPing, Word(0), 512});
    ExpectNoFaults();
    EXPECT_EQ(EntryTraces(stPlatform), Calls{});
}

TEST_F(PingResultTest, ReplyEndsWithTheBuffer) {
    char acBuf[8] = {};
    stPlatform.mapReplies[kAskPing] = {0, std::string(600, 'x')};
    EXPECT_EQ(VT_JNI_GetIPPingDiagnosticsResult(acBuf, 4), 0u);
    EXPECT_EQ(std::string(acBuf, sizeof(acBuf)), Field("xxxx", 8));
}

TEST_F(PingResultTest, WithoutBufferNobodyIsAsked) {
    char acBuf[1] = {'u'};
    EXPECT_EQ(VT_JNI_GetIPPingDiagnosticsResult(nullptr, 512), 1u);
    EXPECT_EQ(VT_JNI_GetIPPingDiagnosticsResult(acBuf, 0), 1u);
    EXPECT_EQ(acBuf[0], 'u');
    EXPECT_TRUE(stPlatform.astRpcs.empty());
    EXPECT_EQ(TimesRecorded("jni_ping_diagnostics.cpp", 1, {512, 0, 0, 0}), 1u);
}

TEST_F(PingResultTest, RefusalLeavesNoText) {
    char acBuf[16] = "untouched";
    stPlatform.mapReplies[kAskPing] = {kRefused, "half a text"};
    EXPECT_EQ(VT_JNI_GetIPPingDiagnosticsResult(acBuf, sizeof(acBuf)), kRefused);
    EXPECT_EQ(std::string(acBuf, sizeof(acBuf)), Field("", 16));
    EXPECT_EQ(TimesRecorded("jni_ping_diagnostics.cpp", kRefused), 1u);
}

/// The two results that are blocks. Their traces differ in more than the name.
struct Result {
    const char *pcName;
    uint32_t (*pfnWorker)(char **);
    uint32_t uiRpcId;
    const char *pcFile;
    const char *pcTrace;
};

class BlockResultTest : public DiagnosticsTest, public ::testing::WithParamInterface<Result> {
  protected:
    /// The text, or "" for a failure.
    std::string Get(uint32_t uiWanted = 0) {
        stPlatform.ClearRecords();
        char *pcText = nullptr;
        EXPECT_EQ(GetParam().pfnWorker(&pcText), uiWanted);
        EXPECT_EQ(pcText == nullptr, uiWanted != 0);
        std::string sText = pcText == nullptr ? "" : pcText;
        VT_OS_MemFreeD(pcText, __FILE_NAME__, __LINE__);
        return sText;
    }
    void Answer(const Reply &stReply) { stPlatform.mapReplies[GetParam().uiRpcId] = stReply; }
    /// The failure is recorded once in the worker's name.
    void ExpectRecorded(uint32_t uiCode, const Args &auiArgs = {}) {
        EXPECT_EQ(TimesRecorded(GetParam().pcFile, uiCode, auiArgs), 1u);
    }
};

TEST_P(BlockResultTest, TextOfTheBlockIsTheResult) {
    Answer(DiagTextReply("{\"Result\":0,\"a\":1}"));
    EXPECT_EQ(Get(), "{\"Result\":0,\"a\":1}");
    ExpectOnlyRpc(stPlatform, {"app_m", 249, GetParam().uiRpcId, Word(0), 16});
    EXPECT_EQ(stPlatform.asCalls, (Calls{"VT_VDATA_ReadData 4097 19", "VT_VDATA_FreeShm 4097"}));
    const std::string sTrace = GetParam().pcTrace;
    EXPECT_EQ(EntryTraces(stPlatform),
              (Calls{"stVdata Info DataID:4097 CompressedLen:19  OriginalLen = 19 \n\r",
                     sTrace + " buf len:18\r\n", sTrace + " buf :{\"Result\":0,\"a\":1}\r\n"}));
    for (const TraceRecord &stTrace : stPlatform.astTraces) {
        EXPECT_TRUE(stTrace.sText.find(" buf") == std::string::npos ||
                    stTrace.sFile == GetParam().pcFile)
            << stTrace.sFile << stTrace.sText;
    }
    ExpectNoFaults();
}

TEST_P(BlockResultTest, LongTextComesCompressed) {
    const std::string sLong(70000, 'r');
    Answer(DiagTextReply(sLong));
    EXPECT_EQ(Get(), sLong);
}

TEST_P(BlockResultTest, StatusIsToldInTheTextsPlace) {
    for (const int32_t iStatus : {7, 1, -1, INT32_MAX, INT32_MIN}) {
        Answer({0, Word(static_cast<uint32_t>(iStatus)) + std::string(12, '\xFF')});
        EXPECT_EQ(Get(), "{\"Result\":" + std::to_string(iStatus) + "}");
        EXPECT_EQ(stPlatform.asCalls, Calls{});
        EXPECT_EQ(EntryTraces(stPlatform), Calls{});
        ExpectNoFaults();
    }
}

TEST_P(BlockResultTest, BlockWithoutATextIsAFailure) {
    Answer(DiagBlockReply("no end"));
    EXPECT_EQ(Get(kMinusOne), "");
    ExpectRecorded(kMinusOne, {4097, 0, 0, 0});
    Answer(DiagTextReply(""));
    EXPECT_EQ(Get(kMinusOne), "");
    EXPECT_TRUE(stPlatform.mapBlocks.empty());
}

TEST_P(BlockResultTest, BlockThatCanNotBeReadIsAFailure) {
    for (const char *pcCall : {"VT_VDATA_ReadData", "VT_VDATA_FreeShm"}) {
        stPlatform.uiNextBlock = 9;
        stPlatform.mapStatus[pcCall] = 0x55;
        EXPECT_EQ(Get(0x55), "");
        ExpectRecorded(0x55, {9, 0, 0, 0});
        stPlatform.mapStatus.clear();
        stPlatform.mapBlocks.clear();
    }
    Answer({0, Word(0) + std::string(12, '\xFF')});
    EXPECT_EQ(Get(kNoMemory), "");
    // A short reply tells no status and names no block.
    Answer({0, ""});
    EXPECT_EQ(Get(kNoMemory), "");
}

TEST_P(BlockResultTest, RefusalIsRecorded) {
    Answer({kRefused, Word(7)});
    EXPECT_EQ(Get(kRefused), "");
    ExpectRecorded(kRefused);
}

TEST_P(BlockResultTest, WithoutPlaceForTheTextNobodyIsAsked) {
    EXPECT_EQ(GetParam().pfnWorker(nullptr), kNullArgument);
    EXPECT_TRUE(stPlatform.astRpcs.empty());
    ExpectRecorded(kNullArgument);
}

TEST_P(BlockResultTest, StatusNeedsMemoryToo) {
    Answer({0, Word(7)});
    stWorld.Plan({Op::kAlloc, 1, false});
    EXPECT_EQ(Get(1), "");
    stWorld.Plan({});
    ExpectRecorded(1, {7, 0, 0, 0});
}

TEST_P(BlockResultTest, SurvivesEveryFault) {
    auto pcText = std::make_shared<char *>(nullptr);
    auto uiResult = std::make_shared<uint32_t>(0);
    Subject stSubject;
    stSubject.sName = GetParam().pcName;
    stSubject.fnFurnish = [&](World &stRun) {
        stRun.stPlatform.mapReplies[GetParam().uiRpcId] = DiagTextReply("the text");
    };
    stSubject.fnCall = [&](FakeJni &) { *uiResult = GetParam().pfnWorker(pcText.get()); };
    stSubject.fnOutcome = [=](FakeJni &) {
        std::string sOutcome = std::to_string(*uiResult);
        sOutcome += *pcText == nullptr ? "" : *pcText;
        VT_OS_MemFreeD(*pcText, __FILE_NAME__, __LINE__);
        *pcText = nullptr;
        return sOutcome;
    };
    stSubject.sGood = "0the text";
    stSubject.fnAllowed = [&](const FaultPlan &stPlan) -> std::set<std::string> {
        switch (stPlan.eOp) {
            case Op::kAlloc:
                return {std::to_string(kNoMemory)};
            case Op::kRpc:
                return {std::to_string(kPlannedRpcStatus)};
            case Op::kBulk:
                return {std::to_string(kPlannedStatus)};
            default:
                return {stSubject.sGood};
        }
    };
    const OpCounts auiCounts = SweepFaults(stSubject);
    EXPECT_EQ(CountOf(auiCounts, Op::kBulk), 2u);
    EXPECT_EQ(CountOf(auiCounts, Op::kAlloc), 2u);
}

INSTANTIATE_TEST_SUITE_P(
    Workers, BlockResultTest,
    ::testing::Values(Result{"Dns", VT_JNI_getDnsDiagnosticsResult, kAskDns,
                             "jni_dns_diagnostics.cpp", "VT_JNI_getDnsDiagnosticsResult"},
                      Result{"TraceRoute", VT_JNI_getTraceRouteDiagnosticsResult, kAskTrace,
                             "jni_traceroute_diagnostics.cpp", "getTraceRouteDiagnosticsResult"}),
    [](const auto &stInfo) { return stInfo.param.pcName; });

}  // namespace
}  // namespace wap::test
