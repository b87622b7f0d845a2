// Each RPC that the bridge sends, answered by a process that is broken or hostile. Nothing may
// break, nothing may stay behind, what Java is told has to be what Java expects, and the next call
// works.
//
// WAP_RANDOM_REPLIES: random replies for each RPC (1000); with more of them, more of the others,
// too. WAP_REPLY_SEED: another seed for them.

#include <gtest/gtest.h>
#include <wap_natives.h>

#include "support/sanitizers.h"
#ifdef WAP_ADDRESS_SANITIZER
#include <sanitizer/common_interface_defs.h>
#endif

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <map>
#include <memory>
#include <regex>
#include <set>
#include <sstream>
#include <string>

#include "faults/hostile_reply.h"
#include "faults/sweep_cases.h"
#include "lan/jni_port_mapping.h"
#include "records/diagnostics.h"
#include "support/furnish_portmap.h"
#include "support/strict_json.h"
#include "support/wire_bytes.h"

#ifdef WAP_ADDRESS_SANITIZER
// So many calls take half the time when less is kept of what they released.
extern "C" const char *__asan_default_options() {
    return "quarantine_size_mb=16:malloc_context_size=10";
}
#endif

namespace wap::test {

namespace {

/// Methods that hand over a text of the gateway that should be JSON, or put one into JSON of their
/// own, as it is. Their Javadoc says so.
const std::set<std::string> kAsItStands = {
    "getDeviceInfo",
    "getLANHostIP",
    "getLANHostInfoByMAC",
    "getLANHostInfoByInterface",
    "getLANHostInfoByClass",
    "getLANHostStats",
    "getLANHostSpeed",
    "getFTPRightInfo",
    "getSambaRightInfo",
    "getHTTPRightInfo",
    "getPOTSInfo",
    "getWANIfStats",
    "getWANIfInfo",
    "getWanIfBandwidth",
    "getWANIfStatus",
    "getPONIfPhyStatus",
    "getPONIfRegisterStatus",
    "getUplinkIfStats",
    "getTrafficMonitoringDestAddressInfo",
    "getIPPingDiagnosticsResult",
    "getDnsDiagnosticsResult",
    "getTraceRouteDiagnosticsResult",
};
/// The one of them that is JSON all the same: the bridge hands over parts of it, and refuses those
/// that would break the rest.
constexpr const char *kOfParts = "getTrafficMonitoringDestAddressInfo";
/// Methods that hand over a text of the gateway that is a name, a number or a password, no JSON.
const std::set<std::string> kPlain = {
    "getDeviceMAC",
    "getDevicePassword",
    "getDeviceManufacturerOUI",
    "getDeviceSerialNumber",
    "getDeviceDefaultWebPassword",
    "getDeviceDefaultSSID1Name",
    "getDeviceDefaultSSID1Password",
    "getGatewayName",
};
/// Methods that answer with a word of their own, or with nothing.
const std::map<std::string, std::set<std::string>> kWords = {
    {"getIPTVStatus",
     {"", "NO_IPTV_CONNECTION", "IPTV_DISCONNECT", "INVALID_MULTIVLAN", "IPTV_BUSSINESS_OK",
      "IPTV_BUSSINESS_NOK"}},
};

uint64_t NumberFrom(const char *pcVariable, uint64_t ulUnlessSet) {
    const char *pcText = std::getenv(pcVariable);
    return pcText == nullptr ? ulUnlessSet : std::strtoull(pcText, nullptr, 0);
}

uint64_t Seed() {
    static const uint64_t s_ulSeed = NumberFrom("WAP_REPLY_SEED", 20261122);
    return s_ulSeed;
}

constexpr uint64_t kUsualReplies = 1000;

uint64_t RandomReplies() {
    static const uint64_t s_ulReplies = NumberFrom("WAP_RANDOM_REPLIES", kUsualReplies);
    return s_ulReplies;
}

/// The RPC ids of the records' headers, by name.
std::map<uint32_t, std::string> RecordedIds() {
    std::map<uint32_t, std::string> mapIds;
    const std::regex stPattern("constexpr uint32_t (kRpc\\w+) = (0x[0-9A-Fa-f]+);");
    for (const auto &stEntry : std::filesystem::directory_iterator(WAP_RECORDS_DIR)) {
        std::ifstream stFile(stEntry.path());
        std::stringstream stText;
        stText << stFile.rdbuf();
        const std::string sText = stText.str();
        for (std::sregex_iterator it(sText.begin(), sText.end(), stPattern), itEnd; it != itEnd;
             ++it) {
            mapIds[static_cast<uint32_t>(std::stoul((*it)[2], nullptr, 16))] = (*it)[1];
        }
    }
    return mapIds;
}

/// A case in which an RPC is sent, and the reply that it gets there.
struct Target {
    const SweepCase *pstCase;
    HostileReply stReply;
    bool bFirst;  ///< of its method; the others ask the same, with other arguments or replies
};
using Targets = std::map<uint32_t, std::vector<Target>>;

/// What no Java entry asks, but a worker that others may call.
std::vector<SweepCase> WorkerCases() {
    SweepCase stCase;
    stCase.sMethod = "VT_API_getPortMappingNum";
    stCase.sCase = "usual";
    stCase.fnCall = [](FakeJni &) {
        uint32_t uiNum = 0;
        return NumberAnswerOf(VT_API_getPortMappingNum(&uiNum) == 0 ? static_cast<int32_t>(uiNum)
                                                                    : -1);
    };
    stCase.pfnFurnish = FurnishPortMapping;
    stCase.stGood = NumberAnswerOf(2);
    stCase.stFailure = NumberAnswerOf(-1);
    return {stCase};
}

const std::vector<SweepCase> &AllCallers() {
    static const std::vector<SweepCase> s_astCases = [] {
        std::vector<SweepCase> astCases = WorkerCases();
        astCases.insert(astCases.end(), AllCases().begin(), AllCases().end());
        return astCases;
    }();
    return s_astCases;
}

Targets FindTargets() {
    Targets mapTargets;
    std::set<std::pair<uint32_t, std::string>> setMethods;
    for (const SweepCase &stCase : AllCallers()) {
        ResetBridge();
        World stWorld;
        FakeJni stEnv;
        stCase.Furnish(stWorld);
        std::set<uint32_t> setSeen;
        stWorld.stPlatform.fnSpoil = [&](const RpcRecord &stRpc, std::string &sBytes) {
            if (setSeen.insert(stRpc.uiRpcId).second) {
                mapTargets[stRpc.uiRpcId].push_back(
                    {&stCase, TakeApart(stWorld.stPlatform, stRpc, sBytes),
                     setMethods.insert({stRpc.uiRpcId, stCase.sMethod}).second});
            }
        };
        (void)stCase.fnCall(stEnv);
        stEnv.EndCall();
        (void)stWorld.TakeComplaints();
    }
    ResetBridge();
    return mapTargets;
}

const Targets &AllTargets() {
    static const Targets s_mapTargets = FindTargets();
    return s_mapTargets;
}

// What is tried at the moment, for the sanitizer's last words.
struct Trial {
    uint32_t uiRpcId = 0;
    const SweepCase *pstCase = nullptr;
    const std::string *psName = nullptr;
    uint64_t ulNumber = 0;
};
Trial g_stTrial;

[[maybe_unused]] void SayTrial() {
    std::fprintf(stderr, "replying to %08X in %s: %s, %llu, seed %llu\n",
                 static_cast<unsigned>(g_stTrial.uiRpcId),
                 g_stTrial.pstCase == nullptr ? "?" : g_stTrial.pstCase->Name().c_str(),
                 g_stTrial.psName == nullptr ? "?" : g_stTrial.psName->c_str(),
                 static_cast<unsigned long long>(g_stTrial.ulNumber),
                 static_cast<unsigned long long>(Seed()));
}

struct Tried {
    uint64_t ulReplies = 0;
    uint64_t ulRandom = 0;
    uint64_t ulJsonTexts = 0;
    uint64_t ulGoodAnswers = 0;
};
Tried g_stTried;

/// What is wrong with what Java is told; empty when nothing is.
std::string AnswerFault(const SweepCase &stCase, const Answer &stAnswer) {
    if (stCase.stFailure.iNumber) {
        return stAnswer.iNumber ? "" : "no number";
    }
    const bool bOfParts = stCase.sMethod == kOfParts;
    const bool bForeign =
        !bOfParts && (kAsItStands.contains(stCase.sMethod) || kPlain.contains(stCase.sMethod));
    if (!stAnswer.sText) {
        return stAnswer.iNumber || !bForeign ? "no text" : "";
    }
    if (bForeign) {
        return "";
    }
    if (const auto it = kWords.find(stCase.sMethod); it != kWords.end()) {
        return it->second.contains(*stAnswer.sText) ? "" : "an unknown word";
    }
    ++g_stTried.ulJsonTexts;
    return JsonFault(*stAnswer.sText, bOfParts ? Elements::kHandedOver : Elements::kOwn);
}

/// Whether a reply begins with a status that says that there is no block.
bool TellsAStatus(uint32_t uiRpcId, const std::string &sBytes) {
    const bool bMayTell = uiRpcId == kRpcGetDnsResult || uiRpcId == kRpcGetTraceRouteResult;
    return bMayTell && sBytes.size() >= 4 && WordAt(sBytes, 0) != 0;
}

/// A gateway that answers one case, for any number of calls. The replies to an RPC are spoiled.
class Home {
  public:
    using Spoil = std::function<void(HostileReply &)>;

