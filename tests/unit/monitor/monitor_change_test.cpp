// Adding addresses to the registry and taking them out: what is announced, sent and answered.
#include <string>

#include "unit/monitor/monitor_fixture.h"

namespace wap::test {
namespace {

/// The two changes.
struct Change {
    const char *pcName;
    uint32_t (*pfnWorker)(const char *, uint32_t, const char *, uint32_t);
    uint32_t uiOperation;
    uint32_t uiRpcId;
    const char *pcAct;
    char cNotice;
};

const Change kChanges[] = {
    {"Add", VT_JNI_addTrafficMonitoringDestAddress, 1, kAddMonitored, "add", '\1'},
    {"Delete", VT_JNI_deleteTrafficMonitoringDestAddress, 2, kDelMonitored, "del", '\0'},
};

std::string WithZero(const std::string &sText) {
    return sText + '\0';
}

class MonitorChangeTest : public MonitorTest, public ::testing::WithParamInterface<Change> {
  protected:
    uint32_t Call(const std::string &sList, const std::string &sBundle) {
        Forget();
        return stChange.pfnWorker(sList.c_str(), static_cast<uint32_t>(sList.size()),
                                  sBundle.c_str(), static_cast<uint32_t>(sBundle.size()));
    }
    /// The operation itself, with lengths that may be wrong.
    uint32_t Operate(const char *pcList, uint32_t uiListLen, const char *pcBundle,
                     uint32_t uiBundleLen) {
        Forget();
        return VT_API_TrafficMonitoringDestAddrOper(pcList, uiListLen, pcBundle, uiBundleLen,
                                                    stChange.uiOperation);
    }
    void Refuse() { stPlatform.mapReplies[stChange.uiRpcId].uiStatus = kRefused; }
    std::string Notice(const std::string &sBundle, const std::string &sList) const {
        return std::string(1, stChange.cNotice) + Field(sBundle, 128) + WithZero(sList);
    }
    void ExpectNothingSent() {
        EXPECT_TRUE(stPlatform.astRpcs.empty());
        EXPECT_TRUE(stPlatform.astMessages.empty());
        EXPECT_TRUE(stPlatform.asCalls.empty());
    }

