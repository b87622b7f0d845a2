#include <algorithm>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "fuzz/targets.h"
#include "support/entries.h"
#include "support/entry_groups.h"
#include "support/strict_json.h"
#include "support/wire_bytes.h"

namespace wap::test {

namespace {

constexpr uint32_t kTraceRouteResult = 0x47103091;
constexpr uint32_t kDnsResult = 0x47103097;

/// The entries whose answers the bridge itself makes JSON of; the others hand on what a process
/// says as it stands.
const std::map<std::string, Elements> kMakeJson = {
    {"getForwardRuleInfo", Elements::kOwn},
    {"getHTTPTrafficProcessRuleInfo", Elements::kOwn},
    {"getIPv6Layer3ForwardingCurrent", Elements::kOwn},
    {"getIPv6Layer3ForwardingStaticConfigInfo", Elements::kOwn},
    {"getJVMInfo", Elements::kOwn},
    {"getLANDHCPInfo", Elements::kOwn},
    {"getLANHostSpeedLimitInfo", Elements::kOwn},
    {"getLayer3ForwardingCurrent", Elements::kOwn},
    {"getLayer3ForwardingStaticConfigInfo", Elements::kOwn},
    {"getMirroRuleInfo", Elements::kOwn},
    {"getOSGiInfo", Elements::kOwn},
    {"getPortMappingInfo", Elements::kOwn},
    {"getSpeedByFlow", Elements::kOwn},
    {"getSpeedLimitByFlow", Elements::kOwn},
    {"getStatsByFlow", Elements::kOwn},
    {"getStorageInfo", Elements::kOwn},
    {"getTrafficInfoByFlow", Elements::kOwn},
    {"getTrafficMonitoringDestAddressInfo", Elements::kHandedOver},
    {"getVLANBindInfo", Elements::kOwn},
    {"getWANIfList", Elements::kOwn},
};

const std::vector<FurnishedEntry> &Entries() {
    static const std::vector<FurnishedEntry> s_astEntries = AllEntries();
    return s_astEntries;
}

/// The entry of that name. Any other text stands for one, too, so that the fuzzer wastes no input.
const FurnishedEntry &EntryNamed(const std::string &sMethod) {
    const auto &astEntries = Entries();
    const auto it = std::find_if(astEntries.begin(), astEntries.end(), [&](const auto &stEntry) {
        return stEntry.stEntry.sMethod == sMethod;
    });
    uint32_t uiSum = 0;
    for (const char cChar : sMethod) {
        uiSum = uiSum * 31 + static_cast<uint8_t>(cChar);
    }
    return it != astEntries.end() ? *it : astEntries[uiSum % astEntries.size()];
}

/// Takes numbers and bytes from an input, and zeros behind its end.
class Source {
  public:
    Source(const uint8_t *pucData, size_t uiSize) : m_pucData(pucData), m_uiLeft(uiSize) {}

    bool IsEmpty() const { return m_uiLeft == 0; }
    uint32_t Number(uint32_t uiBytes) {
        uint32_t uiNumber = 0;
        for (uint32_t i = 0; i < uiBytes && m_uiLeft != 0; ++i, --m_uiLeft) {
            uiNumber |= uint32_t{*m_pucData++} << 8 * i;
        }
        return uiNumber;
    }
    std::string Bytes(size_t uiCount) {
        std::string sBytes;
        while (sBytes.size() < uiCount && m_uiLeft != 0) {
            sBytes += static_cast<char>(Number(1));
        }
        return sBytes;
    }

  private:
    const uint8_t *m_pucData;
    size_t m_uiLeft;
};

/// An honest reply, and the place of the bulk block's descriptor in it, if it has one.
struct Honest {
    Reply stReply;
    std::optional<size_t> uiDescAt{};
};

/// What an input makes of an honest reply. A block comes where there is one in the honest reply:
/// nobody could know of it elsewhere, and it would stay.
Reply Changed(Source &stSource, const Honest &stHonest) {
    enum { kAsItIs, kStatus, kBytes, kBlock, kPatched, kCut, kWord, kFilled, kChanges };
    Reply stReply = stHonest.stReply;
    std::string &sBytes = stReply.sBytes;
    switch (stSource.Number(1) % kChanges) {
        case kStatus:
            stReply.uiStatus = stSource.Number(4);
            break;
        case kBytes:
            sBytes = stSource.Bytes(stSource.Number(2));
            break;
        case kBlock: {
            const std::string sBefore = stSource.Bytes(stSource.Number(1));
            const std::string sBlock = stSource.Bytes(stSource.Number(2));
            if (stHonest.uiDescAt) {
                return {0, sBlock, true, Field(sBefore, *stHonest.uiDescAt)};
            }
            sBytes = sBefore + sBlock;
            break;
        }
        case kPatched:
            for (uint32_t i = stSource.Number(1) % 16 + 1; i > 0 && !sBytes.empty(); --i) {
                const size_t uiAt = stSource.Number(2) % sBytes.size();
                sBytes[uiAt] = static_cast<char>(stSource.Number(1));
            }
            break;
        case kCut:
            sBytes.resize(std::min<size_t>(sBytes.size(), stSource.Number(2)));
            break;
        case kWord: {
            const std::string sWord = Word(stSource.Number(4));
            const size_t uiAt = stSource.Number(2) % (sBytes.size() + 1);
            sBytes.replace(uiAt, std::min<size_t>(4, sBytes.size() - uiAt), sWord);
            break;
        }
        case kFilled:
            std::fill(sBytes.begin(), sBytes.end(), static_cast<char>(stSource.Number(1)));
            break;
        default:
            break;
    }
    return stReply;
}

/// Whether the reply about a network test says that there is no result: then there is no block.
bool IsTestGoingOn(uint32_t uiRpcId, const std::string &sStatus) {
    const bool bAboutTest = uiRpcId == kDnsResult || uiRpcId == kTraceRouteResult;
    return bAboutTest && sStatus != Word(0);
}

/// A gateway whose replies an input changes, as long as there is input.
class ChangingGateway {
  public:
    ChangingGateway(Platform &stPlatform, Source &stSource)
        : m_stPlatform(stPlatform),
          m_stSource(stSource),
          m_fnHonest(std::move(stPlatform.fnReply)) {
        stPlatform.fnReply = [this](const RpcRecord &stRpc) { return ReplyTo(stRpc); };
    }