    Home(uint32_t uiRpcId, const SweepCase &stCase) : m_uiRpcId(uiRpcId), m_stCase(stCase) {
        m_stEnv.bRecord = false;
        m_stCase.Furnish(m_stWorld);
        m_stWorld.stPlatform.fnSpoil = [this](const RpcRecord &stRpc, std::string &sBytes) {
            if (m_pfnSpoil != nullptr && stRpc.uiRpcId == m_uiRpcId) {
                SpoilReply(stRpc, sBytes);
            }
        };
    }
    Home(const Home &) = delete;
    Home &operator=(const Home &) = delete;
    ~Home() { ResetBridge(); }

    /// What is wrong after a call whose reply is spoiled; empty when nothing is.
    std::string TryReply(const Spoil &fnSpoil) {
        ResetBridge();
        m_pfnSpoil = &fnSpoil;
        const Answer stAnswer = Call();
        m_pfnSpoil = nullptr;
        ++g_stTried.ulReplies;
        g_stTried.ulGoodAnswers += stAnswer == m_stCase.stGood ? 1 : 0;
        std::string sFault = AnswerFault(m_stCase, stAnswer);
        if (!sFault.empty()) {
            sFault += ": " + TextOf(stAnswer);
        }
        return sFault + TakeComplaints();
    }

