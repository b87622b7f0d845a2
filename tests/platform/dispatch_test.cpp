// Asynchronous messages.
#include <unistd.h>

#include <cstring>
#include <future>
#include <thread>
#include <vector>

#include "runtime_dir.h"

namespace wap::test {
namespace {

struct Received {
    std::string strSender;
    std::string strReceiver;
    uint32_t uiDstMid;
    uint32_t uiMsgType;
    std::string strData;
    bool bZeroBehind;
};

std::vector<Received> g_astReceived;

int32_t Collect(void *pvMsg) {
    const VtHostMsg *pstMsg = static_cast<const VtHostMsg *>(pvMsg);
    const char *pcData = reinterpret_cast<const char *>(pstMsg + 1);
    g_astReceived.push_back({pstMsg->stHead.acSndApp, pstMsg->stHead.acRcvApp,
                             pstMsg->stHead.uiDstMid, pstMsg->uiMsgType,
                             std::string(pcData, pstMsg->uiLen), pcData[pstMsg->uiLen] == '\0'});
    return 0;
}

class Dispatch : public RuntimeDirTest {
  protected:
    void SetUp() override {
        g_astReceived.clear();
        ASSERT_EQ(0u, VT_MSG_Init("jamvm", 4, 1024, 0));
        ASSERT_EQ(0u, VT_MSG_RegisterMID(0, Collect, 1));
    }
};

TEST_F(Dispatch, BringsAMessageToItsProcedure) {
    ASSERT_EQ(0u, VT_MSG_AsyncSendData("jamvm", 39, "payload", 7));
    EXPECT_TRUE(g_astReceived.empty()) << "not before the process asks for it";
    ASSERT_EQ(0u, VT_MSG_GetAndDispatch(0, 0));
    ASSERT_EQ(1u, g_astReceived.size());
    EXPECT_EQ("jamvm", g_astReceived[0].strSender);
    EXPECT_EQ("jamvm", g_astReceived[0].strReceiver);
    EXPECT_EQ(0u, g_astReceived[0].uiDstMid);
    EXPECT_EQ(39u, g_astReceived[0].uiMsgType);
    EXPECT_EQ("payload", g_astReceived[0].strData);
    EXPECT_TRUE(g_astReceived[0].bZeroBehind);
}

TEST_F(Dispatch, KeepsTheOrder) {
    for (uint32_t uiType : {1u, 2u, 3u}) {
        ASSERT_EQ(0u, VT_MSG_AsyncSendData("jamvm", uiType, nullptr, 0));
    }
    for (int i = 0; i < 3; i++) {
        ASSERT_EQ(0u, VT_MSG_GetAndDispatch(0, 0));
    }
    ASSERT_EQ(3u, g_astReceived.size());
    EXPECT_EQ(1u, g_astReceived[0].uiMsgType);
    EXPECT_EQ(2u, g_astReceived[1].uiMsgType);
    EXPECT_EQ(3u, g_astReceived[2].uiMsgType);
    EXPECT_EQ("", g_astReceived[2].strData);
}

TEST_F(Dispatch, WaitsForTheNextMessage) {
    auto stDone = std::async(std::launch::async, [] { return VT_MSG_GetAndDispatch(0, 0); });
    EXPECT_EQ(std::future_status::timeout, stDone.wait_for(std::chrono::milliseconds(50)));
    ASSERT_EQ(0u, VT_MSG_AsyncSendData("jamvm", 1, "x", 1));
    EXPECT_EQ(0u, stDone.get());
    EXPECT_EQ(1u, g_astReceived.size());
}

TEST_F(Dispatch, AFullQueueRefusesAndServesOnWhenThereIsRoom) {
    for (int i = 0; i < 4; i++) {
        ASSERT_EQ(0u, VT_MSG_AsyncSendData("jamvm", 1, "x", 1));
    }
    EXPECT_EQ(VT_HOST_ERR_FULL, VT_MSG_AsyncSendData("jamvm", 1, "x", 1));
    ASSERT_EQ(0u, VT_MSG_GetAndDispatch(0, 0));
    EXPECT_EQ(0u, VT_MSG_AsyncSendData("jamvm", 1, "x", 1));
    EXPECT_EQ(VT_HOST_ERR_FULL, VT_MSG_AsyncSendData("jamvm", 1, "x", 1));
}

TEST_F(Dispatch, TheLongestMessagePasses) {
    std::string strLong(VT_HOST_MAX_PAYLOAD, 'y');
    EXPECT_EQ(0u, VT_MSG_AsyncSendData("jamvm", 1, strLong.data(), VT_HOST_MAX_PAYLOAD));
    ASSERT_EQ(0u, VT_MSG_GetAndDispatch(0, 0));
    EXPECT_TRUE(g_astReceived[0].strData == strLong);
    EXPECT_EQ(VT_HOST_ERR_TOO_LONG,
              VT_MSG_AsyncSendData("jamvm", 1, strLong.data(), VT_HOST_MAX_PAYLOAD + 1));
}

TEST_F(Dispatch, BadArgumentsAreRefused) {
    EXPECT_EQ(VT_HOST_ERR_ARGUMENT, VT_MSG_RegisterMID(0, nullptr, 1));
    EXPECT_EQ(VT_HOST_ERR_ARGUMENT, VT_MSG_AsyncSendData(nullptr, 1, "x", 1));
    EXPECT_EQ(VT_HOST_ERR_ARGUMENT, VT_MSG_AsyncSendData("", 1, "x", 1));
    EXPECT_EQ(VT_HOST_ERR_ARGUMENT, VT_MSG_AsyncSendData("jamvm", 1, nullptr, 1));
    EXPECT_EQ(VT_HOST_ERR_NO_RECEIVER, VT_MSG_AsyncSendData("nobody", 1, "x", 1));
}

TEST_F(Dispatch, StoppingWakesWhoeverWaits) {
    auto stDone = std::async(std::launch::async, [] { return VT_MSG_GetAndDispatch(0, 0); });
    usleep(30000);
    EXPECT_EQ(0u, VT_HOST_Stop());
    EXPECT_EQ(VT_HOST_ERR_STATE, stDone.get());
    EXPECT_EQ(VT_HOST_ERR_STATE, VT_MSG_GetAndDispatch(0, 0))
        << "and none waits for ever afterwards";
}

TEST_F(Dispatch, AProcedureMaySendMessages) {
    ASSERT_EQ(0u, VT_MSG_RegisterMID(
                      0,
                      [](void *pvMsg) {
                          Collect(pvMsg);
                          return static_cast<int32_t>(VT_MSG_AsyncSendData("jamvm", 8, "r", 1));
                      },
                      1));
    ASSERT_EQ(0u, VT_MSG_AsyncSendData("jamvm", 7, "q", 1));
    ASSERT_EQ(0u, VT_MSG_GetAndDispatch(0, 0));
    ASSERT_EQ(0u, VT_MSG_RegisterMID(0, Collect, 1)) << "replaces the first";
    ASSERT_EQ(0u, VT_MSG_GetAndDispatch(0, 0));
    ASSERT_EQ(2u, g_astReceived.size());
    EXPECT_EQ(8u, g_astReceived[1].uiMsgType);
}

}  // namespace
}  // namespace wap::test