  private:
    Reply ReplyTo(const RpcRecord &stRpc) {
        const uint32_t uiNewBlock = m_stPlatform.uiNextBlock;
        Honest stHonest = HonestReplyTo(stRpc);
        const bool bMadeBlock = m_stPlatform.uiNextBlock != uiNewBlock;
        if (bMadeBlock) {
            stHonest.uiDescAt = stHonest.stReply.sBytes.find(Word(uiNewBlock));
        }
        if (m_stSource.IsEmpty()) {
            return stHonest.stReply;
        }
        Reply stReply = Changed(m_stSource, stHonest);
        if (stReply.bBulk && IsTestGoingOn(stRpc.uiRpcId, stReply.sBeforeBulk)) {
            stReply = {0, stReply.sBeforeBulk};
        }
        // A block of which the bridge hears nothing is not the bridge's to free.
        if (bMadeBlock && (stReply.bBulk || stReply.uiStatus != 0 ||
                           stReply.sBytes.find(Word(uiNewBlock)) != stHonest.uiDescAt)) {
            m_stPlatform.mapBlocks.erase(uiNewBlock);
        }
        return stReply;
    }

    Honest HonestReplyTo(const RpcRecord &stRpc) {
        if (m_fnHonest) {
            const std::optional<Reply> stReply = m_fnHonest(stRpc);
            if (stReply) {
                return {*stReply};
            }
        }
        const auto it = m_stPlatform.mapReplies.find(stRpc.uiRpcId);
        if (it == m_stPlatform.mapReplies.end()) {
            return {{kUnscriptedStatus, ""}};
        }
        Honest stHonest = {it->second};
        if (stHonest.stReply.bBulk) {
            stHonest.uiDescAt = stHonest.stReply.sBeforeBulk.size();
        }
        return stHonest;
    }

    Platform &m_stPlatform;
    Source &m_stSource;
    std::function<std::optional<Reply>(const RpcRecord &)> m_fnHonest;
};

/// As RequireClean, with the entry's name, which need not stand in the input. Where the input tells
/// a secret, it is none: it stays where replies stay.
void RequireCleanOf(const Entry &stEntry, World &stWorld, const std::string &sInput = "") {
    stWorld.stSecrets.CheckShown(sInput, "the input");
    const std::vector<std::string> asComplaints = stWorld.TakeComplaints();
    const bool bTold =
        std::any_of(asComplaints.begin(), asComplaints.end(),
                    [](const std::string &sText) { return sText.ends_with("in the input"); });
    for (const std::string &sText : asComplaints) {
        Require(bTold && sText.find("secret") != std::string::npos,
                (stEntry.sMethod + ": " + sText).c_str());
    }
}

}  // namespace

void FuzzAnyReply(const uint8_t *pucData, size_t uiSize) {
    const std::string sMethod = TextIn(pucData, uiSize);
    const size_t uiRest = std::min(uiSize, sMethod.size() + 1);
    Source stSource(pucData + uiRest, uiSize - uiRest);
    const FurnishedEntry &stFurnished = EntryNamed(sMethod);
    const Entry &stEntry = stFurnished.stEntry;
    FakeJni stEnv;
    ResetBridge();
    {
        World stWorld;
        stFurnished.pfnFurnish(stWorld);
        const ChangingGateway stGateway(stWorld.stPlatform, stSource);
        const Answer stAnswer = stEntry.fnCall(stEnv);
        stEnv.EndCall();
        Require(stAnswer.iNumber.has_value() == stEntry.stGood.iNumber.has_value(),
                "an entry gives a text, or a number");
        if (const auto it = kMakeJson.find(stEntry.sMethod);
            it != kMakeJson.end() && stAnswer.sText) {
            const std::string sFault = JsonFault(*stAnswer.sText, it->second);
            Require(sFault.empty(), (stEntry.sMethod + " makes JSON: " + sFault).c_str());
        }
        RequireCleanOf(stEntry, stWorld,
                       std::string(reinterpret_cast<const char *>(pucData), uiSize));
    }
    World stWorld;
    stFurnished.pfnFurnish(stWorld);
    Require(stEntry.fnCall(stEnv) == stEntry.stGood, "the call after it gets its answer");
    stEnv.EndCall();
    RequireCleanOf(stEntry, stWorld);
    ResetBridge();
}

}  // namespace wap::test
