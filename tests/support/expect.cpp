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
