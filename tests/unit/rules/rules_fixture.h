// What the tests of the rules about traffic share.
#ifndef WAP_TESTS_UNIT_RULES_FIXTURE_H
#define WAP_TESTS_UNIT_RULES_FIXTURE_H

#include <string>
#include <vector>

#include "support/entries.h"
#include "support/entry_table_rules.h"
#include "support/expect.h"
#include "support/furnish_rules.h"

namespace wap::test {

inline constexpr uint32_t kNoMemory = 0xF7108001;

inline constexpr const char *kSharedFile = "traffic_rules.cpp";
inline constexpr const char *kNoRules = "{\"Result\":0,\"List\":[]}";
inline constexpr const char *kFailedList = "{ \"Result\": -1 }";

inline std::string JsonList(const std::string &sRows) {
    return "{ \"Result\": 0, \"List\": [ " + sRows + " ] }";
}

inline std::string JsonRow(const MirrorFacts &stRule, const std::string &sToPort) {
    return "{ \"RemoteAddress\": \"" + stRule.sAddress + "\", \"RemotePort\": \"" + stRule.sPort +
           "\", \"Direction\": \"" + stRule.sDirection + "\", \"Protocol\": \"" + stRule.sProtocol +
           "\", \"HostMAC\": \"" + stRule.sMac + "\", \"MirrorToIP\": \"" + stRule.sIp +
           "\", \"MirrorToPort\": " + sToPort + " }";
}

inline std::string JsonRow(const ForwardFacts &stRule, const std::string &sToPort) {
    return "{ \"RemoteAddress\": \"" + stRule.sAddress + "\", \"RemotePort\": \"" + stRule.sPort +
           "\", \"Protocol\": \"" + stRule.sProtocol + "\", \"HostMAC\": \"" + stRule.sMac +
           "\", \"ForwardToIP\": \"" + stRule.sIp + "\", \"ForwardToPort\": " + sToPort + " }";
}

inline std::string JsonRow(const HttpFacts &stRule, const std::string &sNumber) {
    return "{ \"RemoteAddress\": \"" + stRule.sAddress + "\", \"RemotePort\": \"" + stRule.sPort +
           "\", \"Direction\": \"" + stRule.sDirection + "\", \"HostMAC\": \"" + stRule.sMac +
           "\", \"MethodList\": [ \"" + stRule.sMethods + "\" ], \"StatuscodeList\": [ \"" +
           stRule.sStatusCodes + "\" ], \"HeaderList\": [ \"" + stRule.sHeaders +
           "\" ], \"RuleInst\": " + sNumber + " }";
}

/// A listing, and what its kind of rules has of its own.
struct Listing {
    std::string sMethod;
    uint32_t uiRpcId;
    uint32_t uiSender;
    uint32_t uiRowSize;
    uint32_t uiTextPerRow;
};
inline const std::vector<Listing> &Listings() {
    static const std::vector<Listing> s_astListings = {
        {"getMirroRuleInfo", kGetMirrorRules, 354, 347, 768},
        {"getForwardRuleInfo", kGetForwardRules, 351, 342, 512},
        {"getHTTPTrafficProcessRuleInfo", kGetHttpRules, 352, 923, 1280},
    };
    return s_astListings;
}

/// A gateway with rules; requests, traces and faults of a call are looked at.
class RulesTest : public BridgeTest {
  protected:
    void SetUp() override {
        BridgeTest::SetUp();
        FurnishRules(stWorld);
    }

    /// Calls an entry as its table has it, with nothing recorded before.
    Answer Call(const std::string &sMethod) {
        stPlatform.ClearRecords();
        Answer stAnswer = EntryOf(RulesEntries(), sMethod).fnCall(stEnv);
        stEnv.EndCall();
        return stAnswer;
    }
    /// The text that a listing answers.
    std::string List(const std::string &sMethod) { return Call(sMethod).sText.value_or("(null)"); }
    /// The same of a table with these bytes, a number of rows.
    std::string ListOf(const Listing &stListing, const std::string &sTable) {
        stPlatform.mapReplies[stListing.uiRpcId] = {0, sTable};
        return List(stListing.sMethod);
    }

    /// Answers a listing with these bytes as they are.
    void AnswerBytes(uint32_t uiRpcId, const std::string &sReply) {
        stPlatform.fnReply = [=](const RpcRecord &stRpc) {
            return stRpc.uiRpcId == uiRpcId ? std::optional(Reply{0, sReply}) : std::nullopt;
        };
    }
    /// Answers it with a number of rules and a new block.
    void AnswerBlock(uint32_t uiRpcId, uint32_t uiCount, const std::string &sBlock) {
        AnswerBytes(uiRpcId, Word(uiCount) + stPlatform.AddBulk(sBlock));
    }

    void Refuse(uint32_t uiRpcId) { stPlatform.mapReplies[uiRpcId] = {kRefused, ""}; }

    /// The shared source has recorded this code with these numbers.
    bool HasRecorded(uint32_t uiCode, const Args &auiArgs = {}) const {
        return TimesRecorded(stPlatform, kSharedFile, uiCode, auiArgs) != 0;
    }
};

}  // namespace wap::test

#endif
