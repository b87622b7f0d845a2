#include "support/expect.h"

#include <gtest/gtest.h>

namespace wap::test {

void ExpectRpc(const RpcRecord &stRpc, const WantedRpc &stWanted) {
    EXPECT_EQ(stRpc.sHead, MessageHead("jamvm", 0, stWanted.pcReceiver, stWanted.uiSender));
    EXPECT_EQ(stRpc.uiRpcId, stWanted.uiRpcId);
    EXPECT_EQ(stRpc.uiDstMid, 0u);
    EXPECT_EQ(stRpc.sRequest, stWanted.sRequest);
    EXPECT_EQ(stRpc.uiRspCap, stWanted.uiRspCap);
    EXPECT_EQ(stRpc.sRspBefore, std::string(stWanted.uiRspCap, '\0'));
    EXPECT_EQ(stRpc.uiTimeoutMs, stWanted.uiTimeoutMs);
}

void ExpectOnlyRpc(const Platform &stPlatform, const WantedRpc &stWanted) {
    ASSERT_EQ(stPlatform.astRpcs.size(), 1u);
    ExpectRpc(stPlatform.astRpcs[0], stWanted);
}

void ExpectRpcs(const Platform &stPlatform, const std::vector<WantedRpc> &astWanted) {
    Codes auiWanted;
    for (const WantedRpc &stWanted : astWanted) {
        auiWanted.push_back(stWanted.uiRpcId);
    }
    ASSERT_EQ(RpcIds(stPlatform), auiWanted);
    for (size_t i = 0; i < astWanted.size(); ++i) {
        SCOPED_TRACE(i);
        ExpectRpc(stPlatform.astRpcs[i], astWanted[i]);
    }
}

Codes RpcIds(const Platform &stPlatform) {
    Codes auiIds;
    for (const RpcRecord &stRpc : stPlatform.astRpcs) {
        auiIds.push_back(stRpc.uiRpcId);
    }
    return auiIds;
}

size_t TimesRecorded(const Platform &stPlatform, const std::string &sFile, uint32_t uiCode,
                     const Args &auiArgs) {
    size_t uiTimes = 0;
    for (const FaultRecord &stFault : stPlatform.astFaults) {
        uiTimes += stFault.sFile == sFile && stFault.uiCode == uiCode &&
                           stFault.auiArgs == auiArgs && stFault.uiLine != 0
                       ? 1
                       : 0;
    }
    return uiTimes;
}

Calls EntryTraces(const Platform &stPlatform) {
    Calls asTexts;
    for (const TraceRecord &stTrace : stPlatform.astTraces) {
        EXPECT_EQ(stTrace.uiZero, 0u) << stTrace.sText;
        if (stTrace.uiMid == 249) {
            asTexts.push_back(stTrace.sText);
        } else {
            EXPECT_EQ(stTrace.uiMid, 281u) << stTrace.sText;
        }
    }
    return asTexts;
}

bool HasEntryTrace(const Platform &stPlatform, const std::string &sText) {
    const Calls asTexts = EntryTraces(stPlatform);
    return std::find(asTexts.begin(), asTexts.end(), sText) != asTexts.end();
}

}  // namespace wap::test
