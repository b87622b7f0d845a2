// Monitored addresses, traffic rules and flows, byte for byte, and that changes take effect.

#include <unistd.h>

#include <string>
#include <vector>

#include "gateway_fixture.h"
#include "vt_ssp_basic.h"
#include "vt_ssp_host.h"

namespace wap::test {

namespace {

class TrafficTest : public GatewayTest {
  protected:
    void SetUp() override {
        GatewayTest::SetUp();
        CtlOk({"start", "gulm", "app_m", "--timeout", "60"});
    }

    static RpcReply Ask(uint32_t uiRpcId, const std::string &acRequest, size_t uiRoom = 4) {
        return Call("gulm", uiRpcId, acRequest, uiRoom);
    }
    static uint32_t Status(uint32_t uiRpcId, const std::string &acRequest) {
        return Ask(uiRpcId, acRequest).uiStatus;
    }

    /// A block with these bytes, as a descriptor's words.
    static std::string Block(const std::string &acBytes) {
        const auto uiLength = static_cast<uint32_t>(acBytes.size());
        VDataDesc stDesc = {0, uiLength, uiLength};
        EXPECT_EQ(VT_VDATA_CreShm(uiLength, &stDesc), 0u);
        EXPECT_EQ(VT_VDATA_UpdateData(stDesc.uiDataID, uiLength, acBytes.data()), 0u);
        return Word(stDesc.uiDataID) + Word(uiLength) + Word(uiLength);
    }
    static uint32_t Monitor(bool bAdd, const std::string &acBundle, const std::string &acList) {
        return Status(bAdd ? 0x48304173 : 0x48304174, Block(acList + '\0') + Field(acBundle, 256));
    }
    /// The files of the blocks that there are; the folder is there since there was one.
    std::string Blocks() const {
        const Outcome stList = Run({"ls", m_acDir + "/vdata"});
        EXPECT_EQ(stList.iExit, 0) << stList.acErr;
        return stList.acOut;
    }
    /// Bundles and addresses, and the registry's text.
    static std::string Registry() {
        const RpcReply stReply = Ask(0x483041A5, Word(0), 20);
        EXPECT_EQ(stReply.uiStatus, 0u);
        std::string acCounts = std::to_string(WordAt(stReply.acBytes, 0)) + " " +
                               std::to_string(WordAt(stReply.acBytes, 4)) + " ";
        if (WordAt(stReply.acBytes, 12) == 0) {
            return acCounts;
        }
        std::string acText = BlockOf(stReply, 8);
        EXPECT_TRUE(acText.ends_with('\0')) << acText;
        acText.pop_back();
        return acCounts + acText;
    }
};

std::string MirrorRule(const std::string &acAddress) {
    return Field(acAddress, 256) + Field("80", 12) + Field("UP", 5) + Field("TCP", 4) +
           Field("02:A1:B2:00:20:01", 18) + Field("192.168.1.10", 40) + Field("9000", 12);
}

std::string ForwardRule(const std::string &acAddress) {
    return Field(acAddress, 256) + Field("80", 12) + Field("UDP", 4) + Field("", 18) +
           Field("", 40) + Field("9000", 12);
}

std::string HttpRule(const std::string &acAddress) {
    return Field(acAddress, 256) + Field("80", 12) + Field("UP", 5) + Field("", 18) +
           Field("GET,POST", 64) + Field("200,404", 256) + Field("Host,Cookie", 256) +
           std::string(52, '\0');
}

/// A kind of rules, as the wire has it.
struct RuleKind {
    const char *pcName;
    uint32_t uiAdd;
    uint32_t uiDel;
    uint32_t uiGet;
    std::string (*pfnRule)(const std::string &acAddress);
    bool bNumbered;
    bool bTellsRest;                    ///< a deletion is answered with how many are left
    std::vector<size_t> auiRequiredAt;  ///< where texts are that must be there
};

class RulesTest : public TrafficTest, public testing::WithParamInterface<RuleKind> {
  protected:
    static uint32_t Add(const std::string &acRule) {
        const RpcReply stReply = Ask(GetParam().uiAdd, acRule);
        EXPECT_EQ(stReply.uiStatus, 0u);
        return WordAt(stReply.acBytes, 0);
    }
    /// The table's bytes, which must be as many as it says.
    static std::string Table(uint32_t uiCount) {
        const RpcReply stReply = Ask(GetParam().uiGet, Word(0), 16);
        EXPECT_EQ(stReply.uiStatus, 0u);
        EXPECT_EQ(WordAt(stReply.acBytes, 0), uiCount);
        return uiCount == 0 ? "" : BlockOf(stReply, 4);
    }
    /// What the reply to a deletion that works leaves in its room.
    static std::string Delete(uint32_t uiNumber) {
        const RpcReply stReply = Ask(GetParam().uiDel, Word(uiNumber));
        EXPECT_EQ(stReply.uiStatus, 0u);
        return stReply.acBytes;
    }
    static std::string Rest(uint32_t uiRules) {
        return GetParam().bTellsRest ? Word(uiRules) : std::string(4, kUntouched);
    }
    static std::string Row(uint32_t uiNumber, const std::string &acRule) {
        return (GetParam().bNumbered ? Word(uiNumber) : "") + acRule;
    }
};

INSTANTIATE_TEST_SUITE_P(
    Kinds, RulesTest,
    testing::Values(
        RuleKind{"mirror",
                 0x48304191,
                 0x48304192,
                 0x48304193,
                 MirrorRule,
                 false,
                 true,
                 {256, 268, 273, 295, 335}},
        RuleKind{"forward",
                 0x48304195,
                 0x48304196,
                 0x48304197,
                 ForwardRule,
                 false,
                 true,
                 {256, 268, 330}},
        RuleKind{"http", 0x48304198, 0x48304199, 0x4830419A, HttpRule, true, false, {256, 268}}),
    [](const auto &stInfo) { return stInfo.param.pcName; });

std::string Member(const std::string &acAddress, const std::string &acPort,
                   const std::string &acFlow) {
    return Field(acAddress, 256) + Field(acPort, 12) + Field(acFlow, 4);
}

}  // namespace

TEST_F(TrafficTest, BundlesRegisterAddresses) {
    EXPECT_EQ(Registry(), "0 0 ");
    EXPECT_EQ(Monitor(true, "org.example.a", "10.0.0.1,,10.0.0.2"), 0u);
    EXPECT_EQ(Monitor(true, "org.example.b", "example.org"), 0u);
    EXPECT_EQ(Monitor(true, "org.example.a", "10.0.0.2,10.0.0.3"), 0u);
    EXPECT_EQ(
        Registry(),
        R"(2 4 org.example.a["10.0.0.1","10.0.0.2","10.0.0.3"];org.example.b["example.org"])");
    EXPECT_EQ(Monitor(false, "org.example.a", "10.0.0.1,10.0.0.9"), 0u);
    EXPECT_EQ(Monitor(false, "org.example.b", "example.org"), 0u);
    EXPECT_EQ(Registry(), R"(1 2 org.example.a["10.0.0.2","10.0.0.3"])");
    CtlOk({"kill", "gulm"});
    CtlOk({"start", "gulm", "--timeout", "60"});
    EXPECT_EQ(Registry(), R"(1 2 org.example.a["10.0.0.2","10.0.0.3"])");
}

TEST_F(TrafficTest, WrongRegistrationsAreRefused) {
    EXPECT_EQ(Monitor(true, "", "10.0.0.1"), kRefused);
    EXPECT_EQ(Monitor(true, "a[b", "10.0.0.1"), kRefused);
    EXPECT_EQ(Monitor(true, "a", ",,"), kRefused);
    EXPECT_EQ(Monitor(true, "a", "10.0.0.1;b"), kRefused);
    // What the lists of the registry could not hold, at any place.
    for (const char cByte : {'[', ';', '"', '\\', '\1', '\n', '\x1F'}) {
        for (const std::string &acText :
             {cByte + std::string("a"), std::string("a") + cByte, std::string(1, cByte)}) {
            EXPECT_EQ(Monitor(true, acText, "10.0.0.1"), kRefused) << acText;
            if (cByte != '[') {
                EXPECT_EQ(Monitor(true, "a", acText), kRefused) << acText;
                EXPECT_EQ(Monitor(true, "a", "10.0.0.1," + acText), kRefused) << acText;
            }
        }
    }
    EXPECT_EQ(Monitor(false, "a", "10.0.0.1"), kRefused);
    EXPECT_EQ(Status(0x48304173, Word(12345) + Word(5) + Word(5) + Field("a", 256)),
              uint32_t{VT_HOST_ERR_DATA})
        << "no such block";
    EXPECT_EQ(Registry(), "0 0 ");
}

TEST_F(TrafficTest, NamesAndAddressesMayHaveAllElse) {
    EXPECT_EQ(Monitor(true, "a b]{},:\x7F\xC3\xA9", "[2001:db8::1],x/\xC3\xA9 ]"), 0u);
    EXPECT_EQ(Registry(), "1 2 a b]{},:\x7F\xC3\xA9[\"[2001:db8::1]\",\"x/\xC3\xA9 ]\"]");
}

TEST_F(TrafficTest, RegistryHasRoomFor64Bundles) {
    for (int i = 1; i <= 64; ++i) {
        ASSERT_EQ(Monitor(true, "b" + std::to_string(i), "10.0.0.1"), 0u) << i;
    }
    EXPECT_EQ(Monitor(true, "b65", "10.0.0.1"), kTableFull);
    EXPECT_EQ(Monitor(true, "b64", "10.0.0.2"), 0u) << "no new one";
    EXPECT_TRUE(Registry().starts_with("64 65 b1["));
    EXPECT_EQ(Monitor(false, "b1", "10.0.0.1"), 0u);
    EXPECT_EQ(Monitor(true, "b65", "10.0.0.1"), 0u);
}

// Of a reply that is cut in the descriptor, the reader may not learn which block it was to free.
TEST_F(TrafficTest, RepliesThatAreCutLeaveNoBlocks) {
    EXPECT_EQ(Monitor(true, "a", "10.0.0.1"), 0u);
    EXPECT_EQ(Status(0x48304195, ForwardRule("a")), 0u);
    const struct {
        const char *pcRpc;
        uint32_t uiRpcId;
        uint32_t uiLength;
    } astReplies[] = {{"0x483041A5", 0x483041A5, 20}, {"0x48304197", 0x48304197, 16}};
    for (const auto &stReply : astReplies) {
        for (const uint32_t uiBytes : {5u, stReply.uiLength - 1}) {
            CtlOk({"fault", "gulm", stReply.pcRpc, "--truncate", std::to_string(uiBytes), "--times",
                   "1"});
            EXPECT_EQ(Ask(stReply.uiRpcId, Word(0), stReply.uiLength).uiStatus, 0u);
            EXPECT_EQ(Blocks(), "") << stReply.pcRpc << " " << uiBytes;
            // The same by a reader that has no more room.
            EXPECT_EQ(Ask(stReply.uiRpcId, Word(0), uiBytes).uiStatus, 0u);
            EXPECT_EQ(Blocks(), "") << stReply.pcRpc << " by " << uiBytes;
        }
        // A reply that is short enough is not cut.
        CtlOk({"fault", "gulm", stReply.pcRpc, "--truncate", std::to_string(stReply.uiLength),
               "--times", "1"});
        EXPECT_NE(BlockOf(Ask(stReply.uiRpcId, Word(0), stReply.uiLength), stReply.uiLength - 12),
                  "");
        EXPECT_EQ(Blocks(), "");
    }
}

TEST_F(TrafficTest, AppMTakesNoteOfChanges) {
    const std::string acNotice =
        Block('\1' + Field("org.example.a", 128) + "10.0.0.1,10.0.0.2" + '\0');
    EXPECT_EQ(VT_MSG_AsyncSendData("app_m", 39, acNotice.data(), 12), 0u);
    const std::string acDeleted = Block('\0' + Field("org.example.b", 128) + "10.0.0.3" + '\0');
    EXPECT_EQ(VT_MSG_AsyncSendData("app_m", 39, acDeleted.data(), 12), 0u);
    std::string acNotices;
    for (int iTry = 0; iTry < 600 && acNotices.find("10.0.0.3") == std::string::npos; ++iTry) {
        acNotices = CtlOk({"get", "monitorNotices"});
    }
    EXPECT_EQ(acNotices,
              "{\n  \"added\": 1,\n  \"deleted\": 1,\n  \"bundle\": \"org.example.b\",\n"
              "  \"addresses\": \"10.0.0.3\"\n}\n");
    // What makes no sense is dropped, and the next one is heard.
    EXPECT_EQ(VT_MSG_AsyncSendData("app_m", 39, "x", 1), 0u);
    EXPECT_EQ(VT_MSG_AsyncSendData("app_m", 40, acNotice.data(), 12), 0u);
    EXPECT_EQ(VT_MSG_AsyncSendData("app_m", 39, acNotice.data(), 12), 0u) << "the block is gone";
    for (const size_t uiLength : {1u, 128u, 129u}) {
        const std::string acShort = Block(std::string(uiLength, '\1'));
        EXPECT_EQ(VT_MSG_AsyncSendData("app_m", 39, acShort.data(), 12), 0u) << uiLength;
    }
    const std::string acLast = Block('\1' + Field("last", 128) + "10.0.0.4" + '\0');
    EXPECT_EQ(VT_MSG_AsyncSendData("app_m", 39, acLast.data(), 12), 0u);
    for (int iTry = 0; iTry < 600 && acNotices.find("10.0.0.4") == std::string::npos; ++iTry) {
        acNotices = CtlOk({"get", "monitorNotices"});
    }
    EXPECT_NE(acNotices.find("\"added\": 2,\n  \"deleted\": 1,"), std::string::npos) << acNotices;
}

TEST_P(RulesTest, RulesComeAndGo) {
    const auto Rule = GetParam().pfnRule;
    EXPECT_EQ(Table(0), "");
    EXPECT_EQ(Add(Rule("198.51.100.1")), 1u);
    EXPECT_EQ(Add(Rule("")), 2u);
    EXPECT_EQ(Add(Rule(std::string(255, 'a'))), 3u);
    EXPECT_EQ(Table(3), Row(1, Rule("198.51.100.1")) + Row(2, Rule("")) +
                            Row(3, Rule(std::string(255, 'a'))));
    EXPECT_EQ(Delete(2), Rest(2));
    EXPECT_EQ(Status(GetParam().uiDel, Word(2)), kRefused);
    EXPECT_EQ(Status(GetParam().uiDel, "x"), uint32_t{VT_HOST_ERR_ARGUMENT});
    EXPECT_EQ(Add(Rule("198.51.100.4")), 2u) << "the smallest number that is free";
    CtlOk({"kill", "gulm"});
    CtlOk({"start", "gulm", "--timeout", "60"});
    EXPECT_EQ(Table(3), Row(1, Rule("198.51.100.1")) + Row(3, Rule(std::string(255, 'a'))) +
                            Row(2, Rule("198.51.100.4")));
    EXPECT_EQ(Delete(0xFFFFFFFF), Rest(0));
    EXPECT_EQ(Table(0), "");
}

TEST_P(RulesTest, IncompleteRulesAreRefused) {
    const std::string acWhole = GetParam().pfnRule("a");
    EXPECT_EQ(Status(GetParam().uiAdd, acWhole + "x"), uint32_t{VT_HOST_ERR_ARGUMENT});
    for (const size_t uiAt : GetParam().auiRequiredAt) {
        std::string acRule = acWhole;
        acRule[uiAt] = '\0';
        EXPECT_EQ(Status(GetParam().uiAdd, acRule), kRefused) << uiAt;
    }
    EXPECT_EQ(Table(0), "");
}

// The same for all kinds.
TEST_F(TrafficTest, TablesOfRulesHaveALimit) {
    for (uint32_t uiNumber = 1; uiNumber <= 1024; ++uiNumber) {
        ASSERT_EQ(Ask(0x48304195, ForwardRule("a")).acBytes, Word(uiNumber));
    }
    EXPECT_EQ(Status(0x48304195, ForwardRule("a")), kTableFull);
    EXPECT_EQ(WordAt(Ask(0x48304197, Word(0), 16).acBytes, 0), 1024u);
    EXPECT_EQ(Status(0x48304196, Word(7)), 0u);
    EXPECT_EQ(Ask(0x48304195, ForwardRule("a")).acBytes, Word(7));
}

TEST_F(TrafficTest, FlowsHaveMembers) {
    EXPECT_EQ(Status(0x4830419B, Member("198.51.100.1", "80", "7")), 0u);
    EXPECT_EQ(Status(0x4830419B, Member("", "443", "7")), 0u);
    EXPECT_EQ(Status(0x4830419B, Member("", "443", "7")), 0u) << "again";
    RpcReply stReply = Ask(0x4830419E, Word(7), 16);
    EXPECT_EQ(WordAt(stReply.acBytes, 0), 2u);
    EXPECT_EQ(BlockOf(stReply, 4), Member("198.51.100.1", "80", "7") + Member("", "443", "7"));
    EXPECT_EQ(Status(0x4830419C, Member("198.51.100.1", "80", "7")), 0u);
    EXPECT_EQ(Status(0x4830419C, Member("198.51.100.1", "80", "7")), kRefused);
    EXPECT_EQ(Status(0x4830419D, Word(7)), 0u);
    EXPECT_EQ(Ask(0x4830419E, Word(7), 16).acBytes, std::string(16, '\0'));
    for (const char *pcFlow : {"0", "65", "", "x", "-1"}) {
        EXPECT_EQ(Status(0x4830419B, Member("a", "80", pcFlow)), kRefused) << pcFlow;
    }
    EXPECT_EQ(Status(0x4830419B, Member("a", "", "7")), kRefused);
}

TEST_F(TrafficTest, FlowsHaveLimitsAndMarks) {
    EXPECT_EQ(Status(0x483041A2, Word(7) + Word(1000) + Word(2000)), 0u);
    EXPECT_EQ(Status(0x483041A4, Word(7) + Word(46)), 0u);
    EXPECT_EQ(Ask(0x483041A1, Word(7), 8).acBytes, Word(1000) + Word(2000));
    EXPECT_EQ(Ask(0x483041A3, Word(7), 4).acBytes, Word(46));
    EXPECT_EQ(Ask(0x483041A3, Word(8), 4).acBytes, Word(0)) << "nothing is known of it";
    EXPECT_EQ(Status(0x483041A4, Word(7) + Word(64)), kRefused);
    EXPECT_EQ(Status(0x483041A2, Word(7) + Word(0xFFFFFFFF) + Word(0)), kRefused);
    for (const uint32_t uiRpcId :
         {0x4830419Du, 0x4830419Fu, 0x483041A0u, 0x483041A1u, 0x483041A3u}) {
        EXPECT_EQ(Status(uiRpcId, Word(0)), kRefused) << uiRpcId;
        EXPECT_EQ(Status(uiRpcId, Word(65)), kRefused) << uiRpcId;
    }
}

TEST_F(TrafficTest, FlowsSurviveARestart) {
    EXPECT_EQ(Status(0x4830419B, Member("198.51.100.1", "80", "7")), 0u);
    EXPECT_EQ(Status(0x4830419B, Member("", "443", "7")), 0u);
    EXPECT_EQ(Status(0x483041A2, Word(7) + Word(1000) + Word(2000)), 0u);
    EXPECT_EQ(Status(0x483041A4, Word(7) + Word(46)), 0u);
    CtlOk({"kill", "gulm"});
    CtlOk({"start", "gulm", "--timeout", "60"});
    const RpcReply stReply = Ask(0x4830419E, Word(7), 16);
    EXPECT_EQ(WordAt(stReply.acBytes, 0), 2u);
    EXPECT_EQ(BlockOf(stReply, 4), Member("198.51.100.1", "80", "7") + Member("", "443", "7"));
    EXPECT_EQ(Ask(0x483041A1, Word(7), 8).acBytes, Word(1000) + Word(2000));
    EXPECT_EQ(Ask(0x483041A3, Word(7), 4).acBytes, Word(46));
}

TEST_F(TrafficTest, FlowsCarryWhatTheirMembersSend) {
    EXPECT_EQ(Ask(0x483041A0, Word(7), 8).acBytes, Word(0) + Word(0));
    EXPECT_EQ(Status(0x4830419B, Member("a", "80", "7")), 0u);
    EXPECT_EQ(Status(0x4830419B, Member("b", "80", "7")), 0u);
    EXPECT_EQ(Ask(0x483041A0, Word(7), 8).acBytes, Word(4000) + Word(32000));
    EXPECT_EQ(Status(0x483041A2, Word(7) + Word(0) + Word(10000)), 0u);
    EXPECT_EQ(Ask(0x483041A0, Word(7), 8).acBytes, Word(4000) + Word(10000));
    std::string acStats = Ask(0x4830419F, Word(7), 16).acBytes;
    const uint32_t uiBefore = WordAt(acStats, 0);
    for (int iTry = 0; iTry < 3000 && WordAt(acStats, 0) == uiBefore; ++iTry) {
        usleep(10000);
        acStats = Ask(0x4830419F, Word(7), 16).acBytes;
    }
    EXPECT_GE(WordAt(acStats, 0), uiBefore + 4000);
    EXPECT_EQ(WordAt(acStats, 4), 0u);
    EXPECT_GE(WordAt(acStats, 8), 10000u);
}

}  // namespace wap::test