    /// What is wrong after one whose reply is not, by the same bridge.
    std::string TryGoodCall() {
        const Answer stAnswer = Call();
        std::string sFault =
            stAnswer == m_stCase.stGood ? "" : "the next call: " + TextOf(stAnswer);
        return sFault + TakeComplaints();
    }

  private:
    Answer Call() {
        Answer stAnswer = m_stCase.fnCall(m_stEnv);
        m_stEnv.EndCall();
        // The blocks that no reply names are nobody's to free.
        for (const uint32_t uiBlockId : m_auiUntold) {
            m_stWorld.stPlatform.mapBlocks.erase(uiBlockId);
        }
        m_auiUntold.clear();
        m_stWorld.ClearRecords();
        return stAnswer;
    }

    std::string TakeComplaints() {
        std::string sAll;
        for (const std::string &sComplaint : m_stWorld.TakeComplaints()) {
            sAll += "; " + sComplaint;
        }
        return sAll;
    }

    void SpoilReply(const RpcRecord &stRpc, std::string &sBytes) {
        Platform &stPlatform = m_stWorld.stPlatform;
        const HostileReply stBefore = TakeApart(stPlatform, stRpc, sBytes);
        HostileReply stAfter = stBefore;
        (*m_pfnSpoil)(stAfter);
        PutTogether(stPlatform, stBefore, std::move(stAfter), sBytes);
        if (!stBefore.uiDescAt) {
            return;
        }
        // The block is the bridge's to free as soon as the reply names it.
        const size_t uiAt = *stBefore.uiDescAt;
        if (TellsAStatus(stRpc.uiRpcId, sBytes) || sBytes.size() < uiAt + 4 ||
            WordAt(sBytes, uiAt) != stBefore.uiBlockId) {
            m_auiUntold.push_back(stBefore.uiBlockId);
        }
    }

    uint32_t m_uiRpcId;
    const SweepCase &m_stCase;
    World m_stWorld;
    FakeJni m_stEnv;
    const Spoil *m_pfnSpoil = nullptr;
    std::vector<uint32_t> m_auiUntold;
};

class RepliesTest : public ::testing::TestWithParam<uint32_t> {
  protected:
    static const std::vector<Target> &Mine() { return AllTargets().at(GetParam()); }

