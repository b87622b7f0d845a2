// The list of the bindings of all LAN ports and SSIDs.
#include <json-c/json.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "faults/fault_sweep.h"
#include "unit/vlanbind/vlanbind_fixture.h"
#include "wan/jni_vlan_bind.h"

namespace wap::test {
namespace {

constexpr const char *kEmptyList = "{ \"Result\": 0, \"List\": [ ] }";
constexpr uint32_t kJsonNoObject = 0xF7100000;
constexpr uint32_t kJsonWrongType = 0xF7100007;

std::string JsonRow(const std::string &sInterface, const std::string &sBind) {
    return "{ \"LanInterface\": \"" + sInterface + "\", \"Bind\": \"" + sBind + "\" }";
}

std::string JsonList(const std::string &sRows) {
    return "{ \"Result\": 0, \"List\": [ " + sRows + " ] }";
}

const WantedRpc kLanPortsQuery = {"gulm", 50, kAskLanPorts, Word(1), 36};
const WantedRpc kSsidsQuery = {"app_m", 249, kAskSsids, Word(0), 1124};
WantedRpc LanBindQuery(uint32_t uiPort) {
    return {"gulm", 107, kAskLanBind, Word(uiPort), 329};
}

class VlanListTest : public VlanBindTest {
  protected:
    /// Nobody has a binding.
    void SetUp() override {
        VlanBindTest::SetUp();
        AnswerLanPorts(0);
        AnswerSsids({});
    }

    std::string List(uint32_t uiWanted = 0) {
        char *pcText = nullptr;
        EXPECT_EQ(VT_JNI_GetAllVlanBind(&pcText), uiWanted);
        EXPECT_EQ(pcText == nullptr, uiWanted != 0);
        std::string sText = pcText == nullptr ? "" : pcText;
        VT_OS_MemFreeD(pcText, __FILE_NAME__, __LINE__);
        return sText;
    }

