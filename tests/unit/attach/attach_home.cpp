#include "unit/attach/attach_home.h"

#include <memory>
#include <numeric>
#include <ostream>

#include "support/furnish_macfilter.h"
#include "support/wire_bytes.h"

namespace wap::test {

namespace {

constexpr uint32_t kLanIndexId = 0x47309024;
constexpr uint32_t kLanEntryId = 0x40007000;
constexpr uint32_t kWlanIndexId = 0x47309027;

/// A record that starts at an offset of a request.
Record RecordAt(const std::string &sBytes, size_t uiAt, uint32_t uiInst) {
    Record stRecord;
    stRecord.uiInst = uiInst;
    stRecord.sMac = UpToZero(sBytes.substr(uiAt, 32));
    stRecord.uiInternet = WordAt(sBytes, uiAt + 32);
    stRecord.uiStorage = WordAt(sBytes, uiAt + 36);
    stRecord.uiUp = WordAt(sBytes, uiAt + 40);
    stRecord.uiDown = WordAt(sBytes, uiAt + 44);
    stRecord.uiUsGarantee = WordAt(sBytes, uiAt + 48);
    stRecord.uiDsGarantee = WordAt(sBytes, uiAt + 52);
    stRecord.uiUnused = WordAt(sBytes, uiAt + 56);
    return stRecord;
}

/// The ids of the filter's wired entries, which count from here.
constexpr uint32_t kFilterIds = 70;

std::string Hex(uint32_t uiNumber) {
    char acText[16];
    std::snprintf(acText, sizeof(acText), "0x%08X", static_cast<unsigned>(uiNumber));
    return acText;
}

}  // namespace

std::string Record::Bytes(uint32_t uiLast) const {
    return Field(sMac, 32) + Word(uiInternet) + Word(uiStorage) + Word(uiUp) + Word(uiDown) +
           Word(uiUsGarantee) + Word(uiDsGarantee) + Word(uiUnused) + Word(uiLast);
}

std::ostream &operator<<(std::ostream &stOut, const Record &stRecord) {
    return stOut << stRecord.uiInst << " " << stRecord.sMac << " internet " << stRecord.uiInternet
                 << " storage " << stRecord.uiStorage << " up " << stRecord.uiUp << " down "
                 << stRecord.uiDown << " garanteed " << stRecord.uiUsGarantee << " "
                 << stRecord.uiDsGarantee << " unused " << stRecord.uiUnused;
}

std::ostream &operator<<(std::ostream &stOut, const Asked &stAsked) {
    stOut << stAsked.sReceiver << " " << stAsked.uiSender << " " << Hex(stAsked.uiRpcId) << " room "
          << stAsked.uiRspCap << " request";
    for (const char cByte : stAsked.sRequest) {
        stOut << " " << static_cast<uint32_t>(static_cast<uint8_t>(cByte));
    }
    return stOut;
}

Requests FilterRequests(uint32_t uiEntries) {
    Requests astAll = {{"gulm", 56, kFilterModeId, Word(0), 128},
                       {"gulm", 56, kLanIndexId, Word(0), 132}};
    for (uint32_t i = 0; i < uiEntries; ++i) {
        astAll.push_back({"gulm", 56, kLanEntryId, Word(kFilterIds + i), 116});
    }
    astAll.push_back({"gulm", 56, kWlanIndexId, Word(0), 1028});
    return astAll;
}

Requests ListRequests(const std::vector<uint32_t> &auiInsts) {
    Requests astAll = {{"gulm", 56, kListId, Word(0), 516}};
    for (const uint32_t uiInst : auiInsts) {
        astAll.push_back({"gulm", 56, kRecordId, Word(uiInst), 64});
    }
    return astAll;
}

Requests AddRequest(const Record &stRecord, uint8_t ucMask) {
    return {{"osgi_proxy", 0, kAddId,
             stRecord.Bytes(0) + static_cast<char>(ucMask) + std::string(15, '\0'), 4}};
}

Requests SetRequest(const Record &stRecord, uint8_t ucMask) {
    return {{"osgi_proxy", 0, kSetId,
             Word(stRecord.uiInst) + stRecord.Bytes(stRecord.uiInst) + static_cast<char>(ucMask) +
                 std::string(15, '\0'),
             4}};
}

Requests operator+(Requests astFirst, const Requests &astMore) {
    astFirst.insert(astFirst.end(), astMore.begin(), astMore.end());
    return astFirst;
}

void AttachHome::AnswerFor(Platform &stPlatform) {
    stPlatform.fnReply = [this](const RpcRecord &stRpc) { return AnswerTo(stRpc); };
}

void AttachHome::RefuseAt(uint32_t uiRpcId, uint32_t uiAt) {
    auto puiSeen = std::make_shared<uint32_t>(0);
    fnRefuse = [=](const RpcRecord &stRpc) -> uint32_t {
        return stRpc.uiRpcId == uiRpcId && ++*puiSeen == uiAt ? kRefused : 0;
    };
}

std::string AttachHome::Add(const std::string &sRequest) {
    astRecords.push_back(RecordAt(sRequest, 0, uiNextInst));
    return Word(uiNextInst++);
}

std::string AttachHome::Set(const std::string &sRequest) {
    const uint32_t uiInst = WordAt(sRequest, 0);
    for (Record &stRecord : astRecords) {
        if (stRecord.uiInst == uiInst) {
            stRecord = RecordAt(sRequest, 4, uiInst);
        }
    }
    return Word(uiInst);
}

std::optional<Reply> AttachHome::AnswerTo(const RpcRecord &stRpc) {
    if (fnRefuse) {
        if (const uint32_t uiStatus = fnRefuse(stRpc); uiStatus != 0) {
            return Reply{uiStatus, ""};
        }
    }
    switch (stRpc.uiRpcId) {
        case kFilterModeId:
            return Reply{0, ModeBytes(uiMode, 1)};
        case kLanIndexId: {
            std::vector<uint32_t> auiIds(asFilterMacs.size());
            std::iota(auiIds.begin(), auiIds.end(), kFilterIds);
            return Reply{0, IndexBytes(auiIds, 32)};
        }
        case kLanEntryId:
            return Reply{0, LanEntryBytes(asFilterMacs.at(WordAt(stRpc.sRequest, 0) - kFilterIds))};
        case kWlanIndexId:
            return Reply{0, IndexBytes({}, 256)};
        case kListId: {
            std::vector<uint32_t> auiIds;
            for (const Record &stRecord : astRecords) {
                auiIds.push_back(stRecord.uiInst);
            }
            return Reply{0, IndexBytes(auiIds, 128)};
        }
        case kRecordId:
            for (const Record &stRecord : astRecords) {
                if (stRecord.uiInst == WordAt(stRpc.sRequest, 0)) {
                    // The last word is nobody's: the bridge must put the id there itself.
                    return Reply{0, stRecord.Bytes(0xEEEEEEEE)};
                }
            }
            return Reply{kRefused, ""};
        case kAddId:
            return Reply{0, Add(stRpc.sRequest)};
        case kSetId:
            return Reply{0, Set(stRpc.sRequest)};
        default:
            return std::nullopt;
    }
}

Requests AttachTest::Sent() {
    Requests astSent;
    for (const RpcRecord &stRpc : stPlatform.astRpcs) {
        const std::string sReceiver = UpToZero(stRpc.sHead.substr(40, 32));
        const uint32_t uiSender = SenderOf(stRpc);
        ExpectRpc(stRpc,
                  {sReceiver.c_str(), uiSender, stRpc.uiRpcId, stRpc.sRequest, stRpc.uiRspCap});
        astSent.push_back({sReceiver, uiSender, stRpc.uiRpcId, stRpc.sRequest, stRpc.uiRspCap});
    }
    stPlatform.astRpcs.clear();
    return astSent;
}

void AttachTest::ExpectSent(const Requests &astWanted, const std::string &sLastBytes) {
    const Requests astSent = Sent();
    ASSERT_EQ(astSent, astWanted);
    EXPECT_EQ(astSent.back().sRequest, sLastBytes);
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

std::vector<std::string> AttachTest::Traces(const std::string &sStart) const {
    std::vector<std::string> asFound;
    for (const TraceRecord &stTrace : stPlatform.astTraces) {
        if (stTrace.sText.rfind(sStart, 0) == 0) {
            EXPECT_EQ(stTrace.sFile, kWorkerFile);
            EXPECT_EQ(stTrace.uiMid, 249u);
            asFound.push_back(stTrace.sText);
        }
    }
    return asFound;
}

MacTexts::MacTexts(const std::vector<std::string> &asTexts) {
    for (const std::string &sText : asTexts) {
        apcMacs.push_back(sText.c_str());
    }
}

std::vector<std::string> ManyMacs(uint32_t uiCount) {
    std::vector<std::string> asMacs;
    for (uint32_t i = 0; i < uiCount; ++i) {
        char acMac[32];
        std::snprintf(acMac, sizeof(acMac), "02:00:00:00:%02X:%02X", static_cast<unsigned>(i / 256),
                      static_cast<unsigned>(i % 256));
        asMacs.push_back(acMac);
    }
    return asMacs;
}

}  // namespace wap::test
