#include "unit/macfilter/filter_gateway.h"

#include <algorithm>

namespace wap::test {

namespace {

/// Who is asked by whom, and the lengths.
struct Form {
    const char *pcReceiver;
    uint32_t uiSender;
    uint32_t uiRspCap;
};

const std::map<uint32_t, Form> kForms = {
    {0x47307000, {"gulm", 56, 128}},    {0x47309024, {"gulm", 56, 132}},
    {0x40007000, {"gulm", 56, 116}},    {0x47309027, {"gulm", 56, 1028}},
    {0x4730701A, {"gulm", 56, 68}},     {0x49350180, {"gulm", 56, 4}},
    {0x4730701D, {"gulm", 56, 4}},      {0x47103092, {"app_m", 249, 132}},
    {0x47209091, {"osgi_proxy", 0, 4}}, {0x47209092, {"osgi_proxy", 0, 4}},
    {0x47209093, {"osgi_proxy", 0, 4}}, {0x47209094, {"osgi_proxy", 0, 4}},
    {0x47209095, {"osgi_proxy", 0, 4}},
};

std::string TextAt(const std::string &sBytes, size_t uiAt) {
    return uiAt < sBytes.size() ? std::string(sBytes.c_str() + uiAt) : std::string();
}

std::string Number(const std::string &sBytes, size_t uiAt = 0) {
    return std::to_string(WordAt(sBytes, uiAt));
}

/// The request's words, if its bytes are those that the words describe.
std::string IfBytes(const std::string &sRequest, const std::string &sExpected,
                    const std::string &sWords) {
    EXPECT_EQ(sRequest, sExpected) << sWords;
    return sRequest == sExpected ? sWords : "malformed " + sWords;
}

std::string WhatIsAdded(const std::string &sRequest) {
    const std::string sMac = TextAt(sRequest, 8);
    return IfBytes(sRequest,
                   Word(0) + Word(1) + Field(sMac, 32) + std::string(32, '\0') +
                       Field("YYYYYNN", 16) + Field("00:00", 16) + Field("23:59", 16),
                   "add lan " + sMac);
}

std::string WhatIsAddedToWlan(const std::string &sRequest) {
    const std::string sSsidName = TextAt(sRequest, 8);
    const std::string sMac = TextAt(sRequest, 40);
    return IfBytes(
        sRequest,
        Word(0) + Word(1) + Field(sSsidName, 32) + Field(sMac, 32) + std::string(12, '\xFF'),
        "add wlan " + sSsidName + " " + sMac);
}

std::string WhatIsRestored(const std::string &sRequest) {
    const std::string sSsidName = TextAt(sRequest, 4);
    const std::string sMac = TextAt(sRequest, 36);
    return IfBytes(sRequest,
                   Word(1) + Field(sSsidName, 32) + Field(sMac, 32) + std::string(16, '\xFF'),
                   "restore wlan " + sSsidName + " " + sMac);
}

template <class Row>
std::string Index(const std::vector<Row> &astRows, size_t uiSlots) {
    std::vector<uint32_t> auiIds;
    auiIds.reserve(astRows.size());
    for (const Row &stRow : astRows) {
        auiIds.push_back(stRow.uiId);
    }
    std::string sBytes = IndexBytes(auiIds, auiIds.size());
    sBytes.resize(4 + 4 * uiSlots, '\0');
    return sBytes;
}

template <class Row>
const Row *Find(const std::vector<Row> &astRows, uint32_t uiId) {
    const auto it = std::find_if(astRows.begin(), astRows.end(),
                                 [=](const Row &stRow) { return stRow.uiId == uiId; });
    return it == astRows.end() ? nullptr : &*it;
}

template <class Row>
void Delete(std::vector<Row> &astRows, uint32_t uiId) {
    EXPECT_EQ(std::erase_if(astRows, [=](const Row &stRow) { return stRow.uiId == uiId; }), 1u)
        << "no entry " << uiId;
}

}  // namespace

FilterGateway::FilterGateway(Platform &stPlatform) {
    stPlatform.fnReply = [this](const RpcRecord &stRpc) { return Answer(stRpc); };
}

std::string FilterGateway::State() const {
    std::vector<std::string> asRows;
    for (const LanRow &stRow : astLan) {
        asRows.push_back("lan " + stRow.sMac);
    }
    for (const WlanRow &stRow : astWlan) {
        asRows.push_back(stRow.sSsidName + " " + stRow.sMac);
    }
    std::sort(asRows.begin(), asRows.end());
    std::string sState = "mode " + std::to_string(uiMode) + " status " + std::to_string(uiStatus);
    for (const std::string &sRow : asRows) {
        sState += "; " + sRow;
    }
    return sState;
}

Reply FilterGateway::Answer(const RpcRecord &stRpc) {
    const std::string sWhat = Understand(stRpc);
    asAsked.push_back(sWhat);
    asStates.push_back(State());
    ++uiCount;
    // What comes with a refusal is nobody's answer.
    const std::string sJunk(stRpc.uiRspCap, '\x5A');
    if (uiCount == uiRefusedAt) {
        return {kRefused, sJunk};
    }
    if (const auto it = mapRefused.find(sWhat); it != mapRefused.end()) {
        return {it->second, sJunk};
    }
    if (const auto it = mapBytes.find(sWhat); it != mapBytes.end()) {
        return {0, it->second};
    }
    return {0, Perform(stRpc)};
}

std::string FilterGateway::Understand(const RpcRecord &stRpc) const {
    const auto it = kForms.find(stRpc.uiRpcId);
    if (it == kForms.end()) {
        ADD_FAILURE() << "unknown request " << std::hex << stRpc.uiRpcId;
        return "unknown";
    }
    const std::string sSender = bAnySender ? std::string(stRpc.sHead.c_str() + 4) : "jamvm";
    EXPECT_EQ(stRpc.sHead, MessageHead(sSender, 0, it->second.pcReceiver, it->second.uiSender));
    EXPECT_EQ(stRpc.uiDstMid, 0u);
    EXPECT_EQ(stRpc.uiTimeoutMs, 5000u);
    EXPECT_EQ(stRpc.uiReqLen, stRpc.sRequest.size());
    EXPECT_EQ(stRpc.sRspBefore, std::string(it->second.uiRspCap, '\0'));
    const std::string &sRequest = stRpc.sRequest;
    const std::string sWord = sRequest.size() == 4 ? Number(sRequest) : "malformed";
    switch (stRpc.uiRpcId) {
        case 0x47307000:
            return IfBytes(sRequest, Word(0), "mode");
        case 0x47209091:
            EXPECT_EQ(sRequest.size(), 8u);
            return "set mode " + Number(sRequest) + " " + Number(sRequest, 4);
        case 0x47309024:
            return IfBytes(sRequest, Word(0), "list lan");
        case 0x47309027:
            return IfBytes(sRequest, Word(0), "list wlan");
        case 0x47103092:
            return IfBytes(sRequest, Word(0), "ssids");
        case 0x40007000:
            return "get lan " + sWord;
        case 0x4730701A:
            return "get wlan " + sWord;
        case 0x49350180:
            return "excluded " + sWord;
        case 0x47209093:
            return "del lan " + sWord;
        case 0x47209095:
            return "del wlan " + sWord;
        case 0x47209092:
            return WhatIsAdded(sRequest);
        case 0x47209094:
            return WhatIsAddedToWlan(sRequest);
        default:
            return WhatIsRestored(sRequest);
    }
}

std::string FilterGateway::Perform(const RpcRecord &stRpc) {
    const std::string &sRequest = stRpc.sRequest;
    const uint32_t uiWord = WordAt(sRequest, 0);
    switch (stRpc.uiRpcId) {
        case 0x47307000:
            return ModeBytes(uiMode, uiStatus);
        case 0x47209091:
            uiMode = uiWord;
            uiStatus = WordAt(sRequest, 4);
            return Word(0);
        case 0x47309024:
            return Index(astLan, 32);
        case 0x47309027:
            return Index(astWlan, 256);
        case 0x47103092:
            return IndexBytes(auiSsids, 32);
        case 0x40007000: {
            const LanRow *pstRow = Find(astLan, uiWord);
            return pstRow == nullptr ? "" : LanEntryBytes(pstRow->sMac);
        }
        case 0x4730701A: {
            const WlanRow *pstRow = Find(astWlan, uiWord);
            return pstRow == nullptr ? "" : WlanEntryBytes(pstRow->sSsidName, pstRow->sMac);
        }
        case 0x49350180:
            return Word(setExcluded.contains(uiWord) ? 1 : 0);
        case 0x47209093:
            Delete(astLan, uiWord);
            return Word(0);
        case 0x47209095:
            Delete(astWlan, uiWord);
            return Word(0);
        case 0x47209092:
            astLan.push_back({uiNextId, TextAt(sRequest, 8)});
            return Word(uiNextId++);
        case 0x47209094:
            astWlan.push_back({uiNextId, TextAt(sRequest, 8), TextAt(sRequest, 40)});
            return Word(uiNextId++);
        default:
            astWlan.push_back({uiNextId, TextAt(sRequest, 4), TextAt(sRequest, 36)});
            return Word(uiNextId++);
    }
}

void MacFltTest::ListTwo() {
    stPlatform.setFeatures = {314};
    stGateway.auiSsids = {1, 5};
    stGateway.astLan = {{1, "AA"}, {2, "BB"}};
    stGateway.astWlan = {
        {11, "SSID-1", "AA"}, {12, "SSID-5", "AA"}, {13, "SSID-1", "BB"}, {14, "SSID-5", "BB"}};
}

size_t MacFltTest::Traced(const std::string &sText) const {
    return static_cast<size_t>(std::count_if(
        stPlatform.astTraces.begin(), stPlatform.astTraces.end(), [&](const TraceRecord &stTrace) {
            return stTrace.sText == sText && stTrace.uiMid == 249 && stTrace.uiZero == 0;
        }));
}

bool MacFltTest::Recorded(const std::string &sFile, uint32_t uiCode) const {
    return std::any_of(
        stPlatform.astFaults.begin(), stPlatform.astFaults.end(), [&](const FaultRecord &stFault) {
            return stFault.sFile == sFile && stFault.uiCode == uiCode && stFault.uiLine > 0;
        });
}

}  // namespace wap::test
