// The table and the page of what travels against what the library sends, in every way of calling
// every entry, also when a request fails: the tool that made them has read the sources, and these
// requests come from the running code.

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <optional>
#include <set>
#include <sstream>
#include <string>
#include <string_view>

#include "faults/fault_sweep.h"
#include "faults/sweep_cases.h"
#include "framework/wire_table.h"
#include "lan/jni_port_mapping.h"
#include "support/furnish_portmap.h"
#include "support/wire_bytes.h"
#include "support/world.h"

namespace wap::test {

namespace {

using gateway::WireContent;
using gateway::WireField;
using gateway::WireForm;
using gateway::WireJoin;
using gateway::WireModules;
using gateway::WirePart;
using gateway::WireRpc;

/// The bytes of a field in a request's header.
std::string HeadField(const RpcRecord &stAsked, std::string_view pcName) {
    for (const WireField &stField : gateway::WireMessageHead().astFields) {
        if (stField.pcName == pcName) {
            return stAsked.sHead.substr(stField.uiOffset, stField.uiSize);
        }
    }
    ADD_FAILURE() << "the header has no " << pcName;
    return {};
}

bool HasLength(const WirePart &stPart, size_t uiBytes) {
    switch (stPart.eForm) {
        case WireForm::kText:
            return uiBytes != 0 && (stPart.uiSize == 0 || uiBytes <= stPart.uiSize);
        case WireForm::kRows:
            return uiBytes != 0 && uiBytes % stPart.uiSize == 0;
        default:
            return uiBytes == stPart.uiSize;
    }
}

bool HasLength(const WireContent &stContent, size_t uiBytes) {
    const auto &[stFirst, stSecond] = stContent.astParts;
    switch (stContent.eJoin) {
        case WireJoin::kEither:
            return HasLength(stFirst, uiBytes) || HasLength(stSecond, uiBytes);
        case WireJoin::kBoth:
            return uiBytes >= stFirst.uiSize && HasLength(stSecond, uiBytes - stFirst.uiSize);
        default:
            return HasLength(stFirst, uiBytes);
    }
}

/// Whether there is as much room as the longest reply needs. Where nothing comes, there is room for
/// the word that a process may answer with all the same.
bool HasRoom(const WireContent &stReply, size_t uiRoom) {
    const WirePart &stPart = stReply.astParts[0];
    return stReply.eJoin == WireJoin::kAlone &&
           uiRoom == (stPart.eForm == WireForm::kNothing ? 4 : stPart.uiSize);
}

bool SpeaksAs(const WireRpc &stRpc, uint32_t uiModule) {
    return std::any_of(stRpc.astSenders.begin(), stRpc.astSenders.end(),
                       [=](const WireModules &stModules) {
                           return uiModule >= stModules.uiFirst && uiModule <= stModules.uiLast;
                       });
}

/// What is in the block that a descriptor names within some bytes; nothing when none does.
std::optional<std::string> BlockIn(Platform &stPlatform, const WireContent &stContent,
                                   const std::string &sBytes) {
    constexpr size_t kDescriptorSize = 12;
    const std::optional<uint32_t> uiAt = gateway::DescriptorOffset(stContent);
    return uiAt && sBytes.size() >= *uiAt + kDescriptorSize
               ? stPlatform.TakeBulk(sBytes.substr(*uiAt, kDescriptorSize))
               : std::nullopt;
}

/// By the names of RPCs and messages: the methods that send them.
using Senders = std::map<std::string, std::set<std::string>>;

/// Those that the page names, without their classes.
Senders SendersOnPage() {
    Senders mapSenders;
    std::ifstream stPage(WAP_WIRE_PAGE);
    std::string sName;
    for (std::string sLine; std::getline(stPage, sLine);) {
        if (sLine.starts_with("### ")) {
            sName = sLine.substr(4);
        } else if (sLine.starts_with("Sent by ")) {
            std::istringstream stLine(sLine);
            std::string sSender;
            // Each stands between two ticks.
            while (std::getline(stLine, sSender, '`') && std::getline(stLine, sSender, '`')) {
                mapSenders[sName].insert(sSender.substr(sSender.rfind('.') + 1));
            }
        }
    }
    return mapSenders;
}

void ExpectAsInTable(const RpcRecord &stAsked, const WireRpc &stRpc) {
    SCOPED_TRACE(stRpc.pcName);
    EXPECT_EQ(stAsked.sHead.size(), gateway::WireMessageHead().uiSize);
    EXPECT_EQ(UpToZero(HeadField(stAsked, "acRcvApp")), stRpc.pcReceiver);
    const uint32_t uiModule = WordAt(HeadField(stAsked, "uiSndMid"), 0);
    EXPECT_TRUE(SpeaksAs(stRpc, uiModule)) << "module " << uiModule;
    EXPECT_EQ(stAsked.uiTimeoutMs, stRpc.uiTimeoutMs);
    EXPECT_EQ(stAsked.uiDstMid, 0u);
    EXPECT_TRUE(HasLength(stRpc.stRequest, stAsked.uiReqLen))
        << "a request of " << stAsked.uiReqLen << " bytes";
    EXPECT_EQ(gateway::DescriptorOffset(stRpc.stRequest).has_value(),
              stRpc.eBlockSide == gateway::WireSide::kRequest);
    EXPECT_EQ(gateway::DescriptorOffset(stRpc.stReply).has_value(),
              stRpc.eBlockSide == gateway::WireSide::kReply);
    EXPECT_TRUE(HasRoom(stRpc.stReply, stAsked.uiRspCap))
        << "room for " << stAsked.uiRspCap << " bytes";
}

class WireTableTest : public ::testing::Test {
  protected:
    /// Makes a call, with nothing failing and with each of its requests failing in turn, and looks
    /// at what it sends.
    template <class Furnish, class Call>
    void Look(const std::string &sSender, const Furnish &fnFurnish, const Call &fnCall) {
        const uint32_t uiRequests = LookOnce(sSender, fnFurnish, fnCall, 0);
        for (uint32_t uiAt = 1; uiAt <= uiRequests; ++uiAt) {
            (void)LookOnce(sSender, fnFurnish, fnCall, uiAt);
        }
    }