    /// Answers the query about each port with what the function makes of its number.
    void AnswerEachPort(const std::function<Reply(uint32_t)> &fnReply) {
        stPlatform.fnReply = [=](const RpcRecord &stRpc) -> std::optional<Reply> {
            if (stRpc.uiRpcId != kAskLanBind) {
                return std::nullopt;
            }
            return fnReply(WordAt(stRpc.sRequest, 0));
        };
    }
};

TEST_F(VlanListTest, IsEmptyWithoutPortsAndSsids) {
    EXPECT_EQ(List(), kEmptyList);
    ExpectRpcs({kLanPortsQuery, kSsidsQuery});
    EXPECT_EQ(EntryTraces(stPlatform),
              (Calls{"\r\n lan InstNum:0\r\n", "\r\n wlan InstID:2054847098 num:0\r\n"}));
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(VlanListTest, LanPortsComeFirstThenSsids) {
    AnswerLanPorts(2);
    AnswerEachPort([](uint32_t uiPort) {
        return Reply{0, LanBindBytes(std::to_string(uiPort) + "/100")};
    });
    AnswerSsids({{5, "20/200"}, {1, "30/300,40/400"}});
    EXPECT_EQ(List(), JsonList(JsonRow("LAN1", "1\\/100") + ", " + JsonRow("LAN2", "2\\/100") +
                               ", " + JsonRow("SSID5", "20\\/200") + ", " +
                               JsonRow("SSID1", "30\\/300,40\\/400")));
    ExpectRpcs({kLanPortsQuery, LanBindQuery(1), LanBindQuery(2), kSsidsQuery});
    EXPECT_EQ(
        EntryTraces(stPlatform),
        (Calls{"\r\n lan InstNum:2\r\n",
               "\r\n uiRet:0x0, uiInstID:1, Mode:1, Vlan:1/100, Mac:77, EthType:eth\r\n",
               "\r\n uiRet:0x0, uiInstID:2, Mode:1, Vlan:2/100, Mac:77, EthType:eth\r\n",
               "\r\n wlan InstID:5 num:2\r\n", "\r\n wlan uiInstID:5, Mode:1, Vlan:20/200\r\n",
               "\r\n wlan uiInstID:1, Mode:1, Vlan:30/300,40/400\r\n"}));
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

// LAN ports are listed only when they are bound, SSIDs always.
TEST_F(VlanListTest, ModeDecidesAboutLanPortsAlone) {
    for (const uint32_t uiMode : {0u, 2u, 0xFFFFFFFFu}) {
        stPlatform.ClearRecords();
        AnswerLanPorts(1);
        stPlatform.mapReplies[kAskLanBind] = {0, LanBindBytes("10/100", uiMode)};
        AnswerSsids({{3, "20/200", uiMode}});
        EXPECT_EQ(List(), JsonList(JsonRow("SSID3", "20\\/200")));
        const std::string sMode = std::to_string(uiMode);
        EXPECT_TRUE(HasEntryTrace(stPlatform, "\r\n uiRet:0x0, uiInstID:1, Mode:" + sMode +
                                                  ", Vlan:10/100, Mac:77, EthType:eth\r\n"));
        EXPECT_TRUE(
            HasEntryTrace(stPlatform, "\r\n wlan uiInstID:3, Mode:" + sMode + ", Vlan:20/200\r\n"));
    }
}

// There is room for the numbers of eight ports in the reply that counts them, and for eight SSIDs.
TEST_F(VlanListTest, CountsAreBoundedByTheirReplies) {
    for (const uint32_t uiCount : {8u, 9u, 0x7FFFFFFFu, 0xFFFFFFFFu}) {
        stPlatform.ClearRecords();
        AnswerLanPorts(uiCount);
        stPlatform.mapReplies[kAskLanBind] = {0, LanBindBytes("1/1", 0)};
        std::vector<SsidFacts> astSsids;
        std::string sRows;
        for (uint32_t i = 1; i <= 8; ++i) {
            astSsids.push_back({i, "1"});
            sRows += (i == 1 ? "" : ", ") + JsonRow("SSID" + std::to_string(i), "1");
        }
        stPlatform.mapReplies[kAskSsids] = {0, SsidBytes(astSsids, uiCount)};
        EXPECT_EQ(List(), JsonList(sRows));
        EXPECT_EQ(stPlatform.astRpcs.size(), 10u);
        EXPECT_EQ(stPlatform.astRpcs.at(8).sRequest, Word(8));
        // The trace tells what came.
        EXPECT_TRUE(
            HasEntryTrace(stPlatform, "\r\n lan InstNum:" + std::to_string(uiCount) + "\r\n"));
        EXPECT_TRUE(HasEntryTrace(stPlatform,
                                  "\r\n wlan InstID:1 num:" + std::to_string(uiCount) + "\r\n"));
    }
}

TEST_F(VlanListTest, SsidNamesHaveSevenCharactersAtMost) {
    AnswerSsids({{999, "1"}, {1000, "2"}, {0x80000000, "3"}});
    EXPECT_EQ(List(), JsonList(JsonRow("SSID999", "1") + ", " + JsonRow("SSID100", "2") + ", " +
                               JsonRow("SSID-21", "3")));
}

TEST_F(VlanListTest, TextsEndWithTheirFields) {
    AnswerLanPorts(1);
    stPlatform.mapReplies[kAskLanBind] = {
        0, Word(0xFFFFFFFF) + std::string(192, 'e') + Word(1) + std::string(129, 'l')};
    stPlatform.mapReplies[kAskSsids] = {
        0, Word(1) + Word(7) + Word(9) + std::string(132, 's') + std::string(980, 't')};
    EXPECT_EQ(List(), JsonList(JsonRow("LAN1", std::string(129, 'l')) + ", " +
                               JsonRow("SSID7", std::string(132, 's'))));
    EXPECT_TRUE(HasEntryTrace(stPlatform,
                              "\r\n uiRet:0x0, uiInstID:1, Mode:1, Vlan:" + std::string(129, 'l') +
                                  ", Mac:4294967295, EthType:" + std::string(192, 'e') + "\r\n"));
    EXPECT_TRUE(HasEntryTrace(
        stPlatform, "\r\n wlan uiInstID:7, Mode:9, Vlan:" + std::string(132, 's') + "\r\n"));
}

TEST_F(VlanListTest, ShortRepliesAreFilledWithZeros) {
    // Each port's reply starts from zeros, not from that of the port before it.
    AnswerLanPorts(2);
    AnswerEachPort([](uint32_t uiPort) {
        return Reply{0, uiPort == 1 ? LanBindBytes("10/100") : Word(5)};
    });
    stPlatform.mapReplies[kAskSsids] = {0, Word(1) + Word(4)};
    EXPECT_EQ(List(), JsonList(JsonRow("LAN1", "10\\/100") + ", " + JsonRow("SSID4", "")));
    EXPECT_TRUE(HasEntryTrace(stPlatform,
                              "\r\n uiRet:0x0, uiInstID:2, Mode:0, Vlan:, Mac:5, EthType:\r\n"));
    for (const uint32_t uiRpcId : {kAskLanPorts, kAskSsids}) {
        stPlatform.mapReplies[uiRpcId] = {0, ""};
    }
    EXPECT_EQ(List(), kEmptyList);
}

TEST_F(VlanListTest, AnswerOf1087CharactersIsTheLongest) {
    const auto Answered = [this](size_t uiLast, uint32_t uiWanted) {
        std::vector<SsidFacts> astSsids(8, {1, std::string(95, 'b')});
        for (uint32_t i = 0; i < 8; ++i) {
            astSsids[i].uiSsid = i + 1;
        }
        astSsids[7].sBind.resize(uiLast, 'b');
        AnswerSsids(astSsids);
        return List(uiWanted).size();
    };
    const size_t uiOfOne = Answered(1, 0);
    const size_t uiFits = 1087 - uiOfOne + 1;
    ASSERT_LT(uiFits, 132u);
    EXPECT_EQ(Answered(uiFits, 0), 1087u);
    stPlatform.ClearRecords();
    EXPECT_EQ(Answered(uiFits + 1, 1), 0u);
    EXPECT_GE(TimesRecorded(kFile, 1, {1088, 0, 0, 0}), 1u);
}

TEST_F(VlanListTest, NumberOfPortsThatCannotBeHadFailsTheList) {
    Refuse(kAskLanPorts);
    EXPECT_EQ(List(kRefused), "");
    ExpectRpcs({kLanPortsQuery});
    EXPECT_EQ(EntryTraces(stPlatform), Calls{});
    EXPECT_EQ(TimesRecorded(kFile, kRefused), 2u);
}

TEST_F(VlanListTest, PortThatCannotBeHadFailsTheListAtOnce) {
    AnswerLanPorts(4);
    AnswerEachPort([](uint32_t uiPort) {
        return Reply{uiPort == 2 ? kRefused : 0, LanBindBytes("10/100")};
    });
    EXPECT_EQ(List(kRefused), "");
    ExpectRpcs({kLanPortsQuery, LanBindQuery(1), LanBindQuery(2)});
    EXPECT_EQ(TimesRecorded(kFile, kRefused, {2, 0, 0, 0}), 1u);
    EXPECT_EQ(EntryTraces(stPlatform).size(), 2u);
}

TEST_F(VlanListTest, SsidsThatCannotBeHadFailTheList) {
    AnswerLanPorts(1);
    Refuse(kAskSsids);
    EXPECT_EQ(List(kRefused), "");
    ExpectRpcs({kLanPortsQuery, LanBindQuery(1), kSsidsQuery});
    EXPECT_EQ(TimesRecorded(kFile, kRefused), 2u);
}

TEST_F(VlanListTest, NullIsRefusedWithoutAsking) {
    EXPECT_EQ(VT_JNI_GetAllVlanBind(nullptr), 1u);
    EXPECT_EQ(VT_API_GetLanVlanBindApi(nullptr), 1u);
    EXPECT_EQ(VT_API_GetWlanVlanBindApi(nullptr), 1u);
    EXPECT_TRUE(stPlatform.astRpcs.empty());
    EXPECT_EQ(TimesRecorded(kFile, 1), 3u);
}

// With everything missing in turn: the whole list or a failure.
TEST_F(VlanListTest, SurvivesEveryMissingAllocation) {
    auto pcText = std::make_shared<char *>(nullptr);
    auto uiResult = std::make_shared<uint32_t>(0);
    Subject stSubject;
    stSubject.sName = "VT_JNI_GetAllVlanBind";
    stSubject.fnFurnish = FurnishVlanBind;
    stSubject.fnCall = [=](FakeJni &) { *uiResult = VT_JNI_GetAllVlanBind(pcText.get()); };
    stSubject.fnOutcome = [=](FakeJni &) {
        std::string sOutcome = std::to_string(*uiResult);
        if (*pcText != nullptr) {
            sOutcome += *pcText;
        }
        VT_OS_MemFreeD(*pcText, __FILE_NAME__, __LINE__);
        *pcText = nullptr;
        return sOutcome;
    };
    stSubject.sGood =
        "0" + JsonList(JsonRow("LAN1", "10\\/100") + ", " + JsonRow("LAN2", "10\\/100") + ", " +
                       JsonRow("SSID1", "20\\/200,30\\/300") + ", " + JsonRow("SSID2", ""));
    stSubject.fnAllowed = [&](const FaultPlan &stPlan) -> std::set<std::string> {
        switch (stPlan.eOp) {
            case Op::kAlloc:
                return {"1"};
            case Op::kRpc:
                return {std::to_string(kPlannedRpcStatus)};
            default:
                return {stSubject.sGood};
        }
    };
    const OpCounts auiCounts = SweepFaults(stSubject);
    EXPECT_EQ(CountOf(auiCounts, Op::kRpc), 4u);
    // Two buffers, an array, four rows and their texts, and the answer at least.
    EXPECT_GT(CountOf(auiCounts, Op::kAlloc), 16u);
}

/// Appending to lists that refuse.
class RefusingListTest : public VlanListTest {
  protected:
    void SetUp() override {
        VlanListTest::SetUp();
        AnswerLanPorts(2);
        stPlatform.mapReplies[kAskLanBind] = {0, LanBindBytes("10/100")};
        AnswerSsids({{1, "1/1"}, {2, "2/2"}});
    }

    struct Outcome {
        uint32_t uiResult;
        size_t uiLength;
        bool operator==(const Outcome &) const = default;
    };

    /// Appends, with the uiAt-th allocation failing, to a list that has to grow for its 32nd
    /// element.
    Outcome AppendTo(uint32_t (*pfnAppend)(json_object *), size_t uiBefore, uint32_t uiAt) {
        json_object *pstList = json_object_new_array();
        for (size_t i = 0; i < uiBefore; ++i) {
            json_object_array_add(pstList, nullptr);
        }
        stPlatform.ClearRecords();
        stWorld.Plan({Op::kAlloc, uiAt, false});
        const uint32_t uiResult = pfnAppend(pstList);
        stWorld.Plan({});
        const Outcome stOutcome = {uiResult, json_object_array_length(pstList)};
        json_object_put(pstList);
        return stOutcome;
    }

    /// The outcomes but those of a failure that ends the work.
    std::vector<Outcome> OutcomesOf(uint32_t (*pfnAppend)(json_object *), size_t uiBefore) {
        std::vector<Outcome> astOutcomes;
        for (uint32_t uiAt = 1; uiAt < 40; ++uiAt) {
            const Outcome stOutcome = AppendTo(pfnAppend, uiBefore, uiAt);
            if (stOutcome.uiResult != 1 && stOutcome.uiLength != uiBefore + 2) {
                astOutcomes.push_back(stOutcome);
                EXPECT_EQ(TimesRecorded(kFile, kJsonNoObject), 1u);
            }
        }
        return astOutcomes;
    }
};

TEST_F(RefusingListTest, LanPortThatIsRefusedFailsTheWorkButNotTheOthers) {
    // The first port is refused, then the second.
    EXPECT_EQ(OutcomesOf(VT_API_GetLanVlanBindApi, 31),
              (std::vector<Outcome>{{kJsonNoObject, 32}}));
    EXPECT_EQ(OutcomesOf(VT_API_GetLanVlanBindApi, 30),
              (std::vector<Outcome>{{kJsonNoObject, 31}}));
}

TEST_F(RefusingListTest, LastSsidDecides) {
    EXPECT_EQ(OutcomesOf(VT_API_GetWlanVlanBindApi, 31), (std::vector<Outcome>{{0, 32}}));
    EXPECT_EQ(OutcomesOf(VT_API_GetWlanVlanBindApi, 30),
              (std::vector<Outcome>{{kJsonNoObject, 31}}));
}

TEST_F(RefusingListTest, WhatIsNoListRefusesEverything) {
    json_object *pstObject = json_object_new_object();
    EXPECT_EQ(VT_API_GetLanVlanBindApi(pstObject), kJsonWrongType);
    EXPECT_EQ(stPlatform.astRpcs.size(), 3u);
    EXPECT_EQ(VT_API_GetWlanVlanBindApi(pstObject), kJsonWrongType);
    EXPECT_EQ(TimesRecorded(kFile, kJsonWrongType), 4u);
    EXPECT_EQ(json_object_object_length(pstObject), 0);
    json_object_put(pstObject);
}

}  // namespace
}  // namespace wap::test
