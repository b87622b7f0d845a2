// The three ways to ask a process: headers, lengths, time-outs, sender ids, traces and records.
#include <algorithm>
#include <map>
#include <thread>

#include "common/jni_common.h"
#include "support/entries.h"
#include "support/expect.h"

namespace wap::test {
namespace {

class RpcTest : public BridgeTest {
  protected:
    void SetUp() override {
        BridgeTest::SetUp();
        stPlatform.mapReplies[kAnyRpc] = {0, "reply!"};
    }

    const RpcRecord &OnlyRpc() {
        EXPECT_EQ(stPlatform.astRpcs.size(), 1u);
        return stPlatform.astRpcs.at(0);
    }

    /// One call of the bundle manager's proxy; gives the sender id that it carried.
    uint32_t SenderOfNextProxyCall() {
        const uint32_t uiRequest = 0;
        EXPECT_EQ(OSGI_JNI_BundleMng_RpcCall(0, kAnyRpc, &uiRequest, 4, nullptr, 0), 0u);
        return SenderOf(stPlatform.astRpcs.back());
    }

    static constexpr uint32_t kAnyRpc = 0x47209999;
    static constexpr uint32_t kRefused = 0x00C0FFEE;
};

TEST_F(RpcTest, GeneralCallSendsTheHeaderByteForByte) {
    const char acExpected[] =
        "\0\0\0\0"                                                      // reserved
        "jamvm\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0"   // sender
        "\0\0\0\0"                                                      // destination module
        "gulm\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0"  // receiver
        "\x41\x01\0\0"                                                  // sender module 321
        "\0\0\0\0\0\0\0\0";                                             // reserved
    static_assert(sizeof(acExpected) - 1 == 84);
    EXPECT_EQ(JNI_MSG_RpcCall("gulm", 321, kAnyRpc, "ask", 3, nullptr, 0), 0u);
    EXPECT_EQ(OnlyRpc().sHead, std::string(acExpected, 84));
}

TEST_F(RpcTest, ProxyCallSendsTheHeaderByteForByte) {
    const char acExpected[] =
        "\0\0\0\0"
        "jamvm\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0"
        "\x44\x33\x22\x11"
        "osgi_proxy\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0"
        "\x19\x01\0\0"  // sender module 281
        "\0\0\0\0\0\0\0\0";
    static_assert(sizeof(acExpected) - 1 == 84);
    EXPECT_EQ(OSGI_JNI_BundleMng_RpcCall(0x11223344, kAnyRpc, "ask", 3, nullptr, 0), 0u);
    EXPECT_EQ(OnlyRpc().sHead, std::string(acExpected, 84));
}

TEST_F(RpcTest, UsbCallSendsTheHeaderByteForByte) {
    const char acExpected[] =
        "\0\0\0\0"
        "jamvm\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0"
        "\0\0\0\0"
        "usb_mngt\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0"
        "\0\0\0\0"
        "\0\0\0\0\0\0\0\0";
    static_assert(sizeof(acExpected) - 1 == 84);
    EXPECT_EQ(VT_KAVO_USB_JNI_RpcCall(kAnyRpc, "ask", 3, nullptr, 0), 0u);
    EXPECT_EQ(OnlyRpc().sHead, std::string(acExpected, 84));
}

TEST_F(RpcTest, GeneralCallPassesBuffersLengthsAndTimeout) {
    char acReply[6] = {};
    EXPECT_EQ(JNI_MSG_RpcCall("app_m", 249, kAnyRpc, "question", 8, acReply, sizeof(acReply)), 0u);
    const RpcRecord &stRpc = OnlyRpc();
    EXPECT_EQ(stRpc.uiRpcId, kAnyRpc);
    EXPECT_EQ(stRpc.uiDstMid, 0u);
    EXPECT_EQ(stRpc.sRequest, "question");
    EXPECT_EQ(stRpc.pvRsp, acReply);
    EXPECT_EQ(stRpc.uiRspCap, 6u);
    EXPECT_EQ(stRpc.uiTimeoutMs, 5000u);
    EXPECT_EQ(std::string(acReply, 6), "reply!");
}

TEST_F(RpcTest, ProxyCallPassesBuffersLengthsAndTimeout) {
    char acReply[6] = {};
    EXPECT_EQ(OSGI_JNI_BundleMng_RpcCall(7, kAnyRpc, "question", 8, acReply, sizeof(acReply)), 0u);
    const RpcRecord &stRpc = OnlyRpc();
    EXPECT_EQ(stRpc.uiRpcId, kAnyRpc);
    EXPECT_EQ(stRpc.uiDstMid, 7u);
    EXPECT_EQ(stRpc.sRequest, "question");
    EXPECT_EQ(stRpc.pvRsp, acReply);
    EXPECT_EQ(stRpc.uiRspCap, 6u);
    EXPECT_EQ(stRpc.uiTimeoutMs, 30000u);
    EXPECT_EQ(std::string(acReply, 6), "reply!");
}

TEST_F(RpcTest, UsbCallPassesBuffersLengthsAndTimeout) {
    char acReply[6] = {};
    const char acRequest[] = "question";
    EXPECT_EQ(VT_KAVO_USB_JNI_RpcCall(kAnyRpc, acRequest, 8, acReply, sizeof(acReply)), 0u);
    const RpcRecord &stRpc = OnlyRpc();
    EXPECT_EQ(stRpc.uiRpcId, kAnyRpc);
    EXPECT_EQ(stRpc.uiDstMid, 0u);
    EXPECT_EQ(stRpc.pvReq, acRequest);
    EXPECT_EQ(stRpc.sRequest, "question");
    EXPECT_EQ(stRpc.pvRsp, acReply);
    EXPECT_EQ(stRpc.uiRspCap, 6u);
    EXPECT_EQ(stRpc.uiTimeoutMs, 30000u);
    EXPECT_EQ(std::string(acReply, 6), "reply!");
}

// A null buffer counts as a word of 0, whatever length came with it.
TEST_F(RpcTest, NullBuffersBecomeTwoSeparateZeroWords) {
    EXPECT_EQ(JNI_MSG_RpcCall("tarn", 1, kAnyRpc, nullptr, 999, nullptr, 888), 0u);
    EXPECT_EQ(OSGI_JNI_BundleMng_RpcCall(0, kAnyRpc, nullptr, 999, nullptr, 888), 0u);
    ASSERT_EQ(stPlatform.astRpcs.size(), 2u);
    for (const RpcRecord &stRpc : stPlatform.astRpcs) {
        EXPECT_EQ(stRpc.sRequest, Word(0));
        EXPECT_EQ(stRpc.uiReqLen, 4u);
        EXPECT_EQ(stRpc.sRspBefore, Word(0));
        EXPECT_EQ(stRpc.uiRspCap, 4u);
        EXPECT_NE(stRpc.pvRsp, nullptr);
        EXPECT_NE(stRpc.pvReq, stRpc.pvRsp);
    }
}

TEST_F(RpcTest, OnlyTheNullBufferIsReplaced) {
    char acReply[3] = {'x', 'y', 'z'};
    EXPECT_EQ(JNI_MSG_RpcCall("tarn", 1, kAnyRpc, nullptr, 999, acReply, 3), 0u);
    EXPECT_EQ(OnlyRpc().uiReqLen, 4u);
    EXPECT_EQ(OnlyRpc().pvRsp, acReply);
    EXPECT_EQ(OnlyRpc().sRspBefore, "xyz");
    stPlatform.ClearRecords();
    EXPECT_EQ(JNI_MSG_RpcCall("tarn", 1, kAnyRpc, "ab", 2, nullptr, 888), 0u);
    EXPECT_EQ(OnlyRpc().sRequest, "ab");
    EXPECT_EQ(OnlyRpc().uiRspCap, 4u);
}

TEST_F(RpcTest, LengthsOfGivenBuffersAreUsedAsTheyStand) {
    char acReply[1] = {'x'};
    EXPECT_EQ(JNI_MSG_RpcCall("tarn", 1, kAnyRpc, "", 0, acReply, 0), 0u);
    EXPECT_EQ(OnlyRpc().uiReqLen, 0u);
    EXPECT_EQ(OnlyRpc().uiRspCap, 0u);
    EXPECT_EQ(acReply[0], 'x');
}

TEST_F(RpcTest, UsbCallReplacesANullReplyOnly) {
    EXPECT_EQ(VT_KAVO_USB_JNI_RpcCall(kAnyRpc, "ab", 2, nullptr, 888), 0u);
    EXPECT_EQ(OnlyRpc().sRequest, "ab");
    EXPECT_EQ(OnlyRpc().uiRspCap, 4u);
    EXPECT_EQ(OnlyRpc().sRspBefore, Word(0));
    EXPECT_NE(OnlyRpc().pvRsp, nullptr);
}

TEST_F(RpcTest, UsbCallWithoutARequestIsRefused) {
    EXPECT_EQ(VT_KAVO_USB_JNI_RpcCall(kAnyRpc, nullptr, 4, nullptr, 0), kNullArgument);
    EXPECT_TRUE(stPlatform.astRpcs.empty());
    EXPECT_EQ(FaultCodes(stPlatform), (Codes{kNullArgument}));
}

TEST_F(RpcTest, GeneralCallTracesWhoAsksWhomForWhat) {
    EXPECT_EQ(JNI_MSG_RpcCall("igmp", 54, kAnyRpc, nullptr, 0, nullptr, 0), 0u);
    ASSERT_EQ(stPlatform.astTraces.size(), 1u);
    const TraceRecord &stTrace = stPlatform.astTraces[0];
    EXPECT_EQ(stTrace.uiMid, 281u);
    EXPECT_EQ(stTrace.uiZero, 0u);
    EXPECT_GT(stTrace.uiLine, 0u);
    EXPECT_EQ(stTrace.sFile, "jni_rpc.cpp");
    EXPECT_EQ(stTrace.sText,
              " === JNI_MSG_RpcCall !! ProcName:jamvm, RcvApp:igmp, RpcId:0x47209999\r\n");
}

TEST_F(RpcTest, TracedIdHasEightDigits) {
    stPlatform.mapReplies[0x1a] = {0, ""};
    EXPECT_EQ(JNI_MSG_RpcCall("igmp", 54, 0x1a, nullptr, 0, nullptr, 0), 0u);
    ASSERT_EQ(stPlatform.astTraces.size(), 1u);
    EXPECT_EQ(stPlatform.astTraces[0].sText,
              " === JNI_MSG_RpcCall !! ProcName:jamvm, RcvApp:igmp, RpcId:0x0000001a\r\n");
}

TEST_F(RpcTest, ProxyAndUsbCallsDoNotTrace) {
    EXPECT_EQ(OSGI_JNI_BundleMng_RpcCall(0, kAnyRpc, "a", 1, nullptr, 0), 0u);
    EXPECT_EQ(VT_KAVO_USB_JNI_RpcCall(kAnyRpc, "a", 1, nullptr, 0), 0u);
    EXPECT_TRUE(stPlatform.astTraces.empty());
}

TEST_F(RpcTest, SuccessIsNotRecorded) {
    EXPECT_EQ(JNI_MSG_RpcCall("gulm", 1, kAnyRpc, "a", 1, nullptr, 0), 0u);
    EXPECT_EQ(OSGI_JNI_BundleMng_RpcCall(0, kAnyRpc, "a", 1, nullptr, 0), 0u);
    EXPECT_EQ(VT_KAVO_USB_JNI_RpcCall(kAnyRpc, "a", 1, nullptr, 0), 0u);
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(RpcTest, GeneralAndUsbFailuresAreRecordedByTheirCodeAlone) {
    stPlatform.mapReplies[kAnyRpc].uiStatus = kRefused;
    EXPECT_EQ(JNI_MSG_RpcCall("gulm", 1, kAnyRpc, "a", 1, nullptr, 0), kRefused);
    EXPECT_EQ(VT_KAVO_USB_JNI_RpcCall(kAnyRpc, "a", 1, nullptr, 0), kRefused);
    EXPECT_EQ(FaultCodes(stPlatform), (Codes{kRefused, kRefused}));
    for (const FaultRecord &stFault : stPlatform.astFaults) {
        EXPECT_TRUE(stFault.bCodeOnly);
        EXPECT_EQ(stFault.sFile, "jni_rpc.cpp");
        EXPECT_GT(stFault.uiLine, 0u);
    }
}

TEST_F(RpcTest, ProxyFailureIsReturnedAndLeftToTheCallerToRecord) {
    stPlatform.mapReplies[kAnyRpc].uiStatus = kRefused;
    EXPECT_EQ(OSGI_JNI_BundleMng_RpcCall(0, kAnyRpc, "a", 1, nullptr, 0), kRefused);
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(RpcTest, NamesOf31BytesTravelWhole) {
    const std::string sName(31, 'n');
    stPlatform.sProcName = std::string(31, 'p');
    EXPECT_EQ(JNI_MSG_RpcCall(sName.c_str(), 5, kAnyRpc, "a", 1, nullptr, 0), 0u);
    EXPECT_EQ(OnlyRpc().sHead, MessageHead(std::string(31, 'p'), 0, sName, 5));
}

TEST_F(RpcTest, LongerSenderNameIsCutTo31Bytes) {
    stPlatform.sProcName = std::string(40, 'p');
    const std::string sCut(31, 'p');
    EXPECT_EQ(JNI_MSG_RpcCall("gulm", 5, kAnyRpc, "a", 1, nullptr, 0), 0u);
    EXPECT_EQ(OSGI_JNI_BundleMng_RpcCall(0, kAnyRpc, "a", 1, nullptr, 0), 0u);
    EXPECT_EQ(VT_KAVO_USB_JNI_RpcCall(kAnyRpc, "a", 1, nullptr, 0), 0u);
    ASSERT_EQ(stPlatform.astRpcs.size(), 3u);
    EXPECT_EQ(stPlatform.astRpcs[0].sHead, MessageHead(sCut, 0, "gulm", 5));
    EXPECT_EQ(stPlatform.astRpcs[1].sHead, MessageHead(sCut, 0, "osgi_proxy", 281));
    EXPECT_EQ(stPlatform.astRpcs[2].sHead, MessageHead(sCut, 0, "usb_mngt", 0));
}

// A shortened receiver could be somebody else's name, so none is sent at all.
TEST_F(RpcTest, ReceiverNameOf32BytesIsNotShortened) {
    const std::string sName(32, 'n');
    (void)JNI_MSG_RpcCall(sName.c_str(), 5, kAnyRpc, "a", 1, nullptr, 0);
    // It goes out with no name, which the platform refuses.
    EXPECT_EQ(OnlyRpc().sHead, MessageHead("jamvm", 0, "", 5));
}

TEST_F(RpcTest, ProcessWithoutANameSendsAnEmptyOne) {
    stPlatform.bNoProcName = true;
    EXPECT_EQ(JNI_MSG_RpcCall("gulm", 5, kAnyRpc, "a", 1, nullptr, 0), 0u);
    EXPECT_EQ(OnlyRpc().sHead, MessageHead("", 0, "gulm", 5));
    ASSERT_EQ(stPlatform.astTraces.size(), 1u);
    EXPECT_EQ(stPlatform.astTraces[0].sText,
              " === JNI_MSG_RpcCall !! ProcName:, RcvApp:gulm, RpcId:0x47209999\r\n");
}

TEST_F(RpcTest, NullReceiverIsRefused) {
    EXPECT_EQ(JNI_MSG_RpcCall(nullptr, 5, kAnyRpc, "a", 1, nullptr, 0), kNullArgument);
    EXPECT_TRUE(stPlatform.astRpcs.empty());
    EXPECT_EQ(FaultCodes(stPlatform), (Codes{kNullArgument}));
}

TEST_F(RpcTest, ProxySendersTakeTurns) {
    const uint32_t auiExpected[] = {281, 282, 283, 284, 285, 286, 281, 282};
    for (const uint32_t uiExpected : auiExpected) {
        EXPECT_EQ(SenderOfNextProxyCall(), uiExpected);
    }
    EXPECT_EQ(g_stJNIOsgiMid.uiCounter, 8u);
}

TEST_F(RpcTest, OtherCallsDoNotTakeATurn) {
    EXPECT_EQ(SenderOfNextProxyCall(), 281u);
    EXPECT_EQ(JNI_MSG_RpcCall("gulm", 1, kAnyRpc, "a", 1, nullptr, 0), 0u);
    EXPECT_EQ(VT_KAVO_USB_JNI_RpcCall(kAnyRpc, "a", 1, nullptr, 0), 0u);
    EXPECT_EQ(SenderOfNextProxyCall(), 282u);
}

TEST_F(RpcTest, FailedProxyCallHasTakenItsTurn) {
    stPlatform.astNextReplies.push_back({kRefused, ""});
    EXPECT_EQ(OSGI_JNI_BundleMng_RpcCall(0, kAnyRpc, "a", 1, nullptr, 0), kRefused);
    EXPECT_EQ(SenderOfNextProxyCall(), 282u);
}

// 4294967295 is 3 more than a multiple of 6; after it the count starts anew.
TEST_F(RpcTest, CounterWrapsAt32Bits) {
    g_stJNIOsgiMid.uiCounter = 0xFFFFFFFE;
    EXPECT_EQ(SenderOfNextProxyCall(), 283u);
    EXPECT_EQ(SenderOfNextProxyCall(), 284u);
    EXPECT_EQ(g_stJNIOsgiMid.uiCounter, 0u);
    EXPECT_EQ(SenderOfNextProxyCall(), 281u);
}

TEST_F(RpcTest, MutexIsMadeOnceAndTakenPerCall) {
    EXPECT_EQ(SenderOfNextProxyCall(), 281u);
    EXPECT_EQ(stPlatform.asCalls,
              (Calls{"VT_OS_MutexInit", "VT_OS_MutexLock", "VT_OS_MutexUnLock"}));
    EXPECT_EQ(g_stJNIOsgiMid.uiMutexReady, 1u);
    stPlatform.ClearRecords();
    EXPECT_EQ(SenderOfNextProxyCall(), 282u);
    EXPECT_EQ(stPlatform.asCalls, (Calls{"VT_OS_MutexLock", "VT_OS_MutexUnLock"}));
}

TEST_F(RpcTest, AnyOtherMutexFlagThanOneMeansNotMade) {
    g_stJNIOsgiMid.uiMutexReady = 2;
    EXPECT_EQ(SenderOfNextProxyCall(), 281u);
    EXPECT_EQ(stPlatform.asCalls,
              (Calls{"VT_OS_MutexInit", "VT_OS_MutexLock", "VT_OS_MutexUnLock"}));
    EXPECT_EQ(g_stJNIOsgiMid.uiMutexReady, 1u);
}

TEST_F(RpcTest, MutexThatCannotBeMadeCostsNoTurnAndIsTriedAgain) {
    stPlatform.mapStatus["VT_OS_MutexInit"] = 0x77;
    EXPECT_EQ(SenderOfNextProxyCall(), 281u);
    EXPECT_EQ(SenderOfNextProxyCall(), 282u);
    EXPECT_EQ(stPlatform.asCalls, (Calls{"VT_OS_MutexInit", "VT_OS_MutexInit"}));
    EXPECT_EQ(FaultCodes(stPlatform), (Codes{0x77, 0x77}));
    EXPECT_EQ(g_stJNIOsgiMid.uiMutexReady, 0u);
    stPlatform.mapStatus.clear();
    stPlatform.ClearRecords();
    EXPECT_EQ(SenderOfNextProxyCall(), 283u);
    EXPECT_EQ(stPlatform.asCalls,
              (Calls{"VT_OS_MutexInit", "VT_OS_MutexLock", "VT_OS_MutexUnLock"}));
}

TEST_F(RpcTest, MutexThatCannotBeLockedIsNotUnlocked) {
    stPlatform.mapStatus["VT_OS_MutexLock"] = 0x78;
    EXPECT_EQ(SenderOfNextProxyCall(), 281u);
    EXPECT_EQ(SenderOfNextProxyCall(), 282u);
    EXPECT_EQ(stPlatform.CountCalls("VT_OS_MutexLock"), 2u);
    EXPECT_EQ(stPlatform.CountCalls("VT_OS_MutexUnLock"), 0u);
}

TEST_F(RpcTest, MutexIsNotHeldDuringTheCall) {
    const uint32_t uiRequest = 0;
    EXPECT_EQ(OSGI_JNI_BundleMng_RpcCall(0, kAnyRpc, &uiRequest, 4, nullptr, 0), 0u);
    EXPECT_EQ(stPlatform.iLocksHeld, 0);
    ASSERT_FALSE(stPlatform.asCalls.empty());
    EXPECT_EQ(stPlatform.asCalls.back(), "VT_OS_MutexUnLock");
}

TEST_F(RpcTest, SharedStateHasItsExportedLayout) {
    EXPECT_EQ(sizeof(g_stJNIOsgiMid), 32u);
    EXPECT_EQ(SenderOfNextProxyCall(), 281u);
    const uint8_t *pucState = reinterpret_cast<const uint8_t *>(&g_stJNIOsgiMid);
    EXPECT_EQ(std::string(pucState, pucState + 8), Word(1) + Word(1));
}

TEST_F(RpcTest, ThreadsShareTheTurns) {
    constexpr uint32_t kThreads = 6;
    constexpr uint32_t kCallsEach = 100;
    std::vector<std::map<uint32_t, uint32_t>> amapSenders(kThreads);
    std::vector<size_t> auiMutexes(kThreads);
    std::vector<std::thread> astThreads;
    for (uint32_t i = 0; i < kThreads; ++i) {
        astThreads.emplace_back([&amapSenders, &auiMutexes, i] {
            World stOwnWorld;
            stOwnWorld.stPlatform.mapReplies[kAnyRpc] = {0, ""};
            for (uint32_t uiCall = 0; uiCall < kCallsEach; ++uiCall) {
                (void)OSGI_JNI_BundleMng_RpcCall(0, kAnyRpc, "a", 1, nullptr, 0);
            }
            for (const RpcRecord &stRpc : stOwnWorld.stPlatform.astRpcs) {
                ++amapSenders[i][SenderOf(stRpc)];
            }
            auiMutexes[i] = stOwnWorld.stPlatform.CountCalls("VT_OS_MutexInit");
            stOwnWorld.ExpectClean();
        });
    }
    for (std::thread &stThread : astThreads) {
        stThread.join();
    }
    std::map<uint32_t, uint32_t> mapTotal;
    size_t uiMutexes = 0;
    for (uint32_t i = 0; i < kThreads; ++i) {
        uiMutexes += auiMutexes[i];
        for (const auto &[uiSender, uiCount] : amapSenders[i]) {
            mapTotal[uiSender] += uiCount;
        }
    }
    EXPECT_EQ(mapTotal,
              (std::map<uint32_t, uint32_t>{
                  {281, 100}, {282, 100}, {283, 100}, {284, 100}, {285, 100}, {286, 100}}));
    EXPECT_EQ(uiMutexes, 1u);
    EXPECT_EQ(g_stJNIOsgiMid.uiCounter, 600u);
}

}  // namespace
}  // namespace wap::test
