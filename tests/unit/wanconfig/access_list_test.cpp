// The list of WAN connections as Java gets it.
#include "unit/wanconfig/wanconfig_fixture.h"
#include "wan/jni_access_info.h"

namespace wap::test {
namespace {

constexpr const char *kEmptyList = "{ \"Result\": 0, \"List\": [ ] }";

class WanListTest : public WanConfigTest {
  protected:
    Answer CallWith(Reply stReply) {
        stPlatform.mapReplies[kAskList] = std::move(stReply);
        return Call("getWANIfList");
    }
};

TEST_F(WanListTest, AsksOnceAndTracesNothing) {
    EXPECT_EQ(Call("getWANIfList"),
              TextAnswerOf("{ \"Result\": 0, \"List\": [ { \"Index\": 269488129, \"Name\": "
                           "\"1_INTERNET_R_VID_100\" }, { \"Index\": 537923586, \"Name\": "
                           "\"2_TR069_R_VID_46\" } ] }"));
    // No request: a word of 0 stands for it.
    ExpectOnlyRpc(stPlatform, {"gulm", 48, kAskList, Word(0), 2116});
    EXPECT_EQ(EntryTraces(stPlatform), Calls{});
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(WanListTest, FailedRequestIsAnEmptyList) {
    for (const uint32_t uiStatus : {kRefused, kMinusOne, kMinusTwo}) {
        // With a list that must not be believed.
        EXPECT_EQ(CallWith({uiStatus, WanListBytes({{1, "a name"}})}), TextAnswerOf(kEmptyList));
        EXPECT_EQ(FilesOf(uiStatus).front(), "jni_rpc.cpp");
        EXPECT_EQ(FilesOf(uiStatus).back(), kAccessWorkers);
    }
}

TEST_F(WanListTest, NoConnectionsAreAnEmptyList) {
    EXPECT_EQ(CallWith({0, WanListBytes({})}), TextAnswerOf(kEmptyList));
    EXPECT_EQ(CallWith({0, ""}), TextAnswerOf(kEmptyList));
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(WanListTest, CountsBeyondTheReplyAreNotBelieved) {
    std::vector<std::pair<uint32_t, std::string>> astWans;
    std::string sWanted = "{ \"Result\": 0, \"List\": [";
    for (uint32_t i = 1; i <= 8; ++i) {
        astWans.emplace_back(i, "w");
        sWanted += std::string(i == 1 ? "" : ",") + " { \"Index\": " + std::to_string(i) +
                   ", \"Name\": \"w\" }";
    }
    sWanted += " ] }";
    std::string sList = WanListBytes(astWans);
    EXPECT_EQ(CallWith({0, sList}), TextAnswerOf(sWanted));
    for (const uint32_t uiCount : {9u, 1000u, 0x80000000u, 0xFFFFFFFFu}) {
        EXPECT_EQ(CallWith({0, sList.replace(0, 4, Word(uiCount))}), TextAnswerOf(sWanted));
    }
}

TEST_F(WanListTest, ListOfExactlyTheBuffersSize) {
    // What stands around a name of one connection is 52 bytes long, and a zero comes behind.
    const size_t uiLongest = 259;
    const std::string sAround =
        "{ \"Result\": 0, \"List\": [ { \"Index\": 1, \"Name\": \"\" }, "
        "{ \"Index\": 2, \"Name\": \"\" } ] }";
    const size_t uiRest = 511 - sAround.size() - uiLongest;
    const auto Wans = [&](size_t uiSecond) {
        return WanListBytes({{1, std::string(uiLongest, 'a')}, {2, std::string(uiSecond, 'b')}});
    };
    EXPECT_EQ(CallWith({0, Wans(uiRest)}),
              TextAnswerOf("{ \"Result\": 0, \"List\": [ { \"Index\": 1, \"Name\": \"" +
                           std::string(uiLongest, 'a') + "\" }, { \"Index\": 2, \"Name\": \"" +
                           std::string(uiRest, 'b') + "\" } ] }"));
    EXPECT_EQ(CallWith({0, Wans(uiRest + 1)}), TextAnswerOf(kFault));
    EXPECT_EQ(FilesOf(1).back(), kAccessEntries);
}

TEST_F(WanListTest, NamesWithoutAnEndStayInTheirFields) {
    std::string sList = WanListBytes({{1, std::string(260, 'a')}});
    EXPECT_EQ(CallWith({0, sList}),
              TextAnswerOf("{ \"Result\": 0, \"List\": [ { \"Index\": 1, \"Name\": \"" +
                           std::string(260, 'a') + "\" } ] }"));
    EXPECT_EQ(CallWith({0, std::string(2116, 'x')}), TextAnswerOf(kFault));
}

TEST_F(WanListTest, EveryMissingBlockOfMemoryIsAFailure) {
    (void)Call("getWANIfList");
    const uint32_t uiAllocs = stWorld.Count(Op::kAlloc);
    ASSERT_GT(uiAllocs, 10u);
    const Answer stGood = EntryOf(WanConfigEntries(), "getWANIfList").stGood;
    for (const bool bForever : {false, true}) {
        for (uint32_t uiAt = 1; uiAt <= uiAllocs; ++uiAt) {
            SCOPED_TRACE(uiAt);
            stWorld.Plan({Op::kAlloc, uiAt, bForever});
            const Answer stAnswer = Call("getWANIfList");
            stWorld.Plan({});
            EXPECT_EQ(stAnswer, TextAnswerOf(kFault));
            EXPECT_FALSE(stPlatform.astFaults.empty());
            stWorld.ExpectClean();
            EXPECT_EQ(Call("getWANIfList"), stGood);
        }
    }
}

TEST_F(WanListTest, WorkerRefusesNoBuffer) {
    char acBuf[4] = "abc";
    EXPECT_EQ(VT_JNI_GetWANIfList(nullptr, 512), 1u);
    EXPECT_EQ(VT_JNI_GetWANIfList(acBuf, 0), 1u);
    EXPECT_STREQ(acBuf, "abc");
    EXPECT_TRUE(stPlatform.astRpcs.empty());
    EXPECT_EQ(FilesOf(1), (Calls{kAccessWorkers, kAccessWorkers}));
    EXPECT_EQ(VT_JNI_GetWANIfList(acBuf, sizeof(acBuf)), 1u);
    EXPECT_STREQ(acBuf, "abc");
}

}  // namespace
}  // namespace wap::test
