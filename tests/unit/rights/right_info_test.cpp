// The right information of the FTP and of the Samba service, and the segment that it comes in.
#include <atomic>
#include <cerrno>
#include <chrono>
#include <thread>

#include "unit/rights/rights_fixture.h"

namespace wap::test {
namespace {

constexpr const char *kFault = "{ \"Result\": -1 }";
// IPC_CREAT and 0777.
constexpr int32_t kMakeFlags = 01777;

class RightInfoTest : public ServiceTest {
  protected:
    Answer Get() { return GetWith(stEnv); }
    Answer GetWith(FakeJni &stJni) const {
        const jstring jText = stService.pfnGetRight(&stJni, stJni.JavaObject());
        Answer stAnswer{stJni.Utf8Of(jText), std::nullopt};
        stJni.EndCall();
        return stAnswer;
    }
    uint32_t SizeFor(uint32_t uiCount) const { return uiCount * stService.uiBytesPerAccount + 128; }
    uint32_t Size() const { return SizeFor(stService.uiAccounts); }

    std::string Made(uint32_t uiSize) const {
        return "VT_OS_ShmGet " + std::to_string(stService.iKey) + " " + std::to_string(uiSize) +
               " " + std::to_string(kMakeFlags);
    }
    /// The look for a segment of any size.
    std::string Found() const { return "VT_OS_ShmGet " + std::to_string(stService.iKey) + " 0 0"; }
    /// The calls of the segment functions, in order.
    Calls ShmCalls() const {
        Calls asCalls;
        for (const std::string &sCall : stPlatform.asCalls) {
            if (sCall.starts_with("VT_OS_Shm")) {
                asCalls.push_back(sCall);
            }
        }
        return asCalls;
    }
    WantedRpc FillRpc(uint32_t uiSize) const { return ProxyRpc(stService.uiFill, Word(uiSize)); }
    /// What the segment is filled with.
    void FillWith(const std::string &sBytes) { FurnishRights(stWorld, sBytes, sBytes); }
};

TEST_P(RightInfoTest, TheSegmentsTextIsTheAnswer) {
    EXPECT_EQ(Get(), TextAnswerOf(stService.pcText));
    EXPECT_TRUE(stPlatform.astFaults.empty());
    EXPECT_EQ(ShmCalls(), (Calls{Made(Size()), "VT_OS_ShmAt 0 null 0", "VT_OS_ShmDt",
                                 "VT_OS_ShmCtl 0 0 null"}));
    ExpectAsked({CountRpc(), FillRpc(Size())});
    // The next segment is another one.
    EXPECT_EQ(Get(), TextAnswerOf(stService.pcText));
    EXPECT_EQ(ShmCalls().at(3), "VT_OS_ShmCtl 1 0 null");
}

TEST_P(RightInfoTest, TheSizeGrowsWithTheAccounts) {
    for (const uint32_t uiCount : {0u, 1u, 2u, 300u}) {
        AnswerWith(stService.uiCount, Word(uiCount));
        EXPECT_EQ(Get(), TextAnswerOf(stService.pcText));
        EXPECT_EQ(ShmCalls().at(0), Made(SizeFor(uiCount)));
        ExpectAsked({CountRpc(), FillRpc(SizeFor(uiCount))});
    }
}

TEST_P(RightInfoTest, ATextIsReadUpToTheSegmentsEndAndNoFurther) {
    const std::string sLongest(Size() - 1, 't');
    FillWith(sLongest + '\0');
    EXPECT_EQ(Get(), TextAnswerOf(sLongest));
    FillWith(std::string(Size() + 100, 't'));
    EXPECT_EQ(Get(), TextAnswerOf(sLongest + 't'));
    AnswerWith(stService.uiCount, Word(0));
    EXPECT_EQ(Get(), TextAnswerOf(std::string(128, 't')));
}

TEST_P(RightInfoTest, AnEmptyTextIsNull) {
    FillWith("");
    EXPECT_EQ(Get(), NullAnswer());
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_P(RightInfoTest, WithoutACountNoSegmentIsMade) {
    Refuse(stService.uiCount);
    EXPECT_EQ(Get(), TextAnswerOf(kFault));
    EXPECT_TRUE(ShmCalls().empty());
    EXPECT_EQ(FaultCodes(stPlatform), (Codes{kRefused, kMinusOne, kMinusOne}));
    EXPECT_EQ(Recorded(kWorkerFile, kMinusOne), 1u);
    EXPECT_EQ(Recorded(kQueryFile, kMinusOne), 1u);
    EXPECT_TRUE(HasEntryTrace(stPlatform, "pcJsonStr:{ \"Result\": -1 }\r\n"));
    ExpectAsked({CountRpc()});
}

TEST_P(RightInfoTest, ACountThatNoSizeHoldsIsRefused) {
    const uint32_t uiMost = (0xFFFFFFFF - 128) / stService.uiBytesPerAccount;
    for (const uint32_t uiCount : {uiMost + 1, 0x7FFFFFFFu, 0xFFFFFFFFu}) {
        AnswerWith(stService.uiCount, Word(uiCount));
        EXPECT_EQ(Get(), TextAnswerOf(kFault));
        EXPECT_TRUE(ShmCalls().empty());
        EXPECT_EQ(Recorded(kSegmentFile, kMinusOne, {0, uiCount}), 1u);
        ExpectAsked({CountRpc()});
    }
    // The most that a size holds is asked for; there is no such memory here.
    AnswerWith(stService.uiCount, Word(uiMost));
    EXPECT_EQ(Get(), TextAnswerOf(kFault));
    EXPECT_EQ(ShmCalls(), Calls{Made(SizeFor(uiMost))});
    EXPECT_EQ(Recorded(kSegmentFile, kMinusOne, {ENOMEM, uiMost, SizeFor(uiMost)}), 1u);
}

TEST_P(RightInfoTest, ASegmentThatCanNotBeMade) {
    stPlatform.mapStatus = {{"VT_OS_ShmGet", EACCES}};
    EXPECT_EQ(Get(), TextAnswerOf(kFault));
    EXPECT_EQ(ShmCalls(), Calls{Made(Size())});
    EXPECT_EQ(FaultCodes(stPlatform), (Codes{kMinusOne, kMinusOne}));
    EXPECT_EQ(Recorded(kSegmentFile, kMinusOne, {EACCES, stService.uiAccounts, Size()}), 1u);
    EXPECT_EQ(Recorded(kQueryFile, kMinusOne), 1u);
    ExpectAsked({CountRpc()});
}

TEST_P(RightInfoTest, ASegmentThatIsNotFilledIsRemoved) {
    Refuse(stService.uiFill);
    EXPECT_EQ(Get(), TextAnswerOf(kFault));
    EXPECT_EQ(ShmCalls(), (Calls{Made(Size()), "VT_OS_ShmCtl 0 0 null"}));
    EXPECT_EQ(FaultCodes(stPlatform), (Codes{kRefused, kMinusOne, kMinusOne}));
    EXPECT_EQ(Recorded(kWorkerFile, kRefused, {stService.uiFill}), 1u);
    EXPECT_EQ(Recorded(kSegmentFile, kMinusOne, {0, stService.uiAccounts, Size()}), 1u);
    ExpectAsked({CountRpc(), FillRpc(Size())});
}

TEST_P(RightInfoTest, ASegmentThatIsNotAttachedIsRemoved) {
    stPlatform.mapStatus = {{"VT_OS_ShmAt", EMFILE}};
    EXPECT_EQ(Get(), TextAnswerOf(kFault));
    EXPECT_EQ(ShmCalls(), (Calls{Made(Size()), "VT_OS_ShmAt 0 null 0", "VT_OS_ShmCtl 0 0 null"}));
    EXPECT_EQ(Recorded(kSegmentFile, kMinusOne, {EMFILE, stService.uiAccounts, Size()}), 1u);
}

TEST_P(RightInfoTest, ASegmentThatIsNotDetachedIsRemovedAndItsTextDropped) {
    stPlatform.mapStatus = {{"VT_OS_ShmDt", EINVAL}};
    EXPECT_EQ(Get(), TextAnswerOf(kFault));
    EXPECT_EQ(ShmCalls(), (Calls{Made(Size()), "VT_OS_ShmAt 0 null 0", "VT_OS_ShmDt",
                                 "VT_OS_ShmCtl 0 0 null"}));
    EXPECT_EQ(Recorded(kSegmentFile, kMinusOne, {EINVAL, stService.uiAccounts, Size()}), 1u);
}

TEST_P(RightInfoTest, ASegmentThatIsNotRemovedIsAFailure) {
    stPlatform.mapStatus = {{"VT_OS_ShmCtl", EPERM}};
    EXPECT_EQ(Get(), TextAnswerOf(kFault));
    EXPECT_EQ(FaultCodes(stPlatform), (Codes{kMinusOne, kMinusOne}));
    EXPECT_EQ(Recorded(kSegmentFile, kMinusOne, {EPERM, stService.uiAccounts, Size()}), 1u);
}

TEST_P(RightInfoTest, WhoAsksGetsNoTextWithAFailure) {
    const Share eShare = stService.iKey == kFtpRightKey ? Share::kFtp : Share::kSamba;
    for (const char *pcFails : {"VT_OS_ShmDt", "VT_OS_ShmCtl"}) {
        stPlatform.mapStatus = {{pcFails, EPERM}};
        SecretBlock stText;
        EXPECT_EQ(FetchRightText(eShare, stText), kMinusOne);
        EXPECT_FALSE(stText) << pcFails;
    }
}

TEST_P(RightInfoTest, WithoutMemoryForTheTextTheSegmentIsRemoved) {
    stWorld.Plan({Op::kAlloc, 1, false});
    EXPECT_EQ(Get(), TextAnswerOf(kFault));
    stWorld.Plan({});
    EXPECT_EQ(Recorded(kSegmentFile, kNoMemory, {0, stService.uiAccounts, Size()}), 1u);
    EXPECT_EQ(ShmCalls().back(), "VT_OS_ShmCtl 0 0 null");
}

// A segment of a process that died is taken as it is if it is large enough.
TEST_P(RightInfoTest, AForgottenSegmentIsUsedAndRemoved) {
    const int32_t iId = VT_OS_ShmGet(stService.iKey, Size() + 50, kMakeFlags);
    EXPECT_EQ(Get(), TextAnswerOf(stService.pcText));
    EXPECT_EQ(stPlatform.stShm.mapSegments.count(iId), 0u);
}

// One that is too small, because accounts were added since, makes room for one that is not.
TEST_P(RightInfoTest, AForgottenSegmentThatIsTooSmallIsReplaced) {
    const int32_t iId = VT_OS_ShmGet(stService.iKey, Size() - 1, kMakeFlags);
    stPlatform.ClearRecords();
    EXPECT_EQ(Get(), TextAnswerOf(stService.pcText));
    EXPECT_EQ(ShmCalls(), (Calls{Made(Size()), Found(), "VT_OS_ShmCtl 0 0 null", Made(Size()),
                                 "VT_OS_ShmAt 1 null 0", "VT_OS_ShmDt", "VT_OS_ShmCtl 1 0 null"}));
    EXPECT_TRUE(stPlatform.astFaults.empty());
    EXPECT_EQ(stPlatform.stShm.mapSegments.count(iId), 0u);
    ExpectAsked({CountRpc(), FillRpc(Size())});
}

TEST_P(RightInfoTest, AForgottenSegmentThatIsNotRemovedIsAFailure) {
    (void)VT_OS_ShmGet(stService.iKey, Size() - 1, kMakeFlags);
    stPlatform.ClearRecords();
    stPlatform.mapStatus = {{"VT_OS_ShmCtl", EPERM}};
    EXPECT_EQ(Get(), TextAnswerOf(kFault));
    EXPECT_EQ(ShmCalls(), (Calls{Made(Size()), Found(), "VT_OS_ShmCtl 0 0 null"}));
    EXPECT_EQ(FaultCodes(stPlatform), (Codes{kMinusOne, kMinusOne}));
    EXPECT_EQ(Recorded(kSegmentFile, kMinusOne, {EINVAL, stService.uiAccounts, Size()}), 1u);
    EXPECT_EQ(Recorded(kQueryFile, kMinusOne), 1u);
    ExpectAsked({CountRpc()});
}

// A size that no segment can have is refused with the same error, and then none is in the way.
TEST_P(RightInfoTest, ASizeThatIsRefusedIsAFailure) {
    stPlatform.mapStatus = {{"VT_OS_ShmGet", EINVAL}};
    EXPECT_EQ(Get(), TextAnswerOf(kFault));
    EXPECT_EQ(ShmCalls(), (Calls{Made(Size()), Found()}));
    EXPECT_EQ(Recorded(kSegmentFile, kMinusOne, {EINVAL, stService.uiAccounts, Size()}), 1u);
    ExpectAsked({CountRpc()});
}

TEST_P(RightInfoTest, TheWorkerHasASegmentOfThatSizeFilled) {
    EXPECT_EQ(stService.pfnFillWorker(0x12345678), 0u);
    ExpectAsked({FillRpc(0x12345678)});
    Refuse(stService.uiFill);
    EXPECT_EQ(stService.pfnFillWorker(1), kMinusOne);
}

/// Calls in a World of its own.
Answer GetElsewhere(const Service &stService, const std::function<void(World &)> &fnFurnish) {
    World stOther;
    FakeJni stJni;
    fnFurnish(stOther);
    const jstring jText = stService.pfnGetRight(&stJni, stJni.JavaObject());
    Answer stAnswer{stJni.Utf8Of(jText), std::nullopt};
    stJni.EndCall();
    stOther.ExpectClean();
    return stAnswer;
}

// From a segment's making to its removal nobody else reads about the same service.
TEST_P(RightInfoTest, ReadersOfAServiceTakeTurns) {
    constexpr int kThreads = 3;
    constexpr int kRounds = 4;
    std::atomic<int> iInside{0};
    std::atomic<int> iMeetings{0};
    const auto fnFurnish = [&](World &stOther) {
        FurnishRights(stOther);
        auto fnAnswer = stOther.stPlatform.fnReply;
        stOther.stPlatform.fnReply = [&, fnAnswer](const RpcRecord &stRpc) {
            if (stRpc.uiRpcId == stService.uiFill) {
                iMeetings += iInside.fetch_add(1) == 0 ? 0 : 1;
                std::this_thread::sleep_for(std::chrono::milliseconds(5));
            }
            return fnAnswer(stRpc);
        };
        stOther.stPlatform.stShm.fnDetached = [&] { --iInside; };
    };
    std::vector<std::thread> astThreads;
    astThreads.reserve(kThreads);
    for (int i = 0; i < kThreads; ++i) {
        astThreads.emplace_back([&] {
            for (int iRound = 0; iRound < kRounds; ++iRound) {
                EXPECT_EQ(GetElsewhere(stService, fnFurnish), TextAnswerOf(stService.pcText));
            }
        });
    }
    for (std::thread &stThread : astThreads) {
        stThread.join();
    }
    EXPECT_EQ(iMeetings, 0);
    EXPECT_EQ(iInside, 0);
}

// A failure of any kind gives the turn back, and one service does not wait for the other.
TEST_P(RightInfoTest, TheOtherServiceIsReadMeanwhile) {
    for (const Service &stOther : Services()) {
        if (stOther.iKey == stService.iKey) {
            continue;
        }
        Answer stOtherAnswer;
        auto fnAnswer = stPlatform.fnReply;
        stPlatform.fnReply = [&](const RpcRecord &stRpc) {
            if (stRpc.uiRpcId == stService.uiFill) {
                std::thread([&] {
                    stOtherAnswer =
                        GetElsewhere(stOther, [](World &stFresh) { FurnishRights(stFresh); });
                }).join();
            }
            return fnAnswer(stRpc);
        };
        EXPECT_EQ(Get(), TextAnswerOf(stService.pcText));
        EXPECT_EQ(stOtherAnswer, TextAnswerOf(stOther.pcText));
    }
}

WAP_EACH_SERVICE(RightInfoTest);

}  // namespace
}  // namespace wap::test