    /// Of each request: the page names those that have sent it, and no others.
    void ExpectSendersAsOnPage() const {
        const Senders mapPage = SendersOnPage();
        for (const auto astRpcs : {gateway::WireRpcs(), gateway::WireMessages()}) {
            EXPECT_FALSE(astRpcs.empty());
            for (const WireRpc &stRpc : astRpcs) {
                const auto itSeen = m_mapSenders.find(stRpc.pcName);
                const auto itPage = mapPage.find(stRpc.pcName);
                ASSERT_NE(itSeen, m_mapSenders.end()) << "nobody sends " << stRpc.pcName;
                ASSERT_NE(itPage, mapPage.end()) << "not on the page: " << stRpc.pcName;
                EXPECT_EQ(itPage->second, itSeen->second) << "who sends " << stRpc.pcName;
            }
        }
    }

  private:
    /// @param uiFailing which request fails, from 1; 0: none
    /// @return how many requests there were
    template <class Furnish, class Call>
    uint32_t LookOnce(const std::string &sSender, const Furnish &fnFurnish, const Call &fnCall,
                      uint32_t uiFailing) {
        ResetBridge();
        World stWorld;
        FakeJni stEnv;
        fnFurnish(stWorld);
        stWorld.Plan({Op::kRpc, uiFailing, false});
        Platform &stPlatform = stWorld.stPlatform;
        stPlatform.fnMessage = [&](const MessageRecord &stMessage) {
            LookAt(stPlatform, stMessage, sSender);
        };
        fnCall(stEnv);
        for (const RpcRecord &stAsked : stPlatform.astRpcs) {
            const WireRpc *pstRpc = gateway::FindWireRpc(stAsked.uiRpcId);
            if (pstRpc == nullptr) {
                ADD_FAILURE() << "not in the table: " << std::hex << stAsked.uiRpcId;
                continue;
            }
            ExpectAsInTable(stAsked, *pstRpc);
            m_mapSenders[pstRpc->pcName].insert(sSender);
        }
        const uint32_t uiRequests = stWorld.Count(Op::kRpc);
        stEnv.EndCall();
        (void)stWorld.TakeComplaints();
        ResetBridge();
        return uiRequests;
    }

    void LookAt(Platform &stPlatform, const MessageRecord &stMessage, const std::string &sSender) {
        const WireRpc *pstRpc = gateway::FindWireMessage(stMessage.uiType);
        ASSERT_NE(pstRpc, nullptr) << "not in the table: message " << stMessage.uiType;
        m_mapSenders[pstRpc->pcName].insert(sSender);
        EXPECT_EQ(stMessage.sReceiver, pstRpc->pcReceiver);
        EXPECT_TRUE(HasLength(pstRpc->stRequest, stMessage.sData.size()));
        const auto sBlock = BlockIn(stPlatform, pstRpc->stRequest, stMessage.sData);
        ASSERT_TRUE(sBlock.has_value());
        EXPECT_TRUE(HasLength(pstRpc->stBlock, sBlock->size()));
    }

    Senders m_mapSenders;
};

TEST_F(WireTableTest, IsWhatEveryCaseSends) {
    for (const SweepCase &stCase : AllCases()) {
        SCOPED_TRACE(stCase.Name());
        Look(
            stCase.sMethod, [&](World &stWorld) { stCase.Furnish(stWorld); },
            [&](FakeJni &stEnv) { (void)stCase.fnCall(stEnv); });
    }
    // No entry asks this.
    Look(
        "VT_API_getPortMappingNum()", [](World &stWorld) { FurnishPortMapping(stWorld); },
        [](FakeJni &) {
            uint32_t uiNum = 0;
            (void)VT_API_getPortMappingNum(&uiNum);
        });
    ExpectSendersAsOnPage();
}

TEST_F(WireTableTest, IsInOrderAndWithoutGapsInItsRecords) {
    for (const auto astRpcs : {gateway::WireRpcs(), gateway::WireMessages()}) {
        ASSERT_FALSE(astRpcs.empty());
        EXPECT_TRUE(std::is_sorted(
            astRpcs.begin(), astRpcs.end(),
            [](const WireRpc &stA, const WireRpc &stB) { return stA.uiId < stB.uiId; }));
        for (const WireRpc &stRpc : astRpcs) {
            for (const WireContent *pstContent :
                 {&stRpc.stRequest, &stRpc.stReply, &stRpc.stBlock}) {
                for (const WirePart &stPart : pstContent->astParts) {
                    if (stPart.pstRecord == nullptr) {
                        continue;
                    }
                    uint32_t uiAt = 0;
                    for (const WireField &stField : stPart.pstRecord->astFields) {
                        EXPECT_EQ(stField.uiOffset, uiAt)
                            << stPart.pstRecord->pcName << "." << stField.pcName;
                        uiAt += stField.uiSize * stField.uiCount;
                    }
                    EXPECT_EQ(stPart.pstRecord->uiSize, uiAt) << stPart.pstRecord->pcName;
                }
            }
        }
    }
}

}  // namespace

}  // namespace wap::test