    static Depth DepthOf(const Target &stTarget) {
        if (RandomReplies() > kUsualReplies) {
            return Depth::kAll;
        }
        const Depth eOfMethod = stTarget.bFirst ? Depth::kUsual : Depth::kBrief;
        return &stTarget == &Mine().front() ? Depth::kWhole : eOfMethod;
    }

    /// False when enough has failed.
    bool Try(Home &stHome, const Target &stTarget, const std::string &sName, uint64_t ulNumber,
             const Home::Spoil &fnSpoil) {
        g_stTrial = {GetParam(), stTarget.pstCase, &sName, ulNumber};
        std::string sFault = stHome.TryReply(fnSpoil);
        // The bridge keeps hardly anything from call to call, so not after each.
        if (sFault.empty() && uiTried++ % 64 == 0) {
            sFault = stHome.TryGoodCall();
        }
        if (!sFault.empty()) {
            ADD_FAILURE() << stTarget.pstCase->Name() << ", " << sName << ", number " << ulNumber
                          << " of seed " << Seed() << ": " << sFault;
            ++uiFailed;
        }
        return uiFailed < 5;
    }

    uint32_t uiFailed = 0;
    uint32_t uiTried = 0;
};

TEST_P(RepliesTest, MayBeSpoiledInEveryWayThatCanBeListed) {
    for (const Target &stTarget : Mine()) {
        Home stHome(GetParam(), *stTarget.pstCase);
        for (const Spoiling &stSpoiling : ListedSpoilings(stTarget.stReply, DepthOf(stTarget))) {
            if (!Try(stHome, stTarget, stSpoiling.sName, 0, stSpoiling.fnSpoil)) {
                return;
            }
        }
    }
}

TEST_P(RepliesTest, MayBeCutAnywhere) {
    for (const Target &stTarget : Mine()) {
        Home stHome(GetParam(), *stTarget.pstCase);
        for (const Spoiling &stCut : Cuts(stTarget.stReply, DepthOf(stTarget))) {
            if (!Try(stHome, stTarget, stCut.sName, 0, stCut.fnSpoil)) {
                return;
            }
        }
    }
}

TEST_P(RepliesTest, MayBeAnyBytes) {
    const uint64_t ulCount = RandomReplies();
    for (size_t uiTarget = 0; uiTarget < Mine().size(); ++uiTarget) {
        const Target &stTarget = Mine()[uiTarget];
        Home stHome(GetParam(), *stTarget.pstCase);
        const std::string sName = "random";
        for (uint64_t i = uiTarget; i < ulCount; i += Mine().size()) {
            // Each of them can be had again without those before it.
            HostileDice stDice(Seed() ^ GetParam() << 20 ^ i * 0x9E3779B97F4A7C15u);
            ++g_stTried.ulRandom;
            if (!Try(stHome, stTarget, sName, i,
                     [&](HostileReply &stReply) { stDice.Spoil(stReply); })) {
                return;
            }
        }
    }
}

std::vector<uint32_t> SentIds() {
    std::vector<uint32_t> auiIds;
    for (const auto &[uiRpcId, astTargets] : AllTargets()) {
        auiIds.push_back(uiRpcId);
    }
    return auiIds;
}

std::string NameOfId(const ::testing::TestParamInfo<uint32_t> &stInfo) {
    static const std::map<uint32_t, std::string> s_mapNames = RecordedIds();
    const auto it = s_mapNames.find(stInfo.param);
    return it == s_mapNames.end() ? "unknown" + std::to_string(stInfo.param) : it->second;
}

INSTANTIATE_TEST_SUITE_P(To, RepliesTest, ::testing::ValuesIn(SentIds()), NameOfId);

TEST(Replies, AreToEveryRpcOfTheRecords) {
    const std::map<uint32_t, std::string> mapRecorded = RecordedIds();
    EXPECT_GT(mapRecorded.size(), 100u);
    for (const auto &[uiRpcId, sName] : mapRecorded) {
        EXPECT_TRUE(AllTargets().contains(uiRpcId)) << "no case sends " << sName;
    }
    for (const auto &[uiRpcId, astTargets] : AllTargets()) {
        EXPECT_TRUE(mapRecorded.contains(uiRpcId)) << "in no header: " << std::hex << uiRpcId;
    }
}

// The checks of the answers themselves.
TEST(StrictJson, TellsWhatIsWrong) {
    EXPECT_EQ(JsonFault("{\"Result\":0}"), "");
    EXPECT_EQ(JsonFault("{ \"Result\": -1, \"List\": [ { \"a\": \"\\u0001\" }, { \"a\": 1 } ] }"),
              "");
    EXPECT_EQ(JsonFault(""), "no JSON");
    EXPECT_EQ(JsonFault("{\"Result\":0}x"), "no JSON");
    EXPECT_EQ(JsonFault("{\"Result\":0,}"), "no JSON");
    EXPECT_EQ(JsonFault("{'Result':0}"), "no JSON");
    EXPECT_EQ(JsonFault("{\"Result\":0,\"a\":\"\x01\"}"), "no JSON");
    EXPECT_EQ(JsonFault("{\"Result\":0,\"a\":\"\xFF\"}"), "no JSON");
    EXPECT_EQ(JsonFault("{\"Result\":0,\"a\":NaN}"), "no JSON");
    EXPECT_EQ(JsonFault("[0]"), "no object");
    EXPECT_EQ(JsonFault("{\"result\":0}"), "no number under Result");
    EXPECT_EQ(JsonFault("{\"Result\":\"0\"}"), "no number under Result");
    EXPECT_EQ(JsonFault("{\"Result\":0,\"List\":{}}"), "no array under List");
    EXPECT_EQ(JsonFault("{\"Result\":0,\"Result\":0}"), "the name Result twice");
    EXPECT_EQ(JsonFault("{\"Result\":0,\"List\":[{\"a\":1,\"a\":2}]}"), "the name a twice");
    EXPECT_EQ(JsonFault("{\"Result\":0,\"List\":[{\"a\":[1e999]}]}"), "a number beyond all types");
    EXPECT_EQ(JsonFault("{\"Result\":0,\"List\":[{\"a\":[\"\\ud800\"]}]}"), "no JSON");
}

/// What is wrong with a list of one element.
std::string FaultOfElement(const std::string &sElement) {
    return JsonFault("{\"Result\":0,\"List\":[" + sElement + "]}", Elements::kHandedOver);
}

// Somebody else's values may be odd, but they are JSON, and what is around them is ours.
TEST(StrictJson, TellsWhatIsWrongAroundWhatIsHandedOver) {
    const std::string sTwice = "the name a twice";
    const std::string sTooLarge = "a number beyond all types";
    EXPECT_EQ(JsonFault("{\"Result\":0,\"a\":1,\"a\":2}", Elements::kHandedOver), sTwice);
    EXPECT_EQ(FaultOfElement("{\"a\":1,\"a\":2}"), sTwice);
    EXPECT_EQ(FaultOfElement("{\"a\":[{\"a\":1,\"a\":2}]}"), "");
    EXPECT_EQ(FaultOfElement("{\"a\":[{\"b\":1,\"b\":2}],\"a\":2}"), sTwice);

    const std::string sManyDigits(400, '9');
    for (const std::string &sLarge :
         {std::string("1e999"), std::string("-1.0E+0999"), sManyDigits, "-" + sManyDigits + ".5"}) {
        SCOPED_TRACE(sLarge);
        const std::string sTwoLarge = std::string(sLarge).append(", {\"b\":").append(sLarge);
        EXPECT_EQ(FaultOfElement("{\"a\":[" + sTwoLarge + "}, 12345]}"), "");
        EXPECT_EQ(FaultOfElement("{\"a\":[],\"b\":" + sLarge + "}"), sTooLarge);
        EXPECT_EQ(
            FaultOfElement(std::string("{\"a\":[").append(sLarge).append("]},").append(sLarge)),
            sTooLarge);
        EXPECT_EQ(FaultOfElement("{\"a\":[" + sLarge), "no JSON");
        EXPECT_EQ(FaultOfElement("{\"a\":[" + sLarge + "}"), "no JSON");
        EXPECT_EQ(FaultOfElement("{\"a\":[" + sLarge + "],\"a\":1}"), sTwice);
        EXPECT_EQ(FaultOfElement("{\"a\":[0" + sLarge + "]}"), "no JSON");
        EXPECT_EQ(FaultOfElement("{\"a\":[" + sLarge + "e]}"), "no JSON");
    }
    EXPECT_EQ(JsonFault("{\"Result\":1e999}", Elements::kHandedOver), sTooLarge);
    EXPECT_EQ(JsonFault("{\"Result\":0,\"a\":[[[1e999]]]}", Elements::kHandedOver), sTooLarge);
    EXPECT_EQ(FaultOfElement("{\"a\":[\"1e999\", \"\\\"\", \"12345\"]}"), "");

    for (const std::string &sHalf :
         {std::string("\\ud800"), std::string("\\uDFFF"), std::string("\\udc00\\ud800"),
          std::string("\\ud800\\u0041"), std::string("\\ud800\\ud83d\\ude00")}) {
        SCOPED_TRACE(sHalf);
        const std::string sText = "\"" + sHalf + "\"";
        std::string sThreeTimes = "{\"a\":" + sText;
        sThreeTimes.append(",\"b\": [").append(sText).append(",{").append(sText).append(":1}]}");
        EXPECT_EQ(FaultOfElement(sThreeTimes), "");
        EXPECT_EQ(FaultOfElement("{\"a\":1," + sText + ":1}"), "no JSON");
        EXPECT_EQ(FaultOfElement("{\"a\":1}," + sText), "no JSON");
        EXPECT_EQ(FaultOfElement("{\"a\":[" + sText), "no JSON");
        EXPECT_EQ(FaultOfElement("{\"a\":[" + sText + " 1]}"), "no JSON");
        EXPECT_EQ(JsonFault("{\"Result\":0,\"a\":" + sText + "}", Elements::kHandedOver),
                  "no JSON");
    }
    EXPECT_EQ(FaultOfElement("{\"a\":\"\\\\ud800\",\"b\":\"\\ud83d\\ude00\"}"), "");
    EXPECT_EQ(FaultOfElement("{\"a\":\"\\ud80\"}"), "no JSON");
    EXPECT_EQ(FaultOfElement("{\"a\":\"\\ud80x\"}"), "no JSON");
    EXPECT_EQ(FaultOfElement("{\"a\":[\"\xFF\"]}"), "no JSON");
    EXPECT_EQ(FaultOfElement("{\"a\":[\"\x01\"]}"), "no JSON");
    EXPECT_EQ(FaultOfElement("{\"a\":[NaN]}"), "no JSON");
}

/// The Javadoc of each native method, by its name.
std::map<std::string, std::string> Javadocs() {
    std::map<std::string, std::string> mapDocs;
    const std::regex stNative("native [A-Za-z]+ (\\w+)\\(");
    for (const auto &stEntry : std::filesystem::recursive_directory_iterator(WAP_JAVA_API_DIR)) {
        if (stEntry.path().extension() != ".java") {
            continue;
        }
        std::ifstream stFile(stEntry.path());
        std::string sDoc;
        for (std::string sLine; std::getline(stFile, sLine);) {
            std::smatch stMatch;
            if (sLine.find("/**") != std::string::npos) {
                sDoc.clear();
            }
            if (std::regex_search(sLine, stMatch, stNative)) {
                mapDocs[stMatch[1]] = sDoc;
            }
            const size_t uiText = sLine.find_first_not_of(" *");
            sDoc += " " + (uiText == std::string::npos ? "" : sLine.substr(uiText));
        }
    }
    return mapDocs;
}

TEST(Replies, ThatAreHandedOverAsTheyStandAreDocumented) {
    const std::map<std::string, std::string> mapDocs = Javadocs();
    EXPECT_EQ(mapDocs.size(), size_t{WAP_NATIVES});
    for (const auto &[sMethod, sDoc] : mapDocs) {
        EXPECT_EQ(sDoc.find("as it stands") != std::string::npos, kAsItStands.contains(sMethod))
            << sMethod;
    }
}

/// Says at the beginning how to do it again, and at the end what was tried.
class Figures : public ::testing::Environment {
  public:
    void SetUp() override {
        std::cout << "random replies: " << RandomReplies()
                  << " for each RPC, WAP_REPLY_SEED=" << Seed() << std::endl;
#ifdef WAP_ADDRESS_SANITIZER
        __sanitizer_set_death_callback(SayTrial);
#endif
    }
    void TearDown() override {
        std::cout << "figure replies.rpcs " << AllTargets().size() << "\n"
                  << "figure replies.tried " << g_stTried.ulReplies << "\n"
                  << "figure replies.random " << g_stTried.ulRandom << "\n"
                  << "figure replies.answered_as_ever " << g_stTried.ulGoodAnswers << "\n"
                  << "figure replies.json_parsed " << g_stTried.ulJsonTexts << "\n";
    }
};
[[maybe_unused]] const auto *const kFigures =
    ::testing::AddGlobalTestEnvironment(std::make_unique<Figures>().release());

}  // namespace

}  // namespace wap::test