    const Change &stChange = GetParam();
};

TEST_P(MonitorChangeTest, AnnouncesThenAsks) {
    EXPECT_EQ(Call("10.0.0.1,,10.0.0.2", "com.example.meter"), 0u);
    ASSERT_EQ(stPlatform.astMessages.size(), 1u);
    EXPECT_EQ(stPlatform.astMessages[0].sReceiver, "app_m");
    EXPECT_EQ(stPlatform.astMessages[0].uiType, 39u);
    EXPECT_EQ(stPlatform.astMessages[0].sData, Word(0x1001) + Word(148) + Word(148));
    EXPECT_EQ(astNotices.at(0).sBytes, Notice("com.example.meter", "10.0.0.1,,10.0.0.2"));
    ExpectOnlyRpc(stPlatform,
                  {"gulm", 216, stChange.uiRpcId,
                   Word(0x1002) + Word(19) + Word(19) + Field("com.example.meter", 256), 4});
    EXPECT_EQ(astLists.at(0).sBytes, WithZero("10.0.0.1,,10.0.0.2"));
    EXPECT_EQ(stPlatform.asCalls, (Calls{"VT_VDATA_CreShm 148", "VT_VDATA_UpdateData 4097 148",
                                         "VT_MSG_AsyncSendData app_m 39 12", "VT_VDATA_CreShm 19",
                                         "VT_VDATA_UpdateData 4098 19"}));
    EXPECT_EQ(EntryTraces(stPlatform),
              (Calls{std::string("BundleName [com.example.meter] Act [") + stChange.pcAct + "]\r\n",
                     "AddrStrList [10.0.0.1,,10.0.0.2]\r\n"}));
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

// An array of one empty element makes such a list.
TEST_P(MonitorChangeTest, EmptyListIsAListOfItsZero) {
    EXPECT_EQ(Call("", "b"), 0u);
    EXPECT_EQ(astLists.at(0).sBytes, WithZero(""));
    EXPECT_EQ(astNotices.at(0).sBytes, Notice("b", ""));
}

TEST_P(MonitorChangeTest, NameIsCutToTheFieldOfEachReceiver) {
    for (const size_t uiLength : {127u, 128u, 255u, 256u, 1000u}) {
        SCOPED_TRACE(uiLength);
        const std::string sBundle(uiLength, 'n');
        EXPECT_EQ(Call("1", sBundle), 0u);
        EXPECT_EQ(astNotices.at(0).sBytes, Notice(sBundle.substr(0, 127), "1"));
        EXPECT_EQ(stPlatform.astRpcs.at(0).sRequest.substr(12), Field(sBundle.substr(0, 255), 256));
        EXPECT_EQ(stPlatform.astRpcs.at(0).sRequest.size(), 268u);
    }
}

// With its zero and with what is before it in a notice, a list of 2047 bytes is one, and one of
// 1918 the other, that is still stored as it is.
TEST_P(MonitorChangeTest, LongListsAreCompressed) {
    for (const size_t uiLength : {1918u, 1919u, 2047u, 2048u, 60000u}) {
        SCOPED_TRACE(uiLength);
        const std::string sList(uiLength, '7');
        EXPECT_EQ(Call(sList, "b"), 0u);
        EXPECT_EQ(astNotices.at(0).sBytes, Notice("b", sList));
        EXPECT_EQ(astLists.at(0).sBytes, WithZero(sList));
        EXPECT_EQ(stPlatform.CountCalls("VT_OS_Compress"),
                  (uiLength > 1918 ? 1u : 0u) + (uiLength > 2047 ? 1u : 0u));
    }
}

TEST_P(MonitorChangeTest, NullIsRefusedWithoutAnyMessage) {
    EXPECT_EQ(Operate(nullptr, 0, "b", 1), 1u);
    ExpectNothingSent();
    EXPECT_TRUE(stPlatform.astTraces.empty());
    EXPECT_EQ(TimesRecorded(kMonitorFile, 1, {stChange.uiOperation}), 1u);
    EXPECT_EQ(Operate("1", 1, nullptr, 0), 1u);
    ExpectNothingSent();
    EXPECT_TRUE(stPlatform.astTraces.empty());
    EXPECT_EQ(TimesRecorded(kMonitorFile, 1, {stChange.uiOperation}), 1u);
    EXPECT_EQ(stChange.pfnWorker(nullptr, 0, nullptr, 0), 1u);
}

TEST_P(MonitorChangeTest, LengthsThatAreNotTheTextsAreRefusedWithoutAnyMessage) {
    struct Lengths {
        uint32_t uiList;
        uint32_t uiBundle;
    };
    for (const Lengths &stLengths : {Lengths{2, 2}, {4, 2}, {3, 1}, {3, 3}, {0, 2}, {3, 0}}) {
        EXPECT_EQ(Operate("1,2", stLengths.uiList, "me", stLengths.uiBundle), 1u);
        ExpectNothingSent();
        EXPECT_EQ(TimesRecorded(kMonitorFile, 1,
                                {stChange.uiOperation, stLengths.uiList, stLengths.uiBundle}),
                  1u);
        EXPECT_EQ(EntryTraces(stPlatform).size(), 2u);
    }
    EXPECT_EQ(Operate("1,2", 3, "me", 2), 0u);
}

TEST_P(MonitorChangeTest, RefusalComesBackAndTheListIsFreed) {
    Refuse();
    EXPECT_EQ(Call("10.0.0.1", "b"), kRefused);
    EXPECT_EQ(stPlatform.asCalls.back(), "VT_VDATA_FreeShm " + std::to_string(4098));
    EXPECT_TRUE(stPlatform.mapBlocks.empty());
    // By the call, and here with the operation.
    EXPECT_EQ(FaultCodes(stPlatform), Codes(2, kRefused));
    EXPECT_EQ(TimesRecorded(kMonitorFile, kRefused, {stChange.uiOperation}), 1u);
    // It was announced all the same.
    EXPECT_EQ(astNotices.size(), 1u);
}

TEST_P(MonitorChangeTest, ListThatIsGoneAlreadyIsNoOtherFailure) {
    Refuse();
    stPlatform.mapStatus["VT_VDATA_FreeShm"] = 0x0B0B0003;
    EXPECT_EQ(Call("10.0.0.1", "b"), kRefused);
    EXPECT_EQ(FaultCodes(stPlatform), Codes(2, kRefused));
}

TEST_P(MonitorChangeTest, GoodListBelongsToItsReceiver) {
    EXPECT_EQ(Call("10.0.0.1", "b"), 0u);
    EXPECT_EQ(stPlatform.CountCalls("VT_VDATA_FreeShm"), 0u);
}

TEST_P(MonitorChangeTest, ListThatCanNotBeWrittenIsNotSent) {
    // Not the notice's block, which is the first.
    stWorld.Plan({Op::kBulk, 3, false});
    EXPECT_EQ(Call("10.0.0.1", "b") & kPlannedStatus, kPlannedStatus);
    EXPECT_TRUE(stPlatform.astRpcs.empty());
    EXPECT_EQ(astNotices.size(), 1u);
    // With the operation and the length; and before that with the descriptor.
    const uint32_t uiCode = stPlatform.astFaults.back().uiCode;
    EXPECT_EQ(TimesRecorded(kMonitorFile, uiCode, {stChange.uiOperation, 8}), 1u);
    EXPECT_EQ(stPlatform.astFaults.size(), 2u);
}

TEST_P(MonitorChangeTest, NoticeThatCanNotBeMadeDoesNotMatter) {
    for (const uint32_t uiAt : {1u, 2u}) {
        Forget();
        stWorld.Plan({Op::kBulk, uiAt, false});
        EXPECT_EQ(Call("10.0.0.1", "b"), 0u);
        EXPECT_TRUE(stPlatform.astMessages.empty());
        EXPECT_EQ(astLists.size(), 1u);
        EXPECT_EQ(TimesRecorded(kMonitorFile, stPlatform.astFaults.back().uiCode,
                                {stChange.uiOperation, 8}),
                  1u);
    }
    stWorld.Plan({Op::kAlloc, 1, false});
    EXPECT_EQ(Call("10.0.0.1", "b"), 0u);
    EXPECT_TRUE(stPlatform.astMessages.empty());
    EXPECT_EQ(FaultCodes(stPlatform), Codes{kNoMemory});
    EXPECT_EQ(TimesRecorded(kMonitorFile, kNoMemory, {stChange.uiOperation, 8}), 1u);
}

TEST_P(MonitorChangeTest, NoticeThatNobodyHearsDoesNotMatter) {
    stPlatform.mapStatus["VT_MSG_AsyncSendData"] = 9;
    EXPECT_EQ(Call("10.0.0.1", "b"), 0u);
    EXPECT_TRUE(stPlatform.astFaults.empty());
    EXPECT_EQ(astLists.size(), 1u);
    // Its block does not stay.
    EXPECT_TRUE(stPlatform.mapBlocks.empty());
    EXPECT_EQ(stPlatform.CountCalls("VT_VDATA_FreeShm 4097"), 1u);
}

INSTANTIATE_TEST_SUITE_P(Both, MonitorChangeTest, ::testing::ValuesIn(kChanges),
                         [](const auto &stInfo) { return stInfo.param.pcName; });

// ---- the two functions called by other native code ----

class MonitorOperationTest : public MonitorTest {};

TEST_F(MonitorOperationTest, EveryOperationButAddingIsDeleting) {
    for (const uint32_t uiOperation : {0u, 2u, 3u, 0xFFFFFFFFu}) {
        Forget();
        EXPECT_EQ(VT_API_TrafficMonitoringDestAddrOper("1", 1, "b", 1, uiOperation), 0u);
        EXPECT_EQ(RpcIds(stPlatform), Codes{kDelMonitored});
        EXPECT_EQ(astNotices.at(0).sBytes.at(0), '\0');
    }
}

TEST_F(MonitorOperationTest, NoticeAlone) {
    EXPECT_EQ(VT_API_TrafficMonitoringNotifyAppM("1,2", 3, "me", 2, 1), 0u);
    EXPECT_EQ(astNotices.at(0).sBytes, "\1" + Field("me", 128) + WithZero("1,2"));
    EXPECT_TRUE(stPlatform.astRpcs.empty());
    EXPECT_TRUE(stPlatform.astTraces.empty());
}

// The block has the length that was said, whatever the list's is.
TEST_F(MonitorOperationTest, NoticeHoldsAsMuchOfTheListAsIsSaid) {
    EXPECT_EQ(VT_API_TrafficMonitoringNotifyAppM("1,2", 1, "me", 9, 2), 0u);
    EXPECT_EQ(astNotices.at(0).sBytes, WithZero("") + Field("me", 128) + WithZero("1"));
    EXPECT_EQ(VT_API_TrafficMonitoringNotifyAppM("1,2", 5, "me", 0, 2), 0u);
    EXPECT_EQ(astNotices.at(1).sBytes, WithZero("") + Field("me", 128) + Field("1,2", 6));
}

TEST_F(MonitorOperationTest, NoticeRefusesNull) {
    EXPECT_EQ(VT_API_TrafficMonitoringNotifyAppM(nullptr, 0, "me", 2, 1), 1u);
    EXPECT_EQ(VT_API_TrafficMonitoringNotifyAppM("1", 1, nullptr, 0, 1), 1u);
    EXPECT_EQ(TimesRecorded(kMonitorFile, 1, {1}), 2u);
    EXPECT_TRUE(stPlatform.asCalls.empty());
}

TEST_F(MonitorOperationTest, NoticeLongerThanAnyBlockIsRefused) {
    // 16 MB with what is around the list; and lengths with which 32 bits overflow.
    for (const uint32_t uiLength : {16777216u - 129u, 0xFFFFFFFFu, 0xFFFFFFFFu - 129u}) {
        Forget();
        EXPECT_EQ(VT_API_TrafficMonitoringNotifyAppM("1", uiLength, "me", 2, 1), kNoMemory);
        EXPECT_EQ(TimesRecorded(kMonitorFile, kNoMemory, {1, uiLength}), 1u);
        EXPECT_TRUE(stPlatform.asCalls.empty());
    }
}

}  // namespace
}  // namespace wap::test
